#include "config/ConfigView.h"
#include "config/FileText.h"
#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

namespace
{

using namespace std::string_literals;

using TextList = VectorAny<ScalarAny<std::string>>;
using Setting = std::function<void(ConfigFile&)>;

constexpr const char* emptyKey = "[]\n (BoolAny) 1\n";

/// Merges a file of this content.
void merge(ConfigFile& config, const std::string& content)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", content);
    config.parseFile(ResourceLocation(scratch.location("file.ini")));
}

std::string seenIn(const std::string& content)
{
    ConfigFile config;
    merge(config, content);
    return listing(config);
}

/// What is read with other idents.
std::string seenIn(const std::string& content, const Setting& set)
{
    ConfigFile config;
    set(config);
    merge(config, content);
    return listing(config);
}

std::string written(const ConfigFile& config)
{
    const ScratchDirectory scratch;
    config.saveToDisk(scratch.location("file.ini"));
    return fileText(scratch / "file.ini");
}

struct Example
{
    std::string content;
    std::string seen;
};

void check(const std::vector<Example>& examples)
{
    for (const auto& [content, seen] : examples) {
        EXPECT_EQ(seenIn(content), seen) << "read from:\n" << content;
    }
}

/// What a parse error leaves in the trace.
std::string traceOf(const std::string& content)
{
    const TraceCapture trace(Trace::fail);
    ConfigFile config;
    textOf<OperationFailedException>([&] { merge(config, content); });
    return trace.text();
}

std::string errorTrace(const std::string& number, const std::string& line, const std::string& what)
{
    return "|-- ConfigFile::parse(): error in line " + number + "\n|-- '" + line + "'\n|-- while parsing " + what +
           "\n";
}

} // namespace

// Lines

TEST(ConfigFileTextTest, ScalarIsTheTextBehindTheSeparator)
{
    check({
        {"a=1", "[]\na (StringAny) 1\n"},
        {"  a  =  1  ", "[]\na (StringAny) 1\n"},
        {"\t\va\f \r=\r\t1\v\f", "[]\na (StringAny) 1\n"},
        {"a b = c  d", "[]\na b (StringAny) c  d\n"},
        {"a=b=c", "[]\na (StringAny) b=c\n"},
        {"a==", "[]\na (StringAny) =\n"},
        {"a=", "[]\na (StringAny) \n"},
        {"a=   ", "[]\na (StringAny) \n"},
        {"a=[s]", "[]\na (StringAny) [s]\n"},
        {"a=x\\y", "[]\na (StringAny) x\\y\n"},
        {"a=x\\", "[]\na (StringAny) x\\\n"},
        {"a=\\n", "[]\na (StringAny) \\n\n"},
    });
}

TEST(ConfigFileTextTest, LineWithoutSeparatorIsAFlag)
{
    check({
        {"a", "[]\na (BoolAny) 1\n"},
        {"  a  ", "[]\na (BoolAny) 1\n"},
        {"a b,c", "[]\na b,c (BoolAny) 1\n"},
        {"\"a\"", "[]\n\"a\" (BoolAny) 1\n"},
        {"s]", "[]\ns] (BoolAny) 1\n"},
        {"a [s]", "[]\na [s] (BoolAny) 1\n"},
        {"false", "[]\nfalse (BoolAny) 1\n"},
        {"a # note", "[]\na (BoolAny) 1\n"},
    });
}

TEST(ConfigFileTextTest, ListSeparatorMakesAList)
{
    check({
        {"a=1,2,3", "[]\na (StringVectorAny) 1|2|3\n"},
        {"a= 1 , 2 ,\t3 ", "[]\na (StringVectorAny) 1|2|3\n"},
        {"a=1,", "[]\na (StringVectorAny) 1|\n"},
        {"a=,1", "[]\na (StringVectorAny) |1\n"},
        {"a=,", "[]\na (StringVectorAny) |\n"},
        {"a=1,,2", "[]\na (StringVectorAny) 1||2\n"},
        {"a=1, ,2", "[]\na (StringVectorAny) 1||2\n"},
        {"a=x\\,y", "[]\na (StringVectorAny) x\\|y\n"},
        {"a=b=1,c=2", "[]\na (StringVectorAny) b=1|c=2\n"},
    });
}

TEST(ConfigFileTextTest, QuoteHidesListSeparatorsAndVanishes)
{
    check({
        {"a=\"1,2\"", "[]\na (StringAny) 1,2\n"},
        {"a=\"1,2\",3", "[]\na (StringVectorAny) 1,2|3\n"},
        {"a=x\"y\"z", "[]\na (StringAny) xyz\n"},
        {"a=x\"y", "[]\na (StringAny) xy\n"},
        {"a=x\"y,z", "[]\na (StringAny) xy,z\n"},
        {"a=\"", "[]\na (StringAny) \n"},
        {"a=\"\"", "[]\na (StringAny) \n"},
        {"a=\"\",\"\"", "[]\na (StringVectorAny) |\n"},
        {"a=\\\"1,2\\\"", "[]\na (StringAny) \\1,2\\\n"},
        {"a='1,2'", "[]\na (StringVectorAny) '1|2'\n"},
    });
}

TEST(ConfigFileTextTest, BlanksAreTrimmedBehindTheQuotes)
{
    // Required, Q-532
    check({
        {"a = \" x \"", "[]\na (StringAny) x\n"},
        {"a = \" x \", \" y \"", "[]\na (StringVectorAny) x|y\n"},
        {"a = \" \"", "[]\na (StringAny) \n"},
    });
}

TEST(ConfigFileTextTest, HeadingBeginsASection)
{
    check({
        {"[s]", "[s]\n"},
        {"[s]\na=1", "[s]\na (StringAny) 1\n"},
        {"[s] x=1", "[s]\n"},
        {"[s]]", "[s]\n"},
        {"[[s]", "[[s]\n"},
        {"  [s]  ", "[s]\n"},
        {"[]", "[]\n"},
        {"[s=1]", "[s=1]\n"},
        {"[s] # note", "[s]\n"},
        {"[a,\"b\"]", "[a,\"b\"]\n"},
    });
}

