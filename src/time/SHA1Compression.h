#pragma once

/// \file
/// The compression function of SHA-1 in its two forms, and which of them is in use.

#include <cstddef>

namespace KelvoBase::sha1
{

constexpr std::size_t blockSize = 64;

/// Takes `count` blocks that lie one behind the other, anywhere in memory, into the digest.
using Compress = void (*)(unsigned int (&digest)[5], const unsigned char* blocks, std::size_t count);

/// Called in front of each block: has the memory of a block that comes later fetched. Processors look ahead by
/// themselves, but not across the end of a page, and a page may be slow to begin.
inline void lookAhead(const unsigned char* blocks, std::size_t count)
{
    constexpr std::size_t distance = 64; // a page
    if (count > distance) {
        __builtin_prefetch(blocks + distance * blockSize);
    }
}

/// For every processor.
void compressPortably(unsigned int (&digest)[5], const unsigned char* blocks, std::size_t count);

/// The form that uses the processor's SHA instructions; null where it has none.
Compress withInstructions();

/// The form in use. At the first call it becomes the faster one that the processor has; a test may put another one
/// here.
extern Compress compress;

} // namespace KelvoBase::sha1
