#pragma once

/// \file
/// The way from a native path to the text of a location, for what enters the library.

#include <string>
#include <string_view>

namespace KelvoBase::platform::posix
{

/// An absolute native path as a library path: the drive that stands for the root in front, and backslashes.
std::string libraryPath(std::string_view native);

} // namespace KelvoBase::platform::posix
