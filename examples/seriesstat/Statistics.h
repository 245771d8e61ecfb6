#pragma once

/// \file
/// Descriptive statistics of one series.

#include "DoubleDouble.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace seriesstat
{

/// What is said about a series of n values y. A field without value is not defined for that series.
struct Summary
{
    std::size_t count = 0;
    double mean = 0;
    /// Standard deviation of a sample, with n - 1; none for a single value. Infinite where no double can hold it.
    std::optional<double> deviation{};
    /// The sum of (y[i] - mean) (y[i-1] - mean) divided by the sum of (y[i] - mean)^2; none if all values are equal.
    std::optional<double> autocorrelation{};
    double minimum = 0;
    double lowerQuartile = 0;
    double median = 0;
    double upperQuartile = 0;
    double maximum = 0;
};

/// REQUIRES: at least one value, all of them finite.
///
/// Quartiles stand at the position 1 + p (n - 1) of the sorted values, p being 0.25, 0.5 and 0.75; between two values
/// they are interpolated linearly.
///
/// All sums are made of differences, in about 30 digits, so that neither a large common offset nor a long series costs
/// digits; values are scaled by a power of two, so that no square leaves the range.
Summary summarize(std::vector<DoubleDouble> values);

} // namespace seriesstat
