#include "Histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

namespace seriesstat
{

namespace
{

using Limits = std::numeric_limits<double>;
using Values = std::vector<double>;

Summary summaryOf(const Values& values)
{
    std::vector<DoubleDouble> numbers;
    for (const double value : values) {
        numbers.push_back({value});
    }
    return summarize(numbers);
}

Histogram histogramOf(const Values& values)
{
    return seriesstat::histogramOf(values, summaryOf(values));
}

TEST(HistogramTest, BinsBelowAndAboveAnEdge)
{
    // Quartiles 1 and 3, 2 * 2 / cube root of 5 is 2.34: two bins.
    const Histogram histogram = histogramOf({0, 1, 2, 3, 4});
    EXPECT_EQ((Values{0, 2, 4}), histogram.edges);
    EXPECT_EQ((std::vector<std::size_t>{2, 3}), histogram.counts);
}

TEST(HistogramTest, EqualValuesAreOneBin)
{
    for (const double value : {0.0, -5.0, 1e308, 5e-324}) {
        const Histogram histogram = histogramOf(Values(7, value));
        EXPECT_EQ((Values{value, value}), histogram.edges);
        EXPECT_EQ((std::vector<std::size_t>{7}), histogram.counts);
        EXPECT_EQ(1U, histogramOf({value}).counts.size());
    }
}

TEST(HistogramTest, NumberOfBinsFollowsFreedmanAndDiaconis)
{
    const auto bins = [](std::size_t count, double minimum, double lower, double upper, double maximum) {
        return binsFor(
            {.count = count, .minimum = minimum, .lowerQuartile = lower, .upperQuartile = upper, .maximum = maximum});
    };
    EXPECT_EQ(5U, bins(8, 0, 4, 6, 10));     // width 2 * 2 / 2
    EXPECT_EQ(6U, bins(8, 0, 4, 6, 10.01));  // a little more takes one more
    EXPECT_EQ(50U, bins(1000, 0, 4, 5, 10)); // width 2 * 1 / 10
    EXPECT_EQ(13U, bins(100, 299.62, 299.8075, 299.8925, 300.07));
    EXPECT_EQ(100U, bins(1000, 0, 4, 4.5, 10));
    EXPECT_EQ(100U, bins(1000, 0, 4, 4.4, 10)); // 125
    EXPECT_EQ(100U, bins(1000, -1e308, 1e-300, 2e-300, 1e308));
    EXPECT_EQ(2U, bins(2, 0, 0.25, 0.75, 1));
    EXPECT_EQ(2U, bins(2, Limits::lowest(), Limits::lowest() / 2, Limits::max() / 2, Limits::max()));
    EXPECT_EQ(3U, bins(8, 0, 5e-324, 1e-323, 1.5e-323)); // digits that the smallest doubles lack play no part
}

TEST(HistogramTest, NumberOfBinsFollowsSturgesWhereQuartilesAreEqual)
{
    const auto bins = [](std::size_t count) {
        return binsFor({.count = count, .minimum = -1, .lowerQuartile = 0, .upperQuartile = 0, .maximum = 9});
    };
    EXPECT_EQ(4U, bins(5));
    EXPECT_EQ(4U, bins(8));
    EXPECT_EQ(5U, bins(9));
    EXPECT_EQ(21U, bins(1000000));
}

/// Counts by looking at each bin.
std::vector<std::size_t> slowCounts(const Values& values, const Values& edges)
{
    std::vector<std::size_t> counts(edges.size() - 1);
    for (const double value : values) {
        for (std::size_t i = counts.size(); i-- > 0;) {
            if (value >= edges[i]) {
                ++counts[i];
                break;
            }
        }
    }
    return counts;
}

/// Values of any kind: few different ones, some far off, or near the ends of the range of numbers.
Values anyValues(std::mt19937_64& random)
{
    const double scale = std::ldexp(1, static_cast<int>(random() % 2030) - 1020);
    const std::size_t different = 1 + static_cast<std::size_t>(random() % 30);
    const bool wild = random() % 3 == 0;
    Values values(1 + static_cast<std::size_t>(random() % 200));
    for (double& value : values) {
        const double number = static_cast<double>(random() % different) - static_cast<double>(different) / 3;
        value = (wild && random() % 20 == 0 ? 1000 : 1) * number / 64 * scale;
    }
    return values;
}

void expectEdges(const Histogram& histogram, const Summary& summary)
{
    EXPECT_EQ(summary.minimum, histogram.edges.front());
    EXPECT_EQ(summary.maximum, histogram.edges.back());
    EXPECT_TRUE(std::is_sorted(histogram.edges.begin(), histogram.edges.end()));
    EXPECT_EQ(histogram.counts.size() + 1, histogram.edges.size());
    EXPECT_LE(histogram.counts.size(), mostBins);
}

/// No bin is wider than the rule wants it, and with one bin less they would be. Long doubles have room for the range.
void expectWidth(std::size_t bins, const Summary& summary)
{
    const long double range = static_cast<long double>(summary.maximum) - summary.minimum;
    const long double width = 2 * (static_cast<long double>(summary.upperQuartile) - summary.lowerQuartile) /
                              std::cbrt(static_cast<long double>(summary.count));
    if (width > 0) {
        EXPECT_LT(static_cast<long double>(bins - 1) * width, range * (1 + 1e-12L));
    }
    if (width > 0 && bins < mostBins) {
        EXPECT_GE(static_cast<long double>(bins) * width, range * (1 - 1e-12L));
    }
}

TEST(HistogramTest, AgreesWithASlowModel)
{
    std::mt19937_64 random(4); // NOLINT(cert-msc51-cpp): the same series every time
    for (int run = 0; run < 5000; ++run) {
        const Values values = anyValues(random);
        const Summary summary = summaryOf(values);
        const Histogram histogram = histogramOf(values);
        SCOPED_TRACE(std::to_string(run) + ": " + std::to_string(values.size()) + " values");
        expectEdges(histogram, summary);
        EXPECT_EQ(slowCounts(values, histogram.edges), histogram.counts);
        EXPECT_EQ(values.size(), std::accumulate(histogram.counts.begin(), histogram.counts.end(), std::size_t{0}));
        if (summary.minimum < summary.maximum) {
            expectWidth(histogram.counts.size(), summary);
        }
    }
}

TEST(HistogramTest, WholeRangeOfNumbersHasEdges)
{
    const Histogram histogram = histogramOf({Limits::lowest(), -1e308, 0, 1e308, Limits::max()});
    for (std::size_t i = 0; i + 1 < histogram.edges.size(); ++i) {
        EXPECT_LT(histogram.edges[i], histogram.edges[i + 1]);
    }
    EXPECT_TRUE(std::isfinite(histogram.edges[1]));
}

} // namespace

} // namespace seriesstat
