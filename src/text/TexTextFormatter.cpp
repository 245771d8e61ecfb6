#include "text/Span.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>
#include <kelvobase/TextFormatter.h>

#include <array>

namespace KelvoBase
{

namespace
{

constexpr std::string_view head = "\\documentclass[11pt]{article}\n"
                                  "\\usepackage{a4}\n"
                                  "\\usepackage[T1]{fontenc}\n"
                                  "\\usepackage{times}\n"
                                  "\\usepackage[dvips]{graphicx}\n"
                                  "\\usepackage[latin1]{inputenc}\n"
                                  "\\usepackage{psfrag}\n"
                                  "\\usepackage{listings}\n"
                                  "\\usepackage{verbatim}\n"
                                  "\\begin{document}\n";
constexpr std::string_view foot = "\\end{document}\n";

// Required: the blank behind the brace keeps the next word apart, as in HTML; without it words would run
// together in texts that rely on it.
constexpr Span emphasized{"\\emph{", "} "};
constexpr Span bold{"\\textbf{", "} "};
constexpr Span underlined{"\\underline{", "} "};
constexpr Span unordered{"\\begin{itemize}\n", "\n\\end{itemize}\n"};
constexpr Span ordered{"\\begin{enumerate}\n", "\n\\end{enumerate}\n"};
constexpr Span nothing{"", ""};
constexpr std::array<Span, 4> headers{
    {{"\n\\section{", "}\n"}, {"\n\\subsection{", "}\n"}, {"\n\\subsubsection{", "}\n"}, {"\n\\paragraph{", "}\n"}}};
constexpr std::string_view lineBreak = "\\newline\n";
constexpr std::string_view item = "\\item ";

[[noreturn]] void refuseHeader(int level)
{
    // Required: "LaTex", and no mark at the end; scripts look for the text as it is.
    throw OperationFailedException("Header level " + std::to_string(level) + " not available in LaTex");
}

} // namespace

TexTextFormatter::TexTextFormatter() = default;

TexTextFormatter::~TexTextFormatter() = default;

// Required: no \title; it would need \maketitle, and put a page in front of documents that have their own.
void TexTextFormatter::beginDocument(const std::string& /*title*/)
{
    mStream << head;
}

void TexTextFormatter::endDocument()
{
    mStream << foot;
}

void TexTextFormatter::em()
{
    openSpan(mStream, mCloseTexts, emphasized);
}

void TexTextFormatter::b()
{
    openSpan(mStream, mCloseTexts, bold);
}

void TexTextFormatter::u()
{
    openSpan(mStream, mCloseTexts, underlined);
}

void TexTextFormatter::br()
{
    mStream << lineBreak;
}

void TexTextFormatter::header(int level)
{
    if (level < 1 || level > static_cast<int>(headers.size())) {
        refuseHeader(level);
    }
    openSpan(mStream, mCloseTexts, headers[static_cast<std::size_t>(level) - 1]);
}

void TexTextFormatter::ulist()
{
    openSpan(mStream, mCloseTexts, unordered);
}

void TexTextFormatter::olist()
{
    openSpan(mStream, mCloseTexts, ordered);
}

void TexTextFormatter::listitem()
{
    mStream << item;
}

void TexTextFormatter::label(const std::string& name)
{
    // Required: no span, unlike in HTML. Callers leave the closing step away here; one that was opened for them
    // would stay open and close in the wrong place.
    mStream << "\n\\label{" << name << "}\n";
}

void TexTextFormatter::ref(const std::string& target)
{
    // Required: all at the close, behind the text of the span; written here it would stand in front of it.
    openSpan(mStream, mCloseTexts, {"", " (see section \\ref{" + target + "}) "});
}

void TexTextFormatter::link(const std::string& /*url*/)
{
    openSpan(mStream, mCloseTexts, nothing);
}

void TexTextFormatter::print(const std::string& text)
{
    // Required: these three and no other. Texts carry LaTeX of their own (commands, braces, comments), which
    // escaping more would print as it is spelled.
    std::string escaped = text;
    quote(escaped, '_', '\\');
    quote(escaped, '$', '\\');
    quote(escaped, '&', '\\');
    mStream << escaped;
}

void TexTextFormatter::print(const char* text)
{
    print(std::string(text));
}

} // namespace KelvoBase
