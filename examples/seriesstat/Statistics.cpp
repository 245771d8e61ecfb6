#include "Statistics.h"

#include <algorithm>
#include <cmath>

namespace seriesstat
{

namespace
{

/// The power of two that brings a number of this size to between 1 and 2.
int scaleOf(double size)
{
    return size == 0 ? 0 : -std::ilogb(size);
}

int commonScale(const std::vector<DoubleDouble>& values)
{
    double largest = 0;
    for (const DoubleDouble& value : values) {
        largest = std::max(largest, std::abs(value.high));
    }
    return scaleOf(largest);
}

/// The double nearest to a result that was computed at a scale.
double unscaled(const DoubleDouble& result, int scale)
{
    const DoubleDouble value = scaled(result, -scale);
    return value.high + value.low;
}

DoubleDouble number(std::size_t n)
{
    return {static_cast<double>(n)};
}

/// Mean, standard deviation and autocorrelation.
void summarizeMoments(const std::vector<DoubleDouble>& values, Summary& summary)
{
    const int scale = commonScale(values);
    // Differences from a value of the series: equal values then give exactly 0, whatever their mean is rounded to.
    const DoubleDouble origin = scaled(values.front(), scale);
    DoubleDouble sum;
    for (const DoubleDouble& value : values) {
        sum = sum + (scaled(value, scale) - origin);
    }
    const DoubleDouble offset = sum / number(values.size());

    DoubleDouble squares;
    DoubleDouble products;
    DoubleDouble before;
    for (const DoubleDouble& value : values) {
        const DoubleDouble difference = (scaled(value, scale) - origin) - offset;
        squares = squares + difference * difference;
        products = products + difference * before;
        before = difference;
    }

    summary.mean = unscaled(origin + offset, scale);
    if (values.size() > 1) {
        summary.deviation = unscaled(sqrt(squares / number(values.size() - 1)), scale);
    }
    if (squares.high > 0) {
        summary.autocorrelation = (products / squares).high;
    }
}

/// The value a number of quarters of the way from the first to the last of the sorted values.
double quantile(const std::vector<DoubleDouble>& sorted, std::size_t quarters)
{
    const std::size_t steps = (sorted.size() - 1) * quarters;
    const DoubleDouble& below = sorted[steps / 4];
    if (steps % 4 == 0) {
        return below.high;
    }
    const DoubleDouble& above = sorted[steps / 4 + 1];
    const int scale = scaleOf(std::max(std::abs(below.high), std::abs(above.high)));
    const DoubleDouble from = scaled(below, scale);
    const DoubleDouble fraction{static_cast<double>(steps % 4) / 4};
    return unscaled(from + fraction * (scaled(above, scale) - from), scale);
}

} // namespace

Summary summarize(std::vector<DoubleDouble> values)
{
    Summary summary;
    summary.count = values.size();
    summarizeMoments(values, summary);
    std::sort(values.begin(), values.end());
    summary.minimum = values.front().high;
    summary.lowerQuartile = quantile(values, 1);
    summary.median = quantile(values, 2);
    summary.upperQuartile = quantile(values, 3);
    summary.maximum = values.back().high;
    return summary;
}

} // namespace seriesstat
