#include "Picture.h"

#include "Histogram.h"
#include "Report.h"
#include "SafeText.h"
#include "Ticks.h"

#include <algorithm>
#include <utility>

namespace seriesstat
{

namespace
{

// From the lower end to the upper end: quantity, numbers, histogram, box, legend.
constexpr double width = 520;
constexpr double height = 250;
constexpr double left = 52;
constexpr double right = 496;
constexpr double quantityLine = 8;
constexpr double numberLine = 28;
constexpr double floorLine = 42;
constexpr double topLine = 190;
constexpr double boxLine = 212;
constexpr double legendLine = 242;
constexpr double tickLength = 4;
constexpr double boxHeight = 14;
constexpr double leastBar = 2; // what has no width is seen all the same
constexpr double character = 6;

/// About as wide as it is shown.
double widthOf(const Tick& tick)
{
    const bool hasPower = tick.text.find('e') != std::string::npos; // shown as a power of ten
    return character * static_cast<double>(tick.text.size() + (hasPower ? 2 : 0));
}

/// Makes a picture, part by part.
class Painter
{
public:
    Painter(const SeriesResult& series, const std::string& quantity)
        : mSummary(series.summary), mQuantity(quantity), mHistogram(histogramOf(series.values, series.summary)),
          mValues(axisFor(series.summary.minimum, series.summary.maximum)),
          mCounts{0, static_cast<double>(*std::max_element(mHistogram.counts.begin(), mHistogram.counts.end()))}
    {
        mPicture.width = width;
        mPicture.height = height;
        drawBars();
        drawBox();
        drawMarks();
        drawAxisOfValues();
        drawAxisOfCounts();
        drawLegend();
        describe(series.name);
    }

    Picture take() { return std::move(mPicture); }

private:
    double across(double value) const { return left + (right - left) * placeOn(mValues, value); }
    double up(double count) const { return floorLine + (topLine - floorLine) * placeOn(mCounts, count); }

    void line(Pen pen, double x, double y, double length) { mPicture.lines.push_back({pen, x, y, false, length}); }
    void upright(Pen pen, double x, double y, double length) { mPicture.lines.push_back({pen, x, y, true, length}); }
    void number(double x, double y, Anchor anchor, const std::string& text)
    {
        mPicture.labels.push_back({x, y, anchor, text, true});
    }
    void text(double x, double y, Anchor anchor, const std::string& text)
    {
        const auto room = static_cast<std::size_t>((right - left) / character);
        mPicture.labels.push_back({x, y, anchor, shortened(text, room), false});
    }

    void drawBars();
    void drawBox();
    void drawMarks();
    void drawAxisOfValues();
    void drawAxisOfCounts();
    void drawLegend();
    void describe(const std::string& name);
    std::vector<Tick> ticksOfValues() const;

    const Summary& mSummary;
    const std::string& mQuantity;
    Histogram mHistogram;
    Axis mValues;
    Axis mCounts;
    Picture mPicture{};
};

void Painter::drawBars()
{
    for (std::size_t i = 0; i < mHistogram.counts.size(); ++i) {
        if (mHistogram.counts[i] > 0) {
            const double from = across(mHistogram.edges[i]);
            const double to = across(mHistogram.edges[i + 1]);
            const double barWidth = std::max(to - from, leastBar);
            const double top = up(static_cast<double>(mHistogram.counts[i]));
            mPicture.bars.push_back({(from + to - barWidth) / 2, floorLine, barWidth, top - floorLine});
        }
    }
}

void Painter::drawBox()
{
    const double lower = across(mSummary.lowerQuartile);
    const double upper = across(mSummary.upperQuartile);
    const double smallest = across(mSummary.minimum);
    const double largest = across(mSummary.maximum);
    mPicture.box = {lower, boxLine - boxHeight / 2, upper - lower, boxHeight};
    line(Pen::whisker, smallest, boxLine, lower - smallest);
    line(Pen::whisker, upper, boxLine, largest - upper);
    for (const double end : {smallest, largest}) {
        upright(Pen::whisker, end, boxLine - boxHeight / 4, boxHeight / 2);
    }
}

void Painter::drawMarks()
{
    const double length = boxLine + boxHeight / 2 - floorLine;
    upright(Pen::median, across(mSummary.median), floorLine, length);
    upright(Pen::mean, across(mSummary.mean), floorLine, length);
}

/// As many as there is room for.
std::vector<Tick> Painter::ticksOfValues() const
{
    for (std::size_t most = 8;; --most) {
        std::vector<Tick> ticks = roundTicks(mValues, most);
        double used = 0;
        for (const Tick& tick : ticks) {
            used += widthOf(tick) + 2 * character;
        }
        if (used <= right - left || most == 1) {
            return ticks;
        }
    }
}

void Painter::drawAxisOfValues()
{
    line(Pen::axis, left, floorLine, right - left);
    for (const Tick& tick : ticksOfValues()) {
        const double x = across(tick.value);
        upright(Pen::axis, x, floorLine - tickLength, tickLength);
        number(std::min(x, width - widthOf(tick) / 2), numberLine, Anchor::middle, tick.text);
    }
    text((left + right) / 2, quantityLine, Anchor::middle, mQuantity);
}

void Painter::drawAxisOfCounts()
{
    upright(Pen::axis, left, floorLine, topLine - floorLine);
    for (const Tick& tick : roundTicks(mCounts, 6, 0)) {
        line(Pen::axis, left - tickLength, up(tick.value), tickLength);
        number(left - 2 * tickLength, up(tick.value), Anchor::right, tick.text);
    }
    text(left, legendLine, Anchor::right, "count");
}

void Painter::drawLegend()
{
    constexpr double sample = 20;
    double x = right - sample;
    for (const auto& [pen, name] : {std::pair(Pen::mean, "mean"), std::pair(Pen::median, "median")}) {
        line(pen, x, legendLine, sample);
        text(x - tickLength, legendLine, Anchor::right, name);
        x -= 100;
    }
}

void Painter::describe(const std::string& name)
{
    constexpr int digits = 6;
    mPicture.title = "Distribution of " + name;
    mPicture.description = "Histogram of " + mQuantity + " in " + std::to_string(mHistogram.counts.size()) +
                           (mHistogram.counts.size() == 1 ? " bin" : " bins");
    for (const Statistic* statistic : allStatistics()) {
        mPicture.description += "; " + std::string(statistic->label) + " " + statistic->text(mSummary, digits);
    }
}

} // namespace

Picture pictureOf(const SeriesResult& series, const std::string& quantity)
{
    return Painter(series, quantity).take();
}

} // namespace seriesstat
