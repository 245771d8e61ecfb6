#include "Probe.h"
#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <kelvobase/Application.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace KelvoBase
{

namespace
{

using test::Probe;
using Text = ScalarAny<std::string>;

const std::string builtinTable = "     --help              Show this help.\n"
                                 "     --trace-area area   restricts output of trace message to defined trace\n"
                                 "                         areas (All, KelvoBase, CoreObjects,\n"
                                 "                         AttributeManagement, Partitions, Evaluators,\n"
                                 "                         Rewriting, Persistence, Numerics, Summaries, Learners,\n"
                                 "                         Searches, Drawing, QtDravo, Sorvik, TableStore,\n"
                                 "                         PyDravo, App[default])\n"
                                 "     --trace-to file     where to store trace output (cout, cerr, or filename)\n"
                                 "     --version           Show the program version\n"
                                 " -t, --trace-level level minimum importance of logged messages (crit, fail,\n"
                                 "                         warn, verbose)\n";
const std::string builtinSynopsis = "[--help] [--trace-area area] [--trace-to file] [--version] [-t level] ";

std::string usageOf(Probe& tool)
{
    tool.messages.clear();
    tool.usage();
    EXPECT_EQ(tool.messages.size(), 1u);
    return tool.messages.at(0);
}

void expectBegin(const std::string& text, const std::string& begin)
{
    EXPECT_EQ(text.substr(0, begin.size()), begin);
}

/// The rows of the help text that come from one option, which sorts behind all built-in ones.
std::string rowOf(const std::string& longName, const std::string& argument, const std::string& help)
{
    Probe tool("");
    CLOption& option = tool.defineOption(longName, 'z', false).setHelp(help);
    if (!argument.empty()) {
        option.setArg(argument, new Text);
    }
    tool.prepare({});
    const std::string text = usageOf(tool);
    const std::size_t begin = text.find("\n -z, ") + 1;
    return text.substr(begin, text.size() - begin - 1);
}

TEST(Usage, RichToolShowsTheGoldenText)
{
    const test::ChildResult result = test::runChild({RICH_TOOL, "--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, test::contentOf(std::filesystem::path(GOLDEN_DIRECTORY) / "richtool-help.txt"));
    EXPECT_EQ(result.err, "");
}

TEST(Usage, PlainToolShowsTheBuiltInOptions)
{
    Probe tool("Does nothing.");
    tool.prepare({});
    EXPECT_EQ(usageOf(tool), "probe " + builtinSynopsis + "\n\nDoes nothing.\n\n" + builtinTable + "\n");
}

TEST(Usage, EmptyDescriptionLeavesOneEmptyLine)
{
    // Required, Q-117
    Probe tool("");
    tool.prepare({});
    EXPECT_EQ(usageOf(tool), "probe " + builtinSynopsis + "\n\n" + builtinTable + "\n");
}

TEST(Usage, HelpTextEndsInAnEmptyLine)
{
    // Required, Q-118
    const std::string out = test::runChild({RICH_TOOL, "--help"}).out;
    EXPECT_EQ(out.substr(out.size() - 3), "\n\n\n") << "end of the last row, of the text, and of the message";
    Probe tool;
    tool.prepare({});
    EXPECT_EQ(usageOf(tool).substr(usageOf(tool).size() - 2), "\n\n");
}

TEST(Usage, AdditionalTextStandsBehindTheTable)
{
    Probe tool("");
    tool.setAdditionalHelpText("More.");
    tool.prepare({});
    EXPECT_EQ(usageOf(tool), "probe " + builtinSynopsis + "\n\n" + builtinTable + "\nMore.\n\n");
    tool.setAdditionalHelpText("");
    EXPECT_EQ(usageOf(tool), "probe " + builtinSynopsis + "\n\n" + builtinTable + "\n");
}

TEST(Usage, DefinitionOrderStandsBeforeTheRun)
{
    Probe tool("");
    expectBegin(usageOf(tool), " [--help] [--version] [-t level] [--trace-area area] [--trace-to file] \n\n");
}

TEST(Usage, SynopsisShowsTheLetterOrElseTheName)
{
    Probe tool("");
    tool.defineOption("flag", 'f', false);
    tool.defineOption("must", 'm', true);
    tool.definePositional("A");
    tool.prepare({"-m"});
    expectBegin(usageOf(tool),
                "probe [--help] [--trace-area area] [--trace-to file] [--version] [-f] -m [-t \nlevel] A \n\n     ");
}

TEST(Usage, MandatoryOptionHasNoBrackets)
{
    Probe tool("");
    tool.defineOption("a", 0, true).setArg("x", new Text);
    tool.defineOption("b", 0, true);
    tool.prepare({"--a=", "--b"});
    expectBegin(usageOf(tool), "probe --a x --b [--help]");
}

TEST(Usage, EmptyArgumentNameLeavesItsBlank)
{
    Probe tool("");
    tool.defineOption("a", 0, false).setArg("", new Text);
    tool.prepare({});
    expectBegin(usageOf(tool), "probe [--a ] [");
}

TEST(Usage, HelpStartsInColumn25)
{
    // Required, Q-116
    const std::string indent(25, ' ');
    EXPECT_EQ(rowOf("x", "", "H"), " -z, --x                 H\n");
    EXPECT_EQ(rowOf("x", "arg", "H"), " -z, --x arg             H\n");
    EXPECT_EQ(rowOf(std::string(16, 'n'), "", "H"), " -z, --" + std::string(16, 'n') + "  H\n");
    EXPECT_EQ(rowOf(std::string(17, 'n'), "", "H"), " -z, --" + std::string(17, 'n') + " \n" + indent + "H\n");
    EXPECT_EQ(rowOf(std::string(12, 'n'), "argu", "H"), " -z, --" + std::string(12, 'n') + " argu H\n");
    EXPECT_EQ(rowOf(std::string(12, 'n'), "argum", "H"),
              " -z, --" + std::string(12, 'n') + " argum\n" + indent + "H\n");
}

TEST(Usage, EmptyHelpTextLeavesTheNameWithItsFiller)
{
    EXPECT_EQ(rowOf("x", "", ""), " -z, --x " + std::string(16, ' ') + "\n");
    EXPECT_EQ(rowOf(std::string(17, 'n'), "", ""),
              " -z, --" + std::string(17, 'n') + " \n" + std::string(25, ' ') + "\n");
}

TEST(Usage, HelpTextOf54CharactersTakesOneRow)
{
    const std::string indent(25, ' ');
    const std::string words(51, 'w');
    EXPECT_EQ(rowOf("x", "", words + " ab"), " -z, --x                 " + words + " ab\n");
    EXPECT_EQ(rowOf("x", "", words + " abc"), " -z, --x                 " + words + "\n" + indent + "abc\n");
    EXPECT_EQ(rowOf("x", "", std::string(54, 'w')), " -z, --x                 " + std::string(54, 'w') + "\n");
    EXPECT_EQ(rowOf("x", "", std::string(55, 'w')),
              " -z, --x                 " + std::string(54, 'w') + "\n" + indent + "w\n");
}

TEST(Usage, LineEndInAShortHelpTextStands)
{
    EXPECT_EQ(rowOf("x", "", "one\ntwo"), " -z, --x                 one\ntwo\n");
}

std::string descriptionRows(const std::string& description)
{
    Probe tool(description);
    tool.prepare({});
    const std::string text = usageOf(tool);
    const std::size_t begin = ("probe " + builtinSynopsis + "\n\n").size();
    return text.substr(begin, text.size() - begin - builtinTable.size() - 2);
}

TEST(Usage, RowThatEndsBecauseOfTheWidthKeepsATrailingBlank)
{
    // Required, Q-115
    const std::string a(60, 'a');
    const std::string b(30, 'b');
    EXPECT_EQ(descriptionRows(a + " " + b), a + " \n" + b + "\n");
    EXPECT_EQ(descriptionRows(std::string(79, 'a') + " " + b), std::string(79, 'a') + " \n" + b + "\n");
    EXPECT_EQ(descriptionRows(std::string(78, 'a') + " " + b), std::string(78, 'a') + " \n" + b + "\n");
}

TEST(Usage, TextOf79CharactersIsARowOfItsOwn)
{
    EXPECT_EQ(descriptionRows(std::string(78, 'a')), std::string(78, 'a') + "\n");
    EXPECT_EQ(descriptionRows(std::string(79, 'a')), std::string(79, 'a') + " \n");
    EXPECT_EQ(descriptionRows(std::string(80, 'a')), std::string(79, 'a') + " \na\n");
    EXPECT_EQ(descriptionRows(std::string(158, 'a')), std::string(79, 'a') + " \n" + std::string(79, 'a') + " \n");
}

TEST(Usage, RowInFrontOfAFullOneEndsFirst)
{
    const std::string full(79, 'b');
    EXPECT_EQ(descriptionRows("aa " + full + " cc"), "aa \n" + full + " \ncc\n");
}

TEST(Usage, ShortLinesFlowTogetherAgain)
{
    // The line end makes the wrapping break early; joining takes the break back.
    const std::string first(30, 'a');
    const std::string second(55, 'b');
    EXPECT_EQ(descriptionRows(first + "\n" + second), first + " \n" + second + "\n");
    const std::string words = "cc " + std::string(70, 'd');
    EXPECT_EQ(descriptionRows("a\n" + std::string(79, 'e') + " b"), "a \n" + std::string(79, 'e') + " \nb\n");
    EXPECT_EQ(descriptionRows(std::string(40, 'a') + "\n" + words), std::string(40, 'a') + " \n" + words + "\n");
    EXPECT_EQ(descriptionRows("ab\n" + std::string(77, 'x')), "ab \n" + std::string(77, 'x') + "\n");
}

TEST(Usage, NoDefaultsNoExclusionsNoAuthors)
{
    Probe tool("");
    CLOption& a = tool.defineOption("a", 'a', false).setArg("x", new Text("the default"));
    const CLOption& b = tool.defineOption("b", 'b', false);
    tool.defineExclusion(a, b);
    tool.prepare({});
    EXPECT_EQ(usageOf(tool).find("default\""), std::string::npos);
    EXPECT_EQ(usageOf(tool).find("the default"), std::string::npos);
    EXPECT_EQ(usageOf(tool).find("Author"), std::string::npos);
}

// Against a slow rendering of the layout, word by word through streams

std::vector<std::string> wrapped(const std::string& text, std::size_t width)
{
    std::vector<std::string> lines;
    std::string rest = text;
    while (rest.size() > width) {
        std::size_t cut = 0;
        bool found = false;
        for (std::size_t i = 1; i <= width; ++i) {
            if (rest[i] == '\n') {
                cut = i;
                found = true;
            }
        }
        for (std::size_t i = 0; !found && i <= width; ++i) {
            cut = rest[width - i] == ' ' ? width - i : width;
            found = rest[width - i] == ' ';
        }
        lines.push_back(rest.substr(0, cut));
        rest = rest.substr(cut + (found ? 1 : 0));
    }
    lines.push_back(rest);
    return lines;
}

std::string flowed(const std::string& text)
{
    std::ostringstream out;
    std::size_t length = 0;
    for (const std::string& line : wrapped(text, 79)) {
        const bool full = line.size() >= 79;
        if (full ? length > 0 : length + line.size() >= 79) {
            out << " \n";
            length = 0;
        }
        out << (length > 0 ? " " : "") << line << (full ? " \n" : "");
        length = full ? 0 : length + (length > 0 ? 1 : 0) + line.size();
    }
    out << (length > 0 ? "\n" : "");
    return out.str();
}

std::string row(const std::string& name, const std::string& argument, const std::string& help)
{
    std::ostringstream out;
    const std::string left = name + " " + argument;
    out << " -z, --";
    if (left.size() >= 18) {
        out << left << '\n' << std::setw(25) << "";
    } else {
        out << std::left << std::setw(18) << left;
    }
    bool first = true;
    for (const std::string& line : wrapped(help, 54)) {
        out << (first ? "" : std::string(25, ' ')) << line << '\n';
        first = false;
    }
    return out.str();
}

std::string randomText(std::mt19937& dice, unsigned int longest)
{
    std::string text(dice() % (longest + 1), 'x');
    const auto rarity = 2 + dice() % 30;
    for (char& c : text) {
        c = dice() % rarity != 0 ? static_cast<char>('a' + dice() % 26) : dice() % 8 == 0 ? '\n' : ' ';
    }
    return text;
}

TEST(Usage, AgreesWithTheLayoutOfRandomTexts)
{
    std::mt19937 dice(20050304);
    for (int round = 0; round < 3000; ++round) {
        const std::string description = randomText(dice, 400);
        const std::string additional = randomText(dice, 300);
        const std::string help = randomText(dice, 200);
        const std::string name(1 + dice() % 22, 'n');
        const std::string argument(dice() % 8, 'g');
        Probe tool(description);
        tool.setAdditionalHelpText(additional);
        tool.defineOption(name, 'z', false).setHelp(help).setArg(argument, new Text);
        tool.prepare({});
        const std::string expected = flowed("probe " + builtinSynopsis + "[-z " + argument + "] ") +
                                     (description.empty() ? "" : "\n") + flowed(description) + "\n" + builtinTable +
                                     row(name, argument, help) + (additional.empty() ? "" : "\n" + flowed(additional)) +
                                     "\n";
        ASSERT_EQ(usageOf(tool), expected) << round;
    }
}

} // namespace

} // namespace KelvoBase
