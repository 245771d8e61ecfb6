/// \file
/// What a user sees of tools that end: both streams, byte for byte, and the status.

#include "support/ChildProcess.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace KelvoBase
{

namespace
{

using test::ChildOptions;
using test::ChildResult;
using test::runChild;
using Words = std::vector<std::string>;
using Settings = std::vector<std::pair<std::string, std::string>>;

ChildResult run(const char* tool, Words words, const Settings& settings = {})
{
    words.insert(words.begin(), tool);
    ChildOptions options;
    options.unset = {"VARIANT", "FAIL_IN", "FAIL_WITH", "ERROR_RETURNS"};
    options.environment = settings;
    return runChild(words, options);
}

ChildResult optionTool(const std::string& variant, const Words& words)
{
    return run(OPTION_TOOL, words, {{"VARIANT", variant}});
}

std::string hint(const std::string& program)
{
    return "Try \"" + program + " --help\" for more information.\n";
}

/// What standard error shows of a fault of the user.
std::string report(const std::string& text)
{
    return text + "\n" + hint(OPTION_TOOL);
}

const std::string defaults = "out=-\nint=1\nunsigned=2\nlong=3\nulong=4\ndouble=0.5\nbool=1\nbit64=0x00000000000000FF\n"
                             "names=\nints=\ndoubles=\n";

TEST(ExitStatus, ResultOfTheWorkIsTheStatus)
{
    const ChildResult result = optionTool("", {"ab", "--", "c"});
    EXPECT_EQ(result.status, 12);
    EXPECT_EQ(result.out, std::string(OPTION_TOOL) + " (Rev. ) -- ab c\n" + defaults + "positional ab\npositional c\n");
    EXPECT_EQ(result.err, "");
}

TEST(ExitStatus, ValuesOfEveryKindAreReadFromTheLine)
{
    const ChildResult result =
        optionTool("", {"-vofile", "--int=-7", "-u8", "--long", "-9", "-L", "10", "-d1.5e3", "--bool=-", "-B", "0xABC",
                        "--names=a,b,,c", "-I1,2,3", "--doubles", "0.5,2"});
    EXPECT_EQ(result.status, 10);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, std::string(OPTION_TOOL) +
                              " (Rev. ) --bit64=0x0000000000000ABC --bool=0 --double=1500 --doubles=0.5,2 --int=-7 "
                              "--ints=1,2,3 --long=-9 --ulong=10 --names=a,b,,c --out=file --unsigned=8 --verbose \n"
                              "out=file\nint=-7\nunsigned=8\nlong=-9\nulong=10\ndouble=1500\nbool=0\n"
                              "bit64=0x0000000000000ABC\nnames=a,b,,c\nints=1,2,3\ndoubles=0.5,2\n");
}

struct Fault
{
    Words words;
    std::string text;
};

void expectFaults(const std::string& variant, const std::vector<Fault>& faults)
{
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.text);
        const ChildResult result = optionTool(variant, fault.words);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, report(fault.text));
    }
}

TEST(ExitStatus, FaultsOfTheLineGiveOne)
{
    expectFaults("", {
                         {{"--nothing=x"}, "Unknown option nothing!"},
                         {{"--=x"}, "Unknown option !"},
                         {{"-x"}, "Unknown option -x!"},
                         {{"-5"}, "Unknown option -5!"},
                         {{"--verbose", "--verbose"}, "Option --verbose given more than once."},
                         {{"--verbose", "-v"}, "Option -v given more than once."},
                         {{"--out"}, "Option --out needs an argument!"},
                         {{"-vo"}, "Option -o needs an argument!"},
                     });
}

TEST(ExitStatus, TextsThatDoNotFitGiveOne)
{
    const std::string text = WrongTypeException::demangle(typeid(std::string));
    expectFaults("", {
                         {{"--int=x"}, "Could not convert \"x\" to the needed type \"int\""},
                         {{"-u", ""}, "Could not convert \"\" to the needed type \"unsigned int\""},
                         {{"-lx"}, "Could not convert \"x\" to the needed type \"long\""},
                         {{"-Lx"}, "Could not convert \"x\" to the needed type \"unsigned long\""},
                         {{"-d."}, "Could not convert \".\" to the needed type \"double\""},
                         {{"-bTrue"}, "Could not convert \"True\" to the needed type \"bool\""},
                         {{"-B0X1"}, "Could not convert \"0X1\" to the needed type \"unsigned long long\""},
                         {{"-I1,x"}, "Could not convert \"1,x\" to the needed type \"int\""},
                         {{"-I,1"}, "Could not convert \",1\" to the needed type \"int\""},
                         {{"--names", ",a"}, "Could not convert \",a\" to the needed type \"" + text + "\""},
                         {{"-n,"}, "Could not convert \",\" to the needed type \"" + text + "\""},
                         {{"--doubles="}, "Could not convert \"\" to the needed type \"double\""},
                         {{"--trace-area=,App"}, "Could not convert \",App\" to the needed type \"" + text + "\""},
                     });
}

