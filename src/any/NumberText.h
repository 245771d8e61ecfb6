#pragma once

/// \file
/// Numbers as text and back, to the letter as a string stream in the classic locale reads and writes them, at a
/// fraction of its price.
///
/// `Number` is `int`, `unsigned int`, `long`, `unsigned long` or `double`.

#include <span>
#include <string>
#include <string_view>

namespace KelvoBase
{

/// Reads a number as the formatted extraction from a stream that holds `text` up to its first character of code 0.
/// False if the extraction fails; `value` is then what it left: untouched if there was nothing but white space, the
/// nearest limit for a number out of range, else 0.
template <typename Number>
bool readNumber(const std::string& text, Number& value);

/// Writes a number in the default format of a stream into `range`, and returns the part of it that was written.
/// Throws `WrongTypeException(typeid(Number), "Could not convert to string from ")` if it does not fit.
template <typename Number>
std::string_view writeNumber(Number value, std::span<char> range);

/// Enough for each number type.
inline constexpr std::size_t numberTextSize = 32;

} // namespace KelvoBase
