#include "any/GroupedLocale.h"
#include "support/Text.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <limits>
#include <string>
#include <vector>

using namespace KelvoBase;
using KelvoBase::test::GroupedLocale;
using KelvoBase::test::textOf;

namespace
{

using std::string_literals::operator""s;

template <typename T>
T valueOf(const ScalarAny<T>& any)
{
    struct Open : ScalarAny<T>
    {
        explicit Open(const ScalarAny<T>& other) : ScalarAny<T>(other) {}
        T value() const { return *this->mData; }
    };
    return Open(any).value();
}

template <typename T>
struct GoodRow
{
    std::string text;
    T expected;
};

template <typename T>
void expectRead(const std::vector<GoodRow<T>>& rows)
{
    for (const GoodRow<T>& row : rows) {
        SCOPED_TRACE("'" + row.text + "'");
        ScalarAny<T> any;
        any.fromString(row.text, ",");
        EXPECT_EQ(row.expected, valueOf(any));
        any.fromString(row.text, "");
        EXPECT_EQ(row.expected, valueOf(any)) << "the separator was used";
    }
}

/// Each row: a text that cannot be read as a number, and what the object holds then, 77 before.
template <typename T>
void expectNotRead(const std::string& typeString, const std::string& typeName, const std::vector<GoodRow<T>>& rows)
{
    for (const GoodRow<T>& row : rows) {
        SCOPED_TRACE("'" + row.text + "'");
        ScalarAny<T> any(T{77});
        const std::string expected =
            "Could not fill a " + typeString + " from string '" + row.text + "', Wrong type: '" + typeName + "'";
        EXPECT_EQ(expected, textOf<WrongTypeException>([&] { any.fromString(row.text, ","); }));
        EXPECT_EQ(row.expected, valueOf(any));
    }
}

} // namespace

TEST(ScalarText, IntIsReadUpToWhatFollowsIt)
{
    // Required, Q-208
    expectRead<int>({{"12abc", 12}, {"0x10", 0}, {"42 43", 42}, {"7.9", 7}, {"7,5", 7}, {"8-9", 8}, {"5e3", 5}});
    expectRead<double>({{"1,5", 1.0}, {"0x10", 0.0}, {"1.5.5", 1.5}, {"2.5m", 2.5}, {"1.5-3", 1.5}});
}

TEST(ScalarText, IntIsReadAsAStreamReadsIt)
{
    expectRead<int>({{"  42xyz", 42},
                     {"\t\n\v\f\r 42", 42},
                     {"+5", 5},
                     {"-5", -5},
                     {"-0", 0},
                     {"007", 7},
                     {"00000000000000000012", 12},
                     {"2147483647", INT_MAX},
                     {"-2147483648", INT_MIN},
                     {"0b1", 0}});
}

TEST(ScalarText, OtherIntegersAreReadAsAStreamReadsThem)
{
    expectRead<unsigned int>({{"4294967295", UINT_MAX}, {"-1", UINT_MAX}, {"-4294967295", 1U}, {"+1", 1U}});
    expectRead<long>({{std::to_string(LONG_MAX), LONG_MAX}, {std::to_string(LONG_MIN), LONG_MIN}, {" -3 ", -3}});
    expectRead<unsigned long>({{std::to_string(ULONG_MAX), ULONG_MAX}, {"-1", ULONG_MAX}, {" 3 ", 3}});
}

TEST(ScalarText, DoubleIsReadAsAStreamReadsIt)
{
    expectRead<double>({{"0.5", 0.5},
                        {".5", 0.5},
                        {"5.", 5.0},
                        {"-.5", -0.5},
                        {"+0.5", 0.5},
                        {" \t1e3", 1000.0},
                        {"1E-2", 0.01},
                        {"1e+2x", 100.0},
                        {"1e40", 1e40},
                        {"0.1", 0.1},
                        {"1.7976931348623157e308", DBL_MAX},
                        {"2.2250738585072014e-308", DBL_MIN},
                        {"5e-324", 5e-324},
                        {"1e-400", 0.0},
                        {"3.14159265358979323846264338327950288", 3.141592653589793},
                        {"9007199254740993", 9007199254740992.0}});
}

TEST(ScalarText, CharacterOfCodeZeroEndsANumber)
{
    expectRead<int>({{"12\0003"s, 12}, {"12\0x"s, 12}});
    expectRead<double>({{"1.5\0005"s, 1.5}, {"1\0e5"s, 1.0}});
    EXPECT_THROW(ScalarAny<int>().fromString("\00012"s, ","), WrongTypeException);
    EXPECT_THROW(ScalarAny<int>().fromString(" \00012"s, ","), WrongTypeException);
}

