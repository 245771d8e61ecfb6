#include "platform/Platform.h"
#include "platform/win32/Win32.h"

#include <io.h>

#include <cstdio>
#include <cstdlib>

namespace KelvoBase::platform
{

namespace
{

using File = win32::Owned<&::CloseHandle>;
using Search = win32::Owned<&::FindClose>;

constexpr int forWriting = 2; // of `_access`

/// What tells a file from every other one.
std::optional<BY_HANDLE_FILE_INFORMATION> identity(const std::string& native)
{
    constexpr DWORD nothing = 0; // not even reading, so that nobody's lock is in the way
    constexpr DWORD everything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const File file(
        ::CreateFileA(native.c_str(), nothing, everything, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    BY_HANDLE_FILE_INFORMATION found{};
    if (!file || !::GetFileInformationByHandle(file.get(), &found)) {
        return std::nullopt;
    }
    return found;
}

} // namespace

EntryKind entryKind(const std::string& path)
{
    static_assert(FILE_ATTRIBUTE_DIRECTORY == 16);
    const DWORD attributes = ::GetFileAttributesA(nativePath(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return EntryKind::missing;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryKind::directory : EntryKind::file;
}

bool isWritable(const std::string& path)
{
    if (::_access(nativePath(path).c_str(), forWriting) == 0) {
        return true;
    }
    ::SetLastError(_doserrno); // where the run-time itself says no, it leaves its reason nowhere else
    return false;
}

bool removeFile(const std::string& path)
{
    return ::DeleteFileA(nativePath(path).c_str()) != 0;
}

bool removeDirectory(const std::string& path)
{
    return ::RemoveDirectoryA(nativePath(path).c_str()) != 0;
}

bool makeDirectory(const std::string& path)
{
    return ::CreateDirectoryA(nativePath(path).c_str(), nullptr) != 0;
}

bool moveFile(const std::string& from, const std::string& to)
{
    return std::rename(nativePath(from).c_str(), nativePath(to).c_str()) == 0; // never replaces here
}

bool isSameFile(const std::string& a, const std::string& b)
{
    const std::optional<BY_HANDLE_FILE_INFORMATION> first = identity(nativePath(a));
    const std::optional<BY_HANDLE_FILE_INFORMATION> second = identity(nativePath(b));
    return first && second && first->dwVolumeSerialNumber == second->dwVolumeSerialNumber &&
           first->nFileIndexHigh == second->nFileIndexHigh && first->nFileIndexLow == second->nFileIndexLow;
}

std::optional<unsigned long long> fileSize(const std::string& path)
{
    const File file(::CreateFileA(nativePath(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return std::nullopt;
    }
    DWORD high = 0;
    const DWORD low = ::GetFileSize(file.get(), &high);
    return static_cast<unsigned long long>(high) << 32 | low;
}

bool listDirectory(const std::string& path, std::vector<DirectoryEntry>& entries)
{
    if (path.empty()) { // whose pattern would be the root's
        ::SetLastError(ERROR_PATH_NOT_FOUND);
        return false;
    }
    WIN32_FIND_DATAA entry{};
    const Search search(::FindFirstFileA(nativePath(path + "\\*").c_str(), &entry));
    if (!search) {
        return false;
    }
    do {
        // The name may have lost letters, also for others that exist, or have an end that no other call finds: what the
        // directory says of it would not be true of the name.
        entries.push_back({entry.cFileName, std::nullopt});
    } while (::FindNextFileA(search.get(), &entry));
    return true;
}

} // namespace KelvoBase::platform
