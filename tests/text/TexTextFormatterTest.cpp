/// \file
/// LaTeX, to the character.

#include "any/GroupedLocale.h"
#include "support/Text.h"
#include "text/FormatProbe.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace KelvoBase::test
{

namespace
{

using Tex = Probe<TexTextFormatter>;

constexpr const char* head = "\\documentclass[11pt]{article}\n"
                             "\\usepackage{a4}\n"
                             "\\usepackage[T1]{fontenc}\n"
                             "\\usepackage{times}\n"
                             "\\usepackage[dvips]{graphicx}\n"
                             "\\usepackage[latin1]{inputenc}\n"
                             "\\usepackage{psfrag}\n"
                             "\\usepackage{listings}\n"
                             "\\usepackage{verbatim}\n"
                             "\\begin{document}\n";

TEST(TexTextFormatter, WritesItsTable)
{
    const Row rows[] = {
        {"beginDocument", [](TextFormatter& out) { out.beginDocument("A Title"); }, head},
        {"endDocument", [](TextFormatter& out) { out.endDocument(); }, "\\end{document}\n"},
        {"em", [](TextFormatter& out) { out.em(); }, "\\emph{", "} "},
        {"b", [](TextFormatter& out) { out.b(); }, "\\textbf{", "} "},
        {"u", [](TextFormatter& out) { out.u(); }, "\\underline{", "} "},
        {"br", [](TextFormatter& out) { out.br(); }, "\\newline\n"},
        {"header 1", [](TextFormatter& out) { out.header(1); }, "\n\\section{", "}\n"},
        {"header 2", [](TextFormatter& out) { out.header(2); }, "\n\\subsection{", "}\n"},
        {"header 3", [](TextFormatter& out) { out.header(3); }, "\n\\subsubsection{", "}\n"},
        {"header 4", [](TextFormatter& out) { out.header(4); }, "\n\\paragraph{", "}\n"},
        {"ulist", [](TextFormatter& out) { out.ulist(); }, "\\begin{itemize}\n", "\n\\end{itemize}\n"},
        {"olist", [](TextFormatter& out) { out.olist(); }, "\\begin{enumerate}\n", "\n\\end{enumerate}\n"},
        {"listitem", [](TextFormatter& out) { out.listitem(); }, "\\item "},
        {"label", [](TextFormatter& out) { out.label("there"); }, "\n\\label{there}\n"},
        {"ref", [](TextFormatter& out) { out.ref("there"); }, "", " (see section \\ref{there}) "},
        {"link", [](TextFormatter& out) { out.link("ftp://host/x"); }, "", ""},
        {"link to a file", [](TextFormatter& out) { out.link("x.txt"); }, "", ""},
        {"print", [](TextFormatter& out) { out.print("text"); }, "text"},
    };
    for (const Row& row : rows) {
        expectRow<TexTextFormatter>(row);
    }
}

TEST(TexTextFormatter, ClosingTextsOfEmphasisBringABlank)
{
    // Required, Q-901
    Tex out;
    out.b();
    out.em();
    out.print("x");
    out.end();
    out.end();
    out.u();
    out.end();
    EXPECT_EQ(out.str(), "\\textbf{\\emph{x} } \\underline{} ");
}

TEST(TexTextFormatter, LabelOpensNoSpan)
{
    // Required, Q-905
    Tex out;
    out.header(2);
    out.label("a_b&c"); // not escaped either
    EXPECT_EQ(out.openSpans(), 1u);
    EXPECT_EQ(out.str(), "\n\\subsection{\n\\label{a_b&c}\n");
    out.end();
    EXPECT_EQ(out.str(), "\n\\subsection{\n\\label{a_b&c}\n}\n");
}

TEST(TexTextFormatter, ClosingStepBehindALabelClosesWhatIsOpenAroundIt)
{
    Tex out;
    out.b();
    out.label("x");
    out.end();
    EXPECT_EQ(out.str(), "\\textbf{\n\\label{x}\n} ");
    EXPECT_EQ(out.openSpans(), 0u);
}

TEST(TexTextFormatter, ReferenceFollowsItsText)
{
    // Required, Q-906
    Tex out;
    out.ref("a_b&c");
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(out.openSpans(), 1u);
    out.print("the method");
    out.end();
    EXPECT_EQ(out.str(), "the method (see section \\ref{a_b&c}) ");
}

TEST(TexTextFormatter, HeaderOfAnotherLevelThrowsAndLeavesAllAsItWas)
{
    // Required, Q-907
    const GroupedLocale locale;
    const std::pair<int, const char*> rows[] = {
        {5, "Header level 5 not available in LaTex"},
        {0, "Header level 0 not available in LaTex"},
        {-1, "Header level -1 not available in LaTex"},
        {1000, "Header level 1000 not available in LaTex"},
        {std::numeric_limits<int>::max(), "Header level 2147483647 not available in LaTex"},
        {std::numeric_limits<int>::min(), "Header level -2147483648 not available in LaTex"},
    };
    Tex out;
    out.b();
    for (const auto& [level, text] : rows) {
        EXPECT_EQ(textOf<OperationFailedException>([&, wanted = level] { out.header(wanted); }), text);
        EXPECT_EQ(out.str(), "\\textbf{");
        EXPECT_EQ(out.openSpans(), 1u);
    }
    out.end();
    out.header(4);
    EXPECT_EQ(out.str(), "\\textbf{} \n\\paragraph{");
}

TEST(TexTextFormatter, EscapesThreeCharactersAndNoOther)
{
    // Required, Q-908
    const std::pair<std::string, std::string> rows[] = {
        {"a_b$c&d", "a\\_b\\$c\\&d"},
        {"", ""},
        {"_", "\\_"},
        {"$", "\\$"},
        {"&", "\\&"},
        {"__", "\\_\\_"},
        {"&$_", "\\&\\$\\_"},
        {"_x_", "\\_x\\_"},
        {"\\", "\\"},
        {"\\_", "\\\\_"},
        {"\\alpha{x} 50% #1 ~ ^", "\\alpha{x} 50% #1 ~ ^"},
        {"\"a_b\" 'c' <d>\n\te", "\"a\\_b\" 'c' <d>\n\te"},
        {std::string("a\0_", 3), std::string("a\0\\_", 4)},
        {"\xE4_\xFF", "\xE4\\_\xFF"},
    };
    for (const auto& [text, expected] : rows) {
        SCOPED_TRACE(text);
        Tex out;
        out.print(text);
        EXPECT_EQ(out.str(), expected);
        EXPECT_EQ(out.openSpans(), 0u);
    }
}

TEST(TexTextFormatter, EscapesAnyTextByteByByte)
{
    std::mt19937 random(9);
    const std::string alphabet("_$&\\%#{}ab \n\"\0\xE4", 15);
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        std::string expected;
        for (auto length = random() % 20; length > 0; --length) {
            const char c = alphabet[random() % alphabet.size()];
            text += c;
            if (c == '_' || c == '$' || c == '&') {
                expected += '\\';
            }
            expected += c;
        }
        TexTextFormatter out;
        out.print(text);
        ASSERT_EQ(out.str(), expected) << text;
    }
}

TEST(TexTextFormatter, UsesNeitherTitleNorLocation)
{
    // Required, Q-909
    Tex out;
    out.beginDocument("Never_Shown");
    out.link("http://never/shown");
    out.print("text");
    out.end();
    EXPECT_EQ(out.str(), std::string(head) + "text");
}

TEST(TexTextFormatter, PrintsCharactersAsItPrintsText)
{
    Tex out;
    const std::string text = "x_y";
    char characters[] = "c_d";
    out.print("a_b");
    out.print(text);
    out.print(text.c_str());
    out.print(characters);
    EXPECT_EQ(out.str(), "a\\_bx\\_yx\\_yc\\_d");
}

TEST(TexTextFormatter, PrintOfCharactersCallsTheVirtualPrint)
{
    class Shouting : public TexTextFormatter
    {
    public:
        using TexTextFormatter::print;
        void print(const std::string& text) override { mStream << text << "!"; }
    };
    Shouting out;
    out.print("a_b");
    static_cast<TexTextFormatter&>(out).print("c_d");
    static_cast<TextFormatter&>(out).print("e_f");
    EXPECT_EQ(out.str(), "a_b!c_d!e_f!");
}

TEST(TexTextFormatter, PrintOfCharactersIsVirtualItself)
{
    class Counting : public TexTextFormatter
    {
    public:
        using TexTextFormatter::print;
        void print(const char* text) override
        {
            ++count;
            TexTextFormatter::print(text);
        }
        int count = 0;
    };
    Counting out;
    TexTextFormatter& base = out;
    base.print("a_b");
    base.print(std::string("c_d"));
    EXPECT_EQ(out.count, 1);
    EXPECT_EQ(out.str(), "a\\_bc\\_d");
}

TEST(TexTextFormatter, WorksWithoutHeadAndFoot)
{
    Tex out;
    out.olist();
    out.listitem();
    out.print("one\n");
    out.ulist();
    out.listitem();
    out.print("two");
    out.end();
    out.end();
    EXPECT_EQ(out.str(), "\\begin{enumerate}\n\\item one\n\\begin{itemize}\n\\item two\n\\end{itemize}\n\n"
                         "\\end{enumerate}\n");
}

TEST(TexTextFormatter, FootClosesNoSpan)
{
    Tex out;
    out.b();
    out.endDocument();
    EXPECT_EQ(out.str(), "\\textbf{\\end{document}\n");
    EXPECT_EQ(out.openSpans(), 1u);
}

} // namespace

} // namespace KelvoBase::test
