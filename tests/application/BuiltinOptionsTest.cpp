#include "Probe.h"
#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <kelvobase/Application.h>
#include <kelvobase/System.h>
#include <kelvobase/Time.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <locale>
#include <string>
#include <vector>

namespace KelvoBase
{

namespace
{

using test::Probe;
using Text = ScalarAny<std::string>;

struct Builtin
{
    const char* name;
    char letter;
    const char* type; // of the value; null: none
    const char* value;
};

const Builtin builtins[] = {
    {"help", 0, nullptr, ""},
    {"version", 0, nullptr, ""},
    {"trace-level", 't', "StringAny", "warn"},
    {"trace-area", 0, "StringVectorAny", "App"},
    {"trace-to", 0, "StringAny", "cerr"},
};

TEST(BuiltinOptions, StandFirstInTheirOrder)
{
    Probe tool;
    tool.defineOption("alpha", 0, false);
    std::vector<std::string> names;
    tool.findOptionBy([&](const CLOption& option) {
        names.push_back(option.getLong());
        return false;
    });
    EXPECT_EQ(names, (std::vector<std::string>{"help", "version", "trace-level", "trace-area", "trace-to", "alpha"}));
}

TEST(BuiltinOptions, HaveTheirLettersAndDefaults)
{
    const Probe tool;
    for (const Builtin& row : builtins) {
        SCOPED_TRACE(row.name);
        const CLOption& option = *tool.findOption(row.name);
        EXPECT_EQ(option.getShort(), row.letter);
        EXPECT_FALSE(option.isSet());
        if (row.type == nullptr) {
            EXPECT_EQ(option.getValue(), nullptr);
        } else {
            EXPECT_EQ(option.getValue()->getTypeString(), row.type);
            EXPECT_EQ(option.getValue()->toString(","), row.value);
        }
    }
    EXPECT_EQ(tool.findOption("trace-area")->getValue()->size(), 1u);
}

TEST(BuiltinOptions, NoneIsMandatory)
{
    Probe tool;
    EXPECT_EQ(tool.faultOf({}), "");
}

TEST(BuiltinOptions, TheirHelpTextsAreTheFixedOnes)
{
    Probe tool;
    tool.prepare({});
    tool.usage();
    ASSERT_EQ(tool.messages.size(), 1u);
    const std::string table = "     --help              Show this help.\n"
                              "     --trace-area area   restricts output of trace message to defined trace\n"
                              "                         areas (All, KelvoBase, CoreObjects,\n"
                              "                         AttributeManagement, Partitions, Evaluators,\n"
                              "                         Rewriting, Persistence, Numerics, Summaries, Learners,\n"
                              "                         Searches, Drawing, QtDravo, Sorvik, TableStore,\n"
                              "                         PyDravo, App[default])\n"
                              "     --trace-to file     where to store trace output (cout, cerr, or filename)\n"
                              "     --version           Show the program version\n"
                              " -t, --trace-level level minimum importance of logged messages (crit, fail,\n"
                              "                         warn, verbose)\n";
    EXPECT_NE(tool.messages[0].find("\n" + table), std::string::npos) << tool.messages[0];
}

// The command line as text

std::string lineOf(Probe& tool, const std::vector<std::string>& words)
{
    tool.defineOption("verbose", 'v', false);
    tool.defineOption("quiet", 'q', false);
    tool.defineOption("out", 'o', false).setArg("file", new Text("default"));
    tool.defineOption("list", 0, false).setArg("x", new VectorAny<Text>);
    tool.setRevision("1.7");
    tool.prepare(words);
    return tool.printCMDline();
}

struct Printed
{
    std::vector<std::string> words;
    const char* line;
};

TEST(BuiltinOptions, CommandLineIsPrintedInSortedOrder)
{
    const Printed rows[] = {
        {{"ab"}, "probe (Rev. 1.7) -- ab\n"},
        {{"-vox", "--list=a,b", "ab", "cd"}, "probe (Rev. 1.7) --list=a,b --out=x --verbose -- ab cd\n"},
        {{"--out="}, "probe (Rev. 1.7) --out= \n"},
        {{"--list=a,,b,c"}, "probe (Rev. 1.7) --list=a,,b,c \n"},
        {{"--verbose=no"}, "probe (Rev. 1.7) --verbose \n"},
        {{"-tcrit", "--trace-area=All"}, "probe (Rev. 1.7) --trace-area=All --trace-level=crit \n"},
        {{"--", "", "a b", "-v"}, "probe (Rev. 1.7) --  a b -v\n"},
    };
    for (const Printed& row : rows) {
        Probe tool;
        EXPECT_EQ(lineOf(tool, row.words), row.line);
    }
}

TEST(BuiltinOptions, PrintedCommandLineHasABlankBehindEachOption)
{
    // Required, Q-114
    Probe tool;
    EXPECT_EQ(lineOf(tool, {"-vq"}), "probe (Rev. 1.7) --quiet --verbose \n");
    Probe other;
    EXPECT_EQ(lineOf(other, {}), "probe (Rev. 1.7) \n");
}

TEST(BuiltinOptions, UnsetApplicationPrintsAnEmptyLine)
{
    const Probe tool;
    EXPECT_EQ(tool.printCMDline(), " (Rev. ) \n");
}

// Place of the program

TEST(BuiltinOptions, ProgramLocationIsTheRunningProgram)
{
    const Probe tool;
    EXPECT_TRUE(tool.getProgramLocation().isFile());
    EXPECT_EQ(tool.getProgramLocation(), System::instance().getExeImagePath());
    EXPECT_NE(tool.getProgramLocation().lastComponent().find("BuiltinOptionsTest"), std::string::npos);
}

TEST(BuiltinOptions, ProgramLocationIsMadeAnewAtEachCall)
{
    const Probe tool;
    const ResourceLocation first = tool.getProgramLocation();
    EXPECT_EQ(tool.getProgramLocation(), first);
}

// The year

TEST(BuiltinOptions, YearIsTakenAsGiven)
{
    Probe tool;
    EXPECT_EQ(tool.getYear(), "NOW");
    tool.setYear("1999");
    EXPECT_EQ(tool.getYear(), "1999");
    tool.setYear(" the year ");
    EXPECT_EQ(tool.getYear(), " the year ");
}

TEST(BuiltinOptions, EmptyYearIsTheCurrentOne)
{
    Probe tool;
    const int before = Time(System::instance().now()).getYear();
    tool.setYear("");
    const int after = Time(System::instance().now()).getYear();
    EXPECT_TRUE(tool.getYear() == std::to_string(before) || tool.getYear() == std::to_string(after)) << tool.getYear();
}

// Version text

std::string goldenFile(const std::string& name)
{
    return test::contentOf(std::filesystem::path(GOLDEN_DIRECTORY) / name);
}

TEST(BuiltinOptions, VersionTextIsTheFixedOne)
{
    const test::ChildResult result = test::runChild({RICH_TOOL, "--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, goldenFile("richtool-version.txt"));
    EXPECT_EQ(result.err, "");
}

struct Stop
{
};

/// The first message of a run, which stops there.
std::string versionTextOf(double version, const std::string& year)
{
    struct Versioned : public Probe
    {
        void message(const std::string& text) const override
        {
            Probe::message(text);
            throw Stop{};
        }
    };
    Versioned tool;
    tool.setVersion(version);
    if (!year.empty()) {
        tool.setYear(year);
    }
    EXPECT_THROW(tool.prepare({"--version"}), Stop);
    return tool.messages.at(0);
}

TEST(BuiltinOptions, VersionNumberIsInDefaultFormat)
{
    const std::pair<double, const char*> rows[] = {
        {2.5, "2.5"},       {2.0, "2"},       {0.0, "0"},      {1234567.0, "1.23457e+06"},
        {0.1 + 0.2, "0.3"}, {10.25, "10.25"}, {1e-5, "1e-05"}, {-1.0, "-1"}};
    for (const auto& [version, text] : rows) {
        EXPECT_EQ(versionTextOf(version, "1999"), std::string("Probe, Version ") + text +
                                                      " (Rev. ) \n(c) 1999 Ostrelle\n\nProbe is based on the DRAVO "
                                                      "library.\n(c) 1999-1999 Ostrelle");
    }
}

TEST(BuiltinOptions, VersionNumberHasAPointInEveryLocale)
{
    struct Comma : public std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    EXPECT_EQ(versionTextOf(2.5, "1999").substr(0, 19), "Probe, Version 2.5 ");
    EXPECT_EQ(versionTextOf(12345.0, "1999").substr(0, 21), "Probe, Version 12345 ");
    std::locale::global(before);
}

TEST(BuiltinOptions, YearThatWasNeverSetReadsNow)
{
    // Required, Q-119
    EXPECT_EQ(versionTextOf(1.0, ""), "Probe, Version 1 (Rev. ) \n(c) NOW Ostrelle\n\nProbe is based on the DRAVO "
                                      "library.\n(c) 1999-NOW Ostrelle");
}

} // namespace

} // namespace KelvoBase
