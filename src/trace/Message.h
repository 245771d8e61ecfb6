#pragma once

/// \file
/// How the library's own sources open a trace message:
///
///     traceMessage(Trace::verbose, TraceArea::KelvoBase()) << "removing file:" << std::endl;
///
/// The stream comes to life with the first message, never before: a program that has nothing to say does not pay for
/// it.

#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <bitset>
#include <ostream>

namespace KelvoBase
{

/// Sets the conditions of the text that follows and gives the stream to insert it into.
inline std::ostream& traceMessage(unsigned int level, const std::bitset<64>& area)
{
    static TraceStream& trace = TraceStream::instance();
    trace.setNextTraceConditions(level, area);
    return trace;
}

} // namespace KelvoBase
