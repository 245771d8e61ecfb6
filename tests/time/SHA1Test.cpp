#include "support/Text.h"
#include "time/SHA1Model.h"
#include "time/SHA1Vectors.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/SHA1.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <forward_list>
#include <list>
#include <optional>
#include <random>
#include <sstream>
#include <vector>

namespace
{

using namespace KelvoBase;
using test::slowDigest;

constexpr const char* emptyDigest = "da39a3ee5e6b4b0d3255bfef95601890afd80709";

std::string digestOf(const std::string& message, bool reversed = false)
{
    SHA1 sha1;
    sha1.input(message.begin(), message.end());
    return sha1.getResult(reversed);
}

/// The digest of a range of any kind.
template <typename Range>
std::string digestOfRange(const Range& range)
{
    SHA1 sha1;
    sha1.input(std::begin(range), std::end(range));
    return sha1.getResult(false);
}

std::string randomText(std::mt19937& random, std::size_t length)
{
    std::string text(length, '\0');
    for (char& c : text) {
        c = static_cast<char>(random());
    }
    return text;
}

TEST(SHA1Test, PublishedDigests)
{
    for (const test::SHA1Vector& vector : test::sha1Vectors) {
        EXPECT_EQ(vector.digest, digestOf(vector.message)) << vector.message.substr(0, 120);
    }
}

TEST(SHA1Test, PublishedChainsOfDigests)
{
    std::string seed = test::monteCarloSeed;
    for (const char* expected : test::monteCarloDigests) {
        std::string a = seed;
        std::string b = seed;
        for (int i = 0; i < 1000; ++i) {
            std::string message = a;
            message.append(b).append(seed);
            a = std::exchange(b, std::exchange(seed, test::bytesOf(digestOf(message))));
        }
        ASSERT_EQ(test::bytesOf(expected), seed);
    }
}

TEST(SHA1Test, ReversedResultTurnsTheBytesAndNotTheDigits)
{
    // Required, Q-1112
    EXPECT_EQ("0907d8af90186095efbf55320d4b6b5eeea339da", digestOf("", true));
    EXPECT_EQ("9dd8d09c6cc2507871253eba6a810647363e99a9", digestOf("abc", true));
}

TEST(SHA1Test, ResultMayBeAskedForBothWaysInTurn)
{
    SHA1 sha1;
    EXPECT_EQ("0907d8af90186095efbf55320d4b6b5eeea339da", sha1.getResult(true));
    EXPECT_EQ(emptyDigest, sha1.getResult(false));
    EXPECT_EQ("0907d8af90186095efbf55320d4b6b5eeea339da", sha1.getResult(true));
    EXPECT_EQ(emptyDigest, sha1.getResult(false));
}

TEST(SHA1Test, EveryLengthUpTo300IsThatOfTheModel)
{
    std::mt19937 random(1);
    for (std::size_t length = 0; length <= 300; ++length) {
        const std::string text = randomText(random, length);
        ASSERT_EQ(slowDigest(text), digestOf(text)) << length;
        ASSERT_EQ(slowDigest(text, true), digestOf(text, true)) << length;
    }
}

TEST(SHA1Test, PiecesGiveTheDigestOfTheWhole)
{
    std::mt19937 random(2);
    const std::size_t bounds[] = {1, 8, 64, 65, 200, 5000};
    for (int i = 0; i < 600; ++i) {
        const std::string text = randomText(random, random() % 5000);
        const std::size_t bound = bounds[random() % std::size(bounds)];
        SHA1 sha1;
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t end = std::min(text.size(), begin + random() % (bound + 1));
            sha1.input(text.data() + begin, text.data() + end);
            begin = end;
        }
        ASSERT_EQ(slowDigest(text), sha1.getResult(false)) << text.size() << " bytes, pieces up to " << bound;
    }
}

TEST(SHA1Test, EveryPairOfPiecesAroundABlockGivesTheDigestOfTheWhole)
{
    std::mt19937 random(3);
    const std::string text = randomText(random, 260);
    for (std::size_t first = 0; first <= 130; ++first) {
        for (std::size_t second = 0; second <= 130; ++second) {
            SHA1 sha1;
            sha1.input(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(first));
            sha1.input(text.data() + first, text.data() + first + second);
            ASSERT_EQ(slowDigest(text.substr(0, first + second)), sha1.getResult(false)) << first << " + " << second;
        }
    }
}

