#pragma once

/// \file
/// Places and settings that a test may spoil: each is put back at the end of its scope.

#include <filesystem>
#include <optional>
#include <string>

namespace KelvoBase::test
{

/// A new empty directory, removed with all its content at the end.
class ScratchDirectory
{
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& path() const { return mPath; }
    /// Native path of a name below the directory.
    std::filesystem::path operator/(const std::string& name) const { return (mPath / name).make_preferred(); }
    /// The directory, or a name below it (native separators), as the text of an absolute location: `C:\tmp\x`.
    std::string location(const std::string& name = "") const;
    /// Writes a file below the directory, byte for byte, and returns its native path. Makes missing directories.
    std::filesystem::path write(const std::string& name, const std::string& content) const;

private:
    std::filesystem::path mPath;
};

/// An absolute native path as the text of a location.
std::string locationOf(const std::filesystem::path& path);

/// Writes a file, byte for byte. Makes missing directories.
void writeFile(const std::filesystem::path& path, const std::string& content);

/// All bytes of a file; fails the test if it cannot be read.
std::string contentOf(const std::filesystem::path& path);

/// All of a text file, as a text stream reads it: line ends are '\n' however the system writes them.
std::string textIn(const std::filesystem::path& path);

/// Makes another directory the working directory.
class ScopedWorkingDirectory
{
public:
    explicit ScopedWorkingDirectory(const std::filesystem::path& path);
    ~ScopedWorkingDirectory();
    ScopedWorkingDirectory(const ScopedWorkingDirectory&) = delete;
    ScopedWorkingDirectory& operator=(const ScopedWorkingDirectory&) = delete;

private:
    std::filesystem::path mBefore;
};

/// Sets an environment variable, or removes it.
class ScopedEnvironment
{
public:
    ScopedEnvironment(const std::string& name, const std::optional<std::string>& value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string mName;
    std::optional<std::string> mBefore;
};

} // namespace KelvoBase::test