TEST(ScalarText, FailedNumberLeavesWhatTheExtractionLeft)
{
    // Required, Q-213
    expectNotRead<int>("IntAny", "int",
                       {{"", 77},
                        {" \t\n", 77},
                        {"abc", 0},
                        {"-", 0},
                        {"+", 0},
                        {"--1", 0},
                        {",1", 0},
                        {".5", 0},
                        {"2147483648", INT_MAX},
                        {"-2147483649", INT_MIN},
                        {"99999999999999999999999", INT_MAX}});
    expectNotRead<double>("DoubleAny", "double",
                          {{"", 77.0},
                           {"   ", 77.0},
                           {"1e", 0.0},
                           {"1e+", 0.0},
                           {"e5", 0.0},
                           {".", 0.0},
                           {"-", 0.0},
                           {"inf", 0.0},
                           {"nan", 0.0},
                           {"1e400", DBL_MAX},
                           {"-1e400", -DBL_MAX}});
}

TEST(ScalarText, EachNumberTypeNamesItselfInItsFault)
{
    expectNotRead<unsigned int>("UnsignedIntAny", "unsigned int", {{"x", 0U}, {"", 77U}, {"4294967296", UINT_MAX}});
    expectNotRead<long>("LongAny", "long", {{"x", 0}, {"99999999999999999999", LONG_MAX}});
    expectNotRead<unsigned long>("UnsignedLongAny", "unsigned long", {{"x", 0U}, {"99999999999999999999", ULONG_MAX}});
}

TEST(ScalarText, NumbersKeepTheClassicLocale)
{
    const GroupedLocale grouped;
    EXPECT_EQ("1234567", ScalarAny<int>(1234567).toString(","));
    EXPECT_EQ("1234567", ScalarAny<unsigned long>(1234567).toString(","));
    EXPECT_EQ("12345.6", ScalarAny<double>(12345.6).toString(","));
    expectRead<int>({{"1234567", 1234567}, {"12.34", 12}, {"+12.34", 12}});
    expectRead<double>({{"1.5", 1.5}, {"+1.5", 1.5}, {"1,5", 1.0}, {"+1,5", 1.0}, {"1.5e1", 15.0}});
}

TEST(ScalarText, BoolKnowsSixWords)
{
    expectRead<bool>({{"+", true},
                      {"true", true},
                      {"1", true},
                      {"-", false},
                      {"false", false},
                      {"0", false},
                      {" true ", true},
                      {"\t1\n", true},
                      {"\v-\f\r", false}});
}

TEST(ScalarText, OtherWordsAreNoBool)
{
    for (const char* text : {"", " ", "True", "TRUE", "2", "10", "yes", "on", "t", "true x", "+1", "--", " False "}) {
        for (const bool before : {true, false}) {
            ScalarAny<bool> any(before);
            EXPECT_EQ("Could not convert '" + std::string(text) + "' to bool, Wrong type: 'bool'",
                      textOf<WrongTypeException>([&] { any.fromString(text, ","); }));
            EXPECT_EQ(before, any.toBool()) << text;
        }
    }
}

TEST(ScalarText, BitsAreHexadecimal)
{
    expectRead<Bit64>({{"ff", 255U},
                       {"0xff", 255U},
                       {"FF", 255U},
                       {"0xFf", 255U},
                       {"", 0U},
                       {"0", 0U},
                       {"00", 0U},
                       {"0x0", 0U},
                       {"10", 16U},
                       {"0123456789abcdef", 0x0123456789ABCDEFU},
                       {"0x0123456789ABCDEF", 0x0123456789ABCDEFU}});
}

TEST(ScalarText, BitsPushedOutAreLost)
{
    // Required, Q-206
    expectRead<Bit64>({{std::string(20, 'f'), 0xFFFFFFFFFFFFFFFFU},
                       {"1" + std::string(16, '0'), 0U},
                       {"0xabc0123456789ABCDEF", 0x0123456789ABCDEFU}});
}

TEST(ScalarText, OnlyALowerCasePrefixWithDigitsIsAPrefix)
{
    // Required, Q-205
    struct Row
    {
        std::string text;
        std::string character;
    };
    const std::vector<Row> rows = {{"0x", "x"},    {"0X10", "X"}, {"0X", "X"},      {"x1", "x"},   {"00x1", "x"},
                                   {"0x0x1", "x"}, {" 1", " "},   {"1 ", " "},      {"-1", "-"},   {"fg", "g"},
                                   {"0x1,2", ","}, {"@", "@"},    {"G", "G"},       {"`", "`"},    {"/", "/"},
                                   {"1:", ":"},    {"+1", "+"},   {"\xC3", "\xC3"}, {"12\n", "\n"}};
    for (const Row& row : rows) {
        ScalarAny<Bit64> any(77U);
        EXPECT_EQ("Cannot convert string \"" + row.text + "\" to Bit64 type: " + row.character +
                      " is not a hex char, Wrong type: 'unsigned long long'",
                  textOf<WrongTypeException>([&] { any.fromString(row.text, ","); }));
        EXPECT_EQ(77U, any.toBit64()) << row.text;
    }
}

