#pragma once

/// \file
/// Areas of the system whose trace messages can be switched on and off.
///
/// A set of areas is a `std::bitset<64>`. Every area has an id, its own bit, and a mask, its bit and those of its
/// parents. A message is labelled with a mask, a selection is a union of ids, and a message passes when the two meet:
/// so choosing a main area shows the messages of all areas below it, and choosing a sub-area does not show its parent.

#include <kelvobase/Export.h>

#include <bitset>
#include <map>
#include <string>

namespace KelvoBase
{

class ConfigFile;

/// The areas that code names when it traces. Each is the mask of the area of that name.
///
/// The value is asked from the registry at the first call and, Required, kept for the life of the process:
/// also behind `teardown`, and if a later registry gives the area other bits. Without a registry (no `Application`
/// lives and `TraceAreaMgr::startup` was not called) `All` and `Undef` work all the same; the others throw
/// `ObjectNotExistentException("TraceAreaMgr: Unknown Area \"" + name + "\".")`, as they do for an area that the
/// registry does not know. A call that threw keeps nothing; the next one asks again.
///
/// The references are valid until the process ends.
class KELVOBASE_API TraceArea
{
public:
    static const std::bitset<64>& Searches();
    static const std::bitset<64>& Learners();
    static const std::bitset<64>& Summaries();
    static const std::bitset<64>& Numerics();
    static const std::bitset<64>& Outline();
    static const std::bitset<64>& App();
    static const std::bitset<64>& KelvoBase();
    /// All 64 bits: as a selection it shows everything, as a label it passes every selection that is not empty.
    static const std::bitset<64>& All();
    /// Bit 63 alone; not an area of the registry.
    static const std::bitset<64>& Undef();
};

/// One registered area.
struct TraceAreaEntry
{
    std::bitset<64> id;   ///< the area's own bit
    std::bitset<64> mask; ///< the area's bit and the masks of its parents
};

/// The registry of areas, alive between `startup` and `teardown`. `Application` calls both. Names are case-sensitive;
/// areas are only ever added.
///
/// A fresh registry holds `All`, with all 64 bits and none of its own, and the areas of the file "TraceAreas.ini",
/// which is searched and merged as `ConfigFile::parseConfigFiles` does (so a search without a usable home says that on
/// standard error). If there is no such file, or anything is wrong with it, it holds the 40 areas of the built-in
/// tables, at the bits 0 to 39 (main areas first, sub-areas behind them), without a word. Required: what the
/// file had added before it failed stays, at the bits that it got, and the tables add the rest behind.
///
/// A file replaces the tables: areas of theirs that it does not name do not exist, and a message in one of them fails
/// (see `TraceArea`; the warning of `AnyFactory` alone does without its area). The library itself traces in
/// "KelvoBase", every run of an `Application` in "App".
class KELVOBASE_API TraceAreaMgr
{
public:
    TraceAreaMgr(const TraceAreaMgr&) = delete;
    TraceAreaMgr& operator=(const TraceAreaMgr&) = delete;

    /// The registry; null before `startup` and behind `teardown`. Creates nothing.
    static TraceAreaMgr* instance();
    /// Creates and fills the registry if there is none. Required: a file of more areas than there are bits
    /// leaves the tables no room either; that throws `std::out_of_range("bitset::set")`, and there is no registry.
    static void startup();
    /// Destroys the registry if there is one. What `TraceArea` has handed out stays.
    static void teardown();

    /// The record of an area, or null. Library keeps it; valid until `teardown`.
    const TraceAreaEntry* searchId(const std::string& name) const;
    /// The label of messages of an area.
    /// Throws `ObjectNotExistentException("TraceAreaMgr: Unknown Area \"" + name + "\".")`.
    const std::bitset<64>& getTraceAreaMask(const std::string& name) const;
    /// What an area adds to a selection. Required: for an unknown name the empty set, with the line
    /// "TraceAreaMgr: Unknown Area 'NAME'. Ignoring it." on standard error if `haveCerr` is set, quoted otherwise than
    /// in the failure of `getTraceAreaMask`. Labels come from code, whose errors fail; selections come from users.
    const std::bitset<64>& getTraceAreaId(const std::string& name) const;

    /// Adds an area with the next free bit; its mask is that bit and `parents`. A name that exists stays as it is,
    /// without a word. Throws `std::out_of_range("bitset::set")` when all 64 bits are taken.
    /// Required: the 64th area gets bit 63, which is also `TraceArea::Undef()`.
    void registerArea(const std::string& name, const std::bitset<64>& parents);
    /// Adds the areas of the built-in tables to what stands there. A sub-area whose parent is unknown is left out,
    /// with the lines "WARNING TraceAreaMgr: Unknown area 'PARENT'" and "\tSkipping entry..." on standard error if
    /// `haveCerr` is set.
    /// Required: the tables name "GammaFileConverter" and "DeltaFileConverter" twice; the first row of each
    /// stands, so both are areas of "Persistence" only.
    void initInternally();
    /// Adds the areas of a file to what stands there: the keys of its section "TraceMainAreas", and those of
    /// "TraceSubAreas", whose values are lists of parents or, for none, a flag:
    ///
    ///     [TraceMainAreas]
    ///     Optics                      # the next free bit
    ///     [TraceSubAreas]
    ///     Lenses = Optics, Numerics   # a bit, and those of the parents
    ///     Mirrors                     # a bit
    ///
    ///   - Required: for a parent that is not known the lines "WARNING TraceAreaMgr: Unknown area 'PARENT'" and
    ///     "\tSkipping entry..." go to standard error if `haveCerr` is set, but the area is added, with the parents
    ///     that were found. `Lenses =` has one parent, named by the empty text.
    ///   - Required: main areas get their bits first, then sub-areas, both sorted by name byte by byte, in
    ///     whatever order the file has them. So a sub-area can be the parent of those only that sort behind it.
    ///   - Required: the value of a main area is not looked at, `Optics = no` => an area; a boolean false in
    ///     "TraceSubAreas" means no parents, as true does.
    ///
    /// Throws what `ConfigFile::beginEntry` throws for a missing section and what `registerArea` throws; what was added
    /// before stays.
    void initFromFile(const ConfigFile& file);

    /// A table of all areas sorted by name, between a begin line with a head line and an end line. Name, id and mask
    /// stand in columns of 20, 64 and 64 characters, aligned to the right, with tabs between them.
    /// Required: a name is cut to its first 20 characters, "AttributeTranslationTable" =>
    /// "AttributeTranslation".
    std::string print() const;

private:
    TraceAreaMgr();
    ~TraceAreaMgr();

    void fill();
    bool readAreaFile();

    std::map<std::string, TraceAreaEntry> mAreas;
    unsigned int mNextBit;

    static TraceAreaMgr* m_instance;
};

} // namespace KelvoBase
