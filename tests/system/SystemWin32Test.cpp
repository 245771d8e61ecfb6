#include "platform/win32/Win32.h"
#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

namespace
{

using namespace KelvoBase;
using test::ScopedEnvironment;

/// What a fresh process prints for the steps, without the variables of user and host.
std::string answers(const std::vector<std::string>& steps, const std::string& directory = "")
{
    std::vector<std::string> command = {SYSTEM_TOOL};
    command.insert(command.end(), steps.begin(), steps.end());
    const test::ChildResult result = test::runChild(command, {{}, {"USERNAME", "COMPUTERNAME"}, directory, ""});
    EXPECT_EQ(0, result.status);
    EXPECT_EQ("", result.err);
    return result.out;
}

TEST(SystemWin32Test, LastErrorIsTheSystemsAndIsCleared)
{
    ::SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_EQ(5u, System::lastError());
    EXPECT_EQ(0u, ::GetLastError());
    EXPECT_EQ(0u, System::lastError());
}

TEST(SystemWin32Test, LastErrorMessageIsTheSystemsTextAndClearsTheError)
{
    ::SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_EQ(System::errorMsg(5), System::lastErrorMessage());
    EXPECT_EQ(System::errorMsg(0), System::lastErrorMessage());
    EXPECT_NE(System::errorMsg(0), System::errorMsg(5));
}

TEST(SystemWin32Test, CodesWithoutTextHaveAFixedText)
{
    for (const unsigned long code : {0x2FFFFFFFul, 0xFFFFFFFFul}) {
        EXPECT_EQ("No system error message", System::errorMsg(code)) << code;
    }
}

TEST(SystemWin32Test, ProgramLocationIsThatOfTheModule)
{
    char path[MAX_PATH] = "";
    ASSERT_LT(0u, ::GetModuleFileNameA(nullptr, path, MAX_PATH));
    EXPECT_EQ(path, System::instance().getExeImagePath().getFilePath('\\'));
}

TEST(SystemWin32Test, WithoutTheVariableTheUserIsTheOneOfTheLogin)
{
    char name[256] = "";
    DWORD size = 256;
    ASSERT_TRUE(::GetUserNameA(name, &size));
    EXPECT_EQ(name + std::string("\n"), answers({"user"}));
}

TEST(SystemWin32Test, WithoutTheVariableTheHostIsTheOneOfTheNetwork)
{
    System::instance(); // starts the network
    char name[256] = "";
    ASSERT_EQ(0, ::gethostname(name, sizeof name));
    EXPECT_EQ(name + std::string("\n"), answers({"host"}));
}

TEST(SystemWin32Test, EmptyVariablesAreNotThere)
{
    // This system has no empty variables: assigning the empty text removes one.
    System::setEnv("KELVOBASE_TEST_EMPTY", "x");
    System::setEnv("KELVOBASE_TEST_EMPTY", "");
    EXPECT_EQ("default", System::getEnv("KELVOBASE_TEST_EMPTY", "default"));
}

TEST(SystemWin32Test, NamesOfVariablesHaveNoCase)
{
    const ScopedEnvironment set("KELVOBASE_TEST_CASE", "value");
    EXPECT_EQ("value", System::getEnv("kelvobase_test_case", "default"));
}

TEST(SystemWin32Test, SetEnvReachesChildren)
{
    System::setEnv("USERNAME", "inherited");
    EXPECT_EQ("inherited\n", test::runChild({SYSTEM_TOOL, "user"}).out);
}

TEST(SystemWin32Test, RootIsTheDriveOfTheWorkingDirectory)
{
    unsigned int drives = 0;
    for (char letter = 'C'; letter <= 'Z'; ++letter) {
        const std::string drive{letter, ':'};
        if (::GetFileAttributesA((drive + "\\").c_str()) != INVALID_FILE_ATTRIBUTES) {
            EXPECT_EQ(drive + "\n", answers({"root"}, drive + "\\"));
            ++drives;
        }
    }
    EXPECT_LT(0u, drives);
}

TEST(SystemWin32Test, OperatingSystemIsThatOfTheVersionRecord)
{
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    ASSERT_TRUE(::GetVersionExA(&version));
    const std::string numbers = std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion);
    const std::string pack = *version.szCSDVersion == '\0' ? "" : std::string(" ") + version.szCSDVersion;
    const std::string& os = System::instance().getOS();
    EXPECT_EQ(0u, os.find("Windows ")) << os;
    EXPECT_TRUE(os.ends_with(numbers + pack + " Build #" + std::to_string(version.dwBuildNumber))) << os;
}

TEST(SystemWin32Test, HandlerIsGoneBehindItsSignal)
{
    System& system = System::instance();
    system.enableSignalHandling(true, System::sigterm);
    std::raise(SIGTERM);
    EXPECT_EQ(15, system.signalReceived());
    system.signalReset();
    EXPECT_EQ(SIG_DFL, std::signal(SIGTERM, SIG_DFL));
    system.enableSignalHandling(true, 1);
    std::raise(SIGTERM);
    EXPECT_EQ(15, system.signalReceived());
    system.signalReset();
    std::signal(SIGINT, SIG_DFL);
}

} // namespace
