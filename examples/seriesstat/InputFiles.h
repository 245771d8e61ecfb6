#pragma once

/// \file
/// From the names that a user gives to open files.

#include "SeriesReader.h"

#include <kelvobase/ResourceLocation.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace seriesstat
{

/// The path that the standard library's streams open, with slashes, which every system understands.
///
/// Locations write their paths in one form on every system, drive first. Where the system's own separator is the
/// backslash, paths have drives and this one stays. Elsewhere the drive of `ResourceLocation::getRootDir()` is the
/// root: `C:\data\x` => "/data/x".
std::string nativePath(const KelvoBase::ResourceLocation& location);

/// The path of a file that a user names, whether it exists or not. Throws an exception that names `argument` where it
/// is no location of a file.
std::string pathOf(const std::string& argument);

/// The files that `argument` stands for, sorted by their paths: the file itself, or all files below the directory; of
/// these only the ones with one of `suffixes`, unless there are none. Names that begin with a dot are no part of a
/// directory.
/// Throws `FileNotFoundException` for what does not exist, `IOException` for a directory that cannot be read or holds
/// no such file, and an exception that names `argument` where it is no location of a file.
std::vector<KelvoBase::ResourceLocation> filesOf(const std::string& argument, const std::vector<std::string>& suffixes);

/// What was read from a file.
struct SeriesFile
{
    std::vector<DoubleDouble> values;
    std::string digest; ///< SHA-1 of all bytes, 40 hexadecimal digits
};

/// Reads the values of a file, see `readSeries`; each byte once, so that a pipe will do. `tell` is called now and then
/// with the number of bytes that are read. Throws `FileNotReadableException` with the system's reason for a file that
/// cannot be opened or read to its end.
SeriesFile readSeriesFile(
    const KelvoBase::ResourceLocation& file, const SeriesFormat& format,
    const std::function<void(std::uintmax_t)>& tell = [](std::uintmax_t) {});

} // namespace seriesstat
