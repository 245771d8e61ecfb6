#pragma once

/// \file
/// The report as a document for readers.

#include "Results.h"
#include "Settings.h"

#include <string>

namespace seriesstat
{

enum class DocumentFormat
{
    html,
    latex,
};

/// The whole document, in UTF-8: a table over all series, a picture of each distribution, the digest of each file, and
/// the methods with their literature. `imprint` tells what made it and when, as in "seriesstat 1.1, 2026-11-21 15:04";
/// it may be empty. The document needs no other file, and it depends on nothing but the arguments.
///
/// REQUIRES: at least one series; every series has its values, all of them finite.
std::string documentOf(const Results& results, const Settings& settings, DocumentFormat format,
                       const std::string& imprint = "");

} // namespace seriesstat
