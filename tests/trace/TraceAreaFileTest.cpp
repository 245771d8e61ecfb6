/// \file
/// Areas that a deployment defines in files.

#include "AreaFiles.h"
#include "support/Capture.h"
#include "support/Text.h"

#include <kelvobase/Any.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

namespace
{

using Text = ScalarAny<std::string>;

/// A registry that is filled from the files of the search, as far as the test wrote any.
class TraceAreaFile : public testing::Test
{
protected:
    TraceAreaFile() { files().removeAll(); }
    ~TraceAreaFile() override
    {
        TraceAreaMgr::teardown();
        files().removeAll();
        haveCerr = true;
    }

    static AreaFiles& files() { return AreaFiles::instance(); }
    static TraceAreaMgr& registry() { return *TraceAreaMgr::instance(); }
    /// Starts a registry that a file of two empty sections leaves with `All` alone.
    static TraceAreaMgr& emptyRegistry()
    {
        files().write("base", "[TraceMainAreas]\n[TraceSubAreas]\n");
        TraceAreaMgr::startup();
        return registry();
    }
    /// A new registry of these files. What it says on standard error.
    static std::string startWith(const std::vector<std::pair<std::string, std::string>>& contents)
    {
        TraceAreaMgr::teardown();
        files().removeAll();
        for (const auto& [directory, content] : contents) {
            files().write(directory, content);
        }
        const Capture err(std::cerr);
        const Capture out(std::cout);
        TraceAreaMgr::startup();
        return err.text() + out.text();
    }
    /// Adds the areas of a text. What that says on standard error.
    static std::string addText(TraceAreaMgr& registry, const std::string& content)
    {
        const ScratchDirectory scratch;
        scratch.write("areas.ini", content);
        const ConfigFile file(scratch.location("areas.ini"));
        return add(registry, file);
    }
    static std::string add(TraceAreaMgr& registry, const ConfigFile& file)
    {
        const Capture err(std::cerr);
        const Capture out(std::cout);
        registry.initFromFile(file);
        return err.text() + out.text();
    }
    /// The areas of the built-in tables.
    static std::string tables()
    {
        EXPECT_EQ(startWith({}), "");
        EXPECT_EQ(bitOf("KelvoBase"), 0);
        EXPECT_EQ(bitOf("RewriteNetwork"), 39);
        return areas();
    }
    /// A section of so many areas: "Area100", "Area101"...
    static std::string section(const std::string& name, int count)
    {
        std::string text = "[" + name + "]\n";
        for (int i = 0; i < count; ++i) {
            text += "Area" + std::to_string(100 + i) + "\n";
        }
        return text;
    }
};

std::string warning(const std::string& parent)
{
    return "WARNING TraceAreaMgr: Unknown area '" + parent + "'\n\tSkipping entry...\n";
}

const std::string noMainAreas = "[TraceMainAreas]\n";

// What a file says

TEST_F(TraceAreaFile, EmptySectionsGiveAllAlone)
{
    emptyRegistry();
    EXPECT_EQ(areas(), "");
    EXPECT_TRUE(registry().getTraceAreaMask("All").all());
    EXPECT_TRUE(registry().getTraceAreaId("All").all());
}

TEST_F(TraceAreaFile, BitsFollowTheSortedNamesMainAreasFirst)
{
    // Required, Q-717
    TraceAreaMgr& registry = emptyRegistry();
    EXPECT_EQ(addText(registry, "[TraceSubAreas]\nZinc\nAlum\n[TraceMainAreas]\nbeta\nOptics\nBeta\n1st\n"), "");
    EXPECT_EQ(areas(), "1st=0 Alum=4 Beta=1 Optics=2 Zinc=5 beta=3");
}

TEST_F(TraceAreaFile, ValueOfAMainAreaIsNotLookedAt)
{
    // Required, Q-718
    TraceAreaMgr& registry = emptyRegistry();
    EXPECT_EQ(addText(registry, "[TraceMainAreas]\nA\nB=\nC=no\nD=Unknown\nE=A,Unknown\nF=A\n[TraceSubAreas]\n"), "");
    EXPECT_EQ(areas(), "A=0 B=1 C=2 D=3 E=4 F=5");
}

TEST_F(TraceAreaFile, ValueOfAMainAreaMayBeOfAnyType)
{
    TraceAreaMgr& registry = emptyRegistry();
    ConfigFile file;
    file.setEntry("TraceMainAreas", "No", new ScalarAny<bool>(false));
    file.setEntry("TraceMainAreas", "Number", new ScalarAny<int>(7));
    file.setEntry("TraceMainAreas", "None", new VectorAny<Text>);
    file.createSection("TraceSubAreas");
    EXPECT_EQ(add(registry, file), "");
    EXPECT_EQ(areas(), "No=0 None=1 Number=2");
}

struct SubArea
{
    const char* line;
    const char* areas;
    std::string said;
};

TEST_F(TraceAreaFile, SubAreaHasTheBitsOfItsParents)
{
    const std::string everything = bitsOf(std::bitset<64>().set());
    const std::string ofAll = "Kid=" + everything + " One=0 Two=1";
    const SubArea rows[] = {
        {"Kid", "Kid=2 One=0 Two=1", ""},
        {"Kid = One", "Kid=0+2 One=0 Two=1", ""},
        {"Kid = Two,One", "Kid=0+1+2 One=0 Two=1", ""},
        {"Kid = One, One", "Kid=0+2 One=0 Two=1", ""},
        {"Kid = \"Two\"", "Kid=1+2 One=0 Two=1", ""},
        {"Kid = All", ofAll.c_str(), ""},
        {"Kid =", "Kid=2 One=0 Two=1", warning("")},
        {"Kid = yes", "Kid=2 One=0 Two=1", warning("yes")},
        {"Kid = 1", "Kid=2 One=0 Two=1", warning("1")},
        {"Kid = one", "Kid=2 One=0 Two=1", warning("one")},
        {"Kid = One Two", "Kid=2 One=0 Two=1", warning("One Two")},
        {"Kid = \"One,Two\"", "Kid=2 One=0 Two=1", warning("One,Two")},
        {"Kid = One,", "Kid=0+2 One=0 Two=1", warning("")},
        {"Kid = Kid", "Kid=2 One=0 Two=1", warning("Kid")},
        {"Kid = Undef", "Kid=2 One=0 Two=1", warning("Undef")},
    };
    for (const SubArea& row : rows) {
        TraceAreaMgr::teardown();
        TraceAreaMgr& registry = emptyRegistry();
        EXPECT_EQ(addText(registry, std::string("[TraceMainAreas]\nOne\nTwo\n[TraceSubAreas]\n") + row.line), row.said)
            << row.line;
        EXPECT_EQ(areas(), row.areas) << row.line;
        EXPECT_EQ(bitOf("Kid"), 2) << row.line;
    }
}

TEST_F(TraceAreaFile, AreaWithAnUnknownParentIsAddedAllTheSame)
{
    // Required, Q-716
    TraceAreaMgr& registry = emptyRegistry();
    EXPECT_EQ(
        addText(registry, "[TraceMainAreas]\nOptics\n[TraceSubAreas]\nLenses = No,Optics,Nor\nMirrors = Optics\n"),
        warning("No") + warning("Nor"));
    EXPECT_EQ(areas(), "Lenses=0+1 Mirrors=0+2 Optics=0");
}

TEST_F(TraceAreaFile, WarningIsSilentWithoutStandardStreams)
{
    TraceAreaMgr& registry = emptyRegistry();
    haveCerr = false;
    EXPECT_EQ(addText(registry, noMainAreas + "[TraceSubAreas]\nLenses = No\n"), "");
    EXPECT_EQ(areas(), "Lenses=0");
}

TEST_F(TraceAreaFile, EachLineOfAWarningIsFlushed)
{
    struct Counting : public std::stringbuf
    {
        int sync() override { return ++syncs, 0; }
        int syncs = 0;
    };
    TraceAreaMgr& registry = emptyRegistry();
    ConfigFile file;
    file.createSection("TraceMainAreas");
    file.setEntry("TraceSubAreas", "Lenses", "No");
    Counting buffer;
    std::cerr.unsetf(std::ios_base::unitbuf);
    std::streambuf* before = std::cerr.rdbuf(&buffer);
    registry.initFromFile(file);
    std::cerr.rdbuf(before);
    std::cerr.setf(std::ios_base::unitbuf);
    EXPECT_EQ(buffer.str(), warning("No"));
    EXPECT_EQ(buffer.syncs, 2);
}

TEST_F(TraceAreaFile, ParentAmongSubAreasHasToSortInFront)
{
    TraceAreaMgr& registry = emptyRegistry();
    EXPECT_EQ(addText(registry, noMainAreas + "[TraceSubAreas]\nZeta = Alpha\nAlpha = Zeta\n"), warning("Zeta"));
    EXPECT_EQ(areas(), "Alpha=0 Zeta=0+1");
    EXPECT_EQ(bitOf("Zeta"), 1);
}

TEST_F(TraceAreaFile, MaskReachesUpToTheTopOfTheTree)
{
    TraceAreaMgr& registry = emptyRegistry();
    EXPECT_EQ(addText(registry, "[TraceMainAreas]\nOptics\n[TraceSubAreas]\nLens = Optics\nPart = Lens\nRim = Part\n"),
              "");
    EXPECT_EQ(areas(), "Lens=0+1 Optics=0 Part=0+1+2 Rim=0+1+2+3");
}

TEST_F(TraceAreaFile, BooleanMeansNoParentsWhicheverItIs)
{
    // Required, Q-718
    TraceAreaMgr& registry = emptyRegistry();
    ConfigFile file;
    file.setEntry("TraceMainAreas", "1", new ScalarAny<bool>(true));
    file.setEntry("TraceMainAreas", "0", new ScalarAny<bool>(true));
    file.setEntry("TraceSubAreas", "No", new ScalarAny<bool>(false));
    file.setEntry("TraceSubAreas", "Yes", new ScalarAny<bool>(true));
    EXPECT_EQ(add(registry, file), "");
    EXPECT_EQ(areas(), "0=0 1=1 No=2 Yes=3");
}

TEST_F(TraceAreaFile, ParentsAreTheTextsOfWhateverTheListHolds)
{
    TraceAreaMgr& registry = emptyRegistry();
    auto numbers = std::make_unique<VectorAny<ScalarAny<int>>>();
    numbers->add(ScalarAny<int>(7));
    numbers->add(ScalarAny<int>(8));
    auto flags = std::make_unique<VectorAny<ScalarAny<bool>>>();
    flags->add(ScalarAny<bool>(true));
    auto texts = std::make_unique<VectorAny<Text>>();
    texts->add(Text("a,b"));
    ConfigFile file;
    for (const char* name : {"1", "7", "8", "a,b", "a,,b"}) {
        file.setEntry("TraceMainAreas", name, new ScalarAny<bool>(true));
    }
    file.setEntry("TraceSubAreas", "Flags", flags.release());
    file.setEntry("TraceSubAreas", "Number", new ScalarAny<int>(8));
    file.setEntry("TraceSubAreas", "Numbers", numbers.release());
    file.setEntry("TraceSubAreas", "Texts", texts.release());
    EXPECT_EQ(add(registry, file), "");
    EXPECT_EQ(areas(), "1=0 7=1 8=2 Flags=0+5 Number=2+6 Numbers=1+2+7 Texts=4+8 a,,b=3 a,b=4");
}

TEST_F(TraceAreaFile, ListWithoutElementsHasNoParents)
{
    TraceAreaMgr& registry = emptyRegistry();
    ConfigFile file;
    file.createSection("TraceMainAreas");
    file.setEntry("TraceSubAreas", "Lenses", new VectorAny<Text>);
    EXPECT_EQ(add(registry, file), "");
    EXPECT_EQ(areas(), "Lenses=0");
}

TEST_F(TraceAreaFile, NameInBothSectionsIsAMainArea)
{
    TraceAreaMgr& registry = emptyRegistry();
    EXPECT_EQ(
        addText(registry, "[TraceMainAreas]\nLenses\nOptics\n[TraceSubAreas]\nLenses = Optics,No\nRim = Lenses\n"),
        warning("No"));
    EXPECT_EQ(areas(), "Lenses=0 Optics=1 Rim=0+2");
}

TEST_F(TraceAreaFile, IndentedCommentIsAnAreaWithoutAName)
{
    TraceAreaMgr& registry = emptyRegistry();
    EXPECT_EQ(addText(registry, "[TraceMainAreas]\n  # of the deployment\nOptics\n[TraceSubAreas]\n"), "");
    EXPECT_EQ(areas(), "=0 Optics=1");
}

TEST_F(TraceAreaFile, OtherSectionsAreIgnored)
{
    TraceAreaMgr& registry = emptyRegistry();
    EXPECT_EQ(addText(registry, "Front\n[traceMainAreas]\nX\n[TraceMainAreas]\nOptics\n[TraceSubAreas]\n[Tail]\nY\n"),
              "");
    EXPECT_EQ(areas(), "Optics=0");
}

TEST_F(TraceAreaFile, MissingSectionThrows)
{
    TraceAreaMgr& registry = emptyRegistry();
    ConfigFile file;
    const auto fault = [&] { return textOf<UnknownException>([&] { registry.initFromFile(file); }); };
    EXPECT_EQ(fault(), "Unknown section 'TraceMainAreas' in config file ''");
    file.setEntry("TraceSubAreas", "Lenses", new ScalarAny<bool>(true));
    EXPECT_EQ(fault(), "Unknown section 'TraceMainAreas' in config file ''");
    EXPECT_EQ(areas(), "");
    ConfigFile other;
    other.setEntry("TraceMainAreas", "Optics", new ScalarAny<bool>(true));
    EXPECT_EQ(textOf<UnknownException>([&] { registry.initFromFile(other); }),
              "Unknown section 'TraceSubAreas' in config file ''");
    EXPECT_EQ(areas(), "Optics=0") << "what was added stays";
}

TEST_F(TraceAreaFile, AreasAreAddedToThoseOfTheTables)
{
    const std::string before = tables();
    EXPECT_EQ(
        addText(registry(), "[TraceMainAreas]\nOptics\nApp\n[TraceSubAreas]\nLenses = Optics,Numerics\nTavelin\n"), "");
    EXPECT_EQ(bitOf("Optics"), 40);
    EXPECT_EQ(bitsOf(registry().getTraceAreaMask("Lenses")), "7+40+41");
    EXPECT_EQ(bitOf("App"), 11);
    EXPECT_EQ(bitsOf(registry().getTraceAreaMask("Tavelin")), "4+23");
}

TEST_F(TraceAreaFile, SecondReadingOfAFileChangesNothing)
{
    TraceAreaMgr& registry = emptyRegistry();
    const std::string content = "[TraceMainAreas]\nOptics\n[TraceSubAreas]\nLenses = Optics\n";
    addText(registry, content);
    const std::string before = registry.print();
    EXPECT_EQ(addText(registry, content), "");
    EXPECT_EQ(registry.print(), before);
}

TEST_F(TraceAreaFile, AreasBeyondTheLastBitThrowAndLeaveTheOthers)
{
    TraceAreaMgr& registry = emptyRegistry();
    const auto fault = [&] { addText(registry, section("TraceMainAreas", 60) + section("TraceSubAreas", 66)); };
    EXPECT_EQ(textOf<std::out_of_range>(fault), "bitset::set");
    EXPECT_EQ(bitOf("Area163"), 63);
    EXPECT_EQ(bitOf("Area164"), -1);
}

// The registry at its start

TEST_F(TraceAreaFile, WithoutAFileTheTablesStand)
{
    const std::string all = tables();
    EXPECT_EQ(std::count(all.begin(), all.end(), ' '), 39);
    EXPECT_EQ(bitsOf(registry().getTraceAreaMask("BetaParametrizer")), "4+16+26");
    EXPECT_EQ(bitOf("App"), 11);
}

TEST_F(TraceAreaFile, FileStandsInPlaceOfTheTables)
{
    for (const char* directory : {"base", "installation", "work"}) {
        EXPECT_EQ(startWith({{directory, "[TraceMainAreas]\nOptics\nApp\n[TraceSubAreas]\nLenses = Optics\n"}}), "");
        EXPECT_EQ(areas(), "App=0 Lenses=1+2 Optics=1") << directory;
    }
}

TEST_F(TraceAreaFile, FileInTheWorkingDirectoryItselfIsNotFound)
{
    const std::string content = "[TraceMainAreas]\nOptics\n[TraceSubAreas]\n";
    const std::filesystem::path path = files().scratch().write("work/TraceAreas.ini", content);
    EXPECT_EQ(startWith({}), "");
    EXPECT_EQ(bitOf("Optics"), -1);
    EXPECT_EQ(bitOf("App"), 11);
    std::filesystem::remove(path);
}

TEST_F(TraceAreaFile, AreasOfAllDirectoriesAddUp)
{
    EXPECT_EQ(startWith({{"base", "[TraceMainAreas]\nOptics\n"},
                         {"installation", "[TraceSubAreas]\nLenses = Optics\n"},
                         {"work", "[TraceMainAreas]\nApp\n[TraceSubAreas]\nRim = Lenses\n"}}),
              "");
    EXPECT_EQ(areas(), "App=0 Lenses=1+2 Optics=1 Rim=1+2+3");
}

TEST_F(TraceAreaFile, LaterDirectoryGivesAnAreaOtherParents)
{
    const std::string both = "[TraceMainAreas]\nOptics\nApp\n[TraceSubAreas]\n";
    EXPECT_EQ(startWith({{"base", both + "Lenses = No\n"}, {"installation", "[TraceSubAreas]\nLenses = App\n"}}), "");
    EXPECT_EQ(areas(), "App=0 Lenses=0+2 Optics=1");
    EXPECT_EQ(startWith({{"base", both + "Lenses = App\n"}, {"work", "[TraceSubAreas]\nLenses\n"}}), "");
    EXPECT_EQ(areas(), "App=0 Lenses=2 Optics=1");
}

TEST_F(TraceAreaFile, UnknownParentWarnsAtTheStart)
{
    EXPECT_EQ(startWith({{"base", "[TraceMainAreas]\nApp\n[TraceSubAreas]\nLenses = Optics\n"}}), warning("Optics"));
    EXPECT_EQ(areas(), "App=0 Lenses=1");
}

TEST_F(TraceAreaFile, AreasOfAFileThatFailsStayInFrontOfTheTables)
{
    // Required, Q-715
    EXPECT_EQ(startWith({{"base", "[TraceMainAreas]\nOptics\nNumerics\n"}}), "");
    EXPECT_EQ(bitOf("Numerics"), 0);
    EXPECT_EQ(bitOf("Optics"), 1);
    EXPECT_EQ(bitOf("KelvoBase"), 2);
    EXPECT_EQ(bitOf("App"), 12);
    EXPECT_EQ(bitOf("RewriteNetwork"), 40);
    EXPECT_EQ(bitsOf(registry().getTraceAreaMask("SeriesTools")), "0+31");
}

TEST_F(TraceAreaFile, FileWithoutMainAreasGivesTheTables)
{
    const std::string all = tables();
    for (const char* content : {"[TraceSubAreas]\nLenses\n", "", "\n", "# nothing\n", "[Other]\nLenses\n",
                                "TraceMainAreas\nTraceSubAreas\n", "[ TraceMainAreas ]\nX\n[ TraceSubAreas ]\nY\n"}) {
        EXPECT_EQ(startWith({{"base", content}}), "") << content;
        EXPECT_EQ(areas(), all) << content;
    }
}

TEST_F(TraceAreaFile, SyntaxErrorInAnyFileGivesTheTablesWithoutAWord)
{
    const std::string all = tables();
    const std::string good = "[TraceMainAreas]\nOptics\n[TraceSubAreas]\n";
    for (const char* broken : {"[TraceMainAreas\nOptics\n", "[TraceMainAreas]\n=Optics\n[TraceSubAreas]\n"}) {
        EXPECT_EQ(startWith({{"base", broken}}), "") << broken;
        EXPECT_EQ(areas(), all) << broken;
        EXPECT_EQ(startWith({{"base", broken}, {"work", good}}), "") << broken;
        EXPECT_EQ(areas(), all) << broken;
        EXPECT_EQ(startWith({{"base", good}, {"installation", broken}}), "") << broken;
        EXPECT_EQ(areas(), all) << broken;
        EXPECT_EQ(startWith({{"base", good}, {"installation", good}, {"work", broken}}), "") << broken;
        EXPECT_EQ(areas(), all) << broken;
    }
}

TEST_F(TraceAreaFile, DirectoryInThePlaceOfAFileIsSkipped)
{
    files().write("installation", "[TraceMainAreas]\nOptics\n[TraceSubAreas]\n");
    std::filesystem::create_directories(files().pathOf("base"));
    std::filesystem::create_directories(files().pathOf("work"));
    const Capture err(std::cerr);
    TraceAreaMgr::startup();
    EXPECT_EQ(err.text(), "");
    EXPECT_EQ(areas(), "Optics=0");
}

TEST_F(TraceAreaFile, FileMayUseAllBits)
{
    EXPECT_EQ(startWith({{"base", section("TraceMainAreas", 60) + "[TraceSubAreas]\nB\nC\nD\nE = Area100\n"}}), "");
    EXPECT_EQ(bitOf("Area159"), 59);
    EXPECT_EQ(bitsOf(registry().getTraceAreaMask("E")), "0+63");
    EXPECT_EQ(bitOf("App"), -1);
}

TEST_F(TraceAreaFile, FileOfTooManyAreasLeavesNoRegistry)
{
    // Required, Q-719
    for (const std::string& content :
         {section("TraceMainAreas", 65), section("TraceMainAreas", 65) + "[TraceSubAreas]\n",
          section("TraceMainAreas", 64) + "[TraceSubAreas]\nLenses\n", noMainAreas + section("TraceSubAreas", 65)}) {
        EXPECT_EQ(textOf<std::out_of_range>([&] { startWith({{"base", content}}); }), "bitset::set");
        EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
    }
    EXPECT_EQ(startWith({{"base", "[TraceMainAreas]\nOptics\n[TraceSubAreas]\n"}}), "");
    EXPECT_EQ(areas(), "Optics=0") << "a start behind failed ones";
}

TEST_F(TraceAreaFile, TooManyAreasOfAllDirectoriesTogetherLeaveNoRegistry)
{
    const auto fault = [] {
        startWith(
            {{"base", section("TraceMainAreas", 40)}, {"work", noMainAreas + "B\n" + section("TraceSubAreas", 66)}});
    };
    EXPECT_EQ(textOf<std::out_of_range>(fault), "bitset::set");
    EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
}

TEST_F(TraceAreaFile, IncompleteFileOfAllBitsLeavesNoRegistry)
{
    EXPECT_EQ(textOf<std::out_of_range>([&] { startWith({{"base", section("TraceMainAreas", 64)}}); }), "bitset::set");
    EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
}

TEST_F(TraceAreaFile, TooManyAreasAreNoFaultWhereTheTablesNeedNoBit)
{
    tables();
    std::string content = section("TraceMainAreas", 24);
    std::istringstream listing(registry().print());
    for (std::string line; std::getline(listing, line);) {
        std::string name = line.substr(line.find_first_not_of(' '), line.find('\t') - line.find_first_not_of(' '));
        name = name == "AttributeTranslation" ? "AttributeTranslationTable" : name;
        content += TraceAreaMgr::instance()->searchId(name) != nullptr && name != "All" ? name + "\n" : "";
    }
    EXPECT_EQ(startWith({{"base", content + "[TraceSubAreas]\nLenses\n"}}), "");
    EXPECT_EQ(bitOf("Lenses"), -1);
    EXPECT_EQ(bitOf("Area100"), 3);
    EXPECT_EQ(registry().getTraceAreaMask("SeriesTools").count(), 1u) << "a main area";
}

TEST_F(TraceAreaFile, EachStartReadsTheFileAnew)
{
    startWith({{"base", "[TraceMainAreas]\nOptics\n[TraceSubAreas]\n"}});
    files().write("base", "[TraceMainAreas]\nLenses\nOptics\n[TraceSubAreas]\n");
    TraceAreaMgr::startup();
    EXPECT_EQ(areas(), "Optics=0") << "the first registry stands";
    TraceAreaMgr::teardown();
    TraceAreaMgr::startup();
    EXPECT_EQ(areas(), "Lenses=0 Optics=1");
}

} // namespace

} // namespace KelvoBase::test
