#include "ResultFile.h"
#include "SeriesStatRun.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>

namespace seriesstat
{

namespace
{

using KelvoBase::test::ChildResult;
using KelvoBase::test::contentOf;
using KelvoBase::test::ScratchDirectory;
using test::runSeriesStat;
using Arguments = std::vector<std::string>;

constexpr const char* hint = "Try \"seriesstat --help\" for more information.\n";

/// What the files of results, comparison and report do to a run, in a directory with two series.
class SeriesStatFilesTest : public ::testing::Test
{
protected:
    SeriesStatFilesTest()
    {
        mScratch.write("a.txt", "1\n2\n4\n");
        mScratch.write("b.txt", "5\n");
    }

    ChildResult run(const Arguments& arguments) const { return runSeriesStat(arguments, mScratch.path()); }
    /// Standard output of a run that succeeds, with the values of run times left out.
    std::string outputOf(const Arguments& arguments) const
    {
        const ChildResult result = run(arguments);
        EXPECT_EQ(0, result.status);
        EXPECT_EQ("", result.err);
        return std::regex_replace(result.out, std::regex("run time: [0-9.e-]+ s -> [0-9.e-]+ s"),
                                  "run time: T s -> T s");
    }
    /// A run that is refused with this message leaves everything as it was.
    void expectRefused(const Arguments& arguments, const std::string& message) const
    {
        const std::map<std::string, std::string> before = content();
        const ChildResult result = run(arguments);
        EXPECT_EQ(1, result.status);
        EXPECT_EQ("", result.out);
        EXPECT_EQ(message + "\n" + hint, result.err);
        EXPECT_EQ(before, content());
    }
    std::map<std::string, std::string> content() const
    {
        std::map<std::string, std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(mScratch.path())) {
            const std::string name = entry.path().lexically_relative(mScratch.path()).generic_string();
            all[name] = entry.is_regular_file() ? contentOf(entry.path()) : "directory";
        }
        return all;
    }

    const ScratchDirectory mScratch;
};

/// The text of a result with the entries that change from run to run as those of the golden one. Their form is part of
/// what is looked for: in another one they stay.
std::string withoutMoment(const std::string& text)
{
    const std::string day = std::regex_replace(text, std::regex(">\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d</when>"),
                                               ">2026-11-21 15:40:12</when>");
    return std::regex_replace(day, std::regex(">\\d+(\\.\\d{1,3})?</seconds>"), ">0.001</seconds>");
}

TEST_F(SeriesStatFilesTest, ResultIsTheGoldenOne)
{
    const std::string result = (mScratch / "r.xml").string();
    const ChildResult plain =
        runSeriesStat({"-q\xC2\xB5 / m", "-smean", "data/michelson-1879.txt"}, SERIESSTAT_SOURCES);
    const ChildResult both = runSeriesStat(
        {"-q\xC2\xB5 / m", "-smean", "--result", result, "data/michelson-1879.txt", "data/numacc/NumAcc1.txt"},
        SERIESSTAT_SOURCES);
    EXPECT_EQ(0, both.status);
    EXPECT_TRUE(both.out.starts_with(plain.out));
    EXPECT_EQ(contentOf(SERIESSTAT_SOURCES "/golden/result.xml"), withoutMoment(contentOf(result)));
}

TEST_F(SeriesStatFilesTest, ResultReadBackHasTheSameDoubles)
{
    outputOf({"-qx", "-smean", "--digits=2", "--result=r.xml", "a.txt", "b.txt"});
    const Results results = readResults((mScratch / "r.xml").string()).results;
    ASSERT_EQ(2U, results.series.size());
    const Summary expected = summarize({{1}, {2}, {4}});
    const Summary& read = results.series[0].summary;
    EXPECT_EQ(expected.mean, read.mean);
    EXPECT_EQ(expected.deviation, read.deviation);
    EXPECT_EQ(expected.autocorrelation, read.autocorrelation);
    EXPECT_EQ(expected.upperQuartile, read.upperQuartile);
    EXPECT_FALSE(results.series[1].summary.deviation);
    EXPECT_FALSE(results.series[1].summary.autocorrelation);
}

TEST_F(SeriesStatFilesTest, NothingChangedIsSaidBehindTheReport)
{
    const std::string report = "x\n\na.txt\n  mean                   2.3\n\nb.txt\n  mean                   5.0\n";
    const std::string when = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)";
    EXPECT_EQ(report, outputOf({"-qx", "-smean", "--digits=2", "--result=r.xml", "a.txt", "b.txt"}));
    const std::string out = outputOf({"-qx", "-smean", "--digits=2", "--compare=r.xml", "a.txt", "b.txt"});
    EXPECT_EQ(report + "\ncompared with r.xml of WHEN\n  nothing changed\n  run time: T s -> T s\n",
              std::regex_replace(out, std::regex(when), "WHEN"));
}

TEST_F(SeriesStatFilesTest, OneFileIsComparedAndThenRenewed)
{
    const Arguments renewing{"-qx", "-smean", "--digits=2", "--compare=r.xml", "--result=r.xml", "a.txt"};
    outputOf({"-qx", "--result=r.xml", "a.txt"});
    mScratch.write("a.txt", "1\n2\n6\n");
    EXPECT_NE(std::string::npos, outputOf(renewing).find("  a.txt: bytes changed, and statistics\n"
                                                         "    mean: 2.3333333333333335 -> 3\n"));
    EXPECT_NE(std::string::npos, outputOf(renewing).find("\n  nothing changed\n"));
}

