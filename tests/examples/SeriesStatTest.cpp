#include "SeriesStatRun.h"

#include <kelvobase/Strings.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

namespace seriesstat
{

namespace
{

using KelvoBase::test::ChildResult;
using KelvoBase::test::contentOf;
using KelvoBase::test::ScratchDirectory;
using test::runSeriesStat;

// Runs on the example's own data. A file of the folder golden is the transcript of one run: the command line, standard
// output, standard error behind a mark if there is any, and the status. Run times, which are never the same, are
// replaced by "T". A new file *.txt there is a new test.

std::vector<std::string> wordsOf(const std::string& command)
{
    std::vector<std::string> words;
    KelvoBase::split(command, words, " ", "", "\"");
    return words;
}

std::string transcriptOf(const std::string& commandLine)
{
    const std::vector<std::string> words = wordsOf(commandLine);
    const ChildResult run = runSeriesStat({words.begin() + 2, words.end()}, SERIESSTAT_SOURCES);
    const std::regex times("run time: [0-9.e-]+ s -> [0-9.e-]+ s");
    const std::string out = std::regex_replace(run.out, times, "run time: T s -> T s");
    return commandLine + "\n" + out + (run.err.empty() ? "" : "[standard error]\n" + run.err) + "[status " +
           std::to_string(run.status) + "]\n";
}

std::vector<std::filesystem::path> goldenFiles()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(SERIESSTAT_SOURCES "/golden")) {
        if (entry.path().extension() == ".txt") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

class SeriesStatGoldenTest : public ::testing::TestWithParam<std::filesystem::path>
{
};

TEST_P(SeriesStatGoldenTest, TranscriptIsTheExpectedOne)
{
    const std::string expected = contentOf(GetParam());
    const std::string commandLine = expected.substr(0, expected.find('\n'));
    ASSERT_TRUE(commandLine.starts_with("$ seriesstat "));
    EXPECT_EQ(expected, transcriptOf(commandLine));
}

INSTANTIATE_TEST_SUITE_P(Runs, SeriesStatGoldenTest, ::testing::ValuesIn(goldenFiles()),
                         [](const auto& run) { return run.param.stem().string(); });

// Faults, in a directory of their own.

constexpr const char* hint = "Try \"seriesstat --help\" for more information.\n";

ScratchDirectory& badData()
{
    static ScratchDirectory directory;
    static const bool written = [] {
        directory.write("good.txt", "1\n2\n");
        directory.write("word.txt", "# head\n1\ntwo\n3\n");
        directory.write("empty.txt", "");
        directory.write("blank.txt", "\n# nothing\n\n");
        directory.write("huge.txt", "1\n1e999\n");
        directory.write("nan.txt", "nan\n");
        directory.write("inf.txt", "1\n-inf\n");
        directory.write("wide.txt", "1.7e308\n-1.7e308\n");
        directory.write("table.csv", "a,b\n1,2\n3\n");
        directory.write("mixed/good.txt", "1\n2\n");
        directory.write("mixed/sub/word.txt", "one\n");
        directory.write("hidden/.only", "1\n");
        return true;
    }();
    EXPECT_TRUE(written);
    return directory;
}

struct Fault
{
    std::vector<std::string> arguments;
    std::string message;
};

void expectFaults(const std::vector<Fault>& rows)
{
    for (const Fault& row : rows) {
        SCOPED_TRACE(KelvoBase::join(row.arguments, " "));
        const ChildResult run = runSeriesStat(row.arguments, badData().path());
        EXPECT_EQ(1, run.status);
        EXPECT_EQ("", run.out);
        EXPECT_EQ(row.message + "\n" + hint, run.err);
    }
}

TEST(SeriesStatTest, BadDataEndTheRunWithoutAnyResult)
{
    expectFaults({
        {{"-qx", "good.txt", "word.txt"}, "word.txt:3: \"two\" is not a finite decimal number."},
        {{"-qx", "empty.txt"}, "empty.txt: There are no numbers."},
        {{"-qx", "good.txt", "blank.txt"}, "blank.txt: There are no numbers."},
        {{"-qx", "huge.txt"}, "huge.txt:2: \"1e999\" is out of the range of numbers."},
        {{"-qx", "nan.txt"}, "nan.txt:1: \"nan\" is not a finite decimal number."},
        {{"-qx", "inf.txt"}, "inf.txt:2: \"-inf\" is not a finite decimal number."},
        {{"-qx", "wide.txt"}, "wide.txt: The standard deviation is out of the range of numbers."},
        {{"-qx", "table.csv"}, "table.csv:1: \"a,b\" is not a finite decimal number."},
        {{"-qx", "--csv", "-c2", "table.csv"}, "table.csv:1: \"b\" is not a finite decimal number."},
        {{"-qx", "--csv", "-c2", "--header", "table.csv"},
         "table.csv:3: There is no such column. Limit is 1, but it was 2."},
        {{"-qx", "-c2", "good.txt"}, "good.txt:1: There is no such column. Limit is 1, but it was 2."},
        {{"-qx", "mixed"}, "mixed/sub/word.txt:1: \"one\" is not a finite decimal number."},
    });
}

TEST(SeriesStatTest, WhatCannotBeFoundEndsTheRunWithoutAnyResult)
{
    expectFaults({
        {{"-qx", "none.txt"}, "Cannot find file \"none.txt\"."},
        {{"-qx", "good.txt", "no/such/directory/"}, "Cannot find file \"no/such/directory/\"."},
        {{"-qx", "--", ""}, "Cannot find file \"\"."},
        {{"-qx", "hidden"}, "\"hidden\" holds no files."},
        {{"-qx", "--suffix=dat,csv", "mixed/"}, "\"mixed/\" holds no files with such a suffix."},
        {{"-qx", "ftp://host/good.txt"},
         "\"ftp://host/good.txt\" is not a (locally accessible) file or directory name."},
        {{"-qx", "//host"}, "File name is invalid: \"//host\": there is no path behind the host"},
    });
}

TEST(SeriesStatTest, BadCommandLineEndsTheRun)
{
    expectFaults({
        {{"good.txt"},
         "Option --quantity has to be given, or \"quantity\" set in section \"report\" of the configuration: a number "
         "without its quantity and unit is no result."},
        {{"-qx"}, "Which series? Give at least one file or directory, or --sample."},
        {{"-qx", "g"}, "Which series? Give at least one file or directory, or --sample."},
        {{"--quantity= ", "good.txt"},
         "Option --quantity: \" \" does not fit. Expected is what was measured, with its unit."},
        {{"-qx", "--csv", "--delimiter=;", "-c1", "good.txt"},
         "One cannot specify \"--csv\" together with \"--delimiter\" !"},
        {{"-qx", "--csv", "good.txt"}, "Which column? With --csv or --delimiter, --column has to be given."},
        {{"-qx", "--delimiter=;", "good.txt"}, "Which column? With --csv or --delimiter, --column has to be given."},
        {{"-qx", "--delimiter=", "-c1", "good.txt"},
         "Option --delimiter: \"\" does not fit. Expected is blanks, tab, csv, or characters that are neither letters "
         "nor a part of a number."},
        {{"-qx", "--delimiter=;.", "-c1", "good.txt"},
         "Option --delimiter: \";.\" does not fit. Expected is blanks, tab, csv, or characters that are neither "
         "letters nor a part of a number."},
        {{"-qx", "--header", "--no-header", "good.txt"},
         "One cannot specify \"--header\" together with \"--no-header\" !"},
        {{"-qx", "--comment=-", "good.txt"},
         "Option --comment: \"-\" does not fit. Expected is none, hash for the sign #, or a text that is no part of a "
         "number."},
        {{"-qx", "-c", "-1", "good.txt"},
         "Option --column: \"-1\" does not fit. Expected is a column, counted from 1, or 0 for lines of one number."},
        {{"-qx", "-c2,3", "good.txt"}, "Could not convert \"2,3\" to the needed type \"int\""},
        {{"-qx", "-c", "good.txt"}, "Could not convert \"good.txt\" to the needed type \"int\""},
        {{"-qx", "--digits=0", "good.txt"},
         "Option --digits: \"0\" does not fit. Expected is a whole number from 1 to 17."},
        {{"-qx", "--digits=18", "good.txt"},
         "Option --digits: \"18\" does not fit. Expected is a whole number from 1 to 17."},
        {{"-qx", "--digits=", "good.txt"}, "Could not convert \"\" to the needed type \"int\""},
        {{"-qx", "--digits=99999999999", "good.txt"}, "Could not convert \"99999999999\" to the needed type \"int\""},
        {{"-qx", "--stats=mean,mode", "good.txt"},
         "Option --stats: \"mean, mode\" does not fit. Expected is all, or some of count, mean, sd, lag1, min, q1, "
         "median, q3, max."},
        {{"-qx", "--stats=", "good.txt"},
         "Option --stats: \"\" does not fit. Expected is all, or some of count, mean, sd, lag1, min, q1, median, q3, "
         "max."},
        {{"-qx", "--report=r.pdf", "good.txt"}, "Option --report takes the name of a file that ends in .html or .tex."},
        {{"-qx", "--report=", "good.txt"}, "Option --report takes the name of a file that ends in .html or .tex."},
        {{"-qx", "--sort", "good.txt"}, "Unknown option sort!"},
        {{"-qx", "--trace-level=loud", "good.txt"}, "Tracelevel loud unknown."},
    });
}

TEST(SeriesStatTest, ZeroIsTheColumnOfLinesOfOneNumber)
{
    const ChildResult run = runSeriesStat({"-qx", "-smean", "--digits=2", "-c0", "good.txt"}, badData().path());
    EXPECT_EQ("x\n\ngood.txt\n  mean                   1.5\n", run.out);
    EXPECT_EQ("", run.err);
}

TEST(SeriesStatTest, BlanksNeedNoColumn)
{
    EXPECT_EQ(0, runSeriesStat({"-qx", "--delimiter=blanks", "good.txt"}, badData().path()).status);
}

TEST(SeriesStatTest, FileOfOneCharacterStandsBehindTwoDashes)
{
    badData().write("g", "5\n");
    const ChildResult run = runSeriesStat({"-qx", "-smean", "--digits=2", "--", "g"}, badData().path());
    std::filesystem::remove(badData() / "g");
    EXPECT_EQ(0, run.status);
    EXPECT_EQ("x\n\ng\n  mean                   5.0\n", run.out);
    EXPECT_EQ("", run.err);
}

} // namespace

} // namespace seriesstat
