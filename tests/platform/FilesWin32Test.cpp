#include "platform/Platform.h"
#include "platform/win32/Win32.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <winioctl.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace KelvoBase::platform
{

namespace
{

namespace fs = std::filesystem;
using test::contentOf;
using File = win32::Owned<&::CloseHandle>;

class FilesWin32Test : public testing::Test
{
protected:
    void SetUp() override { takeLastError(); }

    std::string at(const std::string& name) const { return mScratch.location(name); }
    fs::path native(const std::string& name) const { return mScratch / name; }

    /// The names of the directory, in order, that do not begin with a dot.
    std::vector<DirectoryEntry> entries() const
    {
        std::vector<DirectoryEntry> found;
        EXPECT_TRUE(listDirectory(at(""), found));
        std::erase_if(found, [](const DirectoryEntry& entry) { return entry.name.starts_with('.'); });
        std::ranges::sort(found, {}, &DirectoryEntry::name);
        return found;
    }

    test::ScratchDirectory mScratch;
};

/// Lets everybody in, or nobody, while it is open.
HANDLE opened(const std::string& path, DWORD sharing)
{
    return ::CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, sharing, nullptr, OPEN_ALWAYS, 0, nullptr);
}

} // namespace

TEST_F(FilesWin32Test, BothSeparatorsAndAnyCaseNameAFile)
{
    mScratch.write("Dir/File.txt", "12");
    for (const char* name :
         {R"(\Dir\File.txt)", "/Dir/File.txt", R"(\dir/FILE.TXT)", R"(\Dir\\File.txt)", R"(\Dir\.\..\Dir\File.txt)"}) {
        EXPECT_EQ(EntryKind::file, entryKind(at("") + name)) << name;
        EXPECT_EQ(2u, fileSize(at("") + name)) << name;
        EXPECT_TRUE(isSameFile(at("Dir/File.txt"), at("") + name)) << name;
    }
}

TEST_F(FilesWin32Test, DriveAloneIsNotTheDirectoryWhereTheProcessStandsOnIt)
{
    mScratch.write("f", "x");
    const test::ScopedWorkingDirectory there(mScratch.path());
    const std::string drive = at("").substr(0, 2);
    EXPECT_EQ(EntryKind::directory, entryKind(drive));
    EXPECT_FALSE(removeDirectory(drive));
    EXPECT_EQ(EntryKind::file, entryKind(at("f")));
    EXPECT_EQ(EntryKind::file, entryKind(drive + "f")) << "but this is below that directory";
}

TEST_F(FilesWin32Test, DriveThatIsNotThereIsMissing)
{
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const std::string drive{letter, ':'};
        if ((::GetLogicalDrives() >> (letter - 'A') & 1) == 0) {
            EXPECT_EQ(EntryKind::missing, entryKind(drive));
            EXPECT_EQ(EntryKind::missing, entryKind(drive + "\\x"));
            EXPECT_FALSE(makeDirectory(drive + "\\x"));
            EXPECT_NE(0u, takeLastError());
            return;
        }
    }
    GTEST_SKIP() << "every drive is there";
}

TEST_F(FilesWin32Test, NetworkPathsWithoutAPlaceAreMissing)
{
    for (const char* path : {R"(\\kelvobase.invalid\share\x)", R"(\\\x)", R"(\\\share\x)"}) {
        EXPECT_EQ(EntryKind::missing, entryKind(path)) << path;
        EXPECT_FALSE(fileSize(path)) << path;
        EXPECT_NE(0u, takeLastError()) << path;
    }
}

TEST_F(FilesWin32Test, NetworkPathNamesAPlaceOnItsServer)
{
    if (::GetFileAttributesA(R"(\\localhost\C$)") == INVALID_FILE_ATTRIBUTES || !at("").starts_with("C:\\")) {
        GTEST_SKIP() << "the drive is not shared";
    }
    mScratch.write("f", "123");
    const std::string path = R"(\\localhost\C$)" + at("f").substr(2);
    EXPECT_EQ(EntryKind::file, entryKind(path));
    EXPECT_EQ(3u, fileSize(path));
    EXPECT_TRUE(makeDirectory(path + ".d"));
    EXPECT_TRUE(fs::is_directory(native("f.d")));
    EXPECT_TRUE(removeFile(path));
    EXPECT_FALSE(fs::exists(native("f")));
}

