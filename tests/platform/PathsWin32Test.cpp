#include "platform/Platform.h"
#include "platform/win32/Win32.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace KelvoBase::platform
{

namespace
{

/// The root of a drive that is not the current one ("Z:\"); empty if there is none that can be read.
std::string otherDrive()
{
    for (char letter = 'C'; letter <= 'Z'; ++letter) {
        const std::string root{letter, ':', '\\'};
        if (letter - '@' != currentDrive() && ::GetFileAttributesA(root.c_str()) != INVALID_FILE_ATTRIBUTES) {
            return root;
        }
    }
    return {};
}

/// A new folder whose path has a length that only calls without a limit take; gone with the object.
class LongFolder
{
public:
    /// \param length of the path, 100 to 300
    explicit LongFolder(std::size_t length) : mPath(mScratch.path().string())
    {
        const std::size_t upper = (length - mPath.size()) / 2;
        for (const std::size_t size : {upper, length - mPath.size() - upper}) {
            mPath += '\\' + std::string(size - 1, 'n');
            EXPECT_TRUE(::CreateDirectoryW(unlimited().c_str(), nullptr)) << mPath;
        }
    }
    ~LongFolder() { ::RemoveDirectoryW(unlimited().c_str()); }
    LongFolder(const LongFolder&) = delete;
    LongFolder& operator=(const LongFolder&) = delete;

    const std::string& path() const { return mPath; }

private:
    std::wstring unlimited() const { return LR"(\\?\)" + std::filesystem::path(mPath).wstring(); }

    const test::ScratchDirectory mScratch;
    std::string mPath;
};

} // namespace

TEST(PathsWin32Test, LibraryPathsAreNativeOnes)
{
    for (const std::string path : {R"(C:\)", R"(C:\dir\file)", "C:/dir", R"(\\server\share\x)", R"(\\\x)", R"(a\b)",
                                   "a/b", R"(\x)", ".", R"(..\x)", "C:foo", "d:x", "ab:c", "NUL", "a ", "\xE4"}) {
        EXPECT_EQ(path, nativePath(path));
    }
}

TEST(PathsWin32Test, DriveAloneIsItsRoot)
{
    for (const std::string drive : {"C:", "c:", "Z:"}) {
        EXPECT_EQ(drive + "\\", nativePath(drive));
    }
}

TEST(PathsWin32Test, CurrentDriveIsThatOfTheWorkingDirectory)
{
    const test::ScratchDirectory scratch;
    const test::ScopedWorkingDirectory there(scratch.path());
    EXPECT_EQ(scratch.location().front(), '@' + currentDrive());
    const std::string other = otherDrive();
    if (other.empty()) {
        GTEST_SKIP() << "there is one drive only";
    }
    const test::ScopedWorkingDirectory elsewhere(other);
    EXPECT_EQ(other.front(), '@' + currentDrive());
    EXPECT_EQ(other, workingDirectory().value().path);
}

TEST(PathsWin32Test, PathsMayHaveADriveOfTheirOwn)
{
    for (const char* path : {R"(C:\dir\file)", "C:/dir/file", "C:\\", R"(\\server\share\x)", R"(dir\ab:c)"}) {
        EXPECT_TRUE(isHoldable(path)) << path;
    }
    for (const char* path : {R"(C:\a"b)", R"(C:\a:b)", R"(C:\a:\b)", R"(dir\C:)", "C:dir"}) {
        EXPECT_FALSE(isHoldable(path)) << path;
    }
}

TEST(PathsWin32Test, LongestWorkingDirectoryThatTheSystemTakesIsGiven)
{
    const std::string before = workingDirectory().value().path;
    for (const std::size_t length : {200, 257, 258}) {
        const LongFolder folder(length);
        ASSERT_EQ(length, folder.path().size());
        ASSERT_TRUE(::SetCurrentDirectoryA(folder.path().c_str())) << length;
        EXPECT_EQ(folder.path(), workingDirectory().value().path);
        EXPECT_TRUE(hasWorkingDirectory());
        ASSERT_TRUE(::SetCurrentDirectoryA(before.c_str()));
    }
}

TEST(PathsWin32Test, WorkingDirectoryOnAShareIsGiven)
{
    const char* const share = R"(\\localhost\C$)";
    const std::string before = workingDirectory().value().path;
    if (!::SetCurrentDirectoryA(share)) {
        GTEST_SKIP() << share << " is not there";
    }
    const std::optional<WorkingDirectory> directory = workingDirectory();
    ::SetCurrentDirectoryA(before.c_str());
    ASSERT_TRUE(directory);
    EXPECT_TRUE(directory->path.starts_with(share)) << directory->path;
    EXPECT_TRUE(directory->holdable);
}

} // namespace KelvoBase::platform
