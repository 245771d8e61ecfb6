#include "platform/Platform.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace KelvoBase::platform
{

TEST(PathsTest, CurrentDriveIsALetter)
{
    EXPECT_LE(1, currentDrive());
    EXPECT_GE(26, currentDrive());
}

TEST(PathsTest, NativePathOfALocationIsTheSystemsPath)
{
    const test::ScratchDirectory scratch;
    scratch.write("a b/f.txt", "x");
    EXPECT_TRUE(std::filesystem::equivalent(scratch / "a b/f.txt", nativePath(scratch.location("a b/f.txt"))));
    const test::ScopedWorkingDirectory there(scratch.path());
    EXPECT_TRUE(std::filesystem::equivalent(scratch / "a b/f.txt", nativePath("a b\\f.txt")));
}

TEST(PathsTest, NativePathOfADriveIsItsRoot)
{
    const test::ScratchDirectory scratch;
    const test::ScopedWorkingDirectory there(scratch.path());
    EXPECT_EQ(scratch.path().root_path(), nativePath(scratch.location().substr(0, 2)));
}

TEST(PathsTest, EmptyTextAndTextWithAZeroByteAreEmpty)
{
    EXPECT_EQ("", nativePath(""));
    EXPECT_EQ("", nativePath(std::string("a\0b", 3)));
    EXPECT_EQ("", nativePath(std::string("C:\\a\0", 5)));
}

TEST(PathsTest, NamesAreHoldableUnlessALocationReadsThemOtherwise)
{
    for (const char* name : {"", "a", "a b", "a.b", "..a", "'", "a'b", "\xE4", "abc", "%", ";", "~", "a=b"}) {
        EXPECT_TRUE(isHoldable(name)) << name;
    }
    for (const char* name : {"\"", "a\"b", "a:", "a:b"}) {
        EXPECT_FALSE(isHoldable(name)) << name;
    }
}

TEST(PathsTest, WorkingDirectoryHasTheTextOfLocations)
{
    const test::ScratchDirectory scratch;
    const test::ScopedWorkingDirectory there(scratch.path());
    const std::optional<WorkingDirectory> directory = workingDirectory();
    ASSERT_TRUE(directory);
    EXPECT_EQ(scratch.location(), directory->path);
    EXPECT_TRUE(directory->holdable);
    EXPECT_TRUE(hasWorkingDirectory());
}

TEST(PathsTest, RootAsWorkingDirectoryIsTheDriveWithASeparator)
{
    const test::ScratchDirectory scratch;
    const test::ScopedWorkingDirectory there(scratch.path().root_path());
    ASSERT_TRUE(workingDirectory());
    EXPECT_EQ(scratch.location().substr(0, 3), workingDirectory()->path);
}

} // namespace KelvoBase::platform
