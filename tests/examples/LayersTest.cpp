#include "Installation.h"

#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

using KelvoBase::test::ChildOptions;
using KelvoBase::test::ChildResult;
using KelvoBase::test::locationOf;
using test::hint;
using test::Installation;
using test::places;

// Which file wins. Every key has a series and two values that show in its report; other keys stand in the first place.

struct Key
{
    std::string section;
    std::string key;
    std::string series;
    std::vector<std::string> arguments;
    std::string low;
    std::string lowReport;
    std::string high;
    std::string highReport;
    std::vector<std::string> highOption;
};

std::string reportOf(const std::string& quantity, const std::string& label, const std::string& number)
{
    return quantity + "\n\nd.txt\n  " + KelvoBase::trimLength(label, 22) + " " + number + "\n";
}

std::string meanOf(const std::string& number)
{
    return reportOf("x", "mean", number);
}

const std::vector<Key>& keys()
{
    static const std::vector<Key> all{
        {"input", "column", "1 2\n", {}, "1", meanOf("1.0"), "2", meanOf("2.0"), {"--column=2"}},
        {"input", "comment", "a 1\nb 2\n", {"-c2"}, "a", meanOf("2.0"), "b", meanOf("1.0"), {"--comment=b"}},
        {"input", "delimiter", "x,1,;2;\n", {"-c2"}, "\",\"", meanOf("1.0"), ";", meanOf("2.0"), {"--delimiter=;"}},
        {"input", "header", "1\n2\n", {}, "yes", meanOf("2.0"), "no", meanOf("1.5"), {"--no-header"}},
        {"input", "header", "1\n2\n", {}, "no", meanOf("1.5"), "yes", meanOf("2.0"), {"--header"}},
        {"report", "digits", "1\n", {}, "3", meanOf("1.00"), "4", meanOf("1.000"), {"--digits=4"}},
        {"report",
         "quantity",
         "1\n",
         {},
         "a / b",
         reportOf("a / b", "mean", "1.0"),
         "c",
         reportOf("c", "mean", "1.0"),
         {"--quantity=c"}},
        {"report",
         "stats",
         "1\n",
         {},
         "min",
         reportOf("x", "minimum", "1.0"),
         "max",
         reportOf("x", "maximum", "1.0"),
         {"--stats=max"}},
    };
    return all;
}

/// A file of the configuration with the common settings, if it is for the first place, and one more.
std::string fileOf(std::size_t place, const Key& key, const std::string& value)
{
    const std::string common = "[report]\nquantity = x\ndigits = 2\nstats = mean\n";
    return (place == 0 ? common : "") + "[" + key.section + "]\n" + key.key + " = " + value + "\n";
}

/// Runs with `low` in one place and `high` in another, or with the option if there is no such place.
ChildResult runWith(const Key& key, std::size_t lowPlace, std::size_t highPlace)
{
    const Installation installation;
    installation.write("work/d.txt", key.series);
    installation.write(std::string(places[0]) + "/etc/seriesstat.ini", fileOf(0, key, key.low));
    installation.write(std::string(places[lowPlace]) + "/etc/seriesstat.ini", fileOf(lowPlace, key, key.low));
    std::vector<std::string> arguments = key.arguments;
    if (highPlace < places.size()) {
        installation.write(std::string(places[highPlace]) + "/etc/seriesstat.ini", fileOf(highPlace, key, key.high));
    } else {
        arguments.insert(arguments.end(), key.highOption.begin(), key.highOption.end());
    }
    arguments.push_back("d.txt");
    return installation.run(arguments);
}

TEST(LayersTest, EveryPlaceWinsOverThoseInFrontOfItKeyByKey)
{
    for (const Key& key : keys()) {
        for (std::size_t place = 0; place < places.size(); ++place) {
            SCOPED_TRACE(key.key + ": " + places[place] + " against the next");
            const ChildResult run = runWith(key, place, place + 1);
            EXPECT_EQ(key.highReport, run.out);
            EXPECT_EQ("", run.err);
            EXPECT_EQ(0, run.status);
        }
    }
}

