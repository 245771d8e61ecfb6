/// \file
/// The registry of areas.

#include "support/Capture.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace KelvoBase::test
{

namespace
{

using Set = std::bitset<64>;

struct AreaRow
{
    const char* name;
    unsigned int bit;
    std::initializer_list<unsigned int> parents; // all bits above it
};

const AreaRow builtIn[] = {
    {"KelvoBase", 0, {}},
    {"CoreObjects", 1, {}},
    {"AttributeManagement", 2, {}},
    {"Partitions", 3, {}},
    {"Evaluators", 4, {}},
    {"Rewriting", 5, {}},
    {"Persistence", 6, {}},
    {"Numerics", 7, {}},
    {"Summaries", 8, {}},
    {"Learners", 9, {}},
    {"Searches", 10, {}},
    {"App", 11, {}},
    {"Adjuster", 12, {1}},
    {"Pairing", 13, {1}},
    {"AttributeManager", 14, {2}},
    {"EvalAlpha", 15, {4}},
    {"EvalBeta", 16, {4}},
    {"EvalGamma", 17, {4}},
    {"EvalDelta", 18, {4}},
    {"EvalEpsilon", 19, {4}},
    {"EvalExtDigest", 20, {4}},
    {"EvalZetaInfo", 21, {4}},
    {"EvalEtaInfo", 22, {4}},
    {"Tavelin", 23, {4}},
    {"Outline", 24, {4}},
    {"DigestCodes", 25, {4}},
    {"BetaParametrizer", 26, {16, 4}},
    {"SeriesProcessing", 27, {7}},
    {"SeriesPreProcessing", 28, {7}},
    {"SeriesTransform", 29, {7}},
    {"SeriesTools", 30, {7}},
    {"StreamProcessing", 31, {7}},
    {"AttributeTranslationTable", 32, {6}},
    {"LinkTable", 33, {6}},
    {"AlphaFileConverter", 34, {6}},
    {"BetaFileConverter", 35, {6}},
    {"GammaFileConverter", 36, {6}},
    {"DeltaFileConverter", 37, {6}},
    {"RewriteRule", 38, {5}},
    {"RewriteNetwork", 39, {5}},
};

Set bit(unsigned int number)
{
    return Set(1ULL << number);
}

Set maskOf(const AreaRow& row)
{
    Set result = bit(row.bit);
    for (const unsigned int parent : row.parents) {
        result |= bit(parent);
    }
    return result;
}

class TraceAreaMgrTest : public testing::Test
{
protected:
    TraceAreaMgrTest() { TraceAreaMgr::startup(); }
    ~TraceAreaMgrTest() override
    {
        TraceAreaMgr::teardown();
        haveCerr = true;
    }

    TraceAreaMgr& registry() { return *TraceAreaMgr::instance(); }

    /// Takes the bits that a fresh registry has left.
    void fill()
    {
        for (int i = 40; i < 64; ++i) {
            registry().registerArea("Area" + std::to_string(i), Set());
        }
    }

    long lines()
    {
        const std::string text = registry().print();
        return std::count(text.begin(), text.end(), '\n');
    }
};

std::string rightAligned(const std::string& text, std::size_t columns)
{
    return std::string(columns - text.size(), ' ') + text;
}

std::string printedRow(const std::string& name, const Set& id, const Set& mask)
{
    std::string digits;
    for (const Set& set : {id, mask}) {
        digits += '\t';
        for (int i = 63; i >= 0; --i) {
            digits += set.test(static_cast<std::size_t>(i)) ? '1' : '0';
        }
    }
    return rightAligned(name.substr(0, 20), 20) + digits + "\n";
}

} // namespace

TEST_F(TraceAreaMgrTest, FreshRegistryHoldsTheTablesAtTheirBits)
{
    for (const AreaRow& row : builtIn) {
        SCOPED_TRACE(row.name);
        const TraceAreaEntry* entry = registry().searchId(row.name);
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->id, bit(row.bit));
        EXPECT_EQ(entry->mask, maskOf(row));
        EXPECT_EQ(registry().getTraceAreaId(row.name), bit(row.bit));
        EXPECT_EQ(registry().getTraceAreaMask(row.name), maskOf(row));
    }
}

TEST_F(TraceAreaMgrTest, RepeatedRowsOfTheTablesChangeNothing)
{
    // Required, Q-701
    EXPECT_EQ(registry().getTraceAreaMask("GammaFileConverter"), bit(36) | bit(6));
    EXPECT_EQ(registry().getTraceAreaMask("DeltaFileConverter"), bit(37) | bit(6));
    registry().registerArea("Next", Set());
    EXPECT_EQ(registry().getTraceAreaId("Next"), bit(40));
}

