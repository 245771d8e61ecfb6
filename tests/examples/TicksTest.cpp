#include "Ticks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>

namespace seriesstat
{

namespace
{

using Limits = std::numeric_limits<double>;

std::string textsOf(const std::vector<Tick>& ticks)
{
    std::string texts;
    for (const Tick& tick : ticks) {
        texts += (texts.empty() ? "" : " ") + tick.text;
    }
    return texts;
}

TEST(TicksTest, RoundNumbersLieOnTheAxis)
{
    struct Row
    {
        Axis axis;
        std::size_t most;
        const char* texts;
    };
    const Row rows[] = {
        {{299.62, 300.07}, 7, "299.7 299.8 299.9 300.0"},
        {{0, 1}, 6, "0.0 0.2 0.4 0.6 0.8 1.0"},
        {{0, 1}, 5, "0.0 0.5 1.0"},
        {{0.3, 0.7}, 5, "0.3 0.4 0.5 0.6 0.7"},
        {{-1, 1}, 5, "-1.0 -0.5 0.0 0.5 1.0"},
        {{-7, 20}, 8, "-5 0 5 10 15 20"},
        {{10000000.1, 10000000.3}, 6, "10000000.10 10000000.15 10000000.20 10000000.25 10000000.30"},
        {{0, 20000000}, 4, "0 1e7 2e7"},
        {{0, 1000000}, 3, "0 500000 1000000"},
        {{0, 0.000005}, 3, "0 2e-6 4e-6"},
        {{1e-300, 3.5e-300}, 4, "1e-300 2e-300 3e-300"},
        {{-1e308, 1e308}, 5, "-1e308 -5e307 0 5e307 1e308"},
        {{Limits::lowest(), Limits::max()}, 3, "-1e308 0 1e308"},
        {{1.25e300, 1.75e300}, 3, "1.4e300 1.6e300"},
        {{4.1, 4.9}, 1, "4.5"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.texts, textsOf(roundTicks(row.axis, row.most))) << row.axis.low << " " << row.axis.high;
    }
}

TEST(TicksTest, CountsAreWhole)
{
    EXPECT_EQ("0 1", textsOf(roundTicks({0, 1}, 6, 0)));
    EXPECT_EQ("0 1 2 3", textsOf(roundTicks({0, 3}, 6, 0)));
    EXPECT_EQ("0 5 10 15 20", textsOf(roundTicks({0, 21}, 6, 0)));
    EXPECT_EQ("0 20000 40000", textsOf(roundTicks({0, 59999}, 3, 0)));
}

// The slow model: ends are whole numbers of thousands times a power of ten, so that whole numbers tell everything.

long long floorOf(long long a, long long b)
{
    return a >= 0 ? a / b : -((-a + b - 1) / b);
}

struct Expected
{
    long long step;
    long long first;
    long long last;
};

Expected expectedTicks(long long low, long long high, std::size_t most)
{
    for (long long power = 1;; power *= 10) {
        for (const long long step : {power, 2 * power, 5 * power}) {
            const long long first = -floorOf(-low, step);
            const long long last = floorOf(high, step);
            if (last - first + 1 <= static_cast<long long>(most)) {
                return {step, first * step, last * step};
            }
        }
    }
}

double decimal(long long digits, int exponent)
{
    return std::strtod((std::to_string(digits) + "e" + std::to_string(exponent)).c_str(), nullptr);
}

TEST(TicksTest, AreThoseOfWholeNumbers)
{
    std::mt19937_64 random(2); // NOLINT(cert-msc51-cpp): the same axes every time
    for (int run = 0; run < 20000; ++run) {
        const int exponent = static_cast<int>(random() % 560) - 280;
        const auto low = (static_cast<long long>(random() % 20001) - 10000) * 1000;
        const auto high = low + static_cast<long long>(1 + random() % (random() % 2 == 0 ? 20 : 20000)) * 1000;
        const std::size_t most = 1 + static_cast<std::size_t>(random() % 10);
        const Expected expected = expectedTicks(low, high, most);
        const std::vector<Tick> ticks = roundTicks({decimal(low, exponent), decimal(high, exponent)}, most);
        SCOPED_TRACE(std::to_string(low) + " " + std::to_string(high) + " e" + std::to_string(exponent) + ": " +
                     textsOf(ticks));
        const long long count = (expected.last - expected.first) / expected.step + 1;
        ASSERT_EQ(static_cast<std::size_t>(count), ticks.size());
        for (std::size_t i = 0; i < ticks.size(); ++i) {
            const double value = decimal(expected.first + static_cast<long long>(i) * expected.step, exponent);
            EXPECT_EQ(value, ticks[i].value);
            EXPECT_EQ(value, std::strtod(ticks[i].text.c_str(), nullptr));
        }
    }
}

double anyDouble(std::mt19937_64& random)
{
    const double size = std::ldexp(static_cast<double>(random() % 1000000), static_cast<int>(random() % 2000) - 1020);
    return random() % 2 == 0 ? size : -size;
}

/// A second value near or far.
double neighbourOf(double value, std::mt19937_64& random)
{
    switch (random() % 4) {
    case 0:
        return value;
    case 1:
        return std::nextafter(value, Limits::max());
    case 2:
        return value * (1 + static_cast<double>(random() % 100) * 1e-16);
    default:
        return anyDouble(random);
    }
}

TEST(TicksTest, AnyValuesHaveAnAxisWithTicks)
{
    std::mt19937_64 random(3); // NOLINT(cert-msc51-cpp): the same values every time
    for (int run = 0; run < 20000; ++run) {
        const double one = anyDouble(random);
        const double other = neighbourOf(one, random);
        const Axis axis = axisFor(std::min(one, other), std::max(one, other));
        SCOPED_TRACE(std::to_string(axis.low) + " " + std::to_string(axis.high));
        ASSERT_LT(axis.low, axis.high);
        EXPECT_LE(axis.low, std::min(one, other));
        EXPECT_GE(axis.high, std::max(one, other));
        for (const double value : {one, other}) {
            EXPECT_GE(placeOn(axis, value), 0);
            EXPECT_LE(placeOn(axis, value), 1);
        }
        const std::vector<Tick> ticks = roundTicks(axis, 7);
        EXPECT_GE(ticks.size(), 2U);
        EXPECT_LE(ticks.size(), 7U);
        for (const Tick& tick : ticks) {
            EXPECT_EQ(tick.value, std::strtod(tick.text.c_str(), nullptr)) << tick.text;
        }
    }
}

TEST(TicksTest, AxisIsTheRangeOfTheValues)
{
    EXPECT_EQ(299.62, axisFor(299.62, 300.07).low);
    EXPECT_EQ(300.07, axisFor(299.62, 300.07).high);
    EXPECT_EQ(-1e308, axisFor(-1e308, 1e308).low);
    EXPECT_EQ(1e308, axisFor(-1e308, 1e308).high);
    EXPECT_EQ(1e-300, axisFor(1e-300, 2e-300).low);
    EXPECT_EQ(2e-300, axisFor(1e-300, 2e-300).high);
}

TEST(TicksTest, AxisOfOneValueReachesAroundIt)
{
    EXPECT_EQ(-1, axisFor(0, 0).low);
    EXPECT_EQ(1, axisFor(0, 0).high);
    EXPECT_EQ(-22, axisFor(-20, -20).low);
    EXPECT_EQ(-18, axisFor(-20, -20).high);
    EXPECT_EQ(Limits::max(), axisFor(1.7e308, 1.7e308).high);
    EXPECT_EQ(Limits::lowest(), axisFor(-1.7e308, -1.7e308).low);
}

TEST(TicksTest, PlacesAreShares)
{
    EXPECT_EQ(0, placeOn({2, 6}, 2));
    EXPECT_EQ(0.25, placeOn({2, 6}, 3));
    EXPECT_EQ(1, placeOn({2, 6}, 6));
    EXPECT_EQ(0.5, placeOn({Limits::lowest(), Limits::max()}, 0));
}

} // namespace

} // namespace seriesstat
