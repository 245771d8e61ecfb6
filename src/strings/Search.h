#pragma once

/// \file
/// What the string toolkit's sources share: searches for bytes of a set, and the failure of a cut behind the end.

#include <string>
#include <string_view>

namespace KelvoBase
{

/// The first byte of `set` at or behind `pos`; as `find_first_of`, with a quicker way for the usual one-byte set.
inline std::string::size_type findAnyOf(std::string_view s, std::string_view set, std::string::size_type pos = 0)
{
    if (set.size() != 1) {
        return s.find_first_of(set, pos);
    }
    if (pos >= s.size()) {
        return std::string::npos;
    }
    const char* hit = std::string::traits_type::find(s.data() + pos, s.size() - pos, set.front());
    return hit == nullptr ? std::string::npos : static_cast<std::string::size_type>(hit - s.data());
}

/// `findsep` on positions of any size.
std::string::size_type findSeparator(const std::string& s, const std::string& separators, std::string::size_type pos);

/// Throws `std::out_of_range("basic_string::substr")`: these words and no more, other than the standard library does.
[[noreturn]] void throwCutBehindEnd();

} // namespace KelvoBase
