#include "support/FakePlatform.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <new>

namespace
{

using namespace KelvoBase;
using test::FakeSystem;
using test::textOf;

const System& sys()
{
    return System::instance();
}

TEST(ExecuteFaultsTest, GivesExitCodeAndOutput)
{
    const FakeSystem fake;
    fake->commands["tool -x  'y'"] = {"hello\r\n", 7};
    std::string output = "from before";
    EXPECT_EQ(7, sys().execute("tool -x  'y'", output)); // handed on as it stands
    EXPECT_EQ("hello", output);
    EXPECT_TRUE(fake->openHandles.empty());
}

TEST(ExecuteFaultsTest, SilentCommandLeavesTheOutputEmpty)
{
    const FakeSystem fake;
    fake->commands["silent"] = {"", 3};
    std::string output = "from before";
    EXPECT_EQ(3, sys().execute("silent", output));
    EXPECT_EQ("", output);
}

TEST(ExecuteFaultsTest, BlindCutTakesTwoCharactersAndLeavesASingleOne)
{
    struct Row
    {
        const char* written;
        const char* given;
    };
    for (const Row& row : {Row{"hello\r\n", "hello"}, Row{"hello\n", "hell"}, Row{"hello", "hel"}, Row{"ab", ""},
                           Row{"x", "x"}, Row{"\n", "\n"}, Row{"\r\n", ""}, Row{"a\r\n\r\n", "a\r\n"}}) {
        SCOPED_TRACE(row.written);
        const FakeSystem fake;
        fake->commands["tool"] = {row.written, 0};
        std::string output;
        sys().execute("tool", output);
        EXPECT_EQ(row.given, output);
    }
}

TEST(ExecuteFaultsTest, CutIsWhatThePlatformTakesForALineEnd)
{
    const FakeSystem fake;
    fake->lineEndLength = [](std::string_view output) { return output.ends_with("|") ? 1u : 0u; };
    fake->commands["one"] = {"text||", 0};
    fake->commands["none"] = {"text\r\n", 0};
    std::string output;
    sys().execute("one", output);
    EXPECT_EQ("text|", output);
    sys().execute("none", output);
    EXPECT_EQ("text\r\n", output);
}

TEST(ExecuteFaultsTest, ReadsBlocksOf4096BytesUpToTheEnd)
{
    const FakeSystem fake;
    std::string text;
    for (int i = 0; text.size() < 10000; ++i) {
        text += std::to_string(i);
    }
    fake->commands["long"] = {text + "\r\n", 0};
    std::string output;
    sys().execute("long", output);
    EXPECT_EQ(text, output);
    EXPECT_EQ((std::vector<std::size_t>{4096, 4096, 4096, 4096}), fake->readSizes);
}

TEST(ExecuteFaultsTest, PipeThatCannotBeMadeThrows)
{
    const FakeSystem fake;
    fake->pipeOpens = false;
    fake->commands["tool"] = {"text\r\n", 0};
    std::string output = "from before";
    EXPECT_EQ("Error while creating pipe for child process",
              textOf<OperationFailedException>([&] { sys().execute("tool", output); }));
    EXPECT_EQ("", output);
}

TEST(ExecuteFaultsTest, CommandThatCannotBeStartedThrowsWithoutABlankInFrontOfTheText)
{
    // Required, Q-826
    const FakeSystem fake;
    std::string output = "from before";
    EXPECT_EQ("Can't create process: (2):Not found",
              textOf<OperationFailedException>([&] { sys().execute("missing", output); }));
    EXPECT_EQ("", output);
    EXPECT_EQ(0u, fake->lastError);
}

TEST(ExecuteFaultsTest, CommandThatCannotBeStartedLeavesThePipeOpen)
{
    // Required, Q-827
    const FakeSystem fake;
    std::string output;
    textOf<OperationFailedException>([&] { sys().execute("missing", output); });
    EXPECT_EQ(2u, fake->openHandles.size());
}

TEST(ExecuteFaultsTest, EarlierErrorIsNotTakenForTheCommands)
{
    const FakeSystem fake;
    fake->lastError = 5;
    fake->commands["tool"] = {"", 0};
    std::string output;
    sys().execute("tool", output);
    EXPECT_EQ(0u, fake->lastError);
    fake->lastError = 5;
    fake->startError.reset();
    EXPECT_EQ("Can't create process: (0):All well",
              textOf<OperationFailedException>([&] { sys().execute("missing", output); }));
}

TEST(ExecuteFaultsTest, MissingExitCodeThrowsAndKeepsWhatWasRead)
{
    const FakeSystem fake;
    fake->commands["tool"] = {"text\r\n", std::nullopt};
    std::string output;
    EXPECT_EQ("Could not get exit code from process: (5):Denied",
              textOf<OperationFailedException>([&] { sys().execute("tool", output); }));
    EXPECT_EQ("text\r\n", output);
    EXPECT_EQ(0u, fake->lastError);
    EXPECT_TRUE(fake->openHandles.empty());
}

TEST(ExecuteFaultsTest, WriteEndIsClosedInFrontOfTheFirstReading)
{
    const FakeSystem fake;
    std::vector<std::size_t> open;
    fake->onRead = [&] { open.push_back(fake->openHandles.size()); };
    fake->commands["tool"] = {"text\r\n", 0};
    std::string output;
    sys().execute("tool", output);
    EXPECT_EQ((std::vector<std::size_t>{2, 2}), open); // the read end and the process
}

TEST(ExecuteFaultsTest, NothingStaysOpenIfMemoryRunsOut)
{
    const FakeSystem fake;
    fake->onRead = [] { throw std::bad_alloc(); };
    fake->commands["tool"] = {"text\r\n", 0};
    std::string output;
    EXPECT_THROW(sys().execute("tool", output), std::bad_alloc);
    EXPECT_TRUE(fake->openHandles.empty());
}

TEST(ExecuteFaultsTest, OneTextMayServeForCommandAndOutput)
{
    const FakeSystem fake;
    fake->commands["tool"] = {"text\r\n", 1};
    std::string text = "tool";
    EXPECT_EQ(1, sys().execute(text, text));
    EXPECT_EQ("text", text);
}

TEST(ExecuteFaultsTest, StillRunningIsAnExitCode)
{
    const FakeSystem fake;
    fake->commands["tool"] = {"text\r\n", platform::stillRunning};
    std::string output;
    EXPECT_EQ(259, sys().execute("tool", output));
    EXPECT_EQ("text", output);
}

} // namespace
