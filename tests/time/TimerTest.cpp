#include "support/FakePlatform.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Timer.h>

#include <gtest/gtest.h>

#include <bit>
#include <functional>
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
using test::FakeSystem;

constexpr std::time_t maxSeconds = std::numeric_limits<std::time_t>::max();
constexpr std::time_t minSeconds = std::numeric_limits<std::time_t>::min();

/// The fields of a stop-watch in their order.
struct Fields
{
    Mtime start;
    Mtime last;
    Mtime total;
    bool running;
};
static_assert(sizeof(Fields) == sizeof(Timer) && alignof(Fields) == alignof(Timer));

Fields fieldsOf(const Timer& timer)
{
    return std::bit_cast<Fields>(timer);
}

void expectFields(const Fields& expected, const Timer& timer)
{
    const Fields fields = fieldsOf(timer);
    EXPECT_EQ(expected.start, fields.start);
    EXPECT_EQ(expected.last, fields.last);
    EXPECT_EQ(expected.total, fields.total);
    EXPECT_EQ(expected.running, fields.running);
}

/// Lets one interval pass.
void run(Timer& timer, FakeSystem& system, const Mtime& from, const Mtime& to)
{
    system->now = from;
    timer.start();
    system->now = to;
    timer.stop();
}

/// A stop-watch whose latest interval and total are that long.
Timer timerOf(const Mtime& span)
{
    FakeSystem system;
    Timer timer;
    run(timer, system, {0, 0}, span);
    return timer;
}

TEST(TimerTest, ModesHaveTheirNumbers)
{
    static_assert(std::is_same_v<std::underlying_type_t<Timer::Mode>, int>);
    EXPECT_EQ(0, Timer::Last);
    EXPECT_EQ(1, Timer::Total);
}

TEST(TimerTest, NewOneIsStoppedAtZero)
{
    const Timer timer;
    expectFields({{0, 0}, {0, 0}, {0, 0}, false}, timer);
    EXPECT_NO_THROW(timer.assertIsStopped());
    for (const Timer::Mode mode : {Timer::Last, Timer::Total}) {
        EXPECT_EQ(0, timer.getTimeInSecs(mode));
        EXPECT_EQ(0, timer.getTimeInMs(mode));
        EXPECT_EQ("0 s", timer.getTime(mode));
        EXPECT_EQ("0:00", timer.getTimeInMins(mode));
        EXPECT_EQ("0:00:00", timer.getTimeInHours(mode));
    }
}

TEST(TimerTest, StartNotesTheTime)
{
    FakeSystem system;
    system->now = {1000, 250};
    Timer timer;
    timer.start();
    expectFields({{1000, 250}, {0, 0}, {0, 0}, true}, timer);
}

TEST(TimerTest, IntervalsAreExact)
{
    struct Row
    {
        Mtime from;
        Mtime to;
        Mtime span;
    };
    const Row rows[] = {
        {{1000, 0}, {1001, 500}, {1, 500}},          {{1000, 999}, {1001, 0}, {0, 1}},
        {{1000, 500}, {1002, 499}, {1, 999}},        {{1000, 500}, {1002, 500}, {2, 0}},
        {{1000, 500}, {1002, 501}, {2, 1}},          {{1000, 500}, {1000, 500}, {0, 0}},
        {{1000, 500}, {1000, 499}, {-1, 999}},       {{1000, 0}, {998, 0}, {-2, 0}},
        {{1000, 200}, {998, 300}, {-2, 100}},        {{1000, 300}, {998, 200}, {-3, 900}},
        {{-1, 0}, {maxSeconds, 0}, {minSeconds, 0}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.from) + " to " + ::testing::PrintToString(row.to));
        FakeSystem system;
        Timer timer;
        run(timer, system, row.from, row.to);
        expectFields({{0, 0}, row.span, row.span, false}, timer);
    }
}

