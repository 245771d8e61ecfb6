#pragma once

/// \file
/// A stop-watch. `System::now()` is its clock, so it follows every step of the system's time.

#include <kelvobase/Export.h>
#include <kelvobase/Time.h>

#include <string>

namespace KelvoBase
{

/// Adds up run times and prints them for humans. A plain value.
///
///     Timer timer;
///     timer.start();
///     work();
///     timer.stop();
///     timer.getTime(Timer::Last);          // "1:05 min"
///     timer.getTimeInMins(Timer::Total);   // "1:05"
///
/// Stopped when new. A clock that is set back gives a negative interval, which is counted like any other one.
class KELVOBASE_API Timer
{
public:
    /// Which span a getter reports. Required (Q-1114): any other value is no error, its span is zero.
    enum Mode : int
    {
        Last = 0, ///< the latest interval
        Total = 1 ///< the sum of all intervals since the last `reset`
    };

    /// All zero, and stopped.
    Timer();

    /// Starts an interval. Required (Q-1115): the start of a running watch begins the interval anew; the time since the
    /// first start is lost.
    void start();
    /// Ends the interval: it becomes the latest one and is added to the total. Of a stopped watch: changes nothing.
    void stop();
    /// Back to what a new one is, also if it runs.
    void reset();

    /// Throws `OperationFailedException("Timer::getTime(): Timer has not been stopped.")` while the watch runs.
    /// Required (Q-1113): the text names `getTime`, whichever operation was called.
    void assertIsStopped() const;

    /// \name The length of a span
    /// Each calls `assertIsStopped` first. Milliseconds of a negative span count upwards, as in `Time::Mtime_t`: 1 ms
    /// less than nothing is -1 s and 999 ms. A number beyond the range of `int` keeps its low 32 bits.
    ///
    ///     span                getTimeInSecs  getTimeInMs  getTime        getTimeInMins  getTimeInHours
    ///     1 s 500 ms          1              1500         "1 s"          "0:01"         "0:00:01"
    ///     6000 s              6000           6000000      "1:40:00 h"    "100:00"       "1:40:00"
    ///     -1 s 999 ms         -1             -1           "-1 s"         "-0:01"        "-0:00:01"
    ///     of an unknown Mode  0              0            "0 s"          "0:00"         "0:00:00"
    /// @{

    /// The seconds; milliseconds are dropped.
    int getTimeInSecs(Mode mode) const;
    /// Seconds times 1000 plus milliseconds.
    int getTimeInMs(Mode mode) const;
    /// `Time::toTimeString` of the seconds.
    std::string getTime(Mode mode) const;
    /// Minutes, without limit, ":", two digits of seconds. Required (Q-1116): without a unit, unlike `getTime`. The
    /// sign of negative seconds stands in front of the whole, here and below.
    std::string getTimeInMins(Mode mode) const;
    /// Hours, without limit, ":", two digits of minutes, ":", two digits of seconds. Without a unit (Q-1116).
    std::string getTimeInHours(Mode mode) const;
    /// @}

private:
    Time::Mtime_t getSpan(Mode mode) const;

    Time::Mtime_t mStart{0, 0}; // zero while stopped
    Time::Mtime_t mLast{0, 0};
    Time::Mtime_t mTotal{0, 0};
    bool mRunning = false;
};

} // namespace KelvoBase
