#include "platform/win32/Win32Version.h"

namespace KelvoBase::platform
{

namespace
{

using win32::Version;

std::string numbersOf(const Version& version)
{
    return std::to_string(version.major) + "." + std::to_string(version.minor);
}

std::string nameInOldLine(const Version& version)
{
    switch (version.minor) {
    case 0:
        return "Windows 95 ";
    case 10:
        return "Windows 98 ";
    case 90:
        return "Windows ME ";
    default:
        return "Windows ??? " + numbersOf(version);
    }
}

std::string nameInNtLine(const Version& version)
{
    const char* name = "Windows ??? ";
    if (version.major <= 4) {
        name = "Windows NT ";
    } else if (version.major == 5 && version.minor == 0) {
        name = "Windows 2000 ";
    } else if (version.major == 5 && version.minor == 1) {
        name = "Windows XP ";
    }
    return name + numbersOf(version);
}

std::string startOf(const Version& version)
{
    switch (version.platform) {
    case 0:
        return "Win32s on Windows 3.1";
    case 1:
        return nameInOldLine(version);
    case 2:
        return nameInNtLine(version);
    default:
        return "Windows ??? ";
    }
}

} // namespace

std::string win32::nameOf(const Version& version)
{
    std::string name = startOf(version);
    if (!version.servicePack.empty()) {
        name += ' ';
        name += version.servicePack;
    }
    return name += " Build #" + std::to_string(version.build);
}

} // namespace KelvoBase::platform
