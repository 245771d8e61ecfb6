/// \file
/// One trace line of about 50 characters: suppressed (it is recorded all the same), and visible in a file.

#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>

#ifdef HAVE_SPDLOG
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>
#endif

namespace
{

constexpr const char* file = "TraceBenchmark.out";

long bytesWritten()
{
    std::ifstream in(file, std::ios::ate | std::ios::binary);
    return static_cast<long>(in.tellg());
}

void prove(bool right)
{
    std::remove(file);
    if (!right) {
        throw std::logic_error("what was written is wrong");
    }
}

void kelvoBaseSuppressed(benchmark::State& state)
{
    auto& trace = KelvoBase::TraceStream::instance();
    trace.traceto(KelvoBase::Trace::warn, file, KelvoBase::TraceArea::All());
    int n = 0;
    for (auto _ : state) {
        trace.setNextTraceConditions(KelvoBase::Trace::verbose, KelvoBase::TraceArea::All());
        trace << "read series number " << ++n << " of the second detector" << std::endl;
    }
    trace.traceto(KelvoBase::Trace::warn, "cerr", KelvoBase::TraceArea::All());
    prove(bytesWritten() == 0);
}
BENCHMARK(kelvoBaseSuppressed);

void kelvoBaseToFile(benchmark::State& state)
{
    auto& trace = KelvoBase::TraceStream::instance();
    trace.traceto(KelvoBase::Trace::verbose, file, KelvoBase::TraceArea::All());
    for (auto _ : state) {
        trace.setNextTraceConditions(KelvoBase::Trace::verbose, KelvoBase::TraceArea::All());
        trace << "read series number " << 1234567 << " of the second detector" << std::endl;
    }
    trace.traceto(KelvoBase::Trace::warn, "cerr", KelvoBase::TraceArea::All());
    prove(bytesWritten() == static_cast<long>(state.iterations()) * (8 + 50));
}
BENCHMARK(kelvoBaseToFile);

void ofstreamToFile(benchmark::State& state)
{
    std::ofstream out(file);
    for (auto _ : state) {
        out << "|------ read series number " << 1234567 << " of the second detector" << std::endl;
    }
    out.close();
    prove(bytesWritten() == static_cast<long>(state.iterations()) * (8 + 50));
}
BENCHMARK(ofstreamToFile);

#ifdef HAVE_SPDLOG
void spdlogDropped(benchmark::State& state)
{
    spdlog::logger logger("dropped", std::make_shared<spdlog::sinks::null_sink_st>());
    int n = 0;
    for (auto _ : state) {
        logger.info("read series number {} of the second detector", ++n);
    }
}
BENCHMARK(spdlogDropped);

void spdlogKeptForBacktrace(benchmark::State& state)
{
    spdlog::logger logger("kept", std::make_shared<spdlog::sinks::null_sink_st>());
    logger.set_level(spdlog::level::warn);
    logger.enable_backtrace(512);
    int n = 0;
    for (auto _ : state) {
        logger.info("read series number {} of the second detector", ++n);
    }
}
BENCHMARK(spdlogKeptForBacktrace);
#endif

} // namespace

BENCHMARK_MAIN();
