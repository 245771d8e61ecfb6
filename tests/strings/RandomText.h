#pragma once

/// \file
/// Texts for comparing an algorithm with a slow model of it.

#include <cstddef>
#include <random>
#include <string>

namespace KelvoBase::test
{

/// The same texts in every run and on every platform.
class RandomText
{
public:
    /// A number below `limit`.
    std::size_t below(std::size_t limit) { return mEngine() % limit; }

    /// Up to `maxLength` bytes of `alphabet`. Short alphabets make the interesting coincidences frequent.
    std::string text(const std::string& alphabet, std::size_t maxLength)
    {
        std::string result(below(maxLength + 1), '\0');
        for (char& c : result) {
            c = one(alphabet);
        }
        return result;
    }

    char one(const std::string& alphabet) { return alphabet[below(alphabet.size())]; }

private:
    std::mt19937 mEngine{20030817};
};

} // namespace KelvoBase::test
