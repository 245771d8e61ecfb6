#pragma once

/// \file
/// The local time zone of a test.

#include "support/Scratch.h"

#include <time.h>

#include <ctime>
#include <optional>
#include <string>

namespace KelvoBase::test
{

/// Makes `zone` (as in "EST5EDT", "UTC0") the time zone of the process for the life of the object.
class ScopedTimeZone
{
public:
    explicit ScopedTimeZone(const std::string& zone) : mZone(std::in_place, "TZ", zone) { notice(); }
    ~ScopedTimeZone()
    {
        mZone.reset();
        notice();
    }
    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    static void notice()
    {
#ifdef _WIN32
        _tzset();
#else
        tzset();
#endif
    }

    std::optional<ScopedEnvironment> mZone;
};

/// Whether the C run-time knows when summer is in a zone whose text names no dates. That of Wine does not.
inline bool knowsSummerTime()
{
    const ScopedTimeZone zone("EST5EDT");
    const std::time_t july = 1120190400;
    return std::localtime(&july)->tm_isdst > 0;
}

} // namespace KelvoBase::test
