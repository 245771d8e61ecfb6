/// \file
/// The search on the real system, from its environment variables to the files. Permissions stop no test that runs as
/// root, so a socket stands for a file that cannot be opened.

#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

namespace
{

namespace fs = std::filesystem;

/// A socket in the file system: it exists, is no directory, and nobody can open it as a file.
void makeSocket(const fs::path& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.string().size(), sizeof address.sun_path);
    std::strcpy(address.sun_path, path.c_str());
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_LE(0, descriptor);
    EXPECT_EQ(0, ::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    ::close(descriptor);
}

/// An installation and a user: `base` and `inst` come from the environment, `work` is the working directory, `config`
/// holds the user's directory.
class ConfigFileSearchPosix : public testing::Test
{
protected:
    ConfigFileSearchPosix()
    {
        for (const char* name : {"base/etc", "inst/etc", "work/etc", "config", "home"}) {
            fs::create_directories(mScratch / name);
        }
        mOptions.environment = {{"DRAVO2_BASEDIR", mScratch.location("base")},
                                {"DRAVO2_INSTDIR", mScratch.location("inst")},
                                {"XDG_CONFIG_HOME", (mScratch / "config").string()},
                                {"HOME", (mScratch / "home").string()}};
        mOptions.unset = {"HOMEDRIVE", "HOMEPATH"};
        mOptions.workingDirectory = (mScratch / "work").string();
    }

    ChildResult run(std::vector<std::string> steps) const
    {
        steps.insert(steps.begin(), mTool);
        return runChild(steps, mOptions);
    }
    /// Standard output of a run that says nothing else.
    std::string answers(const std::vector<std::string>& steps) const
    {
        const ChildResult result = run(steps);
        EXPECT_EQ(0, result.status);
        EXPECT_EQ("", result.err);
        return result.out;
    }
    void setVariable(const std::string& name, const std::string& value)
    {
        for (auto& [known, text] : mOptions.environment) {
            text = known == name ? value : text;
        }
    }
    std::string shown(const std::string& name) const { return "file://localhost/" + mScratch.location(name); }

