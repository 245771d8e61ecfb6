#include "ReportFormat.h"

#include <algorithm>

namespace seriesstat
{

bool isNumber(std::string_view text)
{
    const std::size_t first = text.starts_with('-') ? 1 : 0;
    return text.size() > first && text[first] >= '0' && text[first] <= '9';
}

NumberParts partsOf(const std::string& text)
{
    NumberParts parts;
    const std::size_t end = std::min(text.find('e'), text.size());
    const std::size_t point = std::min(text.find('.'), end);
    parts.whole = text.substr(0, point);
    if (end - point > 1) { // not "9."
        parts.fraction = text.substr(point, end - point);
    }
    if (end < text.size()) {
        parts.exponent = std::to_string(std::stoi(text.substr(end + 1)));
    }
    return parts;
}

std::string withQuotes(std::string citation, std::string_view mark, std::string_view opening, std::string_view closing)
{
    const std::size_t first = citation.find(mark);
    const std::size_t last = citation.rfind(mark);
    if (first != last) {
        citation.replace(last, mark.size(), closing);
        citation.replace(first, mark.size(), opening);
    }
    return citation;
}

} // namespace seriesstat