TEST(ConfigFileTextTest, NameOfASectionKeepsItsBlanks)
{
    // Required, Q-531
    check({
        {"[ s ]", "[ s ]\n"},
        {"[ ]", "[ ]\n"},
        {"[\ts]\na=1\n[s]\na=2\n", "[\ts]\na (StringAny) 1\n[s]\na (StringAny) 2\n"},
    });
}

TEST(ConfigFileTextTest, EntriesInFrontOfTheFirstHeadingBelongToTheEmptySection)
{
    check({
        {"a=1\n[s]\nb=2\n", "[]\na (StringAny) 1\n[s]\nb (StringAny) 2\n"},
        {"[s]\n[]\na=1\n", "[]\na (StringAny) 1\n[s]\n"},
    });
}

TEST(ConfigFileTextTest, EmptySectionComesIntoBeingWithItsFirstEntry)
{
    EXPECT_EQ(seenIn("[s]\nb=2\n"), "[s]\nb (StringAny) 2\n");
}

TEST(ConfigFileTextTest, HeadingThatRepeatsGoesOnInItsSection)
{
    EXPECT_EQ(seenIn("[s]\na=1\n[t]\nb=2\n[s]\nc=3\n"),
              "[s]\na (StringAny) 1\nc (StringAny) 3\n[t]\nb (StringAny) 2\n");
}

TEST(ConfigFileTextTest, KeyThatRepeatsKeepsTheLastValue)
{
    check({
        {"a=1\na=2\n", "[]\na (StringAny) 2\n"},
        {"a=1\na\n", "[]\na (BoolAny) 1\n"},
        {"a\na=1,2\n", "[]\na (StringVectorAny) 1|2\n"},
        {"[s]\na=1\n[t]\na=2\n[s]\na=3\n", "[s]\na (StringAny) 3\n[t]\na (StringAny) 2\n"},
    });
}

TEST(ConfigFileTextTest, EntriesComeSortedByByteValue)
{
    EXPECT_EQ(seenIn("b=1\n\xC3\xA4=2\nB=3\na=4\nab=5\n"),
              "[]\nB (StringAny) 3\na (StringAny) 4\nab (StringAny) 5\nb (StringAny) 1\n\xC3\xA4 (StringAny) 2\n");
}

// Comments and blanks

TEST(ConfigFileTextTest, CommentAtTheBeginningAndEmptyLineAreSkipped)
{
    check({
        {"# note", ""},
        {"#", ""},
        {"# note\n# note\n", ""},
        {"", ""},
        {"\n", ""},
        {"\n\n\n", ""},
        {"# a=1\n\nb=2\n#", "[]\nb (StringAny) 2\n"},
    });
}

TEST(ConfigFileTextTest, CommentSignInQuotesBeginsAComment)
{
    // Required, Q-501
    check({
        {"a=1 # note", "[]\na (StringAny) 1\n"},
        {"a=1#note", "[]\na (StringAny) 1\n"},
        {"a=\"1 # 2\"", "[]\na (StringAny) 1\n"},
        {"a=\"1,2#\",3", "[]\na (StringAny) 1,2\n"},
        {"a=\\#1", "[]\na (StringAny) \\\n"},
        {"a=##1", "[]\na (StringAny) \n"},
        {"a#=1", "[]\na (BoolAny) 1\n"},
    });
}

TEST(ConfigFileTextTest, LineOfBlanksStoresTheEmptyKey)
{
    // Required, Q-502
    check({
        {"  # note", emptyKey},
        {"  ", emptyKey},
        {" ", emptyKey},
        {"\t\n", emptyKey},
        {"\t# a=1\n", emptyKey},
        {"[s]\na=1\n  # note\n", "[s]\n (BoolAny) 1\na (StringAny) 1\n"},
    });
}

// Separators of more than a byte, and other idents

TEST(ConfigFileTextTest, SeparatorIsASetOfBytesAndTheTextStartsItsLengthBehind)
{
    // Required, Q-503
    const Setting set = [](ConfigFile& config) { config.setSeperator(":="); };
    EXPECT_EQ(seenIn("a:bcd", set), "[]\na (StringAny) cd\n");
    EXPECT_EQ(seenIn("a:=1", set), "[]\na (StringAny) 1\n");
    EXPECT_EQ(seenIn("a=:1", set), "[]\na (StringAny) 1\n");
    EXPECT_EQ(seenIn("a=1", set), "[]\na (StringAny) \n");
    EXPECT_EQ(seenIn("a = 1", set), "[]\na (StringAny) 1\n");
    EXPECT_EQ(seenIn("a", set), "[]\na (BoolAny) 1\n");
}

TEST(ConfigFileTextTest, TextBeyondTheLinesEndThrows)
{
    // Required, Q-503
    ConfigFile config;
    config.setSeperator(":=");
    for (const char* line : {"a:", "a=", ":", "=", " a : "}) {
        EXPECT_EQ(textOf<std::out_of_range>([&] { merge(config, line); }), "basic_string::substr") << line;
    }
    EXPECT_EQ(listing(config), "");
}

TEST(ConfigFileTextTest, TextBeyondTheLinesEndIsFoundBeforeTheEmptyKey)
{
    ConfigFile config;
    config.setSeperator("=::");
    EXPECT_EQ(textOf<std::out_of_range>([&] { merge(config, "=1"); }), "basic_string::substr");
    textOf<OperationFailedException>([&] { merge(config, "=12"); });
}

TEST(ConfigFileTextTest, EmptySeparatorMakesEveryEntryAFlag)
{
    const Setting set = [](ConfigFile& config) { config.setSeperator(""); };
    EXPECT_EQ(seenIn("a=1\n=2\n", set), "[]\n=2 (BoolAny) 1\na=1 (BoolAny) 1\n");
}

