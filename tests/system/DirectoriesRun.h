#pragma once

/// \file
/// Runs the child programs of the directory tests.

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

using Steps = std::vector<std::string>;
using Environment = std::vector<std::pair<std::string, std::string>>;

/// What a fresh process answers, a line for each step. Of the variables that the search reads it has those of
/// `environment` alone.
inline std::string answersOf(const std::string& program, const Steps& steps, const Environment& environment = {},
                             const std::string& workingDirectory = "")
{
    std::vector<std::string> command = {program};
    command.insert(command.end(), steps.begin(), steps.end());
    const std::vector<std::string> unset = {"DRAVO2_BASEDIR", "DRAVO2_INSTDIR", "HOME", "HOMEDRIVE", "HOMEPATH", "TMP",
                                            "XDG_CONFIG_HOME"};
    const ChildResult result = runChild(command, {environment, unset, workingDirectory, ""});
    EXPECT_EQ(0, result.status);
    EXPECT_EQ("", result.err);
    return result.out;
}

/// The lines of an output.
inline std::string lines(const Steps& answers)
{
    std::string text;
    for (const std::string& answer : answers) {
        text += answer + "\n";
    }
    return text;
}

} // namespace KelvoBase::test
