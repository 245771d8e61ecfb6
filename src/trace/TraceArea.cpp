#include "trace/UnknownArea.h"

#include <kelvobase/TraceArea.h>

namespace KelvoBase
{

namespace
{

const std::bitset<64>& maskOf(const char* name)
{
    const TraceAreaMgr* registry = TraceAreaMgr::instance();
    if (registry == nullptr) {
        throwUnknownArea(name);
    }
    return registry->getTraceAreaMask(name);
}

} // namespace

// Required: each accessor copies its mask at the first call that finds it, for the life of the process. Asking
// the registry each time would fail behind `teardown`, where what is destroyed last still traces; it would also cost
// every message a look-up. A look-up that throws leaves the static unset, so the next call asks again.

const std::bitset<64>& TraceArea::Searches()
{
    static const std::bitset<64> mask = maskOf("Searches");
    return mask;
}

const std::bitset<64>& TraceArea::Learners()
{
    static const std::bitset<64> mask = maskOf("Learners");
    return mask;
}

const std::bitset<64>& TraceArea::Summaries()
{
    static const std::bitset<64> mask = maskOf("Summaries");
    return mask;
}

const std::bitset<64>& TraceArea::Numerics()
{
    static const std::bitset<64> mask = maskOf("Numerics");
    return mask;
}

const std::bitset<64>& TraceArea::Outline()
{
    static const std::bitset<64> mask = maskOf("Outline");
    return mask;
}

const std::bitset<64>& TraceArea::App()
{
    static const std::bitset<64> mask = maskOf("App");
    return mask;
}

const std::bitset<64>& TraceArea::KelvoBase()
{
    static const std::bitset<64> mask = maskOf("KelvoBase");
    return mask;
}

const std::bitset<64>& TraceArea::All()
{
    // No registry can say anything else, and messages for all areas must be possible without one.
    static constexpr std::bitset<64> all(~0ULL);
    if (TraceAreaMgr::instance() == nullptr) {
        return all;
    }
    static const std::bitset<64> mask = maskOf("All");
    return mask;
}

const std::bitset<64>& TraceArea::Undef()
{
    static constexpr std::bitset<64> undef(1ULL << 63);
    return undef;
}

} // namespace KelvoBase
