#include "support/Scratch.h"
#include "system/DirectoriesRun.h"

#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <array>
#include <filesystem>

namespace
{

using namespace KelvoBase;
using test::Environment;
using test::lines;
using test::Steps;

constexpr const char* noBase = "KelvoBase::OperationFailedException[System: No valid DRAVO base dir could be found. \n"
                               "\tHint: Please set the environment variable \"DRAVO2_BASEDIR\"\n]";
constexpr const char* noHome = "KelvoBase::IOException[System: Unable to locate home directory]";
constexpr const char* noAppData = "KelvoBase::IOException[System: Unable to locate app directory]";
constexpr const char* noDirectory = "KelvoBase::OperationFailedException[getcwd()]";

class DirectoriesPosixTest : public ::testing::Test
{
protected:
    DirectoriesPosixTest() { std::filesystem::create_directory(scratch / "work"); }

    std::string native(const std::string& name) const { return (scratch / name).string(); }
    std::string at(const std::string& name) const { return scratch.location(name); }
    std::string run(const Steps& steps, const Environment& environment = {}) const
    {
        return test::answersOf(DIRECTORIES_TOOL, steps, environment, native("work"));
    }
    /// Puts a copy of the tool there; below "pack" unless it says otherwise.
    std::string install(const std::string& directory) const
    {
        std::filesystem::create_directories(scratch / directory);
        std::filesystem::copy_file(DIRECTORIES_TOOL, scratch / (directory + "/tool"));
        return native(directory + "/tool");
    }
    std::string runAt(const std::string& tool, const Steps& steps, const Environment& environment = {}) const
    {
        return test::answersOf(tool, steps, environment, native("work"));
    }
    unsigned int modeOf(const std::string& name) const
    {
        struct stat status
        {
        };
        return ::stat(native(name).c_str(), &status) == 0 ? status.st_mode & 07777u : 0u;
    }

