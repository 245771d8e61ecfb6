#include "platform/Platform.h"
#include "strings/Search.h"
#include "trace/Message.h"

#include <kelvobase/Any.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <istream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Reading, from the file to the tables:
//
//     LineReader      blocks of the file    =>  lines as views, comments cut
//     Parser          lines                 =>  headings, keys and texts, and the faults
//     PendingEntries  keys and texts        =>  the table of a section, a section at a time
//     ValueMaker      text of an entry      =>  value
//
// What takes the time is memory that is not at hand. So the entries of a section become objects together, sorted, which
// puts keys and values side by side in the order in which they are compared and written.
//
// Writing: the text is made as a whole first, so that a value that has none leaves the file alone.

namespace KelvoBase
{

namespace
{

using Entries = std::map<std::string, Any*>;
using Sections = std::map<std::string, Entries>;
using Text = ScalarAny<std::string>;

constexpr const char* headingPart = "Section";
constexpr const char* entryPart = "Entry";
constexpr const char* cannotOpen = "ConfigFile: Unable to open file";
constexpr const char* quoteMark = "\"";

constexpr std::size_t blockSize = 16384;   // of a file, at the beginning; grows with the longest line
constexpr std::size_t usualEntrySize = 64; // when written, generously: what is too much is never touched

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// What `trim` leaves.
std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// Whether a line is looked at. Required: the test is made before trimming. Made behind it, lines of blanks and
/// indented comments would store nothing, and files would lose an entry that tools see today.
bool isLookedAt(std::string_view line, char commentSign)
{
    return !line.empty() && line.front() != commentSign;
}

/// Required: up to the first sign, wherever it stands. Sparing quoted ones would turn the comments of today's
/// files into values.
std::string_view withoutComment(std::string_view line, char commentSign)
{
    return line.substr(0, line.find(commentSign));
}

/// The lines of a file as `ConfigFile::getNextLine` gives them, as views into a block of it.
class LineReader
{
public:
    LineReader(std::istream& in, char commentSign) : mIn(in), mCommentSign(commentSign) {}

    /// The next line that is looked at, valid until the next call; false at the end of the file.
    bool next(std::string_view& line)
    {
        while (takeLine(line)) {
            ++mNumber;
            if (isLookedAt(line, mCommentSign)) {
                line = withoutComment(line, mCommentSign);
                return true;
            }
        }
        return false;
    }

    /// The number of the last line, from 1. Lines that are not looked at count.
    int number() const { return mNumber; }

private:
    /// The next line of any kind. Nothing behind the last line end is no line.
    bool takeLine(std::string_view& line)
    {
        std::size_t searched = 0;
        std::size_t length = 0;
        while ((length = mUnread.find('\n', searched)) == std::string_view::npos) {
            searched = mUnread.size();
            if (!readMore()) {
                line = std::exchange(mUnread, {});
                return !line.empty();
            }
        }
        line = mUnread.substr(0, length);
        mUnread.remove_prefix(length + 1);
        return true;
    }

    /// Puts what comes next in the file behind what is unread. False if there is nothing: a stream that went bad is at
    /// its end.
    bool readMore()
    {
        const std::size_t kept = mUnread.size();
        if (kept != 0 && mUnread.data() != mBlock.data()) {
            std::memmove(mBlock.data(), mUnread.data(), kept);
        }
        if (kept == mBlock.size()) {
            mBlock.resize(2 * kept);
        }
        const bool isMore = mIn.peek() != std::istream::traits_type::eof();
        const auto room = static_cast<std::streamsize>(mBlock.size() - kept);
        const auto added = isMore ? static_cast<std::size_t>(mIn.readsome(mBlock.data() + kept, room)) : 0;
        mUnread = std::string_view(mBlock.data(), kept + added);
        return added != 0;
    }

    std::istream& mIn;
    char mCommentSign;
    std::string mBlock = std::string(blockSize, '\0');
    std::string_view mUnread; // part of the block
    int mNumber = 0;
};

/// Makes the values of entries.
class ValueMaker
{
public:
    explicit ValueMaker(const std::string& listSeperator) : mListSeperator(listSeperator) {}

    static std::unique_ptr<Any> flag() { return std::make_unique<ScalarAny<bool>>(true); }

    std::unique_ptr<Any> make(std::string_view text)
    {
        mPieces.clear();
        if (findAnyOf(text, quoteMark) == std::string_view::npos) {
            addPieces(text);
        } else {
            addTokens(text);
        }
        if (mPieces.size() == 1) {
            mText = mPieces.front();
            return std::make_unique<Text>(mText);
        }
        return list();
    }

private:
    /// What `addTokens` adds for a text without quotes; an empty text is one piece here.
    void addPieces(std::string_view text)
    {
        auto cut = findAnyOf(text, mListSeperator);
        while (cut != std::string_view::npos) {
            mPieces.push_back(trimmed(text.substr(0, cut)));
            text.remove_prefix(cut + 1);
            cut = findAnyOf(text, mListSeperator);
        }
        mPieces.push_back(trimmed(text));
    }

