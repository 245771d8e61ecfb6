#include "support/Scratch.h"
#include "support/Text.h"
#include "xml/Documents.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/XMLCreator.h>
#include <kelvobase/XMLParser.h>

#include <gtest/gtest.h>

#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLException.hpp>

namespace KelvoBase
{

namespace
{

using test::contentOf;
using test::narrow;
using test::ParsedText;
using test::ScratchDirectory;
using test::textOf;
using xercesc::DOMElement;
using xercesc::DOMException;
using xercesc::DOMNode;

/// The text of the exception of Xerces-C's that `action` throws; what it needs lives until then.
template <typename Exception, typename Action>
std::string xercesTextOf(Action&& action)
{
    const XMLInitializer xml;
    try {
        action();
    } catch (const Exception& e) {
        return narrow(e.getMessage());
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

/// The code of the `DOMException` that `action` throws.
template <typename Action>
short domCodeOf(Action&& action)
{
    try {
        action();
    } catch (const DOMException& e) {
        return e.code;
    }
    return 0;
}

TEST(XMLCreator, BeginsWithAnEmptyDocument)
{
    XMLCreator creator;
    ASSERT_NE(creator.getDocument(), nullptr);
    EXPECT_EQ(creator.getDocument()->getDocumentElement(), nullptr);
    EXPECT_EQ(creator.getDocument()->getFirstChild(), nullptr);
    EXPECT_EQ(creator.getDocument(), creator.getDocument());
}

TEST(XMLCreator, ElementBelowTheDocumentIsTheRoot)
{
    XMLCreator creator;
    DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    EXPECT_EQ(creator.getDocument()->getDocumentElement(), root);
    EXPECT_EQ(root->getParentNode(), creator.getDocument());
    EXPECT_EQ(XMLParser::getTagName(root), "root");
}

TEST(XMLCreator, NodesAreAppendedInOrder)
{
    XMLCreator creator;
    DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    DOMNode* first = XMLCreator::createElement(root, "a");
    DOMNode* second = XMLCreator::createTextNode(root, "text <&>");
    DOMNode* third = XMLCreator::createElement(root, "a");
    EXPECT_EQ(root->getFirstChild(), first);
    EXPECT_EQ(first->getNextSibling(), second);
    EXPECT_EQ(second->getNextSibling(), third);
    EXPECT_EQ(third->getNextSibling(), nullptr);
    EXPECT_EQ(second->getNodeType(), DOMNode::TEXT_NODE);
    EXPECT_EQ(narrow(second->getNodeValue()), "text <&>");
    EXPECT_EQ(first->getOwnerDocument(), creator.getDocument());
}

TEST(XMLCreator, AttributeIsSetAndReplaced)
{
    XMLCreator creator;
    DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    XMLCreator::setAttribute(root, "a", "1");
    XMLCreator::setAttribute(root, "b", "");
    XMLCreator::setAttribute(root, "a", "2 \"<&'\n");
    bool found = false;
    EXPECT_EQ(XMLParser::getAttribute(root, "a"), "2 \"<&'\n");
    EXPECT_EQ(XMLParser::getAttribute(root, "b", found), "");
    EXPECT_TRUE(found);
    EXPECT_EQ(root->getAttributes()->getLength(), 2u);
}

TEST(XMLCreator, DocumentOfAParserCanBeAddedTo)
{
    ParsedText text("<a><b/></a>");
    DOMElement* added = XMLCreator::createElement(text.root(), "c");
    XMLCreator::createTextNode(added, "t");
    EXPECT_EQ(added->getOwnerDocument(), text.document());
    EXPECT_EQ(XMLParser::getText(XMLParser::getNodeByTagName(text.root(), "c")), "t");
}

TEST(XMLCreator, NameThatIsNoneIsRefused)
{
    XMLCreator creator;
    DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    for (const char* name : {"", "1a", "a b", "<", "-a", " a", "a\n"}) {
        EXPECT_EQ(domCodeOf([&] { XMLCreator::createElement(root, name); }), DOMException::INVALID_CHARACTER_ERR)
            << name;
        EXPECT_EQ(domCodeOf([&] { XMLCreator::setAttribute(root, name, "v"); }), DOMException::INVALID_CHARACTER_ERR)
            << name;
    }
    EXPECT_EQ(root->getFirstChild(), nullptr);
    EXPECT_EQ(root->getAttributes()->getLength(), 0u);
}

TEST(XMLCreator, ParentThatCannotTakeAChildRefusesIt)
{
    XMLCreator creator;
    DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    DOMNode* text = XMLCreator::createTextNode(root, "t");
    const short refused = DOMException::HIERARCHY_REQUEST_ERR;
    EXPECT_EQ(domCodeOf([&] { XMLCreator::createElement(creator.getDocument(), "second"); }), refused);
    EXPECT_EQ(domCodeOf([&] { XMLCreator::createTextNode(creator.getDocument(), "text"); }), refused);
    EXPECT_EQ(domCodeOf([&] { XMLCreator::createElement(text, "a"); }), refused);
    EXPECT_EQ(creator.getDocument()->getFirstChild(), root);
    EXPECT_EQ(root->getNextSibling(), nullptr);
}

TEST(XMLCreator, WritesAnIndentedDocument)
{
    const ScratchDirectory scratch;
    XMLCreator creator;
    DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    DOMElement* a = XMLCreator::createElement(root, "a");
    XMLCreator::setAttribute(a, "n", "1");
    XMLCreator::createTextNode(XMLCreator::createElement(a, "b"), "x < y");
    creator.writeToFile(scratch.location("out.xml"));
    const std::string content = contentOf(scratch / "out.xml");
    EXPECT_EQ(content.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"", 0), 0u) << content;
    for (const char* line :
         {"\n<root>\n", "\n  <a n=\"1\">\n", "\n    <b>x &lt; y</b>\n", "\n  </a>\n", "\n</root>\n"}) {
        EXPECT_NE(content.find(line), std::string::npos) << line << " in " << content;
    }
}

TEST(XMLCreator, WrittenDocumentReadsBack)
{
    const ScratchDirectory scratch;
    const std::string texts[] = {"plain", "  ", " x ", "<&>\"'", "two\nlines\ttab", "cr\r\nlf", "]]>", "\xc3\xbc"};
    const XMLInitializer xml;
    {
        XMLCreator creator;
        DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
        for (const std::string& text : texts) {
            DOMElement* element = XMLCreator::createElement(root, "e");
            XMLCreator::setAttribute(element, "v", text);
            XMLCreator::createTextNode(element, text);
        }
        creator.writeToFile(scratch.location("out.xml"));
    }
    XMLParser parser(scratch.location("out.xml"));
    DOMNode* node = parser.getRootElement()->getFirstChild();
    for (const std::string& text : texts) {
        while (node && node->getNodeType() != DOMNode::ELEMENT_NODE) {
            node = node->getNextSibling();
        }
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(XMLParser::getText(node), text);
        EXPECT_EQ(XMLParser::getAttribute(node, "v"), text);
        node = node->getNextSibling();
    }
}

TEST(XMLCreator, ExistingFileIsReplaced)
{
    const ScratchDirectory scratch;
    scratch.write("out.xml", std::string(5000, 'x'));
    XMLCreator creator;
    XMLCreator::createElement(creator.getDocument(), "a");
    creator.writeToFile(scratch.location("out.xml"));
    const std::string first = contentOf(scratch / "out.xml");
    EXPECT_EQ(first.find('x'), 2u); // the declaration's
    EXPECT_LT(first.size(), 100u);
    creator.writeToFile(scratch.location("out.xml"));
    EXPECT_EQ(contentOf(scratch / "out.xml"), first);
}

TEST(XMLCreator, DocumentWithoutARootIsWritten)
{
    const ScratchDirectory scratch;
    XMLCreator creator;
    creator.writeToFile(scratch.location("out.xml"));
    EXPECT_NE(contentOf(scratch / "out.xml").find("<?xml"), std::string::npos);
}

TEST(XMLCreator, LargeDocumentIsWrittenToItsEnd)
{
    const ScratchDirectory scratch;
    const XMLInitializer xml;
    {
        XMLCreator creator;
        DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
        for (int i = 0; i < 20000; ++i) {
            XMLCreator::createTextNode(XMLCreator::createElement(root, "e"), std::to_string(i));
        }
        creator.writeToFile(scratch.location("out.xml"));
    }
    XMLParser parser(scratch.location("out.xml"));
    EXPECT_EQ(parser.getRootElement()->getElementsByTagName(test::Wide("e"))->getLength(), 20000u);
}

TEST(XMLCreator, FileThatCannotBeOpenedGivesTheExceptionOfXerces)
{
    const ScratchDirectory scratch;
    const std::string said = xercesTextOf<xercesc::XMLException>([&] {
        XMLCreator creator;
        XMLCreator::createElement(creator.getDocument(), "a");
        creator.writeToFile(scratch.location("missing/out.xml"));
    });
    EXPECT_EQ(said, "unable to open file '" + (scratch / "missing/out.xml").string() + "'");
}

TEST(XMLCreator, EmptyLocationCannotBeOpened)
{
    EXPECT_EQ(xercesTextOf<xercesc::XMLException>([] { XMLCreator().writeToFile(""); }), "unable to open file ''");
}

TEST(XMLCreator, RemoteLocationIsRefused)
{
    XMLCreator creator;
    EXPECT_EQ(textOf<NotAFileException>([&] { creator.writeToFile("ftp://host/a.xml"); }),
              "\"ftp://host/a.xml\" is not a (locally accessible) file or directory name.");
}

TEST(XMLCreator, CharacterThatXmlDoesNotHaveStopsTheWriting)
{
    const ScratchDirectory scratch;
    XMLCreator creator;
    DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    XMLCreator::createTextNode(root, "a\x01");
    const std::string said = xercesTextOf<DOMException>([&] { creator.writeToFile(scratch.location("out.xml")); });
    EXPECT_EQ(said, "invalid or illegal XML character");
    EXPECT_NE(contentOf(scratch / "out.xml").find("<root>"), std::string::npos);
}

TEST(XMLCreator, LevelsByTheThousandAreWritten)
{
    const ScratchDirectory scratch;
    const XMLInitializer xml;
    {
        XMLCreator creator;
        DOMNode* parent = creator.getDocument();
        for (int i = 0; i < 2000; ++i) {
            parent = XMLCreator::createElement(parent, "a");
        }
        creator.writeToFile(scratch.location("out.xml"));
    }
    XMLParser parser(scratch.location("out.xml"));
    EXPECT_EQ(parser.getDocument()->getElementsByTagName(test::Wide("a"))->getLength(), 2000u);
}

} // namespace

} // namespace KelvoBase
