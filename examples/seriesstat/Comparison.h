#pragma once

/// \file
/// What is different from an earlier run.

#include "ResultFile.h"

#include <string>

namespace seriesstat
{

/// "1.2 (Rev. 1)"
std::string versionText(const Origin& origin);

/// Tells what has changed between two runs: version, quantity, series added and removed, bytes and statistics of those
/// that both have. That nothing has changed is told as well. Run times are told, but are no change.
///
/// Series belong together by their names; of those with the same name the first belongs to the first, and so on. The
/// order of the files is no change. `name` is what the text calls the earlier result.
std::string comparisonOf(const StoredResults& earlier, const StoredResults& now, const std::string& name);

} // namespace seriesstat
