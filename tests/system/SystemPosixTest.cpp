#include "support/ChildProcess.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netdb.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>

namespace
{

using namespace KelvoBase;
using test::ScopedEnvironment;
using test::ScopedWorkingDirectory;
using test::ScratchDirectory;

test::ChildResult run(const std::string& tool, const std::vector<std::string>& steps)
{
    std::vector<std::string> command = {tool};
    command.insert(command.end(), steps.begin(), steps.end());
    return test::runChild(command, {{}, {"USERNAME", "COMPUTERNAME"}, "", ""});
}

TEST(SystemPosixTest, LastErrorIsErrnoAndIsCleared)
{
    errno = ENOENT;
    EXPECT_EQ(2u, System::lastError());
    EXPECT_EQ(0, errno);
    EXPECT_EQ(0u, System::lastError());
}

TEST(SystemPosixTest, LastErrorMessageIsTheTextOfErrno)
{
    errno = EACCES;
    EXPECT_EQ("Permission denied", System::lastErrorMessage());
    EXPECT_EQ("Success", System::lastErrorMessage());
}

TEST(SystemPosixTest, CodesWithoutTextHaveAFixedText)
{
    const std::vector<unsigned long> codes = {41,       58, 134, 4711, INT_MAX, INT_MAX + 1ul, UINT_MAX, UINT_MAX + 3ul,
                                              ULONG_MAX};
    for (const unsigned long code : codes) {
        EXPECT_EQ("No system error message", System::errorMsg(code)) << code;
    }
}

TEST(SystemPosixTest, WorkingDirectoryHasTheFormOfLocations)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory there(scratch.path());
    EXPECT_EQ(scratch.location(), System::instance().getCurrentWorkingDir());
}

TEST(SystemPosixTest, RemovedWorkingDirectoryThrows)
{
    const ScratchDirectory scratch;
    std::filesystem::create_directory(scratch / "gone");
    const ScopedWorkingDirectory there(scratch / "gone");
    std::filesystem::remove(scratch / "gone");
    EXPECT_EQ("getcwd()", test::textOf<OperationFailedException>([] { System::instance().getCurrentWorkingDir(); }));
}

TEST(SystemPosixTest, ProgramLocationIsThatOfTheProgram)
{
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    std::string expected = "C:" + program;
    std::replace(expected.begin(), expected.end(), '/', '\\');
    EXPECT_EQ(expected, System::instance().getExeImagePath().getFilePath('\\'));
}

/// What the tool says of its own location when it runs as a copy of that name.
std::string locationAs(const ScratchDirectory& scratch, const std::string& name)
{
    std::filesystem::create_directories((scratch / name).parent_path());
    std::filesystem::copy_file(SYSTEM_TOOL, scratch / name);
    return run((scratch / name).string(), {"exe"}).out;
}

TEST(SystemPosixTest, ProgramLocationMayBeLong)
{
    const ScratchDirectory scratch;
    const std::string part(100, 'x');
    const std::string name = part + "/" + part + "/" + part + "/" + part + "/" + part + "/tool";
    EXPECT_EQ(scratch.location(name) + "\n", locationAs(scratch, name));
}

TEST(SystemPosixTest, ProgramLocationMayHoldBlanksAndColons)
{
    const ScratchDirectory scratch;
    EXPECT_EQ(scratch.location("a b/cc:d/the tool") + "\n", locationAs(scratch, "a b/cc:d/the tool"));
}

TEST(SystemPosixTest, ProgramThatNoLocationCanHoldHasAnEmptyOne)
{
    const ScratchDirectory scratch;
    EXPECT_EQ("\n", locationAs(scratch, "quoted\"tool"));
    EXPECT_EQ("\n", locationAs(scratch, "back\\slash/tool"));
}

TEST(SystemPosixTest, ProgramLocationIsNotThatOfALink)
{
    const ScratchDirectory scratch;
    std::filesystem::copy_file(SYSTEM_TOOL, scratch / "tool");
    std::filesystem::create_symlink("tool", scratch / "link");
    EXPECT_EQ(scratch.location("tool") + "\n", run((scratch / "link").string(), {"exe"}).out);
}

TEST(SystemPosixTest, UserNameIsTheLoginName)
{
    const passwd* entry = getpwuid(getuid());
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(std::string(entry->pw_name) + "\n", run(SYSTEM_TOOL, {"user"}).out);
}

TEST(SystemPosixTest, AddressOfThisMachineItself)
{
    if (gethostbyname("localhost") == nullptr) {
        GTEST_SKIP() << "this system does not know itself by name";
    }
    const ScopedEnvironment host("COMPUTERNAME", "localhost");
    EXPECT_EQ("127.0.0.1\n", test::runChild({SYSTEM_TOOL, "iptext"}).out);
}

TEST(SystemPosixTest, HostNameIsTheSystems)
{
    std::array<char, 256> name{};
    ASSERT_EQ(0, gethostname(name.data(), name.size() - 1));
    EXPECT_EQ(std::string(name.data()) + "\n", run(SYSTEM_TOOL, {"host"}).out);
}

TEST(SystemPosixTest, AddressTextIsThatOfTheNumber)
{
    const ScopedEnvironment restored("COMPUTERNAME", "203.0.113.77");
    in_addr number{};
    number.s_addr = static_cast<in_addr_t>(System::instance().getIP());
    EXPECT_EQ("203.0.113.77", System::instance().getIPString());
    EXPECT_STREQ("203.0.113.77", inet_ntoa(number));
}

TEST(SystemPosixTest, OperatingSystemIsThatOfUname)
{
    utsname system{};
    ASSERT_EQ(0, uname(&system));
    std::string version = system.version;
    version.erase(0, version[0] == '#' ? 1 : 0);
    EXPECT_EQ(std::string(system.sysname) + " " + system.release + " Build #" + version, System::instance().getOS());
}

TEST(SystemPosixTest, HandlerStaysInstalledBehindASignal)
{
    System::instance().enableSignalHandling(true, System::sigterm);
    std::raise(SIGTERM);
    System::instance().signalReset();
    std::raise(SIGTERM);
    EXPECT_EQ(15, System::instance().signalReceived());
    System::instance().signalReset();
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

TEST(SystemPosixTest, SetEnvReachesChildren)
{
    System::setEnv("KELVOBASE_TEST_CHILD", "inherited");
    EXPECT_EQ("inherited\n", test::runChild({"printenv", "KELVOBASE_TEST_CHILD"}).out);
}

TEST(SystemPosixTest, SetEnvOfAnEmptyValueGivesTheEmptyText)
{
    System::setEnv("KELVOBASE_TEST_EMPTY", "");
    EXPECT_EQ("", System::getEnv("KELVOBASE_TEST_EMPTY", "default"));
}

TEST(SystemPosixTest, GetEnvOfEmptyVariableGivesTheEmptyText)
{
    const ScopedEnvironment empty("KELVOBASE_TEST_ENV", "");
    EXPECT_EQ("", System::getEnv("KELVOBASE_TEST_ENV", "default"));
}

TEST(SystemPosixTest, EnvironmentIsUsableWhileTheProcessEnds)
{
    EXPECT_EXIT(
        {
            std::atexit([] { _exit(System::getEnv("KELVOBASE_TEST_EXIT", "") == "kept" ? 0 : 1); });
            System::setEnv("KELVOBASE_TEST_EXIT", "kept");
            std::exit(2);
        },
        ::testing::ExitedWithCode(0), "");
}

} // namespace
