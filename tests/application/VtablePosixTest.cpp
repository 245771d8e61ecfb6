/// \file
/// The order of the virtual operations: tools that were compiled against it call through these places.

#include "support/posix/VirtualTable.h"

#include <kelvobase/Application.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace KelvoBase
{

namespace
{

class Tool : public Application
{
public:
    explicit Tool(std::string& log) : Application("Tool", 1.0, "A. Author", "Logs."), mLog(log) {}
    ~Tool() override { mLog += "destructor "; }
    void message(const std::string& text) const override { mLog += "message:" + text + " "; }
    void error(const std::string& text, const std::string& hint) const override
    {
        mLog += "error:" + text + hint + " ";
    }
    void startup(int argc, char** /*argv*/) override { mLog += "startup:" + std::to_string(argc) + " "; }
    void preRunInit(int argc, char** /*argv*/) override { mLog += "preRunInit:" + std::to_string(argc) + " "; }
    void executeOptions() override { mLog += "executeOptions "; }
    void preParse(int& argc, char** /*argv*/) override { mLog += "preParse:" + std::to_string(argc--) + " "; }
    void postParseInit() override { mLog += "postParseInit "; }
    int runMain() override
    {
        mLog += "runMain ";
        return 17;
    }

private:
    std::string& mLog;
};

/// What stands at a place of the object's table.
template <typename Function>
Function at(const Application* object, std::size_t place)
{
    Function function = nullptr;
    std::memcpy(&function, test::tableOf(*object) + place, sizeof function);
    return function;
}

TEST(Vtable, OperationsStandInTheirOrder)
{
    std::string log;
    auto* tool = new Tool(log);
    const std::string text = "text";
    const std::string hint = "hint";
    int argc = 3;
    at<void (*)(const Application*, const std::string&)>(tool, 2)(tool, text);
    at<void (*)(const Application*, const std::string&, const std::string&)>(tool, 3)(tool, text, hint);
    at<void (*)(Application*, int, char**)>(tool, 4)(tool, 1, nullptr);
    at<void (*)(Application*, int, char**)>(tool, 5)(tool, 2, nullptr);
    at<void (*)(Application*)>(tool, 6)(tool);
    at<void (*)(Application*, int&, char**)>(tool, 7)(tool, argc, nullptr);
    at<void (*)(Application*)>(tool, 8)(tool);
    EXPECT_EQ(at<int (*)(Application*)>(tool, 9)(tool), 17);
    EXPECT_EQ(argc, 2);
    at<void (*)(Application*)>(tool, 1)(tool); // destroys and frees
    EXPECT_EQ(log, "message:text error:texthint startup:1 preRunInit:2 executeOptions preParse:3 postParseInit runMain "
                   "destructor ");
    EXPECT_TRUE(Application::isNotCreated());
}

} // namespace

} // namespace KelvoBase
