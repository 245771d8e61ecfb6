#include "support/Text.h"
#include "time/TimeZone.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Time.h>

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <random>

namespace KelvoBase
{

/// How a value shows in the output of a failed test.
inline void PrintTo(const Time::Mtime_t& time, std::ostream* out)
{
    *out << time.seconds << " s " << time.milliseconds << " ms";
}

} // namespace KelvoBase

namespace
{

using namespace KelvoBase;
using Mtime = Time::Mtime_t;
using test::ScopedTimeZone;

constexpr std::time_t maxSeconds = std::numeric_limits<std::time_t>::max();
constexpr std::time_t minSeconds = std::numeric_limits<std::time_t>::min();

Mtime sum(Mtime a, const Mtime& b)
{
    EXPECT_EQ(&a, &(a += b));
    return a;
}

Mtime difference(Mtime a, const Mtime& b)
{
    EXPECT_EQ(&a, &(a -= b));
    return a;
}

TEST(MtimeTest, SumCarriesBeyond999Milliseconds)
{
    EXPECT_EQ((Mtime{3, 300}), sum({1, 100}, {2, 200}));
    EXPECT_EQ((Mtime{1, 999}), sum({1, 998}, {0, 1}));
    EXPECT_EQ((Mtime{2, 0}), sum({1, 999}, {0, 1}));
    EXPECT_EQ((Mtime{4, 998}), sum({1, 999}, {2, 999}));
    EXPECT_EQ((Mtime{0, 0}), sum({-1, 500}, {0, 500}));
    EXPECT_EQ((Mtime{-3, 1}), sum({-2, 500}, {-2, 501}));
}

TEST(MtimeTest, DifferenceBorrowsASecond)
{
    EXPECT_EQ((Mtime{2, 100}), difference({3, 300}, {1, 200}));
    EXPECT_EQ((Mtime{2, 0}), difference({3, 200}, {1, 200}));
    EXPECT_EQ((Mtime{0, 999}), difference({1, 0}, {0, 1}));
    EXPECT_EQ((Mtime{-1, 999}), difference({0, 0}, {0, 1}));
    EXPECT_EQ((Mtime{-1, 1}), difference({1, 0}, {1, 999}));
    EXPECT_EQ((Mtime{3, 0}), difference({1, 0}, {-2, 0}));
}

TEST(MtimeTest, ValueMayBeItsOwnOperand)
{
    Mtime time{5, 700};
    const Mtime& same = time;
    time += same;
    EXPECT_EQ((Mtime{11, 400}), time);
    time -= same;
    EXPECT_EQ((Mtime{0, 0}), time);
}

TEST(MtimeTest, SecondsWrapAround)
{
    EXPECT_EQ((Mtime{minSeconds, 0}), sum({maxSeconds, 999}, {0, 1}));
    EXPECT_EQ((Mtime{minSeconds, 0}), sum({maxSeconds, 0}, {1, 0}));
    EXPECT_EQ((Mtime{-1, 999}), sum({maxSeconds, 999}, {maxSeconds, 1000}));
    EXPECT_EQ((Mtime{maxSeconds, 999}), difference({minSeconds, 0}, {0, 1}));
    EXPECT_EQ((Mtime{minSeconds, 0}), difference({0, 0}, {minSeconds, 0}));
}

TEST(MtimeTest, MillisecondsWrapAround)
{
    EXPECT_EQ((Mtime{1, static_cast<short>(64534 - 65536)}), sum({0, 32767}, {0, 32767}));
    EXPECT_EQ((Mtime{0, 0}), sum({0, -32768}, {0, -32768}));
    EXPECT_EQ((Mtime{0, -1}), difference({0, 32767}, {0, -32768}));
    EXPECT_EQ((Mtime{-1, static_cast<short>(1000 - 65535 + 65536)}), difference({0, -32768}, {0, 32767}));
}

TEST(MtimeTest, ComparisonLooksAtTheSecondsFirst)
{
    struct Row
    {
        Mtime a;
        Mtime b;
        int order; // -1, 0, 1
    };
    const Row rows[] = {
        {{1, 0}, {1, 0}, 0},    {{1, 999}, {2, 0}, -1},
        {{2, 0}, {1, 999}, 1},  {{1, 5}, {1, 6}, -1},
        {{1, 6}, {1, 5}, 1},    {{-1, 999}, {0, 0}, -1},
        {{-2, 0}, {-1, 0}, -1}, {{0, -1}, {0, 0}, -1},
        {{-1, 0}, {-1, 1}, -1}, {{maxSeconds, 0}, {minSeconds, 0}, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.a) + " and " + ::testing::PrintToString(row.b));
        EXPECT_EQ(row.order < 0, row.a < row.b);
        EXPECT_EQ(row.order > 0, row.a > row.b);
        EXPECT_EQ(row.order == 0, row.a == row.b);
    }
}

