#include "Installation.h"

#include <gtest/gtest.h>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace seriesstat
{

namespace
{

using KelvoBase::test::ChildOptions;
using KelvoBase::test::ChildResult;
using KelvoBase::test::contentOf;
using std::filesystem::perms;
using test::hint;
using test::Installation;
using test::places;

constexpr const char* userFile = "user/dravo2/etc/seriesstat.ini";
constexpr const char* report = "x\n\nd.txt\n  mean                   1.0\n";
const std::vector<std::string> plain{"-qx", "-smean", "--digits=2", "d.txt"};
const std::vector<std::string> remembering{"--remember", "-qx", "-smean", "--digits=2", "d.txt"};

/// Takes from the children of this process, for good, what lets the superuser pass by permissions. They go on to own
/// their files, and to reach the program wherever it was built.
void respectPermissions()
{
    for (const auto power : {0UL + CAP_DAC_OVERRIDE, 0UL + CAP_DAC_READ_SEARCH}) {
        if (geteuid() == 0 && prctl(PR_CAPBSET_READ, power) == 1) {
            ASSERT_EQ(0, prctl(PR_CAPBSET_DROP, power));
        }
    }
}

class LayersPosixTest : public ::testing::Test
{
protected:
    LayersPosixTest() { mInstallation.write("work/d.txt", "1\n"); }

    ChildResult runAsOrdinaryUser(const std::vector<std::string>& arguments) const
    {
        respectPermissions();
        return mInstallation.run(arguments);
    }
    std::string locationText(const std::string& name) const
    {
        return "file://localhost/" + mInstallation.root().location(name);
    }

    const Installation mInstallation;
};

void expectRefused(const ChildResult& run, const std::string& message)
{
    EXPECT_EQ(message + "\n" + hint, run.err);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(1, run.status);
}

TEST_F(LayersPosixTest, FileOfTheInstallationThatMayNotBeReadIsSkipped)
{
    for (const char* place : {"base", "inst", "place", "work"}) {
        std::filesystem::permissions(mInstallation.write(std::string(place) + "/etc/seriesstat.ini", "[report]\nbad\n"),
                                     perms::none);
    }
    const ChildResult run = runAsOrdinaryUser(plain);
    EXPECT_EQ(report, run.out);
    EXPECT_EQ("", run.err);
    EXPECT_EQ(0, run.status);
}

TEST_F(LayersPosixTest, FileOfTheUserThatMayNotBeReadIsReportedAndTheRunGoesOn)
{
    std::filesystem::permissions(mInstallation.write(userFile, "[report]\nbad\n"), perms::none);
    mInstallation.write("work/etc/seriesstat.ini", "[report]\ndigits = 2\n");
    const ChildResult run = runAsOrdinaryUser({"-qx", "-smean", "d.txt"});
    EXPECT_EQ(report, run.out);
    EXPECT_EQ(0, run.status);
    EXPECT_EQ("Cannot read from file \"" + locationText(userFile) + "\" : Invalid file handle! Permission denied\n",
              run.err);
}

TEST_F(LayersPosixTest, FileThatMayNotBeReadIsNotReplaced)
{
    const std::string content = "# mine\n[report]\ndigits = 2\n";
    std::filesystem::permissions(mInstallation.write(userFile, content), perms(0222));
    const ChildResult run = runAsOrdinaryUser(remembering);
    const std::string reason = "Cannot read from file \"" + locationText(userFile) + "\" : ";
    EXPECT_EQ(reason + "Invalid file handle! Permission denied\nThe quantity cannot be remembered: " + reason +
                  "Permission denied\n" + hint,
              run.err);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(content, contentOf(mInstallation / userFile));
}

TEST_F(LayersPosixTest, FileThatMayNotBeWrittenEndsTheRun)
{
    const std::string content = "[report]\ndigits=2\n\n";
    std::filesystem::permissions(mInstallation.write(userFile, content), perms(0444));
    expectRefused(runAsOrdinaryUser(remembering),
                  "The quantity cannot be remembered: ConfigFile: Unable to open file '" + locationText(userFile) +
                      "'");
    EXPECT_EQ(content, contentOf(mInstallation / userFile));
}

TEST_F(LayersPosixTest, DirectoryThatMayNotBeWrittenEndsTheRun)
{
    std::filesystem::permissions(mInstallation / "user/dravo2/etc", perms(0555));
    expectRefused(runAsOrdinaryUser(remembering),
                  "The quantity cannot be remembered: ConfigFile: Unable to open file '" + locationText(userFile) +
                      "'");
    EXPECT_FALSE(std::filesystem::exists(mInstallation / userFile));
}

TEST_F(LayersPosixTest, FileInThePlaceOfTheDirectoryEndsTheRun)
{
    std::filesystem::remove(mInstallation / "user/dravo2/etc");
    mInstallation.write("user/dravo2/etc", "a file\n");
    const ChildResult run = mInstallation.run(remembering);
    expectRefused(run, "The quantity cannot be remembered: ConfigFile: Unable to open file '" + locationText(userFile) +
                           "'");
    EXPECT_EQ("a file\n", contentOf(mInstallation / "user/dravo2/etc"));
    EXPECT_EQ(report, mInstallation.run(plain).out);
}

TEST_F(LayersPosixTest, TextThatDoesNotArriveInTheFileEndsTheRun)
{
    std::filesystem::create_symlink("/dev/null", mInstallation / userFile);
    expectRefused(mInstallation.run(remembering), "The quantity cannot be remembered: \"" +
                                                      (mInstallation / userFile).string() +
                                                      "\" could not be written to its end.");
}

TEST_F(LayersPosixTest, RunWithoutAHomeSaysSoAndGoesOn)
{
    ChildOptions options = mInstallation.options();
    std::erase_if(options.environment,
                  [](const auto& entry) { return entry.first == "HOME" || entry.first == "XDG_CONFIG_HOME"; });
    options.unset.insert(options.unset.end(), {"HOME", "XDG_CONFIG_HOME"});
    mInstallation.write("work/etc/seriesstat.ini", "[report]\ndigits = 2\n");
    const ChildResult run = Installation::run({"-qx", "-smean", "d.txt"}, options);
    EXPECT_EQ(report, run.out);
    EXPECT_EQ(0, run.status);
    // Once for the areas of the trace, once for the configuration.
    const std::string line = "System: Unable to locate app directory\n";
    EXPECT_EQ(line + line, run.err);

    // The configuration of the installation is the last one that was read, and stays as it is.
    const ChildResult refused = Installation::run(remembering, options);
    EXPECT_EQ(line + line + "The quantity cannot be remembered: " + line + hint, refused.err);
    EXPECT_EQ("", refused.out);
    EXPECT_EQ(1, refused.status);
    EXPECT_EQ("[report]\ndigits = 2\n", contentOf(mInstallation / "work/etc/seriesstat.ini"));
}

TEST_F(LayersPosixTest, HomeServesWhereNoOtherDirectoryIsNamed)
{
    ChildOptions options = mInstallation.options();
    std::erase_if(options.environment, [](const auto& entry) { return entry.first == "XDG_CONFIG_HOME"; });
    options.unset.push_back("XDG_CONFIG_HOME");
    const std::string file = (mInstallation / "home/.config/dravo2/etc/seriesstat.ini").string();
    EXPECT_EQ("The quantity is remembered in \"" + file + "\".\n", Installation::run(remembering, options).err);
    EXPECT_EQ("[report]\nquantity=x\n\n", contentOf(file));
}

} // namespace

} // namespace seriesstat
