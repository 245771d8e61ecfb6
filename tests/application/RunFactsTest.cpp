/// \file
/// What a run learns from the system, on a scripted one.

#include "Probe.h"
#include "support/Capture.h"
#include "support/FakePlatform.h"

#include <kelvobase/Application.h>
#include <kelvobase/System.h>
#include <kelvobase/Time.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <iostream>
#include <string>

namespace KelvoBase
{

namespace
{

using test::FakeSystem;
using test::Probe;

TEST(RunFacts, ProgramLocationIsThatOfTheSystem)
{
    const FakeSystem system;
    system->programPath = "C:\\bin\\tool.exe";
    system->files["C:\\bin\\tool.exe"] = 1;
    Probe tool;
    tool.prepare({});
    EXPECT_EQ(tool.getProgramLocation(), "C:\\bin\\tool.exe");
}

TEST(RunFacts, ProgramLocationFallsBackToTheProgramName)
{
    const FakeSystem system;
    Probe tool;
    tool.prepare({});
    system->programPath = std::nullopt;
    EXPECT_EQ(tool.getProgramLocation(), "probe");
    system->programPath = "C:\\gone\\tool.exe";
    EXPECT_EQ(tool.getProgramLocation(), "probe");
    system->directories.insert("C:\\gone\\tool.exe");
    EXPECT_EQ(tool.getProgramLocation(), "probe") << "a directory is no program";
}

TEST(RunFacts, ProgramLocationIsAskedForAtEachCall)
{
    const FakeSystem system;
    system->programPath = "C:\\bin\\tool.exe";
    Probe tool;
    tool.prepare({});
    EXPECT_EQ(tool.getProgramLocation(), "probe");
    system->files["C:\\bin\\tool.exe"] = 1;
    EXPECT_EQ(tool.getProgramLocation(), "C:\\bin\\tool.exe");
    system->files.clear();
    EXPECT_EQ(tool.getProgramLocation(), "probe");
}

TEST(RunFacts, ProgramWithoutAnyNameHasAnEmptyLocation)
{
    const FakeSystem system;
    system->programPath = std::nullopt;
    const Probe tool;
    EXPECT_TRUE(tool.getProgramLocation().empty());
}

TEST(RunFacts, EmptyYearIsThatOfTheClock)
{
    const FakeSystem system;
    system->now = {1'120'000'000, 0};
    Probe tool;
    tool.setYear("1999");
    tool.setYear("");
    EXPECT_EQ(tool.getYear(), "2005");
}

TEST(RunFacts, RunLinesTellTheLineTheTimeAndWho)
{
    const FakeSystem system;
    system->now = {1'120'000'000, 999};
    std::ios_base::sync_with_stdio(false);
    const test::Capture err(std::cerr);
    Probe tool;
    tool.setRevision("7");
    tool.prepare({"-tverbose", "ab"});
    const Time now(system->now);
    const std::string who = System::instance().getUserName() + "@" + System::instance().getHostName();
    EXPECT_EQ(err.text(), "|------ probe (Rev. 7) --trace-level=verbose -- ab\n"
                          "|------ started at " +
                              now.getDate() + " " + now.getTime() + " by " + who + "\n");
}

} // namespace

} // namespace KelvoBase
