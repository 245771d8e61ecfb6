#pragma once

/// \file
/// The terminal that standard error may be.

#include <cstddef>

namespace seriesstat
{

/// How many columns a line of it has; 0 if standard error is no terminal.
std::size_t columnsOfStandardError();

} // namespace seriesstat
