#pragma once

/// \file
/// The text form of results.

#include "Statistics.h"

#include <string>
#include <string_view>
#include <vector>

namespace seriesstat
{

/// One row of the report.
struct Statistic
{
    std::string_view name;  ///< on the command line
    std::string_view label; ///< in the report
    std::string (*text)(const Summary& summary, int digits);
};

/// The statistic of that name, null if there is none. It lives as long as the program.
const Statistic* findStatistic(std::string_view name);
/// All statistics in the order of the report. They live as long as the program.
std::vector<const Statistic*> allStatistics();
/// Their names.
std::vector<std::string> statisticNames();

/// The wanted rows for one file, below its name. Numbers are written with all of `digits` significant digits, zeros at
/// the end among them, so that the text tells how far it can be compared; "n/a" stands for what is not defined.
std::string reportOf(const std::string& name, const Summary& summary, const std::vector<const Statistic*>& wanted,
                     int digits);

} // namespace seriesstat
