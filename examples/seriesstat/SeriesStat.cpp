#include "SeriesStat.h"

#include "Configure.h"
#include "InputFiles.h"
#include "Progress.h"
#include "Remember.h"
#include "WholeNumber.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/System.h>

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
    "nothing else; what else this file says stays, but for comments.";
constexpr const char* noQuantity =
    "Option --quantity has to be given, or \"quantity\" set in section \"report\" of the configuration: a number "
    "without its quantity and unit is no result.";

} // namespace

SeriesStat::SeriesStat() : Application("seriesstat", 1.1, "The KelvoBase developers", description)
{
    setRevision("1");
    setYear("2026");
    setAdditionalHelpText(std::string(definitions) + configurations);
    defineInputOptions();
    defineReportOptions();
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

std::string SeriesStat::summaryText(const ResourceLocation& file) const
{
    const std::string name = nativePath(file);
    readingProgress() << "reading " << name << std::endl;
    const std::vector<DoubleDouble> values = readSeriesFile(file, mSettings.format);
    summaryProgress() << name << ": summarizing " << values.size() << " values" << std::endl;
    const Summary summary = summarize(values);
    if (summary.deviation && !std::isfinite(*summary.deviation)) {
        throw KelvoBase::RuntimeException(name + ": The standard deviation is out of the range of numbers.");
    }
    return reportOf(name, summary, mSettings.statistics, mSettings.digits);
}

int SeriesStat::runMain()
{
    std::string report = mSettings.quantity + "\n";
    for (const ResourceLocation& file : inputFiles()) {
        report += "\n" + summaryText(file);
    }
    report.pop_back(); // `message` ends the last line
    if (isGiven("remember")) {
        remember();
    }
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
