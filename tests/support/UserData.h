#pragma once

/// \file
/// A folder of a test's own in the place of that in which the system keeps the application data of the user.

#include "support/Scratch.h"

#include <filesystem>
#include <list>
#include <string>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

/// The application data of a user who has nothing yet, in the directory `home` or below it. It goes with the object.
class UserData
{
public:
    explicit UserData(const std::filesystem::path& home);
    ~UserData();
    UserData(const UserData&) = delete;
    UserData& operator=(const UserData&) = delete;

    /// Native path of the folder. Need not exist.
    const std::filesystem::path& folder() const { return mFolder; }
    /// What makes a process find it.
    const std::vector<std::pair<std::string, std::string>>& environment() const { return mEnvironment; }

private:
    std::filesystem::path mHome;
    std::filesystem::path mFolder;
    std::vector<std::pair<std::string, std::string>> mEnvironment;
};

/// Such a user for this process and its children.
class ScopedUserData
{
public:
    explicit ScopedUserData(const std::filesystem::path& home);

    const std::filesystem::path& folder() const { return mData.folder(); }

private:
    UserData mData;
    std::list<ScopedEnvironment> mEnvironment;
};

} // namespace KelvoBase::test
