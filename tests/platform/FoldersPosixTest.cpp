#include "platform/Platform.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>

namespace
{

using namespace KelvoBase::platform;
using KelvoBase::test::ScopedEnvironment;
using KelvoBase::test::ScopedWorkingDirectory;
using KelvoBase::test::ScratchDirectory;

using Value = std::optional<std::string>;

/// The folder for application data that these variables give.
Value folderOf(const Value& configurationHome, const Value& home)
{
    const ScopedEnvironment first("XDG_CONFIG_HOME", configurationHome);
    const ScopedEnvironment second("HOME", home);
    return userFolder(Folder::applicationData);
}

unsigned int modeOf(const std::filesystem::path& path)
{
    struct stat status
    {
    };
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777u : 0u;
}

TEST(FoldersPosixTest, ThereIsNoFolderForDocuments)
{
    const ScratchDirectory scratch;
    const ScopedEnvironment home("HOME", scratch.path().string());
    EXPECT_EQ(std::nullopt, userFolder(Folder::documents));
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

TEST(FoldersPosixTest, TemporaryFolderIsFixed)
{
    const ScopedEnvironment tmp("TMPDIR", "/proc");
    EXPECT_STREQ("/tmp", temporaryFolder());
}

TEST(FoldersPosixTest, VariablesGiveTheFolderForApplicationData)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory there(scratch.path());
    const std::string base = scratch.path().string();
    const std::vector<std::array<Value, 3>> rows = {
        // configuration home, home, folder
        {base + "/x", base + "/h", base + "/x"},
        {base + "/x/", base + "/h", base + "/x/"},
        {base + "/x", std::nullopt, base + "/x"},
        {std::nullopt, base + "/h", base + "/h/.config"},
        {"", base + "/h", base + "/h/.config"},
        {"x", base + "/h", base + "/h/.config"},
        {"~/x", base + "/h", base + "/h/.config"},
        {"\\x", base + "/h", base + "/h/.config"},
        {std::nullopt, base + "/h/", base + "/h/.config"},
        {std::nullopt, "h", "h/.config"},
        {std::nullopt, "/proc/", "/proc/.config"},
        {std::nullopt, std::nullopt, std::nullopt},
        {std::nullopt, "", std::nullopt},
        {"", "", std::nullopt},
        {"x", std::nullopt, std::nullopt},
    };
    for (const auto& [configurationHome, home, folder] : rows) {
        EXPECT_EQ(folder, folderOf(configurationHome, home))
            << configurationHome.value_or("(none)") << ", " << home.value_or("(none)");
    }
}

TEST(FoldersPosixTest, MissingFolderIsMadeForTheUserAlone)
{
    const ScratchDirectory scratch;
    const mode_t before = ::umask(0);
    folderOf(scratch.path().string() + "/x//y/./z/", std::nullopt);
    ::umask(before);
    for (const char* name : {"x", "x/y", "x/y/z"}) {
        EXPECT_EQ(0700u, modeOf(scratch / name)) << name;
    }
}

TEST(FoldersPosixTest, UserMayMaskMore)
{
    const ScratchDirectory scratch;
    const mode_t before = ::umask(0277);
    folderOf((scratch / "x").string(), std::nullopt);
    ::umask(before);
    EXPECT_EQ(0500u, modeOf(scratch / "x"));
}

TEST(FoldersPosixTest, RelativeHomeIsTheWorkingDirectorys)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory there(scratch.path());
    folderOf(std::nullopt, "a/b");
    EXPECT_EQ(0700u, modeOf(scratch / "a"));
    EXPECT_EQ(0700u, modeOf(scratch / "a/b/.config"));
}

TEST(FoldersPosixTest, ExistingFolderIsLeftAsItIs)
{
    const ScratchDirectory scratch;
    std::filesystem::create_directory(scratch / "x");
    std::filesystem::permissions(scratch / "x", std::filesystem::perms{0751});
    EXPECT_EQ((scratch / "x").string(), folderOf((scratch / "x").string(), std::nullopt));
    EXPECT_EQ(0751u, modeOf(scratch / "x"));
    EXPECT_TRUE(std::filesystem::is_empty(scratch / "x"));
}

