#include "HtmlReport.h"
#include "TexReport.h"

#include <gtest/gtest.h>

#include <memory>

namespace seriesstat
{

namespace
{

using KelvoBase::Literature;

TEST(ReportFormatTest, NumbersHaveThreeParts)
{
    struct Row
    {
        const char* text;
        NumberParts parts;
    };
    const Row rows[] = {
        {"100", {"100", "", ""}},      {"299.850", {"299", ".850", ""}}, {"-0.5", {"-0", ".5", ""}},
        {"9.", {"9", "", ""}},         {"1.23e+05", {"1", ".23", "5"}},  {"4.94e-324", {"4", ".94", "-324"}},
        {"-1e308", {"-1", "", "308"}}, {"1.e+00", {"1", "", "0"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_TRUE(isNumber(row.text));
        const NumberParts parts = partsOf(row.text);
        EXPECT_EQ(row.parts.whole, parts.whole);
        EXPECT_EQ(row.parts.fraction, parts.fraction);
        EXPECT_EQ(row.parts.exponent, parts.exponent);
    }
    for (const char* word : {"n/a", "", "-", "inf", "-inf"}) {
        EXPECT_FALSE(isNumber(word)) << word;
    }
}

TEST(ReportFormatTest, TitleOfACitationGetsQuotationMarks)
{
    EXPECT_EQ("A, <T>, J", withQuotes("A, ''T'', J", "''", "<", ">"));
    EXPECT_EQ("A, ''J", withQuotes("A, ''J", "''", "<", ">"));
    EXPECT_EQ("A, J", withQuotes("A, J", "''", "<", ">"));
}

/// What an operation and the end of its span write.
template <typename Format>
std::string textOf(void (*operation)(Format&), bool opensSpan)
{
    Format out;
    operation(out);
    if (opensSpan) {
        out.writeRaw("x");
        out.end();
    }
    return out.str();
}

TEST(ReportFormatTest, HtmlHasNoBlanksBehindSpans)
{
    EXPECT_EQ("<em>x</em>", textOf<HtmlReport>([](HtmlReport& out) { out.em(); }, true));
    EXPECT_EQ("<b>x</b>", textOf<HtmlReport>([](HtmlReport& out) { out.b(); }, true));
    EXPECT_EQ("<code>x</code>", textOf<HtmlReport>([](HtmlReport& out) { out.code(); }, true));
    EXPECT_EQ("<p>x</p>\n", textOf<HtmlReport>([](HtmlReport& out) { out.paragraph(); }, true));
    EXPECT_EQ("<H2>x</H2>\n", textOf<HtmlReport>([](HtmlReport& out) { out.heading(1); }, true));
    EXPECT_EQ("<a id=\"a-1\"></a>", textOf<HtmlReport>([](HtmlReport& out) { out.place("a-1"); }, false));
    EXPECT_EQ("<H1>a&lt;b</H1>\n<p class=\"remark\">&amp;</p>\n",
              textOf<HtmlReport>([](HtmlReport& out) { out.title("a<b", "&"); }, false));
}

TEST(ReportFormatTest, LatexHasNoBlanksBehindSpans)
{
    EXPECT_EQ("\\emph{x}", textOf<TexReport>([](TexReport& out) { out.em(); }, true));
    EXPECT_EQ("\\textbf{x}", textOf<TexReport>([](TexReport& out) { out.b(); }, true));
    EXPECT_EQ("\\texttt{x}", textOf<TexReport>([](TexReport& out) { out.code(); }, true));
    EXPECT_EQ("x", textOf<TexReport>([](TexReport& out) { out.ref("a-1"); }, true));
    EXPECT_EQ("\nx\n\n", textOf<TexReport>([](TexReport& out) { out.paragraph(); }, true));
    EXPECT_EQ("\n\\section{x}\n", textOf<TexReport>([](TexReport& out) { out.heading(1); }, true));
    EXPECT_EQ("", textOf<TexReport>([](TexReport& out) { out.place("a-1"); }, false));
    EXPECT_EQ("\\begin{center}\n{\\LARGE\\bfseries a\\%b\\par}\n\\medskip\n\\&\n\\end{center}\n",
              textOf<TexReport>([](TexReport& out) { out.title("a%b", "&"); }, false));
}

TEST(ReportFormatTest, HeadOfAPageTellsItsEncodingAndNeedsNothingElse)
{
    HtmlReport out;
    out.beginDocument("</title><script>");
    out.endDocument();
    const std::string page = out.str();
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"));
    EXPECT_NE(std::string::npos, page.find("<title>&lt;/title&gt;&lt;script&gt;</title>"));
    EXPECT_TRUE(page.ends_with("</head>\n<body>\n</BODY>\n</HTML>\n\n"));
    for (const char* word : {"<script", "http:", "https:", "url(", "@import", "src="}) {
        EXPECT_EQ(std::string::npos, page.find(word)) << word;
    }
}

TEST(ReportFormatTest, HeadInLatexIsTheLibrarysWithUtf8)
{
    KelvoBase::TexTextFormatter library;
    library.beginDocument("");
    TexReport out;
    out.beginDocument("");
    EXPECT_TRUE(out.str().starts_with(library.str() + "\\inputencoding{utf8}\n"));
}

const Table& sampleTable()
{
    static const Table table{.columns = {{"me<an"}, {"n_o"}},
                             .rows = {{"a&b", "series-1"}, {"c"}},
                             .cells = {{"-299.85", "12"}, {"1.5e-05", "n/a"}}};
    return table;
}

TEST(ReportFormatTest, HtmlTableAlignsPoints)
{
    HtmlReport out;
    out.table(sampleTable());
    EXPECT_EQ("<div class=\"sheet\" role=\"region\" aria-label=\"Table\" tabindex=\"0\">\n<table>\n"
              "<thead><tr><td></td><th scope=\"col\">me&lt;an</th><th scope=\"col\">n_o</th></tr></thead>\n<tbody>\n"
              "<tr><th scope=\"row\"><A HREF=\"#series-1\">a&amp;b</A></th>"
              "<td>−299<span style=\"width:7ch\">.85</span></td><td>12</td></tr>\n"
              "<tr><th scope=\"row\">c</th><td>1<span style=\"width:7ch\">.5×10⁻⁵</span></td><td "
              "class=\"word\">n/a</td></tr>\n"
              "</tbody>\n</table>\n</div>\n",
              out.str());
}

TEST(ReportFormatTest, LatexTableAlignsPoints)
{
    TexReport out;
    out.table(sampleTable());
    EXPECT_EQ("\\begin{flushleft}\n\\small\n\\begin{tabular}{@{}l*{2}{r@{}l}@{}}\n\\hline\n"
              " & \\multicolumn{2}{c}{me\\textless{}an} & \\multicolumn{2}{c}{n\\_\\allowbreak{}o} \\\\\n\\hline\n"
              "a\\&b & $-$299 & .85 & 12 &  \\\\\n"
              "c & 1 & .5$\\times10^{-5}$ & \\multicolumn{2}{c}{n\\slash{}a} \\\\\n"
              "\\hline\n\\end{tabular}\n\\end{flushleft}\n",
              out.str());
}

std::size_t occurrences(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(ReportFormatTest, LatexTableIsCutForThePage)
{
    Table table;
    for (int column = 0; column < 5; ++column) {
        table.columns.push_back({"c" + std::to_string(column)});
    }
    for (int row = 0; row < 37; ++row) {
        table.rows.push_back({"r" + std::to_string(row) + "."});
        table.cells.push_back(std::vector<std::string>(5, "1.23456789012345")); // two and a half of them fill a line
    }
    TexReport out;
    out.table(table);
    EXPECT_EQ(4U, occurrences(out.str(), "\\begin{tabular}"));
    EXPECT_EQ(2U, occurrences(out.str(), "*{3}"));
    EXPECT_EQ(2U, occurrences(out.str(), "*{2}"));
    EXPECT_EQ(2U, occurrences(out.str(), "{c4}"));
    EXPECT_EQ(2U, occurrences(out.str(), "r36."));
    EXPECT_EQ(37U * 5, occurrences(out.str(), "1 & .23456789012345"));
}

TEST(ReportFormatTest, ColumnWiderThanThePageStandsAlone)
{
    TexReport out;
    out.table({.columns = {{"a"}, {"b"}}, .rows = {{"r"}}, .cells = {{std::string(90, '1'), "2"}}});
    EXPECT_EQ(2U, occurrences(out.str(), "\\begin{tabular}"));
    EXPECT_EQ(2U, occurrences(out.str(), "*{1}"));
}

TEST(ReportFormatTest, CitationsAreSetAsTheLibraryComposesThem)
{
    const Literature article("Sums & Products", {{"Berg", "Anna", "", ""}}, "J. Math.", 7, 2004, "", 1, 9);
    HtmlReport html;
    html.citation(article);
    EXPECT_EQ("A. Berg, “Sums &amp; Products”, <em>J. Math.</em> <b>2004</b>, <em>7</em>, 1-9.", html.str());
    TexReport tex;
    tex.citation(article);
    EXPECT_EQ("A. Berg{,} ``Sums \\& Products''{,} \\emph{J. Math.} \\textbf{2004}{,} \\emph{7}{,} 1{-}9.", tex.str());
}

const Picture& samplePicture()
{
    static const Picture picture{
        .width = 100,
        .height = 50,
        .bars = {{10, 5, 20, 30.04}, {30, 5, 20, 7.96}},
        .box = {15, 40, 20.5, 4},
        .lines = {{Pen::axis, 10, 5, false, 80}, {Pen::mean, 25, 5, true, 13}, {Pen::median, 24, 5, true, 13}},
        .labels = {{10, 2, Anchor::middle, "-1.5e-7", true}, {0, 48, Anchor::left, "a<_b"}},
        .title = "t&",
        .description = "d\""};
    return picture;
}

TEST(ReportFormatTest, HtmlDrawsAPicture)
{
    HtmlReport out;
    out.picture(samplePicture());
    EXPECT_EQ("<figure>\n<svg viewBox=\"0 0 100 50\" role=\"img\" aria-labelledby=\"title-1 text-1\">\n"
              "<title id=\"title-1\">t&amp;</title>\n<desc id=\"text-1\">d&quot;</desc>\n"
              "<path class=\"bars\" d=\"M10 45v-30h20v30zM30 45v-8h20v8z\"/>\n"
              "<path class=\"axis\" d=\"M10 45h80\"/>\n"
              "<path class=\"whisker\" d=\"M15 10v-4h20.5v4z\"/>\n"
              "<path class=\"median\" d=\"M24 45v-13\"/>\n"
              "<path class=\"mean\" d=\"M25 45v-13\"/>\n"
              "<text x=\"10\" y=\"48\" text-anchor=\"middle\">−1.5×10⁻⁷</text>\n"
              "<text x=\"0\" y=\"2\" text-anchor=\"start\">a&lt;_b</text>\n"
              "</svg>\n</figure>\n",
              out.str());
    out.picture(samplePicture());
    EXPECT_NE(std::string::npos, out.str().find("aria-labelledby=\"title-2 text-2\""));
}

TEST(ReportFormatTest, LatexDrawsAPicture)
{
    TexReport out;
    out.picture(samplePicture());
    EXPECT_EQ("\\begin{center}\n\\footnotesize\n\\setlength{\\unitlength}{0.72pt}\n\\begin{picture}(100.0,50.0)\n"
              "\\put(10.0,5.0){\\framebox(20.0,30.0){}}\n\\put(30.0,5.0){\\framebox(20.0,8.0){}}\n"
              "\\put(15.0,40.0){\\framebox(20.5,4.0){}}\n"
              "\\thinlines\n\\put(10.0,5.0){\\line(1,0){80.0}}\n\\thinlines\n"
              "\\linethickness{1.1pt}\n\\put(24.0,5.0){\\line(0,1){13.0}}\n"
              "\\linethickness{1.1pt}\n\\multiput(25.0,5.0)(0,6){3}{\\line(0,1){3}}\n"
              "\\put(10.0,2.0){\\makebox(0,0){$-$1.5$\\times10^{-7}$}}\n"
              "\\put(0.0,48.0){\\makebox(0,0)[l]{a\\textless{}\\_\\allowbreak{}b}}\n"
              "\\end{picture}\n\\end{center}\n",
              out.str());
}

} // namespace

} // namespace seriesstat
