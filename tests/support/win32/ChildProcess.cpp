#include "support/ChildProcess.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <string_view>
#include <thread>

namespace KelvoBase::test
{

namespace
{

class Handle
{
public:
    Handle() = default;
    explicit Handle(HANDLE handle) : mHandle(handle) {}
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    void close()
    {
        if (isValid()) {
            CloseHandle(mHandle);
            mHandle = nullptr;
        }
    }
    bool isValid() const { return mHandle != nullptr && mHandle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return mHandle; }
    HANDLE* place() { return &mHandle; }

private:
    HANDLE mHandle = nullptr;
};

struct Pipe
{
    Handle readEnd;
    Handle writeEnd;
    bool isValid = false;

    Pipe() { isValid = CreatePipe(readEnd.place(), writeEnd.place(), nullptr, 0) != 0; }
    static void inherit(const Handle& end)
    {
        SetHandleInformation(end.get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    }
};

/// One word of a command line, so that the run-time of the child takes it for one argument. Backslashes count as
/// escapes in front of a double quote only.
std::string quoted(const std::string& word)
{
    std::string text = "\"";
    std::size_t backslashes = 0;
    for (const char c : word) {
        if (c == '"') {
            text.append(backslashes + 1, '\\');
        }
        backslashes = c == '\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, '\\') + '"';
}

std::string commandLine(const std::vector<std::string>& command)
{
    std::string line;
    for (const std::string& word : command) {
        line += (line.empty() ? "" : " ") + quoted(word);
    }
    return line;
}

/// Whether a text NAME=VALUE assigns to a variable; the case of its name does not matter.
bool assignsTo(std::string_view assignment, std::string_view name)
{
    const auto isSame = [](unsigned char a, unsigned char b) { return std::toupper(a) == std::toupper(b); };
    return assignment.size() > name.size() && assignment[name.size()] == '=' &&
           std::equal(name.begin(), name.end(), assignment.begin(), isSame);
}

std::vector<std::string> ownEnvironment()
{
    std::vector<std::string> assignments;
    char* const block = GetEnvironmentStringsA();
    for (const char* text = block; *text != '\0'; text += assignments.back().size() + 1) {
        assignments.emplace_back(text);
    }
    FreeEnvironmentStringsA(block);
    return assignments;
}

std::string ownPath()
{
    const char* const path = std::getenv("PATH");
    return path == nullptr ? "" : path;
}

/// The folders of DLLs stand in this process's own path, so that stays behind the one of a child.
std::string pathFor(const ChildOptions& options)
{
    for (const auto& [name, value] : options.environment) {
        if (name == "PATH") {
            return value + ";" + ownPath();
        }
    }
    return ownPath();
}

/// A program without a folder is searched for on the path that it will have; nothing in a text where that is not
/// needed.
std::string found(const std::string& program, const ChildOptions& options)
{
    std::array<char, MAX_PATH> file{};
    if (program.find_first_of("/\\") == std::string::npos) {
        SearchPathA(pathFor(options).c_str(), program.c_str(), ".exe", static_cast<DWORD>(file.size()), file.data(),
                    nullptr);
    }
    return file.data();
}

std::string environmentFor(const ChildOptions& options)
{
    std::vector<std::string> assignments = ownEnvironment();
    const auto remove = [&assignments](const std::string& name) {
        std::erase_if(assignments, [&name](const std::string& assignment) { return assignsTo(assignment, name); });
    };
    std::for_each(options.unset.begin(), options.unset.end(), remove);
    for (const auto& [name, value] : options.environment) {
        remove(name);
        assignments.push_back(name + "=" + (name == "PATH" ? pathFor(options) : value));
    }
    std::string block;
    for (const std::string& assignment : assignments) {
        block += assignment + '\0';
    }
    return block;
}

/// The process, or an invalid handle.
HANDLE start(const std::vector<std::string>& command, const ChildOptions& options, HANDLE in, HANDLE out, HANDLE err)
{
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in;
    startup.hStdOutput = out;
    startup.hStdError = err;
    std::string line = commandLine(command);
    std::string environment = environmentFor(options);
    const std::string program = found(command[0], options);
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(
            program.empty() ? nullptr : program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, environment.data(),
            options.workingDirectory.empty() ? nullptr : options.workingDirectory.c_str(), &startup, &process)) {
        return nullptr;
    }
    CloseHandle(process.hThread);
    return process.hProcess;
}

/// Everything that comes out of a pipe. The run-time of a child writes a line end as two characters, which is undone.
void collect(const Handle& end, std::string& text)
{
    std::array<char, 4096> block{};
    DWORD count = 0;
    while (ReadFile(end.get(), block.data(), static_cast<DWORD>(block.size()), &count, nullptr) && count > 0) {
        text.append(block.data(), count);
    }
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos; ++at) {
        text.erase(at, 1);
    }
}

void feed(Pipe& in, const std::string& input)
{
    DWORD count = 0;
    WriteFile(in.writeEnd.get(), input.data(), static_cast<DWORD>(input.size()), &count, nullptr);
    in.writeEnd.close();
}

} // namespace

ChildResult runChild(const std::vector<std::string>& command, const ChildOptions& options)
{
    ChildResult result{-1, {}, {}};
    Pipe in;
    Pipe out;
    Pipe err;
    const Handle nothing(
        CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!in.isValid || !out.isValid || !err.isValid || !nothing.isValid()) {
        return result;
    }
    const Handle& input = options.input.empty() ? nothing : in.readEnd;
    Pipe::inherit(input);
    Pipe::inherit(out.writeEnd);
    Pipe::inherit(err.writeEnd);
    const Handle process(start(command, options, input.get(), out.writeEnd.get(), err.writeEnd.get()));
    in.readEnd.close();
    out.writeEnd.close();
    err.writeEnd.close();
    if (!process.isValid()) {
        return result;
    }
    std::thread errors([&err, &result] { collect(err.readEnd, result.err); });
    feed(in, options.input);
    collect(out.readEnd, result.out);
    errors.join();
    WaitForSingleObject(process.get(), INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(process.get(), &status);
    result.status = static_cast<int>(status);
    return result;
}

} // namespace KelvoBase::test
