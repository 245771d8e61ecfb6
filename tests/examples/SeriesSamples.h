#pragma once

/// \file
/// Results for tests of documents.

#include "Results.h"
#include "SeriesReader.h"

#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace seriesstat::test
{

inline SeriesResult seriesOf(const std::string& name, const std::vector<double>& values)
{
    std::vector<DoubleDouble> numbers;
    numbers.reserve(values.size());
    for (const double value : values) {
        numbers.push_back({value});
    }
    return {.name = name, .digest = std::string(40, 'd'), .summary = summarize(numbers), .values = values};
}

/// Michelson's determinations of 1879, which come with the tool.
inline Results michelson()
{
    std::ifstream in(SERIESSTAT_SOURCES "/data/michelson-1879.txt");
    const std::vector<DoubleDouble> numbers = readSeries(in, "michelson", {});
    SeriesResult series{.name = "data/michelson-1879.txt",
                        .digest = "2855dffb2e4b3648be0e54928f72ac929d37c6fc",
                        .summary = summarize(numbers)};
    for (const DoubleDouble& number : numbers) {
        series.values.push_back(number.high);
    }
    return {.quantity = "speed of light in air / (1000 km/s)", .series = {std::move(series)}};
}

/// Names and values that could do harm.
inline Results hostile()
{
    return {.quantity = "<&> \"q\" 'p' \\end{document} 50 % {x_1} ~ ^ # $ ρ / (g cm⁻³) 中",
            .series = {
                seriesOf("one.txt", {299.85}),
                seriesOf("equal.txt", {0, 0, 0, 0}),
                seriesOf("huge.txt", {1e308, -1e308, 5e307, 1e306, -2e307, 0}),
                seriesOf("tiny.txt", {1e-300, 2e-300, 3.5e-300, 2.5e-300, 2.2e-300}),
                seriesOf("near.txt", {1, 1.0000000000000002, 1.0000000000000004}),
                seriesOf("off.txt", {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, -7, 1e9}),
                seriesOf("\x1B[31m</svg>\"'&<script>\n\xFF--,,`[%$#_{}~^\\中Ж.txt", {1, 2, 3, 4, 5}),
                seriesOf("a/very/long/way/to/measurements/2024_11_21_sample_17_of_40_after_tempering.txt", {-5, -4}),
            }};
}

} // namespace seriesstat::test
