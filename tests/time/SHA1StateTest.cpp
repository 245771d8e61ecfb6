#include "support/Text.h"
#include "time/SHA1Model.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/SHA1.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <functional>
#include <list>

namespace
{

using namespace KelvoBase;
using test::SlowSHA1;

/// The fields of a digest in their order. States that would take years to reach are put together here.
struct Fields
{
    unsigned int digest[5];
    unsigned long long length;
    unsigned int blockIndex;
    unsigned char block[64];
    bool computed;
    bool corrupted;
};
static_assert(sizeof(Fields) == sizeof(SHA1) && alignof(Fields) == alignof(SHA1));
static_assert(std::is_trivially_copyable_v<SHA1>);

Fields fieldsOf(const SHA1& sha1)
{
    return std::bit_cast<Fields>(sha1);
}

/// A digest that is `bytes` bytes in front of the wrap of its length, and its model.
SHA1 nearTheEnd(unsigned long long bytes, SlowSHA1& model)
{
    Fields fields = fieldsOf(SHA1());
    fields.length = 0 - 8 * bytes;
    fields.blockIndex = static_cast<unsigned int>((64 - bytes % 64) % 64);
    std::fill_n(fields.block, fields.blockIndex, static_cast<unsigned char>('m'));
    model.length = fields.length;
    model.index = fields.blockIndex;
    std::copy(std::begin(fields.block), std::end(fields.block), model.block.begin());
    return std::bit_cast<SHA1>(fields);
}

void expectSame(const SlowSHA1& model, const SHA1& sha1)
{
    const Fields fields = fieldsOf(sha1);
    EXPECT_TRUE(std::equal(model.h.begin(), model.h.end(), std::begin(fields.digest)));
    EXPECT_EQ(model.length, fields.length);
    EXPECT_EQ(model.index, fields.blockIndex);
    EXPECT_TRUE(std::equal(model.block.begin(), model.block.end(), std::begin(fields.block)));
    EXPECT_EQ(model.computed, fields.computed);
    EXPECT_EQ(model.corrupted, fields.corrupted);
}

/// How a text is fed: in one piece that is read where it lies, or element by element.
struct Feed
{
    const char* name;
    void (*feed)(SHA1& sha1, const std::string& text);
};
constexpr Feed feeds[] = {
    {"in bulk", [](SHA1& sha1, const std::string& text) { sha1.input(text.begin(), text.end()); }},
    {"one by one", [](SHA1& sha1, const std::string& text) { sha1.input(text.rbegin(), text.rend()); }},
};

TEST(SHA1StateTest, NewObjectHasTheStandardsInitialValues)
{
    expectSame(SlowSHA1(), SHA1());
}

TEST(SHA1StateTest, FieldsFollowTheModelThroughALife)
{
    for (const Feed& way : feeds) {
        SCOPED_TRACE(way.name);
        SHA1 sha1;
        SlowSHA1 model;
        for (const std::size_t size : {0u, 1u, 63u, 64u, 65u, 200u, 55u, 56u}) {
            const std::string text(size, static_cast<char>('a' + size % 26));
            way.feed(sha1, text);
            model.input(text);
            expectSame(model, sha1);
        }
        sha1.padMessage();
        model.padMessage();
        expectSame(model, sha1);
        EXPECT_EQ(model.getResult(false), sha1.getResult(false));
        expectSame(model, sha1);
    }
}

TEST(SHA1StateTest, ResetKeepsTheBytesOfTheBlock)
{
    const std::string text = "abc";
    SHA1 sha1;
    sha1.input(text.begin(), text.end());
    sha1.reset();
    SlowSHA1 model;
    model.block[0] = 'a';
    model.block[1] = 'b';
    model.block[2] = 'c';
    expectSame(model, sha1);
}

TEST(SHA1StateTest, LengthThatWrapsCorruptsInFrontOfTheCompression)
{
    // Required, Q-1110
    for (const Feed& way : feeds) {
        for (const std::size_t bytes : {1u, 2u, 63u, 64u, 65u, 128u, 1000u}) {
            SCOPED_TRACE(std::to_string(bytes) + " bytes, " + way.name);
            SlowSHA1 model;
            SHA1 sha1 = nearTheEnd(bytes, model);
            const std::string text(bytes, 'e');
            EXPECT_THROW(model.input(text), std::runtime_error);
            EXPECT_EQ("SHA1 input message too long",
                      test::textOf<OperationFailedException>([&] { way.feed(sha1, text); }));
            expectSame(model, sha1);
            EXPECT_EQ(64u, fieldsOf(sha1).blockIndex);
            EXPECT_TRUE(fieldsOf(sha1).corrupted);
        }
    }
}

TEST(SHA1StateTest, BytesBehindTheWrapAreNotTaken)
{
    for (const Feed& way : feeds) {
        SCOPED_TRACE(way.name);
        SlowSHA1 model;
        SHA1 sha1 = nearTheEnd(70, model);
        const std::string text(500, 'e');
        EXPECT_THROW(model.input(text), std::runtime_error);
        EXPECT_THROW(way.feed(sha1, text), OperationFailedException);
        expectSame(model, sha1);
    }
}

TEST(SHA1StateTest, LongestMessageHasADigest)
{
    for (const Feed& way : feeds) {
        SCOPED_TRACE(way.name);
        SlowSHA1 model;
        SHA1 sha1 = nearTheEnd(100, model);
        const std::string text(99, 'e');
        model.input(text);
        way.feed(sha1, text);
        expectSame(model, sha1);
        EXPECT_EQ(model.getResult(false), sha1.getResult(false));
    }
}

TEST(SHA1StateTest, WrapInTheMiddleOfABlockCorruptsAsWell)
{
    for (const Feed& way : feeds) {
        SCOPED_TRACE(way.name);
        SlowSHA1 model;
        SHA1 sha1 = nearTheEnd(100, model);
        sha1.processMessageBlock(); // the length goes on, the block begins anew
        model.processMessageBlock();
        const std::string text(100, 'e');
        EXPECT_THROW(model.input(text), std::runtime_error);
        EXPECT_EQ("SHA1 input message too long", test::textOf<OperationFailedException>([&] { way.feed(sha1, text); }));
        expectSame(model, sha1);
        EXPECT_EQ(36u, fieldsOf(sha1).blockIndex);
    }
}

SHA1 corrupted()
{
    SlowSHA1 model;
    SHA1 sha1 = nearTheEnd(1, model);
    const char byte = 'e';
    EXPECT_THROW(sha1.input(&byte, &byte + 1), OperationFailedException);
    return sha1;
}

TEST(SHA1StateTest, CorruptedDigestRefusesEverythingUntilReset)
{
    SHA1 sha1 = corrupted();
    const std::string text = "abc";
    const std::list<char> list;
    const Fields before = fieldsOf(sha1);
    const std::function<void()> attempts[] = {
        [&] { sha1.input(text.begin(), text.end()); },
        [&] { sha1.input(text.begin(), text.begin()); },
        [&] { sha1.input(list.begin(), list.end()); },
        [&] { sha1.getResult(false); },
        [&] { sha1.getResult(true); },
    };
    for (const auto& attempt : attempts) {
        EXPECT_EQ("SHA1 digest corrupted", test::textOf<OperationFailedException>(attempt));
    }
    EXPECT_EQ(before.blockIndex, fieldsOf(sha1).blockIndex);
    sha1.reset();
    sha1.input(text.begin(), text.end());
    EXPECT_EQ(test::slowDigest(text), sha1.getResult(false));
}

TEST(SHA1StateTest, FinalizedIsToldBeforeCorrupted)
{
    Fields fields = fieldsOf(SHA1());
    fields.computed = true;
    fields.corrupted = true;
    SHA1 sha1 = std::bit_cast<SHA1>(fields);
    const std::string text = "abc";
    EXPECT_EQ("SHA1 input after finalized digest",
              test::textOf<OperationFailedException>([&] { sha1.input(text.begin(), text.end()); }));
    EXPECT_EQ("SHA1 digest corrupted", test::textOf<OperationFailedException>([&] { sha1.getResult(false); }));
}

TEST(SHA1StateTest, StepsOfTheDigestWorkBehindAnOverflow)
{
    SlowSHA1 model;
    SHA1 padded = nearTheEnd(1, model);
    const char byte = 'e';
    EXPECT_THROW(padded.input(&byte, &byte + 1), OperationFailedException);
    EXPECT_THROW(model.input("e"), std::runtime_error);
    padded.padMessage(); // in a block that is full
    model.padMessage();
    expectSame(model, padded);
    SHA1 processed = corrupted();
    processed.processMessageBlock();
    EXPECT_EQ(0u, fieldsOf(processed).blockIndex);
    EXPECT_TRUE(fieldsOf(processed).corrupted);
}

TEST(SHA1StateTest, FirstResultClearsTheBlockAndTheLength)
{
    const std::string text(70, 's');
    SHA1 sha1;
    sha1.input(text.begin(), text.end());
    sha1.getResult(true);
    const Fields fields = fieldsOf(sha1);
    EXPECT_EQ(64, std::count(std::begin(fields.block), std::end(fields.block), 0));
    EXPECT_EQ(0u, fields.length);
    EXPECT_EQ(0u, fields.blockIndex);
    EXPECT_TRUE(fields.computed);
}

} // namespace
