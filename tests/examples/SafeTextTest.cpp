#include "SafeText.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace seriesstat
{

namespace
{

struct Row
{
    std::string text;
    std::string expected;
};

std::string visible(const std::string& text)
{
    return shortened(text, text.size());
}

TEST(SafeTextTest, WhatCanBeSeenStaysAsItIs)
{
    for (const char* text : {"", "speed / (km/s)", "µ", "中文", "𝛼", "\xC2\xA0", "\xED\x9F\xBF", "\xEE\x80\x80",
                             "\xF4\x8F\xBF\xBF", "\xEF\xBF\xBD"}) {
        EXPECT_EQ(text, visible(text));
    }
}

TEST(SafeTextTest, WhatWouldActBecomesAMark)
{
    const Row rows[] = {
        {std::string("a\0b", 3), "a?b"},
        {"\x1B[2J\a\b\t\r\n\x7F", "?[2J??????"},
        {"a\xC2\x80z\xC2\x9F", "a?z?"}, // C1
        {"\xE2\x80\xAE"
         "exe.txt",
         "?exe.txt"},                                                          // right to left
        {"\xE2\x81\xA6\xE2\x80\x8B\xEF\xBB\xBF\xE2\x80\xA8\xD8\x9C", "?????"}, // isolates, widths, marks, line ends
        {"\xEF\xBF\xBE\xEF\xBF\xBF", "??"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.expected, visible(row.text));
    }
}

TEST(SafeTextTest, EachByteThatIsNoUtf8BecomesAMark)
{
    const Row rows[] = {
        {"a\x80z", "a?z"},
        {"\xC3", "?"},
        {"\xC3(", "?("},
        {"\xC0\xAF", "??"},           // longer than needed
        {"\xE0\x80\xAF", "???"},      // longer than needed
        {"\xF0\x80\x80\xAF", "????"}, // longer than needed
        {"\xF4\x90\x80\x80z", "?z"},  // behind the last character
        {"\xED\xA0\x80z", "?z"},      // half of a pair
        {"\xF5\x80\x80\x80", "????"},
        {"\xE4\xB8", "??"},
        {"\xE4\xB8z", "??z"},
        {"\xFF\xFE", "??"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.expected, visible(row.text)) << row.text;
    }
}

TEST(SafeTextTest, AnyBytesGiveUtf8WithoutControlCharacters)
{
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same texts every time
    const std::string lively = "\xE4\xB8\xAD\xC2\x85\xF0\x9D\x9B\xBC\xED\xA0\x80 a\t\xFF";
    for (int run = 0; run < 20000; ++run) {
        std::string text;
        for (std::size_t i = random() % 12; i > 0; --i) {
            text += random() % 2 == 0 ? static_cast<char>(random() % 256) : lively[random() % lively.size()];
        }
        const std::string once = visible(text);
        EXPECT_EQ(once, visible(once));
        EXPECT_EQ(std::string::npos, once.find_first_of(std::string("\0\t\n\r\x1B\x7F", 6)));
    }
}

TEST(SafeTextTest, LongTextsLoseTheirMiddle)
{
    EXPECT_EQ("abcdef", shortened("abcdef", 6));
    EXPECT_EQ("ab…fg", shortened("abcdefg", 5));
    EXPECT_EQ("ab…g", shortened("abcdefg", 4));
    EXPECT_EQ("中…文", shortened("中abc文", 3));
    EXPECT_EQ("…", shortened("ab", 1));
}

TEST(SafeTextTest, HtmlHasNoSignLeftThatCouldEndAText)
{
    EXPECT_EQ("&lt;a href=&quot;x&quot;&gt; &amp;amp; &#39;µ&#39; ?", htmlText("<a href=\"x\"> &amp; 'µ' \n"));
    EXPECT_EQ("\\{}%$#_^~", htmlText("\\{}%$#_^~"));
}

TEST(SafeTextTest, LatexHasNoCommandLeft)
{
    const Row rows[] = {
        {"\\end{document}", "\\textbackslash{}end\\{document\\}"},
        {"50 %", "50 \\%"},
        {"$&#", "\\$\\&\\#"},
        {"x_1/y", "x\\_\\allowbreak{}1\\slash{}y"},
        {"^~", "\\textasciicircum{}\\textasciitilde{}"},
        {"<>\"'`", "\\textless{}\\textgreater{}\\textquotedbl{}\\textquotesingle{}\\textasciigrave{}"},
        {"--,,[]", "{-}{-}{,}{,}{[}{]}"},
        {"a\nb\tc", "a?b?c"},
        {"a|b*c!d?e;f:g(h)=+@.", "a|b*c!d?e;f:g(h)=+@."},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.expected, latexText(row.text));
    }
}

TEST(SafeTextTest, LatexShowsSignsOfUnits)
{
    EXPECT_EQ("$\\lambda$ \\slash{} µm", latexText("λ / µm"));
    EXPECT_EQ("g cm$^{-}$$^{3}$ °C é ÿ", latexText("g cm⁻³ °C é ÿ"));
    EXPECT_EQ("$\\Omega$$\\Omega$ \\AA{} CO$_{2}$", latexText("\xCE\xA9\xE2\x84\xA6 \xE2\x84\xAB CO₂"));
    EXPECT_EQ("\\sign{Ā}{0100}\\sign{中}{4E2D}\\sign{𝛼}{1D6FC}", latexText("Ā中𝛼"));
}

} // namespace

} // namespace seriesstat
