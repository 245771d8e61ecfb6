#pragma once

/// \file
/// What a report needs from a format, beyond what the library's formatters offer.

#include "Picture.h"

#include <kelvobase/Literature.h>
#include <kelvobase/TextFormatter.h>

#include <string>
#include <string_view>
#include <vector>

namespace seriesstat
{

/// A table of numbers with titles on two sides. What is no number, as "n/a", is shown as it is.
struct Table
{
    /// The title of a row or column.
    struct Title
    {
        std::string text;
        std::string place{}; ///< that it refers to; empty: none
    };
    std::vector<Title> columns{};
    std::vector<Title> rows{};
    std::vector<std::vector<std::string>> cells{}; ///< by row
};

/// A number as it is shown, cut where numbers of a column stand below each other: "-2.50e-07" => "-2", ".50", "-7".
struct NumberParts
{
    std::string whole{};
    std::string fraction{}; ///< with the point; empty: none
    std::string exponent{}; ///< of ten; empty: none
};

/// Whether a cell is a number, and not a word.
bool isNumber(std::string_view text);
/// REQUIRES: `isNumber(text)`.
NumberParts partsOf(const std::string& text);

/// A citation with its title in quotation marks of a format; `mark` is what the two apostrophes on both sides of it
/// have become there.
std::string withQuotes(std::string citation, std::string_view mark, std::string_view opening, std::string_view closing);

/// A format of the report. `basic` gives the operations of the library; its `print` takes texts of any origin. Names of
/// places consist of letters, digits and "-".
class ReportFormat
{
public:
    virtual ~ReportFormat() = default;
    ReportFormat(const ReportFormat&) = delete;
    ReportFormat& operator=(const ReportFormat&) = delete;

    /// The same object.
    virtual KelvoBase::TextFormatter& basic() = 0;
    /// The head line of the document; `remark` is a small line below it.
    virtual void title(const std::string& text, const std::string& remark) = 0;
    /// Opens the heading of a section, 1, or of a part of one, 2.
    virtual void heading(int depth) = 0;
    /// Opens a paragraph.
    virtual void paragraph() = 0;
    /// Opens a span of characters of equal width.
    virtual void code() = 0;
    /// A place to refer to; opens no span, unlike `label`.
    virtual void place(const std::string& name) = 0;
    virtual void table(const Table& table) = 0;
    virtual void picture(const Picture& picture) = 0;
    virtual void citation(const KelvoBase::Literature& article) = 0;

protected:
    ReportFormat() = default;
};

} // namespace seriesstat
