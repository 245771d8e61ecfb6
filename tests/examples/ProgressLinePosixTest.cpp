#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

namespace seriesstat
{

namespace
{

using namespace std::chrono_literals;

/// Both ends of what a child writes its standard error to.
struct Wire
{
    int reader = -1;
    int writer = -1;
};

Wire pipeWire()
{
    int ends[2] = {-1, -1};
    EXPECT_EQ(0, ::pipe(ends));
    return {ends[0], ends[1]};
}

Wire terminalWire(unsigned short columns)
{
    const int reader = ::posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_GE(reader, 0);
    EXPECT_EQ(0, ::grantpt(reader));
    EXPECT_EQ(0, ::unlockpt(reader));
    const int writer = ::open(::ptsname(reader), O_RDWR | O_NOCTTY);
    EXPECT_GE(writer, 0);
    winsize size{};
    size.ws_col = columns;
    EXPECT_EQ(0, ::ioctl(writer, TIOCSWINSZ, &size));
    return {reader, writer};
}

/// Everything up to the end; a terminal ends with an error.
std::string allFrom(int reader)
{
    std::string text;
    char bytes[256];
    for (ssize_t count = 0; (count = ::read(reader, bytes, sizeof bytes)) > 0;) {
        text.append(bytes, static_cast<std::size_t>(count));
    }
    return text;
}

/// A directory with a series that takes its time, a good one and a bad one.
class ProgressLinePosixTest : public ::testing::Test
{
protected:
    ProgressLinePosixTest()
    {
        EXPECT_EQ(0, ::mkfifo((directory / "slow.txt").c_str(), 0600));
        directory.write("good.txt", "1\n2\n");
        directory.write("bad.txt", "one\n");
    }

    pid_t startOn(const Wire& wire, const char* second)
    {
        const std::string place = directory.path().string();
        const pid_t child = ::fork();
        if (child == 0) {
            const int nothing = ::open("/dev/null", O_WRONLY);
            const bool ready = ::dup2(nothing, STDOUT_FILENO) >= 0 && ::dup2(wire.writer, STDERR_FILENO) >= 0 &&
                               ::close(wire.writer) == 0 && ::close(wire.reader) == 0 && ::chdir(place.c_str()) == 0;
            if (ready) {
                ::execl(SERIESSTAT_PROGRAM, "seriesstat", "-qx", "slow.txt", second, nullptr);
            }
            ::_exit(127);
        }
        ::close(wire.writer);
        return child;
    }

    /// Lets the first series take longer than anybody waits without a word, and returns what standard error got.
    std::string run(const Wire& wire, const char* second, int expectedStatus)
    {
        const pid_t child = startOn(wire, second);
        const int series = ::open((directory / "slow.txt").c_str(), O_WRONLY); // waits for the reader
        std::this_thread::sleep_for(700ms);
        EXPECT_EQ(4, ::write(series, "3\n5\n", 4));
        ::close(series);
        const std::string text = allFrom(wire.reader);
        ::close(wire.reader);
        int status = -1;
        EXPECT_EQ(child, ::waitpid(child, &status, 0));
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(expectedStatus, WEXITSTATUS(status));
        return text;
    }

    KelvoBase::test::ScratchDirectory directory;
};

TEST_F(ProgressLinePosixTest, TerminalShowsProgressAndIsLeftClean)
{
    EXPECT_EQ("reading 2 of 2: good.txt\r" + std::string(24, ' ') + "\r", run(terminalWire(80), "good.txt", 0));
}

TEST_F(ProgressLinePosixTest, NarrowTerminalShowsTheBeginning)
{
    EXPECT_EQ("reading 2 of 2: good\r" + std::string(20, ' ') + "\r", run(terminalWire(21), "good.txt", 0));
}

TEST_F(ProgressLinePosixTest, TerminalOfUnknownWidthShowsTheLine)
{
    EXPECT_EQ("reading 2 of 2: good.txt\r" + std::string(24, ' ') + "\r", run(terminalWire(0), "good.txt", 0));
}

TEST_F(ProgressLinePosixTest, MessageStandsWhereTheLineWas)
{
    const std::string text = run(terminalWire(80), "bad.txt", 1);
    EXPECT_TRUE(text.starts_with("reading 2 of 2: bad.txt\r" + std::string(23, ' ') +
                                 "\rbad.txt:1: \"one\" is not a finite decimal number.\r\n"))
        << text;
}

TEST_F(ProgressLinePosixTest, PipeGetsNothing)
{
    EXPECT_EQ("", run(pipeWire(), "good.txt", 0));
}

} // namespace

} // namespace seriesstat
