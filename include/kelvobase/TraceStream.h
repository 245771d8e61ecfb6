#pragma once

/// \file
/// The trace: one process-wide stream, filtered by level and area.
///
///     TraceStream& trace = TraceStream::instance();
///     trace.setNextTraceConditions(Trace::verbose, TraceArea::App());
///     trace << "read " << n << " values" << std::endl;
///
/// No text appears before `traceto` has set a destination; `Application` does so from the options `--trace-level`,
/// `--trace-area` and `--trace-to`.

#include <kelvobase/Export.h>

#include <bitset>
#include <ostream>
#include <string>

namespace KelvoBase
{

/// Levels of importance; a lower number is more important.
class KELVOBASE_API Trace
{
public:
    /// Passes every selection of levels and areas, and has no prefix.
    static const unsigned int crit = 0;
    static const unsigned int fail = 1;
    static const unsigned int warn = 2;
    static const unsigned int verbose = 3;
    /// No level: the answer of `interpret` to a word that names none.
    static const unsigned int undef = 99;

    /// The level of a word, "crit", "fail", "warn" or "verbose", to the letter; else `undef`.
    static unsigned int interpret(const std::string& word);
};

/// The stream of all trace messages.
///
/// Visible is a text whose level is `crit`, or whose level is at most the selected one and whose areas meet the
/// selected ones. Each visible line begins with "|", two hyphens for each step of its level, and a blank; `crit` lines
/// begin with their text. The conditions hold until they are set again. Required: a line end begins a line even
/// when it is suppressed itself, so the prefix may stand behind an unfinished visible line.
///
/// Every character that arrives while a destination is set, visible or not, is also kept in a record in memory, for
/// whoever inspects the memory of a process that stopped. Required: without a destination nothing is recorded.
/// The record is a block of 32768 bytes:
///   - it begins with a line end, "<BE", one byte of any value, Required, and "IN> "; the text follows;
///   - "\n<T>\n" stands behind the newest character;
///   - "\n<end>\n" stands where the text went on at the beginning, Required, behind 32751 characters: what
///     precedes that mark and follows the newest character is older than what stands at the beginning.
///
/// Visible text reaches its destination when the stream is flushed, in one write as a rule, on standard error, too.
/// When the destination fails, Required, the next character is still recorded but refused: the stream takes
/// its failure state one character late, and drops what follows.
class KELVOBASE_API TraceStream : public std::ostream
{
public:
    TraceStream();
    ~TraceStream() override;

    /// The stream, made at the first call.
    static TraceStream& instance();
    /// The buffer behind every `TraceStream`, made at the first call. From then on the standard streams are no longer
    /// in step with C stdio.
    static std::streambuf& buf();

    /// The selected areas.
    const std::bitset<64>& getMask() const;

    /// Flushes, and sets level and areas of the text that follows.
    void setNextTraceConditions(unsigned int level, const std::bitset<64>& mask);
    /// The same for `TraceArea::All()`, at the head of a chain of insertions.
    TraceStream& setNextTraceConditions(unsigned int level);

    /// Selects level and areas and sets the destination: "cout", "cerr" (no destination when `haveCerr` is false), or
    /// the native name of a file, which is emptied.
    /// Required: `haveCerr` governs "cout" as well.
    /// Required: a line that began at the old destination goes on at the new one, without a prefix.
    ///
    /// Throws `OperationFailedException("Non-fatal Error: Couldn't open \"" + dest + "\" as trace file!")`.
    /// Required: "Non-fatal", although nothing in the library catches it. Required: level and selection
    /// are changed even then. A standard stream stays the destination; an earlier file is closed and leaves none.
    void traceto(unsigned int level, const std::string& dest, const std::bitset<64>& mask);

private:
    static int mCount; // streams ever made; nothing reads it
};

} // namespace KelvoBase
