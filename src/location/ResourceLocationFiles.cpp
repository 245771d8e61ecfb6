#include "platform/Platform.h"
#include "trace/Message.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <exception>
#include <fstream>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace KelvoBase
{

namespace
{

using platform::EntryKind;

constexpr const char* emptyPath = "ResourceLocation: Could not query a path that is empty.";
constexpr const char* invalidHandle = "Invalid file handle! ";
constexpr const char* copying = "Copying";
constexpr const char* noSource = "could not open source file";
constexpr const char* noDestination = "could not open destination file";
constexpr const char* copyFailed = "copy operation failed";
constexpr const char* moving = "moving file";
constexpr const char* creating = "creating directory";

/// What the path of a location names; nothing is asked for an empty one.
EntryKind kindOf(const ResourceLocation& location)
{
    return location.empty() ? EntryKind::missing : platform::entryKind(location.getFilePath('\\'));
}

/// For a path that is no location yet. Should the question itself fail, there is no directory.
bool isDirectory(const std::string& path)
{
    try {
        return platform::entryKind(path) == EntryKind::directory;
    } catch (const std::exception&) {
        return false;
    }
}

void traceTwo(const char* what, const ResourceLocation& from, const ResourceLocation& to)
{
    traceMessage(Trace::verbose, TraceArea::KelvoBase()) << what << " from:\n"
                                                         << from.str() << "\nto:\n"
                                                         << to.str() << std::endl;
}

void traceStranger(const std::string& name)
{
    traceMessage(Trace::fail, TraceArea::All()) << "What is this: \"" << name << "\" ?" << std::endl;
}

/// The native path of a directory with a separator behind it.
std::string nativePrefix(const std::string& directory)
{
    return platform::nativePath(directory.ends_with('\\') ? directory : directory + "\\");
}

/// Whether a name belongs into a listing.
bool isListed(const std::string& directory, const std::string& name)
{
    // Required: every name with a dot in front, not just the two that each directory has. Tools rely on not
    // seeing hidden files.
    if (name.starts_with('.')) {
        return false;
    }
    if (!platform::isHoldable(name)) {
        traceStranger(nativePrefix(directory) + name);
        return false;
    }
    return true;
}

/// The names of a directory that belong into a listing.
std::vector<platform::DirectoryEntry> readDirectory(const std::string& path)
{
    std::vector<platform::DirectoryEntry> entries;
    if (!platform::listDirectory(path, entries)) {
        throw IOException(System::lastErrorMessage());
    }
    std::erase_if(entries, [&](const platform::DirectoryEntry& entry) { return !isListed(path, entry.name); });
    return entries;
}

void copyContent(const std::string& from, const std::string& to, const ResourceLocation& source,
                 const ResourceLocation& destination)
{
    std::ifstream in(platform::nativePath(from), std::ios::binary);
    if (!in) {
        throw IOFailedException(copying, noSource, source, destination);
    }
    if (platform::isSameFile(from, to)) {
        throw IOFailedException(copying, copyFailed, source, destination); // opening the target would empty the source
    }
    std::ofstream out(platform::nativePath(to), std::ios::binary);
    if (!out) {
        throw IOFailedException(copying, noDestination, source, destination);
    }
    // Required: inserting no character leaves `out` failed. A test of the size in front of it would let the
    // copy of an empty file pass.
    out << in.rdbuf();
    out.flush(); // a disk that is full at the very end shows only here
    // One that is full before merely ends the insertion: the source has something left then.
    if (!out || in.peek() != std::ifstream::traits_type::eof()) {
        throw IOFailedException(copying, copyFailed, source, destination);
    }
}

} // namespace

/// The entries of a directory and, one for each, what the directory itself says of them. Asking the system again for
/// each entry costs more than the listing itself.
class DirectoryReader
{
public:
    struct Listing
    {
        std::vector<ResourceLocation> entries;
        std::vector<std::optional<EntryKind>> kinds;
    };

    static Listing read(const ResourceLocation& directory, bool makeAbsolute);
};

DirectoryReader::Listing DirectoryReader::read(const ResourceLocation& directory, bool makeAbsolute)
{
    Listing listing;
    if (!directory.isDir()) {
        return listing;
    }
    const std::vector<platform::DirectoryEntry> names = readDirectory(directory.getFilePath('\\'));
    if (names.empty()) {
        return listing;
    }
    ResourceLocation entry(directory);
    entry.mPathCache = std::string();
    // Once for all entries: behind a normalised directory a name is nothing that could need it.
    if (directory.isAbsolute() || makeAbsolute) {
        entry.toAbsolute();
    }
    entry.mComponents.emplace_back();
    listing.entries.reserve(names.size());
    listing.kinds.reserve(names.size());
    for (const platform::DirectoryEntry& found : names) {
        entry.mComponents.back() = found.name;
        listing.entries.push_back(entry);
        listing.kinds.push_back(found.kind);
    }
    return listing;
}

bool ResourceLocation::isFile() const
{
    return kindOf(*this) == EntryKind::file;
}

bool ResourceLocation::isDir() const
{
    return kindOf(*this) == EntryKind::directory;
}

bool ResourceLocation::isExistent() const
{
    return kindOf(*this) != EntryKind::missing;
}

bool ResourceLocation::isWritable(bool rejectFile) const
{
    const bool file = isFile();
    if (file && rejectFile) {
        return false;
    }
    ResourceLocation asked(*this);
    if (!file) {
        // Required: a directory, too, is answered for by its parent. Asking itself would say no for a
        // directory of somebody else that this user may still replace.
        asked.removeFileName();
    }
    if (platform::isWritable(asked.empty() ? "." : asked.getFilePath('\\'))) {
        return true;
    }
    const std::string reason = System::lastErrorMessage();
    traceMessage(Trace::verbose, TraceArea::KelvoBase())
        << "Cannot write to \"" << str() << "\": " << reason << std::endl;
    return false;
}

void ResourceLocation::remove() const
{
    traceMessage(Trace::verbose, TraceArea::KelvoBase()) << "removing file:\n  " << str() << std::endl;
    const EntryKind kind = kindOf(*this);
    if (kind == EntryKind::missing) {
        return;
    }
    const std::string& path = getFilePath('\\');
    if (!(kind == EntryKind::directory ? platform::removeDirectory(path) : platform::removeFile(path))) {
        const std::string reason = System::lastErrorMessage();
        throw IOException("Could not remove '" + str() + "': " + reason);
    }
}

void ResourceLocation::createDir() const
{
    if (isExistent()) {
        return;
    }
    const std::string path = getFilePath('\\');
    std::size_t position = 0;
    do {
        position = path.find('\\', position + 1);
        const std::string level = path.substr(0, position);
        if (isDirectory(level)) {
            continue;
        }
        System::lastError();
        const bool made = platform::makeDirectory(level);
        const unsigned long code = made ? System::ERRORCODE_NOERROR : System::lastError();
        // Required: a name that is taken counts as made, whatever has it. Somebody else may have made the
        // directory meanwhile; if it is a file, the next level fails.
        if (code != System::ERRORCODE_NOERROR && !platform::isAlreadyExists(code)) {
            throw IOFailedException(creating, System::errorMsg(code), *this);
        }
    } while (position != std::string::npos);
}

void ResourceLocation::copy(const ResourceLocation& destination) const
{
    if (!isFile()) {
        throw FileNotFoundException(getFilePath('\\'));
    }
    ResourceLocation target;
    if (destination.isDir()) {
        target = destination;
        target.parsePath(basenameWithSuffix());
    } else if (destination.isLocalFile()) {
        target = destination;
    }
    traceTwo("copy", *this, target);
    // Required: failures name the destination of the call, also where the file goes into that directory.
    // `move` is the one that names the place itself.
    copyContent(getFilePath('\\'), target.getFilePath('\\'), *this, destination);
}

void ResourceLocation::move(ResourceLocation destination) const
{
    if (!isFile()) {
        throw FileNotFoundException(getFilePath('\\'));
    }
    if (destination.isDir()) {
        destination.parsePath(basenameWithSuffix());
    }
    traceTwo("moving", *this, destination);
    const std::string& from = getFilePath('\\');
    const std::string& to = destination.getFilePath('\\');
    System::lastError();
    if (!platform::moveFile(from, to)) {
        const std::string reason = System::lastErrorMessage();
        throw IOFailedException(moving, reason, *this, destination);
    }
}

unsigned long long ResourceLocation::size() const
{
    if (empty()) {
        throw OperationFailedException(emptyPath);
    }
    const std::string path = getFilePath('\\');
    System::lastError();
    const std::optional<unsigned long long> bytes = platform::fileSize(path);
    if (!bytes) {
        const std::string reason = System::lastErrorMessage();
        // Required: a location built anew from the path. This one would show a protocol and host of its own.
        throw FileNotReadableException(ResourceLocation(path), invalidHandle + reason);
    }
    return *bytes;
}

std::vector<ResourceLocation> ResourceLocation::getDirList(bool makeAbsolute) const
{
    return DirectoryReader::read(*this, makeAbsolute).entries;
}

const std::string& ResourceLocation::getPathWithoutFilename(char separator) const
{
    getPath('\\', true);
    if (!isFile()) {
        return mPathCache;
    }
    // Required: the path was built with backslashes, whatever `separator` is, so another one is not found and
    // the whole path is the answer. Building it with `separator` would cut it.
    const std::size_t last = mPathCache.rfind(isLocalFile() ? separator : '/');
    if (last != std::string::npos) {
        mPathCache.erase(last);
    }
    return mPathCache;
}

std::vector<ResourceLocation> getFilesRecursively(const ResourceLocation& directory)
{
    if (!directory.isDir()) {
        throw IOException("ResourceLocation \"" + directory.str() + "\" does not point to a directory.");
    }
    std::vector<ResourceLocation> directories{directory};
    std::vector<ResourceLocation> files;
    for (std::size_t next = 0; next < directories.size(); ++next) {
        auto [entries, kinds] = DirectoryReader::read(directories[next], false);
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const EntryKind kind = kinds[i] ? *kinds[i] : kindOf(entries[i]);
            if (kind == EntryKind::directory) {
                directories.push_back(std::move(entries[i]));
            } else if (kind == EntryKind::file) {
                files.push_back(std::move(entries[i]));
            } else {
                traceStranger(entries[i].str());
            }
        }
    }
    return files;
}

} // namespace KelvoBase
