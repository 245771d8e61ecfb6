#pragma once

/// \file
/// Reading XML: a file becomes a DOM document, and the texts of a DOM become strings. Part of `libkelvobase-xml`, the
/// only library of the family that needs Xerces-C (CMake: component `xml`, target `KelvoBase::xml`).
///
///     const XMLParser parser("results.xml");
///     bool found = false;
///     xercesc::DOMNode* series = XMLParser::getNodeByTagName(parser.getRootElement(), "series");
///     const std::string unit = XMLParser::getAttribute(series, "unit", found);
///
/// Texts. What goes into a document or comes out of it is converted by Xerces-C between UTF-16 and the code page that
/// Xerces-C takes for the native one. Where Xerces-C is built on ICU, as Debian's is, that is UTF-8 in every locale;
/// where it uses the C library, it is the encoding of the locale that was set with `setlocale` before the first
/// `XMLInitializer`, and in the "C" locale that is ASCII. A tool that calls `setlocale(LC_ALL, "")` first thing in a
/// UTF-8 locale so loses nothing, whatever Xerces-C it runs with; without that call nothing but ASCII is safe on all of
/// them. A character that the code page does not have, and a byte that is no text in it, is replaced by Xerces-C. A
/// text handed over ends at its first zero byte.
///
/// Documents to trust. Any bytes may be read that have no document type: they end in a document, in errors that are
/// counted, or in an `OperationFailedException`; time and memory grow with the size of the file (with the square of the
/// number of attributes of one element). A document type is another matter, and is for documents from trusted places
/// only, because it is obeyed:
///   - an external one, and an external entity, is loaded from wherever it says: a file of this machine, whose content
///     then stands in the document, or, as far as Xerces-C is built for it, a server in the network;
///   - entities within entities make a small file grow beyond every memory. Reading stops, with an error counted, at a
///     million references to general entities, but parameter entities and long entity texts have no such limit.
/// A tool that is given documents by strangers refuses those with a document type before it reads them here, or reads
/// them in a process whose time and memory are limited.

#include <kelvobase/Export.h>

#include <memory>
#include <string>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace KelvoBase
{

class ResourceLocation;

/// Keeps Xerces-C up: the first live object initialises it, the end of the last one terminates it.
///
/// Parsers and creators are such objects. One more, kept beside them, saves bringing Xerces-C up again and again:
///
///     const XMLInitializer xml;
///     for (const ResourceLocation& file : files) {
///         readResults(XMLParser(file));
///     }
///
/// A copy counts as one more; an assignment changes nothing. Users of Xerces-C that initialise it by themselves do not
/// count. Objects are made and destroyed by one thread at a time.
///
/// Everything of Xerces-C's becomes invalid when the last object goes: nodes, strings, and also its exceptions. So what
/// catches an exception of Xerces-C must stand inside the life of an `XMLInitializer`:
///
///     const XMLInitializer xml;
///     try {
///         XMLCreator creator;
///         creator.writeToFile("missing/results.xml");
///     } catch (const xercesc::XMLException& e) {
///         ...
///     }
class KELVOBASE_XML_API XMLInitializer
{
public:
    /// Throws what Xerces-C throws when it cannot be brought up; that object does not count.
    XMLInitializer();
    XMLInitializer(const XMLInitializer& other);
    XMLInitializer& operator=(const XMLInitializer& other);
    /// Not virtual: nobody deletes a parser through this base.
    ~XMLInitializer();

protected:
    /// How many objects are alive.
    static int msCount;
};

/// One XML file as a DOM document, read at construction.
///
/// Nodes belong to the parser's document and are valid until the parser is destroyed. A document type that has an
/// internal subset, also an empty one, or an external one is validated against, any other file is not; names are taken
/// as they are written, prefixes included; references to entities are replaced by what they stand for.
class KELVOBASE_XML_API XMLParser : public XMLInitializer
{
public:
    /// Reads a file. Throws
    ///   - `NotAFileException` for a location that is not local,
    ///   - `FileNotFoundException(location.str())` if `location` is no file,
    ///   - `OperationFailedException` with Xerces-C's text, if Xerces-C gives up by an `XMLException` or
    ///   `DOMException`,
    ///   - `OperationFailedException("Unexpected Exception while trying to parse \"" + location.str() + "\".")` if it
    ///     does so by anything else; running out of memory is such a case.
    /// What is wrong with the file's content is merely counted. Required (Q-1002): such a document does not make the
    /// constructor fail; the caller gets whatever was built, which may be a document without a root element. Required
    /// (Q-1001): a line for all areas goes to the trace (`Trace::fail`), without blanks around its middle:
    ///
    ///     There occured 1errors while parsing Parsing file://localhost/C:\data\run.xml
    ///
    /// A file that has gone by the time Xerces-C opens it, or whose name is no text in the native code page, counts as
    /// such an error, too; there is no document then.
    XMLParser(const ResourceLocation& location);
    XMLParser(const XMLParser&) = delete;
    XMLParser& operator=(const XMLParser&) = delete;
    ~XMLParser();

    /// Library keeps. Null if the file could not be opened.
    xercesc::DOMDocument* getDocument();
    /// Library keeps. Null if there is none: behind an error, or without a document.
    xercesc::DOMElement* getRootElement();

    /// \name Nodes
    /// `parent` is an element or a document; for null and for every other kind of node nothing is found.
    /// @{

    /// The first child element of `parent` with that tag, or null. Deeper elements do not count; the tag "*" stands for
    /// any. Costs a walk over the children of `parent`, whatever lies below them.
    static xercesc::DOMNode* getNodeByTagName(xercesc::DOMNode* parent, const std::string& tag);
    /// The same element, with its `getText` stored in `text`, if that is found; otherwise null, and `text` stays.
    static xercesc::DOMNode* getTextNodeByTagName(xercesc::DOMNode* parent, const std::string& tag, std::string& text);
    /// @}

    /// \name Texts
    /// Empty, with `found` false, where there is none; so for a null pointer.
    /// @{

    /// The text of the first child of `node`. Required (Q-1003): nothing behind it is looked at, and a comment or an
    /// element in front hides the text:
    ///
    ///     <a>x<b/>y</a> => "x"        <a><!-- c -->x</a> => "", not found        <a></a> => "", not found
    ///
    /// A CDATA section is text.
    static std::string getText(xercesc::DOMNode* node, bool& found);
    static std::string getText(xercesc::DOMNode* node);
    /// The value of an attribute of an element. One that is there and empty is found; so is one that the document type
    /// supplies.
    static std::string getAttribute(xercesc::DOMNode* node, const std::string& name, bool& found);
    static std::string getAttribute(xercesc::DOMNode* node, const std::string& name);
    /// The tag of an element, with its prefix.
    static std::string getTagName(xercesc::DOMElement* element);
    /// The name of any node: an element's tag, an attribute's name, "#text", "#document".
    static std::string getNodeName(xercesc::DOMNode* node);
    /// @}

private:
    std::unique_ptr<xercesc::XercesDOMParser> mParser; // owns the document
};

} // namespace KelvoBase
