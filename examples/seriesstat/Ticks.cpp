#include "Ticks.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace seriesstat
{

namespace
{

using Limits = std::numeric_limits<double>;

/// A decimal number, exactly: digits times ten to the power of the exponent.
struct RoundNumber
{
    long long digits = 0;
    int exponent = 0;
};

/// The double nearest to it.
double valueOf(const RoundNumber& number)
{
    const std::string text = std::to_string(number.digits) + "e" + std::to_string(number.exponent);
    double value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool tooLarge = read.ec != std::errc() && number.exponent > 0;
    return tooLarge ? std::copysign(Limits::infinity(), static_cast<double>(number.digits)) : value;
}

/// The multiples of a step on the axis.
std::vector<RoundNumber> multiplesOf(const RoundNumber& step, const Axis& axis)
{
    std::vector<RoundNumber> multiples;
    // Division is off by less than one step, and the nearest doubles decide.
    const auto first = static_cast<long long>(std::floor(axis.low / valueOf(step))) - 1;
    for (long long factor = first;; ++factor) {
        const RoundNumber multiple{factor * step.digits, step.exponent};
        const double value = valueOf(multiple);
        if (value > axis.high) {
            return multiples;
        }
        if (value >= axis.low) {
            multiples.push_back(multiple);
        }
    }
}

std::vector<RoundNumber> roundNumbers(const Axis& axis, std::size_t most, int leastExponent)
{
    const auto parts = static_cast<double>(most);
    const double step = axis.high / parts - axis.low / parts;
    int exponent = std::max(static_cast<int>(std::floor(std::log10(step))), leastExponent);
    for (;; ++exponent) {
        for (const int digits : {1, 2, 5}) {
            std::vector<RoundNumber> found = multiplesOf({digits, exponent}, axis);
            if (found.size() <= most) {
                return found;
            }
        }
    }
}

/// "-0.05", "20", "0".
std::string plainText(const RoundNumber& number)
{
    std::string digits = std::to_string(std::abs(number.digits));
    if (number.exponent < 0) {
        const auto behindPoint = static_cast<std::size_t>(-number.exponent);
        if (digits.size() <= behindPoint) {
            digits.insert(0, behindPoint + 1 - digits.size(), '0');
        }
        digits.insert(digits.size() - behindPoint, ".");
    } else if (number.digits != 0) {
        digits.append(static_cast<std::size_t>(number.exponent), '0');
    }
    return number.digits < 0 ? "-" + digits : digits;
}

/// "-5e-2", "1.25e301", "0".
std::string shortText(const RoundNumber& number)
{
    if (number.digits == 0) {
        return "0";
    }
    std::string digits = std::to_string(std::abs(number.digits));
    const int exponent = number.exponent + static_cast<int>(digits.size()) - 1;
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.size() > 1) {
        digits.insert(1, ".");
    }
    return (number.digits < 0 ? "-" : "") + digits + "e" + std::to_string(exponent);
}

using Writer = std::string (*)(const RoundNumber& number);

std::size_t widthOf(const std::vector<RoundNumber>& numbers, Writer write)
{
    std::size_t width = 0;
    for (const RoundNumber& number : numbers) {
        width = std::max(width, write(number).size());
    }
    return width;
}

/// All numbers of an axis are written alike.
Writer writerFor(const std::vector<RoundNumber>& numbers)
{
    constexpr std::size_t readable = 7;
    const std::size_t plain = widthOf(numbers, plainText);
    return plain <= readable || plain <= widthOf(numbers, shortText) ? plainText : shortText;
}

} // namespace

Axis axisFor(double low, double high)
{
    const double size = std::max(std::abs(low), std::abs(high));
    const double least = std::max(size * (64 * Limits::epsilon()), 1e-303); // far from where doubles lose digits
    double margin = 0;
    if (low == high) {
        margin = size == 0 ? 1 : std::max(size / 10, least);
    } else if (high / 2 - low / 2 < least / 2) {
        margin = least;
    }
    return {std::max(low - margin, Limits::lowest()), std::min(high + margin, Limits::max())};
}

double placeOn(const Axis& axis, double value)
{
    return (value / 2 - axis.low / 2) / (axis.high / 2 - axis.low / 2); // halves, as the range may have no double
}

std::vector<Tick> roundTicks(const Axis& axis, std::size_t most, int leastExponent)
{
    const std::vector<RoundNumber> numbers = roundNumbers(axis, most, leastExponent);
    const Writer write = writerFor(numbers);
    std::vector<Tick> ticks;
    ticks.reserve(numbers.size());
    for (const RoundNumber& number : numbers) {
        ticks.push_back({valueOf(number), write(number)});
    }
    return ticks;
}

} // namespace seriesstat
