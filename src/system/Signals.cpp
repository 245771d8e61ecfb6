#include "trace/Message.h"

#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <csignal>

namespace KelvoBase
{

namespace
{

constexpr const char* notInstalled = "System(): Could not install signal handler";

static_assert(SIGINT == 2 && SIGTERM == 15, "tools see these numbers in signalReceived");

constinit volatile std::sig_atomic_t lastSignal = 0;

void install(int signal)
{
    // Required: a comparison with SIG_ERR would report failures alone; tools see the line also when an
    // earlier handler, an ignored signal among them, was replaced.
    if (std::signal(signal, handleSignal) != nullptr) {
        traceMessage(Trace::fail, TraceArea::All()) << notInstalled << std::endl;
    }
}

} // namespace

extern "C" void handleSignal(int signal)
{
    lastSignal = signal;
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes the process, which is what a System stands for
void System::enableSignalHandling(bool enable, int signals)
{
    // Required: the state is never set. Keeping it would make a repeated call with true do nothing and a call
    // with false remove handlers.
    if (enable == mSignalHandling) {
        return;
    }
    if ((signals & 2) != 0) {
        install(SIGINT);
    }
    // Required: any of the four low bits counts. A test for equality with `sigterm` would take SIGTERM away
    // from tools that pass `sigint`.
    if ((signals & 15) != 0) {
        install(SIGTERM);
    }
}

void System::signalReset()
{
    lastSignal = 0;
}

int System::signalReceived() const
{
    return lastSignal;
}

} // namespace KelvoBase
