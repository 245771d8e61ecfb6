#include "Installation.h"

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

using KelvoBase::test::ChildResult;
using KelvoBase::test::contentOf;
using KelvoBase::test::textIn;
using test::hint;
using test::Installation;

constexpr const char* userFile = "user/dravo2/etc/seriesstat.ini";
constexpr const char* report = "time / s\n\nd.txt\n  mean                   1.0\n";
const std::vector<std::string> remembering{"--remember", "--quantity=time / s", "-smean", "--digits=2", "d.txt"};

/// An installation with a series, and with a file for everybody.
class RememberTest : public ::testing::Test
{
protected:
    RememberTest()
    {
        mInstallation.write("work/d.txt", "1\n");
        mInstallation.write("place/etc/seriesstat.ini", "[input]\ncolumn = 0\n[report]\nquantity = length / m\n");
    }

    std::string userFilePath() const { return (mInstallation / userFile).generic_string(); }
    std::string success() const { return "The quantity is remembered in \"" + userFilePath() + "\".\n"; }
    /// Expects that the run is refused and that nothing has changed.
    void expectRefused(const std::vector<std::string>& arguments, const std::string& message) const
    {
        const auto before = mInstallation.content();
        const ChildResult run = mInstallation.run(arguments);
        EXPECT_EQ(message + "\n" + hint, run.err);
        EXPECT_EQ("", run.out);
        EXPECT_EQ(1, run.status);
        EXPECT_EQ(before, mInstallation.content());
    }

    const Installation mInstallation;
};

TEST_F(RememberTest, QuantityIsAllThatIsWritten)
{
    auto expected = mInstallation.content();
    const ChildResult run = mInstallation.run(remembering);
    EXPECT_EQ(report, run.out);
    EXPECT_EQ(success(), run.err);
    EXPECT_EQ(0, run.status);
    EXPECT_EQ("[report]\nquantity=time / s\n\n", textIn(mInstallation / userFile));
    expected[userFile] = contentOf(mInstallation / userFile);
    EXPECT_EQ(expected, mInstallation.content());
}

TEST_F(RememberTest, NextRunKnowsTheQuantity)
{
    mInstallation.run(remembering);
    const ChildResult run = mInstallation.run({"-smean", "--digits=2", "d.txt"});
    EXPECT_EQ(report, run.out);
    EXPECT_EQ("", run.err);
}

TEST_F(RememberTest, RunThatWasNotAskedToWritesNothing)
{
    const auto before = mInstallation.content();
    EXPECT_EQ(0, mInstallation.run({"--quantity=time / s", "--digits=3", "d.txt"}).status);
    EXPECT_EQ(before, mInstallation.content());
}

TEST_F(RememberTest, DirectoryOfTheUserIsMade)
{
    std::filesystem::remove_all(mInstallation / "user");
    EXPECT_EQ(success(), mInstallation.run(remembering).err);
    EXPECT_EQ("[report]\nquantity=time / s\n\n", textIn(mInstallation / userFile));
}

TEST_F(RememberTest, ConfigurationThatExistsNowhereIsBegun)
{
    std::filesystem::remove(mInstallation / "place/etc/seriesstat.ini");
    EXPECT_EQ(success(), mInstallation.run(remembering).err);
    EXPECT_EQ("[report]\nquantity=time / s\n\n", textIn(mInstallation / userFile));
}

TEST_F(RememberTest, WhatTheInstallationChangesLaterHoldsForTheUser)
{
    mInstallation.run(remembering);
    mInstallation.write("place/etc/seriesstat.ini", "[report]\nstats = max\ndigits = 4\n");
    EXPECT_EQ("time / s\n\nd.txt\n  maximum                1.000\n", mInstallation.run({"d.txt"}).out);
}

