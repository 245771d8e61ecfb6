#pragma once

/// \file
/// The two ways to rename without replacing where the system has no call for it. Native paths; a failure leaves its
/// reason in `errno` and the files as they were.

#include <string>

namespace KelvoBase::platform::posix
{

/// Renames a file: as one step where the file system has hard links, else by `moveOntoPlaceholder`.
bool moveByLink(const std::string& from, const std::string& to);

/// Renames a file by reserving the new name with an empty file, which the rename replaces. Nobody else's file is ever
/// replaced, but for a moment others see the empty file.
bool moveOntoPlaceholder(const std::string& from, const std::string& to);

} // namespace KelvoBase::platform::posix