    void addTokens(std::string_view text)
    {
        // Required: trimmed behind `split`, which takes the quotes away. Trimming in front of it would bring
        // blanks into values that were always without.
        mText = text;
        mTokens.clear();
        split(mText, mTokens, mListSeperator, "", quoteMark);
        for (const std::string& token : mTokens) {
            mPieces.push_back(trimmed(token));
        }
    }

    std::unique_ptr<Any> list()
    {
        auto values = std::make_unique<VectorAny<Text>>();
        auto index = static_cast<unsigned int>(mPieces.size());
        // From the last one on: writing it gives the list its size, and growing copies all elements.
        while (index-- > 0) {
            mText = mPieces[index];
            (*values)[index].fromString(mText, mListSeperator);
        }
        return values;
    }

    const std::string& mListSeperator;
    // Kept for their memory.
    std::string mText;
    std::vector<std::string> mTokens;
    std::vector<std::string_view> mPieces;
};

/// The entries of a section on their way to its table.
class PendingEntries
{
public:
    bool empty() const { return mEntries.empty(); }

    void addFlag(std::string_view key) { add(key, {}, true); }
    void addText(std::string_view key, std::string_view text) { add(key, text, false); }

    /// Moves all into `entries`, where a later one takes the place of an earlier one.
    void moveTo(Entries& entries, ValueMaker& values)
    {
        std::sort(mEntries.begin(), mEntries.end(), [this](const Pending& a, const Pending& b) {
            return a.front != b.front ? a.front < b.front : isInFront(a, b);
        });
        auto next = entries.end();
        for (const Pending& entry : mEntries) {
            auto value = entry.isFlag ? ValueMaker::flag() : values.make(textOf(entry));
            const auto stored = entries.try_emplace(next, std::string(keyOf(entry)), nullptr);
            delete std::exchange(stored->second, value.release());
            next = std::next(stored);
        }
        mEntries.clear();
        mBytes.clear();
    }

private:
    struct Pending
    {
        std::uint64_t front; // the first bytes of the key, which decide most comparisons
        std::size_t place;   // of the key, in the order of the file; the text stands behind it
        std::size_t keySize;
        std::size_t textSize;
        bool isFlag;
    };

    void add(std::string_view key, std::string_view text, bool isFlag)
    {
        mEntries.push_back({frontOf(key), mBytes.size(), key.size(), text.size(), isFlag});
        mBytes.append(key).append(text);
    }

    /// The first eight bytes as a number; a byte that is missing counts as zero.
    static std::uint64_t frontOf(std::string_view key)
    {
        std::uint64_t front = 0;
        for (std::size_t i = 0; i < sizeof front; ++i) {
            front = front << 8U | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
        }
        return front;
    }

    std::string_view keyOf(const Pending& entry) const { return {mBytes.data() + entry.place, entry.keySize}; }
    std::string_view textOf(const Pending& entry) const
    {
        return {mBytes.data() + entry.place + entry.keySize, entry.textSize};
    }

    /// Only flags without a name, all alike, can have one place.
    bool isInFront(const Pending& a, const Pending& b) const
    {
        const int order = keyOf(a).compare(keyOf(b));
        return order != 0 ? order < 0 : a.place < b.place;
    }

    std::string mBytes;
    std::vector<Pending> mEntries;
};

/// Merges one file into the sections of an object.
class Parser
{
public:
    Parser(ConfigFile& config, Sections& sections, std::istream& in)
        : mConfig(config), mSections(sections), mBegin(config.getSectionBeginIdent()),
          mEnd(config.getSectionEndIdent()), mSeperator(config.getSeperator()), mLines(in, config.getCommentSign()),
          mValues(config.getListSeperator())
    {
    }

    /// Whatever is thrown, what stood in front of the line stays.
    void run()
    {
        try {
            while (mLines.next(mLine)) {
                const std::string_view line = trimmed(mLine);
                if (!takeHeading(line)) {
                    takeEntry(line);
                }
            }
        } catch (...) {
            finishSection();
            throw;
        }
        finishSection();
    }

private:
    bool takeHeading(std::string_view line)
    {
        if (line.empty() || mBegin.empty() || line.front() != mBegin.front()) {
            return false;
        }
        const auto begin = line.find(mBegin);
        if (begin == std::string_view::npos) {
            return false;
        }
        const auto end = line.find(mEnd);
        if (end == std::string_view::npos) {
            refuse(headingPart);
        }
        finishSection();
        const auto name = begin + mBegin.size();
        // Required: not trimmed. Names with blanks that tools ask for would not be found any more.
        // Required: with an end in front of the name the difference wraps, and the name reaches to the line's
        // end. Looking for the end behind the name would give files with equal idents other sections.
        mSection = &mSections[std::string(line.substr(name, end - name))];
        return true;
    }