TEST_F(RememberTest, WhatTheUserHasSetStaysButForCommentsAndOrder)
{
    mInstallation.write(userFile, "# mine\n"
                                  "[report]\n"
                                  "stats = sd, mean   # enough\n"
                                  "quantity = \"length, in m\"\n"
                                  "  \n"
                                  "[input]\n"
                                  "  # a table\n"
                                  "header\n"
                                  "delimiter = \";,\"\n"
                                  "comment = hash\n");
    mInstallation.run({"--remember", "-qtime, in s", "--no-header", "d.txt"});
    EXPECT_EQ("[input]\n"
              "comment=hash\n"
              "delimiter=\";,\"\n"
              "header=yes\n"
              "\n"
              "[report]\n"
              "quantity=\"time, in s\"\n"
              "stats=sd,mean\n"
              "\n",
              textIn(mInstallation / userFile));
    mInstallation.write("work/t.txt", "name\n5;1,6\n");
    const ChildResult run = mInstallation.run({"-c2", "--digits=2", "t.txt"});
    EXPECT_EQ("time, in s\n\nt.txt\n  standard deviation     n/a\n  mean                   1.0\n", run.out);
    EXPECT_EQ("", run.err);
}

TEST_F(RememberTest, FileThatWasWrittenIsWrittenAgainAsItIs)
{
    mInstallation.write(userFile, "[input]\ndelimiter = \",\"\n");
    mInstallation.run({"--remember", "-qa, b", "d.txt"});
    mInstallation.run({"--remember", "-qc", "d.txt"});
    mInstallation.run({"--remember", "-qa, b", "d.txt"});
    EXPECT_EQ("[input]\ndelimiter=\",\"\n\n[report]\nquantity=\"a, b\"\n\n", textIn(mInstallation / userFile));
}

TEST_F(RememberTest, FileThatSaysSoAlreadyIsLeftAlone)
{
    const std::string content = "# mine\n[report]\nquantity = time / s\n";
    mInstallation.write(userFile, content);
    const ChildResult run = mInstallation.run(remembering);
    EXPECT_EQ(report, run.out);
    EXPECT_EQ(success(), run.err);
    EXPECT_EQ(content, contentOf(mInstallation / userFile));
}

TEST_F(RememberTest, QuantityIsStoredWithoutOuterBlanks)
{
    mInstallation.run({"--remember", "-q  time / s ", "d.txt"});
    EXPECT_EQ("[report]\nquantity=time / s\n\n", textIn(mInstallation / userFile));
}

TEST_F(RememberTest, AnotherConfigurationIsWrittenUnderItsName)
{
    mInstallation.write("work/etc/optics.ini", "[report]\ndigits = 3\n");
    const ChildResult run = mInstallation.run({"--remember", "-qangle / rad", "--config-file=optics.ini", "d.txt"});
    EXPECT_EQ("The quantity is remembered in \"" + (mInstallation / "user/dravo2/etc/optics.ini").generic_string() +
                  "\".\n",
              run.err);
    EXPECT_EQ("[report]\nquantity=angle / rad\n\n", textIn(mInstallation / "user/dravo2/etc/optics.ini"));
    EXPECT_FALSE(std::filesystem::exists(mInstallation / userFile));
}

TEST_F(RememberTest, TextThatTheFormatCannotHoldIsRefused)
{
    const std::vector<std::pair<std::string, std::string>> rows{
        {"events # 1", "events # 1"}, {"a \"b\" / s", "a \"b\" / s"}, {"a\nb", "a?b"}, {"a\tb", "a?b"}};
    for (const auto& [quantity, text] : rows) {
        SCOPED_TRACE(text);
        expectRefused({"--remember", "--quantity=" + quantity, "d.txt"},
                      "The quantity cannot be remembered: \"" + text +
                          "\" has a character that a configuration cannot hold (#, \" or a control character).");
        EXPECT_EQ(0, mInstallation.run({"--quantity=" + quantity, "d.txt"}).status);
    }
}

TEST_F(RememberTest, NothingToRememberIsRefused)
{
    expectRefused({"--remember", "d.txt"}, "What should be remembered? --remember stores what --quantity says.");
}

TEST_F(RememberTest, RunThatFailsRemembersNothing)
{
    mInstallation.write("work/d.txt", "one\n");
    expectRefused(remembering, "d.txt:1: \"one\" is not a finite decimal number.");
}

TEST_F(RememberTest, MistakeInTheFileOfTheUserIsNotSavedAway)
{
    mInstallation.write(userFile, "[report]\ndigit = 3\n");
    expectRefused(remembering, "seriesstat.ini: section \"report\", key \"digit\" is unknown. Known are \"digits\", "
                               "\"quantity\", \"stats\".");
}

} // namespace

} // namespace seriesstat
