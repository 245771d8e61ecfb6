#pragma once

/// \file
/// The paths by which Xerces-C gets at files. A path that names nothing on this system, or that Xerces-C would make
/// another one of, is empty: Xerces-C then fails as for a missing file.

#include <string>

namespace KelvoBase
{

class ResourceLocation;

/// For a file to read. Throws `NotAFileException` for a location that is not local.
std::string xmlSourcePath(const ResourceLocation& location);
/// For a file to write. Throws `NotAFileException` for a location that is not local.
std::string xmlTargetPath(const ResourceLocation& location);

} // namespace KelvoBase
