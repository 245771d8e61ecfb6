#pragma once

/// \file
/// Runs seriesstat as a user would, on its path.

#include "support/ChildProcess.h"
#include "support/Scratch.h"
#include "support/UserData.h"

#include <filesystem>
#include <string>
#include <vector>

namespace seriesstat::test
{

/// Runs the program in a directory, with no configuration of the user's in sight. It sees its own name without a path.
inline KelvoBase::test::ChildResult runSeriesStat(const std::vector<std::string>& arguments,
                                                  const std::filesystem::path& directory)
{
    const KelvoBase::test::ScratchDirectory home;
    KelvoBase::test::ChildOptions options;
    options.workingDirectory = directory.string();
    const KelvoBase::test::UserData user(home.path());
    options.environment = user.environment();
    options.environment.emplace_back("HOME", home.path().string());
    options.environment.emplace_back("PATH", std::filesystem::path(SERIESSTAT_PROGRAM).parent_path().string());
    options.unset = {"DRAVO2_BASEDIR", "DRAVO2_INSTDIR"};
    std::vector<std::string> command{"seriesstat"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runChild(command, options);
}

} // namespace seriesstat::test
