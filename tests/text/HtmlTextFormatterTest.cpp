/// \file
/// HTML, to the character.

#include "any/GroupedLocale.h"
#include "text/FormatProbe.h"

#include <gtest/gtest.h>

#include <limits>
#include <streambuf>

namespace KelvoBase::test
{

namespace
{

using Html = Probe<HtmlTextFormatter>;

constexpr const char* head = "<!doctype html public \"-//w3c//dtd html 4.0 transitional//en\">\n<html>\n<head>\n"
                             "<title>A Title</title>\n</head>\n<body bgcolor=#FFFFFF>\n";

TEST(HtmlTextFormatter, WritesItsTable)
{
    const Row rows[] = {
        {"beginDocument", [](TextFormatter& out) { out.beginDocument("A Title"); }, head},
        {"endDocument", [](TextFormatter& out) { out.endDocument(); }, "</BODY>\n</HTML>\n\n"},
        {"em", [](TextFormatter& out) { out.em(); }, "<EM>", "</EM> "},
        {"b", [](TextFormatter& out) { out.b(); }, "<B>", "</B> "},
        {"u", [](TextFormatter& out) { out.u(); }, "<U>", "</U> "},
        {"br", [](TextFormatter& out) { out.br(); }, "<BR>\n"},
        {"header 1", [](TextFormatter& out) { out.header(1); }, "<H1>", "</H1>\n"},
        {"header 2", [](TextFormatter& out) { out.header(2); }, "<H2>", "</H2>\n"},
        {"ulist", [](TextFormatter& out) { out.ulist(); }, "<UL>\n", "</UL>\n"},
        {"olist", [](TextFormatter& out) { out.olist(); }, "<OL>\n", "</OL>\n"},
        {"listitem", [](TextFormatter& out) { out.listitem(); }, "<LI> "},
        {"label", [](TextFormatter& out) { out.label("there"); }, "<A NAME=\"there\">", "</A>"},
        {"ref", [](TextFormatter& out) { out.ref("there"); }, "<A HREF=\"#there\">", "</A>"},
        {"link", [](TextFormatter& out) { out.link("ftp://host/x"); }, "<A HREF=\"ftp://host/x\">", "</A>"},
        {"link to a file", [](TextFormatter& out) { out.link("x.txt"); }, "", ""},
        {"print", [](TextFormatter& out) { out.print("text"); }, "text"},
    };
    for (const Row& row : rows) {
        expectRow<HtmlTextFormatter>(row);
    }
}

TEST(HtmlTextFormatter, ClosingTagsOfEmphasisBringABlank)
{
    // Required, Q-901
    Html out;
    out.b();
    out.em();
    out.print("x");
    out.end();
    out.end();
    out.u();
    out.end();
    EXPECT_EQ(out.str(), "<B><EM>x</EM> </B> <U></U> ");
}

TEST(HtmlTextFormatter, FootIsUpperCaseWithAnEmptyLineBehindIt)
{
    // Required, Q-902
    Html out;
    out.beginDocument("");
    const std::string before = out.str();
    out.endDocument();
    EXPECT_NE(before.find("<html>"), std::string::npos);
    EXPECT_NE(before.find("<body bgcolor"), std::string::npos);
    EXPECT_EQ(out.str(), before + "</BODY>\n</HTML>\n\n");
}

TEST(HtmlTextFormatter, FootIsFlushed)
{
    class Buffer : public std::stringbuf
    {
    public:
        int flushed = 0;

    protected:
        int sync() override
        {
            ++flushed;
            return 0;
        }
    };
    class Watched : public HtmlTextFormatter
    {
    public:
        explicit Watched(std::streambuf* buffer) { mStream.std::ostream::rdbuf(buffer); }
    };
    Buffer buffer;
    Watched out(&buffer);
    out.beginDocument("t");
    out.b();
    out.end();
    out.br();
    EXPECT_EQ(buffer.flushed, 0);
    out.endDocument();
    EXPECT_EQ(buffer.flushed, 1);
    EXPECT_EQ(buffer.str().substr(buffer.str().size() - 17), "</BODY>\n</HTML>\n\n");
}

TEST(HtmlTextFormatter, EscapesNothing)
{
    // Required, Q-903
    const Row rows[] = {
        {"title", [](TextFormatter& out) { out.beginDocument("A </title> & \""); },
         "<!doctype html public \"-//w3c//dtd html 4.0 transitional//en\">\n<html>\n<head>\n<title>A </title> & \""
         "</title>\n</head>\n<body bgcolor=#FFFFFF>\n"},
        {"label", [](TextFormatter& out) { out.label("a\"b<c&d"); }, "<A NAME=\"a\"b<c&d\">", "</A>"},
        {"ref", [](TextFormatter& out) { out.ref("#a\"b c"); }, "<A HREF=\"##a\"b c\">", "</A>"},
        {"link", [](TextFormatter& out) { out.link("http://h/?a=1&b=\""); }, "<A HREF=\"http://h/?a=1&b=\"\">", "</A>"},
        {"print", [](TextFormatter& out) { out.print("a_b$c&d <B> &amp; \\ % # { }"); },
         "a_b$c&d <B> &amp; \\ % # { }"},
        {"empty names", [](TextFormatter& out) { out.label(""); }, "<A NAME=\"\">", "</A>"},
        {"empty target", [](TextFormatter& out) { out.ref(""); }, "<A HREF=\"#\">", "</A>"},
    };
    for (const Row& row : rows) {
        expectRow<HtmlTextFormatter>(row);
    }
}

TEST(HtmlTextFormatter, LocationWithoutColonAndSlashOpensASpanOfNothing)
{
    // Required, Q-904
    for (const char* url : {"", "x", "dir/file.txt", "file:", ":", "/", "/:", "mailto:a@b", "C:\\dir", "a: /b"}) {
        SCOPED_TRACE(url);
        Html out;
        out.b();
        out.link(url);
        EXPECT_EQ(out.openSpans(), 2u);
        out.print("text");
        out.end();
        EXPECT_EQ(out.str(), "<B>text");
        out.end();
        EXPECT_EQ(out.str(), "<B>text</B> ");
    }
}

TEST(HtmlTextFormatter, ColonAndSlashAnywhereMakeALink)
{
    for (const std::string url : {":/", "x:/", ":/x", "file:/x", "http://h/", "C:/dir", "dir/a:/b", "::/", "a: :/"}) {
        SCOPED_TRACE(url);
        Html out;
        out.link(url);
        EXPECT_EQ(out.str(), "<A HREF=\"" + url + "\">");
        out.end();
        EXPECT_EQ(out.str(), "<A HREF=\"" + url + "\"></A>");
    }
}

TEST(HtmlTextFormatter, HeaderTakesAnyLevel)
{
    const GroupedLocale locale;
    for (const int level :
         {0, 1, 4, 5, 6, 7, -1, 1000, 123456, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        const std::string number = std::to_string(level);
        Html out;
        out.header(level);
        EXPECT_EQ(out.str(), "<H" + number + ">");
        out.end();
        EXPECT_EQ(out.str(), "<H" + number + "></H" + number + ">\n");
        EXPECT_EQ(out.openSpans(), 0u);
    }
    Html out;
    out.header(1000);
    EXPECT_EQ(out.str(), "<H1000>");
}

TEST(HtmlTextFormatter, WritesASmallDocument)
{
    HtmlTextFormatter out;
    out.beginDocument("A Title");
    out.header(1);
    out.print("Results");
    out.end();
    out.b();
    out.print("42");
    out.end();
    out.endDocument();
    EXPECT_EQ(out.str(), std::string(head) + "<H1>Results</H1>\n<B>42</B> </BODY>\n</HTML>\n\n");
}

TEST(HtmlTextFormatter, HeadersNest)
{
    Html out;
    out.header(1);
    out.header(2);
    out.end();
    out.end();
    EXPECT_EQ(out.str(), "<H1><H2></H2>\n</H1>\n");
}

TEST(HtmlTextFormatter, WorksWithoutHeadAndFoot)
{
    Html out;
    out.ulist();
    out.listitem();
    out.print("one\n");
    out.listitem();
    out.print("two\n");
    out.end();
    EXPECT_EQ(out.str(), "<UL>\n<LI> one\n<LI> two\n</UL>\n");
}

TEST(HtmlTextFormatter, FootClosesNoSpan)
{
    Html out;
    out.b();
    out.endDocument();
    EXPECT_EQ(out.str(), "<B></BODY>\n</HTML>\n\n");
    EXPECT_EQ(out.openSpans(), 1u);
}

} // namespace

} // namespace KelvoBase::test
