#pragma once

/// \file
/// Texts of any origin in messages.

#include <string>

namespace seriesstat
{

/// A text as it may stand in a message: between double quotes, short, and without bytes that would act on a terminal.
///
///     a<TAB>b                => "a?b"
///     more than 40 bytes...  => "the first 40, at most, and three points..."
std::string shown(std::string text);

} // namespace seriesstat
