#include "support/Capture.h"
#include "support/FakePlatform.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

// File operations above a system that fails on demand, and what they ask it for.

namespace KelvoBase
{

namespace
{

using platform::EntryKind;
using test::FakePlatform;
using test::FakeSystem;
using test::textOf;
using test::TraceCapture;
using Texts = std::vector<std::string>;

class ResourceLocationFaultsTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { TraceAreaMgr::startup(); }
    static void TearDownTestSuite() { TraceAreaMgr::teardown(); }

    /// From now on the operation fails with a code, however healthy the system is.
    static auto failing(unsigned long code)
    {
        return [code](const auto&...) { return test::fakePlatform().fail(code); };
    }

    FakeSystem mSystem;
};

Texts pathsOf(const std::vector<ResourceLocation>& locations)
{
    Texts paths;
    for (const ResourceLocation& location : locations) {
        paths.push_back(location.getPath('\\', true));
    }
    return paths;
}

constexpr unsigned long nameless = 4711;

} // namespace

TEST_F(ResourceLocationFaultsTest, DirectoryThatCannotBeReadThrowsTheSystemsTextAlone)
{
    mSystem->directories.insert("C:\\d");
    mSystem->listDirectory = failing(FakePlatform::accessDenied);
    EXPECT_EQ("Denied", textOf<IOException>([] { ResourceLocation("C:/d").getDirList(false); }));
    EXPECT_EQ("Denied", textOf<IOException>([] { getFilesRecursively(ResourceLocation("C:/d")); }));
}

TEST_F(ResourceLocationFaultsTest, RemoveThatFailsThrows)
{
    mSystem->files["C:\\f"] = 1;
    mSystem->directories.insert("d");
    mSystem->removeFile = failing(FakePlatform::accessDenied);
    mSystem->removeDirectory = failing(nameless);
    EXPECT_EQ(R"(Could not remove 'file://localhost/C:\f': Denied)",
              textOf<IOException>([] { ResourceLocation("C:/f").remove(); }));
    EXPECT_EQ("Could not remove 'd': No system error message",
              textOf<IOException>([] { ResourceLocation("d").remove(); }));
}

TEST_F(ResourceLocationFaultsTest, RemoveTellsFilesFromDirectories)
{
    mSystem->files["f"] = 1;
    mSystem->directories.insert("d");
    ResourceLocation("f").remove();
    ResourceLocation("d").remove();
    EXPECT_TRUE(mSystem->files.empty());
    EXPECT_FALSE(mSystem->directories.contains("d"));
}

TEST_F(ResourceLocationFaultsTest, RemoveOfWhatIsNotThereAsksForNothing)
{
    mSystem->removeFile = failing(FakePlatform::accessDenied);
    mSystem->removeDirectory = failing(FakePlatform::accessDenied);
    EXPECT_NO_THROW(ResourceLocation("x").remove());
    EXPECT_NO_THROW(ResourceLocation().remove());
    EXPECT_NO_THROW(ResourceLocation("ftp://host/").remove());
}

TEST_F(ResourceLocationFaultsTest, CreateDirMakesTheMissingLevelsInOrder)
{
    Texts made;
    mSystem->makeDirectory = [&](const std::string& path) {
        made.push_back(path);
        test::fakePlatform().directories.insert(path);
        return true;
    };
    const std::vector<std::pair<const char*, Texts>> rows = {
        {"C:/a/b/c", {R"(C:\a)", R"(C:\a\b)", R"(C:\a\b\c)"}},
        {"C:/a/b/d", {R"(C:\a\b\d)"}},
        {"C:/a", {}},
        {"r/s/", {"r", R"(r\s)", R"(r\s\)"}},
        {"D:/x", {"D:", R"(D:\x)"}},
        {"//server/share", {R"(\)", R"(\\server)", R"(\\server\share)"}},
    };
    for (const auto& [text, expected] : rows) {
        made.clear();
        ResourceLocation(text).createDir();
        EXPECT_EQ(expected, made) << text;
    }
}

