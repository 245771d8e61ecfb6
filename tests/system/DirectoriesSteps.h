#pragma once

/// \file
/// The steps that the child programs of the directory tests carry out. A step is a word and what it needs, parted by
/// "|". Each answer, or the exception in its place ("CLASS[TEXT]"), is a line; lists are parted by ";".

#include <kelvobase/Application.h>
#include <kelvobase/System.h>

#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

namespace KelvoBase::test
{

using Step = std::vector<std::string>;

/// The pieces of a step, the empty ones too.
inline Step piecesOf(const std::string& text)
{
    Step pieces(1);
    for (const char c : text) {
        if (c == '|') {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

inline std::string pathOf(const ResourceLocation& location)
{
    return location.getPath('\\', true);
}

inline std::string systemDirs()
{
    std::string text;
    for (const ResourceLocation& directory : System::instance().getSystemDirs()) {
        text += (text.empty() ? "" : ";") + pathOf(directory);
    }
    return text;
}

class NamedTool : public Application
{
public:
    explicit NamedTool(const std::string& name) : Application(name, 1.0, "A. Author", "Has a name.") {}
    void postParseInit() override {}
    int runMain() override { return 0; }
};

inline std::string becomeApplication(const std::string& name)
{
    static std::unique_ptr<NamedTool> tool;
    tool = std::make_unique<NamedTool>(name);
    return "application";
}

using Answers = std::map<std::string, std::function<std::string(const Step&)>>;

/// What both programs answer.
inline const Answers& commonAnswers()
{
    static const System& system = System::instance();
    static const Answers answers = {
        {"set", [](const Step&) { return system.setSysDirPaths(), std::string("set"); }},
        {"dirs", [](const Step&) { return systemDirs(); }},
        {"add", [](const Step& step) { return system.addToSysDirPaths(step.at(1)), std::string("added"); }},
        {"bin", [](const Step&) { return pathOf(system.getBinDir()); }},
        {"dll", [](const Step&) { return pathOf(system.getDllDir()); }},
        {"appdir", [](const Step& step) { return pathOf(system.getAppDir(step.at(1), step.at(2))); }},
        {"appfile", [](const Step& step) { return pathOf(system.getAppFile(step.at(1), step.at(2))); }},
        {"mydir", [](const Step& step) { return pathOf(system.getAppDir(step.at(1))); }},
        {"myfile", [](const Step& step) { return pathOf(system.getAppFile(step.at(1))); }},
        {"home", [](const Step&) { return pathOf(system.getHomeDir()); }},
        {"appdata", [](const Step&) { return pathOf(system.getAppDataDir()); }},
        {"user", [](const Step& step) { return pathOf(system.getUserDir(step.at(1) == "create")); }},
        {"application", [](const Step& step) { return becomeApplication(step.at(1)); }},
    };
    return answers;
}

inline std::string answer(const Answers& answers, const Step& step)
{
    try {
        return answers.at(step.at(0))(step);
    } catch (const std::exception& e) {
        return System::demangle(typeid(e)) + "[" + e.what() + "]";
    }
}

/// Carries out the arguments of a program. `more` are the steps that it alone knows.
inline int runSteps(int argc, char** argv, Answers more)
{
    more.insert(commonAnswers().begin(), commonAnswers().end());
    for (int i = 1; i < argc; ++i) {
        const Step step = piecesOf(argv[i]);
        if (!more.contains(step[0])) {
            std::cerr << "unknown step " << step[0] << std::endl;
            return 2;
        }
        std::cout << answer(more, step) << std::endl;
    }
    return 0;
}

} // namespace KelvoBase::test