TEST_F(FilesWin32Test, ReadOnlyFileIsNotWritableAndSaysWhy)
{
    mScratch.write("f", "x");
    ASSERT_TRUE(::SetFileAttributesA(at("f").c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_FALSE(isWritable(at("f")));
    EXPECT_EQ(static_cast<unsigned long>(ERROR_ACCESS_DENIED), takeLastError());
    ::SetFileAttributesA(at("f").c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_TRUE(isWritable(at("f")));
    EXPECT_FALSE(isWritable(at("missing")));
    EXPECT_EQ(static_cast<unsigned long>(ERROR_FILE_NOT_FOUND), takeLastError());
}

TEST_F(FilesWin32Test, RefusalsLeaveTheSystemsCode)
{
    mScratch.write("d/f", "x");
    const auto code = [](bool success) { return success ? 0 : takeLastError(); };
    EXPECT_EQ(2u, code(removeFile(at("missing"))));
    EXPECT_EQ(3u, code(removeFile(at("missing/f"))));
    EXPECT_EQ(5u, code(removeFile(at("d"))));
    EXPECT_EQ(145u, code(removeDirectory(at("d"))));
    EXPECT_EQ(267u, code(removeDirectory(at("d/f"))));
    EXPECT_EQ(183u, code(makeDirectory(at("d"))));
    EXPECT_EQ(3u, code(makeDirectory(at("x/y"))));
    EXPECT_EQ(183u, code(moveFile(at("d/f"), at("d"))));
    EXPECT_EQ(2u, code(moveFile(at("missing"), at("x"))));
    EXPECT_EQ(2u, code(fileSize(at("missing")).has_value()));
    EXPECT_EQ(5u, code(fileSize(at("d")).has_value()));
    EXPECT_EQ("x", contentOf(native("d/f")));
}

TEST_F(FilesWin32Test, FileThatSomebodyWritesHasNoSize)
{
    for (const DWORD sharing : {0, FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_WRITE}) {
        const File open(opened(at("f"), sharing));
        ASSERT_TRUE(open);
        EXPECT_FALSE(fileSize(at("f")));
        EXPECT_EQ(static_cast<unsigned long>(ERROR_SHARING_VIOLATION), takeLastError());
    }
    EXPECT_EQ(0u, fileSize(at("f")));
}

TEST_F(FilesWin32Test, HalvesOfASizeAreJoined)
{
    for (const long long size : {0xFFFFFFFFll, 0x100000000ll, 0x1FFFFFFFFll, 0x2'80000001ll}) {
        {
            const File open(opened(at("f"), 0));
            ASSERT_TRUE(open);
            DWORD count = 0;
            ::DeviceIoControl(open.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &count, nullptr);
            LARGE_INTEGER end{};
            end.QuadPart = size;
            if (!::SetFilePointerEx(open.get(), end, nullptr, FILE_BEGIN) || !::SetEndOfFile(open.get())) {
                GTEST_SKIP() << "this file system has no room for such a file";
            }
        }
        EXPECT_EQ(static_cast<unsigned long long>(size), fileSize(at("f")));
    }
}

TEST_F(FilesWin32Test, NamesOfTheCodePageComeBackAsTheyWere)
{
    const std::string name = "\xE4\xF6 \xDF.txt";
    wchar_t wide[16];
    if (::GetACP() == CP_UTF8 || ::MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, name.c_str(), -1, wide, 16) == 0) {
        GTEST_SKIP() << "the code page " << ::GetACP() << " has no such letters";
    }
    ASSERT_TRUE(makeDirectory(at("") + "\\" + name));
    ASSERT_EQ(1u, entries().size());
    EXPECT_EQ(name, entries()[0].name);
    EXPECT_EQ(EntryKind::directory, entryKind(at("") + "\\" + entries()[0].name));
    EXPECT_TRUE(removeDirectory(at("") + "\\" + name));
    EXPECT_TRUE(entries().empty());
}

TEST_F(FilesWin32Test, NameBeyondTheCodePageIsListedAndCannotBeReached)
{
    if (::GetACP() == CP_UTF8) {
        GTEST_SKIP() << "every name is in the code page";
    }
    const std::wstring path = native("x").parent_path().wstring() + L"\\\x4E2D\x6587.txt";
    const File file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    ASSERT_TRUE(file);
    const std::vector<DirectoryEntry> found = entries();
    ASSERT_EQ(1u, found.size());
    EXPECT_EQ("??.txt", found[0].name);
    EXPECT_EQ(std::nullopt, found[0].kind);
    EXPECT_EQ(EntryKind::missing, entryKind(at("") + "\\" + found[0].name));
}

// The names that a directory gives are not always those by which its entries are found.
TEST_F(FilesWin32Test, DirectoryTellsNoKinds)
{
    mScratch.write("f", "x");
    mScratch.write("d/f", "x");
    ASSERT_EQ(2u, entries().size());
    for (const DirectoryEntry& entry : entries()) {
        EXPECT_EQ(std::nullopt, entry.kind) << entry.name;
    }
}

TEST_F(FilesWin32Test, DevicesAreFiles)
{
    EXPECT_EQ(EntryKind::file, entryKind("NUL"));
}

TEST_F(FilesWin32Test, PathTooLongForTheSystemIsMissing)
{
    std::string path = at("");
    for (int i = 0; i < 4; ++i) {
        path += "\\" + std::string(100, 'n');
    }
    EXPECT_EQ(EntryKind::missing, entryKind(path));
    EXPECT_FALSE(makeDirectory(path));
    EXPECT_NE(0u, takeLastError());
    EXPECT_FALSE(fileSize(path));
    EXPECT_NE(0u, takeLastError());
}

TEST_F(FilesWin32Test, HiddenNamesAreListed)
{
    mScratch.write("f", "x");
    ASSERT_TRUE(::SetFileAttributesA(at("f").c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
    ASSERT_EQ(1u, entries().size());
    EXPECT_EQ("f", entries()[0].name);
}

} // namespace KelvoBase::platform
