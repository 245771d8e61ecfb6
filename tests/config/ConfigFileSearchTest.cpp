/// \file
/// The search on a system of the test's own. What `System` finds once and keeps is the same for all tests here: four
/// base directories and the user's. The files are the test's; their bytes lie in a scratch directory.

#include "config/ConfigView.h"
#include "support/Capture.h"
#include "support/FakePlatform.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Globals.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <vector>

namespace KelvoBase::test
{

namespace
{

using Log = std::vector<std::string>;

const std::string base = "C:\\base\\etc\\x.ini";
const std::string installation = "C:\\inst\\etc\\x.ini";
const std::string package = "C:\\pack\\etc\\x.ini";
const std::string work = "C:\\work\\etc\\x.ini";
const std::string userDirectory = "C:\\data\\dravo2\\etc";
const std::string user = userDirectory + "\\x.ini";

/// A location as the faults show it.
std::string shown(const std::string& path)
{
    return "file://localhost/" + path;
}

class ConfigFileSearch : public testing::Test
{
protected:
    static void SetUpTestSuite() { std::ios_base::sync_with_stdio(false); }

    ConfigFileSearch()
    {
        for (const char* directory : {"C:\\base", "C:\\inst", "C:\\pack", "C:\\work", "C:\\data", "C:\\data\\dravo2"}) {
            mSystem->directories.insert(directory);
        }
        mSystem->workingDirectory = [] { return platform::WorkingDirectory{"C:\\work", true}; };
        mSystem->programPath = "C:\\pack\\bin\\tool";
        mSystem->userFolder = [](platform::Folder) { return "C:\\data"; };
        System::instance().getSystemDirs();
        System::instance().getUserDir(true);
        mSystem->nativePath = [this](const std::string& path) {
            mCalls.push_back("open " + path);
            return (mScratch / flat(path)).string();
        };
    }
    ~ConfigFileSearch() override { haveCerr = true; }

    void file(const std::string& path, const std::string& content)
    {
        mSystem->files[path] = content.size();
        mScratch.write(flat(path), content);
    }
    /// A file that says that it is there and cannot be opened.
    void lockedFile(const std::string& path) { mSystem->files[path] = 1; }
    bool isMade(const std::string& directory) const { return mSystem->directories.contains(directory); }
    std::optional<std::string> content(const std::string& path) const
    {
        return std::filesystem::exists(mScratch / flat(path)) ? std::optional(textIn(mScratch / flat(path)))
                                                              : std::nullopt;
    }
    /// Notes every question to the file system from now on.
    void record()
    {
        mSystem->entryKind = [this, ask = mSystem->entryKind](const std::string& path) {
            return mCalls.push_back("kind " + path), ask(path);
        };
        mSystem->fileSize = [this, ask = mSystem->fileSize](const std::string& path) {
            return mCalls.push_back("size " + path), ask(path);
        };
        mSystem->makeDirectory = [this, ask = mSystem->makeDirectory](const std::string& path) {
            return mCalls.push_back("make " + path), ask(path);
        };
        mCalls.clear();
    }