TEST(ConfigFileTextTest, ListSeparatorIsASetOfBytes)
{
    const Setting set = [](ConfigFile& config) { config.setListSeperator(", "); };
    EXPECT_EQ(seenIn("a=1,2 3\nb=1, 2\nc=\"1 2\"\nd=1\n", set),
              "[]\na (StringVectorAny) 1|2|3\nb (StringVectorAny) 1||2\nc (StringAny) 1 2\nd (StringAny) 1\n");
}

TEST(ConfigFileTextTest, EmptyListSeparatorMakesNoLists)
{
    const Setting set = [](ConfigFile& config) { config.setListSeperator(""); };
    EXPECT_EQ(seenIn("a=1,2\nb=\"1\",2\n", set), "[]\na (StringAny) 1,2\nb (StringAny) 1,2\n");
}

TEST(ConfigFileTextTest, QuoteAsListSeparatorSplits)
{
    const Setting set = [](ConfigFile& config) { config.setListSeperator("\""); };
    EXPECT_EQ(seenIn("a=1\"2,3\"\n", set), "[]\na (StringVectorAny) 1|2,3|\n");
}

TEST(ConfigFileTextTest, OtherCommentSignLeavesTheHashAlone)
{
    const Setting set = [](ConfigFile& config) { config.setCommentSign(';'); };
    EXPECT_EQ(seenIn("# a = 1 # 2 ; note\n; note\n", set), "[]\n# a (StringAny) 1 # 2\n");
}

TEST(ConfigFileTextTest, CommentSignOfCodeZeroCutsAtTheZero)
{
    const Setting set = [](ConfigFile& config) { config.setCommentSign('\0'); };
    EXPECT_EQ(seenIn("a=1\0b\n\0c\nd#\n"s, set), "[]\na (StringAny) 1\nd# (BoolAny) 1\n");
}

TEST(ConfigFileTextTest, IdentsOfSeveralBytesAreTextsForHeadings)
{
    const Setting set = [](ConfigFile& config) {
        config.setSectionBeginIdent("<<");
        config.setSectionEndIdent(">>");
    };
    EXPECT_EQ(seenIn("<<s>>\n<a\n< <t>>\n<b<<c>>\n", set), "[c]\n[s]\n< <t>> (BoolAny) 1\n<a (BoolAny) 1\n");
}

TEST(ConfigFileTextTest, BeginIdentBehindItsOwnFirstByteOpensAHeading)
{
    const Setting set = [](ConfigFile& config) { config.setSectionBeginIdent("[["); };
    EXPECT_EQ(seenIn("[x [[s] a=1\nb=2", set), "[s]\nb (StringAny) 2\n");
}

TEST(ConfigFileTextTest, EqualIdentsGiveANameUpToTheLinesEnd)
{
    // Required, Q-530
    const Setting set = [](ConfigFile& config) {
        config.setSectionBeginIdent("|");
        config.setSectionEndIdent("|");
    };
    EXPECT_EQ(seenIn("|s| a=1\n", set), "[s| a=1]\n");
    EXPECT_EQ(seenIn("|\n", set), "[]\n");
}

TEST(ConfigFileTextTest, EndIdentInFrontGivesANameUpToTheLinesEnd)
{
    // Required, Q-530
    const Setting overlapping = [](ConfigFile& config) {
        config.setSectionBeginIdent("[[");
        config.setSectionEndIdent("x");
    };
    EXPECT_EQ(seenIn("[x[[s x]\n", overlapping), "[s x]]\n");
    EXPECT_EQ(seenIn("[x[[\n", overlapping), "[]\n");
    const Setting empty = [](ConfigFile& config) { config.setSectionEndIdent(""); };
    EXPECT_EQ(seenIn("[s]\n", empty), "[s]]\n");
}

TEST(ConfigFileTextTest, EmptyBeginIdentOpensNoHeading)
{
    const Setting set = [](ConfigFile& config) { config.setSectionBeginIdent(""); };
    EXPECT_EQ(seenIn("[s]\n \na=1\n\0]\n"s, set),
              "[]\n (BoolAny) 1\n\0] (BoolAny) 1\n[s] (BoolAny) 1\na (StringAny) 1\n"s);
}

TEST(ConfigFileTextTest, SeparatorInABeginIdentIsAHeadingFirst)
{
    const Setting set = [](ConfigFile& config) {
        config.setSectionBeginIdent("=");
        config.setSectionEndIdent("=");
    };
    EXPECT_EQ(seenIn("=s\n", set), "[s]\n");
}

TEST(ConfigFileTextTest, OneTextForAllIdentsMakesHeadings)
{
    const Setting set = [](ConfigFile& config) {
        for (auto setter : {&ConfigFile::setSectionBeginIdent, &ConfigFile::setSectionEndIdent,
                            &ConfigFile::setSeperator, &ConfigFile::setListSeperator}) {
            (config.*setter)("%");
        }
    };
    EXPECT_EQ(seenIn("%s\na%1%2\n", set), "[s]\na (StringVectorAny) 1|2\n");
}

TEST(ConfigFileTextTest, IdentsCanChangeBetweenFiles)
{
    ConfigFile config;
    merge(config, "[s]\na=1,2\n");
    config.setSeperator(":");
    config.setListSeperator(";");
    config.setSectionBeginIdent("(");
    config.setSectionEndIdent(")");
    config.setCommentSign('!');
    merge(config, "(s)\nb:1;2 ! note\na=1:2\n");
    EXPECT_EQ(listing(config), "[s]\na (StringVectorAny) 1|2\na=1 (StringAny) 2\nb (StringVectorAny) 1|2\n");
}

// Bytes

TEST(ConfigFileTextTest, LastLineNeedsNoEnd)
{
    check({
        {"a=1\nb=2", "[]\na (StringAny) 1\nb (StringAny) 2\n"},
        {"a=1\n[s]", "[]\na (StringAny) 1\n[s]\n"},
        {"a=1\n# note", "[]\na (StringAny) 1\n"},
    });
}

