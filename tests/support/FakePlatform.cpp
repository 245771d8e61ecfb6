#include "support/FakePlatform.h"

#include <utility>

namespace KelvoBase::test
{

namespace
{

using platform::EntryKind;

EntryKind kindOf(const std::string& path)
{
    const FakePlatform& fake = fakePlatform();
    if (fake.files.contains(path)) {
        return EntryKind::file;
    }
    return fake.directories.contains(path) ? EntryKind::directory : EntryKind::missing;
}

bool makeEntry(const std::string& path)
{
    FakePlatform& fake = fakePlatform();
    if (kindOf(path) != EntryKind::missing) {
        return fake.fail(FakePlatform::alreadyExists);
    }
    fake.directories.insert(path);
    return true;
}

bool moveEntry(const std::string& from, const std::string& to)
{
    FakePlatform& fake = fakePlatform();
    if (!fake.files.contains(from)) {
        return fake.fail(FakePlatform::notFound);
    }
    if (kindOf(to) != EntryKind::missing) {
        return fake.fail(FakePlatform::alreadyExists);
    }
    fake.files[to] = fake.files[from];
    fake.files.erase(from);
    return true;
}

std::optional<unsigned long long> sizeOf(const std::string& path)
{
    FakePlatform& fake = fakePlatform();
    const auto found = fake.files.find(path);
    if (found == fake.files.end()) {
        fake.fail(kindOf(path) == EntryKind::directory ? FakePlatform::accessDenied : FakePlatform::notFound);
        return std::nullopt;
    }
    return found->second;
}

/// Adds the part of `path` behind `directory` if that is one name.
void addName(const std::string& directory, const std::string& path, EntryKind kind,
             std::vector<platform::DirectoryEntry>& entries)
{
    const std::string head = directory + "\\";
    if (path.starts_with(head) && path.find('\\', head.size()) == std::string::npos) {
        entries.push_back({path.substr(head.size()), kind});
    }
}

bool listEntries(const std::string& directory, std::vector<platform::DirectoryEntry>& entries)
{
    FakePlatform& fake = fakePlatform();
    if (!fake.directories.contains(directory)) {
        return fake.fail(FakePlatform::notFound);
    }
    for (const auto& [path, size] : fake.files) {
        addName(directory, path, EntryKind::file, entries);
    }
    for (const auto& path : fake.directories) {
        addName(directory, path, EntryKind::directory, entries);
    }
    return true;
}

/// The folders exist as soon as somebody asks for them.
std::optional<std::string> folderOf(platform::Folder folder)
{
    const std::string path = folder == platform::Folder::documents ? "C:\\fake\\documents" : "C:\\fake\\data";
    fakePlatform().directories.insert("C:\\fake");
    fakePlatform().directories.insert(path);
    return path;
}

/// The blind cut: the line end of the system has two bytes, so it is taken for granted.
std::size_t blindLineEnd(std::string_view output)
{
    return output.size() >= 2 ? 2 : 0;
}

template <typename Container>
bool removeEntry(Container& entries, const std::string& path)
{
    return entries.erase(path) == 1 || fakePlatform().fail(FakePlatform::notFound);
}

} // namespace

FakePlatform::FakePlatform()
    : errorTexts{{0, "All well"}, {notFound, "Not found"}, {accessDenied, "Denied"}, {alreadyExists, "Taken"}},
      nativePath([](const std::string& path) { return path; }), isHoldable([](std::string_view) { return true; }),
      workingDirectory([] {
          return platform::WorkingDirectory{"C:\\lab\\dir", true};
      }),
      directories{"C:"}, entryKind(kindOf), isWritable([](const std::string& path) {
          return kindOf(path) != EntryKind::missing || fakePlatform().fail(notFound);
      }),
      removeFile([](const std::string& path) { return removeEntry(fakePlatform().files, path); }),
      removeDirectory([](const std::string& path) { return removeEntry(fakePlatform().directories, path); }),
      makeDirectory(makeEntry), moveFile(moveEntry),
      isSameFile([](const std::string& a, const std::string& b) { return a == b && kindOf(a) == EntryKind::file; }),
      fileSize(sizeOf), listDirectory(listEntries), userFolder(folderOf), programPath("C:\\fake\\bin\\tool"),
      userName("user"), hostName("host"), addresses([](const std::string&) { return std::vector<std::uint32_t>{}; }),
      osName("Fake 1.0 Build #1"), lineEndLength(blindLineEnd)
{
}

bool FakePlatform::fail(unsigned long code)
{
    lastError = code;
    return false;
}

FakePlatform& fakePlatform()
{
    static FakePlatform& fake = *new FakePlatform; // the library's singletons still use it while they end
    return fake;
}

} // namespace KelvoBase::test

