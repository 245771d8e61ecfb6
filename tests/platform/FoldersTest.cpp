#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace KelvoBase::platform
{

TEST(FoldersTest, FolderForApplicationDataIsThereWhenItWasAskedFor)
{
    const std::optional<std::string> folder = userFolder(Folder::applicationData);
    ASSERT_TRUE(folder);
    EXPECT_TRUE(std::filesystem::is_directory(*folder)) << *folder;
    EXPECT_EQ(folder, userFolder(Folder::applicationData));
}

TEST(FoldersTest, TemporaryFolderIsAbsolute)
{
    EXPECT_TRUE(std::filesystem::path(temporaryFolder()).is_absolute()) << temporaryFolder();
}

} // namespace KelvoBase::platform
