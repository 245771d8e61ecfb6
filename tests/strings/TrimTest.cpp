#include "strings/RandomText.h"
#include "support/Text.h"

#include <kelvobase/Strings.h>

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
    std::string expected;
    int removed;
};

std::ostream& operator<<(std::ostream& out, const Row& row)
{
    return out << "text '" << row.text << "'";
}

const std::string everyWhite = " \t\n\v\f\r";

TEST(Trim, RemovesWhiteSpaceAtBothEndsOnly)
{
    const std::vector<Row> rows{{"a", "a", 0},
                                {" a", "a", 1},
                                {"a ", "a", 1},
                                {"  a b  ", "a b", 4},
                                {everyWhite + "a" + everyWhite, "a", 12},
                                {"\r\na\tb\r\n", "a\tb", 4},
                                {"\0 a"s, "\0 a"s, 0},
                                {" \0 "s, "\0"s, 2},
                                {"\x1F"
                                 "a\x7F",
                                 "\x1F"
                                 "a\x7F",
                                 0}};
    for (const Row& row : rows) {
        std::string s = row.text;
        EXPECT_EQ(trim(s), row.removed) << row;
        EXPECT_EQ(s, row.expected) << row;
    }
}

TEST(Trim, OfEmptyTextRemovesNothing)
{
    std::string s;
    EXPECT_EQ(trim(s), 0);
    EXPECT_EQ(s, "");
}

TEST(Trim, OfWhiteTextEmptiesIt)
{
    for (std::string s : {" "s, "   "s, everyWhite}) {
        const auto before = static_cast<int>(s.size());
        EXPECT_EQ(trim(s), before);
        EXPECT_EQ(s, "");
    }
}

TEST(Trim, TakesNoByteAbove7FForWhiteSpace)
{
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        const std::string text(3, static_cast<char>(byte));
        std::string s = " " + text + " ";
        EXPECT_EQ(trim(s), 2) << byte;
        EXPECT_EQ(s, text) << byte;
    }
}

TEST(Trim, OfExactlySixBytesIsWhiteSpace)
{
    int white = 0;
    for (int byte = 0; byte <= 0xFF; ++byte) {
        std::string s(1, static_cast<char>(byte));
        white += trim(s);
    }
    EXPECT_EQ(white, 6);
}

TEST(TrimOfOneByte, RemovesThatByteAtBothEndsOnly)
{
    const std::vector<Row> rows{{"", "", 0},    {"a", "a", 0},  {"xxaxbxxx", "axb", 5},
                                {"x", "", 1},   {"xxx", "", 3}, {" xax ", " xax ", 0},
                                {"xa", "a", 1}, {"ax", "a", 1}, {"Xax", "Xa", 1}};
    for (const Row& row : rows) {
        std::string s = row.text;
        EXPECT_EQ(trim(s, 'x'), row.removed) << row;
        EXPECT_EQ(s, row.expected) << row;
    }
}

TEST(TrimOfOneByte, TakesAnyByte)
{
    std::string zeros = "\0\0a\0"s;
    EXPECT_EQ(trim(zeros, '\0'), 3);
    EXPECT_EQ(zeros, "a");
    std::string high = "\xFF"
                       "a\xFF";
    EXPECT_EQ(trim(high, '\xFF'), 2);
    EXPECT_EQ(high, "a");
}

TEST(LTrim, RemovesThatByteAtTheBeginningOnly)
{
    const std::vector<Row> rows{{"a", "a", 0}, {"xxax", "ax", 2}, {"ax", "ax", 0}, {" x", " x", 0}, {"xxx a", " a", 3}};
    for (const Row& row : rows) {
        std::string s = row.text;
        EXPECT_EQ(lTrim(s, 'x'), row.removed) << row;
        EXPECT_EQ(s, row.expected) << row;
    }
}

