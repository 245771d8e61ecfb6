#include "platform/Platform.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace KelvoBase::platform
{

namespace
{

constexpr std::string_view configurationName = ".config";

std::string_view environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : std::string_view();
}

std::optional<std::string> configurationFolder()
{
    const std::string_view given = environment("XDG_CONFIG_HOME");
    if (given.starts_with('/')) {
        return std::string(given);
    }
    std::string folder(environment("HOME"));
    if (folder.empty()) {
        return std::nullopt;
    }
    if (!folder.ends_with('/')) { // two separators in front would be a network path
        folder += '/';
    }
    return folder += configurationName;
}

bool hasParentStep(const std::string& path)
{
    return ("/" + path + "/").find("/../") != std::string::npos;
}

/// Whether the location of that text is the place that the system finds under it. A colon makes a protocol or a drive
/// of what stands before it, and a location takes a step to the parent without regard to links.
bool isOnePlace(const std::string& path)
{
    return isHoldable(path) && !path.starts_with("//") && path.find(':') == std::string::npos && !hasParentStep(path);
}

bool makeLevel(const std::string& path)
{
    constexpr mode_t userOnly = 0700;
    return ::mkdir(path.c_str(), userOnly) == 0 || errno == EEXIST;
}

/// Makes a directory and the missing ones of its parents. What was made before a failure stays.
bool makeFolder(const std::string& path)
{
    if (makeLevel(path)) {
        return true;
    }
    const std::size_t name = path.find_last_not_of('/');
    const std::size_t separator = path.find_last_of('/', name);
    if (errno != ENOENT || separator == std::string::npos || separator == 0) {
        return false;
    }
    return makeFolder(path.substr(0, separator)) && makeLevel(path);
}

} // namespace

std::optional<std::string> userFolder(Folder folder)
{
    if (folder == Folder::documents) {
        return std::nullopt;
    }
    std::optional<std::string> path = configurationFolder();
    // Asked first: on most runs it is there, and an attempt is dear where the user's home lies on the network.
    if (path && isOnePlace(*path) && ::access(path->c_str(), F_OK) != 0) {
        makeFolder(*path);
    }
    return path;
}

const char* temporaryFolder() noexcept
{
    return "/tmp";
}

} // namespace KelvoBase::platform
