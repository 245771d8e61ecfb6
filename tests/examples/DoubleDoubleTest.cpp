#include "DoubleDouble.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <utility>

namespace seriesstat
{

namespace
{

void expectNear(const DoubleDouble& expected, const DoubleDouble& actual, double relative)
{
    EXPECT_NEAR(0, (actual - expected).high, relative * std::abs(expected.high))
        << actual.high << " and " << actual.low << " instead of " << expected.high << " and " << expected.low;
}

TEST(DoubleDoubleTest, SumOfTwoDoublesIsExact)
{
    const double tiny = std::ldexp(1.0, -100);
    for (const auto& [a, b] : {std::pair(1.0, tiny), {tiny, 1.0}, {-1.0, tiny}, {1e300, 1.0}, {0.1, 0.2}}) {
        const DoubleDouble sum = sumOf(a, b);
        EXPECT_EQ(a + b, sum.high);
        EXPECT_EQ(0, (sum - DoubleDouble{a} - DoubleDouble{b}).high) << a << " + " << b;
    }
    EXPECT_EQ(tiny, sumOf(1, tiny).low);
}

TEST(DoubleDoubleTest, ProductOfTwoDoublesIsExact)
{
    // (2^53 - 1)^2 = 2^106 - 2^54 + 1
    const DoubleDouble product = productOf(9007199254740991, 9007199254740991);
    EXPECT_EQ(std::ldexp(1.0, 106) - std::ldexp(1.0, 54), product.high);
    EXPECT_EQ(1, product.low);
}

TEST(DoubleDoubleTest, BothHalvesOfASumCount)
{
    const DoubleDouble a = sumOf(1, std::ldexp(3.0, -60));
    const DoubleDouble b = sumOf(-1, std::ldexp(5.0, -60));
    const DoubleDouble sum = a + b;
    EXPECT_EQ(std::ldexp(8.0, -60), sum.high);
    EXPECT_EQ(0, sum.low);
    EXPECT_EQ(std::ldexp(1.0, -110),
              (DoubleDouble{1, std::ldexp(1.0, -54)} + DoubleDouble{-1, std::ldexp(1.0, -110)}).low);
    EXPECT_EQ(2, (a - b).high);
    EXPECT_EQ(std::ldexp(-2.0, -60), (a - b).low);
}

TEST(DoubleDoubleTest, OperationsUndoEachOtherToThirtyDigits)
{
    std::mt19937_64 random(31);
    std::uniform_real_distribution<double> any(0.1, 10);
    for (int i = 0; i < 2000; ++i) {
        const DoubleDouble a = sumOf(any(random), any(random) * 1e-17);
        const DoubleDouble b = sumOf(-any(random), any(random) * 1e-17);
        expectNear(a, a / b * b, 1e-30);
        expectNear(a, a * b / b, 1e-30);
        expectNear(a, a + b - b, 1e-30);
        expectNear(a, sqrt(a) * sqrt(a), 1e-30);
        expectNear(a * a - b * b, (a + b) * (a - b), 1e-28);
    }
}

TEST(DoubleDoubleTest, TheNumberOneThirdGoesOnInItsSecondHalf)
{
    const DoubleDouble third = DoubleDouble{1} / DoubleDouble{3};
    EXPECT_EQ(1.0 / 3, third.high);
    EXPECT_EQ(std::ldexp(1.0 / 3, -54), third.low);
}

TEST(DoubleDoubleTest, OrderLooksAtBothHalves)
{
    const DoubleDouble one{1, 0};
    const DoubleDouble more{1, 1e-20};
    const DoubleDouble less{1, -1e-20};
    EXPECT_TRUE(one < more);
    EXPECT_TRUE(less < one);
    EXPECT_FALSE(more < one);
    EXPECT_FALSE(one < one);
    EXPECT_TRUE(more < DoubleDouble{2});
    EXPECT_FALSE(DoubleDouble{2} < more);
}

TEST(DoubleDoubleTest, ScalingIsExactAndRootOfZeroIsZero)
{
    const DoubleDouble value = scaled({3, 1e-17}, 10);
    EXPECT_EQ(3072, value.high);
    EXPECT_EQ(1024 * 1e-17, value.low);
    EXPECT_EQ(0, sqrt({}).high);
}

} // namespace

} // namespace seriesstat
