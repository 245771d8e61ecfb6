#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

using namespace KelvoBase;
using test::textOf;

/// A directory with two copies of one library, which write down when they come and go.
class LibrariesTest : public ::testing::Test
{
protected:
    LibrariesTest()
    {
        for (const char* directory : {"a", "b"}) {
            std::filesystem::create_directory(scratch / directory);
            std::filesystem::copy_file(SOLVER_MODULE, scratch / directory / "solver.so");
        }
    }
    ~LibrariesTest() override { System::instance().libraryFree("solver"); }

    ResourceLocation library(const std::string& directory) const { return scratch.location(directory + "/solver.so"); }
    std::string log() const { return std::filesystem::exists(scratch / "log") ? test::contentOf(scratch / "log") : ""; }
    int answer() { return reinterpret_cast<int (*)()>(system.librarySymbol("solver", "solverAnswer"))(); }
    int& calls() { return *static_cast<int*>(system.librarySymbol("solver", "solverCalls")); }

    const test::TraceCapture trace{Trace::fail};
    const test::ScratchDirectory scratch;
    const test::ScopedEnvironment logPath{"KELVOBASE_MODULE_LOG", (scratch / "log").string()};
    System& system = System::instance();
};

TEST_F(LibrariesTest, FunctionsAndObjectsOfALoadedLibraryCanBeUsed)
{
    system.libraryLoad(library("a"));
    EXPECT_EQ(42, answer());
    EXPECT_EQ(42, answer());
    EXPECT_EQ(2, calls());
}

TEST_F(LibrariesTest, StaticObjectsLiveFromLoadToRelease)
{
    EXPECT_EQ("", log());
    system.libraryLoad(library("a"));
    EXPECT_EQ("loaded\n", log());
    system.libraryFree("solver");
    EXPECT_EQ("loaded\nreleased\n", log());
}

TEST_F(LibrariesTest, ReleaseIsTraced)
{
    system.libraryLoad(library("a"));
    EXPECT_EQ("", trace.text());
    system.libraryFree("solver");
    system.libraryFree("solver");
    EXPECT_EQ("|-- Result of FreeLibrary: 1\n", trace.text());
}

TEST_F(LibrariesTest, LibraryOfTheSameBaseNameCountsAsLoaded)
{
    system.libraryLoad(library("a"));
    EXPECT_EQ("Library already loaded: " + library("b").str(),
              textOf<OperationFailedException>([&] { system.libraryLoad(library("b")); }));
    EXPECT_EQ("loaded\n", log());
}

TEST_F(LibrariesTest, ReleasedLibraryCanBeLoadedAnew)
{
    system.libraryLoad(library("a"));
    answer();
    system.libraryFree("solver");
    system.libraryLoad(library("b"));
    EXPECT_EQ(0, calls());
    EXPECT_EQ("loaded\nreleased\nloaded\n", log());
}

TEST_F(LibrariesTest, RelativeLocationIsOneInTheWorkingDirectory)
{
    const test::ScopedWorkingDirectory there(scratch.path());
    system.libraryLoad("a/solver.so");
    EXPECT_EQ(42, answer());
}

TEST_F(LibrariesTest, NameAloneIsOneInTheWorkingDirectory)
{
    const test::ScopedWorkingDirectory there(scratch / "a");
    system.libraryLoad("solver.so");
    EXPECT_EQ(42, answer());
}

TEST_F(LibrariesTest, MissingFileIsAFailureOfTwoLines)
{
    const std::string text = textOf<OperationFailedException>([&] { system.libraryLoad(library("c")); });
    const std::string head = "Cannot load Library: " + scratch.location("c/solver.so") + "\n";
    EXPECT_EQ(head, text.substr(0, head.size()));
    EXPECT_EQ(text.size() - 1, text.find('\n', head.size()));
    EXPECT_EQ(0u, System::lastError());
}

TEST_F(LibrariesTest, EmptyLocationIsAFailure)
{
    const std::string text = textOf<OperationFailedException>([&] { system.libraryLoad(""); });
    EXPECT_EQ("Cannot load Library: \n", text.substr(0, 22));
}

TEST_F(LibrariesTest, MissingSymbolIsAFailureOfTwoLines)
{
    system.libraryLoad(library("a"));
    const std::string text =
        textOf<OperationFailedException>([&] { system.librarySymbol("solver", "solverQuestion"); });
    const std::string head = "Cannot access symbol \"solverQuestion\" from Library: solver\n";
    EXPECT_EQ(head, text.substr(0, head.size()));
    EXPECT_EQ(text.size() - 1, text.find('\n', head.size()));
    EXPECT_EQ(42, answer()); // and nothing else happened
}

TEST_F(LibrariesTest, ReleaseOfAllLeavesTheKeysAndTheirSymbolsMissing)
{
    // Required, Q-823
    system.libraryLoad(library("a"));
    system.libraryFreeAll();
    EXPECT_EQ("loaded\nreleased\n", log());
    const std::string head = "Cannot access symbol \"solverAnswer\" from Library: solver\n";
    EXPECT_EQ(head, textOf<OperationFailedException>([&] { answer(); }).substr(0, head.size()));
    EXPECT_EQ("Library already loaded: " + library("a").str(),
              textOf<OperationFailedException>([&] { system.libraryLoad(library("a")); }));
    system.libraryFreeAll();
    system.libraryFree("solver");
    EXPECT_EQ("|-- Result of FreeLibrary: 0\n", trace.text());
    EXPECT_EQ("loaded\nreleased\n", log());
}

} // namespace
