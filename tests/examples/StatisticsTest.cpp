#include "Statistics.h"

#include "InputFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace seriesstat
{

namespace
{

Summary summaryOf(const std::vector<double>& numbers)
{
    std::vector<DoubleDouble> values;
    for (const double number : numbers) {
        values.push_back({number});
    }
    return summarize(values);
}

Summary summaryOfFile(const std::string& name)
{
    return summarize(readSeriesFile(std::string(SERIESSTAT_SOURCES "/data/") + name, {}).values);
}

/// How many digits agree: the log relative error, 16 for equal numbers.
double agreement(double value, double certified)
{
    return value == certified ? 16 : -std::log10(std::abs(value - certified) / std::abs(certified));
}

struct Certified
{
    const char* file;
    std::size_t count;
    double mean;
    double deviation;
    double autocorrelation;
};

TEST(StatisticsTest, CertifiedValuesAreReachedToFifteenDigits)
{
    const Certified sets[] = {
        {"michelson-1879.txt", 100, 299.852400000000, 0.0790105478190518, 0.535199668621283},
        {"numacc/NumAcc1.txt", 3, 10000002, 1, -0.5},
        {"numacc/NumAcc2.txt", 1001, 1.2, 0.1, -0.999},
        {"numacc/NumAcc3.txt", 1001, 1000000.2, 0.1, -0.999},
        {"numacc/NumAcc4.txt", 1001, 10000000.2, 0.1, -0.999},
    };
    for (const Certified& set : sets) {
        const Summary summary = summaryOfFile(set.file);
        EXPECT_EQ(set.count, summary.count) << set.file;
        EXPECT_GE(agreement(summary.mean, set.mean), 15) << set.file;
        EXPECT_GE(agreement(summary.deviation.value(), set.deviation), 15) << set.file;
        EXPECT_GE(agreement(summary.autocorrelation.value(), set.autocorrelation), 15) << set.file;
    }
}

TEST(StatisticsTest, ValuesRoundedToDoubleCannotReachTheCertifiedDeviation)
{
    std::vector<double> rounded{10000000.2};
    for (int i = 0; i < 500; ++i) {
        rounded.push_back(10000000.1);
        rounded.push_back(10000000.3);
    }
    const double digits = agreement(summaryOf(rounded).deviation.value(), 0.1);
    EXPECT_GT(digits, 8);
    EXPECT_LT(digits, 9);
}

TEST(StatisticsTest, SingleValueHasNeitherDeviationNorAutocorrelation)
{
    const Summary summary = summaryOf({-2.5});
    EXPECT_EQ(1U, summary.count);
    EXPECT_EQ(-2.5, summary.mean);
    EXPECT_FALSE(summary.deviation.has_value());
    EXPECT_FALSE(summary.autocorrelation.has_value());
    for (const double value :
         {summary.minimum, summary.lowerQuartile, summary.median, summary.upperQuartile, summary.maximum}) {
        EXPECT_EQ(-2.5, value);
    }
}

TEST(StatisticsTest, EqualValuesHaveDeviationZeroAndNoAutocorrelation)
{
    for (const double value : {0.0, 0.1, -1e300, 5e-324}) {
        const Summary summary = summaryOf(std::vector<double>(7, value));
        EXPECT_EQ(value, summary.mean);
        EXPECT_EQ(0, summary.deviation.value()) << value;
        EXPECT_FALSE(summary.autocorrelation.has_value()) << value;
    }
}

TEST(StatisticsTest, EqualDecimalsHaveDeviationZeroHoweverManyThereAre)
{
    const DoubleDouble decimal = DoubleDouble{29985} / DoubleDouble{100000};
    for (std::size_t n = 2; n < 400; ++n) {
        const Summary summary = summarize(std::vector<DoubleDouble>(n, decimal));
        ASSERT_EQ(0.29985, summary.mean) << n;
        ASSERT_EQ(0, summary.deviation.value()) << n;
        ASSERT_FALSE(summary.autocorrelation.has_value()) << n;
    }
}

TEST(StatisticsTest, QuartilesAreInterpolatedLinearly)
{
    struct Row
    {
        std::vector<double> values;
        double lower, median, upper;
    };
    const Row rows[] = {
        {{2, 1}, 1.25, 1.5, 1.75},
        {{3, 1, 2}, 1.5, 2, 2.5},
        {{4, 3, 2, 1}, 1.75, 2.5, 3.25},
        {{5, 1, 4, 2, 3}, 2, 3, 4},
        {{6, 1, 5, 2, 4, 3}, 2.25, 3.5, 4.75},
        {{1, 1, 1, 9}, 1, 1, 3},
    };
    for (const Row& row : rows) {
        const Summary summary = summaryOf(row.values);
        EXPECT_EQ(row.lower, summary.lowerQuartile) << row.values.size();
        EXPECT_EQ(row.median, summary.median) << row.values.size();
        EXPECT_EQ(row.upper, summary.upperQuartile) << row.values.size();
    }
}

TEST(StatisticsTest, OrderMattersToTheAutocorrelationAlone)
{
    const Summary rising = summaryOf({1, 2, 3, 4});
    const Summary mixed = summaryOf({1, 4, 2, 3});
    EXPECT_EQ(0.25, rising.autocorrelation.value());
    EXPECT_EQ(-0.65, mixed.autocorrelation.value());
    EXPECT_EQ(rising.deviation, mixed.deviation);
    EXPECT_EQ(rising.median, mixed.median);
}

TEST(StatisticsTest, LargestNumbersStayInRange)
{
    constexpr double largest = std::numeric_limits<double>::max();
    const Summary summary = summaryOf({largest, largest, largest / 2});
    EXPECT_GE(agreement(summary.mean, largest / 6 * 5), 15);
    EXPECT_GE(agreement(summary.deviation.value(), largest / std::sqrt(12.0)), 15);
    EXPECT_GE(agreement(summary.lowerQuartile, largest * 0.75), 15);
    EXPECT_EQ(largest, summary.upperQuartile);
}

TEST(StatisticsTest, DeviationThatNoDoubleCanHoldIsInfinite)
{
    constexpr double largest = std::numeric_limits<double>::max();
    const Summary summary = summaryOf({largest, -largest});
    EXPECT_EQ(0, summary.mean);
    EXPECT_EQ(0, summary.median);
    EXPECT_EQ(-largest / 2, summary.lowerQuartile);
    EXPECT_EQ(std::numeric_limits<double>::infinity(), summary.deviation.value());
    EXPECT_EQ(-0.5, summary.autocorrelation.value());
}

TEST(StatisticsTest, SmallestNumbersKeepTheirDeviation)
{
    EXPECT_GE(agreement(summaryOf({1e-300, 3e-300}).deviation.value(), std::sqrt(2.0) * 1e-300), 15);
    EXPECT_EQ(1e-323, summaryOf({5e-324, 1e-323, 1.5e-323}).mean);
}

TEST(StatisticsTest, SmallNumbersBesideLargeOnesKeepTheirPlaceInTheOrder)
{
    const Summary summary = summaryOf({1e308, 3e-308, 1e-308});
    EXPECT_EQ(1e-308, summary.minimum);
    EXPECT_GE(agreement(summary.lowerQuartile, 2e-308), 15);
    EXPECT_EQ(3e-308, summary.median);
}

/// A series as integers: the values are `offset` plus `parts`, divided by 10000.
struct Model
{
    static constexpr double unit = 10000;
    std::int64_t offset;
    std::vector<std::int64_t> parts;

    std::int64_t n() const { return static_cast<std::int64_t>(parts.size()); }
    std::int64_t sum() const
    {
        std::int64_t total = 0;
        for (const std::int64_t part : parts) {
            total += part;
        }
        return total;
    }
    /// Sum of the products of values `lag` places apart, as n times their differences from the mean.
    std::int64_t products(std::size_t lag) const
    {
        std::int64_t total = 0;
        for (std::size_t i = lag; i < parts.size(); ++i) {
            total += (n() * parts[i] - sum()) * (n() * parts[i - lag] - sum());
        }
        return total;
    }
    // All quotients below are of two integers that a double holds exactly, so each is rounded once.
    double mean() const { return static_cast<double>(n() * offset + sum()) / (static_cast<double>(n()) * unit); }
    double deviation() const
    {
        const long double n2 = static_cast<long double>(n()) * static_cast<long double>(n());
        const long double squares = static_cast<long double>(products(0)) / n2;
        return static_cast<double>(std::sqrt(squares / static_cast<long double>(n() - 1)) / unit);
    }
    double autocorrelation() const
    {
        return static_cast<double>(static_cast<long double>(products(1)) / static_cast<long double>(products(0)));
    }
    double quartile(std::int64_t quarters) const
    {
        std::vector<std::int64_t> sorted = parts;
        std::sort(sorted.begin(), sorted.end());
        const std::int64_t steps = (n() - 1) * quarters;
        const auto below = static_cast<std::size_t>(steps / 4);
        const std::size_t above = std::min(below + 1, sorted.size() - 1);
        const std::int64_t rest = steps % 4;
        const std::int64_t four = 4 * offset + (4 - rest) * sorted[below] + rest * sorted[above];
        return static_cast<double>(four) / (4 * unit);
    }
    std::vector<DoubleDouble> values() const
    {
        std::vector<DoubleDouble> result;
        for (const std::int64_t part : parts) {
            result.push_back(DoubleDouble{static_cast<double>(offset + part)} / DoubleDouble{unit});
        }
        return result;
    }
};

Model randomModel(std::mt19937_64& random)
{
    std::uniform_int_distribution<std::size_t> anySize(2, 150);
    std::uniform_int_distribution<std::int64_t> anyOffset(-10000000000, 10000000000);
    std::uniform_int_distribution<std::int64_t> anyWidth(1, 9999);
    const std::int64_t width = anyWidth(random);
    std::uniform_int_distribution<std::int64_t> anyPart(-width, width);
    Model model{anyOffset(random), std::vector<std::int64_t>(anySize(random))};
    for (std::int64_t& part : model.parts) {
        part = anyPart(random);
    }
    return model;
}

TEST(StatisticsTest, RandomSeriesAgreeWithIntegerArithmetic)
{
    std::mt19937_64 random(1879);
    for (int i = 0; i < 400; ++i) {
        const Model model = randomModel(random);
        const Summary summary = summarize(model.values());
        SCOPED_TRACE("series " + std::to_string(i) + " of " + std::to_string(model.n()));
        EXPECT_EQ(model.mean(), summary.mean);
        EXPECT_EQ(model.quartile(0), summary.minimum);
        EXPECT_EQ(model.quartile(1), summary.lowerQuartile);
        EXPECT_EQ(model.quartile(2), summary.median);
        EXPECT_EQ(model.quartile(3), summary.upperQuartile);
        EXPECT_EQ(model.quartile(4), summary.maximum);
        if (model.products(0) == 0) {
            EXPECT_EQ(0, summary.deviation.value());
            EXPECT_FALSE(summary.autocorrelation.has_value());
        } else {
            EXPECT_GE(agreement(summary.deviation.value(), model.deviation()), 15);
            EXPECT_NEAR(model.autocorrelation(), summary.autocorrelation.value(), 2e-16);
        }
    }
}

} // namespace

} // namespace seriesstat
