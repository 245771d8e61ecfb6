#include "platform/Platform.h"
#include "platform/posix/PosixPaths.h"

#include <netdb.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace KelvoBase::platform
{

namespace
{

constexpr const char* programLink = "/proc/self/exe";
constexpr std::string_view deletedMark = " (deleted)";

std::optional<std::string> readLink(const char* link)
{
    std::string text(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink(link, text.data(), text.size());
        if (length < 0) {
            return std::nullopt;
        }
        if (static_cast<std::size_t>(length) < text.size()) {
            text.resize(static_cast<std::size_t>(length));
            return text;
        }
        text.resize(text.size() * 2); // may have been cut
    }
}

/// The system adds a mark to the path of a program whose file was removed or replaced while it runs.
void dropDeletedMark(std::string& path)
{
    if (path.ends_with(deletedMark) && ::access(path.c_str(), F_OK) != 0) {
        path.resize(path.size() - deletedMark.size());
    }
}

} // namespace

std::optional<std::string> programPath()
{
    std::optional<std::string> native = readLink(programLink);
    if (!native) {
        return std::nullopt;
    }
    dropDeletedMark(*native);
    if (!native->starts_with('/') || !isHoldable(*native)) {
        return std::nullopt;
    }
    return posix::libraryPath(*native);
}

std::optional<std::string> userName()
{
    passwd entry{};
    passwd* found = nullptr;
    std::string buffer(1024, '\0');
    int failure = 0;
    while ((failure = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE) {
        buffer.resize(buffer.size() * 2);
    }
    if (!found) {
        errno = failure; // this call returns its error instead of storing it
        return std::nullopt;
    }
    return std::string(entry.pw_name);
}

std::optional<std::string> hostName()
{
    std::array<char, 256> name{};
    if (::gethostname(name.data(), name.size() - 1) != 0) { // the last byte stays zero: a cut name need not end
        return std::nullopt;
    }
    return std::string(name.data());
}

std::vector<std::uint32_t> addresses(const std::string& host)
{
    std::vector<std::uint32_t> found;
    // Not getaddrinfo: it sorts what the resolver delivered, and here the order counts.
    const hostent* entry = ::gethostbyname(host.c_str());
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
    utsname system{};
    if (::uname(&system) < 0) {
        return std::nullopt;
    }
    const std::string_view version(system.version);
    std::string name = std::string(system.sysname) + " " + system.release + " Build #";
    name += version.starts_with('#') ? version.substr(1) : version;
    return name;
}

bool startNetwork()
{
    return true; // nothing to start
}

void stopNetwork() noexcept {}

Time::Mtime_t now() noexcept
{
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return {time.tv_sec, static_cast<short>(time.tv_nsec / 1'000'000)}; // tv_nsec is never negative: this floors
}

void putEnvironment(char* assignment)
{
    ::putenv(assignment);
}

} // namespace KelvoBase::platform