TEST(SHA1Test, BytesMayLieAnywhere)
{
    std::mt19937 random(4);
    const std::string text = randomText(random, 300);
    for (std::size_t begin = 0; begin < 20; ++begin) {
        SHA1 sha1;
        sha1.input(text.data() + begin, text.data() + text.size());
        EXPECT_EQ(slowDigest(text.substr(begin)), sha1.getResult(false)) << begin;
    }
}

TEST(SHA1Test, InputBehindTheResultThrowsAndChangesNothing)
{
    SHA1 sha1;
    const std::string text = "abc";
    const std::list<char> characters;
    const std::string digest = sha1.getResult(false);
    const auto expectRefusal = [&](auto input) {
        EXPECT_EQ("SHA1 input after finalized digest", test::textOf<OperationFailedException>(input));
        EXPECT_EQ(digest, sha1.getResult(false));
    };
    expectRefusal([&] { sha1.input(text.begin(), text.end()); });
    expectRefusal([&] { sha1.input(text.begin(), text.begin()); });
    expectRefusal([&] { sha1.input(characters.begin(), characters.end()); });
}

TEST(SHA1Test, RefusedInputIsNotRead)
{
    SHA1 sha1;
    sha1.getResult(false);
    std::istringstream in("abc");
    EXPECT_THROW(sha1.input(std::istreambuf_iterator<char>(in), {}), OperationFailedException);
    EXPECT_EQ('a', in.peek());
}

TEST(SHA1Test, ResetBeginsANewMessageInEveryState)
{
    const std::string text(100, 'x');
    SHA1 sha1;
    sha1.input(text.begin(), text.end());
    sha1.reset();
    EXPECT_EQ(emptyDigest, sha1.getResult(false));
    sha1.reset();
    sha1.input(text.begin(), text.end());
    EXPECT_EQ(slowDigest(text), sha1.getResult(false));
    sha1.reset();
    EXPECT_EQ(emptyDigest, sha1.getResult(false));
}

TEST(SHA1Test, CopyGoesOnByItself)
{
    const std::string text(70, 'x');
    SHA1 sha1;
    sha1.input(text.begin(), text.end());
    SHA1 copy = sha1;
    EXPECT_EQ(slowDigest(text), copy.getResult(false));
    sha1.input(text.begin(), text.end());
    EXPECT_EQ(slowDigest(text + text), sha1.getResult(false));
    copy = sha1;
    EXPECT_EQ(slowDigest(text + text, true), copy.getResult(true));
}

TEST(SHA1Test, PaddedMessageIsNotFinished)
{
    // Required, Q-1111
    const std::string text = "abc";
    SHA1 sha1;
    sha1.input(text.begin(), text.end());
    sha1.padMessage();
    sha1.input(text.begin(), text.end());
    const std::string bytes = std::string("abc\x80", 4) + std::string(59, '\0') + '\x18' + text;
    test::SlowSHA1 expected; // the padding as a part of the message, but not of its length
    expected.input(bytes);
    expected.length = 48;
    EXPECT_EQ(expected.getResult(false), sha1.getResult(false));
    EXPECT_NE(slowDigest(text + text), sha1.getResult(false));
}

TEST(SHA1Test, BlockIsProcessedHoweverMuchOfItIsFilled)
{
    SHA1 sha1;
    sha1.processMessageBlock(); // zeros, in a new object
    test::SlowSHA1 expected;
    expected.input(std::string(64, '\0'));
    expected.length = 0;
    EXPECT_EQ(expected.getResult(false), sha1.getResult(false));
}

/// One random operation on both; their failures must have the same text.
void doBoth(std::mt19937& random, SHA1& sha1, test::SlowSHA1& model)
{
    const auto both = [](auto fast, auto slow) {
        std::string text;
        try {
            slow();
        } catch (const std::runtime_error& e) {
            text = e.what();
        }
        if (text.empty()) {
            EXPECT_NO_THROW(fast());
        } else {
            EXPECT_EQ(text, test::textOf<OperationFailedException>(fast));
        }
    };
    const unsigned int kind = random() % 16;
    if (kind == 0) {
        both([&] { sha1.reset(); }, [&] { model.reset(); });
    } else if (kind == 1) {
        both([&] { sha1.processMessageBlock(); }, [&] { model.processMessageBlock(); });
    } else if (kind == 2) {
        both([&] { sha1.padMessage(); }, [&] { model.padMessage(); });
    } else if (kind == 3) {
        const bool reversed = random() % 2 == 0;
        EXPECT_EQ(model.getResult(reversed), sha1.getResult(reversed));
    } else {
        const std::string text = randomText(random, random() % 5 == 0 ? 64 * (random() % 4) : random() % 200);
        const std::list<char> list(text.begin(), text.end());
        both(
            [&] { return kind % 2 == 0 ? sha1.input(text.begin(), text.end()) : sha1.input(list.begin(), list.end()); },
            [&] { model.input(text); });
    }
}

