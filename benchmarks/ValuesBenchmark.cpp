/// \file
/// Numbers to text and back, and lists of numbers, beside `std::any` with the standard conversions and POCO's variant.

#include <kelvobase/Any.h>

#include <benchmark/benchmark.h>

#include <any>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef HAVE_POCO
#include <Poco/Dynamic/Var.h>
#endif

namespace
{

void prove(bool right)
{
    if (!right) {
        throw std::logic_error("wrong value");
    }
}

void numberKelvoBase(benchmark::State& state)
{
    std::unique_ptr<KelvoBase::Any> value(new KelvoBase::ScalarAny<int>());
    for (auto _ : state) {
        value->fromString("123456", ",");
        prove(value->toString(",") == "123456");
    }
}
BENCHMARK(numberKelvoBase);

void numberStdAny(benchmark::State& state)
{
    std::any value;
    const std::string text = "123456";
    for (auto _ : state) {
        value = std::stoi(text);
        prove(std::to_string(std::any_cast<int>(value)) == "123456");
    }
}
BENCHMARK(numberStdAny);

void doubleKelvoBase(benchmark::State& state)
{
    std::unique_ptr<KelvoBase::Any> value(new KelvoBase::ScalarAny<double>());
    for (auto _ : state) {
        value->fromString("299.852", ",");
        prove(value->toString(",") == "299.852");
    }
}
BENCHMARK(doubleKelvoBase);

std::string numbers()
{
    std::string text = "0";
    for (int i = 1; i < 100; ++i) {
        text += "," + std::to_string(i * 37);
    }
    return text;
}

void listKelvoBase(benchmark::State& state)
{
    const std::string text = numbers();
    for (auto _ : state) {
        KelvoBase::VectorAny<KelvoBase::ScalarAny<int>> list;
        list.fromString(text, ",");
        prove(list.size() == 100);
        prove(list.toString() == text);
    }
}
BENCHMARK(listKelvoBase);

void listOfStdAny(benchmark::State& state)
{
    const std::string text = numbers();
    for (auto _ : state) {
        std::vector<std::any> list;
        std::size_t begin = 0;
        while (begin <= text.size()) {
            const std::size_t end = std::min(text.find(',', begin), text.size());
            list.emplace_back(std::stoi(text.substr(begin, end - begin)));
            begin = end + 1;
        }
        std::string out;
        for (const std::any& element : list) {
            out += (out.empty() ? "" : ",") + std::to_string(std::any_cast<int>(element));
        }
        prove(out == text);
    }
}
BENCHMARK(listOfStdAny);

#ifdef HAVE_POCO
void numberPoco(benchmark::State& state)
{
    for (auto _ : state) {
        Poco::Dynamic::Var text(std::string("123456"));
        Poco::Dynamic::Var value(text.convert<int>());
        prove(value.convert<std::string>() == "123456");
    }
}
BENCHMARK(numberPoco);

void doublePoco(benchmark::State& state)
{
    for (auto _ : state) {
        Poco::Dynamic::Var text(std::string("299.852"));
        Poco::Dynamic::Var value(text.convert<double>());
        prove(value.convert<std::string>() == "299.852");
    }
}
BENCHMARK(doublePoco);
#endif

} // namespace

BENCHMARK_MAIN();
