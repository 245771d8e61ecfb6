#pragma once

/// \file
/// The porting contract: the only header through which the library meets the operating system.
///
/// A port is one folder beside this file that defines every operation below, one small file a concern; the build
/// chooses the folder. No other source of the library includes a system header or tests a platform macro.
///
/// Paths are *library paths* unless it says native: what `ResourceLocation::getFilePath('\\')` gives, with backslashes
/// and the drive in front. An operation that fails leaves its reason where `takeLastError` finds it, and does nothing
/// else that could change it. No operation throws, memory exhaustion apart, or writes to a stream.

#include <kelvobase/Time.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KelvoBase::platform
{

// Errors

/// The thread's last error, which is cleared; 0 if there was none.
unsigned long takeLastError() noexcept;
/// The system's text for a code, without line ends; nothing for a code without text or out of the system's range.
std::optional<std::string> errorText(unsigned long code);
/// Whether `code` says that a directory could not be made because the name is taken (183 on Windows).
bool isAlreadyExists(unsigned long code) noexcept;

// Paths

/// Number of the current drive, 1 for A.
int currentDrive() noexcept;
/// The path that the system's own calls take for a library path. A path that names no place on this system (a
/// network path or another drive, where there are none; a text with a zero byte) gives a path for which every call of
/// the system fails as for a missing file; it never falls on a local file of the same spelling. A drive alone is its
/// root.
std::string nativePath(const std::string& path);
/// Whether a native path, or a name from a directory, can be written as a location that means the same.
bool isHoldable(std::string_view native) noexcept;

/// A directory in the text form of locations.
struct WorkingDirectory
{
    std::string path;
    bool holdable; ///< false: a relative location cannot be made absolute against it
};
/// The working directory; nothing if there is none. One too long for the system's buffer gives an empty text.
std::optional<WorkingDirectory> workingDirectory();
/// Whether there is a working directory: `workingDirectory().has_value()` without making its text.
bool hasWorkingDirectory() noexcept;

// Files. The bool results say whether the operation succeeded.

enum class EntryKind
{
    missing,
    file, ///< anything that exists and is no directory
    directory,
};
/// What a path names; links are followed.
EntryKind entryKind(const std::string& path);
/// Whether this user may write to what the path names ("." is a valid path).
bool isWritable(const std::string& path);
/// Removes a file; a link itself, never what it points to.
bool removeFile(const std::string& path);
/// Removes an empty directory; a link to a directory itself.
bool removeDirectory(const std::string& path);
/// Makes one level of directories.
bool makeDirectory(const std::string& path);
/// Renames without replacing: with a name that another file has it fails and touches nothing, as one step.
bool moveFile(const std::string& from, const std::string& to);
/// Whether both paths name one existing file.
bool isSameFile(const std::string& a, const std::string& b);
/// Size in bytes, by opening the file for reading; never waits for a writer. Nothing if it cannot be opened, which
/// holds for every directory.
std::optional<unsigned long long> fileSize(const std::string& path);

/// One name of a directory.
struct DirectoryEntry
{
    std::string name;
    std::optional<EntryKind> kind; ///< if the directory says so; never for a link, or a name that is not the whole one
};
/// Adds the names of a directory to `entries`, in the system's order, "." and ".." and hidden names perhaps among
/// them.
bool listDirectory(const std::string& path, std::vector<DirectoryEntry>& entries);

// Folders, as the texts of locations. Where the environment names them its texts are given as they stand.

enum class Folder
{
    documents,
    applicationData,
};
/// A folder that the system has for each user; nothing if it has none. It is made with its parents, for this user
/// alone, if it is missing. One that cannot be made is named all the same, and so is one whose location would be
/// another place than the system finds under the text: for that nothing is made.
std::optional<std::string> userFolder(Folder folder);
/// Where temporary files lie if nobody says otherwise. Need not exist.
const char* temporaryFolder() noexcept;

// Identity. Nothing: the system does not tell.

/// The running program as a library path.
std::optional<std::string> programPath();
std::optional<std::string> userName();
std::optional<std::string> hostName();
/// The IPv4 addresses of a host in network byte order, in the resolver's order; none if it cannot be found.
std::vector<std::uint32_t> addresses(const std::string& host);
/// One line that names the system.
std::optional<std::string> osName();
/// Prepares the network for `addresses`; called once, before everything else of this group. False: it cannot be had.
bool startNetwork();
/// Ends what `startNetwork` began.
void stopNetwork() noexcept;
/// The current time, cut to whole milliseconds.
Time::Mtime_t now() noexcept;
/// Puts NAME=VALUE into the environment; `assignment` belongs to the environment from then on and is never released.
/// Where the system has no empty variables, an empty value removes one.
void putEnvironment(char* assignment);

// Libraries loaded at run time. One that fails leaves its reason where `takeLoaderText` finds it, or `takeLastError`.

/// A library that was loaded, as the port counts it; 0 is none. One that was released is known to be: asking it for a
/// symbol, or releasing it again, fails and does nothing else (see Modules.h).
using Module = std::uintptr_t;
/// Loads a library with all it needs; 0 if that fails.
Module loadLibrary(const std::string& path);
/// The address of a symbol; null if there is none.
void* findSymbol(Module module, const std::string& symbol);
/// Takes one load of a library back.
bool freeLibrary(Module module);
/// Why the latest of these operations failed, in the words of the loader, which forgets them; nothing if it has none.
std::optional<std::string> takeLoaderText();

// Child processes

/// One end of a pipe, or a child process, as the system numbers it.
using Handle = std::intptr_t;
struct Pipe
{
    Handle readEnd;
    Handle writeEnd;
};
/// The exit code of a child that has not ended.
constexpr int stillRunning = 259;
/// A pipe that reaches no child but as its output (`startProcess`).
std::optional<Pipe> openPipe();
void closePipeEnd(Handle end) noexcept;
/// Reads what is there, waiting for the first byte of it; 0 if the other end was closed, or on a failure.
std::size_t readPipe(Handle readEnd, char* buffer, std::size_t size);
/// Starts a command line, without a shell; both its output and its errors go to `output`, and it has no input.
std::optional<Handle> startProcess(const std::string& command, Handle output);
/// The exit code of a child that has closed its output: of one that is about to end, or `stillRunning`.
std::optional<int> exitCode(Handle process);
/// Ends the interest in a child, whether it runs on or not.
void closeProcess(Handle process) noexcept;
/// How many bytes at the end of a child's output are its last line end.
std::size_t lineEndLength(std::string_view output) noexcept;

} // namespace KelvoBase::platform
