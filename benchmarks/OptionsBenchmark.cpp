/// \file
/// Define n options with an integer value, parse a command line that gives all of them, read all values back.

#include <kelvobase/Application.h>
#include <kelvobase/Globals.h>

#include <benchmark/benchmark.h>

#include <getopt.h>

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef HAVE_CLI11
#include <CLI/CLI.hpp>
#endif
#ifdef HAVE_CXXOPTS
#include <cxxopts.hpp>
#endif
#ifdef HAVE_GLIB
#include <glib.h>
#endif

namespace
{

/// `program --option0=0 --option1=1 ...`
class CommandLine
{
public:
    explicit CommandLine(int n)
    {
        words.push_back("program");
        for (int i = 0; i < n; ++i) {
            names.push_back("option" + std::to_string(i));
            words.push_back("--" + names.back() + "=" + std::to_string(i));
        }
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
    }
    int argc() const { return static_cast<int>(words.size()); }
    static void prove(benchmark::State& state, long sum)
    {
        const long n = state.range(0);
        if (sum != n * (n - 1) / 2) {
            throw std::logic_error("wrong sum of the values read");
        }
    }
    std::vector<std::string> names;
    std::vector<std::string> words;
    std::vector<char*> arguments;
};

class Tool : public KelvoBase::Application
{
public:
    explicit Tool(const CommandLine& line) : Application("tool", 1.0, "Measured", "Reads options."), mLine(line)
    {
        for (const std::string& name : line.names) {
            defineOption(name, 0, false).setHelp("a number").setArg("number", new KelvoBase::ScalarAny<int>(-1));
        }
    }
    void postParseInit() override {}
    int runMain() override
    {
        for (const std::string& name : mLine.names) {
            sum += findOption(name)->getValue()->toInt();
        }
        return 0;
    }
    long sum = 0;

private:
    const CommandLine& mLine;
};

void kelvoBase(benchmark::State& state)
{
    KelvoBase::haveCerr = false;
    CommandLine line(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Tool tool(line);
        tool.mainImpl(line.argc(), line.arguments.data());
        CommandLine::prove(state, tool.sum);
    }
}
BENCHMARK(kelvoBase)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

void getoptLong(benchmark::State& state)
{
    CommandLine line(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::vector<char*> arguments = line.arguments; // getopt may permute
        std::vector<option> options;
        for (const std::string& name : line.names) {
            options.push_back({name.c_str(), required_argument, nullptr, 1});
        }
        options.push_back({nullptr, 0, nullptr, 0});
        std::vector<int> values(line.names.size(), -1);
        optind = 0;
        int index = 0;
        while (getopt_long(line.argc(), arguments.data(), "", options.data(), &index) == 1) {
            values[static_cast<std::size_t>(index)] = std::atoi(optarg);
        }
        long sum = 0;
        for (int value : values) {
            sum += value;
        }
        CommandLine::prove(state, sum);
    }
}
BENCHMARK(getoptLong)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

#ifdef HAVE_GLIB
void glib(benchmark::State& state)
{
    CommandLine line(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::vector<char*> arguments = line.arguments;
        char** argv = arguments.data();
        int argc = line.argc();
        std::vector<int> values(line.names.size(), -1);
        std::vector<GOptionEntry> entries;
        for (std::size_t i = 0; i < values.size(); ++i) {
            entries.push_back({line.names[i].c_str(), 0, 0, G_OPTION_ARG_INT, &values[i], "a number", "number"});
        }
        entries.push_back({nullptr, 0, 0, G_OPTION_ARG_NONE, nullptr, nullptr, nullptr});
        GOptionContext* context = g_option_context_new("");
        g_option_context_add_main_entries(context, entries.data(), nullptr);
        g_option_context_parse(context, &argc, &argv, nullptr);
        g_option_context_free(context);
        long sum = 0;
        for (int value : values) {
            sum += value;
        }
        CommandLine::prove(state, sum);
    }
}
BENCHMARK(glib)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
#endif

#ifdef HAVE_CXXOPTS
void cxxoptsLibrary(benchmark::State& state)
{
    CommandLine line(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        cxxopts::Options options("program", "Reads options.");
        for (const std::string& name : line.names) {
            options.add_options()(name, "a number", cxxopts::value<int>()->default_value("-1"));
        }
        const auto result = options.parse(line.argc(), line.arguments.data());
        long sum = 0;
        for (const std::string& name : line.names) {
            sum += result[name].as<int>();
        }
        CommandLine::prove(state, sum);
    }
}
BENCHMARK(cxxoptsLibrary)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
#endif

#ifdef HAVE_CLI11
void cli11(benchmark::State& state)
{
    CommandLine line(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CLI::App app("Reads options.");
        std::vector<int> values(line.names.size(), -1);
        for (std::size_t i = 0; i < values.size(); ++i) {
            app.add_option("--" + line.names[i], values[i], "a number");
        }
        app.parse(line.argc(), line.arguments.data());
        long sum = 0;
        for (int value : values) {
            sum += value;
        }
        CommandLine::prove(state, sum);
    }
}
BENCHMARK(cli11)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
#endif

} // namespace

BENCHMARK_MAIN();