TEST(ExitStatus, ExcludedPairGivesOne)
{
    expectFaults("exclusions", {
                                   {{"-rg"}, "One cannot specify \"--red\" together with \"--green\" !"},
                                   {{"-rgy"}, "One cannot specify \"--yellow\" together with \"--red\" !"},
                                   {{"-rg", "--help"}, "One cannot specify \"--red\" together with \"--green\" !"},
                               });
    EXPECT_EQ(optionTool("exclusions", {"-gy"}).status, 10);
}

TEST(ExitStatus, MissingMandatoryOptionGivesOne)
{
    expectFaults("mandatory", {
                                  {{}, "Option --must has to be given."},
                                  {{"--must"}, "Option --zeta has to be given."},
                                  {{"-z1"}, "Option --must has to be given."},
                              });
    EXPECT_EQ(optionTool("mandatory", {"-z1", "--must"}).status, 10);
}

TEST(ExitStatus, FaultOfTheLineWinsOverHelpAndHelpOverMandatoryOptions)
{
    // Required, Q-112
    expectFaults("mandatory", {
                                  {{"--help", "--nothing"}, "Unknown option nothing!"},
                                  {{"--version", "-zx"}, "Could not convert \"x\" to the needed type \"int\""},
                                  {{"--help", "--help"}, "Option --help given more than once."},
                              });
    for (const char* word : {"--help", "--help=1", "--version"}) {
        const ChildResult result = optionTool("mandatory", {word});
        EXPECT_EQ(result.status, 0) << word;
        EXPECT_EQ(result.err, "") << word;
    }
}

TEST(ExitStatus, HelpWinsOverVersionAndBothWinOverABadTraceLevel)
{
    const std::string help = optionTool("", {"--help"}).out;
    const std::string version = optionTool("", {"--version"}).out;
    EXPECT_EQ(optionTool("", {"--version", "--help", "-tx"}).out, help);
    EXPECT_EQ(optionTool("", {"--version", "-tx"}).out, version);
    EXPECT_EQ(help.find("Usage"), std::string::npos);
    EXPECT_EQ(help.substr(0, std::string(OPTION_TOOL).size()), OPTION_TOOL);
    EXPECT_EQ(version, "optiontool, Version 1 (Rev. ) \n(c) NOW Ostrelle\n\n"
                       "optiontool is based on the DRAVO library.\n(c) 1999-NOW Ostrelle\n");
}

TEST(ExitStatus, WithoutStandardStreamsTheTextIsLostAndTheStatusStays)
{
    for (const auto& [words, status] : std::vector<std::pair<Words, int>>{{{"--help"}, 0},
                                                                          {{"--version"}, 0},
                                                                          {{"-x"}, 1},
                                                                          {{"--int=x"}, 1},
                                                                          {{"--trace-level=x"}, 1},
                                                                          {{"--trace-area=nothing"}, 10}}) {
        const ChildResult result = optionTool("silent", words);
        EXPECT_EQ(result.status, status) << words[0];
        EXPECT_EQ(result.err, "") << words[0];
        if (status != 10) {
            EXPECT_EQ(result.out, "") << words[0];
        }
    }
}

TEST(ExitStatus, FaultEndsTheProcessWhereErrorReturns)
{
    const std::vector<Fault> faults = {
        {{"--nothing"}, "Unknown option nothing!"},
        {{"-x"}, "Unknown option -x!"},
        {{"-vv"}, "Option -v given more than once."},
        {{"--verbose", "--verbose"}, "Option --verbose given more than once."},
        {{"--out"}, "Option --out needs an argument!"},
        {{"-o"}, "Option -o needs an argument!"},
        {{"-ix"}, "Could not convert \"x\" to the needed type \"int\""},
        {{"--trace-level=x"}, "Tracelevel x unknown."},
        {{}, "checked"},
    };
    for (const Fault& fault : faults) {
        const ChildResult result = optionTool("returning", fault.words);
        EXPECT_EQ(result.status, 1) << fault.text;
        EXPECT_EQ(result.out, "error(" + fault.text + "|std)\n");
        EXPECT_EQ(result.err, "") << fault.text;
    }
}

TEST(ExitStatus, FailedCheckGivesOne)
{
    const ChildResult result = optionTool("checking", {});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, report("checked"));
}

TEST(ExitStatus, HintIsReplacedOnlyIfItIsTheStandardWord)
{
    const std::vector<std::pair<Words, std::string>> rows = {
        {{"text", "std"}, "text\n" + hint(OPTION_TOOL)},
        {{"text", "own hint"}, "text\nown hint\n"},
        {{"text", "Std"}, "text\nStd\n"},
        {{"text", "std "}, "text\nstd \n"},
        {{"text", "--", ""}, "text\n\n"},
        {{"--", "", "std"}, "\n" + hint(OPTION_TOOL)},
    };
    for (const auto& [words, expected] : rows) {
        const ChildResult result = optionTool("reporting", words);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, expected);
    }
}

