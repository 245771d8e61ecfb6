#include "support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace KelvoBase::test
{

namespace
{

struct Pipe
{
    std::array<int, 2> end{-1, -1};
    Pipe() { valid = pipe2(end.data(), O_CLOEXEC) == 0; }
    ~Pipe()
    {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    void closeEnd(std::size_t which)
    {
        if (end[which] >= 0) {
            close(end[which]);
            end[which] = -1;
        }
    }
    bool valid = false;
};

[[noreturn]] void become(const std::vector<std::string>& command, const ChildOptions& options, const Pipe& in,
                         const Pipe& out, const Pipe& err)
{
    if (options.input.empty()) {
        dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    } else {
        dup2(in.end[0], STDIN_FILENO);
    }
    dup2(out.end[1], STDOUT_FILENO);
    dup2(err.end[1], STDERR_FILENO);
    for (const auto& name : options.unset) {
        unsetenv(name.c_str());
    }
    for (const auto& [name, value] : options.environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    if (!options.workingDirectory.empty() && chdir(options.workingDirectory.c_str()) != 0) {
        _exit(127);
    }
    std::vector<char*> arguments;
    for (const auto& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

/// Inputs of tests are smaller than a pipe, so this cannot block. A child that does not want its input is no fault.
void feed(const Pipe& in, const std::string& input, ChildResult& result)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    if (write(in.end[1], input.data(), input.size()) < 0 && errno != EPIPE) {
        result.err = "input could not be written";
    }
    std::signal(SIGPIPE, before);
}

void collect(Pipe& out, Pipe& err, ChildResult& result)
{
    std::array<pollfd, 2> waiting{pollfd{out.end[0], POLLIN, 0}, pollfd{err.end[0], POLLIN, 0}};
    std::array<std::string*, 2> texts{&result.out, &result.err};
    std::size_t open = 2;
    while (open > 0) {
        if (poll(waiting.data(), waiting.size(), -1) < 0) {
            continue;
        }
        for (std::size_t i = 0; i < waiting.size(); ++i) {
            if (waiting[i].fd < 0 || waiting[i].revents == 0) {
                continue;
            }
            std::array<char, 4096> block{};
            const ssize_t n = read(waiting[i].fd, block.data(), block.size());
            if (n > 0) {
                texts[i]->append(block.data(), static_cast<std::size_t>(n));
            } else if (n == 0) {
                waiting[i].fd = -1;
                --open;
            }
        }
    }
}

} // namespace

ChildResult runChild(const std::vector<std::string>& command, const ChildOptions& options)
{
    ChildResult result{-1, {}, {}};
    Pipe in;
    Pipe out;
    Pipe err;
    if (!in.valid || !out.valid || !err.valid) {
        return result;
    }
    const pid_t child = fork();
    if (child == 0) {
        become(command, options, in, out, err);
    }
    if (child < 0) {
        return result;
    }
    in.closeEnd(0);
    out.closeEnd(1);
    err.closeEnd(1);
    if (!options.input.empty()) {
        feed(in, options.input, result);
    }
    in.closeEnd(1);
    collect(out, err, result);
    int state = 0;
    waitpid(child, &state, 0);
    result.status = WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
    return result;
}

} // namespace KelvoBase::test