TEST(ConfigFileTextTest, CarriageReturnsGoWithTrimming)
{
    check({
        {"[s]\r\na=1\r\nb\r\nc=1,2\r\n", "[s]\na (StringAny) 1\nb (BoolAny) 1\nc (StringVectorAny) 1|2\n"},
        {"a=\"x\"\r\n", "[]\na (StringAny) x\n"},
        {"a=1\rb=2\r", "[]\na (StringAny) 1\rb=2\n"},
    });
}

TEST(ConfigFileTextTest, ByteOrderMarkIsPartOfTheFirstLine)
{
    check({
        {"\xEF\xBB\xBF[s]\na=1\n", "[]\na (StringAny) 1\n\xEF\xBB\xBF[s] (BoolAny) 1\n"},
        {"\xEF\xBB\xBF"
         "a=1\n",
         "[]\n\xEF\xBB\xBF"
         "a (StringAny) 1\n"},
        {"\xEF\xBB\xBF# note\n", "[]\n\xEF\xBB\xBF (BoolAny) 1\n"},
    });
}

TEST(ConfigFileTextTest, BytesPassAsTheyAre)
{
    check({
        {"a=x\0y\nb\0c=1\n"s, "[]\na (StringAny) x\0y\nb\0c (StringAny) 1\n"s},
        {"a=\0\n[\0]\n"s, "[]\na (StringAny) \0\n[\0]\n"s},
        {"a=\xFF\xA0\x85\n", "[]\na (StringAny) \xFF\xA0\x85\n"},
        {"\xE4=\x01\x7F\n", "[]\n\xE4 (StringAny) \x01\x7F\n"},
        {"a=\x1C x \x1F\n", "[]\na (StringAny) \x1C x \x1F\n"},
    });
}

TEST(ConfigFileTextTest, LineOfTenMegabytesIsRead)
{
    const std::string text(10'000'000, 'x');
    ConfigFile config;
    merge(config, "[s]\na=" + text + "\nb=1\n" + text + "\n");
    EXPECT_EQ(config.getEntry("s", "a")->toString(","), text);
    EXPECT_EQ(config.getEntry("s", "b")->toString(","), "1");
    EXPECT_TRUE(config.getEntry("s", text)->toBool());
}

TEST(ConfigFileTextTest, LinesAroundEveryLengthOfABufferAreRead)
{
    // Some end with a block of the file, whatever its size, and some go over it.
    std::string content;
    std::size_t count = 0;
    for (std::size_t length = 1; content.size() < 300'000; length = length % 997 + 1) {
        content += "k" + std::to_string(count++) + "=" + std::string(length, 'v') + "\n";
    }
    ConfigFile config;
    merge(config, content);
    ASSERT_EQ(config.findSection("")->size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_EQ(config.getEntry("", "k" + std::to_string(i))->toString(","), std::string(i % 997 + 1, 'v')) << i;
    }
}

TEST(ConfigFileTextTest, FileOfTenMegabytesIsRead)
{
    std::string content;
    int sections = 0;
    while (content.size() < 10'000'000) {
        content += "[section " + std::to_string(sections++) + "]\n# " + std::string(5000, '=') + "\n";
        for (int i = 0; i < 10; ++i) {
            content += "key " + std::to_string(i) + " = " + std::string(500, 'x') + ", y\n";
        }
    }
    ConfigFile config;
    merge(config, content);
    EXPECT_EQ(std::distance(config.beginSection(), config.endSection()), sections);
    for (auto section = config.beginSection(); section != config.endSection(); ++section) {
        ASSERT_EQ(section->second.size(), 10U);
        ASSERT_EQ(section->second.at("key 7")->toString("|"), std::string(500, 'x') + "|y");
    }
}

// Merging

TEST(ConfigFileTextTest, SecondFileIsMerged)
{
    ConfigFile config;
    merge(config, "a=1\nb=2\n[s]\nc=3\n");
    merge(config, "b=4\n[t]\nd=5\n[s]\nc\n[u]\n");
    EXPECT_EQ(listing(config), "[]\na (StringAny) 1\nb (StringAny) 4\n[s]\nc (BoolAny) 1\n[t]\nd (StringAny) 5\n[u]\n");
}

TEST(ConfigFileTextTest, ParseAgainReadsTheFileAgain)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", "a=1\n");
    ConfigFile config;
    config.setFileName(scratch.location("file.ini"));
    config.parse();
    config.setEntry("", "b", "2");
    scratch.write("file.ini", "a=3\n");
    config.parse();
    EXPECT_EQ(listing(config), "[]\na (StringAny) 3\nb (StringAny) 2\n");
}

TEST(ConfigFileTextTest, ParsedValuesReplaceValuesOfAnyType)
{
    ConfigFile config;
    config.setEntry("", "a", new ScalarAny<int>(7));
    config.setEntry("", "b", new VectorAny<ScalarAny<double>>());
    merge(config, "a=x\nb=y\n");
    EXPECT_EQ(listing(config), "[]\na (StringAny) x\nb (StringAny) y\n");
}

TEST(ConfigFileTextTest, ParseMergesIntoASectionThatExistsAndIsEmpty)
{
    ConfigFile config;
    config.createSection("");
    config.createSection("s");
    merge(config, "a=1\n[s]\nb=2\n");
    EXPECT_EQ(listing(config), "[]\na (StringAny) 1\n[s]\nb (StringAny) 2\n");
}

TEST(ConfigFileTextTest, FileWithoutContentChangesNothingButTheMark)
{
    for (const char* content : {"", "# note\n\n# note", "\n"}) {
        ConfigFile config;
        config.setEntry("s", "a", "1");
        EXPECT_TRUE(isModified(config));
        merge(config, content);
        EXPECT_EQ(listing(config), "[s]\na (StringAny) 1\n") << content;
        EXPECT_FALSE(isModified(config)) << content;
    }
}

