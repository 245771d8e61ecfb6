#include "SeriesStat.h"

#include "InputFiles.h"
#include "Report.h"
#include "WholeNumber.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <cmath>
#include <iostream>
#include <memory>

namespace seriesstat
{

namespace
{

using KelvoBase::CLOption;
using KelvoBase::ResourceLocation;
using KelvoBase::ScalarAny;
using KelvoBase::Trace;
using KelvoBase::TraceArea;
using KelvoBase::TraceStream;
using Text = ScalarAny<std::string>;
using TextList = KelvoBase::VectorAny<Text>;

constexpr const char* description =
    "Prints descriptive statistics of measured series. A series is a file with one number a line, or with a table of "
    "which one column is read; blank lines and comments are skipped. A directory stands for all files below it.";
constexpr const char* definitions =
    "The statistics are count, mean, sd (standard deviation, with n - 1), lag1 (autocorrelation at lag 1), min, q1, "
    "median, q3 and max. Quartiles stand at the position 1 + p (n - 1) of the sorted values, interpolated linearly. "
    "\"n/a\" stands for what is not defined: sd of a single value, lag1 of values that are all equal. Whatever is no "
    "number makes the run fail; no value is skipped. A file whose name has one character stands behind \"--\".";
constexpr const char* numberBytes = "+-.0123456789Ee";
constexpr int maxDigits = 17; // tell any two doubles apart

/// The trace, ready for a line about the progress of the work.
std::ostream& progress(const std::bitset<64>& area)
{
    TraceStream& trace = TraceStream::instance();
    trace.setNextTraceConditions(Trace::verbose, area);
    return trace;
}

} // namespace

SeriesStat::SeriesStat() : Application("seriesstat", 1.0, "The KelvoBase developers", description)
{
    setRevision("1");
    setYear("2026");
    setAdditionalHelpText(definitions);
    defineInputOptions();
    defineReportOptions();
    definePositional("FILE_OR_DIRECTORY...");
}

void SeriesStat::defineInputOptions()
{
    defineOption("column", 'c', false)
        .setHelp("the column that holds the values, counted from 1; if it is not given, a line is one number")
        .setArg("number", new WholeNumber(0));
    const CLOption& csv = defineOption("csv", 0, false)
                              .setHelp("columns are parted by commas, and double quotes protect a comma; if neither "
                                       "this nor --delimiter is given, white space parts them");
    const CLOption& delimiter = defineOption("delimiter", 'd', false)
                                    .setHelp("columns are parted by each single one of these characters")
                                    .setArg("text", new Text);
    defineOption("header", 0, false).setHelp("the first line names the columns");
    defineOption("comment", 0, false)
        .setHelp("what begins a comment, which reaches to the end of the line; an empty text: nothing does [#]")
        .setArg("text", new Text(mFormat.commentSign));
    defineOption("suffix", 0, false)
        .setHelp("take only files with one of these suffixes from directories, as in txt,dat")
        .setArg("list", new TextList);
    defineExclusion(csv, delimiter);
}

void SeriesStat::defineReportOptions()
{
    // A number without its quantity and unit is no result, so the report does not come without them.
    defineOption("quantity", 'q', true)
        .setHelp("what was measured, with its unit, as in \"time / s\"; the head of the report")
        .setArg("text", new Text);
    auto statistics = std::make_unique<TextList>();
    for (const std::string& name : statisticNames()) {
        statistics->add(Text(name));
    }
    defineOption("stats", 's', false)
        .setHelp("the statistics to print, in this order, as in mean,sd [all]")
        .setArg("list", statistics.release());
    defineOption("digits", 0, false)
        .setHelp("significant digits of the numbers, 1 to 17 [15]")
        .setArg("number", new WholeNumber(15));
}

bool SeriesStat::isGiven(const std::string& option) const
{
    return findOption(option)->isSet();
}

std::string SeriesStat::textOf(const std::string& option) const
{
    return findOption(option)->getValue()->toString(",");
}

std::vector<std::string> SeriesStat::listOf(const std::string& option) const
{
    const KelvoBase::Any& list = *findOption(option)->getValue();
    std::vector<std::string> texts;
    for (unsigned int i = 0; i < list.size(); ++i) {
        texts.push_back(list[i].toString(","));
    }
    return texts;
}

void SeriesStat::postParseInit()
{
    check(nPositional() > 0, "Which series? Give at least one file or directory.");
    std::string quantity = textOf("quantity");
    KelvoBase::trim(quantity);
    check(!quantity.empty(), "Option --quantity has to say what was measured.");
    takeFormat();
    takeWanted();
    mDigits = findOption("digits")->getValue()->toInt();
    check(mDigits >= 1 && mDigits <= maxDigits, "Option --digits goes from 1 to " + std::to_string(maxDigits) + ".");
}

void SeriesStat::takeFormat()
{
    mFormat.commentSign = textOf("comment");
    check(mFormat.commentSign.empty() || mFormat.commentSign.find_first_not_of(numberBytes) != std::string::npos,
          "Option --comment: \"" + mFormat.commentSign + "\" can be a part of a number.");
    mFormat.header = isGiven("header");
    takeColumns();
}

void SeriesStat::takeColumns()
{
    mFormat.column = findOption("column")->getValue()->toInt();
    check(!isGiven("column") || mFormat.column > 0, "Option --column counts from 1.");
    if (isGiven("csv")) {
        mFormat.delimiters = ",";
        mFormat.quotes = true;
    } else if (isGiven("delimiter")) {
        mFormat.delimiters = textOf("delimiter");
        check(!mFormat.delimiters.empty(), "Option --delimiter needs at least one character.");
        check(mFormat.delimiters.find_first_of(numberBytes) == std::string::npos,
              "Option --delimiter: \"" + mFormat.delimiters + "\" has a character that can be a part of a number.");
    }
    check(mFormat.delimiters.empty() || mFormat.column > 0,
          "Which column? With --csv or --delimiter, --column has to be given.");
}

void SeriesStat::takeWanted()
{
    for (const std::string& name : listOf("stats")) {
        const Statistic* statistic = findStatistic(name);
        check(statistic != nullptr,
              "Unknown statistic \"" + name + "\". Known are " + KelvoBase::join(statisticNames(), ", ") + ".");
        mWanted.push_back(statistic);
    }
}

std::vector<ResourceLocation> SeriesStat::inputFiles() const
{
    const std::vector<std::string> suffixes = listOf("suffix");
    std::vector<ResourceLocation> files;
    for (unsigned int i = 0; i < nPositional(); ++i) {
        const std::vector<ResourceLocation> found = filesOf(getPositional(i), suffixes);
        progress(TraceArea::App()) << getPositional(i) << ": " << found.size() << " files" << std::endl;
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

std::string SeriesStat::summaryText(const ResourceLocation& file) const
{
    const std::string name = nativePath(file);
    progress(TraceArea::App()) << "reading " << name << std::endl;
    const std::vector<DoubleDouble> values = readSeriesFile(file, mFormat);
    progress(TraceArea::Numerics()) << name << ": summarizing " << values.size() << " values" << std::endl;
    const Summary summary = summarize(values);
    if (summary.deviation && !std::isfinite(*summary.deviation)) {
        throw KelvoBase::RuntimeException(name + ": The standard deviation is out of the range of numbers.");
    }
    return reportOf(name, summary, mWanted, mDigits);
}

int SeriesStat::runMain()
{
    std::string report = textOf("quantity") + "\n";
    for (const ResourceLocation& file : inputFiles()) {
        report += "\n" + summaryText(file);
    }
    report.pop_back(); // `message` ends the last line
    message(report);
    std::cout.flush();
    check(std::cout.good(), "The report could not be written.");
    return 0;
}

} // namespace seriesstat
