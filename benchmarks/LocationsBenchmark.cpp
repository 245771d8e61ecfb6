/// \file
/// Locations: parsing, appending, listing, beside the same components built by hand and POCO's path.

#include <kelvobase/ResourceLocation.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef HAVE_POCO
#include <Poco/Path.h>
#include <Poco/URI.h>
#endif

namespace
{

const std::string absolutePath = "/usr/share/kelvobase/series/2026/measurement.txt";
const std::string relativePath = "share/kelvobase/series/2026/measurement.txt";
const std::string url = "ftp://user%secret@host.example.org:8080/pub/series/2026/measurement.txt";

void prove(bool right)
{
    if (!right) {
        throw std::logic_error("wrong result");
    }
}

std::vector<std::string> byHand(const std::string& path)
{
    std::vector<std::string> components;
    std::size_t begin = 0;
    while (begin <= path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        components.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return components;
}

void absoluteKelvoBase(benchmark::State& state)
{
    for (auto _ : state) {
        const KelvoBase::ResourceLocation location(absolutePath);
        benchmark::DoNotOptimize(location.getPath('\\', true));
    }
}
BENCHMARK(absoluteKelvoBase);

void absoluteByHand(benchmark::State& state)
{
    for (auto _ : state) {
        // the working directory must exist, and the text of the path is made, as for a location
        std::filesystem::path here = std::filesystem::current_path();
        benchmark::DoNotOptimize(here);
        std::string text;
        for (const std::string& component : byHand(absolutePath)) {
            text += '\\';
            text += component;
        }
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(absoluteByHand);

void relativeKelvoBase(benchmark::State& state)
{
    for (auto _ : state) {
        const KelvoBase::ResourceLocation location(relativePath);
        benchmark::DoNotOptimize(location);
    }
}
BENCHMARK(relativeKelvoBase);

void relativeByHand(benchmark::State& state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(byHand(relativePath));
    }
}
BENCHMARK(relativeByHand);

void urlKelvoBase(benchmark::State& state)
{
    for (auto _ : state) {
        const KelvoBase::ResourceLocation location(url);
        benchmark::DoNotOptimize(location);
    }
}
BENCHMARK(urlKelvoBase);

void appendKelvoBase(benchmark::State& state)
{
    const KelvoBase::ResourceLocation base(relativePath);
    for (auto _ : state) {
        KelvoBase::ResourceLocation location(base);
        location.append("one/more/name");
        benchmark::DoNotOptimize(location);
    }
}
BENCHMARK(appendKelvoBase);

/// 10,000 files in 100 folders.
void listKelvoBase(benchmark::State& state)
{
    const std::filesystem::path root = "LocationsBenchmark.tree";
    for (int folder = 0; folder < 100; ++folder) {
        const auto path = root / ("folder" + std::to_string(folder));
        std::filesystem::create_directories(path);
        for (int file = 0; file < 100; ++file) {
            std::ofstream(path / ("file" + std::to_string(file)));
        }
    }
    for (auto _ : state) {
        prove(KelvoBase::getFilesRecursively(KelvoBase::ResourceLocation(root.string())).size() == 10000);
    }
    std::filesystem::remove_all(root);
}
BENCHMARK(listKelvoBase)->Unit(benchmark::kMillisecond);

#ifdef HAVE_POCO
void absolutePoco(benchmark::State& state)
{
    for (auto _ : state) {
        const Poco::Path path(absolutePath);
        benchmark::DoNotOptimize(path.toString());
    }
}
BENCHMARK(absolutePoco);

void relativePoco(benchmark::State& state)
{
    for (auto _ : state) {
        const Poco::Path path(relativePath);
        benchmark::DoNotOptimize(path);
    }
}
BENCHMARK(relativePoco);

void urlPoco(benchmark::State& state)
{
    for (auto _ : state) {
        const Poco::URI uri(url);
        benchmark::DoNotOptimize(uri);
    }
}
BENCHMARK(urlPoco);

void appendPoco(benchmark::State& state)
{
    const Poco::Path base(relativePath);
    for (auto _ : state) {
        Poco::Path path(base);
        path.append("one/more/name");
        benchmark::DoNotOptimize(path);
    }
}
BENCHMARK(appendPoco);
#endif

} // namespace

BENCHMARK_MAIN();
