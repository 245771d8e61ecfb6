#include "platform/Platform.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace KelvoBase::platform
{

namespace
{

namespace fs = std::filesystem;
using test::contentOf;

/// The operations on files, each with its reason when it fails.
class FilesTest : public testing::Test
{
protected:
    void SetUp() override { takeLastError(); }

    std::string at(const std::string& name) const { return mScratch.location(name); }
    fs::path native(const std::string& name) const { return mScratch / name; }

    /// Whether an operation failed and says why.
    static testing::AssertionResult isRefused(bool success)
    {
        const unsigned long code = takeLastError();
        if (success) {
            return testing::AssertionFailure() << "it succeeded";
        }
        return code != 0 ? testing::AssertionSuccess() : testing::AssertionFailure() << "it gives no reason";
    }

    using Entries = std::map<std::string, EntryKind>;
    /// What a listing gives, without the two names that each directory may show. A kind that it does not tell is asked
    /// for.
    Entries entriesOf(const std::string& path) const
    {
        std::vector<DirectoryEntry> entries;
        EXPECT_TRUE(listDirectory(path, entries));
        Entries found;
        for (const DirectoryEntry& entry : entries) {
            const EntryKind kind = entry.kind ? *entry.kind : entryKind(path + "\\" + entry.name);
            EXPECT_TRUE(found.emplace(entry.name, kind).second) << entry.name << " stands there twice";
        }
        found.erase(".");
        found.erase("..");
        return found;
    }

    test::ScratchDirectory mScratch;
};

} // namespace

TEST_F(FilesTest, KindsOfWhatIsThereAndOfWhatIsNot)
{
    mScratch.write("d/f", "x");
    const std::map<std::string, EntryKind> rows = {
        {"d", EntryKind::directory}, {"d/f", EntryKind::file},      {"x", EntryKind::missing},
        {"d/x", EntryKind::missing}, {"d/f/x", EntryKind::missing}, {"d/../d/f", EntryKind::file},
    };
    for (const auto& [name, kind] : rows) {
        EXPECT_EQ(kind, entryKind(at(name))) << name;
    }
    EXPECT_EQ(EntryKind::missing, entryKind(""));
    EXPECT_EQ(EntryKind::directory, entryKind("."));
    EXPECT_EQ(EntryKind::directory, entryKind(at("").substr(0, 2))) << "the drive";
}

TEST_F(FilesTest, RelativePathsAreThoseOfTheWorkingDirectory)
{
    mScratch.write("d/f", "x");
    const test::ScopedWorkingDirectory there(native("d"));
    EXPECT_EQ(EntryKind::file, entryKind("f"));
    EXPECT_EQ(EntryKind::directory, entryKind("..\\d"));
    EXPECT_EQ(1u, fileSize("..\\d\\f"));
}

TEST_F(FilesTest, TextWithAZeroByteNamesNothing)
{
    mScratch.write("f", "x");
    const std::string cut = at("f") + std::string("\0x", 2);
    EXPECT_EQ(EntryKind::missing, entryKind(cut));
    EXPECT_TRUE(isRefused(removeFile(cut)));
    EXPECT_TRUE(isRefused(fileSize(cut).has_value()));
    std::vector<DirectoryEntry> entries;
    EXPECT_TRUE(isRefused(listDirectory(at("") + std::string("\0x", 2), entries)));
    EXPECT_EQ("x", contentOf(native("f")));
}

TEST_F(FilesTest, FileOfThisUserIsWritable)
{
    mScratch.write("f", "x");
    EXPECT_TRUE(isWritable(at("f")));
    EXPECT_TRUE(isWritable(at("")));
    EXPECT_TRUE(isWritable("."));
    EXPECT_TRUE(isRefused(isWritable(at("missing"))));
}

TEST_F(FilesTest, RemoveFileTakesFilesAlone)
{
    mScratch.write("f", "x");
    fs::create_directory(native("d"));
    EXPECT_TRUE(removeFile(at("f")));
    EXPECT_FALSE(fs::exists(native("f")));
    EXPECT_TRUE(isRefused(removeFile(at("f"))));
    EXPECT_TRUE(isRefused(removeFile(at("d"))));
    EXPECT_TRUE(fs::is_directory(native("d")));
}

TEST_F(FilesTest, RemoveDirectoryTakesEmptyDirectoriesAlone)
{
    mScratch.write("d/f", "x");
    fs::create_directory(native("e"));
    EXPECT_TRUE(removeDirectory(at("e")));
    EXPECT_FALSE(fs::exists(native("e")));
    EXPECT_TRUE(isRefused(removeDirectory(at("e"))));
    EXPECT_TRUE(isRefused(removeDirectory(at("d"))));
    EXPECT_TRUE(isRefused(removeDirectory(at("d/f"))));
    EXPECT_EQ("x", contentOf(native("d/f")));
}

TEST_F(FilesTest, MakeDirectoryMakesOneLevel)
{
    EXPECT_TRUE(makeDirectory(at("d")));
    EXPECT_TRUE(fs::is_directory(native("d")));
    EXPECT_TRUE(isRefused(makeDirectory(at("x/y"))));
    EXPECT_FALSE(fs::exists(native("x")));
}

TEST_F(FilesTest, NameThatIsTakenIsToldByItsReason)
{
    mScratch.write("f", "x");
    fs::create_directory(native("d"));
    for (const char* name : {"d", "f"}) {
        EXPECT_FALSE(makeDirectory(at(name)));
        EXPECT_TRUE(isAlreadyExists(takeLastError())) << name;
    }
    EXPECT_FALSE(makeDirectory(at("missing/d")));
    EXPECT_FALSE(isAlreadyExists(takeLastError()));
}

TEST_F(FilesTest, MoveFileRenames)
{
    mScratch.write("f", "content");
    fs::create_directory(native("d"));
    EXPECT_TRUE(moveFile(at("f"), at("d/g")));
    EXPECT_FALSE(fs::exists(native("f")));
    EXPECT_EQ("content", contentOf(native("d/g")));
}

TEST_F(FilesTest, MoveFileNeverReplaces)
{
    mScratch.write("f", "new");
    mScratch.write("g", "old");
    fs::create_directory(native("d"));
    for (const char* taken : {"g", "d"}) {
        EXPECT_FALSE(moveFile(at("f"), at(taken)));
        EXPECT_TRUE(isAlreadyExists(takeLastError())) << taken;
    }
    EXPECT_EQ("new", contentOf(native("f")));
    EXPECT_EQ("old", contentOf(native("g")));
}

TEST_F(FilesTest, MoveThatFailsLeavesNothingBehind)
{
    mScratch.write("f", "x");
    EXPECT_TRUE(isRefused(moveFile(at("missing"), at("g"))));
    EXPECT_FALSE(fs::exists(native("g")));
    EXPECT_TRUE(isRefused(moveFile(at("f"), at("missing/g"))));
    EXPECT_EQ("x", contentOf(native("f")));
}

TEST_F(FilesTest, SameFileIsFoundThroughItsNames)
{
    mScratch.write("d/f", "x");
    mScratch.write("d/g", "x");
    fs::create_hard_link(native("d/f"), native("hard"));
    for (const char* name : {"d/f", "d/../d/f", "hard"}) {
        EXPECT_TRUE(isSameFile(at("d/f"), at(name))) << name;
    }
    const test::ScopedWorkingDirectory there(native("d"));
    EXPECT_TRUE(isSameFile(at("d/f"), "f"));
    EXPECT_FALSE(isSameFile(at("d/f"), at("d/g")));
    EXPECT_FALSE(isSameFile(at("d/f"), at("missing")));
    EXPECT_FALSE(isSameFile(at("missing"), at("missing")));
}

TEST_F(FilesTest, SameFileIsFoundWhileSomebodyHasItOpen)
{
    mScratch.write("f", "x");
    const std::ofstream open(native("f"), std::ios::binary | std::ios::app);
    EXPECT_TRUE(isSameFile(at("f"), at("f")));
}

TEST_F(FilesTest, SizeIsGivenOrRefused)
{
    mScratch.write("f", std::string("1\r\n4\0", 5));
    mScratch.write("empty", "");
    fs::create_directory(native("d"));
    EXPECT_EQ(5u, fileSize(at("f")));
    EXPECT_EQ(0u, fileSize(at("empty")));
    EXPECT_TRUE(isRefused(fileSize(at("d")).has_value()));
    EXPECT_TRUE(isRefused(fileSize(at("missing")).has_value()));
    EXPECT_TRUE(isRefused(fileSize("").has_value()));
}

TEST_F(FilesTest, SizeBeyond32BitsIsComplete)
{
    mScratch.write("f", "x");
    std::error_code failure;
    fs::resize_file(native("f"), 0x1'2345'6789, failure);
    if (failure) {
        GTEST_SKIP() << "this file system has no room for such a file: " << failure.message();
    }
    EXPECT_EQ(0x1'2345'6789u, fileSize(at("f")));
}

TEST_F(FilesTest, ListingGivesNamesAndTheirKinds)
{
    mScratch.write("l/f", "x");
    mScratch.write("l/.hidden", "x");
    mScratch.write("l/a b.c.txt", "x");
    mScratch.write("l/d/below", "x");
    const Entries expected = {
        {"f", EntryKind::file},
        {".hidden", EntryKind::file},
        {"a b.c.txt", EntryKind::file},
        {"d", EntryKind::directory},
    };
    EXPECT_EQ(expected, entriesOf(at("l")));
    EXPECT_EQ((Entries{{"below", EntryKind::file}}), entriesOf(at("l\\d")));
}

TEST_F(FilesTest, ListingAddsToWhatIsThere)
{
    mScratch.write("l/f", "x");
    std::vector<DirectoryEntry> entries = {{"first", std::nullopt}};
    ASSERT_TRUE(listDirectory(at("l"), entries));
    ASSERT_LT(1u, entries.size());
    EXPECT_EQ("first", entries.front().name);
}

TEST_F(FilesTest, ListingOfADriveIsThatOfItsRoot)
{
    const std::string first = at("").substr(3, at("").find('\\', 3) - 3); // below the root
    const test::ScopedWorkingDirectory there(mScratch.path());
    EXPECT_TRUE(entriesOf(at("").substr(0, 2)).contains(first)) << first;
}

TEST_F(FilesTest, ListingOfAnEmptyDirectoryIsEmpty)
{
    fs::create_directory(native("l"));
    EXPECT_EQ(Entries{}, entriesOf(at("l")));
}

TEST_F(FilesTest, ListingOfWhatIsNoDirectoryIsRefused)
{
    mScratch.write("f", "x");
    std::vector<DirectoryEntry> entries;
    EXPECT_TRUE(isRefused(listDirectory(at("missing"), entries)));
    EXPECT_TRUE(isRefused(listDirectory(at("f"), entries)));
    EXPECT_TRUE(isRefused(listDirectory("", entries)));
    EXPECT_TRUE(entries.empty());
}

TEST_F(FilesTest, StreamsOpenNativePaths)
{
    mScratch.write("d/f", "content");
    EXPECT_EQ("content", contentOf(nativePath(at("d/f"))));
}

} // namespace KelvoBase::platform
