/// \file
/// The areas that code names. What they keep is kept for the life of a process, so each case has a process of its own.

#include "support/ChildProcess.h"

#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

namespace KelvoBase::test
{

namespace
{

const std::string unknown = "Searches: TraceAreaMgr: Unknown Area \"Searches\".\n"
                            "Learners: TraceAreaMgr: Unknown Area \"Learners\".\n"
                            "Summaries: TraceAreaMgr: Unknown Area \"Summaries\".\n"
                            "Numerics: TraceAreaMgr: Unknown Area \"Numerics\".\n"
                            "Outline: TraceAreaMgr: Unknown Area \"Outline\".\n"
                            "App: TraceAreaMgr: Unknown Area \"App\".\n"
                            "KelvoBase: TraceAreaMgr: Unknown Area \"KelvoBase\".\n"
                            "All ffffffffffffffff\n"
                            "Undef 8000000000000000\n";

const std::string known = "Searches 400\n"
                          "Learners 200\n"
                          "Summaries 100\n"
                          "Numerics 80\n"
                          "Outline 1000010\n" // bit 24 and that of "Evaluators"
                          "App 800\n"
                          "KelvoBase 1\n"
                          "All ffffffffffffffff\n"
                          "Undef 8000000000000000\n";

std::string outputOf(const std::string& scenario)
{
    const ChildResult result = runChild({TRACE_TOOL, scenario});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    return result.out;
}

} // namespace

TEST(TraceArea, WithoutARegistryOnlyAllAndUndefAreKnown)
{
    EXPECT_EQ(outputOf("areasWithoutRegistry"), unknown);
}

TEST(TraceArea, FailedLookUpIsRepeatedAtTheNextCall)
{
    EXPECT_EQ(outputOf("areasBehindAFailedLookUp"), unknown + "startup\n" + known);
}

TEST(TraceArea, WhatWasReadOnceSurvivesTeardown)
{
    // Required, Q-704
    EXPECT_EQ(outputOf("areasBehindTeardown"), known + "teardown\n" + known + "same address\n");
}

TEST(TraceArea, RegistryIsNullBeforeStartupAndTeardownOfNoneIsHarmless)
{
    EXPECT_EQ(outputOf("registryAlone"), "1\n1\n");
}

} // namespace KelvoBase::test
