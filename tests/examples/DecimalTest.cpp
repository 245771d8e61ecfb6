#include "Decimal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <string>

namespace seriesstat
{

namespace
{

struct Row
{
    const char* text;
    double high;
    double low;
};

TEST(DecimalTest, TextGivesTheNearestDoubleAndWhatItLacks)
{
    const Row rows[] = {
        {"0", 0, 0},
        {"1", 1, 0},
        {"-1", -1, 0},
        {"+2.5", 2.5, 0},
        {".5", 0.5, 0},
        {"5.", 5, 0},
        {"-1.5e-3", -1.5e-3, 3.1225022567582529e-20},
        {"1E2", 100, 0},
        {"1e+2", 100, 0},
        {"007", 7, 0},
        {"0.1", 0.1, -5.5511151231257827e-18},
        {"-0.1", -0.1, 5.5511151231257827e-18},
        {"9007199254740993", 9007199254740992, 1},
        {"1e23", 99999999999999991611392.0, 8388608},
        {"123456789012345678901234567890", 123456789012345677877719597056.0, 1023514970834},
        {"1000000.20000000000000000000000000000000000", 1000000.2, 4.6566128730773926e-11},
        {"0.00000000000000000000000000000000000000001e41", 1, 0},
        {"100000000000000000000000000000000000000000e-41", 1, 0},
    };
    for (const Row& row : rows) {
        DoubleDouble value{-7, -7};
        EXPECT_EQ(std::errc(), readDecimal(row.text, value)) << row.text;
        EXPECT_EQ(row.high, value.high) << row.text;
        EXPECT_NEAR(row.low, value.low, 1e-12 * std::abs(row.low)) << row.text;
    }
}

TEST(DecimalTest, NumbersFarFromOneHaveTheDigitsOfADouble)
{
    const Row rows[] = {
        {"1.1e300", 1.1e300, 0},   {"-1.7976931348623157e308", -1.7976931348623157e308, 0},
        {"1.1e-300", 1.1e-300, 0}, {"5e-324", 5e-324, 0},
        {"-1.1e251", -1.1e251, 0}, {"0e99999999999", 0, 0},
    };
    for (const Row& row : rows) {
        DoubleDouble value{-7, -7};
        EXPECT_EQ(std::errc(), readDecimal(row.text, value)) << row.text;
        EXPECT_EQ(row.high, value.high) << row.text;
        EXPECT_EQ(0, value.low) << row.text;
    }
}

TEST(DecimalTest, WhatIsNoNumberFromEndToEndIsRefused)
{
    for (const char* text :
         {"",     " ",    " 1",       "1 ",     "1 2",   "abc",   "1a",  "1,5",      "1e",  "1e+", "e5",
          ".",    "+",    "-",        "+-1",    "-+1",   "++1",   "--1", "0x10",     "nan", "NaN", "inf",
          "-inf", "+inf", "Infinity", "nan(1)", "1.2.3", "1_000", "1d5", "\xD9\xA1", "1\n"}) {
        DoubleDouble value{-7, -7};
        EXPECT_EQ(std::errc::invalid_argument, readDecimal(text, value)) << '"' << text << '"';
        EXPECT_EQ(-7, value.high) << '"' << text << '"';
    }
}

TEST(DecimalTest, ZeroByteIsNoPartOfANumber)
{
    DoubleDouble value;
    EXPECT_EQ(std::errc::invalid_argument, readDecimal(std::string_view("1\0", 2), value));
}

TEST(DecimalTest, NumberThatNoDoubleComesNearIsOutOfRange)
{
    for (const char* text : {"1e999", "-1e999", "1e309", "1e-999", "1e99999999999"}) {
        DoubleDouble value{-7, -7};
        EXPECT_EQ(std::errc::result_out_of_range, readDecimal(text, value)) << text;
        EXPECT_EQ(-7, value.high) << text;
    }
}

/// `digits` with a point in front of the last `places`.
std::string decimalText(std::int64_t digits, unsigned int places)
{
    std::string text = std::to_string(digits);
    text.insert(0, text.size() > places ? 0 : places + 1 - text.size(), '0');
    return text.insert(text.size() - places, ".");
}

TEST(DecimalTest, DifferencesOfRandomDecimalsAreThoseOfTheirDigits)
{
    std::mt19937_64 random(20);
    std::uniform_int_distribution<std::int64_t> anyDigits(0, 1000000000000);
    std::uniform_int_distribution<unsigned int> anyPlaces(0, 15);
    for (int i = 0; i < 5000; ++i) {
        const unsigned int places = anyPlaces(random);
        const std::int64_t a = anyDigits(random);
        const std::int64_t b = anyDigits(random);
        DoubleDouble valueA;
        DoubleDouble valueB;
        ASSERT_EQ(std::errc(), readDecimal(decimalText(a, places), valueA));
        ASSERT_EQ(std::errc(), readDecimal(decimalText(b, places), valueB));
        const double power = std::pow(10.0, places); // exact up to 10^22, and so is the difference: one rounding
        const double expected = static_cast<double>(a - b) / power;
        EXPECT_NEAR(expected, (valueA - valueB).high, std::abs(expected) * 2.3e-16) << a << ' ' << b << ' ' << places;
    }
}

} // namespace

} // namespace seriesstat
