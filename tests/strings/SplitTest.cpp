#include "strings/RandomText.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>

#include <boost/tokenizer.hpp>
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
using Pieces = std::vector<std::string>;

struct Row
{
    std::string text;
    std::string separators;
    std::string escapes;
    std::string quotes;
    Pieces expected;
};

std::ostream& operator<<(std::ostream& out, const Row& row)
{
    return out << "text '" << row.text << "', separators '" << row.separators << "', escapes '" << row.escapes
               << "', quotes '" << row.quotes << "'";
}

void expectPieces(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        Pieces out;
        EXPECT_EQ(split(row.text, out, row.separators, row.escapes, row.quotes), row.expected.size()) << row;
        EXPECT_EQ(out, row.expected) << row;
    }
}

TEST(Split, SeparatorEndsTokenAndEmptyTokensAreKept)
{
    expectPieces({{"a", ",", "", "", {"a"}},
                  {"a,b", ",", "", "", {"a", "b"}},
                  {"a,", ",", "", "", {"a", ""}},
                  {",a", ",", "", "", {"", "a"}},
                  {"a,,b", ",", "", "", {"a", "", "b"}},
                  {",", ",", "", "", {"", ""}},
                  {",,", ",", "", "", {"", "", ""}},
                  {"a,b;c", ",;", "", "", {"a", "b", "c"}},
                  {"a b", ",", "", "", {"a b"}},
                  {"a\0b"s, "\0"s, "", "", {"a", "b"}},
                  {"a\xFF"
                   "b",
                   "\xFF",
                   "",
                   "",
                   {"a", "b"}}});
}

TEST(Split, QuotedStretchHidesSeparatorsAndLosesItsQuotes)
{
    expectPieces({{"a,\"b,c\",", ",", "", "\"", {"a", "b,c", ""}},
                  {"\"\"", ",", "", "\"", {""}},
                  {"\"", ",", "", "\"", {""}},
                  {"a\"b\"c", ",", "", "\"", {"abc"}},
                  {"\"a\"\"b\"", ",", "", "\"", {"ab"}},
                  {"\"a,b", ",", "", "\"", {"a,b"}},
                  {"\"a,'b,c", ",", "", "\"'", {"a,b", "c"}},
                  {"\"a\\\",b", ",", "", "\"", {"a\\", "b"}}});
}

TEST(Split, EscapeTakesNextByteInsideAndOutsideQuotes)
{
    expectPieces({{"a\\,b", ",", "\\", "\"", {"a,b"}},
                  {"a\\nb", ",", "\\", "\"", {"a\nb"}},
                  {"a\\\\,b", ",", "\\", "\"", {"a\\", "b"}},
                  {"a\\\"b,c", ",", "\\", "\"", {"a\"b", "c"}},
                  {"\"a\\\",b\",c", ",", "\\", "\"", {"a\",b", "c"}},
                  {"\"a\\nb\"", ",", "\\", "\"", {"a\nb"}},
                  {"a^\\b", ",", "\\^", "\"", {"a\\b"}},
                  {"\\nn", "n", "\\", "", {"\n", ""}}});
}

TEST(Split, WithoutRolesGivesTheText)
{
    expectPieces({{"a,\"b\\n", "", "", "", {"a,\"b\\n"}}, {"\\", ",", "", "\"", {"\\"}}});
}

TEST(Split, ByteOfSeveralRolesIsAnEscapeThenASeparator)
{
    expectPieces({{"a,b", ",", "", ",", {"a", "b"}}, {"a,,b", ",", ",", ",", {"a,b"}}, {"''", "", "'", "'", {"'"}}});
}

TEST(Split, OfEmptyTextGivesNoToken)
{
    Pieces out;
    EXPECT_EQ(split("", out, ",", "\\", "\""), 0U);
    EXPECT_EQ(out, Pieces());
    out = {"x"};
    EXPECT_EQ(split("", out, ",", "\\", "\""), 1U);
    EXPECT_EQ(out, Pieces({"x"}));
}

