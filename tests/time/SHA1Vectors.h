#pragma once

/// \file
/// Published digests.

#include <string>

namespace KelvoBase::test
{

struct SHA1Vector
{
    std::string message;
    const char* digest;
};

/// Of FIPS 180 and its examples.
inline const SHA1Vector sha1Vectors[] = {
    {"", "da39a3ee5e6b4b0d3255bfef95601890afd80709"},
    {"abc", "a9993e364706816aba3e25717850c26c9cd0d89d"},
    {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq", "84983e441c3bd26ebaae4aa1f95129e5e54670f1"},
    {"abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrst"
     "nopqrstu",
     "a49b2446a02c645bf419f995b67091253a04a259"},
    {std::string(1000000, 'a'), "34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
};

/// Of NIST's validation suite: where its chain of 1000 digests begins, and what four such chains in turn end in.
inline const std::string
    monteCarloSeed("\xdd\x4d\xf6\x44\xea\xf3\xd8\x5b\xac\xe2\xb2\x1a\xcc\xaa\x22\xb2\x88\x21\xf5\xcd", 20);
constexpr const char* monteCarloDigests[] = {
    "11f5c38b4479d4ad55cb69fadf62de0b036d5163", "5c26de848c21586bec36995809cb02d3677423d9",
    "453b5fcf263d01c891d7897d4013990f7c1fb0ab", "36d0273ae363f992bbc313aa4ff602e95c207be3"};

/// The bytes behind hexadecimal digits.
inline std::string bytesOf(const std::string& digits)
{
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

} // namespace KelvoBase::test
