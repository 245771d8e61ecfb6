#include "Report.h"

#include <kelvobase/Strings.h>

#include <array>
#include <iomanip>
#include <locale>
#include <optional>
#include <sstream>

namespace seriesstat
{

namespace
{

constexpr const char* notDefined = "n/a";
constexpr unsigned int labelWidth = 22;

std::string numberText(std::optional<double> value, int digits)
{
    if (!value) {
        return notDefined;
    }
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << std::showpoint << std::setprecision(digits) << (*value == 0 ? 0.0 : *value); // no "-0"
    return out.str();
}

constexpr std::array<Statistic, 9> statistics{{
    {"count", "count", [](const Summary& s, int) { return std::to_string(s.count); }},
    {"mean", "mean", [](const Summary& s, int digits) { return numberText(s.mean, digits); }},
    {"sd", "standard deviation", [](const Summary& s, int digits) { return numberText(s.deviation, digits); }},
    {"lag1", "lag-1 autocorrelation",
     [](const Summary& s, int digits) { return numberText(s.autocorrelation, digits); }},
    {"min", "minimum", [](const Summary& s, int digits) { return numberText(s.minimum, digits); }},
    {"q1", "lower quartile", [](const Summary& s, int digits) { return numberText(s.lowerQuartile, digits); }},
    {"median", "median", [](const Summary& s, int digits) { return numberText(s.median, digits); }},
    {"q3", "upper quartile", [](const Summary& s, int digits) { return numberText(s.upperQuartile, digits); }},
    {"max", "maximum", [](const Summary& s, int digits) { return numberText(s.maximum, digits); }},
}};

} // namespace

const Statistic* findStatistic(std::string_view name)
{
    for (const Statistic& statistic : statistics) {
        if (statistic.name == name) {
            return &statistic;
        }
    }
    return nullptr;
}

std::vector<const Statistic*> allStatistics()
{
    std::vector<const Statistic*> all;
    all.reserve(std::size(statistics));
    for (const Statistic& statistic : statistics) {
        all.push_back(&statistic);
    }
    return all;
}

std::vector<std::string> statisticNames()
{
    std::vector<std::string> names;
    names.reserve(std::size(statistics));
    for (const Statistic& statistic : statistics) {
        names.emplace_back(statistic.name);
    }
    return names;
}

std::string reportOf(const std::string& name, const Summary& summary, const std::vector<const Statistic*>& wanted,
                     int digits)
{
    std::string report = name + "\n";
    for (const Statistic* statistic : wanted) {
        const std::string label = KelvoBase::trimLength(std::string(statistic->label), labelWidth);
        report += "  " + label + " " + statistic->text(summary, digits) + "\n";
    }
    return report;
}

} // namespace seriesstat
