#pragma once

/// \file
/// The SHA-1 message digest (FIPS 180-1) of bytes that come in pieces.
/// Good for telling whether two pieces of data are the same; not for defence against somebody who forges them.

#include <kelvobase/Export.h>

#include <bit>
#include <cstddef>
#include <iterator>
#include <string>
#include <type_traits>

namespace KelvoBase
{

/// A digest in the making. A plain value: a copy goes on by itself from where the original stands. Uses no memory but
/// its own, and the processor's SHA instructions where there are some.
///
///     SHA1 sha1;
///     sha1.input(text.begin(), text.end());
///     sha1.input(std::istreambuf_iterator<char>(file), {});
///     sha1.getResult(false);   // "a9993e364706816aba3e25717850c26c9cd0d89d" for "abc"
///
/// Three states. New or `reset`: takes input. Final, behind `getResult`: gives the same result again and takes no more
/// input. Corrupted, behind a message of 2^61 bytes and more: neither takes input nor gives a result. From both of them
/// only `reset` leads back.
class KELVOBASE_API SHA1
{
public:
    /// As behind `reset`.
    SHA1();

    /// Begins a new message, in every state.
    void reset();

    /// Feeds each element of [first, last), each by its bytes from the lowest up. Any pair of iterators will do; a
    /// range of bytes that lies in one piece is read where it is, block by block.
    ///   - characters, `bool` and `std::byte` are one byte each
    ///   - wider integers, and enumerations, give the bytes of their value, the same ones on every machine:
    ///     0x01020304 => 04 03 02 01
    ///   - other trivially copyable elements give their bytes as they lie in memory, padding included; those that an
    ///     iterator makes anew, and volatile ones, are copied first, and what their padding holds is not defined
    ///   - an element that is not trivially copyable (a string, say) does not compile
    /// Throws `OperationFailedException`, also for an empty range:
    ///   - "SHA1 input after finalized digest", with nothing taken
    ///   - "SHA1 digest corrupted", with nothing taken
    ///   - "SHA1 input message too long" when the length, counted in 64 bits, wraps to 0; the object is corrupted from
    ///     then on. Required (Q-1110): the byte that did it stands in the block, and a block that it filled is not
    ///     processed.
    /// What an iterator throws goes through; the elements in front of it have been taken.
    template <typename Iterator>
    requires std::is_trivially_copyable_v<std::iter_value_t<Iterator>>
    void input(Iterator first, Iterator last);

    /// \name Steps of the digest
    /// For who builds something else upon them. The other operations call them as they need to, and neither looks at
    /// the state of the object.
    /// @{

    /// Compresses the block of 64 bytes into the digest, as it stands and however much of it was filled, and marks it
    /// as empty. Its bytes stay, also behind `reset`; only the first `getResult` clears them. A new object has zeros.
    void processMessageBlock();
    /// Pads the message and processes the last block or two.
    /// Required (Q-1111): that does not finish it: a `getResult` behind it pads a second time, and gives another digest
    /// than one without it. In a block that an overflow has left full there is no room for the mark behind the
    /// message, which is left out.
    void padMessage();
    /// @}

    /// The digest as 40 lower-case hexadecimal digits; the first call finishes it. With `reversed` false in the usual
    /// order.
    /// Required (Q-1112): `reversed` turns the order of the bytes, not of the digits. For no input:
    ///
    ///     false => "da39a3ee5e6b4b0d3255bfef95601890afd80709"
    ///     true  => "0907d8af90186095efbf55320d4b6b5eeea339da"
    ///
    /// Throws `OperationFailedException("SHA1 digest corrupted")` behind an overflow.
    std::string getResult(bool reversed);

private:
    template <typename Element>
    static constexpr bool isNumber = std::is_integral_v<Element> || std::is_enum_v<Element>;
    template <typename Iterator>
    static constexpr bool isVolatile = std::is_volatile_v<std::remove_reference_t<std::iter_reference_t<Iterator>>>;
    template <typename Iterator>
    static constexpr bool liesInMemoryAsTaken();

    void assertTakesInput() const;
    template <typename Element>
    void inputElement(const Element& element);
    void inputByte(unsigned char byte)
    {
        mBlock[mBlockIndex++] = byte;
        mLength += 8;
        if (mLength == 0 || mBlockIndex == sizeof mBlock) {
            endOfBlock();
        }
    }
    void inputBytes(const unsigned char* bytes, std::size_t count);
    void endOfBlock();
    void addBytes(const unsigned char* bytes, std::size_t count);

    unsigned int mDigest[5];
    unsigned long long mLength; // in bits
    unsigned int mBlockIndex;   // bytes in mBlock; 64 only where the length wrapped
    unsigned char mBlock[64] = {};
    bool mComputed;
    bool mCorrupted;
};

/// Whether the elements lie one behind the other, with their bytes in the order in which `input` takes them.
template <typename Iterator>
constexpr bool SHA1::liesInMemoryAsTaken()
{
    if constexpr (std::contiguous_iterator<Iterator>) {
        using Element = std::iter_value_t<Iterator>;
        constexpr bool isInOrder =
            sizeof(Element) == 1 || !isNumber<Element> || std::endian::native == std::endian::little;
        return isInOrder && !isVolatile<Iterator>;
    } else {
        return false;
    }
}

template <typename Iterator>
requires std::is_trivially_copyable_v<std::iter_value_t<Iterator>>
void SHA1::input(Iterator first, Iterator last)
{
    using Element = std::iter_value_t<Iterator>;
    if constexpr (liesInMemoryAsTaken<Iterator>()) {
        const unsigned char* bytes = first == last ? nullptr : &reinterpret_cast<const unsigned char&>(*first);
        inputBytes(bytes, static_cast<std::size_t>(last - first) * sizeof(Element));
    } else {
        assertTakesInput();
        // Read where it lies: on its way through a register an element loses its padding. Volatile ones are copied.
        using Taken = std::conditional_t<isVolatile<Iterator>, Element, const Element&>;
        for (; first != last; ++first) {
            const Taken element = *first;
            inputElement<Element>(element);
        }
    }
}

template <typename Element>
void SHA1::inputElement(const Element& element)
{
    constexpr bool isTurned = isNumber<Element> && std::endian::native == std::endian::big;
    const unsigned char* bytes = &reinterpret_cast<const unsigned char&>(element);
    for (std::size_t i = 0; i < sizeof(Element); ++i) {
        inputByte(bytes[isTurned ? sizeof(Element) - 1 - i : i]);
    }
}

} // namespace KelvoBase
