#pragma once

/// \file
/// A platform layer whose answers a test scripts. It is linked in place of the real one:
///
///     kelvobase_test(NameTest PLATFORM ${PROJECT_SOURCE_DIR}/tests/support/FakePlatform.cpp)
///
/// The test program then sees the library's objects with this layer below them.

#include "platform/Platform.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace KelvoBase::test
{

/// The scripted system. A new one is healthy: it has names for everything and an empty file system in memory, where
/// `files` and `directories` (library paths) say what exists. Whatever fails does so by its own rules with the codes
/// below, or because the test replaced a function; such a function sets `lastError` itself.
struct FakePlatform
{
    static constexpr unsigned long notFound = 2;
    static constexpr unsigned long accessDenied = 5;
    static constexpr unsigned long alreadyExists = 183;

    FakePlatform();

    unsigned long lastError = 0;
    std::map<unsigned long, std::string> errorTexts;

    int currentDrive = 3;
    std::function<std::string(const std::string&)> nativePath;
    std::function<bool(std::string_view)> isHoldable;
    std::function<std::optional<platform::WorkingDirectory>()> workingDirectory;

    std::map<std::string, unsigned long long> files; ///< with their sizes
    std::set<std::string> directories;
    std::function<platform::EntryKind(const std::string&)> entryKind;
    std::function<bool(const std::string&)> isWritable;
    std::function<bool(const std::string&)> removeFile;
    std::function<bool(const std::string&)> removeDirectory;
    std::function<bool(const std::string&)> makeDirectory;
    std::function<bool(const std::string&, const std::string&)> moveFile;
    std::function<bool(const std::string&, const std::string&)> isSameFile;
    std::function<std::optional<unsigned long long>(const std::string&)> fileSize;
    std::function<bool(const std::string&, std::vector<platform::DirectoryEntry>&)> listDirectory;

    std::function<std::optional<std::string>(platform::Folder)> userFolder;
    std::string temporaryFolder = "C:\\fake\\temp";

    std::optional<std::string> programPath;
    std::optional<std::string> userName;
    std::optional<std::string> hostName;
    std::function<std::vector<std::uint32_t>(const std::string&)> addresses;
    std::optional<std::string> osName;
    bool networkStarts = true;
    int networkUsers = 0; ///< starts less stops
    Time::Mtime_t now{1'000'000'000, 500};
    std::vector<char*> environment; ///< what was put there

    std::map<std::string, std::map<std::string, void*>> libraries; ///< what can be loaded, with its symbols
    std::map<platform::Module, std::string> modules;               ///< what is loaded, by path
    platform::Module lastModule = 0;
    std::vector<std::string> freedLibraries; ///< paths, in the order of their release
    std::function<void()> onFree = [] {};    ///< what a library does when it is released
    std::optional<std::string> loaderText;   ///< of the latest failure, if the loader has texts of its own

    struct Command
    {
        std::string output;
        std::optional<int> exitCode;
    };
    std::map<std::string, Command> commands; ///< command lines that can be started
    std::string commandOutput;               ///< of the one that runs: what is still to be read
    std::optional<int> commandExitCode;
    bool pipeOpens = true;
    std::optional<unsigned long> startError = notFound; ///< reason of a start that fails
    std::set<platform::Handle> openHandles;             ///< ends of pipes, processes
    platform::Handle lastHandle = 0;
    std::function<void()> onRead = [] {}; ///< called in front of each reading
    std::vector<std::size_t> readSizes;   ///< what was asked for
    std::function<std::size_t(std::string_view)> lineEndLength;

    /// A handle that was not there before.
    platform::Handle open() { return *openHandles.insert(++lastHandle).first; }

    /// Notes `code` as the reason and gives the result of an operation that failed.
    bool fail(unsigned long code);
};

/// The system that the library sees. A test that changes it puts a new one in its place at the end (`FakeSystem`).
FakePlatform& fakePlatform();

/// A fresh system for the life of the object.
class FakeSystem
{
public:
    FakeSystem() { fakePlatform() = FakePlatform(); }
    ~FakeSystem() { fakePlatform() = FakePlatform(); }
    FakeSystem(const FakeSystem&) = delete;
    FakeSystem& operator=(const FakeSystem&) = delete;

    FakePlatform* operator->() const { return &fakePlatform(); }
};

} // namespace KelvoBase::test
