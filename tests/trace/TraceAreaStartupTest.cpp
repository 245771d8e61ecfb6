/// \file
/// Memory that runs out while the registry is filled.

#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

namespace
{

long allocationsLeft = -1; // negative: no limit

void* allocate(std::size_t size)
{
    if (allocationsLeft == 0) {
        throw std::bad_alloc();
    }
    allocationsLeft -= allocationsLeft > 0;
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
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

TEST(TraceAreaStartup, RegistryThatCannotBeFilledIsWithdrawn)
{
    long failures = 0;
    for (bool done = false; !done; ++failures) {
        allocationsLeft = failures;
        try {
            TraceAreaMgr::startup();
            done = true;
        } catch (const std::bad_alloc&) {
            // Asked below.
        }
        allocationsLeft = -1;
        ASSERT_EQ(TraceAreaMgr::instance() != nullptr, done) << failures;
    }
    EXPECT_GT(failures, 40);
    EXPECT_NE(TraceAreaMgr::instance()->searchId("RewriteNetwork"), nullptr);
    TraceAreaMgr::teardown();
}

} // namespace KelvoBase::test
