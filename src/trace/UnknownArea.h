#pragma once

#include <string>
#include <string_view>

namespace KelvoBase
{

/// The failure of code that names an area which does not exist. It does not need a registry.
[[noreturn]] void throwUnknownArea(const std::string& name);

/// Tells of a parent that is not registered: two lines on standard error, if `haveCerr` is set.
void warnOfUnknownParent(std::string_view parent);

} // namespace KelvoBase
