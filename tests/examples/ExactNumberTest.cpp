#include "ExactNumber.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>

namespace seriesstat
{

namespace
{

using KelvoBase::Any;
using KelvoBase::WrongTypeException;
using KelvoBase::test::textOf;
using Limits = std::numeric_limits<double>;

std::uint64_t bitsThroughText(double number)
{
    ExactNumber<double> back;
    back.fromString(ExactNumber<double>(number).toString(","), ",");
    return std::bit_cast<std::uint64_t>(back.toDouble());
}

TEST(ExactNumberTest, TextHasAsManyDigitsAsItTakes)
{
    EXPECT_EQ("0.1", ExactNumber<double>(0.1).toString(","));
    EXPECT_EQ("0.30000000000000004", ExactNumber<double>(0.1 + 0.2).toString(","));
    EXPECT_EQ("-1.7976931348623157e+308", ExactNumber<double>(Limits::lowest()).toString(","));
    EXPECT_EQ("5e-324", ExactNumber<double>(Limits::denorm_min()).toString("."));
    EXPECT_EQ("-0", ExactNumber<double>(-0.0).toString(","));
    EXPECT_EQ("4294967295", ExactNumber<unsigned long>(4294967295UL).toString(","));
}

TEST(ExactNumberTest, EveryFiniteDoubleComesBack)
{
    for (const double number : {0.0, -0.0, 0.1, Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min()}) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(number), bitsThroughText(number)) << number;
    }
    std::mt19937_64 random(20261121);
    for (int i = 0; i < 100000; ++i) {
        const double number = std::bit_cast<double>(random());
        if (std::isfinite(number)) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(number), bitsThroughText(number)) << number;
        }
    }
}

TEST(ExactNumberTest, NothingButAFiniteNumberIsRead)
{
    for (const std::string text :
         {"", " 1", "1 ", "1.5 or so", "1,5", "+1", "nan", "inf", "-inf", "1e999", "0x10", "one"}) {
        SCOPED_TRACE(text);
        ExactNumber<double> number(7);
        EXPECT_EQ("Could not read all of '" + text + "', Wrong type: 'double'",
                  textOf<WrongTypeException>([&] { number.fromString(text, ","); }));
        EXPECT_EQ(7, number.toDouble());
    }
    for (const std::string text : {"", "-1", "1.0", "1e3", "99999999999999999999", "n/a"}) {
        ExactNumber<unsigned long> number(7);
        EXPECT_THROW(number.fromString(text, ","), WrongTypeException) << text;
        EXPECT_EQ(7U, number.toULong());
    }
}

TEST(ExactNumberTest, CopiesAreExactToo)
{
    const ExactNumber<double> number(0.1 + 0.2);
    const std::unique_ptr<Any> clone(number.clone());
    const std::unique_ptr<Any> fresh(number.create());
    fresh->copyFrom(number);
    EXPECT_EQ("0.30000000000000004", clone->toString(","));
    EXPECT_EQ("0.30000000000000004", fresh->toString(","));
    EXPECT_EQ("DoubleAny", clone->getTypeString());
}

} // namespace

} // namespace seriesstat
