#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace
{

using namespace KelvoBase;
using test::textOf;

struct Result
{
    int code;
    std::string output;
};

/// What the command with these arguments gives.
Result run(const std::string& arguments)
{
    Result result{-1, "from before"};
    result.code = System::instance().execute("\"" COMMAND_TOOL "\" " + arguments, result.output);
    return result;
}

/// The text of a command that cannot be started.
std::string failureOf(const std::string& command)
{
    return textOf<OperationFailedException>([&] { System::instance().execute(command, System::defaultCmdOutput); });
}

TEST(ExecuteWin32Test, LastTwoCharactersAreCutWhateverTheyAre)
{
    // Required, Q-825
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"out=hello cr lf", "hello"},
        {"out=hello lf", "hell"},
        {"out=hello", "hel"},
        {"out=hi", ""},
        {"out=h", "h"},
        {"lf", "\n"},
        {"cr lf", ""},
        {"out=h lf", ""},
        {"out=a cr lf cr lf", "a\r\n"},
        {"out=a lf cr", "a"},
        {"", ""},
    };
    for (const auto& [arguments, output] : rows) {
        EXPECT_EQ(output, run(arguments).output) << arguments;
    }
}

TEST(ExecuteWin32Test, LineEndOfTheRunTimeIsTheOneThatIsCut)
{
    EXPECT_EQ("hello", run("line=hello").output);
}

TEST(ExecuteWin32Test, ExitCodesHave32Bits)
{
    EXPECT_EQ(256, run("exit=256").code);
    EXPECT_EQ(-1, run("exit=-1").code);
    EXPECT_EQ(259, run("exit=259").code) << "as of one that runs on";
}

TEST(ExecuteWin32Test, CommandThatRunsOnIsNotWaitedFor)
{
    // Required, Q-824
    const Time::Mtime_t begin = System::instance().now();
    const Result result = run("out=text cr lf close sleep=5000 exit=3");
    Time::Mtime_t span = System::instance().now();
    span -= begin;
    EXPECT_EQ(259, result.code);
    EXPECT_EQ("text", result.output);
    EXPECT_LT(span.seconds, 5);
}

TEST(ExecuteWin32Test, CommandLineIsGivenAsItStands)
{
    EXPECT_EQ("[a'b][c'][$x][%TMP%][*][a\\b][>][x]",
              run("arg=a'b arg=c' arg=$x arg=%TMP% arg=* arg=a\\b arg=> arg=x cr lf").output);
}

TEST(ExecuteWin32Test, CommandThatCannotBeStartedThrowsWithTheSystemsText)
{
    EXPECT_EQ("Can't create process: (2):" + System::errorMsg(2), failureOf("kelvobase-no-such-program x"));
    EXPECT_EQ("Can't create process: (87):" + System::errorMsg(87), failureOf(std::string("a\0b", 3)));
    EXPECT_EQ(0u, System::lastError());
}

TEST(ExecuteWin32Test, FileThatIsNoProgramCannotBeStarted)
{
    const test::ScratchDirectory scratch;
    scratch.write("text.exe", "This is a text and nothing that could run.\n");
    EXPECT_EQ("Can't create process: (193):" + System::errorMsg(193),
              failureOf("\"" + scratch.location("text.exe") + "\""));
}

TEST(ExecuteWin32Test, CommandsOfAShellAreNone)
{
    EXPECT_EQ("Can't create process: (2):", failureOf("rem nothing").substr(0, 26));
}

} // namespace
