#include <kelvobase/TextFormatter.h>
#include <kelvobase/TextRep.h>

namespace KelvoBase
{

namespace
{

void play(TextFormatter& formatter, const std::string& text)
{
    formatter.print(text);
}

void play(TextFormatter& formatter, unsigned int number)
{
    // Required: past `print`, so that a format that counts or changes text does not see numbers.
    formatter.writeRaw(std::to_string(number));
}

void play(TextFormatter& formatter, TextTag::b /*tag*/)
{
    formatter.b();
}

void play(TextFormatter& formatter, TextTag::em /*tag*/)
{
    formatter.em();
}

void play(TextFormatter& formatter, TextTag::end /*tag*/)
{
    formatter.end();
}

} // namespace

TextRep::TextToken::~TextToken() = default;

template <typename T>
TextRep::PlainTextToken<T>::PlainTextToken(const T& value) : mValue(value)
{
}

template <typename T>
void TextRep::PlainTextToken<T>::flush(TextFormatter* formatter) const
{
    play(*formatter, mValue);
}

template <typename Tag>
void TextRep::TextTagToken<Tag>::flush(TextFormatter* formatter) const
{
    play(*formatter, Tag());
}

TextRep::TextRep() = default;

TextRep::~TextRep()
{
    for (const TextToken* token : mTokens) {
        delete token;
    }
    mTokens.clear();
}

TextRep& TextRep::append(std::unique_ptr<TextToken> token)
{
    mTokens.push_back(nullptr); // what may throw, while the token still has its owner
    mTokens.back() = token.release();
    return *this;
}

TextRep& TextRep::operator<<(const char* text)
{
    return *this << std::string(text);
}

TextRep& TextRep::operator<<(TextTag::b /*tag*/)
{
    return append(std::make_unique<TextTagToken<TextTag::b>>());
}

TextRep& TextRep::operator<<(TextTag::em /*tag*/)
{
    return append(std::make_unique<TextTagToken<TextTag::em>>());
}

TextRep& TextRep::operator<<(TextTag::end /*tag*/)
{
    return append(std::make_unique<TextTagToken<TextTag::end>>());
}

void TextRep::flush(TextFormatter* formatter) const
{
    for (const TextToken* token : mTokens) {
        token->flush(formatter);
    }
}

template class TextRep::PlainTextToken<std::string>;
template class TextRep::PlainTextToken<unsigned int>;
template class TextRep::TextTagToken<TextTag::b>;
template class TextRep::TextTagToken<TextTag::em>;
template class TextRep::TextTagToken<TextTag::end>;

} // namespace KelvoBase
