#include "Settings.h"

#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

using Values = std::vector<std::string>;

std::vector<std::string> namesOf(const std::vector<const Statistic*>& statistics)
{
    std::vector<std::string> names;
    for (const Statistic* statistic : statistics) {
        names.emplace_back(statistic->name);
    }
    return names;
}

/// Everything that settings say, as one text.
std::string textOf(const Settings& settings)
{
    const SeriesFormat& format = settings.format;
    return std::to_string(format.column) + "|" + format.commentSign + "|" + format.delimiters +
           (format.quotes ? "|quotes" : "|") + (format.header ? "|header" : "|") + "|" +
           std::to_string(settings.digits) + "|" + settings.quantity + "|" +
           KelvoBase::join(namesOf(settings.statistics), " ");
}

constexpr const char* allNames = "count mean sd lag1 min q1 median q3 max";

TEST(SettingsTest, NewObjectHasTheDefaults)
{
    EXPECT_EQ(std::string("0|#||||15||") + allNames, textOf(Settings()));
}

TEST(SettingsTest, WhatFitsIsTaken)
{
    const std::string names = std::string("|") + allNames;
    const std::vector<std::tuple<std::string, Values, std::string>> rows{
        {"column", {"1"}, "1|#||||15|" + names},
        {"column", {"0"}, "0|#||||15|" + names},
        {"column", {"2147483647"}, "2147483647|#||||15|" + names},
        {"comment", {"hash"}, "0|#||||15|" + names},
        {"comment", {"none"}, "0|||||15|" + names},
        {"comment", {""}, "0|||||15|" + names},
        {"comment", {"//"}, "0|//||||15|" + names},
        {"comment", {"E1;"}, "0|E1;||||15|" + names},
        {"delimiter", {"blanks"}, "0|#||||15|" + names},
        {"delimiter", {"tab"}, "0|#|\t|||15|" + names},
        {"delimiter", {"csv"}, "0|#|,|quotes||15|" + names},
        {"delimiter", {","}, "0|#|,|||15|" + names},
        {"delimiter", {"; :"}, "0|#|; :|||15|" + names},
        {"header", {"yes"}, "0|#|||header|15|" + names},
        {"header", {"no"}, "0|#||||15|" + names},
        {"digits", {"1"}, "0|#||||1|" + names},
        {"digits", {"17"}, "0|#||||17|" + names},
        {"quantity", {" time / s\n"}, "0|#||||15|time / s" + names},
        {"stats", {"sd", "mean", "sd"}, "0|#||||15||sd mean sd"},
        {"stats", {"all"}, "0|#||||15|" + names},
    };
    for (const auto& [key, values, expected] : rows) {
        SCOPED_TRACE(key + " = " + KelvoBase::join(values, ", "));
        Settings settings;
        EXPECT_EQ("", take(settings, *findSetting(key), values));
        EXPECT_EQ(expected, textOf(settings));
    }
}

TEST(SettingsTest, LaterValueTakesThePlaceOfAnEarlierOne)
{
    const std::vector<std::tuple<std::string, Values, Values>> rows{
        {"column", {"3"}, {"0"}},     {"comment", {"none"}, {"hash"}}, {"delimiter", {"csv"}, {"blanks"}},
        {"header", {"yes"}, {"no"}},  {"delimiter", {"csv"}, {"tab"}}, {"digits", {"3"}, {"15"}},
        {"stats", {"mean"}, {"all"}}, {"quantity", {"a / b"}, {"c"}},
    };
    for (const auto& [key, first, second] : rows) {
        SCOPED_TRACE(key);
        const Setting& setting = *findSetting(key);
        Settings once;
        Settings twice;
        take(once, setting, second);
        take(twice, setting, first);
        EXPECT_NE(textOf(once), textOf(twice));
        take(twice, setting, second);
        EXPECT_EQ(textOf(once), textOf(twice));
    }
}

