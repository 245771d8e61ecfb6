// A library to load: a function, an object, and a line in the file KELVOBASE_MODULE_LOG when it comes and goes.

#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#define MODULE_API extern "C" __declspec(dllexport)
#else
#define MODULE_API extern "C" __attribute__((visibility("default")))
#endif

namespace
{

void note(const char* what)
{
    const char* const path = std::getenv("KELVOBASE_MODULE_LOG");
    std::FILE* const file = path == nullptr ? nullptr : std::fopen(path, "ab");
    if (file != nullptr) {
        std::fputs(what, file);
        std::fclose(file);
    }
}

struct Lifetime
{
    Lifetime() { note("loaded\n"); }
    ~Lifetime() { note("released\n"); }
};

const Lifetime lifetime;

} // namespace

MODULE_API int solverCalls;
MODULE_API int solverAnswer();

int solverCalls = 0;

int solverAnswer()
{
    ++solverCalls;
    return 42;
}