TEST_F(ResourceLocationFaultsTest, CreateDirThatFailsNamesThePathAndLeavesTheLevelsMadeBefore)
{
    const auto healthy = mSystem->makeDirectory;
    mSystem->makeDirectory = [&](const std::string& path) {
        return path == "C:\\a\\b" ? test::fakePlatform().fail(FakePlatform::accessDenied) : healthy(path);
    };
    EXPECT_EQ(R"(creating directory "C:\a\b\c" failed : Denied)",
              textOf<IOFailedException>([] { ResourceLocation("C:/a/b/c").createDir(); }));
    EXPECT_TRUE(mSystem->directories.contains("C:\\a"));
    EXPECT_FALSE(mSystem->directories.contains("C:\\a\\b"));
}

TEST_F(ResourceLocationFaultsTest, CreateDirTakesATakenNameForMade)
{
    // Required, Q-614
    for (const unsigned long code : {FakePlatform::alreadyExists, static_cast<unsigned long>(0)}) {
        mSystem->lastError = FakePlatform::accessDenied; // of some earlier call
        mSystem->makeDirectory = failing(code);
        EXPECT_NO_THROW(ResourceLocation("C:/a/b").createDir()) << code;
    }
    EXPECT_FALSE(mSystem->directories.contains("C:\\a"));
}

TEST_F(ResourceLocationFaultsTest, CreateDirForgetsEarlierErrors)
{
    mSystem->makeDirectory = [](const std::string&) { return false; }; // without a reason
    mSystem->lastError = FakePlatform::accessDenied;
    EXPECT_NO_THROW(ResourceLocation("C:/a").createDir());
}

TEST_F(ResourceLocationFaultsTest, CreateDirMakesALevelThatCannotBeTested)
{
    const auto healthy = mSystem->entryKind;
    mSystem->entryKind = [&](const std::string& path) {
        return path == "C:\\a" ? throw std::runtime_error("no answer") : healthy(path);
    };
    ResourceLocation("C:/a/b").createDir();
    EXPECT_TRUE(mSystem->directories.contains("C:\\a"));
    EXPECT_TRUE(mSystem->directories.contains("C:\\a\\b"));
}

TEST_F(ResourceLocationFaultsTest, CreateDirOfAnEmptyLocationThrows)
{
    mSystem->makeDirectory = failing(FakePlatform::notFound);
    EXPECT_EQ(R"(creating directory "" failed : Not found)",
              textOf<IOFailedException>([] { ResourceLocation().createDir(); }));
}

TEST_F(ResourceLocationFaultsTest, MoveThatFailsNamesThePlaceInTheDirectory)
{
    mSystem->files["C:\\f"] = 1;
    mSystem->files["C:\\d\\f"] = 2;
    mSystem->directories.insert("C:\\d");
    EXPECT_EQ(R"(moving file "C:\f" to "C:\d\f" failed : Taken)",
              textOf<IOFailedException>([] { ResourceLocation("C:/f").move(ResourceLocation("C:/d")); }));
}

TEST_F(ResourceLocationFaultsTest, MoveForgetsEarlierErrors)
{
    mSystem->files["f"] = 1;
    mSystem->moveFile = [](const std::string&, const std::string&) { return false; }; // without a reason
    mSystem->lastError = FakePlatform::accessDenied;
    EXPECT_EQ(R"(moving file "f" to "g" failed : All well)",
              textOf<IOFailedException>([] { ResourceLocation("f").move(ResourceLocation("g")); }));
}

TEST_F(ResourceLocationFaultsTest, MoveToALocationWithoutPathThrows)
{
    mSystem->files["f"] = 1;
    mSystem->moveFile = failing(FakePlatform::notFound);
    EXPECT_EQ(R"(moving file "f"" failed : Not found)",
              textOf<IOFailedException>([] { ResourceLocation("f").move(ResourceLocation()); }));
    EXPECT_EQ(R"("ftp://h" is not a (locally accessible) file or directory name.)",
              textOf<NotAFileException>([] { ResourceLocation("f").move(ResourceLocation("ftp://h/")); }));
}

