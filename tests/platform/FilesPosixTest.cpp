#include "location/FailingCall.h"
#include "platform/Platform.h"
#include "platform/posix/PosixFiles.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace KelvoBase::platform
{

namespace
{

namespace fs = std::filesystem;
using test::contentOf;

class FilesPosixTest : public testing::Test
{
protected:
    void SetUp() override { errno = 0; }

    std::string at(const std::string& name) const { return mScratch.location(name); }
    fs::path native(const std::string& name) const { return mScratch / name; }

    test::ScratchDirectory mScratch;
};

/// The operations that rename without replacing, in native paths.
using Move = bool (*)(const std::string&, const std::string&);
const std::map<std::string, Move> moves = {
    {"moveFile", [](const std::string& from, const std::string& to) { return moveFile("C:" + from, "C:" + to); }},
    {"moveByLink", posix::moveByLink},
    {"moveOntoPlaceholder", posix::moveOntoPlaceholder},
};

} // namespace

TEST_F(FilesPosixTest, KindsFollowLinks)
{
    mScratch.write("d/f", "x");
    fs::create_symlink("d", native("toDirectory"));
    fs::create_symlink("d/f", native("toFile"));
    fs::create_symlink("nowhere", native("dangling"));
    fs::create_symlink("loop", native("loop"));
    const std::map<std::string, EntryKind> rows = {
        {"d", EntryKind::directory},  {"toDirectory", EntryKind::directory}, {"d/f", EntryKind::file},
        {"toFile", EntryKind::file},  {"dangling", EntryKind::missing},      {"loop", EntryKind::missing},
        {"d/x", EntryKind::missing},  {"d/f/x", EntryKind::missing},         {"d/f/", EntryKind::missing},
        {"d/", EntryKind::directory},
    };
    for (const auto& [name, kind] : rows) {
        EXPECT_EQ(kind, entryKind(at(name))) << name;
    }
    EXPECT_EQ(EntryKind::file, entryKind("C:\\dev\\null"));
    EXPECT_EQ(EntryKind::missing, entryKind(""));
}

TEST_F(FilesPosixTest, WritableAsksForTheRealUser)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the rights to become another user";
    }
    mScratch.write("f", "x");
    ASSERT_EQ(0, ::chmod(native("f").c_str(), 0644));
    ASSERT_EQ(0, ::setreuid(65534, 0));
    const bool asNobody = isWritable(at("f"));
    const int reason = errno;
    ASSERT_EQ(0, ::setreuid(0, 0));
    EXPECT_FALSE(asNobody);
    EXPECT_EQ(EACCES, reason);
    EXPECT_TRUE(isWritable(at("f")));
}

TEST_F(FilesPosixTest, WritableOfWhatIsMissingFails)
{
    EXPECT_FALSE(isWritable(at("missing")));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_TRUE(isWritable("."));
    EXPECT_FALSE(isWritable("\\\\server\\share"));
    EXPECT_EQ(ENOENT, errno);
}

TEST_F(FilesPosixTest, RemoveFileLeavesItsReason)
{
    mScratch.write("f", "x");
    fs::create_directory(native("d"));
    EXPECT_TRUE(removeFile(at("f")));
    EXPECT_FALSE(removeFile(at("f")));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_FALSE(removeFile(at("d")));
    EXPECT_EQ(EISDIR, errno);
    EXPECT_TRUE(fs::is_directory(native("d")));
}

TEST_F(FilesPosixTest, RemoveDirectoryTakesALinkItself)
{
    mScratch.write("d/f", "x");
    for (const char* name : {"link", "link/"}) {
        fs::create_directory_symlink("d", native("link"));
        EXPECT_TRUE(removeDirectory(at(name))) << name;
        EXPECT_FALSE(fs::is_symlink(native("link")));
    }
    EXPECT_EQ("x", contentOf(native("d/f")));
}

