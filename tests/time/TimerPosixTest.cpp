#include <kelvobase/System.h>
#include <kelvobase/Timer.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace
{

using namespace KelvoBase;

TEST(TimerPosixTest, SystemsClockIsTheClock)
{
    Timer timer;
    const Time::Mtime_t before = System::instance().now();
    timer.start();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    timer.stop();
    Time::Mtime_t around = System::instance().now();
    around -= before;
    EXPECT_GE(timer.getTimeInMs(Timer::Last), 29);
    EXPECT_LE(timer.getTimeInMs(Timer::Last), around.seconds * 1000 + around.milliseconds);
    EXPECT_EQ(timer.getTimeInMs(Timer::Last), timer.getTimeInMs(Timer::Total));
}

} // namespace
