#include "platform/Platform.h"
#include "platform/win32/Win32.h"

#include <shlobj.h>

#include <array>

namespace KelvoBase::platform
{

std::optional<std::string> userFolder(Folder folder)
{
    static_assert(CSIDL_PERSONAL == 5 && CSIDL_APPDATA == 26);
    const int number = folder == Folder::documents ? CSIDL_PERSONAL : CSIDL_APPDATA;
    std::array<char, MAX_PATH> path{};
    // What it says of its success is not asked: without, there is no path either.
    ::SHGetSpecialFolderPathA(nullptr, path.data(), number, TRUE);
    return path.front() != '\0' ? std::optional<std::string>(path.data()) : std::nullopt;
}

const char* temporaryFolder() noexcept
{
    return "C:\\windows\\temp";
}

} // namespace KelvoBase::platform
