#pragma once

/// \file
/// SHA-1 as the standard words it and step by step, slow and without any thought of speed, to hold the library against.

#include <array>
#include <cstdint>
#include <cstdio>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace KelvoBase::test
{

using Words = std::array<std::uint32_t, 5>;

inline std::uint32_t circularShift(std::uint32_t x, unsigned int n)
{
    return (x << n) | (x >> (32 - n));
}

inline std::uint32_t functionOf(int t, std::uint32_t b, std::uint32_t c, std::uint32_t d)
{
    if (t <= 19) {
        return (b & c) | (~b & d);
    }
    if (40 <= t && t <= 59) {
        return (b & c) | (b & d) | (c & d);
    }
    return b ^ c ^ d;
}

inline std::uint32_t constantOf(int t)
{
    return t <= 19 ? 0x5A827999 : t <= 39 ? 0x6ED9EBA1 : t <= 59 ? 0x8F1BBCDC : 0xCA62C1D6;
}

inline void compressSlowly(Words& h, std::span<const unsigned char, 64> block)
{
    std::vector<std::uint32_t> w;
    for (std::size_t t = 0; t < 80; ++t) {
        if (t < 16) {
            std::uint32_t word = 0;
            for (std::size_t i = 0; i < 4; ++i) {
                word = word * 256 + block[4 * t + i];
            }
            w.push_back(word);
        } else {
            w.push_back(circularShift(w[t - 3] ^ w[t - 8] ^ w[t - 14] ^ w[t - 16], 1));
        }
    }
    auto [a, b, c, d, e] = h;
    for (int t = 0; t < 80; ++t) {
        const std::uint32_t next =
            circularShift(a, 5) + functionOf(t, b, c, d) + e + w[static_cast<std::size_t>(t)] + constantOf(t);
        e = d;
        d = c;
        c = circularShift(b, 30);
        b = a;
        a = next;
    }
    h = {h[0] + a, h[1] + b, h[2] + c, h[3] + d, h[4] + e};
}

/// The operations of the class, a byte at a time. Failures are `std::runtime_error`s with the same texts.
class SlowSHA1
{
public:
    void reset()
    {
        h = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
        length = 0;
        index = 0;
        computed = false;
        corrupted = false;
    }

    void input(std::string_view bytes)
    {
        if (computed) {
            throw std::runtime_error("SHA1 input after finalized digest");
        }
        if (corrupted) {
            throw std::runtime_error("SHA1 digest corrupted");
        }
        for (const char byte : bytes) {
            block.at(index) = static_cast<unsigned char>(byte);
            ++index;
            length += 8;
            if (length == 0) {
                corrupted = true;
                throw std::runtime_error("SHA1 input message too long");
            }
            if (index == 64) {
                processMessageBlock();
            }
        }
    }

    void processMessageBlock()
    {
        compressSlowly(h, block);
        index = 0;
    }

    void padMessage()
    {
        const bool above55 = index > 55;
        if (index < 64) {
            block[index++] = 0x80;
        }
        if (above55) {
            while (index < 64) {
                block[index++] = 0;
            }
            processMessageBlock();
        }
        while (index < 56) {
            block[index++] = 0;
        }
        for (unsigned int i = 0; i < 8; ++i) {
            block[56 + i] = static_cast<unsigned char>(length >> (8 * (7 - i)) & 0xFF);
        }
        processMessageBlock();
    }

    std::string getResult(bool reversed)
    {
        if (corrupted) {
            throw std::runtime_error("SHA1 digest corrupted");
        }
        if (!computed) {
            padMessage();
            block.fill(0);
            length = 0;
            computed = true;
        }
        std::string text;
        for (const std::uint32_t word : h) {
            for (int shift = 24; shift >= 0; shift -= 8) {
                char two[3];
                std::snprintf(two, sizeof two, "%02x", word >> shift & 0xFF);
                text = reversed ? two + text : text + two;
            }
        }
        return text;
    }

    Words h{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
    unsigned long long length = 0;
    unsigned int index = 0;
    std::array<unsigned char, 64> block{};
    bool computed = false;
    bool corrupted = false;
};

inline std::string slowDigest(std::string_view message, bool reversed = false)
{
    SlowSHA1 sha1;
    sha1.input(message);
    return sha1.getResult(reversed);
}

} // namespace KelvoBase::test