TEST_F(ResourceLocationFaultsTest, SizeThatCannotBeHadThrows)
{
    mSystem->fileSize = [](const std::string&) {
        test::fakePlatform().fail(FakePlatform::accessDenied);
        return std::optional<unsigned long long>();
    };
    EXPECT_EQ(R"(Cannot read from file "file://localhost/C:\f" : Invalid file handle! Denied)",
              textOf<FileNotReadableException>([] { ResourceLocation("C:/f").size(); }));
}

TEST_F(ResourceLocationFaultsTest, SizeNamesALocationMadeAnewFromThePath)
{
    // Required, Q-616
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"file://u%p@host:1/C:/f", R"(file://localhost/C:\f)"},
        {"smb://u@server:1/share/f", R"(smb://server/share\f)"},
        {"file:ab:c", "c"},
        {R"("x/y")", R"(x\y)"},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ("Cannot read from file \"" + std::string(expected) + "\" : Invalid file handle! Not found",
                  textOf<FileNotReadableException>([&input = text] { ResourceLocation(input).size(); }));
    }
}

TEST_F(ResourceLocationFaultsTest, SizeForgetsEarlierErrors)
{
    mSystem->fileSize = [](const std::string&) { return std::optional<unsigned long long>(); };
    mSystem->lastError = FakePlatform::accessDenied;
    EXPECT_EQ(R"(Cannot read from file "f" : Invalid file handle! All well)",
              textOf<FileNotReadableException>([] { ResourceLocation("f").size(); }));
}

TEST_F(ResourceLocationFaultsTest, SizeBeyond32BitsIsGivenWhole)
{
    mSystem->files["f"] = 0x1234567890ULL;
    EXPECT_EQ(0x1234567890ULL, ResourceLocation("f").size());
}

TEST_F(ResourceLocationFaultsTest, WritableIsAskedOfTheParentUnlessItIsAFile)
{
    // Required, Q-613
    mSystem->files["C:\\d\\f"] = 1;
    mSystem->directories.insert("C:\\d");
    std::string asked;
    mSystem->isWritable = [&](const std::string& path) {
        asked = path;
        return true;
    };
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"C:/d/f", R"(C:\d\f)"}, {"C:/d", "C:"}, {"C:/d/new", R"(C:\d)"}, {"C:", "."},    {"new", "."},
        {"new/", "new"},         {"", "."},      {"ftp://host/", "."},    {"//h/s", "."}, {"//h/s/x", R"(\\h\s)"},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_TRUE(ResourceLocation(text).isWritable(false)) << text;
        EXPECT_EQ(expected, asked) << text;
    }
}

TEST_F(ResourceLocationFaultsTest, WritableOfAFileCanBeRejectedUnasked)
{
    mSystem->files["f"] = 1;
    std::string asked = "nothing";
    mSystem->isWritable = [&](const std::string& path) {
        asked = path;
        return true;
    };
    EXPECT_FALSE(ResourceLocation("f").isWritable(true));
    EXPECT_EQ("nothing", asked);
    EXPECT_TRUE(ResourceLocation("g").isWritable(true));
    EXPECT_EQ(".", asked);
}

TEST_F(ResourceLocationFaultsTest, RefusalToWriteIsTracedWithItsReason)
{
    mSystem->files["C:\\f"] = 1;
    mSystem->isWritable = failing(FakePlatform::accessDenied);
    const TraceCapture trace(Trace::verbose);
    EXPECT_FALSE(ResourceLocation("C:/f").isWritable(false));
    EXPECT_EQ("|------ Cannot write to \"file://localhost/C:\\f\": Denied\n", trace.text());
}