TEST(LayersTest, WhatTheFirstPlaceSaysHoldsUnlessAnotherSaysOtherwise)
{
    for (const Key& key : keys()) {
        SCOPED_TRACE(key.key);
        const Installation installation;
        installation.write("work/d.txt", key.series);
        installation.write("base/etc/seriesstat.ini", fileOf(0, key, key.low));
        installation.write("user/dravo2/etc/seriesstat.ini", "[input]\n[report]\n");
        std::vector<std::string> arguments = key.arguments;
        arguments.push_back("d.txt");
        EXPECT_EQ(key.lowReport, installation.run(arguments).out);
    }
}

TEST(LayersTest, PlacesAddUp)
{
    const Installation installation;
    installation.write("work/d.txt", "; a comment\nname|value\nx|2\n");
    installation.write("base/etc/seriesstat.ini", "[input]\ncolumn = 2\n");
    installation.write("inst/etc/seriesstat.ini", "[input]\ndelimiter = |\n");
    installation.write("place/etc/seriesstat.ini", "[input]\nheader\n[report]\nstats = max, mean\n");
    installation.write("work/etc/seriesstat.ini", "[input]\ncomment = ;\n[report]\ndigits = 9\n");
    installation.write("user/dravo2/etc/seriesstat.ini", "[report]\nquantity = time / s\n");
    const ChildResult run = installation.run({"--digits=3", "d.txt"});
    EXPECT_EQ("time / s\n\nd.txt\n  maximum                2.00\n  mean                   2.00\n", run.out);
    EXPECT_EQ("", run.err);
}

TEST(LayersTest, ConfiguredDelimiterIsNotUsedWhereALineIsOneNumber)
{
    const Installation installation;
    installation.write("work/d.txt", "1\n");
    installation.write("work/etc/seriesstat.ini", "[input]\ndelimiter = csv\ncolumn = 2\n");
    EXPECT_EQ(meanOf("1.0"), installation.run({"-qx", "-smean", "--digits=2", "-c0", "d.txt"}).out);
}

TEST(LayersTest, ConfiguredColumnServesTheDelimiterOfTheCommandLine)
{
    const Installation installation;
    installation.write("work/d.txt", "1,2\n");
    installation.write("work/etc/seriesstat.ini", "[input]\ncolumn = 2\n");
    EXPECT_EQ(meanOf("2.0"), installation.run({"-qx", "-smean", "--digits=2", "--csv", "d.txt"}).out);
}

TEST(LayersTest, WithoutAnyFileTheBuiltInDefaultsHold)
{
    const Installation installation;
    installation.write("work/d.txt", "# one\n1\n");
    const ChildResult run = installation.run({"-qx", "-smean", "d.txt"});
    EXPECT_EQ(meanOf("1.00000000000000"), run.out);
    EXPECT_EQ("", run.err);
    EXPECT_EQ(0, run.status);
}

// Which configuration.

TEST(LayersTest, ConfigurationOfAnotherNameIsReadInItsPlace)
{
    const Installation installation;
    installation.write("work/d.txt", "1\n");
    installation.write("work/etc/seriesstat.ini", "[report]\nno such key\n");
    installation.write("inst/etc/optics.ini", "[report]\nquantity = x\ndigits = 3\n");
    installation.write("user/dravo2/etc/optics.ini", "[report]\nstats = mean\n");
    const ChildResult run = installation.run({"--config-file=optics.ini", "d.txt"});
    EXPECT_EQ(meanOf("1.00"), run.out);
    EXPECT_EQ("", run.err);
}

TEST(LayersTest, ConfigurationThatWasAskedForHasToBeThere)
{
    const Installation installation;
    installation.write("work/d.txt", "1\n");
    installation.write("work/optics.ini", "[report]\n");
    installation.write("work/etc/seriesstat.ini", "[report]\nquantity = x\n");
    const ChildResult run = installation.run({"--config-file", "optics.ini", "d.txt"});
    std::string searched;
    for (const char* place : places) {
        searched +=
            std::string(searched.empty() ? "" : "; ") + "\"" + (installation / place / "etc").generic_string() + "\"";
    }
    EXPECT_EQ("Cannot find file \"optics.ini\" in " + searched + ".\n" + hint, run.err);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(1, run.status);
}

