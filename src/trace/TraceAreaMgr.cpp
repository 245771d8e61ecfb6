#include "trace/TraceAreaTables.h"
#include "trace/UnknownArea.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>

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

/// The row of a table of three columns, each aligned to the right.
void printRow(std::ostream& out, const std::string& name, const std::string& id, const std::string& mask)
{
    out << std::setw(nameColumns) << name << '\t' << std::setw(bits) << id << '\t' << std::setw(bits) << mask << '\n';
}

} // namespace

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
        initInternally();
    } catch (...) {
        m_instance = nullptr;
        throw;
    }
}

TraceAreaMgr::~TraceAreaMgr() = default;

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
