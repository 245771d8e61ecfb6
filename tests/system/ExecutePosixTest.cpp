#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <thread>

namespace
{

using namespace KelvoBase;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using test::ScratchDirectory;
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

Result run(const std::string& command)
{
    Result result{-1, ""};
    result.code = System::instance().execute(command, result.output);
    return result;
}

/// What a shell's script gives; it must hold no apostrophe.
Result runScript(const std::string& script)
{
    return run("/bin/sh -c '" + script + "'");
}

std::string failureOf(const std::string& command)
{
    return textOf<OperationFailedException>([&] { run(command); });
}

/// Expects `action` to be true in a child process.
template <typename Action>
void expectInChild(Action action)
{
    EXPECT_EXIT(_exit(action() ? 0 : 1), ::testing::ExitedWithCode(0), "");
}

std::filesystem::path program(const ScratchDirectory& scratch, const std::string& name, const std::string& content)
{
    const std::filesystem::path path = scratch.write(name, content);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
}

TEST(ExecutePosixTest, OnlyOneLineEndIsCut)
{
    // Required, Q-825
    struct Row
    {
        const char* written;
        const char* given;
    };
    for (const Row& row : {Row{"hello\\r\\n", "hello"}, Row{"hello\\n", "hello"}, Row{"hello", "hello"}, Row{"x", "x"},
                           Row{"\\n", ""}, Row{"\\r\\n", ""}, Row{"a\\n\\n", "a\n"}, Row{"a \\n", "a "},
                           Row{"a\\r", "a\r"}, Row{"a\\n\\r", "a\n\r"}, Row{"a\\r\\r\\n", "a\r"}, Row{"", ""}}) {
        EXPECT_EQ((Result{0, row.given}), run(std::string("printf '") + row.written + "'")) << row.written;
    }
}

TEST(ExecutePosixTest, WordsAreHandedOnWithoutExpansion)
{
    EXPECT_EQ((Result{0, "<$HOME>\n<*>\n<a b>\n<c d>\n<|>\n<cat>"}),
              run("printf '<%s>\\n' $HOME * 'a b' \"c d\" | cat"));
}

TEST(ExecutePosixTest, ProgramIsFoundOnThePath)
{
    const ScratchDirectory scratch;
    program(scratch, "kelvobase-test-program", "#!/bin/sh\necho found\n");
    const test::ScopedEnvironment path("PATH", scratch.path().string());
    EXPECT_EQ((Result{0, "found"}), run("kelvobase-test-program"));
    EXPECT_EQ("Can't create process: (2):No such file or directory", failureOf("printf x"));
}

TEST(ExecutePosixTest, RelativeProgramIsFoundInTheWorkingDirectory)
{
    const ScratchDirectory scratch;
    program(scratch, "program", "#!/bin/sh\npwd\n");
    const test::ScopedWorkingDirectory there(scratch.path());
    EXPECT_EQ((Result{0, scratch.path().string()}), run("./program"));
}

TEST(ExecutePosixTest, EnvironmentIsHandedOn)
{
    const test::ScopedEnvironment variable("KELVOBASE_TEST_EXECUTE", "a value");
    EXPECT_EQ((Result{0, "a value"}), run("printenv KELVOBASE_TEST_EXECUTE"));
}

TEST(ExecutePosixTest, CommandsThatCannotBeStartedThrowWithTheSystemsText)
{
    const ScratchDirectory scratch;
    const std::string there = scratch.path().string() + "/";
    scratch.write("data", "#!/bin/sh\n");
    program(scratch, "orphan", "#!/no/such/interpreter\n");
    program(scratch, "nothing", "no program at all\n");
    struct Row
    {
        std::string command;
        std::string reason;
    };
    const std::vector<Row> rows = {
        {there + "missing", "(2):No such file or directory"},
        {"kelvobase-test-no-such-program", "(2):No such file or directory"},
        {there + "data", "(13):Permission denied"},
        {there, "(13):Permission denied"},
        {scratch.path().string(), "(13):Permission denied"},
        {there + "data/x", "(20):Not a directory"},
        {there + "orphan", "(2):No such file or directory"},
        {there + "nothing", "(8):Exec format error"},
        {"\"\"", "(2):No such file or directory"},
        {"", "(22):Invalid argument"},
        {"  ", "(22):Invalid argument"},
        {"echo 'x", "(22):Invalid argument"},
        {"echo \"x", "(22):Invalid argument"},
        {std::string("echo a\0b", 8), "(22):Invalid argument"},
        {"true " + std::string(200000, 'x'), "(7):Argument list too long"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ("Can't create process: " + row.reason, failureOf(row.command)) << row.command.substr(0, 100);
        EXPECT_EQ(0u, System::lastError());
    }
}

TEST(ExecutePosixTest, LongCommandLinesAreTaken)
{
    const std::string word(100000, 'x');
    EXPECT_EQ((Result{0, word}), run("printf %s " + word));
}

TEST(ExecutePosixTest, CommandEndedByASignalHasItsNumberAbove128)
{
    EXPECT_EQ((Result{128 + 9, "first"}), runScript("echo first; kill -9 $$"));
    EXPECT_EQ((Result{128 + 15, ""}), runScript("kill $$"));
}

TEST(ExecutePosixTest, ThereIsNoInput)
{
    EXPECT_EQ((Result{0, "/dev/null"}), run("readlink /proc/self/fd/0"));
    EXPECT_EQ((Result{0, ""}), run("cat"));
}

TEST(ExecutePosixTest, OutputHandedOnIsWaitedFor)
{
    EXPECT_EQ((Result{4, "early\nlate"}), runScript("(sleep 0.3; echo late) & echo early; exit 4"));
}

std::string stateOf(const std::string& process)
{
    return run("sh -c 'grep ^State: /proc/" + process + "/status 2>/dev/null; true'").output;
}

TEST(ExecutePosixTest, CommandThatClosesItsOutputAndRunsOnIsStillRunning)
{
    // Required, Q-824
    const Clock::time_point start = Clock::now();
    const Result result = runScript("echo $$; exec >/dev/null 2>&1; exec sleep 5");
    EXPECT_EQ(259, result.code);
    EXPECT_LT(Clock::now() - start, 4s);
    EXPECT_FALSE(stateOf(result.output).empty());
    run("sh -c 'kill -9 " + result.output + "'");
}

TEST(ExecutePosixTest, EndSoonBehindTheOutputIsNoticedAtOnce)
{
    bool isNoticed = false; // at least once; a busy machine may come too late
    for (int i = 0; i < 10 && !isNoticed; ++i) {
        const Clock::time_point start = Clock::now();
        const Result result = runScript("exec >/dev/null 2>&1; sleep 0.01; exit 6");
        isNoticed = result.code == 6 && Clock::now() - start < 200ms;
    }
    EXPECT_TRUE(isNoticed);
}

/// Waits until a process is there no more, or only as a zombie.
void awaitEnd(const std::string& process)
{
    const std::filesystem::path status = "/proc/" + process + "/status";
    for (int i = 0; i < 500 && std::filesystem::exists(status); ++i) {
        if (test::contentOf(status).find("State:\tZ") != std::string::npos) {
            return;
        }
        std::this_thread::sleep_for(10ms);
    }
}

TEST(ExecutePosixTest, CommandThatRanOnLeavesNoZombieBehindTheNextOne)
{
    const Result result = runScript("echo $$; exec >/dev/null 2>&1; exec sleep 5");
    ASSERT_EQ(259, result.code);
    kill(std::stoi(result.output), SIGKILL);
    awaitEnd(result.output);
    EXPECT_TRUE(std::filesystem::exists("/proc/" + result.output));
    EXPECT_EQ((Result{0, ""}), run("true"));
    EXPECT_FALSE(std::filesystem::exists("/proc/" + result.output));
}

TEST(ExecutePosixTest, CommandLeavesNoZombie)
{
    const Result result = runScript("echo $$");
    EXPECT_FALSE(std::filesystem::exists("/proc/" + result.output));
}

/// The descriptors of this process; those that children inherit only, if asked for.
std::set<int> descriptors(bool inherited)
{
    std::set<int> found;
    for (int number = 0; number < 1024; ++number) {
        const int flags = fcntl(number, F_GETFD);
        if (flags >= 0 && !(inherited && (flags & FD_CLOEXEC) != 0)) {
            found.insert(number);
        }
    }
    return found;
}

TEST(ExecutePosixTest, NoDescriptorStaysOpen)
{
    const std::set<int> before = descriptors(false);
    runScript("echo text; exit 3");
    run("sh -c 'kill -9 " + runScript("echo $$; exec >/dev/null 2>&1; exec sleep 5").output + "'");
    EXPECT_EQ(before, descriptors(false));
}

TEST(ExecutePosixTest, FailedStartLeavesThePipeOpen)
{
    // Required, Q-827
    expectInChild([&] {
        const std::size_t before = descriptors(false).size();
        failureOf("/no/such/program");
        return descriptors(false).size() == before + 2;
    });
}

TEST(ExecutePosixTest, NoDescriptorReachesAChild)
{
    expectInChild([&] {
        failureOf("/no/such/program"); // whose pipe stays
        std::set<int> expected = descriptors(true);
        expected.insert({0, 1, 2});
        std::string text;
        for (const int number : expected) {
            text += std::to_string(number) + " ";
        }
        return run("\"" DESCRIPTORS_TOOL "\"").output == text;
    });
}

TEST(ExecutePosixTest, ProcessWithoutStandardStreamsRunsCommands)
{
    for (int closed = 1; closed < 8; ++closed) {
        SCOPED_TRACE(closed);
        expectInChild([&] {
            for (int number = 0; number < 3; ++number) {
                if ((closed & (1 << number)) != 0) {
                    close(number);
                }
            }
            return runScript("echo out; echo err >&2; cat; exit 5") == Result{5, "out\nerr"};
        });
    }
}

/// Leaves this process room for `count` more descriptors.
void limitDescriptors(std::size_t count)
{
    std::vector<int> free(count);
    for (int& number : free) {
        number = dup(0);
    }
    const rlim_t limit = static_cast<rlim_t>(free.back()) + 1;
    const rlimit both{limit, limit};
    setrlimit(RLIMIT_NOFILE, &both);
    for (const int number : free) {
        close(number);
    }
}

TEST(ExecutePosixTest, PipeThatCannotBeMadeThrows)
{
    expectInChild([&] {
        limitDescriptors(1);
        const std::string text = failureOf("true");
        return text == "Error while creating pipe for child process";
    });
}

TEST(ExecutePosixTest, RoomForAPipeIsEnough)
{
    expectInChild([&] {
        limitDescriptors(2);
        return runScript("echo text; exit 5") == Result{5, "text"};
    });
}

/// Makes this process one on a system without descriptors of processes.
void forbidWatching()
{
    std::array<sock_filter, 4> filter = {
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_open, 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog rules{filter.size(), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &rules) != 0 ||
        syscall(SYS_pidfd_open, getpid(), 0) >= 0) {
        _exit(99);
    }
}

TEST(ExecutePosixTest, SystemWithoutDescriptorsOfProcessesDoesTheSame)
{
    expectInChild([&] {
        forbidWatching();
        const bool ended = runScript("echo text; exit 5") == Result{5, "text"} &&
                           runScript("exec >/dev/null 2>&1; sleep 0.01; exit 6").code == 6;
        const Result result = runScript("echo $$; exec >/dev/null 2>&1; exec sleep 5");
        run("sh -c 'kill -9 " + result.output + "'");
        return ended && result.code == 259;
    });
}

} // namespace
