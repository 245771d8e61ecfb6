#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <streambuf>
#include <string_view>

// The record in memory comes first, then the buffer that filters and records what is inserted, then the stream, which
// only hands on. `TraceStreamBuf::accept` says what one character does; what takes several at once must amount to it.

namespace KelvoBase
{

namespace
{

// The record. Whoever inspects a process that stopped looks for `traceRing` or for the head mark.

constexpr std::size_t blockSize = 32768;
constexpr std::size_t headSize = 9;
constexpr std::size_t limit = 32752; // of the text behind the head mark
// Of the head mark, around its fifth byte.
constexpr char headBegin[] = {'\n', '<', 'B', 'E'};
constexpr char headEnd[] = {'I', 'N', '>', ' '};
static_assert(sizeof headBegin + 1 + sizeof headEnd == headSize);
constexpr char tailMark[] = {'\n', '<', 'T', '>', '\n'};
constexpr char wrapMark[] = {'\n', '<', 'e', 'n', 'd', '>', '\n'};
static_assert(headSize + limit - 1 + sizeof wrapMark <= blockSize, "the marks fit behind the last character");

constinit char* traceRing = nullptr;    // the whole block
constinit char* traceRingPos = nullptr; // where the next character goes

void openRecord()
{
    traceRing = new char[blockSize];
    // Required: the fifth byte stays as the allocator delivered it. A letter there, or a block that is cleared
    // first, would be another mark than the one that is looked for.
    std::memcpy(traceRing, headBegin, sizeof headBegin);
    std::memcpy(traceRing + sizeof headBegin + 1, headEnd, sizeof headEnd);
    traceRingPos = traceRing + headSize;
}

void closeRecord()
{
    delete[] traceRing;
    traceRing = nullptr;
    traceRingPos = nullptr;
}

/// How many characters fit until the record goes on at its beginning.
std::size_t roomInRecord()
{
    // Required: one less than up to the limit. With that one more the marks would stand a byte further than
    // where they are looked for.
    return headSize + limit - 1 - static_cast<std::size_t>(traceRingPos - traceRing);
}

void wrapRecord()
{
    std::memcpy(traceRingPos, wrapMark, sizeof wrapMark);
    traceRingPos = traceRing + headSize;
}

void record(char c)
{
    if (roomInRecord() == 0) {
        wrapRecord();
    }
    *traceRingPos++ = c;
    std::memcpy(traceRingPos, tailMark, sizeof tailMark);
}

void recordFitting(const char* text, std::size_t count)
{
    std::memcpy(traceRingPos, text, count);
    traceRingPos += count;
    std::memcpy(traceRingPos, tailMark, sizeof tailMark);
}

// Out of line, as acceptVisible below: suppressed text is what there is most of, and passes both by.
[[gnu::noinline]] void recordWrapping(const char* text, std::size_t count)
{
    for (std::size_t room = roomInRecord(); count > room; room = roomInRecord()) {
        recordFitting(text, room);
        wrapRecord();
        text += room;
        count -= room;
    }
    recordFitting(text, count);
}

/// Leaves what recording character by character leaves: all tail marks but the last are overwritten there, too.
inline void record(const char* text, std::size_t count)
{
    if (count <= roomInRecord()) {
        recordFitting(text, count);
    } else {
        recordWrapping(text, count);
    }
}

/// The put area of any stream buffer. What fits there is stored and nothing else happens: so `sputc` is defined.
class PutArea : public std::streambuf
{
public:
    static std::size_t room(const std::streambuf& buf)
    {
        const auto free = static_cast<std::size_t>((buf.*&PutArea::epptr)() - (buf.*&PutArea::pptr)());
        return std::min(free, most);
    }

    static void append(std::streambuf& buf, const char* text, std::size_t count)
    {
        std::memcpy((buf.*&PutArea::pptr)(), text, count);
        (buf.*&PutArea::pbump)(static_cast<int>(count));
    }

private:
    static constexpr std::size_t most = 1 << 20; // a put area is moved on by an int
};

/// Flushes the stream tied to a good one, as output on it begins.
void flushTied(std::ostream& out)
{
    if (out.tie() != nullptr) {
        out.tie()->flush();
    }
}

/// Sets `badbit` without an exception of its own.
void spoil(std::ostream& out)
{
    try {
        out.setstate(std::ios_base::badbit);
    } catch (const std::ios_base::failure&) {
        // The caller reports the exception that led here.
    }
}

/// Puts a character on a good stream as `ostream::put` does once the tied stream is flushed, but leaves a unit-buffered
/// stream unflushed. So a line on standard error is written once, where the trace is flushed.
void put(std::ostream& out, char c)
{
    using Traits = std::ostream::traits_type;
    bool accepted = true;
    try {
        accepted = !Traits::eq_int_type(out.rdbuf()->sputc(c), Traits::eof());
    } catch (...) {
        spoil(out);
        if ((out.exceptions() & std::ios_base::badbit) != 0) {
            throw;
        }
    }
    if (!accepted) {
        out.setstate(std::ios_base::badbit);
    }
}

/// Puts characters on a stream for as long as it is good.
void put(std::ostream& out, const char* text, std::size_t count)
{
    while (count > 0 && out.good()) {
        std::size_t part = std::min(count, PutArea::room(*out.rdbuf()));
        if (part > 0) {
            PutArea::append(*out.rdbuf(), text, part);
        } else {
            put(out, *text);
            part = 1;
        }
        text += part;
        count -= part;
    }
}

class TraceStreamBuf : public std::streambuf
{
public:
    TraceStreamBuf();
    ~TraceStreamBuf() override;
    TraceStreamBuf(const TraceStreamBuf&) = delete;
    TraceStreamBuf& operator=(const TraceStreamBuf&) = delete;

