#pragma once

/// \file
/// The report for LaTeX.

#include "ReportFormat.h"

namespace seriesstat
{

/// Writes LaTeX that needs no packages but those of the library's preamble, and no other file.
class TexReport : public KelvoBase::TexTextFormatter, public ReportFormat
{
public:
    using TexTextFormatter::print;

    KelvoBase::TextFormatter& basic() override { return *this; }

    void beginDocument(const std::string& title) override;
    void em() override;                           ///< no blank behind the span, unlike the library's
    void b() override;                            ///< as above
    void ref(const std::string& target) override; ///< the text of the span alone
    void print(const std::string& text) override;

    void title(const std::string& text, const std::string& remark) override;
    void heading(int depth) override;
    void paragraph() override;
    void code() override;
    void place(const std::string& name) override;
    void table(const Table& table) override;
    void picture(const Picture& picture) override;
    void citation(const KelvoBase::Literature& article) override;

private:
    void open(const std::string& opening, const std::string& closing);
};

} // namespace seriesstat
