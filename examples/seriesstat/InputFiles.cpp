#include "InputFiles.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/SHA1.h>
#include <kelvobase/System.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <streambuf>

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

using Tell = std::function<void(std::uintmax_t)>;

/// Hands on the bytes of a file, digests them on their way, and tells how many there were.
class DigestingBuffer : public std::streambuf
{
public:
    DigestingBuffer(std::streambuf& source, KelvoBase::SHA1& digest, const Tell& tell)
        : mSource(source), mDigest(digest), mTell(tell)
    {
    }

protected:
    int_type underflow() override
    {
        const std::streamsize count = mSource.sgetn(mBytes, sizeof mBytes);
        mDigest.input(mBytes, mBytes + count);
        mRead += static_cast<std::uintmax_t>(count);
        mTell(mRead);
        setg(mBytes, mBytes, mBytes + count);
        return count == 0 ? traits_type::eof() : traits_type::to_int_type(mBytes[0]);
    }

private:
    std::streambuf& mSource;
    KelvoBase::SHA1& mDigest;
    const Tell& mTell;
    std::uintmax_t mRead = 0;
    char mBytes[1 << 14];
};

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

std::string pathOf(const std::string& argument)
{
    return nativePath(locationOf(argument));
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

SeriesFile readSeriesFile(const ResourceLocation& file, const SeriesFormat& format, const Tell& tell)
{
    const std::string path = nativePath(file);
    std::ifstream source(path, std::ios::binary);
    if (!source) {
        const std::string reason = System::errorMsg(System::lastError());
        throw FileNotReadableException(file, reason);
    }
    KelvoBase::SHA1 digest;
    DigestingBuffer buffer(*source.rdbuf(), digest, tell);
    std::istream in(&buffer);
    std::vector<DoubleDouble> values = readSeries(in, path, format);
    if (!in.eof()) {
        const std::string reason = System::errorMsg(System::lastError());
        throw FileNotReadableException(file, reason);
    }
    return {std::move(values), digest.getResult(false)};
}

} // namespace seriesstat
