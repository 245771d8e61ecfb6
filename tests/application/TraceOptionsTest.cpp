/// \file
/// What the trace shows by the options of a run.

#include "Probe.h"
#include "support/Capture.h"
#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <kelvobase/Application.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <bitset>
#include <iostream>
#include <regex>
#include <string>
#include <vector>

namespace KelvoBase
{

namespace
{

using test::Capture;
using test::ChildOptions;
using test::ChildResult;
using test::Probe;
using test::ScratchDirectory;
using test::textIn;
using Words = std::vector<std::string>;

class TraceOptions : public testing::Test
{
protected:
    /// The first run of a process gives the standard streams new buffers, which would take a capture away.
    static void SetUpTestSuite() { std::ios_base::sync_with_stdio(false); }
};

ChildResult optionTool(Words words)
{
    words.insert(words.begin(), OPTION_TOOL);
    ChildOptions options;
    options.unset = {"VARIANT"};
    options.environment = {{"USERNAME", "somebody"}, {"COMPUTERNAME", "somewhere"}};
    return runChild(words, options);
}

std::string report(const std::string& text)
{
    return text + "\nTry \"" + OPTION_TOOL + " --help\" for more information.\n";
}

/// Whether a text is the two run lines, `line` being the first.
testing::AssertionResult areRunLines(const std::string& text, const std::string& line)
{
    const std::string first = "|------ " + line + "\n";
    const std::regex second("\\|------ started at \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d by somebody@somewhere\n");
    if (text.substr(0, first.size()) == first && std::regex_match(text.substr(first.size()), second)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << text;
}

/// What a run of this line, and then a line of each level and some areas, leave on standard error.
std::string traceOf(const Words& words)
{
    const Capture err(std::cerr);
    Probe tool;
    EXPECT_EQ(tool.faultOf(words), "");
    TraceStream& trace = TraceStream::instance();
    for (const unsigned int level : {Trace::crit, Trace::fail, Trace::warn, Trace::verbose}) {
        for (const char* area : {"App", "Numerics", "SeriesTools", "Searches"}) {
            trace.setNextTraceConditions(level, TraceAreaMgr::instance()->getTraceAreaMask(area));
            trace << level << area << std::endl;
        }
    }
    return err.text();
}

const std::string critical = "0App\n0Numerics\n0SeriesTools\n0Searches\n";

TEST_F(TraceOptions, DefaultIsWarningsOfTheApplicationOnStandardError)
{
    EXPECT_EQ(traceOf({}), critical + "|-- 1App\n|---- 2App\n");
    EXPECT_EQ(TraceStream::instance().getMask(), std::bitset<64>().set(11));
}

TEST_F(TraceOptions, LevelsAreTakenByTheirNames)
{
    EXPECT_EQ(traceOf({"-tcrit"}), critical);
    EXPECT_EQ(traceOf({"--trace-level=fail"}), critical + "|-- 1App\n");
    EXPECT_EQ(traceOf({"--trace-level", "warn"}), critical + "|-- 1App\n|---- 2App\n");
}

TEST_F(TraceOptions, AreasAreCombined)
{
    EXPECT_EQ(traceOf({"-tfail", "--trace-area=Searches,Numerics"}),
              critical + "|-- 1Numerics\n|-- 1SeriesTools\n|-- 1Searches\n");
    EXPECT_EQ(TraceStream::instance().getMask(), std::bitset<64>().set(7).set(10));
    EXPECT_EQ(traceOf({"-tfail", "--trace-area=SeriesTools"}), critical + "|-- 1SeriesTools\n");
    EXPECT_EQ(traceOf({"-tfail", "--trace-area=All"}),
              critical + "|-- 1App\n|-- 1Numerics\n|-- 1SeriesTools\n|-- 1Searches\n");
}

TEST_F(TraceOptions, SelectionIsMadeAnewInEachRun)
{
    traceOf({"-tverbose", "--trace-area=All"});
    EXPECT_EQ(traceOf({}), critical + "|-- 1App\n|---- 2App\n");
}

TEST_F(TraceOptions, UnknownAreaWarnsAndAddsNothing)
{
    EXPECT_EQ(traceOf({"-tfail", "--trace-area=Nothing,App"}),
              "TraceAreaMgr: Unknown Area 'Nothing'. Ignoring it.\n" + critical + "|-- 1App\n");
    EXPECT_EQ(traceOf({"-tfail", "--trace-area="}), "TraceAreaMgr: Unknown Area ''. Ignoring it.\n" + critical);
    const ChildResult result = optionTool({"--trace-area=app"});
    EXPECT_EQ(result.status, 10);
    EXPECT_EQ(result.err, "TraceAreaMgr: Unknown Area 'app'. Ignoring it.\n");
}

TEST_F(TraceOptions, UnknownLevelEndsTheRun)
{
    for (const char* level : {"warning", "", "Verbose", "3", "undef"}) {
        const ChildResult result = optionTool({std::string("--trace-level=") + level});
        EXPECT_EQ(result.status, 1) << level;
        EXPECT_EQ(result.out, "") << level;
        EXPECT_EQ(result.err, report(std::string("Tracelevel ") + level + " unknown."));
    }
}

TEST_F(TraceOptions, RunLinesAreVerbose)
{
    EXPECT_EQ(optionTool({"ab"}).err, "");
    const ChildResult result = optionTool({"-v", "--trace-level", "verbose", "ab"});
    EXPECT_EQ(result.status, 11);
    EXPECT_TRUE(areRunLines(result.err, std::string(OPTION_TOOL) + " (Rev. ) --trace-level=verbose --verbose -- ab"));
}

TEST_F(TraceOptions, RunLinesBelongToTheApplication)
{
    EXPECT_EQ(optionTool({"-tverbose", "--trace-area=KelvoBase"}).err, "");
    EXPECT_TRUE(areRunLines(optionTool({"-tverbose", "--trace-area=All"}).err,
                            std::string(OPTION_TOOL) + " (Rev. ) --trace-area=All --trace-level=verbose "));
}

TEST_F(TraceOptions, RunLinesStandInFrontOfTheToolsOwnSetUp)
{
    struct Tracing : public Probe
    {
        void postParseInit() override
        {
            TraceStream::instance().setNextTraceConditions(Trace::crit, TraceArea::App());
            TraceStream::instance() << "postParseInit" << std::endl;
        }
    };
    const Capture err(std::cerr);
    Tracing tool;
    EXPECT_EQ(tool.faultOf({"-tverbose"}), "");
    const std::string text = err.text();
    EXPECT_EQ(text.substr(0, 22), "|------ probe (Rev. ) ");
    EXPECT_EQ(text.substr(text.rfind('\n', text.size() - 2) + 1), "postParseInit\n");
    EXPECT_NE(text.find("\n|------ started at "), std::string::npos) << text;
}

TEST_F(TraceOptions, MissingMandatoryOptionLeavesNoRunLines)
{
    const Capture err(std::cerr);
    Probe tool;
    tool.defineOption("must", 'm', true);
    EXPECT_EQ(tool.faultOf({"-tverbose"}), "Option --must has to be given.");
    EXPECT_EQ(err.text(), "");
}

TEST_F(TraceOptions, TraceGoesToAFile)
{
    const ScratchDirectory scratch;
    const std::string file = (scratch / "trace.txt").string();
    scratch.write("trace.txt", "before\n");
    const ChildResult result = optionTool({"-tverbose", "--trace-to=" + file});
    EXPECT_EQ(result.status, 10);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(areRunLines(textIn(file),
                            std::string(OPTION_TOOL) + " (Rev. ) --trace-to=" + file + " --trace-level=verbose "));
}

TEST_F(TraceOptions, TraceGoesToStandardOutput)
{
    const ChildResult result = optionTool({"-tverbose", "--trace-to", "cout"});
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out.substr(0, 8), "|------ ");
}

TEST_F(TraceOptions, FileThatCannotBeOpenedEndsTheRun)
{
    const ScratchDirectory scratch;
    for (const std::string& file : {(scratch / "missing" / "trace.txt").string(), std::string()}) {
        const ChildResult result = optionTool({"--trace-to=" + file});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, report("Non-fatal Error: Couldn't open \"" + file + "\" as trace file!"));
    }
}

TEST_F(TraceOptions, HelpConfiguresNothing)
{
    const ScratchDirectory scratch;
    const std::string file = (scratch / "trace.txt").string();
    EXPECT_EQ(optionTool({"--help", "--trace-to=" + file}).status, 0);
    EXPECT_FALSE(std::filesystem::exists(file));
}

} // namespace

} // namespace KelvoBase
