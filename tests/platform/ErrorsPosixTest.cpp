#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>

namespace
{

using namespace KelvoBase;

TEST(ErrorsPosixTest, TakeLastErrorGivesErrnoAndClearsIt)
{
    errno = EEXIST;
    EXPECT_EQ(17u, platform::takeLastError());
    EXPECT_EQ(0u, platform::takeLastError());
    EXPECT_EQ(0, errno);
}

TEST(ErrorsPosixTest, KnownCodesHaveTheirText)
{
    const std::pair<unsigned long, const char*> texts[] = {
        {0, "Success"},
        {ENOENT, "No such file or directory"},
        {EACCES, "Permission denied"},
        {EEXIST, "File exists"},
        {ENOTDIR, "Not a directory"},
        {EISDIR, "Is a directory"},
        {EINVAL, "Invalid argument"},
        {ENOTEMPTY, "Directory not empty"},
        {EXDEV, "Invalid cross-device link"},
        {EHWPOISON, "Memory page has hardware error"}, // the last one
    };
    for (const auto& [code, text] : texts) {
        EXPECT_EQ(text, platform::errorText(code).value_or("nothing")) << code;
    }
}

TEST(ErrorsPosixTest, EveryCodeHasTheTextOfTheLibraryOrNone)
{
    int without = 0;
    for (int code = 0; code <= EHWPOISON; ++code) {
        const std::string text = std::strerror(code);
        const bool made = text == "Unknown error " + std::to_string(code);
        without += made ? 1 : 0;
        const auto found = platform::errorText(static_cast<unsigned long>(code));
        EXPECT_EQ(made ? std::nullopt : std::optional(text), found) << code;
    }
    EXPECT_EQ(2, without); // 41 and 58 were never given out
}

TEST(ErrorsPosixTest, UnknownCodesHaveNoText)
{
    const unsigned long codes[] = {EHWPOISON + 1, 4711, INT_MAX, INT_MAX + 1ul, UINT_MAX, UINT_MAX + 3ul, ULONG_MAX};
    for (const unsigned long code : codes) {
        EXPECT_EQ(std::nullopt, platform::errorText(code)) << code;
    }
}

TEST(ErrorsPosixTest, OnlyTheTakenNameCountsAsAlreadyExisting)
{
    EXPECT_TRUE(platform::isAlreadyExists(EEXIST));
    const unsigned long others[] = {0, ENOENT, ENOTDIR, ENOTEMPTY, 183, EEXIST + (1ul << 32)};
    for (const unsigned long code : others) {
        EXPECT_FALSE(platform::isAlreadyExists(code)) << code;
    }
}

} // namespace
