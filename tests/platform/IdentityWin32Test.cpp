#include "platform/Platform.h"
#include "platform/win32/Win32.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace KelvoBase::platform
{

namespace
{

/// Milliseconds since 1970.
long long clockTime()
{
    FILETIME time{};
    ::GetSystemTimeAsFileTime(&time);
    const auto ticks = static_cast<long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return ticks / 10'000 - 11'644'473'600'000;
}

} // namespace

TEST(IdentityWin32Test, ProgramPathIsThatOfTheModule)
{
    char path[MAX_PATH] = "";
    ASSERT_LT(0u, ::GetModuleFileNameA(nullptr, path, MAX_PATH));
    EXPECT_EQ(path, programPath().value());
}

TEST(IdentityWin32Test, UserNameIsThatOfTheLogin)
{
    char name[256] = "";
    DWORD size = 256;
    ASSERT_TRUE(::GetUserNameA(name, &size));
    EXPECT_EQ(name, userName().value());
}

TEST(IdentityWin32Test, SecondsFit32Bits)
{
    EXPECT_EQ(4u, sizeof(Time::Mtime_t::seconds));
}

TEST(IdentityWin32Test, NowIsTheClockInMilliseconds)
{
    for (int i = 0; i < 1000; ++i) {
        const long long before = clockTime();
        const Time::Mtime_t time = now();
        const long long after = clockTime();
        const long long milliseconds = time.seconds * 1000ll + time.milliseconds;
        ASSERT_LE(before, milliseconds);
        ASSERT_GE(after, milliseconds);
    }
}

TEST(IdentityWin32Test, AddressesNeedTheNetwork)
{
    EXPECT_TRUE(addresses("127.0.0.1").empty());
    ASSERT_TRUE(startNetwork());
    EXPECT_EQ((std::vector<std::uint32_t>{0x0100007F}), addresses("127.0.0.1"));
    stopNetwork();
    EXPECT_TRUE(addresses("127.0.0.1").empty());
}

TEST(IdentityWin32Test, EmptyValueRemovesAVariable)
{
    static char assignment[] = "KELVOBASE_TEST_EMPTY=x";
    putEnvironment(assignment);
    EXPECT_STREQ("x", std::getenv("KELVOBASE_TEST_EMPTY"));
    static char removal[] = "KELVOBASE_TEST_EMPTY=";
    putEnvironment(removal);
    EXPECT_EQ(nullptr, std::getenv("KELVOBASE_TEST_EMPTY"));
}

} // namespace KelvoBase::platform