    ScratchDirectory mScratch;
    ChildOptions mOptions;
    std::string mTool = SEARCH_TOOL;
};

const std::string userFile = "config/dravo2/etc/x.ini";

std::string notFound(const std::string& name)
{
    return "KelvoBase::FileNotReadableException: Cannot read from file \"" + name + "\"\n";
}

TEST_F(ConfigFileSearchPosix, NoFileAnywhereThrowsAndMakesTheUsersDirectory)
{
    mScratch.write("work/x.ini", "k=v");
    mScratch.write("base/x.ini", "k=v");
    EXPECT_EQ(notFound("x.ini") + shown(userFile) + "\n", answers({"search:x.ini", "list", "file"}));
    EXPECT_TRUE(fs::is_directory(mScratch / "config/dravo2/etc"));
    EXPECT_TRUE(fs::is_empty(mScratch / "config/dravo2/etc"));
}

TEST_F(ConfigFileSearchPosix, AllPlacesAreLayered)
{
    mScratch.write("base/etc/x.ini", "[s]\nall=base\nbase=1\n");
    mScratch.write("inst/etc/x.ini", "[s]\nall=inst\ninst=1\n[t]\n");
    mScratch.write("work/etc/x.ini", "[s]\nall=work\nbase=2\n");
    mScratch.write(userFile, "[s]\nall=user\nuser\n");
    EXPECT_EQ("found\n"
              "[s]\nall (StringAny) user\nbase (StringAny) 2\ninst (StringAny) 1\nuser (BoolAny) 1\n[t]\n" +
                  shown(userFile) + "\n",
              answers({"search:x.ini", "list", "file"}));
}

TEST_F(ConfigFileSearchPosix, OrderOfTheDirectoriesIsTheOrderOfPrecedence)
{
    const std::vector<std::string> places = {"base", "inst", "work"};
    for (const std::string& place : places) {
        mScratch.write(place + "/etc/x.ini", "k=" + place);
    }
    EXPECT_EQ("found\n[]\nk (StringAny) work\n", answers({"search:x.ini", "list"}));
    fs::remove(mScratch / "work/etc/x.ini");
    EXPECT_EQ("found\n[]\nk (StringAny) inst\n", answers({"search:x.ini", "list"}));
    std::swap(mOptions.environment[0].second, mOptions.environment[1].second);
    EXPECT_EQ("found\n[]\nk (StringAny) base\n", answers({"search:x.ini", "list"}));
}

TEST_F(ConfigFileSearchPosix, DirectoryThatWasAddedIsTheLastOfTheInstallation)
{
    mScratch.write("work/etc/x.ini", "k=work");
    mScratch.write("more/etc/x.ini", "k=more");
    // Relative, as the colon of a drive would part it for the tool.
    EXPECT_EQ("found\nfound\n[]\nk (StringAny) more\n",
              answers({"search:x.ini", "add:../more", "search:x.ini", "list"}));
    EXPECT_EQ("found\n[]\nk (StringAny) more\n", answers({"add:../more", "search:x.ini", "list"}));
    EXPECT_EQ(notFound("y.ini"), answers({"add:../more", "search:y.ini"}));
}

TEST_F(ConfigFileSearchPosix, PackageOfTheProgramIsSearched)
{
    fs::create_directories(mScratch / "pack/bin");
    fs::copy_file(mTool, mScratch / "pack/bin/tool");
    mTool = (mScratch / "pack/bin/tool").string();
    mScratch.write("inst/etc/x.ini", "k=inst\nl=inst\n");
    mScratch.write("pack/etc/x.ini", "k=pack\nl=pack\n");
    mScratch.write("work/etc/x.ini", "k=work\n");
    EXPECT_EQ("found\n[]\nk (StringAny) work\nl (StringAny) pack\n", answers({"search:x.ini", "list"}));
}

TEST_F(ConfigFileSearchPosix, EmptyFilesCountInTheInstallationOnly)
{
    mScratch.write(userFile, "");
    EXPECT_EQ(notFound("x.ini"), answers({"search:x.ini"}));
    mScratch.write("base/etc/x.ini", "");
    EXPECT_EQ("found\n" + shown(userFile) + "\n", answers({"search:x.ini", "list", "file"}));
}

TEST_F(ConfigFileSearchPosix, SyntaxErrorInTheFirstFileEndsTheSearch)
{
    mScratch.write("base/etc/x.ini", "a=1\n[bad\n");
    mScratch.write("inst/etc/x.ini", "b=2\n");
    const ChildResult result = run({"search:x.ini", "list", "file"});
    EXPECT_EQ("KelvoBase::OperationFailedException: Parsing config file \"" + shown("base/etc/x.ini") +
                  "\"\n[]\na (StringAny) 1\n" + shown("base/etc/x.ini") + "\n",
              result.out);
    EXPECT_FALSE(fs::exists(mScratch / "config/dravo2"));
}

TEST_F(ConfigFileSearchPosix, SocketAndDirectoryInTheInstallationAreSkipped)
{
    makeSocket(mScratch / "base/etc/x.ini");
    fs::create_directory(mScratch / "inst/etc/x.ini");
    EXPECT_EQ(notFound("x.ini"), answers({"search:x.ini"}));
    mScratch.write("work/etc/x.ini", "k=v");
    EXPECT_EQ("found\n[]\nk (StringAny) v\n", answers({"search:x.ini", "list"}));
}

TEST_F(ConfigFileSearchPosix, DanglingLinkIsNoFile)
{
    fs::create_symlink("nowhere", mScratch / "base/etc/x.ini");
    fs::create_directories(mScratch / "config/dravo2/etc");
    fs::create_symlink("nowhere", mScratch / userFile);
    EXPECT_EQ(notFound("x.ini"), answers({"search:x.ini"}));
}

TEST_F(ConfigFileSearchPosix, LinkStandsForItsFile)
{
    mScratch.write("elsewhere.ini", "k=v");
    fs::create_symlink(mScratch / "elsewhere.ini", mScratch / "base/etc/x.ini");
    EXPECT_EQ("found\n[]\nk (StringAny) v\n", answers({"search:x.ini", "list"}));
}

TEST_F(ConfigFileSearchPosix, SocketInThePlaceOfTheUsersFileIsReported)
{
    mScratch.write("base/etc/x.ini", "k=v");
    fs::create_directories(mScratch / "config/dravo2/etc");
    makeSocket(mScratch / userFile);
    const ChildResult result = run({"search:x.ini", "list", "file"});
    EXPECT_EQ("found\n[]\nk (StringAny) v\n" + shown("base/etc/x.ini") + "\n", result.out);
    EXPECT_EQ("Cannot read from file \"" + shown(userFile) + "\" : Invalid file handle! No such device or address\n",
              result.err);
}

TEST_F(ConfigFileSearchPosix, DirectoryInThePlaceOfTheUsersFileIsReported)
{
    fs::create_directories(mScratch / userFile);
    const ChildResult result = run({"search:x.ini", "file"});
    EXPECT_EQ(notFound("x.ini") + "\n", result.out);
    EXPECT_EQ("Cannot read from file \"" + shown(userFile) + "\" : Invalid file handle! Is a directory\n", result.err);
    EXPECT_EQ("", run({"deaf", "search:x.ini"}).err);
}

TEST_F(ConfigFileSearchPosix, FileInThePlaceOfTheUsersDirectoryIsReported)
{
    mScratch.write("work/etc/x.ini", "k=v");
    mScratch.write("config/dravo2", "");
    const ChildResult result = run({"search:x.ini", "file", "search:x.ini"});
    EXPECT_EQ("found\n" + shown("work/etc/x.ini") + "\nfound\n", result.out);
    const std::string line =
        "creating directory \"" + mScratch.location("config/dravo2/etc") + "\" failed : Not a directory\n";
    EXPECT_EQ(line + line, result.err);
}

TEST_F(ConfigFileSearchPosix, FileInThePlaceOfEtcHoldsNoFile)
{
    mScratch.write("config/dravo2/etc", "k=v");
    mScratch.write("base/etc/x.ini", "k=v");
    EXPECT_EQ("found\n" + shown(userFile) +
                  "\n"
                  "KelvoBase::OperationFailedException: ConfigFile: Unable to open file '" +
                  shown(userFile) + "'\n",
              answers({"search:x.ini", "file", "set::k:w", "sync"}));
}

TEST_F(ConfigFileSearchPosix, WithoutAHomeTheInstallationStillCounts)
{
    mScratch.write("base/etc/x.ini", "k=v");
    setVariable("XDG_CONFIG_HOME", "");
    setVariable("HOME", "");
    const ChildResult result = run({"search:x.ini", "list", "file"});
    EXPECT_EQ("found\n[]\nk (StringAny) v\n" + shown("base/etc/x.ini") + "\n", result.out);
    EXPECT_EQ("System: Unable to locate app directory\n", result.err);
    EXPECT_EQ(notFound("y.ini") + "\n", run({"search:y.ini", "file"}).out);
}

TEST_F(ConfigFileSearchPosix, WithoutAConfigurationFolderTheHomeHasOne)
{
    setVariable("XDG_CONFIG_HOME", "");
    mScratch.write("base/etc/x.ini", "k=v");
    EXPECT_EQ("found\n" + shown("home/.config/dravo2/etc/x.ini") + "\n",
              answers({"search:x.ini", "file", "set::k:w", "sync"}));
    EXPECT_EQ("[]\nk=w\n\n", contentOf(mScratch / "home/.config/dravo2/etc/x.ini"));
}

TEST_F(ConfigFileSearchPosix, MissingConfigurationFolderIsMade)
{
    setVariable("XDG_CONFIG_HOME", (mScratch / "new/deep").string());
    EXPECT_EQ(notFound("x.ini"), answers({"search:x.ini"}));
    EXPECT_TRUE(fs::is_directory(mScratch / "new/deep/dravo2/etc"));
}

TEST_F(ConfigFileSearchPosix, ConfigurationFolderThatCannotBeMadeIsReported)
{
    mScratch.write("file", "");
    mScratch.write("base/etc/x.ini", "k=v");
    setVariable("XDG_CONFIG_HOME", (mScratch / "file/below").string());
    const ChildResult result = run({"search:x.ini", "list"});
    EXPECT_EQ("found\n[]\nk (StringAny) v\n", result.out);
    EXPECT_EQ("System: Unable to locate app directory\n", result.err);
}

TEST_F(ConfigFileSearchPosix, RemovedWorkingDirectoryEndsTheSearchUnchanged)
{
    mScratch.write("base/etc/x.ini", "k=v");
    const std::string gone = (mScratch / "gone").string();
    fs::create_directory(gone);
    const ChildResult result = runChild(
        {"/bin/sh", "-c", "cd \"$1\" && rmdir \"$1\" && exec \"$2\" search:x.ini list", "sh", gone, mTool}, mOptions);
    EXPECT_EQ("KelvoBase::OperationFailedException: getcwd()\n", result.out);
}

TEST_F(ConfigFileSearchPosix, ChangeIsWrittenToTheUserAndReadAgain)
{
    mScratch.write("base/etc/x.ini", "# system\n[s]\nk=v\nlist=a,b\n");
    EXPECT_EQ("found\n", answers({"search:x.ini", "sync"}));
    EXPECT_FALSE(fs::exists(mScratch / userFile));
    EXPECT_EQ("found\n", answers({"search:x.ini", "set:s:k:w", "sync"}));
    EXPECT_EQ("[s]\nk=w\nlist=a,b\n\n", contentOf(mScratch / userFile));
    mScratch.write("base/etc/x.ini", "[s]\nk=v\nlist=c\nnew=1\n");
    EXPECT_EQ("found\n[s]\nk (StringAny) w\nlist (StringVectorAny) a|b\nnew (StringAny) 1\n",
              answers({"search:x.ini", "list"}));
}

} // namespace

} // namespace KelvoBase::test