TEST_F(FilesPosixTest, RemoveDirectoryLeavesItsReason)
{
    mScratch.write("d/f", "x");
    EXPECT_FALSE(removeDirectory(at("d")));
    EXPECT_EQ(ENOTEMPTY, errno);
    EXPECT_FALSE(removeDirectory(at("d/f")));
    EXPECT_EQ(ENOTDIR, errno);
    EXPECT_FALSE(removeDirectory(at("missing")));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_EQ("x", contentOf(native("d/f")));
}

TEST_F(FilesPosixTest, MakeDirectoryMakesOneLevel)
{
    EXPECT_TRUE(makeDirectory(at("d")));
    EXPECT_TRUE(fs::is_directory(native("d")));
    EXPECT_FALSE(makeDirectory(at("d")));
    EXPECT_TRUE(isAlreadyExists(static_cast<unsigned long>(errno)));
    EXPECT_FALSE(makeDirectory(at("x/y")));
    EXPECT_EQ(ENOENT, errno);
}

TEST_F(FilesPosixTest, MovesRename)
{
    for (const auto& [name, move] : moves) {
        SCOPED_TRACE(name);
        mScratch.write("f", "content");
        ::chmod(native("f").c_str(), 0640);
        EXPECT_TRUE(move(native("f"), native("g")));
        EXPECT_FALSE(fs::exists(native("f")));
        EXPECT_EQ("content", contentOf(native("g")));
        EXPECT_EQ(static_cast<fs::perms>(0640), fs::status(native("g")).permissions());
        fs::remove(native("g"));
    }
}

TEST_F(FilesPosixTest, MovesTakeALinkItself)
{
    mScratch.write("target", "x");
    for (const auto& [name, move] : moves) {
        SCOPED_TRACE(name);
        fs::create_symlink("target", native("link"));
        EXPECT_TRUE(move(native("link"), native("g")));
        EXPECT_TRUE(fs::is_symlink(native("g")));
        EXPECT_FALSE(fs::is_symlink(native("link")));
        fs::remove(native("g"));
    }
}

TEST_F(FilesPosixTest, MovesNeverReplaceAndTouchNothing)
{
    for (const auto& [name, move] : moves) {
        SCOPED_TRACE(name);
        mScratch.write("f", "new");
        mScratch.write("g", "old");
        fs::create_symlink("nowhere", native("dangling"));
        for (const char* taken : {"g", "f", "dangling"}) {
            errno = 0;
            EXPECT_FALSE(move(native("f"), native(taken)));
            EXPECT_EQ(EEXIST, errno) << taken;
        }
        EXPECT_EQ("new", contentOf(native("f")));
        EXPECT_EQ("old", contentOf(native("g")));
        EXPECT_TRUE(fs::is_symlink(native("dangling")));
        fs::remove(native("dangling"));
    }
}

TEST_F(FilesPosixTest, MovesThatFailLeaveNothingBehind)
{
    for (const auto& [name, move] : moves) {
        SCOPED_TRACE(name);
        mScratch.write("f", "x");
        errno = 0;
        EXPECT_FALSE(move(native("missing"), native("g")));
        EXPECT_EQ(ENOENT, errno);
        EXPECT_FALSE(fs::exists(native("g")));
        errno = 0;
        EXPECT_FALSE(move(native("f"), native("missing/g")));
        EXPECT_EQ(ENOENT, errno);
        EXPECT_EQ("x", contentOf(native("f")));
    }
}

TEST_F(FilesPosixTest, MovesAcrossFileSystemsFail)
{
    const fs::path elsewhere = "/dev/shm/kelvobase-" + mScratch.path().filename().native();
    struct stat here
    {
    };
    struct stat there
    {
    };
    if (::access("/dev/shm", W_OK) != 0 || ::stat(mScratch.path().c_str(), &here) != 0 ||
        ::stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev) {
        GTEST_SKIP() << "needs a second file system";
    }
    for (const auto& [name, move] : moves) {
        SCOPED_TRACE(name);
        mScratch.write("f", "x");
        errno = 0;
        EXPECT_FALSE(move(native("f"), elsewhere));
        EXPECT_EQ(EXDEV, errno);
        EXPECT_FALSE(fs::exists(elsewhere));
        EXPECT_EQ("x", contentOf(native("f")));
    }
}

