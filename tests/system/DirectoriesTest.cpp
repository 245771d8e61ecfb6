#include "support/Scratch.h"
#include "system/DirectoriesRun.h"

#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

using namespace KelvoBase;
using test::Environment;
using test::lines;
using test::ScopedEnvironment;
using test::Steps;

/// An installation "pack", another one "inst", and the directory "work" from which the tool is called.
class DirectoriesTest : public ::testing::Test
{
protected:
    DirectoriesTest()
    {
        for (const char* name : {"pack", "inst", "work"}) {
            std::filesystem::create_directory(scratch / name);
        }
    }

    std::string native(const std::string& name) const { return (scratch / name).string(); }
    std::string at(const std::string& name) const { return scratch.location(name); }
    std::string run(const Steps& steps, const Environment& environment = {}) const
    {
        return test::answersOf(DIRECTORIES_TOOL, steps, environment, native("work"));
    }
    /// Both installations in the environment.
    Environment both() const { return {{"DRAVO2_BASEDIR", native("pack")}, {"DRAVO2_INSTDIR", native("inst")}}; }

    test::ScratchDirectory scratch;
};

TEST_F(DirectoriesTest, WithoutVariablesTheListIsTheWorkingDirectory)
{
    EXPECT_EQ(lines({at("work")}), run({"dirs"}));
}

TEST_F(DirectoriesTest, VariablesStandInFrontOfTheWorkingDirectory)
{
    EXPECT_EQ(lines({at("pack") + ";" + at("inst") + ";" + at("work")}), run({"dirs"}, both()));
    EXPECT_EQ(lines({at("inst") + ";" + at("work")}), run({"dirs"}, {{"DRAVO2_INSTDIR", native("inst")}}));
}

TEST_F(DirectoriesTest, SameDirectoryInBothVariablesStandsOnce)
{
    EXPECT_EQ(lines({at("pack") + ";" + at("work")}),
              run({"dirs"}, {{"DRAVO2_BASEDIR", native("pack")}, {"DRAVO2_INSTDIR", native("pack")}}));
}

TEST_F(DirectoriesTest, WorkingDirectoryAsVariableKeepsItsFirstPlace)
{
    EXPECT_EQ(lines({at("work") + ";" + at("inst")}),
              run({"dirs"}, {{"DRAVO2_BASEDIR", native("work")}, {"DRAVO2_INSTDIR", native("inst")}}));
}

TEST_F(DirectoriesTest, SpellingsOfOneAbsoluteDirectoryStandOnce)
{
    for (const std::string& spelling :
         {native("pack") + "/", native("pack") + "/.", native("work") + "/../pack", at("pack"), at("pack") + "\\"}) {
        SCOPED_TRACE(spelling);
        EXPECT_EQ(lines({at("pack") + ";" + at("work")}),
                  run({"dirs"}, {{"DRAVO2_BASEDIR", native("pack")}, {"DRAVO2_INSTDIR", spelling}}));
    }
}

TEST_F(DirectoriesTest, DirectoryWithAProtocolIsAnotherLocation)
{
    EXPECT_EQ(lines({at("pack") + ";" + at("pack") + ";" + at("work")}),
              run({"dirs"}, {{"DRAVO2_BASEDIR", native("pack")}, {"DRAVO2_INSTDIR", "file:" + native("pack")}}));
}

TEST_F(DirectoriesTest, RelativeVariablesStayAsTheyAre)
{
    std::filesystem::create_directory(scratch / "work/sub");
    EXPECT_EQ(lines({"sub;sub\\;" + at("work")}),
              run({"dirs"}, {{"DRAVO2_BASEDIR", "sub"}, {"DRAVO2_INSTDIR", "sub/"}}));
    EXPECT_EQ(lines({".;..\\pack;" + at("work")}),
              run({"dirs"}, {{"DRAVO2_BASEDIR", "."}, {"DRAVO2_INSTDIR", "../pack"}}));
}