    const std::bitset<64>& getMask() const { return mMask; }
    void setNextTraceConditions(unsigned int level, const std::bitset<64>& mask);
    void traceto(unsigned int level, const std::string& dest, const std::bitset<64>& mask);

protected:
    int sync() override;
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;

private:
    bool isVisible() const;
    bool accept(char c);
    std::streamsize acceptVisible(const char* text, std::streamsize count);
    std::streamsize acceptFitting(const char* text, std::streamsize count);
    void putPrefix();
    void openFile(const std::string& name);

    std::ostream* mOut = nullptr; // the destination: a standard stream, which outlives this, or mFile
    std::unique_ptr<std::ofstream> mFile;
    bool mAtLineStart = true; // the next visible character begins a line
    unsigned int mNextLevel = Trace::verbose;
    unsigned int mLevel = Trace::fail;
    std::bitset<64> mNextMask;
    std::bitset<64> mMask;
    bool mIsFlushed = true; // nothing was put on mOut since it was flushed
};

TraceStreamBuf::TraceStreamBuf() : mNextMask(TraceArea::All()), mMask(TraceArea::All())
{
    openRecord();
    std::ios_base::sync_with_stdio(false);
}

TraceStreamBuf::~TraceStreamBuf()
{
    try {
        sync();
    } catch (...) {
        // The process ends; nobody is left to hear that its last line was lost.
    }
    closeRecord();
}

void TraceStreamBuf::setNextTraceConditions(unsigned int level, const std::bitset<64>& mask)
{
    mNextLevel = level;
    mNextMask = mask;
}

inline bool TraceStreamBuf::isVisible() const
{
    return mNextLevel == Trace::crit || (mLevel >= mNextLevel && (mMask & mNextMask).any());
}

void TraceStreamBuf::putPrefix()
{
    constexpr std::string_view bar = "|--------------------------------";
    if (!mOut->good()) {
        mOut->setstate(std::ios_base::failbit); // as any output on such a stream
        return;
    }
    flushTied(*mOut);
    // The level is any number: its double may need one bit more.
    auto hyphens = 2ULL * mNextLevel;
    auto part = std::min<unsigned long long>(hyphens, bar.size() - 1);
    put(*mOut, bar.data(), 1 + static_cast<std::size_t>(part));
    for (hyphens -= part; hyphens > 0 && mOut->good(); hyphens -= part) {
        part = std::min(hyphens, part);
        put(*mOut, bar.data() + 1, static_cast<std::size_t>(part));
    }
    put(*mOut, " ", 1);
}

/// What a character does; false if the destination was bad before it.
bool TraceStreamBuf::accept(char c)
{
    if (mAtLineStart && isVisible()) {
        if (mNextLevel != Trace::crit) {
            putPrefix();
        }
        mAtLineStart = false;
    }
    record(c);
    if (isVisible()) {
        // Required: the state is asked here, behind the record and in front of the output. Asking behind the
        // output would refuse the character that failed, not the next one.
        if (!mOut->good()) {
            return false;
        }
        flushTied(*mOut);
        mIsFlushed = false;
        put(*mOut, c);
    }
    // Required: also a line end that nobody sees begins a line. Only a visible one counting would take the
    // prefix from text that follows an unfinished line and suppressed ones.
    if (c == '\n') {
        mAtLineStart = true;
    }
    return true;
}

/// Takes those visible characters that the destination need not be asked for, up to the line's end and the end of its
/// put area: nothing can fail there, nor look at the record meanwhile. A tied stream has been flushed.
std::streamsize TraceStreamBuf::acceptFitting(const char* text, std::streamsize count)
{
    if (mAtLineStart || !mOut->good()) {
        return 0;
    }
    const std::size_t part = std::min(static_cast<std::size_t>(count), PutArea::room(*mOut->rdbuf()));
    if (part == 0) {
        return 0;
    }
    const auto* end = static_cast<const char*>(std::memchr(text, '\n', part));
    const std::size_t accepted = end == nullptr ? part : static_cast<std::size_t>(end + 1 - text);
    record(text, accepted);
    PutArea::append(*mOut->rdbuf(), text, accepted);
    mIsFlushed = false;
    mAtLineStart = end != nullptr;
    return static_cast<std::streamsize>(accepted);
}

TraceStreamBuf::int_type TraceStreamBuf::overflow(int_type c)
{
    // Required: without a destination nothing is recorded either. Recording first would fill the record with
    // what is said before the user's options are known.
    if (mOut == nullptr || traits_type::eq_int_type(c, traits_type::eof())) {
        return c;
    }
    return accept(traits_type::to_char_type(c)) ? c : traits_type::eof();
}

[[gnu::noinline]] std::streamsize TraceStreamBuf::acceptVisible(const char* text, std::streamsize count)
{
    // With a tied stream the first character goes the long way, which flushes that stream.
    std::streamsize accepted = mOut->tie() == nullptr ? acceptFitting(text, count) : 0;
    while (accepted < count && accept(text[accepted])) {
        ++accepted;
        accepted += acceptFitting(text + accepted, count - accepted);
    }
    return accepted;
}

std::streamsize TraceStreamBuf::xsputn(const char* text, std::streamsize count)
{
    if (mOut == nullptr || count <= 0) {
        return std::max<std::streamsize>(count, 0);
    }
    if (isVisible()) {
        return acceptVisible(text, count);
    }
    const auto size = static_cast<std::size_t>(count);
    record(text, size);
    mAtLineStart = mAtLineStart || std::memchr(text, '\n', size) != nullptr;
    return count;
}

int TraceStreamBuf::sync()
{
    // Nobody else writes to mFile, so there is nothing to flush after suppressed text. A standard stream may hold
    // anybody's text.
    if (mOut != nullptr && !(mIsFlushed && mOut == mFile.get())) {
        mOut->flush();
        mIsFlushed = true;
    }
    return 0;
}

void TraceStreamBuf::openFile(const std::string& name)
{
    mFile = std::make_unique<std::ofstream>(name);
    if (!mFile->good()) {
        // Required: "Non-fatal", although nothing catches it before the run ends. Scripts look for the text.
        throw OperationFailedException("Non-fatal Error: Couldn't open \"" + name + "\" as trace file!");
    }
    mOut = mFile.get();
}

void TraceStreamBuf::traceto(unsigned int level, const std::string& dest, const std::bitset<64>& mask)
{
    // Required: the selection comes first and stays when the destination cannot be opened. Setting it last
    // would leave the old destination with the old selection.
    // Required: mAtLineStart stays as it is. Setting it would put a prefix into a line that goes on elsewhere.
    mMask = mask;
    mLevel = level;
    sync();
    if (mOut == mFile.get()) {
        mOut = nullptr;
    }
    mFile.reset();
    // Required: haveCerr governs both streams. A process without a console has no standard output either.
    if (dest == "cout") {
        mOut = haveCerr ? &std::cout : nullptr;
    } else if (dest == "cerr") {
        mOut = haveCerr ? &std::cerr : nullptr;
    } else {
        openFile(dest);
    }
}

/// The one buffer, made at the first call.
TraceStreamBuf& theBuf()
{
    static TraceStreamBuf buf;
    return buf;
}

} // namespace

// The header has their values; here they are exported, for those who take a reference.
const unsigned int Trace::crit;
const unsigned int Trace::fail;
const unsigned int Trace::warn;
const unsigned int Trace::verbose;
const unsigned int Trace::undef;

unsigned int Trace::interpret(const std::string& word)
{
    if (word == "crit") {
        return crit;
    }
    if (word == "fail") {
        return fail;
    }
    if (word == "warn") {
        return warn;
    }
    if (word == "verbose") {
        return verbose;
    }
    return undef;
}

constinit int TraceStream::mCount = 0;

TraceStream::TraceStream() : std::ostream(&buf())
{
    ++mCount;
}

TraceStream::~TraceStream()
{
    flush();
}

TraceStream& TraceStream::instance()
{
    static TraceStream stream;
    return stream;
}

std::streambuf& TraceStream::buf()
{
    return theBuf();
}

const std::bitset<64>& TraceStream::getMask() const
{
    return theBuf().getMask();
}

void TraceStream::setNextTraceConditions(unsigned int level, const std::bitset<64>& mask)
{
    flush();
    theBuf().setNextTraceConditions(level, mask);
}

TraceStream& TraceStream::setNextTraceConditions(unsigned int level)
{
    setNextTraceConditions(level, TraceArea::All());
    return *this;
}

void TraceStream::traceto(unsigned int level, const std::string& dest, const std::bitset<64>& mask)
{
    theBuf().traceto(level, dest, mask);
}

} // namespace KelvoBase
