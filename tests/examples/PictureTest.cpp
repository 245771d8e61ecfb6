#include "Picture.h"

#include "SeriesSamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace seriesstat
{

namespace
{

using test::seriesOf;

std::vector<Line> linesOf(const Picture& picture, Pen pen)
{
    std::vector<Line> lines;
    std::copy_if(picture.lines.begin(), picture.lines.end(), std::back_inserter(lines),
                 [pen](const Line& line) { return line.pen == pen; });
    return lines;
}

bool isWithin(double low, double value, double high)
{
    return low <= value && value <= high; // false for what is no number
}

void expectWithin(const Picture& picture)
{
    std::vector<Box> boxes = picture.bars;
    boxes.push_back(picture.box);
    for (const Line& line : picture.lines) {
        boxes.push_back({line.x, line.y, line.upright ? 0 : line.length, line.upright ? line.length : 0});
    }
    for (const Box& box : boxes) {
        EXPECT_TRUE(isWithin(0, box.width, picture.width) && isWithin(0, box.height, picture.height));
        EXPECT_TRUE(isWithin(0, box.x, picture.width - box.width) && isWithin(0, box.y, picture.height - box.height));
    }
}

/// From the left to the right end of a label.
std::pair<double, double> extentOf(const Label& label)
{
    const auto power = static_cast<double>(label.isNumber && label.text.find('e') != std::string::npos ? 2 : 0);
    const double width = 6 * (static_cast<double>(label.text.size()) + power);
    const double left = label.anchor == Anchor::left    ? label.x
                        : label.anchor == Anchor::right ? label.x - width
                                                        : label.x - width / 2;
    return {left, left + width};
}

void expectLegible(const Picture& picture)
{
    for (const Label& label : picture.labels) {
        if (!label.isNumber) {
            continue;
        }
        EXPECT_TRUE(isWithin(0, extentOf(label).first, extentOf(label).second)) << label.text;
        EXPECT_LE(extentOf(label).second, picture.width + 1e-9) << label.text;
        for (const Label& other : picture.labels) {
            const bool sameLine = other.y == label.y && other.x > label.x;
            EXPECT_FALSE(sameLine && extentOf(other).first < extentOf(label).second) << label.text << " " << other.text;
        }
    }
}

TEST(PictureTest, EverythingIsInsideAndLegible)
{
    for (const Results& results : {test::michelson(), test::hostile()}) {
        for (const SeriesResult& series : results.series) {
            SCOPED_TRACE(series.name);
            const Picture picture = pictureOf(series, results.quantity);
            expectWithin(picture);
            expectLegible(picture);
        }
    }
}

TEST(PictureTest, BarsAreAsHighAsTheirCounts)
{
    // Two bins, from 0 to 2 with two values, and from 2 to 4 with three.
    const Picture picture = pictureOf(seriesOf("a", {0, 1, 2, 3, 4}), "x");
    ASSERT_EQ(2U, picture.bars.size());
    EXPECT_DOUBLE_EQ(picture.bars[0].width, picture.bars[1].width);
    EXPECT_DOUBLE_EQ(picture.bars[0].x + picture.bars[0].width, picture.bars[1].x);
    EXPECT_DOUBLE_EQ(picture.bars[0].height * 3, picture.bars[1].height * 2);
    EXPECT_DOUBLE_EQ(picture.bars[0].y, picture.bars[1].y);
}

TEST(PictureTest, EmptyBinsHaveNoBar)
{
    EXPECT_EQ(11U, pictureOf(test::michelson().series.front(), "x").bars.size()); // of 13 bins
}

TEST(PictureTest, BarWithoutWidthIsSeen)
{
    const Picture picture = pictureOf(seriesOf("a", {5, 5}), "x");
    ASSERT_EQ(1U, picture.bars.size());
    EXPECT_EQ(2, picture.bars[0].width);
}

TEST(PictureTest, MarksStandAtTheirValues)
{
    const Picture picture = pictureOf(seriesOf("a", {0, 1, 2, 3, 14}), "x");
    const double left = picture.bars.front().x;
    const double right = picture.bars.back().x + picture.bars.back().width;
    const auto place = [&](double value) { return left + (right - left) * value / 14; };
    EXPECT_DOUBLE_EQ(place(2), linesOf(picture, Pen::median).front().x);
    EXPECT_DOUBLE_EQ(place(4), linesOf(picture, Pen::mean).front().x);
    EXPECT_DOUBLE_EQ(place(1), picture.box.x);
    EXPECT_DOUBLE_EQ(place(3), picture.box.x + picture.box.width);
    const std::vector<Line> whiskers = linesOf(picture, Pen::whisker);
    EXPECT_DOUBLE_EQ(place(0), whiskers[0].x);
    EXPECT_DOUBLE_EQ(place(1), whiskers[0].x + whiskers[0].length);
    EXPECT_DOUBLE_EQ(place(3), whiskers[1].x);
    EXPECT_DOUBLE_EQ(place(14), whiskers[1].x + whiskers[1].length);
}

TEST(PictureTest, TicksStandAtTheirNumbers)
{
    const Picture picture = pictureOf(seriesOf("a", {0, 1, 2, 3, 14}), "x");
    const double left = picture.bars.front().x;
    const double right = picture.bars.back().x + picture.bars.back().width;
    for (const Label& label : picture.labels) {
        if (label.isNumber && label.anchor == Anchor::middle) {
            EXPECT_DOUBLE_EQ(left + (right - left) * std::stod(label.text) / 14, label.x);
        }
    }
}

TEST(PictureTest, TextsSayWhatIsSeen)
{
    const Picture picture = pictureOf(test::michelson().series.front(), "speed");
    EXPECT_EQ("Distribution of data/michelson-1879.txt", picture.title);
    EXPECT_EQ("Histogram of speed in 13 bins; count 100; mean 299.852; standard deviation 0.0790105; "
              "lag-1 autocorrelation 0.535200; minimum 299.620; lower quartile 299.808; median 299.850; "
              "upper quartile 299.892; maximum 300.070",
              picture.description);
    EXPECT_TRUE(pictureOf(seriesOf("a", {5}), "x").description.starts_with("Histogram of x in 1 bin; count 1; "));
}

TEST(PictureTest, LabelsAreThese)
{
    std::string texts;
    for (const Label& label : pictureOf(test::michelson().series.front(), "speed").labels) {
        texts += label.text + " ";
    }
    EXPECT_EQ("299.7 299.8 299.9 300.0 speed 0 5 10 15 20 count mean median ", texts);
}

TEST(PictureTest, LongQuantityIsShortened)
{
    const Picture picture = pictureOf(seriesOf("a", {5}), std::string(200, 'x') + " / m");
    const auto found = std::find_if(picture.labels.begin(), picture.labels.end(),
                                    [](const Label& label) { return label.text.starts_with("xxx"); });
    ASSERT_NE(picture.labels.end(), found);
    EXPECT_LE(found->text.size(), 80U);
    EXPECT_TRUE(found->text.ends_with(" / m"));
}

} // namespace

} // namespace seriesstat
