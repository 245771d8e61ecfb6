#include "strings/RandomText.h"

#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace KelvoBase::test
{

namespace
{

using namespace std::string_literals;

constexpr auto none = static_cast<unsigned int>(std::string::npos);

struct Row
{
    std::string text;
    std::string separators;
    unsigned int pos;
    unsigned int expected;
};

void expectFound(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        EXPECT_EQ(findsep(row.text, row.separators, row.pos), row.expected)
            << "text '" << row.text << "', separators '" << row.separators << "', from " << row.pos;
    }
}

TEST(Findsep, FindsNextSingleSeparator)
{
    expectFound({{"a,b", ",", 0, 1},
                 {"a,b", ",", 1, 1},
                 {"a,b,c", ",", 2, 3},
                 {"a,", ",", 0, 1},
                 {",a", ",", 0, 0},
                 {"a,bb;c", ",;", 0, 1},
                 {"a\0b"s, "\0"s, 0, 1}});
}

TEST(Findsep, StepsOverDoubledSeparators)
{
    expectFound({{"a,,b,c", ",", 0, 4}, {"a,,,b", ",", 0, 3}, {"a,,,,b,", ",", 0, 6}, {",,a,", ",", 0, 3}});
}

TEST(Findsep, OfTextWithoutSingleSeparatorGivesNothing)
{
    expectFound({{"abc", ",", 0, none},
                 {"", ",", 0, none},
                 {"a,b", ",", 2, none},
                 {"a,,b", ",", 0, none},
                 {"a,b", ",", 99, none},
                 {"a,b", ",", none, none}});
}

TEST(Findsep, StepsByTheLengthOfTheSet)
{
    expectFound({{"a,;b", ",;", 0, 1}, {"ab,x;c,d", ",;", 0, 6}, {"abc,d", ",;:", 0, 3}});
}

TEST(Findsep, FailedSearchFindsSeparatorInFrontOfItsStart)
{
    // Required, Q-410
    expectFound({{",a,b", ",", 3, 2},
                 {",a,b,c", ",", 5, 2},
                 {",a,,b,c", ",", 6, 5},
                 {"x,yz,a", ",;", 6, 4},
                 {"a,b;c", ",;", 0, 3}});
}

/// The algorithm to the letter; nothing where it comes back to the same place.
std::optional<std::size_t> modelFindsep(const std::string& s, const std::string& separators, std::size_t pos)
{
    const std::size_t n = separators.length();
    std::size_t i = s.find_first_of(separators, pos);
    for (std::size_t steps = 0; steps < 3 * s.size() + 3; ++steps) {
        const std::size_t j = s.find_first_of(separators, i + n);
        if (j != i + n) {
            return i;
        }
        i = s.find_first_of(separators, j + n);
    }
    return std::nullopt;
}

TEST(Findsep, AgreesWithModelWhereItReturns)
{
    RandomText random;
    int wrapped = 0;
    int endless = 0;
    for (int i = 0; i < 60000; ++i) {
        const std::string text = random.text("abc,;", 12);
        const std::string separators = random.text(",;:", 3);
        const auto pos = static_cast<unsigned int>(random.below(14));
        const auto expected = modelFindsep(text, separators, pos);
        if (!expected) {
            ++endless;
            continue;
        }
        wrapped += *expected < pos ? 1 : 0;
        ASSERT_EQ(findsep(text, separators, pos), static_cast<unsigned int>(*expected))
            << "text '" << text << "', separators '" << separators << "', from " << pos;
    }
    EXPECT_GT(wrapped, 100);
    EXPECT_GT(endless, 100);
}

struct BetweenRow
{
    std::string text;
    std::string begin;
    std::string end;
    std::string expected;
    std::string left;
};

void expectBetween(const std::vector<BetweenRow>& rows)
{
    for (const BetweenRow& row : rows) {
        std::string s = row.text;
        EXPECT_EQ(betweenStr(s, row.begin, row.end), row.expected) << row.text << ' ' << row.begin << ' ' << row.end;
        EXPECT_EQ(s, row.left) << row.text << ' ' << row.begin << ' ' << row.end;
    }
}

TEST(BetweenStr, KeepsEndMarkerInText)
{
    // Required, Q-416
    expectBetween({{"x<y>z", "<", ">", "y", ">z"},
                   {"x<>z", "<", ">", "", ">z"},
                   {"<y>", "<", ">", "y", ">"},
                   {"a[[b]]c", "[[", "]]", "b", "]]c"},
                   {"x'y'z'", "'", "'", "y", "'z'"}});
}

TEST(BetweenStr, WithoutBeginLeavesText)
{
    expectBetween(
        {{"xyz", "<", ">", "", "xyz"}, {"x>z", "<", ">", "", "x>z"}, {"", "<", ">", "", ""}, {"", "", "", "", ""}});
}

TEST(BetweenStr, WithoutEndTakesTheRest)
{
    expectBetween({{"x<y", "<", ">", "y", ""}, {">x<y", "<", ">", "y", ""}, {"x<", "<", ">", "", ""}});
}

TEST(BetweenStr, OfEmptyEndTakesTheRest)
{
    expectBetween({{"x<y", "<", "", "y", ""}, {"x<", "<", "", "", ""}, {"xyz", "", "", "xyz", ""}});
}

TEST(BetweenStr, OfEmptyBeginStartsAtTheBeginning)
{
    expectBetween({{"xy>z", "", ">", "xy", ">z"}, {">z", "", ">", "", ">z"}});
}

std::string modelBetween(std::string& s, const std::string& begin, const std::string& end)
{
    if (s.empty()) {
        return "";
    }
    const std::size_t hit = s.find(begin, 0);
    if (hit == std::string::npos) {
        return "";
    }
    const std::size_t start = hit + begin.length();
    const std::size_t stop = end.empty() ? s.length() : s.find(end, start);
    if (start == stop) {
        s = s.substr(stop);
        return "";
    }
    const std::string result = s.substr(start, stop - start);
    s = s.length() > stop ? s.substr(stop) : "";
    return result;
}

TEST(BetweenStr, AgreesWithModel)
{
    RandomText random;
    for (int i = 0; i < 30000; ++i) {
        const std::string text = random.text("a<>", 10);
        const std::string begin = random.text("a<>", 2);
        const std::string end = random.text("a<>", 2);
        std::string expectedLeft = text;
        const std::string expected = modelBetween(expectedLeft, begin, end);
        expectBetween({{text, begin, end, expected, expectedLeft}});
    }
}

} // namespace

} // namespace KelvoBase::test
