#include "text/Span.h"

#include <kelvobase/TextFormatter.h>

namespace KelvoBase
{

namespace
{

constexpr std::string_view beforeTitle = "<!doctype html public \"-//w3c//dtd html 4.0 transitional//en\">\n"
                                         "<html>\n"
                                         "<head>\n"
                                         "<title>";
constexpr std::string_view afterTitle = "</title>\n"
                                        "</head>\n"
                                        "<body bgcolor=#FFFFFF>\n";
// Required: upper case here and lower case above; one spelling for both would change every document.
constexpr std::string_view foot = "</BODY>\n"
                                  "</HTML>\n";

// Required: the blank behind the closing tag keeps the next word apart; without it words would run together in
// texts that rely on it.
constexpr Span emphasized{"<EM>", "</EM> "};
constexpr Span bold{"<B>", "</B> "};
constexpr Span underlined{"<U>", "</U> "};
constexpr Span unordered{"<UL>\n", "</UL>\n"};
constexpr Span ordered{"<OL>\n", "</OL>\n"};
constexpr Span nothing{"", ""};
constexpr std::string_view lineBreak = "<BR>\n";
constexpr std::string_view item = "<LI> ";
constexpr std::string_view anchorEnd = "</A>";

/// An anchor with one attribute.
std::string anchor(std::string_view attribute, const std::string& value)
{
    // Required: the value stands as it came, as all text does; escaping it would escape twice what callers have
    // escaped.
    return std::string("<A ").append(attribute).append("=\"").append(value).append("\">");
}

} // namespace

HtmlTextFormatter::HtmlTextFormatter() = default;

HtmlTextFormatter::~HtmlTextFormatter() = default;

void HtmlTextFormatter::beginDocument(const std::string& title)
{
    mStream << beforeTitle << title << afterTitle;
}

void HtmlTextFormatter::endDocument()
{
    mStream << foot << std::endl;
}

void HtmlTextFormatter::em()
{
    openSpan(mStream, mCloseTexts, emphasized);
}

void HtmlTextFormatter::b()
{
    openSpan(mStream, mCloseTexts, bold);
}

void HtmlTextFormatter::u()
{
    openSpan(mStream, mCloseTexts, underlined);
}

void HtmlTextFormatter::br()
{
    mStream << lineBreak;
}

void HtmlTextFormatter::header(int level)
{
    const std::string number = std::to_string(level);
    openSpan(mStream, mCloseTexts, {"<H" + number + ">", "</H" + number + ">\n"});
}

void HtmlTextFormatter::ulist()
{
    openSpan(mStream, mCloseTexts, unordered);
}

void HtmlTextFormatter::olist()
{
    openSpan(mStream, mCloseTexts, ordered);
}

void HtmlTextFormatter::listitem()
{
    mStream << item;
}

void HtmlTextFormatter::label(const std::string& name)
{
    openSpan(mStream, mCloseTexts, {anchor("NAME", name), anchorEnd});
}

void HtmlTextFormatter::ref(const std::string& target)
{
    openSpan(mStream, mCloseTexts, {anchor("HREF", '#' + target), anchorEnd});
}

void HtmlTextFormatter::link(const std::string& url)
{
    if (url.find(":/") == std::string::npos) {
        // Required: a span of nothing. Opening none would leave the caller's `end` to close another one.
        openSpan(mStream, mCloseTexts, nothing);
        return;
    }
    openSpan(mStream, mCloseTexts, {anchor("HREF", url), anchorEnd});
}

} // namespace KelvoBase
