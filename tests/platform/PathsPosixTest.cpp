#include "platform/Platform.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace KelvoBase::platform
{

namespace
{

namespace fs = std::filesystem;
using test::ScopedWorkingDirectory;
using test::ScratchDirectory;

} // namespace

TEST(PathsPosixTest, DriveIsTheThird)
{
    EXPECT_EQ(3, currentDrive());
}

TEST(PathsPosixTest, LibraryPathsBecomeNative)
{
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"C:", "/"},
        {R"(C:\)", "/"},
        {R"(C:\dir\file)", "/dir/file"},
        {R"(C:\dir\)", "/dir/"},
        {R"(C:\dir\D:\x)", "/dir/D:/x"},
        {"C:/dir", "/dir"},
        {R"(a\b)", "a/b"},
        {R"(a\\b)", "a//b"},
        {"a/b", "a/b"},
        {R"(..\x)", "../x"},
        {R"(\x)", "/x"},
        {R"(\)", "/"},
        {".", "."},
        {"a:", ""},
        {"ab:c", "ab:c"},
        {R"(a b\"c)", "a b/\"c"},
        {"", ""},
    };
    for (const auto& [path, expected] : rows) {
        EXPECT_EQ(expected, nativePath(path)) << path;
    }
}

TEST(PathsPosixTest, PathsToNowhereBecomeEmpty)
{
    const std::vector<std::string> paths = {
        R"(\\server\share\x)",
        R"(\\)",
        R"(\\\x)",
        R"(//server/x)",
        R"(/\server\x)",
        "D:",
        R"(D:\x)",
        "c:",
        R"(c:\x)",
        "C:foo",
        R"(C:foo\x)",
        "C::",
        "::",
        std::string("a\0b", 3),
        std::string("C:\\a\0", 5),
    };
    for (const std::string& path : paths) {
        EXPECT_EQ("", nativePath(path)) << path;
    }
}

TEST(PathsPosixTest, EmptyPathIsMissingForEveryCall)
{
    struct stat status
    {
    };
    EXPECT_EQ(-1, ::stat(nativePath("D:").c_str(), &status));
    EXPECT_EQ(ENOENT, errno);
}

TEST(PathsPosixTest, NamesAreHoldableUnlessALocationReadsThemOtherwise)
{
    for (const char* native :
         {"", "a", "a b", "/", "/a/b", "abc:", "/ab/cd:e", ":x", "/:x", "a\n", "\xFF", ".", "..a", "'"}) {
        EXPECT_TRUE(isHoldable(native)) << native;
    }
    for (const char* native : {"\\", "a\\b", "\"", "a\"", "a:", "a:b", "::", "/a:/x", "/x/a:b", "/x/y\"", "a:/b"}) {
        EXPECT_FALSE(isHoldable(native)) << native;
    }
}

TEST(PathsPosixTest, WorkingDirectoryThatNoLocationHoldsIsTold)
{
    const ScratchDirectory scratch;
    for (const char* name : {"a\\b", "a\"b", "x:y"}) {
        fs::create_directory(scratch / name);
        const ScopedWorkingDirectory here(scratch / name);
        const auto directory = workingDirectory();
        ASSERT_TRUE(directory);
        EXPECT_EQ(scratch.location() + "\\" + name, directory->path);
        EXPECT_FALSE(directory->holdable) << name;
        EXPECT_TRUE(hasWorkingDirectory());
    }
}

TEST(PathsPosixTest, RemovedWorkingDirectoryIsNone)
{
    const ScratchDirectory scratch;
    fs::create_directory(scratch / "gone");
    const ScopedWorkingDirectory here(scratch / "gone");
    fs::remove(scratch / "gone");
    EXPECT_FALSE(workingDirectory());
    EXPECT_EQ(ENOENT, errno);
    errno = 0;
    EXPECT_FALSE(hasWorkingDirectory());
    EXPECT_EQ(ENOENT, errno);
}

TEST(PathsPosixTest, WorkingDirectoryOutsideTheRootIsNone)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can change the root directory";
    }
    const ScratchDirectory scratch;
    fs::create_directory(scratch / "root");
    EXPECT_EXIT(
        {
            // still in a directory that the new root does not lead to
            const bool moved = ::chdir(scratch.path().c_str()) == 0 && ::chroot((scratch / "root").c_str()) == 0;
            std::_Exit(!moved ? 2 : !workingDirectory() && !hasWorkingDirectory() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(PathsPosixTest, WorkingDirectoryOfAnyLengthIsGivenWhole)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory here(scratch.path());
    std::string expected = scratch.location();
    for (int i = 0; i < 30; ++i) {
        const std::string level(200, 'n');
        ASSERT_EQ(0, ::mkdir(level.c_str(), 0700));
        ASSERT_EQ(0, ::chdir(level.c_str()));
        expected += "\\" + level;
    }
    const auto directory = workingDirectory();
    ASSERT_TRUE(directory);
    EXPECT_EQ(expected, directory->path);
    EXPECT_TRUE(hasWorkingDirectory());
}

} // namespace KelvoBase::platform
