#include "any/NumberText.h"

#include "any/GroupedLocale.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>

using namespace KelvoBase;
using KelvoBase::test::GroupedLocale;
using KelvoBase::test::textOf;

namespace
{

template <typename Number>
class NumberText : public testing::Test
{
};
using Numbers = testing::Types<int, unsigned int, long, unsigned long, double>;
TYPED_TEST_SUITE(NumberText, Numbers);

template <typename Number>
struct Reading
{
    bool success;
    Number value;
};

/// What a stream makes of a text; 77 stands for a value that was not touched.
template <typename Number>
Reading<Number> readByStream(const std::string& text)
{
    std::stringstream stream;
    stream.imbue(std::locale::classic());
    stream << text.c_str();
    Reading<Number> reading{false, Number{77}};
    reading.success = static_cast<bool>(stream >> reading.value);
    return reading;
}

template <typename Number>
Reading<Number> readByLibrary(const std::string& text)
{
    Reading<Number> reading{false, Number{77}};
    reading.success = readNumber(text, reading.value);
    return reading;
}

/// Every bit counts, the sign of a zero too.
template <typename Number>
std::uint64_t bitsOf(Number value)
{
    if constexpr (std::is_same_v<Number, double>) {
        return std::bit_cast<std::uint64_t>(value);
    } else {
        return static_cast<std::uint64_t>(value);
    }
}

template <typename Number>
testing::AssertionResult isReadLikeAStream(const std::string& text)
{
    const Reading<Number> expected = readByStream<Number>(text);
    const Reading<Number> actual = readByLibrary<Number>(text);
    if (expected.success == actual.success && bitsOf(expected.value) == bitsOf(actual.value)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << testing::PrintToString(text) << ": stream " << expected.success << ' '
                                       << expected.value << ", library " << actual.success << ' ' << actual.value;
}

template <typename Number>
std::string writtenByStream(Number value)
{
    if constexpr (std::is_same_v<Number, double>) {
        if (std::isnan(value)) { // not every run-time writes its sign
            return std::signbit(value) ? "-nan" : "nan";
        }
    }
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << value;
    return stream.str();
}

template <typename Number>
std::string writtenByLibrary(Number value)
{
    std::array<char, numberTextSize> range;
    return std::string(writeNumber(value, range));
}

template <typename Number>
Number randomNumber(std::mt19937_64& random)
{
    if constexpr (std::is_same_v<Number, double>) {
        return std::bit_cast<double>(random());
    } else {
        // Few bits as often as many, so that small numbers and the limits are met.
        const auto value = static_cast<Number>(random() >> (random() % 64U));
        return random() % 8U == 0 ? std::numeric_limits<Number>::max() - static_cast<Number>(random() % 3U) : value;
    }
}

std::string randomText(std::mt19937_64& random, const std::string& alphabet, std::size_t longest)
{
    std::string text;
    for (std::size_t length = static_cast<std::size_t>(random() % (longest + 1)); length > 0; --length) {
        text += alphabet[static_cast<std::size_t>(random() % alphabet.size())];
    }
    return text;
}

} // namespace

TYPED_TEST(NumberText, ChosenTextsAreReadLikeAStream)
{
    for (const char* text : {"",
                             " ",
                             "0",
                             "-0",
                             "+0",
                             "1",
                             "-1",
                             "+1",
                             "  42xyz",
                             "007",
                             "12abc",
                             "0x10",
                             "1,5",
                             "1.5",
                             ".5",
                             "5.",
                             "-.5",
                             ".",
                             "-",
                             "+",
                             "1e",
                             "1e5",
                             "1e+",
                             "1e+5",
                             "1e-5x",
                             "1.e5",
                             "1.5e5e5",
                             "1e5.5",
                             "--1",
                             "+-1",
                             "- 1",
                             "inf",
                             "nan",
                             "-nan",
                             "1_000",
                             "1'000",
                             "0.1",
                             "1.2.3",
                             "1..2",
                             "00.5",
                             "1e400",
                             "-1e400",
                             "1e-400",
                             "4e-320",
                             "1e22",
                             "1e23",
                             "123456789",
                             "\x0E"
                             "1",
                             "\b1",
                             "\x1F"
                             "1",
                             "\x85"
                             "1",
                             "\v\f\r1",
                             "\xA0"
                             "1",
                             "1\xA0",
                             "32767",
                             "32768",
                             "65536",
                             "1E5",
                             "1E",
                             "0e",
                             "0e0",
                             "0E+0",
                             "0xe",
                             "1p3",
                             "0.000000000000001",
                             "0.0000000000000001",
                             "123456789012345",
                             "1234567890123456",
                             "0.30000000000000004",
                             "2147483647",
                             "2147483648",
                             "-2147483648",
                             "-2147483649",
                             "4294967295",
                             "4294967296",
                             "-4294967295",
                             "-4294967296",
                             "9223372036854775807",
                             "9223372036854775808",
                             "-9223372036854775808",
                             "-9223372036854775809",
                             "18446744073709551615",
                             "18446744073709551616",
                             "-18446744073709551615",
                             "-18446744073709551616",
                             "99999999999999999999999999999999999"}) {
        EXPECT_TRUE(isReadLikeAStream<TypeParam>(text));
    }
}

TYPED_TEST(NumberText, RandomBytesAreReadLikeAStream)
{
    std::mt19937_64 random(1);
    const std::string alphabet = std::string("0123456789012345678901234567890123456789..--+eE, \t\nxin") + '\0';
    for (int i = 0; i < 50000; ++i) {
        ASSERT_TRUE(isReadLikeAStream<TypeParam>(randomText(random, alphabet, 24)));
    }
}

TYPED_TEST(NumberText, RandomDigitsAreReadLikeAStream)
{
    std::mt19937_64 random(2);
    for (int i = 0; i < 30000; ++i) {
        std::string text =
            randomText(random, " ", 2) + randomText(random, "-", 1) + randomText(random, "0123456789", 22);
        text += randomText(random, ".", 1) + randomText(random, "0123456789", 17);
        text += randomText(random, "eE ,x.-", 1) + randomText(random, "-+", 1) + randomText(random, "0123456789", 3);
        ASSERT_TRUE(isReadLikeAStream<TypeParam>(text));
    }
}

TYPED_TEST(NumberText, WrittenNumbersAreReadLikeAStream)
{
    std::mt19937_64 random(3);
    for (int i = 0; i < 30000; ++i) {
        const std::string text = writtenByStream(randomNumber<TypeParam>(random));
        ASSERT_TRUE(isReadLikeAStream<TypeParam>(text));
        ASSERT_TRUE(isReadLikeAStream<TypeParam>(text + randomText(random, "0 e.", 2)));
    }
}

TYPED_TEST(NumberText, RandomNumbersAreWrittenLikeAStream)
{
    std::mt19937_64 random(4);
    for (int i = 0; i < 50000; ++i) {
        const auto value = randomNumber<TypeParam>(random);
        ASSERT_EQ(writtenByStream(value), writtenByLibrary(value)) << "bits " << bitsOf(value);
    }
}

TYPED_TEST(NumberText, LimitsAreWrittenLikeAStream)
{
    using Limits = std::numeric_limits<TypeParam>;
    for (const TypeParam value :
         {TypeParam{0}, TypeParam{1}, Limits::min(), Limits::max(), Limits::lowest(), Limits::infinity(),
          Limits::quiet_NaN(), Limits::denorm_min(), Limits::epsilon(), static_cast<TypeParam>(-Limits::infinity()),
          static_cast<TypeParam>(-Limits::quiet_NaN()), static_cast<TypeParam>(-Limits::denorm_min())}) {
        EXPECT_EQ(writtenByStream(value), writtenByLibrary(value)) << "bits " << bitsOf(value);
    }
}

TEST(NumberTextOfDouble, DecimalFractionsAreWrittenLikeAStream)
{
    std::mt19937_64 random(5);
    for (int i = 0; i < 50000; ++i) {
        const double numerator = static_cast<double>(static_cast<std::int64_t>(random() % 2000000000U) - 1000000000);
        const auto chosen = static_cast<std::size_t>(random() % 5);
        const double value = numerator / std::array{1.0, 10.0, 1000.0, 65536.0, 10000000.0}[chosen];
        ASSERT_EQ(writtenByStream(value), writtenByLibrary(value)) << "bits " << bitsOf(value);
    }
    EXPECT_EQ("-0", writtenByLibrary(-0.0));
}

TEST(NumberTextOfDouble, HalvesInTheSeventhDigitAreWrittenLikeAStream)
{
    for (int i = 0; i < 100000; ++i) {
        const double value = 100000.0 + i + 0.5;
        ASSERT_EQ(writtenByStream(value), writtenByLibrary(value));
        ASSERT_EQ(writtenByStream(value / 1024), writtenByLibrary(value / 1024));
    }
}

TYPED_TEST(NumberText, TheGlobalLocaleIsNotAsked)
{
    const GroupedLocale grouped;
    std::mt19937_64 random(6);
    for (int i = 0; i < 1000; ++i) {
        const auto value = randomNumber<TypeParam>(random);
        ASSERT_EQ(writtenByStream(value), writtenByLibrary(value));
    }
    for (const char* text : {"12.34", "+12.34", "1,5", "+1,5", "1.5e1", "12345678901234567890.5"}) {
        EXPECT_TRUE(isReadLikeAStream<TypeParam>(text));
    }
}

namespace
{

/// Tries each length of range for a number: the text itself where it fits, the fault where it does not.
template <typename Number>
void expectFaultInSmallRange(Number value, const std::string& text, const std::string& typeName)
{
    const std::string fault = "Could not convert to string from , Wrong type: '" + typeName + "'";
    for (std::size_t length = 0; length < text.size(); ++length) {
        std::string range(numberTextSize, '#');
        EXPECT_EQ(fault, textOf<WrongTypeException>([&] { writeNumber(value, std::span(range.data(), length)); }));
        EXPECT_EQ(std::string(numberTextSize - length, '#'), range.substr(length)) << "written behind the range";
    }
    std::string range(text.size(), '#');
    EXPECT_EQ(text, writeNumber(value, std::span(range.data(), range.size())));
    EXPECT_EQ(text, range);
}

} // namespace

TEST(NumberTextRange, TooSmallForTheNumberIsAFault)
{
    // Required, Q-201
    expectFaultInSmallRange(-12345, "-12345", "int");
    expectFaultInSmallRange(12345U, "12345", "unsigned int");
    expectFaultInSmallRange(-1234567890L, "-1234567890", "long");
    expectFaultInSmallRange(7UL, "7", "unsigned long");
    expectFaultInSmallRange(-1.5e100, "-1.5e+100", "double");
    expectFaultInSmallRange(std::numeric_limits<double>::infinity(), "inf", "double");
}

TEST(NumberTextRange, StandardSizeIsEnoughForEveryNumber)
{
    EXPECT_EQ("-1.79769e+308", writtenByLibrary(-std::numeric_limits<double>::max()));
    EXPECT_EQ("-2.22507e-308", writtenByLibrary(-std::numeric_limits<double>::min()));
    EXPECT_EQ(std::to_string(LONG_MIN), writtenByLibrary(LONG_MIN));
    EXPECT_EQ(std::to_string(ULONG_MAX), writtenByLibrary(ULONG_MAX));
}
