#include "platform/Platform.h"
#include "platform/win32/Win32.h"
#include "platform/win32/Win32Version.h"

#include <sys/timeb.h>

#include <array>
#include <cstdlib>
#include <cstring>

namespace KelvoBase::platform
{

namespace
{

constexpr std::size_t nameSize = 256;
constexpr WORD winsockVersion = MAKEWORD(2, 0);

} // namespace

std::optional<std::string> programPath()
{
    std::array<char, 261> path{};
    const DWORD length = ::GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || length >= path.size()) { // as long as the buffer: it was cut
        return std::nullopt;
    }
    return std::string(path.data());
}

std::optional<std::string> userName()
{
    std::array<char, nameSize> name{};
    DWORD size = nameSize;
    return ::GetUserNameA(name.data(), &size) ? std::optional<std::string>(name.data()) : std::nullopt;
}

std::optional<std::string> hostName()
{
    std::array<char, nameSize> name{};
    if (::gethostname(name.data(), static_cast<int>(name.size())) < 0) {
        return std::nullopt;
    }
    return std::string(name.data());
}

std::vector<std::uint32_t> addresses(const std::string& host)
{
    std::vector<std::uint32_t> found;
    const hostent* const entry = ::gethostbyname(host.c_str());
    if (!entry || entry->h_addrtype != AF_INET) {
        return found;
    }
    for (char** item = entry->h_addr_list; *item; ++item) {
        std::uint32_t address = 0;
        std::memcpy(&address, *item, sizeof address);
        found.push_back(address);
    }
    return found;
}

std::optional<std::string> osName()
{
    OSVERSIONINFOA version{};
    static_assert(sizeof version == 148);
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExA(&version)) {
        return std::nullopt;
    }
    return win32::nameOf({version.dwPlatformId, version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber,
                          version.szCSDVersion});
}

bool startNetwork()
{
    static_assert(winsockVersion == 2 && sizeof(WSADATA) == 400);
    WSADATA told{};
    return ::WSAStartup(winsockVersion, &told) == 0;
}

void stopNetwork() noexcept
{
    ::WSACleanup();
}

Time::Mtime_t now() noexcept
{
    struct _timeb time
    {
    };
    ::_ftime(&time);
    return {time.time, static_cast<short>(time.millitm)};
}

void putEnvironment(char* assignment)
{
    ::_putenv(assignment); // which takes a copy, and removes the variable if its value is empty
}

} // namespace KelvoBase::platform
