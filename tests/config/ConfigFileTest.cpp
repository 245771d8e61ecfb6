#include "config/ConfigView.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

namespace
{

using Text = ScalarAny<std::string>;
using TextList = VectorAny<ScalarAny<std::string>>;

TextList list(const std::vector<std::string>& elements)
{
    TextList result;
    for (const std::string& element : elements) {
        result.add(element);
    }
    return result;
}

/// Two sections with entries of several types, one without; modified.
ConfigFile sample()
{
    ConfigFile config;
    config.setEntry("b", "text", "one");
    config.setEntry("b", "flag", new ScalarAny<bool>(true));
    config.setEntry("a", "list", list({"x", "y"}).clone());
    config.createSection("empty");
    return config;
}

const std::string sampleListing = "[a]\nlist (StringVectorAny) x|y\n"
                                  "[b]\nflag (BoolAny) 1\ntext (StringAny) one\n"
                                  "[empty]\n";

/// Five settings, none of them a default.
void setIdents(ConfigFile& config)
{
    config.setSectionBeginIdent("<");
    config.setSectionEndIdent(">");
    config.setSeperator(":");
    config.setListSeperator(";");
    config.setCommentSign('%');
}

std::string idents(const ConfigFile& config)
{
    return config.getSectionBeginIdent() + " " + config.getSectionEndIdent() + " " + config.getSeperator() + " " +
           config.getListSeperator() + " " + config.getCommentSign();
}

TEST(ConfigFile, NewObjectHasNothingButTheDefaults)
{
    const ConfigFile config;
    EXPECT_TRUE(config.isEmpty());
    EXPECT_TRUE(config.beginSection() == config.endSection());
    EXPECT_EQ("[ ] = , #", idents(config));
    EXPECT_EQ("", fileNameOf(config));
    EXPECT_FALSE(isModified(config));
}

TEST(ConfigFile, InitSetsTheDefaultsAndKeepsContentAndFileName)
{
    ConfigFile config = sample();
    setIdents(config);
    config.setFileName("name.ini");
    config.init();
    EXPECT_EQ("[ ] = , #", idents(config));
    EXPECT_FALSE(isModified(config));
    EXPECT_EQ(sampleListing, listing(config));
    EXPECT_EQ("name.ini", fileNameOf(config));
}

TEST(ConfigFile, EachSetterChangesItsOwnIdentAndMarksNothing)
{
    ConfigFile config;
    config.setSectionBeginIdent("begin");
    EXPECT_EQ("begin ] = , #", idents(config));
    config.setSectionEndIdent("end");
    EXPECT_EQ("begin end = , #", idents(config));
    config.setSeperator(":=");
    EXPECT_EQ("begin end := , #", idents(config));
    config.setListSeperator("");
    EXPECT_EQ("begin end :=  #", idents(config));
    config.setCommentSign(';');
    EXPECT_EQ("begin end :=  ;", idents(config));
    EXPECT_FALSE(isModified(config));
    EXPECT_TRUE(config.isEmpty());
}

TEST(ConfigFile, GettersOfTextsReferToTheObject)
{
    ConfigFile config;
    const std::string& begin = config.getSectionBeginIdent();
    const std::string& end = config.getSectionEndIdent();
    const std::string& seperator = config.getSeperator();
    const std::string& listSeperator = config.getListSeperator();
    setIdents(config);
    EXPECT_EQ("<>:;", begin + end + seperator + listSeperator);
}

TEST(ConfigFile, SectionWithoutEntriesMakesTheObjectNotEmpty)
{
    ConfigFile config;
    config.createSection("");
    EXPECT_FALSE(config.isEmpty());
}

TEST(ConfigFile, FileNameAloneMakesTheObjectNotEmpty)
{
    ConfigFile config;
    config.setFileName("name.ini");
    EXPECT_FALSE(config.isEmpty());
    config.setFileName("");
    EXPECT_TRUE(config.isEmpty());
}

TEST(ConfigFile, ClearRemovesSectionsAndMarkAndNothingElse)
{
    ConfigFile config = sample();
    setIdents(config);
    config.setFileName("name.ini");
    EXPECT_TRUE(isModified(config));
    config.clear();
    EXPECT_EQ("", listing(config));
    EXPECT_FALSE(isModified(config));
    EXPECT_EQ("< > : ; %", idents(config));
    EXPECT_EQ("name.ini", fileNameOf(config));
    EXPECT_FALSE(config.isEmpty());
}

TEST(ConfigFile, ClearDeletesANullValueInTheTable)
{
    ConfigFile config = sample();
    delete config.beginEntry("b")->second;
    config.beginEntry("b")->second = nullptr;
    config.clear();
    EXPECT_TRUE(config.isEmpty());
}

TEST(ConfigFile, SectionsAndEntriesAreSortedByByteValue)
{
    ConfigFile config;
    const std::vector<std::string> names = {"b", "a", "B", "\xE4", "", " ", "ab", std::string("a\0x", 3), "10", "9"};
    for (const std::string& name : names) {
        config.createSection(name);
        config.setEntry("keys", name, "v");
    }
    const std::vector<std::string> expected = {"", " ", "10", "9", "B", "a", std::string("a\0x", 3), "ab", "b", "\xE4"};
    std::vector<std::string> keys;
    std::vector<std::string> sections;
    for (auto entry = config.beginEntry("keys"); entry != config.endEntry("keys"); ++entry) {
        keys.push_back(entry->first);
    }
    for (auto section = config.beginSection(); section != config.endSection(); ++section) {
        if (section->first != "keys") {
            sections.push_back(section->first);
        }
    }
    EXPECT_EQ(expected, keys);
    EXPECT_EQ(expected, sections);
}

TEST(ConfigFile, FindSectionGivesTheTableOrNull)
{
    ConfigFile config = sample();
    const ConfigFile& fixed = config;
    EXPECT_EQ(nullptr, config.findSection("B"));
    EXPECT_EQ(nullptr, fixed.findSection("B"));
    ASSERT_NE(nullptr, config.findSection("b"));
    EXPECT_EQ(2u, config.findSection("b")->size());
    EXPECT_EQ(config.findSection("b"), fixed.findSection("b"));
    EXPECT_EQ(0u, config.findSection("empty")->size());
}

TEST(ConfigFile, SectionIsExistentAlsoWithoutEntries)
{
    const ConfigFile config = sample();
    EXPECT_TRUE(config.sectionIsExistent("a"));
    EXPECT_TRUE(config.sectionIsExistent("empty"));
    EXPECT_FALSE(config.sectionIsExistent(""));
    EXPECT_FALSE(config.sectionIsExistent("a "));
}

TEST(ConfigFile, CreateSectionMarksNothing)
{
    // Required, Q-505
    ConfigFile config;
    config.createSection("new");
    EXPECT_EQ("[new]\n", listing(config));
    EXPECT_FALSE(isModified(config));
}

TEST(ConfigFile, CreateSectionLeavesAnExistingOneAsItIs)
{
    ConfigFile config = sample();
    Any* const value = config.getEntry("a", "list");
    config.createSection("a");
    EXPECT_EQ(sampleListing, listing(config));
    EXPECT_EQ(value, config.getEntry("a", "list"));
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFile, CheckSectionOfNullThrows)
{
    ConfigFile config = sample();
    const ConfigFile& fixed = config;
    const std::string expected = "Unknown section 'a' in config file ''";
    EXPECT_EQ(expected, textOf<UnknownException>([&] { config.checkSection(nullptr, "a"); }));
    EXPECT_EQ(expected, textOf<UnknownException>([&] { fixed.checkSection(nullptr, "a"); }));
}

TEST(ConfigFile, CheckSectionLooksAtNothingButThePointer)
{
    ConfigFile config;
    const ConfigFile& fixed = config;
    const std::map<std::string, Any*> foreign = {{"key", nullptr}};
    EXPECT_NO_THROW(config.checkSection(&foreign, "no such section"));
    EXPECT_NO_THROW(fixed.checkSection(&foreign, "no such section"));
}

TEST(ConfigFile, FaultsNameTheFileAsLocationText)
{
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"", ""},
        {"name.ini", "name.ini"},
        {"dir/name.ini", "dir\\name.ini"},
        {"C:\\dir\\name.ini", "file://localhost/C:\\dir\\name.ini"},
        {"ftp://host/name.ini", "ftp://host/name.ini"},
    };
    for (const auto& [name, shown] : rows) {
        SCOPED_TRACE(name);
        ConfigFile config = sample();
        config.setFileName(name);
        EXPECT_EQ("Unknown section 'it's' in config file '" + shown + "'",
                  textOf<UnknownException>([&] { config.checkSection(nullptr, "it's"); }));
        EXPECT_EQ("Unknown key 'k' in section 'b' in config file '" + shown + "'",
                  textOf<UnknownException>([&] { config.getEntry("b", "k"); }));
    }
}

