// Reads and writes XML as a tool does, step by step, in a process that may be limited or have a locale of its own.

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/Serialization.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>
#include <kelvobase/XMLCreator.h>
#include <kelvobase/XMLParser.h>

#include <clocale>
#include <cstring>
#include <iostream>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/TransService.hpp>

using namespace KelvoBase;

namespace
{

const std::string letters = "m\xc3\xbc \xe2\x82\xac \xf0\x9f\x98\x80 end"; // of one to four bytes

/// Depth of the first branch, and the text at its end.
void describe(xercesc::DOMNode* node)
{
    unsigned long depth = 0;
    std::string text;
    for (; node; node = XMLParser::getNodeByTagName(node, "*")) {
        ++depth;
        text = XMLParser::getText(node);
    }
    std::cout << "depth " << depth << ", text of " << text.size() << " bytes: " << text.substr(0, 40) << '\n';
}

void readFile(const std::string& file)
{
    try {
        XMLParser parser{ResourceLocation(file)};
        describe(parser.getRootElement());
    } catch (const std::exception& e) {
        std::cout << e.what() << '\n';
    }
}

/// Writes texts that are not ASCII, as text, attribute and tag, and reads them back.
void roundTrip(const std::string& file)
{
    const XMLInitializer xml;
    {
        XMLCreator creator;
        xercesc::DOMNode* root = XMLCreator::createElement(creator.getDocument(), "r\xc3\xb6");
        Serialization::XMLWriteString(letters, "t", letters, root);
        creator.writeToFile(file);
    }
    XMLParser parser{ResourceLocation(file)};
    xercesc::DOMNode* root = parser.getRootElement();
    std::string text;
    Serialization::XMLReadString(text, "t", "", root);
    const bool same = text == letters && XMLParser::getNodeName(root) == "r\xc3\xb6" &&
                      XMLParser::getAttribute(XMLParser::getNodeByTagName(root, "t"), "DataType") == letters;
    std::cout << (same ? "all there" : "lost: " + text) << '\n';
}

void service()
{
    const XMLInitializer xml;
    std::cout << (xercesc::XMLString::equals(xercesc::XMLPlatformUtils::fgTransService->getId(), u"ICU") ? "ICU"
                                                                                                         : "other")
              << '\n';
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::string step = argv[i];
        if (step == "setlocale") {
            std::cout << (std::setlocale(LC_ALL, "") ? "" : "no such locale\n");
        } else if (step == "service") {
            service();
        } else if (step == "trace") {
            TraceStream::instance().traceto(Trace::fail, "cout", TraceArea::All());
        } else if (step == "in-step") {
            // The first use of the trace parts the standard streams from C stdio.
            std::cout << (std::ios_base::sync_with_stdio(true) ? "no trace yet\n" : "the trace is there\n");
        } else if (step == "roundtrip" && i + 1 < argc) {
            roundTrip(argv[++i]);
        } else if (step == "read" && i + 1 < argc) {
            readFile(argv[++i]);
        } else {
            std::cout << "what is " << step << "?\n";
            return 2;
        }
    }
    return 0;
}
