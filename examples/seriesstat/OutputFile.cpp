#include "OutputFile.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>
#include <kelvobase/System.h>

#include <filesystem>
#include <fstream>
#include <system_error>

namespace seriesstat
{

namespace
{

namespace fs = std::filesystem;
using KelvoBase::quote;
using KelvoBase::RuntimeException;
using KelvoBase::System;

constexpr const char* cannotWrite = "Cannot write to file ";
constexpr const char* noDirectory = "There is no directory for the file ";
constexpr const char* notOrdinary = " is no ordinary file.";

/// The path behind all links, as far as it exists.
fs::path resolved(const std::string& path)
{
    std::error_code fault;
    const fs::path absolute = fs::absolute(path, fault);
    const fs::path canonical = fs::weakly_canonical(absolute, fault);
    return fault ? absolute : canonical;
}

/// A name beside `path` that is free.
std::string nameBeside(const std::string& path)
{
    std::error_code fault;
    std::string name = path + ".part";
    for (int i = 2; fs::exists(fs::symlink_status(name, fault)); ++i) {
        name = path + ".part" + std::to_string(i);
    }
    return name;
}

} // namespace

bool isSameFile(const std::string& a, const std::string& b)
{
    std::error_code fault;
    return fs::equivalent(a, b, fault) || resolved(a) == resolved(b);
}

void checkPlace(const std::string& path)
{
    std::error_code fault;
    if (path.empty() || !fs::is_directory(resolved(path).parent_path(), fault)) {
        throw RuntimeException(noDirectory + quote(path) + ".");
    }
    const fs::file_status status = fs::status(path, fault);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw RuntimeException(quote(path) + notOrdinary);
    }
}

void throwUnwritable(const std::string& path, const std::string& reason)
{
    throw KelvoBase::IOException(cannotWrite + quote(path) + ": " + reason);
}

OutputFile::OutputFile(const std::string& path) : mName(path), mPath(resolved(path).string())
{
    checkPlace(path);
    mPlace = nameBeside(mPath);
}

OutputFile::~OutputFile()
{
    if (!mPlace.empty()) {
        std::error_code fault;
        fs::remove(mPlace, fault);
    }
}

void OutputFile::write(const std::string& text) const
{
    std::ofstream out(mPlace, std::ios::binary);
    out << text;
    out.close();
    if (!out) {
        const std::string reason = System::lastErrorMessage();
        throwUnwritable(mName, reason);
    }
}

void OutputFile::finish()
{
    std::error_code fault;
    if (const fs::file_status before = fs::status(mPath, fault); fs::exists(before)) {
        fs::permissions(mPlace, before.permissions(), fault); // kept where that can be done
    }
    fs::rename(mPlace, mPath, fault);
    if (fault) {
        throwUnwritable(mName, fault.message());
    }
    mPlace.clear();
}

} // namespace seriesstat
