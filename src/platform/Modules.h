#pragma once

/// \file
/// The libraries that are loaded, by numbers that are never given out again.

#include "platform/Platform.h"

#include <map>
#include <memory>

namespace KelvoBase::platform
{

/// The handles of a system's own loader are addresses that it gives out again: with them, a library that was released
/// could mean another one, and asking for it would not be defined.
class Modules
{
public:
    template <typename Release>
    Module add(std::unique_ptr<void, Release> library)
    {
        void*& place = mOpen.emplace(mLast + 1, nullptr).first->second;
        place = library.release();
        return ++mLast;
    }
    /// Null if it was released.
    void* find(Module module) const
    {
        const auto found = mOpen.find(module);
        return found == mOpen.end() ? nullptr : found->second;
    }
    void remove(Module module) { mOpen.erase(module); }

private:
    std::map<Module, void*> mOpen;
    Module mLast = 0;
};

/// Those of this process. They stay loaded, and may be asked for, up to its end.
inline Modules& modules()
{
    static Modules& all = *new Modules;
    return all;
}

} // namespace KelvoBase::platform
