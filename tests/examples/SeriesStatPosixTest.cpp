#include "SeriesStatRun.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace seriesstat
{

namespace
{

using KelvoBase::test::ChildOptions;
using KelvoBase::test::ChildResult;
using KelvoBase::test::contentOf;
using KelvoBase::test::runChild;
using KelvoBase::test::ScratchDirectory;

TEST(SeriesStatPosixTest, ReportThatCannotBeWrittenIsAFailure)
{
    const ChildResult run = runChild({"/bin/sh", "-c", R"(exec "$0" -qx -- "$1" > /dev/full)", SERIESSTAT_PROGRAM,
                                      SERIESSTAT_SOURCES "/data/michelson-1879.txt"});
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("The report could not be written.\nTry \"" SERIESSTAT_PROGRAM " --help\" for more information.\n",
              run.err);
}

TEST(SeriesStatPosixTest, SeriesIsReadFromAPipe)
{
    ChildOptions options;
    options.input = "1\n3\n";
    const ChildResult run = runChild({SERIESSTAT_PROGRAM, "-qx", "-smean,sd", "--digits=4", "/dev/stdin"}, options);
    EXPECT_EQ(0, run.status);
    EXPECT_EQ("x\n\n/dev/stdin\n  mean                   2.000\n  standard deviation     1.414\n", run.out);
    EXPECT_EQ("", run.err);
}

/// A run in the directory of a script that ends in `exec "$0"` with the arguments.
ChildResult runInShell(const std::string& script, const std::filesystem::path& directory)
{
    ChildOptions options;
    options.workingDirectory = directory.string();
    return runChild({"/bin/sh", "-c", script, SERIESSTAT_PROGRAM}, options);
}

TEST(SeriesStatPosixTest, TextsSurviveInEveryLocale)
{
    const ScratchDirectory scratch;
    scratch.write("\xC2\xB5.txt", "1\n2\n");
    for (const char* locale : {"C", "C.UTF-8", "POSIX", "none"}) {
        SCOPED_TRACE(locale);
        const std::string script = "export LC_ALL=" + std::string(locale) +
                                   R"(; "$0" -q '5 µ / m' --result µ.xml µ.txt >out &&
                                      exec "$0" -q '5 µ / m' --compare µ.xml µ.txt)";
        const ChildResult run = runInShell(script, scratch.path());
        EXPECT_EQ(0, run.status) << run.err;
        EXPECT_EQ("", run.err);
        EXPECT_NE(std::string::npos, run.out.find("\n  nothing changed\n")) << run.out;
        EXPECT_NE(std::string::npos, contentOf(scratch / "\xC2\xB5.xml").find(">5 \xC2\xB5 / m<"));
        EXPECT_NE(std::string::npos, contentOf(scratch / "\xC2\xB5.xml").find(">\xC2\xB5.txt<"));
    }
}

// Elsewhere a command line has characters, of which there is none for such a byte.
TEST(SeriesStatPosixTest, BytesThatAreNoCharactersCannotStandInAResult)
{
    const ScratchDirectory scratch;
    scratch.write("bad.txt", "one\n");
    const ChildResult run = test::runSeriesStat({"-q\xB5 / m", "--result=r.xml", "bad.txt"}, scratch.path());
    EXPECT_EQ(1, run.status);
    EXPECT_EQ("", run.out);
    EXPECT_EQ("\"\xB5 / m\" cannot stand in a file of results: there it has to be a text in UTF-8, of 8 kB at most "
              "and without control characters.\nTry \"seriesstat --help\" for more information.\n",
              run.err);
    EXPECT_FALSE(std::filesystem::exists(scratch / "r.xml"));
}

/// So many that the files of a run outgrow the limit, which is more than an instrumented program needs for its own.
void writeSeries(const ScratchDirectory& scratch, int count)
{
    std::filesystem::create_directory(scratch / "in");
    for (int i = 100; i < 100 + count; ++i) {
        scratch.write("in/" + std::to_string(i) + ".txt", "1\n2\n");
    }
}

/// 128 or 256 KiB, as the shell counts in blocks.
const std::string limited = R"(ulimit -f 256; trap '' XFSZ; exec "$0" -qx )";

TEST(SeriesStatPosixTest, FullDiskIsNoticedAndTheEarlierFilesStay)
{
    const ScratchDirectory scratch;
    writeSeries(scratch, 500);
    scratch.write("r.xml", "before\n");
    scratch.write("r.html", "before\n");
    for (const std::string option : {"--result=r.xml", "--report=r.html"}) {
        const ChildResult run = runInShell(limited + option + " in", scratch.path());
        EXPECT_EQ(1, run.status);
        EXPECT_EQ("", run.out);
        EXPECT_EQ("Cannot write to file \"" + option.substr(9) +
                      "\": File too large\nTry \"" SERIESSTAT_PROGRAM " --help\" for more information.\n",
                  run.err);
        EXPECT_EQ("before\n", contentOf(scratch / option.substr(9)));
    }
    EXPECT_FALSE(std::filesystem::exists(scratch / "r.xml.part"));
    EXPECT_FALSE(std::filesystem::exists(scratch / "r.html.part"));
}

TEST(SeriesStatPosixTest, FaultOfOneFileLeavesTheOtherAlone)
{
    const ScratchDirectory scratch;
    writeSeries(scratch, 150);
    scratch.write("r.xml", "before\n");
    const ChildResult run = runInShell(limited + "--result=r.xml --report=r.html in", scratch.path());
    EXPECT_EQ(1, run.status);
    EXPECT_TRUE(run.err.starts_with("Cannot write to file \"r.html\": File too large\n")) << run.err;
    EXPECT_EQ("before\n", contentOf(scratch / "r.xml"));
    EXPECT_FALSE(std::filesystem::exists(scratch / "r.html"));
}

TEST(SeriesStatPosixTest, PipeIsNoPlaceForAFile)
{
    const ScratchDirectory scratch;
    scratch.write("bad.txt", "one\n");
    ASSERT_EQ(0, mkfifo((scratch / "pipe").c_str(), 0600));
    std::filesystem::create_symlink("pipe", scratch / "link.tex");
    for (const std::string option : {"--result=pipe", "--report=link.tex"}) {
        const ChildResult run = runInShell("exec \"$0\" -qx " + option + " bad.txt", scratch.path());
        EXPECT_EQ(1, run.status);
        EXPECT_EQ("", run.out);
        EXPECT_TRUE(run.err.starts_with("\"" + option.substr(9) + "\" is no ordinary file.\n")) << run.err;
    }
    const ChildResult comparing = runInShell("exec \"$0\" -qx --compare=pipe bad.txt", scratch.path());
    EXPECT_EQ(1, comparing.status);
    EXPECT_TRUE(comparing.err.starts_with("pipe: This is no ordinary file.\n")) << comparing.err;
    EXPECT_TRUE(std::filesystem::is_fifo(scratch / "pipe"));
}

TEST(SeriesStatPosixTest, OutputNeverReplacesAnInputBehindALink)
{
    const ScratchDirectory scratch;
    scratch.write("a.txt", "1\n2\n");
    std::filesystem::create_symlink("a.txt", scratch / "soft.tex");
    std::filesystem::create_hard_link(scratch / "a.txt", scratch / "hard.xml");
    for (const std::string option : {"--result=hard.xml", "--report=soft.tex"}) {
        const ChildResult run = runInShell("exec \"$0\" -qx " + option + " a.txt", scratch.path());
        EXPECT_EQ(1, run.status);
        EXPECT_EQ("", run.out);
        EXPECT_TRUE(run.err.starts_with("Option " + option.substr(0, 8) + ": \"" + option.substr(9) +
                                        "\" is the same file as \"a.txt\", which would be lost.\n"))
            << run.err;
        EXPECT_EQ("1\n2\n", contentOf(scratch / "a.txt"));
    }
}

TEST(SeriesStatPosixTest, SeriesFromAPipeHasItsDigest)
{
    const ScratchDirectory scratch;
    const ChildResult run = runInShell(R"(echo 1 | "$0" -qx --result=r.xml /dev/stdin)", scratch.path());
    EXPECT_EQ(0, run.status) << run.err;
    EXPECT_NE(std::string::npos, contentOf(scratch / "r.xml").find(">e5fa44f2b31c1fb553b6021e7360d07d5d91ff5e<"));
}

TEST(SeriesStatPosixTest, ReportThatCannotBeShownLeavesTheResult)
{
    const ScratchDirectory scratch;
    scratch.write("a.txt", "1\n2\n");
    EXPECT_EQ(1, runInShell(R"(exec "$0" -qx --result=r.xml a.txt >/dev/full)", scratch.path()).status);
    EXPECT_TRUE(std::filesystem::exists(scratch / "r.xml"));
}

} // namespace

} // namespace seriesstat
