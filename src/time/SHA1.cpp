#include "time/SHA1Compression.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/SHA1.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace KelvoBase
{

namespace
{

constexpr const char* finalized = "SHA1 input after finalized digest";
constexpr const char* corrupted = "SHA1 digest corrupted";
constexpr const char* tooLong = "SHA1 input message too long";

constexpr std::size_t lengthBegin = 56; // of the message's length in its last block

static_assert(sizeof(unsigned int) == 4 && sizeof(unsigned long long) == 8);

[[noreturn]] void fail(const char* reason)
{
    throw OperationFailedException(reason);
}

/// The big-endian bytes of a number.
template <typename Byte>
void store(Byte* to, unsigned long long number)
{
    for (std::size_t i = 0; i < sizeof number; ++i) {
        to[i] = static_cast<Byte>(number >> (56 - 8 * i));
    }
}

/// Eight digits, the first one highest: each half byte gets a byte, and each byte its digit, all at once.
void storeHexadecimal(char* to, unsigned int number)
{
    constexpr unsigned long long each = 0x0101010101010101; // times a byte: that byte in all eight
    unsigned long long digits = number;
    digits = (digits | digits << 16) & 0x0000FFFF0000FFFF;
    digits = (digits | digits << 8) & 0x00FF00FF00FF00FF;
    digits = (digits | digits << 4) & each * 0xF;
    const unsigned long long letters = (digits + each * 6) >> 4 & each; // 1 where the digit is above 9
    store(to, digits + each * '0' + letters * ('a' - '0' - 10));
}

/// The same bytes from last to first.
unsigned int turned(unsigned int number)
{
    return number << 24 | (number & 0xFF00) << 8 | (number >> 8 & 0xFF00) | number >> 24;
}

} // namespace

SHA1::SHA1()
{
    static_assert(sizeof mBlock == sha1::blockSize);
    reset();
}

void SHA1::reset()
{
    constexpr unsigned int initial[] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
    std::copy(std::begin(initial), std::end(initial), mDigest);
    mLength = 0;
    mBlockIndex = 0;
    mComputed = false;
    mCorrupted = false;
}

void SHA1::assertTakesInput() const
{
    if (mComputed) {
        fail(finalized);
    }
    if (mCorrupted) {
        fail(corrupted);
    }
}

void SHA1::endOfBlock()
{
    // Required (Q-1110): in front of the compression, so that the last block of a message that is too long is not in
    // the digest. The length wraps at the end of a block; in the other order that block would be.
    if (mLength == 0) {
        mCorrupted = true;
        fail(tooLong);
    }
    processMessageBlock();
}

/// What `inputByte` does with each byte, in bulk.
void SHA1::inputBytes(const unsigned char* bytes, std::size_t count)
{
    assertTakesInput();
    const unsigned long long left = (~mLength >> 3) + 1; // bytes until the length wraps
    if (count < left) {
        addBytes(bytes, count);
    } else {
        const auto last = static_cast<std::size_t>(left - 1);
        addBytes(bytes, last);
        inputByte(bytes[last]);
    }
}

/// For a number of bytes that the length has room for.
void SHA1::addBytes(const unsigned char* bytes, std::size_t count)
{
    if (count == 0) {
        return;
    }
    mLength += 8ULL * count;
    if (mBlockIndex > 0) {
        const std::size_t part = std::min(count, sizeof mBlock - mBlockIndex);
        std::memcpy(mBlock + mBlockIndex, bytes, part);
        mBlockIndex += static_cast<unsigned int>(part);
        if (mBlockIndex < sizeof mBlock) {
            return;
        }
        processMessageBlock();
        bytes += part;
        count -= part;
    }
    if (const std::size_t whole = count - count % sizeof mBlock; whole > 0) {
        sha1::compress(mDigest, bytes, whole / sizeof mBlock);
        bytes += whole;
        count -= whole;
        // Who calls processMessageBlock next finds the same bytes as if each had passed through the block.
        std::memcpy(mBlock, bytes - sizeof mBlock, sizeof mBlock);
    }
    std::memcpy(mBlock, bytes, count);
    mBlockIndex = static_cast<unsigned int>(count);
}

void SHA1::processMessageBlock()
{
    sha1::compress(mDigest, mBlock, 1);
    mBlockIndex = 0;
}

void SHA1::padMessage()
{
    // Required (Q-1111): neither here nor behind the last block is the digest marked as finished; getResult does that.
    // Marked here, a getResult behind a padMessage would give another digest than it does.
    const bool isTooFull = mBlockIndex >= lengthBegin;
    // Byte by byte in the text, but whole registers once it is compiled, which the compression reads back at once; what
    // is written in pieces it would have to wait for.
    const auto filled = static_cast<unsigned char>(mBlockIndex);
    constexpr unsigned char end = sizeof mBlock;
    for (unsigned char i = 0; i < end; ++i) {
        const unsigned char mark = i == filled ? 0x80 : 0;
        mBlock[i] = i < filled ? mBlock[i] : mark;
    }
    if (isTooFull) {
        processMessageBlock();
        std::memset(mBlock, 0, lengthBegin);
    }
    store(mBlock + lengthBegin, mLength);
    processMessageBlock();
}

std::string SHA1::getResult(bool reversed)
{
    if (mCorrupted) {
        fail(corrupted);
    }
    if (!mComputed) {
        padMessage();
        std::fill(std::begin(mBlock), std::end(mBlock), static_cast<unsigned char>(0));
        mLength = 0;
        mComputed = true;
    }
    constexpr std::size_t words = std::size(decltype(mDigest){});
    std::string text(8 * words, '\0');
    for (std::size_t i = 0; i < words; ++i) {
        // Required (Q-1112): the bytes, not the text. Turning the text would also swap the two digits of each byte.
        storeHexadecimal(&text[8 * i], reversed ? turned(mDigest[words - 1 - i]) : mDigest[i]);
    }
    return text;
}

} // namespace KelvoBase
