/// \file
/// The string toolkit beside the functions that others use for the same work.

#include <kelvobase/Strings.h>

#include <benchmark/benchmark.h>
#include <boost/tokenizer.hpp>

#include <fnmatch.h>

#include <stdexcept>
#include <string>
#include <vector>

#ifdef HAVE_ABSL
#include <absl/strings/ascii.h>
#include <absl/strings/str_join.h>
#include <absl/strings/str_replace.h>
#include <absl/strings/str_split.h>
#endif
#ifdef HAVE_POCO
#include <Poco/String.h>
#include <Poco/StringTokenizer.h>
#endif

namespace
{

const std::string fields = "alpha,beta,gamma,delta,epsilon,zeta,eta,theta,iota,kappa,lambda,mu,nu,xi,omicron,pi,rho,"
                           "sigma,tau,upsilon";
const std::string quoted = "alpha,\"beta,gamma\",delta,\"epsilon\",zeta,eta,\"theta,iota\",kappa";
const std::string padded = "   some text with blanks at both ends, not too short   ";

void prove(bool right)
{
    if (!right) {
        throw std::logic_error("wrong result");
    }
}

std::vector<std::string> parts()
{
    return KelvoBase::splitBySeparator(fields, ",");
}

void splitKelvoBase(benchmark::State& state)
{
    prove(parts().size() == 20);
    for (auto _ : state) {
        benchmark::DoNotOptimize(KelvoBase::splitBySeparator(fields, ","));
    }
}
BENCHMARK(splitKelvoBase);

void quotedSplitKelvoBase(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<std::string> out;
        prove(KelvoBase::split(quoted, out, ",", "", "\"") == 8);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(quotedSplitKelvoBase);

void quotedSplitBoost(benchmark::State& state)
{
    using Separator = boost::escaped_list_separator<char>;
    for (auto _ : state) {
        std::vector<std::string> out;
        boost::tokenizer<Separator> tokens(quoted, Separator(std::string(), ",", "\""));
        out.assign(tokens.begin(), tokens.end());
        prove(out.size() == 8);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(quotedSplitBoost);

void joinKelvoBase(benchmark::State& state)
{
    const auto list = parts();
    prove(KelvoBase::join(list, ",") == fields);
    for (auto _ : state) {
        benchmark::DoNotOptimize(KelvoBase::join(list, ","));
    }
}
BENCHMARK(joinKelvoBase);

void escapeKelvoBase(benchmark::State& state)
{
    prove(KelvoBase::escape(fields, ",").size() == fields.size() + 19);
    for (auto _ : state) {
        benchmark::DoNotOptimize(KelvoBase::escape(fields, ","));
    }
}
BENCHMARK(escapeKelvoBase);

void trimKelvoBase(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text = padded;
        prove(KelvoBase::trim(text) == 6);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(trimKelvoBase);

void matchKelvoBase(benchmark::State& state)
{
    const std::string name = "measurement-2026-11-21.series.txt";
    prove(KelvoBase::match(name, "measurement-*.series.*"));
    for (auto _ : state) {
        benchmark::DoNotOptimize(KelvoBase::match(name, "measurement-*.series.*"));
    }
}
BENCHMARK(matchKelvoBase);

void matchFnmatch(benchmark::State& state)
{
    const std::string name = "measurement-2026-11-21.series.txt";
    prove(fnmatch("measurement-*.series.*", name.c_str(), 0) == 0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(fnmatch("measurement-*.series.*", name.c_str(), 0));
    }
}
BENCHMARK(matchFnmatch);

#ifdef HAVE_ABSL
void splitAbseil(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<std::string> out = absl::StrSplit(fields, ',');
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(splitAbseil);

void joinAbseil(benchmark::State& state)
{
    const auto list = parts();
    for (auto _ : state) {
        benchmark::DoNotOptimize(absl::StrJoin(list, ","));
    }
}
BENCHMARK(joinAbseil);

void escapeAbseil(benchmark::State& state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(absl::StrReplaceAll(fields, {{",", ",,"}}));
    }
}
BENCHMARK(escapeAbseil);

void trimAbseil(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text = padded;
        absl::StripAsciiWhitespace(&text);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(trimAbseil);
#endif

#ifdef HAVE_POCO
void splitPoco(benchmark::State& state)
{
    for (auto _ : state) {
        Poco::StringTokenizer tokens(fields, ",");
        benchmark::DoNotOptimize(tokens);
    }
}
BENCHMARK(splitPoco);

void trimPoco(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text = padded;
        Poco::trimInPlace(text);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(trimPoco);

void escapePoco(benchmark::State& state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(Poco::replace(fields, ",", ",,"));
    }
}
BENCHMARK(escapePoco);
#endif

} // namespace

BENCHMARK_MAIN();
