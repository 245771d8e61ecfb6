#pragma once

/// \file
/// The tool: its command line and the road from there to the report.

#include "ResultFile.h"
#include "Settings.h"

#include <kelvobase/Application.h>

#include <optional>
#include <string>
#include <vector>

namespace seriesstat
{

class ProgressLine;

/// Prints descriptive statistics of measured series.
///
/// All files are read and all results are there before anything is written: what appears on standard output, and in
/// the files that were asked for, is complete, and whatever fails leaves standard output empty. The configuration is
/// only written where the user asks for it.
class SeriesStat : public KelvoBase::Application
{
public:
    SeriesStat();

    void startup(int argc, char** argv) override;
    void postParseInit() override;
    int runMain() override;

private:
    void defineInputOptions();
    void defineReportOptions();
    void defineFileOptions();
    void defineConfigurationOptions();
    void checkCommandLine() const;
    void takeConfiguration();
    void takeOptions();
    void takeOption(const std::string& key, const std::vector<std::string>& values);
    void checkSettings() const;

    bool isGiven(const std::string& option) const;
    std::string textOf(const std::string& option) const;
    std::vector<std::string> listOf(const std::string& option) const;
    std::string configurationName() const;
    const KelvoBase::ConfigFile* configuration();
    std::vector<KelvoBase::ResourceLocation> inputFiles() const;
    void checkFiles(const std::vector<std::string>& inputs) const;
    void checkOutputFile(const std::string& option, const std::vector<std::string>& others) const;
    std::optional<StoredResults> earlierResults() const;
    StoredResults evaluate(const std::vector<KelvoBase::ResourceLocation>& files) const;
    SeriesResult seriesResult(const KelvoBase::ResourceLocation& file, ProgressLine* line) const;
    std::string reportText(const Results& results) const;
    std::string documentText(const StoredResults& stored) const;
    void writeFiles(const StoredResults& stored) const;
    void remember() const;

    Settings mSettings;
};

} // namespace seriesstat