TEST(Split, AppendsAndReturnsTheTotal)
{
    // Required, Q-407
    Pieces out{"x", "y"};
    EXPECT_EQ(split("a,b,c", out, ",", "", ""), 5U);
    EXPECT_EQ(out, Pieces({"x", "y", "a", "b", "c"}));
}

std::string failureOf(const std::string& text, Pieces& out)
{
    return textOf<OperationFailedException>([&] { split(text, out, ",", "\\", "\""); });
}

TEST(Split, OfTextThatEndsWithEscapeThrows)
{
    for (const std::string& text : {"\\"s, "abc\\"s, "\"abc\\"s, "a\\\\\\"s}) {
        Pieces out;
        EXPECT_EQ(failureOf(text, out), "cannot end with escape") << text;
        EXPECT_EQ(out, Pieces()) << text;
    }
}

TEST(Split, OfUnknownEscapeThrows)
{
    for (const std::string& text : {"\\a"s, "ab\\N"s, "\"\\'\""s, "\\\0"s, "\\ "s}) {
        Pieces out;
        EXPECT_EQ(failureOf(text, out), "unknown escape sequence") << text;
        EXPECT_EQ(out, Pieces()) << text;
    }
}

TEST(Split, FailureKeepsTokensAppendedBefore)
{
    Pieces out{"x"};
    EXPECT_EQ(failureOf("a,b,c\\z,d", out), "unknown escape sequence");
    EXPECT_EQ(out, Pieces({"x", "a", "b"}));
}

/// What the tokenizer that gave `split` its rules appends; the text of its failure, or an empty one.
std::string modelSplit(const Row& row, Pieces& out)
{
    using Separator = boost::escaped_list_separator<char>;
    try {
        boost::tokenizer<Separator> tokens(row.text, Separator(row.escapes, row.separators, row.quotes));
        for (const std::string& token : tokens) {
            out.push_back(token);
        }
    } catch (const boost::escaped_list_error& e) {
        return e.what();
    }
    return {};
}

TEST(Split, AgreesWithTokenizer)
{
    RandomText random;
    int failures = 0;
    for (int i = 0; i < 60000; ++i) {
        const Row row{
            random.text("ab,;\"'\\n", 14), random.text(",;'\\n", 2), random.text("\\;", 2), random.text("\"',", 2), {}};
        Pieces expected{"before"};
        const std::string failure = modelSplit(row, expected);
        Pieces out{"before"};
        if (failure.empty()) {
            EXPECT_EQ(split(row.text, out, row.separators, row.escapes, row.quotes), expected.size()) << row;
        } else {
            ++failures;
            EXPECT_EQ(textOf<OperationFailedException>(
                          [&] { split(row.text, out, row.separators, row.escapes, row.quotes); }),
                      failure)
                << row;
        }
        EXPECT_EQ(out, expected) << row;
    }
    EXPECT_GT(failures, 1000);
}

TEST(SplitBySeparator, CutsAtSingleSeparatorsOnly)
{
    const std::vector<std::pair<std::string, Pieces>> rows{{"", {""}},
                                                           {"a", {"a"}},
                                                           {"a,b", {"a", "b"}},
                                                           {"a,", {"a", ""}},
                                                           {"a,b,c", {"a", "b", "c"}},
                                                           {"a,,b,c", {"a,,b", "c"}},
                                                           {"a,,", {"a,,"}},
                                                           {"a,,,b", {"a,,", "b"}},
                                                           {"a,,,,b", {"a,,,,b"}},
                                                           {"a,b,,", {"a", "b,,"}}};
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(splitBySeparator(text, ","), expected) << text;
    }
}

TEST(SplitBySeparator, OfSeveralBytesCutsAtAnyAndStepsOverAsMany)
{
    EXPECT_EQ(splitBySeparator("aaa,xb;yc", ",;"), Pieces({"aaa", "b", "c"}));
    EXPECT_EQ(splitBySeparator("aa,x;bb;cc", ",;"), Pieces({"aa,x;bb", "c"}));
}

TEST(SplitBySeparator, OfSeveralBytesThrowsForCutBehindTheEnd)
{
    EXPECT_EQ(textOf<std::out_of_range>([] { splitBySeparator("abc,", ",;"); }), "basic_string::substr");
    EXPECT_EQ(splitBySeparator("abc,x", ",;"), Pieces({"abc", ""}));
}

