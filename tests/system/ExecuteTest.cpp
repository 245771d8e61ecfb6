#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

namespace
{

using namespace KelvoBase;
using namespace std::string_literals;
using test::textOf;

struct Result
{
    int code;
    std::string output;
};

bool operator==(const Result& a, const Result& b)
{
    return a.code == b.code && a.output == b.output;
}

void PrintTo(const Result& result, std::ostream* out)
{
    *out << result.code << ' ' << ::testing::PrintToString(result.output);
}

/// What the command with these arguments gives.
Result run(const std::string& arguments)
{
    Result result{-1, "from before"};
    result.code = System::instance().execute("\"" COMMAND_TOOL "\" " + arguments, result.output);
    return result;
}

TEST(ExecuteTest, SilentCommandGivesItsExitCode)
{
    EXPECT_EQ((Result{0, ""}), run(""));
    EXPECT_EQ((Result{7, ""}), run("exit=7"));
    EXPECT_EQ((Result{255, ""}), run("exit=255"));
}

TEST(ExecuteTest, LineEndOfTwoCharactersIsCut)
{
    EXPECT_EQ((Result{3, "hello"}), run("out=hello cr lf exit=3"));
}

TEST(ExecuteTest, BothStreamsAreMergedInTheOrderWritten)
{
    EXPECT_EQ((Result{0, "abcdef"}), run("out=a err=b out=c err=d err=e out=f cr lf"));
}

TEST(ExecuteTest, ThereIsNoInput)
{
    EXPECT_EQ((Result{0, "0"}), run("input cr lf"));
}

TEST(ExecuteTest, OutputIsBinary)
{
    EXPECT_EQ((Result{0, "a\0b\0\0c"s}), run("out=a nul out=b nul nul out=c cr lf"));
}

TEST(ExecuteTest, OutputMayBeMoreThanAPipeHolds)
{
    std::string digits;
    for (unsigned int i = 0; digits.size() < 3000000; ++i) {
        digits += std::to_string(i);
    }
    for (const std::size_t size : {4094u, 4095u, 4096u, 4097u, 65536u, 3000000u}) {
        const Result result = run("digits=" + std::to_string(size) + " cr lf exit=9");
        EXPECT_EQ(9, result.code);
        EXPECT_TRUE(digits.compare(0, size, result.output) == 0) << size << ": " << result.output.size();
    }
}

TEST(ExecuteTest, CommandsFollowEachOther)
{
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ((Result{i, std::to_string(i)}), run("out=" + std::to_string(i) + " cr lf exit=" + std::to_string(i)));
    }
}

TEST(ExecuteTest, QuotationMarksHoldAnArgumentTogether)
{
    EXPECT_EQ((Result{0, "[a  b][c]"}), run("\"arg=a  b\"   arg=c cr lf"));
}

TEST(ExecuteTest, OutputNobodyWantsGoesToTheSharedOne)
{
    EXPECT_EQ(5, System::instance().execute("\"" COMMAND_TOOL "\" out=text cr lf exit=5", System::defaultCmdOutput));
    EXPECT_EQ("text", System::defaultCmdOutput);
    System::defaultCmdOutput.clear();
}

TEST(ExecuteTest, OneTextMayServeForCommandAndOutput)
{
    std::string text = "\"" COMMAND_TOOL "\" out=text cr lf exit=5";
    EXPECT_EQ(5, System::instance().execute(text, text));
    EXPECT_EQ("text", text);
}

TEST(ExecuteTest, ErrorIsClearBehindACommand)
{
    System::instance().execute("\"" COMMAND_TOOL "\"", System::defaultCmdOutput);
    EXPECT_EQ(0u, System::lastError());
}

TEST(ExecuteTest, CommandThatCannotBeStartedThrows)
{
    std::string output = "from before";
    const std::string text = textOf<OperationFailedException>(
        [&] { System::instance().execute("kelvobase-test-no-such-program-anywhere", output); });
    EXPECT_EQ("Can't create process: (2):", text.substr(0, 26));
    EXPECT_LT(26u, text.size());
    EXPECT_EQ("", output);
    EXPECT_EQ(0u, System::lastError());
}

} // namespace
