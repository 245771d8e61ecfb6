#include "Configure.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <sstream>

namespace seriesstat
{

namespace
{

using KelvoBase::ConfigFile;

constexpr const char* shipped = SERIESSTAT_SOURCES "/etc/seriesstat.ini";

TEST(ShippedSettingsTest, AreTheBuiltInOnes)
{
    Settings changed;
    changed.format = {"//", 3, ";", true, true};
    changed.digits = 3;
    changed.statistics = {findStatistic("sd")};
    configure(changed, ConfigFile(shipped), "seriesstat.ini");
    const Settings builtIn;
    EXPECT_EQ(builtIn.format.commentSign, changed.format.commentSign);
    EXPECT_EQ(builtIn.format.column, changed.format.column);
    EXPECT_EQ(builtIn.format.delimiters, changed.format.delimiters);
    EXPECT_EQ(builtIn.format.quotes, changed.format.quotes);
    EXPECT_EQ(builtIn.format.header, changed.format.header);
    EXPECT_EQ(builtIn.digits, changed.digits);
    EXPECT_EQ(builtIn.statistics, changed.statistics);
    EXPECT_EQ("", changed.quantity);
}

TEST(ShippedSettingsTest, EveryKeyStandsInTheFileWithAnExplanation)
{
    std::istringstream in(KelvoBase::test::contentOf(shipped));
    std::string line;
    std::string before;
    std::vector<std::string> explained;
    while (std::getline(in, line)) {
        const std::string entry = line.starts_with("# quantity =") ? line.substr(2) : line;
        if (!entry.starts_with('#') && entry.find(" = ") != std::string::npos) {
            EXPECT_TRUE(before.starts_with("# ")) << line;
            explained.push_back(entry.substr(0, entry.find(' ')));
        }
        before = line;
    }
    std::vector<std::string> keys;
    for (const Setting& setting : allSettings()) {
        keys.emplace_back(setting.key);
    }
    std::sort(explained.begin(), explained.end());
    std::sort(keys.begin(), keys.end());
    EXPECT_EQ(keys, explained);
}

TEST(ShippedSettingsTest, FilesHaveNoLineThatLeavesAnEmptyKey)
{
    for (const char* name : {shipped, SERIESSTAT_SOURCES "/etc/TraceAreas.ini"}) {
        const ConfigFile file(name);
        for (auto section = file.beginSection(); section != file.endSection(); ++section) {
            EXPECT_FALSE(section->first.empty());
            EXPECT_EQ(0u, section->second.count("")) << section->first;
        }
    }
}

} // namespace

} // namespace seriesstat
