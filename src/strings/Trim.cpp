#include "strings/Search.h"

#include <kelvobase/Strings.h>

#include <cctype>

namespace KelvoBase
{

namespace
{

bool isSpace(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    // What is the same in every locale needs no call: six bytes that are white space, letters and digits that are not.
    if (byte == ' ' || (byte >= '\t' && byte <= '\r')) {
        return true;
    }
    const auto letter = static_cast<unsigned char>(byte | 0x20);
    if ((letter >= 'a' && letter <= 'z') || (byte >= '0' && byte <= '9') || byte > 0x7F) {
        return false;
    }
    return std::isspace(byte) != 0;
}

/// Counts beyond `int` lose their high bits.
int asCount(std::string::size_type n)
{
    return static_cast<int>(n);
}

/// Leaves the bytes from `start` up to and without `stop`; returns how many went.
int keep(std::string& s, std::string::size_type start, std::string::size_type stop)
{
    const auto removed = s.size() - (stop - start);
    if (removed != 0) {
        std::string::traits_type::move(s.data(), s.data() + start, stop - start);
        s.erase(stop - start);
    }
    return asCount(removed);
}

} // namespace

int trim(std::string& s)
{
    const char* const text = s.data();
    std::string::size_type start = 0;
    std::string::size_type stop = s.size();
    while (start < stop && isSpace(text[start])) {
        ++start;
    }
    while (start < stop && isSpace(text[stop - 1])) {
        --stop;
    }
    return keep(s, start, stop);
}

int trim(std::string& s, char c)
{
    const auto start = s.find_first_not_of(c);
    if (start == std::string::npos) {
        return keep(s, 0, 0);
    }
    return keep(s, start, s.find_last_not_of(c) + 1);
}

int lTrim(std::string& s, char c)
{
    const auto start = s.find_first_not_of(c);
    // Required: an empty result, as `trim` gives it, would hide from callers that nothing would be left.
    if (start == std::string::npos) {
        throwCutBehindEnd();
    }
    s.erase(0, start);
    return asCount(start);
}

int strip(std::string& s, char c, char q)
{
    std::string::size_type kept = 0;
    char previous = 0;
    bool inQuote = false;
    for (const char byte : s) {
        // Required: a backslash behind a backslash protects as well. Counting pairs would end or begin quoted
        // stretches at other places.
        if (previous != '\\' && byte == q) {
            inQuote = !inQuote;
        }
        previous = byte;
        // Required: with `q` equal to `c` the opening mark is inside its own stretch and stays. Dropping both
        // marks would change what such callers keep.
        if (inQuote || byte != c) {
            s[kept++] = byte;
        }
    }
    return keep(s, 0, kept);
}

} // namespace KelvoBase
