/// \file
/// A tool that throws, and says on standard output which of its operations were called.
///
/// FAIL_IN names the operation that throws, FAIL_WITH what it throws (library, standard, number). With
/// ERROR_RETURNS set, the tool's own `error` writes text and hint to standard output and returns. The result of a run
/// is 7; what leaves `mainImpl` gives 99.

#include <kelvobase/Application.h>
#include <kelvobase/Exceptions.h>

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>

namespace
{

std::string setting(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

class FailingTool : public KelvoBase::Application
{
public:
    FailingTool() : Application("failing", 1.0, "A. Author", "Fails.") {}
    ~FailingTool() override { std::cout << "destroyed\n"; }

    void error(const std::string& text, const std::string& hint) const override
    {
        if (setting("ERROR_RETURNS").empty()) {
            Application::error(text, hint);
        }
        std::cout << "error(" << text << "|" << hint << ")\n";
    }
    void startup(int argc, char** argv) override
    {
        Application::startup(argc, argv);
        visit("startup");
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
    void preParse(int& /*argc*/, char** /*argv*/) override { visit("preParse"); }
    void postParseInit() override { visit("postParseInit"); }
    int runMain() override
    {
        visit("runMain");
        return 7;
    }

private:
    static void visit(const std::string& place)
    {
        std::cout << place << '\n';
        if (place != setting("FAIL_IN")) {
            return;
        }
        const std::string kind = setting("FAIL_WITH");
        if (kind == "library") {
            throw KelvoBase::OperationFailedException("library fault");
        }
        if (kind == "standard") {
            throw std::runtime_error("standard fault");
        }
        throw 42;
    }
};

int run(int argc, char** argv)
{
    FailingTool tool;
    return tool.mainImpl(argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (...) {
        std::cout << "left mainImpl\n";
        return 99;
    }
}
