#include "SeriesReader.h"

#include "support/Text.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <sstream>

namespace seriesstat
{

namespace
{

using KelvoBase::OutOfBoundException;
using KelvoBase::RuntimeException;
using KelvoBase::test::textOf;

const SeriesFormat lines;
const SeriesFormat secondOfWhiteSpace{.column = 2};
const SeriesFormat secondOfCsv{.column = 2, .delimiters = ",", .quotes = true};
const SeriesFormat secondOfBars{.column = 2, .delimiters = "|;"};
const SeriesFormat withHeader{.header = true};
const SeriesFormat percentComment{.commentSign = "%%"};
const SeriesFormat noComment{.commentSign = ""};

std::vector<double> read(const std::string& text, const SeriesFormat& format)
{
    std::istringstream in(text);
    std::vector<double> numbers;
    for (const DoubleDouble& value : readSeries(in, "x", format)) {
        numbers.push_back(value.high);
    }
    return numbers;
}

struct Row
{
    std::string text;
    SeriesFormat format;
    std::vector<double> values;
};

TEST(SeriesReaderTest, ValuesAreReadFromLines)
{
    const Row rows[] = {
        {"1\n2\n", lines, {1, 2}},
        {"1\n2", lines, {1, 2}},
        {"1\r\n2\r\n", lines, {1, 2}},
        {"1\r\n2\r", lines, {1, 2}},
        {"\xEF\xBB\xBF"
         "1\n2\n",
         lines,
         {1, 2}},
        {"\n  \n1\n\t\n2\n\n", lines, {1, 2}},
        {"# head\n1 # one\n#\n2#two\n", lines, {1, 2}},
        {"  1.5e3\t\n", lines, {1500}},
        {"%% head\n1%%\n", percentComment, {1}},
        {"speed\n1\n", withHeader, {1}},
        {"# remark\n\nspeed\n1\n", withHeader, {1}},
        {std::string(1000000, ' ') + "1" + std::string(1000000, ' '), lines, {1}},
        {std::string(100000, '0') + "7\n", lines, {7}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.values, read(row.text, row.format)) << row.text.substr(0, 50);
    }
}

TEST(SeriesReaderTest, ValuesAreReadFromAColumn)
{
    const Row rows[] = {
        {"1 2\n3 4\n", secondOfWhiteSpace, {2, 4}}, {" 1 \t 2   x\n", secondOfWhiteSpace, {2}},
        {"a,2\nb,4,c\n", secondOfCsv, {2, 4}},      {"a, 2 \n,4\n", secondOfCsv, {2, 4}},
        {"\"a,b\",\"2\"\n", secondOfCsv, {2}},      {"a|2;c\nd;4\n", secondOfBars, {2, 4}},
        {"a,2 # two\n", secondOfCsv, {2}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.values, read(row.text, row.format)) << row.text;
    }
}

struct Fault
{
    std::string text;
    SeriesFormat format;
    std::string message;
};

TEST(SeriesReaderTest, FaultsAreReportedWithTheirLine)
{
    const Fault rows[] = {
        {"1\nabc\n", lines, "x:2: \"abc\" is not a finite decimal number."},
        {"# head\n\n1 2\n", lines, "x:3: \"1 2\" is not a finite decimal number."},
        {"1,5\n", lines, "x:1: \"1,5\" is not a finite decimal number."},
        {"1\n2\nnan", lines, "x:3: \"nan\" is not a finite decimal number."},
        {"inf\r\n", lines, "x:1: \"inf\" is not a finite decimal number."},
        {"1e999\n", lines, "x:1: \"1e999\" is out of the range of numbers."},
        {"1\n-1e-999\n", lines, "x:2: \"-1e-999\" is out of the range of numbers."},
        {"1 # one\n", noComment, "x:1: \"1 # one\" is not a finite decimal number."},
        {"1\r2\r", lines, "x:1: \"1?2\" is not a finite decimal number."},
        {"\x1B[31m\x7F\n", lines, "x:1: \"?[31m?\" is not a finite decimal number."},
        {std::string(1000, 'y'), lines, "x:1: \"" + std::string(40, 'y') + "...\" is not a finite decimal number."},
        {std::string(39, 'y') + "\xC3\xA9y", lines,
         "x:1: \"" + std::string(39, 'y') + "...\" is not a finite decimal number."},
        {"a,\n", secondOfCsv, "x:1: \"\" is not a finite decimal number."},
        {"a,NA\n", secondOfCsv, "x:1: \"NA\" is not a finite decimal number."},
        {"1\n\xEF\xBB\xBF"
         "2\n",
         lines,
         "x:2: \"\xEF\xBB\xBF"
         "2\" is not a finite decimal number."},
        {"", lines, "x: There are no numbers."},
        {"# nothing\n\n", lines, "x: There are no numbers."},
        {"speed\n", withHeader, "x: There are no numbers."},
    };
    for (const Fault& row : rows) {
        EXPECT_EQ(row.message, textOf<RuntimeException>([&row] { read(row.text, row.format); }));
    }
}

TEST(SeriesReaderTest, LineWithoutTheColumnIsRefused)
{
    const Fault rows[] = {
        {"1 2\n3\n", secondOfWhiteSpace, "x:2: There is no such column. Limit is 1, but it was 2."},
        {"\"1,2\n", secondOfCsv, "x:1: There is no such column. Limit is 1, but it was 2."},
        {"1,2\n", secondOfBars, "x:1: There is no such column. Limit is 1, but it was 2."},
    };
    for (const Fault& row : rows) {
        EXPECT_EQ(row.message, textOf<OutOfBoundException>([&row] { read(row.text, row.format); }));
    }
}

TEST(SeriesReaderTest, ValuesKeepMoreDigitsThanADoubleHas)
{
    std::istringstream in("10000000.1\n10000000.2\n");
    const std::vector<DoubleDouble> values = readSeries(in, "x", lines);
    EXPECT_EQ(0.1, (values.at(1) - values.at(0)).high);
    EXPECT_NE(0.1, values.at(1).high - values.at(0).high);
}

} // namespace

} // namespace seriesstat
