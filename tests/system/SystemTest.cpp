#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <kelvobase/ConnectionStates.h>
#include <kelvobase/Globals.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <ctime>
#include <type_traits>

namespace
{

using namespace KelvoBase;
using test::ScopedEnvironment;

/// What a fresh process prints for the steps.
std::string answers(const std::vector<std::string>& steps,
                    const std::vector<std::pair<std::string, std::string>>& environment)
{
    std::vector<std::string> command = {SYSTEM_TOOL};
    command.insert(command.end(), steps.begin(), steps.end());
    const test::ChildResult result = test::runChild(command, {environment, {}, "", ""});
    EXPECT_EQ(0, result.status);
    EXPECT_EQ("", result.err);
    return result.out;
}

TEST(GlobalsTest, StandardStreamsAreThereAtFirst)
{
    EXPECT_TRUE(haveCerr);
}

TEST(ConnectionStatesTest, ConstantsHaveTheirValues)
{
    EXPECT_EQ(1, CS_CONNECTED);
    EXPECT_EQ(-1, CS_UNCONNECTED);
    EXPECT_EQ(-2, CS_ERROR);
    EXPECT_EQ(-3, CS_INITIALIZATION_ERROR);
    EXPECT_EQ(-4, CS_OPEN_ERROR);
    EXPECT_EQ(-5, CS_CLOSE_ERROR);
    EXPECT_EQ(1, CURS_OPENED);
    EXPECT_EQ(0, CURS_CLOSED);
    EXPECT_EQ(-1, CURS_UNUSED);
    EXPECT_EQ(-2, CURS_ERROR);
    EXPECT_EQ(-3, CURS_OPEN_ERROR);
    EXPECT_EQ(-4, CURS_CLOSE_ERROR);
    EXPECT_EQ(-5, CURS_INVALID_CONN_HANDLE);
    EXPECT_TRUE((std::is_same_v<const int, decltype(CURS_INVALID_CONN_HANDLE)>));
}

TEST(SystemTest, ConstantsHaveTheirValues)
{
    EXPECT_EQ(15, System::sigterm);
    EXPECT_EQ(2, System::sigint);
    EXPECT_EQ(0, System::sighup);
    EXPECT_EQ(0, System::sigalrm);
    EXPECT_EQ(0, System::ERRORCODE_NOERROR);
    EXPECT_EQ("", System::defaultCmdOutput);
}

TEST(SystemTest, ThereIsOneSystem)
{
    EXPECT_EQ(&System::instance(), &System::instance());
}

TEST(SystemTest, LineLengthIs80)
{
    EXPECT_EQ(80u, System::linelength());
}

TEST(SystemTest, PathSeparatorIsSemicolon)
{
    EXPECT_EQ(';', System::pathSeparator());
}

TEST(SystemTest, NowIsTheTimeOfTheClock)
{
    const std::time_t before = std::time(nullptr);
    const Time::Mtime_t now = System::instance().now();
    const std::time_t after = std::time(nullptr);
    EXPECT_LE(before - 1, now.seconds); // the clock of time() may lag by a tick
    EXPECT_GE(after + 1, now.seconds);
    EXPECT_LE(0, now.milliseconds);
    EXPECT_GE(999, now.milliseconds);
}

TEST(SystemTest, NowDoesNotGoBack)
{
    Time::Mtime_t last = System::instance().now();
    for (int i = 0; i < 1000; ++i) {
        const Time::Mtime_t now = System::instance().now();
        ASSERT_FALSE(now < last);
        last = now;
    }
}

TEST(SystemTest, GetEnvOfMissingVariableGivesTheDefault)
{
    const ScopedEnvironment removed("KELVOBASE_TEST_ENV", std::nullopt);
    EXPECT_EQ("default", System::getEnv("KELVOBASE_TEST_ENV", "default"));
    EXPECT_EQ("", System::getEnv("KELVOBASE_TEST_ENV", ""));
}

TEST(SystemTest, GetEnvOfSetVariableGivesItsValue)
{
    const ScopedEnvironment set("KELVOBASE_TEST_ENV", "a value = with ; signs ");
    EXPECT_EQ("a value = with ; signs ", System::getEnv("KELVOBASE_TEST_ENV", "default"));
}

TEST(SystemTest, SetEnvThenGetEnvGivesTheValueBack)
{
    const ScopedEnvironment restored("KELVOBASE_TEST_SET", std::nullopt);
    System::setEnv("KELVOBASE_TEST_SET", "first");
    EXPECT_EQ("first", System::getEnv("KELVOBASE_TEST_SET", "default"));
    System::setEnv("KELVOBASE_TEST_SET", "second");
    EXPECT_EQ("second", System::getEnv("KELVOBASE_TEST_SET", "default"));
}

TEST(SystemTest, SetEnvKeepsNoReferenceToItsArguments)
{
    const ScopedEnvironment restored("KELVOBASE_TEST_SET", std::nullopt);
    std::string name = "KELVOBASE_TEST_SET";
    std::string value = "value";
    System::setEnv(name, value);
    name = "X";
    value[0] = 'X';
    EXPECT_EQ("value", System::getEnv("KELVOBASE_TEST_SET", "default"));
}

TEST(SystemTest, SetEnvOfManyVariablesKeepsAll)
{
    for (int i = 0; i < 100; ++i) {
        System::setEnv("KELVOBASE_TEST_" + std::to_string(i), std::string(static_cast<std::size_t>(i) + 1, 'v'));
    }
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(std::string(static_cast<std::size_t>(i) + 1, 'v'),
                  System::getEnv("KELVOBASE_TEST_" + std::to_string(i), "default"));
    }
}

