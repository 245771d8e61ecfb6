/// \file
/// The table of citations of a user without a home. Windows has one for everybody.

#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

namespace KelvoBase::test
{

namespace
{

TEST(LiteratureMgrPosixTest, UserWithoutAPlaceForFilesCountsAsNoFile)
{
    const ScratchDirectory work;
    const ChildResult result =
        runChild({LITERATURE_TOOL, "trace", "make", "search", "x"},
                 {.environment = {{"DRAVO2_BASEDIR", work.location()}},
                  .unset = {"DRAVO2_INSTDIR", "HOMEDRIVE", "HOMEPATH", "XDG_CONFIG_HOME", "HOME"},
                  .workingDirectory = work.path().string()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "System: Unable to locate app directory\n");
    EXPECT_EQ(result.out, "|-- LiteratureMgr(): Initialization failed!\n"
                          "|-- LiteratureMgr(): This will likely cause problems.\n"
                          "|-- \tCannot read from file \"Literature.ini\"\n"
                          "made\nnull\n");
}

} // namespace

} // namespace KelvoBase::test