TEST_F(DirectoriesTest, UnusableVariablesAreLeftOut)
{
    scratch.write("file", "x");
    for (const std::string& value :
         {std::string(), native("missing"), native("file"), native("file") + "/pack", std::string("missing"),
          std::string("http://host/pack"), std::string("ftp://host/"), std::string("http:pack"), std::string(":"),
          std::string("//host/pack")}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(lines({at("work")}), run({"dirs"}, {{"DRAVO2_BASEDIR", value}, {"DRAVO2_INSTDIR", value}}));
    }
}

TEST_F(DirectoriesTest, VariableThatIsNoLocationEndsTheSearch)
{
    // Required, Q-814
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"ftp://host", "std::out_of_range[basic_string::substr]"},
        {"//host", "std::out_of_range[basic_string::substr]"},
        {"ftp://host/a\\b",
         "KelvoBase::InvalidFileNameException[File name is invalid: \"/a\\b\": unknown escape sequence]"},
    };
    for (const auto& [value, failure] : rows) {
        EXPECT_EQ(lines({failure, failure, failure}), run({"set", "dirs", "bin"}, {{"DRAVO2_BASEDIR", value}}));
        EXPECT_EQ(lines({failure, at("pack"), "set"}),
                  run({"dirs", "dirs", "set"}, {{"DRAVO2_BASEDIR", native("pack")}, {"DRAVO2_INSTDIR", value}}));
    }
}

TEST_F(DirectoriesTest, AddedDirectorySuppressesTheSearch)
{
    // Required, Q-807
    EXPECT_EQ(lines({"added", at("inst"), "set", at("inst"), "", ""}),
              run({"add|" + native("inst"), "dirs", "set", "dirs", "bin", "dll"}, both()));
}

TEST_F(DirectoriesTest, DroppedDirectorySuppressesNothing)
{
    EXPECT_EQ(lines({"added", "added", at("work")}), run({"add|" + native("missing"), "add|", "dirs"}));
}

TEST_F(DirectoriesTest, AddedDirectoriesStandBehindTheFoundOnes)
{
    EXPECT_EQ(lines({at("work"), "added", at("work") + ";" + at("inst")}), run({"dirs", "add|" + at("inst"), "dirs"}));
}

TEST_F(DirectoriesTest, UnusableDirectoriesAreNotAdded)
{
    scratch.write("file", "x");
    for (const std::string& value : {native("work"), native("work") + "/", native("missing"), native("file"),
                                     std::string(), std::string("http://host/pack"), std::string("ftp://host/")}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(lines({"set", "added", at("work")}), run({"set", "add|" + value, "dirs"}));
    }
}

TEST_F(DirectoriesTest, DirectoryOfTheListMayBeAddedAgain)
{
    EXPECT_EQ(lines({"added", "added", "added", at("pack") + ";" + at("inst")}),
              run({"add|" + native("pack"), "add|" + native("inst"), "add|" + native("pack"), "dirs"}));
}

TEST_F(DirectoriesTest, ListIsFoundOnce)
{
    EXPECT_EQ(lines({at("work"), "env", "cd", "set", at("work")}),
              run({"dirs", "env|DRAVO2_BASEDIR|" + native("pack"), "cd|" + native("inst"), "set", "dirs"}));
}

TEST_F(DirectoriesTest, DirectoryThatVanishesStaysInTheList)
{
    EXPECT_EQ(lines({at("pack") + ";" + at("work"), "rm", "set", at("pack") + ";" + at("work")}),
              run({"dirs", "rm|" + native("pack"), "set", "dirs"}, {{"DRAVO2_BASEDIR", native("pack")}}));
}

TEST_F(DirectoriesTest, ProgramOutsideABinDirectoryHasNone)
{
    EXPECT_EQ(lines({"", ""}), run({"bin", "dll"}, both()));
}

TEST_F(DirectoriesTest, DataOfTheWorkingDirectoryWin)
{
    for (const char* name : {"pack", "inst", "work"}) {
        scratch.write(name + std::string("/share/app/data/x"), "x");
    }
    EXPECT_EQ(lines({at("work/share/app/data"), at("work/share/app/data/x")}),
              run({"appdir|data|app", "appfile|data/x|app"}, both()));
}

