#pragma once

/// \file
/// Free functions on byte strings, and `round`.
///
/// They work on bytes and know no multi-byte characters; white space and case are those of the process's C locale,
/// and a byte above 0x7F belongs to no class. They keep no state and are re-entrant. Many are less symmetrical than
/// their names suggest; the edges told here are the contract.
/// None throws unless it is said (memory exhaustion apart).

#include <kelvobase/Export.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace KelvoBase
{

/// \name Trimming, in place. Each returns how many characters it removed.
/// @{

/// Removes white space at both ends.
KELVOBASE_API int trim(std::string& s);
/// Removes `c` at both ends. An empty text, or one of `c` only, becomes empty.
KELVOBASE_API int trim(std::string& s, char c);
/// Removes `c` at the beginning.
/// Required: where nothing would be left (an empty text, or one of `c` only) it throws
/// `std::out_of_range("basic_string::substr")` and `s` stays as it was; `trim` gives an empty text there.
KELVOBASE_API int lTrim(std::string& s, char c);
/// Removes every `c` outside stretches quoted by `q`; an unclosed quote protects the rest. The quotation marks stay.
/// Required: a backslash directly in front of a `q` takes its meaning away, also a backslash that has a
/// backslash in front of it.
/// Required: with `q` equal to `c` each opening mark stays and each closing one goes: "'a''b'" => "'a'b".
KELVOBASE_API int strip(std::string& s, char c, char q);
/// @}

/// \name Quoting and escaping
/// @{

/// `s` between double quotes; nothing inside is altered.
KELVOBASE_API std::string quote(const std::string& s);
/// Puts `e` in front of each `c`, in place: quote("a_b_", '_', '\\') => "a\_b\_". Returns the number of `c`.
/// Required: -1 for an empty text.
KELVOBASE_API int quote(std::string& s, char c, char e);
/// Doubles every occurrence of `token`: escape("a,b", ",") => "a,,b".
/// Required: occurrences that overlap are doubled each: escape("aaa", "aa") => "aaaaaaa".
KELVOBASE_API std::string escape(const std::string& s, const std::string& token);
/// Turns each doubled `token` into a single one; a single one stays: "a,,b" => "a,b", ",,," => ",,". An empty token
/// changes nothing.
/// Required: the search is for any byte of `token`, and each hit is stepped over by its length. So a token of
/// two or more bytes, one of which stands closer to the end of `s` than the length, makes it throw
/// `std::out_of_range("basic_string::substr")`: unescape("xa", "ab").
KELVOBASE_API std::string unescape(const std::string& s, const std::string& token);
/// Turns each run of `token` into a single one: ",,a,b,,,c" => ",a,b,c". The search is that of `unescape`, but nothing
/// is thrown; an empty token changes nothing.
KELVOBASE_API std::string unescapeAll(const std::string& s, const std::string& token);
/// @}

/// \name Splitting and joining
/// @{

/// Cuts `s` into tokens and appends them to `out`, which is not cleared.
/// Required: returns `out.size()`, not the number of tokens added.
///
/// Each of the last three arguments is a set of bytes; an empty one means that there is no such role. A separator
/// outside quotes ends a token; empty tokens are kept. A quote byte opens or closes a quoted stretch and is dropped;
/// an unclosed one is no error. An escape byte takes the next byte: `n` gives a line end; a quote, a separator, an
/// escape byte gives itself. A byte in several sets is an escape first, then a separator. An empty `s` gives no token.
///
/// Throws `OperationFailedException`: "cannot end with escape", or "unknown escape sequence"; memory exhaustion, too,
/// comes as one, with the text of its own exception. Tokens appended before stay in `out`.
KELVOBASE_API unsigned int split(const std::string& s, std::vector<std::string>& out, const std::string& separators,
                                 const std::string& escapes, const std::string& quotes);
/// Cuts at each single separator; doubled ones stay in the piece: "a,,b,c" => "a,,b", "c". At least one piece.
///
/// `separators` is a set of bytes, but each cut steps over as many bytes as the set has. A cut that so ends behind the
/// end of `s` throws `std::out_of_range("basic_string::substr")`; this takes a set of two or more bytes.
///
/// REQUIRES: no separator byte at position `separators.length() - 1` (for one byte: the text does not begin with it),
/// and `separators` is not empty. Otherwise the call does not return, see `findsep`.
KELVOBASE_API std::vector<std::string> splitBySeparator(const std::string& s, const std::string& separators);
/// Cuts into pieces of `length` bytes, appended to `out`. Returns how many were added.
/// Required: the remainder is always a piece, if need be an empty one: "abcd", 2 => "ab", "cd", "".
/// REQUIRES: `length` is not 0, unless `s` is empty; otherwise the call does not return.
KELVOBASE_API int splitByLength(const std::string& s, std::vector<std::string>& out, unsigned int length);
/// The parts with `separator` between them.
KELVOBASE_API std::string join(const std::vector<std::string>& parts, const std::string& separator);
/// Breaks a text into lines of at most `width` bytes: at the last line end in reach, else at the last blank in reach,
/// else hard. The break character is dropped: "abc def", 3 => "abc", "def". At least one line.
/// Required: earlier line ends in reach stay inside the line, as do all of them once the rest fits:
/// "a\nb", 9 => "a\nb". At the beginning of a line a blank is a break, and gives an empty line, but a line end is none.
/// REQUIRES: `width` is not 0; otherwise the call need not return.
KELVOBASE_API std::vector<std::string> wordwrap(const std::string& s, unsigned int width);
/// @}

/// \name Case
/// @{
KELVOBASE_API std::string toUpper(const std::string& s);
KELVOBASE_API std::string toLower(const std::string& s);
/// True if no byte would be changed by `toUpper`; so for digits, punctuation and the empty text.
KELVOBASE_API bool isUpper(const std::string& s);
/// @}

/// \name Searching
/// @{

/// Whether `text` matches `pattern`, in which `?` stands for one byte and `*` for any number of bytes.
///
/// The pattern is taken in segments, each a row of wildcards and the text up to the next one.
/// Required: one pass forward without backtracking, so less than a glob matcher: a `*` takes the leftmost hit
/// of what follows it and never another. "abcabc" does not match "*c".
/// Required: throws `std::out_of_range("basic_string::substr")` when a `?` row with text behind it meets a rest
/// that is shorter than the row: match("ab", "a??b").
/// Required: in a row that begins with `*` every further wildcard byte is a literal: "a*x" matches "**x", "ax"
/// does not.
/// Required: a `*` behind `?` is a syntax error: a line "match(): Syntax error for pattern 'SEGMENT'" goes to
/// the trace (`Trace::fail`, all areas) and the segment matches without taking any text: "x" matches "x?*", "xy" does
/// not.
/// Required: an empty text or an empty pattern never matches, not even "*" or each other.
KELVOBASE_API bool match(const std::string& text, const std::string& pattern);
/// Position at or behind `pos` of the next byte of `separators` that is not doubled. Not found:
/// `static_cast<unsigned int>(std::string::npos)`.
///
/// Doubled means: another byte of the set stands as many bytes further as the set has, so one byte further for the
/// usual set of one. Such a pair is stepped over: ("a,,b,c", ",", 0) => 4.
/// Required: a failed search goes on at position `separators.length() - 1`. With a separator byte there, the
/// result is the next single one behind it, which may lie in front of `pos`: (",a,b", ",", 3) => 2. If there is none,
/// or the set is empty, the call does not return. Callers screen for it.
KELVOBASE_API unsigned int findsep(const std::string& s, const std::string& separators, unsigned int pos);
/// The text between the markers. Without `begin` in `s` the result is empty and `s` stays; without `end`, or with
/// an empty one, the result reaches to the end of `s`, which becomes empty.
/// Required: otherwise `s` becomes what follows the result, the end marker included: "x<y>z" gives "y", and `s`
/// is ">z" then.
KELVOBASE_API std::string betweenStr(std::string& s, const std::string& begin, const std::string& end);
/// @}

/// \name Small text functions
/// @{

/// A 32-bit hash of the bytes, which count as signed; "abc" => 26499. The same on every platform.
/// Required: not the usual hash of its shape, "abcdefghij" => 180141930.
KELVOBASE_API unsigned int stringhash(const std::string& s);
/// Required: "1st", "2nd", "3rd", and "th" behind every other number: "21th".
KELVOBASE_API std::string toOrdinalNumberString(unsigned int n);
/// `s` cut, or filled up with blanks, to exactly `length` bytes.
KELVOBASE_API std::string trimLength(const std::string& s, unsigned int length);
/// Reads one line with `std::getline` and removes its line-end bytes: a last byte that is 0, `\n` or `\r`.
/// Required: then the last but one byte as it was read, if that is `\n` or `\r`, whether or not the last one
/// went: "a\r" => "a", but "a\rb" => "ab", too.
/// The state of the stream tells whether there was a line. A stream that was at its end before leaves the bytes that
/// `line` held, and they are treated the same way.
KELVOBASE_API void getshortline(std::istream& in, std::string& line);
/// `value` rounded to `digits` decimal places, halves away from zero: round(2.5, 0) => 3, round(-0.6, 0) => -1.
///
/// Required: the digits are taken off one by one from the highest, which defines the result; for fractions
/// without exact binary form it may differ from other rounding in the last place. From 1e308 on (a few hundred numbers
/// below it included) the result is NaN.
/// Required: a result below one unit of the last place is 0.0 without sign. So are the results for infinities
/// and NaN. With 324 digits or more, where the unit itself is 0, negative infinity gives -0.0.
KELVOBASE_API double round(double value, unsigned int digits);
/// @}

} // namespace KelvoBase