TEST(TimerTest, TotalIsTheSumOfAllIntervals)
{
    FakeSystem system;
    Timer timer;
    run(timer, system, {10, 0}, {11, 600});
    run(timer, system, {20, 0}, {22, 400});
    expectFields({{0, 0}, {2, 400}, {4, 0}, false}, timer);
    run(timer, system, {30, 1}, {30, 0});
    expectFields({{0, 0}, {-1, 999}, {3, 999}, false}, timer);
    EXPECT_EQ(-1, timer.getTimeInMs(Timer::Last));
    EXPECT_EQ(3999, timer.getTimeInMs(Timer::Total));
}

TEST(TimerTest, LatestIntervalStaysThroughTheNextOne)
{
    FakeSystem system;
    Timer timer;
    run(timer, system, {10, 0}, {12, 0});
    system->now = {50, 5};
    timer.start();
    expectFields({{50, 5}, {2, 0}, {2, 0}, true}, timer);
}

TEST(TimerTest, SecondStartBeginsTheIntervalAnew)
{
    // Required, Q-1115
    FakeSystem system;
    Timer timer;
    system->now = {10, 0};
    timer.start();
    run(timer, system, {15, 0}, {16, 500});
    expectFields({{0, 0}, {1, 500}, {1, 500}, false}, timer);
}

TEST(TimerTest, SecondStopChangesNothing)
{
    FakeSystem system;
    Timer timer;
    run(timer, system, {10, 0}, {12, 0});
    system->now = {100, 0};
    timer.stop();
    expectFields({{0, 0}, {2, 0}, {2, 0}, false}, timer);
}

TEST(TimerTest, StopWithoutStartChangesNothing)
{
    FakeSystem system;
    Timer timer;
    timer.stop();
    expectFields({{0, 0}, {0, 0}, {0, 0}, false}, timer);
}

TEST(TimerTest, ResetClearsAStoppedAndARunningWatch)
{
    FakeSystem system;
    Timer timer;
    run(timer, system, {10, 0}, {12, 0});
    timer.reset();
    expectFields({{0, 0}, {0, 0}, {0, 0}, false}, timer);
    run(timer, system, {10, 0}, {12, 0});
    timer.start();
    timer.reset();
    expectFields({{0, 0}, {0, 0}, {0, 0}, false}, timer);
    system->now = {50, 0};
    timer.stop(); // the start is forgotten
    expectFields({{0, 0}, {0, 0}, {0, 0}, false}, timer);
}

TEST(TimerTest, CopyRunsByItself)
{
    FakeSystem system;
    Timer timer;
    system->now = {10, 0};
    timer.start();
    Timer copy = timer;
    system->now = {12, 0};
    timer.stop();
    EXPECT_THROW(copy.assertIsStopped(), OperationFailedException);
    system->now = {13, 0};
    copy.stop();
    EXPECT_EQ(2, timer.getTimeInSecs(Timer::Last));
    EXPECT_EQ(3, copy.getTimeInSecs(Timer::Last));
}

TEST(TimerTest, RunningOneCannotBeReadAndSaysSoWithOneText)
{
    // Required, Q-1113
    FakeSystem system;
    Timer timer;
    timer.start();
    for (const int number : {0, 1, 7}) {
        const auto mode = static_cast<Timer::Mode>(number);
        const std::function<void()> readings[] = {
            [&] { timer.assertIsStopped(); }, [&] { timer.getTimeInSecs(mode); }, [&] { timer.getTimeInMs(mode); },
            [&] { timer.getTime(mode); },     [&] { timer.getTimeInMins(mode); }, [&] { timer.getTimeInHours(mode); },
        };
        for (const auto& reading : readings) {
            EXPECT_EQ("Timer::getTime(): Timer has not been stopped.", test::textOf<OperationFailedException>(reading));
        }
    }
    timer.stop();
    EXPECT_NO_THROW(timer.assertIsStopped());
    EXPECT_EQ("0 s", timer.getTime(Timer::Last));
}

