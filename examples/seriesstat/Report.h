#pragma once

/// \file
/// The text form of results.

#include "Statistics.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace seriesstat
{

/// One row of the report.
struct Statistic
{
    /// Where a summary has it.
    using Field = std::variant<std::size_t Summary::*, double Summary::*, std::optional<double> Summary::*>;

    std::string_view name;  ///< on the command line, and in files of results
    std::string_view label; ///< in the report
    Field field;

    /// The value with all of `digits` significant digits, or "n/a".
    std::string text(const Summary& summary, int digits) const;
    /// The value with as many digits as it takes to tell it from every other one, or "n/a".
    std::string exactText(const Summary& summary) const;
    bool isEqual(const Summary& a, const Summary& b) const;
};

/// Stands for what is not defined.
constexpr const char* notDefined = "n/a";

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
