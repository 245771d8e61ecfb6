#include "support/Capture.h"
#include "support/ChildProcess.h"
#include "support/FakePlatform.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <new>

namespace
{

using namespace KelvoBase;
using test::FakeSystem;

/// What a fresh process does that meets the faults and steps in turn.
test::ChildResult run(const std::vector<std::string>& steps,
                      const std::vector<std::pair<std::string, std::string>>& environment = {})
{
    std::vector<std::string> command = {SYSTEM_FAULTS_TOOL};
    command.insert(command.end(), steps.begin(), steps.end());
    std::vector<std::string> unset = {"USERNAME", "COMPUTERNAME"};
    return test::runChild(command, {environment, unset, "", ""});
}

void expectRun(const std::vector<std::string>& steps, int status, const std::string& out, const std::string& err)
{
    const test::ChildResult result = run(steps);
    EXPECT_EQ(status, result.status);
    EXPECT_EQ(out, result.out);
    EXPECT_EQ(err, result.err);
}

std::uint32_t address(std::array<unsigned char, 4> bytes)
{
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data(), bytes.size());
    return number;
}

TEST(SystemFaultsTest, UserNameComesFromThePlatform)
{
    expectRun({"user"}, 0, "user\n", "");
}

TEST(SystemFaultsTest, EmptyUserNameVariableCountsAsNone)
{
    EXPECT_EQ("user\n", run({"user"}, {{"USERNAME", ""}}).out);
}

TEST(SystemFaultsTest, WithoutUserNameTheUserIsAnonymous)
{
    expectRun({"no-user", "user"}, 0, "anonymous\n", "");
}

TEST(SystemFaultsTest, EmptyUserNameIsAnonymous)
{
    expectRun({"empty-user", "user"}, 0, "anonymous\n", "");
}

TEST(SystemFaultsTest, AnonymousStaysForTheRestOfTheRun)
{
    expectRun({"no-user", "user", "other-user", "user"}, 0, "anonymous\nanonymous\n", "");
}

TEST(SystemFaultsTest, WithoutHostNameTheHostIsLocalhost)
{
    expectRun({"no-host", "host", "other-host", "host"}, 0, "localhost\nlocalhost\n", "");
}

TEST(SystemFaultsTest, HostNameComesFromThePlatform)
{
    expectRun({"host"}, 0, "host\n", "");
    EXPECT_EQ("host\n", run({"host"}, {{"COMPUTERNAME", ""}}).out);
    EXPECT_EQ("machine\n", run({"host"}, {{"COMPUTERNAME", "machine"}}).out);
}

TEST(SystemFaultsTest, NetworkThatCannotBeStartedEndsTheRun)
{
    // Required, Q-804
    expectRun({"trace", "no-network", "user"}, 1, "",
              "Could not initialize Winsock 2 DLL. Network related functions will fail.\n");
}

TEST(SystemFaultsTest, LineOfTheNetworkPassesEverySelection)
{
    expectRun({"trace-crit", "no-network", "user"}, 1, "",
              "Could not initialize Winsock 2 DLL. Network related functions will fail.\n");
}

TEST(SystemFaultsTest, NetworkThatCannotBeStartedEndsTheRunSilentlyWithoutATrace)
{
    expectRun({"no-network", "user"}, 1, "", "");
}

TEST(SystemFaultsTest, OperatingSystemThatCannotBeToldEndsTheRun)
{
    // Required, Q-805
    expectRun({"trace", "no-os", "os"}, 1, "", "Cannot retrieve number of Windows Version.\n");
}

TEST(SystemFaultsTest, LineOfTheOperatingSystemPassesEverySelection)
{
    expectRun({"trace-crit", "no-os", "os"}, 1, "", "Cannot retrieve number of Windows Version.\n");
}

TEST(SystemFaultsTest, OperatingSystemIsAskedOnce)
{
    expectRun({"os", "other-os", "os", "no-os", "os"}, 0, "Fake 1.0 Build #1\nFake 1.0 Build #1\nFake 1.0 Build #1\n",
              "");
}

TEST(SystemFaultsTest, NetworkIsStartedOnce)
{
    System::instance();
    const FakeSystem fake;
    System::instance();
    EXPECT_EQ(0, fake->networkUsers);
}

TEST(SystemFaultsTest, NetworkIsStoppedAtTheEnd)
{
    expectRun({"watch-network", "user"}, 0, "user\nnetwork users left: 0\n", "");
}

TEST(SystemFaultsTest, NetworkThatWasNotStartedIsNotStopped)
{
    expectRun({"watch-network", "no-network", "user"}, 1, "network users left: 0\n", "");
}

TEST(SystemFaultsTest, LastOfSeveralAddressesCounts)
{
    // Required, Q-806
    const FakeSystem fake;
    fake->addresses = [](const std::string&) {
        return std::vector{address({10, 0, 0, 1}), address({0, 0, 0, 0}), address({192, 168, 7, 250})};
    };
    System::instance().fetchIP();
    EXPECT_EQ("192.168.7.250", System::instance().getIPString());
    EXPECT_EQ(address({192, 168, 7, 250}), System::instance().getIP());
}

TEST(SystemFaultsTest, AddressOfTheHostNameIsAsked)
{
    const FakeSystem fake;
    std::string asked;
    fake->addresses = [&](const std::string& host) { return asked = host, std::vector<std::uint32_t>{}; };
    System::instance().fetchIP();
    EXPECT_EQ(System::instance().getHostName(), asked);
}

