#include "trace/Message.h"

#include <kelvobase/Any.h>
#include <kelvobase/Serialization.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>
#include <kelvobase/XMLCreator.h>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

namespace KelvoBase
{

using xercesc::DOMElement;
using xercesc::DOMNode;

namespace
{

constexpr const char* separator = ",";
constexpr const char* typeAttribute = "DataType";

DOMElement* asElement(DOMNode* node)
{
    return node && node->getNodeType() == DOMNode::ELEMENT_NODE ? static_cast<DOMElement*>(node) : nullptr;
}

} // namespace

void Serialization::XMLWriteAny(const Any& value, const std::string& name, const std::string& dataType,
                                DOMNode*& parent)
{
    XMLWriteString(value.toString(separator), name, dataType, parent);
}

void Serialization::XMLWriteString(const std::string& value, const std::string& name, const std::string& dataType,
                                   DOMNode*& parent)
{
    DOMElement* element = XMLCreator::createElement(parent, name);
    if (!dataType.empty()) {
        XMLCreator::setAttribute(element, typeAttribute, dataType);
    }
    XMLCreator::createTextNode(element, value);
}

void Serialization::XMLReadAny(Any& value, const std::string& name, const std::string& dataType, DOMNode*& parent)
{
    std::string text;
    XMLReadString(text, name, dataType, parent);
    // Required (Q-1004): also without an element. Leaving the value alone then would hide from tools that a number is
    // missing, which the value itself reports.
    value.fromString(text, separator);
}

void Serialization::XMLReadString(std::string& value, const std::string& name, const std::string& /*dataType*/,
                                  DOMNode*& parent)
{
    // Required (Q-1005): the type is not compared. Files were written under names of types that have changed since.
    // Required (Q-1007): an element without a text leaves the value alone, so that a default survives.
    XMLParser::getTextNodeByTagName(parent, name, value);
}

void Serialization::XMLReadStringInline(std::string& value, const std::string& /*name*/,
                                        const std::string& /*dataType*/, DOMNode*& node)
{
    // Required (Q-1008): an element without a text gives the empty string. A test for a text in front would make this
    // the same as `XMLReadString`, and loops would carry the value of the element before.
    if (asElement(node)) {
        value = XMLParser::getText(node);
    }
}

DOMElement* Serialization::getCheckedElement(const std::string& name, const std::string& dataType, DOMNode*& parent)
{
    DOMElement* element = asElement(XMLParser::getNodeByTagName(parent, name));
    if (!element) {
        return nullptr;
    }
    DOMElement* above = asElement(element->getParentNode());
    // Required (Q-1006): a mismatch is told, with the parent's tag and nothing else, and the element given all the
    // same. Refusing it would lock out files that are read today.
    if (above && XMLParser::getAttribute(element, typeAttribute) != dataType) {
        traceMessage(Trace::fail, TraceArea::All())
            << "Current Parent Tag Name: " << XMLParser::getTagName(above) << std::endl;
    }
    return element;
}

} // namespace KelvoBase
