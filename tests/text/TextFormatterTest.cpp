/// \file
/// What all formats have from their base: the stack of closing texts, the result, the plain `print`.

#include "any/GroupedLocale.h"

#include <kelvobase/TextFormatter.h>

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace KelvoBase::test
{

namespace
{

/// A format as a tool may make one.
class Brackets : public TextFormatter
{
public:
    explicit Brackets(bool* destroyed = nullptr) : mDestroyed(destroyed) {}
    ~Brackets() override
    {
        if (mDestroyed != nullptr) {
            *mDestroyed = true;
        }
    }
    void beginDocument(const std::string& title) override { mStream << "doc(" << title << ")"; }
    void endDocument() override { mStream << "end"; }
    void em() override { open("e[", "]e"); }
    void b() override { open("b[", "]b"); }
    void u() override { open("", ""); }
    void br() override { mStream << "/"; }
    void header(int level) override
    {
        mStream << level << ' ' << 0.5 << '[';
        mCloseTexts.push("]");
    }
    void ulist() override { open("*[", "]"); }
    void olist() override { open("#[", "]"); }
    void listitem() override { mStream << ","; }
    void label(const std::string& name) override { mStream << "@" << name; }
    void ref(const std::string& target) override { open("", " ->" + target); }
    void link(const std::string& url) override { open(url, "!"); }
    std::size_t openSpans() const { return mCloseTexts.size(); }

private:
    void open(const std::string& opens, const std::string& closes)
    {
        mStream << opens;
        mCloseTexts.push(closes);
    }
    bool* mDestroyed;
};

static_assert(std::is_abstract_v<TextFormatter>);
static_assert(std::has_virtual_destructor_v<TextFormatter>);
static_assert(!std::is_copy_constructible_v<Brackets> && !std::is_copy_assignable_v<Brackets>);
static_assert(!std::is_copy_constructible_v<HtmlTextFormatter> && !std::is_copy_assignable_v<HtmlTextFormatter>);
static_assert(!std::is_copy_constructible_v<TexTextFormatter> && !std::is_copy_assignable_v<TexTextFormatter>);
static_assert(!std::is_move_constructible_v<HtmlTextFormatter>);

TEST(TextFormatter, BeginsEmpty)
{
    EXPECT_EQ(Brackets().str(), "");
    EXPECT_EQ(HtmlTextFormatter().str(), "");
    EXPECT_EQ(TexTextFormatter().str(), "");
}

TEST(TextFormatter, PrintsTextUnchanged)
{
    const std::string text("a_b$c&d <e> \\ % # { } \n\t\xE4\0 end", 31);
    Brackets out;
    out.print(text);
    EXPECT_EQ(out.str(), text);
    out.print("");
    out.print("literal");
    EXPECT_EQ(out.str(), text + "literal");
}

TEST(TextFormatter, WritesRawTextUnchanged)
{
    const std::string text("a_b$c&d\\%\0x", 11);
    Brackets plain;
    HtmlTextFormatter html;
    TexTextFormatter tex;
    for (TextFormatter* out :
         {static_cast<TextFormatter*>(&plain), static_cast<TextFormatter*>(&html), static_cast<TextFormatter*>(&tex)}) {
        out->writeRaw(text);
        out->writeRaw("");
        EXPECT_EQ(out->str(), text);
    }
}

TEST(TextFormatter, ClosesSpansInReverseOrder)
{
    Brackets out;
    out.b();
    out.em();
    out.ref("x");
    EXPECT_EQ(out.str(), "b[e[");
    out.end();
    EXPECT_EQ(out.str(), "b[e[ ->x");
    out.print("t");
    out.end();
    EXPECT_EQ(out.str(), "b[e[ ->xt]e");
    out.end();
    EXPECT_EQ(out.str(), "b[e[ ->xt]e]b");
    EXPECT_EQ(out.openSpans(), 0u);
}

TEST(TextFormatter, ClosesASpanWithAnEmptyTextLikeAnyOther)
{
    Brackets out;
    out.b();
    out.u();
    out.end();
    EXPECT_EQ(out.str(), "b[");
    EXPECT_EQ(out.openSpans(), 1u);
}

TEST(TextFormatter, GivesItsTextAsOftenAsAsked)
{
    Brackets out;
    out.print("a");
    const std::string before = out.str();
    out.print("b");
    EXPECT_EQ(before, "a");
    EXPECT_EQ(out.str(), "ab");
    EXPECT_EQ(out.str(), "ab");
}

TEST(TextFormatter, NestsManySpans)
{
    Brackets out;
    std::string expected;
    for (int i = 0; i < 1000; ++i) {
        i % 2 == 0 ? out.em() : out.b();
        expected += i % 2 == 0 ? "e[" : "b[";
    }
    for (int i = 999; i >= 0; --i) {
        out.end();
        expected += i % 2 == 0 ? "]e" : "]b";
    }
    EXPECT_EQ(out.str(), expected);
    EXPECT_EQ(out.openSpans(), 0u);
}

TEST(TextFormatter, WritesNumbersInTheClassicLocale)
{
    const GroupedLocale locale;
    Brackets out;
    out.header(123456);
    EXPECT_EQ(out.str(), "123456 0.5[");
}

TEST(TextFormatter, IsDestroyedThroughItsBase)
{
    bool destroyed = false;
    std::unique_ptr<TextFormatter> out = std::make_unique<Brackets>(&destroyed);
    out->b(); // an open span is dropped
    out.reset();
    EXPECT_TRUE(destroyed);
}

} // namespace

} // namespace KelvoBase::test
