#pragma once

/// \file
/// Making an XML document and writing it to a file. Part of `libkelvobase-xml`.
///
///     XMLCreator creator;
///     xercesc::DOMElement* root = XMLCreator::createElement(creator.getDocument(), "results");
///     XMLCreator::setAttribute(root, "unit", "km/s");
///     XMLCreator::createTextNode(XMLCreator::createElement(root, "mean"), "299852.4");
///     creator.writeToFile("results.xml");
///
/// Exceptions of Xerces-C pass as they are, here and nowhere else in the library. They are no `std::exception`, and
/// they must be caught while an `XMLInitializer` is alive, see `XMLParser.h`; so is what holds for texts.

#include <kelvobase/Export.h>
#include <kelvobase/XMLParser.h>

#include <memory>
#include <string>
#include <xercesc/dom/DOMText.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMImplementation;
XERCES_CPP_NAMESPACE_END

namespace KelvoBase
{

/// A document under construction. Its nodes belong to it and are valid until the creator is destroyed.
class KELVOBASE_XML_API XMLCreator : public XMLInitializer
{
public:
    /// An empty document, without a root element.
    XMLCreator();
    XMLCreator(const XMLCreator&) = delete;
    XMLCreator& operator=(const XMLCreator&) = delete;
    ~XMLCreator();

    /// Library keeps. As the parent of `createElement` it gets its root element.
    xercesc::DOMDocument* getDocument();

    /// Writes the document, indented and in UTF-8, over an existing file, too. Throws
    ///   - `NotAFileException` for a location that is not local,
    ///   - `xercesc::XMLException` if the file cannot be opened or written; a disk that is full at the very end of an
    ///     ordinary file is noticed. A network path, another drive, and a path that is no text in the native code page
    ///     cannot be opened,
    ///   - `xercesc::DOMException` for a character that XML does not have, such as most control characters: a document
    ///     takes it without a word.
    /// What was written before stays. Takes some stack for each level of elements: ten thousand are no trouble.
    void writeToFile(const ResourceLocation& location);

    /// \name Nodes
    /// REQUIRES: `parent` and `element` are not null. They need not belong to a creator: a parser's document can be
    /// added to. Throws `xercesc::DOMException` for a name that is no XML name, or if `parent` cannot take such a child
    /// (a second root element, a text beside it); nothing is added then.
    /// @{

    /// A new element at the end of `parent`, an element or a document. Library keeps.
    static xercesc::DOMElement* createElement(xercesc::DOMNode* parent, const std::string& name);
    /// A new text at the end of `parent`. Library keeps.
    static xercesc::DOMText* createTextNode(xercesc::DOMNode* parent, const std::string& text);
    /// Sets an attribute, which may be there already.
    static void setAttribute(xercesc::DOMElement* element, const std::string& name, const std::string& value);
    /// @}

private:
    struct ReleaseDocument
    {
        void operator()(xercesc::DOMDocument* document) const noexcept;
    };

    std::unique_ptr<xercesc::DOMDocument, ReleaseDocument> mDocument;
    xercesc::DOMImplementation* mImpl; // Xerces-C's own, there for as long as it is up
};

} // namespace KelvoBase