TEST(SettingsTest, WhatDoesNotFitIsRefusedAndNothingIsSet)
{
    const std::string column = "Expected is a column, counted from 1, or 0 for lines of one number.";
    const std::string comment = "Expected is none, hash for the sign #, or a text that is no part of a number.";
    const std::string delimiter =
        "Expected is blanks, tab, csv, or characters that are neither letters nor a part of a number.";
    const std::string digits = "Expected is a whole number from 1 to 17.";
    const std::string stats = "Expected is all, or some of count, mean, sd, lag1, min, q1, median, q3, max.";
    const std::vector<std::tuple<std::string, Values, std::string>> rows{
        {"column", {"-1"}, "\"-1\" does not fit. " + column},
        {"column", {"2147483648"}, "\"2147483648\" does not fit. " + column},
        {"column", {"two"}, "\"two\" does not fit. " + column},
        {"column", {"2b"}, "\"2b\" does not fit. " + column},
        {"comment", {"-"}, "\"-\" does not fit. " + comment},
        {"comment", {"1e5"}, "\"1e5\" does not fit. " + comment},
        {"delimiter", {""}, "\"\" does not fit. " + delimiter},
        {"delimiter", {"cvs"}, "\"cvs\" does not fit. " + delimiter},
        {"delimiter", {"Tab"}, "\"Tab\" does not fit. " + delimiter},
        {"delimiter", {"x"}, "\"x\" does not fit. " + delimiter},
        {"delimiter", {";."}, "\";.\" does not fit. " + delimiter},
        {"delimiter", {";1"}, "\";1\" does not fit. " + delimiter},
        {"header", {"1"}, "\"1\" does not fit. Expected is yes or no."},
        {"header", {"Yes"}, "\"Yes\" does not fit. Expected is yes or no."},
        {"digits", {"0"}, "\"0\" does not fit. " + digits},
        {"digits", {"18"}, "\"18\" does not fit. " + digits},
        {"digits", {"many"}, "\"many\" does not fit. " + digits},
        {"digits", {"1.5"}, "\"1.5\" does not fit. " + digits},
        {"quantity", {" "}, "\" \" does not fit. Expected is what was measured, with its unit."},
        {"quantity",
         {"speed", "in m/s"},
         "\"speed, in m/s\" is a list; a comma that belongs to a value stands in double quotes. Expected is what was "
         "measured, with its unit."},
        {"digits",
         {"3", "4"},
         "\"3, 4\" is a list; a comma that belongs to a value stands in double quotes. " + digits},
        {"stats", {"mean", "mode"}, "\"mean, mode\" does not fit. " + stats},
        {"stats", {"all", "mean"}, "\"all, mean\" does not fit. " + stats},
        {"stats", {""}, "\"\" does not fit. " + stats},
        {"stats", {"Mean"}, "\"Mean\" does not fit. " + stats},
    };
    for (const auto& [key, values, expected] : rows) {
        SCOPED_TRACE(key + " = " + KelvoBase::join(values, ", "));
        Settings settings;
        settings.format.header = true;
        const std::string before = textOf(settings);
        EXPECT_EQ(expected, take(settings, *findSetting(key), values));
        EXPECT_EQ(before, textOf(settings));
    }
}

TEST(SettingsTest, SettingsAreSortedAndFoundByTheirKeys)
{
    std::string before;
    for (const Setting& setting : allSettings()) {
        const std::string name = std::string(setting.section) + "/" + std::string(setting.key);
        EXPECT_LT(before, name);
        EXPECT_EQ(&setting, findSetting(setting.key));
        before = name;
    }
    EXPECT_EQ(7u, allSettings().size());
    EXPECT_EQ(nullptr, findSetting(""));
    EXPECT_EQ(nullptr, findSetting("Digits"));
}

TEST(SettingsTest, EveryStatisticIsNamedWhereOneIsExpected)
{
    EXPECT_EQ("all, or some of " + KelvoBase::join(statisticNames(), ", "), findSetting("stats")->expected);
}

} // namespace

} // namespace seriesstat
