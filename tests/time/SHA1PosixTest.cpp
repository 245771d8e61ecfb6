#include "support/ChildProcess.h"

#include <kelvobase/SHA1.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace
{

using namespace KelvoBase;

TEST(SHA1PosixTest, DigestsAreThoseOfTheProgramSha1sum)
{
    if (test::runChild({"sha1sum", "--version"}).status != 0) {
        GTEST_SKIP() << "there is no program sha1sum";
    }
    std::mt19937 random(8);
    for (const std::size_t length : {0u, 1u, 55u, 56u, 63u, 64u, 65u, 119u, 120u, 1000u, 4096u, 100000u}) {
        std::string message(length, '\0');
        for (char& c : message) {
            c = static_cast<char>(random());
        }
        SHA1 sha1;
        sha1.input(message.begin(), message.end());
        const test::ChildResult result = test::runChild({"sha1sum"}, {{}, {}, "", message});
        EXPECT_EQ(sha1.getResult(false) + "  -\n", result.out) << length;
    }
}

} // namespace
