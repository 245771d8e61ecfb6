#include "SafeText.h"

#include <algorithm>
#include <iomanip>
#include <locale>
#include <span>
#include <sstream>
#include <string_view>

namespace seriesstat
{

namespace
{

constexpr const char* replacement = "?";
constexpr char32_t lastLatin1 = 0xFF; // up to here all fonts have everything

/// What stands for a character.
struct Entry
{
    std::string_view character;
    std::string_view text;
};

constexpr Entry htmlEntries[] = {
    {"&", "&amp;"}, {"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}, {"'", "&#39;"},
};

// Besides what LaTeX takes for commands: what it joins with a neighbour ("--", ",,"), and brackets, which would be an
// argument behind a line end or an item.
constexpr Entry latexEntries[] = {
    {"\\", "\\textbackslash{}"},
    {"{", "\\{"},
    {"}", "\\}"},
    {"$", "\\$"},
    {"&", "\\&"},
    {"#", "\\#"},
    {"%", "\\%"},
    {"_", "\\_\\allowbreak{}"},
    {"/", "\\slash{}"}, // a line may end behind both
    {"^", "\\textasciicircum{}"},
    {"~", "\\textasciitilde{}"},
    {"<", "\\textless{}"},
    {">", "\\textgreater{}"},
    {"\"", "\\textquotedbl{}"},
    {"'", "\\textquotesingle{}"},
    {"`", "\\textasciigrave{}"},
    {"-", "{-}"},
    {",", "{,}"},
    {"[", "{[}"},
    {"]", "{]}"},
    {"Γ", "$\\Gamma$"},
    {"Δ", "$\\Delta$"},
    {"Θ", "$\\Theta$"},
    {"Λ", "$\\Lambda$"},
    {"Ξ", "$\\Xi$"},
    {"Π", "$\\Pi$"},
    {"Σ", "$\\Sigma$"},
    {"Φ", "$\\Phi$"},
    {"Ψ", "$\\Psi$"},
    {"\u03A9", "$\\Omega$"}, // the letter
    {"\u2126", "$\\Omega$"}, // the unit
    {"α", "$\\alpha$"},
    {"β", "$\\beta$"},
    {"γ", "$\\gamma$"},
    {"δ", "$\\delta$"},
    {"ε", "$\\varepsilon$"},
    {"ζ", "$\\zeta$"},
    {"η", "$\\eta$"},
    {"θ", "$\\theta$"},
    {"ι", "$\\iota$"},
    {"κ", "$\\kappa$"},
    {"λ", "$\\lambda$"},
    {"μ", "$\\mu$"},
    {"ν", "$\\nu$"},
    {"ξ", "$\\xi$"},
    {"π", "$\\pi$"},
    {"ρ", "$\\rho$"},
    {"ς", "$\\varsigma$"},
    {"σ", "$\\sigma$"},
    {"τ", "$\\tau$"},
    {"υ", "$\\upsilon$"},
    {"φ", "$\\varphi$"},
    {"χ", "$\\chi$"},
    {"ψ", "$\\psi$"},
    {"ω", "$\\omega$"},
    {"⁰", "$^{0}$"},
    {"¹", "$^{1}$"},
    {"²", "$^{2}$"},
    {"³", "$^{3}$"},
    {"⁴", "$^{4}$"},
    {"⁵", "$^{5}$"},
    {"⁶", "$^{6}$"},
    {"⁷", "$^{7}$"},
    {"⁸", "$^{8}$"},
    {"⁹", "$^{9}$"},
    {"⁺", "$^{+}$"},
    {"⁻", "$^{-}$"},
    {"₀", "$_{0}$"},
    {"₁", "$_{1}$"},
    {"₂", "$_{2}$"},
    {"₃", "$_{3}$"},
    {"₄", "$_{4}$"},
    {"₅", "$_{5}$"},
    {"₆", "$_{6}$"},
    {"₇", "$_{7}$"},
    {"₈", "$_{8}$"},
    {"₉", "$_{9}$"},
    {"−", "$-$"},
    {"√", "$\\surd$"},
    {"∞", "$\\infty$"},
    {"≈", "$\\approx$"},
    {"≤", "$\\leq$"},
    {"≥", "$\\geq$"},
    {"\u212B", "\\AA{}"}, // the unit
};

/// How many bytes a sequence has that begins with this one; 0 if none does.
std::size_t lengthOf(unsigned char lead)
{
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// The number of the character that the bytes are; a control character if they are none.
char32_t codeOf(std::string_view bytes)
{
    constexpr char32_t none = 0;
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000}; // by length; below, a shorter sequence has to do
    if (bytes.size() == 1) {
        return static_cast<unsigned char>(bytes[0]);
    }
    char32_t code = static_cast<unsigned char>(bytes[0]) & (0x7FU >> bytes.size());
    for (const char byte : bytes.substr(1)) {
        if ((static_cast<unsigned char>(byte) & 0xC0) != 0x80) {
            return none;
        }
        code = (code << 6) | (static_cast<unsigned char>(byte) & 0x3F);
    }
    return code < least[bytes.size()] ? none : code;
}

bool isSeen(char32_t code)
{
    struct Range
    {
        char32_t first;
        char32_t last;
    };
    constexpr Range unseen[] = {
        {0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200B, 0x200F}, {0x2028, 0x202E},
        {0x2060, 0x206F}, {0xD800, 0xDFFF}, {0xFEFF, 0xFEFF}, {0xFFFE, 0xFFFF}, {0x110000, 0x1FFFFF},
    };
    return std::none_of(std::begin(unseen), std::end(unseen),
                        [code](const Range& range) { return code >= range.first && code <= range.last; });
}

/// The bytes of the first character, as far as it is one that can be shown; none otherwise.
std::string_view firstCharacter(std::string_view text)
{
    const std::size_t length = lengthOf(static_cast<unsigned char>(text.front()));
    if (length == 0 || length > text.size() || !isSeen(codeOf(text.substr(0, length)))) {
        return {};
    }
    return text.substr(0, length);
}

/// The bytes that an unseen character takes: all of its sequence if it is a proper one.
std::size_t unseenLength(std::string_view text)
{
    const std::size_t length = lengthOf(static_cast<unsigned char>(text.front()));
    const bool whole = length > 0 && length <= text.size() && codeOf(text.substr(0, length)) != 0;
    return whole ? length : 1;
}

/// The text of an entry; of none if there is no entry.
std::string_view find(std::span<const Entry> entries, const std::string& character)
{
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.character == character; });
    return found == entries.end() ? std::string_view() : found->text;
}

/// A character that LaTeX may or may not know.
std::string latexSign(const std::string& character)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << "\\sign{" << character << "}{" << std::hex << std::uppercase << std::setw(4) << std::setfill('0')
         << static_cast<unsigned int>(codeOf(character)) << "}";
    return text.str();
}

} // namespace

