/// \file
/// Text without a format: what may be appended, and what each token does to a formatter.

#include "any/GroupedLocale.h"

#include <kelvobase/TextFormatter.h>
#include <kelvobase/TextRep.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace KelvoBase::test
{

namespace
{

std::string html(const TextRep& rep)
{
    HtmlTextFormatter out;
    rep.flush(&out);
    return out.str();
}

std::string tex(const TextRep& rep)
{
    TexTextFormatter out;
    rep.flush(&out);
    return out.str();
}

/// A format that shows which operations it is given.
class Logging : public HtmlTextFormatter
{
public:
    void b() override
    {
        log += "b;";
        mCloseTexts.push("/b");
    }
    void em() override
    {
        log += "em;";
        mCloseTexts.push("/em");
    }
    void print(const std::string& text) override
    {
        if (text == "throw") {
            throw std::runtime_error("refused");
        }
        log += "print:" + text + ";";
    }
    std::string log;
};

static_assert(std::is_default_constructible_v<TextRep>);
static_assert(std::has_virtual_destructor_v<TextRep>);
static_assert(!std::is_copy_constructible_v<TextRep> && !std::is_copy_assignable_v<TextRep>);
static_assert(!std::is_move_constructible_v<TextRep>);
static_assert(std::is_empty_v<TextTag::b> && std::is_empty_v<TextTag::em> && std::is_empty_v<TextTag::end>);
static_assert(std::is_abstract_v<TextRep::TextToken>);
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::PlainTextToken<std::string>>);
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::PlainTextToken<unsigned int>>);
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::TextTagToken<TextTag::b>>);
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::TextTagToken<TextTag::em>>);
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::TextTagToken<TextTag::end>>);

template <typename T>
concept CanAppend = requires(TextRep& rep, T value)
{
    {
        rep << static_cast<T&&>(value)
        } -> std::same_as<TextRep&>;
};

static_assert(CanAppend<std::string> && CanAppend<const std::string> && CanAppend<std::string&>);
static_assert(CanAppend<unsigned int> && CanAppend<const unsigned int&>);
static_assert(CanAppend<const char*> && CanAppend<char*> && CanAppend<const char* const&>);
static_assert(CanAppend<const char (&)[4]> && CanAppend<char (&)[4]> && CanAppend<char (&)[1]>);
static_assert(CanAppend<TextTag::b> && CanAppend<TextTag::em&> && CanAppend<const TextTag::end&>);

static_assert(!CanAppend<int> && !CanAppend<long> && !CanAppend<unsigned long> && !CanAppend<unsigned short>);
static_assert(!CanAppend<unsigned long long> && !CanAppend<bool> && !CanAppend<char> && !CanAppend<unsigned char>);
static_assert(!CanAppend<double> && !CanAppend<std::nullptr_t> && !CanAppend<void*>);
static_assert(!CanAppend<std::string_view> && !CanAppend<std::vector<char>> && !CanAppend<TextRep&>);
static_assert(!CanAppend<const wchar_t (&)[4]> && !CanAppend<const unsigned char (&)[4]> && !CanAppend<int*>);

TEST(TextRep, WithoutTokensWritesNothing)
{
    const TextRep rep;
    EXPECT_EQ(html(rep), "");
    EXPECT_EQ(tex(rep), "");
}

TEST(TextRep, BecomesBothFormats)
{
    TextRep rep;
    rep << TextTag::b() << "x" << TextTag::end();
    EXPECT_EQ(html(rep), "<B>x</B> ");
    EXPECT_EQ(tex(rep), "\\textbf{x} ");
    rep << TextTag::em() << "a_b" << TextTag::end();
    EXPECT_EQ(html(rep), "<B>x</B> <EM>a_b</EM> ");
    EXPECT_EQ(tex(rep), "\\textbf{x} \\emph{a\\_b} ");
}

TEST(TextRep, MixesTextNumbersAndTags)
{
    const std::string name = "a_b";
    TextRep rep;
    rep << "Found " << 3u << " of " << TextTag::b() << name << TextTag::end() << ".";
    EXPECT_EQ(html(rep), "Found 3 of <B>a_b</B> .");
    EXPECT_EQ(tex(rep), "Found 3 of \\textbf{a\\_b} .");
}

TEST(TextRep, TextGoesThroughPrintAsItIs)
{
    TextRep rep;
    rep << "a_b" << std::string("c$d") << "";
    Logging out;
    rep.flush(&out);
    EXPECT_EQ(out.log, "print:a_b;print:c$d;print:;");
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(tex(rep), "a\\_bc\\$d");
}

TEST(TextRep, NumberGoesPastPrint)
{
    // Required, Q-910
    TextRep rep;
    rep << 1200u;
    Logging out;
    rep.flush(&out);
    EXPECT_EQ(out.log, "");
    EXPECT_EQ(out.str(), "1200");
}

TEST(TextRep, NumbersAreDecimalWhateverTheLocale)
{
    const GroupedLocale locale;
    TextRep rep;
    const unsigned int most = std::numeric_limits<unsigned int>::max();
    rep << 0u << " " << 1000u << " " << 123456u << " " << most;
    EXPECT_EQ(html(rep), "0 1000 123456 4294967295");
    EXPECT_EQ(tex(rep), "0 1000 123456 4294967295");
}

