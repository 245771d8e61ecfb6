// What needs 64-bit seconds, the rules of this system's time zones, or its way to fail.

#include "support/Scratch.h"
#include "support/Text.h"
#include "time/TimeZone.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Time.h>

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace
{

using namespace KelvoBase;
using test::ScopedTimeZone;

std::array<int, 6> fields(std::time_t seconds)
{
    const Time time(seconds);
    return {time.getYear(), time.getMonth(), time.getDay(), time.getHour(), time.getMinute(), time.getSecond()};
}

TEST(TimePosixTest, FieldsBefore1970AndBehind2038)
{
    const ScopedTimeZone zone("UTC0");
    EXPECT_EQ((std::array{1969, 12, 31, 23, 59, 59}), fields(-1));
    EXPECT_EQ((std::array{1901, 12, 13, 20, 45, 51}), fields(-2147483649));
    EXPECT_EQ((std::array{2038, 1, 19, 3, 14, 8}), fields(2147483648));
    EXPECT_EQ((std::array{3000, 12, 31, 0, 0, 0}), fields(32535129600));
}

TEST(TimePosixTest, TimeThatIsNoDateHasTheFieldsOfAnAllZeroRecord)
{
    const ScopedTimeZone zone("UTC0");
    const std::time_t times[] = {
        std::numeric_limits<std::time_t>::max(),
        std::numeric_limits<std::time_t>::min(),
        67768036191676800, // one second behind the last date of localtime
        67768036191676799, // the last one: its year does not fit an int
        67767976233532800, // the first such year
    };
    for (const std::time_t time : times) {
        EXPECT_EQ((std::array{1900, 1, 0, 0, 0, 0}), fields(time)) << time;
        EXPECT_EQ("1900-01-00", Time(time).getDate()) << time;
        EXPECT_EQ("00:00:00", Time(time).getTime()) << time;
    }
}

TEST(TimePosixTest, LastYearOfAnIntIsADate)
{
    const ScopedTimeZone zone("UTC0");
    EXPECT_EQ((std::array{2147483647, 1, 1, 0, 0, 0}), fields(67767976201996800));
    EXPECT_EQ((std::array{2147483647, 12, 31, 23, 59, 59}), fields(67767976233532799));
}

/// A zone file with one leap second, which begins at `moment`.
std::string zoneFile(std::uint32_t moment)
{
    std::string data = "TZif" + std::string(16, '\0');
    const auto number = [&](std::uint32_t value) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            data += static_cast<char>(value >> shift & 0xff);
        }
    };
    for (const std::uint32_t count : {0u, 0u, 1u, 0u, 1u, 4u}) { // leap seconds; one local time; its name
        number(count);
    }
    data += std::string(6, '\0') + std::string("UTC\0", 4);
    number(moment);
    number(1);
    return data;
}

TEST(TimePosixTest, LeapSecondIsFoldedIntoTheSecondBeforeIt)
{
    // Required, Q-1104
    constexpr std::time_t leap = 78796800; // behind 30 June 1972, 23:59:59
    const test::ScratchDirectory scratch;
    const ScopedTimeZone zone(":" + scratch.write("leap", zoneFile(leap)).string());
    const std::time_t moment = leap;
    ASSERT_EQ(60, std::localtime(&moment)->tm_sec);
    EXPECT_EQ((std::array{1972, 6, 30, 23, 59, 59}), fields(leap - 1));
    EXPECT_EQ((std::array{1972, 6, 30, 23, 59, 59}), fields(leap));
    EXPECT_EQ((std::array{1972, 7, 1, 0, 0, 0}), fields(leap + 1));
}

TEST(TimePosixTest, YearsFrom100To3000AreTakenAsTheyStand)
{
    // Required, Q-1107
    const ScopedTimeZone zone("UTC0");
    const std::pair<std::string, std::time_t> rows[] = {
        {"99-1-1", 4070908800},    // 2099
        {"100-1-1", -59011459200}, // the year 100
        {"1900-1-1", -2208988800}, {"2039-1-1", 2177452800}, {"3000-12-31", 32535129600},
    };
    for (const auto& [text, seconds] : rows) {
        Time time;
        time.setByDateString(text);
        EXPECT_EQ(seconds, time.getMtime().seconds) << text;
    }
}

TEST(TimePosixTest, DateOfMinusOneSecondIsNoFailure)
{
    const ScopedTimeZone zone("AAA-00:00:01"); // its 1 January 1970 begins at -1, the sign of failure of mktime
    Time time;
    time.setByDateString("1970-1-1");
    EXPECT_EQ(-1, time.getMtime().seconds);
}

TEST(TimePosixTest, RefusedConversionLeavesNothingOfAnEarlierText)
{
    // Required, Q-1103
    const ScopedTimeZone zone("UTC0");
    EXPECT_EQ(std::string(60, 'y'), Time().strf(std::string(60, 'y')));
    EXPECT_EQ("", Time().strf("%070Y")); // 70 digits: refused at once
    EXPECT_EQ(std::string(63, 'x'), Time().strf(std::string(100, 'x')));
}

TEST(TimePosixTest, SpansBeyondAnInt)
{
    EXPECT_EQ("2147483648:00:00 h", Time(2147483648 * 3600).toTimeString());
    EXPECT_EQ("2562047788015215:30:07 h", Time(std::numeric_limits<std::time_t>::max()).toTimeString());
    EXPECT_EQ("-9223372036854775808 s", Time(std::numeric_limits<std::time_t>::min()).toTimeString());
}

TEST(TimePosixTest, DayNumberBeyondAnInt)
{
    EXPECT_EQ(106751991167300, Time(std::numeric_limits<std::time_t>::max()).getDayNumber());
    EXPECT_EQ(-106751991167300, Time(std::numeric_limits<std::time_t>::min()).getDayNumber());
}

} // namespace
