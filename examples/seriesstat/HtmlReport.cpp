#include "HtmlReport.h"

#include "SafeText.h"

#include <kelvobase/TextRep.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace seriesstat
{

namespace
{

constexpr const char* beforeTitle = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>)";

constexpr const char* afterTitle = R"(</title>
<style>
:root { color-scheme: light dark; --paper: #fff; --ink: #1c2228; --faint: #5b656f; --rule: #d3d9de;
  --bar: #c3d3e4; --edge: #6f8dab; --median: #a8321c; --mean: #17538c; }
@media screen and (prefers-color-scheme: dark) {
  :root { --paper: #15191d; --ink: #e4e8eb; --faint: #9aa5af; --rule: #39424a;
    --bar: #2f4961; --edge: #6d91b3; --median: #ff9a80; --mean: #8cc4f5; }
}
body { max-width: 46rem; margin: 0 auto; padding: 2.5rem 1.25rem 4rem; background: var(--paper); color: var(--ink);
  font: 1rem/1.55 system-ui, -apple-system, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif; }
h1, h2, h3 { line-height: 1.25; overflow-wrap: anywhere; }
h1 { font-size: 1.75rem; margin: 0; }
h2 { font-size: 1.3rem; margin: 2.5rem 0 .75rem; padding-bottom: .25rem; border-bottom: 1px solid var(--rule); }
h3 { font-size: 1.05rem; margin: 2rem 0 .5rem; }
p { margin: .75rem 0; }
.remark { margin-top: .4rem; color: var(--faint); }
a { color: var(--mean); }
code { font: .9em ui-monospace, "SF Mono", Menlo, Consolas, monospace; overflow-wrap: anywhere; }
li { margin: .4rem 0; }
.sheet { overflow-x: auto; }
table { border-collapse: collapse; font-variant-numeric: lining-nums tabular-nums; }
th, td { padding: .3em .9em .3em 0; text-align: right; white-space: nowrap; border-bottom: 1px solid var(--rule); }
thead th { vertical-align: bottom; border-bottom-color: var(--faint); }
th { font-weight: 600; }
tbody th { position: sticky; left: 0; min-width: 9em; max-width: 14em; background: var(--paper); font-weight: 400;
  text-align: left; white-space: normal; overflow-wrap: anywhere; }
td span { display: inline-block; text-align: left; }
.word { text-align: center; color: var(--faint); }
figure { margin: 0; overflow-x: auto; }
svg { display: block; width: 100%; min-width: 20rem; height: auto; }
svg text { font-size: 12px; fill: currentColor; dominant-baseline: central; font-variant-numeric: tabular-nums; }
svg path { fill: none; stroke: currentColor; }
svg .bars { fill: var(--bar); stroke: var(--edge); stroke-width: .75; }
svg .whisker { stroke: var(--faint); }
svg .median { stroke: var(--median); stroke-width: 1.75; }
svg .mean { stroke: var(--mean); stroke-width: 1.75; stroke-dasharray: 5 3; }
@media screen and (max-width: 32rem) {
  table { font-size: .85rem; }
  tbody th { min-width: 7em; max-width: 9em; }
  svg text { font-size: 14px; }
}
@media print {
  :root { color-scheme: light; }
  body { max-width: none; padding: 0; font-size: 10pt; }
  .sheet, figure { overflow: visible; }
  .many { font-size: 6.5pt; }
  svg { max-width: 32rem; }
  h2, h3 { break-after: avoid; }
  figure, tr, li { break-inside: avoid; }
}
</style>
</head>
<body>
)";

constexpr std::array<const char*, 4> penNames{"axis", "whisker", "median", "mean"};
constexpr std::array<const char*, 3> anchorNames{"start", "middle", "end"};

std::string superscript(const std::string& number)
{
    constexpr std::array<const char*, 10> digits{"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
    std::string result;
    for (const char c : number) {
        result += c == '-' ? "⁻" : digits[static_cast<std::size_t>(c - '0')];
    }
    return result;
}

std::string wholeText(const NumberParts& number)
{
    return number.whole.starts_with('-') ? "−" + number.whole.substr(1) : number.whole;
}

std::string restText(const NumberParts& number)
{
    return number.fraction + (number.exponent.empty() ? "" : "×10" + superscript(number.exponent));
}

/// With one digit behind the point, in SVG's downward direction where it is needed.
std::string coordinate(double value)
{
    const long tenths = std::lround(value * 10);
    const std::string digits = std::to_string(std::abs(tenths));
    return (tenths < 0 ? "-" : "") + (digits.size() > 1 ? digits.substr(0, digits.size() - 1) : "0") +
           (digits.back() == '0' ? "" : std::string(".") + digits.back());
}

std::string point(const Picture& picture, double x, double y)
{
    return "M" + coordinate(x) + " " + coordinate(picture.height - y);
}

std::string boxPath(const Picture& picture, const Box& box)
{
    return point(picture, box.x, box.y) + "v" + coordinate(-box.height) + "h" + coordinate(box.width) + "v" +
           coordinate(box.height) + "z";
}

std::string linesPath(const Picture& picture, Pen pen)
{
    std::string path;
    for (const Line& line : picture.lines) {
        if (line.pen == pen) {
            path += point(picture, line.x, line.y) + (line.upright ? "v" : "h") +
                    coordinate(line.upright ? -line.length : line.length);
        }
    }
    return path;
}

std::string pathElement(const std::string& name, const std::string& path)
{
    return "<path class=\"" + name + "\" d=\"" + path + "\"/>\n";
}

std::string barsElement(const Picture& picture)
{
    std::string path;
    for (const Box& bar : picture.bars) {
        path += boxPath(picture, bar);
    }
    return pathElement("bars", path);
}

std::string lineElements(const Picture& picture)
{
    std::string elements;
    for (const Pen pen : {Pen::axis, Pen::whisker, Pen::median, Pen::mean}) {
        const std::string box = pen == Pen::whisker ? boxPath(picture, picture.box) : "";
        elements += pathElement(penNames[static_cast<std::size_t>(pen)], box + linesPath(picture, pen));
    }
    return elements;
}

std::string labelElement(const Picture& picture, const Label& label)
{
    const NumberParts parts = label.isNumber ? partsOf(label.text) : NumberParts();
    return "<text x=\"" + coordinate(label.x) + "\" y=\"" + coordinate(picture.height - label.y) + "\" text-anchor=\"" +
           anchorNames[static_cast<std::size_t>(label.anchor)] + "\">" +
           (label.isNumber ? wholeText(parts) + restText(parts) : htmlText(label.text)) + "</text>\n";
}

std::string numberCell(const std::string& text, std::size_t restWidth)
{
    if (!isNumber(text)) {
        return "<td class=\"word\">" + htmlText(text) + "</td>";
    }
    const NumberParts parts = partsOf(text);
    const std::string rest =
        restWidth == 0 ? ""
                       : "<span style=\"width:" + std::to_string(restWidth) + "ch\">" + restText(parts) + "</span>";
    return "<td>" + wholeText(parts) + rest + "</td>";
}

/// How wide the longest text behind the whole part is in a column, in digits.
std::size_t restWidthOf(const Table& table, std::size_t column)
{
    std::size_t width = 0;
    for (const std::vector<std::string>& row : table.cells) {
        if (isNumber(row[column])) {
            const NumberParts parts = partsOf(row[column]);
            width = std::max(width, parts.fraction.size() + (parts.exponent.empty() ? 0 : 3 + parts.exponent.size()));
        }
    }
    return width;
}

} // namespace

void HtmlReport::open(const std::string& opening, const std::string& closing)
{
    mStream << opening;
    mCloseTexts.push(closing);
}

void HtmlReport::beginDocument(const std::string& title)
{
    mStream << beforeTitle << htmlText(title) << afterTitle;
}

void HtmlReport::em()
{
    open("<em>", "</em>");
}

void HtmlReport::b()
{
    open("<b>", "</b>");
}

void HtmlReport::print(const std::string& text)
{
    mStream << htmlText(text);
}

void HtmlReport::title(const std::string& text, const std::string& remark)
{
    header(1);
    print(text);
    end();
    open("<p class=\"remark\">", "</p>\n");
    print(remark);
    end();
}

void HtmlReport::heading(int depth)
{
    header(depth + 1);
}

void HtmlReport::paragraph()
{
    open("<p>", "</p>\n");
}

void HtmlReport::code()
{
    open("<code>", "</code>");
}

void HtmlReport::place(const std::string& name)
{
    mStream << "<a id=\"" << name << "\"></a>";
}

void HtmlReport::titleCell(const Table::Title& title, const char* scope)
{
    open(std::string("<th scope=\"") + scope + "\">", "</th>");
    if (!title.place.empty()) {
        ref(title.place);
        print(title.text);
        end();
    } else {
        print(title.text);
    }
    end();
}

void HtmlReport::table(const Table& table)
{
    constexpr std::size_t many = 4;
    const char* size = table.columns.size() > many ? " many" : "";
    // With the keyboard, too, one can reach what sticks out.
    open(std::string("<div class=\"sheet") + size +
             "\" role=\"region\" aria-label=\"Table\" tabindex=\"0\">\n<table>\n",
         "</tbody>\n</table>\n</div>\n");
    writeRaw("<thead><tr><td></td>");
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        titleCell(table.columns[column], "col");
        widths.push_back(restWidthOf(table, column));
    }
    writeRaw("</tr></thead>\n<tbody>\n");
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        writeRaw("<tr>");
        titleCell(table.rows[row], "row");
        for (std::size_t column = 0; column < widths.size(); ++column) {
            writeRaw(numberCell(table.cells[row][column], widths[column]));
        }
        writeRaw("</tr>\n");
    }
    end();
}

void HtmlReport::picture(const Picture& picture)
{
    const std::string number = std::to_string(++mPictures);
    open("<figure>\n<svg viewBox=\"0 0 " + coordinate(picture.width) + " " + coordinate(picture.height) +
             R"(" role="img" aria-labelledby="title-)" + number + " text-" + number + "\">\n",
         "</svg>\n</figure>\n");
    writeRaw("<title id=\"title-" + number + "\">" + htmlText(picture.title) + "</title>\n");
    writeRaw("<desc id=\"text-" + number + "\">" + htmlText(picture.description) + "</desc>\n");
    writeRaw(barsElement(picture) + lineElements(picture));
    for (const Label& label : picture.labels) {
        writeRaw(labelElement(picture, label));
    }
    end();
}

void HtmlReport::citation(const KelvoBase::Literature& article)
{
    HtmlReport part;
    KelvoBase::TextRep text;
    article.toString(text);
    text.flush(&part);
    writeRaw(withQuotes(part.str(), htmlText("''"), "“", "”"));
}

} // namespace seriesstat
