#pragma once

/// \file
/// The steps that the child programs of the system tests carry out, one a word, each with one line of output.

#include <kelvobase/System.h>

#include <functional>
#include <iostream>
#include <map>
#include <string>

namespace KelvoBase::test
{

/// "NAME=VALUE" sets a variable without a line; any other word is a question.
inline int runStep(const std::string& step)
{
    static const std::map<std::string, std::function<std::string()>> questions = {
        {"user", [] { return System::instance().getUserName(); }},
        {"host", [] { return System::instance().getHostName(); }},
        {"fetch", [] { return System::instance().fetchIP(), std::string("fetched"); }},
        {"ip", [] { return std::to_string(System::instance().getIP()); }},
        {"iptext", [] { return System::instance().getIPString(); }},
        {"os", [] { return System::instance().getOS(); }},
        {"root", [] { return ResourceLocation::getRootDir(); }},
        {"exe", [] { return System::instance().getExeImagePath().getFilePath('\\'); }},
    };
    const std::string::size_type equals = step.find('=');
    if (equals != std::string::npos) {
        System::setEnv(step.substr(0, equals), step.substr(equals + 1));
        return 0;
    }
    const auto question = questions.find(step);
    if (question == questions.end()) {
        std::cerr << "unknown step " << step << std::endl;
        return 2;
    }
    std::cout << question->second() << std::endl;
    return 0;
}

} // namespace KelvoBase::test