/// The steps to the letter; nothing where a cut lies behind the end.
std::optional<Pieces> modelSplitBySeparator(const std::string& s, const std::string& separators)
{
    Pieces pieces;
    std::size_t pos = 0;
    while (pos <= s.size()) {
        const unsigned int hit = findsep(s, separators, static_cast<unsigned int>(pos));
        const bool last = hit == static_cast<unsigned int>(std::string::npos);
        pieces.push_back(last ? s.substr(pos) : s.substr(pos, hit - pos));
        if (last) {
            return pieces;
        }
        pos = hit + separators.size();
    }
    return std::nullopt;
}

TEST(SplitBySeparator, AgreesWithModelWhereItReturns)
{
    RandomText random;
    int failures = 0;
    for (int i = 0; i < 30000; ++i) {
        const std::string separators = std::string(",;:").substr(0, 1 + random.below(3));
        const std::string text = "aaa" + random.text("ab,;:", 14);
        if (const auto expected = modelSplitBySeparator(text, separators)) {
            EXPECT_EQ(splitBySeparator(text, separators), *expected) << text << ' ' << separators;
        } else {
            ++failures;
            EXPECT_EQ(textOf<std::out_of_range>([&] { splitBySeparator(text, separators); }), "basic_string::substr");
        }
    }
    EXPECT_GT(failures, 100);
}

TEST(SplitByLength, AlwaysAddsTheRemainder)
{
    // Required, Q-408
    struct LengthRow
    {
        std::string text;
        unsigned int length;
        Pieces expected;
    };
    const std::vector<LengthRow> rows{{"abcd", 2, {"ab", "cd", ""}},   {"abcde", 2, {"ab", "cd", "e"}},
                                      {"ab", 2, {"ab", ""}},           {"a", 2, {"a"}},
                                      {"abc", 1, {"a", "b", "c", ""}}, {"abc", 4294967295U, {"abc"}}};
    for (const LengthRow& row : rows) {
        Pieces out;
        EXPECT_EQ(splitByLength(row.text, out, row.length), static_cast<int>(row.expected.size())) << row.text;
        EXPECT_EQ(out, row.expected) << row.text;
    }
}

TEST(SplitByLength, OfEmptyTextGivesOneEmptyPieceForEveryLength)
{
    for (const unsigned int length : {0U, 1U, 7U}) {
        Pieces out;
        EXPECT_EQ(splitByLength("", out, length), 1) << length;
        EXPECT_EQ(out, Pieces({""})) << length;
    }
}

TEST(SplitByLength, AppendsAndReturnsWhatItAdded)
{
    Pieces out{"x", "y"};
    EXPECT_EQ(splitByLength("abc", out, 2), 2);
    EXPECT_EQ(out, Pieces({"x", "y", "ab", "c"}));
}

TEST(SplitByLength, CutsEveryTextEvenly)
{
    for (unsigned int length = 1; length < 40; ++length) {
        for (std::size_t size = 0; size < 200; ++size) {
            Pieces out;
            const std::string text(size, 'a');
            ASSERT_EQ(splitByLength(text, out, length), static_cast<int>(size / length + 1)) << size << ' ' << length;
            ASSERT_EQ(join(out, ""), text);
            ASSERT_EQ(out.back().size(), size % length);
        }
    }
}

TEST(Join, PutsSeparatorBetweenParts)
{
    EXPECT_EQ(join({}, ","), "");
    EXPECT_EQ(join({"a"}, ","), "a");
    EXPECT_EQ(join({""}, ","), "");
    EXPECT_EQ(join({"", ""}, ","), ",");
    EXPECT_EQ(join({"a", "b", "c"}, ","), "a,b,c");
    EXPECT_EQ(join({"a", "", "c"}, ", "), "a, , c");
    EXPECT_EQ(join({"a", "b"}, ""), "ab");
    EXPECT_EQ(join({"a", "b"}, "\0"s), "a\0b"s);
}

} // namespace

} // namespace KelvoBase::test
