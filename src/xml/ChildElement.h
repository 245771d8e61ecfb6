#pragma once

/// \file
/// The look-up of a child element.

#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/XMLString.hpp>

namespace KelvoBase
{

/// The first child element of `parent` with that tag; "*" is every element's. This is what a walk over
/// `getElementsByTagName` finds when it takes the first element whose parent is `parent`, but that list holds all
/// descendants, and stays in the document's memory for each tag that was ever asked for.
template <typename Node>
Node* firstChildElement(const Node& parent, const XMLCh* tag)
{
    const bool any = tag[0] == u'*' && tag[1] == u'\0';
    for (Node* child = parent.getFirstChild(); child; child = child->getNextSibling()) {
        if (child->getNodeType() != xercesc::DOMNode::ELEMENT_NODE) {
            continue;
        }
        const XMLCh* name = child->getNodeName(); // an element's is its tag
        if (any || (name[0] == tag[0] && xercesc::XMLString::equals(name, tag))) {
            return child;
        }
    }
    return nullptr;
}

} // namespace KelvoBase
