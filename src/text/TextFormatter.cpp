#include <kelvobase/TextFormatter.h>

#include <locale>

namespace KelvoBase
{

TextFormatter::TextFormatter()
{
    mStream.imbue(std::locale::classic());
}

TextFormatter::~TextFormatter() = default;

void TextFormatter::print(const std::string& text)
{
    mStream << text;
}

std::string TextFormatter::str() const
{
    return mStream.str();
}

void TextFormatter::end()
{
    mStream << mCloseTexts.top();
    mCloseTexts.pop();
}

void TextFormatter::writeRaw(const std::string& text)
{
    mStream << text;
}

} // namespace KelvoBase
