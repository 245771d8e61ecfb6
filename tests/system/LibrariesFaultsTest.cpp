#include "support/Capture.h"
#include "support/FakePlatform.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <bitset>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace
{

using namespace KelvoBase;
using test::fakePlatform;
using test::textOf;
using test::TraceCapture;
using Texts = std::vector<std::string>;

/// Ends the process with 0 if no library was released, behind the end of everything that came to life later.
struct EndReport
{
    ~EndReport()
    {
        if (armed) {
            std::_Exit(fakePlatform().freedLibraries.empty() ? 0 : 1);
        }
    }
    bool armed = false;
};

EndReport endReport; // made before main, so destroyed behind the System

/// A system with two libraries to load, and none loaded before and after.
class LibrariesFaultsTest : public ::testing::Test
{
protected:
    LibrariesFaultsTest()
    {
        fake->libraries["C:\\x\\solver.so"] = {{"answer", &mAnswer}, {"null", nullptr}};
        fake->libraries["C:\\y\\solver.dll"] = {{"answer", &mOther}};
        fake->libraries["C:\\x\\basis.so"] = {};
    }
    ~LibrariesFaultsTest() override
    {
        for (const char* key : {"solver", "basis", ""}) {
            System::instance().libraryFree(key);
        }
    }

    const test::FakeSystem fake;
    System& system = System::instance();
    int mAnswer = 0;
    int mOther = 0;
};

TEST_F(LibrariesFaultsTest, LoadedLibraryGivesItsSymbols)
{
    system.libraryLoad("C:\\x\\solver.so");
    EXPECT_EQ(&mAnswer, system.librarySymbol("solver", "answer"));
}

TEST_F(LibrariesFaultsTest, PathHandedToTheLoaderIsThatOfTheLocation)
{
    system.libraryLoad("file:///C:/x/../x/solver.so");
    EXPECT_EQ((std::map<platform::Module, std::string>{{1, "C:\\x\\solver.so"}}), fake->modules);
}

TEST_F(LibrariesFaultsTest, SecondLoadIsRefusedAndNamesTheLocation)
{
    system.libraryLoad("C:\\x\\solver.so");
    EXPECT_EQ("Library already loaded: file://localhost/C:\\x\\solver.so",
              textOf<OperationFailedException>([&] { system.libraryLoad("C:\\x\\solver.so"); }));
    EXPECT_EQ(1u, fake->modules.size());
}

TEST_F(LibrariesFaultsTest, BaseNameAloneDecidesWhatIsLoaded)
{
    // Required, Q-821
    system.libraryLoad("C:\\x\\solver.so");
    EXPECT_EQ("Library already loaded: file://localhost/C:\\y\\solver.dll",
              textOf<OperationFailedException>([&] { system.libraryLoad("C:\\y\\solver.dll"); }));
    EXPECT_EQ("Library already loaded: other\\solver.so",
              textOf<OperationFailedException>([&] { system.libraryLoad("other/solver.so"); }));
    EXPECT_EQ(&mAnswer, system.librarySymbol("solver", "answer"));
}

TEST_F(LibrariesFaultsTest, KeyIsTestedInFrontOfTheKindOfLocation)
{
    system.libraryLoad("C:\\x\\solver.so");
    EXPECT_EQ("Library already loaded: ftp://host/x/solver.so",
              textOf<OperationFailedException>([&] { system.libraryLoad("ftp://host/x/solver.so"); }));
}

TEST_F(LibrariesFaultsTest, LocationThatIsNotLocalIsRefused)
{
    EXPECT_EQ("\"ftp://host/x/solver.so\" is not a (locally accessible) file or directory name.",
              textOf<NotAFileException>([&] { system.libraryLoad("ftp://host/x/solver.so"); }));
}

TEST_F(LibrariesFaultsTest, FailureToLoadHasTwoLinesAndClearsTheError)
{
    EXPECT_EQ("Cannot load Library: C:\\x\\missing.so\nNot found\n",
              textOf<OperationFailedException>([&] { system.libraryLoad("C:\\x\\missing.so"); }));
    EXPECT_EQ(0u, fake->lastError);
    EXPECT_EQ("Cannot access symbol because library is not loaded: missing",
              textOf<OperationFailedException>([&] { system.librarySymbol("missing", "answer"); }));
}

TEST_F(LibrariesFaultsTest, FailureToLoadNamesARelativeLocationAsItStands)
{
    EXPECT_EQ("Cannot load Library: dir\\missing.so\nNot found\n",
              textOf<OperationFailedException>([&] { system.libraryLoad("dir/missing.so"); }));
}

TEST_F(LibrariesFaultsTest, CodeWithoutTextHasTheFixedOne)
{
    fake->errorTexts.clear();
    EXPECT_EQ("Cannot load Library: C:\\x\\missing.so\nNo system error message\n",
              textOf<OperationFailedException>([&] { system.libraryLoad("C:\\x\\missing.so"); }));
}

TEST_F(LibrariesFaultsTest, LoadersOwnTextStandsInThePlaceOfTheSystems)
{
    fake->loaderText = "solver is broken";
    EXPECT_EQ("Cannot load Library: C:\\x\\missing.so\nsolver is broken\n",
              textOf<OperationFailedException>([&] { system.libraryLoad("C:\\x\\missing.so"); }));
    EXPECT_EQ(0u, fake->lastError);
    system.libraryLoad("C:\\x\\solver.so");
    fake->loaderText = "no such thing";
    EXPECT_EQ("Cannot access symbol \"x\" from Library: solver\nno such thing\n",
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "x"); }));
    EXPECT_EQ(0u, fake->lastError);
}

