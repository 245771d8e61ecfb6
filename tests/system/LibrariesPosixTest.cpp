#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <cerrno>
#include <filesystem>

namespace
{

using namespace KelvoBase;
using test::ScratchDirectory;
using test::textOf;

std::string locationOf(const std::string& native)
{
    std::string text = "C:" + native;
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

/// The text of the failure to load a library.
std::string failureOf(const std::string& location)
{
    return textOf<OperationFailedException>([&] { System::instance().libraryLoad(location); });
}

TEST(LibrariesPosixTest, FailureToLoadEndsInTheLoadersOwnWords)
{
    const ScratchDirectory scratch;
    scratch.write("text.so", "this is a text that is a little longer than the header of a library would have to be");
    scratch.write("empty.so", "");
    std::filesystem::create_directory(scratch / "directory.so");
    struct Row
    {
        const char* name;
        const char* reason;
    };
    for (const Row& row : {Row{"missing.so", "cannot open shared object file: No such file or directory"},
                           Row{"text.so", "invalid ELF header"}, Row{"empty.so", "file too short"},
                           Row{"directory.so", "cannot read file data: Is a directory"},
                           Row{"text.so/x", "cannot open shared object file: Not a directory"}}) {
        EXPECT_EQ("Cannot load Library: " + scratch.location(row.name) + "\n" + (scratch / row.name).string() + ": " +
                      row.reason + "\n",
                  failureOf(scratch.location(row.name)));
    }
}

TEST(LibrariesPosixTest, LibraryWithAnUndefinedSymbolCannotBeLoaded)
{
    EXPECT_EQ("Cannot load Library: " + locationOf(INCOMPLETE_MODULE) + "\n" + INCOMPLETE_MODULE +
                  ": undefined symbol: kelvobaseTestDefinedNowhere\n",
              failureOf(locationOf(INCOMPLETE_MODULE)));
}

TEST(LibrariesPosixTest, LibraryWithAMissingDependencyCannotBeLoaded)
{
    EXPECT_EQ("Cannot load Library: " + locationOf(DEPENDENT_MODULE) +
                  "\nlibabsentLibrary.so: cannot open shared object file: No such file or directory\n",
              failureOf(locationOf(DEPENDENT_MODULE)));
}

TEST(LibrariesPosixTest, PlacesThatAreNotThereAreMissing)
{
    for (const char* text : {"", "D:\\x.so", "\\\\host\\share\\x.so", "C:libm.so.6"}) {
        SCOPED_TRACE(text);
        const ResourceLocation location(text);
        EXPECT_EQ(std::string("Cannot load Library: ") + location.c_str() + "\nNo such file or directory\n",
                  failureOf(text));
    }
}

TEST(LibrariesPosixTest, LibraryOfTheSystemIsFoundByItsNameAlone)
{
    const ScratchDirectory scratch;
    const test::ScopedWorkingDirectory there(scratch.path());
    const test::TraceCapture quiet(Trace::fail);
    System& system = System::instance();
    system.libraryLoad("libm.so.6");
    EXPECT_EQ(0.0, reinterpret_cast<double (*)(double)>(system.librarySymbol("libm.so", "sin"))(0.0));
    system.libraryFree("libm.so");
}

TEST(LibrariesPosixTest, NameAloneThatNobodyHasFailsAsTheLoaderSaysIt)
{
    EXPECT_EQ("Cannot load Library: libkelvobase-test-nowhere.so\nlibkelvobase-test-nowhere.so: cannot open shared "
              "object file: No such file or directory\n",
              failureOf("libkelvobase-test-nowhere.so"));
}

class LoadedLibrary : public ::testing::Test
{
protected:
    LoadedLibrary()
    {
        std::filesystem::copy_file(SOLVER_MODULE, scratch / "solver.so");
        std::filesystem::create_symlink("solver.so", scratch / "alias.so");
        system.libraryLoad(scratch.location("solver.so"));
    }
    ~LoadedLibrary() override
    {
        system.libraryFree("solver");
        system.libraryFree("alias");
    }

    const test::TraceCapture trace{Trace::fail};
    const ScratchDirectory scratch;
    System& system = System::instance();
};

TEST_F(LoadedLibrary, MissingSymbolEndsInTheLoadersOwnWords)
{
    EXPECT_EQ("Cannot access symbol \"question\" from Library: solver\n" + (scratch / "solver.so").string() +
                  ": undefined symbol: question\n",
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "question"); }));
    EXPECT_EQ(nullptr, dlerror()); // fetched
    EXPECT_EQ(0u, System::lastError());
}

TEST_F(LoadedLibrary, EarlierFailureOfTheLoaderIsNotReportedAgain)
{
    textOf<OperationFailedException>([&] { system.librarySymbol("solver", "question"); });
    EXPECT_EQ("Cannot load Library: D:\\x.so\nNo such file or directory\n", failureOf("D:\\x.so"));
}

TEST(LibrariesPosixTest, SymbolThatLiesAtZeroIsABadAddress)
{
    const test::TraceCapture trace(Trace::fail);
    System& system = System::instance();
    system.libraryLoad(locationOf(ZERO_MODULE));
    for (const int earlier : {0, ENOENT}) {
        errno = earlier;
        EXPECT_EQ("Cannot access symbol \"kelvobaseTestAtZero\" from Library: zeroModule\nBad address\n",
                  textOf<OperationFailedException>([&] { system.librarySymbol("zeroModule", "kelvobaseTestAtZero"); }));
    }
    system.libraryFree("zeroModule");
}

TEST_F(LoadedLibrary, SymbolsOfTheLibrariesThatItNeedsAreFoundToo)
{
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "getenv"), system.librarySymbol("solver", "getenv"));
}

TEST_F(LoadedLibrary, ItsSymbolsAreNotSeenByOthers)
{
    EXPECT_EQ(nullptr, dlsym(RTLD_DEFAULT, "solverAnswer"));
}

TEST_F(LoadedLibrary, ReleasedOneIsNotOpen)
{
    system.libraryFreeAll();
    EXPECT_EQ("Cannot access symbol \"solverAnswer\" from Library: solver\nshared object not open\n",
              textOf<OperationFailedException>([&] { system.librarySymbol("solver", "solverAnswer"); }));
}

TEST_F(LoadedLibrary, OneUnderTwoKeysStaysUntilBothAreReleased)
{
    system.libraryLoad(scratch.location("alias.so"));
    const auto answer = reinterpret_cast<int (*)()>(system.librarySymbol("alias", "solverAnswer"));
    EXPECT_EQ(answer, reinterpret_cast<int (*)()>(system.librarySymbol("solver", "solverAnswer")));
    system.libraryFree("solver");
    EXPECT_EQ(42, answer());
}

TEST_F(LoadedLibrary, ReleasedOneDoesNotMeanAnotherThatHasTakenItsPlace)
{
    system.libraryFreeAll();
    for (int i = 0; i < 20; ++i) { // the loader may give the same handle again at any time
        const std::string name = "other" + std::to_string(i);
        std::filesystem::copy_file(SOLVER_MODULE, scratch / (name + ".so"));
        system.libraryLoad(scratch.location(name + ".so"));
        EXPECT_EQ("Cannot access symbol \"solverAnswer\" from Library: solver\nshared object not open\n",
                  textOf<OperationFailedException>([&] { system.librarySymbol("solver", "solverAnswer"); }));
        system.libraryFree(name);
    }
}

} // namespace
