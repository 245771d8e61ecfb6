#pragma once

/// \file
/// Texts of any origin, made safe for where they are shown.

#include <cstddef>
#include <string>
#include <vector>

namespace seriesstat
{

/// The characters of a text in UTF-8, each as a text. "?" stands for each one that would act instead of being seen
/// (control characters, among them those that turn the direction of writing) and for each byte that is no UTF-8.
std::vector<std::string> charactersOf(const std::string& text);

/// The same as one text. If there are more than `most` characters, the middle is replaced by "…".
std::string shortened(const std::string& text, std::size_t most);

/// For HTML and SVG, as an element's text and between the quotes of an attribute.
std::string htmlText(const std::string& text);

/// What a document in LaTeX has to say at its beginning for `latexText`: that it is in UTF-8, and how to show a
/// character that the installation has no sign for, which is by its number, as in "[U+4E2D]".
inline constexpr const char* latexDefinitions =
    "\\inputencoding{utf8}\n"
    "\\DeclareRobustCommand{\\sign}[2]{\\expandafter\\ifx\\csname u8:\\detokenize{#1}\\endcsname\\relax "
    "{[}U+#2{]}\\else #1\\fi}\n";

/// For LaTeX, in any place where text may stand. Greek letters and signs of units, which text fonts lack, are taken
/// from the mathematical fonts; other characters beyond ASCII stand as they are, in UTF-8.
std::string latexText(const std::string& text);

} // namespace seriesstat
