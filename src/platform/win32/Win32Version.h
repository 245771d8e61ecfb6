#pragma once

/// \file
/// The name of the system.

#include <string>
#include <string_view>

namespace KelvoBase::platform::win32
{

/// What the system tells of itself.
struct Version
{
    unsigned long platform; ///< 0: above an older system, 1: of the line that ends with ME, 2: of the NT line
    unsigned long major;
    unsigned long minor;
    unsigned long build;
    std::string_view servicePack;
};

/// One line:
///
///     2, 5.1, 2600, "Service Pack 2"  => Windows XP 5.1 Service Pack 2 Build #2600
///     2, 6.2, 9200, ""                => Windows ??? 6.2 Build #9200
///     1, 4.10, 67766222, ""           => Windows 98  Build #67766222
///
/// The names end where they were known when tools began to rely on them.
std::string nameOf(const Version& version);

} // namespace KelvoBase::platform::win32
