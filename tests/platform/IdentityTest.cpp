#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <limits>

namespace KelvoBase::platform
{

namespace
{

/// With the network that addresses need.
class IdentityTest : public testing::Test
{
protected:
    IdentityTest() { EXPECT_TRUE(startNetwork()); }
    ~IdentityTest() override { stopNetwork(); }
};

std::vector<std::vector<int>> bytesOf(const std::vector<std::uint32_t>& addresses)
{
    std::vector<std::vector<int>> all;
    for (const std::uint32_t address : addresses) {
        unsigned char bytes[4];
        std::memcpy(bytes, &address, sizeof bytes);
        all.emplace_back(std::begin(bytes), std::end(bytes));
    }
    return all;
}

} // namespace

TEST_F(IdentityTest, ProgramPathIsThatOfThisProgram)
{
    const std::string path = programPath().value();
    EXPECT_EQ(':', path[1]) << path;
    EXPECT_EQ('\\', path[2]) << path;
    EXPECT_EQ(std::string::npos, path.find('/')) << path;
    EXPECT_NE(std::string::npos, path.find("\\IdentityTest")) << path;
    EXPECT_EQ(EntryKind::file, entryKind(path));
}

TEST_F(IdentityTest, UserAndHostHaveNames)
{
    EXPECT_NE("", userName().value_or(""));
    EXPECT_NE("", hostName().value_or(""));
}

TEST_F(IdentityTest, AddressesAreInNetworkByteOrder)
{
    EXPECT_EQ((std::vector<std::vector<int>>{{10, 20, 30, 200}}), bytesOf(addresses("10.20.30.200")));
}

TEST_F(IdentityTest, HostThatCannotBeNamedHasNoAddress)
{
    EXPECT_TRUE(addresses(std::string(300, 'x')).empty());
}

TEST_F(IdentityTest, OperatingSystemIsOneLine)
{
    const std::string name = osName().value();
    EXPECT_NE(std::string::npos, name.find(" Build #")) << name;
    EXPECT_EQ(std::string::npos, name.find_first_of("\r\n")) << name;
}

TEST_F(IdentityTest, NowIsTheTimeOfTheClockInMilliseconds)
{
    const std::time_t before = std::time(nullptr);
    const Time::Mtime_t time = now();
    const std::time_t after = std::time(nullptr);
    EXPECT_LE(before - 1, time.seconds); // the clock of time() may lag by a tick
    EXPECT_GE(after + 1, time.seconds);
    EXPECT_LE(0, time.milliseconds);
    EXPECT_GE(999, time.milliseconds);
}

TEST_F(IdentityTest, MillisecondsPass)
{
    const Time::Mtime_t first = now();
    Time::Mtime_t last = first;
    for (int i = 0; i < 100'000'000 && last == first; ++i) {
        last = now();
    }
    EXPECT_TRUE(first < last);
}

TEST_F(IdentityTest, EnvironmentTakesAnAssignment)
{
    static char first[] = "KELVOBASE_TEST_PUT=a value = with signs";
    static char second[] = "KELVOBASE_TEST_PUT=other";
    putEnvironment(first);
    EXPECT_STREQ("a value = with signs", std::getenv("KELVOBASE_TEST_PUT"));
    putEnvironment(second);
    EXPECT_STREQ("other", std::getenv("KELVOBASE_TEST_PUT"));
}

} // namespace KelvoBase::platform
