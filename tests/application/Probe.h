#pragma once

/// \file
/// An application that can be asked everything inside the test's own process: its `error` throws instead of ending it.

#include <kelvobase/Application.h>

#include <string>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

/// What `error` was called with.
struct Ended
{
    std::string text;
    std::string hint;
};

class Probe : public Application
{
public:
    explicit Probe(const std::string& description = "Probes.") : Application("Probe", 1.0, "A. Author", description) {}

    void message(const std::string& text) const override { messages.push_back(text); }
    void error(const std::string& text, const std::string& hint) const override { throw Ended{text, hint}; }
    void postParseInit() override {}
    int runMain() override { return 0; }

    /// The command line `probe WORDS...` through `startup` and `preRunInit`.
    void prepare(std::vector<std::string> words)
    {
        words.insert(words.begin(), "probe");
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(word.data());
        }
        argv.push_back(nullptr);
        startup(static_cast<int>(words.size()), argv.data());
        preRunInit(static_cast<int>(words.size()), argv.data());
    }
    /// The text of the fault that this command line ends with; empty if it does not.
    std::string faultOf(const std::vector<std::string>& words)
    {
        try {
            prepare(words);
        } catch (const Ended& ended) {
            return ended.text;
        }
        return {};
    }
    std::vector<std::string> positionals() const
    {
        std::vector<std::string> all;
        for (unsigned int i = 0; i < nPositional(); ++i) {
            all.push_back(getPositional(i));
        }
        return all;
    }
    std::string valueOf(const std::string& name) const { return findOption(name)->getValue()->toString(","); }

    mutable std::vector<std::string> messages;
};

} // namespace KelvoBase::test