TEST(SystemTest, SetEnvTakesTheValueUpToAZeroByte)
{
    const ScopedEnvironment restored("KELVOBASE_TEST_SET", std::nullopt);
    System::setEnv("KELVOBASE_TEST_SET", std::string("front\0behind", 12));
    EXPECT_EQ("front", System::getEnv("KELVOBASE_TEST_SET", "default"));
}

TEST(SystemTest, UserNameIsTheVariable)
{
    EXPECT_EQ("alice\n", answers({"user"}, {{"USERNAME", "alice"}}));
}

TEST(SystemTest, UserNameIsNotRefreshed)
{
    EXPECT_EQ("alice\nalice\n", answers({"user", "USERNAME=bob", "user"}, {{"USERNAME", "alice"}}));
}

TEST(SystemTest, UserNameIsFoundAtFirstNeed)
{
    EXPECT_EQ("bob\n", answers({"USERNAME=bob", "user"}, {{"USERNAME", "alice"}}));
}

TEST(SystemTest, UserNameReferenceStaysTheSame)
{
    EXPECT_EQ(&System::instance().getUserName(), &System::instance().getUserName());
    EXPECT_NE("", System::instance().getUserName());
}

TEST(SystemTest, HostNameIsTheVariable)
{
    EXPECT_EQ("machine\n", answers({"host"}, {{"COMPUTERNAME", "machine"}}));
}

TEST(SystemTest, HostNameIsNotRefreshed)
{
    EXPECT_EQ("machine\nmachine\n", answers({"host", "COMPUTERNAME=other", "host"}, {{"COMPUTERNAME", "machine"}}));
}

TEST(SystemTest, HostNameReferenceStaysTheSame)
{
    EXPECT_EQ(&System::instance().getHostName(), &System::instance().getHostName());
    EXPECT_NE("", System::instance().getHostName());
}

TEST(SystemTest, AddressOfANumericHost)
{
    EXPECT_EQ("10.20.30.200\nfetched\n10.20.30.200\n",
              answers({"iptext", "fetch", "iptext"}, {{"COMPUTERNAME", "10.20.30.200"}}));
}

TEST(SystemTest, AddressIsInNetworkByteOrder)
{
    EXPECT_EQ("16777226\n", answers({"ip"}, {{"COMPUTERNAME", "10.0.0.1"}})); // 10 in the lowest byte
}

TEST(SystemTest, HostThatIsNotFoundHasAddress0)
{
    EXPECT_EQ("0\n0.0.0.0\n", answers({"ip", "iptext"}, {{"COMPUTERNAME", "::1"}}));
}

TEST(SystemTest, OperatingSystemIsOneLine)
{
    const std::string& os = System::instance().getOS();
    EXPECT_NE("", os);
    EXPECT_EQ(std::string::npos, os.find('\n'));
    EXPECT_NE(std::string::npos, os.find(" Build #")) << os;
    EXPECT_EQ(&os, &System::instance().getOS());
}

TEST(SystemTest, ProgramLocationIsAFile)
{
    const ResourceLocation program = System::instance().getExeImagePath();
    EXPECT_TRUE(program.isAbsolute());
    EXPECT_TRUE(program.isFile()) << program.str();
    EXPECT_EQ("SystemTest", program.basename());
}

} // namespace
