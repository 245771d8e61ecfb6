#pragma once

/// \file
/// Numbers of about 30 digits, as the unevaluated sum of two doubles.
///
/// Every operation keeps what rounding to double takes away. So sums over long series lose nothing that shows, and the
/// difference between 10000000.1 and 10000000.2 is 0.1 to the last digit, which it is not between the two doubles.

#include <cfloat>
#include <cmath>

namespace seriesstat
{

static_assert(FLT_EVAL_METHOD == 0, "wider intermediate results break this arithmetic: on x86 use -mfpmath=sse");

/// `high` is the double nearest to the number, `low` what is missing.
struct DoubleDouble
{
    double high = 0;
    double low = 0;
};

/// The exact sum of two doubles.
inline DoubleDouble sumOf(double a, double b)
{
    const double sum = a + b;
    const double shareOfB = sum - a;
    return {sum, (a - (sum - shareOfB)) + (b - shareOfB)};
}

/// The exact product of two doubles of less than 1e300. Each factor is cut into halves whose products are exact.
inline DoubleDouble productOf(double a, double b)
{
    constexpr double cut = 134217729; // 2^27 + 1
    const double highA = cut * a - (cut * a - a);
    const double highB = cut * b - (cut * b - b);
    const double lowA = a - highA;
    const double lowB = b - highB;
    const double product = a * b;
    return {product, ((highA * highB - product) + highA * lowB + lowA * highB) + lowA * lowB};
}

inline DoubleDouble operator+(const DoubleDouble& a, const DoubleDouble& b)
{
    const DoubleDouble high = sumOf(a.high, b.high);
    const DoubleDouble low = sumOf(a.low, b.low);
    const DoubleDouble rough = sumOf(high.high, high.low + low.high);
    return sumOf(rough.high, rough.low + low.low);
}

inline DoubleDouble operator-(const DoubleDouble& a)
{
    return {-a.high, -a.low};
}

inline DoubleDouble operator-(const DoubleDouble& a, const DoubleDouble& b)
{
    return a + -b;
}

inline DoubleDouble operator*(const DoubleDouble& a, const DoubleDouble& b)
{
    const DoubleDouble high = productOf(a.high, b.high);
    return sumOf(high.high, high.low + (a.high * b.low + a.low * b.high));
}

/// Long division, the digits being doubles.
inline DoubleDouble operator/(const DoubleDouble& a, const DoubleDouble& b)
{
    const double first = a.high / b.high;
    return sumOf(first, (a - b * DoubleDouble{first}).high / b.high);
}

inline bool operator<(const DoubleDouble& a, const DoubleDouble& b)
{
    return a.high < b.high || (a.high == b.high && a.low < b.low);
}

/// `a` must not be negative. One step of Newton's from the root of the nearest double.
inline DoubleDouble sqrt(const DoubleDouble& a)
{
    const double root = std::sqrt(a.high);
    if (root == 0) {
        return {};
    }
    return sumOf(root, (a - productOf(root, root)).high / (2 * root));
}

/// `a` times two to the power of `exponent`.
inline DoubleDouble scaled(const DoubleDouble& a, int exponent)
{
    return {std::ldexp(a.high, exponent), std::ldexp(a.low, exponent)};
}

} // namespace seriesstat
