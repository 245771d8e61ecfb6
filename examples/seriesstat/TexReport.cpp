#include "TexReport.h"

#include "SafeText.h"

#include <kelvobase/TextRep.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace seriesstat
{

namespace
{

constexpr const char* layout = "\\raggedbottom\n"
                               "\\sloppy\n"
                               "\\setlength{\\parindent}{0pt}\n"
                               "\\setlength{\\parskip}{1ex plus 0.5ex}\n"
                               "\\renewcommand{\\arraystretch}{1.15}\n";
constexpr const char* unit = "0.72pt"; // makes a picture as wide as the text
constexpr std::size_t longestTitle = 28;

std::string wholeText(const NumberParts& number)
{
    return number.whole.starts_with('-') ? "$-$" + number.whole.substr(1) : number.whole;
}

std::string restText(const NumberParts& number)
{
    return number.fraction + (number.exponent.empty() ? "" : "$\\times10^{" + number.exponent + "}$");
}

std::string coordinate(double value)
{
    const long tenths = std::lround(value * 10);
    return std::to_string(tenths / 10) + "." + std::to_string(std::abs(tenths % 10));
}

std::string put(double x, double y, const std::string& what)
{
    return "\\put(" + coordinate(x) + "," + coordinate(y) + "){" + what + "}\n";
}

std::string frame(const Box& box)
{
    return put(box.x, box.y, "\\framebox(" + coordinate(box.width) + "," + coordinate(box.height) + "){}");
}

std::string dashed(const Line& line)
{
    constexpr double period = 6;
    const long dashes = std::lround(std::ceil(line.length / period));
    const std::string step = line.upright ? "(0,6)" : "(6,0)";
    const std::string dash = line.upright ? "\\line(0,1){3}" : "\\line(1,0){3}";
    return "\\multiput(" + coordinate(line.x) + "," + coordinate(line.y) + ")" + step + "{" + std::to_string(dashes) +
           "}{" + dash + "}\n";
}

std::string drawn(const Line& line)
{
    const std::string direction = line.upright ? "\\line(0,1){" : "\\line(1,0){";
    return put(line.x, line.y, direction + coordinate(line.length) + "}");
}

const char* thicknessOf(Pen pen)
{
    return pen == Pen::axis || pen == Pen::whisker ? "\\thinlines\n" : "\\linethickness{1.1pt}\n";
}

std::string labelText(const Label& label)
{
    constexpr std::array<const char*, 3> alignments{"[l]", "", "[r]"};
    const NumberParts parts = label.isNumber ? partsOf(label.text) : NumberParts();
    return put(label.x, label.y,
               std::string("\\makebox(0,0)") + alignments[static_cast<std::size_t>(label.anchor)] + "{" +
                   (label.isNumber ? wholeText(parts) + restText(parts) : latexText(label.text)) + "}");
}

/// A number takes two columns, so that points stand below each other.
std::string cellText(const std::string& text)
{
    if (!isNumber(text)) {
        return " & \\multicolumn{2}{c}{" + latexText(text) + "}";
    }
    const NumberParts parts = partsOf(text);
    return " & " + wholeText(parts) + " & " + restText(parts);
}

std::string titleText(const Table::Title& title)
{
    return latexText(shortened(title.text, longestTitle));
}

/// A part of a table that fits on a page.
struct Block
{
    std::size_t firstColumn;
    std::size_t endColumn;
    std::size_t firstRow;
    std::size_t endRow;
};

std::string blockText(const Table& table, const Block& block)
{
    std::string text = "\\begin{flushleft}\n\\small\n\\begin{tabular}{@{}l*{" +
                       std::to_string(block.endColumn - block.firstColumn) + "}{r@{}l}@{}}\n\\hline\n";
    for (std::size_t column = block.firstColumn; column < block.endColumn; ++column) {
        text += " & \\multicolumn{2}{c}{" + titleText(table.columns[column]) + "}";
    }
    text += " \\\\\n\\hline\n";
    for (std::size_t row = block.firstRow; row < block.endRow; ++row) {
        text += titleText(table.rows[row]);
        for (std::size_t column = block.firstColumn; column < block.endColumn; ++column) {
            text += cellText(table.cells[row][column]);
        }
        text += " \\\\\n";
    }
    return text + "\\hline\n\\end{tabular}\n\\end{flushleft}\n";
}

/// About how many digits wide a column is, with the gap beside it.
std::size_t widthOf(const Table& table, std::size_t column)
{
    constexpr std::size_t gap = 3;
    std::size_t width = std::min(table.columns[column].text.size(), longestTitle);
    std::size_t whole = 0;
    std::size_t rest = 0;
    for (const std::vector<std::string>& row : table.cells) {
        if (isNumber(row[column])) {
            const NumberParts parts = partsOf(row[column]);
            whole = std::max(whole, parts.whole.size());
            rest = std::max(rest, parts.fraction.size() + (parts.exponent.empty() ? 0 : 3 + parts.exponent.size()));
        }
    }
    return std::max(width, whole + rest) + gap;
}

std::size_t widthOfTitles(const Table& table)
{
    std::size_t width = 0;
    for (const Table::Title& title : table.rows) {
        width = std::max(width, std::min(title.text.size(), longestTitle));
    }
    return width;
}

/// Where the columns are cut into parts that are not wider than the page.
std::vector<std::size_t> columnCuts(const Table& table)
{
    constexpr std::size_t pageWidth = 75;
    const std::size_t titles = widthOfTitles(table);
    std::vector<std::size_t> cuts{0};
    std::size_t width = titles;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        const std::size_t added = widthOf(table, column);
        if (width + added > pageWidth && column > cuts.back()) {
            cuts.push_back(column);
            width = titles;
        }
        width += added;
    }
    cuts.push_back(table.columns.size());
    return cuts;
}

} // namespace

