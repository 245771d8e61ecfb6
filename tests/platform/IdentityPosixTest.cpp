#include "platform/Platform.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netdb.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace
{

using namespace KelvoBase;

std::vector<std::string> dotted(const std::vector<std::uint32_t>& addresses)
{
    std::vector<std::string> texts;
    for (const std::uint32_t address : addresses) {
        in_addr number{};
        number.s_addr = address;
        texts.emplace_back(inet_ntoa(number));
    }
    return texts;
}

TEST(IdentityPosixTest, ProgramPathHasTheDriveAndBackslashes)
{
    const std::string path = platform::programPath().value();
    EXPECT_EQ(0u, path.find("C:\\")) << path;
    EXPECT_EQ(std::string::npos, path.find('/')) << path;
    EXPECT_TRUE(path.ends_with("\\IdentityPosixTest")) << path;
    EXPECT_TRUE(std::filesystem::equivalent("/proc/self/exe", platform::nativePath(path)));
}

/// Whether the program still finds its own path when it runs as a copy that is removed meanwhile.
[[noreturn]] void becomeRemovedCopy(const std::filesystem::path& copy)
{
    std::filesystem::copy_file("/proc/self/exe", copy);
    setenv("KELVOBASE_TEST_REMOVED", copy.c_str(), 1);
    execl(copy.c_str(), copy.c_str(), "--gtest_filter=*RemovedProgramIsWhereItWas", nullptr);
    std::_Exit(3);
}

TEST(IdentityPosixTest, RemovedProgramIsWhereItWas)
{
    if (const char* copy = std::getenv("KELVOBASE_TEST_REMOVED")) {
        std::filesystem::remove(copy);
        std::string expected = std::string("C:") + copy;
        std::replace(expected.begin(), expected.end(), '/', '\\');
        std::_Exit(platform::programPath() == expected ? 42 : 1);
    }
    const test::ScratchDirectory scratch;
    EXPECT_EXIT(becomeRemovedCopy(scratch / "tool"), ::testing::ExitedWithCode(42), "");
}

TEST(IdentityPosixTest, NameThatLooksLikeTheMarkOfARemovedProgramIsKept)
{
    if (std::getenv("KELVOBASE_TEST_MARK")) {
        std::_Exit(platform::programPath().value_or("").ends_with("\\tool (deleted)") ? 42 : 1);
    }
    const test::ScratchDirectory scratch;
    const std::filesystem::path copy = scratch / "tool (deleted)";
    std::filesystem::copy_file("/proc/self/exe", copy);
    EXPECT_EXIT(
        {
            setenv("KELVOBASE_TEST_MARK", "1", 1);
            execl(copy.c_str(), copy.c_str(), "--gtest_filter=*NameThatLooksLikeTheMark*", nullptr);
        },
        ::testing::ExitedWithCode(42), "");
}

TEST(IdentityPosixTest, UserNameIsTheLoginName)
{
    const passwd* entry = getpwuid(getuid());
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(entry->pw_name, platform::userName());
}

TEST(IdentityPosixTest, UserNameIsThatOfTheRealUser)
{
    if (getuid() != 0) {
        GTEST_SKIP() << "only root can change its effective user";
    }
    ASSERT_EQ(0, seteuid(65534));
    const std::optional<std::string> name = platform::userName();
    ASSERT_EQ(0, seteuid(0));
    EXPECT_EQ("root", name);
}

TEST(IdentityPosixTest, UserWithoutAnEntryHasNoName)
{
    if (getuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    constexpr uid_t nobodyAtAll = 3987654321u;
    ASSERT_EQ(nullptr, getpwuid(nobodyAtAll));
    EXPECT_EXIT(
        {
            const bool changed = setuid(nobodyAtAll) == 0;
            std::_Exit(changed && !platform::userName() ? 42 : 1);
        },
        ::testing::ExitedWithCode(42), "");
}

TEST(IdentityPosixTest, HostNameIsTheSystems)
{
    std::array<char, 256> name{};
    ASSERT_EQ(0, gethostname(name.data(), name.size() - 1));
    EXPECT_EQ(name.data(), platform::hostName().value());
}

TEST(IdentityPosixTest, LocalhostIsThisMachine)
{
    if (gethostbyname("localhost") == nullptr) {
        GTEST_SKIP() << "this system does not know itself by name";
    }
    const std::vector<std::string> found = dotted(platform::addresses("localhost"));
    ASSERT_FALSE(found.empty());
    EXPECT_EQ("127.0.0.1", found.back());
}

TEST(IdentityPosixTest, OnlyAddressesOfTheOldFormCount)
{
    EXPECT_TRUE(platform::addresses("::1").empty());
}

TEST(IdentityPosixTest, HostThatCannotBeNamedHasNoAddress)
{
    EXPECT_TRUE(platform::addresses("").empty());
    EXPECT_TRUE(platform::addresses(std::string(300, 'x')).empty());
}

TEST(IdentityPosixTest, OperatingSystemIsOneLine)
{
    const std::string name = platform::osName().value();
    EXPECT_EQ(0u, name.find("Linux ")) << name;
    EXPECT_NE(std::string::npos, name.find(" Build #")) << name;
    EXPECT_EQ(std::string::npos, name.find("##")) << name;
    EXPECT_EQ(std::string::npos, name.find('\n')) << name;
}

TEST(IdentityPosixTest, NetworkNeedsNoStart)
{
    EXPECT_TRUE(platform::startNetwork());
    platform::stopNetwork();
}

Time::Mtime_t clockTime()
{
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return {time.tv_sec, static_cast<short>(time.tv_nsec / 1000000)};
}

TEST(IdentityPosixTest, NowIsTheClockInMilliseconds)
{
    const Time::Mtime_t before = clockTime();
    const Time::Mtime_t now = platform::now();
    const Time::Mtime_t after = clockTime();
    EXPECT_FALSE(now < before);
    EXPECT_FALSE(after < now);
}

TEST(IdentityPosixTest, EnvironmentKeepsTheTextItself)
{
    static char assignment[] = "KELVOBASE_TEST_PUT=value";
    platform::putEnvironment(assignment);
    EXPECT_EQ(assignment + sizeof "KELVOBASE_TEST_PUT", std::getenv("KELVOBASE_TEST_PUT"));
    unsetenv("KELVOBASE_TEST_PUT");
}

} // namespace
