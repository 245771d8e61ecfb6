#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <limits>

namespace KelvoBase::platform
{

namespace
{

constexpr const char* missing = "no-such-directory/file";

} // namespace

TEST(ErrorsTest, TakeLastErrorGivesTheReasonOnce)
{
    takeLastError();
    ASSERT_FALSE(removeFile(missing));
    EXPECT_NE(0u, takeLastError());
    EXPECT_EQ(0u, takeLastError());
}

TEST(ErrorsTest, ReasonStaysThroughASuccess)
{
    ASSERT_FALSE(removeFile(missing));
    ASSERT_TRUE(hasWorkingDirectory());
    EXPECT_NE(0u, takeLastError());
}

TEST(ErrorsTest, TextOfAReasonIsOneLineAndNotEmpty)
{
    removeFile(missing);
    const std::string text = errorText(takeLastError()).value_or("");
    EXPECT_NE("", text);
    EXPECT_EQ(std::string::npos, text.find_first_of("\r\n")) << text;
}

TEST(ErrorsTest, NoErrorHasAText)
{
    EXPECT_NE("", errorText(0).value_or(""));
}

TEST(ErrorsTest, CodeThatWasNeverGivenOutHasNoText)
{
    EXPECT_EQ(std::nullopt, errorText(0x2FFFFFFF));
    EXPECT_EQ(std::nullopt, errorText(std::numeric_limits<unsigned long>::max()));
}

TEST(ErrorsTest, MissingNameIsNoTakenOne)
{
    removeFile(missing);
    EXPECT_FALSE(isAlreadyExists(takeLastError()));
    EXPECT_FALSE(isAlreadyExists(0));
}

} // namespace KelvoBase::platform
