#pragma once

/// \file
/// The report as a page for browsers.

#include "ReportFormat.h"

namespace seriesstat
{

/// Writes HTML with a style and pictures of its own: one file, which needs no other and runs no program. It follows the
/// reader's choice of light or dark, and is printed light.
class HtmlReport : public KelvoBase::HtmlTextFormatter, public ReportFormat
{
public:
    KelvoBase::TextFormatter& basic() override { return *this; }

    void beginDocument(const std::string& title) override;
    void em() override; ///< no blank behind the span, unlike the library's
    void b() override;  ///< as above
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
    void titleCell(const Table::Title& title, const char* scope);

    unsigned int mPictures = 0;
};

} // namespace seriesstat
