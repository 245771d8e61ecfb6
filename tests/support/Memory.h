#pragma once

/// \file
/// Memory that runs out when a test wants it to, and that is counted. For a test program that has support/Memory.cpp,
/// which replaces `operator new`, among its sources:
///
///     kelvobase_test(NameTest SOURCES ${PROJECT_SOURCE_DIR}/tests/support/Memory.cpp)

#include <cstddef>
#include <limits>

namespace KelvoBase::test
{

struct Memory
{
    static constexpr long unlimited = -1;

    static long living;          ///< blocks in use
    static long left;            ///< allocations that still succeed; negative: all
    static std::size_t refused;  ///< requests of this size and more fail
    static std::size_t notGiven; ///< size of the latest request that failed
};

} // namespace KelvoBase::test