TEST(LTrim, OfTextWithNothingLeftThrows)
{
    // Required, Q-401
    for (const std::string& text : {""s, "x"s, "xxxx"s}) {
        std::string s = text;
        EXPECT_EQ(textOf<std::out_of_range>([&] { lTrim(s, 'x'); }), "basic_string::substr");
        EXPECT_EQ(s, text);
    }
}

TEST(Strip, RemovesByteOutsideQuotesOnly)
{
    std::string s = R"(a b "c d" e)";
    EXPECT_EQ(strip(s, ' ', '"'), 3);
    EXPECT_EQ(s, R"(ab"c d"e)");
}

TEST(Strip, RemovesByteAnywhere)
{
    const std::vector<Row> rows{{"", "", 0},     {"abc", "abc", 0},      {"   ", "", 3},
                                {" a ", "a", 2}, {R"("" )", R"("")", 1}, {R"(" " " ")", R"(" "" ")", 1}};
    for (const Row& row : rows) {
        std::string s = row.text;
        EXPECT_EQ(strip(s, ' ', '"'), row.removed) << row;
        EXPECT_EQ(s, row.expected) << row;
    }
}

TEST(Strip, UnclosedQuoteProtectsTheRest)
{
    std::string s = R"(a b "c d  )";
    EXPECT_EQ(strip(s, ' ', '"'), 2);
    EXPECT_EQ(s, R"(ab"c d  )");
}

TEST(Strip, BackslashTakesAwayMeaningOfNextQuote)
{
    std::string s = R"(a \" b "c \" d" e)";
    EXPECT_EQ(strip(s, ' ', '"'), 4);
    EXPECT_EQ(s, R"(a\"b"c \" d"e)");
}

TEST(Strip, BackslashBehindBackslashProtectsAsWell)
{
    // Required, Q-402
    std::string s = R"(\\" a" b)";
    EXPECT_EQ(strip(s, ' ', '"'), 1);
    EXPECT_EQ(s, R"(\\"a" b)");
}

TEST(Strip, OfQuoteItselfKeepsOpeningMarks)
{
    // Required, Q-403
    std::string s = "'a''b'";
    EXPECT_EQ(strip(s, '\'', '\''), 2);
    EXPECT_EQ(s, "'a'b");
}

TEST(Strip, DroppedBackslashStillProtects)
{
    std::string s = R"(\" \" ")";
    EXPECT_EQ(strip(s, '\\', '"'), 2);
    EXPECT_EQ(s, R"(" " ")");
}

int modelStrip(std::string& s, char c, char q)
{
    std::string copy;
    int count = 0;
    bool inQuote = false;
    for (std::size_t i = 0; i < s.size(); ++i) {
        const bool isProtected = i > 0 && s[i - 1] == '\\';
        inQuote = s[i] == q && !isProtected ? !inQuote : inQuote;
        if (s[i] == c && !inQuote) {
            ++count;
        } else {
            copy += s[i];
        }
    }
    s = copy;
    return count;
}

TEST(Strip, AgreesWithModel)
{
    RandomText random;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = random.text("a \"\\", 12);
        const char c = random.one("a \"\\");
        const char q = random.one("\" \\");
        std::string s = text;
        std::string expected = text;
        const int count = modelStrip(expected, c, q);
        EXPECT_EQ(strip(s, c, q), count) << "text '" << text << "', c '" << c << "', q '" << q << "'";
        EXPECT_EQ(s, expected) << "text '" << text << "', c '" << c << "', q '" << q << "'";
    }
}

TEST(Trim, AgreesWithModel)
{
    RandomText random;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = random.text(" \t\nx", 8);
        std::string s = text;
        const auto first = text.find_first_not_of(everyWhite);
        const auto last = text.find_last_not_of(everyWhite);
        const std::string expected = first == std::string::npos ? "" : text.substr(first, last - first + 1);
        EXPECT_EQ(trim(s), static_cast<int>(text.size() - expected.size())) << "text '" << text << "'";
        EXPECT_EQ(s, expected);
    }
}

} // namespace

} // namespace KelvoBase::test
