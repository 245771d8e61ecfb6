#pragma once

/// \file
/// The table of virtual operations of an object, as the Itanium C++ ABI lays it out on x86-64.
///
/// An object begins with the address of its class's table: two destructors (of the complete object, and the one that
/// also releases the memory), then the other operations in the order of their declaration. An operation is called
/// through its slot as a plain function whose first argument is the object.

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <link.h>

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <typeinfo>

namespace KelvoBase::test
{

using Slot = void (*)();

/// The first slot of the object's table.
template <typename Object>
const Slot* tableOf(const Object& object)
{
    static_assert(std::is_polymorphic_v<Object>);
    const Slot* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    return table;
}

/// Slots in the table of an object whose class the library exports: the length of its symbol, less the two words in
/// front of the slots.
template <typename Object>
std::size_t slotCount(const Object& object)
{
    Dl_info info{};
    void* extra = nullptr;
    if (dladdr1(tableOf(object), &info, &extra, RTLD_DL_SYMENT) == 0 || extra == nullptr) {
        ADD_FAILURE() << "no symbol for the table of " << typeid(object).name();
        return 0;
    }
    return static_cast<const ElfW(Sym)*>(extra)->st_size / sizeof(void*) - 2;
}

} // namespace KelvoBase::test
