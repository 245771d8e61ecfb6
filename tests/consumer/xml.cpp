/// \file
/// A tool with XML as somebody outside writes it: it includes every header of the XML library and uses something of
/// each.

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/Serialization.h>
#include <kelvobase/XMLCreator.h>
#include <kelvobase/XMLParser.h>

#include <cstdio>
#include <iostream>
#include <xercesc/util/XMLException.hpp>

using namespace KelvoBase;

namespace
{

void write(const ResourceLocation& file)
{
    XMLCreator creator;
    xercesc::DOMNode* root = XMLCreator::createElement(creator.getDocument(), "results");
    Serialization::XMLWriteAny(ScalarAny<int>(5), "count", "IntAny", root);
    creator.writeToFile(file);
}

int read(const ResourceLocation& file)
{
    XMLParser parser(file);
    xercesc::DOMNode* root = parser.getRootElement();
    ScalarAny<int> count;
    Serialization::XMLReadAny(count, "count", "IntAny", root);
    return count.toInt();
}

// Exceptions of the library and of Xerces-C are caught by their bases: one type information on both sides.
bool failsAsTold()
{
    int caught = 0;
    try {
        write("no/such/folder/results.xml");
    } catch (const xercesc::XMLException&) {
        ++caught;
    }
    try {
        read("no/such/folder/results.xml");
    } catch (const RuntimeException& e) {
        caught += dynamic_cast<const FileNotFoundException*>(&e) != nullptr ? 1 : 0;
    }
    return caught == 2;
}

} // namespace

int main(int argc, char** argv)
{
    const char* file = argc > 1 ? argv[1] : "results.xml";
    const XMLInitializer xml;
    write(file);
    std::cout << "count " << read(file) << (failsAsTold() ? ", all well\n" : ", but something is wrong\n");
    return std::remove(file);
}
