/// \file
/// One citation in three forms.

#include "any/GroupedLocale.h"

#include <kelvobase/Literature.h>
#include <kelvobase/TextFormatter.h>
#include <kelvobase/TextRep.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <type_traits>

namespace KelvoBase::test
{

namespace
{

using Authors = std::vector<Literature::Author>;

const unsigned int most = std::numeric_limits<unsigned int>::max();

template <typename Format>
std::string through(const Literature& literature)
{
    TextRep rep;
    literature.toString(rep);
    Format out;
    rep.flush(&out);
    return out.str();
}

struct Row
{
    const char* title;
    Authors authors;
    unsigned int volume;
    unsigned int firstPage;
    unsigned int lastPage;
    const char* plain;
    const char* html;
    const char* tex;
};

const Authors oneAuthor{{"Berg", "Anna", "", "Maria"}};

std::vector<Row> rows()
{
    return {
        {"T", oneAuthor, 7, 1, 9, "A. Berg, _T_, _J_ *2004*, _7_, 1-9.\n",
         "A. Berg, ''T'', <EM>J</EM>  <B>2004</B> , <EM>7</EM> , 1-9.",
         "A. Berg, ''T'', \\emph{J}  \\textbf{2004} , \\emph{7} , 1-9."},
        {"T",
         {},
         7,
         1,
         9,
         "_T_, _J_ *2004*, _7_, 1-9.\n",
         "''T'', <EM>J</EM>  <B>2004</B> , <EM>7</EM> , 1-9.",
         "''T'', \\emph{J}  \\textbf{2004} , \\emph{7} , 1-9."},
        {"",
         {},
         7,
         1,
         9,
         "_J_ *2004*, _7_, 1-9.\n",
         "<EM>J</EM>  <B>2004</B> , <EM>7</EM> , 1-9.",
         "\\emph{J}  \\textbf{2004} , \\emph{7} , 1-9."},
        {"", {}, 0, 0, 0, "_J_ *2004*.\n", "<EM>J</EM>  <B>2004</B> .", "\\emph{J}  \\textbf{2004} ."},
        {"", {}, 0, 12, 0, "_J_ *2004*, 12.\n", "<EM>J</EM>  <B>2004</B> , 12.", "\\emph{J}  \\textbf{2004} , 12."},
        {"", {}, 0, 9, 1, "_J_ *2004*, 9-1.\n", "<EM>J</EM>  <B>2004</B> , 9-1.", "\\emph{J}  \\textbf{2004} , 9-1."},
        {"",
         {},
         3,
         0,
         0,
         "_J_ *2004*, _3_.\n",
         "<EM>J</EM>  <B>2004</B> , <EM>3</EM> .",
         "\\emph{J}  \\textbf{2004} , \\emph{3} ."},
        {"a_b & c$",
         {{"O_B", "", "", ""}},
         0,
         0,
         0,
         "O_B, _a_b & c$_, _J_ *2004*.\n",
         "O_B, ''a_b & c$'', <EM>J</EM>  <B>2004</B> .",
         "O\\_B, ''a\\_b \\& c\\$'', \\emph{J}  \\textbf{2004} ."},
    };
}

TEST(Literature, RendersItsFields)
{
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.plain);
        const Literature literature(row.title, row.authors, "J", row.volume, 2004, "note", row.firstPage, row.lastPage);
        EXPECT_EQ(literature.print(), row.plain);
        EXPECT_EQ(through<HtmlTextFormatter>(literature), row.html);
        EXPECT_EQ(through<TexTextFormatter>(literature), row.tex);
    }
}

TEST(Literature, RendersAPaper)
{
    const Literature paper("Fast Sums", {{"Berg", "Anna", "", ""}, {"Vale", "Ole", "Per", ""}}, "J. Num. Meth.", 7,
                           2004, "", 1, 9);
    EXPECT_EQ(paper.print(), "A. Berg, O. P. Vale, _Fast Sums_, _J. Num. Meth._ *2004*, _7_, 1-9.\n");
    EXPECT_EQ(through<HtmlTextFormatter>(paper),
              "A. Berg, O. P. Vale, ''Fast Sums'', <EM>J. Num. Meth.</EM>  <B>2004</B> , <EM>7</EM> , 1-9.");
}

std::string authorList(const Authors& authors)
{
    const Literature literature("", authors, "J", 0, 1, "", 0, 0);
    const std::string plain = literature.print();
    const std::string html = through<HtmlTextFormatter>(literature);
    const std::string list = plain.substr(0, plain.rfind("_J_ *1*."));
    EXPECT_EQ(html, list + "<EM>J</EM>  <B>1</B> .");
    return list;
}

