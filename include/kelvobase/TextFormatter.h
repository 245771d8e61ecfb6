#pragma once

/// \file
/// Documents, written as abstract operations and rendered as HTML or LaTeX.
///
///     HtmlTextFormatter out;
///     out.beginDocument("Results");
///     out.header(1);
///     out.print("Results");
///     out.end();                  // closes the header
///     out.b();
///     out.print("42");
///     out.end();                  // closes the bold span
///     out.endDocument();
///     std::cout << out.str();
///
/// Formatters are for one thread at a time.

#include <kelvobase/Export.h>

#include <sstream>
#include <stack>
#include <string>

namespace KelvoBase
{

/// The operations that all formats have.
///
/// An operation that opens a span writes its opening text at once and leaves the text that closes it on a stack; `end`
/// takes the topmost one off and writes it, so spans nest by themselves and their closing needs no format. Which
/// operations open a span is for the format to say: see `label`.
///
/// A format of a tool's own derives from this class, writes to `mStream` and pushes to `mCloseTexts`. The order of the
/// virtual operations is binding. Numbers go to `mStream` in the classic locale, whatever locale the program has made
/// global. Nothing forces `beginDocument` and `endDocument`. Spans that are open at the end are dropped, not closed.
class KELVOBASE_API TextFormatter
{
public:
    virtual ~TextFormatter();
    TextFormatter(const TextFormatter&) = delete;
    TextFormatter& operator=(const TextFormatter&) = delete;

    /// The head of a document.
    virtual void beginDocument(const std::string& title) = 0;
    /// The foot of a document. Closes no span.
    virtual void endDocument() = 0;
    /// Opens an emphasized span.
    virtual void em() = 0;
    /// Opens a bold span.
    virtual void b() = 0;
    /// Opens an underlined span.
    virtual void u() = 0;
    /// A line break; opens no span.
    virtual void br() = 0;
    /// Opens a header; 1 is the highest level.
    virtual void header(int level) = 0;
    /// Opens a list without numbers.
    virtual void ulist() = 0;
    /// Opens a numbered list.
    virtual void olist() = 0;
    /// Begins an item of the list; opens no span.
    virtual void listitem() = 0;
    /// A place that `ref` can refer to. Required (Q-905): opens a span in HTML and none in LaTeX, where one more `end`
    /// would close what is open around it. What writes both formats has to know:
    ///
    ///     void mark(TextFormatter& out, const std::string& name)
    ///     {
    ///         out.label(name);
    ///         if (dynamic_cast<TexTextFormatter*>(&out) == nullptr) {
    ///             out.end();
    ///         }
    ///     }
    virtual void label(const std::string& name) = 0;
    /// Opens a span whose text refers to a label.
    virtual void ref(const std::string& target) = 0;
    /// Opens a span whose text is linked with a location.
    virtual void link(const std::string& url) = 0;
    /// Ordinary text. Here: `text` as it is.
    virtual void print(const std::string& text);

    /// All that has been written so far.
    std::string str() const;
    /// Closes the span that was opened last: writes the topmost closing text and takes it off the stack.
    /// REQUIRES: a span is open. Nothing checks it.
    void end();
    /// Writes `text` as it is, past `print` and what it escapes: text in the format's own language.
    void writeRaw(const std::string& text);

protected:
    TextFormatter();