TEST_F(DirectoriesTest, DataOfTheSecondVariableWinOverTheFirst)
{
    scratch.write("pack/share/app/data/x", "x");
    scratch.write("inst/share/app/data/x", "x");
    EXPECT_EQ(lines({at("inst/share/app/data"), at("inst/share/app/data/x")}),
              run({"appdir|data|app", "appfile|data\\x|app"}, both()));
}

TEST_F(DirectoriesTest, DataOfTheFirstVariableAreFoundLast)
{
    scratch.write("pack/share/app/data/x", "x");
    EXPECT_EQ(lines({at("pack/share/app/data"), at("pack/share/app/data/x")}),
              run({"appdir|data|app", "appfile|data/x|app"}, both()));
}

TEST_F(DirectoriesTest, MissingDataNameAllCandidatesInTheOrderOfTheList)
{
    const auto text = [this](const std::string& name) {
        return "KelvoBase::FileNotFoundException[Cannot find file \"" + name + "\" in \"" +
               at("pack/share/app/" + name) + "\"; \"" + at("inst/share/app/" + name) + "\"; \"" +
               at("work/share/app/" + name) + "\".]";
    };
    EXPECT_EQ(lines({text("a.txt"), text("a.txt")}), run({"appfile|a.txt|app", "appdir|a.txt|app"}, both()));
}

TEST_F(DirectoriesTest, MissingDataOfOneDirectoryNameOneCandidate)
{
    EXPECT_EQ(lines({"KelvoBase::FileNotFoundException[Cannot find file \"sub/a\" in \"" + at("work/share/app/sub/a") +
                     "\".]"}),
              run({"appfile|sub/a|app"}));
}

TEST_F(DirectoriesTest, CandidatesOfARelativeDirectoryAreRelative)
{
    EXPECT_EQ(lines({"KelvoBase::FileNotFoundException[Cannot find file \"a\" in \".\\share\\app\\a\"; \"" +
                     at("work/share/app/a") + "\".]"}),
              run({"appfile|a|app"}, {{"DRAVO2_BASEDIR", "."}}));
}

TEST_F(DirectoriesTest, FileIsNoDataDirectoryAndADirectoryNoDataFile)
{
    scratch.write("work/share/app/x", "x");
    std::filesystem::create_directories(scratch / "pack/share/app/x");
    EXPECT_EQ(lines({at("pack/share/app/x"), at("work/share/app/x")}), run({"appdir|x|app", "appfile|x|app"}, both()));
    std::filesystem::remove_all(scratch / "work/share");
    EXPECT_EQ(lines({"KelvoBase::FileNotFoundException[Cannot find file \"x\" in \"" + at("pack/share/app/x") +
                     "\"; \"" + at("inst/share/app/x") + "\"; \"" + at("work/share/app/x") + "\".]"}),
              run({"appfile|x|app"}, both()));
}

TEST_F(DirectoriesTest, DataNamesMayHaveSeveralComponents)
{
    scratch.write("work/share/app/a/b/c.txt", "x");
    const std::string found = at("work/share/app/a/b/c.txt");
    EXPECT_EQ(lines({found, found, found, found}), run({"appfile|a/b/c.txt|app", "appfile|a\\b\\c.txt|app",
                                                        "appfile|b/c.txt|app/a", "appfile|../app/a/./b/c.txt|app"}));
}

TEST_F(DirectoriesTest, EmptyNameIsTheDirectoryOfTheApplication)
{
    std::filesystem::create_directories(scratch / "work/share/app");
    EXPECT_EQ(lines({at("work/share/app"), at("work/share")}), run({"appdir||app", "appdir||"}));
}

TEST_F(DirectoriesTest, EmptyApplicationLeavesItsPartOut)
{
    scratch.write("work/share/x", "x");
    EXPECT_EQ(lines({at("work/share/x"),
                     "KelvoBase::FileNotFoundException[Cannot find file \"y\" in \"" + at("work/share/y") + "\".]"}),
              run({"appfile|x|", "appfile|y|"}));
}

