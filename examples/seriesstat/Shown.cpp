#include "Shown.h"

#include <kelvobase/Strings.h>

#include <algorithm>

namespace seriesstat
{

std::string shown(std::string text)
{
    constexpr std::size_t limit = 40;
    if (text.size() > limit) {
        std::size_t end = limit;
        while (end > 0 && (text[end] & 0xC0) == 0x80) { // inside a UTF-8 sequence
            --end;
        }
        text = text.substr(0, end) + "...";
    }
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    return KelvoBase::quote(text);
}

} // namespace seriesstat
