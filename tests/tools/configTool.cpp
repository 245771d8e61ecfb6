/// \file
/// A tool named "configtool" whose positional arguments are the steps of its work:
///
///     get                 asks for the configuration
///     show=SECTION=KEY    prints an entry
///     set=SECTION=KEY=V   changes one
///     trace=AREA          writes a line to the trace, at `Trace::fail`
///     areas               prints the names of the areas
///     silent              takes the standard streams away
///     rename=FROM=TO      renames a file
///     error, check, throw, exit       ends the run; `exit` with status 3
///
/// The result of a run is 7. With ERROR_RETURNS set the tool's own `error` writes to standard output and returns.

#include <kelvobase/Any.h>
#include <kelvobase/Application.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/Strings.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace
{

using namespace KelvoBase;
using Words = std::vector<std::string>;

Words wordsOf(const std::string& step)
{
    Words words(1);
    for (const char c : step) {
        if (c == '=' && words.size() < 4) {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    return words;
}

class ConfigTool : public Application
{
public:
    ConfigTool() : Application("configtool", 1.0, "A. Author", "Takes steps.")
    {
        defineOption("config-file", 'c', false).setArg("name", new ScalarAny<std::string>("default.ini"));
        definePositional("STEP");
    }
    ~ConfigTool() override { std::cout << "destroyed\n"; }
    void error(const std::string& text, const std::string& hint) const override
    {
        if (std::getenv("ERROR_RETURNS") == nullptr) {
            Application::error(text, hint);
        }
        std::cout << "error(" << text << "|" << hint << ")\n";
    }
    void postParseInit() override {}
    int runMain() override
    {
        for (unsigned int i = 0; i < nPositional(); ++i) {
            const Words words = wordsOf(getPositional(i));
            steps().at(words[0])(*this, words);
        }
        return 7;
    }

private:
    using Step = std::function<void(ConfigTool&, const Words&)>;

    static const std::map<std::string, Step>& steps();
};

void rename(ConfigTool& /*tool*/, const Words& words)
{
    if (std::rename(words.at(1).c_str(), words.at(2).c_str()) != 0) {
        std::cout << "not renamed\n";
    }
}

void show(ConfigTool& tool, const Words& words)
{
    std::cout << tool.getConfigFile()->getEntry(words.at(1), words.at(2))->toString(",") << '\n';
}

void set(ConfigTool& tool, const Words& words)
{
    tool.getConfigFile()->setEntry(words.at(1), words.at(2), words.at(3));
}

void trace(ConfigTool& /*tool*/, const Words& words)
{
    TraceStream::instance().setNextTraceConditions(Trace::fail,
                                                   TraceAreaMgr::instance()->getTraceAreaMask(words.at(1)));
    TraceStream::instance() << "in " << words.at(1) << std::endl;
}

const std::map<std::string, ConfigTool::Step>& ConfigTool::steps()
{
    static const std::map<std::string, Step> all = {
        {"get", [](ConfigTool& tool, const Words&) { tool.getConfigFile(); }},
        {"show", show},
        {"set", set},
        {"trace", trace},
        {"areas", [](ConfigTool&, const Words&) { std::cout << TraceAreaMgr::instance()->print(); }},
        {"silent", [](ConfigTool&, const Words&) { haveCerr = false; }},
        {"rename", rename},
        {"error", [](ConfigTool& tool, const Words&) { tool.error("reported", "std"); }},
        {"check", [](ConfigTool& tool, const Words&) { tool.check(false, "checked"); }},
        {"throw", [](ConfigTool&, const Words&) { throw OperationFailedException("thrown"); }},
        {"exit", [](ConfigTool&, const Words&) { std::exit(3); }},
    };
    return all;
}

} // namespace

int main(int argc, char** argv)
{
    return ConfigTool().mainImpl(argc, argv);
}
