#include "Progress.h"

#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <bitset>
#include <initializer_list>

namespace seriesstat
{

namespace
{

using KelvoBase::Trace;
using KelvoBase::TraceArea;
using KelvoBase::TraceAreaEntry;
using KelvoBase::TraceAreaMgr;
using KelvoBase::TraceStream;

/// The label of the first area that this deployment knows.
const std::bitset<64>& firstKnown(std::initializer_list<const char*> names)
{
    for (const char* name : names) {
        if (const TraceAreaEntry* entry = TraceAreaMgr::instance()->searchId(name)) {
            return entry->mask;
        }
    }
    return TraceArea::App();
}

std::ostream& progress(std::initializer_list<const char*> names)
{
    TraceStream& trace = TraceStream::instance();
    trace.setNextTraceConditions(Trace::verbose, firstKnown(names));
    return trace;
}

} // namespace

std::ostream& readingProgress()
{
    return progress({"SeriesReading"});
}

std::ostream& summaryProgress()
{
    return progress({"SeriesSummary", "Numerics"});
}

} // namespace seriesstat
