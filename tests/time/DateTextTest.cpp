#include "time/DateText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>

namespace
{

using KelvoBase::DateNumbers;
using KelvoBase::scanDate;

std::optional<DateNumbers> scannedByLibrary(const std::string& text)
{
    DateNumbers numbers{};
    if (std::sscanf(text.c_str(), "%d-%d-%d", &numbers.year, &numbers.month, &numbers.day) != 3) {
        return std::nullopt;
    }
    return numbers;
}

std::string shown(const std::optional<DateNumbers>& numbers)
{
    return numbers ? std::to_string(numbers->year) + "|" + std::to_string(numbers->month) + "|" +
                         std::to_string(numbers->day)
                   : "none";
}

/// Whether more than nine digits stand together.
bool hasLongNumber(const std::string& text)
{
    int digits = 0;
    for (const char c : text) {
        digits = '0' <= c && c <= '9' ? digits + 1 : 0;
        if (digits > 9) {
            return true;
        }
    }
    return false;
}

TEST(DateTextTest, NumbersAreRead)
{
    const std::pair<std::string, std::string> rows[] = {
        {"2005-02-31", "2005|2|31"},
        {"1--2--3", "1|-2|-3"},
        {"-1-2-3", "-1|2|3"},
        {"+1-+2-+3", "1|2|3"},
        {"-0-0-0", "0|0|0"},
        {" 1- 2- 3", "1|2|3"},
        {" \t\n\v\f\r1-2-3", "1|2|3"},
        {"1-\n+2-\n-3rest", "1|2|-3"},
        {"1-2-3-4", "1|2|3"},
        {"2147483647--2147483648-007", "2147483647|-2147483648|7"},
        {"00000000000000000000001-2-3", "1|2|3"},
    };
    for (const auto& [text, numbers] : rows) {
        EXPECT_EQ(numbers, shown(scanDate(text.c_str()))) << text;
        EXPECT_EQ(numbers, shown(scannedByLibrary(text))) << text;
    }
}

TEST(DateTextTest, TextsWithFewerThanThreeNumbersAreRefused)
{
    const std::string texts[] = {"",        "-",      "+",       "1",       "1-",      "1-2",     "1-2-",
                                 "1-2-x",   "1 -2-3", "1-2 -3",  "+ 1-2-3", "+-1-2-3", "-+1-2-3", "--1-2-3",
                                 "++1-2-3", "1_2_3",  "1.0-2-3", "0x1-2-3", "1-2-+",   "1-2--",   "1---2-3"};
    for (const std::string& text : texts) {
        EXPECT_EQ("none", shown(scanDate(text.c_str()))) << text;
        EXPECT_EQ("none", shown(scannedByLibrary(text))) << text;
    }
}

TEST(DateTextTest, NumberBeyondAnIntIsNone)
{
    const std::string texts[] = {"2147483648-1-1", "-2147483649-1-1", "1-4294967297-1", "1-1-9223372036854775808",
                                 "18446744073709551617-1-1"};
    for (const std::string& text : texts) {
        EXPECT_EQ("none", shown(scanDate(text.c_str()))) << text;
    }
}

TEST(DateTextTest, RandomTextsAreReadAsTheLibraryDoes)
{
    std::mt19937 random(19991231);
    const std::string alphabet = "00123456789----+ \t\nx";
    std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
    std::uniform_int_distribution<int> length(0, 14);
    int accepted = 0;
    for (int i = 0; i < 300000; ++i) {
        std::string text;
        for (int n = length(random); n > 0; --n) {
            text += alphabet[letter(random)];
        }
        if (hasLongNumber(text)) {
            continue; // might not fit an int
        }
        const std::string found = shown(scanDate(text.c_str()));
        accepted += found != "none" ? 1 : 0;
        ASSERT_EQ(shown(scannedByLibrary(text)), found) << '"' << text << '"';
    }
    EXPECT_LT(10000, accepted);
}

} // namespace
