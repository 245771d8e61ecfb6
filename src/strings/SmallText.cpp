#include <kelvobase/Strings.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <istream>

namespace KelvoBase
{

namespace
{

/// A byte above 0x7F has no case, whatever the locale says.
char upper(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte <= 0x7F ? static_cast<char>(std::toupper(byte)) : c;
}

char lower(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte <= 0x7F ? static_cast<char>(std::tolower(byte)) : c;
}

bool endsLine(char c)
{
    return c == '\n' || c == '\r';
}

const char* ordinalEnding(unsigned int n)
{
    // Required: the number itself, not its last digit, so 21 is "21th". The readers of these texts know them
    // so.
    switch (n) {
    case 1:
        return "st";
    case 2:
        return "nd";
    case 3:
        return "rd";
    default:
        return "th";
    }
}

} // namespace

std::string toUpper(const std::string& s)
{
    std::string result = s;
    std::transform(result.begin(), result.end(), result.begin(), upper);
    return result;
}

std::string toLower(const std::string& s)
{
    std::string result = s;
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

bool isUpper(const std::string& s)
{
    return std::all_of(s.begin(), s.end(), [](char c) { return upper(c) == c; });
}

unsigned int stringhash(const std::string& s)
{
    std::uint32_t h = 0;
    for (const char c : s) {
        // Required: the high bits are those in front of the shift. Taking them behind it, as hashes of this
        // shape do, would change every stored value of a longer text.
        const std::uint32_t high = h & 0xF0000000U;
        h = (h << 4) + static_cast<std::uint32_t>(static_cast<signed char>(c));
        if (high != 0) {
            h = h ^ (high >> 24) ^ high;
        }
    }
    return h;
}

std::string toOrdinalNumberString(unsigned int n)
{
    return std::to_string(n) + ordinalEnding(n);
}

std::string trimLength(const std::string& s, unsigned int length)
{
    std::string result;
    result.reserve(length);
    result.append(s, 0, length);
    result.resize(length, ' ');
    return result;
}

void getshortline(std::istream& in, std::string& line)
{
    std::getline(in, line);
    const auto length = line.size();
    if (length == 0) {
        return;
    }
    if (line.back() == '\0' || endsLine(line.back())) {
        line.pop_back();
    }
    // Required: asked whether or not a byte went above, so "a\rb" loses its "\r". Asking only then would leave
    // such bytes in the lines of callers that rely on their absence.
    if (length != 1 && endsLine(line[length - 2])) {
        line.erase(length - 2, 1);
    }
}

} // namespace KelvoBase
