#include "strings/RandomText.h"

#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace KelvoBase::test
{

namespace
{

using Lines = std::vector<std::string>;

struct Row
{
    std::string text;
    unsigned int width;
    Lines expected;
};

void expectLines(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        EXPECT_EQ(wordwrap(row.text, row.width), row.expected) << "text '" << row.text << "', width " << row.width;
    }
}

TEST(Wordwrap, BreaksAtLastBlankInReach)
{
    expectLines({{"abc def", 3, {"abc", "def"}},
                 {"abc def", 4, {"abc", "def"}},
                 {"abc def", 6, {"abc", "def"}},
                 {"abc def", 7, {"abc def"}},
                 {"a b c d", 3, {"a b", "c d"}},
                 {"one two three", 8, {"one two", "three"}}});
}

TEST(Wordwrap, CutsLongWordHard)
{
    expectLines({{"abcdefgh", 3, {"abc", "def", "gh"}},
                 {"abcdef", 3, {"abc", "def"}},
                 {"ab cdefgh", 3, {"ab", "cde", "fgh"}},
                 {"ab", 1, {"a", "b"}}});
}

TEST(Wordwrap, OfEmptyTextGivesOneEmptyLine)
{
    expectLines({{"", 5, {""}}, {"", 0, {""}}, {"a", 5, {"a"}}});
}

TEST(Wordwrap, KeepsBlanksInARow)
{
    expectLines({{"ab  cd", 3, {"ab ", "cd"}}, {"ab   cd", 3, {"ab ", " cd"}}, {"ab    cd", 3, {"ab ", " ", "cd"}}});
}

TEST(Wordwrap, BreaksAtLastLineEndInReach)
{
    // Required, Q-409
    expectLines({{"ab\ncd ef gh", 6, {"ab", "cd ef", "gh"}}, {"a\nb\nc dddd", 5, {"a\nb", "c", "dddd"}}});
}

TEST(Wordwrap, PrefersLineEndToLaterBlank)
{
    expectLines({{"a\nb c d e f", 6, {"a", "b c d", "e f"}}});
}

TEST(Wordwrap, RestThatFitsKeepsItsLineEnds)
{
    // Required, Q-409
    expectLines({{"a\nb", 9, {"a\nb"}}, {"aaaa b\nc\nd", 5, {"aaaa", "b\nc\nd"}}});
}

TEST(Wordwrap, BlankAtBeginningOfLineIsABreak)
{
    // Required, Q-409
    expectLines({{" abcdef", 3, {"", "abc", "def"}}, {" abcd", 4, {"", "abcd"}}});
}

TEST(Wordwrap, LineEndAtBeginningOfLineIsNone)
{
    // Required, Q-409
    expectLines({{"\nabcdef", 3, {"\nab", "cde", "f"}}, {"\na bcd", 3, {"\na", "bcd"}}});
}

TEST(Wordwrap, BreakCharacterJustBehindTheWidthIsDropped)
{
    expectLines({{"abc\ndef", 3, {"abc", "def"}}, {"abc ", 3, {"abc", ""}}, {"abc\n", 3, {"abc", ""}}});
}

TEST(Wordwrap, OfWidthZeroBreaksAtBlanksOnly)
{
    expectLines({{" ", 0, {"", ""}}, {"  ", 0, {"", "", ""}}});
}

TEST(Wordwrap, TakesTheWidestWidth)
{
    expectLines({{"a b c", std::numeric_limits<unsigned int>::max(), {"a b c"}}});
}

Lines modelWordwrap(const std::string& s, std::size_t width)
{
    Lines lines;
    std::size_t start = 0;
    std::size_t end = width;
    while (s.length() > end) {
        bool hard = false;
        std::size_t p = s.rfind("\n", end);
        if (p == std::string::npos || p <= start) {
            p = s.rfind(" ", end);
            if (p == std::string::npos || p < start) {
                hard = true;
                p = start + width;
            }
        }
        lines.push_back(s.substr(start, p - start));
        start = hard ? p : p + 1;
        end = start + width;
    }
    lines.push_back(s.substr(start));
    return lines;
}

TEST(Wordwrap, AgreesWithModel)
{
    RandomText random;
    for (int i = 0; i < 30000; ++i) {
        const std::string text = random.text("abc \n", 20);
        const auto width = static_cast<unsigned int>(1 + random.below(8));
        EXPECT_EQ(wordwrap(text, width), modelWordwrap(text, width)) << "text '" << text << "', width " << width;
    }
}

} // namespace

} // namespace KelvoBase::test
