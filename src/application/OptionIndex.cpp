#include "application/OptionIndex.h"

#include <bit>
#include <functional>
#include <utility>

namespace KelvoBase
{

CLOption* OptionIndex::find(const std::vector<CLOption*>& options, std::string_view name)
{
    if (mEntered < options.size()) {
        enterNewOnes(options);
    }
    const std::uint32_t position = slotOf(options, name, hashOf(name)).position;
    return position == 0 ? nullptr : options[position - 1];
}

std::uint32_t OptionIndex::hashOf(std::string_view name)
{
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
}

OptionIndex::Slot& OptionIndex::slotOf(const std::vector<CLOption*>& options, std::string_view name, std::uint32_t hash)
{
    const std::size_t last = mSlots.size() - 1;
    std::size_t i = hash & last;
    while (mSlots[i].position != 0 && (mSlots[i].hash != hash || options[mSlots[i].position - 1]->getLong() != name)) {
        i = (i + 1) & last;
    }
    return mSlots[i];
}

void OptionIndex::enterNewOnes(const std::vector<CLOption*>& options)
{
    makeRoomFor(options.size());
    // In the order of the list, so that of two options with one name the first keeps its place.
    for (; mEntered < options.size(); ++mEntered) {
        const std::string& name = options[mEntered]->getLong();
        const std::uint32_t hash = hashOf(name);
        Slot& slot = slotOf(options, name, hash);
        if (slot.position == 0) {
            slot = {hash, static_cast<std::uint32_t>(mEntered + 1)};
        }
    }
}

void OptionIndex::makeRoomFor(std::size_t count)
{
    if (2 * count <= mSlots.size()) {
        return;
    }
    // Growing by more than asked keeps a list that is searched between its additions from being entered anew each time.
    const std::vector<Slot> before = std::exchange(mSlots, std::vector<Slot>(std::bit_ceil(4 * count)));
    const std::size_t last = mSlots.size() - 1;
    for (const Slot& slot : before) {
        if (slot.position != 0) {
            std::size_t i = slot.hash & last;
            while (mSlots[i].position != 0) {
                i = (i + 1) & last;
            }
            mSlots[i] = slot;
        }
    }
}

} // namespace KelvoBase
