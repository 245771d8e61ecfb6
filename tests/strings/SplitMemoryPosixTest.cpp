/// \file
/// What `split` makes of exhausted memory.

#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>
#include <vector>

namespace
{

/// Allocations of this size and more fail.
std::size_t refused = std::numeric_limits<std::size_t>::max();

} // namespace

void* operator new(std::size_t size)
{
    void* block = size < refused ? std::malloc(size) : nullptr;
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

namespace KelvoBase::test
{

namespace
{

TEST(Split, ReportsExhaustedMemoryAsFailedOperation)
{
    const std::string text = "a," + std::string(100000, 'x');
    std::vector<std::string> out;
    out.reserve(10);
    const std::string expected = std::bad_alloc().what();
    refused = 50000;
    const std::string actual = textOf<OperationFailedException>([&] { split(text, out, ",", "", ""); });
    refused = std::numeric_limits<std::size_t>::max();
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(out, std::vector<std::string>({"a"}));
}

} // namespace

} // namespace KelvoBase::test
