#include "strings/RandomText.h"
#include "support/Text.h"

#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

#include <optional>
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
    std::string token;
    std::string expected;
};

std::ostream& operator<<(std::ostream& out, const Row& row)
{
    return out << "text '" << row.text << "', token '" << row.token << "'";
}

TEST(Quote, PutsTextBetweenDoubleQuotesAsItIs)
{
    EXPECT_EQ(quote(""), "\"\"");
    EXPECT_EQ(quote("a b"), "\"a b\"");
    EXPECT_EQ(quote("a\"b\\"), "\"a\"b\\\"");
    EXPECT_EQ(quote("\0"s), "\"\0\""s);
}

TEST(QuoteInPlace, PutsByteInFrontOfEach)
{
    struct InPlaceRow
    {
        std::string text;
        std::string expected;
        int found;
    };
    const std::vector<InPlaceRow> rows{{"a_b_", "a\\_b\\_", 2}, {"_", "\\_", 1},   {"__", "\\_\\_", 2},
                                       {"_a", "\\_a", 1},       {"abc", "abc", 0}, {"a\\_", "a\\\\_", 1},
                                       {"\"_\"", "\"\\_\"", 1}, {"\\n", "\\n", 0}};
    for (const InPlaceRow& row : rows) {
        std::string s = row.text;
        EXPECT_EQ(quote(s, '_', '\\'), row.found) << row.text;
        EXPECT_EQ(s, row.expected) << row.text;
    }
}

TEST(QuoteInPlace, OfEmptyTextGivesMinusOne)
{
    // Required, Q-404
    std::string s;
    EXPECT_EQ(quote(s, '_', '\\'), -1);
    EXPECT_EQ(s, "");
}

TEST(QuoteInPlace, TakesAnyByte)
{
    std::string zeros = "\0a\0"s;
    EXPECT_EQ(quote(zeros, '\0', '\xFF'), 2);
    EXPECT_EQ(zeros, "\xFF\0a\xFF\0"s);
    std::string same = "aba";
    EXPECT_EQ(quote(same, 'a', 'a'), 2);
    EXPECT_EQ(same, "aabaa");
}

TEST(QuoteInPlace, AgreesWithPiecesOfSplit)
{
    RandomText random;
    for (int i = 0; i < 5000; ++i) {
        const std::string text = random.text("a_\\\"", 10);
        const char e = random.one("a_\\");
        std::vector<std::string> pieces;
        const auto count = static_cast<int>(split(text, pieces, "_", "", ""));
        std::string s = text;
        EXPECT_EQ(quote(s, '_', e), count - 1) << text;
        EXPECT_EQ(s, join(pieces, std::string(1, e) + "_")) << text;
    }
}

TEST(Escape, DoublesToken)
{
    const std::vector<Row> rows{{"", ",", ""},    {"a", ",", "a"},         {"a,b", ",", "a,,b"},
                                {",", ",", ",,"}, {",,", ",", ",,,,"},     {"a,b", "", "a,b"},
                                {"", "", ""},     {"1.5", ".", "1..5"},    {"xaby", "ab", "xababy"},
                                {"a", "ab", "a"}, {"\0"s, "\0"s, "\0\0"s}, {"\xFF", "\xFF", "\xFF\xFF"}};
    for (const Row& row : rows) {
        EXPECT_EQ(escape(row.text, row.token), row.expected) << row;
    }
}

TEST(Escape, DoublesOverlappingTokens)
{
    // Required, Q-405
    EXPECT_EQ(escape("aaa", "aa"), "aaaaaaa");
    EXPECT_EQ(escape("ababa", "aba"), "abaababaaba"s);
}

TEST(Unescape, TurnsDoubledTokenIntoSingleOne)
{
    const std::vector<Row> rows{{"", ",", ""},     {"a", ",", "a"},    {"a,b", ",", "a,b"},    {"a,,b", ",", "a,b"},
                                {",", ",", ","},   {",,", ",", ","},   {",,,", ",", ",,"},     {",,,,", ",", ",,"},
                                {"a,", ",", "a,"}, {"a,,", ",", "a,"}, {",,a", ",", ",a"},     {"a,,b", "", "a,,b"},
                                {"", "ab", ""},    {"xy", "ab", "xy"}, {"\0\0"s, "\0"s, "\0"s}};
    for (const Row& row : rows) {
        EXPECT_EQ(unescape(row.text, row.token), row.expected) << row;
    }
}

TEST(Unescape, BringsBackEscapedText)
{
    RandomText random;
    for (int i = 0; i < 2000; ++i) {
        const std::string text = random.text("a,b", 10);
        EXPECT_EQ(unescape(escape(text, ","), ","), text);
    }
}

TEST(Unescape, OfLongTokenStepsFromAnyOfItsBytes)
{
    // Required, Q-406
    const std::vector<Row> rows{
        {"ababx", "ab", "abx"}, {"bbabx", "ab", "bbx"}, {"abxx", "ab", "abxx"}, {"xbababxx", "ab", "xbababxx"}};
    for (const Row& row : rows) {
        EXPECT_EQ(unescape(row.text, row.token), row.expected) << row;
    }
}