TEST(TimerTest, SpanOfAnUnknownModeIsZero)
{
    // Required, Q-1114
    const Timer timer = timerOf({4000, 500});
    for (const int number : {2, -1, 100, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(number);
        const auto mode = static_cast<Timer::Mode>(number);
        EXPECT_EQ(0, timer.getTimeInSecs(mode));
        EXPECT_EQ(0, timer.getTimeInMs(mode));
        EXPECT_EQ("0 s", timer.getTime(mode));
        EXPECT_EQ("0:00", timer.getTimeInMins(mode));
        EXPECT_EQ("0:00:00", timer.getTimeInHours(mode));
    }
}

TEST(TimerTest, ModesReportTheirSpans)
{
    FakeSystem system;
    Timer timer;
    run(timer, system, {0, 0}, {3600, 750});
    run(timer, system, {0, 0}, {61, 500});
    EXPECT_EQ(61, timer.getTimeInSecs(Timer::Last));
    EXPECT_EQ(61500, timer.getTimeInMs(Timer::Last));
    EXPECT_EQ("1:01 min", timer.getTime(Timer::Last));
    EXPECT_EQ("1:01", timer.getTimeInMins(Timer::Last));
    EXPECT_EQ("0:01:01", timer.getTimeInHours(Timer::Last));
    EXPECT_EQ(3662, timer.getTimeInSecs(Timer::Total));
    EXPECT_EQ(3662250, timer.getTimeInMs(Timer::Total));
    EXPECT_EQ("1:01:02 h", timer.getTime(Timer::Total));
    EXPECT_EQ("61:02", timer.getTimeInMins(Timer::Total));
    EXPECT_EQ("1:01:02", timer.getTimeInHours(Timer::Total));
}

struct Texts
{
    Mtime span;
    const char* time;
    const char* minutes;
    const char* hours;
};

void expectTexts(const Texts& row)
{
    SCOPED_TRACE(::testing::PrintToString(row.span));
    const Timer timer = timerOf(row.span);
    for (const Timer::Mode mode : {Timer::Last, Timer::Total}) {
        EXPECT_EQ(row.time, timer.getTime(mode));
        EXPECT_EQ(row.minutes, timer.getTimeInMins(mode));
        EXPECT_EQ(row.hours, timer.getTimeInHours(mode));
    }
}

TEST(TimerTest, TextsOfSpans)
{
    // Required, Q-1116
    const Texts rows[] = {
        {{0, 0}, "0 s", "0:00", "0:00:00"},
        {{0, 999}, "0 s", "0:00", "0:00:00"},
        {{1, 500}, "1 s", "0:01", "0:00:01"},
        {{9, 0}, "9 s", "0:09", "0:00:09"},
        {{10, 0}, "10 s", "0:10", "0:00:10"},
        {{59, 999}, "59 s", "0:59", "0:00:59"},
        {{60, 0}, "1:00 min", "1:00", "0:01:00"},
        {{61, 0}, "1:01 min", "1:01", "0:01:01"},
        {{599, 0}, "9:59 min", "9:59", "0:09:59"},
        {{600, 0}, "10:00 min", "10:00", "0:10:00"},
        {{3599, 999}, "59:59 min", "59:59", "0:59:59"},
        {{3600, 0}, "1:00:00 h", "60:00", "1:00:00"},
        {{3661, 0}, "1:01:01 h", "61:01", "1:01:01"},
        {{6000, 0}, "1:40:00 h", "100:00", "1:40:00"},
        {{35999, 0}, "9:59:59 h", "599:59", "9:59:59"},
        {{36000, 0}, "10:00:00 h", "600:00", "10:00:00"},
        {{86400, 0}, "24:00:00 h", "1440:00", "24:00:00"},
        {{360000, 0}, "100:00:00 h", "6000:00", "100:00:00"},
        {{2147483647, 0}, "596523:14:07 h", "35791394:07", "596523:14:07"},
    };
    for (const Texts& row : rows) {
        expectTexts(row);
    }
}

TEST(TimerTest, TextsOfNegativeSpansHaveTheirSignInFront)
{
    const Texts rows[] = {
        {{-1, 999}, "-1 s", "-0:01", "-0:00:01"},
        {{-1, 0}, "-1 s", "-0:01", "-0:00:01"},
        {{-59, 0}, "-59 s", "-0:59", "-0:00:59"},
        {{-60, 0}, "-60 s", "-1:00", "-0:01:00"},
        {{-61, 0}, "-61 s", "-1:01", "-0:01:01"},
        {{-3661, 0}, "-3661 s", "-61:01", "-1:01:01"},
        {{-2147483647 - 1, 0}, "-2147483648 s", "-35791394:08", "-596523:14:08"},
    };
    for (const Texts& row : rows) {
        expectTexts(row);
    }
}

TEST(TimerTest, LongestSpansHaveTexts)
{
    const Timer longest = timerOf({maxSeconds, 999});
    const Timer shortest = timerOf({minSeconds, 0});
    const auto absolute = static_cast<unsigned long long>(maxSeconds) + 1;
    const auto twoDigits = [](unsigned long long number) { return std::to_string(100 + number).substr(1); };
    EXPECT_EQ(std::to_string(maxSeconds / 60) + ":07", longest.getTimeInMins(Timer::Last));
    EXPECT_EQ("-" + std::to_string(absolute / 60) + ":08", shortest.getTimeInMins(Timer::Last));
    EXPECT_EQ("-" + std::to_string(absolute / 3600) + ":" + twoDigits(absolute / 60 % 60) + ":08",
              shortest.getTimeInHours(Timer::Last));
    EXPECT_EQ(std::to_string(minSeconds) + " s", shortest.getTime(Timer::Last));
}

TEST(TimerTest, NumbersOfSpans)
{
    struct Row
    {
        Mtime span;
        int seconds;
        int milliseconds;
    };
    const Row rows[] = {
        {{1, 500}, 1, 1500},
        {{0, 999}, 0, 999},
        {{-1, 999}, -1, -1},
        {{-1, 0}, -1, -1000},
        {{-2, 250}, -2, -1750},
        {{2147483, 647}, 2147483, 2147483647},
        {{2147483, 648}, 2147483, -2147483647 - 1}, // one beyond the range
        {{-2147484, 352}, -2147484, -2147483647 - 1},
        {{-2147484, 351}, -2147484, 2147483647},
        {{4294967, 296}, 4294967, 0},
        {{2147483647, 0}, 2147483647, -1000},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.span));
        const Timer timer = timerOf(row.span);
        EXPECT_EQ(row.seconds, timer.getTimeInSecs(Timer::Last));
        EXPECT_EQ(row.milliseconds, timer.getTimeInMs(Timer::Last));
        EXPECT_EQ(row.milliseconds, timer.getTimeInMs(Timer::Total));
    }
}

