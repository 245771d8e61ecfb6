#include "time/SHA1Compression.h"

#include "time/SHA1Model.h"
#include "time/SHA1Vectors.h"

#include <kelvobase/SHA1.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace
{

using namespace KelvoBase;

/// Puts a form of the compression into use, and the one that was there back.
class InUse
{
public:
    explicit InUse(sha1::Compress compress) : mBefore(std::exchange(sha1::compress, compress)) {}
    ~InUse() { sha1::compress = mBefore; }
    InUse(const InUse&) = delete;
    InUse& operator=(const InUse&) = delete;

private:
    sha1::Compress mBefore;
};

/// Random blocks at any address, some of them beside each other, into random digests.
void expectCompressionOfTheModel(sha1::Compress compress)
{
    std::mt19937 random(6);
    for (int i = 0; i < 3000; ++i) {
        const std::size_t count = random() % 6;
        const std::size_t begin = random() % 17;
        std::vector<unsigned char> bytes(begin + 64 * count);
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<unsigned char>(random()); });
        unsigned int digest[5];
        std::generate(std::begin(digest), std::end(digest), [&] { return static_cast<unsigned int>(random()); });
        test::Words expected;
        std::copy(std::begin(digest), std::end(digest), expected.begin());
        for (std::size_t block = 0; block < count; ++block) {
            test::compressSlowly(expected, std::span<const unsigned char, 64>(&bytes[begin + 64 * block], 64));
        }
        compress(digest, bytes.data() + begin, count);
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), std::begin(digest))) << i << ", blocks: " << count;
    }
}

void expectPublishedDigests(sha1::Compress compress)
{
    const InUse inUse(compress);
    for (const test::SHA1Vector& vector : test::sha1Vectors) {
        SHA1 digest;
        digest.input(vector.message.begin(), vector.message.end());
        EXPECT_EQ(vector.digest, digest.getResult(false)) << vector.message.substr(0, 120);
    }
}

TEST(SHA1CompressionTest, PortableFormIsThatOfTheModel)
{
    expectCompressionOfTheModel(sha1::compressPortably);
}

TEST(SHA1CompressionTest, PortableFormGivesThePublishedDigests)
{
    expectPublishedDigests(sha1::compressPortably);
}

TEST(SHA1CompressionTest, InstructionsAreThoseOfTheModel)
{
    if (!sha1::withInstructions()) {
        GTEST_SKIP() << "this processor has no SHA instructions";
    }
    expectCompressionOfTheModel(sha1::withInstructions());
}

TEST(SHA1CompressionTest, InstructionsGiveThePublishedDigests)
{
    if (!sha1::withInstructions()) {
        GTEST_SKIP() << "this processor has no SHA instructions";
    }
    expectPublishedDigests(sha1::withInstructions());
}

TEST(SHA1CompressionTest, FirstCallPutsTheFasterFormIntoUse)
{
    SHA1().getResult(false);
    const sha1::Compress faster = sha1::withInstructions();
    EXPECT_EQ(faster ? faster : sha1::compressPortably, sha1::compress);
}

TEST(SHA1CompressionTest, LongRunsOfBlocksAreThoseOfTheModel)
{
    std::vector<unsigned char> bytes(64 * 150);
    std::mt19937 random(7);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<unsigned char>(random()); });
    test::Words expected{1, 2, 3, 4, 5};
    for (std::size_t begin = 0; begin < bytes.size(); begin += 64) {
        test::compressSlowly(expected, std::span<const unsigned char, 64>(&bytes[begin], 64));
    }
    for (const sha1::Compress compress : {sha1::compressPortably, *sha1::compress}) {
        unsigned int digest[] = {1, 2, 3, 4, 5};
        compress(digest, bytes.data(), 150);
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), std::begin(digest)));
    }
}

} // namespace