TEST(LayersTest, NameOfAConfigurationHasNoDirectories)
{
    const Installation installation;
    installation.write("work/d.txt", "1\n");
    for (const char* name : {"", "etc/optics.ini", "..\\optics.ini", "C:optics.ini", "\"optics.ini"}) {
        const ChildResult run = installation.run({"-qx", std::string("--config-file=") + name, "d.txt"});
        EXPECT_EQ("Option --config-file takes the bare name of a file, which is searched in directories of its own.\n" +
                      std::string(hint),
                  run.err)
            << name;
        EXPECT_EQ("", run.out);
        EXPECT_EQ(1, run.status);
    }
}

// Mistakes, wherever they stand.

TEST(LayersTest, ValueThatDoesNotFitEndsTheRunFromEveryPlace)
{
    for (const char* place : places) {
        SCOPED_TRACE(place);
        const Installation installation;
        installation.write("work/d.txt", "1\n");
        installation.write(std::string(place) + "/etc/seriesstat.ini", "[report]\ndigits = many\n");
        const ChildResult run = installation.run({"-qx", "d.txt"});
        EXPECT_EQ("seriesstat.ini: section \"report\", key \"digits\": \"many\" does not fit. Expected is a whole "
                  "number from 1 to 17.\n" +
                      std::string(hint),
                  run.err);
        EXPECT_EQ("", run.out);
        EXPECT_EQ(1, run.status);
    }
}

TEST(LayersTest, MistakeThatALaterPlaceCorrectsIsNone)
{
    const Installation installation;
    installation.write("work/d.txt", "1\n");
    installation.write("inst/etc/seriesstat.ini", "[report]\ndigits = many\n");
    installation.write("work/etc/seriesstat.ini", "[report]\ndigits = 2\n");
    EXPECT_EQ(meanOf("1.0"), installation.run({"-qx", "-smean", "d.txt"}).out);
}

TEST(LayersTest, MistakeInTheConfigurationIsNotHealedByTheCommandLine)
{
    const Installation installation;
    installation.write("work/d.txt", "1\n");
    installation.write("work/etc/seriesstat.ini", "[report]\ndigits = many\n");
    EXPECT_EQ(1, installation.run({"-qx", "--digits=2", "d.txt"}).status);
}

TEST(LayersTest, FileThatCannotBeParsedEndsTheRunFromEveryPlace)
{
    for (const char* place : places) {
        SCOPED_TRACE(place);
        const Installation installation;
        installation.write("work/d.txt", "1\n");
        const std::string name = std::string(place) + "/etc/seriesstat.ini";
        installation.write(name, "[report]\ndigits = 3\n[input\n");
        const ChildResult run = installation.run({"-qx", "d.txt"});
        EXPECT_EQ("|-- ConfigFile::parse(): error in line 3\n|-- '[input'\n|-- while parsing Section\n"
                  "Parsing config file \"file://localhost/" +
                      locationOf(installation / name) + "\"\n" + hint,
                  run.err);
        EXPECT_EQ("", run.out);
        EXPECT_EQ(1, run.status);
    }
}

TEST(LayersTest, DirectoryInThePlaceOfAFileIsSkippedInTheInstallation)
{
    const Installation installation;
    installation.write("work/d.txt", "1\n");
    for (const char* place : {"base", "inst", "place", "work"}) {
        std::filesystem::create_directory(installation / place / "etc/seriesstat.ini");
    }
    const ChildResult run = installation.run({"-qx", "-smean", "--digits=2", "d.txt"});
    EXPECT_EQ(meanOf("1.0"), run.out);
    EXPECT_EQ("", run.err);
}

TEST(LayersTest, NoQuantityAnywhereEndsTheRun)
{
    const Installation installation;
    installation.write("work/d.txt", "1\n");
    const ChildResult run = installation.run({"d.txt"});
    EXPECT_EQ("Option --quantity has to be given, or \"quantity\" set in section \"report\" of the configuration: a "
              "number without its quantity and unit is no result.\n" +
                  std::string(hint),
              run.err);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(1, run.status);
}

TEST(LayersTest, HelpAndVersionComeInSpiteOfAMistake)
{
    const Installation installation;
    installation.write("work/etc/seriesstat.ini", "[report\n");
    EXPECT_EQ(0, installation.run({"--help"}).status);
    EXPECT_EQ(0, installation.run({"--version"}).status);
}

