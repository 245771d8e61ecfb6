#include "time/SHA1Compression.h"

// Only the functions that are marked are compiled for processors with the instructions; which processor it is shows at
// run time. The two headers belong to the compiler.
#if defined(__x86_64__) || defined(__i386__)

#include <cpuid.h>
#include <immintrin.h>

#include <utility>

#define KELVOBASE_SHA [[gnu::target("sha,ssse3")]]
#define KELVOBASE_SHA_INLINE [[gnu::target("sha,ssse3"), gnu::always_inline]] inline

namespace KelvoBase::sha1
{

namespace
{

/// A word of the digest or the schedule in each quarter; where the order counts, the first one is the highest.
struct State
{
    __m128i abcd;
    __m128i e; // in the highest quarter: of the digest e itself, in between the a of four rounds ago, which becomes e
};

KELVOBASE_SHA_INLINE __m128i loadVector(const void* from)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

/// Four words of a block, big-endian. The last ones are read in halves: one of them may be a length that was written a
/// moment ago, and a register that spans it and its neighbour would have to wait for both.
template <std::size_t Group>
KELVOBASE_SHA_INLINE __m128i loadWords(const unsigned char* block)
{
    const __m128i order = _mm_set_epi64x(0x0001020304050607, 0x08090A0B0C0D0E0F);
    const unsigned char* from = block + 16 * Group;
    if constexpr (Group < 3) {
        return _mm_shuffle_epi8(loadVector(from), order);
    } else {
        return _mm_shuffle_epi8(_mm_unpacklo_epi64(_mm_loadu_si64(from), _mm_loadu_si64(from + 8)), order);
    }
}

/// Rounds 4 * Group and the three behind it. Of the schedule the latest 16 words are kept.
template <std::size_t Group>
KELVOBASE_SHA_INLINE void fourRounds(State& state, __m128i (&w)[4], const unsigned char* block)
{
    __m128i& words = w[Group % 4];
    if constexpr (Group < 4) {
        words = loadWords<Group>(block);
    } else {
        const __m128i first = _mm_xor_si128(_mm_sha1msg1_epu32(words, w[(Group + 1) % 4]), w[(Group + 2) % 4]);
        words = _mm_sha1msg2_epu32(first, w[(Group + 3) % 4]);
    }
    __m128i sum;
    if constexpr (Group == 0) {
        sum = _mm_add_epi32(state.e, words);
    } else {
        sum = _mm_sha1nexte_epu32(state.e, words);
    }
    state.e = state.abcd;
    state.abcd = _mm_sha1rnds4_epu32(state.abcd, sum, Group / 5);
}

template <std::size_t... Group>
KELVOBASE_SHA_INLINE void allRounds(State& state, const unsigned char* block, std::index_sequence<Group...>)
{
    __m128i w[4];
    (fourRounds<Group>(state, w, block), ...);
}

KELVOBASE_SHA void compressByInstructions(unsigned int (&digest)[5], const unsigned char* blocks, std::size_t count)
{
    constexpr int turned = 0x1B; // first to last
    State state{_mm_shuffle_epi32(loadVector(digest), turned), _mm_set_epi32(static_cast<int>(digest[4]), 0, 0, 0)};
    for (; count > 0; --count, blocks += blockSize) {
        lookAhead(blocks, count);
        const State before = state;
        allRounds(state, blocks, std::make_index_sequence<20>());
        state.abcd = _mm_add_epi32(state.abcd, before.abcd);
        state.e = _mm_sha1nexte_epu32(state.e, before.e);
    }
    void* abcd = digest;
    _mm_storeu_si128(static_cast<__m128i*>(abcd), _mm_shuffle_epi32(state.abcd, turned));
    digest[4] = static_cast<unsigned int>(_mm_cvtsi128_si32(_mm_srli_si128(state.e, 12)));
}

bool hasInstructions()
{
    unsigned int a = 0;
    unsigned int b = 0;
    unsigned int c = 0;
    unsigned int d = 0;
    const bool hasBytes = __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & bit_SSSE3) != 0;
    return hasBytes && __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & bit_SHA) != 0;
}

} // namespace

Compress withInstructions()
{
    return hasInstructions() ? compressByInstructions : nullptr;
}

} // namespace KelvoBase::sha1

#else

namespace KelvoBase::sha1
{

Compress withInstructions()
{
    return nullptr;
}

} // namespace KelvoBase::sha1

#endif