TEST_F(FilesPosixTest, MoveByLinkOfWhatCannotBeLinkedLeavesEverything)
{
    fs::create_directories(native("d/sub"));
    EXPECT_FALSE(posix::moveByLink(native("d"), native("g")));
    EXPECT_EQ(ENOTDIR, errno);
    EXPECT_TRUE(fs::is_directory(native("d/sub")));
    EXPECT_FALSE(fs::exists(native("g")));
}

TEST_F(FilesPosixTest, MoveByLinkThatCannotTakeTheOldNameAwayLeavesTheNewOneFree)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the rights to become another user";
    }
    mScratch.write("locked/f", "x");
    fs::create_directory(native("open"));
    ASSERT_EQ(0, ::chmod(mScratch.path().c_str(), 0755));
    ASSERT_EQ(0, ::chmod(native("locked").c_str(), 0755));
    ASSERT_EQ(0, ::chmod(native("open").c_str(), 0777));
    ASSERT_EQ(0, ::chown(native("locked/f").c_str(), 65534, 65534));
    ASSERT_EQ(0, ::seteuid(65534));
    const bool moved = posix::moveByLink(native("locked/f"), native("open/g"));
    const int reason = errno;
    ASSERT_EQ(0, ::seteuid(0));
    EXPECT_FALSE(moved);
    EXPECT_EQ(EACCES, reason);
    EXPECT_FALSE(fs::exists(native("open/g")));
    EXPECT_EQ("x", contentOf(native("locked/f")));
}

TEST_F(FilesPosixTest, SameFileIsFoundThroughItsNames)
{
    mScratch.write("f", "x");
    mScratch.write("g", "x");
    fs::create_hard_link(native("f"), native("hard"));
    fs::create_symlink("f", native("soft"));
    for (const char* name : {"f", "hard", "soft"}) {
        EXPECT_TRUE(isSameFile(at("f"), at(name))) << name;
    }
    EXPECT_FALSE(isSameFile(at("f"), at("g")));
    EXPECT_FALSE(isSameFile(at("f"), at("missing")));
    EXPECT_FALSE(isSameFile(at("missing"), at("missing")));
}

TEST_F(FilesPosixTest, SizeIsGivenOrItsReason)
{
    mScratch.write("f", "12345");
    fs::create_directory(native("d"));
    ASSERT_EQ(0, ::mkfifo(native("fifo").c_str(), 0600));
    EXPECT_EQ(5u, fileSize(at("f")));
    EXPECT_EQ(0u, fileSize(at("fifo")));
    EXPECT_FALSE(fileSize(at("d")));
    EXPECT_EQ(EISDIR, errno);
    EXPECT_FALSE(fileSize(at("missing")));
    EXPECT_EQ(ENOENT, errno);
}

TEST_F(FilesPosixTest, ListingGivesNamesAndTheKindsThatAreKnown)
{
    mScratch.write("l/f", "x");
    mScratch.write("l/.hidden", "x");
    fs::create_directory(native("l/d"));
    fs::create_directory_symlink("d", native("l/link"));
    ASSERT_EQ(0, ::mkfifo(native("l/fifo").c_str(), 0600));
    std::vector<DirectoryEntry> entries;
    ASSERT_TRUE(listDirectory(at("l"), entries));
    std::map<std::string, std::optional<EntryKind>> found;
    for (const DirectoryEntry& entry : entries) {
        found[entry.name] = entry.kind;
    }
    const auto isOrUnknown = [&](const char* name, EntryKind kind) {
        return found.contains(name) && found[name].value_or(kind) == kind;
    };
    EXPECT_TRUE(isOrUnknown("f", EntryKind::file));
    EXPECT_TRUE(isOrUnknown(".hidden", EntryKind::file));
    EXPECT_TRUE(isOrUnknown("fifo", EntryKind::file));
    EXPECT_TRUE(isOrUnknown("d", EntryKind::directory));
    ASSERT_TRUE(found.contains("link"));
    EXPECT_FALSE(found["link"]);
}

