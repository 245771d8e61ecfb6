#pragma once

/// \file
/// What a run has found, for everything that tells it.

#include "Statistics.h"

#include <string>
#include <vector>

namespace seriesstat
{

/// One series and what was found out about it.
struct SeriesResult
{
    std::string name;             ///< the native path, as it is printed
    std::string digest{};         ///< SHA-1 of the bytes of the file, 40 hexadecimal digits
    Summary summary{};            ///< of all values
    std::vector<double> values{}; ///< in the order of the file; empty unless a report needs them
};

/// What a run has found.
struct Results
{
    std::string quantity{};
    std::vector<SeriesResult> series{}; ///< at least one
    double seconds = 0;                 ///< wall-clock time of reading and summarizing
};

} // namespace seriesstat
