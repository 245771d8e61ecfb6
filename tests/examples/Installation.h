#pragma once

/// \file
/// A whole installation of seriesstat in a scratch directory, with every place that a run looks at.

#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace seriesstat::test
{

/// The places, in the order in which one wins over those in front of it. Each holds a directory `etc`.
///
///     base          the directory that DRAVO2_BASEDIR names
///     inst          the directory that DRAVO2_INSTDIR names
///     place         where the program was installed: place/bin/seriesstat
///     work          the working directory
///     user/dravo2   the user's own
constexpr std::array<const char*, 5> places{"base", "inst", "place", "work", "user/dravo2"};

class Installation
{
public:
    Installation()
    {
        for (const char* name : places) {
            std::filesystem::create_directories(mRoot / name / "etc");
        }
        std::filesystem::create_directory(mRoot / "place/bin");
        std::filesystem::copy_file(SERIESSTAT_PROGRAM, mRoot / "place/bin/seriesstat");
    }

    const KelvoBase::test::ScratchDirectory& root() const { return mRoot; }
    std::filesystem::path operator/(const std::string& name) const { return mRoot / name; }
    /// Writes a file, byte for byte; names are those of the places with "/" and what follows.
    std::filesystem::path write(const std::string& name, const std::string& content) const
    {
        return mRoot.write(name, content);
    }

    /// The environment of a run: this one and no other.
    KelvoBase::test::ChildOptions options() const
    {
        KelvoBase::test::ChildOptions options;
        options.workingDirectory = (mRoot / "work").string();
        options.environment = {{"PATH", (mRoot / "place/bin").string()},
                               {"HOME", (mRoot / "home").string()},
                               {"XDG_CONFIG_HOME", (mRoot / "user").string()},
                               {"DRAVO2_BASEDIR", (mRoot / "base").string()},
                               {"DRAVO2_INSTDIR", (mRoot / "inst").string()}};
        options.unset = {"HOMEDRIVE", "HOMEPATH"};
        return options;
    }

    KelvoBase::test::ChildResult run(const std::vector<std::string>& arguments) const
    {
        return run(arguments, options());
    }

    static KelvoBase::test::ChildResult run(const std::vector<std::string>& arguments,
                                            const KelvoBase::test::ChildOptions& options)
    {
        std::vector<std::string> command{"seriesstat"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return runChild(command, options);
    }

    /// All that there is but the program, with the content of files; a directory has the content "directory".
    std::map<std::string, std::string> content() const
    {
        std::map<std::string, std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(mRoot.path())) {
            const std::string name = entry.path().lexically_relative(mRoot.path()).generic_string();
            if (name == "place/bin/seriesstat") {
                continue;
            }
            all[name] = entry.is_regular_file() ? KelvoBase::test::contentOf(entry.path()) : "directory";
        }
        return all;
    }

private:
    KelvoBase::test::ScratchDirectory mRoot;
};

/// What stands behind the message of a refused run.
constexpr const char* hint = "Try \"seriesstat --help\" for more information.\n";

} // namespace seriesstat::test
