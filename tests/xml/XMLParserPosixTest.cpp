#include "support/Capture.h"
#include "support/ChildProcess.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/TraceStream.h>
#include <kelvobase/XMLParser.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <xercesc/dom/DOM.hpp>

namespace KelvoBase
{

namespace
{

using test::ChildOptions;
using test::ChildResult;
using test::runChild;
using test::ScopedWorkingDirectory;
using test::ScratchDirectory;
using test::textOf;
using test::TraceCapture;

std::string rootOf(const ResourceLocation& location)
{
    XMLParser parser(location);
    return XMLParser::getTagName(parser.getRootElement());
}

TEST(XMLParserPosix, RelativeLocationIsBelowTheWorkingDirectory)
{
    const ScratchDirectory scratch;
    scratch.write("sub/a.xml", "<right/>");
    const ScopedWorkingDirectory here(scratch.path());
    for (const char* text : {"sub/a.xml", "./sub//a.xml", "sub\\a.xml", "sub/../sub/a.xml", "file:sub/a.xml"}) {
        EXPECT_EQ(rootOf(text), "right") << text;
    }
}

TEST(XMLParserPosix, PathThatNamesNothingHereIsMissing)
{
    const ScratchDirectory scratch;
    scratch.write("a.xml", "<a/>");
    const ScopedWorkingDirectory here(scratch.path());
    const std::string place = scratch.path().string().substr(1);
    for (const std::string& path : {"//" + place + "/a.xml", "smb:" + place + "/a.xml", std::string("D:a.xml"),
                                    "D:/" + place + "/a.xml", "c:/" + place + "/a.xml", std::string("C:a.xml")}) {
        const ResourceLocation location(path);
        EXPECT_EQ(textOf<FileNotFoundException>([&] { XMLParser parser(location); }),
                  "Cannot find file \"" + location.str() + "\".");
    }
}

// To Xerces-C such a name would be a URL; the file of that name is meant.
TEST(XMLParserPosix, RelativeNameThatLooksLikeAUrlIsAFile)
{
    const ScratchDirectory scratch;
    scratch.write("http:/localhost/a.xml", "<right/>");
    scratch.write("file:/etc/a.xml", "<right/>");
    const ScopedWorkingDirectory here(scratch.path());
    EXPECT_EQ(rootOf("file:http:/localhost/a.xml"), "right");
    EXPECT_EQ(rootOf("file:file:/etc/a.xml"), "right");
}

// The system follows the link, then goes up; taking both names back by text would find the wrong file.
TEST(XMLParserPosix, LinkInFrontOfTwoDotsIsFollowed)
{
    const ScratchDirectory scratch;
    scratch.write("a.xml", "<wrong/>");
    scratch.write("far/a.xml", "<right/>");
    std::filesystem::create_directory(scratch / "far/deep");
    std::filesystem::create_directory_symlink("far/deep", scratch / "link");
    const ScopedWorkingDirectory here(scratch.path());
    EXPECT_EQ(rootOf("link/../a.xml"), "right");
}

TEST(XMLParserPosix, NamesWithMarksAreNotTakenForUrls)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory here(scratch.path());
    for (const char* name : {"a%20b.xml", "a b.xml", "a#b.xml", "a?b.xml", "a;b&c.xml"}) {
        scratch.write(name, "<right/>");
        EXPECT_EQ(rootOf(scratch.location(name)), "right") << name;
        EXPECT_EQ(rootOf(name), "right") << name;
    }
}

TEST(XMLParserPosix, WorkingDirectoryThatNoLocationCanHoldIsNoObstacle)
{
    const ScratchDirectory scratch;
    scratch.write("od\\d/a.xml", "<right/>");
    const ScopedWorkingDirectory here(scratch / "od\\d");
    EXPECT_EQ(rootOf("a.xml"), "right");
}

// Xerces-C would make another file's name of it.
TEST(XMLParserPosix, NameThatXercesCannotHoldCountsAsAnError)
{
    const ScratchDirectory scratch;
    scratch.write("m\xfc.xml", "<right/>");
    scratch.write("m\xef\xbf\xbd.xml", "<wrong/>");
    const TraceCapture trace(Trace::fail);
    XMLParser parser(scratch.location("m\xfc.xml"));
    EXPECT_EQ(parser.getRootElement(), nullptr);
    EXPECT_EQ(trace.text(), "|-- There occured 1errors while parsing Parsing file://localhost/" +
                                scratch.location("m\xfc.xml") + "\n");
}

TEST(XMLParserPosix, NoTraceIsAskedForWithoutAnError)
{
    const ScratchDirectory scratch;
    scratch.write("good.xml", "<a>t</a>");
    scratch.write("bad.xml", "<a>t");
    const ChildResult good = runChild({XML_TOOL, "read", scratch.location("good.xml"), "in-step"});
    EXPECT_EQ(good.out, "depth 1, text of 1 bytes: t\nno trace yet\n");
    EXPECT_EQ(good.status, 0);
    const ChildResult bad = runChild({XML_TOOL, "read", scratch.location("bad.xml"), "in-step"});
    EXPECT_EQ(bad.out, "depth 1, text of 1 bytes: t\nthe trace is there\n");
    EXPECT_EQ(bad.status, 0);
}

/// What the tool says of a round trip in a locale.
std::string roundTrip(const std::string& locale, bool setsLocale)
{
    const ScratchDirectory scratch;
    ChildOptions options;
    options.environment = {{"LC_ALL", locale}};
    options.unset = {"LANG", "LC_CTYPE"};
    std::vector<std::string> command{XML_TOOL, "roundtrip", scratch.location("a.xml")};
    if (setsLocale) {
        command.insert(command.begin() + 1, "setlocale");
    }
    const ChildResult result = runChild(command, options);
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
}

TEST(XMLParserPosix, ToolThatSetsAnUtf8LocaleLosesNothing)
{
    EXPECT_EQ(roundTrip("C.UTF-8", true), "all there\n");
}

TEST(XMLParserPosix, WithIcuNothingIsLostInAnyLocale)
{
    if (runChild({XML_TOOL, "service"}).out != "ICU\n") {
        GTEST_SKIP() << "Xerces-C converts by the C library here";
    }
    for (const char* locale : {"C", "C.UTF-8", "POSIX"}) {
        EXPECT_EQ(roundTrip(locale, false), "all there\n") << locale;
        EXPECT_EQ(roundTrip(locale, true), "all there\n") << locale;
    }
}

} // namespace

} // namespace KelvoBase
