#include "support/Scratch.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

namespace KelvoBase::test
{

namespace
{

using namespace std::string_literals;
namespace fs = std::filesystem;

const char* const variable = "KELVOBASE_SCRATCH_TEST";

std::optional<std::string> value()
{
    const char* text = std::getenv(variable);
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

TEST(ScratchDirectory, IsNewAndEmptyAndGoesWithItsContent)
{
    fs::path path;
    {
        const ScratchDirectory scratch;
        path = scratch.path();
        EXPECT_TRUE(fs::is_directory(path));
        EXPECT_TRUE(fs::is_empty(path));
        scratch.write("sub/deeper/file", "x");
        EXPECT_TRUE(fs::is_regular_file(scratch / "sub/deeper/file"));
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST(ScratchDirectory, TwoAreDifferent)
{
    const ScratchDirectory one;
    const ScratchDirectory other;
    EXPECT_NE(one.path(), other.path());
}

TEST(ScratchDirectory, WritesByteForByte)
{
    const ScratchDirectory scratch;
    const std::string content = "a\r\nb\n\0\xFF"s;
    EXPECT_EQ(contentOf(scratch.write("file", content)), content);
    EXPECT_EQ(contentOf(scratch.write("file", "")), "");
}

TEST(ScratchDirectory, GivesLocationWithDriveAndBackslashes)
{
    const ScratchDirectory scratch;
    const std::string location = scratch.location("sub/file");
    EXPECT_EQ(location.substr(1, 2), ":\\");
    EXPECT_EQ(location.find('/'), std::string::npos);
    EXPECT_EQ(location, scratch.location() + "\\sub\\file");
}

TEST(ContentOf, MissingFileFails)
{
    EXPECT_NONFATAL_FAILURE(contentOf("no such file anywhere"), "no such file anywhere");
}

TEST(ScopedWorkingDirectory, IsPutBack)
{
    const ScratchDirectory scratch;
    const fs::path before = fs::current_path();
    {
        const ScopedWorkingDirectory inside(scratch.path());
        EXPECT_EQ(fs::current_path(), scratch.path());
    }
    EXPECT_EQ(fs::current_path(), before);
}

TEST(ScopedEnvironment, IsPutBack)
{
    EXPECT_EQ(value(), std::nullopt);
    {
        const ScopedEnvironment outer(variable, "one");
        EXPECT_EQ(value(), "one");
        {
            const ScopedEnvironment inner(variable, std::nullopt);
            EXPECT_EQ(value(), std::nullopt);
        }
        EXPECT_EQ(value(), "one");
    }
    EXPECT_EQ(value(), std::nullopt);
}

} // namespace

} // namespace KelvoBase::test