std::vector<std::string> charactersOf(const std::string& text)
{
    std::vector<std::string> characters;
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::string_view character = firstCharacter(rest);
        characters.emplace_back(character.empty() ? replacement : character);
        rest.remove_prefix(character.empty() ? unseenLength(rest) : character.size());
    }
    return characters;
}

std::string shortened(const std::string& text, std::size_t most)
{
    std::vector<std::string> characters = charactersOf(text);
    if (characters.size() > most) {
        const auto gap = characters.begin() + static_cast<std::ptrdiff_t>(most / 2);
        const auto surplus = static_cast<std::ptrdiff_t>(characters.size() - most);
        *gap = "…";
        characters.erase(gap + 1, gap + 1 + surplus);
    }
    std::string result;
    for (const std::string& character : characters) {
        result += character;
    }
    return result;
}

std::string htmlText(const std::string& text)
{
    std::string result;
    for (const std::string& character : charactersOf(text)) {
        const std::string_view entry = find(htmlEntries, character);
        result += entry.empty() ? std::string_view(character) : entry;
    }
    return result;
}

std::string latexText(const std::string& text)
{
    std::string result;
    for (const std::string& character : charactersOf(text)) {
        const std::string_view entry = find(latexEntries, character);
        if (!entry.empty()) {
            result += entry;
        } else if (codeOf(character) <= lastLatin1) {
            result += character;
        } else {
            result += latexSign(character);
        }
    }
    return result;
}

} // namespace seriesstat