TEST(ConfigFileTextTest, ParsingMakesNoModification)
{
    ConfigFile config;
    merge(config, "[s]\na=1\na=2\nb\n");
    EXPECT_FALSE(isModified(config));
    config.setEntry("s", "a", "3");
    EXPECT_TRUE(isModified(config));
    merge(config, "[s]\na=4\n");
    EXPECT_FALSE(isModified(config));
}

// File names

TEST(ConfigFileTextTest, ParseFileSetsTheFileName)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", "a=1\n");
    const ResourceLocation location(scratch.location("file.ini"));
    ConfigFile config;
    config.parseFile(location);
    EXPECT_EQ(fileNameOf(config), location.str());
}

TEST(ConfigFileTextTest, ParseFileKeepsThePathOnly)
{
    const ScratchDirectory scratch;
    const ResourceLocation location("file://user@/" + scratch.location("file.ini"));
    ConfigFile config;
    EXPECT_THROW(config.parseFile(location), FileNotReadableException);
    EXPECT_EQ(fileNameOf(config), ResourceLocation(location.getFilePath('\\')).str());
}

TEST(ConfigFileTextTest, ParseFileSetsTheFileNameAlsoIfReadingFails)
{
    const ScratchDirectory scratch;
    const ResourceLocation location(scratch.location("missing.ini"));
    ConfigFile config;
    config.setFileName("before.ini");
    EXPECT_THROW(config.parseFile(location), FileNotReadableException);
    EXPECT_EQ(fileNameOf(config), location.str());
}

TEST(ConfigFileTextTest, RemoteLocationIsRefusedAndChangesNothing)
{
    ConfigFile config;
    config.setFileName("before.ini");
    EXPECT_EQ(textOf<NotAFileException>([&] { config.parseFile(ResourceLocation("ftp://host/a.ini")); }),
              "\"ftp://host/a.ini\" is not a (locally accessible) file or directory name.");
    EXPECT_EQ(fileNameOf(config), "before.ini");
    config.setFileName("ftp://host/b.ini");
    EXPECT_EQ(textOf<NotAFileException>([&] { config.parse(); }),
              "\"ftp://host/b.ini\" is not a (locally accessible) file or directory name.");
}

TEST(ConfigFileTextTest, SetFileNameNeitherReadsNorWrites)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", "a=1\n");
    ConfigFile config;
    config.setEntry("s", "b", "2");
    config.setFileName(scratch.location("file.ini"));
    EXPECT_EQ(listing(config), "[s]\nb (StringAny) 2\n");
    EXPECT_EQ(fileText(scratch / "file.ini"), "a=1\n");
    config.setFileName("x.ini");
    EXPECT_EQ(fileNameOf(config), "x.ini");
}

TEST(ConfigFileTextTest, RelativeNameIsReadFromTheWorkingDirectory)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", "a=1\n");
    const ScopedWorkingDirectory here(scratch.path());
    ConfigFile config;
    config.setFileName("file.ini");
    config.parse();
    EXPECT_EQ(listing(config), "[]\na (StringAny) 1\n");
}

TEST(ConfigFileTextTest, MissingFileLeavesTheObjectAsItWas)
{
    const ScratchDirectory scratch;
    ConfigFile config;
    config.setEntry("s", "a", "1");
    EXPECT_THROW(config.parseFile(ResourceLocation(scratch.location("missing.ini"))), FileNotReadableException);
    EXPECT_EQ(listing(config), "[s]\na (StringAny) 1\n");
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFileTextTest, ObjectWithoutFileNameCannotBeParsed)
{
    ConfigFile config;
    EXPECT_THROW(config.parse(), FileNotReadableException);
}

TEST(ConfigFileTextTest, DirectoryCannotBeParsed)
{
    const ScratchDirectory scratch;
    ConfigFile config;
    config.setEntry("s", "a", "1");
    EXPECT_THROW(config.parseFile(ResourceLocation(scratch.location())), FileNotReadableException);
    EXPECT_EQ(listing(config), "[s]\na (StringAny) 1\n");
    EXPECT_TRUE(isModified(config));
}

// Parse errors

TEST(ConfigFileTextTest, HeadingWithoutEndIsAnError)
{
    EXPECT_EQ(traceOf("[s"), errorTrace("1", "[s", "Section"));
    EXPECT_EQ(traceOf("[s # ]"), errorTrace("1", "[s ", "Section"));
    EXPECT_EQ(traceOf("["), errorTrace("1", "[", "Section"));
    EXPECT_EQ(traceOf("[a=1"), errorTrace("1", "[a=1", "Section"));
}

TEST(ConfigFileTextTest, SeparatorAtTheBeginningIsAnError)
{
    EXPECT_EQ(traceOf("=1"), errorTrace("1", "=1", "Entry"));
    EXPECT_EQ(traceOf("="), errorTrace("1", "=", "Entry"));
    EXPECT_EQ(traceOf("  =1 "), errorTrace("1", "  =1 ", "Entry"));
    EXPECT_EQ(traceOf("\t=1 # note"), errorTrace("1", "\t=1 ", "Entry"));
    EXPECT_EQ(traceOf("=1\r"), errorTrace("1", "=1\r", "Entry"));
}

TEST(ConfigFileTextTest, SkippedLinesAreCountedInTheReport)
{
    EXPECT_EQ(traceOf("# note\n\n\n=1\n"), errorTrace("4", "=1", "Entry"));
    EXPECT_EQ(traceOf("a=1\n\n[s]\n# x\n[t\nb=1\n"), errorTrace("5", "[t", "Section"));
    EXPECT_EQ(traceOf("\r\n  \n=1"), errorTrace("3", "=1", "Entry"));
    EXPECT_EQ(traceOf(std::string(1233, '\n') + "=1"), errorTrace("1234", "=1", "Entry"));
}

TEST(ConfigFileTextTest, ParseErrorNamesTheFile)
{
    const ScratchDirectory scratch;
    const ResourceLocation location(scratch.location("file.ini"));
    for (const char* content : {"[s", "=1"}) {
        scratch.write("file.ini", content);
        ConfigFile config;
        EXPECT_EQ(textOf<OperationFailedException>([&] { config.parseFile(location); }),
                  "Parsing config file \"" + location.str() + "\"");
    }
}