TEST(SystemFaultsTest, HostWithoutAddressHasAddress0)
{
    const FakeSystem fake;
    fake->addresses = [](const std::string&) { return std::vector{address({1, 2, 3, 4})}; };
    System::instance().fetchIP();
    fake->addresses = [](const std::string&) { return std::vector<std::uint32_t>{}; };
    System::instance().fetchIP();
    EXPECT_EQ(0u, System::instance().getIP());
    EXPECT_EQ("0.0.0.0", System::instance().getIPString());
}

TEST(SystemFaultsTest, KnownAddressIsNotLookedUpAgain)
{
    const FakeSystem fake;
    fake->addresses = [](const std::string&) { return std::vector{address({1, 2, 3, 4})}; };
    System::instance().fetchIP();
    fake->addresses = [](const std::string&) { return std::vector{address({5, 6, 7, 8})}; };
    EXPECT_EQ("1.2.3.4", System::instance().getIPString());
    EXPECT_EQ(address({1, 2, 3, 4}), System::instance().getIP());
    System::instance().fetchIP();
    EXPECT_EQ("5.6.7.8", System::instance().getIPString());
}

TEST(SystemFaultsTest, UnknownAddressIsLookedUpEachTime)
{
    const FakeSystem fake;
    System::instance().fetchIP();
    int count = 0;
    fake->addresses = [&](const std::string&) { return ++count, std::vector<std::uint32_t>{}; };
    System::instance().getIP();
    System::instance().getIPString();
    EXPECT_EQ(2, count);
}

TEST(SystemFaultsTest, LastErrorIsClearedByReading)
{
    const FakeSystem fake;
    fake->lastError = 5;
    EXPECT_EQ(5u, System::lastError());
    EXPECT_EQ(static_cast<unsigned long>(System::ERRORCODE_NOERROR), System::lastError());
}

TEST(SystemFaultsTest, LastErrorMessageIsClearedByReading)
{
    const FakeSystem fake;
    fake->lastError = 5;
    EXPECT_EQ("Denied", System::lastErrorMessage());
    EXPECT_EQ("All well", System::lastErrorMessage());
}

TEST(SystemFaultsTest, CodeWithoutTextHasAFixedText)
{
    const FakeSystem fake;
    EXPECT_EQ("No system error message", System::errorMsg(4711));
}

TEST(SystemFaultsTest, ErrorMsgDoesNotTouchTheError)
{
    const FakeSystem fake;
    fake->lastError = 5;
    System::errorMsg(2);
    EXPECT_EQ(5u, System::lastError());
}

TEST(SystemFaultsTest, ProgramWithoutAPathHasAnEmptyLocation)
{
    const FakeSystem fake;
    fake->programPath.reset();
    const ResourceLocation program = System::instance().getExeImagePath();
    EXPECT_TRUE(program.empty());
    EXPECT_EQ("", program.str());
}

TEST(SystemFaultsTest, ProgramPathIsNormalised)
{
    const FakeSystem fake;
    fake->programPath = "C:\\a\\.\\b\\..\\tool.exe";
    EXPECT_EQ("file://localhost/C:\\a\\tool.exe", System::instance().getExeImagePath().str());
}

TEST(SystemFaultsTest, WorkingDirectoryIsTakenAsItStands)
{
    const FakeSystem fake;
    EXPECT_EQ("C:\\lab\\dir", System::instance().getCurrentWorkingDir());
    fake->workingDirectory = [] { return platform::WorkingDirectory{"C:\\odd\"name", false}; };
    EXPECT_EQ("C:\\odd\"name", System::instance().getCurrentWorkingDir());
}

TEST(SystemFaultsTest, WorkingDirectoryTooLongForTheSystemIsEmpty)
{
    const FakeSystem fake;
    fake->workingDirectory = [] { return platform::WorkingDirectory{"", true}; };
    EXPECT_EQ("", System::instance().getCurrentWorkingDir());
}

TEST(SystemFaultsTest, MissingWorkingDirectoryThrows)
{
    const FakeSystem fake;
    fake->workingDirectory = [] { return std::nullopt; };
    EXPECT_EQ("getcwd()", test::textOf<OperationFailedException>([] { System::instance().getCurrentWorkingDir(); }));
}

TEST(SystemFaultsTest, WorkingDirectoryWithoutMemoryThrows)
{
    const FakeSystem fake;
    fake->workingDirectory = []() -> std::optional<platform::WorkingDirectory> { throw std::bad_alloc(); };
    EXPECT_EQ("calloc()", test::textOf<OperationFailedException>([] { System::instance().getCurrentWorkingDir(); }));
}

TEST(SystemFaultsTest, NowIsThePlatformsTime)
{
    const FakeSystem fake;
    fake->now = {-7, 999};
    EXPECT_EQ((Time::Mtime_t{-7, 999}), System::instance().now());
}

TEST(SystemFaultsTest, SetEnvHandsOverNameAndValue)
{
    const FakeSystem fake;
    System::setEnv("NAME", "a = b");
    System::setEnv("NAME", "");
    ASSERT_EQ(2u, fake->environment.size());
    EXPECT_STREQ("NAME=a = b", fake->environment[0]); // still there behind a later value
    EXPECT_STREQ("NAME=", fake->environment[1]);
}

} // namespace
