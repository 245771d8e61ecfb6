#pragma once

/// \file
/// The picture of a distribution, as lines, boxes and texts that every format can draw.

#include "Results.h"

#include <string>
#include <vector>

namespace seriesstat
{

/// What a line is there for. Formats have a pen for each.
enum class Pen
{
    axis,
    whisker, ///< the box of the quartiles and what sticks out of it
    median,
    mean,
};

/// A line along one of the axes. Points count from the lower left corner.
struct Line
{
    Pen pen = Pen::axis;
    double x = 0;
    double y = 0;
    bool upright = false;
    double length = 0; ///< to the right or upwards
};

struct Box
{
    double x = 0; ///< lower left corner
    double y = 0;
    double width = 0;
    double height = 0;
};

/// Which point of a text stands at its place, on half its height.
enum class Anchor
{
    left,
    middle,
    right,
};

struct Label
{
    double x = 0;
    double y = 0;
    Anchor anchor = Anchor::middle;
    std::string text = "";
    bool isNumber = false;
};

/// A picture in points of its own, into which about six make a character. Bars are filled if a format can do that.
struct Picture
{
    double width = 0;
    double height = 0;
    std::vector<Box> bars{};
    Box box{}; ///< of the quartiles
    std::vector<Line> lines{};
    std::vector<Label> labels{};
    std::string title{};       ///< what it shows
    std::string description{}; ///< what can be seen, for who cannot see it
};

/// The histogram of a series over an axis with round numbers; above it, its quartiles between the extremes; its mean
/// and median across both. REQUIRES: `series` has its values.
Picture pictureOf(const SeriesResult& series, const std::string& quantity);

} // namespace seriesstat
