#pragma once

/// \file
/// The steps behind `System::demangle`, apart from it because the names of real types never fail.

#include <string>
#include <string_view>

namespace KelvoBase
{

/// The readable form of the type name `mangled`, or the text of the status that the run-time reports.
std::string demangleName(const char* mangled);

/// What stands in the place of a name that the run-time did not make readable.
std::string_view demangleStatusText(int status) noexcept;

} // namespace KelvoBase