TEST_F(DirectoriesTest, DefaultIsTheNameOfTheApplication)
{
    scratch.write("work/share/prober/data/x", "x");
    const Environment user = {{"XDG_CONFIG_HOME", native("user")}};
    EXPECT_EQ(lines({"application", at("work/share/prober/data"), at("work/share/prober/data/x"),
                     at("work/share/prober/data")}),
              run({"application|prober", "mydir|data", "myfile|data/x", "appdir|data|getAppName()"}, user));
    EXPECT_EQ(lines({"application", "KelvoBase::FileNotFoundException[Cannot find file \"data\" in \"" +
                                        at("work/share/getAppName/data") + "\".]"}),
              run({"application|prober", "appdir|data|getAppName"}, user));
}

TEST_F(DirectoriesTest, ApplicationWithoutANameLeavesItsPartOut)
{
    scratch.write("work/share/x", "x");
    EXPECT_EQ(lines({"application", at("work/share/x")}),
              run({"application|", "myfile|x"}, {{"XDG_CONFIG_HOME", native("user")}}));
}

TEST_F(DirectoriesTest, DefaultWithoutAnApplicationThrows)
{
    const std::string failure = "KelvoBase::ObjectNotExistentException[System: There is no application whose name "
                                "could stand for \"getAppName()\".]";
    EXPECT_EQ(lines({failure, failure, failure, at("work")}),
              run({"mydir|data", "myfile|data", "appfile|data|getAppName()", "dirs"}));
}

TEST_F(DirectoriesTest, SearchForDataFillsTheList)
{
    std::filesystem::create_directories(scratch / "work/share/app");
    EXPECT_EQ(lines({at("work/share/app"), "env", at("work")}),
              run({"appdir|app|", "env|DRAVO2_BASEDIR|" + native("pack"), "dirs"}));
}

/// The name that `tempFile` gives, without its last component, if that has the described form.
std::string directoryOfTempFile(const std::string& suffix, const std::string& prefix)
{
    ResourceLocation name = System::instance().tempFile(suffix, prefix);
    const std::string last = name.lastComponent();
    EXPECT_EQ(prefix.size() + 8 + suffix.size(), last.size()) << last;
    EXPECT_TRUE(last.starts_with(prefix)) << last;
    EXPECT_TRUE(last.ends_with(suffix)) << last;
    EXPECT_EQ(std::string::npos, last.substr(prefix.size(), 8).find_first_not_of("0123456789abcdef")) << last;
    return name.removeFileName().getFilePath('\\');
}

TEST_F(DirectoriesTest, TempFileLiesInTheDirectoryOfTmp)
{
    const ScopedEnvironment tmp("TMP", native("work"));
    EXPECT_EQ(at("work"), directoryOfTempFile(".tmp", "x"));
    EXPECT_EQ(at("work"), directoryOfTempFile("", ""));
}

TEST_F(DirectoriesTest, SuffixIsTheFirstArgumentOfTempFile)
{
    // Required, Q-812
    const ScopedEnvironment tmp("TMP", native("work"));
    const std::string name = System::instance().tempFile("first", "second").lastComponent();
    EXPECT_TRUE(name.starts_with("second")) << name;
    EXPECT_TRUE(name.ends_with("first")) << name;
}

TEST_F(DirectoriesTest, TempFileOfARelativeTmpIsRelative)
{
    const test::ScopedWorkingDirectory there(scratch.path());
    const ScopedEnvironment tmp("TMP", "work");
    EXPECT_EQ("work", directoryOfTempFile(".tmp", "x"));
}

TEST_F(DirectoriesTest, TempFileCreatesNothing)
{
    const ScopedEnvironment tmp("TMP", native("work"));
    System::instance().tempFile(".tmp", "x");
    EXPECT_TRUE(std::filesystem::is_empty(scratch / "work"));
}

} // namespace
