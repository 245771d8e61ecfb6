#include "time/SHA1Compression.h"

#include <bit>
#include <iterator>
#include <utility>

namespace KelvoBase::sha1
{

namespace
{

/// The five words of the standard's a to e. They do not move from round to round; their names do.
template <std::size_t T, std::size_t Name>
constexpr std::size_t place = (Name + 80 - T) % 5;

constexpr unsigned int constants[] = {0x5A827999, 0x6ED9EBA1, 0x8F1BBCDC, 0xCA62C1D6};

/// The standard's f for round T. The last form of the majority is a sum of terms that have no bit in common.
template <std::size_t T>
[[gnu::always_inline]] inline unsigned int mixed(unsigned int b, unsigned int c, unsigned int d)
{
    if constexpr (T < 20) {
        return d ^ (b & (c ^ d));
    } else if constexpr (40 <= T && T < 60) {
        return (b & c) + (d & (b ^ c));
    } else {
        return b ^ c ^ d;
    }
}

/// A big-endian number.
[[gnu::always_inline]] inline unsigned int load(const unsigned char* from)
{
    return static_cast<unsigned int>(from[0]) << 24 | static_cast<unsigned int>(from[1]) << 16 |
           static_cast<unsigned int>(from[2]) << 8 | from[3];
}

/// W of round T. Of the schedule the latest 16 words are kept.
template <std::size_t T>
[[gnu::always_inline]] inline unsigned int scheduled(unsigned int (&w)[16], const unsigned char* block)
{
    unsigned int& word = w[T % 16];
    if constexpr (T < 16) {
        word = load(block + 4 * T);
    } else {
        word = std::rotl(w[(T - 3) % 16] ^ w[(T - 8) % 16] ^ w[(T - 14) % 16] ^ word, 1);
    }
    return word;
}

template <std::size_t T>
[[gnu::always_inline]] inline void doRound(unsigned int (&state)[5], unsigned int (&w)[16], const unsigned char* block)
{
    const unsigned int a = state[place<T, 0>];
    unsigned int& b = state[place<T, 1>];
    unsigned int& e = state[place<T, 4>]; // the next round's a
    e += std::rotl(a, 5) + mixed<T>(b, state[place<T, 2>], state[place<T, 3>]) + constants[T / 20] +
         scheduled<T>(w, block);
    b = std::rotl(b, 30);
}

template <std::size_t... T>
[[gnu::always_inline]] inline void doRounds(unsigned int (&state)[5], const unsigned char* block,
                                            std::index_sequence<T...>)
{
    unsigned int w[16];
    (doRound<T>(state, w, block), ...);
}

void chooseAndCompress(unsigned int (&digest)[5], const unsigned char* blocks, std::size_t count)
{
    const Compress faster = withInstructions();
    compress = faster ? faster : compressPortably;
    compress(digest, blocks, count);
}

} // namespace

void compressPortably(unsigned int (&digest)[5], const unsigned char* blocks, std::size_t count)
{
    for (; count > 0; --count, blocks += blockSize) {
        lookAhead(blocks, count);
        unsigned int state[] = {digest[0], digest[1], digest[2], digest[3], digest[4]};
        doRounds(state, blocks, std::make_index_sequence<80>());
        for (std::size_t i = 0; i < std::size(state); ++i) {
            digest[i] += state[i];
        }
    }
}

constinit Compress compress = chooseAndCompress;

} // namespace KelvoBase::sha1
