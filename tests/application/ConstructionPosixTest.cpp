/// \file
/// Memory that runs out at every single point of a construction. The program's allocation functions serve the shared
/// library too, as is the rule on this platform.

#include "Probe.h"

#include <kelvobase/Application.h>
#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

namespace
{

long untilFailure = -1; // negative: never
long living = 0;

void* allocate(std::size_t size)
{
    if (untilFailure == 0) {
        untilFailure = -1;
        throw std::bad_alloc();
    }
    if (untilFailure > 0) {
        --untilFailure;
    }
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++living;
    return block;
}

void release(void* block) noexcept
{
    living -= block == nullptr ? 0 : 1;
    std::free(block);
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
}
void* operator new[](std::size_t size)
{
    return allocate(size);
}
void operator delete(void* block) noexcept
{
    release(block);
}
void operator delete[](void* block) noexcept
{
    release(block);
}
void operator delete(void* block, std::size_t) noexcept
{
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept
{
    release(block);
}

namespace KelvoBase
{

namespace
{

/// Whether `action` ran out of memory at the allocation number `point`. Fails the test if something stays allocated.
template <typename Action>
bool failsAt(long point, Action action)
{
    const long before = living;
    bool failed = false;
    untilFailure = point;
    try {
        action();
    } catch (const std::bad_alloc&) {
        failed = true;
    }
    untilFailure = -1;
    EXPECT_EQ(living, before) << "allocation " << point;
    return failed;
}

TEST(Construction, FailureAtAnyPointLeavesNothing)
{
    const std::string name = "a name that is too long for the string object itself";
    const auto construct = [&] { const test::Probe probe(name); };
    construct(); // what is made once and kept
    long point = 0;
    while (failsAt(point, construct)) {
        EXPECT_EQ(Application::instance(), nullptr) << "allocation " << point;
        EXPECT_EQ(TraceAreaMgr::instance(), nullptr) << "allocation " << point;
        ++point;
    }
    EXPECT_GT(point, 40) << "the failures did not reach the library";
}

TEST(Construction, FailureOfADefinitionLeavesTheOptionsThatStand)
{
    const std::string name = "a name that is too long for the string object itself";
    long point = 0;
    const auto define = [&] {
        test::Probe probe;
        for (int i = 0; i < 40; ++i) {
            probe.defineOption(name, 'x', false).setHelp(name).setArg(name, new ScalarAny<int>(i));
            probe.findOption(name);
        }
    };
    while (failsAt(point, define)) {
        ++point;
    }
    EXPECT_GT(point, 200) << "the failures did not reach the library";
}

} // namespace

} // namespace KelvoBase
