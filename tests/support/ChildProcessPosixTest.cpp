#include "support/ChildProcess.h"

#include <gtest/gtest.h>

namespace KelvoBase::test
{

namespace
{

TEST(RunChild, GivesStatusOfChildEndedBySignal)
{
    EXPECT_EQ(runChild({"/bin/sh", "-c", "kill -9 $$"}).status, 128 + 9);
}

TEST(RunChild, GivesShellsStatusForMissingProgram)
{
    const ChildResult result = runChild({"/no/such/program"});
    EXPECT_EQ(result.status, 127);
    EXPECT_EQ(result.out, "");
}

TEST(RunChild, ReadsBothStreamsAtATime)
{
    const ChildResult result =
        runChild({"/bin/sh", "-c",
                  "i=0; while [ $i -lt 3000 ]; do echo some words for out; echo others for err >&2; "
                  "i=$((i+1)); done"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out.size(), 3000U * 19U);
    EXPECT_EQ(result.err.size(), 3000U * 15U);
}

} // namespace

} // namespace KelvoBase::test
