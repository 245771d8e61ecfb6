#pragma once

/// \file
/// Results in a file, for later runs and for other programs. README.md describes the format.

#include "OutputFile.h"
#include "Results.h"

#include <string>
#include <vector>

namespace seriesstat
{

/// What made results, and when.
struct Origin
{
    double version = 0;
    std::string revision{};
    std::string when{}; ///< "2026-11-21 15:40:12", local time
};

/// What stands in a file.
struct StoredResults
{
    Origin origin{};
    Results results{}; ///< without the values of the series
};

/// Throws a `RuntimeException` that names the first of `texts` that a file cannot hold so that the same bytes come
/// back: an empty one, one of more than 8 kB, one with a control character, or with bytes that the XML library does not
/// take for text, which is UTF-8.
void checkStorable(const std::vector<std::string>& texts);

/// Writes results to the place of a file, which is to be finished. All numbers come back as they are. Throws as
/// `throwUnwritable` does, and a `RuntimeException` for a file that would be too large to be read.
///
/// REQUIRES: all texts are storable.
void writeResults(const OutputFile& file, const StoredResults& stored);

/// Reads a file. It may come from anywhere: what is no complete result of this tool, and of the structure that this
/// version writes, throws an exception that names the file and what is wrong with it. A fault of the XML itself leaves
/// a line of the library's in the trace as well.
StoredResults readResults(const std::string& path);

} // namespace seriesstat
