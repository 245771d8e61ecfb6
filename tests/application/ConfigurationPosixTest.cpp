/// \file
/// What a tool does with its configuration where the user has no home. Windows has one for everybody.

#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <string>

namespace KelvoBase
{

namespace
{

using test::ChildResult;

const std::string noHome = "System: Unable to locate app directory\n";

class ConfigurationWithoutAHome : public testing::Test
{
protected:
    ConfigurationWithoutAHome()
    {
        mScratch.write("base/etc/configtool.ini", "[a]\nk=1\n");
        mScratch.write("work/present", "");
    }
    ChildResult run(const std::string& word) const
    {
        return test::runChild({CONFIG_TOOL, word},
                              {.environment = {{"DRAVO2_BASEDIR", mScratch.location("base")}},
                               .unset = {"DRAVO2_INSTDIR", "HOME", "HOMEDRIVE", "HOMEPATH", "XDG_CONFIG_HOME"},
                               .workingDirectory = (mScratch / "work").string()});
    }

    test::ScratchDirectory mScratch;
};

TEST_F(ConfigurationWithoutAHome, IsThatOfTheInstallation)
{
    const ChildResult result = run("show=a=k");
    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.out, "1\ndestroyed\n");
    EXPECT_EQ(result.err, noHome + noHome) << "the search of the areas, and that of the configuration";
}

TEST_F(ConfigurationWithoutAHome, EveryToolSaysThatThereIsNoHome)
{
    const ChildResult result = run("--version");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, noHome);
}

} // namespace

} // namespace KelvoBase
