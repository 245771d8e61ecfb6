#include "Decimal.h"

#include <charconv>
#include <cmath>

namespace seriesstat
{

namespace
{

constexpr int digitLimit = 31; // an integer of so many digits fits

/// Digits as an integer, and the power of ten that belongs to it.
struct Parts
{
    DoubleDouble digits;
    long long exponent = 0;
};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

long long exponentOf(std::string_view text)
{
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    long long exponent = 0;
    std::from_chars(text.data(), text.data() + text.size(), exponent);
    return exponent;
}

/// `text` is known to be a number without a plus sign.
Parts partsOf(std::string_view text)
{
    Parts parts;
    int taken = 0;
    bool behindPoint = false;
    for (; !text.empty() && text.front() != 'e' && text.front() != 'E'; text.remove_prefix(1)) {
        const char c = text.front();
        if (!isDigit(c)) {
            behindPoint = behindPoint || c == '.';
            continue;
        }
        const bool counts = taken < digitLimit;
        if (counts) {
            parts.digits = parts.digits * DoubleDouble{10} + DoubleDouble{static_cast<double>(c - '0')};
            taken += parts.digits.high != 0 ? 1 : 0;
        }
        parts.exponent += (counts ? 0 : 1) - (behindPoint ? 1 : 0);
    }
    if (!text.empty()) {
        parts.exponent += exponentOf(text.substr(1));
    }
    return parts;
}

DoubleDouble powerOfTen(long long exponent)
{
    DoubleDouble power{1};
    for (long long i = 0; i < exponent; ++i) {
        power = power * DoubleDouble{10};
    }
    return power;
}

/// What `nearest` lacks to be the number that `text` names; 0 where the arithmetic could leave its range.
double remainderOf(std::string_view text, double nearest)
{
    constexpr long long exponentLimit = 290;
    const double size = std::abs(nearest);
    const Parts parts = partsOf(text);
    if (size < 1e-250 || size > 1e250 || std::abs(parts.exponent) > exponentLimit) {
        return 0;
    }
    const DoubleDouble power = powerOfTen(std::abs(parts.exponent));
    const DoubleDouble exact = parts.exponent < 0 ? parts.digits / power : parts.digits * power;
    return (exact - DoubleDouble{size}).high;
}

} // namespace

std::errc readDecimal(std::string_view text, DoubleDouble& value)
{
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::errc::invalid_argument;
        }
    }
    double nearest = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, fault] = std::from_chars(text.data(), end, nearest);
    if (fault == std::errc::invalid_argument || stop != end) {
        return std::errc::invalid_argument;
    }
    if (fault != std::errc()) {
        return fault;
    }
    if (!std::isfinite(nearest)) {
        return std::errc::invalid_argument;
    }
    const double remainder = remainderOf(text, nearest);
    value = {nearest, std::signbit(nearest) ? -remainder : remainder};
    return std::errc();
}

} // namespace seriesstat
