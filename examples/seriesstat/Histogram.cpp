#include "Histogram.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace seriesstat
{

namespace
{

/// How many times the range between the quartiles goes into the whole range. Infinite if the quartiles are equal.
double spreadOf(const Summary& summary)
{
    const double size = std::max(std::abs(summary.minimum), std::abs(summary.maximum));
    const int scale = -std::ilogb(size); // to between 1 and 2, so that no difference leaves the range of numbers
    const auto range = [scale](double from, double to) { return std::ldexp(to, scale) - std::ldexp(from, scale); };
    return range(summary.minimum, summary.maximum) / range(summary.lowerQuartile, summary.upperQuartile);
}

} // namespace

std::size_t binsFor(const Summary& summary)
{
    if (summary.minimum == summary.maximum) {
        return 1;
    }
    if (summary.lowerQuartile == summary.upperQuartile) {
        return std::min<std::size_t>(1 + static_cast<std::size_t>(std::bit_width(summary.count - 1)), mostBins);
    }
    const double bins = std::ceil(spreadOf(summary) * std::cbrt(static_cast<double>(summary.count)) / 2);
    return static_cast<std::size_t>(std::min(bins, static_cast<double>(mostBins)));
}

Histogram histogramOf(const std::vector<double>& values, const Summary& summary)
{
    Histogram histogram;
    const std::size_t bins = binsFor(summary);
    for (std::size_t i = 0; i <= bins; ++i) {
        const double share = static_cast<double>(i) / static_cast<double>(bins);
        histogram.edges.push_back(std::lerp(summary.minimum, summary.maximum, share));
    }
    histogram.counts.resize(bins);
    const auto begin = histogram.edges.begin() + 1;
    for (const double value : values) {
        const auto upper = std::upper_bound(begin, histogram.edges.end() - 1, value);
        ++histogram.counts[static_cast<std::size_t>(upper - begin)];
    }
    return histogram;
}

} // namespace seriesstat
