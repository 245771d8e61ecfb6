/// \file
/// The user's own file of areas, files that cannot be read, and what a user sees of a tool.

#include "AreaFiles.h"
#include "support/Capture.h"
#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace KelvoBase::test
{

namespace
{

const std::string good = "[TraceMainAreas]\nOptics\n[TraceSubAreas]\n";
const std::string broken = "[TraceMainAreas\n";
const std::string noHome = "System: Unable to locate app directory\n";

// In this process

class TraceAreaUserFile : public testing::Test
{
protected:
    TraceAreaUserFile() { files().removeAll(); }
    ~TraceAreaUserFile() override
    {
        TraceAreaMgr::teardown();
        files().removeAll();
        haveCerr = true;
    }
    static AreaFiles& files() { return AreaFiles::instance(); }
    /// Starts a registry. What that says on the standard streams.
    static std::string start()
    {
        TraceAreaMgr::teardown();
        const Capture err(std::cerr);
        const Capture out(std::cout);
        TraceAreaMgr::startup();
        return err.text() + out.text();
    }
    static bool hasTables() { return bitOf("KelvoBase") == 0 && bitOf("RewriteNetwork") == 39; }
};

TEST_F(TraceAreaUserFile, StandsInPlaceOfTheTables)
{
    files().write("user", "[TraceMainAreas]\nOptics\n[TraceSubAreas]\nLenses = Optics\n");
    EXPECT_EQ(start(), "");
    EXPECT_EQ(areas(), "Lenses=0+1 Optics=0");
}

TEST_F(TraceAreaUserFile, HasTheLastWord)
{
    files().write("base", "[TraceMainAreas]\nA\n[TraceSubAreas]\nLenses = A\nRim\n");
    files().write("work", "[TraceMainAreas]\nB\n[TraceSubAreas]\nLenses = B\n");
    files().write("user", "[TraceMainAreas]\nC\n[TraceSubAreas]\nLenses = C\n");
    EXPECT_EQ(start(), "");
    EXPECT_EQ(areas(), "A=0 B=1 C=2 Lenses=2+3 Rim=4");
}

TEST_F(TraceAreaUserFile, SyntaxErrorGivesTheTablesWithoutAWord)
{
    files().write("base", good);
    files().write("user", broken);
    EXPECT_EQ(start(), "");
    EXPECT_TRUE(hasTables());
    EXPECT_EQ(bitOf("Optics"), -1);
}

TEST_F(TraceAreaUserFile, EmptyOneDoesNotCount)
{
    files().write("user", "");
    EXPECT_EQ(start(), "");
    EXPECT_TRUE(hasTables());
    files().write("base", good);
    EXPECT_EQ(start(), "");
    EXPECT_EQ(areas(), "Optics=0");
}

TEST_F(TraceAreaUserFile, UnreadableOneIsToldAndTheOthersCount)
{
    std::filesystem::create_directories(files().pathOf("user"));
    const std::string told = start();
    EXPECT_NE(told.find(files().scratch().location("config/dravo2/etc/TraceAreas.ini")), std::string::npos) << told;
    EXPECT_EQ(told.back(), '\n');
    EXPECT_TRUE(hasTables());
    files().write("base", good);
    EXPECT_EQ(start(), told);
    EXPECT_EQ(areas(), "Optics=0");
    haveCerr = false;
    EXPECT_EQ(start(), "");
    EXPECT_EQ(areas(), "Optics=0");
}

/// Something that is a file for whoever asks and that nobody can open.
void makeSocket(const std::filesystem::path& path)
{
    std::filesystem::create_directories(path.parent_path());
    const ScopedWorkingDirectory here(path.parent_path());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path.filename().c_str());
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(descriptor);
}

TEST_F(TraceAreaUserFile, UnreadableFileOfTheInstallationIsSkippedWithoutAWord)
{
    makeSocket(files().pathOf("base"));
    EXPECT_EQ(start(), "");
    EXPECT_TRUE(hasTables());
    files().write("installation", good);
    EXPECT_EQ(start(), "");
    EXPECT_EQ(areas(), "Optics=0");
}

TEST_F(TraceAreaUserFile, StartMakesTheDirectoryOfTheUsersFiles)
{
    const std::filesystem::path etc = files().pathOf("user").parent_path();
    std::filesystem::remove_all(etc);
    EXPECT_EQ(start(), "");
    EXPECT_TRUE(std::filesystem::is_directory(etc));
    EXPECT_TRUE(std::filesystem::is_empty(etc));
}

// Tools

class AreasOfATool : public testing::Test
{
protected:
    void write(const std::string& content) const { mScratch.write("base/etc/TraceAreas.ini", content); }
    /// Runs a program that has the directory "base" as its installation, and "home" as its home.
    ChildResult run(std::vector<std::string> command) const
    {
        mScratch.write("home/present", "");
        mScratch.write("base/present", "");
        mOptions.workingDirectory = (mScratch / "home").string();
        mOptions.environment = {{"DRAVO2_BASEDIR", mScratch.location("base")}, {"HOME", (mScratch / "home").string()}};
        mOptions.unset.emplace_back("XDG_CONFIG_HOME");
        return runChild(command, mOptions);
    }
    ChildResult configTool(std::vector<std::string> words) const
    {
        words.insert(words.begin(), CONFIG_TOOL);
        return run(words);
    }

    ScratchDirectory mScratch;
    mutable ChildOptions mOptions;
};

std::string hint()
{
    return std::string("Try \"") + CONFIG_TOOL + " --help\" for more information.\n";
}

TEST_F(AreasOfATool, AreSelectedOnTheCommandLine)
{
    write("[TraceMainAreas]\nApp\nKelvoBase\nOptics\n[TraceSubAreas]\nLenses = Optics\nRim = Lenses\n");
    struct Row
    {
        const char* selection;
        std::string seen;
    };
    const Row rows[] = {
        {"Optics", "|-- in Optics\n|-- in Lenses\n|-- in Rim\n"},
        {"Lenses", "|-- in Lenses\n|-- in Rim\n"},
        {"Rim", "|-- in Rim\n"},
        {"App,Rim", "|-- in App\n|-- in Rim\n"},
        {"All", "|-- in App\n|-- in Optics\n|-- in Lenses\n|-- in Rim\n"},
        {"Numerics", "TraceAreaMgr: Unknown Area 'Numerics'. Ignoring it.\n"},
    };
    for (const Row& row : rows) {
        const ChildResult result =
            configTool({"--trace-area", row.selection, "trace=App", "trace=Optics", "trace=Lenses", "trace=Rim"});
        EXPECT_EQ(result.status, 7) << row.selection;
        EXPECT_EQ(result.err, row.seen) << row.selection;
        EXPECT_EQ(result.out, "destroyed\n");
    }
}

TEST_F(AreasOfATool, WarnOfUnknownParentsAtEveryStart)
{
    write("[TraceMainAreas]\nApp\n[TraceSubAreas]\nLenses = Optics\n");
    const ChildResult result = configTool({"trace=App"});
    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.err, "WARNING TraceAreaMgr: Unknown area 'Optics'\n\tSkipping entry...\n|-- in App\n");
}