TEST(SHA1Test, RandomOperationsAreThoseOfTheModel)
{
    std::mt19937 random(5);
    for (int i = 0; i < 3000; ++i) {
        SHA1 sha1;
        test::SlowSHA1 model;
        for (int step = 0; step < 12; ++step) {
            doBoth(random, sha1, model);
        }
        ASSERT_EQ(model.getResult(false), sha1.getResult(false)) << i;
    }
}

// Ranges

TEST(SHA1Test, BytesOfEveryTypeAreTheSame)
{
    const std::string text = "byte\x80\xFF";
    const auto* begin = text.data();
    const auto size = text.size();
    const std::string expected = slowDigest(text);
    std::vector<std::byte> bytes(size);
    std::memcpy(bytes.data(), begin, size);
    const std::u8string wide(reinterpret_cast<const char8_t*>(begin), size);
    EXPECT_EQ(expected, digestOfRange(std::vector<signed char>(text.begin(), text.end())));
    EXPECT_EQ(expected, digestOfRange(std::vector<unsigned char>(text.begin(), text.end())));
    EXPECT_EQ(expected, digestOfRange(bytes));
    EXPECT_EQ(expected, digestOfRange(wide));
    EXPECT_EQ(expected, digestOfRange(std::list<signed char>(text.begin(), text.end())));
    EXPECT_EQ(expected, digestOfRange(std::list<unsigned char>(text.begin(), text.end())));
    EXPECT_EQ(expected, digestOfRange(std::list<std::byte>(bytes.begin(), bytes.end())));
    EXPECT_EQ(expected, digestOfRange(std::deque<char8_t>(wide.begin(), wide.end())));
    EXPECT_EQ(expected, digestOfRange(std::forward_list<char>(text.begin(), text.end())));
}

TEST(SHA1Test, RangesOfEveryKindAreTaken)
{
    const std::string text(150, 'k');
    const char array[] = {'a', 'b', 'c'};
    const volatile char changing[] = {'a', 'b', 'c'};
    std::istringstream in(text);
    SHA1 sha1;
    sha1.input(std::istreambuf_iterator<char>(in), {});
    EXPECT_EQ(slowDigest(text), sha1.getResult(false));
    EXPECT_EQ(slowDigest("abc"), digestOfRange(array));
    EXPECT_EQ(slowDigest("abc"), digestOfRange(changing));
    EXPECT_EQ(slowDigest("abc"), digestOfRange(std::string_view("abc")));
    const std::string abc = "abc";
    sha1.reset();
    sha1.input(abc.rbegin(), abc.rend());
    EXPECT_EQ(slowDigest("cba"), sha1.getResult(false));
}

TEST(SHA1Test, EmptyRangesAddNothing)
{
    const std::vector<int> none;
    const std::list<int> nothing;
    const char* null = nullptr;
    SHA1 sha1;
    sha1.input(null, null);
    sha1.input(none.begin(), none.end());
    sha1.input(nothing.begin(), nothing.end());
    EXPECT_EQ(emptyDigest, sha1.getResult(false));
}

TEST(SHA1Test, TruthValuesAreOneByteEach)
{
    const std::string expected = slowDigest(std::string("\1\0\0\1\1", 5));
    const bool array[] = {true, false, false, true, true};
    EXPECT_EQ(expected, digestOfRange(array));
    EXPECT_EQ(expected, digestOfRange(std::vector<bool>(std::begin(array), std::end(array))));
    EXPECT_EQ(expected, digestOfRange(std::list<bool>(std::begin(array), std::end(array))));
}

/// A vector and a list of the numbers must both give the bytes.
template <typename Number>
void expectBytes(const std::string& bytes, std::initializer_list<Number> numbers)
{
    EXPECT_EQ(slowDigest(bytes), digestOfRange(std::vector<Number>(numbers)));
    EXPECT_EQ(slowDigest(bytes), digestOfRange(std::list<Number>(numbers)));
}

enum class Small : unsigned short
{
    some = 0x0102
};