TEST(TimerTest, NumbersKeepTheirLow32Bits)
{
    const Timer longest = timerOf({maxSeconds, 999});
    const Timer shortest = timerOf({minSeconds, 1});
    EXPECT_EQ(static_cast<int>(maxSeconds & 0xFFFFFFFF), longest.getTimeInSecs(Timer::Last));
    EXPECT_EQ(-1, longest.getTimeInMs(Timer::Last)); // (2^n - 1) * 1000 + 999, and 1000 * 2^n leaves no bits
    EXPECT_EQ(static_cast<int>(minSeconds & 0xFFFFFFFF), shortest.getTimeInSecs(Timer::Last));
    EXPECT_EQ(1, shortest.getTimeInMs(Timer::Last));
}

TEST(TimerTest, RandomIntervalsAddUp)
{
    std::mt19937 random(11);
    for (int i = 0; i < 2000; ++i) {
        FakeSystem system;
        Timer timer;
        long long total = 0;
        for (int interval = 0; interval < 10; ++interval) {
            const Mtime from{static_cast<std::time_t>(random() % 100000), static_cast<short>(random() % 1000)};
            const Mtime to{static_cast<std::time_t>(random() % 100000), static_cast<short>(random() % 1000)};
            run(timer, system, from, to);
            const long long last = (to.seconds - from.seconds) * 1000LL + to.milliseconds - from.milliseconds;
            total += last;
            ASSERT_EQ(last, timer.getTimeInMs(Timer::Last));
            ASSERT_EQ(total, timer.getTimeInMs(Timer::Total));
        }
    }
}

} // namespace
