#include "time/DateText.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace KelvoBase
{

namespace
{

bool isDigit(char c)
{
    return '0' <= c && c <= '9';
}

/// Reads a number and moves `text` behind it.
bool scanNumber(std::string_view& text, int& number)
{
    constexpr std::string_view whiteSpace = " \t\n\v\f\r";
    text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
    if (text.size() > 1 && text[0] == '+' && isDigit(text[1])) {
        text.remove_prefix(1); // from_chars knows the minus sign alone
    }
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return failure == std::errc();
}

bool scanHyphen(std::string_view& text)
{
    if (!text.starts_with('-')) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

} // namespace

std::optional<DateNumbers> scanDate(const char* text)
{
    std::string_view rest(text);
    DateNumbers numbers{};
    if (scanNumber(rest, numbers.year) && scanHyphen(rest) && scanNumber(rest, numbers.month) && scanHyphen(rest) &&
        scanNumber(rest, numbers.day)) {
        return numbers;
    }
    return std::nullopt;
}

} // namespace KelvoBase