TEST(Literature, LaterGivenNameCountsOnlyIfAllBeforeItExist)
{
    // Required, Q-911
    const std::pair<Literature::Author, const char*> table[] = {
        {{"Berg", "Anna", "", "Maria"}, "A. Berg, "},
        {{"Berg", "Anna", "Eva", "Maria"}, "A. E. M. Berg, "},
        {{"Berg", "Anna", "Eva", ""}, "A. E. Berg, "},
        {{"Berg", "Anna", "", ""}, "A. Berg, "},
        {{"Berg", "", "Eva", "Maria"}, "Berg, "},
        {{"Berg", "", "Eva", ""}, "Berg, "},
        {{"Berg", "", "", "Maria"}, "Berg, "},
        {{"Berg", "", "", ""}, "Berg, "},
        {{"", "Anna", "", ""}, "A. , "},
        {{"", "", "", ""}, ", "},
        {{"van den Berg", "a", " b", ""}, "a.  . van den Berg, "},
    };
    for (const auto& [author, expected] : table) {
        EXPECT_EQ(authorList({author}), expected);
    }
}

TEST(Literature, CommaFollowsEveryAuthor)
{
    // Required, Q-912
    const Authors authors{{"Berg", "Anna", "", ""}, {"Vale", "", "", ""}, {"Oda", "Per", "Ole", ""}};
    EXPECT_EQ(authorList(authors), "A. Berg, Vale, P. O. Oda, ");
}

TEST(Literature, MarksItsTitleOtherwiseInEachRendering)
{
    // Required, Q-913
    const Literature literature("T", {}, "J", 0, 2004, "", 0, 0);
    EXPECT_EQ(literature.print(), "_T_, _J_ *2004*.\n");
    EXPECT_EQ(through<HtmlTextFormatter>(literature), "''T'', <EM>J</EM>  <B>2004</B> .");
}

TEST(Literature, LastPageAloneIsNotShown)
{
    // Required, Q-914
    const Literature literature("", {}, "J", 0, 2004, "", 0, 9);
    EXPECT_EQ(literature.print(), "_J_ *2004*.\n");
    EXPECT_EQ(through<HtmlTextFormatter>(literature), "<EM>J</EM>  <B>2004</B> .");
}

TEST(Literature, NoteIsNotShown)
{
    // Required, Q-915
    const Literature with("T", oneAuthor, "J", 7, 2004, "a note", 1, 9);
    const Literature without("T", oneAuthor, "J", 7, 2004, "", 1, 9);
    EXPECT_EQ(with.print(), without.print());
    EXPECT_EQ(through<HtmlTextFormatter>(with), through<HtmlTextFormatter>(without));
    EXPECT_EQ(with.note, "a note");
}

TEST(Literature, NumbersAreDecimalWhateverTheLocale)
{
    const GroupedLocale locale;
    const Literature literature("", {}, "J", 123456, 2004, "", 1000, most);
    EXPECT_EQ(literature.print(), "_J_ *2004*, _123456_, 1000-4294967295.\n");
    EXPECT_EQ(through<TexTextFormatter>(literature), "\\emph{J}  \\textbf{2004} , \\emph{123456} , 1000-4294967295.");
}

TEST(Literature, YearAndJournalAreShownWhateverTheyAre)
{
    const Literature literature("", {}, "", 0, 0, "", 0, 0);
    EXPECT_EQ(literature.print(), "__ *0*.\n");
    EXPECT_EQ(through<HtmlTextFormatter>(literature), "<EM></EM>  <B>0</B> .");
}

TEST(Literature, CopiesItsArguments)
{
    Authors authors = oneAuthor;
    std::string title = "T";
    std::string journal = "J";
    std::string note = "N";
    const Literature literature(title, authors, journal, 0, 1, note, 0, 0);
    authors[0].surname = "X";
    title = journal = note = "X";
    EXPECT_EQ(literature.print(), "A. Berg, _T_, _J_ *1*.\n");
    EXPECT_EQ(literature.note, "N");
}

TEST(Literature, AppendsBehindWhatIsThere)
{
    TextRep rep;
    rep << "See " << TextTag::em();
    Literature("", {}, "J", 0, 1, "", 0, 0).toString(rep);
    rep << TextTag::end();
    HtmlTextFormatter out;
    rep.flush(&out);
    EXPECT_EQ(out.str(), "See <EM><EM>J</EM>  <B>1</B> .</EM> ");
}

TEST(Literature, NumbersAndTextsKeepTheirKindOfToken)
{
    class Bracketing : public HtmlTextFormatter
    {
    public:
        void print(const std::string& text) override { mStream << "[" << text << "]"; }
    };
    EXPECT_EQ(through<Bracketing>(Literature("T", oneAuthor, "J", 7, 2004, "", 1, 9)),
              "[A][. ][Berg][, ][''][T]['', ]<EM>[J]</EM> [ ]<B>2004</B> [, ]<EM>7</EM> [, ]1[-]9[.]");
}

