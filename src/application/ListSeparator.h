#pragma once

/// \file
/// What stands between the elements of a list on the command line.

namespace KelvoBase
{

inline constexpr char listSeparator[] = ",";

} // namespace KelvoBase
