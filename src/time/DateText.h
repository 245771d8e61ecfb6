#pragma once

/// \file
/// Reads the three numbers of a date text. Apart from `Time`, so that it can be held against `sscanf`.

#include <optional>

namespace KelvoBase
{

struct DateNumbers
{
    int year;
    int month;
    int day;
};

/// What `sscanf` reads with "%d-%d-%d", if it converts all three numbers: white space and a sign may stand in front of
/// each, the hyphen follows the digits directly, and text behind the third number is ignored. A number that does not
/// fit an `int`, which `sscanf` leaves open, is no number.
std::optional<DateNumbers> scanDate(const char* text);

} // namespace KelvoBase
