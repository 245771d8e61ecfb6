#pragma once

#include <string>

namespace KelvoBase
{

/// The failure of code that names an area which does not exist. It does not need a registry.
[[noreturn]] void throwUnknownArea(const std::string& name);

} // namespace KelvoBase