TEST(MtimeTest, RandomSumsAndDifferencesAreThoseOfMilliseconds)
{
    std::mt19937 random(20050303);
    std::uniform_int_distribution<int> seconds(-500000000, 500000000);
    std::uniform_int_distribution<int> milliseconds(0, 999);
    const auto total = [](const Mtime& time) { return time.seconds * 1000LL + time.milliseconds; };
    for (int i = 0; i < 100000; ++i) {
        const Mtime a{seconds(random), static_cast<short>(milliseconds(random))};
        const Mtime b{seconds(random), static_cast<short>(milliseconds(random))};
        const Mtime plus = sum(a, b);
        const Mtime minus = difference(a, b);
        ASSERT_EQ(total(a) + total(b), total(plus));
        ASSERT_EQ(total(a) - total(b), total(minus));
        ASSERT_TRUE(0 <= plus.milliseconds && plus.milliseconds <= 999);
        ASSERT_TRUE(0 <= minus.milliseconds && minus.milliseconds <= 999);
        ASSERT_EQ(total(a) < total(b), a < b);
        ASSERT_EQ(total(a) > total(b), a > b);
    }
}

TEST(TimeTest, OneDayIs86400Seconds)
{
    EXPECT_EQ((Mtime{86400, 0}), Time::oneDay);
}

TEST(TimeTest, ConstructorsStoreWhatTheyAreGiven)
{
    EXPECT_EQ((Mtime{0, 0}), Time().getMtime());
    EXPECT_EQ((Mtime{5, 250}), Time(Mtime{5, 250}).getMtime());
    EXPECT_EQ((Mtime{-5, 0}), Time(std::time_t{-5}).getMtime());
}

struct Fields
{
    std::time_t seconds;
    std::array<int, 6> fields; // year, month, day, hour, minute, second
};

void expectFields(const Fields& row)
{
    const Time time(Mtime{row.seconds, 999});
    EXPECT_EQ(row.fields, (std::array{time.getYear(), time.getMonth(), time.getDay(), time.getHour(), time.getMinute(),
                                      time.getSecond()}))
        << row.seconds;
}

TEST(TimeTest, FieldsInUniversalTime)
{
    const ScopedTimeZone zone("UTC0");
    const Fields rows[] = {
        {0, {1970, 1, 1, 0, 0, 0}},
        {59, {1970, 1, 1, 0, 0, 59}},
        {60, {1970, 1, 1, 0, 1, 0}},
        {86399, {1970, 1, 1, 23, 59, 59}},
        {951782400, {2000, 2, 29, 0, 0, 0}},
        {1109808000, {2005, 3, 3, 0, 0, 0}},
        {1136073599, {2005, 12, 31, 23, 59, 59}},
        {2147483647, {2038, 1, 19, 3, 14, 7}},
    };
    for (const Fields& row : rows) {
        expectFields(row);
    }
}

TEST(TimeTest, FieldsFollowTheTimeZone)
{
    const ScopedTimeZone zone("EST5EDT");
    expectFields({1104555600, {2005, 1, 1, 0, 0, 0}});
    expectFields({1104555599, {2004, 12, 31, 23, 59, 59}});
}

TEST(TimeTest, FieldsFollowDaylightSavingTime)
{
    if (!test::knowsSummerTime()) {
        GTEST_SKIP() << "the run-time knows no summer time";
    }
    const ScopedTimeZone zone("EST5EDT");
    expectFields({1120190400, {2005, 7, 1, 0, 0, 0}});
    expectFields({1120190399, {2005, 6, 30, 23, 59, 59}});
}

TEST(TimeTest, DayNumberIsCutTowardsZero)
{
    // Required, Q-1105
    const std::pair<std::time_t, long> rows[] = {
        {0, 0},      {86399, 0},   {86400, 1},   {86401, 1},    {172800, 2},         {-1, 0},
        {-86399, 0}, {-86400, -1}, {-86401, -1}, {-172800, -2}, {1109808000, 12845}, {2147483647, 24855},
    };
    for (const auto& [seconds, day] : rows) {
        EXPECT_EQ(day, Time(seconds).getDayNumber()) << seconds;
    }
}

TEST(TimeTest, DayNumberDoesNotFollowTheTimeZone)
{
    const ScopedTimeZone zone("AAA-14");
    EXPECT_EQ(0, Time(std::time_t{86399}).getDayNumber());
    EXPECT_EQ(2, Time(std::time_t{86399}).getDay());
}

TEST(TimeTest, WeekDayStringIsTheSameForAllTimes)
{
    // Required, Q-1101
    EXPECT_EQ("+a", Time().getWeekDayString());
    EXPECT_EQ("+a", Time(std::time_t{1109808000}).getWeekDayString());
}