TEST_F(SeriesStatFilesTest, EveryStatisticIsComparedWhateverIsShown)
{
    outputOf({"-qx", "-scount", "--result=r.xml", "a.txt"});
    mScratch.write("a.txt", "1\n2\n4.5\n");
    const std::string out = outputOf({"-qx", "-scount", "--compare=r.xml", "a.txt"});
    EXPECT_NE(std::string::npos, out.find("\n    maximum: 4 -> 4.5\n")) << out;
}

TEST_F(SeriesStatFilesTest, ReportsAreWritten)
{
    outputOf({"-qx", "--result=r.xml", "--report=r.html", "a.txt"});
    outputOf({"-qx", "--report=r.tex", "a.txt"});
    EXPECT_NE(std::string::npos, contentOf(mScratch / "r.html").find("</HTML>"));
    EXPECT_NE(std::string::npos, contentOf(mScratch / "r.tex").find("\\end{document}"));
}

TEST_F(SeriesStatFilesTest, ReportTellsWhatMadeIt)
{
    outputOf({"-qx", "--report=r.html", "a.txt"});
    const std::string report = contentOf(mScratch / "r.html");
    EXPECT_NE(std::string::npos, report.find("seriesstat 1.2 (Rev. 1), 20")) << report;
}

TEST_F(SeriesStatFilesTest, OutputNeverReplacesAnInput)
{
    const std::string same = "\" is the same file as \"";
    const std::string lost = "\", which would be lost.";
    mScratch.write("a.tex", "1\n");
    outputOf({"-qx", "--result=r.tex", "a.txt"});
    expectRefused({"-qx", "--result=a.txt", "a.txt"}, "Option --result: \"a.txt" + same + "a.txt" + lost);
    expectRefused({"-qx", "--result=./b.txt", "./"}, "Option --result: \"./b.txt" + same + "./b.txt" + lost);
    expectRefused({"-qx", "--result", (mScratch / "a.txt").string(), "b.txt", "a.txt"},
                  "Option --result: \"" + (mScratch / "a.txt").generic_string() + same + "a.txt" + lost);
    expectRefused({"-qx", "--report=a.tex", "a.tex"}, "Option --report: \"a.tex" + same + "a.tex" + lost);
    expectRefused({"-qx", "--report=r.tex", "--compare=r.tex", "a.txt"},
                  "Option --report: \"r.tex" + same + "r.tex" + lost);
    expectRefused({"-qx", "--report=n.tex", "--result=./n.tex", "a.txt"},
                  "Option --report: \"n.tex" + same + "./n.tex" + lost);
}

TEST_F(SeriesStatFilesTest, PlaceThatTakesNoFileIsRefusedBeforeAnythingIsRead)
{
    mScratch.write("bad.txt", "one\n");
    std::filesystem::create_directory(mScratch / "d.html");
    expectRefused({"-qx", "--result=none/r.xml", "bad.txt"}, "There is no directory for the file \"none/r.xml\".");
    expectRefused({"-qx", "--report=none/r.tex", "bad.txt"}, "There is no directory for the file \"none/r.tex\".");
    expectRefused({"-qx", "--report=d.html", "bad.txt"}, "\"d.html\" is no ordinary file.");
    expectRefused({"-qx", "--result=", "bad.txt"}, "There is no directory for the file \"\".");
    expectRefused({"-qx", "--result=http://host/r.xml", "bad.txt"},
                  "\"http://host/r.xml\" is not a (locally accessible) file or directory name.");
}

TEST_F(SeriesStatFilesTest, TextThatAResultCannotHoldIsRefusedBeforeAnythingIsRead)
{
    const std::string fault = " cannot stand in a file of results: there it has to be a text in UTF-8, of 8 kB at most "
                              "and without control characters.";
    mScratch.write("bad.txt", "one\n");
    expectRefused({"-qa\tb", "--result=r.xml", "bad.txt"}, "\"a?b\"" + fault);
    EXPECT_EQ(0, run({"-qa\tb", "a.txt"}).status);
}

TEST_F(SeriesStatFilesTest, BadSeriesLeavesNoFile)
{
    mScratch.write("bad.txt", "one\n");
    mScratch.write("r.xml", "before\n");
    expectRefused({"-qx", "--result=r.xml", "--report=r.tex", "a.txt", "bad.txt"},
                  "bad.txt:1: \"one\" is not a finite decimal number.");
}

TEST_F(SeriesStatFilesTest, BadEarlierResultEndsTheRunWithoutAnyResult)
{
    mScratch.write("bad.txt", "one\n");
    mScratch.write("r.xml", "before\n");
    expectRefused({"-qx", "--compare=none.xml", "bad.txt"}, "Cannot find file \"none.xml\".");
    expectRefused({"-qx", "--compare=r.xml", "bad.txt"}, "r.xml: This is no result of seriesstat.");
    expectRefused({"-qx", "--compare=r.xml", "--result=r.xml", "bad.txt"}, "r.xml: This is no result of seriesstat.");
    expectRefused({"-qx", "--compare=.", "a.txt"}, ".: This is no ordinary file.");
}

} // namespace

} // namespace seriesstat