TEST(ConfigFileTextTest, WhatStoodInFrontOfTheErrorStays)
{
    ConfigFile config;
    config.setEntry("s", "old", "0");
    textOf<OperationFailedException>([&] { merge(config, "a=1\n[s]\nb=2\n=3\nc=4\n[t]\n"); });
    EXPECT_EQ(listing(config), "[]\na (StringAny) 1\n[s]\nb (StringAny) 2\nold (StringAny) 0\n");
    textOf<OperationFailedException>([&] { merge(config, "[u]\n[v\n[w]\n"); });
    EXPECT_EQ(listing(config), "[]\na (StringAny) 1\n[s]\nb (StringAny) 2\nold (StringAny) 0\n[u]\n");
}

TEST(ConfigFileTextTest, ParseErrorLeavesTheMarkAsItWas)
{
    ConfigFile config;
    textOf<OperationFailedException>([&] { merge(config, "a=1\n=2\n"); });
    EXPECT_FALSE(isModified(config));
    config.setEntry("", "a", "3");
    textOf<OperationFailedException>([&] { merge(config, "a=1\n=2\n"); });
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFileTextTest, ParseErrorLeavesTheFileName)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", "=1");
    const ResourceLocation location(scratch.location("file.ini"));
    ConfigFile config;
    textOf<OperationFailedException>([&] { config.parseFile(location); });
    EXPECT_EQ(fileNameOf(config), location.str());
}

TEST(ConfigFileTextTest, ObjectCanBeUsedBehindAParseError)
{
    ConfigFile config;
    textOf<OperationFailedException>([&] { merge(config, "a=1\n=2\n"); });
    merge(config, "b=2\n");
    EXPECT_EQ(listing(config), "[]\na (StringAny) 1\nb (StringAny) 2\n");
}

TEST(ConfigFileTextTest, HandleParseErrorTracesAndThrows)
{
    ConfigFile config;
    config.setFileName("some.ini");
    const TraceCapture trace(Trace::fail);
    EXPECT_EQ(textOf<OperationFailedException>([&] { config.handleParseError("Thing", "the\0line"s, -7); }),
              "Parsing config file \"some.ini\"");
    EXPECT_EQ(trace.text(), errorTrace("-7", "the\0line"s, "Thing"));
}

TEST(ConfigFileTextTest, ErrorWithoutATraceThrowsTheSame)
{
    ConfigFile config;
    EXPECT_EQ(textOf<OperationFailedException>([&] { config.handleParseError("Entry", "=", 1); }),
              "Parsing config file \"\"");
}

TEST(ConfigFileTextTest, ParsingWithoutErrorTracesNothing)
{
    const TraceCapture trace(Trace::verbose);
    EXPECT_EQ(seenIn("# note\n  \n[s] x\na=1\na=2\n"), "[]\n (BoolAny) 1\n[s]\na (StringAny) 2\n");
    EXPECT_EQ(trace.text(), "");
}

// The next line

namespace
{

struct NextLine
{
    int count;
    std::string line;

    bool operator==(const NextLine&) const = default;
};

std::ostream& operator<<(std::ostream& out, const NextLine& next)
{
    return out << next.count << " '" << next.line << "'";
}

/// All lines up to the one that leaves the stream at its end.
std::vector<NextLine> linesOf(const std::string& content, char commentSign = '#')
{
    ConfigFile config;
    config.setCommentSign(commentSign);
    std::istringstream in(content);
    std::vector<NextLine> lines;
    do {
        std::string line = "before";
        const int count = config.getNextLine(in, line);
        lines.push_back({count, line});
    } while (in.good());
    return lines;
}

/// Gives a text, and then fails.
class FailingBuffer : public std::streambuf
{
public:
    explicit FailingBuffer(std::string text) : mText(std::move(text))
    {
        setg(mText.data(), mText.data(), mText.data() + mText.size());
    }

protected:
    int_type underflow() override { throw std::runtime_error("broken"); }

private:
    std::string mText;
};

} // namespace

TEST(ConfigFileTextTest, NextLineSkipsAndCounts)
{
    using Lines = std::vector<NextLine>;
    EXPECT_EQ(linesOf("a\nb\n"), (Lines{{1, "a"}, {1, "b"}, {1, ""}}));
    EXPECT_EQ(linesOf("a\nb"), (Lines{{1, "a"}, {1, "b"}}));
    EXPECT_EQ(linesOf("\n# x\n\na\n"), (Lines{{4, "a"}, {1, ""}}));
    EXPECT_EQ(linesOf("# x"), (Lines{{1, ""}}));
    EXPECT_EQ(linesOf("# x\n"), (Lines{{2, ""}}));
    EXPECT_EQ(linesOf(""), (Lines{{1, ""}}));
    EXPECT_EQ(linesOf("\n"), (Lines{{2, ""}}));
}

TEST(ConfigFileTextTest, NextLineCutsTheCommentAndNothingElse)
{
    using Lines = std::vector<NextLine>;
    EXPECT_EQ(linesOf(" a # b # c\n"), (Lines{{1, " a "}, {1, ""}}));
    EXPECT_EQ(linesOf(" # c"), (Lines{{1, " "}}));
    EXPECT_EQ(linesOf("a\r\n\r\n"), (Lines{{1, "a\r"}, {1, "\r"}, {1, ""}}));
    EXPECT_EQ(linesOf("a;b#c\n;x", ';'), (Lines{{1, "a"}, {1, ""}}));
    EXPECT_EQ(linesOf("a\nb", '\n'), (Lines{{1, "a"}, {1, "b"}}));
}

