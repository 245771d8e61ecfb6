#include "platform/Platform.h"
#include "platform/posix/PosixCommand.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>

namespace KelvoBase::platform
{

namespace
{

constexpr const char* nothing = "/dev/null";

// A child closes its output a little earlier than it can be waited for, and longer where many processes want to run.
constexpr std::chrono::milliseconds grace(250);
constexpr std::chrono::milliseconds nap(1);

/// The children whose end nobody has seen yet.
std::vector<pid_t>& children()
{
    static std::vector<pid_t>& all = *new std::vector<pid_t>; // tools may run commands while the process ends
    return all;
}

/// Takes note of the end of a child: its number, 0 if it runs on, -1 if that is no child of this process.
pid_t reap(pid_t child, int& status)
{
    for (;;) {
        const pid_t ended = ::waitpid(child, &status, WNOHANG);
        if (ended >= 0 || errno != EINTR) {
            return ended;
        }
    }
}

void reapOthers()
{
    std::erase_if(children(), [](pid_t child) {
        int status = 0;
        return reap(child, status) != 0;
    });
}

/// Tells when a child ends, where the system has descriptors of processes.
class Watch
{
public:
    explicit Watch(pid_t child) : mDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, child, 0))) {}
    ~Watch()
    {
        if (mDescriptor >= 0) {
            ::close(mDescriptor);
        }
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// Returns when the child has ended or the time is over, or earlier.
    void wait(std::chrono::milliseconds time) const
    {
        pollfd descriptor{mDescriptor, POLLIN, 0};
        const bool works = mDescriptor >= 0;
        ::poll(&descriptor, works ? 1 : 0, static_cast<int>((works ? time : nap).count()));
    }

private:
    int mDescriptor; // not inherited by children
};

/// As `reap`, but waits for the end of a child that is about to end.
pid_t reapEnding(pid_t child, int& status)
{
    pid_t ended = reap(child, status);
    if (ended != 0) {
        return ended;
    }
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + grace;
    const Watch watch(child);
    for (auto left = grace; ended == 0 && left.count() > 0;
         left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now())) {
        watch.wait(left);
        ended = reap(child, status);
    }
    return ended;
}

/// What a child does before it becomes the program.
class Preparation
{
public:
    explicit Preparation(int output)
    {
        ::posix_spawn_file_actions_init(&mActions);
        ::posix_spawnattr_init(&mAttributes);
        connect(output);
        resetSignals();
    }
    ~Preparation()
    {
        ::posix_spawnattr_destroy(&mAttributes);
        ::posix_spawn_file_actions_destroy(&mActions);
    }
    Preparation(const Preparation&) = delete;
    Preparation& operator=(const Preparation&) = delete;

    int failure() const { return mFailure; }
    const posix_spawn_file_actions_t* actions() const { return &mActions; }
    const posix_spawnattr_t* attributes() const { return &mAttributes; }

private:
    void check(int failure)
    {
        if (mFailure == 0) {
            mFailure = failure;
        }
    }

    void connect(int output)
    {
        // Input last: in a process without standard streams the output may have its number.
        check(::posix_spawn_file_actions_adddup2(&mActions, output, STDOUT_FILENO));
        check(::posix_spawn_file_actions_adddup2(&mActions, output, STDERR_FILENO));
        check(::posix_spawn_file_actions_addopen(&mActions, STDIN_FILENO, nothing, O_RDONLY, 0));
    }

    /// Programs count on SIGPIPE to end and on SIGCHLD to wait, and on signals that reach them. What else is ignored
    /// stays so, or a run under nohup would not survive in its children.
    void resetSignals()
    {
        sigset_t none;
        sigset_t defaults;
        ::sigemptyset(&none);
        ::sigemptyset(&defaults);
        ::sigaddset(&defaults, SIGPIPE);
        ::sigaddset(&defaults, SIGCHLD);
        check(::posix_spawnattr_setsigmask(&mAttributes, &none));
        check(::posix_spawnattr_setsigdefault(&mAttributes, &defaults));
        check(::posix_spawnattr_setflags(&mAttributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    }

    posix_spawn_file_actions_t mActions{};
    posix_spawnattr_t mAttributes{};
    int mFailure = 0;
};

int spawn(std::vector<std::string>& words, int output, pid_t& child)
{
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const Preparation preparation(output);
    if (preparation.failure() != 0) {
        return preparation.failure();
    }
    return ::posix_spawnp(&child, arguments[0], preparation.actions(), preparation.attributes(), arguments.data(),
                          ::environ);
}

} // namespace

std::optional<Pipe> openPipe()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    return Pipe{ends[0], ends[1]};
}

void closePipeEnd(Handle end) noexcept
{
    ::close(static_cast<int>(end));
}

std::size_t readPipe(Handle readEnd, char* buffer, std::size_t size)
{
    for (;;) {
        const ssize_t count = ::read(static_cast<int>(readEnd), buffer, size);
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR) {
            return 0;
        }
    }
}

std::optional<Handle> startProcess(const std::string& command, Handle output)
{
    std::optional<std::vector<std::string>> words = posix::wordsOf(command);
    if (!words) {
        errno = EINVAL;
        return std::nullopt;
    }
    reapOthers();
    children().reserve(children().size() + 1); // a child that runs must not be lost for want of memory
    pid_t child = 0;
    if (const int failure = spawn(*words, static_cast<int>(output), child); failure != 0) {
        errno = failure; // this call returns its error instead of storing it
        return std::nullopt;
    }
    children().push_back(child);
    return child;
}

std::optional<int> exitCode(Handle process)
{
    const auto child = static_cast<pid_t>(process);
    int status = 0;
    const pid_t ended = reapEnding(child, status);
    if (ended == 0) {
        return stillRunning;
    }
    std::erase(children(), child);
    if (ended < 0) {
        errno = ECHILD;
        return std::nullopt;
    }
    constexpr int signalled = 128; // as shells report it
    return WIFSIGNALED(status) ? signalled + WTERMSIG(status) : WEXITSTATUS(status);
}

void closeProcess(Handle /*process*/) noexcept {} // `children` has it as long as it runs

std::size_t lineEndLength(std::string_view output) noexcept
{
    if (output.ends_with("\r\n")) {
        return 2;
    }
    return output.ends_with('\n') ? 1 : 0;
}

} // namespace KelvoBase::platform
