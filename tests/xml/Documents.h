#pragma once

/// \file
/// Documents for tests, read from a file or made by hand.

#include "support/Scratch.h"

#include <kelvobase/ResourceLocation.h>
#include <kelvobase/XMLParser.h>

#include <memory>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

namespace KelvoBase::test
{

/// A file in a directory of its own, and the parser that has read it.
class ParsedText
{
public:
    explicit ParsedText(const std::string& content)
    {
        mScratch.write("document.xml", content);
        mParser = std::make_unique<XMLParser>(mScratch.location("document.xml"));
    }

    XMLParser& parser() { return *mParser; }
    xercesc::DOMDocument* document() { return mParser->getDocument(); }
    xercesc::DOMElement* root() { return mParser->getRootElement(); }
    /// What the trace and the exceptions call the file.
    std::string name() const { return ResourceLocation(mScratch.location("document.xml")).str(); }

private:
    ScratchDirectory mScratch;
    std::unique_ptr<XMLParser> mParser;
};

/// A text as Xerces-C takes it, for what tests do past the library.
class Wide
{
public:
    explicit Wide(const std::string& text) : mText(xercesc::XMLString::transcode(text.c_str())) {}
    ~Wide() { xercesc::XMLString::release(&mText); }
    Wide(const Wide&) = delete;
    Wide& operator=(const Wide&) = delete;
    operator const XMLCh*() const { return mText; }

private:
    XMLCh* mText;
};

/// A text of Xerces-C's, for what tests do past the library.
inline std::string narrow(const XMLCh* text)
{
    char* native = xercesc::XMLString::transcode(text);
    std::string result(native ? native : "");
    xercesc::XMLString::release(&native);
    return result;
}

} // namespace KelvoBase::test
