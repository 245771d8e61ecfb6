#include "strings/Search.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace KelvoBase
{

namespace
{

constexpr const char* endsWithEscape = "cannot end with escape";
constexpr const char* unknownEscape = "unknown escape sequence";

constexpr std::size_t reservedPieces = 256;

enum class Role : unsigned char
{
    plain,
    quote,
    separator,
    escape
};

/// What each byte means to `split`. A byte that stands in several sets is an escape first, then a separator.
class Roles
{
public:
    Roles(const std::string& separators, const std::string& escapes, const std::string& quotes)
    {
        give(quotes, Role::quote);
        give(separators, Role::separator);
        give(escapes, Role::escape);
    }

    Role operator[](char c) const { return mRoles[static_cast<unsigned char>(c)]; }

private:
    void give(const std::string& set, Role role)
    {
        for (const char c : set) {
            mRoles[static_cast<unsigned char>(c)] = role;
        }
    }

    std::array<Role, 256> mRoles{};
};

/// The byte that the escape in front of position `i` stands for.
char escaped(const std::string& s, std::string::size_type i, const Roles& roles)
{
    if (i == s.size()) {
        throw std::runtime_error(endsWithEscape);
    }
    if (s[i] == 'n') {
        return '\n';
    }
    if (roles[s[i]] == Role::plain) {
        throw std::runtime_error(unknownEscape);
    }
    return s[i];
}

/// Appends the tokens of a text that is not empty. Plain bytes are copied a run at a time.
void cut(const std::string& s, std::vector<std::string>& out, const Roles& roles)
{
    std::string token;
    std::string::size_type run = 0;
    bool inQuote = false;
    for (std::string::size_type i = 0; i < s.size(); ++i) {
        const Role role = roles[s[i]];
        if (role == Role::plain || (role == Role::separator && inQuote)) {
            continue;
        }
        token.append(s, run, i - run);
        if (role == Role::quote) {
            inQuote = !inQuote;
        } else if (role == Role::separator) {
            out.push_back(std::move(token));
            token.clear();
        } else {
            token += escaped(s, ++i, roles);
        }
        run = i + 1;
    }
    token.append(s, run);
    out.push_back(std::move(token));
}

/// Writes `text` at `to`; returns the place behind it.
char* put(char* to, const std::string& text)
{
    std::string::traits_type::copy(to, text.data(), text.size());
    return to + text.size();
}

/// The end of the line that begins at `start`, at most `width` bytes further, and where the next one begins.
std::pair<std::string::size_type, std::string::size_type> lineBreak(const std::string& s, std::string::size_type start,
                                                                    std::string::size_type width)
{
    const std::string_view reach(s.data() + start, width + 1);
    // Required: the last line end in reach, so that earlier ones stay inside the line, and not one at its very
    // beginning, while a blank there does count. Breaking at the first would lay out every paragraph differently.
    auto length = reach.rfind('\n');
    if (length == std::string_view::npos || length == 0) {
        length = reach.rfind(' ');
    }
    if (length == std::string_view::npos) {
        return {start + width, start + width};
    }
    return {start + length, start + length + 1};
}

} // namespace

unsigned int split(const std::string& s, std::vector<std::string>& out, const std::string& separators,
                   const std::string& escapes, const std::string& quotes)
{
    try {
        if (!s.empty()) {
            cut(s, out, Roles(separators, escapes, quotes));
        }
        // Required: the whole list's size, as callers collect several texts in one list; `splitByLength` tells
        // what it added. The difference would give them wrong counts.
        return static_cast<unsigned int>(out.size());
    } catch (const std::exception& e) {
        throw OperationFailedException(e.what());
    }
}

std::vector<std::string> splitBySeparator(const std::string& s, const std::string& separators)
{
    std::vector<std::string> pieces;
    if (separators.size() == 1) {
        // Doubled separators make no piece, so a long text claims no memory in advance.
        const auto most = static_cast<std::size_t>(std::count(s.begin(), s.end(), separators.front())) + 1;
        pieces.reserve(std::min(most, reservedPieces));
    }
    std::string::size_type pos = 0;
    std::string::size_type i = 0;
    do {
        i = findSeparator(s, separators, pos);
        if (pos > s.size()) {
            throwCutBehindEnd();
        }
        // Where the found position lies in front of `pos` the difference wraps, and the piece reaches to the end.
        pieces.emplace_back(s, pos, i - pos);
        pos = i + separators.size();
    } while (i != std::string::npos);
    return pieces;
}

int splitByLength(const std::string& s, std::vector<std::string>& out, unsigned int length)
{
    // No guard for a `length` of 0: the quotient is infinite then, or for an empty text no number, which ends at once.
    const double pieces = std::floor(static_cast<double>(s.size()) / static_cast<double>(length));
    std::size_t k = 0;
    std::string::size_type start = 0;
    for (; static_cast<double>(k) < pieces; ++k) {
        out.emplace_back(s, start, length);
        start += length;
    }
    // Required: the remainder is a piece even when it is empty. Leaving it away would change the count of texts
    // that divide evenly.
    out.emplace_back(s, start);
    return static_cast<int>(k + 1);
}

std::string join(const std::vector<std::string>& parts, const std::string& separator)
{
    if (parts.empty()) {
        return {};
    }
    std::size_t size = separator.size() * (parts.size() - 1);
    for (const auto& part : parts) {
        size += part.size();
    }
    std::string result(size, '\0');
    char* to = put(result.data(), parts.front());
    const bool isByte = separator.size() == 1;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (isByte) {
            *to++ = separator.front(); // the usual case needs no call
        } else {
            to = put(to, separator);
        }
        to = put(to, parts[i]);
    }
    return result;
}

std::vector<std::string> wordwrap(const std::string& s, unsigned int width)
{
    std::vector<std::string> lines;
    std::string::size_type start = 0;
    while (s.size() - start > width) {
        const auto [stop, next] = lineBreak(s, start, width);
        lines.emplace_back(s, start, stop - start);
        start = next;
    }
    lines.emplace_back(s, start);
    return lines;
}

} // namespace KelvoBase