/// What becomes of a first name.
std::string initial(const std::string& name)
{
    const std::string list = authorList({{"S", name, "", ""}});
    EXPECT_EQ(list.substr(list.size() - 5), ". S, ");
    return list.substr(0, list.size() - 5);
}

TEST(Literature, InitialIsTheFirstCharacterOfUtf8)
{
    const std::pair<std::string, std::string> table[] = {
        {"Anna", "A"},
        {"\x7F", "\x7F"},
        {std::string("\0x", 2), std::string("\0", 1)},
        {"\xC2\x80x", "\xC2\x80"},
        {"\xC3\x85sa", "\xC3\x85"},
        {"\xDF\xBF", "\xDF\xBF"},
        {"\xE0\xA0\x80x", "\xE0\xA0\x80"},
        {"\xE6\x9D\x8E\xE5", "\xE6\x9D\x8E"},
        {"\xED\x9F\xBF", "\xED\x9F\xBF"},
        {"\xEE\x80\x80", "\xEE\x80\x80"},
        {"\xEF\xBF\xBF", "\xEF\xBF\xBF"},
        {"\xF0\x90\x80\x80x", "\xF0\x90\x80\x80"},
        {"\xF3\x80\xBF\x80", "\xF3\x80\xBF\x80"},
        {"\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
    };
    for (const auto& [name, expected] : table) {
        EXPECT_EQ(initial(name), expected) << testing::PrintToString(name);
    }
}

TEST(Literature, InitialOfANameThatBeginsWithNoCharacterIsItsFirstByte)
{
    const std::string table[] = {
        "\xC5sa",           // Latin-1
        "\xC3",             // cut short
        "\xE6\x9D",         // cut short
        "\xF0\x90\x80",     // cut short
        "\xC3x",            // not continued
        "\xE6\x9Dx",        // not continued
        "\xF0\x90\x80x",    // not continued
        "\x80x",            // a continuation
        "\xBF",             // a continuation
        "\xC0\x80",         // longer than needed
        "\xC1\xBF",         // longer than needed
        "\xE0\x9F\xBF",     // longer than needed
        "\xF0\x8F\xBF\xBF", // longer than needed
        "\xED\xA0\x80",     // a surrogate
        "\xED\xBF\xBF",     // a surrogate
        "\xF4\x90\x80\x80", // beyond the last character
        "\xF5\x80\x80\x80", // beyond the last character
        "\xF8\x88\x80\x80\x80",
        "\xFE",
        "\xFF",
    };
    for (const std::string& name : table) {
        EXPECT_EQ(initial(name), name.substr(0, 1)) << testing::PrintToString(name);
    }
}

/// An independent reading: decodes, and asks whether the number needs this form and is a character.
std::string slowInitial(const std::string& name)
{
    const auto lead = static_cast<unsigned char>(name[0]);
    std::size_t length = 1;
    unsigned long code = lead;
    for (unsigned char bit = 0x40; length < 5 && (lead & 0x80) != 0 && (lead & bit) != 0; bit >>= 1) {
        ++length;
        code &= ~static_cast<unsigned long>(bit);
    }
    code &= 0x7F;
    if (length > 4 || name.size() < length || (length == 1 && lead >= 0x80)) {
        return name.substr(0, 1);
    }
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(name[i]);
        if (next / 64 != 2) {
            return name.substr(0, 1);
        }
        code = code * 64 + next % 64;
    }
    const unsigned long least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool character = code >= least[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    return name.substr(0, character ? length : 1);
}

TEST(Literature, InitialAgreesWithAnIndependentReading)
{
    std::mt19937 random(9);
    const unsigned char bytes[] = {0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC1, 0xC2, 0xDF, 0xE0,
                                   0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xF8, 0xFF};
    for (int round = 0; round < 20000; ++round) {
        std::string name;
        for (auto length = 1 + random() % 5; length > 0; --length) {
            name += static_cast<char>(round % 2 == 0 ? bytes[random() % std::size(bytes)] : 128 + random() % 128);
        }
        const Literature literature("", {{"S", name, "", ""}}, "J", 0, 1, "", 0, 0);
        ASSERT_EQ(literature.print(), slowInitial(name) + ". S, _J_ *1*.\n") << testing::PrintToString(name);
    }
}

static_assert(std::is_aggregate_v<Literature::Author>);
static_assert(!std::is_default_constructible_v<Literature>);

} // namespace

} // namespace KelvoBase::test
