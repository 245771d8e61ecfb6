#include "platform/Platform.h"
#include "platform/posix/PosixPaths.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <new>

namespace KelvoBase::platform
{

namespace
{

constexpr int rootDrive = 3;
constexpr char rootLetter = '@' + rootDrive;

constexpr bool isSeparator(char c)
{
    return c == '\\' || c == '/';
}

bool isNetworkPath(const std::string& path)
{
    return path.size() > 1 && isSeparator(path[0]) && isSeparator(path[1]);
}

bool hasDrive(const std::string& path)
{
    return path.size() > 1 && path[1] == ':';
}

/// Whether the drive in front is the one that stands for the root directory.
bool isBelowRoot(const std::string& path)
{
    return path[0] == rootLetter && (path.size() == 2 || isSeparator(path[2]));
}

struct Free
{
    void operator()(char* text) const noexcept { std::free(text); }
};

/// The system marks a directory that the root does not lead to ("(unreachable)/dir"): no path finds it again.
bool isReachable(const char* directory)
{
    return directory[0] == '/';
}

} // namespace

int currentDrive() noexcept
{
    return rootDrive;
}

std::string nativePath(const std::string& path)
{
    // The empty path is the one that every call refuses as missing; a text with a zero byte would be cut.
    if (isNetworkPath(path) || path.find('\0') != std::string::npos) {
        return {};
    }
    std::string native = path;
    if (hasDrive(path)) {
        if (!isBelowRoot(path)) {
            return {};
        }
        native.erase(0, 2);
        if (native.empty()) {
            return "/";
        }
    }
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

std::string posix::libraryPath(std::string_view native)
{
    std::string path{rootLetter, ':'};
    path += native;
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

bool isHoldable(std::string_view native) noexcept
{
    std::size_t place = 0; // within the component
    for (const char c : native) {
        if (c == '\\' || c == '"' || (c == ':' && place == 1)) {
            return false;
        }
        place = c == '/' ? 0 : place + 1;
    }
    return true;
}

std::optional<WorkingDirectory> workingDirectory()
{
    const std::unique_ptr<char, Free> native(::getcwd(nullptr, 0));
    if (!native) {
        if (errno == ENOMEM) {
            throw std::bad_alloc();
        }
        return std::nullopt;
    }
    if (!isReachable(native.get())) {
        errno = ENOENT;
        return std::nullopt;
    }
    return WorkingDirectory{posix::libraryPath(native.get()), isHoldable(native.get())};
}

bool hasWorkingDirectory() noexcept
{
    std::array<char, PATH_MAX> buffer; // not cleared: every absolute location asks
    if (::getcwd(buffer.data(), buffer.size())) {
        if (isReachable(buffer.data())) {
            return true;
        }
        errno = ENOENT;
        return false;
    }
    return errno == ERANGE; // too long for the buffer
}

} // namespace KelvoBase::platform
