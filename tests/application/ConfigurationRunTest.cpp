/// \file
/// What a whole run of a tool does to its configuration, and what its user sees.

#include "support/ChildProcess.h"
#include "support/Scratch.h"
#include "support/UserData.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace KelvoBase
{

namespace
{

using test::ChildOptions;
using test::ChildResult;
using Words = std::vector<std::string>;

class ConfigurationRun : public testing::Test
{
protected:
    ConfigurationRun()
    {
        mScratch.write("base/etc/configtool.ini", "[a]\nk=1\nnames=x, y\n");
        mScratch.write("work/present", "");
    }
    /// Runs the tool with these steps.
    ChildResult run(Words words, const std::vector<std::pair<std::string, std::string>>& settings = {}) const
    {
        words.insert(words.begin(), CONFIG_TOOL);
        ChildOptions options;
        options.unset = {"ERROR_RETURNS", "DRAVO2_INSTDIR", "HOME", "HOMEDRIVE", "HOMEPATH"};
        options.environment = settings;
        options.environment.emplace_back("DRAVO2_BASEDIR", mScratch.location("base"));
        options.environment.insert(options.environment.end(), mUser.environment().begin(), mUser.environment().end());
        options.workingDirectory = (mScratch / "work").string();
        return runChild(words, options);
    }
    std::filesystem::path saved(const std::string& name = "configtool.ini") const
    {
        return mUser.folder() / "dravo2" / "etc" / name;
    }
    /// The content of the user's file; "none" if there is no such file.
    std::string savedText() const { return std::filesystem::exists(saved()) ? test::textIn(saved()) : "none"; }

    test::ScratchDirectory mScratch;
    test::UserData mUser{mScratch / "user"};
};

std::string report(const std::string& text)
{
    return text + "\nTry \"" + CONFIG_TOOL + " --help\" for more information.\n";
}

const std::string whole = "[a]\nk=2\nnames=x,y\n\n";

TEST_F(ConfigurationRun, SavesWhatItChangedForTheNextRun)
{
    const ChildResult first = run({"show=a=k", "set=a=k=2", "show=a=k"});
    EXPECT_EQ(first.status, 7);
    EXPECT_EQ(first.out, "1\n2\ndestroyed\n");
    EXPECT_EQ(first.err, "");
    EXPECT_EQ(savedText(), whole);
    EXPECT_EQ(run({"show=a=k", "show=a=names"}).out, "2\nx,y\ndestroyed\n");
}

TEST_F(ConfigurationRun, SavesNothingThatDidNotChange)
{
    EXPECT_EQ(run({"show=a=k", "set=a=k=1"}).status, 7);
    EXPECT_EQ(savedText(), "none");
}

TEST_F(ConfigurationRun, SavesNothingIfItEndsThroughExit)
{
    // Required, Q-121
    struct Row
    {
        const char* step;
        int status;
        std::string err;
    };
    const Row rows[] = {{"error", 1, report("reported")},
                        {"check", 1, report("checked")},
                        {"throw", 1, report("thrown")},
                        {"exit", 3, ""}};
    for (const Row& row : rows) {
        const ChildResult result = run({"set=a=k=2", row.step});
        EXPECT_EQ(result.status, row.status) << row.step;
        EXPECT_EQ(result.out, "") << row.step;
        EXPECT_EQ(result.err, row.err) << row.step;
        EXPECT_EQ(savedText(), "none") << row.step;
    }
}

TEST_F(ConfigurationRun, SavesWhereErrorReturns)
{
    const ChildResult result = run({"set=a=k=2", "throw"}, {{"ERROR_RETURNS", "1"}});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "error(thrown|std)\ndestroyed\n");
    EXPECT_EQ(savedText(), whole);
}

TEST_F(ConfigurationRun, HelpAndVersionReadNoConfiguration)
{
    mScratch.write("base/etc/configtool.ini", "[broken\n");
    for (const char* option : {"--help", "--version"}) {
        const ChildResult result = run({option});
        EXPECT_EQ(result.status, 0) << option;
        EXPECT_EQ(result.err, "") << option;
    }
}

TEST_F(ConfigurationRun, TakesTheNameOfItsOption)
{
    mScratch.write("base/etc/own.ini", "[a]\nk=own\n");
    mScratch.write("base/etc/default.ini", "[a]\nk=default\n");
    EXPECT_EQ(run({"show=a=k"}).out, "1\ndestroyed\n") << "the option's default is not given";
    EXPECT_EQ(run({"--config-file=own.ini", "show=a=k", "set=a=k=2"}).out, "own\ndestroyed\n");
    EXPECT_EQ(test::textIn(saved("own.ini")), "[a]\nk=2\n\n");
    EXPECT_EQ(savedText(), "none");
    EXPECT_EQ(run({"-c", "own.ini", "show=a=k"}).out, "2\ndestroyed\n");
}

TEST_F(ConfigurationRun, MissingConfigurationEndsTheRun)
{
    const ChildResult result = run({"--config-file=none.ini", "get"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, report("Cannot read from file \"none.ini\""));
}

TEST_F(ConfigurationRun, SyntaxErrorEndsTheRunAndShowsTheLineInTheTrace)
{
    mScratch.write("base/etc/configtool.ini", "[a]\n\n = 1\n");
    const std::string file = "file://localhost/" + mScratch.location("base/etc/configtool.ini");
    const std::string reported = report("Parsing config file \"" + file + "\"");
    const ChildResult result = run({"get"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "|-- ConfigFile::parse(): error in line 3\n|-- ' = 1'\n|-- while parsing Entry\n" + reported);
    EXPECT_EQ(run({"--trace-level=crit", "get"}).err, reported);
}

TEST_F(ConfigurationRun, FileThatCannotBeSavedIsToldAndLeavesTheStatus)
{
    const std::string elsewhere = "rename=" + saved().parent_path().string() + "=" + (mScratch / "gone").string();
    const std::string file = "file://localhost/" + test::locationOf(saved());
    const std::string told = "ConfigFile: Unable to open file '" + file + "'\n";
    const ChildResult result = run({"set=a=k=2", elsewhere});
    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.out, "destroyed\n");
    EXPECT_EQ(result.err, told);
    std::filesystem::remove_all(mScratch / "gone");
    EXPECT_EQ(run({"set=a=k=2", elsewhere, "silent"}).err, "");
    EXPECT_EQ(savedText(), "none");
}

} // namespace

} // namespace KelvoBase
