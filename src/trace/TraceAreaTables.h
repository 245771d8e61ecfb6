#pragma once

/// \file
/// The built-in areas, which stand where a deployment defines none of its own.

#include <array>
#include <span>

namespace KelvoBase
{

class TraceAreaMgr;

// The names stand in the rows themselves: tables of pointers would cost the loader a relocation each, in every tool.

/// An area that stands alone.
struct MainAreaRow
{
    char name[20];
};

/// An area below another one.
struct SubAreaRow
{
    char name[28];
    char parent[20];
};

extern const std::array<MainAreaRow, 12> mainAreaTable;
extern const std::array<SubAreaRow, 30> subAreaTable;

/// Adds the rows in their order. A sub-area whose parent is not registered yet is left out, with two lines on standard
/// error if `haveCerr` is set.
void registerTables(TraceAreaMgr& registry, std::span<const MainAreaRow> mainAreas,
                    std::span<const SubAreaRow> subAreas);

} // namespace KelvoBase