TEST(ConfigFile, EntryOperationsOnAMissingSectionThrowTheTextOfTheSection)
{
    ConfigFile config = sample();
    const ConfigFile& fixed = config;
    const std::vector<std::function<void()>> rows = {
        [&] { config.beginEntry("x"); }, [&] { config.endEntry("x"); },       [&] { fixed.beginEntry("x"); },
        [&] { fixed.endEntry("x"); },    [&] { fixed.getEntry("x", "key"); }, [&] { fixed.isListEntry("x", "key"); },
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ("Unknown section 'x' in config file ''", textOf<UnknownException>(rows[i])) << "row " << i;
    }
    EXPECT_FALSE(config.sectionIsExistent("x"));
}

TEST(ConfigFile, EntriesOfASectionAreReachedByIterators)
{
    ConfigFile config = sample();
    const ConfigFile& fixed = config;
    EXPECT_EQ("flag", config.beginEntry("b")->first);
    EXPECT_EQ("text", std::prev(config.endEntry("b"))->first);
    EXPECT_EQ("flag", fixed.beginEntry("b")->first);
    EXPECT_EQ("text", std::prev(fixed.endEntry("b"))->first);
    EXPECT_TRUE(fixed.beginEntry("empty") == fixed.endEntry("empty"));
    EXPECT_EQ("a", config.beginSection()->first);
    EXPECT_EQ("empty", std::prev(config.endSection())->first);
    config.beginEntry("b")->second->fromString("false", ",");
    EXPECT_FALSE(config.getEntry("b", "flag")->toBool());
}

