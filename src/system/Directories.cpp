#include "location/WorkingDirectory.h"
#include "platform/Platform.h"

#include <kelvobase/Application.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace KelvoBase
{

namespace
{

constexpr const char* baseVariable = "DRAVO2_BASEDIR";
constexpr const char* installationVariable = "DRAVO2_INSTDIR";
constexpr std::string_view programsPrefix = "bin";
constexpr const char* librariesName = "bin";
constexpr const char* dataName = "share";
constexpr const char* userDirectoryName = "dravo2";
constexpr std::string_view nameOfApplication = "getAppName()";

// Required: with the blank at the end of the first line. Tools compare the text byte by byte.
constexpr const char* noBase = "System: No valid DRAVO base dir could be found. \n"
                               "\tHint: Please set the environment variable \"DRAVO2_BASEDIR\"\n";
constexpr const char* noHome = "System: Unable to locate home directory";
constexpr const char* noAppData = "System: Unable to locate app directory";
constexpr const char* noApplication = "System: There is no application whose name could stand for \"getAppName()\".";

/// The working directory; an empty location if none can hold it.
ResourceLocation workingLocation()
{
    const platform::WorkingDirectory directory = workingDirectory();
    return directory.holdable ? ResourceLocation(directory.path) : ResourceLocation();
}

/// The name of the application, if `application` stands for it.
void resolve(std::string& application)
{
    if (application != nameOfApplication) {
        return;
    }
    const Application* const instance = Application::instance();
    if (!instance) {
        throw ObjectNotExistentException(noApplication);
    }
    application = instance->getAppName();
}

/// `candidates` stand in the order of the search.
[[noreturn]] void throwNotFound(const std::string& name, const std::vector<ResourceLocation>& candidates)
{
    std::string places;
    for (std::size_t i = candidates.size(); i-- > 0;) {
        places += places.empty() ? "\"" : "; \"";
        places += candidates[i].getFilePath(ResourceLocation::getFSSeparator());
        places += '"';
    }
    throw FileNotFoundException(name, places);
}

/// The search of `getAppDir` and `getAppFile`, which differ in what they take.
ResourceLocation findData(const std::vector<ResourceLocation>& directories, const std::string& name,
                          const std::string& application, bool (ResourceLocation::*isWanted)() const)
{
    std::vector<ResourceLocation> failed;
    // From the back, so that the working directory wins over the installation.
    for (std::size_t i = directories.size(); i-- > 0;) {
        ResourceLocation candidate(directories[i]);
        candidate.append(dataName).append(application).append(name); // an empty text adds nothing
        if ((candidate.*isWanted)()) {
            return candidate;
        }
        failed.push_back(std::move(candidate));
    }
    throwNotFound(name, failed);
}

/// Sets `location` to the value of the environment, unless it is known or there is none.
void takeIfEmpty(ResourceLocation& location, const std::string& text)
{
    if (location.empty() && !text.empty()) {
        location = ResourceLocation(text);
    }
}

/// The search of `getHomeDir` and `getAppDataDir`; `found` is what they keep.
const ResourceLocation& findFolder(ResourceLocation& found, platform::Folder folder, const char* failure)
{
    // Required: what was found is not tested again, and it is kept even if it is no directory. Clearing it in
    // front of the exception would make every call throw, where tools go on with the second one.
    if (!found.empty()) {
        return found;
    }
    if (const std::optional<std::string> text = platform::userFolder(folder)) {
        found = ResourceLocation(*text);
    }
    takeIfEmpty(found, System::getEnv("HOMEDRIVE", "") + System::getEnv("HOMEPATH", ""));
    takeIfEmpty(found, System::getEnv("HOME", ""));
    if (!found.isDir()) {
        throw IOException(failure);
    }
    return found;
}

/// Eight hexadecimal digits.
std::string randomDigits(Time::Mtime_t now)
{
    // Required: seeded each time. Seeding once, or from something finer, would give two calls within a second
    // two names, where tools find the name of the first call again.
    std::srand(static_cast<unsigned int>(now.seconds));
    const auto high = static_cast<std::uint32_t>(std::rand());
    const auto low = static_cast<std::uint32_t>(std::rand());
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x", static_cast<unsigned int>(high * 32767u + low));
    return digits.data();
}

} // namespace

void System::setSysDirPaths() const
{
    // Required: whoever filled it. A search in spite of what a tool added would find that tool files of an
    // installation which it shut out.
    if (!mSystemDirs.empty()) {
        return;
    }
    // Required: a text that is no location ends the search here. Skipping it, as a directory that is missing,
    // would let a tool run on with another installation than the one that its user misspelled.
    addToSysDirPaths(ResourceLocation(getEnv(baseVariable, "")));
    addToSysDirPaths(ResourceLocation(getEnv(installationVariable, "")));
    ResourceLocation directory = getExeImagePath();
    directory.removeFileName();
    // Required: the beginning of the name decides, and the libraries lie in "bin" whatever the rest is. The
    // whole name would shut out "bin64", where programs share the libraries of "bin".
    if (directory.lastComponent().starts_with(programsPrefix)) {
        mBinDir = directory;
        directory.removeFileName();
        addToSysDirPaths(ResourceLocation(directory.getFilePath(ResourceLocation::getFSSeparator())));
        mDllDir = directory.append(librariesName);
    }
    addToSysDirPaths(workingLocation());
    if (mSystemDirs.empty()) {
        throw OperationFailedException(noBase);
    }
}

void System::addToSysDirPaths(const ResourceLocation& directory) const
{
    if (!directory.isLocalFile()) {
        return; // isDir would throw
    }
    for (const ResourceLocation& known : mSystemDirs) {
        if (known == directory) {
            return;
        }
    }
    if (directory.isDir()) {
        mSystemDirs.push_back(directory);
    }
}

const std::vector<ResourceLocation>& System::getSystemDirs() const
{
    setSysDirPaths();
    return mSystemDirs;
}

ResourceLocation System::getBinDir() const
{
    if (mBinDir.empty()) {
        setSysDirPaths();
    }
    return mBinDir;
}

ResourceLocation System::getDllDir() const
{
    if (mDllDir.empty()) {
        setSysDirPaths();
    }
    return mDllDir;
}

ResourceLocation System::getAppDir(const std::string& name, std::string application) const
{
    setSysDirPaths();
    resolve(application);
    return findData(mSystemDirs, name, application, &ResourceLocation::isDir);
}

ResourceLocation System::getAppFile(const std::string& name, std::string application) const
{
    setSysDirPaths();
    resolve(application);
    return findData(mSystemDirs, name, application, &ResourceLocation::isFile);
}

ResourceLocation System::getHomeDir() const
{
    return findFolder(mHomeDir, platform::Folder::documents, noHome);
}

ResourceLocation System::getAppDataDir() const
{
    return findFolder(mAppDataDir, platform::Folder::applicationData, noAppData);
}

ResourceLocation System::getUserDir(bool create) const
{
    if (!mUserDir.empty()) {
        return mUserDir;
    }
    // Required: kept before it is known to be there. Keeping it only then would make the second call of a tool
    // that asks without `create` throw as well.
    mUserDir = getAppDataDir().append(userDirectoryName);
    if (mUserDir.isDir()) {
        return mUserDir;
    }
    if (!create) {
        throw OperationFailedException("System: user Dravo directory \"" + mUserDir.str() + "\" is not available.");
    }
    // Required: this takes a file of that name for made. Refusing it would stop tools that never store
    // anything.
    mUserDir.createDir();
    return mUserDir;
}

// Required: the end of the name comes first. Exchanging the two would turn round the names of every caller.
ResourceLocation System::tempFile(const std::string& suffix, const std::string& prefix) const
{
    ResourceLocation directory(getEnv("TMP", ""));
    const std::string digits = randomDigits(now());
    if (!directory.isDir()) {
        directory = ResourceLocation(platform::temporaryFolder());
    }
    return directory.append(prefix + digits + suffix);
}

} // namespace KelvoBase