TEST(ConfigFileTextTest, NextLineOfAStreamAtItsEndIsEmpty)
{
    ConfigFile config;
    for (const auto state : {std::ios::eofbit, std::ios::failbit, std::ios::badbit}) {
        std::istringstream in("a\n");
        in.setstate(state);
        std::string line = "before";
        EXPECT_EQ(config.getNextLine(in, line), 0);
        EXPECT_EQ(line, "");
    }
}

TEST(ConfigFileTextTest, StreamThatGoesBadIsAtItsEnd)
{
    ConfigFile config;
    FailingBuffer buffer("# x\na=1\n\nb");
    std::istream in(&buffer);
    std::string line;
    EXPECT_EQ(config.getNextLine(in, line), 2);
    EXPECT_EQ(line, "a=1");
    EXPECT_EQ(config.getNextLine(in, line), 2);
    EXPECT_EQ(line, "b");
    EXPECT_TRUE(in.bad());
    EXPECT_EQ(config.getNextLine(in, line), 0);
    EXPECT_EQ(line, "");
}

// Writing

TEST(ConfigFileTextTest, WrittenFileHasSectionsEntriesAndEmptyLines)
{
    ConfigFile config;
    config.setEntry("b", "y", "2");
    config.setEntry("b", "x", "1");
    config.createSection("a");
    config.setEntry("", "z", new ScalarAny<bool>(true));
    EXPECT_EQ(written(config), "[]\nz=1\n\n[a]\n\n[b]\nx=1\ny=2\n\n");
}

TEST(ConfigFileTextTest, ObjectWithoutSectionsGivesAnEmptyFile)
{
    EXPECT_EQ(written(ConfigFile()), "");
}

TEST(ConfigFileTextTest, ValuesAreWrittenWithoutQuotes)
{
    ConfigFile config;
    TextList list;
    list.add(std::string("a"));
    list.add(std::string("b,c"));
    list.add(std::string(" d "));
    config.setEntry("s", "list", list.clone());
    config.setEntry("s", "empty list", new TextList());
    config.setEntry("s", "text", " x,\"y\" # z ");
    config.setEntry("s", "number", new ScalarAny<double>(1.5));
    config.setEntry("s", "bits", new ScalarAny<Bit64>(255));
    config.setEntry("s", "off", new ScalarAny<bool>(false));
    EXPECT_EQ(written(config), "[s]\nbits=0x00000000000000FF\nempty list=\nlist=a,b,,c, d \nnumber=1.5\noff=0\n"
                               "text= x,\"y\" # z \n\n");
}

TEST(ConfigFileTextTest, IdentsInForceAreWritten)
{
    ConfigFile config;
    merge(config, "[s]\na=1,2\n");
    config.setSectionBeginIdent("<<");
    config.setSectionEndIdent(">>");
    config.setSeperator(" := ");
    config.setListSeperator("; ");
    EXPECT_EQ(written(config), "<<s>>\na := 1; 2\n\n");
}

TEST(ConfigFileTextTest, NumberIsEscapedWithTheListSeparator)
{
    ConfigFile config;
    config.setListSeperator(".");
    config.setEntry("s", "a", new ScalarAny<double>(1.5));
    EXPECT_EQ(written(config), "[s]\na=1..5\n\n");
}

TEST(ConfigFileTextTest, WritingReplacesTheFile)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", std::string(10000, 'x'));
    ConfigFile config;
    config.setEntry("s", "a", "1");
    config.writeToFile(ResourceLocation(scratch.location("file.ini")));
    EXPECT_EQ(fileText(scratch / "file.ini"), "[s]\na=1\n\n");
}

TEST(ConfigFileTextTest, WritingChangesNeitherFileNameNorMark)
{
    const ScratchDirectory scratch;
    ConfigFile config;
    config.setFileName("other.ini");
    config.setEntry("s", "a", "1");
    config.saveToDisk(scratch.location("file.ini"));
    EXPECT_EQ(fileNameOf(config), "other.ini");
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFileTextTest, FileThatCannotBeOpenedForWritingIsAnError)
{
    const ScratchDirectory scratch;
    const ConfigFile config;
    for (const char* name : {"missing/file.ini", ""}) {
        const ResourceLocation location(scratch.location(name));
        EXPECT_EQ(textOf<OperationFailedException>([&] { config.writeToFile(location); }),
                  "ConfigFile: Unable to open file '" + location.str() + "'");
    }
    EXPECT_EQ(textOf<OperationFailedException>([&] { config.saveToDisk("no-such-dir/x.ini"); }),
              "ConfigFile: Unable to open file 'no-such-dir\\x.ini'");
    EXPECT_EQ(textOf<OperationFailedException>([&] { config.saveToDisk(""); }), "ConfigFile: Unable to open file ''");
}

TEST(ConfigFileTextTest, RemoteLocationCannotBeWritten)
{
    EXPECT_EQ(textOf<NotAFileException>([] { ConfigFile().saveToDisk("ftp://host/a.ini"); }),
              "\"ftp://host/a.ini\" is not a (locally accessible) file or directory name.");
}

namespace
{

/// A value without a text.
class Mute : public ScalarAny<std::string>
{
public:
    std::string toString(const std::string&) const override { throw std::runtime_error("no text"); }
};

} // namespace

TEST(ConfigFileTextTest, ValueWithoutATextLeavesTheFileAsItWas)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", "a=1\n");
    ConfigFile config;
    config.setEntry("s", "a", "1");
    config.setEntry("s", "b", new Mute());
    EXPECT_EQ(textOf<std::runtime_error>([&] { config.saveToDisk(scratch.location("file.ini")); }), "no text");
    EXPECT_EQ(fileText(scratch / "file.ini"), "a=1\n");
    EXPECT_EQ(textOf<std::runtime_error>([&] { config.saveToDisk(scratch.location("new.ini")); }), "no text");
    EXPECT_FALSE(std::filesystem::exists(scratch / "new.ini"));
}

// Saving what was changed

