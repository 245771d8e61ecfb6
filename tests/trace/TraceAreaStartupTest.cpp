/// \file
/// Memory that runs out while the registry is filled.

#include "support/Memory.h"

#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <new>

namespace KelvoBase::test
{

TEST(TraceAreaStartup, RegistryThatCannotBeFilledIsWithdrawn)
{
    long failures = 0;
    for (bool done = false; !done; ++failures) {
        Memory::left = failures;
        try {
            TraceAreaMgr::startup();
            done = true;
        } catch (const std::bad_alloc&) {
            // Asked below.
        }
        Memory::left = Memory::unlimited;
        ASSERT_EQ(TraceAreaMgr::instance() != nullptr, done) << failures;
    }
    EXPECT_GT(failures, 40);
    EXPECT_NE(TraceAreaMgr::instance()->searchId("RewriteNetwork"), nullptr);
    TraceAreaMgr::teardown();
}

} // namespace KelvoBase::test
