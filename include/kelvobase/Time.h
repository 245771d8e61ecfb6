#pragma once

/// \file
/// Calendar time with millisecond resolution. `System::now()` is the only source of the current time.
/// For one thread at a time: the text operations share static buffers, and `localtime` has one of its own.

#include <kelvobase/Export.h>

#include <ctime>
#include <string>

namespace KelvoBase
{

/// A point in time, or a span of time, in seconds and milliseconds. A plain value. Calendar fields and texts are those
/// of the local time zone (`TZ`).
///
///     Time t;
///     t.setByDateString("2005-02-31");
///     t.getDate();                 // "2005-03-03"
///     Time(3661).toTimeString();   // "1:01:01 h"
class KELVOBASE_API Time
{
public:
    /// Seconds since the epoch, or of a span, and milliseconds: 0 to 999 behind every operator.
    ///
    /// An aggregate: `Time::Mtime_t{5, 250}`. `seconds` has the platform's `std::time_t`: 32 bits on 32-bit
    /// Windows, 64 bits on Linux. Sums that leave the range of a field wrap around.
    struct KELVOBASE_API Mtime_t
    {
        std::time_t seconds;
        short milliseconds;

        /// Carries when the milliseconds add up to more than 999: `{1, 999} += {0, 1}` => `{2, 0}`.
        Mtime_t& operator+=(const Mtime_t& o);
        /// Borrows when `o` has more milliseconds: `{1, 0} -= {0, 1}` => `{0, 999}`. So a negative span counts its
        /// milliseconds upwards: `{0, 0} -= {0, 1}` => `{-1, 999}`.
        Mtime_t& operator-=(const Mtime_t& o);
        /// Seconds first, milliseconds only if those are equal.
        bool operator<(const Mtime_t& o) const;
        bool operator>(const Mtime_t& o) const;
        bool operator==(const Mtime_t& o) const;
    };

    /// 86400 seconds.
    static const Mtime_t oneDay;

    /// All zero.
    Time();
    explicit Time(const Mtime_t& time);
    /// `seconds`, and 0 milliseconds.
    explicit Time(std::time_t seconds);

    const Mtime_t& getMtime() const;

    /// \name The fields of the local time.
    /// A time that the system cannot express as a date gives the fields of an all-zero record: year 1900, month 1,
    /// day 0, time 0:00:00.
    /// @{
    int getYear() const;
    /// 1 to 12.
    int getMonth() const;
    /// 1 to 31.
    int getDay() const;
    int getHour() const;
    int getMinute() const;
    /// 0 to 59. Required (Q-1104): a leap second is folded into the second before it.
    int getSecond() const;
    /// @}

    /// Seconds divided by 86400, without regard to the time zone. Required (Q-1105): cut towards zero, so -1 => 0.
    long getDayNumber() const;

    /// Sets the start of a day in local standard time from "year-month-day". White space and a sign may stand in front
    /// of each number, nothing between a number and the hyphen behind it; text behind the third number is ignored.
    /// Years 0 to 3000, months 1 to 12, days 1 to 31. What `mktime` answers stands, also where it fails (-1).
    ///   - Required (Q-1106): the day is not held against the month: "2005-02-31" => 3 March 2005.
    ///   - Required (Q-1107): a year up to 99 counts from 2000: "99-1-1" => 2099; "100-1-1" => the year 100.
    ///   - Required (Q-1108): daylight saving time is never assumed: in a zone that keeps it, a date in summer gives
    ///     1 o'clock of that day.
    /// Throws `OperationFailedException("Could not convert date: " + date)` and changes nothing.
    void setByDateString(const std::string& date);

    /// The local time through `strftime`. Required (Q-1103): the text is limited to 63 bytes; for a longer one the
    /// result is what `strftime` leaves in its buffer, which was cleared before.
    std::string strf(const std::string& format) const;
    /// Required (Q-1101): the two characters "+a", on every day.
    std::string getWeekDayString() const;
    /// Required (Q-1102): the two characters "+b", in every month.
    std::string getMonthString() const;
    /// "2005-03-03".
    std::string getDate() const;
    /// "23:59:00".
    std::string getTime() const;

    /// The seconds as a span of time; the milliseconds are not looked at. Required (Q-1109): a negative span stays in
    /// seconds, however long it is.
    ///
    ///     59 => "59 s"    60 => "1:00 min"    3599 => "59:59 min"    3600 => "1:00:00 h"    -3600 => "-3600 s"
    std::string toTimeString() const;

private:
    Mtime_t mTime;
};

} // namespace KelvoBase
