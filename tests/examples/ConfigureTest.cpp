#include "Configure.h"

#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

using KelvoBase::ConfigFile;
using KelvoBase::RuntimeException;
using KelvoBase::test::ScratchDirectory;
using KelvoBase::test::textOf;

Settings settingsFrom(const std::string& content)
{
    const ScratchDirectory scratch;
    scratch.write("x.ini", content);
    Settings settings;
    configure(settings, ConfigFile(scratch.location("x.ini")), "x.ini");
    return settings;
}

std::string refusalOf(const std::string& content)
{
    return textOf<RuntimeException>([&content] { settingsFrom(content); });
}

TEST(ConfigureTest, EveryKeySetsItsSetting)
{
    const Settings settings = settingsFrom("[input]\n"
                                           "column = 3     # the third\n"
                                           "comment = %\n"
                                           "delimiter = \";,\"\n"
                                           "header = yes\n"
                                           "[report]\n"
                                           "digits=4\n"
                                           "quantity = \"speed, in m/s\"\n"
                                           "stats = mean, sd\n");
    EXPECT_EQ(3, settings.format.column);
    EXPECT_EQ("%", settings.format.commentSign);
    EXPECT_EQ(";,", settings.format.delimiters);
    EXPECT_FALSE(settings.format.quotes);
    EXPECT_TRUE(settings.format.header);
    EXPECT_EQ(4, settings.digits);
    EXPECT_EQ("speed, in m/s", settings.quantity);
    EXPECT_EQ((std::vector<const Statistic*>{findStatistic("mean"), findStatistic("sd")}), settings.statistics);
}

TEST(ConfigureTest, WhatIsNotSetStays)
{
    const Settings settings = settingsFrom("[report]\ndigits = 4\n");
    EXPECT_EQ(4, settings.digits);
    EXPECT_EQ("#", settings.format.commentSign);
    EXPECT_EQ(allStatistics(), settings.statistics);
}

TEST(ConfigureTest, FlagAloneMeansYes)
{
    EXPECT_TRUE(settingsFrom("[input]\nheader\n").format.header);
}

TEST(ConfigureTest, ListOfOneIsWrittenLikeAText)
{
    EXPECT_EQ((std::vector<const Statistic*>{findStatistic("sd")}), settingsFrom("[report]\nstats = sd\n").statistics);
}

TEST(ConfigureTest, LinesOfBlanksMeanNothing)
{
    const Settings settings = settingsFrom("  \n   # indented\n[input]\n  \n[report]\n\t\ndigits = 3\n");
    EXPECT_EQ(3, settings.digits);
}

TEST(ConfigureTest, EmptyFileAndEmptySectionsMeanNothing)
{
    EXPECT_EQ(15, settingsFrom("").digits);
    EXPECT_EQ(15, settingsFrom("[]\n[input]\n[report]\n").digits);
}

TEST(ConfigureTest, MistakesAreToldWithTheirPlace)
{
    const std::vector<std::pair<std::string, std::string>> rows{
        {"[report]\ndigits = many\n", "x.ini: section \"report\", key \"digits\": \"many\" does not fit. Expected is a "
                                      "whole number from 1 to 17."},
        {"[input]\ncolumn = -1\n", "x.ini: section \"input\", key \"column\": \"-1\" does not fit. Expected is a "
                                   "column, counted from 1, or 0 for lines of one number."},
        {"[report]\nstats = mean, nonsense\n", "x.ini: section \"report\", key \"stats\": \"mean, nonsense\" does not "
                                               "fit. Expected is all, or some of count, "
                                               "mean, sd, lag1, min, q1, median, q3, max."},
        {"[report]\nquantity = speed, in m/s\n",
         "x.ini: section \"report\", key \"quantity\": \"speed, in m/s\" is a list; a comma that belongs to a value "
         "stands in double quotes. Expected is what was measured, with its unit."},
        {"[input]\ndelimiter = ,\n",
         "x.ini: section \"input\", key \"delimiter\": \", \" is a list; a comma that belongs to a value stands in "
         "double quotes. Expected is blanks, tab, csv, or characters that are neither letters nor a part of a number."},
        {"[report]\ndigit = 3\n",
         "x.ini: section \"report\", key \"digit\" is unknown. Known are \"digits\", \"quantity\", \"stats\"."},
        {"[report]\ncolumn = 3\n",
         "x.ini: section \"report\", key \"column\" is unknown. Known are \"digits\", \"quantity\", \"stats\"."},
        {"[input]\nDigits\n", "x.ini: section \"input\", key \"Digits\" is unknown. Known are \"column\", \"comment\", "
                              "\"delimiter\", \"header\"."},
        {"[reports]\n", "x.ini: section \"reports\" is unknown. Known are \"input\", \"report\"."},
        {"[ report ]\ndigits = 3\n", "x.ini: section \" report \" is unknown. Known are \"input\", \"report\"."},
        {"digits = 3\n", "x.ini: key \"digits\" stands in no section. Known are \"input\", \"report\"."},
        {"[report]\n[]\n \nx\n", "x.ini: key \"x\" stands in no section. Known are \"input\", \"report\"."},
    };
    for (const auto& [content, expected] : rows) {
        EXPECT_EQ(expected, refusalOf(content)) << content;
    }
}

TEST(ConfigureTest, MissingValueIsAMistake)
{
    const std::string noValue = "There is no value (a sign # begins a comment wherever it stands). Expected is ";
    const std::vector<std::pair<std::string, std::string>> rows{
        {"[input]\ncomment = #\n",
         "key \"comment\": " + noValue + "none, hash for the sign #, or a text that is no part of a number."},
        {"[input]\ncomment =\n",
         "key \"comment\": " + noValue + "none, hash for the sign #, or a text that is no part of a number."},
        {"[input]\ncolumn\n", "key \"column\": " + noValue + "a column, counted from 1, or 0 for lines of one number."},
        {"[input]\nheader =\n", "key \"header\": " + noValue + "yes or no."},
    };
    for (const auto& [content, expected] : rows) {
        EXPECT_EQ("x.ini: section \"input\", " + expected, refusalOf(content)) << content;
    }
    EXPECT_EQ("x.ini: section \"report\", key \"digits\": " + noValue + "a whole number from 1 to 17.",
              refusalOf("[report]\ndigits\n"));
}

TEST(ConfigureTest, MessagesStayShortAndHarmless)
{
    EXPECT_EQ("x.ini: section \"report\", key \"di?gits\" is unknown. Known are \"digits\", \"quantity\", \"stats\".",
              refusalOf("[report]\ndi\x1bgits = 3\n"));
    EXPECT_EQ("x.ini: section \"" + std::string(40, 'a') + "...\" is unknown. Known are \"input\", \"report\".",
              refusalOf("[" + std::string(500, 'a') + "]\n"));
}

} // namespace

} // namespace seriesstat
