#include <iostream>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

int main()
{
    xercesc::XMLPlatformUtils::Initialize();
    xercesc::DOMImplementation* core = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    xercesc::DOMDocument* document = core->createDocument();
    std::cout << "tool, Version 1\n";
    document->release();
    xercesc::XMLPlatformUtils::Terminate();
    return 0;
}
