#include "strings/Search.h"

#include <kelvobase/Strings.h>

#include <stdexcept>

namespace KelvoBase
{

namespace
{

bool contains(const std::string& set, char c)
{
    return set.size() == 1 ? set.front() == c : set.find(c) != std::string::npos;
}

/// Whether a search for `set` from `at` on ends where it begins. A search that failed stays failed: npos gives npos.
bool searchStaysAt(const std::string& s, const std::string& set, std::string::size_type at)
{
    return at < s.size() ? contains(set, s[at]) : at == std::string::npos;
}

} // namespace

void throwCutBehindEnd()
{
    throw std::out_of_range("basic_string::substr");
}

std::string::size_type findSeparator(const std::string& s, const std::string& separators, std::string::size_type pos)
{
    const auto n = separators.size();
    auto i = findAnyOf(s, separators, pos);
    // Required: no test for a failed search in front of this line. npos + n wraps to n - 1, and callers screen
    // for exactly the texts in which a separator byte stands there; with a test those texts would give other pieces.
    while (searchStaysAt(s, separators, i + n)) {
        i = findAnyOf(s, separators, i + n + n);
    }
    return i;
}

unsigned int findsep(const std::string& s, const std::string& separators, unsigned int pos)
{
    return static_cast<unsigned int>(findSeparator(s, separators, pos));
}

std::string betweenStr(std::string& s, const std::string& begin, const std::string& end)
{
    const auto hit = s.find(begin);
    if (s.empty() || hit == std::string::npos) {
        return {};
    }
    const auto start = hit + begin.size();
    const auto stop = end.empty() ? s.size() : s.find(end, start);
    if (stop == std::string::npos) {
        std::string rest = s.substr(start);
        s.clear();
        return rest;
    }
    std::string between = s.substr(start, stop - start);
    // Required: the end marker stays in `s`. Taking it away, too, would lose the next text of callers whose end
    // marker is the begin marker of what follows.
    s.erase(0, stop);
    return between;
}

} // namespace KelvoBase
