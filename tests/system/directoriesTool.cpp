// Asks the real system for its directories, step by step: what is found once and kept needs a fresh process for each
// test. "env", "cd", "mkdir" and "rm" change what there is to be found meanwhile; their paths are native.

#include "system/DirectoriesSteps.h"

#include <filesystem>

int main(int argc, char** argv)
{
    using namespace KelvoBase;
    using test::Step;
    return test::runSteps(
        argc, argv,
        {{"env", [](const Step& step) { return System::setEnv(step.at(1), step.at(2)), std::string("env"); }},
         {"cd", [](const Step& step) { return std::filesystem::current_path(step.at(1)), std::string("cd"); }},
         {"mkdir",
          [](const Step& step) { return std::filesystem::create_directories(step.at(1)), std::string("mkdir"); }},
         {"rm", [](const Step& step) { return std::filesystem::remove_all(step.at(1)), std::string("rm"); }}});
}
