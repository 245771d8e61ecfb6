/// \file
/// The table of citations, each time in a process of its own, with an installation and a user in a scratch directory.

#include "support/ChildProcess.h"
#include "support/Scratch.h"
#include "support/UserData.h"

#include <kelvobase/Literature.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <type_traits>

namespace KelvoBase::test
{

namespace
{

constexpr const char* systemFile = "base/etc/Literature.ini";
constexpr const char* failed = "|-- LiteratureMgr(): Initialization failed!\n"
                               "|-- LiteratureMgr(): This will likely cause problems.\n";
constexpr const char* notFound = "|-- \tCannot read from file \"Literature.ini\"\n";

static_assert(!std::is_copy_constructible_v<LiteratureMgr> && !std::is_copy_assignable_v<LiteratureMgr>);

class LiteratureMgrTable : public testing::Test
{
protected:
    LiteratureMgrTable()
    {
        for (const char* name : {"base", "home", "work"}) {
            std::filesystem::create_directory(mScratch / name);
        }
        mOptions.environment.insert(mOptions.environment.end(), mUser.environment().begin(), mUser.environment().end());
    }

    /// Carries out the steps; nothing may be on standard error, and the process ends well.
    std::string run(const std::vector<std::string>& steps)
    {
        std::vector<std::string> command{LITERATURE_TOOL};
        command.insert(command.end(), steps.begin(), steps.end());
        const ChildResult result = runChild(command, mOptions);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "");
        return result.out;
    }

    ScratchDirectory mScratch;
    const UserData mUser{mScratch / "user"};
    const std::filesystem::path mUserFile = mUser.folder() / "dravo2" / "etc" / "Literature.ini";
    ChildOptions mOptions{
        .environment = {{"DRAVO2_BASEDIR", mScratch.location("base")}, {"HOME", (mScratch / "home").string()}},
        .unset = {"DRAVO2_INSTDIR", "HOMEDRIVE", "HOMEPATH"},
        .workingDirectory = (mScratch / "work").string()};
};

TEST_F(LiteratureMgrTable, WithoutAFileLeavesThreeLinesAndWorks)
{
    // Required, Q-917
    EXPECT_EQ(run({"areas", "trace", "make", "search", "berg2004", "search", ""}),
              std::string(failed) + notFound + "made\nnull\nnull\n");
}

TEST_F(LiteratureMgrTable, SaysItsLinesOnlyOnce)
{
    EXPECT_EQ(run({"trace", "make", "make", "search", "x", "make"}),
              std::string(failed) + notFound + "made\nagain\nnull\nagain\n");
}

TEST_F(LiteratureMgrTable, LinesAreFailuresOfAllAreas)
{
    EXPECT_EQ(run({"areas", "traceApp", "make"}), std::string(failed) + notFound + "made\n");
    EXPECT_EQ(run({"areas", "traceCrit", "make"}), "made\n");
}

TEST_F(LiteratureMgrTable, WorksWithoutARegistryOfAreasAndWithoutATrace)
{
    EXPECT_EQ(run({"trace", "make"}), std::string(failed) + notFound + "made\n");
    EXPECT_EQ(run({"areas", "make", "search", "x"}), "made\nnull\n");
    EXPECT_EQ(run({"make", "search", "x"}), "made\nnull\n");
}

TEST_F(LiteratureMgrTable, StaysEmptyWhateverTheFileHolds)
{
    // Required, Q-916
    mScratch.write(systemFile, "[berg2004]\ntitle = T\njournal = J\nyear = 2004\n");
    writeFile(mUserFile, "vale = x\n[vale1998]\ntitle = T\n");
    EXPECT_EQ(run({"areas", "trace", "make", "search", "berg2004", "search", "vale", "search", "vale1998"}),
              "made\nnull\nnull\nnull\n");
}

TEST_F(LiteratureMgrTable, ReadsWithoutAWordFromEitherPlace)
{
    mScratch.write(systemFile, "");
    EXPECT_EQ(run({"trace", "make"}), "made\n");
    std::filesystem::remove(mScratch / systemFile);
    writeFile(mUserFile, "[a]\n");
    EXPECT_EQ(run({"trace", "make"}), "made\n");
    EXPECT_EQ(contentOf(mUserFile), "[a]\n");
}

TEST_F(LiteratureMgrTable, DoesNotLookIntoTheWorkingDirectoryItself)
{
    mScratch.write("work/Literature.ini", "[a]\n");
    EXPECT_EQ(run({"trace", "make"}), std::string(failed) + notFound + "made\n");
    mScratch.write("work/etc/Literature.ini", "[a]\n");
    EXPECT_EQ(run({"trace", "make"}), "made\n");
}

TEST_F(LiteratureMgrTable, BrokenFileLeavesTheFaultOfTheParser)
{
    mScratch.write(systemFile, "[berg2004\n");
    writeFile(mUserFile, "[a]\n");
    const std::string out = run({"areas", "trace", "make", "search", "berg2004"});
    const std::string expected = std::string(failed) + "|-- \tParsing config file \"file://localhost/" +
                                 mScratch.location("base") + "\\etc\\Literature.ini\"\nmade\nnull\n";
    // In front of it stands what the parser says about the line.
    ASSERT_GE(out.size(), expected.size());
    EXPECT_EQ(out.substr(out.size() - expected.size()), expected);
    EXPECT_EQ(out.substr(0, 40), "|-- ConfigFile::parse(): error in line 1");
}

TEST_F(LiteratureMgrTable, GetLiteratureAlwaysThrows)
{
    // Required, Q-918
    const std::string expected = "refused: LiteratureMgr::getLiterature()\n";
    EXPECT_EQ(run({"get", "berg2004", "get", ""}), expected + expected);
    mScratch.write(systemFile, "[berg2004]\ntitle = T\n");
    EXPECT_EQ(run({"trace", "get", "berg2004", "get", "other"}), expected + expected);
}

} // namespace

} // namespace KelvoBase::test