TEST(ConfigFile, GetEntryOfAMissingKeyThrows)
{
    const ConfigFile config = sample();
    EXPECT_EQ("Unknown key 'Text' in section 'b' in config file ''",
              textOf<UnknownException>([&] { config.getEntry("b", "Text"); }));
    EXPECT_EQ("Unknown key '' in section 'empty' in config file ''",
              textOf<UnknownException>([&] { config.getEntry("empty", ""); }));
    EXPECT_EQ("Unknown key 'Text' in section 'b' in config file ''",
              textOf<UnknownException>([&] { config.isListEntry("b", "Text"); }));
}

TEST(ConfigFile, ValueIsConvertedWhenItIsAskedFor)
{
    ConfigFile config;
    config.setEntry("", "", "12");
    config.setEntry("", "word", "twelve");
    EXPECT_EQ(12, config.getEntry("", "")->toInt());
    EXPECT_EQ("Could not fill a IntAny from string 'twelve', Wrong type: 'int'",
              textOf<WrongTypeException>([&] { config.getEntry("", "word")->toInt(); }));
}

TEST(ConfigFile, EntryIsExistentNeverThrows)
{
    const ConfigFile config = sample();
    EXPECT_TRUE(config.entryIsExistent("b", "text"));
    EXPECT_TRUE(config.entryIsExistent("a", "list"));
    EXPECT_FALSE(config.entryIsExistent("b", "list"));
    EXPECT_FALSE(config.entryIsExistent("empty", ""));
    EXPECT_FALSE(config.entryIsExistent("x", "text"));
}

TEST(ConfigFile, ListEntryIsWhateverHasASize)
{
    // Required, Q-506
    ConfigFile config;
    config.setEntry("s", "text", "");
    config.setEntry("s", "flag", new ScalarAny<bool>(false));
    config.setEntry("s", "none", new TextList);
    config.setEntry("s", "one", list({""}).clone());
    config.setEntry("s", "two", list({"a", "b"}).clone());
    EXPECT_TRUE(config.isListEntry("s", "text"));
    EXPECT_TRUE(config.isListEntry("s", "flag"));
    EXPECT_FALSE(config.isListEntry("s", "none"));
    EXPECT_TRUE(config.isListEntry("s", "one"));
    EXPECT_TRUE(config.isListEntry("s", "two"));
}

