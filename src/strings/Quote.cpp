#include "strings/Search.h"

#include <kelvobase/Strings.h>

#include <algorithm>

namespace KelvoBase
{

namespace
{

/// `s` with `mark` in front of each of the `count` bytes `c`.
std::string marked(const std::string& s, char c, char mark, std::string::size_type count)
{
    std::string result(s.size() + count, '\0');
    char* to = result.data();
    for (const char byte : s) {
        // Always written, and overwritten unless it is needed: quicker than a branch.
        *to = mark;
        to += byte == c ? 1 : 0;
        *to++ = byte;
    }
    return result;
}

std::string::size_type countOf(const std::string& s, char c)
{
    return static_cast<std::string::size_type>(std::count(s.begin(), s.end(), c));
}

/// Doubles a token of several bytes.
std::string escapeLong(const std::string& s, const std::string& token)
{
    std::string result;
    result.reserve(s.size() + token.size());
    std::string::size_type done = 0;
    for (auto i = s.find(token); i != std::string::npos; i = s.find(token, done)) {
        result.append(s, done, i - done);
        result += token;
        // Required: the search goes on one byte further, not behind the token, so that overlapping ones are
        // doubled, too. Going on behind it would change texts that are compared.
        result += s[i];
        done = i + 1;
    }
    return result.append(s, done);
}

} // namespace

std::string quote(const std::string& s)
{
    std::string result;
    result.reserve(s.size() + 2);
    result += '"';
    result += s;
    result += '"';
    return result;
}

int quote(std::string& s, char c, char e)
{
    if (s.empty()) {
        // Required: an empty text has no parts at all, one less than a text without `c`; 0 would hide that.
        return -1;
    }
    const auto count = countOf(s, c);
    if (count != 0) {
        s = marked(s, c, e, count);
    }
    return static_cast<int>(count);
}

std::string escape(const std::string& s, const std::string& token)
{
    if (token.empty()) {
        return s;
    }
    if (token.size() > 1) {
        return escapeLong(s, token);
    }
    const auto count = countOf(s, token.front());
    return count == 0 ? s : marked(s, token.front(), token.front(), count);
}

std::string unescape(const std::string& s, const std::string& token)
{
    const auto length = token.size();
    // Required: the search is for any byte of the token. A search for the whole token would not fail close to
    // the end, and would find pairs that begin inside what this one steps over.
    auto i = findAnyOf(s, token, 0);
    if (i == std::string::npos) {
        return s;
    }
    std::string result;
    result.reserve(s.size());
    std::string::size_type start = 0;
    while (i != std::string::npos) {
        const auto second = i + length;
        if (second > s.size()) {
            throwCutBehindEnd();
        }
        if (s.compare(second, length, token) == 0) {
            result.append(s, start, second - start);
            start = second + length;
            i = findAnyOf(s, token, start);
        } else {
            i = findAnyOf(s, token, second);
        }
    }
    return result.append(s, start);
}

std::string unescapeAll(const std::string& s, const std::string& token)
{
    const auto length = token.size();
    std::string result;
    std::string::size_type done = 0;     // everything in front of it is in the result
    std::string::size_type runStart = 0; // the run that is still growing
    std::string::size_type runStop = 0;  // 0: none yet
    for (auto i = findAnyOf(s, token, 0); i != std::string::npos; i = findAnyOf(s, token, i + length)) {
        if (s.compare(i, length, token) != 0) {
            continue;
        }
        if (runStop != i) {
            if (runStop != 0) {
                result.append(s, done, runStart - done).append(token);
                done = runStop;
            }
            runStart = i;
        }
        runStop = i + length;
    }
    if (runStop == 0) {
        return s;
    }
    result.append(s, done, runStart - done);
    return result.append(s, runStop - length);
}

} // namespace KelvoBase
