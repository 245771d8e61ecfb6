#include "Settings.h"

#include "Shown.h"
#include "WholeNumber.h"

#include <kelvobase/Strings.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace seriesstat
{

namespace
{

using Values = std::vector<std::string>;

constexpr const char* numberBytes = "+-.0123456789Ee";
constexpr int maxDigits = 17; // tell any two doubles apart
constexpr const char* noFit = " does not fit. ";
constexpr const char* notOne = " is a list; a comma that belongs to a value stands in double quotes. ";

std::optional<int> wholeNumber(const std::string& text)
{
    WholeNumber number;
    try {
        number.fromString(text, ",");
    } catch (const KelvoBase::WrongTypeException&) {
        return std::nullopt;
    }
    return number.toInt();
}

/// Sets `target` if `number` is there and not out of bounds.
bool assignNumber(int& target, std::optional<int> number, int least, int most)
{
    if (!number || *number < least || *number > most) {
        return false;
    }
    target = *number;
    return true;
}

bool assignColumn(Settings& settings, const Values& values)
{
    return assignNumber(settings.format.column, wholeNumber(values.front()), 0, std::numeric_limits<int>::max());
}

bool assignComment(Settings& settings, const Values& values)
{
    std::string sign = values.front();
    if (sign == "none") {
        sign.clear();
    } else if (sign == "hash") { // a configuration file has no way to write it
        sign = "#";
    } else if (!sign.empty() && sign.find_first_not_of(numberBytes) == std::string::npos) {
        return false;
    }
    settings.format.commentSign = sign;
    return true;
}

/// Whether a text can be the characters that part columns, and is no misspelt word.
bool areDelimiters(const std::string& text)
{
    return !text.empty() && std::none_of(text.begin(), text.end(), [](char c) {
        const bool isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        return isLetter || std::string_view(numberBytes).find(c) != std::string_view::npos;
    });
}

bool assignDelimiter(Settings& settings, const Values& values)
{
    const std::string& text = values.front();
    std::string delimiters = text;
    if (text == "blanks") {
        delimiters.clear();
    } else if (text == "tab") {
        delimiters = "\t";
    } else if (text == "csv") {
        delimiters = ",";
    } else if (!areDelimiters(text)) {
        return false;
    }
    settings.format.delimiters = delimiters;
    settings.format.quotes = text == "csv";
    return true;
}

bool assignHeader(Settings& settings, const Values& values)
{
    const bool yes = values.front() == "yes";
    if (!yes && values.front() != "no") {
        return false;
    }
    settings.format.header = yes;
    return true;
}

bool assignDigits(Settings& settings, const Values& values)
{
    return assignNumber(settings.digits, wholeNumber(values.front()), 1, maxDigits);
}

bool assignQuantity(Settings& settings, const Values& values)
{
    std::string quantity = values.front();
    KelvoBase::trim(quantity);
    if (quantity.empty()) {
        return false;
    }
    settings.quantity = quantity;
    return true;
}

bool assignStatistics(Settings& settings, const Values& values)
{
    if (values == Values{"all"}) {
        settings.statistics = allStatistics();
        return true;
    }
    std::vector<const Statistic*> statistics;
    for (const std::string& name : values) {
        statistics.push_back(findStatistic(name));
    }
    if (std::count(statistics.begin(), statistics.end(), nullptr) != 0) {
        return false;
    }
    settings.statistics = statistics;
    return true;
}

constexpr std::array<Setting, 7> settingTable{{
    {"input", "column", "a column, counted from 1, or 0 for lines of one number", Form::text, assignColumn},
    {"input", "comment", "none, hash for the sign #, or a text that is no part of a number", Form::text, assignComment},
    {"input", "delimiter", "blanks, tab, csv, or characters that are neither letters nor a part of a number",
     Form::text, assignDelimiter},
    {"input", "header", "yes or no", Form::flag, assignHeader},
    {"report", "digits", "a whole number from 1 to 17", Form::text, assignDigits},
    {"report", "quantity", "what was measured, with its unit", Form::text, assignQuantity},
    {"report", "stats", "all, or some of count, mean, sd, lag1, min, q1, median, q3, max", Form::list,
     assignStatistics},
}};

} // namespace

std::span<const Setting> allSettings()
{
    return settingTable;
}

const Setting* findSetting(std::string_view key)
{
    for (const Setting& setting : settingTable) {
        if (setting.key == key) {
            return &setting;
        }
    }
    return nullptr;
}

std::string take(Settings& settings, const Setting& setting, const std::vector<std::string>& values)
{
    const bool tooMany = setting.form != Form::list && values.size() != 1;
    if (!tooMany && setting.assign(settings, values)) {
        return "";
    }
    return shown(KelvoBase::join(values, ", ")) + (tooMany ? notOne : noFit) + "Expected is " +
           std::string(setting.expected) + ".";
}

std::vector<std::string> elementsOf(const KelvoBase::Any& value)
{
    std::vector<std::string> texts;
    for (unsigned int i = 0; i < value.size(); ++i) {
        texts.push_back(value[i].toString(","));
    }
    return texts;
}

} // namespace seriesstat
