#include "SeriesReader.h"

#include "Decimal.h"
#include "Shown.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>

#include <algorithm>

namespace seriesstat
{

namespace
{

using KelvoBase::OutOfBoundException;
using KelvoBase::RuntimeException;

constexpr const char* noValues = ": There are no numbers.";
constexpr const char* noColumn = "There is no such column.";
constexpr const char* notANumber = " is not a finite decimal number.";
constexpr const char* outOfRange = " is out of the range of numbers.";

/// Cuts the comment and the white space around what is left.
void reduce(std::string& line, const std::string& commentSign)
{
    if (!commentSign.empty()) {
        line.erase(std::min(line.find(commentSign), line.size()));
    }
    KelvoBase::trim(line);
}

std::vector<std::string> columnsOf(const std::string& line, const SeriesFormat& format)
{
    std::vector<std::string> columns;
    if (format.delimiters.empty()) {
        KelvoBase::split(line, columns, " \t", "", "");
        std::erase(columns, "");
    } else {
        KelvoBase::split(line, columns, format.delimiters, "", format.quotes ? "\"" : "");
    }
    return columns;
}

/// The text of the value in a line. `place` begins messages.
std::string fieldOf(const std::string& line, const std::string& place, const SeriesFormat& format)
{
    if (format.column == 0) {
        return line;
    }
    const std::vector<std::string> columns = columnsOf(line, format);
    const auto index = static_cast<std::size_t>(format.column) - 1;
    if (index >= columns.size()) {
        throw OutOfBoundException(static_cast<long>(columns.size()), format.column, place + noColumn);
    }
    std::string field = columns[index];
    KelvoBase::trim(field);
    return field;
}

DoubleDouble valueOf(const std::string& field, const std::string& place)
{
    DoubleDouble value;
    const std::errc fault = readDecimal(field, value);
    if (fault != std::errc()) {
        throw RuntimeException(place + shown(field) +
                               (fault == std::errc::result_out_of_range ? outOfRange : notANumber));
    }
    return value;
}

} // namespace

std::vector<DoubleDouble> readSeries(std::istream& in, const std::string& name, const SeriesFormat& format)
{
    constexpr const char* byteOrderMark = "\xEF\xBB\xBF";
    std::vector<DoubleDouble> values;
    bool headerAhead = format.header;
    std::string line;
    for (unsigned long long number = 1; KelvoBase::getshortline(in, line), !in.fail(); ++number) {
        if (number == 1 && line.starts_with(byteOrderMark)) {
            line.erase(0, 3);
        }
        reduce(line, format.commentSign);
        if (line.empty()) {
            continue;
        }
        if (headerAhead) {
            headerAhead = false;
            continue;
        }
        const std::string place = name + ":" + std::to_string(number) + ": ";
        values.push_back(valueOf(fieldOf(line, place, format), place));
    }
    if (values.empty() && in.eof()) {
        throw RuntimeException(name + noValues);
    }
    return values;
}

} // namespace seriesstat
