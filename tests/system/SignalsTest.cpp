#include "support/Capture.h"

#include <kelvobase/System.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <csignal>

namespace
{

using namespace KelvoBase;
using test::TraceCapture;

const std::string line = "|-- System(): Could not install signal handler\n";

extern "C" void otherHandler(int) {}

/// Both signals have their default action at the beginning and at the end, and no signal is stored.
class SignalsTest : public ::testing::Test
{
protected:
    SignalsTest() { restore(); }
    ~SignalsTest() override { restore(); }

    static void restore()
    {
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
        system().signalReset();
    }
    static System& system() { return System::instance(); }

    /// What is installed for a signal, which gets its default action.
    static bool isLatched(int signal) { return std::signal(signal, SIG_DFL) == handleSignal; }
};

TEST_F(SignalsTest, NothingIsStoredAtFirst)
{
    EXPECT_EQ(0, system().signalReceived());
}

TEST_F(SignalsTest, HandlerStoresItsArgument)
{
    handleSignal(42);
    EXPECT_EQ(42, system().signalReceived());
    EXPECT_EQ(42, system().signalReceived());
}

TEST_F(SignalsTest, LaterSignalReplacesTheNumber)
{
    handleSignal(15);
    handleSignal(2);
    EXPECT_EQ(2, system().signalReceived());
}

TEST_F(SignalsTest, ResetForgetsTheSignal)
{
    handleSignal(15);
    system().signalReset();
    EXPECT_EQ(0, system().signalReceived());
}

TEST_F(SignalsTest, HandlerWritesNothingToTheTrace)
{
    const TraceCapture trace(Trace::verbose);
    handleSignal(15);
    EXPECT_EQ("", trace.text());
}

TEST_F(SignalsTest, DeliveredSignalIsStoredUntilTheReset)
{
    system().enableSignalHandling(true, System::sigterm);
    std::raise(SIGTERM);
    EXPECT_EQ(15, system().signalReceived());
    std::raise(SIGINT);
    EXPECT_EQ(2, system().signalReceived());
    system().signalReset();
    EXPECT_EQ(0, system().signalReceived());
}

TEST_F(SignalsTest, MasksSelectTheirSignals)
{
    // Required, Q-803
    struct Row
    {
        int mask;
        bool interrupt;
        bool terminate;
    };
    const Row rows[] = {
        {System::sigint, true, true},
        {System::sigterm, true, true},
        {System::sighup, false, false},
        {System::sigalrm, false, false},
        {1, false, true},
        {4, false, true},
        {5, false, true},
        {8, false, true},
        {9, false, true},
        {12, false, true},
        {13, false, true},
        {3, true, true},
        {6, true, true},
        {7, true, true},
        {10, true, true},
        {11, true, true},
        {14, true, true},
        {16, false, false},
        {17, false, true},
        {18, true, true},
        {32 + 64 + 128, false, false},
        {-1, true, true},
        {-16, false, false},
    };
    for (const Row& row : rows) {
        system().enableSignalHandling(true, row.mask);
        EXPECT_EQ(row.interrupt, isLatched(SIGINT)) << row.mask;
        EXPECT_EQ(row.terminate, isLatched(SIGTERM)) << row.mask;
    }
}

TEST_F(SignalsTest, CallWithFalseInstallsNothing)
{
    system().enableSignalHandling(false, System::sigterm);
    EXPECT_FALSE(isLatched(SIGINT));
    EXPECT_FALSE(isLatched(SIGTERM));
}

TEST_F(SignalsTest, CallWithFalseRemovesNothing)
{
    // Required, Q-801
    system().enableSignalHandling(true, System::sigterm);
    system().enableSignalHandling(false, System::sigterm);
    EXPECT_TRUE(isLatched(SIGINT));
    EXPECT_TRUE(isLatched(SIGTERM));
}

TEST_F(SignalsTest, CallWithFalseIsSilent)
{
    system().enableSignalHandling(true, System::sigterm);
    const TraceCapture trace(Trace::verbose);
    system().enableSignalHandling(false, System::sigterm);
    EXPECT_EQ("", trace.text());
}

TEST_F(SignalsTest, RepeatedCallInstallsAgain)
{
    // Required, Q-801
    system().enableSignalHandling(true, System::sigterm);
    std::signal(SIGTERM, SIG_DFL);
    system().enableSignalHandling(true, System::sigterm);
    EXPECT_TRUE(isLatched(SIGTERM));
}

TEST_F(SignalsTest, FirstInstallationIsSilent)
{
    const TraceCapture trace(Trace::verbose);
    system().enableSignalHandling(true, System::sigterm);
    EXPECT_EQ("", trace.text());
}

TEST_F(SignalsTest, RepeatedCallWritesALineForEachSignal)
{
    // Required, Q-802
    system().enableSignalHandling(true, System::sigterm);
    const TraceCapture trace(Trace::fail);
    system().enableSignalHandling(true, System::sigterm);
    EXPECT_EQ(line + line, trace.text());
}

TEST_F(SignalsTest, ReplacedHandlerWritesTheLineAndIsReplaced)
{
    // Required, Q-802
    std::signal(SIGTERM, otherHandler);
    const TraceCapture trace(Trace::fail);
    system().enableSignalHandling(true, 1);
    EXPECT_EQ(line, trace.text());
    EXPECT_TRUE(isLatched(SIGTERM));
}

TEST_F(SignalsTest, IgnoredSignalWritesTheLineAndIsReplaced)
{
    // Required, Q-802
    std::signal(SIGINT, SIG_IGN);
    const TraceCapture trace(Trace::fail);
    system().enableSignalHandling(true, System::sigint);
    EXPECT_EQ(line, trace.text());
    EXPECT_TRUE(isLatched(SIGINT));
}

TEST_F(SignalsTest, LineIsNotShownBelowItsLevel)
{
    std::signal(SIGTERM, otherHandler);
    const TraceCapture trace(Trace::crit);
    system().enableSignalHandling(true, 1);
    EXPECT_EQ("", trace.text());
}

} // namespace