TEST(ExitStatus, ReplacedExecuteOptionsTakesTheBuiltInOptionsTheirEffect)
{
    for (const char* word : {"--help", "--version", "--trace-level=x", "--trace-to=/nowhere/x/y"}) {
        const ChildResult result = optionTool("replaced", {word});
        EXPECT_EQ(result.status, 10) << word;
        EXPECT_EQ(result.err, "") << word;
    }
}

TEST(ExitStatus, ExtendedExecuteOptionsGoesOnBehindTheLibrary)
{
    EXPECT_EQ(optionTool("extended", {}).out.substr(0, 9), "extended\n");
    EXPECT_EQ(optionTool("extended", {"--version"}).out.substr(0, 10), "optiontool");
}

TEST(ExitStatus, ShortenedLineIsWhatIsParsed)
{
    EXPECT_EQ(optionTool("shortened", {"ab", "--nothing"}).status, 11);
}

TEST(ExitStatus, MisfitIsReportedByTheLatestApplication)
{
    const ChildResult result = optionTool("second", {"--int=x"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "Could not convert \"x\" to the needed type \"int\"\n" + hint(""));
    EXPECT_EQ(optionTool("second", {"-x"}).err, report("Unknown option -x!"));
    EXPECT_EQ(optionTool("second", {"ab"}).status, 11);
}

TEST(ExitStatus, ApplicationThatLostItsAreasEndsWithAText)
{
    expectFaults("orphan", {
                               {{}, "TraceAreaMgr: Unknown Area \"App\"."},
                               {{"--int=x"}, "Could not fill a IntAny from string 'x', Wrong type: 'int'"},
                           });
    EXPECT_EQ(optionTool("orphan", {"--version"}).status, 0);
}

// Exceptions

struct Escape
{
    const char* place;
    const char* kind;
    int status;
    std::string out;
    std::string err;
};

void expectEscapes(const char* errorReturns, const std::vector<Escape>& rows)
{
    for (const Escape& row : rows) {
        SCOPED_TRACE(std::string(row.kind) + " out of " + row.place);
        const ChildResult result =
            run(FAILING_TOOL, {}, {{"FAIL_IN", row.place}, {"FAIL_WITH", row.kind}, {"ERROR_RETURNS", errorReturns}});
        EXPECT_EQ(result.status, row.status);
        EXPECT_EQ(result.out, row.out);
        EXPECT_EQ(result.err, row.err);
    }
}

const std::string upToOptions = "startup\npreRunInit\npreParse\nexecuteOptions\n";
const std::string whole = upToOptions + "postParseInit\nrunMain\n";

TEST(ExitStatus, NormalEndDestroysTheApplication)
{
    const ChildResult result = run(FAILING_TOOL, {});
    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.out, whole + "destroyed\n");
    EXPECT_EQ(result.err, "");
}

TEST(ExitStatus, ExceptionIsReportedAndDestroysNothing)
{
    const std::string library = "library fault\n" + hint(FAILING_TOOL);
    const std::string standard = "standard fault\n" + hint(FAILING_TOOL);
    const std::string number = "Unknown critical program error.\n" + hint(FAILING_TOOL);
    const std::string startup = "Unrecoverable error during startup.\n\n" + hint(FAILING_TOOL);
    expectEscapes("", {
                          {"startup", "library", 1, "startup\n", library},
                          {"startup", "standard", 1, "startup\n", startup},
                          {"startup", "number", 99, "startup\ndestroyed\nleft mainImpl\n", ""},
                          {"preRunInit", "library", 1, "startup\npreRunInit\n", library},
                          {"preParse", "standard", 1, "startup\npreRunInit\npreParse\n", standard},
                          {"executeOptions", "number", 1, upToOptions, number},
                          {"postParseInit", "standard", 1, upToOptions + "postParseInit\n", standard},
                          {"runMain", "library", 1, whole, library},
                          {"runMain", "standard", 1, whole, standard},
                          {"runMain", "number", 1, whole, number},
                      });
}

TEST(ExitStatus, WhereErrorReturnsAFailedStartupGoesOnAndAFailedRunGivesOne)
{
    const std::string rest = whole.substr(8);
    const std::string unknown = "error(Unknown critical program error.|std)\n";
    expectEscapes("1", {
                           {"startup", "library", 7, "startup\nerror(library fault|std)\n" + rest + "destroyed\n", ""},
                           {"startup", "standard", 7,
                            "startup\nerror(Unrecoverable error during startup.\n|std)\n" + rest + "destroyed\n", ""},
                           {"startup", "number", 99, "startup\ndestroyed\nleft mainImpl\n", ""},
                           {"preRunInit", "number", 1, "startup\npreRunInit\n" + unknown + "destroyed\n", ""},
                           {"postParseInit", "library", 1,
                            upToOptions + "postParseInit\nerror(library fault|std)\ndestroyed\n", ""},
                           {"runMain", "standard", 1, whole + "error(standard fault|std)\ndestroyed\n", ""},
                           {"runMain", "number", 1, whole + unknown + "destroyed\n", ""},
                       });
}

} // namespace

} // namespace KelvoBase