// Data that come with the tool.

TEST(LayersTest, SampleIsFoundFromTheWorkingDirectoryBackwards)
{
    const Installation installation;
    const std::array<const char*, 4> order{"work", "place", "inst", "base"};
    for (std::size_t i = 0; i < order.size(); ++i) {
        installation.write(std::string(order[i]) + "/share/seriesstat/sub/s.txt", std::to_string(i) + "\n");
    }
    for (std::size_t i = 0; i < order.size(); ++i) {
        const std::filesystem::path file = installation / order[i] / "share/seriesstat/sub/s.txt";
        const ChildResult run = installation.run({"-qx", "-smax", "--digits=2", "--sample=sub/s.txt"});
        EXPECT_EQ("x\n\n" + file.generic_string() + "\n  maximum                " +
                      (i == 0 ? "0.0" : std::to_string(i) + ".0") + "\n",
                  run.out);
        EXPECT_EQ("", run.err);
        std::filesystem::remove(file);
    }
}

TEST(LayersTest, SampleThatIsNowhereIsReportedWithAllPlaces)
{
    const Installation installation;
    installation.write("user/dravo2/share/seriesstat/s.txt", "1\n"); // not searched
    std::filesystem::create_directories(installation / "inst/share/seriesstat/s.txt");
    const ChildResult run = installation.run({"-qx", "--sample", "s.txt"});
    std::string searched;
    for (const char* place : {"base", "inst", "place", "work"}) {
        searched += std::string(searched.empty() ? "" : "; ") + "\"" +
                    installation.root().location(std::string(place) + "/share/seriesstat/s.txt") + "\"";
    }
    EXPECT_EQ("Cannot find file \"s.txt\" in " + searched + ".\n" + hint, run.err);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(1, run.status);
}

TEST(LayersTest, SampleStandsInFrontOfOtherFiles)
{
    const Installation installation;
    installation.write("work/d.txt", "1\n");
    installation.write("place/share/seriesstat/s.txt", "2\n");
    EXPECT_EQ("x\n\n" + (installation / "place/share/seriesstat/s.txt").generic_string() +
                  "\n  mean                   2.\n\nd.txt\n  mean                   1.\n",
              installation.run({"-qx", "-smean", "--digits=1", "d.txt", "--sample=s.txt"}).out);
}

// The installation as a whole.

TEST(LayersTest, InstallationCanBeMoved)
{
    const Installation installation;
    installation.write("place/etc/seriesstat.ini", "[report]\nquantity = x\nstats = mean\ndigits = 2\n");
    installation.write("place/share/seriesstat/s.txt", "1\n");
    std::filesystem::create_directory(installation / "opt");
    std::filesystem::rename(installation / "place", installation / "opt/moved");
    ChildOptions options = installation.options();
    const KelvoBase::test::UserData user(installation / "another user");
    options.environment = user.environment();
    options.environment.emplace_back("PATH", (installation / "opt/moved/bin").string());
    options.unset = {"DRAVO2_BASEDIR", "DRAVO2_INSTDIR", "HOME", "HOMEDRIVE", "HOMEPATH"};
    const ChildResult run = Installation::run({"--sample=s.txt"}, options);
    EXPECT_EQ("x\n\n" + (installation / "opt/moved/share/seriesstat/s.txt").generic_string() +
                  "\n  mean                   1.0\n",
              run.out);
    EXPECT_EQ("", run.err);
}

TEST(LayersTest, BuildFolderIsLaidOutLikeAnInstallation)
{
    const Installation installation;
    ChildOptions options = installation.options();
    options.environment.front() = {"PATH", std::filesystem::path(SERIESSTAT_PROGRAM).parent_path().string()};
    const ChildResult run = Installation::run(
        {"-qx", "-smean", "--sample=numacc/NumAcc1.txt", "-tverbose", "--trace-area=Series"}, options);
    EXPECT_TRUE(run.out.ends_with("share/seriesstat/numacc/NumAcc1.txt\n  mean                   10000002.0000000\n"));
    EXPECT_TRUE(run.err.ends_with("NumAcc1.txt: summarizing 3 values\n")) << run.err;
}

} // namespace

} // namespace seriesstat