TEST(ConfigFile, SetEntryKeepsThePointerAndMakesTheSection)
{
    ConfigFile config;
    Any* const value = new ScalarAny<double>(1.5);
    config.setEntry("new", "key", value);
    EXPECT_EQ(value, config.getEntry("new", "key"));
    EXPECT_EQ("[new]\nkey (DoubleAny) 1.5\n", listing(config));
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFile, SetEntryReplacesTheValueOfAKey)
{
    ConfigFile config = sample();
    Any* const value = new ScalarAny<int>(7);
    config.setEntry("b", "text", value);
    EXPECT_EQ(value, config.getEntry("b", "text"));
    EXPECT_EQ("[a]\nlist (StringVectorAny) x|y\n[b]\nflag (BoolAny) 1\ntext (IntAny) 7\n[empty]\n", listing(config));
}

TEST(ConfigFile, SetEntryOfATextStoresItWholeAsOneScalar)
{
    ConfigFile config;
    config.setEntry("s", "k", " a,\"b\" # c ");
    EXPECT_EQ("[s]\nk (StringAny)  a,\"b\" # c \n", listing(config));
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFile, SetEntryTakesATextThatBelongsToTheEntryItReplaces)
{
    ConfigFile config;
    config.setEntry("s", "k", "v");
    const std::string& key = config.beginEntry("s")->first;
    config.setEntry(config.beginSection()->first, key, key);
    EXPECT_EQ("[s]\nk (StringAny) k\n", listing(config));
}

TEST(ConfigFile, NewKeyIsAModificationWhateverItsValue)
{
    ConfigFile config;
    config.createSection("s");
    config.setEntry("s", "k", "");
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFile, ModificationFollowsTheTextAndNotTheType)
{
    // Required, Q-507
    struct Row
    {
        std::shared_ptr<Any> before;
        std::shared_ptr<Any> after;
        bool modified;
    };
    const std::vector<Row> rows = {
        {std::make_shared<Text>("1"), std::make_shared<Text>("1"), false},
        {std::make_shared<Text>("1"), std::make_shared<ScalarAny<bool>>(true), false},
        {std::make_shared<ScalarAny<bool>>(true), std::make_shared<ScalarAny<int>>(1), false},
        {std::make_shared<Text>("1,2"), std::make_shared<TextList>(list({"1", "2"})), false},
        {std::make_shared<Text>("a,,b"), std::make_shared<TextList>(list({"a,b"})), false},
        {std::make_shared<Text>(""), std::make_shared<TextList>(), false},
        {std::make_shared<Text>("1;2"), std::make_shared<TextList>(list({"1", "2"})), true},
        {std::make_shared<Text>("1"), std::make_shared<Text>("2"), true},
        {std::make_shared<Text>("1"), std::make_shared<Text>("1 "), true},
        {std::make_shared<Text>("true"), std::make_shared<ScalarAny<bool>>(true), true},
        {std::make_shared<TextList>(list({"a,b"})), std::make_shared<TextList>(list({"a", "b"})), true},
        {std::make_shared<ScalarAny<double>>(1), std::make_shared<ScalarAny<double>>(std::nextafter(1, 2)), false},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ConfigFile config;
        config.setEntry("s", "k", rows[i].before->clone());
        config.init();
        config.setListSeperator(";"); // has no say
        config.setEntry("s", "k", rows[i].after->clone());
        EXPECT_EQ(rows[i].modified, isModified(config)) << "row " << i;
        EXPECT_EQ(rows[i].after->getTypeString(), config.getEntry("s", "k")->getTypeString()) << "row " << i;
    }
}

TEST(ConfigFile, EqualTextKeepsTheMarkOfAnEarlierChange)
{
    ConfigFile config = sample();
    config.setEntry("b", "text", "one");
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFile, EntryOfAnotherSectionOfTheSameKeyIsANewOne)
{
    ConfigFile config = sample();
    config.init();
    config.setEntry("a", "text", "one");
    EXPECT_TRUE(isModified(config));
    EXPECT_EQ("one", config.getEntry("b", "text")->toString(","));
}

} // namespace

} // namespace KelvoBase::test