TEST_F(ResourceLocationFaultsTest, ListingAsksForTheWorkingDirectoryOnce)
{
    mSystem->directories.insert({"C:\\d", "C:\\e", "r"});
    for (int i = 0; i < 50; ++i) {
        mSystem->files["C:\\d\\" + std::to_string(i)] = 1;
        mSystem->files["r\\" + std::to_string(i)] = 1;
    }
    int asked = 0;
    const auto healthy = mSystem->workingDirectory;
    mSystem->workingDirectory = [&] {
        ++asked;
        return healthy();
    };
    const std::vector<std::tuple<const char*, bool, int>> rows = {
        {"C:/d", false, 1}, {"C:/d", true, 1}, {"C:/e", false, 0}, {"r", false, 0}, {"r", true, 1}};
    for (const auto& [text, makeAbsolute, expected] : rows) {
        const ResourceLocation directory(text);
        asked = 0;
        directory.getDirList(makeAbsolute);
        EXPECT_EQ(expected, asked) << text;
    }
}

TEST_F(ResourceLocationFaultsTest, ListingAnAbsoluteDirectoryNeedsAWorkingDirectoryForItsEntries)
{
    mSystem->directories.insert({"C:\\d", "C:\\empty", "r"});
    mSystem->files = {{"C:\\d\\f", 1}, {"r\\f", 1}, {"C:\\empty\\.hidden", 1}};
    const ResourceLocation directory("C:/d");
    const ResourceLocation empty("C:/empty");
    mSystem->workingDirectory = [] { return std::optional<platform::WorkingDirectory>(); };
    EXPECT_EQ("getcwd()", textOf<OperationFailedException>([&] { directory.getDirList(false); }));
    EXPECT_TRUE(empty.getDirList(false).empty());
    EXPECT_EQ(Texts{"r\\f"}, pathsOf(ResourceLocation("r").getDirList(false)));
    EXPECT_EQ("getcwd()", textOf<OperationFailedException>([] { ResourceLocation("r").getDirList(true); }));
}

TEST_F(ResourceLocationFaultsTest, EntriesAreWhatAppendingTheNameGives)
{
    mSystem->entryKind = [](const std::string&) { return EntryKind::directory; };
    mSystem->listDirectory = [](const std::string&, std::vector<platform::DirectoryEntry>& entries) {
        entries = {{"name", std::nullopt}, {"b c", std::nullopt}, {"x:y", std::nullopt}, {"\n", std::nullopt}};
        return true;
    };
    mSystem->isHoldable = [](std::string_view name) { return name != "x:y"; };
    ResourceLocation odd("C:/a/..x"); // becomes an absolute location that is not normalised
    odd.removeSuffix();
    for (const ResourceLocation& directory :
         {ResourceLocation("C:/a"), ResourceLocation("a/../b/"), ResourceLocation("."), ResourceLocation("smb://h/s/t"),
          ResourceLocation("smb:s"), ResourceLocation("file:x"), odd}) {
        for (const bool makeAbsolute : {false, true}) {
            std::string expected;
            for (const char* name : {"name", "b c", "\n"}) {
                ResourceLocation entry(directory);
                entry.append(name);
                expected += (makeAbsolute ? entry.toAbsolute() : entry).print() + "\n";
            }
            std::string listed;
            for (const ResourceLocation& entry : directory.getDirList(makeAbsolute)) {
                listed += entry.print() + "\n";
            }
            EXPECT_EQ(expected, listed) << directory.print();
        }
    }
}

TEST_F(ResourceLocationFaultsTest, FilesOfALevelStandInFrontOfThoseBelow)
{
    mSystem->directories.insert({"d", "d\\a", "d\\a\\x", "d\\b"});
    mSystem->files = {{"d\\z", 1}, {"d\\a\\1", 1}, {"d\\a\\x\\2", 1}, {"d\\b\\3", 1}, {"d\\c", 1}};
    EXPECT_EQ((Texts{R"(d\c)", R"(d\z)", R"(d\a\1)", R"(d\b\3)", R"(d\a\x\2)"}),
              pathsOf(getFilesRecursively(ResourceLocation("d"))));
}

