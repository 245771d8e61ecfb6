#pragma once

/// \file
/// The way of a text into Xerces-C and out of it. Whatever Xerces-C allocates is given back, also when an exception
/// passes.

#include <string>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace KelvoBase
{

/// A text as Xerces-C takes it.
class XmlText
{
public:
    explicit XmlText(const char* text) : mText(xercesc::XMLString::transcode(text)) {}
    explicit XmlText(const std::string& text) : XmlText(text.c_str()) {}
    ~XmlText() { xercesc::XMLString::release(&mText); }
    XmlText(const XmlText&) = delete;
    XmlText& operator=(const XmlText&) = delete;

    /// Never null.
    const XMLCh* get() const { return mText ? mText : xercesc::XMLUni::fgZeroLenString; }

private:
    XMLCh* mText;
};

/// A text of Xerces-C's in the native code page; a null pointer reads as the empty text.
inline std::string nativeText(const XMLCh* text)
{
    struct Owner
    {
        explicit Owner(const XMLCh* source) : text(xercesc::XMLString::transcode(source)) {}
        ~Owner() { xercesc::XMLString::release(&text); }
        Owner(const Owner&) = delete;
        Owner& operator=(const Owner&) = delete;
        char* text;
    };
    const Owner native(text);
    return native.text ? std::string(native.text) : std::string();
}

} // namespace KelvoBase
