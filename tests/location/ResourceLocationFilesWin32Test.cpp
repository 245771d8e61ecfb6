#include "platform/win32/Win32.h"
#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>
#include <string>
#include <vector>

namespace KelvoBase
{

namespace
{

namespace fs = std::filesystem;
using test::contentOf;
using test::ScopedWorkingDirectory;
using test::textOf;
using test::TraceCapture;

class ResourceLocationFilesWin32Test : public testing::Test
{
protected:
    static void SetUpTestSuite() { TraceAreaMgr::startup(); }
    static void TearDownTestSuite() { TraceAreaMgr::teardown(); }

    ResourceLocation at(const std::string& name) const { return ResourceLocation(text(name)); }
    std::string text(const std::string& name) const { return mScratch.location(name); }
    fs::path native(const std::string& name) const { return mScratch / name; }
    void setAttributes(const std::string& name, DWORD attributes) const
    {
        ASSERT_TRUE(::SetFileAttributesA(text(name).c_str(), attributes));
    }
    /// The scratch directory by way of the network; empty if its drive is not shared.
    std::string onShare() const
    {
        const std::string path = R"(\\localhost\)" + text("").substr(0, 1) + "$" + text("").substr(2);
        return ::GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES ? "" : path;
    }

    test::ScratchDirectory mScratch;
};

std::vector<std::string> namesOf(const std::vector<ResourceLocation>& locations)
{
    std::vector<std::string> names;
    for (const ResourceLocation& location : locations) {
        names.push_back(location.lastComponent());
    }
    std::ranges::sort(names);
    return names;
}

/// Roots of drives that can be read.
std::vector<std::string> drives()
{
    std::vector<std::string> found;
    for (char letter = 'C'; letter <= 'Z'; ++letter) {
        if (::GetFileAttributesA(std::string{letter, ':', '\\'}.c_str()) != INVALID_FILE_ATTRIBUTES) {
            found.push_back({letter, ':'});
        }
    }
    return found;
}

} // namespace

TEST_F(ResourceLocationFilesWin32Test, EveryDriveIsADirectoryAndListsItsRoot)
{
    const ScopedWorkingDirectory here(mScratch.path());
    for (const std::string& drive : drives()) {
        for (const std::string& spelling : {drive, drive + "\\", drive + "/", "file:///" + drive + "/"}) {
            EXPECT_TRUE(ResourceLocation(spelling).isDir()) << spelling;
            EXPECT_EQ(drive, ResourceLocation(spelling).getFilePath('\\')) << spelling;
        }
        for (const ResourceLocation& entry : ResourceLocation(drive).getDirList(false)) {
            EXPECT_TRUE(entry.getFilePath('\\').starts_with(drive + "\\"));
        }
    }
    mScratch.write("f", "x");
    const std::vector<std::string> names = namesOf(ResourceLocation("/").getDirList(false));
    EXPECT_NE(std::vector<std::string>{"f"}, names) << "these are the root's";
}

TEST_F(ResourceLocationFilesWin32Test, AbsoluteFormOfARelativeLocationFindsItsFileOnItsDrive)
{
    mScratch.write("d/f", "x");
    const ScopedWorkingDirectory here(native("d"));
    EXPECT_EQ(text("d/f"), ResourceLocation("f").toAbsolute().getFilePath('\\'));
    EXPECT_TRUE(ResourceLocation("f").toAbsolute().isFile());
    for (const std::string& drive : drives()) {
        const ScopedWorkingDirectory elsewhere(drive + "\\");
        EXPECT_EQ(drive + "\\f", ResourceLocation("f").toAbsolute().getFilePath('\\'));
    }
}

TEST_F(ResourceLocationFilesWin32Test, SeparatorsAndCaseMakeNoDifferenceToTheSystem)
{
    mScratch.write("Dir/File.txt", "x");
    for (const char* name : {"\\dir\\FILE.TXT", "/Dir/File.txt", "/./Dir//../dir\\file.TXT"}) {
        EXPECT_TRUE(ResourceLocation(text("") + name).isFile()) << name;
    }
    EXPECT_FALSE(at("Dir") == at("dir")) << "but to locations";
}

TEST_F(ResourceLocationFilesWin32Test, NetworkLocationsReachTheirPlace)
{
    if (onShare().empty()) {
        GTEST_SKIP() << "the drive is not shared";
    }
    mScratch.write("d/f", "1234");
    const ResourceLocation file(onShare() + "\\d\\f");
    EXPECT_EQ("smb", file.getProtocol());
    EXPECT_TRUE(file.isFile());
    EXPECT_EQ(4u, file.size());
    file.copy(ResourceLocation(onShare() + "\\g"));
    EXPECT_EQ("1234", contentOf(native("g")));
    file.move(at("h"));
    EXPECT_EQ("1234", contentOf(native("h")));
    EXPECT_EQ((std::vector<std::string>{"d", "g", "h"}), namesOf(ResourceLocation(onShare()).getDirList(false)));
    ResourceLocation(onShare() + "\\g").remove();
    EXPECT_FALSE(fs::exists(native("g")));
}

TEST_F(ResourceLocationFilesWin32Test, NetworkLocationsWithoutAPlaceAreMissing)
{
    for (const char* path : {R"(\\kelvobase.invalid\share\x)", "smb:///share/x", R"(\\\x)", "smb:x"}) {
        const ResourceLocation location(path);
        EXPECT_FALSE(location.isExistent()) << path;
        EXPECT_NO_THROW(location.remove()) << path;
        EXPECT_TRUE(location.getDirList(false).empty()) << path;
        EXPECT_THROW(location.size(), FileNotReadableException) << path;
    }
}

TEST_F(ResourceLocationFilesWin32Test, ServersCannotBeMade)
{
    const ResourceLocation location(R"(\\no*server\share\x)");
    const std::string head = R"(creating directory "\\no*server\share\x" failed : )";
    EXPECT_EQ(head, textOf<IOFailedException>([&] { location.createDir(); }).substr(0, head.size()));
}

TEST_F(ResourceLocationFilesWin32Test, RefusalsGiveTheSystemsText)
{
    mScratch.write("d/f", "x");
    mScratch.write("g", "x");
    EXPECT_EQ("Could not remove '" + at("d").str() + "': " + System::errorMsg(145),
              textOf<IOException>([&] { at("d").remove(); }));
    EXPECT_EQ("moving file \"" + text("g") + "\" to \"" + text("d/f") + "\" failed : " + System::errorMsg(183),
              textOf<IOFailedException>([&] { at("g").move(at("d/f")); }));
    EXPECT_EQ("Cannot read from file \"" + at("d").str() + "\" : Invalid file handle! " + System::errorMsg(5),
              textOf<FileNotReadableException>([&] { at("d").size(); }));
    EXPECT_EQ("Cannot read from file \"" + at("x").str() + "\" : Invalid file handle! " + System::errorMsg(2),
              textOf<FileNotReadableException>([&] { at("x").size(); }));
    const std::string below = "creating directory \"" + text("g/x/y") + "\" failed : ";
    EXPECT_EQ(below, textOf<IOFailedException>([&] { at("g/x/y").createDir(); }).substr(0, below.size()));
}

TEST_F(ResourceLocationFilesWin32Test, ReadOnlyFileIsRefusedWithTheSystemsText)
{
    mScratch.write("f", "x");
    setAttributes("f", FILE_ATTRIBUTE_READONLY);
    const TraceCapture trace(Trace::verbose);
    EXPECT_FALSE(at("f").isWritable(false));
    EXPECT_EQ("|------ Cannot write to \"" + at("f").str() + "\": " + System::errorMsg(5) + "\n", trace.text());
    EXPECT_EQ("Could not remove '" + at("f").str() + "': " + System::errorMsg(5),
              textOf<IOException>([&] { at("f").remove(); }));
    EXPECT_EQ("Copying \"" + text("f") + "\" to \"" + text("f") + "\" failed : copy operation failed",
              textOf<IOFailedException>([&] { at("f").copy(at("f")); }));
    setAttributes("f", FILE_ATTRIBUTE_NORMAL);
}

TEST_F(ResourceLocationFilesWin32Test, CopyOntoAnotherSpellingOfTheSameFileKeepsItsContent)
{
    mScratch.write("d/file", "content");
    for (const std::string& spelling : {text("d/FILE"), text("D"), text("d/./file")}) {
        EXPECT_EQ("Copying \"" + text("d/file") + "\" to \"" + ResourceLocation(spelling).getFilePath('\\') +
                      "\" failed : copy operation failed",
                  textOf<IOFailedException>([&] { at("d/file").copy(ResourceLocation(spelling)); }));
        EXPECT_EQ("content", contentOf(native("d/file")));
    }
}

TEST_F(ResourceLocationFilesWin32Test, CopyOfAFileThatSomebodyHasForHimselfFails)
{
    mScratch.write("f", "content");
    const platform::win32::Owned<&::CloseHandle> file(
        ::CreateFileA(text("f").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(file);
    for (const char* name : {"new", "f"}) {
        EXPECT_EQ("Copying \"" + text("f") + "\" to \"" + text(name) + "\" failed : could not open source file",
                  textOf<IOFailedException>([&] { at("f").copy(at(name)); }));
    }
    EXPECT_FALSE(fs::exists(native("new")));
}

TEST_F(ResourceLocationFilesWin32Test, NamesOfTheCodePageAreListedAndReached)
{
    const std::string name = "\xE4\xF6 \xDF.txt";
    wchar_t wide[16];
    if (::GetACP() == CP_UTF8 || ::MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, name.c_str(), -1, wide, 16) == 0) {
        GTEST_SKIP() << "the code page " << ::GetACP() << " has no such letters";
    }
    mScratch.write("plain", "content");
    at("plain").copy(ResourceLocation(text("") + "\\" + name));
    at("plain").remove();
    const std::vector<ResourceLocation> entries = at("").getDirList(false);
    ASSERT_EQ(1u, entries.size());
    EXPECT_EQ(name, entries[0].lastComponent());
    EXPECT_EQ(7u, entries[0].size());
    EXPECT_EQ(1u, getFilesRecursively(at("")).size());
    entries[0].remove();
    EXPECT_TRUE(fs::is_empty(mScratch.path()));
}

TEST_F(ResourceLocationFilesWin32Test, NamesBeyondTheCodePageAreListedButNoFiles)
{
    if (::GetACP() == CP_UTF8) {
        GTEST_SKIP() << "every name is in the code page";
    }
    mScratch.write("plain", "x");
    const std::wstring path = native("plain").parent_path().wstring() + L"\\\x4E2D\x6587.txt";
    const platform::win32::Owned<&::CloseHandle> file(
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    ASSERT_TRUE(file);
    EXPECT_EQ((std::vector<std::string>{"??.txt", "plain"}), namesOf(at("").getDirList(false)));
    const TraceCapture trace(Trace::fail);
    EXPECT_EQ(std::vector<std::string>{"plain"}, namesOf(getFilesRecursively(at(""))));
    EXPECT_EQ("|-- What is this: \"" + at("").str() + "\\??.txt\" ?\n", trace.text());
}

/// A new file whose name is taken as it stands; gone with the handle.
HANDLE makeFile(const fs::path& folder, const wchar_t* name)
{
    const std::wstring path = LR"(\\?\)" + folder.wstring() + L"\\" + name;
    return ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
}

TEST_F(ResourceLocationFilesWin32Test, NamesThatNoOtherCallFindsAreNoFiles)
{
    for (const wchar_t* name : {L"point.", L"blank "}) {
        const platform::win32::Owned<&::CloseHandle> file(makeFile(native("x").parent_path(), name));
        ASSERT_TRUE(file);
        const std::string listed(name, name + std::wcslen(name));
        EXPECT_EQ(std::vector<std::string>{listed}, namesOf(at("").getDirList(false)));
        const TraceCapture trace(Trace::fail);
        EXPECT_TRUE(getFilesRecursively(at("")).empty());
        EXPECT_EQ("|-- What is this: \"" + at("").str() + "\\" + listed + "\" ?\n", trace.text());
    }
}

TEST_F(ResourceLocationFilesWin32Test, NameWithALetterThatIsOnlySimilarIsNoFile)
{
    char similar[8] = "";
    if (::WideCharToMultiByte(CP_ACP, 0, L"\x0101", -1, similar, sizeof similar, nullptr, nullptr) == 0 ||
        std::string(similar) != "a") {
        GTEST_SKIP() << "the code page " << ::GetACP() << " has the letter, or none that is similar";
    }
    const platform::win32::Owned<&::CloseHandle> file(makeFile(native("x").parent_path(), L"\x0101.txt"));
    ASSERT_TRUE(file);
    EXPECT_EQ(std::vector<std::string>{"a.txt"}, namesOf(at("").getDirList(false)));
    const TraceCapture trace(Trace::fail);
    EXPECT_TRUE(getFilesRecursively(at("")).empty());
    EXPECT_EQ("|-- What is this: \"" + at("").str() + "\\a.txt\" ?\n", trace.text());
}

TEST_F(ResourceLocationFilesWin32Test, PathsBeyondTheLimitOfTheSystemAreMissing)
{
    ResourceLocation location = at("");
    for (int i = 0; i < 4; ++i) {
        location.append(std::string(100, 'n'));
    }
    EXPECT_FALSE(location.isExistent());
    EXPECT_THROW(location.size(), FileNotReadableException);
    EXPECT_THROW(location.createDir(), IOFailedException);
}

TEST_F(ResourceLocationFilesWin32Test, DirectoriesAreMadeOneByOne)
{
    ResourceLocation(text("") + "/a\\b/c").createDir();
    EXPECT_TRUE(fs::is_directory(native("a/b/c")));
    const ScopedWorkingDirectory here(mScratch.path());
    ResourceLocation(text("").substr(2) + "/x/y").createDir(); // on the current drive
    EXPECT_TRUE(fs::is_directory(native("x/y")));
}

} // namespace KelvoBase
