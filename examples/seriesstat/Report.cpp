#include "Report.h"

#include "ExactNumber.h"

#include <kelvobase/Strings.h>

#include <array>
#include <iomanip>
#include <locale>
#include <sstream>

namespace seriesstat
{

namespace
{

constexpr unsigned int labelWidth = 22;

constexpr std::array<Statistic, 9> statistics{{
    {"count", "count", &Summary::count},
    {"mean", "mean", &Summary::mean},
    {"sd", "standard deviation", &Summary::deviation},
    {"lag1", "lag-1 autocorrelation", &Summary::autocorrelation},
    {"min", "minimum", &Summary::minimum},
    {"q1", "lower quartile", &Summary::lowerQuartile},
    {"median", "median", &Summary::median},
    {"q3", "upper quartile", &Summary::upperQuartile},
    {"max", "maximum", &Summary::maximum},
}};

/// A value of each kind, with as many digits as are asked for.
struct WithDigits
{
    int digits;

    std::string operator()(std::size_t value) const { return std::to_string(value); }
    std::string operator()(double value) const
    {
        std::ostringstream out;
        out.imbue(std::locale::classic());
        out << std::showpoint << std::setprecision(digits) << (value == 0 ? 0.0 : value); // no "-0"
        return out.str();
    }
    std::string operator()(const std::optional<double>& value) const { return value ? (*this)(*value) : notDefined; }
};

/// A value of each kind, with all of its digits.
struct Exact
{
    std::string operator()(std::size_t value) const { return std::to_string(value); }
    std::string operator()(double value) const { return ExactNumber<double>(value).toString(","); }
    std::string operator()(const std::optional<double>& value) const { return value ? (*this)(*value) : notDefined; }
};

} // namespace

std::string Statistic::text(const Summary& summary, int digits) const
{
    return std::visit([&](auto member) { return WithDigits{digits}(summary.*member); }, field);
}

std::string Statistic::exactText(const Summary& summary) const
{
    return std::visit([&](auto member) { return Exact()(summary.*member); }, field);
}

bool Statistic::isEqual(const Summary& a, const Summary& b) const
{
    return std::visit([&](auto member) { return a.*member == b.*member; }, field);
}

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
