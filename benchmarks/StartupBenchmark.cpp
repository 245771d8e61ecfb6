/// \file
/// Whole processes, `program --version` each, started in turn; the medians of many rounds and their ratios to the
/// plain stream program. Rounds are interleaved, so that a change of the machine's mood hits all alike.

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

struct Program
{
    std::string path;
    std::vector<double> microseconds;
};

double timeOnce(const std::string& path, posix_spawn_file_actions_t& actions)
{
    std::string name = path;
    std::string argument = "--version";
    char* arguments[] = {name.data(), argument.data(), nullptr};
    const auto begin = std::chrono::steady_clock::now();
    pid_t child = 0;
    int state = 0;
    if (posix_spawn(&child, path.c_str(), &actions, nullptr, arguments, environ) != 0 ||
        waitpid(child, &state, 0) != child || state != 0) {
        std::fprintf(stderr, "%s does not run\n", path.c_str());
        std::exit(1);
    }
    const auto end = std::chrono::steady_clock::now();
    return std::chrono::duration<double, std::micro>(end - begin).count();
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 400;
    const std::filesystem::path folder = std::filesystem::path(argv[0]).parent_path() / "startup";
    std::vector<Program> programs;
    for (const char* name : {"streams", "kelvobase", "kelvobase-static", "cli11", "cxxopts", "boost-program-options",
                             "glib", "poco", "xerces", "kelvobase-xml"}) {
        if (std::filesystem::exists(folder / name)) {
            programs.push_back({(folder / name).string(), {}});
        }
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    for (int round = 0; round < rounds; ++round) {
        for (Program& program : programs) {
            program.microseconds.push_back(timeOnce(program.path, actions));
        }
    }
    posix_spawn_file_actions_destroy(&actions);
    const double yardstick = median(programs.front().microseconds);
    for (const Program& program : programs) {
        const double time = median(program.microseconds);
        std::printf("%-24s %9.1f us  %5.2f\n", std::filesystem::path(program.path).filename().c_str(), time,
                    time / yardstick);
    }
    return 0;
}
