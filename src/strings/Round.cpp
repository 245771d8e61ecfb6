#include <kelvobase/Strings.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace KelvoBase
{

namespace
{

constexpr int exactPowers = 22;

/// The powers that matter to ordinary numbers, so that every platform computes with the same ones: not every C
/// library's `pow` gives the nearest number for each of them.
constexpr std::array<double, 2 * exactPowers + 1> powers{
    1e-22, 1e-21, 1e-20, 1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9, 1e-8,
    1e-7,  1e-6,  1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,  1e7,
    1e8,   1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,  1e16,  1e17,  1e18,  1e19,  1e20,  1e21, 1e22};
static_assert(powers[exactPowers] == 1.0);

double powerOfTen(std::int64_t exponent)
{
    if (exponent >= -exactPowers && exponent <= exactPowers) {
        return powers[static_cast<std::size_t>(exponent + exactPowers)];
    }
    return std::pow(10.0, static_cast<double>(exponent));
}

/// The low 32 bits of `value` cut to a 64-bit integer. What fits no such integer, and what is no number, becomes the
/// lowest one, whose low bits are 0.
std::int32_t truncate(double value)
{
    constexpr double limit = 9223372036854775808.0;
    if (!(value >= -limit && value < limit)) {
        return 0;
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(value)));
}

} // namespace

double round(double value, unsigned int digits)
{
    const double sign = value < 0 ? -1.0 : 1.0;
    const std::int64_t places = digits;
    double x = value * sign;
    double acc = 0.0;
    // Required: digit by digit, so that the last place can differ from a library's rounding, and so that the
    // first power is infinite from 1e308 on, which makes the result NaN. Either change would give other numbers.
    for (std::int64_t i = truncate(std::log10(x) + 1.0); i >= -places; --i) {
        const double p = powerOfTen(i);
        if (p == 0.0 || x == 0.0) {
            break; // all that follow add nothing
        }
        const double part = truncate(x / p) * p;
        acc += part;
        x -= part;
    }
    const double unit = powerOfTen(-places);
    if (static_cast<std::uint32_t>(truncate(powerOfTen(places + 1) * x)) > 4) {
        acc += unit;
    }
    // Required: zero without the sign. Returning `sign * acc` would write "-0" for small negative numbers.
    return unit > acc ? 0.0 : sign * acc;
}

} // namespace KelvoBase