void TexReport::open(const std::string& opening, const std::string& closing)
{
    mStream << opening;
    mCloseTexts.push(closing);
}

void TexReport::beginDocument(const std::string& title)
{
    TexTextFormatter::beginDocument(title);
    mStream << latexDefinitions << layout;
}

void TexReport::em()
{
    open("\\emph{", "}");
}

void TexReport::b()
{
    open("\\textbf{", "}");
}

void TexReport::ref(const std::string& /*target*/)
{
    open("", "");
}

void TexReport::print(const std::string& text)
{
    mStream << latexText(text);
}

void TexReport::title(const std::string& text, const std::string& remark)
{
    writeRaw("\\begin{center}\n{\\LARGE\\bfseries ");
    print(text);
    writeRaw("\\par}\n\\medskip\n");
    print(remark);
    writeRaw("\n\\end{center}\n");
}

void TexReport::heading(int depth)
{
    header(depth);
}

void TexReport::paragraph()
{
    open("\n", "\n\n");
}

void TexReport::code()
{
    open("\\texttt{", "}");
}

void TexReport::place(const std::string& /*name*/) {}

void TexReport::table(const Table& table)
{
    constexpr std::size_t pageRows = 36;
    const std::vector<std::size_t> cuts = columnCuts(table);
    for (std::size_t part = 0; part + 1 < cuts.size(); ++part) {
        for (std::size_t row = 0; row < table.rows.size(); row += pageRows) {
            writeRaw(blockText(table, {cuts[part], cuts[part + 1], row, std::min(row + pageRows, table.rows.size())}));
        }
    }
}

void TexReport::picture(const Picture& picture)
{
    writeRaw(std::string("\\begin{center}\n\\footnotesize\n\\setlength{\\unitlength}{") + unit +
             "}\n\\begin{picture}(" + coordinate(picture.width) + "," + coordinate(picture.height) + ")\n");
    for (const Box& bar : picture.bars) {
        writeRaw(frame(bar));
    }
    writeRaw(frame(picture.box));
    for (const Pen pen : {Pen::axis, Pen::whisker, Pen::median, Pen::mean}) {
        writeRaw(thicknessOf(pen));
        for (const Line& line : picture.lines) {
            if (line.pen == pen) {
                writeRaw(pen == Pen::mean ? dashed(line) : drawn(line));
            }
        }
    }
    for (const Label& label : picture.labels) {
        writeRaw(labelText(label));
    }
    writeRaw("\\end{picture}\n\\end{center}\n");
}

void TexReport::citation(const KelvoBase::Literature& article)
{
    TexReport part;
    KelvoBase::TextRep text;
    article.toString(text);
    text.flush(&part);
    writeRaw(withQuotes(part.str(), latexText("''"), "``", "''"));
}

} // namespace seriesstat
