/// \file
/// Runs one scenario of the trace in a process that has not traced yet: `traceTool SCENARIO [FILE]`.

#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>

namespace
{

using namespace KelvoBase;
using Accessor = const std::bitset<64>& (*)();

struct NamedAccessor
{
    const char* name;
    Accessor accessor;
};

constexpr NamedAccessor accessors[] = {
    {"Searches", &TraceArea::Searches},   {"Learners", &TraceArea::Learners}, {"Summaries", &TraceArea::Summaries},
    {"Numerics", &TraceArea::Numerics},   {"Outline", &TraceArea::Outline},   {"App", &TraceArea::App},
    {"KelvoBase", &TraceArea::KelvoBase}, {"All", &TraceArea::All},           {"Undef", &TraceArea::Undef},
};

std::string destinationFile; // the second argument

/// A line for each accessor: its value in hexadecimal, or its failure.
void printAreas()
{
    for (const auto& [name, accessor] : accessors) {
        try {
            const auto bits = accessor().to_ullong();
            std::cout << name << ' ' << std::hex << bits << '\n';
        } catch (const ObjectNotExistentException& e) {
            std::cout << name << ": " << e.what() << '\n';
        }
    }
}

void areasWithoutRegistry()
{
    printAreas();
}

void areasBehindAFailedLookUp()
{
    printAreas();
    std::cout << "startup\n";
    TraceAreaMgr::startup();
    printAreas();
}

void areasBehindTeardown()
{
    TraceAreaMgr::startup();
    printAreas();
    const auto* address = &TraceArea::App();
    TraceAreaMgr::teardown();
    std::cout << "teardown\n";
    printAreas();
    std::cout << (address == &TraceArea::App() ? "same" : "other") << " address\n";
}

void registryAlone()
{
    std::cout << (TraceAreaMgr::instance() == nullptr) << '\n';
    TraceAreaMgr::teardown();
    std::cout << (TraceAreaMgr::instance() == nullptr) << '\n';
}

void defaults()
{
    std::cout << TraceStream::instance().getMask() << '\n';
    TraceStream::instance() << "lost" << std::endl;
    std::cout << TraceStream::instance().good() << '\n';
}

/// Text without conditions of its own has those of a new buffer, level 3 for all areas.
void firstConditions()
{
    TraceStream& trace = TraceStream::instance();
    trace << "lost\n";
    trace.traceto(Trace::warn, "cerr", TraceArea::All());
    trace << "level 2\n";
    trace.traceto(Trace::verbose, "cerr", std::bitset<64>(1ULL << 40));
    trace << "level 3\n";
}

void standardStream(const char* dest)
{
    TraceStream& trace = TraceStream::instance();
    trace.traceto(Trace::warn, dest, TraceArea::All());
    trace.setNextTraceConditions(Trace::warn, TraceArea::All());
    trace << "seen" << std::endl;
    trace.setNextTraceConditions(Trace::verbose, TraceArea::All());
    trace << "not seen" << std::endl;
}

void toCout()
{
    standardStream("cout");
}

void toCerr()
{
    standardStream("cerr");
}

void withoutStandardStreams()
{
    haveCerr = false;
    standardStream("cout");
    standardStream("cerr");
}

/// What stands unfinished when the process ends in the regular way.
void unfinished()
{
    TraceStream::instance().traceto(Trace::fail, destinationFile.empty() ? "cout" : destinationFile, TraceArea::All());
    TraceStream::instance().setNextTraceConditions(Trace::fail, TraceArea::All());
    TraceStream::instance() << "no line end";
}

void unfinishedAtExit()
{
    unfinished();
    std::exit(3);
}

/// A stream that outlives the process-wide one, which is made behind it.
void lateStream()
{
    static TraceStream late;
    TraceStream::instance().traceto(Trace::fail, "cout", TraceArea::All());
    TraceStream::instance().setNextTraceConditions(Trace::fail, TraceArea::All());
    late << "late";
}

void stdioGoesItsOwnWay()
{
    std::cout << "a\n";
    TraceStream::instance();
    std::cout << "b\n";
    std::cout << (std::ios_base::sync_with_stdio(false) ? "in step" : "out of step") << '\n';
}

/// One line of three insertions at each level.
void lines()
{
    TraceStream& trace = TraceStream::instance();
    trace.traceto(Trace::verbose, "cerr", TraceArea::All());
    for (unsigned int level = Trace::crit; level <= Trace::verbose; ++level) {
        trace.setNextTraceConditions(level, TraceArea::All());
        trace << "level " << level << " of the trace" << std::endl;
    }
    trace.setNextTraceConditions(Trace::verbose, TraceArea::All());
    trace << "two\nlines" << std::endl;
}

const std::map<std::string, void (*)()> scenarios = {
    {"areasWithoutRegistry", areasWithoutRegistry},
    {"areasBehindAFailedLookUp", areasBehindAFailedLookUp},
    {"areasBehindTeardown", areasBehindTeardown},
    {"registryAlone", registryAlone},
    {"defaults", defaults},
    {"firstConditions", firstConditions},
    {"toCout", toCout},
    {"toCerr", toCerr},
    {"withoutStandardStreams", withoutStandardStreams},
    {"unfinished", unfinished},
    {"unfinishedAtExit", unfinishedAtExit},
    {"lateStream", lateStream},
    {"stdioGoesItsOwnWay", stdioGoesItsOwnWay},
    {"lines", lines},
};

} // namespace

int main(int argc, char** argv)
{
    const auto scenario = argc > 1 ? scenarios.find(argv[1]) : scenarios.end();
    if (scenario == scenarios.end()) {
        std::fputs("traceTool: no such scenario\n", stderr);
        return 2;
    }
    destinationFile = argc > 2 ? argv[2] : "";
    scenario->second();
    return 0;
}