TEST(FoldersPosixTest, ExistingParentIsLeftAsItIs)
{
    const ScratchDirectory scratch;
    std::filesystem::create_directory(scratch / "x");
    std::filesystem::permissions(scratch / "x", std::filesystem::perms{0751});
    folderOf((scratch / "x/y/z").string(), std::nullopt);
    EXPECT_EQ(0751u, modeOf(scratch / "x"));
    EXPECT_EQ(0700u, modeOf(scratch / "x/y"));
    EXPECT_EQ(0700u, modeOf(scratch / "x/y/z"));
}

TEST(FoldersPosixTest, LinkToADirectoryIsFollowed)
{
    const ScratchDirectory scratch;
    std::filesystem::create_directory(scratch / "real");
    std::filesystem::create_symlink("real", scratch / "link");
    folderOf((scratch / "link/x").string(), std::nullopt);
    EXPECT_EQ(0700u, modeOf(scratch / "real/x"));
}

TEST(FoldersPosixTest, FolderThatCannotBeMadeIsNamedAllTheSame)
{
    const ScratchDirectory scratch;
    scratch.write("file", "x");
    std::filesystem::create_symlink("nowhere", scratch / "dangling");
    const std::string base = scratch.path().string();
    for (const std::string& folder :
         {base + "/file", base + "/file/x", base + "/dangling", base + "/dangling/x", std::string("/proc/kelvobase/x"),
          base + "/" + std::string(300, 'x'), base + "/" + std::string(5000, 'x') + "/y"}) {
        EXPECT_EQ(folder, folderOf(folder, std::nullopt));
    }
    EXPECT_EQ("x", KelvoBase::test::contentOf(scratch / "file"));
    EXPECT_FALSE(std::filesystem::exists(scratch / "nowhere"));
}

TEST(FoldersPosixTest, FolderTooLongForTheSystemMakesNoParents)
{
    const ScratchDirectory scratch;
    std::string folder = scratch.path().string();
    for (int i = 0; i < 30; ++i) {
        folder += "/" + std::string(200, 'x');
    }
    EXPECT_EQ(folder, folderOf(folder, std::nullopt));
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

TEST(FoldersPosixTest, UserWithoutTheRightMakesNothing)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to become another user";
    }
    const ScratchDirectory scratch;
    std::filesystem::permissions(scratch.path(), std::filesystem::perms{0755});
    const std::string folder = (scratch / "x/y").string();
    ASSERT_EQ(0, ::seteuid(65534));
    const Value found = folderOf(folder, std::nullopt);
    ASSERT_EQ(0, ::seteuid(0));
    EXPECT_EQ(folder, found);
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

TEST(FoldersPosixTest, TextThatIsAnotherLocationMakesNothing)
{
    const ScratchDirectory scratch;
    std::filesystem::create_directory(scratch / "d");
    const std::string base = scratch.path().string();
    for (const std::string& folder :
         {"/" + base + "/x", base + "/a\\b", base + "/a\"b", base + "/a:b", base + "/ab:c", base + "/d/../x",
          base + "/d/..", base + "/a\\..", base + "/ab:/../x", "/.." + base + "/x"}) {
        EXPECT_EQ(folder, folderOf(folder, std::nullopt));
        EXPECT_EQ(folder + "/.config", folderOf(std::nullopt, folder));
    }
    std::filesystem::remove(scratch / "d");
    EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

TEST(FoldersPosixTest, DotsThatAreNoStepAreNames)
{
    const ScratchDirectory scratch;
    for (const std::string name : {"..x", "x..", "...", "x..y"}) {
        folderOf((scratch / name).string(), std::nullopt);
        EXPECT_EQ(0700u, modeOf(scratch / name)) << name;
    }
}

} // namespace
