#pragma once

/// \file
/// The tool: its command line and the road from there to the report.

#include "Settings.h"

#include <kelvobase/Application.h>

#include <string>
#include <vector>

namespace seriesstat
{

/// Prints descriptive statistics of measured series.
///
/// All files are read and all results are there before the first line of the report is written: what appears on
/// standard output is complete, and whatever fails leaves it empty. The configuration is only written where the user
/// asks for it.
class SeriesStat : public KelvoBase::Application
{
public:
    SeriesStat();

    void postParseInit() override;
    int runMain() override;

private:
    void defineInputOptions();
    void defineReportOptions();
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
    std::string summaryText(const KelvoBase::ResourceLocation& file) const;
    void remember() const;

    Settings mSettings;
};

} // namespace seriesstat
