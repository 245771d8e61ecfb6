#include "platform/Platform.h"
#include "platform/win32/Win32.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include <cstdlib>

namespace KelvoBase::platform
{

TEST(FoldersWin32Test, FoldersAreThoseOfTheShell)
{
    const std::pair<Folder, int> rows[] = {{Folder::documents, CSIDL_PERSONAL},
                                           {Folder::applicationData, CSIDL_APPDATA}};
    for (const auto& [folder, number] : rows) {
        char path[MAX_PATH] = "";
        ASSERT_EQ(S_OK, ::SHGetFolderPathA(nullptr, number | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, path))
            << number;
        EXPECT_EQ(path, userFolder(folder).value_or("(none)"));
        EXPECT_EQ(EntryKind::directory, entryKind(path)) << path;
    }
}

TEST(FoldersWin32Test, FoldersAreNotThoseOfTheEnvironment)
{
    const std::optional<std::string> before = userFolder(Folder::documents);
    ::_putenv("HOMEPATH=\\kelvobase");
    ::_putenv("HOME=\\kelvobase");
    EXPECT_EQ(before, userFolder(Folder::documents));
}

TEST(FoldersWin32Test, TemporaryFolderIsFixed)
{
    EXPECT_STREQ("C:\\windows\\temp", temporaryFolder());
}

} // namespace KelvoBase::platform
