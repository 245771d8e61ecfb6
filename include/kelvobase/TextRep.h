#pragma once

/// \file
/// Formatted text without a format: kept as tokens, and played into a formatter later.
///
///     TextRep rep;
///     rep << "Found " << 3u << " of " << TextTag::b() << name << TextTag::end() << ".";
///     HtmlTextFormatter html;
///     rep.flush(&html);           // Found 3 of <B>a_b</B> .
///     TexTextFormatter tex;
///     rep.flush(&tex);            // Found 3 of \textbf{a\_b} .

#include <kelvobase/Export.h>

#include <list>
#include <memory>
#include <string>
#include <type_traits>

namespace KelvoBase
{

class TextFormatter;

/// What stands in a `TextRep` besides text: the opening of a span, and the end of the span that was opened last.
namespace TextTag
{

/// `TextFormatter::b`.
struct b
{
};
/// `TextFormatter::em`.
struct em
{
};
/// `TextFormatter::end`.
struct end
{
};

} // namespace TextTag

/// A list of tokens: texts, numbers, tags. Owns its tokens. For one thread at a time.
class KELVOBASE_API TextRep
{
public:
    /// One piece of what is to be written. The order of the virtual operations is binding.
    class KELVOBASE_API TextToken
    {
    public:
        /// Plays the token. REQUIRES: `formatter` is not null.
        virtual void flush(TextFormatter* formatter) const = 0;
        virtual ~TextToken();
    };

    /// Whether a value of type `T` becomes a token as it is. The set is closed.
    template <typename T>
    static constexpr bool isValue = std::is_same_v<T, std::string> || std::is_same_v<T, unsigned int>;

    /// Whether `T` is an array of `char` or a pointer to `char`, constant or not.
    template <typename T>
    static constexpr bool isCharacters =
        std::is_same_v<std::decay_t<T>, char*> || std::is_same_v<std::decay_t<T>, const char*>;

    /// A text, which goes through the formatter's `print`, or a number. Required: a number is written in
    /// decimal past `print`; nothing is escaped in it.
    template <typename T>
    class PlainTextToken : public TextToken
    {
        static_assert(isValue<T>, "a token holds a std::string or an unsigned int");

    public:
        explicit PlainTextToken(const T& value);
        void flush(TextFormatter* formatter) const override;

    private:
        T mValue;
    };

    /// A tag.
    template <typename Tag>
    class TextTagToken : public TextToken
    {
    public:
        void flush(TextFormatter* formatter) const override;
    };

    /// No tokens.
    TextRep();
    virtual ~TextRep();
    TextRep(const TextRep&) = delete;
    TextRep& operator=(const TextRep&) = delete;

    /// \name Appending
    /// Each copies its value behind what is there. If one throws (memory exhaustion), the list is as it was.
    /// @{

    /// A text up to its first zero byte; arrays of characters, constant or not, come here, too.
    /// REQUIRES: `text` is not null and ends in a zero byte.
    TextRep& operator<<(const char* text);
    /// A `std::string` or an `unsigned int`. Other types do not compile: what is signed, longer or a fraction has to be
    /// made one of these by the caller.
    template <typename T>
    TextRep& operator<<(const T& value) requires isValue<T>
    {
        return append(std::make_unique<PlainTextToken<T>>(value));
    }
    template <typename T>
    TextRep& operator<<(const T& value) requires(!isValue<T> && !isCharacters<T>) =
        delete; // text (std::string, char array) or unsigned int only
    TextRep& operator<<(TextTag::b tag);
    TextRep& operator<<(TextTag::em tag);
    TextRep& operator<<(TextTag::end tag);
    /// @}

    /// Plays all tokens, from first to last, and keeps them: it may be called again, on any formatter. What a formatter
    /// throws ends it; what was written stays.
    /// REQUIRES: `formatter` is not null; each `TextTag::end` has an open span, of this text or of the formatter.
    /// Nothing checks it.
    void flush(TextFormatter* formatter) const;

private:
    TextRep& append(std::unique_ptr<TextToken> token);

    std::list<TextToken*> mTokens; // owned
};

extern template class KELVOBASE_API TextRep::PlainTextToken<std::string>;
extern template class KELVOBASE_API TextRep::PlainTextToken<unsigned int>;
extern template class KELVOBASE_API TextRep::TextTagToken<TextTag::b>;
extern template class KELVOBASE_API TextRep::TextTagToken<TextTag::em>;
extern template class KELVOBASE_API TextRep::TextTagToken<TextTag::end>;

} // namespace KelvoBase
