/// \file
/// A command that does what its arguments say, one after the other:
///
///     out=TEXT err=TEXT   writes a text to one of the streams
///     lf cr nul           writes that byte to standard output
///     digits=N            writes N bytes of digits to standard output
///     input               says how much there is on standard input
///     arg=TEXT            writes the text in brackets
///     line=TEXT           writes the text and a line end as the run-time does it
///     close               closes both streams
///     sleep=N             waits N milliseconds
///     exit=N              ends with that status; at the end of the arguments it is 0

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

namespace
{

/// Whether bytes leave as they are; some systems translate line ends otherwise.
void setBinary(bool binary)
{
#ifdef _WIN32
    _setmode(_fileno(stdout), binary ? _O_BINARY : _O_TEXT);
#else
    static_cast<void>(binary);
#endif
}

void write(std::FILE* stream, const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

std::string digits(std::size_t count)
{
    std::string text;
    for (unsigned int i = 0; text.size() < count; ++i) {
        text += std::to_string(i);
    }
    text.resize(count);
    return text;
}

std::string inputSize()
{
    std::size_t size = 0;
    while (std::getchar() != EOF) {
        ++size;
    }
    return std::to_string(size);
}

void step(const std::string& word, const std::string& value)
{
    if (word == "out") {
        write(stdout, value);
    } else if (word == "err") {
        write(stderr, value);
    } else if (word == "lf") {
        write(stdout, "\n");
    } else if (word == "cr") {
        write(stdout, "\r");
    } else if (word == "nul") {
        write(stdout, std::string(1, '\0'));
    } else if (word == "digits") {
        write(stdout, digits(std::strtoul(value.c_str(), nullptr, 10)));
    } else if (word == "input") {
        write(stdout, inputSize());
    } else if (word == "arg") {
        write(stdout, "[" + value + "]");
    } else if (word == "line") {
        setBinary(false);
        write(stdout, value + "\n");
        setBinary(true);
    } else if (word == "close") {
        std::fclose(stdout);
        std::fclose(stderr);
    } else if (word == "sleep") {
        std::this_thread::sleep_for(std::chrono::milliseconds(std::strtol(value.c_str(), nullptr, 10)));
    } else if (word == "exit") {
        std::exit(static_cast<int>(std::strtol(value.c_str(), nullptr, 10)));
    }
}

} // namespace

int main(int argc, char* argv[])
{
    setBinary(true);
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const std::string::size_type equals = argument.find('=');
        step(argument.substr(0, equals), equals == std::string::npos ? "" : argument.substr(equals + 1));
    }
    return 0;
}