TEST_F(AreasOfATool, AreThoseOfTheTablesBehindABrokenFile)
{
    write(broken);
    const ChildResult result = configTool({"--trace-area=Numerics", "trace=SeriesTools", "trace=App"});
    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.err, "|-- in SeriesTools\n");
}

TEST_F(AreasOfATool, WithoutAppEndEveryRunAtItsRunLines)
{
    write("[TraceMainAreas]\n[TraceSubAreas]\n");
    const ChildResult result = configTool({"areas"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "TraceAreaMgr: Unknown Area 'App'. Ignoring it.\nTraceAreaMgr: Unknown Area \"App\".\n" + hint());
    EXPECT_EQ(configTool({"--version"}).status, 0) << "asked in front of them";
}

TEST_F(AreasOfATool, TooManyOfThemLeaveTheMainOfTheTool)
{
    std::string content = "[TraceMainAreas]\n";
    for (int i = 0; i < 65; ++i) {
        content += "Area" + std::to_string(i) + "\n";
    }
    write(content + "[TraceSubAreas]\n");
    const ChildResult result = configTool({"--version"});
    EXPECT_EQ(result.status, 128 + 6) << "ended by the C++ run-time: nothing in the tool catches it";
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("bitset::set"), std::string::npos) << result.err;
}

TEST_F(AreasOfATool, WithoutAHomeAreThoseOfTheInstallation)
{
    mOptions.unset = {"HOMEDRIVE", "HOMEPATH"};
    write("[TraceMainAreas]\nApp\nOptics\n[TraceSubAreas]\n");
    mScratch.write("home/present", "");
    mOptions.workingDirectory = (mScratch / "home").string();
    mOptions.environment = {{"DRAVO2_BASEDIR", mScratch.location("base")}};
    mOptions.unset.insert(mOptions.unset.end(), {"HOME", "XDG_CONFIG_HOME"});
    const ChildResult result = runChild({CONFIG_TOOL, "--trace-area=Optics", "trace=Optics", "trace=App"}, mOptions);
    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.err, noHome + "|-- in Optics\n");
    std::filesystem::remove_all(mScratch / "base/etc");
    const ChildResult alone = runChild({CONFIG_TOOL, "--trace-area=Numerics", "trace=SeriesTools"}, mOptions);
    EXPECT_EQ(alone.status, 7);
    EXPECT_EQ(alone.err, noHome + "|-- in SeriesTools\n");
}

// What is kept for the life of a process

TEST_F(AreasOfATool, AccessorOfAnAreaThatTheFileDoesNotHaveFails)
{
    write("[TraceMainAreas]\n[TraceSubAreas]\n");
    EXPECT_EQ(run({AREA_TOOL, "startup", "App", "mask=All"}).out,
              "App: TraceAreaMgr: Unknown Area \"App\".\nmask=All ffffffffffffffff\n");
}

TEST_F(AreasOfATool, AccessorKeepsTheBitsOfTheRegistryThatAnsweredFirst)
{
    write("[TraceMainAreas]\nApp\n[TraceSubAreas]\n");
    mScratch.write("next.ini", "[TraceMainAreas]\nAlloys\nApp\nKelvoBase\n[TraceSubAreas]\n");
    const std::string rename =
        "rename=" + (mScratch / "next.ini").string() + "=" + (mScratch / "base/etc/TraceAreas.ini").string();
    EXPECT_EQ(run({AREA_TOOL, "startup", "App", "KelvoBase", "teardown", rename, "App", "startup", "App", "mask=App",
                   "KelvoBase"})
                  .out,
              "App 1\nKelvoBase: TraceAreaMgr: Unknown Area \"KelvoBase\".\nApp 1\nApp 1\nmask=App 2\nKelvoBase 4\n");
}

} // namespace

} // namespace KelvoBase::test
