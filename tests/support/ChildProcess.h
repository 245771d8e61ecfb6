#pragma once

/// \file
/// Runs a program and collects what a user would see of it.

#include <string>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

struct ChildResult
{
    int status;      ///< exit status, 128 + n for a child ended by signal n, -1 if it could not be started
    std::string out; ///< all of standard output, with '\n' for line ends however the system writes them
    std::string err; ///< all of standard error, likewise
};

struct ChildOptions
{
    /// Set in the child, on top of this process's own. A system that looks for shared libraries on the path too has
    /// this process's own path behind the given one.
    std::vector<std::pair<std::string, std::string>> environment{};
    std::vector<std::string> unset{}; ///< removed from the child's environment
    std::string workingDirectory{};   ///< empty: this process's own
    std::string input{};              ///< standard input; empty: the null device
};

/// Runs `command[0]` with the rest as its arguments, without a shell, and waits for its end.
ChildResult runChild(const std::vector<std::string>& command, const ChildOptions& options = {});

} // namespace KelvoBase::test