TEST_F(TraceAreaMgrTest, SubAreaOfASubAreaHasAllBitsAboveIt)
{
    EXPECT_EQ(registry().getTraceAreaMask("BetaParametrizer"), bit(26) | bit(16) | bit(4));
}

TEST_F(TraceAreaMgrTest, AllHasEveryBitAndTakesNone)
{
    EXPECT_TRUE(registry().getTraceAreaId("All").all());
    EXPECT_TRUE(registry().getTraceAreaMask("All").all());
    EXPECT_EQ(registry().getTraceAreaId("KelvoBase"), bit(0));
}

TEST_F(TraceAreaMgrTest, AllCannotBeReplaced)
{
    registry().registerArea("All", Set());
    EXPECT_TRUE(registry().getTraceAreaMask("All").all());
}

TEST_F(TraceAreaMgrTest, SearchOfAnUnknownNameGivesNull)
{
    for (const char* name : {"", "all", "ALL", "App ", "Undef", "kelvobase"}) {
        EXPECT_EQ(registry().searchId(name), nullptr) << name;
    }
}

TEST_F(TraceAreaMgrTest, LabelOfAnUnknownAreaThrows)
{
    const auto label = [&](const char* name) {
        return textOf<ObjectNotExistentException>([&] { registry().getTraceAreaMask(name); });
    };
    EXPECT_EQ(label("all"), "TraceAreaMgr: Unknown Area \"all\".");
    EXPECT_EQ(label(""), "TraceAreaMgr: Unknown Area \"\".");
}

TEST_F(TraceAreaMgrTest, SelectionOfAnUnknownAreaWarnsAndIsEmpty)
{
    // Required, Q-702
    const Capture cerr(std::cerr);
    EXPECT_TRUE(registry().getTraceAreaId("all").none());
    EXPECT_EQ(cerr.text(), "TraceAreaMgr: Unknown Area 'all'. Ignoring it.\n");
}

TEST_F(TraceAreaMgrTest, SelectionOfAnUnknownAreaIsSilentWithoutStandardStreams)
{
    haveCerr = false;
    const Capture cerr(std::cerr);
    EXPECT_TRUE(registry().getTraceAreaId("all").none());
    EXPECT_EQ(cerr.text(), "");
}

TEST_F(TraceAreaMgrTest, EmptySetOfUnknownAreasIsOneAndOutlivesTheRegistry)
{
    haveCerr = false;
    const Set& first = registry().getTraceAreaId("a");
    EXPECT_EQ(&first, &registry().getTraceAreaId("b"));
    TraceAreaMgr::teardown();
    EXPECT_TRUE(first.none());
}

TEST_F(TraceAreaMgrTest, KnownAreaDoesNotWarn)
{
    const Capture cerr(std::cerr);
    registry().getTraceAreaId("App");
    EXPECT_EQ(cerr.text(), "");
}

TEST_F(TraceAreaMgrTest, NewAreaGetsTheNextBitAndThoseOfItsParents)
{
    registry().registerArea("First", bit(3) | bit(60));
    registry().registerArea("Second", registry().getTraceAreaMask("First"));
    EXPECT_EQ(registry().getTraceAreaId("First"), bit(40));
    EXPECT_EQ(registry().getTraceAreaMask("First"), bit(40) | bit(3) | bit(60));
    EXPECT_EQ(registry().getTraceAreaMask("Second"), bit(41) | bit(40) | bit(3) | bit(60));
}

TEST_F(TraceAreaMgrTest, SecondRegistrationOfANameChangesNothing)
{
    const Capture cerr(std::cerr);
    registry().registerArea("Twice", bit(1));
    registry().registerArea("Twice", bit(2));
    registry().registerArea("Next", Set());
    EXPECT_EQ(registry().getTraceAreaMask("Twice"), bit(40) | bit(1));
    EXPECT_EQ(registry().getTraceAreaId("Next"), bit(41));
    EXPECT_EQ(cerr.text(), "");
}

TEST_F(TraceAreaMgrTest, SixtyFourthAreaGetsTheBitOfUndef)
{
    // Required, Q-703
    fill();
    EXPECT_EQ(registry().getTraceAreaId("Area63"), TraceArea::Undef());
}

TEST_F(TraceAreaMgrTest, SixtyFifthAreaThrowsAndRegistersNothing)
{
    fill();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(textOf<std::out_of_range>([&] { registry().registerArea("Area64", Set()); }), "bitset::set");
    }
    EXPECT_EQ(registry().searchId("Area64"), nullptr);
    EXPECT_EQ(lines(), 3 + 64 + 1);
}

TEST_F(TraceAreaMgrTest, NameThatExistsIsNoFailureInAFullRegistry)
{
    fill();
    EXPECT_NO_THROW(registry().registerArea("Area63", Set()));
    EXPECT_NO_THROW(registry().initInternally());
}