TEST(ConfigFileTextTest, SyncWritesOnlyWhatIsModified)
{
    const ScratchDirectory scratch;
    ConfigFile config;
    config.setFileName(scratch.location("file.ini"));
    config.createSection("s");
    config.sync();
    EXPECT_FALSE(std::filesystem::exists(scratch / "file.ini"));
    config.setEntry("s", "a", "1");
    config.sync();
    EXPECT_EQ(fileText(scratch / "file.ini"), "[s]\na=1\n\n");
}

TEST(ConfigFileTextTest, SecondSyncWritesAgain)
{
    // Required, Q-515
    const ScratchDirectory scratch;
    ConfigFile config;
    config.setFileName(scratch.location("file.ini"));
    config.setEntry("s", "a", "1");
    config.sync();
    scratch.write("file.ini", "spoiled");
    config.sync();
    EXPECT_EQ(fileText(scratch / "file.ini"), "[s]\na=1\n\n");
}

TEST(ConfigFileTextTest, SyncOfWhatWasReadWritesNothing)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", "a=1 # note\n");
    ConfigFile config(scratch.location("file.ini"));
    config.sync();
    EXPECT_EQ(fileText(scratch / "file.ini"), "a=1 # note\n");
    config.setEntry("", "a", "1");
    config.sync();
    EXPECT_EQ(fileText(scratch / "file.ini"), "a=1 # note\n");
    config.setEntry("", "a", "2");
    config.sync();
    EXPECT_EQ(fileText(scratch / "file.ini"), "[]\na=2\n\n");
}

TEST(ConfigFileTextTest, SyncWithoutAFileNameIsAnError)
{
    ConfigFile config;
    config.sync();
    config.setEntry("s", "a", "1");
    EXPECT_EQ(textOf<OperationFailedException>([&] { config.sync(); }), "ConfigFile: Unable to open file ''");
}

// What comes back of what was written

namespace
{

struct RoundTrip
{
    std::shared_ptr<Any> value;
    std::string line;
    std::string seen;
};

std::shared_ptr<Any> text(const std::string& value)
{
    return std::make_shared<ScalarAny<std::string>>(value);
}

std::shared_ptr<Any> list(const std::vector<std::string>& elements)
{
    auto result = std::make_shared<TextList>();
    for (const std::string& element : elements) {
        result->add(element);
    }
    return result;
}

void checkRoundTrips(const std::vector<RoundTrip>& trips)
{
    for (const auto& [value, line, seen] : trips) {
        SCOPED_TRACE(line);
        ConfigFile config;
        config.setEntry("s", "k", value->clone());
        const std::string content = written(config);
        EXPECT_EQ(content, "[s]\n" + line + "\n\n");
        EXPECT_EQ(seenIn(content), "[s]\n" + seen + "\n");
    }
}

} // namespace

TEST(ConfigFileTextTest, PlainTextsComeBack)
{
    checkRoundTrips({
        {text("text"), "k=text", "k (StringAny) text"},
        {text(""), "k=", "k (StringAny) "},
        {text("a = [b] c\\"), "k=a = [b] c\\", "k (StringAny) a = [b] c\\"},
    });
}

TEST(ConfigFileTextTest, NothingIsQuotedOnWriting)
{
    // Required, Q-514
    checkRoundTrips({
        {text("a,b"), "k=a,b", "k (StringVectorAny) a|b"},
        {text("a#b"), "k=a#b", "k (StringAny) a"},
        {text("a\"b"), "k=a\"b", "k (StringAny) ab"},
        {text(" a "), "k= a ", "k (StringAny) a"},
    });
}

TEST(ConfigFileTextTest, OtherTypesComeBackAsTexts)
{
    checkRoundTrips({
        {std::make_shared<ScalarAny<bool>>(true), "k=1", "k (StringAny) 1"},
        {std::make_shared<ScalarAny<bool>>(false), "k=0", "k (StringAny) 0"},
        {std::make_shared<ScalarAny<int>>(-42), "k=-42", "k (StringAny) -42"},
        {std::make_shared<ScalarAny<double>>(0.25), "k=0.25", "k (StringAny) 0.25"},
        {std::make_shared<ScalarAny<Bit64>>(1), "k=0x0000000000000001", "k (StringAny) 0x0000000000000001"},
    });
}

TEST(ConfigFileTextTest, ListsComeBackUnlessAnElementHoldsAComma)
{
    checkRoundTrips({
        {list({"a", "b"}), "k=a,b", "k (StringVectorAny) a|b"},
        {list({"a,b"}), "k=a,,b", "k (StringVectorAny) a||b"},
        {list({"a", "b,c"}), "k=a,b,,c", "k (StringVectorAny) a|b||c"},
        {list({"a"}), "k=a", "k (StringAny) a"},
        {list({}), "k=", "k (StringAny) "},
        {list({"", ""}), "k=,", "k (StringVectorAny) |"},
    });
}

TEST(ConfigFileTextTest, FileWithTheEmptyKeyCannotBeReadAgain)
{
    // Required, Q-514
    ConfigFile config;
    merge(config, "[s]\n  # note\n");
    const std::string content = written(config);
    EXPECT_EQ(content, "[s]\n=1\n\n");
    EXPECT_EQ(traceOf(content), errorTrace("2", "=1", "Entry"));
}

TEST(ConfigFileTextTest, LineEndInAValueComesBackAsAnotherEntry)
{
    ConfigFile config;
    config.setEntry("s", "k", "a\n[t]\nb");
    const std::string content = written(config);
    EXPECT_EQ(content, "[s]\nk=a\n[t]\nb\n\n");
    EXPECT_EQ(seenIn(content), "[s]\nk (StringAny) a\n[t]\nb (BoolAny) 1\n");
}

TEST(ConfigFileTextTest, SpacingOrderAndCommentsAreLostOnWriting)
{
    ConfigFile config;
    merge(config, "# top\n[b]\ny = 1 # note\n\n[a]\nv = 2\n[b]\nx = 3,  4\n");
    EXPECT_EQ(written(config), "[a]\nv=2\n\n[b]\nx=3,4\ny=1\n\n");
}

} // namespace KelvoBase::test
