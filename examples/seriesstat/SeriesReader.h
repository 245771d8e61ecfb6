#pragma once

/// \file
/// Series of numbers from text.

#include "DoubleDouble.h"

#include <istream>
#include <string>
#include <vector>

namespace seriesstat
{

/// How values stand in a text. Blank lines, and those with nothing but a comment, are skipped everywhere.
struct SeriesFormat
{
    std::string commentSign = "#"; ///< from there on the rest of a line is a comment; empty: there are none
    int column = 0;                ///< that holds the values, counted from 1; 0: a line is one number
    std::string delimiters = "";   ///< each of these bytes parts two columns; empty: any amount of white space does
    bool quotes = false;           ///< whether double quotes protect a delimiter
    bool header = false;           ///< whether the first line names the columns
};

/// Reads all values to the end of the text; at least one. Line ends of any platform, a last line without one, and a
/// UTF-8 mark at the beginning are understood.
///
/// `name` is what messages call the text. Throws, with `name`, the number of the line and what is wrong,
///   - `OutOfBoundException` for a line without that column,
///   - `RuntimeException` for a value that is not a finite decimal number or that no double comes near, and for a text
///     without any value.
/// A stream that fails in front of its end gives what was read so far: `in.eof()` is false then.
std::vector<DoubleDouble> readSeries(std::istream& in, const std::string& name, const SeriesFormat& format);

} // namespace seriesstat
