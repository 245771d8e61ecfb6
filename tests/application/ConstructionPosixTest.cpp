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

enum class Outcome
{
    thrown,    // the failure left the action
    withstood, // something in the action went on without what failed
    beyond,    // the action does not allocate that often
};

/// What becomes of `action` if the allocation number `point` fails. Fails the test if something stays allocated.
template <typename Action>
Outcome outcomeAt(long point, Action action)
{
    const long before = living;
    bool thrown = false;
    untilFailure = point;
    try {
        action();
    } catch (const std::bad_alloc&) {
        thrown = true;
    }
    const bool reached = untilFailure < 0;
    untilFailure = -1;
    EXPECT_EQ(living, before) << "allocation " << point;
    EXPECT_TRUE(reached || !thrown) << "allocation " << point;
    return thrown ? Outcome::thrown : reached ? Outcome::withstood : Outcome::beyond;
}

TEST(Construction, FailureAtAnyPointLeavesNothing)
{
    const std::string name = "a name that is too long for the string object itself";
    const auto construct = [&] { const test::Probe probe(name); };
    construct(); // what is made once and kept
    int thrown = 0;
    int withstood = 0;
    Outcome outcome = Outcome::thrown;
    for (long point = 0; outcome != Outcome::beyond; ++point) {
        outcome = outcomeAt(point, construct);
        EXPECT_EQ(Application::instance(), nullptr) << "allocation " << point;
        EXPECT_EQ(TraceAreaMgr::instance(), nullptr) << "allocation " << point;
        thrown += outcome == Outcome::thrown;
        withstood += outcome == Outcome::withstood;
    }
    EXPECT_GT(thrown, 40) << "the failures did not reach the library";
    EXPECT_GT(withstood, 10) << "the failures did not reach the search for the file of areas";
}

TEST(Construction, FailureInTheSearchForTheFileOfAreasGivesTheTables)
{
    const auto construct = [] {
        const test::Probe probe;
        EXPECT_NE(TraceAreaMgr::instance()->searchId("RewriteNetwork"), nullptr);
    };
    construct();
    int withstood = 0;
    Outcome outcome = Outcome::thrown;
    for (long point = 0; outcome != Outcome::beyond; ++point) {
        outcome = outcomeAt(point, construct);
        withstood += outcome == Outcome::withstood;
    }
    EXPECT_GT(withstood, 10);
}

TEST(Construction, FailureOfADefinitionLeavesTheOptionsThatStand)
{
    const std::string name = "a name that is too long for the string object itself";
    const auto define = [&] {
        test::Probe probe;
        for (int i = 0; i < 40; ++i) {
            probe.defineOption(name, 'x', false).setHelp(name).setArg(name, new ScalarAny<int>(i));
            probe.findOption(name);
        }
    };
    define();
    int thrown = 0;
    Outcome outcome = Outcome::thrown;
    for (long point = 0; outcome != Outcome::beyond; ++point) {
        outcome = outcomeAt(point, define);
        thrown += outcome == Outcome::thrown;
    }
    EXPECT_GT(thrown, 200) << "the failures did not reach the library";
}

} // namespace

} // namespace KelvoBase
