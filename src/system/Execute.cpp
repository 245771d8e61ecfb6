#include "platform/Platform.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <array>
#include <optional>

namespace KelvoBase
{

namespace
{

constexpr const char* noPipe = "Error while creating pipe for child process";
constexpr const char* notStarted = "Can't create process: (";
constexpr const char* noExitCode = "Could not get exit code from process: (";
// Required: no blank behind the colon. Tools take the system's text off behind "):".
constexpr const char* textFollows = "):";

[[noreturn]] void throwSystemFailure(const char* what, unsigned long code)
{
    throw OperationFailedException(what + std::to_string(code) + textFollows + System::errorMsg(code));
}

class PipeEnd
{
public:
    explicit PipeEnd(platform::Handle end) : mEnd(end) {}
    ~PipeEnd() { close(); }
    PipeEnd(const PipeEnd&) = delete;
    PipeEnd& operator=(const PipeEnd&) = delete;

    platform::Handle get() const { return *mEnd; }
    void leaveOpen() { mEnd.reset(); }
    void close()
    {
        if (mEnd) {
            platform::closePipeEnd(*mEnd);
            mEnd.reset();
        }
    }

private:
    std::optional<platform::Handle> mEnd;
};

class ChildProcess
{
public:
    explicit ChildProcess(platform::Handle process) : mProcess(process) {}
    ~ChildProcess() { platform::closeProcess(mProcess); }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    std::optional<int> exitCode() const { return platform::exitCode(mProcess); }

private:
    platform::Handle mProcess;
};

void readAll(const PipeEnd& reader, std::string& output)
{
    std::array<char, 4096> buffer; // not cleared: a child may fill it thousands of times
    while (const std::size_t count = platform::readPipe(reader.get(), buffer.data(), buffer.size())) {
        output.append(buffer.data(), count);
    }
}

} // namespace

int System::execute(const std::string& command, std::string& output) const
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): `output` may be the command itself
    const std::string line = command;
    output.clear();
    const std::optional<platform::Pipe> pipe = platform::openPipe();
    if (!pipe) {
        throw OperationFailedException(noPipe);
    }
    PipeEnd reader(pipe->readEnd);
    PipeEnd writer(pipe->writeEnd);
    lastError();
    const std::optional<platform::Handle> process = platform::startProcess(line, writer.get());
    if (!process) {
        const unsigned long code = lastError();
        // Required: the pipe is left open. Closing it would be the obvious thing, and numbers of descriptors
        // that come later would be others.
        reader.leaveOpen();
        writer.leaveOpen();
        throwSystemFailure(notStarted, code);
    }
    const ChildProcess child(*process);
    writer.close(); // or the pipe would never end
    readAll(reader, output);
    // Required: no waiting for the end of the process. It would hold up a tool that starts something which is
    // meant to stay.
    const std::optional<int> code = child.exitCode();
    const unsigned long error = lastError();
    if (!code) {
        throwSystemFailure(noExitCode, error);
    }
    // Required: one line end, or what the platform takes for it. Trimming would eat the blanks and empty lines
    // that a command wrote.
    output.resize(output.size() - platform::lineEndLength(output));
    return *code;
}

} // namespace KelvoBase
