#include "platform/win32/Win32.h"
#include "support/Scratch.h"
#include "system/DirectoriesRun.h"

#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <shlobj.h>

#include <filesystem>

namespace
{

using namespace KelvoBase;
using test::Environment;
using test::lines;
using test::Steps;

class DirectoriesWin32Test : public ::testing::Test
{
protected:
    DirectoriesWin32Test() { std::filesystem::create_directory(scratch / "work"); }

    std::string at(const std::string& name) const { return scratch.location(name); }
    std::string run(const Steps& steps, const Environment& environment = {}) const
    {
        return test::answersOf(DIRECTORIES_TOOL, steps, environment, at("work"));
    }
    /// What a copy of the tool in that directory answers.
    std::string runIn(const std::string& directory, const Steps& steps, const Environment& environment = {}) const
    {
        std::filesystem::create_directories(scratch / directory);
        const std::filesystem::path tool = scratch / (directory + "/tool.exe");
        std::filesystem::copy_file(DIRECTORIES_TOOL, tool, std::filesystem::copy_options::skip_existing);
        return test::answersOf(tool.string(), steps, environment, at("work"));
    }

    test::ScratchDirectory scratch;
};

std::string shellFolder(int number)
{
    char path[MAX_PATH] = "";
    EXPECT_EQ(S_OK, ::SHGetFolderPathA(nullptr, number | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, path));
    return path;
}

TEST_F(DirectoriesWin32Test, InstalledProgramFindsItsInstallation)
{
    EXPECT_EQ(lines({at("pack") + ";" + at("work"), at("pack/bin"), at("pack/bin")}),
              runIn("pack/bin", {"dirs", "bin", "dll"}));
}

TEST_F(DirectoriesWin32Test, NameOfTheProgramsDirectoryDecides)
{
    for (const std::string name : {"bin64", "binaries"}) {
        EXPECT_EQ(lines({at("pack/" + name), at("pack/bin"), at("pack") + ";" + at("work")}),
                  runIn("pack/" + name, {"bin", "dll", "dirs"}));
    }
    EXPECT_FALSE(std::filesystem::exists(scratch / "pack/bin"));
    for (const std::string name : {"tools", "sbin", "Bin"}) {
        EXPECT_EQ(lines({"", "", at("work")}), runIn("pack/" + name, {"bin", "dll", "dirs"}));
    }
}

TEST_F(DirectoriesWin32Test, InstallationStandsBehindTheVariables)
{
    std::filesystem::create_directory(scratch / "a");
    EXPECT_EQ(lines({at("a") + ";" + at("pack") + ";" + at("work")}),
              runIn("pack/bin", {"dirs"}, {{"DRAVO2_INSTDIR", at("a")}}));
}

TEST_F(DirectoriesWin32Test, VariablesMayHaveSlashesAndDrives)
{
    const std::string slashes = ResourceLocation::toCanonizedForm(at("work"));
    EXPECT_EQ(lines({at("work")}), run({"dirs"}, {{"DRAVO2_BASEDIR", slashes}}));
    std::string otherCase = at("work");
    otherCase[0] = static_cast<char>(otherCase[0] + ('a' - 'A'));
    EXPECT_EQ(lines({otherCase + ";" + at("work")}), run({"dirs"}, {{"DRAVO2_BASEDIR", otherCase}}))
        << "locations are compared byte by byte";
}

TEST_F(DirectoriesWin32Test, NetworkPathThatNamesADirectoryIsTaken)
{
    const std::string share = R"(\\localhost\C$)" + at("work").substr(2);
    if (::GetFileAttributesA(share.c_str()) == INVALID_FILE_ATTRIBUTES) {
        GTEST_SKIP() << share << " is not there";
    }
    EXPECT_EQ(lines({share + ";" + at("work")}), run({"dirs"}, {{"DRAVO2_BASEDIR", share}}));
}

TEST_F(DirectoriesWin32Test, DocumentsFolderIsTheHomeWhateverTheVariablesSay)
{
    const Environment environment = {
        {"HOME", at("work")}, {"HOMEDRIVE", at("work").substr(0, 2)}, {"HOMEPATH", at("work").substr(2)}};
    EXPECT_EQ(lines({shellFolder(CSIDL_PERSONAL)}), run({"home"}, environment));
    EXPECT_EQ(lines({shellFolder(CSIDL_PERSONAL)}), run({"home"}));
}

TEST_F(DirectoriesWin32Test, ApplicationDataFolderHoldsTheUserDirectory)
{
    const std::string folder = shellFolder(CSIDL_APPDATA);
    EXPECT_EQ(lines({folder, folder + "\\dravo2"}), run({"appdata", "user|create"}, {{"HOME", at("work")}}));
    EXPECT_TRUE(std::filesystem::is_directory(folder + "\\dravo2"));
}

TEST_F(DirectoriesWin32Test, TempFileFallsBackOnTheSystemsFolder)
{
    const test::ScopedEnvironment tmp("TMP", at("missing"));
    EXPECT_EQ("C:\\windows\\temp", System::instance().tempFile(".tmp", "x").removeFileName().getFilePath('\\'));
}

} // namespace
