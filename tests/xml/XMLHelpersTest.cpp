#include "xml/Documents.h"

#include <kelvobase/XMLParser.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

namespace KelvoBase
{

namespace
{

using test::narrow;
using test::ParsedText;
using test::Wide;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

std::string idOf(DOMNode* node)
{
    return node ? XMLParser::getAttribute(node, "id") : "none";
}

TEST(XMLLookup, FirstDirectChildIsFoundAlsoBehindDeeperElements)
{
    ParsedText text("<r><x><a id='deep'/></x><a id='first'/><a id='second'/></r>");
    EXPECT_EQ(idOf(XMLParser::getNodeByTagName(text.root(), "a")), "first");
    EXPECT_EQ(XMLParser::getNodeByTagName(text.root(), "b"), nullptr);
}

TEST(XMLLookup, ElementThatIsOnlyDeeperIsNotFound)
{
    ParsedText text("<r><x><a id='deep'/></x></r>");
    EXPECT_EQ(XMLParser::getNodeByTagName(text.root(), "a"), nullptr);
    EXPECT_EQ(idOf(XMLParser::getNodeByTagName(text.root()->getFirstChild(), "a")), "deep");
}

TEST(XMLLookup, DocumentAsParentFindsTheRootOnly)
{
    ParsedText text("<!-- c --><r><a/><r id='inner'/></r>");
    EXPECT_EQ(XMLParser::getNodeByTagName(text.document(), "r"), text.root());
    EXPECT_EQ(XMLParser::getNodeByTagName(text.document(), "a"), nullptr);
    EXPECT_EQ(XMLParser::getNodeByTagName(text.document(), "*"), text.root());
    EXPECT_EQ(idOf(XMLParser::getNodeByTagName(text.root(), "r")), "inner");
}

TEST(XMLLookup, StarIsAnyElement)
{
    ParsedText text("<r>text<!-- c --><x id='1'/><a id='2'/></r>");
    EXPECT_EQ(idOf(XMLParser::getNodeByTagName(text.root(), "*")), "1");
    EXPECT_EQ(XMLParser::getNodeByTagName(text.root(), "**"), nullptr);
    EXPECT_EQ(XMLParser::getNodeByTagName(text.root()->getLastChild(), "*"), nullptr);
}

TEST(XMLLookup, TagsAreComparedInFullAndInCase)
{
    ParsedText text("<r><ab id='1'/><A id='2'/><a id='3'/></r>");
    const struct
    {
        std::string tag;
        const char* id;
    } rows[] = {{"a", "3"},   {"A", "2"},      {"ab", "1"},       {"b", "none"},
                {"", "none"}, {"abc", "none"}, {"#text", "none"}, {std::string("a\0b", 3), "3"}};
    for (const auto& row : rows) {
        EXPECT_EQ(idOf(XMLParser::getNodeByTagName(text.root(), row.tag)), row.id) << row.tag;
    }
}

TEST(XMLLookup, OtherNodesHaveNoChildren)
{
    ParsedText text("<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r id CDATA #IMPLIED>]><r id='1'>t<!--c--><?p i?></r>");
    EXPECT_EQ(XMLParser::getNodeByTagName(nullptr, "r"), nullptr);
    EXPECT_EQ(XMLParser::getNodeByTagName(text.document()->getDoctype(), "*"), nullptr);
    EXPECT_EQ(XMLParser::getNodeByTagName(text.root()->getAttributeNode(Wide("id")), "*"), nullptr);
    for (DOMNode* child = text.root()->getFirstChild(); child; child = child->getNextSibling()) {
        EXPECT_EQ(XMLParser::getNodeByTagName(child, "*"), nullptr) << child->getNodeType();
    }
}

// It has children, but is neither an element nor a document.
TEST(XMLLookup, FragmentIsNoParent)
{
    ParsedText text("<r/>");
    xercesc::DOMDocumentFragment* fragment = text.document()->createDocumentFragment();
    fragment->appendChild(text.document()->createElement(Wide("a")));
    EXPECT_EQ(XMLParser::getNodeByTagName(fragment, "a"), nullptr);
}

/// The look-up the long way: a walk over all descendants of that tag.
DOMNode* byDescendants(DOMNode* parent, const std::string& tag)
{
    xercesc::DOMNodeList* list = nullptr;
    if (auto* element = dynamic_cast<DOMElement*>(parent)) {
        list = element->getElementsByTagName(Wide(tag));
    } else if (auto* document = dynamic_cast<DOMDocument*>(parent)) {
        list = document->getElementsByTagName(Wide(tag));
    }
    for (XMLSize_t i = 0; list && i < list->getLength(); ++i) {
        if (list->item(i)->getParentNode() == parent) {
            return list->item(i);
        }
    }
    return nullptr;
}

/// Grows a tree of everything that a document may hold below its root; all its nodes end up in `nodes`.
void grow(std::mt19937& random, DOMDocument* document, std::vector<DOMNode*>& nodes)
{
    const char* tags[] = {"a", "b", "ab", "n:a"};
    for (int i = 0; i < 60; ++i) {
        DOMNode* parent = nodes[random() % nodes.size()];
        DOMNode* node = nullptr;
        switch (random() % 8) {
        case 0:
            node = document->createTextNode(Wide("t"));
            break;
        case 1:
            node = document->createComment(Wide("a"));
            break;
        case 2:
            node = document->createCDATASection(Wide("<a/>"));
            break;
        case 3:
            node = document->createProcessingInstruction(Wide("a"), Wide("b"));
            break;
        case 4:
            node = document->createEntityReference(Wide("a"));
            break;
        default:
            node = document->createElement(Wide(tags[random() % 4]));
            break;
        }
        const bool takesChildren = parent->getNodeType() == DOMNode::ELEMENT_NODE;
        (takesChildren ? parent : nodes[1])->appendChild(node);
        nodes.push_back(node);
    }
}

TEST(XMLLookup, FindsWhatAWalkOverAllDescendantsFinds)
{
    const XMLInitializer xml;
    std::mt19937 random(7);
    xercesc::DOMImplementation* core = xercesc::DOMImplementationRegistry::getDOMImplementation(Wide("Core"));
    int found = 0;
    for (int round = 0; round < 150; ++round) {
        DOMDocument* document = core->createDocument();
        document->appendChild(document->createElement(Wide("a")));
        std::vector<DOMNode*> nodes{document, document->getDocumentElement()};
        grow(random, document, nodes);
        for (DOMNode* parent : nodes) {
            for (const char* tag : {"a", "b", "ab", "n:a", "*", "", "c", "#text", "#comment"}) {
                DOMNode* expected = byDescendants(parent, tag);
                ASSERT_EQ(XMLParser::getNodeByTagName(parent, tag), expected)
                    << "round " << round << ", tag " << tag << ", parent " << narrow(parent->getNodeName());
                found += expected ? 1 : 0;
            }
        }
        document->release();
    }
    EXPECT_GT(found, 1000);
}

TEST(XMLLookup, TextNodeIsFoundWithItsText)
{
    ParsedText text("<r><x><a>deep</a></x><a>first</a><a>second</a></r>");
    std::string value = "before";
    DOMNode* node = XMLParser::getTextNodeByTagName(text.root(), "a", value);
    EXPECT_EQ(value, "first");
    EXPECT_EQ(node, XMLParser::getNodeByTagName(text.root(), "a"));
}

TEST(XMLLookup, TextStaysWhereThereIsNoTextNode)
{
    ParsedText text("<r><empty/><nested><b/>t</nested><comment><!-- c -->t</comment><two/><two>t</two></r>");
    for (const char* tag : {"empty", "nested", "comment", "missing", "two", ""}) {
        std::string value = "before";
        EXPECT_EQ(XMLParser::getTextNodeByTagName(text.root(), tag, value), nullptr) << tag;
        EXPECT_EQ(value, "before") << tag;
    }
    std::string value = "before";
    EXPECT_EQ(XMLParser::getTextNodeByTagName(nullptr, "empty", value), nullptr);
    EXPECT_EQ(value, "before");
}

TEST(XMLText, FirstChildIsTheTextOrThereIsNone)
{
    // Required, Q-1003
    const struct
    {
        const char* content;
        bool found;
        const char* text;
    } rows[] = {
        {"<a>x</a>", true, "x"},
        {"<a> x\n</a>", true, " x\n"},
        {"<a>x<b/>y</a>", true, "x"},
        {"<a>x<!-- c -->y</a>", true, "x"},
        {"<a><b/>y</a>", false, ""},
        {"<a><!-- c -->x</a>", false, ""},
        {"<a><?p i?>x</a>", false, ""},
        {"<a></a>", false, ""},
        {"<a/>", false, ""},
        {"<a> </a>", true, " "},
        {"<a><![CDATA[<x>]]></a>", true, "<x>"},
        {"<a>x<![CDATA[y]]></a>", true, "x"},
        {"<a><b>deep</b></a>", false, ""},
        {"<a>1 &lt; 2 &amp;&#10;</a>", true, "1 < 2 &\n"},
        {"<a>x\r\ny\rz</a>", true, "x\ny\nz"},
    };
    for (const auto& row : rows) {
        ParsedText text(row.content);
        bool found = !row.found;
        EXPECT_EQ(XMLParser::getText(text.root(), found), row.text) << row.content;
        EXPECT_EQ(found, row.found) << row.content;
        EXPECT_EQ(XMLParser::getText(text.root()), row.text) << row.content;
    }
}

TEST(XMLText, EmptyTextNodeIsFound)
{
    ParsedText text("<a/>");
    text.root()->appendChild(text.document()->createTextNode(Wide("")));
    bool found = false;
    EXPECT_EQ(XMLParser::getText(text.root(), found), "");
    EXPECT_TRUE(found);
}

TEST(XMLText, AnyNodeMayBeAsked)
{
    ParsedText text("<a b='value'>x</a>");
    bool found = true;
    EXPECT_EQ(XMLParser::getText(nullptr, found), "");
    EXPECT_FALSE(found);
    EXPECT_EQ(XMLParser::getText(nullptr), "");
    EXPECT_EQ(XMLParser::getText(text.root()->getFirstChild(), found), "");
    EXPECT_FALSE(found);
    EXPECT_EQ(XMLParser::getText(text.document(), found), "");
    EXPECT_FALSE(found);
    EXPECT_EQ(XMLParser::getText(text.root()->getAttributeNode(Wide("b")), found), "value");
    EXPECT_TRUE(found);
}

TEST(XMLText, EmptyAttributeIsToldFromAMissingOne)
{
    ParsedText text("<!DOCTYPE a [<!ELEMENT a (#PCDATA)><!ATTLIST a empty CDATA #IMPLIED value CDATA #IMPLIED "
                    "supplied CDATA 'there'>]><a empty='' value=' 1&#10;2 '>t</a>");
    const struct
    {
        const char* name;
        bool found;
        const char* value;
    } rows[] = {{"empty", true, ""},    {"value", true, " 1\n2 "}, {"supplied", true, "there"},
                {"missing", false, ""}, {"Empty", false, ""},      {"", false, ""}};
    for (const auto& row : rows) {
        bool found = !row.found;
        EXPECT_EQ(XMLParser::getAttribute(text.root(), row.name, found), row.value) << row.name;
        EXPECT_EQ(found, row.found) << row.name;
        EXPECT_EQ(XMLParser::getAttribute(text.root(), row.name), row.value) << row.name;
    }
}

TEST(XMLText, OnlyElementsHaveAttributes)
{
    ParsedText text("<a b='1'>t</a>");
    for (DOMNode* node :
         {static_cast<DOMNode*>(nullptr), static_cast<DOMNode*>(text.document()), text.root()->getFirstChild(),
          static_cast<DOMNode*>(text.root()->getAttributeNode(Wide("b")))}) {
        bool found = true;
        EXPECT_EQ(XMLParser::getAttribute(node, "b", found), "");
        EXPECT_FALSE(found);
        EXPECT_EQ(XMLParser::getAttribute(node, "b"), "");
    }
}

TEST(XMLText, NodesHaveNames)
{
    ParsedText text("<n:a b='1'>t<!-- c --><?target data?></n:a>");
    EXPECT_EQ(XMLParser::getTagName(text.root()), "n:a");
    EXPECT_EQ(XMLParser::getNodeName(text.root()), "n:a");
    EXPECT_EQ(XMLParser::getNodeName(text.document()), "#document");
    EXPECT_EQ(XMLParser::getNodeName(text.root()->getAttributeNode(Wide("b"))), "b");
    DOMNode* child = text.root()->getFirstChild();
    for (const char* name : {"#text", "#comment", "target"}) {
        EXPECT_EQ(XMLParser::getNodeName(child), name);
        child = child->getNextSibling();
    }
}

TEST(XMLText, NullPointersHaveEmptyNames)
{
    EXPECT_EQ(XMLParser::getTagName(nullptr), "");
    EXPECT_EQ(XMLParser::getNodeName(nullptr), "");
}

} // namespace

} // namespace KelvoBase
