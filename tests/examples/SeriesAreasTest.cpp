#include "Installation.h"

#include <kelvobase/Any.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

using KelvoBase::Any;
using KelvoBase::ConfigFile;
using KelvoBase::TraceAreaEntry;
using KelvoBase::TraceAreaMgr;
using KelvoBase::test::ChildResult;
using KelvoBase::test::contentOf;
using test::Installation;

constexpr const char* shipped = SERIESSTAT_SOURCES "/etc/TraceAreas.ini";
constexpr const char* report = "x\n\nd.txt\n  mean                   1.0\n";
constexpr const char* files = "|------ d.txt: 1 files\n|------ reading d.txt\n";
constexpr const char* summary = "|------ d.txt: summarizing 1 values\n";

/// Standard error of a run that shows one area; the report has to be the usual one.
std::string traceOf(const Installation& installation, const std::string& area)
{
    installation.write("work/d.txt", "1\n");
    const ChildResult run =
        installation.run({"-qx", "-smean", "--digits=2", "-tverbose", "--trace-area=" + area, "d.txt"});
    EXPECT_EQ(report, run.out);
    EXPECT_EQ(0, run.status);
    return run.err;
}

/// The part of a trace behind the two lines that every tool writes.
std::string withoutRunLines(const std::string& trace)
{
    const std::size_t second = trace.find('\n') + 1;
    EXPECT_TRUE(trace.starts_with("|------ seriesstat (Rev. 1) ")) << trace;
    return trace.substr(trace.find('\n', second) + 1);
}

TEST(SeriesAreasTest, AreasOfTheToolCanBeChosenWithTheShippedFile)
{
    const Installation installation;
    installation.write("place/etc/TraceAreas.ini", contentOf(shipped));
    EXPECT_EQ(std::string(files) + summary, traceOf(installation, "Series"));
    EXPECT_EQ(files, traceOf(installation, "SeriesReading"));
    EXPECT_EQ(summary, traceOf(installation, "SeriesSummary"));
    EXPECT_EQ(summary, traceOf(installation, "Numerics"));
    EXPECT_EQ(files, withoutRunLines(traceOf(installation, "App")));
    EXPECT_EQ("", traceOf(installation, "Searches"));
}

TEST(SeriesAreasTest, BuiltInAreasStandInWithoutAFile)
{
    const Installation installation;
    EXPECT_EQ(summary, traceOf(installation, "Numerics"));
    EXPECT_EQ(files, withoutRunLines(traceOf(installation, "App")));
    EXPECT_EQ("TraceAreaMgr: Unknown Area 'Series'. Ignoring it.\n", traceOf(installation, "Series"));
}

TEST(SeriesAreasTest, AppIsEnoughForTheTool)
{
    const Installation installation;
    installation.write("work/etc/TraceAreas.ini", "[TraceMainAreas]\nApp\n[TraceSubAreas]\n");
    EXPECT_EQ(std::string(files) + summary, withoutRunLines(traceOf(installation, "App")));
}

TEST(SeriesAreasTest, UserAddsAnArea)
{
    const Installation installation;
    installation.write("place/etc/TraceAreas.ini", contentOf(shipped));
    installation.write("user/dravo2/etc/TraceAreas.ini", "[TraceMainAreas]\nMine\n[TraceSubAreas]\n"
                                                         "SeriesSummary = Mine\n");
    EXPECT_EQ(summary, traceOf(installation, "Mine"));
    EXPECT_EQ("", traceOf(installation, "Numerics"));
}

TEST(SeriesAreasTest, BrokenFileDisturbsNothing)
{
    for (const char* content : {"[TraceMainAreas\n", "=\n", "[TraceMainAreas]\n", "", "[TraceSubAreas]\nSeries\n"}) {
        SCOPED_TRACE(content);
        const Installation installation;
        installation.write("place/etc/TraceAreas.ini", content);
        EXPECT_EQ(summary, traceOf(installation, "Numerics"));
    }
}

// The shipped file takes the place of the areas that the library has without one: nothing of these may be missing.

class ShippedAreas : public ::testing::Test
{
protected:
    ShippedAreas() : mInside(mEmpty.path()), mUser(mEmpty.path()) { TraceAreaMgr::startup(); }
    ~ShippedAreas() override { TraceAreaMgr::teardown(); }

    static const TraceAreaEntry* builtIn(const std::string& name) { return TraceAreaMgr::instance()->searchId(name); }

    const KelvoBase::test::ScratchDirectory mEmpty;
    const KelvoBase::test::ScopedWorkingDirectory mInside;
    const KelvoBase::test::ScopedUserData mUser;
};

TEST_F(ShippedAreas, HoldAllBuiltInAreasAndThreeOfTheTool)
{
    const ConfigFile file(shipped);
    std::vector<std::string> added;
    std::size_t known = 0;
    for (const char* section : {"TraceMainAreas", "TraceSubAreas"}) {
        for (auto entry = file.beginEntry(section); entry != file.endEntry(section); ++entry) {
            if (builtIn(entry->first)) {
                ++known;
            } else {
                added.push_back(entry->first);
            }
        }
    }
    EXPECT_EQ((std::vector<std::string>{"Series", "SeriesReading", "SeriesSummary"}), added);
    EXPECT_EQ(40u, known);
}

TEST_F(ShippedAreas, StandBelowTheSameParentsWhereTheFormatAllowsIt)
{
    const ConfigFile file(shipped);
    for (auto entry = file.beginEntry("TraceMainAreas"); entry != file.endEntry("TraceMainAreas"); ++entry) {
        if (entry->first != "Series") {
            EXPECT_EQ(builtIn(entry->first)->id, builtIn(entry->first)->mask) << entry->first;
        }
    }
    for (auto entry = file.beginEntry("TraceSubAreas"); entry != file.endEntry("TraceSubAreas"); ++entry) {
        const auto& [name, parents] = *entry;
        if (const TraceAreaEntry* area = builtIn(name)) {
            const TraceAreaEntry* parent = builtIn(parents->toString(","));
            ASSERT_NE(nullptr, parent) << name;
            const auto rest = area->mask & ~(area->id | parent->mask);
            EXPECT_TRUE((area->mask & parent->mask) == parent->mask) << name;
            EXPECT_EQ(name == "BetaParametrizer" ? builtIn("EvalBeta")->id : std::bitset<64>(), rest) << name;
        }
    }
}

TEST_F(ShippedAreas, AreReadWithoutAWarning)
{
    ::testing::internal::CaptureStderr();
    TraceAreaMgr::instance()->initFromFile(ConfigFile(shipped));
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr());
}

} // namespace

} // namespace seriesstat
