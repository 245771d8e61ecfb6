// What the library itself does in front of a tool's work: the options that every tool has, and the two run lines.

#include "application/ListSeparator.h"
#include "trace/Message.h"
#include "trace/UnknownArea.h"

#include <kelvobase/Any.h>
#include <kelvobase/Application.h>
#include <kelvobase/System.h>
#include <kelvobase/Time.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <bitset>
#include <cstdlib>
#include <memory>
#include <ostream>

namespace KelvoBase
{

namespace
{

using Text = ScalarAny<std::string>;
using TextList = VectorAny<Text>;

constexpr char helpName[] = "help";
constexpr char versionName[] = "version";
constexpr char traceLevelName[] = "trace-level";
constexpr char traceAreaName[] = "trace-area";
constexpr char traceToName[] = "trace-to";

constexpr char helpHelp[] = "Show this help.";
constexpr char versionHelp[] = "Show the program version";
constexpr char traceLevelHelp[] = "minimum importance of logged messages (crit, fail, warn, verbose)";
constexpr char traceAreaHelp[] =
    "restricts output of trace message to defined trace areas (All, KelvoBase, CoreObjects, AttributeManagement, "
    "Partitions, Evaluators, Rewriting, Persistence, Numerics, Summaries, Learners, Searches, Drawing, QtDravo, "
    "Sorvik, TableStore, PyDravo, App[default])";
constexpr char traceToHelp[] = "where to store trace output (cout, cerr, or filename)";

std::string textOf(const CLOption& option)
{
    return option.getValue()->toString(listSeparator);
}

// Without a registry no area is known; it is gone when another application of this process was destroyed.
const std::bitset<64>& areaId(const std::string& name)
{
    const TraceAreaMgr* registry = TraceAreaMgr::instance();
    if (registry == nullptr) {
        throwUnknownArea(name);
    }
    return registry->getTraceAreaId(name);
}

std::bitset<64> selectedAreas(const Any& names)
{
    std::bitset<64> areas;
    for (unsigned int i = 0; i < names.size(); ++i) {
        areas |= areaId(names[i].toString(listSeparator));
    }
    return areas;
}

} // namespace

void Application::defineKelvoOptions()
{
    defineOption(helpName, 0, false).setHelp(helpHelp);
    defineOption(versionName, 0, false).setHelp(versionHelp);
    defineOption(traceLevelName, 't', false).setHelp(traceLevelHelp).setArg("level", new Text("warn"));
    auto areas = std::make_unique<TextList>();
    areas->add(Text("App"));
    defineOption(traceAreaName, 0, false).setHelp(traceAreaHelp).setArg("area", areas.release());
    defineOption(traceToName, 0, false).setHelp(traceToHelp).setArg("file", new Text("cerr"));
}

void Application::executeKelvoOptions()
{
    if (findOption(helpName)->isSet()) {
        usage();
        std::exit(EXIT_SUCCESS);
    }
    if (findOption(versionName)->isSet()) {
        message(versionText());
        std::exit(EXIT_SUCCESS);
    }
    const std::string levelName = textOf(*findOption(traceLevelName));
    const unsigned int level = Trace::interpret(levelName);
    check(level != Trace::undef, "Tracelevel " + levelName + " unknown.");
    // The areas are looked up first: a warning about one of them stands in front of all trace output.
    const CLOption& destination = *findOption(traceToName);
    const std::bitset<64> areas = selectedAreas(*findOption(traceAreaName)->getValue());
    TraceStream::instance().traceto(level, textOf(destination), areas);
}

void Application::writeRunLines() const
{
    const std::string commandLine = printCMDline();
    traceMessage(Trace::verbose, TraceArea::App()) << commandLine;

    const System& system = System::instance();
    const Time now(system.now());
    const std::string& host = system.getHostName();
    const std::string& user = system.getUserName();
    const std::string time = now.getTime();
    const std::string date = now.getDate();
    traceMessage(Trace::verbose, TraceArea::App())
        << "started at " << date << ' ' << time << " by " << user << '@' << host << std::endl;
}

std::string Application::printCMDline() const
{
    std::string line = mProgramName + " (Rev. " + mRevision + ") ";
    for (const CLOption* option : mOptions) {
        if (!option->isSet()) {
            continue;
        }
        line.append("--").append(option->getLong());
        if (option->getValue() != nullptr) {
            line.append("=").append(textOf(*option));
        }
        // Required: behind each option, the last one too; without it the "--" would touch its value.
        line += ' ';
    }
    if (!mPositionals.empty()) {
        line += "--";
    }
    for (const std::string& positional : mPositionals) {
        line.append(" ").append(positional);
    }
    line += '\n';
    return line;
}

const ResourceLocation& Application::getProgramLocation() const
{
    static std::unique_ptr<ResourceLocation> location;
    location = std::make_unique<ResourceLocation>(System::instance().getExeImagePath());
    if (!location->isFile()) {
        location = std::make_unique<ResourceLocation>(mProgramName);
    }
    return *location;
}

void Application::setYear(const std::string& year)
{
    mYear = year.empty() ? std::to_string(Time(System::instance().now()).getYear()) : year;
}

} // namespace KelvoBase