TEST(TimeTest, MonthStringIsTheSameForAllTimes)
{
    // Required, Q-1102
    EXPECT_EQ("+b", Time().getMonthString());
    EXPECT_EQ("+b", Time(std::time_t{1109808000}).getMonthString());
}

TEST(TimeTest, DateAndTimeHaveFixedForms)
{
    const ScopedTimeZone zone("UTC0");
    EXPECT_EQ("1970-01-01", Time().getDate());
    EXPECT_EQ("00:00:00", Time().getTime());
    const Time time(std::time_t{1109808000 + 3600 * 9 + 60 * 8 + 7});
    EXPECT_EQ("2005-03-03", time.getDate());
    EXPECT_EQ("09:08:07", time.getTime());
}

TEST(TimeTest, StrfFormatsTheLocalTime)
{
    const ScopedTimeZone zone("AST4");
    const Time time(std::time_t{1120190400});
    EXPECT_EQ("Day 182 of 2005, 00 o'clock", time.strf("Day %j of %Y, %H o'clock"));
    EXPECT_EQ("100%", time.strf("100%%"));
    EXPECT_EQ("no conversion", time.strf("no conversion"));
    EXPECT_EQ("", time.strf(""));
}

TEST(TimeTest, StrfTakesTheFormatUpToAZeroByte)
{
    EXPECT_EQ("front", Time().strf(std::string("front\0behind", 12)));
}

TEST(TimeTest, StrfHolds63Bytes)
{
    EXPECT_EQ(std::string(63, 'x'), Time().strf(std::string(63, 'x')));
}

TEST(TimeTest, StrfOfALongerTextGivesWhatStandsInTheBuffer)
{
    // Required, Q-1103
    const ScopedTimeZone zone("UTC0");
    const std::string formats[] = {std::string(64, 'x'), std::string(1000, 'x'), std::string(62, 'x') + "%Y",
                                   std::string(40, 'x') + "%Y-%m-%d %H:%M:%S %Y-%m-%d"};
    const std::time_t seconds = 1109808000;
    for (const std::string& format : formats) {
        std::array<char, 64> buffer{};
        ASSERT_EQ(0u, std::strftime(buffer.data(), buffer.size(), format.c_str(), std::localtime(&seconds)));
        buffer.back() = '\0';
        EXPECT_EQ(buffer.data(), Time(seconds).strf(format)) << format;
    }
}

TEST(TimeTest, TextsAreIndependentOfEarlierOnes)
{
    const ScopedTimeZone zone("UTC0");
    const Time time(std::time_t{1109808000});
    const std::string first = time.strf(std::string(63, 'y'));
    EXPECT_EQ("2005-03-03", time.getDate());
    EXPECT_EQ("", time.strf(""));
    EXPECT_EQ(std::string(63, 'y'), first);
}

/// The date and time of a date text, in that zone.
std::string dateOf(const std::string& zone, const std::string& date)
{
    const ScopedTimeZone scoped(zone);
    Time time(Mtime{1, 999});
    time.setByDateString(date);
    EXPECT_EQ(0, time.getMtime().milliseconds);
    return time.getDate() + " " + time.getTime();
}

TEST(TimeTest, DateStringsAreRead)
{
    const std::pair<std::string, std::string> rows[] = {
        {"2005-03-03", "2005-03-03"},        {"2005-3-3", "2005-03-03"},    {"1970-1-1", "1970-01-01"},
        {"2000-02-29", "2000-02-29"},        {"2037-12-31", "2037-12-31"},  {" 2005- 3-\t3", "2005-03-03"},
        {"\n\v\f\r 2005-3-3", "2005-03-03"}, {"+2005-+3-+3", "2005-03-03"}, {"002005-0003-0003", "2005-03-03"},
    };
    for (const auto& [text, date] : rows) {
        EXPECT_EQ(date + " 00:00:00", dateOf("UTC0", text)) << text;
    }
}

TEST(TimeTest, TextBehindTheThirdNumberIsIgnored)
{
    const std::string texts[] = {"2005-3-3 ", "2005-3-3T12:00", "2005-3-3-4", "2005-3-3x",
                                 std::string("2005-3-3\0x", 10)};
    for (const std::string& text : texts) {
        EXPECT_EQ("2005-03-03 00:00:00", dateOf("UTC0", text)) << text;
    }
}

TEST(TimeTest, DayBeyondItsMonthRunsOn)
{
    // Required, Q-1106
    EXPECT_EQ("2005-03-03 00:00:00", dateOf("UTC0", "2005-02-31"));
    EXPECT_EQ("2004-03-01 00:00:00", dateOf("UTC0", "2004-02-30"));
    EXPECT_EQ("2005-05-01 00:00:00", dateOf("UTC0", "2005-4-31"));
}

