#include <kelvobase/Literature.h>
#include <kelvobase/TextRep.h>

#include <algorithm>
#include <cstddef>
#include <locale>
#include <sstream>
#include <string_view>
#include <utility>

namespace KelvoBase
{

namespace
{

unsigned int byteAt(std::string_view text, std::size_t position)
{
    return static_cast<unsigned char>(text[position]);
}

/// How UTF-8 sequences that begin alike go on.
struct Sequence
{
    unsigned int firstLow, firstHigh; // range of the first byte
    unsigned int nextLow, nextHigh;   // range of the second byte; all further ones are 0x80 to 0xBF
    std::size_t length;
};

// The limits of the second byte keep out longer forms than needed, surrogates, and what lies behind U+10FFFF.
constexpr Sequence sequences[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3}, {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3},
    {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

bool beginsWith(std::string_view text, const Sequence& sequence)
{
    if (text.size() < sequence.length || byteAt(text, 0) < sequence.firstLow || byteAt(text, 0) > sequence.firstHigh ||
        byteAt(text, 1) < sequence.nextLow || byteAt(text, 1) > sequence.nextHigh) {
        return false;
    }
    const std::string_view rest = text.substr(2, sequence.length - 2);
    return std::all_of(rest.begin(), rest.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
}

/// The first UTF-8 sequence of a name that is not empty; its first byte if it begins with none.
std::string firstCharacter(const std::string& name)
{
    const auto* const found = std::find_if(std::begin(sequences), std::end(sequences),
                                           [&](const Sequence& sequence) { return beginsWith(name, sequence); });
    return name.substr(0, found == std::end(sequences) ? 1 : found->length);
}

/// `Out` is a stream or a `TextRep`.
template <typename Out>
void writeAuthor(Out& out, const Literature::Author& author)
{
    for (const std::string* name : {&author.firstName, &author.secondName, &author.thirdName}) {
        // Required: the first gap ends the row. Going on behind it would show a third name as a second one.
        if (name->empty()) {
            break;
        }
        out << firstCharacter(*name) << ". ";
    }
    // Required: the same behind every author. An "and", or nothing, behind the last one would part the list
    // from what follows in another way than readers of the texts expect.
    out << author.surname << ", ";
}

template <typename Out>
void writeAuthors(Out& out, const std::vector<Literature::Author>& authors)
{
    for (const Literature::Author& author : authors) {
        writeAuthor(out, author);
    }
}

template <typename Out>
void writePages(Out& out, unsigned int first, unsigned int last)
{
    // Required: without a first page none is shown; a last page alone would read as the first.
    if (first == 0) {
        return;
    }
    out << ", " << first;
    if (last != 0) {
        out << "-" << last;
    }
}

} // namespace

Literature::Literature(std::string aTitle, const std::vector<Author>& someAuthors, const std::string& aJournal,
                       unsigned int aVolume, unsigned int aYear, const std::string& aNote, unsigned int aFirstPage,
                       unsigned int aLastPage)
    : title(std::move(aTitle)), authors(someAuthors), journal(aJournal), volume(aVolume), year(aYear), note(aNote),
      firstPage(aFirstPage), lastPage(aLastPage)
{
}

// Required: the note is in neither text; what is in it may not be meant for readers.

void Literature::toString(TextRep& rep) const
{
    writeAuthors(rep, authors);
    // Required: apostrophes here and underscores in `print`; what the two give is not meant to agree.
    if (!title.empty()) {
        rep << "''" << title << "'', ";
    }
    rep << TextTag::em() << journal << TextTag::end() << " " << TextTag::b() << year << TextTag::end();
    if (volume != 0) {
        rep << ", " << TextTag::em() << volume << TextTag::end();
    }
    writePages(rep, firstPage, lastPage);
    rep << ".";
}

std::string Literature::print() const
{
    std::ostringstream out;
    out.imbue(std::locale::classic());
    writeAuthors(out, authors);
    if (!title.empty()) {
        out << "_" << title << "_, ";
    }
    out << "_" << journal << "_ *" << year << "*";
    if (volume != 0) {
        out << ", _" << volume << "_";
    }
    writePages(out, firstPage, lastPage);
    out << ".\n";
    return out.str();
}

} // namespace KelvoBase
