#include "Probe.h"
#include "support/Text.h"

#include <kelvobase/Application.h>
#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace KelvoBase
{

namespace
{

using test::Ended;
using test::Probe;
using test::textOf;
using Text = ScalarAny<std::string>;
using Words = std::vector<std::string>;

/// Flags v, w, 5 and "long-flag"; values o, p and "long-value", which starts as "default".
class Tool : public Probe
{
public:
    Tool()
    {
        defineOption("verbose", 'v', false);
        defineOption("wide", 'w', false);
        defineOption("five", '5', false);
        defineOption("long-flag", 0, false);
        defineOption("out", 'o', false).setArg("file", new Text("default"));
        defineOption("path", 'p', false).setArg("dir", new Text("default"));
        defineOption("long-value", 0, false).setArg("x", new Text("default"));
        defineOption("number", 'n', false).setArg("n", new ScalarAny<int>(3));
    }
    /// The options that were given, by long name, with their values, then the positional arguments.
    std::string summary() const
    {
        std::string text;
        for (const char* name : {"verbose", "wide", "five", "long-flag", "out", "path", "long-value", "number"}) {
            const CLOption& option = *findOption(name);
            if (option.isSet()) {
                text += std::string(name) + (option.getValue() == nullptr ? "" : "=" + valueOf(name)) + ";";
            }
        }
        for (const std::string& positional : positionals()) {
            text += "<" + positional + ">";
        }
        return text;
    }
};

struct Line
{
    Words words;
    const char* expected;
};

std::ostream& operator<<(std::ostream& out, const Line& line)
{
    for (const std::string& word : line.words) {
        out << "'" << word << "' ";
    }
    return out;
}

class GoodLine : public testing::TestWithParam<Line>
{
};

TEST_P(GoodLine, IsTaken)
{
    Tool tool;
    EXPECT_EQ(tool.faultOf(GetParam().words), "");
    EXPECT_EQ(tool.summary(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Positionals, GoodLine,
                         testing::Values(Line{{}, ""}, Line{{"ab"}, "<ab>"}, Line{{"a1", "b2", "a1"}, "<a1><b2><a1>"},
                                         Line{{"a=b"}, "<a=b>"}, Line{{"a-"}, "<a->"}, Line{{" x"}, "< x>"},
                                         Line{{"--"}, ""}, Line{{"--", "a"}, "<a>"}, Line{{"--", "-"}, "<->"},
                                         Line{{"--", ""}, "<>"}, Line{{"--", "--"}, "<-->"},
                                         Line{{"--", "-v", "--out", "x"}, "<-v><--out><x>"},
                                         Line{{"ab", "--", "cd", "--", "e"}, "<ab><cd><--><e>"},
                                         Line{{"ab", "-v", "cd", "--out", "x", "ef"}, "verbose;out=x;<ab><cd><ef>"}));

INSTANTIATE_TEST_SUITE_P(
    LongOptions, GoodLine,
    testing::Values(Line{{"--verbose"}, "verbose;"}, Line{{"--long-flag"}, "long-flag;"}, Line{{"--out=x"}, "out=x;"},
                    Line{{"--out", "x"}, "out=x;"}, Line{{"--out=x=y"}, "out=x=y;"}, Line{{"--out=="}, "out==;"},
                    Line{{"--out="}, "out=;"}, Line{{"--out=", "xy"}, "out=;<xy>"}, Line{{"--out", ""}, "out=;"},
                    Line{{"--out", "a"}, "out=a;"}, Line{{"--out", "-v"}, "out=-v;"}, Line{{"--out", "--"}, "out=--;"},
                    Line{{"--out", "--", "-v"}, "verbose;out=--;"}, Line{{"--out", "--verbose"}, "out=--verbose;"},
                    Line{{"--out=--"}, "out=--;"}, Line{{"--number", "-5"}, "number=-5;"},
                    Line{{"--number=-5"}, "number=-5;"}, Line{{"--number", "12abc"}, "number=12;"},
                    Line{{"--verbose", "xy"}, "verbose;<xy>"}));

INSTANTIATE_TEST_SUITE_P(
    Clusters, GoodLine,
    testing::Values(Line{{"-v"}, "verbose;"}, Line{{"-vw"}, "verbose;wide;"}, Line{{"-wv"}, "verbose;wide;"},
                    Line{{"-5"}, "five;"}, Line{{"-v5w"}, "verbose;wide;five;"}, Line{{"-ofile"}, "out=file;"},
                    Line{{"-o", "file"}, "out=file;"}, Line{{"-o", "-v"}, "out=-v;"}, Line{{"-o", "--"}, "out=--;"},
                    Line{{"-o", ""}, "out=;"}, Line{{"-vo", "out"}, "verbose;out=out;"},
                    Line{{"-vofile"}, "verbose;out=file;"}, Line{{"-ov"}, "out=v;"},
                    Line{{"-ovw", "-v"}, "verbose;out=vw;"}, Line{{"-oo"}, "out=o;"}, Line{{"-o-"}, "out=-;"},
                    Line{{"-n-5"}, "number=-5;"}, Line{{"-op", "-pq"}, "out=p;path=q;"}));

TEST(Parser, ArgumentOfOneCharacterIsSkipped)
{
    // Required, Q-103
    for (const char* word : {"a", "-", "", "5", " ", "=", "\xE4"}) {
        SCOPED_TRACE(word);
        Tool tool;
        EXPECT_EQ(tool.faultOf({word, "ab", word}), "");
        EXPECT_EQ(tool.summary(), "<ab>");
    }
}

TEST(Parser, FlagDropsTheTextBehindTheEqualsSign)
{
    // Required, Q-105
    for (const char* word : {"--verbose=no", "--verbose=", "--verbose==", "--verbose=--out"}) {
        SCOPED_TRACE(word);
        Tool tool;
        EXPECT_EQ(tool.faultOf({word, "xy"}), "");
        EXPECT_EQ(tool.summary(), "verbose;<xy>");
    }
}

TEST(Parser, ShortOptionKeepsTheEqualsSignInItsValue)
{
    // Required, Q-106
    Tool tool;
    EXPECT_EQ(tool.faultOf({"-o=file", "-vp="}), "");
    EXPECT_EQ(tool.summary(), "verbose;out==file;path==;");
}

class BadLine : public testing::TestWithParam<Line>
{
};

TEST_P(BadLine, IsRefused)
{
    Tool tool;
    EXPECT_EQ(tool.faultOf(GetParam().words), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Unknown, BadLine,
                         testing::Values(Line{{"-x"}, "Unknown option -x!"}, Line{{"-vx"}, "Unknown option -x!"},
                                         Line{{"-6"}, "Unknown option -6!"}, Line{{"-5.5"}, "Unknown option -.!"},
                                         Line{{"-v="}, "Unknown option -=!"}, Line{{"-V"}, "Unknown option -V!"},
                                         Line{{"-\xE4"}, "Unknown option -\xE4!"}, Line{{"-v-"}, "Unknown option --!"},
                                         Line{{"- "}, "Unknown option - !"}, Line{{"ab", "--", "-v"}, ""},
                                         Line{{"-x", "--out"}, "Unknown option -x!"}));

TEST(Parser, UnknownLongOptionIsNamedWithoutDashes)
{
    // Required, Q-104
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"--nothing", "Unknown option nothing!"},
        {"--nothing=x", "Unknown option nothing!"},
        {"--verb", "Unknown option verb!"},
        {"--Verbose", "Unknown option Verbose!"},
        {"--verbose ", "Unknown option verbose !"},
        {"---verbose", "Unknown option -verbose!"},
        {"---", "Unknown option -!"},
        {"--=x", "Unknown option !"},
        {"--=", "Unknown option !"},
        {"--v", "Unknown option v!"},
    };
    for (const auto& [word, text] : rows) {
        Tool tool;
        EXPECT_EQ(tool.faultOf({word}), text) << word;
    }
}

INSTANTIATE_TEST_SUITE_P(Repeated, BadLine,
                         testing::Values(Line{{"--verbose", "--verbose"}, "Option --verbose given more than once."},
                                         Line{{"-v", "--verbose=x"}, "Option --verbose given more than once."},
                                         Line{{"--verbose", "-v"}, "Option -v given more than once."},
                                         Line{{"-vv"}, "Option -v given more than once."},
                                         Line{{"-ox", "-oy"}, "Option -o given more than once."},
                                         Line{{"--out=x", "--out=x"}, "Option --out given more than once."},
                                         Line{{"--out=x", "--out"}, "Option --out given more than once."},
                                         Line{{"-v", "-wvx"}, "Option -v given more than once."}));

INSTANTIATE_TEST_SUITE_P(WithoutValue, BadLine,
                         testing::Values(Line{{"--out"}, "Option --out needs an argument!"},
                                         Line{{"-o"}, "Option -o needs an argument!"},
                                         Line{{"-vo"}, "Option -o needs an argument!"},
                                         Line{{"--long-value"}, "Option --long-value needs an argument!"},
                                         Line{{"ab", "--out=x", "-p"}, "Option -p needs an argument!"}));

INSTANTIATE_TEST_SUITE_P(Misfits, BadLine,
                         testing::Values(Line{{"--number=x"}, "Could not convert \"x\" to the needed type \"int\""},
                                         Line{{"--number="}, "Could not convert \"\" to the needed type \"int\""},
                                         Line{{"-n", "--"}, "Could not convert \"--\" to the needed type \"int\""},
                                         Line{{"-n=5"}, "Could not convert \"=5\" to the needed type \"int\""},
                                         Line{{"-vnv", "-x"}, "Could not convert \"v\" to the needed type \"int\""}));

TEST(Parser, EveryFaultCarriesTheStandardHint)
{
    for (const Words& words : {Words{"-x"}, Words{"--x"}, Words{"-vv"}, Words{"--out"}, Words{"-nx"}}) {
        Tool tool;
        try {
            tool.prepare(words);
            ADD_FAILURE() << "went through";
        } catch (const Ended& ended) {
            EXPECT_EQ(ended.hint, "std") << ended.text;
        }
    }
}

TEST(Parser, OptionsThatAreNotGivenKeepTheirDefaults)
{
    Tool tool;
    tool.prepare({"-v"});
    EXPECT_EQ(tool.valueOf("out"), "default");
    EXPECT_EQ(tool.valueOf("number"), "3");
    EXPECT_FALSE(tool.findOption("out")->isSet());
}

TEST(Parser, EmptyLongNameCanBeDefined)
{
    Probe tool;
    tool.defineOption("", 0, false).setArg("x", new Text);
    EXPECT_EQ(tool.faultOf({"--=x"}), "");
    EXPECT_EQ(tool.valueOf(""), "x");
}

TEST(Parser, EmptyLongNameNeedsTheEqualsSign)
{
    Probe tool;
    tool.defineOption("", 0, false);
    tool.prepare({"--", "--="});
    EXPECT_FALSE(tool.findOption("")->isSet());
}

TEST(Parser, LongNameWithEqualsSignIsOutOfReach)
{
    Probe tool;
    tool.defineOption("a=b", 0, false);
    EXPECT_EQ(tool.faultOf({"--a=b"}), "Unknown option a!");
}

TEST(Parser, LetterAbove0x7FIsAnOrdinaryLetter)
{
    Probe tool;
    tool.defineOption("umlaut", '\xE4', false).setArg("x", new Text);
    EXPECT_EQ(tool.faultOf({"-\xE4\xF6"}), "");
    EXPECT_EQ(tool.valueOf("umlaut"), "\xF6");
}

TEST(Parser, LetterMinusIsReachedBehindAnotherOnly)
{
    Probe tool;
    tool.defineOption("minus", '-', false);
    tool.defineOption("verbose", 'v', false);
    EXPECT_EQ(tool.faultOf({"-v-"}), "");
    EXPECT_TRUE(tool.findOption("minus")->isSet());
}

TEST(Parser, OptionWithoutLetterIsOutOfReachOfClusters)
{
    Probe tool;
    CLOption& option = tool.defineOption("plain", 0, false);
    EXPECT_EQ(tool.faultOf({"-"}), "");
    EXPECT_FALSE(option.isSet());
    EXPECT_EQ(tool.faultOf({"-p"}), "Unknown option -p!");
}

TEST(Parser, OfTwoOptionsWithOneLetterTheFirstInSortedOrderIsFound)
{
    Probe tool;
    CLOption& later = tool.defineOption("zeta", 'a', false);
    CLOption& earlier = tool.defineOption("alpha", 'a', false);
    EXPECT_EQ(tool.faultOf({"-a", "--zeta"}), "");
    EXPECT_TRUE(earlier.isSet());
    EXPECT_TRUE(later.isSet());
}

TEST(Parser, LettersOfBothCasesAreDifferentOptions)
{
    Probe tool;
    CLOption& big = tool.defineOption("zeta", 'A', false);
    CLOption& small = tool.defineOption("alpha", 'a', false);
    EXPECT_EQ(tool.faultOf({"-A"}), "");
    EXPECT_TRUE(big.isSet());
    EXPECT_FALSE(small.isSet());
}

TEST(Parser, OfTwoOptionsWithOneNameTheFirstInSortedOrderIsFound)
{
    Probe tool;
    CLOption& withLetter = tool.defineOption("name", 'n', false);
    CLOption& without = tool.defineOption("name", 0, false);
    EXPECT_EQ(tool.findOption("name"), &withLetter) << "definition order before the run";
    EXPECT_EQ(tool.faultOf({"--name"}), "");
    EXPECT_TRUE(without.isSet());
    EXPECT_FALSE(withLetter.isSet());
    EXPECT_EQ(tool.findOption("name"), &without);
}

TEST(Parser, VectorValueComesInOneArgument)
{
    Probe tool;
    tool.defineOption("list", 'l', false).setArg("x", new VectorAny<ScalarAny<int>>);
    EXPECT_EQ(tool.faultOf({"--list", "1,2,3"}), "");
    EXPECT_EQ(tool.findOption("list")->getValue()->size(), 3u);
}

TEST(Parser, VectorOptionIsGivenOnceLikeAnyOther)
{
    Probe tool;
    tool.defineOption("list", 'l', false).setArg("x", new VectorAny<ScalarAny<int>>);
    EXPECT_EQ(tool.faultOf({"-l1", "-l2"}), "Option -l given more than once.");
}

TEST(Parser, ExcludedPairIsNamedWithABlankInFrontOfTheMark)
{
    // Required, Q-107
    Probe tool;
    const CLOption& red = tool.defineOption("red", 'r', false);
    const CLOption& green = tool.defineOption("green", 'g', false);
    tool.defineExclusion(red, green);
    EXPECT_EQ(tool.faultOf({"-gr"}), "One cannot specify \"--red\" together with \"--green\" !");
}

TEST(Parser, OneOfAnExcludedPairIsFine)
{
    for (const char* word : {"-r", "-g", "ab"}) {
        Probe tool;
        const CLOption& red = tool.defineOption("red", 'r', false);
        const CLOption& green = tool.defineOption("green", 'g', false);
        tool.defineExclusion(red, green);
        EXPECT_EQ(tool.faultOf({word}), "") << word;
    }
}

TEST(Parser, FirstOffendingPairInDefinitionOrderEndsTheRun)
{
    Probe tool;
    const CLOption& a = tool.defineOption("a", 'a', false);
    const CLOption& b = tool.defineOption("b", 'b', false);
    const CLOption& c = tool.defineOption("c", 'c', false);
    tool.defineExclusion(c, b);
    tool.defineExclusion(a, b);
    EXPECT_EQ(tool.faultOf({"-abc"}), "One cannot specify \"--c\" together with \"--b\" !");
}

TEST(Parser, OptionExcludedWithItselfCannotBeGiven)
{
    Probe tool;
    const CLOption& a = tool.defineOption("a", 'a', false);
    tool.defineExclusion(a, a);
    EXPECT_EQ(tool.faultOf({"-a"}), "One cannot specify \"--a\" together with \"--a\" !");
}

TEST(Parser, FirstMissingMandatoryOptionInSortedOrderIsNamed)
{
    Probe tool;
    tool.defineOption("zeta", 'z', true);
    tool.defineOption("beta", 'b', true);
    tool.defineOption("xi", 0, true);
    EXPECT_EQ(tool.faultOf({}), "Option --xi has to be given.");
}

TEST(Parser, MandatoryOptionsThatAreGivenAreFine)
{
    Probe tool;
    tool.defineOption("zeta", 'z', true);
    tool.defineOption("xi", 0, true).setArg("x", new Text);
    EXPECT_EQ(tool.faultOf({"-z", "--xi="}), "");
}

TEST(Parser, FaultsComeInTheirOrder)
{
    const std::vector<std::pair<Words, const char*>> rows = {
        {{"-ab", "--nothing"}, "Unknown option nothing!"},
        {{"-ab", "--trace-level=x"}, "One cannot specify \"--a\" together with \"--b\" !"},
        {{"-a", "--trace-level=x"}, "Tracelevel x unknown."},
        {{"-a"}, "Option --must has to be given."},
    };
    for (const auto& [words, text] : rows) {
        Probe tool;
        const CLOption& a = tool.defineOption("a", 'a', false);
        const CLOption& b = tool.defineOption("b", 'b', false);
        tool.defineOption("must", 'm', true);
        tool.defineExclusion(a, b);
        EXPECT_EQ(tool.faultOf(words), text);
    }
}

TEST(Parser, ShortenedLineIsWhatIsParsed)
{
    class Shortening : public Tool
    {
    public:
        void preParse(int& argc, char** /*argv*/) override { argc -= 2; }
    };
    Shortening tool;
    EXPECT_EQ(tool.faultOf({"-v", "--out=x", "--", "--nothing"}), "");
    EXPECT_EQ(tool.summary(), "verbose;out=x;");
}

TEST(Parser, EmptyLineParsesNothing)
{
    class Emptying : public Tool
    {
    public:
        void preParse(int& argc, char** /*argv*/) override { argc = 0; }
    };
    Emptying tool;
    EXPECT_EQ(tool.faultOf({"-x"}), "");
    EXPECT_EQ(tool.summary(), "");
}

TEST(Parser, FindOptionOfAnUnknownNameThrows)
{
    const Tool tool;
    EXPECT_EQ(textOf<UnknownException>([&] { tool.findOption("nothing"); }), "Unknown option 'nothing'");
    EXPECT_EQ(textOf<UnknownException>([&] { tool.findOption(""); }), "Unknown option ''");
    EXPECT_EQ(textOf<UnknownException>([&] { tool.findOption("Verbose"); }), "Unknown option 'Verbose'");
    EXPECT_EQ(textOf<UnknownException>([&] { tool.findOption(std::string("out\0", 4)); }),
              std::string("Unknown option 'out"));
}

TEST(Parser, FindOptionByGivesTheFirstInOrderOrNull)
{
    Tool tool;
    const auto takesValue = [](const CLOption& option) { return option.getValue() != nullptr; };
    EXPECT_EQ(tool.findOptionBy(takesValue)->getLong(), "trace-level") << "definition order";
    tool.prepare({});
    EXPECT_EQ(tool.findOptionBy(takesValue)->getLong(), "long-value") << "sorted order";
    EXPECT_EQ(tool.findOptionBy([](const CLOption&) { return false; }), nullptr);
}

std::string longNamesInOrder(const Application& tool)
{
    std::string names;
    tool.findOptionBy([&](const CLOption& option) {
        names += option.getLong() + " ";
        return false;
    });
    return names;
}

TEST(Parser, OptionsAreSortedByLetterThenByName)
{
    Probe tool;
    tool.defineOption("upper", 'T', false);
    tool.defineOption("Zulu", 0, false);
    tool.defineOption("alpha", 'z', false);
    tool.defineOption("digit", '5', false);
    tool.defineOption("Alpha", 'T', false);
    EXPECT_EQ(longNamesInOrder(tool), "help version trace-level trace-area trace-to upper Zulu alpha digit Alpha ");
    tool.prepare({});
    EXPECT_EQ(longNamesInOrder(tool), "Zulu help trace-area trace-to version digit Alpha trace-level upper alpha ");
}

TEST(Parser, LettersAbove0x7FStandInFrontOfAllOthers)
{
    // Required, Q-102
    Probe tool;
    tool.defineOption("high", '\xFF', false);
    tool.defineOption("low", '\x80', false);
    tool.defineOption("tilde", '~', false);
    tool.prepare({});
    EXPECT_EQ(longNamesInOrder(tool), "low high help trace-area trace-to version trace-level tilde ");
}

TEST(Parser, LongNamesAreSortedByBytes)
{
    Probe tool;
    tool.defineOption("\xC3\xA4", 0, false);
    tool.defineOption("helper", 0, false);
    tool.defineOption("", 0, false);
    tool.defineOption("hel-", 0, false);
    tool.prepare({});
    EXPECT_EQ(longNamesInOrder(tool), " hel- help helper trace-area trace-to version \xC3\xA4 trace-level ");
}

// Against a literal model of the steps

int lower(char letter)
{
    return std::tolower(static_cast<unsigned char>(letter));
}

struct ModelOption
{
    std::string name;
    char letter;
    bool mandatory;
    bool takesValue;
    bool set = false;
    std::string value = "default";
};

/// The steps one by one, over plain lists.
class Model
{
public:
    explicit Model(std::vector<ModelOption> given) : options(std::move(given))
    {
        for (std::size_t i = 0; i < options.size(); ++i) {
            for (std::size_t k = i + 1; k < options.size(); ++k) {
                if (key(options[k]) < key(options[i])) {
                    std::swap(options[k], options[i]);
                }
            }
        }
    }
    /// The text of the fault, or nothing.
    std::string parse(const Words& argv)
    {
        std::size_t i = 0;
        while (i < argv.size()) {
            const std::string& arg = argv[i];
            if (arg == "--") {
                positionals.insert(positionals.end(), argv.begin() + static_cast<long>(i) + 1, argv.end());
                break;
            }
            if (arg.size() > 1 && arg[0] != '-') {
                positionals.push_back(arg);
            } else if (arg.size() > 1 && arg[1] == '-') {
                const std::string fault = parseLong(arg, i, argv);
                if (!fault.empty()) {
                    return fault;
                }
            } else if (arg.size() > 1) {
                const std::string fault = parseCluster(arg, i, argv);
                if (!fault.empty()) {
                    return fault;
                }
            }
            ++i;
        }
        return missing();
    }
    std::vector<ModelOption> options;
    Words positionals;

private:
    static std::pair<int, std::string> key(const ModelOption& option)
    {
        const int letter = lower(option.letter);
        return {letter > 127 ? letter - 256 : letter, option.name};
    }
    std::string parseLong(const std::string& arg, std::size_t& i, const Words& argv)
    {
        const std::size_t sign = arg.find("=");
        const std::string name = sign == std::string::npos ? arg.substr(2) : arg.substr(2, sign - 2);
        for (ModelOption& option : options) {
            if (option.name != name) {
                continue;
            }
            if (option.set) {
                return "Option --" + name + " given more than once.";
            }
            option.set = true;
            if (option.takesValue && sign != std::string::npos) {
                option.value = arg.substr(sign + 1);
            } else if (option.takesValue) {
                if (++i == argv.size()) {
                    return "Option --" + name + " needs an argument!";
                }
                option.value = argv[i];
            }
            return "";
        }
        return "Unknown option " + name + "!";
    }
    std::string parseCluster(const std::string& arg, std::size_t& i, const Words& argv)
    {
        for (std::size_t p = 1; p < arg.size(); ++p) {
            const std::string form = "-" + arg.substr(p, 1);
            const auto option =
                std::find_if(options.begin(), options.end(), [&](const ModelOption& o) { return o.letter == arg[p]; });
            if (option == options.end()) {
                return "Unknown option " + form + "!";
            }
            if (option->set) {
                return "Option " + form + " given more than once.";
            }
            option->set = true;
            if (!option->takesValue) {
                continue;
            }
            if (p + 1 == arg.size() && ++i == argv.size()) {
                return "Option " + form + " needs an argument!";
            }
            option->value = p + 1 < arg.size() ? arg.substr(p + 1) : argv[i];
            return "";
        }
        return "";
    }
    std::string missing() const
    {
        for (const ModelOption& option : options) {
            if (option.mandatory && !option.set) {
                return "Option --" + option.name + " has to be given.";
            }
        }
        return "";
    }
};

/// Lines and options from few characters, so that they meet.
class Dice
{
public:
    explicit Dice(unsigned int seed) : mEngine(seed) {}
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(mEngine()) % n; }
    std::string text(const char* characters, std::size_t longest)
    {
        const std::string from = characters;
        std::string result;
        for (std::size_t n = below(longest + 1); n > 0; --n) {
            result += from[below(from.size())];
        }
        return result;
    }
    std::vector<ModelOption> options(std::size_t most)
    {
        std::vector<ModelOption> result;
        for (std::size_t n = below(most + 1); n > 0; --n) {
            const char letters[] = {0, 'a', 'b', 'A', 'B', '=', '-', '\xE4', 'c'};
            ModelOption option{text("ab-", 3), letters[below(std::size(letters))], below(20) == 0, below(2) == 0};
            // Equal keys may come out in any order, so there are none.
            const auto sameKey = [&](const ModelOption& other) {
                return other.name == option.name && lower(other.letter) == lower(option.letter);
            };
            if (std::none_of(result.begin(), result.end(), sameKey)) {
                result.push_back(option);
            }
        }
        return result;
    }
    Words line(const std::vector<ModelOption>& options)
    {
        Words result;
        for (std::size_t n = below(7); n > 0; --n) {
            switch (below(4)) {
            case 0:
                result.push_back(text("ab-=\xE4", 4));
                break;
            case 1:
                result.push_back("-" + text("abcAB=\xE4", 3));
                break;
            case 2:
                result.push_back("--" + text("ab-=", 4));
                break;
            default:
                result.push_back(options.empty() ? "ab" : "--" + options[below(options.size())].name);
                break;
            }
        }
        return result;
    }

private:
    std::mt19937 mEngine;
};

/// The built-in options take part in the order and can be met by clusters ("t"), so the model has them too.
std::vector<ModelOption> withBuiltins(std::vector<ModelOption> options)
{
    const std::vector<ModelOption> builtins = {{"help", 0, false, false, false, ""},
                                               {"version", 0, false, false, false, ""},
                                               {"trace-level", 't', false, true, false, "warn"},
                                               {"trace-area", 0, false, true, false, "App"},
                                               {"trace-to", 0, false, true, false, "cerr"}};
    options.insert(options.begin(), builtins.begin(), builtins.end());
    return options;
}

void compare(const std::vector<ModelOption>& options, const Words& line)
{
    Probe tool;
    for (const ModelOption& option : options) {
        CLOption& defined = tool.defineOption(option.name, option.letter, option.mandatory);
        if (option.takesValue) {
            defined.setArg("x", new Text("default"));
        }
    }
    Model model(withBuiltins(options));
    const std::string expected = model.parse(line);
    ASSERT_EQ(tool.faultOf(line), expected);
    std::size_t i = 0;
    tool.findOptionBy([&](const CLOption& option) {
        const ModelOption& other = model.options.at(i++);
        EXPECT_EQ(option.getLong(), other.name);
        EXPECT_EQ(option.getShort(), other.letter);
        EXPECT_EQ(option.isSet(), other.set) << other.name;
        EXPECT_EQ(option.getValue() == nullptr ? other.value : option.getValue()->toString(","), other.value);
        return false;
    });
    EXPECT_EQ(i, model.options.size());
    EXPECT_EQ(tool.positionals(), model.positionals);
}

void compareMany(unsigned int seed, int rounds, std::size_t mostOptions)
{
    Dice dice(seed);
    for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
        const std::vector<ModelOption> options = dice.options(mostOptions);
        const Words line = dice.line(options);
        SCOPED_TRACE(testing::Message() << "round " << round << ": " << (Line{line, ""}) << "with " << options.size()
                                        << " options");
        compare(options, line);
    }
}

TEST(Parser, AgreesWithTheStepsOneByOne)
{
    compareMany(20050301, 8000, 8);
}

TEST(Parser, AgreesWithTheStepsOneByOneForManyOptions)
{
    compareMany(20050302, 1500, 80);
}

TEST(Parser, ThousandOptionsAreAllFound)
{
    Probe tool;
    Words line;
    for (int i = 0; i < 1000; ++i) {
        const std::string name = "option" + std::to_string(i);
        tool.defineOption(name, 0, false).setArg("n", new ScalarAny<int>(-1));
        EXPECT_EQ(tool.findOption(name)->getLong(), name);
        line.push_back("--" + name + "=" + std::to_string(i));
    }
    EXPECT_EQ(tool.faultOf(line), "");
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(tool.findOption("option" + std::to_string(i))->getValue()->toInt(), i);
    }
}

} // namespace

} // namespace KelvoBase
