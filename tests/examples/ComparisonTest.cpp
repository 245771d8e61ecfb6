#include "Comparison.h"

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

SeriesResult seriesOf(const std::string& name, const std::string& digest, double mean)
{
    return {.name = name, .digest = digest, .summary = {.count = 2, .mean = mean, .deviation = 0.5}};
}

StoredResults resultsOf(const std::vector<SeriesResult>& series)
{
    StoredResults stored{.origin = {1.2, "1", "2026-11-21 15:40:12"}};
    stored.results.quantity = "x";
    stored.results.series = series;
    stored.results.seconds = 0.25;
    return stored;
}

/// What stands between the first line and the run times of an otherwise equal pair.
std::string changesBetween(const StoredResults& earlier, const StoredResults& now)
{
    const std::string text = comparisonOf(earlier, now, "r.xml");
    const std::string head = "compared with r.xml of 2026-11-21 15:40:12\n";
    const std::size_t times = text.find("  run time: ");
    EXPECT_TRUE(text.starts_with(head)) << text;
    EXPECT_NE(std::string::npos, times) << text;
    return text.substr(head.size(), times - head.size());
}

std::string changesBetween(const std::vector<SeriesResult>& earlier, const std::vector<SeriesResult>& now)
{
    return changesBetween(resultsOf(earlier), resultsOf(now));
}

TEST(ComparisonTest, NothingChangedIsSaid)
{
    StoredResults now = resultsOf({seriesOf("a", "1", 5)});
    now.results.seconds = 1.5;
    now.origin.when = "2027-01-01 00:00:00";
    EXPECT_EQ("compared with last.xml of 2026-11-21 15:40:12\n"
              "  nothing changed\n"
              "  run time: 0.25 s -> 1.5 s\n",
              comparisonOf(resultsOf({seriesOf("a", "1", 5)}), now, "last.xml"));
}

TEST(ComparisonTest, VersionAndQuantityAreCompared)
{
    const StoredResults earlier = resultsOf({});
    StoredResults now = earlier;
    now.results.quantity = "y / s";
    EXPECT_EQ("  quantity: \"x\" -> \"y / s\"\n", changesBetween(earlier, now));
    now.origin.version = 1.25;
    EXPECT_EQ("  version of seriesstat: 1.2 (Rev. 1) -> 1.25 (Rev. 1)\n  quantity: \"x\" -> \"y / s\"\n",
              changesBetween(earlier, now));
    now = earlier;
    now.origin.revision = "2";
    EXPECT_EQ("  version of seriesstat: 1.2 (Rev. 1) -> 1.2 (Rev. 2)\n", changesBetween(earlier, now));
}

TEST(ComparisonTest, SeriesAreAddedAndRemoved)
{
    const SeriesResult a = seriesOf("a", "1", 5);
    const SeriesResult b = seriesOf("b", "1", 5);
    EXPECT_EQ("  b: added\n", changesBetween({a}, {a, b}));
    EXPECT_EQ("  a: removed\n", changesBetween({a, b}, {b}));
    EXPECT_EQ("  b: added\n  a: removed\n", changesBetween({a}, {b}));
    EXPECT_EQ("  nothing changed\n", changesBetween({a, b}, {b, a}));
}

TEST(ComparisonTest, SeriesWithTheSameNameBelongTogetherInTheirOrder)
{
    const SeriesResult first = seriesOf("a", "1", 5);
    const SeriesResult second = seriesOf("a", "2", 6);
    EXPECT_EQ("  nothing changed\n", changesBetween({first, second}, {first, second}));
    EXPECT_EQ("  a: added\n", changesBetween({first}, {first, second}));
    EXPECT_EQ("  a: bytes changed, and statistics\n    mean: 5 -> 6\n  a: removed\n",
              changesBetween({first, second}, {second}));
}

TEST(ComparisonTest, BytesAndStatisticsAreToldApart)
{
    const SeriesResult before = seriesOf("a", "1", 5);
    EXPECT_EQ("  a: bytes changed, no statistic did\n", changesBetween({before}, {seriesOf("a", "2", 5)}));
    EXPECT_EQ("  a: statistics changed, though the bytes are the same\n    mean: 5 -> 6\n",
              changesBetween({before}, {seriesOf("a", "1", 6)}));
    EXPECT_EQ("  a: bytes changed, and statistics\n    mean: 5 -> 6\n",
              changesBetween({before}, {seriesOf("a", "2", 6)}));
}

TEST(ComparisonTest, EveryStatisticIsCompared)
{
    SeriesResult now = seriesOf("a", "1", 5);
    now.summary = {.count = 3,
                   .mean = 5.000000000000001,
                   .deviation = {},
                   .autocorrelation = 0.1,
                   .minimum = 1,
                   .lowerQuartile = 2,
                   .median = 3,
                   .upperQuartile = 4,
                   .maximum = 1e300};
    EXPECT_EQ("  a: statistics changed, though the bytes are the same\n"
              "    count: 2 -> 3\n"
              "    mean: 5 -> 5.000000000000001\n"
              "    standard deviation: 0.5 -> n/a\n"
              "    lag-1 autocorrelation: n/a -> 0.1\n"
              "    minimum: 0 -> 1\n"
              "    lower quartile: 0 -> 2\n"
              "    median: 0 -> 3\n"
              "    upper quartile: 0 -> 4\n"
              "    maximum: 0 -> 1e+300\n",
              changesBetween({seriesOf("a", "1", 5)}, {now}));
}

TEST(ComparisonTest, SignOfZeroIsNoChange)
{
    EXPECT_EQ("  nothing changed\n", changesBetween({seriesOf("a", "1", 0.0)}, {seriesOf("a", "1", -0.0)}));
}

} // namespace

} // namespace seriesstat