TEST_F(LibrariesFaultsTest, EmptyLocationIsAFailureOfLoading)
{
    EXPECT_EQ("Cannot load Library: \nNot found\n",
              textOf<OperationFailedException>([&] { system.libraryLoad(ResourceLocation()); }));
}

TEST_F(LibrariesFaultsTest, SymbolOfALibraryThatIsNotLoadedIsRefused)
{
    EXPECT_EQ("Cannot access symbol because library is not loaded: solver",
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "answer"); }));
    EXPECT_EQ("Cannot access symbol because library is not loaded: ",
              textOf<OperationFailedException>([&] { system.librarySymbol("", "answer"); }));
}

TEST_F(LibrariesFaultsTest, KeyIsNoPath)
{
    system.libraryLoad("C:\\x\\solver.so");
    for (const char* key : {"C:\\x\\solver.so", "solver.so", "Solver", "solver "}) {
        EXPECT_EQ(std::string("Cannot access symbol because library is not loaded: ") + key,
                  textOf<OperationFailedException>([&] { system.librarySymbol(key, "answer"); }));
    }
}

TEST_F(LibrariesFaultsTest, MissingSymbolHasTwoLinesAndClearsTheError)
{
    system.libraryLoad("C:\\x\\solver.so");
    EXPECT_EQ("Cannot access symbol \"question\" from Library: solver\nNot found\n",
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "question"); }));
    EXPECT_EQ(0u, fake->lastError);
}

TEST_F(LibrariesFaultsTest, SymbolWithoutAnAddressCountsAsMissing)
{
    system.libraryLoad("C:\\x\\solver.so");
    EXPECT_EQ("Cannot access symbol \"null\" from Library: solver\nAll well\n",
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "null"); }));
}

TEST_F(LibrariesFaultsTest, ReleaseIsTracedAsAFailureEitherWay)
{
    // Required, Q-822
    const TraceCapture trace(Trace::fail);
    system.libraryLoad("C:\\x\\solver.so");
    system.libraryFree("solver");
    EXPECT_EQ("|-- Result of FreeLibrary: 1\n", trace.text());
    system.libraryLoad("C:\\x\\solver.so");
    fake->modules.clear(); // so that the release fails
    system.libraryFree("solver");
    EXPECT_EQ("|-- Result of FreeLibrary: 1\n|-- Result of FreeLibrary: 0\n", trace.text());
}

TEST_F(LibrariesFaultsTest, FailedReleaseForgetsTheKeyAllTheSame)
{
    system.libraryLoad("C:\\x\\solver.so");
    fake->modules.clear();
    system.libraryFree("solver");
    system.libraryLoad("C:\\y\\solver.dll");
    EXPECT_EQ(&mOther, system.librarySymbol("solver", "answer"));
}

