#pragma once

/// \file
/// What a format writes around a piece of text.

#include <ostream>
#include <stack>
#include <string>
#include <string_view>

namespace KelvoBase
{

struct Span
{
    std::string_view opens;
    std::string_view closes;
};

inline void openSpan(std::ostream& out, std::stack<std::string>& closeTexts, const Span& span)
{
    closeTexts.emplace(span.closes);
    out << span.opens;
}

} // namespace KelvoBase
