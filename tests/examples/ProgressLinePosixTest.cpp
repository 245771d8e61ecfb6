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

    explicit operator bool() const { return reader >= 0 && writer >= 0; }
};

Wire pipeWire()
{
    int ends[2] = {-1, -1};
    EXPECT_EQ(0, ::pipe(ends));
    return {ends[0], ends[1]};
}

constexpr const char* noTerminals = "this system has no pseudo-terminals";

/// Nothing where there are no pseudo-terminals, as in a bare container.
Wire terminalWire(unsigned short columns)
{
    const int reader = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (reader < 0 || ::grantpt(reader) != 0 || ::unlockpt(reader) != 0) {
        return {};
    }
    const int writer = ::open(::ptsname(reader), O_RDWR | O_NOCTTY);
    if (writer < 0) {
        ::close(reader);
        return {};
    }
    winsize size{};
    size.ws_col = columns;
    EXPECT_EQ(0, ::ioctl(writer, TIOCSWINSZ, &size));
    return {reader, writer};
}

/// The writing end of a pipe with a name, as soon as somebody reads it.
int openForItsReader(const std::filesystem::path& pipe)
{
    for (int attempt = 0; attempt < 3000; ++attempt) {
        const int writer = ::open(pipe.c_str(), O_WRONLY | O_NONBLOCK);
        if (writer >= 0) {
            return writer;
        }
        std::this_thread::sleep_for(10ms);
    }
    ADD_FAILURE() << "nobody reads " << pipe;
    return -1;
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
        const int series = openForItsReader(directory / "slow.txt");
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
    const Wire wire = terminalWire(80);
    if (!wire) {
        GTEST_SKIP() << noTerminals;
    }
    EXPECT_EQ("reading 2 of 2: good.txt\r" + std::string(24, ' ') + "\r", run(wire, "good.txt", 0));
}

TEST_F(ProgressLinePosixTest, NarrowTerminalShowsTheBeginning)
{
    const Wire wire = terminalWire(21);
    if (!wire) {
        GTEST_SKIP() << noTerminals;
    }
    EXPECT_EQ("reading 2 of 2: good\r" + std::string(20, ' ') + "\r", run(wire, "good.txt", 0));
}

TEST_F(ProgressLinePosixTest, TerminalOfUnknownWidthShowsTheLine)
{
    const Wire wire = terminalWire(0);
    if (!wire) {
        GTEST_SKIP() << noTerminals;
    }
    EXPECT_EQ("reading 2 of 2: good.txt\r" + std::string(24, ' ') + "\r", run(wire, "good.txt", 0));
}

TEST_F(ProgressLinePosixTest, MessageStandsWhereTheLineWas)
{
    const Wire wire = terminalWire(80);
    if (!wire) {
        GTEST_SKIP() << noTerminals;
    }
    const std::string text = run(wire, "bad.txt", 1);
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
