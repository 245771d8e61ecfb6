/// \file
/// A whole document in both formats, byte for byte.

#include "support/Scratch.h"
#include "text/FormatProbe.h"
#include "text/ReportDocument.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace KelvoBase::test
{

namespace
{

template <typename Format>
void expectReport(const char* file)
{
    Probe<Format> out;
    writeReport(out);
    EXPECT_EQ(out.openSpans(), 0u);
    EXPECT_EQ(out.str(), contentOf(std::filesystem::path(GOLDEN_DIRECTORY) / file));
}

TEST(Document, IsWrittenAsHtml)
{
    expectReport<HtmlTextFormatter>("report.html");
}

TEST(Document, IsWrittenAsLatex)
{
    expectReport<TexTextFormatter>("report.tex");
}

} // namespace

} // namespace KelvoBase::test
