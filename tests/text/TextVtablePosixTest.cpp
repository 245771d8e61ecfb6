/// \file
/// The order of the virtual operations of formats and tokens: tools that were compiled against it call through these
/// places.

#include "support/posix/VirtualTable.h"
#include "text/FormatProbe.h"

#include <kelvobase/TextRep.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace KelvoBase::test
{

namespace
{

/// What stands at a place of the object's table.
template <typename Function, typename Object>
Function at(const Object& object, std::size_t place)
{
    Function function = nullptr;
    std::memcpy(&function, tableOf(object) + place, sizeof function);
    return function;
}

/// Calls the operation at a place, with "x" or 2 where it takes an argument.
void call(TextFormatter& out, std::size_t place)
{
    const std::string text = "x";
    if (place == 8) {
        at<void (*)(TextFormatter*, int)>(out, place)(&out, 2);
    } else if (place == 2 || place >= 12) {
        at<void (*)(TextFormatter*, const std::string&)>(out, place)(&out, text);
    } else {
        at<void (*)(TextFormatter*)>(out, place)(&out);
    }
}

/// What the places 2 to 15 of a format write, and behind a bar what closes the span, if they open one.
template <typename Format>
std::vector<std::string> callAll()
{
    std::vector<std::string> written;
    for (std::size_t place = 2; place <= 15; ++place) {
        Probe<Format> out;
        call(out, place);
        if (out.openSpans() > 0) {
            out.writeRaw("|");
            out.end();
        }
        written.push_back(out.str());
    }
    return written;
}

TEST(TextVtable, HtmlOperationsStandInTheirOrder)
{
    const std::vector<std::string> expected{
        "<!doctype html public \"-//w3c//dtd html 4.0 transitional//en\">\n<html>\n<head>\n<title>x</title>\n</head>\n"
        "<body bgcolor=#FFFFFF>\n",
        "</BODY>\n</HTML>\n\n",
        "<EM>|</EM> ",
        "<B>|</B> ",
        "<U>|</U> ",
        "<BR>\n",
        "<H2>|</H2>\n",
        "<UL>\n|</UL>\n",
        "<OL>\n|</OL>\n",
        "<LI> ",
        "<A NAME=\"x\">|</A>",
        "<A HREF=\"#x\">|</A>",
        "|",
        "x",
    };
    EXPECT_EQ(callAll<HtmlTextFormatter>(), expected);
    EXPECT_EQ(slotCount(HtmlTextFormatter()), 16u);
}

TEST(TextVtable, TexOperationsStandInTheirOrder)
{
    std::vector<std::string> written = callAll<TexTextFormatter>();
    EXPECT_EQ(written.front().substr(0, 31), "\\documentclass[11pt]{article}\n\\");
    written.erase(written.begin());
    const std::vector<std::string> expected{
        "\\end{document}\n",
        "\\emph{|} ",
        "\\textbf{|} ",
        "\\underline{|} ",
        "\\newline\n",
        "\n\\subsection{|}\n",
        "\\begin{itemize}\n|\n\\end{itemize}\n",
        "\\begin{enumerate}\n|\n\\end{enumerate}\n",
        "\\item ",
        "\n\\label{x}\n",
        "| (see section \\ref{x}) ",
        "|",
        "x",
    };
    EXPECT_EQ(written, expected);
}

TEST(TextVtable, PrintOfCharactersStandsBehindAllOthersInTexOnly)
{
    TexTextFormatter out;
    at<void (*)(TextFormatter*, const char*)>(out, 16)(&out, "a_b");
    EXPECT_EQ(out.str(), "a\\_b");
    EXPECT_EQ(slotCount(out), 17u);
}

TEST(TextVtable, DestructorStandsFirst)
{
    static bool destroyed;
    class Watched : public HtmlTextFormatter
    {
    public:
        ~Watched() override { destroyed = true; }
    };
    destroyed = false;
    auto* out = new Watched;
    at<void (*)(TextFormatter*)>(*out, 1)(out); // destroys and frees
    EXPECT_TRUE(destroyed);
}

TEST(TextVtable, TokenIsFlushedThroughItsFirstPlaceAndDestroyedThroughTheOthers)
{
    HtmlTextFormatter out;
    const TextRep::PlainTextToken<std::string> text("x");
    const TextRep::PlainTextToken<unsigned int> number(7);
    const TextRep::TextTagToken<TextTag::b> bold;
    const TextRep::TextTagToken<TextTag::em> emphasized;
    const TextRep::TextTagToken<TextTag::end> end;
    for (const TextRep::TextToken* token :
         std::initializer_list<const TextRep::TextToken*>{&bold, &text, &emphasized, &number, &end, &end}) {
        at<void (*)(const TextRep::TextToken*, TextFormatter*)>(*token, 0)(token, &out);
        EXPECT_EQ(slotCount(*token), 3u);
    }
    EXPECT_EQ(out.str(), "<B>x<EM>7</EM> </B> ");
    auto* token = new TextRep::PlainTextToken<std::string>(std::string(100, 'x'));
    at<void (*)(TextRep::TextToken*)>(*token, 2)(token); // destroys and frees
}

} // namespace

} // namespace KelvoBase::test
