#include "strings/Search.h"
#include "trace/Message.h"

#include <kelvobase/Strings.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string_view>

// A pattern is taken as a row of segments, each a head of wildcards and a literal tail. Each segment takes a piece off
// the front of the text, once and for good.

namespace KelvoBase
{

namespace
{

constexpr auto npos = std::string_view::npos;

/// What a segment did: whether the text still matches, and how much of it was taken; npos ends the walk.
struct Step
{
    bool matched;
    std::string_view::size_type consumed;
};

void traceSyntaxError(std::string_view segment)
{
    traceMessage(Trace::fail, TraceArea::All()) << "match(): Syntax error for pattern '" << segment << "'" << std::endl;
}

bool isWild(char c)
{
    return c == '?' || c == '*';
}

/// Takes the next segment off the front of `pattern`, which begins with a wildcard.
std::string_view nextSegment(std::string_view& pattern)
{
    std::string_view::size_type end = 0;
    while (end < pattern.size() && isWild(pattern[end])) {
        ++end;
    }
    while (end < pattern.size() && !isWild(pattern[end])) {
        ++end;
    }
    const auto segment = pattern.substr(0, end);
    pattern.remove_prefix(end);
    return segment;
}

Step matchAny(std::string_view text, std::string_view tail)
{
    if (tail.empty()) {
        return {true, npos};
    }
    // Required: the leftmost hit, and no way back to another. Trying further ones would make texts match that
    // callers rely on being refused.
    const auto hit = text.find(tail);
    if (hit == npos) {
        return {false, npos};
    }
    return {true, hit + tail.size()};
}

Step matchFixed(std::string_view text, std::string_view::size_type head, std::string_view tail)
{
    if (tail.empty()) {
        return {text.size() == head, npos};
    }
    // Required: a rest shorter than the question marks is a failure, not a mismatch, unlike one that is as
    // short as they are. Answering false would hide it from callers that catch it.
    if (text.size() < head) {
        throwCutBehindEnd();
    }
    if (text.substr(head, tail.size()) != tail) {
        return {false, npos};
    }
    return {true, head + tail.size()};
}

Step matchSegment(std::string_view text, std::string_view segment)
{
    const auto head = segment.find_first_not_of('?');
    if (head == 0) {
        // Required: one star is the whole head; a wildcard behind it is a literal. Taking the run as one star
        // would match other texts.
        return matchAny(text, segment.substr(1));
    }
    if (head == npos) {
        return matchFixed(text, segment.size(), {});
    }
    if (segment[head] == '*') {
        // Required: the segment counts as matched, so that `?*` matches the end of a text. Failing here, or
        // reading it as "at least one byte", would change both answers.
        traceSyntaxError(segment);
        return {true, 0};
    }
    return matchFixed(text, head, segment.substr(head));
}

} // namespace

bool match(const std::string& text, const std::string& pattern)
{
    // Required: an empty text matches nothing, not even "*" or the empty pattern.
    if (text.empty() || pattern.empty()) {
        return false;
    }
    const auto wild = std::find_if(pattern.begin(), pattern.end(), isWild);
    if (wild == pattern.end()) {
        return text == pattern;
    }
    const auto first = static_cast<std::size_t>(wild - pattern.begin());
    std::string_view rest(text);
    std::string_view left(pattern);
    if (rest.substr(0, first) != left.substr(0, first)) {
        return false;
    }
    rest.remove_prefix(first);
    left.remove_prefix(first);
    Step step{true, 0};
    while (step.matched && step.consumed != npos) {
        rest.remove_prefix(step.consumed);
        if (left.empty()) {
            return rest.empty();
        }
        step = matchSegment(rest, nextSegment(left));
    }
    return step.matched;
}

} // namespace KelvoBase
