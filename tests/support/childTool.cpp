/// \file
/// Shows what a child process was given: each argument on a line, a variable, as many lines as another variable says,
/// the working directory and all of standard input; complains on standard error and ends with status 42.

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <string>

int main(int argc, char* argv[])
{
    for (int i = 1; i < argc; ++i) {
        std::cout << "argument '" << argv[i] << "'\n";
    }
    const char* variable = std::getenv("KELVOBASE_CHILD_TEST");
    std::cout << "variable " << (variable == nullptr ? "(none)" : variable) << '\n';
    const char* lines = std::getenv("KELVOBASE_CHILD_LINES");
    for (int i = lines == nullptr ? 0 : std::atoi(lines); i > 0; --i) {
        std::cout << "one of many lines\n";
    }
    std::cout << "directory " << std::filesystem::current_path().string() << '\n';
    std::cout << "input '" << std::string(std::istreambuf_iterator<char>(std::cin), {}) << "'\n";
    std::cerr << "complaint\n";
    return 42;
}