TEST_F(FilesPosixTest, ListingAddsToWhatIsThere)
{
    mScratch.write("l/f", "x");
    std::vector<DirectoryEntry> entries{{"first", std::nullopt}};
    ASSERT_TRUE(listDirectory(at("l"), entries));
    EXPECT_EQ("first", entries.front().name);
    EXPECT_TRUE(std::ranges::any_of(entries, [](const DirectoryEntry& entry) { return entry.name == "f"; }));
}

TEST_F(FilesPosixTest, ListingThatIsRefusedLeavesItsReason)
{
    mScratch.write("f", "x");
    std::vector<DirectoryEntry> entries;
    EXPECT_FALSE(listDirectory(at("missing"), entries));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_FALSE(listDirectory(at("f"), entries));
    EXPECT_EQ(ENOTDIR, errno);
    EXPECT_TRUE(entries.empty());
}

TEST_F(FilesPosixTest, ListingThatBreaksOffFails)
{
    mScratch.write("l/f", "x");
    const auto listInVain = [&] {
        std::vector<DirectoryEntry> entries;
        const bool able = test::letCallFail(SYS_getdents64, EIO);
        std::_Exit(!able ? 2 : !listDirectory(at("l"), entries) && errno == EIO ? 0 : 1);
    };
    EXPECT_EXIT(listInVain(), testing::ExitedWithCode(0), "");
}

TEST_F(FilesPosixTest, MoveFileDoesWithoutTheSystemsCall)
{
    mScratch.write("g", "old");
    const std::vector<unsigned int> codes = {ENOSYS, EINVAL}; // the system has no such call; the file system cannot
    for (const unsigned int code : codes) {
        mScratch.write("f", "new");
        fs::remove(native("h"));
        const auto move = [&] {
            const bool able = test::letCallFail(SYS_renameat2, code);
            const bool refused = !moveFile(at("f"), at("g")) && errno == EEXIST;
            std::_Exit(!able ? 2 : refused && moveFile(at("f"), at("h")) ? 0 : 1);
        };
        EXPECT_EXIT(move(), testing::ExitedWithCode(0), "") << code;
        EXPECT_FALSE(fs::exists(native("f")));
        EXPECT_EQ("new", contentOf(native("h")));
        EXPECT_EQ("old", contentOf(native("g")));
    }
}

TEST_F(FilesPosixTest, MoveFileDoesWithoutHardLinks)
{
    mScratch.write("f", "new");
    mScratch.write("g", "old");
    const auto move = [&] {
        const bool able = test::letCallFail(SYS_renameat2, EINVAL) && test::letCallFail(SYS_link, EPERM);
        const bool refused = !moveFile(at("f"), at("g")) && errno == EEXIST;
        std::_Exit(!able ? 2 : refused && moveFile(at("f"), at("h")) ? 0 : 1);
    };
    EXPECT_EXIT(move(), testing::ExitedWithCode(0), "");
    EXPECT_FALSE(fs::exists(native("f")));
    EXPECT_EQ("new", contentOf(native("h")));
    EXPECT_EQ("old", contentOf(native("g")));
}

TEST_F(FilesPosixTest, OtherReasonsOfTheSystemsCallAreFinal)
{
    mScratch.write("f", "x");
    const auto move = [&] {
        const bool able = test::letCallFail(SYS_renameat2, EROFS);
        std::_Exit(!able ? 2 : !moveFile(at("f"), at("g")) && errno == EROFS ? 0 : 1);
    };
    EXPECT_EXIT(move(), testing::ExitedWithCode(0), "");
    EXPECT_TRUE(fs::exists(native("f")));
}

} // namespace KelvoBase::platform
