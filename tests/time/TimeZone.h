#pragma once

/// \file
/// The local time zone of a test.

#include "support/Scratch.h"

#include <time.h>

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

} // namespace KelvoBase::test
