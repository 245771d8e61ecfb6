#include "Probe.h"
#include "support/Capture.h"

#include <kelvobase/Application.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace KelvoBase
{

namespace
{

using test::Capture;
using test::Ended;
using test::Probe;

/// Writes every virtual call into a log and can do something there.
class Logging : public Application
{
public:
    Logging() : Application("Logging", 2.5, "A. Author", "Logs.") {}

    void message(const std::string& text) const override { log += "message(" + text + ") "; }
    void error(const std::string& text, const std::string& hint) const override
    {
        log += "error(" + text + "|" + hint + ") ";
    }
    void startup(int argc, char** argv) override
    {
        visit("startup");
        Application::startup(argc, argv);
    }
    void preRunInit(int argc, char** argv) override
    {
        visit("preRunInit");
        Application::preRunInit(argc, argv);
    }
    void executeOptions() override
    {
        visit("executeOptions");
        Application::executeOptions();
    }
    void preParse(int& argc, char** argv) override
    {
        visit("preParse");
        Application::preParse(argc, argv);
    }
    void postParseInit() override { visit("postParseInit"); }
    int runMain() override
    {
        visit("runMain");
        return 5;
    }
    int run()
    {
        char name[] = "logging";
        char positional[] = "xy";
        char* argv[] = {name, positional, nullptr};
        return mainImpl(2, argv);
    }

    mutable std::string log;
    std::string place;
    std::function<void()> action;

private:
    void visit(const std::string& here)
    {
        log += here + " ";
        if (here == place) {
            action();
        }
    }
};

const std::string wholeRun = "startup preRunInit preParse executeOptions postParseInit runMain ";

TEST(Lifecycle, VirtualOperationsAreCalledInTheirOrder)
{
    Logging tool;
    tool.run();
    EXPECT_EQ(tool.log, wholeRun);
}

TEST(Lifecycle, ResultOfTheWorkIsTheStatus)
{
    Logging tool;
    EXPECT_EQ(tool.run(), 5);
}

TEST(Lifecycle, StartupTakesTheProgramNameAndNothingElse)
{
    Logging tool;
    EXPECT_EQ(tool.getProgramName(), "");
    char name[] = "path/to/logging";
    char* argv[] = {name, nullptr};
    tool.startup(0, argv);
    EXPECT_EQ(tool.getProgramName(), "path/to/logging");
    EXPECT_EQ(tool.nPositional(), 0u);
}

TEST(Lifecycle, MissingProgramNameIsEmpty)
{
    Probe tool;
    char* argv[] = {nullptr};
    EXPECT_EQ(tool.mainImpl(0, argv), 0);
    EXPECT_EQ(tool.getProgramName(), "");
}

TEST(Lifecycle, PreParseSeesTheOptionsSortedAndNothingParsed)
{
    Logging tool;
    tool.defineOption("alpha", 0, false);
    std::string first;
    tool.place = "preParse";
    tool.action = [&] {
        first = tool.findOptionBy([](const CLOption&) { return true; })->getLong();
        EXPECT_EQ(tool.nPositional(), 0u);
    };
    tool.run();
    EXPECT_EQ(first, "alpha");
}

TEST(Lifecycle, ExecuteOptionsSeesTheParsedLine)
{
    Logging tool;
    unsigned int seen = 0;
    tool.place = "executeOptions";
    tool.action = [&] { seen = tool.nPositional(); };
    tool.run();
    EXPECT_EQ(seen, 1u);
    EXPECT_EQ(tool.getPositional(0), "xy");
}

TEST(Lifecycle, OptionsMayStillBeDefinedInStartup)
{
    struct Late : public Probe
    {
        void startup(int argc, char** argv) override
        {
            Probe::startup(argc, argv);
            defineOption("must", 0, true);
        }
    };
    Late tool;
    EXPECT_EQ(tool.faultOf({}), "Option --must has to be given.");
}

TEST(Lifecycle, InstanceIsTheLivingApplication)
{
    EXPECT_TRUE(Application::isNotCreated());
    EXPECT_EQ(Application::instance(), nullptr);
    {
        const Probe tool;
        EXPECT_EQ(Application::instance(), &tool);
        EXPECT_FALSE(Application::isNotCreated());
        EXPECT_NE(TraceAreaMgr::instance(), nullptr);
    }
    EXPECT_TRUE(Application::isNotCreated());
    EXPECT_EQ(Application::instance(), nullptr);
    EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
}

TEST(Lifecycle, SecondApplicationReplacesTheFirstWithoutAWord)
{
    // Required, Q-109
    const Capture err(std::cerr);
    const Capture out(std::cout);
    const Probe first;
    const Probe second;
    EXPECT_EQ(Application::instance(), &second);
    EXPECT_EQ(err.text() + out.text(), "");
}

TEST(Lifecycle, DestructionOfAnyApplicationClearsTheInstance)
{
    // Required, Q-110
    for (const bool firstGoes : {true, false}) {
        SCOPED_TRACE(firstGoes);
        auto first = std::make_unique<Probe>();
        auto second = std::make_unique<Probe>();
        (firstGoes ? first : second).reset();
        EXPECT_EQ(Application::instance(), nullptr);
        EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
    }
}

TEST(Lifecycle, DestructorDeletesTheOptionsBeforeItClearsTheInstance)
{
    struct Watching : public ScalarAny<int>
    {
        explicit Watching(std::string& seen) : mSeen(seen) {}
        Watching(const Watching&) = delete;
        Watching& operator=(const Watching&) = delete;
        ~Watching() override
        {
            mSeen = Application::instance() != nullptr ? "instance " : "no instance ";
            mSeen += TraceAreaMgr::instance() != nullptr ? "areas" : "no areas";
        }
        std::string& mSeen;
    };
    std::string seen;
    {
        Probe tool;
        tool.defineOption("x", 0, false).setArg("x", new Watching(seen));
    }
    EXPECT_EQ(seen, "instance areas");
}

TEST(Lifecycle, DerivedConstructorThatThrowsLeavesNoInstance)
{
    struct Failing : public Probe
    {
        Failing() { throw std::runtime_error("derived"); }
    };
    EXPECT_THROW(Failing(), std::runtime_error);
    EXPECT_TRUE(Application::isNotCreated());
    EXPECT_EQ(TraceAreaMgr::instance(), nullptr);
}

TEST(Lifecycle, FieldsAreThoseOfTheConstructor)
{
    Logging tool;
    EXPECT_EQ(tool.getAppName(), "Logging");
    EXPECT_EQ(tool.getVersion(), 2.5);
    EXPECT_EQ(tool.getAuthors(), "A. Author");
    EXPECT_EQ(tool.getRevision(), "");
    EXPECT_EQ(tool.getYear(), "NOW");
    EXPECT_EQ(tool.nPositional(), 0u);
    tool.setVersion(3);
    tool.setRevision("r7");
    EXPECT_EQ(tool.getVersion(), 3.0);
    EXPECT_EQ(tool.getRevision(), "r7");
}

// Handlers; `error` of `Logging` returns

struct Fault
{
    const char* place;
    std::function<void()> action;
    int status;
    std::string log;
};

TEST(Lifecycle, BlocksHandleTheirExceptionsDifferently)
{
    // Required, Q-111
    const auto library = [] { throw OutOfBoundException(1, 2, "Library."); };
    const auto standard = [] { throw std::runtime_error("standard"); };
    const auto number = [] { throw 42; };
    const std::string libraryError = "error(Library. Limit is 1, but it was 2.|std) ";
    const std::string rest = "preRunInit preParse executeOptions postParseInit runMain ";
    const Fault rows[] = {
        {"startup", library, 5, "startup " + libraryError + rest},
        {"startup", standard, 5, "startup error(Unrecoverable error during startup.\n|std) " + rest},
        {"preRunInit", library, 1, "startup preRunInit " + libraryError},
        {"preRunInit", standard, 1, "startup preRunInit error(standard|std) "},
        {"preParse", standard, 1, "startup preRunInit preParse error(standard|std) "},
        {"executeOptions", number, 1,
         "startup preRunInit preParse executeOptions error(Unknown critical program error.|std) "},
        {"postParseInit", library, 1, "startup preRunInit preParse executeOptions postParseInit " + libraryError},
        {"runMain", library, 1, wholeRun + libraryError},
        {"runMain", standard, 1, wholeRun + "error(standard|std) "},
        {"runMain", number, 1, wholeRun + "error(Unknown critical program error.|std) "},
    };
    for (const Fault& row : rows) {
        Logging tool;
        tool.place = row.place;
        tool.action = row.action;
        EXPECT_EQ(tool.run(), row.status) << row.log;
        EXPECT_EQ(tool.log, row.log);
    }
}

TEST(Lifecycle, StartupHasNoCatchAll)
{
    Logging tool;
    tool.place = "startup";
    tool.action = [] { throw 42; };
    EXPECT_THROW(tool.run(), int);
    EXPECT_EQ(tool.log, "startup ");
}

TEST(Lifecycle, ForeignExceptionOutOfStartupShowsAFixedTextWithALineEnd)
{
    // Required, Q-108
    Logging tool;
    tool.place = "startup";
    tool.action = [] { throw std::bad_alloc(); };
    tool.run();
    EXPECT_EQ(tool.log.substr(0, 55), "startup error(Unrecoverable error during startup.\n|std)");
}

TEST(Lifecycle, ExceptionOutOfErrorLeavesTheRun)
{
    Probe tool;
    char name[] = "probe";
    char option[] = "-x";
    char* argv[] = {name, option, nullptr};
    try {
        tool.mainImpl(2, argv);
        FAIL() << "went through";
    } catch (const Ended& ended) {
        // The first one ended in the handler of the run, which reports it in its turn.
        EXPECT_EQ(ended.text, "Unknown critical program error.");
    }
}

// Reports

TEST(Lifecycle, MessageGoesToStandardOutputWithALineEnd)
{
    const Logging tool;
    const Capture out(std::cout);
    tool.Application::message("text");
    tool.Application::message("");
    EXPECT_EQ(out.text(), "text\n\n");
}

TEST(Lifecycle, MessageDoesNotFlush)
{
    struct Counting : public std::stringbuf
    {
        int sync() override { return ++syncs, 0; }
        int syncs = 0;
    };
    const Logging tool;
    Counting buffer;
    std::streambuf* before = std::cout.rdbuf(&buffer);
    tool.Application::message("text\n");
    std::cout.rdbuf(before);
    EXPECT_EQ(buffer.str(), "text\n\n");
    EXPECT_EQ(buffer.syncs, 0);
}

TEST(Lifecycle, MessageWritesNothingWithoutStandardStreams)
{
    // Required, Q-113
    const Logging tool;
    const Capture out(std::cout);
    const Capture err(std::cerr);
    haveCerr = false;
    tool.Application::message("text");
    haveCerr = true;
    EXPECT_EQ(out.text() + err.text(), "");
}

TEST(Lifecycle, CheckOfATrueConditionDoesNothing)
{
    const Logging tool;
    tool.check(true, "text");
    EXPECT_EQ(tool.log, "");
}

TEST(Lifecycle, CheckOfAFalseConditionReportsThroughError)
{
    const Probe tool;
    try {
        tool.check(false, "text");
        FAIL() << "went through";
    } catch (const Ended& ended) {
        EXPECT_EQ(ended.text, "text");
        EXPECT_EQ(ended.hint, "std");
    }
}

} // namespace

} // namespace KelvoBase
