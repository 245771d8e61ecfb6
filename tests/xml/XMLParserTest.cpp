#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"
#include "xml/Documents.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/TraceStream.h>
#include <kelvobase/XMLParser.h>

#include <gtest/gtest.h>

#include <locale>
#include <random>
#include <string>
#include <xercesc/dom/DOM.hpp>

namespace KelvoBase
{

namespace
{

using test::ParsedText;
using test::ScratchDirectory;
using test::textOf;
using test::TraceCapture;
using xercesc::DOMNode;

const XMLInitializer& keptUp()
{
    static const XMLInitializer xml; // many short-lived parsers follow
    return xml;
}

TEST(XMLParser, ReadsAFile)
{
    ParsedText text("<?xml version=\"1.0\"?>\n<run unit=\"s\">  12 </run>\n");
    EXPECT_EQ(XMLParser::getTagName(text.root()), "run");
    EXPECT_EQ(XMLParser::getText(text.root()), "  12 ");
    EXPECT_EQ(text.document()->getDocumentElement(), text.root());
}

TEST(XMLParser, MissingFileIsNamedByItsLocation)
{
    const ScratchDirectory scratch;
    const std::string place = scratch.location("missing.xml");
    EXPECT_EQ(textOf<FileNotFoundException>([&] { XMLParser parser{ResourceLocation(place)}; }),
              "Cannot find file \"file://localhost/" + place + "\".");
    EXPECT_EQ(textOf<FileNotFoundException>([] { XMLParser parser(""); }), "Cannot find file \"\".");
}

TEST(XMLParser, DirectoryIsNoFile)
{
    const ScratchDirectory scratch;
    EXPECT_EQ(textOf<FileNotFoundException>([&] { XMLParser parser(scratch.location()); }),
              "Cannot find file \"file://localhost/" + scratch.location() + "\".");
}

TEST(XMLParser, RemoteLocationIsRefused)
{
    EXPECT_EQ(textOf<NotAFileException>([] { XMLParser parser("http://host/a.xml"); }),
              "\"http://host/a.xml\" is not a (locally accessible) file or directory name.");
}

TEST(XMLParser, GoodDocumentLeavesNoTrace)
{
    const TraceCapture trace(Trace::verbose);
    ParsedText text("<a><b/></a>");
    EXPECT_EQ(trace.text(), "");
}

// What was read before the error is there.
TEST(XMLParser, CountedErrorsAreReportedAndLetPass)
{
    // Required, Q-1001, Q-1002
    const TraceCapture trace(Trace::fail);
    ParsedText text("<a><b>1</b><c></a>");
    EXPECT_EQ(trace.text(), "|-- There occured 1errors while parsing Parsing " + text.name() + "\n");
    EXPECT_EQ(XMLParser::getText(XMLParser::getNodeByTagName(text.root(), "b")), "1");
}

TEST(XMLParser, NumberOfErrorsIsThatOfAllFaults)
{
    const TraceCapture trace(Trace::fail);
    ParsedText text("<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b EMPTY>]><a><c/><b x=\"1\"/></a>");
    // the elements c and its place, the attribute x
    EXPECT_EQ(trace.text(), "|-- There occured 3errors while parsing Parsing " + text.name() + "\n");
    EXPECT_NE(XMLParser::getNodeByTagName(text.root(), "c"), nullptr);
}

TEST(XMLParser, NumberOfErrorsIsNotGrouped)
{
    struct Grouped : std::numpunct<char>
    {
        std::string do_grouping() const override { return "\1"; }
    };
    const std::locale before = TraceStream::instance().imbue(std::locale(std::locale::classic(), new Grouped));
    const TraceCapture trace(Trace::fail);
    std::string content = "<!DOCTYPE a [<!ELEMENT a ANY>]><a>";
    for (int i = 0; i < 12; ++i) {
        content += "<b/>";
    }
    ParsedText text(content + "</a>");
    TraceStream::instance().imbue(before);
    EXPECT_EQ(trace.text(), "|-- There occured 12errors while parsing Parsing " + text.name() + "\n");
}

TEST(XMLParser, DocumentsThatAreNoneEndInACountedError)
{
    keptUp();
    using namespace std::string_literals;
    const struct
    {
        std::string content;
        bool hasRoot;
    } rows[] = {
        {"", false},
        {"   \n", false},
        {"text", false},
        {"<", false},
        {"<a", false},
        {"<a>", true},
        {"<a><b></a>", true},
        {"<a></b>", true},
        {"<a/><b/>", true},
        {"<a>\0</a>"s, true},
        {"<a>\x01</a>", true},
        {"<a>&nothing;</a>", true},
        {"<a>]]></a>", true},
        {"<a x='1' x='2'/>", false},
        {"<a x=1/>", false},
        {"<1/>", false},
        {"<?xml version=\"1.0\" encoding=\"no-such-code\"?><a/>", false},
        {"<?xml version=\"3.0\"?><a/>", false},
        {"<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>\xfc\xff</a>", false},
        {"<a>\xc3</a>", false},
        {"\xff\xfe<\0a\0/\0"s, false},
        {"\xff\xfe<\0a"s, false},
        {"\0\0\0<"s, false},
        {std::string(70000, '\0'), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content.substr(0, 80));
        const TraceCapture trace(Trace::fail);
        ParsedText text(row.content);
        EXPECT_EQ(trace.text(), "|-- There occured 1errors while parsing Parsing " + text.name() + "\n");
        EXPECT_EQ(text.root() != nullptr, row.hasRoot);
        EXPECT_NE(text.document(), nullptr);
    }
}

TEST(XMLParser, ReadsTheUsualEncodings)
{
    using namespace std::string_literals;
    const struct
    {
        std::string content;
        std::string text;
    } rows[] = {
        {"<a>m\xc3\xbc</a>", "m\xc3\xbc"},
        {"\xef\xbb\xbf<a>m\xc3\xbc</a>", "m\xc3\xbc"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><a>m\xfc</a>", "m\xc3\xbc"},
        {"<?xml version='1.0' encoding='US-ASCII'?><a>m&#xfc;</a>", "m\xc3\xbc"},
        {"\xff\xfe<\0a\0>\0m\0\xfc\0<\0/\0a\0>\0"s, "m\xc3\xbc"},
        {"\xfe\xff\0<\0a\0>\0m\0\xfc\0<\0/\0a\0>"s, "m\xc3\xbc"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content);
        ParsedText text(row.content);
        const std::string read = XMLParser::getText(text.root());
        EXPECT_EQ(read[0], 'm');
        // how the other letter reads is a matter of Xerces-C's native code page
        EXPECT_EQ(read, test::narrow(text.root()->getFirstChild()->getNodeValue()));
        EXPECT_TRUE(xercesc::XMLString::equals(text.root()->getFirstChild()->getNodeValue(), u"m\u00fc"));
    }
}

TEST(XMLParser, FileWithADocumentTypeIsValidatedAndOneWithoutIsNot)
{
    const struct
    {
        const char* content;
        const char* said;
    } rows[] = {
        {"<a x='1'><b/></a>", ""},
        {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>", ""},
        {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>1</a>", "1errors"},
        {"<!DOCTYPE b [<!ELEMENT a EMPTY>]><a/>", "1errors"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content);
        const TraceCapture trace(Trace::fail);
        ParsedText text(row.content);
        EXPECT_EQ(trace.text().find(row.said) != std::string::npos, true) << trace.text();
        EXPECT_EQ(trace.text().empty(), *row.said == '\0');
        EXPECT_EQ(XMLParser::getTagName(text.root()), "a");
    }
}

TEST(XMLParser, NamesStayUnprocessed)
{
    const TraceCapture trace(Trace::fail);
    ParsedText text("<x:a y:z='1' x:b='2'><n:c/></x:a>"); // no prefix is bound
    EXPECT_EQ(trace.text(), "");
    EXPECT_EQ(XMLParser::getTagName(text.root()), "x:a");
    EXPECT_EQ(XMLParser::getAttribute(text.root(), "y:z"), "1");
    EXPECT_EQ(XMLParser::getAttribute(text.root(), "b"), "");
    EXPECT_EQ(text.root()->getNamespaceURI(), nullptr);
    EXPECT_NE(XMLParser::getNodeByTagName(text.root(), "n:c"), nullptr);
}

TEST(XMLParser, NoSchemaIsLookedFor)
{
    const TraceCapture trace(Trace::fail);
    ParsedText text("<a xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                    "xsi:noNamespaceSchemaLocation='missing.xsd'/>");
    EXPECT_EQ(trace.text(), "");
}

TEST(XMLParser, EntityReferencesAreExpandedInPlace)
{
    const TraceCapture trace(Trace::fail);
    ParsedText text("<!DOCTYPE a [<!ELEMENT a (#PCDATA|b)*><!ELEMENT b EMPTY>"
                    "<!ENTITY m 'metre'><!ENTITY e '<b/>'>]><a>1 &m;&lt;&#66;&e;</a>");
    EXPECT_EQ(trace.text(), "");
    EXPECT_EQ(XMLParser::getText(text.root()), "1 metre<B");
    EXPECT_EQ(XMLParser::getNodeByTagName(text.root(), "b"), text.root()->getLastChild());
}

TEST(XMLParser, ExternalDocumentTypeThatIsMissingIsACountedError)
{
    const TraceCapture trace(Trace::fail);
    ParsedText text("<!DOCTYPE a SYSTEM 'missing.dtd'><a/>");
    EXPECT_EQ(trace.text(), "|-- There occured 1errors while parsing Parsing " + text.name() + "\n");
    EXPECT_EQ(text.root(), nullptr);
}

TEST(XMLParser, EntityThatNamesItselfIsACountedError)
{
    const TraceCapture trace(Trace::fail);
    ParsedText text("<!DOCTYPE a [<!ENTITY x '&y;'><!ENTITY y '&x;'>]><a>&x;</a>");
    EXPECT_NE(trace.text(), "");
}

TEST(XMLParser, ManyReferencesToEntitiesAreNoTrouble)
{
    std::string content = "<!DOCTYPE a [<!ELEMENT a (#PCDATA)><!ENTITY m 'mu'>]><a>";
    for (int i = 0; i < 60000; ++i) {
        content += "&m;";
    }
    const TraceCapture trace(Trace::fail);
    ParsedText text(content + "</a>");
    EXPECT_EQ(trace.text(), "");
    EXPECT_EQ(XMLParser::getText(text.root()).size(), 120000u);
}

TEST(XMLParser, LongTextsAndAttributesAreNoTrouble)
{
    const std::string value(3000000, 'x');
    ParsedText text("<a b='" + value + "'>" + value + "</a>");
    EXPECT_EQ(XMLParser::getText(text.root()), value);
    EXPECT_EQ(XMLParser::getAttribute(text.root(), "b"), value);
}

TEST(XMLParser, DeepDocumentIsNoTrouble)
{
    std::string content;
    for (int i = 0; i < 100000; ++i) {
        content += "<a>";
    }
    content += "x";
    for (int i = 0; i < 100000; ++i) {
        content += "</a>";
    }
    ParsedText text(content);
    unsigned int depth = 1;
    DOMNode* node = text.root();
    while (DOMNode* child = XMLParser::getNodeByTagName(node, "a")) {
        node = child;
        ++depth;
    }
    EXPECT_EQ(depth, 100000u);
    EXPECT_EQ(XMLParser::getText(node), "x");
}

constexpr const char* unknownVersion = "implementation does not support the requested type of object or operation";

// Xerces-C's scanner lets it pass, and its DOM then refuses it.
TEST(XMLParser, VersionThatTheDomDoesNotKnowIsAFailedOperation)
{
    EXPECT_EQ(textOf<OperationFailedException>([] { ParsedText("<?xml version='1.2'?><a/>"); }), unknownVersion);
}

// Whatever the bytes are, reading ends in one of the ways that the header tells.
TEST(XMLParser, SpoiltDocumentsAreSurvived)
{
    keptUp();
    const std::string whole = "<?xml version='1.0'?>\n<runs unit=\"s\"><!-- c --><run n='1'>1.5 &lt; 2</run>"
                              "<?pi x?><run><![CDATA[ ]] ]]></run><e/>m\xc3\xbc&#xfc;</runs>\n";
    std::mt19937 random(1);
    const TraceCapture trace(Trace::fail);
    int read = 0;
    for (int round = 0; round < 1500; ++round) {
        std::string content = whole;
        for (auto change = random() % 3 + 1; change > 0 && !content.empty(); --change) {
            const std::size_t place = random() % content.size();
            switch (random() % 4) {
            case 0:
                content[place] = static_cast<char>(random());
                break;
            case 1:
                content.erase(place, random() % 8 + 1);
                break;
            case 2:
                content.insert(place, content.substr(random() % content.size(), random() % 20));
                break;
            default:
                content.resize(place + 1);
                break;
            }
        }
        try {
            ParsedText text(content);
            XMLParser::getText(text.root());
            XMLParser::getNodeByTagName(text.document(), "runs");
            ++read;
        } catch (const OperationFailedException& e) {
            EXPECT_STREQ(e.what(), unknownVersion);
        }
    }
    EXPECT_GT(read, 1000);
    EXPECT_NE(trace.text(), "");
}

} // namespace

} // namespace KelvoBase
