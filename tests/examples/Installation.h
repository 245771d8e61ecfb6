#pragma once

/// \file
/// A whole installation of seriesstat in a scratch directory, with every place that a run looks at.

#include "support/ChildProcess.h"
#include "support/Scratch.h"
#include "support/UserData.h"

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace seriesstat::test
{

/// The places, in the order in which one wins over those in front of it. Each holds a directory `etc`. In names of
/// files, "user" is the folder in which the system keeps the user's data, wherever that is.
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
            std::filesystem::create_directories(*this / name / "etc");
        }
        std::filesystem::create_directory(mRoot / "place/bin");
        std::filesystem::copy_file(SERIESSTAT_PROGRAM, mRoot / "place/bin" / programFile);
    }

    const KelvoBase::test::ScratchDirectory& root() const { return mRoot; }
    std::filesystem::path operator/(const std::string& name) const
    {
        if (name != "user" && !name.starts_with("user/")) {
            return mRoot / name;
        }
        std::filesystem::path path = mUser.folder();
        path += name.substr(4);
        return path.make_preferred();
    }
    /// Writes a file, byte for byte; names are those of the places with "/" and what follows.
    std::filesystem::path write(const std::string& name, const std::string& content) const
    {
        KelvoBase::test::writeFile(*this / name, content);
        return *this / name;
    }

    /// The environment of a run: this one and no other.
    KelvoBase::test::ChildOptions options() const
    {
        KelvoBase::test::ChildOptions options;
        options.workingDirectory = (mRoot / "work").string();
        options.environment = {{"PATH", (mRoot / "place/bin").string()},
                               {"HOME", (mRoot / "home").string()},
                               {"DRAVO2_BASEDIR", (mRoot / "base").string()},
                               {"DRAVO2_INSTDIR", (mRoot / "inst").string()}};
        options.environment.insert(options.environment.end(), mUser.environment().begin(), mUser.environment().end());
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
        add(mRoot.path(), "", all);
        std::erase_if(all, [](const auto& entry) { return entry.first.starts_with("user"); });
        if (std::filesystem::exists(*this / "user")) {
            all["user"] = "directory";
            add(*this / "user", "user/", all);
        }
        all.erase("place/bin/" + programFile);
        return all;
    }

private:
    static void add(const std::filesystem::path& directory, const std::string& prefix,
                    std::map<std::string, std::string>& all)
    {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
            const std::string name = prefix + entry.path().lexically_relative(directory).generic_string();
            all[name] = entry.is_regular_file() ? KelvoBase::test::contentOf(entry.path()) : "directory";
        }
    }

    const std::string programFile = std::filesystem::path(SERIESSTAT_PROGRAM).filename().string();
    KelvoBase::test::ScratchDirectory mRoot;
    KelvoBase::test::UserData mUser{mRoot / "user"};
};

/// What stands behind the message of a refused run.
constexpr const char* hint = "Try \"seriesstat --help\" for more information.\n";

} // namespace seriesstat::test