TEST(ScalarText, BitsPrintAllSixteenDigits)
{
    EXPECT_EQ("0x00000000000000FF", ScalarAny<Bit64>(255U).toString(","));
    EXPECT_EQ("0x0000000000000000", ScalarAny<Bit64>().toString(","));
    EXPECT_EQ("0x0123456789ABCDEF", ScalarAny<Bit64>(0x0123456789ABCDEFU).toString(","));
    EXPECT_EQ("0xFEDCBA9876543210", ScalarAny<Bit64>(0xFEDCBA9876543210U).toString(","));
    EXPECT_EQ("0xFFFFFFFFFFFFFFFF", ScalarAny<Bit64>(~Bit64{0}).toString(","));
}

TEST(ScalarText, IntegersPrintInDecimal)
{
    EXPECT_EQ("0", ScalarAny<int>().toString(","));
    EXPECT_EQ("-2147483648", ScalarAny<int>(INT_MIN).toString(","));
    EXPECT_EQ("4294967295", ScalarAny<unsigned int>(UINT_MAX).toString(","));
    EXPECT_EQ(std::to_string(LONG_MIN), ScalarAny<long>(LONG_MIN).toString(","));
    EXPECT_EQ(std::to_string(ULONG_MAX), ScalarAny<unsigned long>(ULONG_MAX).toString(","));
}

TEST(ScalarText, DoublesPrintSixSignificantDigits)
{
    struct Row
    {
        double value;
        const char* expected;
    };
    const std::vector<Row> rows = {{0.1 + 0.2, "0.3"},
                                   {1.0, "1"},
                                   {-0.0, "-0"},
                                   {1234567.0, "1.23457e+06"},
                                   {123456.0, "123456"},
                                   {1e-4, "0.0001"},
                                   {1e-5, "1e-05"},
                                   {1e100, "1e+100"},
                                   {2.5, "2.5"},
                                   {5e-324, "4.94066e-324"},
                                   {DBL_MAX, "1.79769e+308"},
                                   {std::numeric_limits<double>::infinity(), "inf"},
                                   {-std::numeric_limits<double>::infinity(), "-inf"},
                                   {std::numeric_limits<double>::quiet_NaN(), "nan"}};
    for (const Row& row : rows) {
        EXPECT_EQ(row.expected, ScalarAny<double>(row.value).toString(","));
    }
}

TEST(ScalarText, BoolPrintsDigitsAndReadsThemBack)
{
    EXPECT_EQ("1", ScalarAny<bool>(true).toString(","));
    EXPECT_EQ("0", ScalarAny<bool>(false).toString(","));
    ScalarAny<bool> any;
    any.fromString(ScalarAny<bool>(true).toString(","), ",");
    EXPECT_TRUE(any.toBool());
}

TEST(ScalarText, NumbersEscapeTheSeparatorAndDoNotReadItBack)
{
    // Required, Q-207
    const std::string text = ScalarAny<double>(1.5).toString(".");
    EXPECT_EQ("1..5", text);
    ScalarAny<double> any;
    any.fromString(text, ".");
    EXPECT_EQ(1.0, any.toDouble());
    EXPECT_EQ("--5", ScalarAny<int>(-5).toString("-"));
    EXPECT_EQ("121212123", ScalarAny<long>(12123).toString("12"));
    EXPECT_EQ("111", ScalarAny<unsigned int>(111).toString(""));
    EXPECT_EQ("1111111", ScalarAny<unsigned long>(111).toString("11"));
}

TEST(ScalarText, FlagsBitsAndTextsAreNeverEscaped)
{
    EXPECT_EQ("1", ScalarAny<bool>(true).toString("1"));
    EXPECT_EQ("0x00000000000000FF", ScalarAny<Bit64>(255U).toString("F"));
    EXPECT_EQ("a,b,,c", ScalarAny<std::string>("a,b,,c").toString(","));
}

TEST(ScalarText, TextsAreKeptAsTheyAre)
{
    for (const std::string& text : {""s, " a "s, "a,,b"s, "\"q\""s, "a\\,b"s, "x\0y"s, "\xC3\xA4"s}) {
        ScalarAny<std::string> any("old");
        any.fromString(text, ",");
        EXPECT_EQ(text, any.toString(","));
    }
}
