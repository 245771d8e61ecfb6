#include "strings/RandomText.h"
#include "support/Capture.h"
#include "support/Text.h"

#include <kelvobase/Strings.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace KelvoBase::test
{

namespace
{

using namespace std::string_literals;

struct Row
{
    std::string text;
    std::string pattern;
    bool expected;
};

void expectMatches(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        EXPECT_EQ(match(row.text, row.pattern), row.expected)
            << "text '" << row.text << "', pattern '" << row.pattern << "'";
    }
}

std::string syntaxError(const std::string& segment)
{
    return "|-- match(): Syntax error for pattern '" + segment + "'\n";
}

TEST(Match, OfPatternWithoutWildcardComparesBytes)
{
    expectMatches({{"abc", "abc", true},
                   {"abc", "abd", false},
                   {"abc", "ab", false},
                   {"ab", "abc", false},
                   {"abc", "ABC", false},
                   {"a\0b"s, "a\0b"s, true},
                   {"a\0b"s, "a\0c"s, false},
                   {"a[b]", "a[b]", true},
                   {"a\\", "a\\", true}});
}

TEST(Match, OfEmptyTextOrPatternIsFalse)
{
    // Required, Q-415
    expectMatches({{"", "*", false}, {"", "", false}, {"abc", "", false}, {"", "?", false}, {"", "a", false}});
}

TEST(Match, QuestionMarkStandsForOneByte)
{
    expectMatches({{"abc", "a?c", true},
                   {"abc", "a??", true},
                   {"abc", "a?", false},
                   {"abc", "???", true},
                   {"abc", "????", false},
                   {"abc", "??", false},
                   {"abc", "?bc", true},
                   {"abc", "?b?", true},
                   {"abc", "abc?", false},
                   {"abc", "?bcd", false},
                   {"abc", "?xc", false},
                   {"a?c", "a?c", true},
                   {"\xE4", "?", true},
                   {"\xC3\xA4", "?", false}});
}

TEST(Match, StarStandsForAnyBytes)
{
    expectMatches({{"abc", "a*", true},
                   {"abc", "abc*", true},
                   {"abc", "*", true},
                   {"abc", "*c", true},
                   {"abc", "*abc", true},
                   {"abc", "*b*", true},
                   {"abc", "a*c", true},
                   {"abc", "*d", false},
                   {"abc", "*d*", false},
                   {"abc", "b*", false},
                   {"abc", "abcd*", false},
                   {"abc", "*a*c*", true},
                   {"aXbYc", "a*b*c", true},
                   {"name.tar.gz", "*.tar*", true}});
}

TEST(Match, TakesLeftmostHitOnly)
{
    // Required, Q-411
    expectMatches({{"abcabc", "*c", false}, {"abcabc", "*c*c", true}, {"a.b.txt", "*.txt", true}, {"xx", "*x", false}});
}

TEST(Match, MixesBothWildcards)
{
    expectMatches({{"abcd", "?b*", true}, {"abcd", "*c?", true}, {"abcde", "*c?", false}, {"abcd", "a*c?", true}});
}

TEST(Match, RestShorterThanQuestionMarksThrows)
{
    // Required, Q-412
    const std::vector<Row> rows{{"ab", "a??b", false}, {"a", "a?b", false}, {"abc", "*c?x", false}};
    for (const Row& row : rows) {
        EXPECT_EQ(textOf<std::out_of_range>([&] { match(row.text, row.pattern); }), "basic_string::substr")
            << row.text << ' ' << row.pattern;
    }
}

TEST(Match, RestAsShortAsQuestionMarksIsFalse)
{
    expectMatches({{"ab", "a?b", false}, {"ab", "??b", false}, {"a", "a??", false}});
}

TEST(Match, WildcardBehindStarIsALiteral)
{
    // Required, Q-413
    expectMatches({{"a*x", "**x", true},
                   {"ax", "**x", false},
                   {"a?x", "*?x", true},
                   {"abx", "*?x", false},
                   {"a*", "**", true},
                   {"a", "**", false},
                   {"a*?b", "**?b", true},
                   {"ab?", "a*?", true},
                   {"ab", "a*?", false}});
}

TEST(Match, StarBehindQuestionMarkIsTracedAndTakesNothing)
{
    // Required, Q-414
    struct ErrorRow
    {
        Row row;
        std::vector<std::string> segments;
    };
    const std::vector<ErrorRow> rows{{{"a", "?*", false}, {"?*"}},
                                     {{"x", "x?*", true}, {"?*"}},
                                     {{"xy", "x?*", false}, {"?*"}},
                                     {{"x", "x??*", true}, {"??*"}},
                                     {{"xa", "x?*a*", true}, {"?*a"}},
                                     {{"xb", "x?*a?", true}, {"?*a"}},
                                     {{"x", "x?*?a?*", true}, {"?*?a", "?*"}}};
    for (const ErrorRow& one : rows) {
        const TraceCapture trace(Trace::fail);
        expectMatches({one.row});
        std::string expected;
        for (const std::string& segment : one.segments) {
            expected += syntaxError(segment);
        }
        EXPECT_EQ(trace.text(), expected) << one.row.text << ' ' << one.row.pattern;
    }
}

TEST(Match, SyntaxErrorIsNoTextOfALessImportantLevel)
{
    const TraceCapture trace(Trace::crit);
    EXPECT_FALSE(match("a", "?*"));
    EXPECT_EQ(trace.text(), "");
}

TEST(Match, WithoutSyntaxErrorTracesNothing)
{
    const TraceCapture trace(Trace::verbose);
    EXPECT_TRUE(match("abc", "a*"));
    EXPECT_FALSE(match("abc", "a?"));
    EXPECT_EQ(trace.text(), "");
}

/// The algorithm step by step, every cut a copy.
class Model
{
public:
    /// 't', 'f', or 'x' where it throws.
    char run(const std::string& text, const std::string& pattern)
    {
        try {
            return answer(text, pattern) ? 't' : 'f';
        } catch (const std::out_of_range&) {
            return 'x';
        }
    }

    std::string trace;

private:
    static bool isWild(char c) { return c == '?' || c == '*'; }

    bool answer(const std::string& text, const std::string& pattern)
    {
        if (text.empty() || pattern.empty()) {
            return false;
        }
        std::size_t first = 0;
        while (first < pattern.size() && !isWild(pattern[first])) {
            ++first;
        }
        if (first == pattern.size()) {
            return text == pattern;
        }
        if (text.substr(0, first) != pattern.substr(0, first)) {
            return false;
        }
        mRest = text.substr(first);
        mPattern = pattern.substr(first);
        mMatched = true;
        walk();
        return mMatched;
    }

    void walk()
    {
        std::size_t consumed = 0;
        while (mMatched) {
            mRest = mRest.substr(consumed);
            if (mPattern.empty()) {
                mMatched = mRest.empty();
                return;
            }
            consumed = test(takeSegment());
            if (consumed == std::string::npos) {
                return;
            }
        }
    }

    std::string takeSegment()
    {
        std::size_t end = 0;
        while (end < mPattern.size() && isWild(mPattern[end])) {
            ++end;
        }
        while (end < mPattern.size() && !isWild(mPattern[end])) {
            ++end;
        }
        const std::string segment = mPattern.substr(0, end);
        mPattern = mPattern.substr(end);
        return segment;
    }

    std::size_t test(const std::string& segment)
    {
        std::size_t head = 0;
        while (head < segment.size() && segment[head] == '?') {
            ++head;
        }
        if (head > 0 && head < segment.size() && segment[head] == '*') {
            trace += syntaxError(segment);
            return 0;
        }
        mMatched = false;
        return head == 0 ? any(segment.substr(1)) : fixed(head, segment.substr(head));
    }

    std::size_t any(const std::string& tail)
    {
        const std::size_t hit = tail.empty() ? std::string::npos : mRest.find(tail);
        mMatched = tail.empty() || hit != std::string::npos;
        return hit == std::string::npos ? hit : hit + tail.size();
    }

    std::size_t fixed(std::size_t head, const std::string& tail)
    {
        if (tail.empty()) {
            mMatched = mRest.size() == head;
            return std::string::npos;
        }
        mMatched = mRest.substr(head, tail.size()) == tail;
        return mMatched ? head + tail.size() : std::string::npos;
    }

    std::string mRest;
    std::string mPattern;
    bool mMatched = false;
};

TEST(Match, AgreesWithModel)
{
    RandomText random;
    Model model;
    const TraceCapture trace(Trace::fail);
    std::string answers;
    for (int i = 0; i < 60000; ++i) {
        const std::string text = random.text("aab*?", 8);
        const std::string pattern = random.text("ab?*", 6);
        const char expected = model.run(text, pattern);
        char actual = 'x';
        try {
            actual = match(text, pattern) ? 't' : 'f';
        } catch (const std::out_of_range&) {
        }
        ASSERT_EQ(actual, expected) << "text '" << text << "', pattern '" << pattern << "'";
        answers += answers.find(actual) == std::string::npos ? std::string(1, actual) : "";
    }
    EXPECT_EQ(answers.size(), 3U);
    EXPECT_EQ(trace.text(), model.trace);
}

} // namespace

} // namespace KelvoBase::test