TEST(TextRep, TagsCallTheFormatterAndEndClosesTheLastSpan)
{
    TextRep rep;
    rep << TextTag::b() << TextTag::em() << TextTag::end() << TextTag::end();
    Logging out;
    rep.flush(&out);
    EXPECT_EQ(out.log, "b;em;");
    EXPECT_EQ(out.str(), "/em/b");
}

TEST(TextRep, EndClosesASpanOfTheFormatterToo)
{
    TextRep rep;
    rep << "x" << TextTag::end() << "y";
    HtmlTextFormatter out;
    out.header(2);
    rep.flush(&out);
    EXPECT_EQ(out.str(), "<H2>x</H2>\ny");
}

TEST(TextRep, SpanMayStayOpen)
{
    TextRep rep;
    rep << TextTag::b() << "x";
    HtmlTextFormatter out;
    rep.flush(&out);
    EXPECT_EQ(out.str(), "<B>x");
    out.end();
    EXPECT_EQ(out.str(), "<B>x</B> ");
}

TEST(TextRep, ArraysOfCharactersAreText)
{
    char array[16] = "a_b";
    char* pointer = array + 2;
    const char* const constant = "c";
    char empty[1] = {'\0'};
    TextRep rep;
    rep << array << pointer << constant << empty << "d";
    array[0] = 'z'; // a copy was made
    EXPECT_EQ(html(rep), "a_bbcd");
}

TEST(TextRep, CharactersEndAtAZeroByteAndStringsDoNot)
{
    TextRep rep;
    rep << "a\0b" << std::string("c\0d", 3);
    EXPECT_EQ(html(rep), std::string("ac\0d", 4));
}

TEST(TextRep, ValuesAreCopied)
{
    std::string text = "before";
    unsigned int number = 1;
    TextRep rep;
    rep << text << number;
    text = "after";
    number = 2;
    EXPECT_EQ(html(rep), "before1");
}

TEST(TextRep, AppendingGivesTheObjectItself)
{
    TextRep rep;
    char array[] = "x";
    EXPECT_EQ(&(rep << "x"), &rep);
    EXPECT_EQ(&(rep << array), &rep);
    EXPECT_EQ(&(rep << std::string("x")), &rep);
    EXPECT_EQ(&(rep << 1u), &rep);
    EXPECT_EQ(&(rep << TextTag::b()), &rep);
    EXPECT_EQ(&(rep << TextTag::em()), &rep);
    EXPECT_EQ(&(rep << TextTag::end()), &rep);
}

TEST(TextRep, FlushKeepsTheTokens)
{
    TextRep rep;
    rep << TextTag::em() << "a_b" << TextTag::end() << 7u;
    HtmlTextFormatter out;
    rep.flush(&out);
    rep.flush(&out);
    EXPECT_EQ(out.str(), "<EM>a_b</EM> 7<EM>a_b</EM> 7");
    EXPECT_EQ(tex(rep), "\\emph{a\\_b} 7");
    rep << "!";
    EXPECT_EQ(html(rep), "<EM>a_b</EM> 7!");
}

TEST(TextRep, FlushEndsWhereTheFormatterThrows)
{
    TextRep rep;
    rep << "a"
        << "throw"
        << "b";
    Logging out;
    EXPECT_THROW(rep.flush(&out), std::runtime_error);
    EXPECT_EQ(out.log, "print:a;");
    EXPECT_EQ(html(rep), "athrowb");
}

TEST(TextRep, KeepsTheOrderOfManyTokens)
{
    TextRep rep;
    std::string expected;
    for (unsigned int i = 0; i < 5000; ++i) {
        rep << i << "," << TextTag::b() << std::to_string(i) << TextTag::end();
        expected += std::to_string(i) + ",<B>" + std::to_string(i) + "</B> ";
    }
    EXPECT_EQ(html(rep), expected);
}

TEST(TextRep, TokensCanBeUsedAlone)
{
    HtmlTextFormatter out;
    TextRep::TextTagToken<TextTag::b>().flush(&out);
    TextRep::PlainTextToken<std::string>("x").flush(&out);
    TextRep::PlainTextToken<unsigned int>(3).flush(&out);
    TextRep::TextTagToken<TextTag::end>().flush(&out);
    EXPECT_EQ(out.str(), "<B>x3</B> ");
}

TEST(TextRep, IsDestroyedThroughItsBase)
{
    class Derived : public TextRep
    {
    public:
        explicit Derived(bool& destroyed) : mDestroyed(destroyed) {}
        ~Derived() override { mDestroyed = true; }

    private:
        bool& mDestroyed;
    };
    bool destroyed = false;
    std::unique_ptr<TextRep> rep = std::make_unique<Derived>(destroyed);
    *rep << std::string(100, 'x') << 1u;
    rep.reset();
    EXPECT_TRUE(destroyed);
}

} // namespace

} // namespace KelvoBase::test
