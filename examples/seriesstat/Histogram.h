#pragma once

/// \file
/// How often values fall into which range.

#include "Statistics.h"

#include <cstddef>
#include <vector>

namespace seriesstat
{

/// Bins of equal width from the smallest to the largest value.
///
/// A bin holds the values from its lower edge up to, but not including, its upper edge; the last one holds its upper
/// edge, too. Values that are all equal are one bin without width.
struct Histogram
{
    std::vector<double> edges{};       ///< ascending, one more than bins
    std::vector<std::size_t> counts{}; ///< at least one
};

/// No histogram has more bins than this.
constexpr std::size_t mostBins = 100;

/// How many bins a series gets: so many that none is wider than the rule of Freedman and Diaconis wants it, which is
/// twice the range between the quartiles divided by the cube root of the count. Where the quartiles are equal, Sturges'
/// rule holds: 1 + log2 of the count, rounded up. One bin if all values are equal; never more than `mostBins`.
std::size_t binsFor(const Summary& summary);

/// REQUIRES: `summary` is that of `values`.
Histogram histogramOf(const std::vector<double>& values, const Summary& summary);

} // namespace seriesstat
