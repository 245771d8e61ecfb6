// Growth to the largest index. This program's own allocation refuses large requests and keeps their size, so that no
// memory is touched.

#include "support/Memory.h"

#include <kelvobase/Any.h>

#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <stdexcept>

TEST(VectorGrowth, LargestIndexDoesNotWrapToAnEmptyList)
{
    using Element = KelvoBase::ScalarAny<int>;
    using KelvoBase::test::Memory;
    Memory::refused = std::size_t{1} << 28U; // what grows as it should does not get there either
    KelvoBase::VectorAny<Element> numbers;
    numbers[1].setInt(7);
    bool failed = false;
    try {
        numbers[UINT_MAX].setInt(1);
    } catch (const std::bad_alloc&) {
        failed = true;
        EXPECT_EQ((std::size_t{UINT_MAX} + 1) * sizeof(Element), Memory::notGiven);
    } catch (const std::length_error&) {
        failed = true; // more than the address space holds
        EXPECT_LT(sizeof(std::size_t), 8U);
    }
    EXPECT_TRUE(failed);
    EXPECT_EQ(2U, numbers.size());
    EXPECT_EQ("0,7", numbers.toString());
}
