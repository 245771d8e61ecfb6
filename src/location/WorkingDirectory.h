#pragma once

/// \file
/// The working directory, with the failures that the library's operations report.

#include "platform/Platform.h"

namespace KelvoBase
{

/// Throws `OperationFailedException("getcwd()")` if there is none, and `OperationFailedException("calloc()")` if there
/// is no memory for its text.
platform::WorkingDirectory workingDirectory();

/// The failure of what needs a working directory.
[[noreturn]] void throwNoWorkingDirectory();

} // namespace KelvoBase