TEST(Unescape, OfLongTokenHitCloseToTheEndThrows)
{
    // Required, Q-406
    for (const std::string& text : {"xa"s, "b"s, "ababa"s, "abababb"s}) {
        EXPECT_EQ(textOf<std::out_of_range>([&] { unescape(text, "ab"); }), "basic_string::substr") << text;
    }
    EXPECT_EQ(unescape("xab", "ab"), "xab");
}

TEST(UnescapeAll, TurnsRunIntoSingleToken)
{
    const std::vector<Row> rows{{"", ",", ""},
                                {"abc", ",", "abc"},
                                {"a,b", ",", "a,b"},
                                {"a,,,b", ",", "a,b"},
                                {",,a,,b,,", ",", ",a,b,"},
                                {",,a,b,,,c", ",", ",a,b,c"},
                                {",", ",", ","},
                                {",,,,", ",", ","},
                                {"a,,", "", "a,,"},
                                {"", "", ""},
                                {"xababab", "ab", "xab"},
                                {"ababxabab", "ab", "abxab"},
                                {"abxab", "ab", "abxab"}};
    for (const Row& row : rows) {
        EXPECT_EQ(unescapeAll(row.text, row.token), row.expected) << row;
    }
}

TEST(UnescapeAll, OfLongTokenStepsOverBytesThatBeginNone)
{
    EXPECT_EQ(unescapeAll("babab", "ab"), "babab");
    EXPECT_EQ(unescapeAll("xa", "ab"), "xa");
    EXPECT_EQ(unescapeAll("aababab", "ab"), "aababab");
}

// The models below are the algorithms step by step, each cut a copy.

std::string modelEscape(const std::string& s, const std::string& token)
{
    std::string result;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s.substr(i, token.size()) == token) {
            result += token;
        }
        result += s[i];
    }
    return result;
}

/// Nothing where the algorithm throws.
std::optional<std::string> modelUnescape(const std::string& s, const std::string& token)
{
    std::string result;
    std::size_t start = 0;
    std::size_t i = s.find_first_of(token);
    while (i != std::string::npos) {
        if (i + token.size() > s.size()) {
            return std::nullopt;
        }
        if (s.substr(i + token.size(), token.size()) == token) {
            result += s.substr(start, i + token.size() - start);
            start = i + 2 * token.size();
            i = s.find_first_of(token, start);
        } else {
            i = s.find_first_of(token, i + token.size());
        }
    }
    return result + s.substr(start);
}

std::string modelUnescapeAll(const std::string& s, const std::string& token)
{
    const std::size_t length = token.size();
    std::vector<std::vector<std::size_t>> runs;
    for (std::size_t i = s.find_first_of(token); i != std::string::npos; i = s.find_first_of(token, i + length)) {
        if (s.substr(i, length) != token) {
            continue;
        }
        if (runs.empty() || runs.back().back() + length != i) {
            runs.emplace_back();
        }
        runs.back().push_back(i);
    }
    if (runs.empty()) {
        return s;
    }
    std::string result;
    std::size_t end = 0;
    for (std::size_t k = 0; k + 1 < runs.size(); ++k) {
        result += s.substr(end, runs[k].front() - end) + token;
        end = runs[k].back() + length;
    }
    return result + s.substr(end, runs.back().front() - end) + s.substr(runs.back().back());
}

struct RandomCase
{
    std::string text;
    std::string token;
};

std::vector<RandomCase> randomCases()
{
    RandomText random;
    std::vector<RandomCase> cases(30000);
    for (RandomCase& one : cases) {
        one.text = random.text("ab,", 12);
        one.token = random.text("ab,", 3);
    }
    return cases;
}

TEST(Escape, AgreesWithModel)
{
    for (const auto& [text, token] : randomCases()) {
        EXPECT_EQ(escape(text, token), modelEscape(text, token)) << "text '" << text << "', token '" << token << "'";
    }
}

TEST(Unescape, AgreesWithModel)
{
    for (const RandomCase& one : randomCases()) {
        SCOPED_TRACE("text '" + one.text + "', token '" + one.token + "'");
        if (const auto expected = modelUnescape(one.text, one.token)) {
            EXPECT_EQ(unescape(one.text, one.token), *expected);
        } else {
            EXPECT_EQ(textOf<std::out_of_range>([&] { unescape(one.text, one.token); }), "basic_string::substr");
        }
    }
}

TEST(UnescapeAll, AgreesWithModel)
{
    for (const auto& [text, token] : randomCases()) {
        EXPECT_EQ(unescapeAll(text, token), modelUnescapeAll(text, token))
            << "text '" << text << "', token '" << token << "'";
    }
}

} // namespace

} // namespace KelvoBase::test
