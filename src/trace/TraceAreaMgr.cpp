#include "trace/TraceAreaTables.h"
#include "trace/UnknownArea.h"

#include <kelvobase/Any.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>

#include <exception>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace KelvoBase
{

namespace
{

constexpr unsigned int firstBit = 0;
constexpr unsigned int bits = 64;
constexpr int nameColumns = 20;

constexpr const char* areaFile = "TraceAreas.ini";
constexpr const char* mainAreaSection = "TraceMainAreas";
constexpr const char* subAreaSection = "TraceSubAreas";
constexpr const char* noParents = "BoolAny"; // the type of a flag
constexpr const char* listSeparator = ",";

/// The row of a table of three columns, each aligned to the right.
void printRow(std::ostream& out, const std::string& name, const std::string& id, const std::string& mask)
{
    out << std::setw(nameColumns) << name << '\t' << std::setw(bits) << id << '\t' << std::setw(bits) << mask << '\n';
}

/// The masks of all areas that `names` lists and `registry` knows.
std::bitset<bits> masksOf(const Any& names, const TraceAreaMgr& registry)
{
    std::bitset<bits> masks;
    for (unsigned int i = 0; i < names.size(); ++i) {
        const std::string parent = names[i].toString(listSeparator);
        if (const TraceAreaEntry* entry = registry.searchId(parent)) {
            masks |= entry->mask;
        } else {
            // Required: the words are those of the tables, which leave out the whole area. Leaving it out here
            // as well would lose an area, and the messages in it, for one misspelt parent.
            warnOfUnknownParent(parent);
        }
    }
    return masks;
}

} // namespace

void warnOfUnknownParent(std::string_view parent)
{
    if (haveCerr) {
        std::cerr << "WARNING TraceAreaMgr: Unknown area '" << parent << "'" << std::endl;
        std::cerr << "\tSkipping entry..." << std::endl;
    }
}

void throwUnknownArea(const std::string& name)
{
    throw ObjectNotExistentException("TraceAreaMgr: Unknown Area \"" + name + "\".");
}

constinit TraceAreaMgr* TraceAreaMgr::m_instance = nullptr;

TraceAreaMgr::TraceAreaMgr() : mNextBit(firstBit)
{
    const auto all = std::bitset<bits>().set();
    mAreas.emplace("All", TraceAreaEntry{all, all});
    // From here on the registry can be asked: whatever fills it may have something to trace.
    m_instance = this;
    try {
        fill();
    } catch (...) {
        m_instance = nullptr;
        throw;
    }
}

TraceAreaMgr::~TraceAreaMgr() = default;

void TraceAreaMgr::fill()
{
    // Required: not a word, since most installations have no such file, and nothing is taken back. Areas that
    // were read keep their bits, and the tables add theirs behind them.
    // Required: that fails where the file has used up all bits. A registry without the areas of the tables
    // would make every message in one of them fail.
    if (!readAreaFile()) {
        initInternally();
    }
}

/// Adds the areas of the file. False if there is none or anything is wrong with it.
bool TraceAreaMgr::readAreaFile()
{
    try {
        ConfigFile file;
        if (!file.mergeConfigFiles(areaFile)) {
            return false;
        }
        initFromFile(file);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

TraceAreaMgr* TraceAreaMgr::instance()
{
    return m_instance;
}

void TraceAreaMgr::startup()
{
    if (m_instance == nullptr) {
        m_instance = new TraceAreaMgr;
    }
}

void TraceAreaMgr::teardown()
{
    delete m_instance;
    m_instance = nullptr;
}

const TraceAreaEntry* TraceAreaMgr::searchId(const std::string& name) const
{
    const auto found = mAreas.find(name);
    return found == mAreas.end() ? nullptr : &found->second;
}

const std::bitset<64>& TraceAreaMgr::getTraceAreaMask(const std::string& name) const
{
    const TraceAreaEntry* entry = searchId(name);
    if (entry == nullptr) {
        throwUnknownArea(name);
    }
    return entry->mask;
}

const std::bitset<64>& TraceAreaMgr::getTraceAreaId(const std::string& name) const
{
    if (const TraceAreaEntry* entry = searchId(name)) {
        return entry->id;
    }
    // Required: a warning with its own quotation marks, not the failure of getTraceAreaMask. These names come
    // from users; throwing would end their run for a misspelt area.
    if (haveCerr) {
        std::cerr << "TraceAreaMgr: Unknown Area '" << name << "'. Ignoring it." << std::endl;
    }
    static constexpr std::bitset<64> none;
    return none;
}

void TraceAreaMgr::registerArea(const std::string& name, const std::bitset<64>& parents)
{
    if (mAreas.contains(name)) {
        return;
    }
    // Required: bit 63 is given away, too, although TraceArea::Undef() is that bit. Keeping it back would leave
    // room for 63 areas only.
    if (mNextBit >= bits) {
        throw std::out_of_range("bitset::set");
    }
    const auto id = std::bitset<bits>().set(mNextBit);
    mAreas.emplace(name, TraceAreaEntry{id, id | parents});
    ++mNextBit;
}

void TraceAreaMgr::initInternally()
{
    registerTables(*this, mainAreaTable, subAreaTable);
}

// Required: in the order of the names, which is that of the file's tables. Bits in the order of the lines would
// need what `ConfigFile` does not keep, and would differ between layers of the search.
void TraceAreaMgr::initFromFile(const ConfigFile& file)
{
    // Required: whatever the value is, also one that reads as "no"; the key alone makes the area.
    for (auto entry = file.beginEntry(mainAreaSection); entry != file.endEntry(mainAreaSection); ++entry) {
        registerArea(entry->first, {});
    }
    for (auto entry = file.beginEntry(subAreaSection); entry != file.endEntry(subAreaSection); ++entry) {
        const Any& parents = *entry->second;
        const bool alone = parents.getTypeString() == noParents;
        registerArea(entry->first, alone ? std::bitset<bits>() : masksOf(parents, *this));
    }
}

std::string TraceAreaMgr::print() const
{
    std::ostringstream out;
    out << "BEGIN TraceAreaMgr: all registered areas\n";
    printRow(out, "TraceArea name", "TraceArea::Id", "TraceArea mask");
    for (const auto& [name, entry] : mAreas) {
        // Required: a longer name is cut. Whole names would shift the columns that are read by position.
        printRow(out, name.substr(0, nameColumns), entry.id.to_string(), entry.mask.to_string());
    }
    out << "END TraceAreaMgr\n";
    return out.str();
}

} // namespace KelvoBase
