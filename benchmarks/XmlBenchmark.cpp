/// \file
/// XML, beside Xerces-C itself doing the same.

#include <kelvobase/ResourceLocation.h>
#include <kelvobase/XMLCreator.h>
#include <kelvobase/XMLParser.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace
{

using KelvoBase::XMLCreator;
using KelvoBase::XMLParser;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::DOMNodeList;
using xercesc::XercesDOMParser;
using xercesc::XMLString;

constexpr int children = 1000;
constexpr int records = 20000;
const char* const fields[] = {"name", "value", "unit"};
const std::string file = "XmlBenchmark.xml";

const KelvoBase::XMLInitializer& keptUp()
{
    static const KelvoBase::XMLInitializer xml;
    return xml;
}

void prove(bool right)
{
    if (!right) {
        throw std::logic_error("wrong result");
    }
}

/// One parent with many children, each with some elements of its own.
void writeChildren()
{
    std::ofstream out(file);
    out << "<root>\n";
    for (int i = 0; i < children; ++i) {
        out << "<c" << i << "><x>1</x><x>2</x>" << i << "</c" << i << ">\n";
    }
    out << "</root>\n";
}

void writeRecords()
{
    std::ofstream out(file);
    out << "<root>\n";
    for (int i = 0; i < records; ++i) {
        out << "<record id='" << i << "'><name>series " << i << "</name><value>" << i
            << "</value><unit>km</unit></record>\n";
    }
    out << "</root>\n";
}

std::unique_ptr<XercesDOMParser> rawParser()
{
    auto parser = std::make_unique<XercesDOMParser>();
    parser->setValidationScheme(XercesDOMParser::Val_Auto);
    parser->setDoNamespaces(false);
    parser->setDoSchema(false);
    parser->setCreateEntityReferenceNodes(false);
    parser->parse(file.c_str());
    return parser;
}

std::string rawText(const XMLCh* text)
{
    char* native = XMLString::transcode(text);
    std::string result(native);
    XMLString::release(&native);
    return result;
}

/// The first child element with a tag, by the list of all descendants.
DOMNode* rawChild(DOMElement* parent, const std::string& tag)
{
    XMLCh* wanted = XMLString::transcode(tag.c_str());
    DOMNodeList* list = parent->getElementsByTagName(wanted);
    XMLString::release(&wanted);
    for (XMLSize_t i = 0; DOMNode* node = list->item(i); ++i) {
        if (node->getParentNode() == parent) {
            return node;
        }
    }
    return nullptr;
}

void loadKelvoBase(benchmark::State& state)
{
    keptUp();
    writeRecords();
    for (auto _ : state) {
        XMLParser parser(file);
        prove(parser.getRootElement() != nullptr);
    }
}

void loadXerces(benchmark::State& state)
{
    keptUp();
    writeRecords();
    for (auto _ : state) {
        prove(rawParser()->getDocument()->getDocumentElement() != nullptr);
    }
}

/// Each child of one parent by its tag, in a document that was never asked before.
template <typename Look>
void firstReads(benchmark::State& state, Look look)
{
    keptUp();
    writeChildren();
    std::vector<std::string> tags;
    for (int i = 0; i < children; ++i) {
        tags.push_back("c" + std::to_string(i));
    }
    for (auto _ : state) {
        state.PauseTiming();
        auto parser = rawParser();
        DOMElement* root = parser->getDocument()->getDocumentElement();
        state.ResumeTiming();
        for (const std::string& tag : tags) {
            prove(look(root, tag) != nullptr);
        }
        state.PauseTiming();
        parser.reset();
        state.ResumeTiming();
    }
}

void firstReadsKelvoBase(benchmark::State& state)
{
    firstReads(state, [](DOMElement* root, const std::string& tag) { return XMLParser::getNodeByTagName(root, tag); });
}

void firstReadsXerces(benchmark::State& state)
{
    firstReads(state, [](DOMElement* root, const std::string& tag) { return rawChild(root, tag); });
}

/// All fields of all records, once, in a document that was never asked before.
template <typename Read>
void readRecords(benchmark::State& state, Read read)
{
    keptUp();
    writeRecords();
    for (auto _ : state) {
        state.PauseTiming();
        auto parser = rawParser();
        DOMElement* root = parser->getDocument()->getDocumentElement();
        std::size_t bytes = 0;
        state.ResumeTiming();
        for (DOMElement* record = root->getFirstElementChild(); record; record = record->getNextElementSibling()) {
            for (const char* field : fields) {
                bytes += read(record, field).size();
            }
        }
        state.PauseTiming();
        prove(bytes == 20000 * 9 + 2 * 88890);
        parser.reset();
        state.ResumeTiming();
    }
}

void recordsKelvoBase(benchmark::State& state)
{
    readRecords(state, [](DOMElement* record, const char* field) {
        std::string text;
        XMLParser::getTextNodeByTagName(record, field, text);
        return text;
    });
}

void recordsXerces(benchmark::State& state)
{
    readRecords(state, [](DOMElement* record, const char* field) {
        return rawText(rawChild(record, field)->getFirstChild()->getNodeValue());
    });
}

void fill(DOMNode* root)
{
    for (int i = 0; i < records; ++i) {
        DOMElement* record = XMLCreator::createElement(root, "record");
        for (const char* field : fields) {
            XMLCreator::createTextNode(XMLCreator::createElement(record, field), std::to_string(i));
        }
    }
}

std::ifstream::pos_type sizeOfFile()
{
    return std::ifstream(file, std::ios::ate | std::ios::binary).tellg();
}

void writeKelvoBase(benchmark::State& state)
{
    XMLCreator creator;
    fill(XMLCreator::createElement(creator.getDocument(), "root"));
    for (auto _ : state) {
        creator.writeToFile(file);
    }
    prove(sizeOfFile() > 1500000);
}

void rawWrite(DOMDocument* document)
{
    xercesc::DOMImplementation* core = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    xercesc::DOMLSSerializer* writer = core->createLSSerializer();
    writer->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, true);
    xercesc::DOMLSOutput* output = core->createLSOutput();
    {
        xercesc::LocalFileFormatTarget target(file.c_str());
        output->setByteStream(&target);
        writer->write(document, output);
    }
    output->release();
    writer->release();
}

void writeXerces(benchmark::State& state)
{
    XMLCreator creator;
    fill(XMLCreator::createElement(creator.getDocument(), "root"));
    for (auto _ : state) {
        rawWrite(creator.getDocument());
    }
    prove(sizeOfFile() > 1500000);
}

BENCHMARK(loadKelvoBase)->Unit(benchmark::kMillisecond);
BENCHMARK(loadXerces)->Unit(benchmark::kMillisecond);
BENCHMARK(firstReadsKelvoBase)->Unit(benchmark::kMicrosecond);
BENCHMARK(firstReadsXerces)->Unit(benchmark::kMicrosecond);
BENCHMARK(recordsKelvoBase)->Unit(benchmark::kMillisecond);
BENCHMARK(recordsXerces)->Unit(benchmark::kMillisecond);
BENCHMARK(writeKelvoBase)->Unit(benchmark::kMillisecond);
BENCHMARK(writeXerces)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::remove(file.c_str());
    return 0;
}
