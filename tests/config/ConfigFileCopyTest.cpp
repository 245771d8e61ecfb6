#include "config/ConfigView.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace KelvoBase::test
{

namespace
{

using Text = ScalarAny<std::string>;
using TextList = VectorAny<ScalarAny<std::string>>;

/// Section "a" with two entries, section "b" with one, section "none" without; modified, with idents of its own.
ConfigFile sample()
{
    ConfigFile config;
    config.setEntry("a", "one", "1");
    config.setEntry("a", "two", new ScalarAny<int>(2));
    config.setEntry("b", "three", "3");
    config.createSection("none");
    config.setSectionBeginIdent("<");
    config.setSectionEndIdent(">");
    config.setSeperator(":");
    config.setListSeperator(";");
    config.setCommentSign('%');
    return config;
}

const std::string sampleListing = "[a]\none (StringAny) 1\ntwo (IntAny) 2\n[b]\nthree (StringAny) 3\n[none]\n";

std::string idents(const ConfigFile& config)
{
    return config.getSectionBeginIdent() + config.getSectionEndIdent() + config.getSeperator() +
           config.getListSeperator() + config.getCommentSign();
}

/// `config` without its mark and with the default idents.
ConfigFile unmarked(ConfigFile config)
{
    config.init();
    return config;
}

TEST(ConfigFileCopy, CopyOfASectionReplacesTheTarget)
{
    ConfigFile config = sample();
    config.copySection("a", sample(), "b");
    EXPECT_EQ("[a]\none (StringAny) 1\ntwo (IntAny) 2\n[b]\none (StringAny) 1\ntwo (IntAny) 2\n[none]\n",
              listing(config));
}

TEST(ConfigFileCopy, CopyOfASectionMakesTheTarget)
{
    ConfigFile config;
    config.copySection("b", sample(), "");
    EXPECT_EQ("[]\nthree (StringAny) 3\n", listing(config));
    EXPECT_EQ("[]=,#", idents(config));
}

TEST(ConfigFileCopy, CopiedValuesAreObjectsOfTheirOwn)
{
    ConfigFile config;
    {
        const ConfigFile from = sample();
        config.copySection("a", from, "a");
        EXPECT_NE(from.getEntry("a", "one"), config.getEntry("a", "one"));
        from.getEntry("a", "one")->fromString("changed", ",");
    }
    EXPECT_EQ("1", config.getEntry("a", "one")->toString(","));
}

TEST(ConfigFileCopy, EachCopiedEntryIsAModification)
{
    // Required, Q-521
    ConfigFile config = unmarked(sample());
    config.copySection("a", sample(), "a"); // with what is there already
    EXPECT_EQ(sampleListing, listing(config));
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFileCopy, SectionWithoutEntriesLeavesTheMarkAsItWas)
{
    ConfigFile config = unmarked(sample());
    config.copySection("none", sample(), "a");
    EXPECT_EQ("[a]\n[b]\nthree (StringAny) 3\n[none]\n", listing(config));
    EXPECT_FALSE(isModified(config));
    config.setEntry("new", "key", "value");
    config.copySection("none", sample(), "b");
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFileCopy, MissingSourceIsReportedWithTheFileOfTheTarget)
{
    // Required, Q-508
    ConfigFile from = sample();
    from.setFileName("from.ini");
    ConfigFile config = sample();
    config.setFileName("target.ini");
    EXPECT_EQ("Unknown section 'x' in config file 'target.ini'",
              textOf<UnknownException>([&] { config.copySection("x", from, "a"); }));
    EXPECT_EQ("Unknown section 'x' in config file 'target.ini'",
              textOf<UnknownException>([&] { config.copySection("x", from, "new"); }));
    EXPECT_EQ(sampleListing, listing(config));
}

TEST(ConfigFileCopy, SectionIsCopiedWithinOneObject)
{
    ConfigFile config = unmarked(sample());
    config.copySection("a", "b");
    config.copySection("a", "0");
    EXPECT_EQ("[0]\none (StringAny) 1\ntwo (IntAny) 2\n[a]\none (StringAny) 1\ntwo (IntAny) 2\n"
              "[b]\none (StringAny) 1\ntwo (IntAny) 2\n[none]\n",
              listing(config));
    EXPECT_NE(config.getEntry("a", "one"), config.getEntry("b", "one"));
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFileCopy, MissingSourceWithinOneObjectIsReported)
{
    ConfigFile config = sample();
    EXPECT_EQ("Unknown section 'x' in config file ''", textOf<UnknownException>([&] { config.copySection("x", "b"); }));
    EXPECT_EQ(sampleListing, listing(config));
}

TEST(ConfigFileCopy, SectionCopiedToItsOwnNameStaysAndNeedNotExist)
{
    ConfigFile config = unmarked(sample());
    Any* const value = config.getEntry("a", "one");
    config.copySection("a", "a");
    config.copySection("x", "x");
    EXPECT_EQ(sampleListing, listing(config));
    EXPECT_EQ(value, config.getEntry("a", "one"));
    EXPECT_FALSE(isModified(config));
}

TEST(ConfigFileCopy, CopyReplacesAllSectionsAndNothingElse)
{
    ConfigFile config;
    config.setEntry("old", "key", "value");
    config.setFileName("name.ini");
    config.copy(sample());
    EXPECT_EQ(sampleListing, listing(config));
    EXPECT_EQ("[]=,#", idents(config));
    EXPECT_EQ("name.ini", fileNameOf(config));
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFileCopy, CopyIsModifiedIfThereIsAnyEntry)
{
    struct Row
    {
        bool section;
        bool entry;
    };
    for (const auto& [section, entry] : {Row{false, false}, Row{true, false}, Row{true, true}}) {
        ConfigFile from;
        if (section) {
            from.createSection("s");
        }
        if (entry) {
            from.setEntry("s", "k", "");
        }
        ConfigFile config = sample();
        config.copy(unmarked(from));
        EXPECT_EQ(section, config.sectionIsExistent("s"));
        EXPECT_EQ(entry, isModified(config)) << section << entry;
    }
}

TEST(ConfigFileCopy, CopyOfTheObjectItselfEmptiesIt)
{
    ConfigFile config = sample();
    config.setFileName("name.ini");
    config.copy(config);
    EXPECT_EQ("", listing(config));
    EXPECT_FALSE(isModified(config));
    EXPECT_EQ("name.ini", fileNameOf(config));
}

TEST(ConfigFileCopy, CompleteCopyTakesIdentsAndMark)
{
    ConfigFile config;
    config.setFileName("name.ini");
    config.completeCopy(sample());
    EXPECT_EQ(sampleListing, listing(config));
    EXPECT_EQ("<>:;%", idents(config));
    EXPECT_TRUE(isModified(config));
    EXPECT_EQ("name.ini", fileNameOf(config));
}

TEST(ConfigFileCopy, CompleteCopyTakesTheMissingMark)
{
    ConfigFile config = sample();
    const ConfigFile from = unmarked(sample());
    config.completeCopy(from);
    EXPECT_EQ("[]=,#", idents(config));
    EXPECT_FALSE(isModified(config));
}

TEST(ConfigFileCopy, CompleteCopyOfTheObjectItselfEmptiesIt)
{
    // Required, Q-509
    ConfigFile config = sample();
    config.completeCopy(config);
    EXPECT_EQ("", listing(config));
    EXPECT_EQ("<>:;%", idents(config));
    EXPECT_FALSE(isModified(config));
}

TEST(ConfigFileCopy, AssignmentIsACompleteCopyThatKeepsTheFileName)
{
    ConfigFile from = sample();
    from.setFileName("from.ini");
    ConfigFile config;
    config.setFileName("name.ini");
    EXPECT_EQ(&config, &(config = from));
    EXPECT_EQ(sampleListing, listing(config));
    EXPECT_EQ("<>:;%", idents(config));
    EXPECT_TRUE(isModified(config));
    EXPECT_EQ("name.ini", fileNameOf(config));
    EXPECT_EQ("from.ini", fileNameOf(from));
    config = unmarked(from);
    EXPECT_FALSE(isModified(config));
}

TEST(ConfigFileCopy, AssignmentToItselfDoesNothing)
{
    ConfigFile config = sample();
    const Any* const value = config.getEntry("a", "one");
    ConfigFile& same = config;
    config = same;
    EXPECT_EQ(sampleListing, listing(config));
    EXPECT_EQ(value, config.getEntry("a", "one"));
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFileCopy, ConstructedCopyHasNoFileName)
{
    // Required, Q-504
    const ScratchDirectory scratch;
    ConfigFile from = sample();
    from.setFileName(scratch.location("from.ini"));
    const ConfigFile config(from);
    EXPECT_EQ("", fileNameOf(config));
    EXPECT_EQ("ConfigFile: Unable to open file ''", textOf<OperationFailedException>([&] { config.sync(); }));
    EXPECT_FALSE(std::filesystem::exists(scratch / "from.ini"));
}

TEST(ConfigFileCopy, ConstructedCopyEqualsItsOriginal)
{
    const ConfigFile from = sample();
    const ConfigFile config(from);
    EXPECT_TRUE(config.equals(from));
    EXPECT_EQ(sampleListing, listing(config));
    EXPECT_EQ("<>:;%", idents(config));
    EXPECT_TRUE(isModified(config));
    EXPECT_FALSE(isModified(ConfigFile(unmarked(from))));
}

TEST(ConfigFileCopy, CopyOfManySectionsAndEntriesIsComplete)
{
    ConfigFile from;
    for (int i = 0; i < 300; ++i) {
        from.setEntry("s" + std::to_string(i % 7), "k" + std::to_string(i * 37 % 1000), std::to_string(i));
    }
    const ConfigFile config(from);
    EXPECT_EQ(listing(from), listing(config));
}

/// A change of `sample()` that makes it another one.
struct Difference
{
    const char* what;
    std::function<void(ConfigFile&)> apply;
};

TEST(ConfigFileEquals, AnyDifferenceOfSectionsKeysOrValuesCounts)
{
    const std::vector<Difference> rows = {
        {"one section more", [](ConfigFile& c) { c.createSection("z"); }},
        {"one key more", [](ConfigFile& c) { c.setEntry("none", "key", ""); }},
        {"one key more in front", [](ConfigFile& c) { c.setEntry("a", "a", ""); }},
        {"another text", [](ConfigFile& c) { c.setEntry("b", "three", "4"); }},
        {"another first value", [](ConfigFile& c) { c.setEntry("a", "one", "2"); }},
        {"another type", [](ConfigFile& c) { c.setEntry("a", "two", "2"); }},
        {"a list of one",
         [](ConfigFile& c) {
             auto list = std::make_unique<TextList>();
             list->add(Text("3"));
             c.setEntry("b", "three", list.release());
         }},
    };
    for (const Difference& row : rows) {
        const ConfigFile config = sample();
        ConfigFile other = sample();
        row.apply(other);
        EXPECT_FALSE(config.equals(other)) << row.what;
        EXPECT_FALSE(other.equals(config)) << row.what;
    }
}

TEST(ConfigFileEquals, NamesCountWhereTheNumbersAgree)
{
    ConfigFile config;
    ConfigFile otherSection;
    ConfigFile otherKey;
    config.setEntry("s", "k", "v");
    otherSection.setEntry("t", "k", "v");
    otherKey.setEntry("s", "l", "v");
    EXPECT_FALSE(config.equals(otherSection));
    EXPECT_FALSE(config.equals(otherKey));
}

TEST(ConfigFileEquals, TextDoesNotEqualAFlagOfTheSameText)
{
    ConfigFile config;
    ConfigFile other;
    config.setEntry("s", "k", "1");
    other.setEntry("s", "k", new ScalarAny<bool>(true));
    EXPECT_FALSE(config.equals(other));
}

TEST(ConfigFileEquals, NothingButTheContentCounts)
{
    const ConfigFile config = sample();
    ConfigFile other = unmarked(sample());
    other.setFileName("name.ini");
    EXPECT_TRUE(config.equals(other));
    EXPECT_TRUE(other.equals(config));
    EXPECT_TRUE(config.equals(config));
    EXPECT_TRUE(ConfigFile().equals(ConfigFile()));
    EXPECT_FALSE(ConfigFile().equals(config));
}

} // namespace

} // namespace KelvoBase::test
