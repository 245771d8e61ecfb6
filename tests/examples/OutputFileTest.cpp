#include "OutputFile.h"

#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

namespace seriesstat
{

namespace
{

using KelvoBase::RuntimeException;
using KelvoBase::test::contentOf;
using KelvoBase::test::ScopedWorkingDirectory;
using KelvoBase::test::ScratchDirectory;
using KelvoBase::test::textOf;

std::size_t entriesIn(const ScratchDirectory& directory)
{
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(directory.path())) {
        ++count;
    }
    return count;
}

TEST(OutputFileTest, FileAppearsWhenItIsFinished)
{
    const ScratchDirectory scratch;
    OutputFile file((scratch / "a.txt").string());
    file.write("one\n");
    EXPECT_FALSE(std::filesystem::exists(scratch / "a.txt"));
    file.finish();
    EXPECT_EQ("one\n", contentOf(scratch / "a.txt"));
    EXPECT_EQ(1U, entriesIn(scratch));
}

TEST(OutputFileTest, EarlierFileStaysUntilTheNewOneIsFinished)
{
    const ScratchDirectory scratch;
    scratch.write("a.txt", "before\n");
    {
        const OutputFile file((scratch / "a.txt").string());
        file.write("unfinished\n");
        EXPECT_EQ(2U, entriesIn(scratch));
    }
    EXPECT_EQ("before\n", contentOf(scratch / "a.txt"));
    EXPECT_EQ(1U, entriesIn(scratch));
    OutputFile file((scratch / "a.txt").string());
    file.write("after\n");
    file.finish();
    EXPECT_EQ("after\n", contentOf(scratch / "a.txt"));
    EXPECT_EQ(1U, entriesIn(scratch));
}

TEST(OutputFileTest, FilesThatAreThereStay)
{
    const ScratchDirectory scratch;
    scratch.write("a.txt.part", "mine\n");
    scratch.write("a.txt.part2", "mine, too\n");
    OutputFile file((scratch / "a.txt").string());
    file.write("new\n");
    file.finish();
    EXPECT_EQ("mine\n", contentOf(scratch / "a.txt.part"));
    EXPECT_EQ("mine, too\n", contentOf(scratch / "a.txt.part2"));
    EXPECT_EQ(3U, entriesIn(scratch));
}

TEST(OutputFileTest, SameFileIsKnownByAnyPath)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    scratch.write("d/a.txt", "1\n");
    EXPECT_TRUE(isSameFile("d/a.txt", "d/../d/a.txt"));
    EXPECT_TRUE(isSameFile("d/a.txt", (scratch / "d/a.txt").string()));
    EXPECT_TRUE(isSameFile("d/new.txt", "./d/new.txt"));
    EXPECT_TRUE(isSameFile("new.txt", (scratch / "new.txt").string()));
    EXPECT_FALSE(isSameFile("d/a.txt", "d/b.txt"));
    EXPECT_FALSE(isSameFile("d/new.txt", "new.txt"));
    EXPECT_FALSE(isSameFile("none/new.txt", "none/newer.txt"));
}

TEST(OutputFileTest, PlaceThatTakesNoFileIsRefused)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    scratch.write("d/a.txt", "1\n");
    EXPECT_NO_THROW(checkPlace("d/a.txt"));
    EXPECT_NO_THROW(checkPlace("d/new.txt"));
    EXPECT_NO_THROW(checkPlace("new.txt"));
    EXPECT_EQ("\"d\" is no ordinary file.", textOf<RuntimeException>([] { checkPlace("d"); }));
    EXPECT_EQ("There is no directory for the file \"none/new.txt\".",
              textOf<RuntimeException>([] { checkPlace("none/new.txt"); }));
    EXPECT_EQ("There is no directory for the file \"d/a.txt/new.txt\".",
              textOf<RuntimeException>([] { checkPlace("d/a.txt/new.txt"); }));
    EXPECT_EQ("There is no directory for the file \"\".", textOf<RuntimeException>([] { checkPlace(""); }));
}

} // namespace

} // namespace seriesstat
