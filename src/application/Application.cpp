// The life of an application from its constructor to the exit status, and its reports.

#include "application/ListSeparator.h"
#include "application/OptionIndex.h"

#include <kelvobase/Application.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <utility>

namespace KelvoBase
{

namespace
{

// Stands for the line that points to "--help".
constexpr char standardHint[] = "std";
// Required: the line end is part of the text and leaves an empty line in front of the hint.
constexpr char startupFailed[] = "Unrecoverable error during startup.\n";
constexpr char runFailed[] = "Unknown critical program error.";
constexpr char yearUnset[] = "NOW";
constexpr char configSuffix[] = ".ini";
constexpr char configOption[] = "config-file";

} // namespace

constinit Application* Application::mInstance = nullptr;

Application::Application(const std::string& appName, double version, const std::string& authors,
                         const std::string& description)
    : mAppName(appName), mVersion(version), mAuthors(authors), mDescription(description), mYear(yearUnset)
{
    // Required: the latest application counts, and a second one is no fault.
    mInstance = this;
    try {
        TraceAreaMgr::startup();
        defineKelvoOptions();
    } catch (...) {
        release();
        throw;
    }
}

Application::~Application()
{
    // Required: here and not in `error`, which would write what a failed run has half changed. Options and
    // instance still stand: a value of the tool's own may ask them for its text.
    saveConfiguration();
    release();
    mConfigFile.reset();
}

void Application::saveConfiguration() const noexcept
{
    if (mConfigFile == nullptr) {
        return;
    }
    try {
        mConfigFile->sync();
    } catch (const std::exception& e) {
        // An exception must not leave a destructor, and the process still ends in the regular way.
        if (haveCerr) {
            std::cerr << e.what() << std::endl;
        }
    } catch (...) {
        if (haveCerr) {
            std::cerr << runFailed << std::endl;
        }
    }
}

void Application::release() noexcept
{
    for (const CLOption* option : mOptions) {
        delete option;
    }
    // Required: whichever object is the current one; a test for it would leave a pointer to an application
    // whose areas are gone.
    mInstance = nullptr;
    TraceAreaMgr::teardown();
}

Application* Application::instance()
{
    return mInstance;
}

bool Application::isNotCreated()
{
    return mInstance == nullptr;
}

int Application::mainImpl(int argc, char** argv)
{
    // Required: the two blocks differ. Where `error` returns, a failed start-up goes on; and an exception that
    // is no std::exception leaves it. A common handler would end tools that recover.
    try {
        startup(argc, argv);
    } catch (const ExceptionBase& e) {
        error(e.what(), standardHint);
    } catch (const std::exception&) {
        error(startupFailed, standardHint);
    }
    try {
        preRunInit(argc, argv);
        return runMain();
    } catch (const std::exception& e) {
        error(e.what(), standardHint);
    } catch (...) {
        error(runFailed, standardHint);
    }
    return EXIT_FAILURE;
}

void Application::startup(int /*argc*/, char** argv)
{
    std::ios_base::sync_with_stdio(false);
    mProgramName = argv[0] == nullptr ? "" : argv[0];
}

void Application::preRunInit(int argc, char** argv)
{
    sortOptions();
    preParse(argc, argv);
    reallyParse(argc, argv);
    checkExclusions();
    // Required: in front of the check for mandatory options, which would make "--help" unusable, and behind the
    // parser, whose faults win over it.
    executeOptions();
    checkMandatoryOptions();
    writeRunLines();
    postParseInit();
}

void Application::preParse(int& /*argc*/, char** /*argv*/) {}

void Application::executeOptions()
{
    executeKelvoOptions();
}

CLOption& Application::defineOption(const std::string& longName, char shortName, bool mandatory)
{
    auto option = std::make_unique<CLOption>(longName, shortName, mandatory);
    mOptions.push_back(option.get());
    return *option.release();
}

void Application::definePositional(const std::string& name)
{
    mPositionalNames.push_back(name);
}

void Application::defineExclusion(const CLOption& a, const CLOption& b)
{
    mExclusions.emplace_back(&a, &b);
}

unsigned int Application::nPositional() const
{
    return static_cast<unsigned int>(mPositionals.size());
}

const std::string& Application::getPositional(unsigned int index) const
{
    return mPositionals[index];
}

ConfigFile* Application::getConfigFile()
{
    if (mConfigFile == nullptr) {
        std::string name = mAppName + configSuffix;
        const CLOption* option = findLong(configOption);
        if (option != nullptr && option->isSet() && option->getValue() != nullptr) {
            // Required: the name of the files to search for. Opening it as a path would read one file only, and
            // save into it.
            name = option->getValue()->toString(listSeparator);
        }
        auto file = std::make_unique<ConfigFile>();
        file->parseConfigFiles(name);
        mConfigFile = std::move(file);
    }
    return mConfigFile.get();
}

void Application::message(const std::string& text) const
{
    // Required: the flag stands for both standard streams.
    if (haveCerr) {
        std::cout << text << '\n';
    }
}

void Application::error(const std::string& text, const std::string& hint) const
{
    if (haveCerr) {
        std::cerr << text << '\n';
        if (hint == standardHint) {
            std::cerr << "Try \"" << mProgramName << " --help\" for more information." << std::endl;
        } else {
            std::cerr << hint << std::endl;
        }
    }
    std::exit(EXIT_FAILURE);
}

void Application::check(bool condition, const std::string& text) const
{
    if (!condition) {
        refuse(text);
    }
}

void Application::refuse(const std::string& text) const
{
    error(text, standardHint);
    std::exit(EXIT_FAILURE);
}

const std::string& Application::getAppName() const
{
    return mAppName;
}

const std::string& Application::getProgramName() const
{
    return mProgramName;
}

double Application::getVersion() const
{
    return mVersion;
}

void Application::setVersion(double version)
{
    mVersion = version;
}

const std::string& Application::getRevision() const
{
    return mRevision;
}

void Application::setRevision(const std::string& revision)
{
    mRevision = revision;
}

const std::string& Application::getYear() const
{
    return mYear;
}

const std::string& Application::getAuthors() const
{
    return mAuthors;
}

void Application::setAdditionalHelpText(const std::string& text)
{
    mAdditionalHelpText = text;
}

} // namespace KelvoBase
