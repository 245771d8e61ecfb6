#include "xml/XmlPath.h"
#include "xml/XmlText.h"

#include <kelvobase/ResourceLocation.h>
#include <kelvobase/XMLCreator.h>

#include <filesystem>
#include <system_error>
#include <xercesc/dom/DOMConfiguration.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/dom/DOMLSOutput.hpp>
#include <xercesc/dom/DOMLSSerializer.hpp>
#include <xercesc/dom/DOMText.hpp>
#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace KelvoBase
{

using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::DOMText;
using xercesc::LocalFileFormatTarget;
using xercesc::XMLPlatformUtils;

namespace
{

constexpr const char* implementationFeature = "Core";

/// For what Xerces-C wants to have back by `release`.
struct Release
{
    template <typename Object>
    void operator()(Object* object) const noexcept
    {
        object->release();
    }
};

template <typename Object>
using Released = std::unique_ptr<Object, Release>;

/// Counts what it is given: Xerces-C closes the file without a look at whether the last bytes arrived.
class CountingTarget : public LocalFileFormatTarget
{
public:
    CountingTarget(const std::string& path, std::uintmax_t& count)
        : LocalFileFormatTarget(path.c_str(), XMLPlatformUtils::fgMemoryManager), mCount(count)
    {
    }

    void writeChars(const XMLByte* bytes, XMLSize_t size, xercesc::XMLFormatter* formatter) override
    {
        mCount += size;
        LocalFileFormatTarget::writeChars(bytes, size, formatter);
    }

private:
    std::uintmax_t& mCount; // outlives the target
};

/// Whether the file holds what was written; of devices and pipes nobody can tell.
bool hasArrived(const std::string& path, std::uintmax_t count)
{
    std::error_code failure;
    return !std::filesystem::is_regular_file(path, failure) || std::filesystem::file_size(path, failure) == count;
}

/// What Xerces-C throws itself when it notices that a file takes no more.
[[noreturn]] void throwUnwritten()
{
    throw xercesc::XMLPlatformUtilsException("XMLCreator.cpp", __LINE__, xercesc::XMLExcepts::File_CouldNotWriteToFile,
                                             XMLPlatformUtils::fgMemoryManager);
}

DOMDocument* documentOf(DOMNode* node)
{
    return node->getNodeType() == DOMNode::DOCUMENT_NODE ? static_cast<DOMDocument*>(node) : node->getOwnerDocument();
}

/// Appends a new node. One that `parent` does not take goes back to its document.
template <typename Node>
Node* append(DOMNode* parent, Node* created)
{
    Released<Node> node(created);
    parent->appendChild(created);
    return node.release();
}

} // namespace

void XMLCreator::ReleaseDocument::operator()(DOMDocument* document) const noexcept
{
    document->release();
}

XMLCreator::XMLCreator()
    : mImpl(xercesc::DOMImplementationRegistry::getDOMImplementation(XmlText(implementationFeature).get()))
{
    mDocument.reset(mImpl->createDocument(XMLPlatformUtils::fgMemoryManager));
}

XMLCreator::~XMLCreator() = default; // the document goes here, before the base class may end Xerces-C

DOMDocument* XMLCreator::getDocument()
{
    return mDocument.get();
}

void XMLCreator::writeToFile(const ResourceLocation& location)
{
    const Released<xercesc::DOMLSSerializer> writer(mImpl->createLSSerializer(XMLPlatformUtils::fgMemoryManager));
    writer->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, true);
    const std::string path = xmlTargetPath(location);
    std::uintmax_t count = 0;
    bool written = false;
    {
        CountingTarget target(path, count);
        const Released<xercesc::DOMLSOutput> output(mImpl->createLSOutput(XMLPlatformUtils::fgMemoryManager));
        output->setByteStream(&target);
        written = writer->write(mDocument.get(), output.get());
    }
    if (!written || !hasArrived(path, count)) {
        throwUnwritten();
    }
}

DOMElement* XMLCreator::createElement(DOMNode* parent, const std::string& name)
{
    return append(parent, documentOf(parent)->createElement(XmlText(name).get()));
}

DOMText* XMLCreator::createTextNode(DOMNode* parent, const std::string& text)
{
    return append(parent, documentOf(parent)->createTextNode(XmlText(text).get()));
}

void XMLCreator::setAttribute(DOMElement* element, const std::string& name, const std::string& value)
{
    element->setAttribute(XmlText(name).get(), XmlText(value).get());
}

} // namespace KelvoBase
