#include "Comparison.h"

#include "ExactNumber.h"
#include "Report.h"

#include <kelvobase/Strings.h>

#include <map>

namespace seriesstat
{

namespace
{

using KelvoBase::quote;
/// Series by their names, and a number for each further one of the same name.
using SeriesByName = std::map<std::pair<std::string, std::size_t>, const SeriesResult*>;

constexpr const char* nothing = "  nothing changed\n";
constexpr const char* onlyBytes = ": bytes changed, no statistic did\n";
constexpr const char* onlyStatistics = ": statistics changed, though the bytes are the same\n";
constexpr const char* both = ": bytes changed, and statistics\n";

std::string numberText(double number)
{
    return ExactNumber<double>(number).toString(",");
}

/// A line for two texts that differ, else nothing.
std::string change(const std::string& what, const std::string& before, const std::string& after)
{
    return before == after ? "" : what + ": " + before + " -> " + after + "\n";
}

SeriesByName byName(const std::vector<SeriesResult>& series)
{
    std::map<std::string, std::size_t> seen;
    SeriesByName named;
    for (const SeriesResult& one : series) {
        named.insert({{one.name, seen[one.name]++}, &one});
    }
    return named;
}

std::string changedStatistics(const Summary& before, const Summary& after)
{
    std::string changes;
    for (const Statistic* statistic : allStatistics()) {
        if (!statistic->isEqual(before, after)) {
            changes += change("    " + std::string(statistic->label), statistic->exactText(before),
                              statistic->exactText(after));
        }
    }
    return changes;
}

std::string changesOf(const SeriesResult& before, const SeriesResult& after)
{
    const std::string statistics = changedStatistics(before.summary, after.summary);
    if (before.digest == after.digest) {
        return statistics.empty() ? "" : "  " + after.name + onlyStatistics + statistics;
    }
    return "  " + after.name + (statistics.empty() ? onlyBytes : both) + statistics;
}

std::string changesOf(const std::vector<SeriesResult>& before, const std::vector<SeriesResult>& after)
{
    SeriesByName earlier = byName(before);
    std::string changes;
    for (const auto& [name, series] : byName(after)) {
        const auto found = earlier.find(name);
        if (found == earlier.end()) {
            changes += "  " + series->name + ": added\n";
        } else {
            changes += changesOf(*found->second, *series);
            earlier.erase(found);
        }
    }
    for (const auto& [name, series] : earlier) {
        changes += "  " + series->name + ": removed\n";
    }
    return changes;
}

} // namespace

std::string versionText(const Origin& origin)
{
    return numberText(origin.version) + " (Rev. " + origin.revision + ")";
}

std::string comparisonOf(const StoredResults& earlier, const StoredResults& now, const std::string& name)
{
    const Results& before = earlier.results;
    const Results& after = now.results;
    const std::string changes =
        change("  version of seriesstat", versionText(earlier.origin), versionText(now.origin)) +
        change("  quantity", quote(before.quantity), quote(after.quantity)) + changesOf(before.series, after.series);
    return "compared with " + name + " of " + earlier.origin.when + "\n" + (changes.empty() ? nothing : changes) +
           "  run time: " + numberText(before.seconds) + " s -> " + numberText(after.seconds) + " s\n";
}

} // namespace seriesstat
