#include "ResultFile.h"

#include "ExactNumber.h"
#include "Report.h"
#include "Shown.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Serialization.h>
#include <kelvobase/System.h>
#include <kelvobase/XMLCreator.h>
#include <kelvobase/XMLParser.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <system_error>
#include <xercesc/util/XMLException.hpp>

namespace seriesstat
{

namespace
{

using KelvoBase::Any;
using KelvoBase::RuntimeException;
using KelvoBase::Serialization;
using KelvoBase::System;
using KelvoBase::XMLCreator;
using KelvoBase::XMLParser;
using xercesc::DOMNode;
using Count = ExactNumber<unsigned long>;
using Number = ExactNumber<double>;
using Text = KelvoBase::ScalarAny<std::string>;

constexpr unsigned long structureVersion = 1;
constexpr const char* toolName = "seriesstat";
constexpr const char* rootName = "seriesResults";
constexpr const char* rootBegin = "<seriesResults>";
constexpr const char* rootEnd = "</seriesResults>";
constexpr const char* seriesName = "series";
constexpr const char* typeAttribute = "DataType";
constexpr const char* declaration = R"(<?xml version="1.0" encoding="UTF-8")";
constexpr std::uintmax_t sizeLimit = 32U << 20U;
constexpr std::size_t textLimit = 1U << 13U;
constexpr std::size_t stretchLimit = 1U << 16U; // from one tag to the next, with room for the longest text, escaped

/// What stands in a file once, and once for each series in front of its statistics.
constexpr std::array headEntries{"structure", "tool",    "version",  "revision",
                                 "when",      "seconds", "quantity", "seriesCount"};
constexpr std::array seriesEntries{"name", "digest"};

constexpr const char* notStorable =
    " cannot stand in a file of results: there it has to be a text in UTF-8, of 8 kB at "
    "most and without control characters.";
constexpr const char* notOrdinary = "This is no ordinary file.";
constexpr const char* tooLarge = "This is larger than 32 MiB, and no result is.";
constexpr const char* noResult = "This is no result of seriesstat.";
constexpr const char* cutOff = "The end of the result is missing.";
constexpr const char* declares = "There is a document type, a comment or a CDATA section (<!), and no result has one.";
constexpr const char* overlong = "There is a text or a tag of more than 64 kB, and no result has one.";
constexpr const char* notWellFormed = "This is no well-formed XML.";
constexpr const char* otherStructure = "The result has a structure that this version of seriesstat does not know: ";
constexpr const char* seriesMissing = "Series are missing, or too many: there should be ";
constexpr const char* missing = "There is no entry ";
constexpr const char* unknown = "There is an unknown entry ";
constexpr const char* twice = "There is more than one entry ";
constexpr const char* badType = " has another data type than ";
constexpr const char* badValue = " has no value that fits: ";

[[noreturn]] void refuse(const std::string& place, const std::string& fault)
{
    throw RuntimeException(place + ": " + fault);
}

// Writing

std::unique_ptr<Any> anyOf(std::size_t value)
{
    return std::make_unique<Count>(static_cast<unsigned long>(value));
}

std::unique_ptr<Any> anyOf(double value)
{
    return std::make_unique<Number>(value);
}

std::unique_ptr<Any> anyOf(const std::string& value)
{
    return std::make_unique<Text>(value);
}

std::unique_ptr<Any> anyOf(const std::optional<double>& value)
{
    return value ? anyOf(*value) : anyOf(std::string(notDefined));
}

template <typename Value>
void write(const Value& value, std::string_view name, DOMNode* parent)
{
    const std::unique_ptr<Any> any = anyOf(value);
    Serialization::XMLWriteAny(*any, std::string(name), any->getTypeString(), parent);
}

void writeHead(const StoredResults& stored, DOMNode* root)
{
    write(std::size_t{structureVersion}, "structure", root);
    write(std::string(toolName), "tool", root);
    write(stored.origin.version, "version", root);
    write(stored.origin.revision, "revision", root);
    write(stored.origin.when, "when", root);
    write(stored.results.seconds, "seconds", root);
    write(stored.results.quantity, "quantity", root);
    write(stored.results.series.size(), "seriesCount", root);
}

void writeSeries(const SeriesResult& series, DOMNode* root)
{
    DOMNode* parent = XMLCreator::createElement(root, seriesName);
    write(series.name, "name", parent);
    write(series.digest, "digest", parent);
    for (const Statistic* statistic : allStatistics()) {
        std::visit([&](auto field) { write(series.summary.*field, statistic->name, parent); }, statistic->field);
    }
}

// Texts

bool hasControls(const std::string& text)
{
    return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

/// Whether XML has a text's characters at all, which the library leaves to the writing of the file.
bool hasNoncharacters(const std::string& text)
{
    return text.find("\xEF\xBF\xBE") != std::string::npos || text.find("\xEF\xBF\xBF") != std::string::npos;
}

/// Whether a text gets through the XML library, whatever code page that works with.
bool comesBack(const std::string& text)
{
    XMLCreator creator;
    DOMNode* parent = XMLCreator::createElement(creator.getDocument(), rootName);
    XMLCreator::createTextNode(parent, text);
    return XMLParser::getText(parent) == text;
}

bool isStorable(const std::string& text)
{
    return !text.empty() && text.size() <= textLimit && !hasControls(text) && !hasNoncharacters(text) &&
           comesBack(text);
}

// Reading

std::string contentOf(const std::string& path)
{
    std::error_code fault;
    const std::filesystem::file_status status = std::filesystem::status(path, fault);
    if (!std::filesystem::exists(status)) {
        throw KelvoBase::FileNotFoundException(path);
    }
    if (!std::filesystem::is_regular_file(status)) {
        refuse(path, notOrdinary);
    }
    const std::uintmax_t size = std::filesystem::file_size(path, fault);
    if (size > sizeLimit) {
        refuse(path, tooLarge);
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    std::ifstream in(path, std::ios::binary);
    if (!in.read(text.data(), static_cast<std::streamsize>(size))) {
        const std::string reason = System::lastErrorMessage();
        throw KelvoBase::FileNotReadableException(path, reason);
    }
    return text;
}

bool hasOverlongStretch(const std::string& text)
{
    std::size_t begin = 0;
    while (begin != std::string::npos) {
        const std::size_t next = text.find('<', begin + 1);
        if (std::min(next, text.size()) - begin > stretchLimit) {
            return true;
        }
        begin = next;
    }
    return false;
}

/// Whether the root element ends at the end of the text, and nowhere else.
bool isComplete(const std::string& text)
{
    const std::size_t end = text.find(rootEnd);
    return end != std::string::npos &&
           text.find_first_not_of(" \t\r\n", end + std::string_view(rootEnd).size()) == std::string::npos;
}

/// Refuses what is better not handed to a parser: a document type, which would be obeyed, an encoding that could hide
/// one, an element with thousands of attributes. What was cut off is told here as well.
void checkText(const std::string& text, const std::string& path)
{
    if (!text.starts_with(declaration) || text.find(rootBegin) == std::string::npos) {
        refuse(path, noResult);
    }
    if (text.find("<!") != std::string::npos) {
        refuse(path, declares);
    }
    if (hasOverlongStretch(text)) {
        refuse(path, overlong);
    }
    if (!isComplete(text)) {
        refuse(path, cutOff);
    }
}

/// An element with entries, and what messages call it.
struct Place
{
    DOMNode* node;
    std::string name;
};

std::vector<DOMNode*> elementsIn(const Place& place)
{
    std::vector<DOMNode*> elements;
    for (DOMNode* node = place.node->getFirstChild(); node; node = node->getNextSibling()) {
        if (node->getNodeType() == DOMNode::ELEMENT_NODE) {
            elements.push_back(node);
        }
    }
    return elements;
}

/// Refuses a place that has not each of the entries once, as a text, and nothing else but elements called `repeated`.
void checkEntries(const Place& place, const std::vector<std::string>& entries, const std::string& repeated)
{
    std::set<std::string> ahead(entries.begin(), entries.end());
    for (DOMNode* element : elementsIn(place)) {
        const std::string name = XMLParser::getNodeName(element);
        if (name == repeated) {
            continue;
        }
        if (ahead.erase(name) == 0) {
            const bool isKnown = std::find(entries.begin(), entries.end(), name) != entries.end();
            refuse(place.name, (isKnown ? twice : unknown) + shown(name) + ".");
        }
        if (element->getFirstChild() != element->getLastChild()) {
            refuse(place.name, shown(name) + badValue + "more than a text.");
        }
    }
    if (!ahead.empty()) {
        refuse(place.name, missing + shown(*ahead.begin()) + ".");
    }
}

std::string typeOf(const Place& place, const std::string& name)
{
    return XMLParser::getAttribute(XMLParser::getNodeByTagName(place.node, name), typeAttribute);
}

/// Reads the entry of that name into a value of the type that it should have.
void readAny(Any& value, const std::string& name, Place place)
{
    if (typeOf(place, name) != value.getTypeString()) {
        refuse(place.name, shown(name) + badType + value.getTypeString() + ".");
    }
    try {
        Serialization::XMLReadAny(value, name, value.getTypeString(), place.node);
    } catch (const KelvoBase::WrongTypeException&) {
        const std::string text = XMLParser::getText(XMLParser::getNodeByTagName(place.node, name));
        refuse(place.name, shown(name) + badValue + shown(text) + ".");
    }
}

void read(std::size_t& field, const std::string& name, const Place& place)
{
    Count count;
    readAny(count, name, place);
    field = count.toULong();
}

void read(double& field, const std::string& name, const Place& place)
{
    Number number;
    readAny(number, name, place);
    field = number.toDouble();
}

void read(std::string& field, const std::string& name, const Place& place)
{
    Text text;
    readAny(text, name, place);
    field = text.toString(",");
    if (field.empty() || hasControls(field)) {
        refuse(place.name, shown(name) + badValue + shown(field) + ".");
    }
}

void read(std::optional<double>& field, const std::string& name, const Place& place)
{
    if (typeOf(place, name) != Text().getTypeString()) {
        read(field.emplace(), name, place);
        return;
    }
    std::string text;
    read(text, name, place);
    if (text != notDefined) {
        refuse(place.name, shown(name) + badValue + shown(text) + ".");
    }
}

/// Refuses another structure before it is looked at any closer.
void checkStructure(const Place& place)
{
    if (!XMLParser::getNodeByTagName(place.node, "structure")) {
        refuse(place.name, missing + shown("structure") + ".");
    }
    std::size_t structure = 0;
    read(structure, "structure", place);
    if (structure != structureVersion) {
        refuse(place.name, otherStructure + std::to_string(structure) + ".");
    }
}

/// Reads what stands once, and returns how many series there should be.
std::size_t readHead(StoredResults& stored, const Place& place)
{
    checkEntries(place, {headEntries.begin(), headEntries.end()}, seriesName);
    std::string tool;
    read(tool, "tool", place);
    if (tool != toolName) {
        refuse(place.name, noResult);
    }
    read(stored.origin.version, "version", place);
    read(stored.origin.revision, "revision", place);
    read(stored.origin.when, "when", place);
    read(stored.results.seconds, "seconds", place);
    read(stored.results.quantity, "quantity", place);
    std::size_t seriesCount = 0;
    read(seriesCount, "seriesCount", place);
    return seriesCount;
}

SeriesResult readSeries(const Place& place)
{
    std::vector<std::string> entries = statisticNames();
    entries.insert(entries.end(), seriesEntries.begin(), seriesEntries.end());
    checkEntries(place, entries, "");
    SeriesResult series;
    read(series.name, "name", place);
    read(series.digest, "digest", place);
    for (const Statistic* statistic : allStatistics()) {
        const auto take = [&](auto field) { read(series.summary.*field, std::string(statistic->name), place); };
        std::visit(take, statistic->field);
    }
    return series;
}

StoredResults readRoot(const Place& root)
{
    checkStructure(root);
    StoredResults stored;
    const std::size_t count = readHead(stored, root);
    std::vector<SeriesResult>& series = stored.results.series;
    for (DOMNode* element : elementsIn(root)) {
        if (XMLParser::getNodeName(element) == seriesName) {
            series.push_back(readSeries({element, root.name + ": series " + std::to_string(series.size() + 1)}));
        }
    }
    if (series.size() != count) {
        refuse(root.name, seriesMissing + std::to_string(count) + ".");
    }
    return stored;
}

} // namespace

void checkStorable(const std::vector<std::string>& texts)
{
    const KelvoBase::XMLInitializer xml; // once for all of them
    for (const std::string& text : texts) {
        if (!isStorable(text)) {
            throw RuntimeException(shown(text) + notStorable);
        }
    }
}

void writeResults(const OutputFile& file, const StoredResults& stored)
{
    XMLCreator creator;
    DOMNode* root = XMLCreator::createElement(creator.getDocument(), rootName);
    writeHead(stored, root);
    for (const SeriesResult& series : stored.results.series) {
        writeSeries(series, root);
    }
    try {
        creator.writeToFile(file.place());
    } catch (const xercesc::XMLException&) {
        const std::string reason = System::lastErrorMessage();
        throwUnwritable(file.name(), reason);
    }
    std::error_code fault;
    if (std::filesystem::file_size(file.place(), fault) > sizeLimit) {
        throwUnwritable(file.name(), tooLarge);
    }
}

StoredResults readResults(const std::string& path)
{
    checkText(contentOf(path), path);
    try {
        XMLParser parser(path);
        DOMNode* root = parser.getRootElement();
        if (!root || XMLParser::getNodeName(root) != rootName) {
            refuse(path, notWellFormed);
        }
        return readRoot({root, path});
    } catch (const KelvoBase::OperationFailedException&) { // Xerces-C gave up
        refuse(path, notWellFormed);
    }
}

} // namespace seriesstat