    test::ScratchDirectory scratch;
};

// Directories of the installation

TEST_F(DirectoriesPosixTest, InstalledProgramFindsItsInstallation)
{
    EXPECT_EQ(lines({at("pack") + ";" + at("work"), at("pack/bin"), at("pack/bin")}),
              runAt(install("pack/bin"), {"dirs", "bin", "dll"}));
}

TEST_F(DirectoriesPosixTest, NameOfTheProgramsDirectoryDecides)
{
    for (const std::string name : {"bin64", "binaries"}) {
        EXPECT_EQ(lines({at("pack/" + name), at("pack/bin"), at("pack") + ";" + at("work")}),
                  runAt(install("pack/" + name), {"bin", "dll", "dirs"}));
    }
    EXPECT_FALSE(std::filesystem::exists(scratch / "pack/bin"));
    for (const std::string name : {"tools", "Bin", "sbin"}) {
        EXPECT_EQ(lines({"", "", at("work")}), runAt(install("pack/" + name), {"bin", "dll", "dirs"}));
    }
}

TEST_F(DirectoriesPosixTest, InstallationStandsBehindTheVariables)
{
    std::filesystem::create_directory(scratch / "a");
    std::filesystem::create_directory(scratch / "b");
    const std::string tool = install("pack/bin");
    EXPECT_EQ(lines({at("a") + ";" + at("b") + ";" + at("pack") + ";" + at("work")}),
              runAt(tool, {"dirs"}, {{"DRAVO2_BASEDIR", native("a")}, {"DRAVO2_INSTDIR", native("b")}}));
    EXPECT_EQ(lines({at("pack") + ";" + at("b") + ";" + at("work")}),
              runAt(tool, {"dirs"}, {{"DRAVO2_BASEDIR", native("pack")}, {"DRAVO2_INSTDIR", native("b")}}));
}

TEST_F(DirectoriesPosixTest, CallFromTheInstallationNamesItOnce)
{
    EXPECT_EQ(lines({at("pack"), at("pack/bin")}),
              test::answersOf(install("pack/bin"), {"dirs", "bin"}, {}, native("pack")));
}

TEST_F(DirectoriesPosixTest, InstallationThatMovesFindsItself)
{
    scratch.write("pack/share/app/x", "x");
    const std::string tool = install("pack/bin");
    EXPECT_EQ(lines({at("pack/share/app/x")}), runAt(tool, {"appfile|x|app"}));
    std::filesystem::rename(scratch / "pack", scratch / "elsewhere");
    EXPECT_EQ(lines({at("elsewhere/share/app/x"), at("elsewhere/bin")}),
              runAt(native("elsewhere/bin/tool"), {"appfile|x|app", "bin"}));
}

TEST_F(DirectoriesPosixTest, LinkToAProgramCountsForWhatItPointsTo)
{
    const std::string tool = install("pack/bin");
    std::filesystem::create_directory(scratch / "links");
    std::filesystem::create_symlink(tool, scratch / "links/tool");
    EXPECT_EQ(lines({at("pack") + ";" + at("work")}), runAt(native("links/tool"), {"dirs"}));
}

TEST_F(DirectoriesPosixTest, AddedDirectoryLeavesTheBinDirectoryEmpty)
{
    EXPECT_EQ(lines({"added", "", "", at("work")}),
              runAt(install("pack/bin"), {"add|" + native("work"), "bin", "dll", "dirs"}));
}

TEST_F(DirectoriesPosixTest, ProgramThatNoLocationCanHoldAddsNothing)
{
    for (const std::string name : {"pa\"ck/bin", "pa\\ck/bin", "p:ck/bin"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(lines({at("work"), "", ""}), runAt(install(name), {"dirs", "bin", "dll"}));
    }
}

TEST_F(DirectoriesPosixTest, WorkingDirectoryThatNoLocationCanHoldIsLeftOut)
{
    std::filesystem::create_directories(scratch / "a/b");
    for (const std::string name : {"a\\b", "qu\"oted", "x:y"}) {
        SCOPED_TRACE(name);
        std::filesystem::create_directories(scratch / name);
        EXPECT_EQ(lines({noBase, noBase}), test::answersOf(DIRECTORIES_TOOL, {"dirs", "bin"}, {}, native(name)));
        EXPECT_EQ(lines({at("work")}),
                  test::answersOf(DIRECTORIES_TOOL, {"dirs"}, {{"DRAVO2_BASEDIR", native("work")}}, native(name)));
    }
}

TEST_F(DirectoriesPosixTest, WithoutAWorkingDirectoryTheSearchThrows)
{
    const std::vector<std::pair<Environment, std::string>> rows = {
        {{}, noDirectory},
        {{{"DRAVO2_BASEDIR", native("work")}}, noDirectory},
        {{{"DRAVO2_BASEDIR", "."}}, "."}, // still a directory, and added in front of the failure
    };
    for (const auto& [environment, second] : rows) {
        std::filesystem::create_directory(scratch / "gone");
        EXPECT_EQ(lines({"cd", "rm", noDirectory, second}),
                  run({"cd|" + native("gone"), "rm|" + native("gone"), "dirs", "dirs"}, environment));
    }
}

TEST_F(DirectoriesPosixTest, OtherDrivesAndNetworkPathsAreLeftOut)
{
    for (const std::string value : {"D:/", "c:/", "//host/", "\\\\host\\share"}) {
        EXPECT_EQ(lines({at("work")}), run({"dirs"}, {{"DRAVO2_BASEDIR", value}})) << value;
    }
}

TEST_F(DirectoriesPosixTest, LinkToADirectoryIsAnotherOne)
{
    std::filesystem::create_symlink(scratch / "work", scratch / "link");
    EXPECT_EQ(lines({at("link") + ";" + at("work")}), run({"dirs"}, {{"DRAVO2_BASEDIR", native("link")}}));
}

// Directories of the user

TEST_F(DirectoriesPosixTest, HomeIsTakenFromTheEnvironment)
{
    std::filesystem::create_directories(scratch / "work/sub");
    const std::vector<std::pair<Environment, std::string>> rows = {
        {{{"HOME", native("work")}}, at("work")},
        {{{"HOME", native("work") + "/"}}, at("work")},
        {{{"HOME", "sub"}}, "sub"},
        {{{"HOME", native("missing")}, {"HOMEPATH", native("work")}}, at("work")},
        {{{"HOME", native("missing")}, {"HOMEDRIVE", "C:"}, {"HOMEPATH", native("work")}}, at("work")},
        {{{"HOME", native("missing")}, {"HOMEDRIVE", native("")}, {"HOMEPATH", "work"}}, at("work")},
    };
    for (const auto& [environment, home] : rows) {
        EXPECT_EQ(lines({home}), run({"home"}, environment));
    }
}

TEST_F(DirectoriesPosixTest, HomeThatIsNoDirectoryThrowsOnce)
{
    scratch.write("file", "x");
    for (const std::string name : {"missing", "file", "file/below"}) {
        EXPECT_EQ(lines({noHome, at(name), at(name)}), run({"home", "home", "home"}, {{"HOME", native(name)}}));
    }
    EXPECT_EQ(lines({noHome, "C:\\me"}), run({"home", "home"}, {{"HOMEPATH", "/me"}, {"HOME", native("work")}}));
}

TEST_F(DirectoriesPosixTest, WithoutAnythingTheHomeIsNotLocated)
{
    EXPECT_EQ(lines({noHome, noHome, "env", at("work")}), run({"home", "home", "env|HOME|" + native("work"), "home"}));
    EXPECT_EQ(lines({noHome, noHome}), run({"home", "home"}, {{"HOME", ""}, {"HOMEDRIVE", ""}, {"HOMEPATH", ""}}));
}

TEST_F(DirectoriesPosixTest, HomeIsFoundOnce)
{
    EXPECT_EQ(lines({at("work"), "env", at("work")}),
              run({"home", "env|HOME|" + native("other"), "home"}, {{"HOME", native("work")}}));
}

TEST_F(DirectoriesPosixTest, AppDataIsMadeForTheUserAlone)
{
    EXPECT_EQ(lines({at("xdg/a/b")}), run({"appdata"}, {{"XDG_CONFIG_HOME", native("xdg/a/b")}, {"HOME", "/proc"}}));
    for (const char* name : {"xdg", "xdg/a", "xdg/a/b"}) {
        EXPECT_EQ(0700u, modeOf(name)) << name;
    }
}

TEST_F(DirectoriesPosixTest, AppDataInTheHomeIsMadeToo)
{
    EXPECT_EQ(lines({at("me/.config")}), run({"appdata"}, {{"HOME", native("me")}}));
    EXPECT_EQ(0700u, modeOf("me"));
    EXPECT_EQ(0700u, modeOf("me/.config"));
}

TEST_F(DirectoriesPosixTest, ExistingAppDataIsLeftAsItIs)
{
    std::filesystem::create_directory(scratch / "xdg");
    std::filesystem::permissions(scratch / "xdg", std::filesystem::perms{0755});
    EXPECT_EQ(lines({at("xdg")}), run({"appdata"}, {{"XDG_CONFIG_HOME", native("xdg")}}));
    EXPECT_EQ(0755u, modeOf("xdg"));
    EXPECT_TRUE(std::filesystem::is_empty(scratch / "xdg"));
}

TEST_F(DirectoriesPosixTest, RelativeOrEmptyConfigurationHomeIsNone)
{
    std::filesystem::create_directory(scratch / "work/rel");
    for (const std::string value : {"", "rel", "./rel", "C:\\"}) {
        EXPECT_EQ(lines({at("me/.config")}), run({"appdata"}, {{"XDG_CONFIG_HOME", value}, {"HOME", native("me")}}))
            << value;
    }
}

TEST_F(DirectoriesPosixTest, AppDataWithoutAHomeComesFromDriveAndPath)
{
    EXPECT_EQ(lines({at("work")}), run({"appdata"}, {{"HOMEDRIVE", "C:"}, {"HOMEPATH", native("work")}}));
    EXPECT_EQ(lines({at("me/.config")}), run({"appdata"}, {{"HOMEPATH", native("work")}, {"HOME", native("me")}}));
    EXPECT_EQ(lines({noAppData, noAppData}), run({"appdata", "appdata"}, {{"HOME", ""}}));
}

TEST_F(DirectoriesPosixTest, AppDataThatCannotBeMadeThrowsOnce)
{
    scratch.write("file", "x");
    std::filesystem::create_symlink("nowhere", scratch / "dangling");
    for (const std::string name : {"file", "file/below", "dangling", "dangling/below"}) {
        EXPECT_EQ(lines({noAppData, at(name), at(name)}),
                  run({"appdata", "appdata", "appdata"}, {{"XDG_CONFIG_HOME", native(name)}}));
    }
    EXPECT_EQ("x", test::contentOf(scratch / "file"));
    EXPECT_EQ(lines({noAppData, "C:\\proc\\none"}), run({"appdata", "appdata"}, {{"XDG_CONFIG_HOME", "/proc/none"}}));
}

TEST_F(DirectoriesPosixTest, AppDataIsFoundOnce)
{
    EXPECT_EQ(lines({at("xdg"), "env", "rm", at("xdg")}),
              run({"appdata", "env|XDG_CONFIG_HOME|" + native("other"), "rm|" + native("xdg"), "appdata"},
                  {{"XDG_CONFIG_HOME", native("xdg")}}));
    EXPECT_FALSE(std::filesystem::exists(scratch / "xdg"));
}

TEST_F(DirectoriesPosixTest, RemoteAppDataIsRefusedOnce)
{
    // a colon makes a protocol of what stands before it
    const std::string folder = native("srv") + ":/me";
    EXPECT_EQ(lines({"KelvoBase::NotAFileException[\"" + native("srv") +
                         "://localhost/me\" is not a (locally accessible) file or directory name.]",
                     "/me"}),
              run({"appdata", "appdata"}, {{"XDG_CONFIG_HOME", folder}}));
    EXPECT_FALSE(std::filesystem::exists(scratch / "srv:"));
}

TEST_F(DirectoriesPosixTest, NetworkPathAsAppDataIsNeverALocalDirectory)
{
    EXPECT_EQ(lines({noAppData, "\\" + at("xdg").substr(2)}),
              run({"appdata", "appdata"}, {{"XDG_CONFIG_HOME", "/" + native("xdg")}}));
    EXPECT_FALSE(std::filesystem::exists(scratch / "xdg"));
}

TEST_F(DirectoriesPosixTest, UserDirectoryIsMadeWithItsParents)
{
    EXPECT_EQ(lines({at("me/.config/dravo2"), at("me/.config/dravo2")}),
              run({"user|create", "user|"}, {{"HOME", native("me")}}));
    EXPECT_TRUE(std::filesystem::is_directory(scratch / "me/.config/dravo2"));
    EXPECT_EQ(0700u, modeOf("me/.config"));
}

TEST_F(DirectoriesPosixTest, UserDirectoryThatExistsIsTaken)
{
    std::filesystem::create_directories(scratch / "xdg/dravo2");
    EXPECT_EQ(lines({at("xdg/dravo2")}), run({"user|"}, {{"XDG_CONFIG_HOME", native("xdg")}}));
    EXPECT_EQ(lines({at("xdg/dravo2")}), run({"user|create"}, {{"XDG_CONFIG_HOME", native("xdg")}}));
}

TEST_F(DirectoriesPosixTest, MissingUserDirectoryThrowsOnce)
{
    EXPECT_EQ(lines({"KelvoBase::OperationFailedException[System: user Dravo directory \"file://localhost/" +
                         at("xdg/dravo2") + "\" is not available.]",
                     at("xdg/dravo2"), at("xdg/dravo2")}),
              run({"user|", "user|", "user|create"}, {{"XDG_CONFIG_HOME", native("xdg")}}));
    EXPECT_FALSE(std::filesystem::exists(scratch / "xdg/dravo2"));
}

TEST_F(DirectoriesPosixTest, FileInPlaceOfTheUserDirectoryCountsAsMade)
{
    // Required, Q-815
    scratch.write("xdg/dravo2", "x");
    EXPECT_EQ(lines({at("xdg/dravo2"), at("xdg/dravo2")}),
              run({"user|create", "user|"}, {{"XDG_CONFIG_HOME", native("xdg")}}));
    EXPECT_EQ(lines({"KelvoBase::OperationFailedException[System: user Dravo directory \"file://localhost/" +
                         at("xdg/dravo2") + "\" is not available.]",
                     at("xdg/dravo2")}),
              run({"user|", "user|create"}, {{"XDG_CONFIG_HOME", native("xdg")}}));
    EXPECT_EQ("x", test::contentOf(scratch / "xdg/dravo2"));
}

TEST_F(DirectoriesPosixTest, UserDirectoryThatCannotBeMadeThrowsOnce)
{
    scratch.write("xdg", "x");
    EXPECT_EQ(
        lines({noAppData,
               "KelvoBase::IOFailedException[creating directory \"" + at("xdg/dravo2") + "\" failed : Not a directory]",
               at("xdg/dravo2")}),
        run({"user|create", "user|create", "user|create"}, {{"XDG_CONFIG_HOME", native("xdg")}}));
}

TEST_F(DirectoriesPosixTest, FailedAppDataIsMadeUpForByTheUserDirectory)
{
    // the first call keeps the folder, the second one makes it on the way
    scratch.write("file", "x");
    EXPECT_EQ(lines({noAppData, "rm", at("file/me/dravo2")}),
              run({"user|create", "rm|" + native("file"), "user|create"}, {{"XDG_CONFIG_HOME", native("file/me")}}));
    EXPECT_TRUE(std::filesystem::is_directory(scratch / "file/me/dravo2"));
}

TEST_F(DirectoriesPosixTest, TempFileFallsBackOnTmp)
{
    const test::ScopedEnvironment tmp("TMP", native("missing"));
    EXPECT_EQ("C:\\tmp", System::instance().tempFile(".tmp", "x").removeFileName().getFilePath('\\'));
}

} // namespace
