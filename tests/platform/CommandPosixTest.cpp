#include "platform/posix/PosixCommand.h"
#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <random>

namespace
{

using namespace KelvoBase;
using namespace std::string_literals;
using platform::posix::wordsOf;
using Words = std::vector<std::string>;

struct Row
{
    std::string command;
    Words words;
};

TEST(CommandPosixTest, LinesAreSplitAsAShellDoes)
{
    const std::vector<Row> rows = {
        {"true", {"true"}},
        {"  a\t b \n c ", {"a", "b", "c"}},
        {"a 'b c' \"d e\" f\\ g", {"a", "b c", "d e", "f g"}},
        {"x''y \"\" '' \\'", {"xy", "", "", "'"}},
        {"a'b'\"c\"\\d", {"abcd"}},
        {"\"\\$ \\` \\\" \\\\ \\a\"", {"$ ` \" \\ \\a"}},
        {"'\\$ \\\" \\\\ \\a'", {"\\$ \\\" \\\\ \\a"}},
        {"'\"' \"'\"", {"\"", "'"}},
        {"\\a \\\\ \\\" \\  x", {"a", "\\", "\"", " ", "x"}},
        {"a\\\nb \"c\\\nd\" 'e\\\nf' \\\n g", {"ab", "cd", "e\\\nf", "g"}},
        {"'a\nb' \"c\td\"", {"a\nb", "c\td"}},
        {"x \\", {"x", "\\"}},
        {"$HOME ${A} `ls` $(ls) * ? [a] ~ {a,b}", {"$HOME", "${A}", "`ls`", "$(ls)", "*", "?", "[a]", "~", "{a,b}"}},
        {"a | b > c < d ; e & f # g ! ( h )",
         {"a", "|", "b", ">", "c", "<", "d", ";", "e", "&", "f", "#", "g", "!", "(", "h", ")"}},
        {"NAME=x a", {"NAME=x", "a"}},
        {"a\rb\vc\fd", {"a\rb\vc\fd"}},
        {"\xC3\xA4 '\xFF'", {"\xC3\xA4", "\xFF"}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(std::optional(row.words), wordsOf(row.command)) << row.command;
    }
}

TEST(CommandPosixTest, LinesWithoutWordsOrWithOpenQuotationMarksAreNone)
{
    for (const std::string& command :
         {""s, "   \t\n"s, "\\\n"s, "'"s, "a 'b"s, "\""s, "a \"b"s, "\"a\\\""s, "\"\\"s, "'a\\'b'"s, "a\0b"s, "\0"s}) {
        EXPECT_EQ(std::nullopt, wordsOf(command)) << ::testing::PrintToString(command);
    }
}

/// The words that the system's shell makes of a line: an independent reading.
std::optional<Words> shellsWords(const std::string& line)
{
    const test::ChildResult result = test::runChild({"/bin/sh", "-c", "set -f; printf '<%s>\\n' x " + line});
    if (result.status != 0) {
        return std::nullopt;
    }
    Words words;
    std::string rest = result.out.substr(4); // behind the word that is always there
    while (!rest.empty()) {
        const std::string::size_type end = rest.find(">\n");
        words.push_back(rest.substr(1, end - 1));
        rest.erase(0, end + 2);
    }
    return words;
}

TEST(CommandPosixTest, RandomLinesAreSplitAsByTheSystemsShell)
{
    std::mt19937 random(20040517);
    const std::string letters = "ab  '\"\\\t=";
    for (int round = 0; round < 300; ++round) {
        std::string line;
        for (std::size_t length = 1 + random() % 12; length > 0; --length) {
            line += letters[random() % letters.size()];
        }
        const std::optional<Words> expected = shellsWords(line);
        if (expected && expected->empty()) {
            EXPECT_EQ(std::nullopt, wordsOf(line)) << line;
        } else {
            EXPECT_EQ(expected, wordsOf(line)) << line;
        }
    }
}

} // namespace