TEST_F(TraceAreaMgrTest, EntriesStayInPlaceWhileOthersAreAdded)
{
    const TraceAreaEntry* entry = registry().searchId("App");
    fill();
    EXPECT_EQ(registry().searchId("App"), entry);
}

TEST_F(TraceAreaMgrTest, TablesAreAddedWithoutAWordToWhatStandsThere)
{
    const Capture cerr(std::cerr);
    const std::string before = registry().print();
    registry().initInternally();
    EXPECT_EQ(registry().print(), before);
    EXPECT_EQ(cerr.text(), "");
}

TEST_F(TraceAreaMgrTest, StartupKeepsTheRegistryThatStands)
{
    registry().registerArea("Own", Set());
    const TraceAreaMgr* before = TraceAreaMgr::instance();
    TraceAreaMgr::startup();
    EXPECT_EQ(TraceAreaMgr::instance(), before);
    EXPECT_NE(registry().searchId("Own"), nullptr);
}

TEST_F(TraceAreaMgrTest, RegistryIsNullBehindTeardownAndFreshBehindTheNextStartup)
{
    registry().registerArea("Own", Set());
    TraceAreaMgr::teardown();
    EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
    TraceAreaMgr::teardown();
    EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
    TraceAreaMgr::startup();
    EXPECT_EQ(registry().searchId("Own"), nullptr);
    registry().registerArea("Next", Set());
    EXPECT_EQ(registry().getTraceAreaId("Next"), bit(40));
}

TEST_F(TraceAreaMgrTest, PrintListsAllAreasSortedByName)
{
    std::vector<AreaRow> rows(std::begin(builtIn), std::end(builtIn));
    std::map<std::string, std::string> sorted;
    for (const AreaRow& row : rows) {
        sorted[row.name] = printedRow(row.name, bit(row.bit), maskOf(row));
    }
    sorted["All"] = printedRow("All", Set().set(), Set().set());
    std::string expected = "BEGIN TraceAreaMgr: all registered areas\n";
    expected += rightAligned("TraceArea name", 20) + "\t" + rightAligned("TraceArea::Id", 64) + "\t" +
                rightAligned("TraceArea mask", 64) + "\n";
    for (const auto& row : sorted) {
        expected += row.second;
    }
    expected += "END TraceAreaMgr\n";
    const Capture cerr(std::cerr);
    const Capture cout(std::cout);
    EXPECT_EQ(registry().print(), expected);
    EXPECT_EQ(lines(), 2 + 41 + 1);
    EXPECT_EQ(cerr.text() + cout.text(), "");
}

TEST_F(TraceAreaMgrTest, PrintCutsANameBehindTwentyCharacters)
{
    // Required, Q-714
    registry().registerArea("exactly twenty chars", Set());
    registry().registerArea("one more than twenty!", Set());
    registry().registerArea("", Set());
    const std::string text = registry().print();
    EXPECT_NE(text.find("\nAttributeTranslation\t0000"), std::string::npos);
    EXPECT_NE(text.find("\nexactly twenty chars\t"), std::string::npos);
    EXPECT_NE(text.find("\none more than twenty\t"), std::string::npos);
    EXPECT_NE(text.find("\n                    \t"), std::string::npos);
    EXPECT_EQ(text.find("AttributeTranslationT"), std::string::npos);
}

// What the two sets of an entry are for: a label is a mask, a selection a union of ids.

TEST_F(TraceAreaMgrTest, MainAreaAsSelectionMeetsAllAreasBelowIt)
{
    const Set selection = registry().getTraceAreaId("Evaluators");
    EXPECT_TRUE((selection & registry().getTraceAreaMask("Evaluators")).any());
    EXPECT_TRUE((selection & registry().getTraceAreaMask("EvalBeta")).any());
    EXPECT_TRUE((selection & registry().getTraceAreaMask("BetaParametrizer")).any());
    EXPECT_TRUE((selection & registry().getTraceAreaMask("LinkTable")).none());
}

TEST_F(TraceAreaMgrTest, SubAreaAsSelectionMeetsNeitherItsParentNorItsSiblings)
{
    const Set selection = registry().getTraceAreaId("EvalBeta");
    EXPECT_TRUE((selection & registry().getTraceAreaMask("EvalBeta")).any());
    EXPECT_TRUE((selection & registry().getTraceAreaMask("BetaParametrizer")).any());
    EXPECT_TRUE((selection & registry().getTraceAreaMask("Evaluators")).none());
    EXPECT_TRUE((selection & registry().getTraceAreaMask("EvalAlpha")).none());
}

} // namespace KelvoBase::test