TEST_F(ResourceLocationFaultsTest, RecursionDoesNotAskForKindsThatTheDirectoryTold)
{
    mSystem->directories.insert({"d", "d\\a"});
    mSystem->files = {{"d\\f", 1}, {"d\\a\\g", 1}};
    std::map<std::string, int> asked;
    const auto healthy = mSystem->entryKind;
    mSystem->entryKind = [&](const std::string& path) {
        ++asked[path];
        return healthy(path);
    };
    EXPECT_EQ(2u, getFilesRecursively(ResourceLocation("d")).size());
    EXPECT_FALSE(asked.contains("d\\f"));
    EXPECT_FALSE(asked.contains("d\\a\\g"));
}

TEST_F(ResourceLocationFaultsTest, RecursionAsksForKindsThatTheDirectoryDidNotTell)
{
    mSystem->directories.insert({"d", "d\\a"});
    mSystem->files = {{"d\\f", 1}, {"d\\a\\g", 1}};
    const auto healthy = mSystem->listDirectory;
    mSystem->listDirectory = [&](const std::string& path, std::vector<platform::DirectoryEntry>& entries) {
        const bool done = healthy(path, entries);
        for (platform::DirectoryEntry& entry : entries) {
            entry.kind.reset();
        }
        entries.push_back({"gone", std::nullopt});
        return done;
    };
    const TraceCapture trace(Trace::fail);
    EXPECT_EQ((Texts{R"(d\f)", R"(d\a\g)"}), pathsOf(getFilesRecursively(ResourceLocation("d"))));
    EXPECT_EQ("|-- What is this: \"d\\gone\" ?\n|-- What is this: \"d\\a\\gone\" ?\n", trace.text());
}

TEST_F(ResourceLocationFaultsTest, KindsAreTakenOnlyByTheRecursionThatWantsThem)
{
    mSystem->directories.insert({"d", "e"});
    mSystem->files = {{"d\\f", 1}, {"e\\g", 1}};
    const auto healthy = mSystem->listDirectory;
    mSystem->listDirectory = [&](const std::string& path, std::vector<platform::DirectoryEntry>& entries) {
        return path == "d" ? throw std::runtime_error("no answer") : healthy(path, entries);
    };
    EXPECT_EQ("no answer", textOf<std::runtime_error>([] { getFilesRecursively(ResourceLocation("d")); }));
    EXPECT_EQ(Texts{"e\\g"}, pathsOf(ResourceLocation("e").getDirList(false)));
    EXPECT_EQ(Texts{"e\\g"}, pathsOf(getFilesRecursively(ResourceLocation("e"))));
}

TEST_F(ResourceLocationFaultsTest, NamesThatNoLocationHoldsAreTracedAndLeftOut)
{
    mSystem->directories.insert({"C:\\d", "C:"});
    mSystem->files = {{"C:\\d\\bad", 1}, {"C:\\d\\.bad", 1}, {"C:\\d\\good", 1}, {"C:\\bad", 1}};
    mSystem->isHoldable = [](std::string_view name) { return !name.ends_with("bad"); };
    mSystem->nativePath = [](const std::string& path) { return "native:" + path; };
    const TraceCapture trace(Trace::fail);
    EXPECT_EQ(Texts{R"(C:\d\good)"}, pathsOf(ResourceLocation("C:/d").getDirList(false)));
    EXPECT_EQ("|-- What is this: \"native:C:\\d\\bad\" ?\n", trace.text());
}

TEST_F(ResourceLocationFaultsTest, SharesAreListedWhereTheSystemHasThem)
{
    mSystem->directories.insert({R"(\\h\s)", R"(\\h\s\a)"});
    mSystem->files[R"(\\h\s\a\f)"] = 1;
    const ResourceLocation share("//h/s");
    EXPECT_TRUE(share.isDir());
    const std::vector<ResourceLocation> files = getFilesRecursively(share);
    ASSERT_EQ(1u, files.size());
    EXPECT_EQ(R"(smb://h/s\a\f)", files[0].str());
    EXPECT_EQ("h", files[0].getHostName());
}

} // namespace KelvoBase
