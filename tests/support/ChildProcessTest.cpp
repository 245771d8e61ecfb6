#include "support/ChildProcess.h"

#include "support/Scratch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace KelvoBase::test
{

namespace
{

const char* const variable = "KELVOBASE_CHILD_TEST";

std::string directory()
{
    return "directory " + std::filesystem::current_path().string() + "\n";
}

TEST(RunChild, CollectsBothStreamsAndStatus)
{
    const ChildResult result = runChild({CHILD_TOOL});
    EXPECT_EQ(result.status, 42);
    EXPECT_EQ(result.out, "variable (none)\n" + directory() + "input ''\n");
    EXPECT_EQ(result.err, "complaint\n");
}

TEST(RunChild, HandsArgumentsOnAsTheyAre)
{
    const ChildResult result = runChild({CHILD_TOOL, "a b", "", "\"c\"", "$HOME *"});
    EXPECT_EQ(result.out.substr(0, result.out.find("variable")),
              "argument 'a b'\nargument ''\nargument '\"c\"'\nargument '$HOME *'\n");
}

std::string variableIn(const ChildOptions& options)
{
    const std::string out = runChild({CHILD_TOOL}, options).out;
    return out.substr(0, out.find('\n'));
}

TEST(RunChild, SetsAndRemovesVariablesInTheChildOnly)
{
    ChildOptions setting;
    setting.environment = {{variable, "one"}};
    EXPECT_EQ(variableIn(setting), "variable one");
    EXPECT_EQ(variableIn({}), "variable (none)");

    const ScopedEnvironment here(variable, "two");
    ChildOptions removing;
    removing.unset = {variable};
    EXPECT_EQ(variableIn(removing), "variable (none)");
    EXPECT_EQ(variableIn({}), "variable two");
}

TEST(RunChild, StartsInGivenDirectory)
{
    const ScratchDirectory scratch;
    ChildOptions options;
    options.workingDirectory = scratch.path().string();
    const ChildResult result = runChild({CHILD_TOOL}, options);
    EXPECT_NE(result.out.find("directory " + options.workingDirectory + "\n"), std::string::npos) << result.out;
}

TEST(RunChild, FeedsInput)
{
    ChildOptions options;
    options.input = "line 1\nline 2\n";
    EXPECT_EQ(runChild({CHILD_TOOL}, options).out, "variable (none)\n" + directory() + "input 'line 1\nline 2\n'\n");
}

TEST(RunChild, CollectsMoreThanAPipeHolds)
{
    ChildOptions options;
    options.environment = {{"KELVOBASE_CHILD_LINES", "10000"}};
    const ChildResult result = runChild({CHILD_TOOL}, options);
    EXPECT_EQ(result.out.find("directory"), 16 + 10000 * 18U);
    EXPECT_EQ(result.status, 42);
}

} // namespace

} // namespace KelvoBase::test
