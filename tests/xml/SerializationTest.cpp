#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"
#include "xml/Documents.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Serialization.h>
#include <kelvobase/TraceStream.h>
#include <kelvobase/XMLCreator.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <xercesc/dom/DOM.hpp>

namespace KelvoBase
{

namespace
{

using test::narrow;
using test::ParsedText;
using test::ScratchDirectory;
using test::textOf;
using test::TraceCapture;
using xercesc::DOMElement;
using xercesc::DOMNode;

/// A document with a root, as a parent for what is written.
class Target
{
public:
    Target() : mRoot(XMLCreator::createElement(mCreator.getDocument(), "root")), parent(mRoot) {}

    XMLCreator& creator() { return mCreator; }
    DOMElement* root() const { return mRoot; }

private:
    XMLCreator mCreator{};
    DOMElement* mRoot; // belongs to the creator

public:
    DOMNode* parent; // what the operations are handed
};

TEST(SerializationWrite, TextBecomesAnElementWithItsType)
{
    Target target;
    Serialization::XMLWriteString("some text", "name", "StringAny", target.parent);
    EXPECT_EQ(target.parent, target.root());
    DOMNode* element = target.root()->getFirstChild();
    ASSERT_EQ(XMLParser::getNodeName(element), "name");
    EXPECT_EQ(element->getAttributes()->getLength(), 1u);
    EXPECT_EQ(XMLParser::getAttribute(element, "DataType"), "StringAny");
    EXPECT_EQ(XMLParser::getText(element), "some text");
    EXPECT_EQ(element->getFirstChild()->getNextSibling(), nullptr);
    EXPECT_EQ(element->getNextSibling(), nullptr);
}

TEST(SerializationWrite, EmptyTypeLeavesTheAttributeOut)
{
    Target target;
    Serialization::XMLWriteString("t", "a", "", target.parent);
    EXPECT_EQ(target.root()->getFirstChild()->getAttributes()->getLength(), 0u);
}

TEST(SerializationWrite, EmptyTextIsATextNodeAllTheSame)
{
    Target target;
    Serialization::XMLWriteString("", "a", "", target.parent);
    DOMNode* text = target.root()->getFirstChild()->getFirstChild();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->getNodeType(), DOMNode::TEXT_NODE);
    EXPECT_EQ(narrow(text->getNodeValue()), "");
}

TEST(SerializationWrite, RootMayBeWritten)
{
    XMLCreator creator;
    DOMNode* parent = creator.getDocument();
    Serialization::XMLWriteString("t", "a", "T", parent);
    EXPECT_EQ(parent, creator.getDocument());
    EXPECT_EQ(XMLParser::getText(creator.getDocument()->getDocumentElement()), "t");
}

TEST(SerializationWrite, ValuesAreWrittenInTheirTextForm)
{
    VectorAny<ScalarAny<std::string>> names;
    names.fromString("a,b,,c", ",");
    VectorAny<ScalarAny<int>> numbers;
    numbers.fromString("1,2,3", ",");
    const struct
    {
        std::shared_ptr<Any> value;
        const char* text;
    } rows[] = {
        {std::make_shared<ScalarAny<int>>(5), "5"},
        {std::make_shared<ScalarAny<bool>>(true), "1"},
        {std::make_shared<ScalarAny<double>>(1.5), "1.5"},
        {std::make_shared<ScalarAny<Bit64>>(255ull), "0x00000000000000FF"},
        {std::make_shared<ScalarAny<std::string>>("a,b"), "a,b"},
        {std::shared_ptr<Any>(names.clone()), "a,b,,c"},
        {std::shared_ptr<Any>(numbers.clone()), "1,2,3"},
        {std::shared_ptr<Any>(names.create()), ""},
    };
    for (const auto& row : rows) {
        Target target;
        Serialization::XMLWriteAny(*row.value, "value", row.value->getTypeString(), target.parent);
        DOMNode* element = target.root()->getFirstChild();
        EXPECT_EQ(XMLParser::getText(element), row.text);
        EXPECT_EQ(XMLParser::getAttribute(element, "DataType"), row.value->getTypeString());
        EXPECT_EQ(element->getFirstChild()->getNextSibling(), nullptr);
    }
}

TEST(SerializationWrite, NameThatIsNoneIsRefusedWithNothingAdded)
{
    Target target;
    EXPECT_THROW(Serialization::XMLWriteString("t", "a b", "T", target.parent), xercesc::DOMException);
    EXPECT_THROW(Serialization::XMLWriteAny(ScalarAny<int>(1), "", "T", target.parent), xercesc::DOMException);
    EXPECT_EQ(target.root()->getFirstChild(), nullptr);
}

TEST(SerializationRead, TextOfADirectChildIsRead)
{
    ParsedText text("<r><x><a>deep</a></x><a DataType='T'>first</a><a>second</a></r>");
    DOMNode* parent = text.root();
    std::string value = "before";
    Serialization::XMLReadString(value, "a", "T", parent);
    EXPECT_EQ(value, "first");
    EXPECT_EQ(parent, text.root());
}

TEST(SerializationRead, ElementOneLevelDeeperIsNotSeen)
{
    ParsedText text("<r><x><a>deep</a></x></r>");
    DOMNode* parent = text.root();
    std::string value = "before";
    Serialization::XMLReadString(value, "a", "", parent);
    EXPECT_EQ(value, "before");
}

TEST(SerializationRead, TypeIsNotCompared)
{
    // Required, Q-1005
    const TraceCapture trace(Trace::verbose);
    ParsedText text("<r><a DataType='IntAny'>5</a></r>");
    DOMNode* parent = text.root();
    DOMNode* node = text.root()->getFirstChild();
    for (const char* type : {"IntAny", "StringAny", ""}) {
        std::string value;
        Serialization::XMLReadString(value, "a", type, parent);
        EXPECT_EQ(value, "5") << type;
        value.clear();
        Serialization::XMLReadStringInline(value, "a", type, node);
        EXPECT_EQ(value, "5") << type;
        ScalarAny<double> number;
        Serialization::XMLReadAny(number, "a", type, parent);
        EXPECT_EQ(number.toDouble(), 5.0) << type;
    }
    EXPECT_EQ(trace.text(), "");
}

TEST(SerializationRead, ElementWithoutATextLeavesTheString)
{
    // Required, Q-1007
    ParsedText text("<r><empty/><nested><b/>t</nested><comment><!-- c -->t</comment></r>");
    DOMNode* parent = text.root();
    for (const char* name : {"empty", "nested", "comment", "missing"}) {
        std::string value = "before";
        Serialization::XMLReadString(value, name, "", parent);
        EXPECT_EQ(value, "before") << name;
    }
}

TEST(SerializationRead, NullParentIsNoError)
{
    DOMNode* none = nullptr;
    std::string value = "before";
    Serialization::XMLReadString(value, "a", "", none);
    Serialization::XMLReadStringInline(value, "a", "", none);
    EXPECT_EQ(value, "before");
    EXPECT_EQ(Serialization::getCheckedElement("a", "", none), nullptr);
}

TEST(SerializationRead, MissingElementHandsTheEmptyTextToTheValue)
{
    // Required, Q-1004
    ParsedText text("<r><empty/></r>");
    DOMNode* parent = text.root();
    for (const char* name : {"missing", "empty"}) {
        ScalarAny<int> number(7);
        EXPECT_EQ(textOf<WrongTypeException>([&] { Serialization::XMLReadAny(number, name, "IntAny", parent); }),
                  "Could not fill a IntAny from string '', Wrong type: 'int'");
        ScalarAny<std::string> word("before");
        Serialization::XMLReadAny(word, name, "StringAny", parent);
        EXPECT_EQ(word.toString(","), "");
        ScalarAny<Bit64> bits(7ull);
        Serialization::XMLReadAny(bits, name, "Bit64Any", parent);
        EXPECT_EQ(bits.toBit64(), 0u);
        VectorAny<ScalarAny<std::string>> words;
        Serialization::XMLReadAny(words, name, "StringVectorAny", parent);
        EXPECT_EQ(words.size(), 1u);
    }
}

TEST(SerializationRead, TextThatDoesNotFitIsTheMatterOfTheValue)
{
    ParsedText text("<r><a DataType='IntAny'>five</a></r>");
    DOMNode* parent = text.root();
    ScalarAny<int> number(7);
    EXPECT_EQ(textOf<WrongTypeException>([&] { Serialization::XMLReadAny(number, "a", "IntAny", parent); }),
              "Could not fill a IntAny from string 'five', Wrong type: 'int'");
}

TEST(SerializationRead, ElementWithoutATextMakesTheStringEmptyInline)
{
    // Required, Q-1008
    ParsedText text("<r>t<a>text</a><a/><a><b/>t</a></r>");
    const char* expected[] = {"before", "text", "", ""};
    DOMNode* node = text.root()->getFirstChild();
    for (const char* read : expected) {
        std::string value = "before";
        DOMNode* handed = node;
        Serialization::XMLReadStringInline(value, "other", "T", handed);
        EXPECT_EQ(value, read);
        EXPECT_EQ(handed, node);
        node = node->getNextSibling();
    }
    DOMNode* document = text.document();
    std::string value = "before";
    Serialization::XMLReadStringInline(value, "r", "", document);
    EXPECT_EQ(value, "before");
}

TEST(SerializationRead, WrittenValuesComeBackFromAFile)
{
    const ScratchDirectory scratch;
    const XMLInitializer xml;
    VectorAny<ScalarAny<std::string>> names;
    names.add(ScalarAny<std::string>("a,b"));
    names.add(ScalarAny<std::string>(" <&> "));
    {
        Target target;
        Serialization::XMLWriteAny(names, "names", "StringVectorAny", target.parent);
        Serialization::XMLWriteAny(ScalarAny<int>(5), "count", "IntAny", target.parent);
        Serialization::XMLWriteString("text", "note", "", target.parent);
        Serialization::XMLWriteString("", "empty", "", target.parent);
        target.creator().writeToFile(scratch.location("values.xml"));
    }
    XMLParser parser(scratch.location("values.xml"));
    DOMNode* parent = parser.getRootElement();
    VectorAny<ScalarAny<std::string>> readNames;
    Serialization::XMLReadAny(readNames, "names", "StringVectorAny", parent);
    EXPECT_TRUE(readNames.equals(names));
    ScalarAny<int> count;
    Serialization::XMLReadAny(count, "count", "IntAny", parent);
    EXPECT_EQ(count.toInt(), 5);
    std::string note;
    Serialization::XMLReadString(note, "note", "", parent);
    EXPECT_EQ(note, "text");
    std::string empty = "before";
    Serialization::XMLReadString(empty, "empty", "", parent);
    EXPECT_EQ(empty, "before");
    EXPECT_EQ(XMLParser::getNodeByTagName(parent, "empty")->getAttributes()->getLength(), 0u);
}

TEST(SerializationChecked, ElementOfTheRightTypeComesWithoutAWord)
{
    const TraceCapture trace(Trace::verbose);
    ParsedText text("<r><a DataType='T'/><b/></r>");
    DOMNode* parent = text.root();
    EXPECT_EQ(Serialization::getCheckedElement("a", "T", parent), text.root()->getFirstChild());
    EXPECT_EQ(Serialization::getCheckedElement("b", "", parent), text.root()->getLastChild());
    EXPECT_EQ(parent, text.root());
    EXPECT_EQ(trace.text(), "");
}

TEST(SerializationChecked, ElementOfAnotherTypeComesWithALineAboutItsParent)
{
    // Required, Q-1006
    ParsedText text("<r><outer><a DataType='T'/><b/></outer></r>");
    DOMNode* parent = text.root()->getFirstChild();
    const struct
    {
        const char* name;
        const char* type;
    } rows[] = {{"a", "U"}, {"a", ""}, {"a", "t"}, {"a", "T "}, {"b", "T"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.name) + " " + row.type);
        const TraceCapture trace(Trace::fail);
        DOMElement* element = Serialization::getCheckedElement(row.name, row.type, parent);
        EXPECT_EQ(element, XMLParser::getNodeByTagName(parent, row.name));
        EXPECT_EQ(trace.text(), "|-- Current Parent Tag Name: outer\n");
    }
}

TEST(SerializationChecked, BelowADocumentNothingIsSaid)
{
    // Required, Q-1006
    const TraceCapture trace(Trace::verbose);
    ParsedText text("<r DataType='T'/>");
    DOMNode* parent = text.document();
    EXPECT_EQ(Serialization::getCheckedElement("r", "U", parent), text.root());
    EXPECT_EQ(trace.text(), "");
}

TEST(SerializationChecked, MissingElementIsNull)
{
    const TraceCapture trace(Trace::verbose);
    ParsedText text("<r><x><a/></x>a</r>");
    DOMNode* parent = text.root();
    EXPECT_EQ(Serialization::getCheckedElement("a", "T", parent), nullptr);
    DOMNode* leaf = text.root()->getLastChild();
    EXPECT_EQ(Serialization::getCheckedElement("a", "T", leaf), nullptr);
    EXPECT_EQ(trace.text(), "");
}

} // namespace

} // namespace KelvoBase
