#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <gtest/gtest.h>

#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>

// Every test changes what this process does with signals, so it does that in a child of its own.

namespace
{

using namespace KelvoBase;
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

Result run(const std::string& command)
{
    Result result{-1, ""};
    result.code = System::instance().execute(command, result.output);
    return result;
}

/// Expects `action` to be true in a child process.
template <typename Action>
void expectInChild(Action action)
{
    EXPECT_EXIT(_exit(action() ? 0 : 1), ::testing::ExitedWithCode(0), "");
}

/// One of the sets of signals that the system shows of a process, as bits.
unsigned long signalsOfCommand(const std::string& set)
{
    const std::string line = run("grep ^" + set + ": /proc/self/status").output;
    return std::stoul(line.substr(line.find('\t') + 1), nullptr, 16);
}

unsigned long bits(std::initializer_list<int> signals)
{
    unsigned long set = 0;
    for (const int signal : signals) {
        set |= 1UL << (signal - 1);
    }
    return set;
}

TEST(ExecuteSignalsPosixTest, IgnoredEndsOfChildrenHideTheExitCode)
{
    expectInChild([] {
        std::signal(SIGCHLD, SIG_IGN);
        std::string output;
        const std::string text =
            textOf<OperationFailedException>([&] { System::instance().execute("sh -c 'echo text; exit 5'", output); });
        return text == "Could not get exit code from process: (10):No child processes" && output == "text\n" &&
               System::lastError() == 0;
    });
}

TEST(ExecuteSignalsPosixTest, HandlerThatWaitsForAllChildrenTakesTheExitCode)
{
    expectInChild([] {
        std::signal(SIGCHLD, [](int) { wait(nullptr); });
        const std::string text = textOf<OperationFailedException>([] { run("sh -c 'exec >&- 2>&-; sleep 0.01'"); });
        return text == "Could not get exit code from process: (10):No child processes";
    });
}

TEST(ExecuteSignalsPosixTest, InterruptionsDoNoHarm)
{
    expectInChild([] {
        struct sigaction action = {};
        action.sa_handler = [](int) {}; // without SA_RESTART
        sigaction(SIGALRM, &action, nullptr);
        const itimerval timer{{0, 1000}, {0, 1000}};
        setitimer(ITIMER_REAL, &timer, nullptr);
        const Result slow = run("sh -c 'trap \"\" ALRM; for i in 1 2 3 4 5; do echo $i; sleep 0.02; done; "
                                "exec >/dev/null 2>&1; sleep 0.01; exit 3'");
        const itimerval none{};
        setitimer(ITIMER_REAL, &none, nullptr);
        return slow == Result{3, "1\n2\n3\n4\n5"};
    });
}

TEST(ExecuteSignalsPosixTest, HandlersOfThisProcessAreNoneOfTheCommand)
{
    expectInChild([] {
        System::instance().enableSignalHandling(true, System::sigterm);
        return run("sh -c 'kill $$'").code == 128 + SIGTERM && System::instance().signalReceived() == 0;
    });
}

TEST(ExecuteSignalsPosixTest, BlockedSignalsReachTheCommand)
{
    expectInChild([] {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, nullptr);
        return signalsOfCommand("SigBlk") == 0 && run("sh -c 'kill $$'").code == 128 + SIGTERM;
    });
}

TEST(ExecuteSignalsPosixTest, IgnoredSignalsStayIgnoredButThoseThatProgramsCountOn)
{
    expectInChild([] {
        for (const int signal : {SIGHUP, SIGINT, SIGPIPE}) {
            std::signal(signal, SIG_IGN);
        }
        const unsigned long ignored = signalsOfCommand("SigIgn");
        return (ignored & bits({SIGHUP, SIGINT, SIGPIPE, SIGCHLD})) == bits({SIGHUP, SIGINT});
    });
}

TEST(ExecuteSignalsPosixTest, CommandCanWaitForItsChildrenWhateverThisProcessIgnores)
{
    expectInChild([] {
        std::signal(SIGCHLD, SIG_IGN);
        std::string output;
        textOf<OperationFailedException>(
            [&] { System::instance().execute("grep ^SigIgn: /proc/self/status", output); });
        const unsigned long ignored = std::stoul(output.substr(output.find('\t') + 1), nullptr, 16);
        return (ignored & bits({SIGCHLD})) == 0;
    });
}

} // namespace