TEST(TimeTest, YearsUpTo99CountFrom2000)
{
    // Required, Q-1107
    EXPECT_EQ("2004-07-09 00:00:00", dateOf("UTC0", "04-7-9"));
    EXPECT_EQ("2000-01-01 00:00:00", dateOf("UTC0", "0-1-1"));
    EXPECT_EQ("2000-01-01 00:00:00", dateOf("UTC0", "-0-1-1"));
    EXPECT_EQ("2037-01-01 00:00:00", dateOf("UTC0", "37-1-1"));
}

TEST(TimeTest, DateIsInTheLocalTimeZone)
{
    const ScopedTimeZone zone("EST5EDT");
    Time time;
    time.setByDateString("2005-1-1");
    EXPECT_EQ(1104555600, time.getMtime().seconds);
}

TEST(TimeTest, DateInSummerBeginsAnHourLater)
{
    // Required, Q-1108
    if (!test::knowsSummerTime()) {
        GTEST_SKIP() << "the run-time knows no summer time";
    }
    EXPECT_EQ("2005-01-01 00:00:00", dateOf("EST5EDT", "2005-1-1"));
    EXPECT_EQ("2005-07-01 01:00:00", dateOf("EST5EDT", "2005-7-1"));
    EXPECT_EQ("2005-01-01 00:00:00", dateOf("EST5EDT", "2005-1-1")); // nothing is left of the one before
}

TEST(TimeTest, BadDateStringsThrowAndChangeNothing)
{
    const std::string texts[] = {
        "",
        "x",
        "2005",
        "2005-1",
        "2005-1-",
        "-1-1",
        "2005--1-1",
        "2005 -1-1",
        "2005-1 -1",
        "2005/1/1",
        "2005-x-1",
        "2005-1-x",
        "+-5-1-1",
        "++5-1-1",
        "+ 5-1-1",
        "- 5-1-1",
        "2005-13-01",
        "2005-0-1",
        "2005-1-0",
        "2005-1-32",
        "3001-1-1",
        "-1-1-1",
        "-2005-1-1",
        "2005-1--1",
        "2005.0-1-1",
        "0x7d5-1-1",
        "2 005-1-1",
        "\x01"
        "2005-1-1",
        "2147483648-1-1",
        "4294969301-1-1",
        "18446744073709553621-1-1",
        "2005-4294967297-1",
        "2005-1-4294967297",
        "99999999999999999999999999-1-1",
        "2005-1-99999999999999999999",
    };
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        Time time(Mtime{77, 88});
        EXPECT_EQ("Could not convert date: " + text,
                  test::textOf<OperationFailedException>([&] { time.setByDateString(text); }));
        EXPECT_EQ((Mtime{77, 88}), time.getMtime());
    }
}

TEST(TimeTest, DateStringEndsAtAZeroByte)
{
    Time time;
    const std::string text("2005-1\0-1", 9);
    EXPECT_EQ("Could not convert date: 2005-1",
              test::textOf<OperationFailedException>([&] { time.setByDateString(text); }));
}

TEST(TimeTest, SpansHaveTheirUnit)
{
    const std::pair<std::time_t, std::string> rows[] = {
        {0, "0 s"},
        {1, "1 s"},
        {9, "9 s"},
        {59, "59 s"},
        {60, "1:00 min"},
        {61, "1:01 min"},
        {69, "1:09 min"},
        {70, "1:10 min"},
        {599, "9:59 min"},
        {600, "10:00 min"},
        {3599, "59:59 min"},
        {3600, "1:00:00 h"},
        {3601, "1:00:01 h"},
        {3661, "1:01:01 h"},
        {4210, "1:10:10 h"},
        {7199, "1:59:59 h"},
        {35999, "9:59:59 h"},
        {36000, "10:00:00 h"},
        {86400, "24:00:00 h"},
        {360000, "100:00:00 h"},
        {2147483647, "596523:14:07 h"},
    };
    for (const auto& [seconds, text] : rows) {
        EXPECT_EQ(text, Time(Mtime{seconds, 999}).toTimeString());
    }
}

TEST(TimeTest, NegativeSpansStayInSeconds)
{
    // Required, Q-1109
    EXPECT_EQ("-1 s", Time(std::time_t{-1}).toTimeString());
    EXPECT_EQ("-60 s", Time(std::time_t{-60}).toTimeString());
    EXPECT_EQ("-3600 s", Time(std::time_t{-3600}).toTimeString());
    EXPECT_EQ("-2147483648 s", Time(static_cast<std::time_t>(-2147483647 - 1)).toTimeString());
}

TEST(TimeTest, SpansDoNotFollowTheTimeZone)
{
    const ScopedTimeZone zone("AAA-14");
    EXPECT_EQ("1:01:01 h", Time(std::time_t{3661}).toTimeString());
}

} // namespace
