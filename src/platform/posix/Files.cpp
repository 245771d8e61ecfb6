#include "platform/Platform.h"
#include "platform/posix/PosixFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>

namespace KelvoBase::platform
{

namespace
{

/// Keeps the reason of a failure through the steps that clean up behind it.
class KeepError
{
public:
    KeepError() : mCode(errno) {}
    ~KeepError() { errno = mCode; }
    KeepError(const KeepError&) = delete;
    KeepError& operator=(const KeepError&) = delete;

private:
    int mCode;
};

class Descriptor
{
public:
    explicit Descriptor(int number) : mNumber(number) {}
    ~Descriptor()
    {
        if (mNumber >= 0) {
            const KeepError keep;
            ::close(mNumber);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return mNumber >= 0; }
    int number() const { return mNumber; }

private:
    int mNumber;
};

struct CloseDirectory
{
    void operator()(DIR* directory) const
    {
        const KeepError keep;
        ::closedir(directory);
    }
};

/// Opens a file, again as long as a signal interrupts it.
Descriptor openFile(const std::string& native, int flags)
{
    constexpr mode_t everybody = 0666;
    for (;;) {
        const int number = ::open(native.c_str(), flags | O_CLOEXEC | O_NOCTTY, everybody);
        if (number >= 0 || errno != EINTR) {
            return Descriptor(number);
        }
    }
}

DIR* openDirectory(const std::string& native)
{
    for (;;) {
        DIR* const directory = ::opendir(native.c_str());
        if (directory || errno != EINTR) {
            return directory;
        }
    }
}

bool isLink(const std::string& native)
{
    const KeepError keep;
    struct stat status
    {
    };
    return ::lstat(native.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool isRefusedLink(int code)
{
    return code == EPERM || code == EACCES || code == EOPNOTSUPP || code == ENOSYS || code == EINVAL || code == EMLINK;
}

void dropTrailingSeparators(std::string& native)
{
    while (native.size() > 1 && native.back() == '/') {
        native.pop_back();
    }
}

std::optional<EntryKind> kindOf(const dirent& entry)
{
    switch (entry.d_type) {
    case DT_UNKNOWN:
    case DT_LNK:
        return std::nullopt;
    case DT_DIR:
        return EntryKind::directory;
    default:
        return EntryKind::file;
    }
}

} // namespace

EntryKind entryKind(const std::string& path)
{
    struct stat status
    {
    };
    if (::stat(nativePath(path).c_str(), &status) != 0) {
        return EntryKind::missing;
    }
    return S_ISDIR(status.st_mode) ? EntryKind::directory : EntryKind::file;
}

bool isWritable(const std::string& path)
{
    return ::access(nativePath(path).c_str(), W_OK) == 0;
}

bool removeFile(const std::string& path)
{
    return ::unlink(nativePath(path).c_str()) == 0;
}

bool removeDirectory(const std::string& path)
{
    std::string native = nativePath(path);
    dropTrailingSeparators(native); // behind a link they would mean the directory it points to
    if (::rmdir(native.c_str()) == 0) {
        return true;
    }
    return errno == ENOTDIR && isLink(native) && ::unlink(native.c_str()) == 0;
}

bool makeDirectory(const std::string& path)
{
    constexpr mode_t everybody = 0777;
    return ::mkdir(nativePath(path).c_str(), everybody) == 0;
}

bool moveFile(const std::string& from, const std::string& to)
{
    const std::string nativeFrom = nativePath(from);
    const std::string nativeTo = nativePath(to);
    if (::renameat2(AT_FDCWD, nativeFrom.c_str(), AT_FDCWD, nativeTo.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    const bool hasCall = errno != ENOSYS && errno != EINVAL; // of the system; of the file system
    return !hasCall && posix::moveByLink(nativeFrom, nativeTo);
}

bool posix::moveByLink(const std::string& from, const std::string& to)
{
    if (::link(from.c_str(), to.c_str()) != 0) {
        return isRefusedLink(errno) && moveOntoPlaceholder(from, to);
    }
    if (::unlink(from.c_str()) != 0) {
        const KeepError keep;
        ::unlink(to.c_str());
        return false;
    }
    return true;
}

bool posix::moveOntoPlaceholder(const std::string& from, const std::string& to)
{
    if (!openFile(to, O_WRONLY | O_CREAT | O_EXCL)) {
        return false;
    }
    if (::rename(from.c_str(), to.c_str()) != 0) {
        const KeepError keep;
        ::unlink(to.c_str());
        return false;
    }
    return true;
}

bool isSameFile(const std::string& a, const std::string& b)
{
    struct stat first
    {
    };
    struct stat second
    {
    };
    return ::stat(nativePath(a).c_str(), &first) == 0 && ::stat(nativePath(b).c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

std::optional<unsigned long long> fileSize(const std::string& path)
{
    const Descriptor file = openFile(nativePath(path), O_RDONLY | O_NONBLOCK);
    struct stat status
    {
    };
    if (!file || ::fstat(file.number(), &status) != 0) {
        return std::nullopt;
    }
    if (S_ISDIR(status.st_mode)) {
        errno = EISDIR;
        return std::nullopt;
    }
    return static_cast<unsigned long long>(status.st_size);
}

bool listDirectory(const std::string& path, std::vector<DirectoryEntry>& entries)
{
    const std::unique_ptr<DIR, CloseDirectory> directory(openDirectory(nativePath(path)));
    if (!directory) {
        return false;
    }
    for (;;) {
        errno = 0; // the only way to tell the end from a failure
        const dirent* const entry = ::readdir(directory.get());
        if (!entry) {
            return errno == 0;
        }
        entries.push_back({entry->d_name, kindOf(*entry)});
    }
}

} // namespace KelvoBase::platform
