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

constexpr unsigned long moduleNotFound = 126;
constexpr unsigned long procedureNotFound = 127;
constexpr unsigned long badFormat = 193;

class LibrariesWin32Test : public ::testing::Test
{
protected:
    LibrariesWin32Test() { std::filesystem::copy_file(SOLVER_MODULE, scratch / "solver.dll"); }
    ~LibrariesWin32Test() override { system.libraryFree("solver"); }

    const test::TraceCapture trace{Trace::fail};
    const test::ScratchDirectory scratch;
    System& system = System::instance();
};

/// The two lines of a failure.
std::string twoLines(const std::string& first, unsigned long code)
{
    return first + "\n" + System::errorMsg(code) + "\n";
}

TEST_F(LibrariesWin32Test, MissingLibraryGivesTheSystemsText)
{
    const std::string path = scratch.location("missing.dll");
    EXPECT_EQ(twoLines("Cannot load Library: " + path, moduleNotFound),
              textOf<OperationFailedException>([&] { system.libraryLoad(path); }));
    EXPECT_EQ(0u, System::lastError());
}

TEST_F(LibrariesWin32Test, FileThatIsNoLibraryGivesTheSystemsText)
{
    scratch.write("text.dll", "This is a text and nothing that could be loaded.\n");
    const std::string path = scratch.location("text.dll");
    EXPECT_EQ(twoLines("Cannot load Library: " + path, badFormat),
              textOf<OperationFailedException>([&] { system.libraryLoad(path); }));
}

TEST_F(LibrariesWin32Test, MissingSymbolGivesTheSystemsText)
{
    system.libraryLoad(scratch.location("solver.dll"));
    EXPECT_EQ(twoLines("Cannot access symbol \"solverQuestion\" from Library: solver", procedureNotFound),
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "solverQuestion"); }));
    EXPECT_EQ(0u, System::lastError());
}

TEST_F(LibrariesWin32Test, SymbolOfAReleasedLibraryGivesTheSystemsText)
{
    system.libraryLoad(scratch.location("solver.dll"));
    system.libraryFreeAll();
    EXPECT_EQ(twoLines("Cannot access symbol \"solverAnswer\" from Library: solver", moduleNotFound),
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "solverAnswer"); }));
}

TEST_F(LibrariesWin32Test, EndingMayBeLeftOut)
{
    system.libraryLoad(scratch.location("solver"));
    EXPECT_NE(nullptr, system.librarySymbol("solver", "solverAnswer"));
}

TEST_F(LibrariesWin32Test, LibraryOfTheSystemIsFoundByItsName)
{
    system.libraryLoad("kernel32.dll");
    EXPECT_NE(nullptr, system.librarySymbol("kernel32", "GetLastError"));
    system.libraryFree("kernel32");
    EXPECT_EQ("|-- Result of FreeLibrary: 1\n", trace.text());
}

} // namespace