    ScopedEnvironment mBase{"DRAVO2_BASEDIR", "C:\\base"};
    ScopedEnvironment mInstallation{"DRAVO2_INSTDIR", "C:\\inst"};
    FakeSystem mSystem;
    ScratchDirectory mScratch;
    Log mCalls;

private:
    static std::string flat(std::string path)
    {
        std::replace_if(
            path.begin(), path.end(), [](char c) { return c == '\\' || c == ':' || c == '/'; }, '_');
        return path;
    }
};

TEST_F(ConfigFileSearch, ConstructorsReadExactlyOneFile)
{
    file("C:\\work\\x.ini", "[s]\nk=v\n");
    file(base, "[s]\nother=v\n");
    const std::string path = "C:\\work\\x.ini";
    for (const ConfigFile& config : {ConfigFile(path), ConfigFile(path.c_str()), ConfigFile(ResourceLocation(path))}) {
        EXPECT_EQ("[s]\nk (StringAny) v\n", listing(config));
        EXPECT_FALSE(isModified(config));
        EXPECT_EQ("[", config.getSectionBeginIdent());
    }
    EXPECT_EQ(shown(path), fileNameOf(*std::make_unique<ConfigFile>(path)));
    EXPECT_FALSE(isMade(userDirectory));
}

TEST_F(ConfigFileSearch, ConstructorsThrowForAMissingFile)
{
    file(base, "[s]\nk=v\n");
    const std::string expected = "Cannot read from file \"x.ini\" : No such file or directory";
    EXPECT_EQ(expected, textOf<FileNotReadableException>([] { ConfigFile("x.ini"); }));
    EXPECT_EQ(expected, textOf<FileNotReadableException>([] { ConfigFile(std::string("x.ini")); }));
    EXPECT_EQ(expected, textOf<FileNotReadableException>([] { ConfigFile(ResourceLocation("x.ini")); }));
}

TEST_F(ConfigFileSearch, ConstructorsThrowForARemoteLocation)
{
    const std::string expected = "\"ftp://host/x.ini\" is not a (locally accessible) file or directory name.";
    EXPECT_EQ(expected, textOf<NotAFileException>([] { ConfigFile("ftp://host/x.ini"); }));
    EXPECT_EQ(expected, textOf<NotAFileException>([] { ConfigFile(std::string("ftp://host/x.ini")); }));
    EXPECT_EQ(expected, textOf<NotAFileException>([] { ConfigFile(ResourceLocation("ftp://host/x.ini")); }));
}

TEST_F(ConfigFileSearch, ConstructorsReduceALocationToItsPath)
{
    file("C:\\work\\x.ini", "k=v");
    EXPECT_EQ(shown("C:\\work\\x.ini"), fileNameOf(*std::make_unique<ConfigFile>("file://me@host/C:\\work\\x.ini")));
    file("\\\\host\\share\\x.ini", "k=v");
    EXPECT_EQ("smb://host/share\\x.ini",
              fileNameOf(*std::make_unique<ConfigFile>(ResourceLocation("smb://me@host/share/x.ini"))));
}

TEST_F(ConfigFileSearch, ConstructorsThrowForASyntaxError)
{
    file("C:\\work\\x.ini", "k=v\n=v\n");
    EXPECT_EQ("Parsing config file \"file://localhost/C:\\work\\x.ini\"",
              textOf<OperationFailedException>([] { ConfigFile("C:\\work\\x.ini"); }));
}

TEST_F(ConfigFileSearch, NoFileAnywhereThrowsWithTheBareName)
{
    file("C:\\work\\x.ini", "k=v"); // not below an "etc"
    file("x.ini", "k=v");
    ConfigFile config;
    EXPECT_EQ("Cannot read from file \"x.ini\"",
              textOf<FileNotReadableException>([&] { config.parseConfigFiles("x.ini"); }));
    EXPECT_EQ("", listing(config));
    EXPECT_EQ(shown(user), fileNameOf(config));
}

TEST_F(ConfigFileSearch, NameIsShownAsALocation)
{
    ConfigFile config;
    EXPECT_EQ("Cannot read from file \"sub\\x.ini\"",
              textOf<FileNotReadableException>([&] { config.parseConfigFiles("sub/x.ini"); }));
}

TEST_F(ConfigFileSearch, EverySearchMakesTheDirectoryOfTheUser)
{
    // Required, Q-512
    ConfigFile config;
    EXPECT_THROW(config.parseConfigFiles("x.ini"), FileNotReadableException);
    EXPECT_TRUE(isMade(userDirectory));
    mSystem->directories.erase(userDirectory);
    file(base, "");
    config.parseConfigFiles("x.ini");
    EXPECT_TRUE(isMade(userDirectory));
    EXPECT_EQ(std::nullopt, content(user));
}

TEST_F(ConfigFileSearch, LaterPlacesOverrideKeyByKey)
{
    const std::array<std::string, 5> places = {base, installation, package, work, user};
    for (unsigned int present = 1; present < 1u << places.size(); ++present) {
        std::string last;
        mSystem->files.clear();
        for (std::size_t i = 0; i < places.size(); ++i) {
            if ((present >> i & 1u) != 0) {
                last = std::to_string(i);
                file(places[i], "[s]\ncommon=" + last + "\nown" + last + "=yes\n[section" + last + "]\n");
            }
        }
        ConfigFile config;
        config.parseConfigFiles("x.ini");
        EXPECT_EQ(last, config.getEntry("s", "common")->toString(",")) << present;
        for (std::size_t i = 0; i < places.size(); ++i) {
            const bool there = (present >> i & 1u) != 0;
            EXPECT_EQ(there, config.entryIsExistent("s", "own" + std::to_string(i))) << present;
            EXPECT_EQ(there, config.sectionIsExistent("section" + std::to_string(i))) << present;
        }
        EXPECT_EQ(shown(user), fileNameOf(config));
        EXPECT_FALSE(isModified(config));
    }
}

TEST_F(ConfigFileSearch, AsksTheFileSystemOnceForEachFact)
{
    file(installation, "k=v");
    file(user, "k=v");
    mSystem->directories.insert(userDirectory);
    record();
    ConfigFile().parseConfigFiles("x.ini");
    EXPECT_EQ(Log({"kind " + base, "kind " + installation, "open " + installation, "kind " + package, "kind " + work,
                   "kind " + userDirectory, "kind " + user, "size " + user, "open " + user}),
              mCalls);
}

TEST_F(ConfigFileSearch, EmptyFileOfTheInstallationCounts)
{
    file(package, "");
    ConfigFile config;
    config.setEntry("s", "k", "v");
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("[s]\nk (StringAny) v\n", listing(config));
    EXPECT_EQ(shown(user), fileNameOf(config));
    EXPECT_FALSE(isModified(config));
}

TEST_F(ConfigFileSearch, EmptyFileOfTheUserDoesNotCount)
{
    // Required, Q-513
    file(user, "");
    record();
    ConfigFile config;
    EXPECT_EQ("Cannot read from file \"x.ini\"",
              textOf<FileNotReadableException>([&] { config.parseConfigFiles("x.ini"); }));
    EXPECT_EQ("size " + user, mCalls.back()); // it was not opened
    EXPECT_EQ(shown(user), fileNameOf(config));
    file(base, "k=v");
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("[]\nk (StringAny) v\n", listing(config));
}

TEST_F(ConfigFileSearch, FileOfTheUserOfOneByteCounts)
{
    file(user, "\n");
    ConfigFile config;
    EXPECT_NO_THROW(config.parseConfigFiles("x.ini"));
    EXPECT_EQ(shown(user), fileNameOf(config));
}

TEST_F(ConfigFileSearch, DirectoryInThePlaceOfAFileOfTheInstallationIsSkipped)
{
    mSystem->directories.insert(base);
    file(installation, "k=v");
    record();
    ConfigFile config;
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("[]\nk (StringAny) v\n", listing(config));
    EXPECT_EQ(0, std::count(mCalls.begin(), mCalls.end(), "open " + base));
}

TEST_F(ConfigFileSearch, FileOfTheInstallationThatCannotBeOpenedIsSkippedWithoutAWord)
{
    // Required, Q-510
    file(base, "a=1");
    lockedFile(installation);
    file(work, "b=2");
    const Capture err(std::cerr);
    ConfigFile config;
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("[]\na (StringAny) 1\nb (StringAny) 2\n", listing(config));
    EXPECT_EQ("", err.text());
}

TEST_F(ConfigFileSearch, FileThatCannotBeOpenedDoesNotCount)
{
    lockedFile(base);
    const Capture err(std::cerr);
    ConfigFile config;
    EXPECT_EQ("Cannot read from file \"x.ini\"",
              textOf<FileNotReadableException>([&] { config.parseConfigFiles("x.ini"); }));
    EXPECT_EQ("", err.text());
    EXPECT_EQ(shown(user), fileNameOf(config));
}

TEST_F(ConfigFileSearch, FaultOnTheWayToTheUsersFileIsReportedAndTheSearchGoesOn)
{
    // Required, Q-511
    file(base, "k=v");
    file(work, "l=w");
    mSystem->makeDirectory = [this](const std::string&) { return mSystem->fail(FakePlatform::accessDenied); };
    const Capture err(std::cerr);
    ConfigFile config;
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("creating directory \"" + userDirectory + "\" failed : Denied\n", err.text());
    EXPECT_EQ("[]\nk (StringAny) v\nl (StringAny) w\n", listing(config));
    EXPECT_EQ(shown(work), fileNameOf(config));
}

TEST_F(ConfigFileSearch, FaultBeforeAnyFileLeavesTheFileName)
{
    mSystem->makeDirectory = [this](const std::string&) { return mSystem->fail(FakePlatform::accessDenied); };
    const Capture err(std::cerr);
    ConfigFile fresh;
    EXPECT_THROW(fresh.parseConfigFiles("x.ini"), FileNotReadableException);
    EXPECT_EQ("", fileNameOf(fresh));
    ConfigFile named;
    named.setFileName("before.ini");
    EXPECT_THROW(named.parseConfigFiles("x.ini"), FileNotReadableException);
    EXPECT_EQ("before.ini", fileNameOf(named));
}

TEST_F(ConfigFileSearch, FileThatWasTriedLastIsTheFileNameBehindAFault)
{
    file(base, "k=v");
    lockedFile(installation);
    mSystem->makeDirectory = [this](const std::string&) { return mSystem->fail(FakePlatform::accessDenied); };
    const Capture err(std::cerr);
    ConfigFile config;
    config.parseConfigFiles("x.ini");
    EXPECT_EQ(shown(installation), fileNameOf(config)); // tried, though not read
    config.setEntry("", "k", "changed");
    config.sync();
    EXPECT_EQ("[]\nk=changed\n\n", content(installation));
    EXPECT_EQ("k=v", content(base));
}

TEST_F(ConfigFileSearch, DirectoryInThePlaceOfTheUsersFileIsReported)
{
    file(base, "k=v");
    mSystem->directories.insert(user);
    const Capture err(std::cerr);
    ConfigFile config;
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("Cannot read from file \"" + shown(user) + "\" : Invalid file handle! Denied\n", err.text());
    EXPECT_EQ("[]\nk (StringAny) v\n", listing(config));
    EXPECT_EQ(shown(base), fileNameOf(config));
}

TEST_F(ConfigFileSearch, UsersFileThatCannotBeOpenedIsReportedAndStaysTheFileName)
{
    file(base, "k=v");
    lockedFile(user);
    const Capture err(std::cerr);
    ConfigFile config;
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("Cannot read from file \"" + shown(user) + "\" : No such file or directory\n", err.text());
    EXPECT_EQ("[]\nk (StringAny) v\n", listing(config));
    EXPECT_EQ(shown(user), fileNameOf(config));
}

TEST_F(ConfigFileSearch, UsersFileThatCannotBeOpenedDoesNotCount)
{
    lockedFile(user);
    const Capture err(std::cerr);
    EXPECT_EQ("Cannot read from file \"x.ini\"",
              textOf<FileNotReadableException>([] { ConfigFile().parseConfigFiles("x.ini"); }));
    EXPECT_EQ("Cannot read from file \"" + shown(user) + "\" : No such file or directory\n", err.text());
}

TEST_F(ConfigFileSearch, ReportsNothingWithoutStandardStreams)
{
    file(base, "k=v");
    lockedFile(user);
    const Capture err(std::cerr);
    haveCerr = false;
    ConfigFile config;
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("", err.text());
    EXPECT_TRUE(config.entryIsExistent("", "k"));
}

TEST_F(ConfigFileSearch, FaultOfAnotherClassInTheUsersPartPasses)
{
    file(base, "k=v");
    mSystem->entryKind = [this, ask = mSystem->entryKind](const std::string& path) {
        if (path == userDirectory) {
            mSystem->workingDirectory = [] { return std::nullopt; }; // no location can be made from here on
        }
        return ask(path);
    };
    const Capture err(std::cerr);
    ConfigFile config;
    EXPECT_EQ("getcwd()", textOf<OperationFailedException>([&] { config.parseConfigFiles("x.ini"); }));
    EXPECT_EQ("", err.text());
    mSystem->workingDirectory = [] { return platform::WorkingDirectory{"C:\\work", true}; };
    EXPECT_EQ(shown(base), fileNameOf(config));
}

TEST_F(ConfigFileSearch, SyntaxErrorEndsTheSearch)
{
    // Required, Q-520
    file(base, "a=1\n[bad\nb=2\n");
    file(installation, "c=3");
    file(user, "d=4");
    record();
    const Capture err(std::cerr);
    ConfigFile config;
    EXPECT_EQ("Parsing config file \"" + shown(base) + "\"",
              textOf<OperationFailedException>([&] { config.parseConfigFiles("x.ini"); }));
    EXPECT_EQ("[]\na (StringAny) 1\n", listing(config));
    EXPECT_EQ(shown(base), fileNameOf(config));
    EXPECT_EQ(Log({"kind " + base, "open " + base}), mCalls);
    EXPECT_FALSE(isMade(userDirectory));
    EXPECT_EQ("", err.text());
}

TEST_F(ConfigFileSearch, SyntaxErrorOfTheUserEndsTheSearchToo)
{
    file(base, "a=1");
    file(user, "b=2\n=3\n");
    const Capture err(std::cerr);
    ConfigFile config;
    EXPECT_EQ("Parsing config file \"" + shown(user) + "\"",
              textOf<OperationFailedException>([&] { config.parseConfigFiles("x.ini"); }));
    EXPECT_EQ("[]\na (StringAny) 1\nb (StringAny) 2\n", listing(config));
    EXPECT_EQ("", err.text());
}

TEST_F(ConfigFileSearch, SearchMergesIntoWhatIsThere)
{
    file(base, "a=1");
    ConfigFile config;
    config.setEntry("", "a", "before");
    config.setEntry("", "b", "before");
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("[]\na (StringAny) 1\nb (StringAny) before\n", listing(config));
    file(base, "c=3");
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("[]\na (StringAny) 1\nb (StringAny) before\nc (StringAny) 3\n", listing(config));
}

TEST_F(ConfigFileSearch, FilesAreReadWithTheIdentsOfTheObject)
{
    file(base, "<s>\na:1;2 # 3\n");
    ConfigFile config;
    config.setSectionBeginIdent("<");
    config.setSectionEndIdent(">");
    config.setSeperator(":");
    config.setListSeperator(";");
    config.setCommentSign('%');
    config.parseConfigFiles("x.ini");
    EXPECT_EQ("[s]\na (StringVectorAny) 1|2 # 3\n", listing(config));
}

TEST_F(ConfigFileSearch, ReadFileClearsTheMarkAndNoFileLeavesIt)
{
    ConfigFile config;
    config.setEntry("s", "k", "v");
    EXPECT_THROW(config.parseConfigFiles("x.ini"), FileNotReadableException);
    EXPECT_TRUE(isModified(config));
    file(user, "a=1");
    config.parseConfigFiles("x.ini");
    EXPECT_FALSE(isModified(config));
}

TEST_F(ConfigFileSearch, SyncWritesEverythingThatWasMergedToTheUser)
{
    file(base, "[s]\na=1\nb=2\n");
    file(work, "[s]\nb=3\n");
    ConfigFile config;
    config.parseConfigFiles("x.ini");
    config.sync();
    EXPECT_EQ(std::nullopt, content(user));
    config.setEntry("s", "b", "3"); // what it is
    config.sync();
    EXPECT_EQ(std::nullopt, content(user));
    config.setEntry("s", "b", "4");
    config.sync();
    EXPECT_EQ("[s]\na=1\nb=4\n\n", content(user));
    EXPECT_EQ("[s]\na=1\nb=2\n", content(base));
}

TEST_F(ConfigFileSearch, NameMayLieBelowTheDirectories)
{
    file("C:\\base\\etc\\sub\\x.ini", "k=v");
    ConfigFile config;
    config.parseConfigFiles("sub/x.ini");
    EXPECT_EQ("[]\nk (StringAny) v\n", listing(config));
    EXPECT_EQ(shown(userDirectory + "\\sub\\x.ini"), fileNameOf(config));
    EXPECT_FALSE(isMade(userDirectory + "\\sub"));
}

TEST_F(ConfigFileSearch, EmptyNameStandsForADirectory)
{
    const Capture err(std::cerr);
    ConfigFile config;
    EXPECT_EQ("Cannot read from file \"\"", textOf<FileNotReadableException>([&] { config.parseConfigFiles(""); }));
    EXPECT_EQ("Cannot read from file \"" + shown(userDirectory) + "\" : Invalid file handle! Denied\n", err.text());
    EXPECT_EQ("", fileNameOf(config));
}

} // namespace

} // namespace KelvoBase::test
