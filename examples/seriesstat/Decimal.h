#pragma once

/// \file
/// Numbers from their decimal text, with more digits than a double has.

#include "DoubleDouble.h"

#include <string_view>
#include <system_error>

namespace seriesstat
{

/// Reads the whole of `text` as a decimal number: sign, digits with or without a point, exponent ("-1.5e-3", "+2",
/// ".5", "5."). The locale plays no part. About 30 digits count where the number lies between 1e-250 and 1e250, and
/// those of a double elsewhere.
///
/// The result is like that of `std::from_chars`; `value` is set only if there is no error:
///   - `invalid_argument` for anything else, "inf" and "nan" among it,
///   - `result_out_of_range` for a number that no double comes near: "1e999", "1e-999".
std::errc readDecimal(std::string_view text, DoubleDouble& value);

} // namespace seriesstat
