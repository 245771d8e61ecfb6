#include "SeriesStat.h"

#include "Comparison.h"
#include "Configure.h"
#include "Document.h"
#include "InputFiles.h"
#include "OutputFile.h"
#include "Progress.h"
#include "ProgressLine.h"
#include "Remember.h"
#include "WholeNumber.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/Strings.h>
#include <kelvobase/System.h>
#include <kelvobase/Timer.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <iostream>
#include <iterator>
#include <memory>
#include <string_view>

namespace seriesstat
{

namespace
{

using KelvoBase::CLOption;
using KelvoBase::ResourceLocation;
using KelvoBase::ScalarAny;
using KelvoBase::System;
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
constexpr const char* configurations =
    " Defaults come from the configuration: the files seriesstat.ini in the directories etc of the installation, of "
    "the working directory and of the user (on Linux ~/.config/dravo2/etc). A later one wins over an earlier one, key "
    "by key, and the command line over all of them. --remember writes the quantity into the file of the user, and "
    "nothing else; what else this file says stays, but for comments. --result writes all statistics of all series, "
    "with a digest of each file, and --compare tells what has changed since; both may name the same file, which is "
    "read first and then written anew.";
constexpr const char* isSame = " is the same file as ";
constexpr const char* isLost = ", which would be lost.";
constexpr const char* noFormat = "Option --report takes the name of a file that ends in .html or .tex.";
constexpr const char* noQuantity =
    "Option --quantity has to be given, or \"quantity\" set in section \"report\" of the configuration: a number "
    "without its quantity and unit is no result.";

/// The format that the name of a file asks for.
std::optional<DocumentFormat> documentFormat(std::string_view name)
{
    if (name.ends_with(".html")) {
        return DocumentFormat::html;
    }
    if (name.ends_with(".tex")) {
        return DocumentFormat::latex;
    }
    return std::nullopt;
}

} // namespace

SeriesStat::SeriesStat() : Application("seriesstat", 1.2, "The KelvoBase developers", description)
{
    setRevision("1");
    setYear("2026");
    setAdditionalHelpText(std::string(definitions) + configurations);
    defineInputOptions();
    defineReportOptions();
    defineFileOptions();
    defineConfigurationOptions();
    definePositional("FILE_OR_DIRECTORY...");
}

void SeriesStat::defineInputOptions()
{
    defineOption("column", 'c', false)
        .setHelp("the column that holds the values, counted from 1; 0: a line is one number [0]")
        .setArg("number", new WholeNumber(0));
    const CLOption& csv = defineOption("csv", 0, false).setHelp("the same as --delimiter=csv");
    const CLOption& delimiter = defineOption("delimiter", 'd', false)
                                    .setHelp("what parts columns: blanks (any white space), tab, csv (a comma, and "
                                             "double quotes protect one), or each single one of the characters of "
                                             "this text [blanks]")
                                    .setArg("text", new Text("blanks"));
    const CLOption& header = defineOption("header", 0, false).setHelp("the first line names the columns");
    const CLOption& noHeader = defineOption("no-header", 0, false).setHelp("the first line holds a value, too [this]");
    defineOption("comment", 0, false)
        .setHelp("what begins a comment, which reaches to the end of the line: a text, hash for #, or none [hash]")
        .setArg("text", new Text("hash"));
    defineOption("suffix", 0, false)
        .setHelp("take only files with one of these suffixes from directories, as in txt,dat")
        .setArg("list", new TextList);
    defineOption("sample", 0, false)
        .setHelp("a file of the data that come with the tool, as in michelson-1879.txt; in front of the others")
        .setArg("name", new Text);
    defineExclusion(csv, delimiter);
    defineExclusion(header, noHeader);
}

void SeriesStat::defineReportOptions()
{
    defineOption("quantity", 'q', false)
        .setHelp("what was measured, with its unit, as in \"time / s\"; the head of the report")
        .setArg("text", new Text);
    defineOption("stats", 's', false)
        .setHelp("the statistics to print, in this order, as in mean,sd [all]")
        .setArg("list", new TextList);
    defineOption("digits", 0, false)
        .setHelp("significant digits of the numbers, 1 to 17 [15]")
        .setArg("number", new WholeNumber(15));
}

void SeriesStat::defineFileOptions()
{
    defineOption("result", 0, false).setHelp("write the results to this file, as XML").setArg("file", new Text);
    defineOption("compare", 0, false)
        .setHelp("tell behind the report what is different from the results in this file, which --result wrote")
        .setArg("file", new Text);
    defineOption("report", 0, false)
        .setHelp("write a report with pictures to this file, which ends in .html or .tex")
        .setArg("file", new Text);
}

void SeriesStat::defineConfigurationOptions()
{
    defineOption("config-file", 0, false)
        .setHelp("the name of the configuration, without directories [seriesstat.ini]")
        .setArg("name", new Text);
    defineOption("remember", 0, false)
        .setHelp("store the given quantity in the user's configuration, so that it need not be given again");
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
    return elementsOf(*findOption(option)->getValue());
}

/// Only texts follow the locale, numbers stay as they are everywhere. The XML library may convert by the code page of
/// the C library (see `XMLParser.h`): that has to be UTF-8, which results are written in, whatever the environment
/// says.
void SeriesStat::startup(int argc, char** argv)
{
    if (!std::setlocale(LC_CTYPE, "C.UTF-8")) {
        std::setlocale(LC_CTYPE, "");
    }
    Application::startup(argc, argv);
}

void SeriesStat::postParseInit()
{
    checkCommandLine();
    takeConfiguration();
    takeOptions();
    checkSettings();
}

void SeriesStat::checkCommandLine() const
{
    check(nPositional() > 0 || isGiven("sample"), "Which series? Give at least one file or directory, or --sample.");
    check(!isGiven("remember") || isGiven("quantity"),
          "What should be remembered? --remember stores what --quantity says.");
    check(!isGiven("report") || documentFormat(textOf("report")), noFormat);
    if (isGiven("config-file")) {
        const std::string name = textOf("config-file");
        check(!name.empty() && name.find_first_of("/\\:\"") == std::string::npos,
              "Option --config-file takes the bare name of a file, which is searched in directories of its own.");
    }
}

std::string SeriesStat::configurationName() const
{
    return isGiven("config-file") ? textOf("config-file") : getAppName() + ".ini";
}

/// The configuration, null if there is no file of it. One that was asked for has to be there.
const KelvoBase::ConfigFile* SeriesStat::configuration()
{
    try {
        return getConfigFile();
    } catch (const KelvoBase::FileNotReadableException&) {
        if (isGiven("config-file")) {
            throw KelvoBase::FileNotFoundException(configurationName(), searchedPlaces());
        }
        return nullptr;
    }
}

void SeriesStat::takeConfiguration()
{
    if (const KelvoBase::ConfigFile* config = configuration()) {
        configure(mSettings, *config, configurationName());
    }
}

void SeriesStat::takeOption(const std::string& key, const std::vector<std::string>& values)
{
    const std::string fault = take(mSettings, *findSetting(key), values);
    check(fault.empty(), "Option --" + key + ": " + fault);
}

void SeriesStat::takeOptions()
{
    for (const Setting& setting : allSettings()) {
        const std::string key(setting.key);
        if (setting.form != Form::flag && isGiven(key)) {
            takeOption(key, listOf(key));
        }
    }
    if (isGiven("csv")) {
        takeOption("delimiter", {"csv"});
    }
    if (isGiven("header") || isGiven("no-header")) {
        takeOption("header", {isGiven("header") ? "yes" : "no"});
    }
}

void SeriesStat::checkSettings() const
{
    check(!mSettings.quantity.empty(), noQuantity);
    const SeriesFormat& format = mSettings.format;
    const bool partsColumns = (isGiven("csv") || isGiven("delimiter")) && !format.delimiters.empty();
    check(!partsColumns || format.column > 0, "Which column? With --csv or --delimiter, --column has to be given.");
}

std::vector<ResourceLocation> SeriesStat::inputFiles() const
{
    const std::vector<std::string> suffixes = listOf("suffix");
    std::vector<ResourceLocation> files;
    if (isGiven("sample")) {
        files.push_back(System::instance().getAppFile(textOf("sample")));
    }
    for (unsigned int i = 0; i < nPositional(); ++i) {
        const std::vector<ResourceLocation> found = filesOf(getPositional(i), suffixes);
        readingProgress() << getPositional(i) << ": " << found.size() << " files" << std::endl;
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

/// Refuses files that cannot be written, before any work is done.
void SeriesStat::checkFiles(const std::vector<std::string>& inputs) const
{
    std::vector<std::string> read = inputs;
    checkOutputFile("result", read);
    if (isGiven("compare")) {
        read.push_back(pathOf(textOf("compare"))); // the one input that may be renewed
    }
    if (isGiven("result")) {
        read.push_back(pathOf(textOf("result")));
        std::vector<std::string> texts = inputs;
        texts.push_back(mSettings.quantity);
        checkStorable(texts);
    }
    checkOutputFile("report", read);
}

void SeriesStat::checkOutputFile(const std::string& option, const std::vector<std::string>& others) const
{
    if (!isGiven(option)) {
        return;
    }
    const std::string path = pathOf(textOf(option));
    checkPlace(path);
    for (const std::string& other : others) {
        if (isSameFile(path, other)) {
            throw KelvoBase::RuntimeException("Option --" + option + ": " + KelvoBase::quote(path) + isSame +
                                              KelvoBase::quote(other) + isLost);
        }
    }
}

std::optional<StoredResults> SeriesStat::earlierResults() const
{
    if (!isGiven("compare")) {
        return std::nullopt;
    }
    return readResults(pathOf(textOf("compare")));
}

/// What is found out about a file; `line`, which may be null, shows how far it is read.
SeriesResult SeriesStat::seriesResult(const ResourceLocation& file, ProgressLine* line) const
{
    const std::string name = nativePath(file);
    readingProgress() << "reading " << name << std::endl;
    SeriesFile series = readSeriesFile(file, mSettings.format, [line](std::uintmax_t bytes) {
        if (line) {
            line->read(bytes);
        }
    });
    summaryProgress() << name << ": summarizing " << series.values.size() << " values" << std::endl;
    SeriesResult result{.name = name, .digest = series.digest};
    if (isGiven("report")) {
        for (const DoubleDouble& value : series.values) {
            result.values.push_back(value.high);
        }
    }
    result.summary = summarize(std::move(series.values));
    if (result.summary.deviation && !std::isfinite(*result.summary.deviation)) {
        throw KelvoBase::RuntimeException(name + ": The standard deviation is out of the range of numbers.");
    }
    return result;
}

StoredResults SeriesStat::evaluate(const std::vector<ResourceLocation>& files) const
{
    const System& system = System::instance();
    const KelvoBase::Time when(system.now());
    StoredResults stored{.origin = {getVersion(), getRevision(), when.getDate() + " " + when.getTime()}};
    stored.results.quantity = mSettings.quantity;
    KelvoBase::Timer timer;
    timer.start();
    std::optional<ProgressLine> line;
    if (textOf("trace-level") != "verbose") { // whose lines would run into this one
        line.emplace(files.size());
    }
    for (const ResourceLocation& file : files) {
        if (line) {
            line->begin(stored.results.series.size() + 1, nativePath(file));
        }
        stored.results.series.push_back(seriesResult(file, line ? &*line : nullptr));
    }
    timer.stop();
    stored.results.seconds = timer.getTimeInMs(KelvoBase::Timer::Total) / 1000.0;
    return stored;
}

std::string SeriesStat::reportText(const Results& results) const
{
    std::string report = results.quantity + "\n";
    for (const SeriesResult& series : results.series) {
        report += "\n" + reportOf(series.name, series.summary, mSettings.statistics, mSettings.digits);
    }
    return report;
}

std::string SeriesStat::documentText(const StoredResults& stored) const
{
    if (!isGiven("report")) {
        return "";
    }
    const std::string imprint = getAppName() + " " + seriesstat::versionText(stored.origin) + ", " + stored.origin.when;
    return documentOf(stored.results, mSettings, *documentFormat(textOf("report")), imprint);
}

/// Writes all files beside their places, and puts them there once all of them are complete.
void SeriesStat::writeFiles(const StoredResults& stored) const
{
    const std::string document = documentText(stored);
    std::vector<std::unique_ptr<OutputFile>> files;
    if (isGiven("result")) {
        files.push_back(std::make_unique<OutputFile>(pathOf(textOf("result"))));
        writeResults(*files.back(), stored);
    }
    if (isGiven("report")) {
        files.push_back(std::make_unique<OutputFile>(pathOf(textOf("report"))));
        files.back()->write(document);
    }
    for (const std::unique_ptr<OutputFile>& file : files) {
        file->finish();
    }
}

int SeriesStat::runMain()
{
    const std::vector<ResourceLocation> files = inputFiles();
    std::vector<std::string> names;
    std::transform(files.begin(), files.end(), std::back_inserter(names), nativePath);
    checkFiles(names);
    const std::optional<StoredResults> earlier = earlierResults();
    const StoredResults now = evaluate(files);
    std::string report = reportText(now.results);
    if (earlier) {
        report += "\n" + comparisonOf(*earlier, now, pathOf(textOf("compare")));
    }
    report.pop_back(); // `message` ends the last line
    if (isGiven("remember")) {
        remember();
    }
    writeFiles(now);
    message(report);
    std::cout.flush();
    check(std::cout.good(), "The report could not be written.");
    return 0;
}

/// Tells on standard error where the quantity is, so that the output is the report alone.
void SeriesStat::remember() const
{
    const std::string file = rememberQuantity(configurationName(), mSettings.quantity);
    if (KelvoBase::haveCerr) {
        std::cerr << "The quantity is remembered in \"" << file << "\"." << std::endl;
    }
}

} // namespace seriesstat