TEST_F(LibrariesFaultsTest, LineOfTheReleaseIsOneForAllAreas)
{
    for (const std::size_t bit : {0u, 40u, 63u}) {
        const TraceCapture trace(Trace::fail);
        const test::ScratchDirectory scratch;
        const std::string path = (scratch / "trace").string();
        TraceStream::instance().traceto(Trace::fail, path, std::bitset<64>().set(bit));
        system.libraryLoad("C:\\x\\solver.so");
        system.libraryFree("solver");
        TraceStream::instance().flush();
        std::ifstream in(path); // as text, which is how the trace writes it
        EXPECT_EQ("|-- Result of FreeLibrary: 1\n", std::string(std::istreambuf_iterator<char>(in), {})) << bit;
    }
}

TEST_F(LibrariesFaultsTest, ReleaseOfAnUnknownKeyDoesNothing)
{
    const TraceCapture trace(Trace::verbose);
    system.libraryLoad("C:\\x\\solver.so");
    system.libraryFree("basis");
    system.libraryFree("solver.so");
    EXPECT_EQ("", trace.text());
    EXPECT_TRUE(fake->freedLibraries.empty());
}

TEST_F(LibrariesFaultsTest, ReleasedLibraryCanBeLoadedAgain)
{
    system.libraryLoad("C:\\x\\solver.so");
    system.libraryFree("solver");
    EXPECT_EQ("Cannot access symbol because library is not loaded: solver",
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "answer"); }));
    system.libraryLoad("C:\\y\\solver.dll");
    EXPECT_EQ(&mOther, system.librarySymbol("solver", "answer"));
}

TEST_F(LibrariesFaultsTest, AllAreReleasedInTheOrderOfTheirKeysWithoutALine)
{
    const TraceCapture trace(Trace::verbose);
    system.libraryLoad("C:\\x\\solver.so");
    system.libraryLoad("C:\\x\\basis.so");
    system.libraryFreeAll();
    EXPECT_EQ((Texts{"C:\\x\\basis.so", "C:\\x\\solver.so"}), fake->freedLibraries);
    EXPECT_EQ("", trace.text());
}

TEST_F(LibrariesFaultsTest, ReleaseOfAllLeavesTheKeys)
{
    // Required, Q-823
    system.libraryLoad("C:\\x\\solver.so");
    system.libraryFreeAll();
    EXPECT_EQ("Cannot access symbol \"answer\" from Library: solver\nNot found\n",
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "answer"); }));
    EXPECT_EQ("Library already loaded: file://localhost/C:\\x\\solver.so",
              textOf<OperationFailedException>([&] { system.libraryLoad("C:\\x\\solver.so"); }));
    const TraceCapture trace(Trace::fail);
    system.libraryFree("solver");
    EXPECT_EQ("|-- Result of FreeLibrary: 0\n", trace.text());
    system.libraryLoad("C:\\x\\solver.so");
    EXPECT_EQ(&mAnswer, system.librarySymbol("solver", "answer"));
}

TEST_F(LibrariesFaultsTest, LibraryMayForgetItselfAndOthersWhileItIsReleased)
{
    system.libraryLoad("C:\\x\\solver.so");
    system.libraryLoad("C:\\x\\basis.so");
    fake->onFree = [&] {
        system.libraryFree("basis");
        system.libraryFree("solver");
    };
    system.libraryFreeAll();
    EXPECT_EQ((Texts{"C:\\x\\basis.so", "C:\\x\\solver.so"}), fake->freedLibraries);
    system.libraryLoad("C:\\x\\basis.so");
    system.libraryFree("basis");
    EXPECT_TRUE(fake->modules.empty());
}

TEST_F(LibrariesFaultsTest, SecondReleaseOfAllReleasesNothing)
{
    system.libraryLoad("C:\\x\\solver.so");
    system.libraryFreeAll();
    system.libraryFreeAll();
    EXPECT_EQ((Texts{"C:\\x\\solver.so"}), fake->freedLibraries);
}

TEST_F(LibrariesFaultsTest, EndOfTheSystemReleasesNothing)
{
    // Required, Q-820
    EXPECT_EXIT(
        {
            endReport.armed = true;
            system.libraryLoad("C:\\x\\solver.so");
            std::exit(2);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(LibrariesFaultsTest, EndOfTheSystemIsSeenByTheseTests)
{
    EXPECT_EXIT(
        {
            endReport.armed = true;
            system.libraryLoad("C:\\x\\solver.so");
            system.libraryFree("solver");
            std::exit(2);
        },
        ::testing::ExitedWithCode(1), "");
}

} // namespace
