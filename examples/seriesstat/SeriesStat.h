#pragma once

/// \file
/// The tool: its command line and the road from there to the report.

#include "SeriesReader.h"

#include <kelvobase/Application.h>

#include <string>
#include <vector>

namespace seriesstat
{

struct Statistic;

/// Prints descriptive statistics of measured series.
///
/// All files are read and all results are there before the first line of the report is written: what appears on
/// standard output is complete, and whatever fails leaves it empty.
class SeriesStat : public KelvoBase::Application
{
public:
    SeriesStat();

    void postParseInit() override;
    int runMain() override;

private:
    void defineInputOptions();
    void defineReportOptions();
    void takeFormat();
    void takeColumns();
    void takeWanted();

    bool isGiven(const std::string& option) const;
    std::string textOf(const std::string& option) const;
    std::vector<std::string> listOf(const std::string& option) const;
    std::vector<KelvoBase::ResourceLocation> inputFiles() const;
    std::string summaryText(const KelvoBase::ResourceLocation& file) const;

    SeriesFormat mFormat;
    std::vector<const Statistic*> mWanted; // raw: they live as long as the program
    int mDigits = 0;
};

} // namespace seriesstat
