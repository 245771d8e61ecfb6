// Faults of the file system that a healthy one does not show, seen through locations.

#include "support/Capture.h"
#include "support/FakePlatform.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

namespace
{

using namespace KelvoBase;
using test::FakePlatform;
using test::fakePlatform;
using test::FakeSystem;

/// With the trace areas of a running tool: the operations write to them.
class LocationFaultsTest : public ::testing::Test
{
protected:
    LocationFaultsTest() { TraceAreaMgr::startup(); }
    ~LocationFaultsTest() override { TraceAreaMgr::teardown(); }
};

TEST_F(LocationFaultsTest, DirectoryThatCannotBeListedThrowsTheSystemsTextAlone)
{
    const FakeSystem fake;
    fake->directories = {"C:", "C:\\secret"};
    fake->listDirectory = [](const std::string&, std::vector<platform::DirectoryEntry>&) {
        return fakePlatform().fail(FakePlatform::accessDenied);
    };
    EXPECT_EQ("Denied", test::textOf<IOException>([] { ResourceLocation("C:\\secret").getDirList(false); }));
}

TEST_F(LocationFaultsTest, ListFollowsTheSystemsOrder)
{
    const FakeSystem fake;
    fake->directories = {"C:", "C:\\d"};
    fake->listDirectory = [](const std::string&, std::vector<platform::DirectoryEntry>& entries) {
        entries = {{".", {}}, {"z", {}}, {"..", {}}, {"a", {}}, {".hidden", {}}, {"m", {}}};
        return true;
    };
    std::string names;
    for (const auto& entry : ResourceLocation("C:\\d").getDirList(false)) {
        names += entry.lastComponent();
    }
    EXPECT_EQ("zam", names);
}

TEST_F(LocationFaultsTest, CreateDirMakesEachMissingLevel)
{
    const FakeSystem fake;
    ResourceLocation("C:\\a\\b\\c").createDir();
    EXPECT_EQ((std::set<std::string>{"C:", "C:\\a", "C:\\a\\b", "C:\\a\\b\\c"}), fake->directories);
}

TEST_F(LocationFaultsTest, CreateDirAcceptsANameThatAppearsMeanwhile)
{
    const FakeSystem fake;
    fake->makeDirectory = [](const std::string&) { return fakePlatform().fail(FakePlatform::alreadyExists); };
    EXPECT_NO_THROW(ResourceLocation("C:\\a\\b").createDir());
}

TEST_F(LocationFaultsTest, CreateDirAcceptsAFailureWithoutAReason)
{
    const FakeSystem fake;
    fake->makeDirectory = [](const std::string&) { return fakePlatform().fail(0); };
    EXPECT_NO_THROW(ResourceLocation("C:\\a\\b").createDir());
}

TEST_F(LocationFaultsTest, CreateDirIgnoresAnEarlierError)
{
    const FakeSystem fake;
    fake->lastError = FakePlatform::accessDenied;
    fake->makeDirectory = [](const std::string&) { return false; };
    EXPECT_NO_THROW(ResourceLocation("C:\\a").createDir());
}

TEST_F(LocationFaultsTest, CreateDirRefusedKeepsTheLevelsMadeBefore)
{
    const FakeSystem fake;
    fake->makeDirectory = [](const std::string& path) {
        fakePlatform().directories.insert(path);
        return path != "C:\\a\\b" || fakePlatform().fail(FakePlatform::accessDenied);
    };
    EXPECT_EQ("creating directory \"C:\\a\\b\\c\" failed : Denied",
              test::textOf<IOFailedException>([] { ResourceLocation("C:\\a\\b\\c").createDir(); }));
    EXPECT_TRUE(fake->directories.contains("C:\\a"));
    EXPECT_FALSE(fake->directories.contains("C:\\a\\b\\c"));
}

TEST_F(LocationFaultsTest, IsWritableOfARefusedFileLeavesALineWithTheReason)
{
    const FakeSystem fake;
    fake->files = {{"C:\\f", 3}};
    fake->isWritable = [](const std::string&) { return fakePlatform().fail(FakePlatform::accessDenied); };
    const test::TraceCapture trace(Trace::verbose);
    EXPECT_FALSE(ResourceLocation("C:\\f").isWritable(false));
    EXPECT_EQ("|------ Cannot write to \"file://localhost/C:\\f\": Denied\n", trace.text());
}

TEST_F(LocationFaultsTest, IsWritableAsksForTheParentOfAMissingFile)
{
    const FakeSystem fake;
    std::vector<std::string> asked;
    fake->isWritable = [&](const std::string& path) { return asked.push_back(path), true; };
    EXPECT_TRUE(ResourceLocation("C:\\dir\\f").isWritable(true));
    EXPECT_TRUE(ResourceLocation("f").isWritable(true));
    EXPECT_EQ((std::vector<std::string>{"C:\\dir", "."}), asked);
}

TEST_F(LocationFaultsTest, RemoveRefusedThrowsWithTheReason)
{
    const FakeSystem fake;
    fake->files = {{"C:\\f", 3}};
    fake->removeFile = [](const std::string&) { return fakePlatform().fail(FakePlatform::accessDenied); };
    EXPECT_EQ("Could not remove 'file://localhost/C:\\f': Denied",
              test::textOf<IOException>([] { ResourceLocation("C:\\f").remove(); }));
}

TEST_F(LocationFaultsTest, FileThatCannotBeOpenedHasNoSize)
{
    const FakeSystem fake;
    fake->files = {{"C:\\f", 3}};
    fake->fileSize = [](const std::string&) -> std::optional<unsigned long long> {
        fakePlatform().fail(FakePlatform::accessDenied);
        return std::nullopt;
    };
    EXPECT_EQ("Cannot read from file \"file://localhost/C:\\f\" : Invalid file handle! Denied",
              test::textOf<FileNotReadableException>([] { static_cast<void>(ResourceLocation("C:\\f").size()); }));
}

TEST_F(LocationFaultsTest, SizeBeyond32BitsIsComplete)
{
    const FakeSystem fake;
    fake->files = {{"C:\\f", 0x123456789AULL}};
    EXPECT_EQ(0x123456789AULL, ResourceLocation("C:\\f").size());
}

TEST_F(LocationFaultsTest, MoveRefusedThrowsWithTheReason)
{
    const FakeSystem fake;
    fake->files = {{"C:\\f", 3}, {"C:\\g", 4}};
    EXPECT_EQ("moving file \"C:\\f\" to \"C:\\g\" failed : Taken",
              test::textOf<IOFailedException>([] { ResourceLocation("C:\\f").move(ResourceLocation("C:\\g")); }));
    EXPECT_EQ(2u, fake->files.size());
}

TEST_F(LocationFaultsTest, AbsoluteLocationNeedsAWorkingDirectory)
{
    const FakeSystem fake;
    fake->workingDirectory = [] { return std::nullopt; };
    EXPECT_EQ("getcwd()", test::textOf<OperationFailedException>([] { ResourceLocation("C:\\f"); }));
    EXPECT_EQ("getcwd()", test::textOf<OperationFailedException>([] { System::instance().getExeImagePath(); }));
}

TEST_F(LocationFaultsTest, WorkingDirectoryThatNoLocationCanHoldServesAbsoluteLocationsAlone)
{
    const FakeSystem fake;
    fake->workingDirectory = [] { return platform::WorkingDirectory{"C:\\odd\"name", false}; };
    EXPECT_EQ("C:\\f", ResourceLocation("C:\\f").getFilePath('\\'));
    EXPECT_EQ("getcwd()", test::textOf<OperationFailedException>([] { ResourceLocation("f").toAbsolute(); }));
}

} // namespace
