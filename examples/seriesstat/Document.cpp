#include "Document.h"

#include "Citations.h"
#include "Histogram.h"
#include "HtmlReport.h"
#include "TexReport.h"

#include <algorithm>

namespace seriesstat
{

namespace
{

using Articles = std::vector<const Article*>;

/// What is told about a method. "*n*" is emphasized; "[Dekker 1971]" cites that article.
struct Method
{
    std::string_view statistic; ///< for which it is told; empty: always
    std::string_view text;
};

constexpr Method methods[] = {
    {"", "Values are read and sums are made with about 30 digits, each number being the sum of two numbers of double "
         "precision [Dekker 1971]. So neither a large common offset nor a long series costs digits."},
    {"sd", "The standard deviation is that of a sample: the root of the sum of all squared differences from the mean, "
           "divided by *n* − 1. It is not defined (n/a) for a single value."},
    {"lag1", "The lag-1 autocorrelation is the sum of the products of neighbouring differences from the mean, divided "
             "by the sum of all squared differences. It is not defined (n/a) if all values are equal. For *n* "
             "independent values its standard deviation is about 1/√*n* [Anderson 1942]."},
    {"", "Quartiles and median are the values at the position 1 + *p* (*n* − 1) of the sorted series, *p* being 0.25, "
         "0.5 and 0.75, interpolated linearly between neighbours: definition 7 of [Hyndman, Fan 1996]."},
    {"", "Histograms have bins of equal width from the smallest to the largest value. They are as few as they can be "
         "without being wider than twice the range between the quartiles divided by the cube root of *n* "
         "[Freedman, Diaconis 1981]; where the quartiles are equal, there are 1 + log₂ *n* of them, rounded up "
         "[Sturges 1926]. There are at most 100 in any case."},
    {"", "Above each histogram, a box reaches from the lower to the upper quartile, and lines from there to the "
         "extremes."},
};

std::string counted(std::size_t number, const char* one, const char* many)
{
    return std::to_string(number) + " " + (number == 1 ? one : many);
}

std::string placeOfSeries(std::size_t index)
{
    return "series-" + std::to_string(index + 1);
}

std::string placeOfArticle(std::size_t index)
{
    return "article-" + std::to_string(index + 1);
}

void writeHeading(ReportFormat& out, int depth, const std::string& text)
{
    out.heading(depth);
    out.basic().print(text);
    out.basic().end();
}

void writeParagraph(ReportFormat& out, const std::string& text)
{
    out.paragraph();
    out.basic().print(text);
    out.basic().end();
}

// The head

std::string remarkOn(const Results& results, const std::string& imprint)
{
    std::size_t values = 0;
    for (const SeriesResult& series : results.series) {
        values += series.summary.count;
    }
    std::string remark = "Descriptive statistics of " + counted(results.series.size(), "series", "series") + " with " +
                         counted(values, "value", "values");
    return imprint.empty() ? remark : remark + " · " + imprint;
}

// The summary

Table tableOf(const Results& results, const Settings& settings)
{
    Table table;
    for (const Statistic* statistic : settings.statistics) {
        table.columns.push_back({std::string(statistic->label)});
    }
    for (std::size_t i = 0; i < results.series.size(); ++i) {
        table.rows.push_back({results.series[i].name, placeOfSeries(i)});
        std::vector<std::string>& cells = table.cells.emplace_back();
        for (const Statistic* statistic : settings.statistics) {
            cells.push_back(statistic->text(results.series[i].summary, settings.digits));
        }
    }
    return table;
}

Table transposed(const Table& table)
{
    Table result{table.rows, table.columns, {}};
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        std::vector<std::string>& cells = result.cells.emplace_back();
        for (const std::vector<std::string>& row : table.cells) {
            cells.push_back(row[column]);
        }
    }
    return result;
}

void writeSummary(ReportFormat& out, const Results& results, const Settings& settings)
{
    constexpr std::size_t few = 3; // so many stand side by side
    const auto digits = static_cast<std::size_t>(settings.digits);
    writeHeading(out, 1, "Summary");
    writeParagraph(out, "Numbers have " + counted(digits, "significant digit", "significant digits") +
                            " and the unit of the quantity; count and autocorrelation have none.");
    const Table table = tableOf(results, settings);
    out.table(results.series.size() > few ? table : transposed(table));
}

// The series

void writeSeries(ReportFormat& out, const Results& results)
{
    writeHeading(out, 1, results.series.size() == 1 ? "Distribution" : "Distributions");
    for (std::size_t i = 0; i < results.series.size(); ++i) {
        const SeriesResult& series = results.series[i];
        out.place(placeOfSeries(i));
        writeHeading(out, 2, series.name);
        out.picture(pictureOf(series, results.quantity));
        if (!series.digest.empty()) {
            out.paragraph();
            out.basic().print("SHA-1 of the file: ");
            out.code();
            out.basic().print(series.digest);
            out.basic().end();
            out.basic().end();
        }
    }
}

// The methods

void writeCitation(KelvoBase::TextFormatter& out, std::string_view key, Articles& cited)
{
    out.ref(placeOfArticle(cited.size()));
    cited.push_back(findArticle(key)); // each of them is cited once
    out.print("[" + std::to_string(cited.size()) + "]");
    out.end();
}

/// Writes a text with the marks of `Method`.
void writeMarked(KelvoBase::TextFormatter& out, std::string_view text, Articles& cited)
{
    while (!text.empty()) {
        const std::size_t mark = std::min(text.find_first_of("*["), text.size());
        out.print(std::string(text.substr(0, mark)));
        if (mark == text.size()) {
            return;
        }
        const std::size_t close = text.find_first_of("*]", mark + 1);
        const std::string_view marked = text.substr(mark + 1, close - mark - 1);
        if (text[mark] == '[') {
            writeCitation(out, marked, cited);
        } else {
            out.em();
            out.print(std::string(marked));
            out.end();
        }
        text.remove_prefix(close + 1);
    }
}

bool isToldOf(const Method& method, const Settings& settings)
{
    return method.statistic.empty() ||
           std::any_of(settings.statistics.begin(), settings.statistics.end(),
                       [&](const Statistic* statistic) { return statistic->name == method.statistic; });
}

std::string sourceText(const SeriesFormat& format)
{
    return format.column > 0 ? "Values are those of column " + std::to_string(format.column) + " of each file."
                             : "Each file holds one value a line.";
}

Articles writeMethods(ReportFormat& out, const Settings& settings)
{
    Articles cited;
    writeHeading(out, 1, "Methods");
    out.basic().ulist();
    out.basic().listitem();
    out.basic().print(sourceText(settings.format));
    out.basic().writeRaw("\n");
    for (const Method& method : methods) {
        if (isToldOf(method, settings)) {
            out.basic().listitem();
            writeMarked(out.basic(), method.text, cited);
            out.basic().writeRaw("\n");
        }
    }
    out.basic().end();
    return cited;
}

void writeLiterature(ReportFormat& out, const Articles& cited)
{
    writeHeading(out, 1, "Literature");
    out.basic().olist();
    for (std::size_t i = 0; i < cited.size(); ++i) {
        out.basic().listitem();
        out.place(placeOfArticle(i));
        out.citation(cited[i]->citation());
        out.basic().writeRaw("\n");
    }
    out.basic().end();
}

template <typename Format>
std::string documentIn(const Results& results, const Settings& settings, const std::string& imprint)
{
    Format out;
    out.beginDocument(results.quantity);
    out.title(results.quantity, remarkOn(results, imprint));
    writeSummary(out, results, settings);
    writeSeries(out, results);
    writeLiterature(out, writeMethods(out, settings));
    out.endDocument();
    return out.str();
}

} // namespace

std::string documentOf(const Results& results, const Settings& settings, DocumentFormat format,
                       const std::string& imprint)
{
    return format == DocumentFormat::html ? documentIn<HtmlReport>(results, settings, imprint)
                                          : documentIn<TexReport>(results, settings, imprint);
}

} // namespace seriesstat