    void takeEntry(std::string_view line)
    {
        const auto hit = findAnyOf(line, mSeperator);
        if (hit == std::string_view::npos) {
            mPending.addFlag(line);
            return;
        }
        // Required: all bytes of the separator are skipped, whichever was hit. Skipping the one alone would
        // leave the rest of a separator in front of every text.
        if (mSeperator.size() > line.size() - hit) {
            throwCutBehindEnd();
        }
        if (hit == 0) {
            refuse(entryPart);
        }
        mPending.addText(trimmed(line.substr(0, hit)), trimmed(line.substr(hit + mSeperator.size())));
    }

    void finishSection()
    {
        if (mPending.empty()) {
            return;
        }
        if (mSection == nullptr) {
            mSection = &mSections[std::string()];
        }
        mPending.moveTo(*mSection, mValues);
    }

    [[noreturn]] void refuse(const char* part) { mConfig.handleParseError(part, std::string(mLine), mLines.number()); }

    ConfigFile& mConfig;
    Sections& mSections;
    const std::string& mBegin;
    const std::string& mEnd;
    const std::string& mSeperator;
    LineReader mLines;
    ValueMaker mValues;
    PendingEntries mPending;
    Entries* mSection = nullptr; // the section "" comes into being with its first entry
    std::string_view mLine;      // without its comment
};

} // namespace

// NOLINTNEXTLINE(readability-make-member-function-const): not constant in the interface that tools are written against
int ConfigFile::getNextLine(std::istream& in, std::string& line)
{
    int count = 0;
    line.clear();
    // Not only up to the end: a stream that went bad never gets there.
    while (in.good()) {
        std::getline(in, line);
        ++count;
        if (isLookedAt(line, mCommentSign)) {
            break;
        }
    }
    line.resize(withoutComment(line, mCommentSign).size());
    return count;
}

void ConfigFile::parse()
{
    std::ifstream in(platform::nativePath(mFileName.c_str()));
    if (in) {
        in.peek(); // some systems open directories as well, and only reading fails
    }
    if (in.fail()) {
        const int error = errno;
        throw FileNotReadableException(mFileName, std::strerror(error));
    }
    Parser(*this, mSections, in).run();
    mModified = false;
}

void ConfigFile::parseFile(const ResourceLocation& location)
{
    mFileName = ResourceLocation(location.getFilePath(ResourceLocation::getFSSeparator()));
    parse();
}

void ConfigFile::handleParseError(const std::string& what, const std::string& line, int lineNumber)
{
    std::ostream& trace = traceMessage(Trace::fail, TraceArea::All());
    trace << "ConfigFile::parse(): error in line " << std::to_string(lineNumber) << "\n'" << line << "'" << std::endl;
    trace << "while parsing " << what << std::endl;
    throw OperationFailedException("Parsing config file \"" + mFileName.str() + "\"");
}

void ConfigFile::setFileName(const std::string& name)
{
    mFileName = ResourceLocation(name);
}

void ConfigFile::writeToFile(const ResourceLocation& location) const
{
    std::size_t entryCount = 0;
    for (const auto& [name, entries] : mSections) {
        entryCount += entries.size() + 1;
    }
    std::string text;
    text.reserve(entryCount * usualEntrySize);
    for (const auto& [name, entries] : mSections) {
        text.append(mSectionBeginIdent).append(name).append(mSectionEndIdent) += '\n';
        for (const auto& [key, value] : entries) {
            // Required: as it is, without quotes. Files with quotes would mean something else to every reader
            // that has none to take away.
            text.append(key).append(mSeperator).append(value->toString(mListSeperator)) += '\n';
        }
        text += '\n';
    }
    std::ofstream out(platform::nativePath(location.c_str()));
    if (!out) {
        throw OperationFailedException(std::string(cannotOpen) + " '" + location.str() + "'");
    }
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void ConfigFile::saveToDisk(const std::string& name) const
{
    writeToFile(ResourceLocation(name));
}

void ConfigFile::sync() const
{
    // Required: the mark stays. Clearing it would let a later call lose what another process wrote over.
    if (mModified) {
        writeToFile(mFileName);
    }
}

} // namespace KelvoBase
