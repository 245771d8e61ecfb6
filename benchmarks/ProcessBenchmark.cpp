/// \file
/// A child process from its start to its exit code: one that does next to nothing, and one that writes 7 MB, which are
/// kept. Peers: posix_spawn with a pipe, written by hand with the same reading block, and popen, which has a shell
/// start the program.

#include <kelvobase/System.h>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace
{

struct Result
{
    int code;
    std::string output;
};

Result byLibrary(const std::string& program, const std::string& argument)
{
    Result result{-1, {}};
    result.code = KelvoBase::System::instance().execute(program + " " + argument, result.output);
    return result;
}

void readAll(int from, std::string& output)
{
    char block[4096];
    for (ssize_t count = 0; (count = read(from, block, sizeof block)) > 0;) {
        output.append(block, static_cast<std::size_t>(count));
    }
}

Result byHand(const std::string& program, const std::string& argument)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 2);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    std::string words[] = {program, argument};
    char* const arguments[] = {words[0].data(), argument.empty() ? nullptr : words[1].data(), nullptr};
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[0], &actions, nullptr, arguments, environ) != 0) {
        throw std::runtime_error("no process");
    }
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    Result result{-1, {}};
    readAll(ends[0], result.output);
    int status = 0;
    waitpid(child, &status, 0);
    close(ends[0]);
    result.code = WEXITSTATUS(status);
    return result;
}

Result byPopen(const std::string& program, const std::string& argument)
{
    std::FILE* const pipe = popen((program + " " + argument + " 2>&1 </dev/null").c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("no process");
    }
    Result result{-1, {}};
    readAll(fileno(pipe), result.output);
    result.code = WEXITSTATUS(pclose(pipe));
    return result;
}

/// A file of 7 MB without a line end at its end.
class File
{
public:
    File() : mPath(std::filesystem::temp_directory_path() / ("kelvobase-benchmark-" + std::to_string(getpid())))
    {
        for (unsigned int i = 0; content.size() < 7'000'000; ++i) {
            content += std::to_string(i);
        }
        std::ofstream(mPath) << content;
    }
    ~File() { std::filesystem::remove(mPath); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::string path() const { return mPath.string(); }
    std::string content;

private:
    std::filesystem::path mPath;
};

const File& bigFile()
{
    static const File file;
    return file;
}

using Run = Result (*)(const std::string&, const std::string&);

void prove(bool right)
{
    if (!right) {
        throw std::logic_error("wrong result");
    }
}

template <Run run>
void startAndEnd(benchmark::State& state)
{
    prove(run("/bin/false", "").code == 1 && run("echo", "text").output.substr(0, 4) == "text");
    for (auto _ : state) {
        benchmark::DoNotOptimize(run("/bin/true", ""));
    }
}

template <Run run>
void capture(benchmark::State& state)
{
    const File& file = bigFile();
    const Result result = run("/bin/cat", file.path());
    prove(result.code == 0 && result.output == file.content);
    for (auto _ : state) {
        benchmark::DoNotOptimize(run("/bin/cat", file.path()));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(file.content.size()));
}

} // namespace

BENCHMARK(startAndEnd<byLibrary>)->UseRealTime();
BENCHMARK(startAndEnd<byHand>)->UseRealTime();
BENCHMARK(startAndEnd<byPopen>)->UseRealTime();
BENCHMARK(capture<byLibrary>)->UseRealTime();
BENCHMARK(capture<byHand>)->UseRealTime();
BENCHMARK(capture<byPopen>)->UseRealTime();

BENCHMARK_MAIN();
