#include "SeriesStatRun.h"

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

using KelvoBase::test::ChildOptions;
using KelvoBase::test::ChildResult;
using KelvoBase::test::runChild;

TEST(SeriesStatPosixTest, ReportThatCannotBeWrittenIsAFailure)
{
    const ChildResult run = runChild({"/bin/sh", "-c", R"(exec "$0" -qx -- "$1" > /dev/full)", SERIESSTAT_PROGRAM,
                                      SERIESSTAT_SOURCES "/data/michelson-1879.txt"});
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("The report could not be written.\nTry \"" SERIESSTAT_PROGRAM " --help\" for more information.\n",
              run.err);
}

TEST(SeriesStatPosixTest, SeriesIsReadFromAPipe)
{
    ChildOptions options;
    options.input = "1\n3\n";
    const ChildResult run = runChild({SERIESSTAT_PROGRAM, "-qx", "-smean,sd", "--digits=4", "/dev/stdin"}, options);
    EXPECT_EQ(0, run.status);
    EXPECT_EQ("x\n\n/dev/stdin\n  mean                   2.000\n  standard deviation     1.414\n", run.out);
    EXPECT_EQ("", run.err);
}

} // namespace

} // namespace seriesstat
