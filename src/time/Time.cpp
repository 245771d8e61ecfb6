#include "time/DateText.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Time.h>

#include <algorithm>
#include <array>
#include <limits>
#include <type_traits>

namespace KelvoBase
{

namespace
{

constexpr const char* noDate = "Could not convert date: ";

// Required (Q-1101, Q-1102): the conversion character of strftime is the percent sign. With it the results would be
// names in the language of the locale; tools show these two characters.
constexpr const char* weekDayFormat = "+a";
constexpr const char* monthFormat = "+b";

constexpr int yearOffset = 1900; // of std::tm
constexpr std::size_t textLimit = 64;

/// Sums and differences of seconds wrap around.
using Seconds = std::make_unsigned_t<std::time_t>;

/// The local time; all zero if the system cannot express it or the year does not fit the getters.
std::tm localTime(std::time_t seconds)
{
    const std::tm* local = std::localtime(&seconds);
    if (!local || local->tm_year > std::numeric_limits<int>::max() - yearOffset) {
        return {};
    }
    return *local;
}

std::string formatted(const std::tm& local, const char* format)
{
    static std::array<char, textLimit> buffer;
    buffer.fill('\0');
    // Required (Q-1103): a text that does not fit is not tried again with more room; what stands in the buffer counts.
    std::strftime(buffer.data(), buffer.size(), format, &local);
    buffer.back() = '\0';
    return buffer.data();
}

/// ":" and a number of two digits.
std::string behindColon(std::time_t number)
{
    return (number < 10 ? ":0" : ":") + std::to_string(number);
}

bool isWithin(int value, int lower, int upper)
{
    return lower <= value && value <= upper;
}

[[noreturn]] void throwNoDate(const std::string& date)
{
    throw OperationFailedException(noDate + date);
}

} // namespace

constinit const Time::Mtime_t Time::oneDay{86400, 0};

Time::Mtime_t& Time::Mtime_t::operator+=(const Mtime_t& o)
{
    const int sum = milliseconds + o.milliseconds;
    const bool carry = sum > 999;
    seconds = static_cast<std::time_t>(Seconds(seconds) + Seconds(o.seconds) + Seconds(carry));
    milliseconds = static_cast<short>(carry ? sum - 1000 : sum);
    return *this;
}

Time::Mtime_t& Time::Mtime_t::operator-=(const Mtime_t& o)
{
    const int difference = milliseconds - o.milliseconds;
    const bool borrow = difference < 0;
    seconds = static_cast<std::time_t>(Seconds(seconds) - Seconds(o.seconds) - Seconds(borrow));
    milliseconds = static_cast<short>(borrow ? difference + 1000 : difference);
    return *this;
}

bool Time::Mtime_t::operator<(const Mtime_t& o) const
{
    return seconds != o.seconds ? seconds < o.seconds : milliseconds < o.milliseconds;
}

bool Time::Mtime_t::operator>(const Mtime_t& o) const
{
    return o < *this;
}

bool Time::Mtime_t::operator==(const Mtime_t& o) const
{
    return seconds == o.seconds && milliseconds == o.milliseconds;
}

Time::Time() : mTime{0, 0} {}

Time::Time(const Mtime_t& time) : mTime(time) {}

Time::Time(std::time_t seconds) : mTime{seconds, 0} {}

const Time::Mtime_t& Time::getMtime() const
{
    return mTime;
}

int Time::getYear() const
{
    return localTime(mTime.seconds).tm_year + yearOffset;
}

int Time::getMonth() const
{
    return localTime(mTime.seconds).tm_mon + 1;
}

int Time::getDay() const
{
    return localTime(mTime.seconds).tm_mday;
}

int Time::getHour() const
{
    return localTime(mTime.seconds).tm_hour;
}

int Time::getMinute() const
{
    return localTime(mTime.seconds).tm_min;
}

int Time::getSecond() const
{
    // Required (Q-1104): a leap second has the number of the second before it, so that no caller ever sees 60.
    return std::min(localTime(mTime.seconds).tm_sec, 59);
}

long Time::getDayNumber() const
{
    // Required (Q-1105): cut towards zero. Rounding down would move every time before 1970 by a day.
    return static_cast<long>(mTime.seconds / oneDay.seconds);
}

void Time::setByDateString(const std::string& date)
{
    const std::optional<DateNumbers> numbers = scanDate(date.c_str());
    if (!numbers) {
        throwNoDate(date);
    }
    auto [year, month, day] = *numbers;
    // Required (Q-1106): the day is not held against its month; mktime runs on into the next one.
    if (!isWithin(year, 0, 3000) || !isWithin(month, 1, 12) || !isWithin(day, 1, 31)) {
        throwNoDate(date);
    }
    if (year <= 99) {
        year += 2000; // Required (Q-1107): also for 70 to 99, which elsewhere count from 1900
    }
    static std::tm record;
    // Required (Q-1108): the daylight flag is cleared with the rest. With -1 there, mktime would find midnight itself;
    // now a date in summer begins an hour later where the clocks change.
    record = {};
    record.tm_year = year - yearOffset;
    record.tm_mon = month - 1;
    record.tm_mday = day;
    mTime = {std::mktime(&record), 0};
}

std::string Time::strf(const std::string& format) const
{
    return formatted(localTime(mTime.seconds), format.c_str());
}

std::string Time::getWeekDayString() const
{
    return strf(weekDayFormat);
}

std::string Time::getMonthString() const
{
    return strf(monthFormat);
}

std::string Time::getDate() const
{
    return strf("%Y-%m-%d");
}

std::string Time::getTime() const
{
    return strf("%H:%M:%S");
}

std::string Time::toTimeString() const
{
    const std::time_t seconds = mTime.seconds;
    // Required (Q-1109): a negative span of any length stands here; its absolute value is not split up.
    if (seconds < 60) {
        return std::to_string(seconds) + " s";
    }
    if (seconds < 3600) {
        return std::to_string(seconds / 60) + behindColon(seconds % 60) + " min";
    }
    return std::to_string(seconds / 3600) + behindColon(seconds / 60 % 60) + behindColon(seconds % 60) + " h";
}

} // namespace KelvoBase