    std::ostringstream mStream;          ///< receives all output
    std::stack<std::string> mCloseTexts; ///< for each open span, the text that closes it
};

/// Writes HTML 4.0.
///
///     operation            writes                                closed by
///     beginDocument(t)     a head with the title, "<body ...>"
///     endDocument()        "</BODY>\n</HTML>\n\n"
///     em()                 "<EM>"                                "</EM> "
///     b()                  "<B>"                                 "</B> "
///     u()                  "<U>"                                 "</U> "
///     br()                 "<BR>\n"
///     header(2)            "<H2>"                                "</H2>\n"
///     ulist()              "<UL>\n"                              "</UL>\n"
///     olist()              "<OL>\n"                              "</OL>\n"
///     listitem()           "<LI> "
///     label("x")           "<A NAME=\"x\">"                      "</A>"
///     ref("x")             "<A HREF=\"#x\">"                     "</A>"
///     link("ftp://h/x")    "<A HREF=\"ftp://h/x\">"              "</A>"
///     link("x")            ""                                    ""
///
///   - Required (Q-901): the closing tags of `em`, `b` and `u` bring a blank along.
///   - Required (Q-902): the tags of `endDocument` are upper case where those of `beginDocument` are lower case, and an
///     empty line follows.
///   - Required (Q-903): nothing is escaped, neither text nor title, names or locations. A text with "<" or "&" is the
///     caller's to escape.
///   - Required (Q-904): a location without ":/" is no link, but opens a span all the same, of nothing at both ends.
///
/// `header` takes any level. Does not fail.
class KELVOBASE_API HtmlTextFormatter : public TextFormatter
{
public:
    HtmlTextFormatter();
    ~HtmlTextFormatter() override;

    void beginDocument(const std::string& title) override;
    void endDocument() override;
    void em() override;
    void b() override;
    void u() override;
    void br() override;
    void header(int level) override;
    void ulist() override;
    void olist() override;
    void listitem() override;
    void label(const std::string& name) override;
    void ref(const std::string& target) override;
    void link(const std::string& url) override;
};

/// Writes LaTeX.
///
///     operation            writes                                closed by
///     beginDocument(t)     preamble and "\begin{document}\n"
///     endDocument()        "\end{document}\n"
///     em()                 "\emph{"                              "} "
///     b()                  "\textbf{"                            "} "
///     u()                  "\underline{"                         "} "
///     br()                 "\newline\n"
///     header(1)            "\n\section{"                         "}\n"
///     header(2)            "\n\subsection{"                      "}\n"
///     header(3)            "\n\subsubsection{"                   "}\n"
///     header(4)            "\n\paragraph{"                       "}\n"
///     ulist()              "\begin{itemize}\n"                   "\n\end{itemize}\n"
///     olist()              "\begin{enumerate}\n"                 "\n\end{enumerate}\n"
///     listitem()           "\item "
///     label("x")           "\n\label{x}\n"
///     ref("x")             ""                                    " (see section \ref{x}) "
///     link(u)              ""                                    ""
///
///   - Required (Q-901): the closing texts of `em`, `b` and `u` bring a blank along.
///   - Required (Q-905): `label` is complete in itself and opens no span.
///   - Required (Q-906): `ref` writes nothing at first; the reference follows the text of the span.
///   - Required (Q-907): only the levels 1 to 4 exist; `header` throws for any other.
///   - Required (Q-908): `print` escapes "_", "$" and "&" with a backslash and nothing else: a backslash, "%", "#",
///     "{" and "}" reach LaTeX with their meaning. Names of labels are not escaped at all.
///   - Required (Q-909): the title of the document and the locations of links are not used.
///
/// The preamble asks for the packages a4, fontenc, times, graphicx (for dvips), inputenc (latin1), psfrag, listings and
/// verbatim.
class KELVOBASE_API TexTextFormatter : public TextFormatter
{
public:
    TexTextFormatter();
    ~TexTextFormatter() override;

    void beginDocument(const std::string& title) override;
    void endDocument() override;
    void em() override;
    void b() override;
    void u() override;
    void br() override;
    /// Throws `OperationFailedException("Header level N not available in LaTex")`; nothing is written then, and no span
    /// is open.
    void header(int level) override;
    void ulist() override;
    void olist() override;
    void listitem() override;
    void label(const std::string& name) override;
    void ref(const std::string& target) override;
    void link(const std::string& url) override;
    void print(const std::string& text) override;
    /// `print` of a `std::string` made from `text`, which is virtual. A derived class that replaces one of the two and
    /// wants both to be callable says `using TexTextFormatter::print;`.
    /// REQUIRES: `text` is not null.
    virtual void print(const char* text);
};

} // namespace KelvoBase
