/// \file
/// The registry while it reads its file, seen from the system below it.

#include "support/Capture.h"
#include "support/FakePlatform.h"

#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <iostream>
#include <stdexcept>
#include <string>

namespace KelvoBase::test
{

namespace
{

const std::string areaFile = "\\etc\\TraceAreas.ini";

class TraceAreaReading : public testing::Test
{
protected:
    TraceAreaReading() { mSystem->directories.insert("C:\\fake"); } // the installation
    ~TraceAreaReading() override { TraceAreaMgr::teardown(); }

    /// Starts a registry on a system that does `action` when it is asked for the file of areas.
    template <typename Action>
    void start(Action action)
    {
        const auto entryKind = mSystem->entryKind;
        mSystem->entryKind = [this, action, entryKind](const std::string& path) {
            if (path.ends_with(areaFile)) {
                ++mAsked;
                action();
            }
            return entryKind(path);
        };
        TraceAreaMgr::startup();
    }

    FakeSystem mSystem;
    int mAsked = 0;
};

TEST_F(TraceAreaReading, RegistryCanBeAskedForAllAlready)
{
    start([] {
        ASSERT_NE(TraceAreaMgr::instance(), nullptr);
        EXPECT_TRUE(TraceAreaMgr::instance()->getTraceAreaMask("All").all());
        EXPECT_TRUE(TraceArea::All().all());
        EXPECT_EQ(TraceAreaMgr::instance()->searchId("KelvoBase"), nullptr);
    });
    EXPECT_GT(mAsked, 0);
    EXPECT_NE(TraceAreaMgr::instance()->searchId("KelvoBase"), nullptr);
}

TEST_F(TraceAreaReading, FailureOfEveryStandardKindGivesTheTables)
{
    const Capture err(std::cerr);
    start([] { throw std::logic_error("the search"); });
    EXPECT_GT(mAsked, 0);
    EXPECT_NE(TraceAreaMgr::instance()->searchId("RewriteNetwork"), nullptr);
    EXPECT_EQ(err.text(), "");
}

TEST_F(TraceAreaReading, FailureOfAnotherKindLeavesNoRegistry)
{
    EXPECT_THROW(start([] { throw 42; }), int);
    EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
}

} // namespace

} // namespace KelvoBase::test
