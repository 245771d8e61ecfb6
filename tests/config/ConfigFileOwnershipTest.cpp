#include "config/ConfigView.h"
#include "config/WatchedValue.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace KelvoBase::test
{

namespace
{

using Log = std::vector<std::string>;

/// Each test begins with an empty log and has no value left at its end.
class ConfigFileOwnership : public testing::Test
{
protected:
    void SetUp() override
    {
        WatchedValue::log.clear();
        ASSERT_EQ(0, WatchedValue::living);
    }
    void TearDown() override { EXPECT_EQ(0, WatchedValue::living); }
};

/// Section "s" with the keys "a", "b", "c" and values of these texts. `failing` cannot be copied.
ConfigFile three(const std::string& failing = "")
{
    ConfigFile config;
    for (const std::string key : {"a", "b", "c"}) {
        config.setEntry("s", key, new WatchedValue(key));
    }
    if (!failing.empty()) {
        dynamic_cast<WatchedValue*>(config.getEntry("s", failing))->failClone = true;
    }
    return config;
}

/// Adds an entry whose value cannot be copied to an own section.
void addUncopyable(ConfigFile& config, const std::string& section)
{
    auto value = std::make_unique<WatchedValue>("uncopyable");
    value->failClone = true;
    config.setEntry(section, "k", value.release());
}

TEST_F(ConfigFileOwnership, ValuesAreDeletedWithTheObject)
{
    {
        const ConfigFile config = three();
        EXPECT_EQ(3, WatchedValue::living);
    }
    EXPECT_EQ(0, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, ValuesAreDeletedByClear)
{
    ConfigFile config = three();
    config.clear();
    EXPECT_EQ(0, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, ReplacedValueIsDeletedBehindBothTexts)
{
    ConfigFile config;
    config.setEntry("s", "k", new WatchedValue("old"));
    EXPECT_EQ(Log(), WatchedValue::log); // a new key needs no text
    config.setEntry("s", "k", new WatchedValue("new"));
    EXPECT_EQ(Log({"text old/,", "text new/,", "delete old"}), WatchedValue::log);
    EXPECT_EQ(1, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, EqualTextReplacesAndDeletesToo)
{
    ConfigFile config;
    config.setEntry("s", "k", new WatchedValue("same"));
    Any* const value = new WatchedValue("same");
    config.setEntry("s", "k", value);
    EXPECT_EQ(value, config.getEntry("s", "k"));
    EXPECT_EQ(1, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, TextReplacesAValue)
{
    ConfigFile config = three();
    config.setEntry("s", "b", "text");
    EXPECT_EQ(2, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, NewValueWithoutATextStaysWithTheCaller)
{
    ConfigFile config = three();
    config.init();
    auto value = std::make_unique<WatchedValue>("new");
    value->failText = true;
    Any* const before = config.getEntry("s", "b");
    EXPECT_EQ("new fails in toString", textOf<std::runtime_error>([&] { config.setEntry("s", "b", value.get()); }));
    EXPECT_EQ(before, config.getEntry("s", "b"));
    EXPECT_FALSE(isModified(config));
    EXPECT_EQ(4, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, OldValueWithoutATextStaysStored)
{
    ConfigFile config;
    auto old = std::make_unique<WatchedValue>("old");
    old->failText = true;
    Any* const before = old.get();
    config.setEntry("s", "k", old.release());
    const auto value = std::make_unique<WatchedValue>("new");
    EXPECT_EQ("old fails in toString", textOf<std::runtime_error>([&] { config.setEntry("s", "k", value.get()); }));
    EXPECT_EQ(Log({"text old/,"}), WatchedValue::log);
    EXPECT_EQ("old fails in toString", textOf<std::runtime_error>([&] { config.setEntry("s", "k", "text"); }));
    EXPECT_EQ(before, config.getEntry("s", "k"));
}

TEST_F(ConfigFileOwnership, NewKeyTakesAValueWithoutAText)
{
    ConfigFile config;
    auto value = std::make_unique<WatchedValue>("silent");
    value->failText = true;
    config.setEntry("s", "k", value.release());
    EXPECT_TRUE(config.entryIsExistent("s", "k"));
}

TEST_F(ConfigFileOwnership, FailedCopyOfASectionKeepsWhatWasCopied)
{
    const ConfigFile from = three("b");
    ConfigFile config;
    config.setEntry("t", "old", new WatchedValue("old"));
    config.init();
    EXPECT_EQ("b fails in clone", textOf<std::runtime_error>([&] { config.copySection("s", from, "t"); }));
    EXPECT_EQ(1u, config.findSection("t")->size()); // the old entries are gone
    EXPECT_TRUE(config.entryIsExistent("t", "a"));
    EXPECT_TRUE(isModified(config));
    EXPECT_EQ(4, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, CopyThatFailsAtTheFirstEntryIsNoModification)
{
    const ConfigFile from = three("a");
    ConfigFile config;
    EXPECT_EQ("a fails in clone", textOf<std::runtime_error>([&] { config.copySection("s", from, "t"); }));
    EXPECT_TRUE(config.findSection("t")->empty());
    EXPECT_FALSE(isModified(config));
}

TEST_F(ConfigFileOwnership, MissingSourceDeletesNothing)
{
    ConfigFile config = three();
    EXPECT_THROW(config.copySection("x", ConfigFile(), "s"), UnknownException);
    EXPECT_EQ(3, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, ReplacedSectionIsDeletedInFrontOfTheFirstCopy)
{
    const ConfigFile from = three();
    ConfigFile config;
    config.setEntry("s", "old", new WatchedValue("old"));
    WatchedValue::log.clear();
    config.copySection("s", from, "s");
    EXPECT_EQ(Log({"delete old"}), WatchedValue::log); // and no text of any value was made
    EXPECT_EQ(6, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, FailedCopyKeepsTheSectionsInFront)
{
    ConfigFile from = three();
    addUncopyable(from, "t");
    from.createSection("u");
    ConfigFile config;
    config.setEntry("old", "k", new WatchedValue("old"));
    EXPECT_THROW(config.copy(from), std::runtime_error);
    EXPECT_FALSE(config.sectionIsExistent("old"));
    EXPECT_EQ(3u, config.findSection("s")->size());
    EXPECT_TRUE(config.findSection("t")->empty());
    EXPECT_FALSE(config.sectionIsExistent("u"));
}

TEST_F(ConfigFileOwnership, FailedCompleteCopyAndAssignmentLeaveIdentsAlone)
{
    ConfigFile from = three("b");
    from.setSeperator(":");
    ConfigFile config;
    EXPECT_THROW(config.completeCopy(from), std::runtime_error);
    EXPECT_EQ("=", config.getSeperator());
    EXPECT_THROW(config = from, std::runtime_error);
    EXPECT_EQ("=", config.getSeperator());
    EXPECT_EQ(4, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, FailedCopyConstructionDeletesWhatWasCopied)
{
    const ConfigFile from = three("c");
    std::optional<ConfigFile> config;
    EXPECT_THROW(config.emplace(from), std::runtime_error);
    EXPECT_EQ(3, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, CopyOfTheObjectItselfDeletesItsValues)
{
    ConfigFile config = three();
    config.completeCopy(config);
    EXPECT_EQ(0, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, SectionCopiedOntoItselfByThreeNamesIsEmptied)
{
    ConfigFile config = three();
    config.init();
    config.copySection("s", config, "s");
    EXPECT_EQ("[s]\n", listing(config));
    EXPECT_EQ(0, WatchedValue::living);
    EXPECT_FALSE(isModified(config));
}

TEST_F(ConfigFileOwnership, AssignmentDeletesWhatItReplaces)
{
    ConfigFile config = three();
    config = ConfigFile();
    EXPECT_EQ(0, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, ComparisonStopsAtTheFirstDifference)
{
    const ConfigFile config = three();
    ConfigFile other = three();
    other.setEntry("s", "b", new WatchedValue("other"));
    WatchedValue::log.clear();
    EXPECT_FALSE(config.equals(other));
    EXPECT_EQ(Log({"compare a with a", "compare b with other"}), WatchedValue::log);
}

TEST_F(ConfigFileOwnership, ComparisonOfDifferentNumbersAsksNoValue)
{
    const ConfigFile config = three();
    ConfigFile other = three();
    other.setEntry("s", "d", "more");
    WatchedValue::log.clear();
    EXPECT_FALSE(config.equals(other));
    EXPECT_FALSE(other.equals(config));
    EXPECT_EQ(Log(), WatchedValue::log);
}

TEST_F(ConfigFileOwnership, FaultOfAComparisonPasses)
{
    const ConfigFile config = three();
    const ConfigFile other = three();
    dynamic_cast<WatchedValue*>(config.getEntry("s", "b"))->failEquals = true;
    EXPECT_EQ("b fails in equals", textOf<std::runtime_error>([&] { (void)config.equals(other); }));
    EXPECT_EQ(6, WatchedValue::living);
}

TEST_F(ConfigFileOwnership, QuestionsMakeNoText)
{
    const ConfigFile config = three();
    EXPECT_TRUE(config.entryIsExistent("s", "a"));
    EXPECT_TRUE(config.isListEntry("s", "a"));
    EXPECT_EQ(Log(), WatchedValue::log);
}

TEST_F(ConfigFileOwnership, FailedReadingConstructionDeletesWhatWasRead)
{
    const ScratchDirectory scratch;
    scratch.write("bad.ini", "[s]\na = 1\nb = 2\n=bad\n"); // leaks show under the leak checkers
    std::optional<ConfigFile> config;
    EXPECT_THROW(config.emplace(scratch.location("bad.ini")), OperationFailedException);
    EXPECT_THROW(config.emplace(scratch.location("missing.ini").c_str()), FileNotReadableException);
}

} // namespace

} // namespace KelvoBase::test
