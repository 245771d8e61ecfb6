#include "xml/XmlPath.h"

#include "platform/Platform.h"
#include "xml/XmlText.h"

#include <kelvobase/ResourceLocation.h>

#include <optional>

namespace KelvoBase
{

namespace
{

std::string libraryPath(const ResourceLocation& location)
{
    return location.getFilePath(ResourceLocation::getFSSeparator());
}

bool isRelative(const std::string& path)
{
    const bool hasDrive = path.size() > 1 && path[1] == ':';
    return !path.empty() && !hasDrive && path[0] != '\\';
}

/// Xerces-C takes a relative name for a URL where it looks like one ("http:\x"), and takes ".." back by text, where the
/// system follows a link first. An absolute path is left alone.
std::string anchored(const std::string& path)
{
    if (!isRelative(path)) {
        return path;
    }
    const std::optional<platform::WorkingDirectory> here = platform::workingDirectory();
    return (here && here->holdable ? here->path : ".") + '\\' + path;
}

/// Xerces-C carries paths in UTF-16: a name that does not come back from there would be another file's.
std::string orNothing(const std::string& native)
{
    return nativeText(XmlText(native).get()) == native ? native : std::string();
}

} // namespace

std::string xmlSourcePath(const ResourceLocation& location)
{
    return orNothing(platform::nativePath(anchored(libraryPath(location))));
}

std::string xmlTargetPath(const ResourceLocation& location)
{
    return orNothing(platform::nativePath(libraryPath(location)));
}

} // namespace KelvoBase
