#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>

#include <string>

namespace KelvoBase
{

namespace
{

std::string suffixOf(const std::string& systemError)
{
    return systemError.empty() ? std::string() : " : " + systemError;
}

// Required: the text shows the path that the file system knows, while the accessors give `str()`. With `str()`
// here users would see "file://localhost/" in front of every path.
std::string pathOf(const ResourceLocation& location)
{
    return location.getFilePath(ResourceLocation::getFSSeparator());
}

std::string failureText(const std::string& operation, const std::string& systemError, const ResourceLocation& location)
{
    const std::string suffix = suffixOf(systemError);
    return operation + " \"" + pathOf(location) + "\" failed" + suffix;
}

std::string failureText(const std::string& operation, const std::string& systemError, const ResourceLocation& location1,
                        const ResourceLocation& location2)
{
    const std::string suffix = suffixOf(systemError);
    // Required: no second location leaves one more quotation mark. Dropping it would change the text; an
    // operation on one location has its own constructor.
    const std::string middle = location2.empty() ? "\"" : "\" to \"" + pathOf(location2);
    // Required: the first path comes last, so that of two locations that are not local the second one is
    // reported. Composing from left to right would report the first.
    const std::string path1 = pathOf(location1);
    return operation + " \"" + path1 + middle + "\" failed" + suffix;
}

} // namespace

FileNotReadableException::FileNotReadableException(const ResourceLocation& location, const std::string& reason)
    : IOException("Cannot read from file \"" + location.str() + "\"" + suffixOf(reason)), fileName(location.str()),
      systemError(reason)
{
}

const std::string& FileNotReadableException::getFileName() const
{
    return fileName;
}

const std::string& FileNotReadableException::getSystemError() const
{
    return systemError;
}

IOFailedException::IOFailedException(const std::string& operation, const std::string& reason,
                                     const ResourceLocation& location)
    : IOException(failureText(operation, reason, location)), fileName1(location.str()), systemError(reason)
{
}

IOFailedException::IOFailedException(const std::string& operation, const std::string& reason,
                                     const ResourceLocation& location1, const ResourceLocation& location2)
    : IOException(failureText(operation, reason, location1, location2)), fileName1(location1.str()),
      fileName2(location2.str()), systemError(reason)
{
}

const std::string& IOFailedException::getFileName1() const
{
    return fileName1;
}

const std::string& IOFailedException::getFileName2() const
{
    return fileName2;
}

const std::string& IOFailedException::getSystemError() const
{
    return systemError;
}

NotAFileException::NotAFileException(const ResourceLocation& place)
    : IOException("\"" + place.str() + "\" is not a (locally accessible) file or directory name."), location(place)
{
}

} // namespace KelvoBase
