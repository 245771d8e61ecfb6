#pragma once

/// \file
/// Trace lines about the progress of the work.

#include <ostream>

namespace seriesstat
{

/// The trace, ready for a line at the level "verbose" in an area of the tool's own.
///
/// The tool's file TraceAreas.ini has to be installed for the area to exist. Without it, or with another one in front
/// of it, the first of the built-in areas below stands in, as far as it is known:
///
///     readingProgress()    SeriesReading    App
///     summaryProgress()    SeriesSummary    Numerics, App
std::ostream& readingProgress();
std::ostream& summaryProgress();

} // namespace seriesstat
