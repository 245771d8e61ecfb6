#include "support/FakePlatform.h"
#include "support/Scratch.h"
#include "support/Text.h"
#include "system/DirectoriesRun.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>

namespace
{

using namespace KelvoBase;
using test::Environment;
using test::FakeSystem;
using test::lines;
using test::ScopedEnvironment;
using test::Steps;

constexpr const char* noBase = "KelvoBase::OperationFailedException[System: No valid DRAVO base dir could be found. \n"
                               "\tHint: Please set the environment variable \"DRAVO2_BASEDIR\"\n]";
constexpr const char* noHome = "KelvoBase::IOException[System: Unable to locate home directory]";
constexpr const char* noAppData = "KelvoBase::IOException[System: Unable to locate app directory]";
constexpr const char* noDirectory = "KelvoBase::OperationFailedException[getcwd()]";

std::string run(const Steps& steps, const Environment& environment = {})
{
    return test::answersOf(DIRECTORIES_FAULTS_TOOL, steps, environment);
}

// Directories of the installation. The working directory is C:\lab\dir, and does not exist unless a step makes it.

TEST(DirectoriesFaultsTest, ProgramInABinDirectoryGivesItsParent)
{
    EXPECT_EQ(lines({"program", "dir", "C:\\pack", "C:\\pack\\bin", "C:\\pack\\bin"}),
              run({"program|C:\\pack\\bin\\tool.exe", "dir|C:\\pack", "dirs", "bin", "dll"}));
}

TEST(DirectoriesFaultsTest, NameOfTheProgramsDirectoryDecides)
{
    // Required, Q-808
    const std::vector<std::array<std::string, 3>> rows = {
        {"bin", "C:\\pack\\bin", "C:\\pack\\bin"},
        {"bin64", "C:\\pack\\bin64", "C:\\pack\\bin"},
        {"binaries", "C:\\pack\\binaries", "C:\\pack\\bin"},
        {"bin.old", "C:\\pack\\bin.old", "C:\\pack\\bin"},
        {"Bin", "", ""},
        {"sbin", "", ""},
        {"bi", "", ""},
        {"tools", "", ""},
        {"bin\\tools", "", ""},
    };
    for (const auto& [name, bin, dll] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(lines({"dir", "dir", "program", bin.empty() ? "C:\\lab\\dir" : "C:\\pack;C:\\lab\\dir", bin, dll}),
                  run({"dir|C:\\pack", "dir|C:\\lab\\dir", "program|C:\\pack\\" + name + "\\tool.exe", "dirs", "bin",
                       "dll"}));
    }
}

TEST(DirectoriesFaultsTest, ProgramDirectoryNeedNotExist)
{
    EXPECT_EQ(lines({"dir", "program", "C:\\pack\\bin64", "C:\\pack\\bin", "C:\\pack;C:\\lab\\dir"}),
              run({"dir|C:\\pack", "program|C:\\pack\\bin64\\tool", "bin", "dll", "asked"}));
}

TEST(DirectoriesFaultsTest, ProgramDirectoryBelowTheRootGivesTheRoot)
{
    EXPECT_EQ(lines({"program", "C:", "C:\\bin", "C:\\bin"}), run({"program|C:\\bin\\tool", "dirs", "bin", "dll"}));
}

TEST(DirectoriesFaultsTest, BinDirectoryWithoutAParentAddsNothing)
{
    EXPECT_EQ(lines({"program", "dir", "C:\\lab\\dir", "\\\\server\\bin64", "\\\\server\\bin"}),
              run({"program|\\\\server\\bin64\\tool", "dir|C:\\lab\\dir", "dirs", "bin", "dll"}));
}

TEST(DirectoriesFaultsTest, ProgramThatIsNotLocalEndsTheSearch)
{
    const std::string failure = "KelvoBase::NotAFileException[\"\\\\?\\C://localhost/pack\" is not a (locally "
                                "accessible) file or directory name.]";
    EXPECT_EQ(lines({"program", failure, "/pack/bin", failure}),
              run({"program|\\\\?\\C:/pack/bin/tool", "dirs", "bin", "dll"}));
}

TEST(DirectoriesFaultsTest, ProgramOnANetworkShareGivesItsParent)
{
    EXPECT_EQ(lines({"program", "dir", "\\\\server\\share", "\\\\server\\share\\bin", "\\\\server\\share\\bin"}),
              run({"program|\\\\server\\share\\bin\\tool", "dir|\\\\server\\share", "dirs", "bin", "dll"}));
}

TEST(DirectoriesFaultsTest, ProgramWithoutAPathAddsNothing)
{
    EXPECT_EQ(lines({"no-program", "dir", "C:\\lab\\dir", "", ""}),
              run({"no-program", "dir|C:\\lab\\dir", "dirs", "bin", "dll"}));
}

TEST(DirectoriesFaultsTest, WithoutAnyDirectoryTheSearchThrows)
{
    // Required, Q-809
    EXPECT_EQ(lines({"no-program", noBase, noBase, noBase, noBase, noBase, noBase}),
              run({"no-program", "set", "dirs", "bin", "dll", "appdir|x|app", "appfile|x|app"},
                  {{"DRAVO2_BASEDIR", "C:\\missing"}}));
}

TEST(DirectoriesFaultsTest, FailedSearchIsTriedAgain)
{
    EXPECT_EQ(lines({"no-program", noBase, "dir", "C:\\lab\\dir"}),
              run({"no-program", "set", "dir|C:\\lab\\dir", "dirs"}));
}

TEST(DirectoriesFaultsTest, FailedSearchKeepsWhatItKnowsOfTheProgram)
{
    EXPECT_EQ(lines({"program", noBase, "C:\\pack\\bin64", "C:\\pack\\bin"}),
              run({"program|C:\\pack\\bin64\\tool", "bin", "bin", "dll"}));
}

TEST(DirectoriesFaultsTest, DirectoriesOfTheProgramAreNotLookedForBehindAFilledList)
{
    EXPECT_EQ(lines({"no-program", "dir", "C:\\lab\\dir", "program", "", ""}),
              run({"no-program", "dir|C:\\lab\\dir", "dirs", "program|C:\\pack\\bin\\tool", "bin", "dll"}));
}

TEST(DirectoriesFaultsTest, WorkingDirectoryThatNoLocationCanHoldIsLeftOut)
{
    EXPECT_EQ(lines({"dir", "odd-cwd", "no-program", noBase}),
              run({"dir|C:\\odd", "odd-cwd|C:\\odd", "no-program", "dirs"}));
    EXPECT_EQ(lines({"dir", "odd-cwd", "dir", "C:\\fake"}),
              run({"dir|C:\\odd", "odd-cwd|C:\\odd", "dir|C:\\fake", "dirs"}));
}

TEST(DirectoriesFaultsTest, WorkingDirectoryTooLongForTheSystemIsLeftOut)
{
    EXPECT_EQ(lines({"dir", "cwd", "C:\\fake"}), run({"dir|C:\\fake", "cwd|", "dirs"}));
}

TEST(DirectoriesFaultsTest, WithoutAWorkingDirectoryTheSearchThrows)
{
    EXPECT_EQ(lines({"no-program", "no-cwd", noDirectory}), run({"no-program", "no-cwd", "dirs"}));
    EXPECT_EQ(lines({"dir", "no-cwd", noDirectory}), run({"dir|C:\\fake", "no-cwd", "dirs"}));
    EXPECT_EQ(lines({"no-cwd", noDirectory}), run({"no-cwd", "dirs"}, {{"DRAVO2_BASEDIR", "C:\\pack"}}));
}

TEST(DirectoriesFaultsTest, RelativeDirectoryIsKeptThoughTheWorkingDirectoryFails)
{
    EXPECT_EQ(lines({"no-program", "no-cwd", "dir", noDirectory, "pack"}),
              run({"no-program", "no-cwd", "dir|pack", "set", "dirs"}, {{"DRAVO2_BASEDIR", "pack"}}));
}

TEST(DirectoriesFaultsTest, WorkingDirectoryWithoutMemoryThrows)
{
    EXPECT_EQ(lines({"no-program", "no-memory", "KelvoBase::OperationFailedException[calloc()]"}),
              run({"no-program", "no-memory", "dirs"}));
}

TEST(DirectoriesFaultsTest, EachDirectoryIsAskedAboutOnce)
{
    EXPECT_EQ(lines({"dir", "dir", "dir", "C:\\pack;C:\\fake;C:\\lab\\dir", "C:\\pack;C:\\fake;C:\\lab\\dir",
                     "C:\\fake\\bin", ""}),
              run({"dir|C:\\pack", "dir|C:\\fake", "dir|C:\\lab\\dir", "dirs", "asked", "bin", "asked"},
                  {{"DRAVO2_BASEDIR", "C:\\pack"}, {"DRAVO2_INSTDIR", "C:\\pack"}}));
}

TEST(DirectoriesFaultsTest, DataAreLookedForFromTheLastDirectoryToTheFirst)
{
    EXPECT_EQ(lines({"dir", "dir", "file", "set", "C:\\fake;C:\\lab\\dir", "C:\\fake\\share\\app\\x",
                     "C:\\lab\\dir\\share\\app\\x;C:\\fake\\share\\app\\x"}),
              run({"dir|C:\\fake", "dir|C:\\lab\\dir", "file|C:\\fake\\share\\app\\x", "set", "asked", "appfile|x|app",
                   "asked"}));
}

// Directories of the user

TEST(DirectoriesFaultsTest, FoldersOfTheSystemComeFirst)
{
    EXPECT_EQ(lines({"C:\\fake\\documents", "C:\\fake\\data"}),
              run({"home", "appdata"}, {{"HOMEDRIVE", "D:"}, {"HOMEPATH", "\\me"}, {"HOME", "C:\\me"}}));
}

TEST(DirectoriesFaultsTest, WithoutAFolderTheEnvironmentDecides)
{
    const Steps steps = {"no-folders", "dir|D:\\me", "dir|C:\\me", "home", "appdata"};
    const std::vector<std::pair<Environment, std::string>> rows = {
        {{{"HOMEDRIVE", "D:"}, {"HOMEPATH", "\\me"}, {"HOME", "C:\\me"}}, "D:\\me"},
        {{{"HOMEPATH", "D:\\me"}, {"HOME", "C:\\me"}}, "D:\\me"},
        {{{"HOMEDRIVE", "D:\\me"}, {"HOME", "C:\\me"}}, "D:\\me"},
        {{{"HOMEDRIVE", ""}, {"HOMEPATH", ""}, {"HOME", "C:\\me"}}, "C:\\me"},
        {{{"HOME", "C:\\me"}}, "C:\\me"},
    };
    for (const auto& [environment, found] : rows) {
        EXPECT_EQ(lines({"no-folders", "dir", "dir", found, found}), run(steps, environment));
    }
}

TEST(DirectoriesFaultsTest, EmptyFolderCountsAsNone)
{
    EXPECT_EQ(lines({"folder", "dir", "C:\\me", "C:\\me"}),
              run({"folder|", "dir|C:\\me", "home", "appdata"}, {{"HOME", "C:\\me"}}));
}

TEST(DirectoriesFaultsTest, LocationWithoutComponentsCountsAsNone)
{
    EXPECT_EQ(lines({"folder", "dir", "C:\\me"}),
              run({"folder|C:\\..", "dir|C:\\me", "home"}, {{"HOMEPATH", "ftp://host/"}, {"HOME", "C:\\me"}}));
}

TEST(DirectoriesFaultsTest, MissingFolderIsNotReplacedByTheEnvironment)
{
    EXPECT_EQ(lines({"folder", "dir", noHome, noAppData}),
              run({"folder|C:\\missing", "dir|C:\\me", "home", "appdata"}, {{"HOME", "C:\\me"}}));
}

TEST(DirectoriesFaultsTest, WithoutAnythingTheHomeIsNotLocated)
{
    EXPECT_EQ(lines({"no-folders", noHome, noHome, noAppData, noAppData}),
              run({"no-folders", "home", "home", "appdata", "appdata"}));
}

TEST(DirectoriesFaultsTest, SearchWithoutAResultIsTriedAgain)
{
    EXPECT_EQ(lines({"no-folders", noHome, "folder", "dir", "C:\\me"}),
              run({"no-folders", "home", "folder|C:\\me", "dir|C:\\me", "home"}));
}

TEST(DirectoriesFaultsTest, FolderThatIsNoDirectoryThrowsOnce)
{
    // Required, Q-810
    EXPECT_EQ(lines({"folder", noHome, "C:\\missing", "C:\\missing", noAppData, "C:\\missing"}),
              run({"folder|C:\\missing", "home", "home", "home", "appdata", "appdata"}));
    EXPECT_EQ(lines({"folder", "file", noHome, "C:\\file"}), run({"folder|C:\\file", "file|C:\\file", "home", "home"}));
}

TEST(DirectoriesFaultsTest, KnownFoldersAreNotAskedAbout)
{
    EXPECT_EQ(lines({"C:\\fake\\documents", "C:\\fake\\data", "C:\\fake\\documents;C:\\fake\\data", "gone", "gone",
                     "no-folders", "C:\\fake\\documents", "C:\\fake\\data", ""}),
              run({"home", "appdata", "asked", "gone|C:\\fake\\documents", "gone|C:\\fake\\data", "no-folders", "home",
                   "appdata", "asked"}));
}

TEST(DirectoriesFaultsTest, RemoteFolderIsRefusedOnce)
{
    EXPECT_EQ(lines({"folder",
                     "KelvoBase::NotAFileException[\"http://host/me\" is not a (locally accessible) file or directory "
                     "name.]",
                     "/me"}),
              run({"folder|http://host/me", "home", "home"}));
}

TEST(DirectoriesFaultsTest, FolderThatIsNoLocationThrowsEachTime)
{
    const std::string failure = "std::out_of_range[basic_string::substr]";
    EXPECT_EQ(lines({"folder", failure, failure, failure}), run({"folder|//host", "appdata", "appdata", "user|"}));
}

TEST(DirectoriesFaultsTest, UserDirectoryIsMadeBelowTheFolder)
{
    EXPECT_EQ(lines({"C:\\fake\\data\\dravo2", "added", "C:\\fake\\data\\dravo2"}),
              run({"user|create", "add|C:\\fake\\data\\dravo2", "dirs"}));
}

TEST(DirectoriesFaultsTest, UserDirectoryThatExistsNeedsNoCreation)
{
    EXPECT_EQ(lines({"dir", "C:\\fake\\data\\dravo2", "C:\\fake\\data;C:\\fake\\data\\dravo2"}),
              run({"dir|C:\\fake\\data\\dravo2", "user|", "asked"}));
}

TEST(DirectoriesFaultsTest, MissingUserDirectoryThrowsOnce)
{
    // Required, Q-811
    EXPECT_EQ(lines({"KelvoBase::OperationFailedException[System: user Dravo directory "
                     "\"file://localhost/C:\\fake\\data\\dravo2\" is not available.]",
                     "C:\\fake\\data;C:\\fake\\data\\dravo2", "C:\\fake\\data\\dravo2", "C:\\fake\\data\\dravo2", ""}),
              run({"user|", "asked", "user|", "user|create", "asked"}));
}

TEST(DirectoriesFaultsTest, UserDirectoryThatCannotBeMadeThrowsOnce)
{
    EXPECT_EQ(
        lines({"denied", "KelvoBase::IOFailedException[creating directory \"C:\\fake\\data\\dravo2\" failed : Denied]",
               "C:\\fake\\data\\dravo2"}),
        run({"denied", "user|create", "user|create"}));
}

TEST(DirectoriesFaultsTest, UserDirectoryNeedsTheFolderOnce)
{
    EXPECT_EQ(lines({"folder", noAppData, "C:\\missing\\dravo2"}),
              run({"folder|C:\\missing", "user|create", "user|create"}));
}

TEST(DirectoriesFaultsTest, UserDirectoryOfARelativeFolderIsNamedByItsPath)
{
    EXPECT_EQ(lines({"folder", "dir",
                     "KelvoBase::OperationFailedException[System: user Dravo directory \"me\\dravo2\" is not "
                     "available.]"}),
              run({"folder|me", "dir|me", "user|"}));
}

// Temporary files

/// The digits for the second `seconds` of the clock.
std::string digitsOf(unsigned int seconds)
{
    std::srand(seconds);
    const std::uint64_t first = static_cast<std::uint64_t>(std::rand());
    const std::uint64_t number = first * 32767 + static_cast<std::uint64_t>(std::rand());
    std::string digits;
    for (int shift = 28; shift >= 0; shift -= 4) {
        digits += "0123456789abcdef"[(number >> shift) & 15];
    }
    return digits;
}

TEST(DirectoriesFaultsTest, DigitsComeFromTheSecondOfTheClock)
{
    const FakeSystem fake;
    fake->directories.insert("C:\\lab");
    const ScopedEnvironment tmp("TMP", "C:\\lab");
    for (unsigned int second = 0; second < 2000; ++second) {
        fake->now = {static_cast<std::time_t>(second), 0};
        const std::string name = System::instance().tempFile(".tmp", "x").getFilePath('\\');
        ASSERT_EQ("C:\\lab\\x" + digitsOf(second) + ".tmp", name) << second;
    }
}

TEST(DirectoriesFaultsTest, SecondsBeyondTheSeedAreCut)
{
    const FakeSystem fake;
    const ScopedEnvironment tmp("TMP", std::nullopt);
    fake->now = {-1, 0};
    EXPECT_EQ(digitsOf(0xFFFFFFFFu), System::instance().tempFile("", "").lastComponent());
}

TEST(DirectoriesFaultsTest, TwoNamesWithinASecondAreEqual)
{
    // Required, Q-813
    const FakeSystem fake;
    fake->now = {1'000, 1};
    const ResourceLocation first = System::instance().tempFile(".tmp", "x");
    fake->now = {1'000, 999};
    EXPECT_EQ(first.str(), System::instance().tempFile(".tmp", "x").str());
    fake->now = {1'001, 0};
    EXPECT_NE(first.str(), System::instance().tempFile(".tmp", "x").str());
}

TEST(DirectoriesFaultsTest, TempFileFallsBackOnTheFolderOfTheSystem)
{
    const FakeSystem fake;
    fake->temporaryFolder = "C:\\windows\\temp"; // does not exist: nobody notices
    fake->files["C:\\file"] = 1;
    for (const std::optional<std::string>& value :
         {std::optional<std::string>(), std::optional<std::string>(""), std::optional<std::string>("C:\\missing"),
          std::optional<std::string>("C:\\file"), std::optional<std::string>("http://host/")}) {
        const ScopedEnvironment tmp("TMP", value);
        EXPECT_EQ("C:\\windows\\temp\\x" + digitsOf(1'000'000'000) + ".tmp",
                  System::instance().tempFile(".tmp", "x").getFilePath('\\'))
            << value.value_or("(none)");
    }
}

TEST(DirectoriesFaultsTest, RemoteTmpIsRefused)
{
    const FakeSystem fake;
    const ScopedEnvironment tmp("TMP", "http://host/tmp");
    EXPECT_EQ("\"http://host/tmp\" is not a (locally accessible) file or directory name.",
              test::textOf<NotAFileException>([] { System::instance().tempFile("", ""); }));
}

TEST(DirectoriesFaultsTest, TempFileMayLieBelowItsDirectory)
{
    const FakeSystem fake;
    const ScopedEnvironment tmp("TMP", std::nullopt);
    EXPECT_EQ("C:\\fake\\temp\\a\\x" + digitsOf(1'000'000'000) + "b\\c",
              System::instance().tempFile("b/c", "a/x").getFilePath('\\'));
}

} // namespace
