/// \file
/// Filling a registry from tables, row by row.

#include "trace/TraceAreaTables.h"

#include "support/Capture.h"

#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

namespace KelvoBase::test
{

namespace
{

constexpr MainAreaRow mainRows[] = {{"OwnMain"}};
constexpr SubAreaRow subRows[] = {
    {"BeforeItsParent", "OwnSub"}, {"OwnSub", "OwnMain"}, {"OfNobody", "Nobody"},
    {"BehindItsParent", "OwnSub"}, {"App", "Nobody"},
};

class TraceAreaTablesTest : public testing::Test
{
protected:
    TraceAreaTablesTest() { TraceAreaMgr::startup(); }
    ~TraceAreaTablesTest() override
    {
        TraceAreaMgr::teardown();
        haveCerr = true;
    }

    TraceAreaMgr& registry() { return *TraceAreaMgr::instance(); }
};

} // namespace

TEST_F(TraceAreaTablesTest, RowWithAnUnknownParentIsSkippedWithAWarning)
{
    const Capture cerr(std::cerr);
    registerTables(registry(), mainRows, subRows);
    EXPECT_EQ(cerr.text(), "WARNING TraceAreaMgr: Unknown area 'OwnSub'\n"
                           "\tSkipping entry...\n"
                           "WARNING TraceAreaMgr: Unknown area 'Nobody'\n"
                           "\tSkipping entry...\n"
                           "WARNING TraceAreaMgr: Unknown area 'Nobody'\n"
                           "\tSkipping entry...\n");
    EXPECT_EQ(registry().searchId("BeforeItsParent"), nullptr);
    EXPECT_EQ(registry().searchId("OfNobody"), nullptr);
    EXPECT_EQ(registry().getTraceAreaMask("BehindItsParent"), std::bitset<64>(7ULL << 40));
}

TEST_F(TraceAreaTablesTest, SkippedRowIsSilentWithoutStandardStreams)
{
    haveCerr = false;
    const Capture cerr(std::cerr);
    registerTables(registry(), mainRows, subRows);
    EXPECT_EQ(cerr.text(), "");
    EXPECT_EQ(registry().searchId("OfNobody"), nullptr);
}

TEST_F(TraceAreaTablesTest, LastTwoRowsRepeatNames)
{
    EXPECT_STREQ(subAreaTable[28].name, "GammaFileConverter");
    EXPECT_STREQ(subAreaTable[28].parent, "Rewriting");
    EXPECT_STREQ(subAreaTable[29].name, "DeltaFileConverter");
    EXPECT_STREQ(subAreaTable[29].parent, "Persistence");
}

} // namespace KelvoBase::test
