#include "strings/RandomText.h"

#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace KelvoBase::test
{

namespace
{

using namespace std::string_literals;

std::string everyByte()
{
    std::string bytes;
    for (int byte = 0; byte <= 0xFF; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST(ToUpper, ChangesLowerCaseLettersOnly)
{
    EXPECT_EQ(toUpper(""), "");
    EXPECT_EQ(toUpper("aBc1-z\n"), "ABC1-Z\n");
    std::string expected = everyByte();
    for (char& c : expected) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    EXPECT_EQ(toUpper(everyByte()), expected);
}

TEST(ToLower, ChangesUpperCaseLettersOnly)
{
    EXPECT_EQ(toLower(""), "");
    EXPECT_EQ(toLower("AbC1-Z\n"), "abc1-z\n");
    std::string expected = everyByte();
    for (char& c : expected) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    EXPECT_EQ(toLower(everyByte()), expected);
}

TEST(IsUpper, IsFalseForLowerCaseLettersOnly)
{
    EXPECT_TRUE(isUpper(""));
    EXPECT_TRUE(isUpper("A1-"));
    EXPECT_TRUE(isUpper("1-\xE4 "));
    EXPECT_FALSE(isUpper("Aa"));
    EXPECT_FALSE(isUpper("a"));
    for (const char c : everyByte()) {
        EXPECT_EQ(isUpper(std::string(1, c)), c < 'a' || c > 'z') << static_cast<int>(c);
    }
}

TEST(Stringhash, TakesHighBitsInFrontOfTheShift)
{
    // Required, Q-417
    EXPECT_EQ(stringhash(""), 0U);
    EXPECT_EQ(stringhash("a"), 97U);
    EXPECT_EQ(stringhash("abc"), 26499U);
    EXPECT_EQ(stringhash("abcdefghij"), 180141930U);
}

TEST(Stringhash, TakesBytesAsSigned)
{
    EXPECT_EQ(stringhash("\xFF"), 0xFFFFFFFFU);
    EXPECT_EQ(stringhash("\x80"), 0xFFFFFF80U);
    EXPECT_EQ(stringhash("\x7F"), 0x7FU);
    // From 0xFFFFFFFF: the shift gives 0xFFFFFFF0, the next byte 0x10051, cut to 0x51; then ^ 0xF0 ^ 0xF0000000.
    EXPECT_EQ(stringhash("\xFF"
                         "a"),
              0xF00000A1U);
}

/// The hash in 64-bit signed arithmetic, cut after each step.
unsigned int modelHash(const std::string& s)
{
    std::int64_t h = 0;
    for (const char c : s) {
        const int byte = static_cast<unsigned char>(c);
        const std::int64_t high = h / 0x10000000;
        h = (h * 16 + (byte > 127 ? byte - 256 : byte) + 0x100000000) % 0x100000000;
        h = high == 0 ? h : (h ^ (high * 16)) ^ (high * 0x10000000);
    }
    return static_cast<unsigned int>(h);
}

TEST(Stringhash, AgreesWithModel)
{
    RandomText random;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = random.text(everyByte(), 24);
        ASSERT_EQ(stringhash(text), modelHash(text)) << testing::PrintToString(text);
    }
}

TEST(ToOrdinalNumberString, KnowsThreeSpecialNumbersOnly)
{
    // Required, Q-418
    const std::vector<std::pair<unsigned int, std::string>> rows{
        {0, "0th"},   {1, "1st"},   {2, "2nd"},   {3, "3rd"},   {4, "4th"},     {10, "10th"},
        {11, "11th"}, {12, "12th"}, {21, "21th"}, {22, "22th"}, {103, "103th"}, {4294967295U, "4294967295th"}};
    for (const auto& [n, expected] : rows) {
        EXPECT_EQ(toOrdinalNumberString(n), expected);
    }
}

TEST(TrimLength, CutsOrFillsUpWithBlanks)
{
    EXPECT_EQ(trimLength("abc", 5), "abc  ");
    EXPECT_EQ(trimLength("abc", 2), "ab");
    EXPECT_EQ(trimLength("abc", 3), "abc");
    EXPECT_EQ(trimLength("abc", 0), "");
    EXPECT_EQ(trimLength("", 2), "  ");
    EXPECT_EQ(trimLength("", 0), "");
    EXPECT_EQ(trimLength("a\0b"s, 4), "a\0b "s);
}

struct LineRow
{
    std::string read;
    std::string expected;
};

void expectLines(const std::vector<LineRow>& rows)
{
    for (const LineRow& row : rows) {
        std::istringstream in(row.read);
        std::string line = "before";
        getshortline(in, line);
        EXPECT_EQ(line, row.expected) << testing::PrintToString(row.read);
    }
}

TEST(Getshortline, RemovesOneLineEndByte)
{
    expectLines({{"a\n", "a"},
                 {"a", "a"},
                 {"a\r\n", "a"},
                 {"a\r", "a"},
                 {"a\0\n"s, "a"},
                 {"a\0b\n"s, "a\0b"s},
                 {"ab\nc\n", "ab"},
                 {"a \n", "a "}});
}

TEST(Getshortline, RemovesLineEndByteInFrontOfTheLast)
{
    expectLines({{"a\r\r\n", "a"}, {"a\r\0\n"s, "a"}, {"\r\r\n", ""}, {"a\r\r\r\n", "a\r"}});
}

TEST(Getshortline, TestsTheByteInFrontWhetherOrNotTheLastWent)
{
    // Required, Q-419
    expectLines({{"a\rb\n", "ab"}, {"\rb\n", "b"}, {"a\rbc\n", "a\rbc"}});
}

TEST(Getshortline, KeepsZeroInFrontOfTheLast)
{
    expectLines({{"a\0\r\n"s, "a\0"s}, {"a\0\0\n"s, "a\0"s}, {"a\0b\n"s, "a\0b"s}});
}

TEST(Getshortline, GivesEmptyLines)
{
    expectLines({{"\n", ""}, {"\r\n", ""}, {"\0\n"s, ""}, {"\n\nx", ""}});
}

TEST(Getshortline, LeavesTheAnswerToTheStream)
{
    std::istringstream in("a\r\nb");
    std::string line;
    getshortline(in, line);
    EXPECT_TRUE(in.good());
    getshortline(in, line);
    EXPECT_EQ(line, "b");
    EXPECT_TRUE(in.eof());
    EXPECT_FALSE(in.fail());
    getshortline(in, line);
    EXPECT_TRUE(in.fail());
}

TEST(Getshortline, OfStreamAtItsEndTreatsTheOldLine)
{
    std::istringstream in("");
    in.setstate(std::ios::eofbit);
    std::string line = "old\r\n";
    getshortline(in, line);
    EXPECT_EQ(line, "old");
    EXPECT_TRUE(in.fail());
}

TEST(Getshortline, OfEmptyStreamEmptiesTheLine)
{
    expectLines({{"", ""}});
}

TEST(Getshortline, AgreesWithModel)
{
    RandomText random;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = random.text("a\r\0"s, 6);
        std::string expected = text;
        const std::size_t length = text.size();
        if (length != 0) {
            const bool first = "\n\r\0"s.find(text[length - 1]) != std::string::npos;
            const bool second = length != 1 && "\n\r"s.find(text[length - 2]) != std::string::npos;
            expected = text.substr(0, length - (length == 1 ? 1 : 2));
            expected += second || length == 1 ? "" : text.substr(length - 2, 1);
            expected += first ? "" : text.substr(length - 1);
        }
        expectLines({{text + "\n", expected}});
    }
}

} // namespace

} // namespace KelvoBase::test
