#include "platform/Platform.h"
#include "platform/win32/Win32.h"

#include <direct.h>

#include <array>

namespace KelvoBase::platform
{

namespace
{

/// The size of the buffer is part of what tools see: a longer directory has no text.
using DirectoryBuffer = std::array<char, 260>;

constexpr bool isSeparator(char c)
{
    return c == '\\' || c == '/';
}

bool hasDrive(std::string_view path)
{
    return path.size() > 1 && path[1] == ':';
}

} // namespace

int currentDrive() noexcept
{
    return ::_getdrive();
}

std::string nativePath(const std::string& path)
{
    // The empty path is the one that every call refuses as missing; a text with a zero byte would be cut.
    if (path.find('\0') != std::string::npos) {
        return {};
    }
    // Without the separator it would be the directory where this process stands on the drive.
    if (path.size() == 2 && hasDrive(path)) {
        return path + '\\';
    }
    return path;
}

bool isHoldable(std::string_view native) noexcept
{
    if (hasDrive(native) && native.size() > 2 && isSeparator(native[2])) {
        native.remove_prefix(2);
    }
    std::size_t place = 0; // within the component
    for (const char c : native) {
        if (c == '"' || (c == ':' && place == 1)) {
            return false;
        }
        place = isSeparator(c) ? 0 : place + 1;
    }
    return true;
}

std::optional<WorkingDirectory> workingDirectory()
{
    DirectoryBuffer buffer{};
    if (::GetCurrentDirectoryA(static_cast<DWORD>(buffer.size()), buffer.data()) == 0) {
        return std::nullopt;
    }
    std::string path(buffer.data());
    const bool holdable = isHoldable(path);
    return WorkingDirectory{std::move(path), holdable};
}

bool hasWorkingDirectory() noexcept
{
    DirectoryBuffer buffer; // not cleared: every absolute location asks
    return ::GetCurrentDirectoryA(static_cast<DWORD>(buffer.size()), buffer.data()) != 0;
}

} // namespace KelvoBase::platform
