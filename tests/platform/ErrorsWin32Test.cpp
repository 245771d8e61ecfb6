#include "platform/Platform.h"
#include "platform/win32/Win32.h"

#include <gtest/gtest.h>

namespace KelvoBase::platform
{

namespace
{

/// The system's text as it comes without a width, with its line ends.
std::string textWithLineEnds(DWORD code)
{
    char buffer[4096];
    const DWORD length = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                                          1024, buffer, sizeof buffer, nullptr);
    return {buffer, length};
}

/// With each line end, and the blanks around it, as one blank.
std::string inOneLine(const std::string& text)
{
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' || text[i] == '\n') {
            if (!line.ends_with(' ')) {
                line += ' ';
            }
        } else if (text[i] != ' ' || !line.ends_with(' ')) {
            line += text[i];
        }
    }
    return line;
}

} // namespace

TEST(ErrorsWin32Test, TakeLastErrorGivesTheSystemsCodeAndClearsIt)
{
    ::SetLastError(ERROR_SHARING_VIOLATION);
    EXPECT_EQ(32u, takeLastError());
    EXPECT_EQ(0u, ::GetLastError());
    ::SetLastError(0xFFFFFFFF);
    EXPECT_EQ(0xFFFFFFFFu, takeLastError());
}

TEST(ErrorsWin32Test, TextIsTheSystemsInOneLine)
{
    unsigned int known = 0;
    for (DWORD code = 0; code < 2000; ++code) {
        const std::optional<std::string> text = errorText(code);
        const std::string expected = textWithLineEnds(code);
        ASSERT_EQ(!expected.empty(), text.has_value()) << code;
        if (text) {
            EXPECT_EQ(inOneLine(expected), inOneLine(*text)) << code;
            EXPECT_EQ(std::string::npos, text->find_first_of("\r\n")) << code;
            ++known;
        }
    }
    EXPECT_LT(500u, known);
}

TEST(ErrorsWin32Test, TextKeepsTheBlankInPlaceOfItsLineEnd)
{
    for (const DWORD code : {ERROR_SUCCESS, ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_ALREADY_EXISTS}) {
        ASSERT_TRUE(textWithLineEnds(code).ends_with("\r\n")) << code;
        EXPECT_TRUE(errorText(code).value().ends_with(". ")) << '"' << *errorText(code) << '"';
    }
}

TEST(ErrorsWin32Test, PlacesForInsertsStayInTheText)
{
    EXPECT_NE(std::string::npos, errorText(ERROR_BAD_EXE_FORMAT).value().find("%1"))
        << *errorText(ERROR_BAD_EXE_FORMAT);
}

TEST(ErrorsWin32Test, OnlyTheTakenNameCountsAsAlreadyExisting)
{
    EXPECT_TRUE(isAlreadyExists(183));
    for (const unsigned long code : {0ul, 2ul, 3ul, 5ul, 17ul, 80ul, 145ul}) {
        EXPECT_FALSE(isAlreadyExists(code)) << code;
    }
}

} // namespace KelvoBase::platform