namespace KelvoBase::platform
{

using test::fakePlatform;

unsigned long takeLastError() noexcept
{
    return std::exchange(fakePlatform().lastError, 0);
}

std::optional<std::string> errorText(unsigned long code)
{
    const auto found = fakePlatform().errorTexts.find(code);
    return found == fakePlatform().errorTexts.end() ? std::nullopt : std::optional(found->second);
}

bool isAlreadyExists(unsigned long code) noexcept
{
    return code == test::FakePlatform::alreadyExists;
}

int currentDrive() noexcept
{
    return fakePlatform().currentDrive;
}

std::string nativePath(const std::string& path)
{
    return fakePlatform().nativePath(path);
}

bool isHoldable(std::string_view native) noexcept
{
    return fakePlatform().isHoldable(native);
}

std::optional<WorkingDirectory> workingDirectory()
{
    return fakePlatform().workingDirectory();
}

bool hasWorkingDirectory() noexcept
{
    return fakePlatform().workingDirectory().has_value();
}

EntryKind entryKind(const std::string& path)
{
    return fakePlatform().entryKind(path);
}

bool isWritable(const std::string& path)
{
    return fakePlatform().isWritable(path);
}

bool removeFile(const std::string& path)
{
    return fakePlatform().removeFile(path);
}

bool removeDirectory(const std::string& path)
{
    return fakePlatform().removeDirectory(path);
}

bool makeDirectory(const std::string& path)
{
    return fakePlatform().makeDirectory(path);
}

bool moveFile(const std::string& from, const std::string& to)
{
    return fakePlatform().moveFile(from, to);
}

bool isSameFile(const std::string& a, const std::string& b)
{
    return fakePlatform().isSameFile(a, b);
}

std::optional<unsigned long long> fileSize(const std::string& path)
{
    return fakePlatform().fileSize(path);
}

bool listDirectory(const std::string& path, std::vector<DirectoryEntry>& entries)
{
    return fakePlatform().listDirectory(path, entries);
}

std::optional<std::string> userFolder(Folder folder)
{
    return fakePlatform().userFolder(folder);
}

const char* temporaryFolder() noexcept
{
    return fakePlatform().temporaryFolder.c_str();
}

std::optional<std::string> programPath()
{
    return fakePlatform().programPath;
}

std::optional<std::string> userName()
{
    return fakePlatform().userName;
}

std::optional<std::string> hostName()
{
    return fakePlatform().hostName;
}

std::vector<std::uint32_t> addresses(const std::string& host)
{
    return fakePlatform().addresses(host);
}

std::optional<std::string> osName()
{
    return fakePlatform().osName;
}

bool startNetwork()
{
    fakePlatform().networkUsers += fakePlatform().networkStarts ? 1 : 0;
    return fakePlatform().networkStarts;
}

void stopNetwork() noexcept
{
    --fakePlatform().networkUsers;
}

Time::Mtime_t now() noexcept
{
    return fakePlatform().now;
}

void putEnvironment(char* assignment)
{
    fakePlatform().environment.push_back(assignment);
}

Module loadLibrary(const std::string& path)
{
    test::FakePlatform& fake = fakePlatform();
    if (!fake.libraries.contains(path)) {
        fake.fail(test::FakePlatform::notFound);
        return 0;
    }
    fake.modules[++fake.lastModule] = path;
    return fake.lastModule;
}

void* findSymbol(Module module, const std::string& symbol)
{
    test::FakePlatform& fake = fakePlatform();
    const auto loaded = fake.modules.find(module);
    if (loaded == fake.modules.end() || !fake.libraries[loaded->second].contains(symbol)) {
        fake.fail(test::FakePlatform::notFound);
        return nullptr;
    }
    return fake.libraries[loaded->second][symbol];
}

bool freeLibrary(Module module)
{
    test::FakePlatform& fake = fakePlatform();
    const auto loaded = fake.modules.find(module);
    if (loaded == fake.modules.end()) {
        return fake.fail(test::FakePlatform::notFound);
    }
    fake.freedLibraries.push_back(loaded->second);
    fake.modules.erase(loaded);
    fake.onFree();
    return true;
}

std::optional<std::string> takeLoaderText()
{
    return std::exchange(fakePlatform().loaderText, std::nullopt);
}

std::optional<Pipe> openPipe()
{
    test::FakePlatform& fake = fakePlatform();
    if (!fake.pipeOpens) {
        fake.fail(test::FakePlatform::accessDenied);
        return std::nullopt;
    }
    const Handle readEnd = fake.open();
    return Pipe{readEnd, fake.open()};
}

void closePipeEnd(Handle end) noexcept
{
    fakePlatform().openHandles.erase(end);
}

std::size_t readPipe(Handle /*readEnd*/, char* buffer, std::size_t size)
{
    test::FakePlatform& fake = fakePlatform();
    fake.onRead();
    fake.readSizes.push_back(size);
    const std::size_t count = fake.commandOutput.copy(buffer, size);
    fake.commandOutput.erase(0, count);
    return count;
}

std::optional<Handle> startProcess(const std::string& command, Handle /*output*/)
{
    test::FakePlatform& fake = fakePlatform();
    const auto found = fake.commands.find(command);
    if (found == fake.commands.end()) {
        fake.lastError = fake.startError.value_or(fake.lastError);
        return std::nullopt;
    }
    fake.commandOutput = found->second.output;
    fake.commandExitCode = found->second.exitCode;
    return fake.open();
}

std::optional<int> exitCode(Handle /*process*/)
{
    test::FakePlatform& fake = fakePlatform();
    if (!fake.commandExitCode) {
        fake.fail(test::FakePlatform::accessDenied);
    }
    return fake.commandExitCode;
}

void closeProcess(Handle process) noexcept
{
    fakePlatform().openHandles.erase(process);
}

std::size_t lineEndLength(std::string_view output) noexcept
{
    return fakePlatform().lineEndLength(output);
}

} // namespace KelvoBase::platform
