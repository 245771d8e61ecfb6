/// \file
/// The public surface of the XML library, signature by signature.

#include <kelvobase/Any.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/Serialization.h>
#include <kelvobase/XMLCreator.h>
#include <kelvobase/XMLParser.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace KelvoBase
{

namespace
{

using std::string;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::DOMText;

template <typename Expected, typename Actual>
constexpr bool same(Actual)
{
    return std::is_same_v<Expected, Actual>;
}

static_assert(std::is_default_constructible_v<XMLInitializer>);
static_assert(std::is_copy_constructible_v<XMLInitializer>);
static_assert(std::is_copy_assignable_v<XMLInitializer>);
static_assert(!std::is_polymorphic_v<XMLInitializer>);
static_assert(std::is_empty_v<XMLInitializer>);

static_assert(std::is_base_of_v<XMLInitializer, XMLParser>);
static_assert(std::is_constructible_v<XMLParser, const ResourceLocation&>);
static_assert(std::is_constructible_v<XMLParser, const char*>);
static_assert(!std::is_copy_constructible_v<XMLParser>);
static_assert(!std::is_copy_assignable_v<XMLParser>);
static_assert(!std::is_move_constructible_v<XMLParser>);
static_assert(sizeof(XMLParser) == sizeof(void*));
static_assert(same<DOMDocument* (XMLParser::*)()>(&XMLParser::getDocument));
static_assert(same<DOMElement* (XMLParser::*)()>(&XMLParser::getRootElement));
static_assert(same<DOMNode* (*)(DOMNode*, const string&)>(&XMLParser::getNodeByTagName));
static_assert(same<DOMNode* (*)(DOMNode*, const string&, string&)>(&XMLParser::getTextNodeByTagName));
[[maybe_unused]] constexpr string (*textAndFlag)(DOMNode*, bool&) = &XMLParser::getText;
[[maybe_unused]] constexpr string (*textAlone)(DOMNode*) = &XMLParser::getText;
[[maybe_unused]] constexpr string (*attributeAndFlag)(DOMNode*, const string&, bool&) = &XMLParser::getAttribute;
[[maybe_unused]] constexpr string (*attributeAlone)(DOMNode*, const string&) = &XMLParser::getAttribute;
static_assert(same<string (*)(DOMElement*)>(&XMLParser::getTagName));
static_assert(same<string (*)(DOMNode*)>(&XMLParser::getNodeName));

static_assert(std::is_base_of_v<XMLInitializer, XMLCreator>);
static_assert(std::is_default_constructible_v<XMLCreator>);
static_assert(!std::is_copy_constructible_v<XMLCreator>);
static_assert(!std::is_copy_assignable_v<XMLCreator>);
static_assert(sizeof(XMLCreator) == 2 * sizeof(void*));
static_assert(same<DOMDocument* (XMLCreator::*)()>(&XMLCreator::getDocument));
static_assert(same<void (XMLCreator::*)(const ResourceLocation&)>(&XMLCreator::writeToFile));
static_assert(same<DOMElement* (*)(DOMNode*, const string&)>(&XMLCreator::createElement));
static_assert(same<DOMText* (*)(DOMNode*, const string&)>(&XMLCreator::createTextNode));
static_assert(same<void (*)(DOMElement*, const string&, const string&)>(&XMLCreator::setAttribute));

using Write = void (*)(const string&, const string&, const string&, DOMNode*&);
using Read = void (*)(string&, const string&, const string&, DOMNode*&);
static_assert(same<void (*)(const Any&, const string&, const string&, DOMNode*&)>(&Serialization::XMLWriteAny));
static_assert(same<Write>(&Serialization::XMLWriteString));
static_assert(same<void (*)(Any&, const string&, const string&, DOMNode*&)>(&Serialization::XMLReadAny));
static_assert(same<Read>(&Serialization::XMLReadString));
static_assert(same<Read>(&Serialization::XMLReadStringInline));
static_assert(same<DOMElement* (*)(const string&, const string&, DOMNode*&)>(&Serialization::getCheckedElement));

/// The count is one static number, which derived classes see.
struct Counter : XMLInitializer
{
    static_assert(std::is_same_v<decltype(msCount), int>);
    static int* place() { return &msCount; }
};

TEST(XMLContract, CountIsShared)
{
    EXPECT_EQ(*Counter::place(), 0);
    const XMLInitializer xml;
    EXPECT_EQ(*Counter::place(), 1);
}

} // namespace

} // namespace KelvoBase