TEST(SHA1Test, WiderIntegersGiveTheirBytesFromTheLowestUp)
{
    expectBytes<std::uint16_t>(std::string("\x02\x01\xFF\x00", 4), {0x0102, 0x00FF});
    expectBytes<std::int16_t>(std::string("\xFE\xFF", 2), {-2});
    expectBytes<std::uint32_t>(std::string("\x04\x03\x02\x01", 4), {0x01020304});
    expectBytes<std::int32_t>(std::string("\xFF\xFF\xFF\xFF\x01\x00\x00\x00", 8), {-1, 1});
    expectBytes<std::uint64_t>(std::string("\x08\x07\x06\x05\x04\x03\x02\x01", 8), {0x0102030405060708});
    expectBytes<char16_t>(std::string("\xAC\x20", 2), {u'\x20AC'});
    expectBytes<char32_t>(std::string("\x00\xF6\x01\x00", 4), {U'\x1F600'});
    expectBytes<Small>(std::string("\x02\x01", 2), {Small::some});
}

TEST(SHA1Test, IntegersMayCrossABlock)
{
    const std::vector<std::uint32_t> numbers(50, 0x64636261);
    std::string bytes = "x";
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        bytes += "abcd";
    }
    SHA1 sha1;
    sha1.input(bytes.begin(), bytes.begin() + 1);
    sha1.input(numbers.begin(), numbers.end());
    EXPECT_EQ(slowDigest(bytes), sha1.getResult(false));
}

struct Record
{
    char letters[3];
    unsigned char number;
};

TEST(SHA1Test, OtherElementsGiveTheirMemory)
{
    const std::list<Record> records = {{{'a', 'b', 'c'}, 1}, {{'d', 'e', 'f'}, 2}};
    EXPECT_EQ(slowDigest("abc\1def\2"), digestOfRange(records));
    EXPECT_EQ(slowDigest("abc\1def\2"), digestOfRange(std::vector<Record>(records.begin(), records.end())));
    const double number = 1.25;
    char memory[sizeof number];
    std::memcpy(memory, &number, sizeof number);
    const std::string expected = slowDigest(std::string(memory, sizeof number));
    EXPECT_EQ(expected, digestOfRange(std::list<double>{number}));
    EXPECT_EQ(expected, digestOfRange(std::vector<double>{number}));
}

TEST(SHA1Test, PaddingIsTakenAsItLiesInMemory)
{
    const std::string memory(sizeof(long double), 'Z');
    std::vector<long double> row(1);
    std::list<long double> chain(1);
    std::memcpy(row.data(), memory.data(), memory.size());
    std::memcpy(&chain.front(), memory.data(), memory.size());
    EXPECT_EQ(slowDigest(memory), digestOfRange(row));
    EXPECT_EQ(slowDigest(memory), digestOfRange(chain));
}

TEST(SHA1Test, VolatileElementsAreTaken)
{
    volatile std::uint16_t numbers[] = {0x0201, 0x0403};
    SHA1 sha1;
    sha1.input(std::begin(numbers), std::end(numbers));
    EXPECT_EQ(slowDigest("\1\2\3\4"), sha1.getResult(false));
}

template <typename Iterator>
concept CanBeInput = requires(SHA1& sha1, Iterator i)
{
    sha1.input(i, i);
};
static_assert(CanBeInput<const char*> && CanBeInput<std::vector<bool>::const_iterator> && CanBeInput<std::byte*>);
static_assert(!CanBeInput<std::string*> && !CanBeInput<std::vector<std::vector<char>>::iterator>);
static_assert(!CanBeInput<std::list<std::string>::iterator> && !CanBeInput<std::ostreambuf_iterator<char>>);
static_assert(!CanBeInput<int>);

/// Gives letters and fails at the end of them.
class FailingLetters
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = char;

    explicit FailingLetters(int left) : mLeft(left) {}
    char operator*() const { return mLeft > 0 ? 'f' : throw std::logic_error("no letter"); }
    FailingLetters& operator++()
    {
        --mLeft;
        return *this;
    }
    FailingLetters operator++(int) { return FailingLetters(mLeft--); }
    bool operator==(const FailingLetters& other) const { return mLeft == other.mLeft; }

private:
    int mLeft;
};

TEST(SHA1Test, FailureOfAnIteratorLeavesTheElementsInFrontOfIt)
{
    SHA1 sha1;
    EXPECT_THROW(sha1.input(FailingLetters(70), FailingLetters(-1)), std::logic_error);
    EXPECT_EQ(slowDigest(std::string(70, 'f')), sha1.getResult(false));
}

} // namespace
