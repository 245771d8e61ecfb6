#include "support/Memory.h"

#include <cstdlib>
#include <new>

namespace KelvoBase::test
{

constinit long Memory::living = 0;
constinit long Memory::left = unlimited;
constinit std::size_t Memory::refused = std::numeric_limits<std::size_t>::max();
constinit std::size_t Memory::notGiven = 0;

} // namespace KelvoBase::test

using KelvoBase::test::Memory;

void* operator new(std::size_t size)
{
    const bool isGiven = Memory::left != 0 && size < Memory::refused;
    void* const block = isGiven ? std::malloc(size == 0 ? 1 : size) : nullptr;
    if (block == nullptr) {
        Memory::notGiven = size;
        throw std::bad_alloc();
    }
    Memory::left -= Memory::left > 0 ? 1 : 0;
    ++Memory::living;
    return block;
}

void operator delete(void* block) noexcept
{
    Memory::living -= block != nullptr ? 1 : 0;
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    operator delete(block);
}
