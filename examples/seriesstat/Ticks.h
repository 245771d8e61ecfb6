#pragma once

/// \file
/// Axes and the round numbers along them.

#include <cstddef>
#include <string>
#include <vector>

namespace seriesstat
{

/// The range that an axis covers.
struct Axis
{
    double low = 0;
    double high = 1;
};

/// An axis for values from `low` to `high`. It is that range, unless hardly any double lies in between: then it is
/// wider, so that there is something to see.
Axis axisFor(double low, double high);

/// Where a value stands on an axis: 0 at its low end, 1 at its high end.
double placeOn(const Axis& axis, double value);

/// A round number on an axis.
struct Tick
{
    double value = 0;      ///< the double nearest to the text
    std::string text = ""; ///< "299.65", "-4", or "1.5e-300" where that is shorter
};

/// All multiples of a step that lie on the axis, ascending. The step is the smallest 1, 2 or 5 times a power of ten,
/// that of `leastExponent` or a greater one, with which they are not more than `most`.
///
/// REQUIRES: an axis that `axisFor` made, or one from 0 to a whole number with `leastExponent` 0; `most` is not 0.
std::vector<Tick> roundTicks(const Axis& axis, std::size_t most, int leastExponent = -308);

} // namespace seriesstat
