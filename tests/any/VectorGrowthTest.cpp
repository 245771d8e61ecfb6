// Growth to the largest index. This program's own allocation refuses large requests and keeps their size, so that no
// memory is touched.

#include <kelvobase/Any.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <new>
#include <stdexcept>

namespace
{

constexpr std::size_t largestRequest = std::size_t{1} << 28U;
std::size_t refusedRequest = 0;

} // namespace

void* operator new(std::size_t size)
{
    if (size > largestRequest) {
        refusedRequest = size;
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

TEST(VectorGrowth, LargestIndexDoesNotWrapToAnEmptyList)
{
    using Element = KelvoBase::ScalarAny<int>;
    KelvoBase::VectorAny<Element> numbers;
    numbers[1].setInt(7);
    bool failed = false;
    try {
        numbers[UINT_MAX].setInt(1);
    } catch (const std::bad_alloc&) {
        failed = true;
        EXPECT_EQ((std::size_t{UINT_MAX} + 1) * sizeof(Element), refusedRequest);
    } catch (const std::length_error&) {
        failed = true; // more than the address space holds
        EXPECT_LT(sizeof(std::size_t), 8U);
    }
    EXPECT_TRUE(failed);
    EXPECT_EQ(2U, numbers.size());
    EXPECT_EQ("0,7", numbers.toString());
}
