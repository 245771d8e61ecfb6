#pragma once

/// \file
/// The words of a command line.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KelvoBase::platform::posix
{

/// Splits a command line into words as a shell does before it expands anything:
///
///     a 'b c' "d e" f\ g     => a|b c|d e|f g
///     x''y "" \'             => xy||'
///     "\$ \" \\ \a" '\a'     => $ " \ \a|\a
///     $HOME * ~ # > | ; &    => each as it stands
///
/// Blanks are blank, tab and line end; a line end behind a backslash vanishes with it. A backslash at the very end
/// stands for itself. Nothing if a quotation mark is not closed, there is no word, or a zero byte, which no argument
/// can hold.
std::optional<std::vector<std::string>> wordsOf(std::string_view command);

} // namespace KelvoBase::platform::posix
