#include "Report.h"

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

std::string oneRow(const char* name, const Summary& summary, int digits)
{
    return reportOf("f", summary, {findStatistic(name)}, digits);
}

TEST(ReportTest, EveryNameFindsItsStatistic)
{
    EXPECT_EQ((std::vector<std::string>{"count", "mean", "sd", "lag1", "min", "q1", "median", "q3", "max"}),
              statisticNames());
    for (const std::string& name : statisticNames()) {
        ASSERT_NE(nullptr, findStatistic(name)) << name;
        EXPECT_EQ(name, findStatistic(name)->name);
    }
    EXPECT_EQ(nullptr, findStatistic(""));
    EXPECT_EQ(nullptr, findStatistic("Mean"));
}

TEST(ReportTest, RowsStandInTheOrderAskedFor)
{
    const Summary summary{.count = 8,
                          .mean = 1,
                          .deviation = 2.0,
                          .autocorrelation = 3.0,
                          .minimum = 4,
                          .lowerQuartile = 5,
                          .median = 6,
                          .upperQuartile = 7,
                          .maximum = 9};
    std::vector<const Statistic*> wanted;
    for (const char* name : {"max", "q3", "median", "q1", "min", "lag1", "sd", "mean", "count", "max"}) {
        wanted.push_back(findStatistic(name));
    }
    EXPECT_EQ("dir/f\n"
              "  maximum                9.\n"
              "  upper quartile         7.\n"
              "  median                 6.\n"
              "  lower quartile         5.\n"
              "  minimum                4.\n"
              "  lag-1 autocorrelation  3.\n"
              "  standard deviation     2.\n"
              "  mean                   1.\n"
              "  count                  8\n"
              "  maximum                9.\n",
              reportOf("dir/f", summary, wanted, 1));
}

TEST(ReportTest, NumbersShowAllTheirDigits)
{
    struct Row
    {
        double mean;
        int digits;
        const char* text;
    };
    const Row rows[] = {
        {299.8524, 15, "299.852400000000"},
        {0.0790105478190518, 15, "0.0790105478190518"},
        {-0.5, 15, "-0.500000000000000"},
        {10000002, 15, "10000002.0000000"},
        {0.1, 17, "0.10000000000000001"},
        {123456, 3, "1.23e+05"},
        {0, 4, "0.000"},
        {-0.0, 4, "0.000"},
        {5e-324, 3, "4.94e-324"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(std::string("f\n  mean                   ") + row.text + "\n",
                  oneRow("mean", {.count = 1, .mean = row.mean}, row.digits));
    }
}

TEST(ReportTest, WhatIsNotDefinedIsMarked)
{
    EXPECT_EQ("f\n  standard deviation     n/a\n", oneRow("sd", {.count = 1, .mean = 5}, 15));
    EXPECT_EQ("f\n  lag-1 autocorrelation  n/a\n", oneRow("lag1", {.count = 1, .mean = 5}, 15));
}

} // namespace

} // namespace seriesstat
