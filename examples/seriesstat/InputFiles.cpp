#include "InputFiles.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace seriesstat
{

namespace
{

using KelvoBase::FileNotFoundException;
using KelvoBase::FileNotReadableException;
using KelvoBase::InvalidFileNameException;
using KelvoBase::IOException;
using KelvoBase::ResourceLocation;
using KelvoBase::System;

constexpr const char* noPath = "there is no path behind the host";
constexpr const char* noFiles = " holds no files.";
constexpr const char* noSuchFiles = " holds no files with such a suffix.";

/// The location of a name that a user typed, a separator at its end or not.
ResourceLocation locationOf(const std::string& argument)
{
    try {
        ResourceLocation location(argument);
        while (!location.empty() && location.lastComponent().empty()) {
            location.removeFileName();
        }
        return location;
    } catch (const std::out_of_range&) {
        throw InvalidFileNameException(argument, noPath);
    }
}

/// All files below a directory. The library's text for one that cannot be listed is the system's alone.
std::vector<ResourceLocation> filesBelow(const ResourceLocation& directory, const std::string& argument)
{
    try {
        return getFilesRecursively(directory);
    } catch (const IOException& e) {
        throw IOException("Cannot list the files below \"" + argument + "\": " + e.what());
    }
}

} // namespace

std::string nativePath(const ResourceLocation& location)
{
    std::string path = location.getFilePath('/');
    if constexpr (std::filesystem::path::preferred_separator == '\\') {
        return path;
    } else {
        const std::string drive = ResourceLocation::getRootDir();
        if (path == drive) {
            return "/";
        }
        return path.starts_with(drive + "/") ? path.substr(drive.size()) : path;
    }
}

std::vector<ResourceLocation> filesOf(const std::string& argument, const std::vector<std::string>& suffixes)
{
    const ResourceLocation location = locationOf(argument);
    if (location.isFile()) {
        return {location};
    }
    if (!location.isDir()) {
        throw FileNotFoundException(argument);
    }
    std::vector<ResourceLocation> files = filesBelow(location, argument);
    if (!suffixes.empty()) {
        std::erase_if(files, [&suffixes](const ResourceLocation& file) {
            return std::find(suffixes.begin(), suffixes.end(), file.suffix()) == suffixes.end();
        });
    }
    if (files.empty()) {
        throw IOException("\"" + argument + "\"" + (suffixes.empty() ? noFiles : noSuchFiles));
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<DoubleDouble> readSeriesFile(const ResourceLocation& file, const SeriesFormat& format)
{
    const std::string path = nativePath(file);
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        const std::string reason = System::errorMsg(System::lastError());
        throw FileNotReadableException(file, reason);
    }
    std::vector<DoubleDouble> values = readSeries(in, path, format);
    if (!in.eof()) {
        const std::string reason = System::errorMsg(System::lastError());
        throw FileNotReadableException(file, reason);
    }
    return values;
}

} // namespace seriesstat
