#pragma once

/// \file
/// What a user can set, in the configuration or on the command line, and what is accepted there.

#include "Report.h"
#include "SeriesReader.h"

#include <kelvobase/Any.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace seriesstat
{

/// What holds for a run. A new object has the values that hold where nobody sets anything.
struct Settings
{
    SeriesFormat format{};
    int digits = 15;
    std::vector<const Statistic*> statistics = allStatistics(); ///< raw: they live as long as the program
    std::string quantity{};                                     ///< empty: nobody said what was measured
};

/// What stands behind the key of a setting.
enum class Form
{
    text, ///< one value
    list, ///< one or more, parted by commas
    flag, ///< yes or no, or nothing, which means yes
};

/// One setting: a key of the configuration and, under the same name, an option.
struct Setting
{
    std::string_view section;
    std::string_view key;
    std::string_view expected; ///< what is accepted, as the end of a sentence
    Form form;
    /// Sets it from its values, exactly one unless it is a list. False: they do not fit, and nothing was set.
    bool (*assign)(Settings& settings, const std::vector<std::string>& values);
};

/// All of them, sorted by section and key.
std::span<const Setting> allSettings();
/// The setting of that key, null if there is none.
const Setting* findSetting(std::string_view key);

/// Sets one setting. Returns what is wrong with `values`, as one or more sentences; nothing was set then. Empty: it is
/// set.
std::string take(Settings& settings, const Setting& setting, const std::vector<std::string>& values);

/// The texts of the elements of a list; the text of a scalar.
std::vector<std::string> elementsOf(const KelvoBase::Any& value);

} // namespace seriesstat
