#pragma once

/// \file
/// Look-up of options by long name for tools with many options.

#include <kelvobase/Application.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace KelvoBase
{

/// Answers what a walk through a list of options would: the first one with a given long name.
///
/// A hash table of positions in the list, with open addressing. It follows a list that only grows at its end: what
/// was appended since the last look-up is entered at the next one, and a name that stands in the table already keeps
/// its earlier position. A list that changed its order needs a new index.
class OptionIndex
{
public:
    /// A shorter list is searched faster without an index.
    static constexpr std::size_t worthwhile = 24;

    /// The first option of that name in `options`, or null.
    CLOption* find(const std::vector<CLOption*>& options, std::string_view name);

private:
    struct Slot
    {
        std::uint32_t hash = 0;
        std::uint32_t position = 0; // counted from 1; 0: free
    };

    static std::uint32_t hashOf(std::string_view name);
    /// Where `name` stands, or the free slot where it belongs.
    Slot& slotOf(const std::vector<CLOption*>& options, std::string_view name, std::uint32_t hash);
    void enterNewOnes(const std::vector<CLOption*>& options);
    void makeRoomFor(std::size_t count);

    std::vector<Slot> mSlots; // a power of two, at most half of them taken
    std::size_t mEntered = 0; // how many options, from the first one, are in the table
};

} // namespace KelvoBase
