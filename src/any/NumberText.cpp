#include "any/NumberText.h"

#include <kelvobase/Exceptions.h>

#include <algorithm>
#include <charconv>
#include <concepts>
#include <limits>
#include <locale>
#include <sstream>

namespace KelvoBase
{

namespace
{

// Required: the text ends with the blank behind "from"; there is no text of the number to put there.
constexpr const char* cannotWrite = "Could not convert to string from ";

constexpr int significantDigits = 6; // what a stream writes of a double by default

/// Decimal numbers of so many digits, and the powers of ten up to this one, are all exact as a `double`. Such a number
/// is one correctly rounded division away from its digits, so that no two correct readers can disagree.
constexpr std::ptrdiff_t exactDigits = std::numeric_limits<double>::digits10;
static_assert(exactDigits == 15);

/// White space in the classic locale.
bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The stream's own reading: the definition, and the way for every text that the quick ways decline.
template <typename Number>
bool extract(const std::string& text, Number& value)
{
    std::istringstream in(text.c_str());
    in.imbue(std::locale::classic());
    // Required: straight into the held value, which a failure leaves as the extraction does. Reading a copy
    // would keep the old number and hide that the object is undefined.
    in >> value;
    return !in.fail();
}

/// Reads digits, perhaps with a minus in front of them. Declines whatever it does not read at once: a plus, a minus
/// in front of an unsigned number (which wraps), a number out of range.
template <std::integral Number>
bool readPlain(const std::string& text, Number& value)
{
    const char* const end = text.data() + text.size();
    Number number;
    if (std::from_chars(std::find_if_not(text.data(), end, isBlank), end, number).ec != std::errc()) {
        return false;
    }
    value = number;
    return true;
}

/// Reads digits, perhaps with a minus in front of them and a fraction behind them. Declines exponents and more digits
/// than are exact.
bool readPlain(const std::string& text, double& value)
{
    const char* const end = text.data() + text.size();
    const char* const first = std::find_if_not(text.data(), end, isBlank);
    const char* const whole = first + (first != end && *first == '-' ? 1 : 0);
    const char* last = std::find_if_not(whole, end, isDigit);
    std::ptrdiff_t digits = last - whole;
    if (last != end && *last == '.') {
        const char* const fraction = last + 1;
        last = std::find_if_not(fraction, end, isDigit);
        digits += last - fraction;
    }
    if (digits > exactDigits || (last != end && (*last == 'e' || *last == 'E'))) {
        return false;
    }
    return std::from_chars(first, last, value).ec == std::errc();
}

template <std::integral Number>
std::to_chars_result toChars(std::span<char> range, Number value)
{
    return std::to_chars(range.data(), range.data() + range.size(), value);
}

std::to_chars_result toChars(std::span<char> range, double value)
{
    return std::to_chars(range.data(), range.data() + range.size(), value, std::chars_format::general,
                         significantDigits);
}

} // namespace

template <typename Number>
bool readNumber(const std::string& text, Number& value)
{
    return readPlain(text, value) || extract(text, value);
}

template <typename Number>
std::string_view writeNumber(Number value, std::span<char> range)
{
    const std::to_chars_result result = toChars(range, value);
    if (result.ec != std::errc()) {
        throw WrongTypeException(typeid(Number), cannotWrite);
    }
    return {range.data(), result.ptr};
}

template bool readNumber(const std::string&, int&);
template bool readNumber(const std::string&, unsigned int&);
template bool readNumber(const std::string&, long&);
template bool readNumber(const std::string&, unsigned long&);
template bool readNumber(const std::string&, double&);

template std::string_view writeNumber(int, std::span<char>);
template std::string_view writeNumber(unsigned int, std::span<char>);
template std::string_view writeNumber(long, std::span<char>);
template std::string_view writeNumber(unsigned long, std::span<char>);
template std::string_view writeNumber(double, std::span<char>);

} // namespace KelvoBase
