#pragma once

/// \file
/// Configuration: sections of keys with values, read from files that users write by hand.
///
///     [limits]
///     steps = 1000
///     units = mm, cm, "m, by hand"    # a list of three texts
///     verbose
///
///     const ConfigFile& config = *getConfigFile();                      // in a tool
///     int steps = config.getEntry("limits", "steps")->toInt();          // 1000
///     bool verbose = config.entryIsExistent("limits", "verbose");       // true

#include <kelvobase/Export.h>
#include <kelvobase/ResourceLocation.h>

#include <iosfwd>
#include <map>
#include <string>

namespace KelvoBase
{

class Any;
class TraceAreaMgr;

/// A table of sections, each a table from key to value; both sorted by byte value.
///
/// The file format, with the default idents, which all can be changed before a file is read or written:
///
///     line                        what it does
///     (empty), # at the very      skipped
///       beginning
///     [name]                      begins or continues the section `name`, as it stands: blanks belong to it; what
///                                 follows the "]" is not looked at. `[]` is the section "". With other idents: no
///                                 begin ident, no headings; a name whose end ident comes too early reaches to the end
///                                 of the line
///     key = text                  an entry; the key and the text are trimmed. Cut at the first "="
///     key = one, "t,w"o           a list: pieces parted by ",", each trimmed. A double quote hides list separators up
///                                 to the next one, and vanishes
///     key =                       the empty text
///     key                         a flag: `ScalarAny<bool>` with true
///     = text, [name               refused, see `parse`
///
/// Entries in front of the first heading belong to the section "". An entry that repeats a key takes its place. Every
/// value is text until somebody asks for something else: one piece is a `ScalarAny<std::string>`, two or more are a
/// `VectorAny<ScalarAny<std::string>>`, and `getEntry(section, key)->toInt()` fails, if it does, when it is called.
///
///   - Required (Q-501): a comment begins at the first "#" of a line wherever it stands, also in quotes, and nothing
///     protects one: `a="1 # 2"` stores 1.
///   - Required (Q-502): a line of blanks, or an indented comment, stores the empty key with true.
///   - Required (Q-503): the separator is a set of bytes, and the text starts its whole length behind the one that was
///     hit. With ":=" the line `a:bcd` gives "cd", and `a:` throws `std::out_of_range("basic_string::substr")`.
///   - Required (Q-530): the end of a heading is the first one of the line, also in front of the name, which then
///     reaches to the line's end: with "|" around names `|s|` begins the section "s|".
///   - Required (Q-531): the name of a section is not trimmed, unlike keys and texts: `[ s ]` begins " s ".
///   - Required (Q-532): texts are trimmed when the quotes are gone: `a = " x "` stores "x".
///
/// The object owns its values and deletes them when they are replaced, by `clear`, and at its end. What `getEntry`
/// hands out is valid until then. It has no lock: one object is for one thread.
class KELVOBASE_API ConfigFile
{
public:
    /// No sections and no file name, and the default idents.
    ConfigFile();
    /// Reads exactly this file and searches nothing; throws what `parseFile` throws, and what a location throws for a
    /// text that is none.
    ConfigFile(const ResourceLocation& location);
    ConfigFile(const std::string& name);
    ConfigFile(const char* name);
    /// Copies content, idents, comment sign and the mark of modification. Required (Q-504): the file name stays empty,
    /// so that a copy never writes over the file of its original.
    ConfigFile(const ConfigFile& other);
    /// `completeCopy`, unless `other` is this object. The file name stays.
    ConfigFile& operator=(const ConfigFile& other);
    /// Deletes the values. Nothing is written: changes that were not saved are lost.
    ~ConfigFile();

    /// Sets the idents "[", "]", "=", ",", the comment sign '#', and no modification. Content and file name stay.
    void init();

    /// \name What a file is made of
    /// The texts around a section's name, between key and value, and between the elements of a list. Setting one
    /// changes nothing that was read.
    /// @{
    const std::string& getSectionBeginIdent() const;
    void setSectionBeginIdent(const std::string& ident);
    const std::string& getSectionEndIdent() const;
    void setSectionEndIdent(const std::string& ident);
    const std::string& getSeperator() const;
    void setSeperator(const std::string& seperator);
    const std::string& getListSeperator() const;
    void setListSeperator(const std::string& seperator);
    char getCommentSign() const;
    void setCommentSign(char sign);
    /// @}

    /// Whether there is neither a section nor a file name.
    bool isEmpty() const;
    /// Removes all sections and marks the object as not modified. File name and idents stay.
    void clear();

    /// \name Sections
    /// @{
    std::map<std::string, std::map<std::string, Any*>>::iterator beginSection();
    std::map<std::string, std::map<std::string, Any*>>::iterator endSection();
    std::map<std::string, std::map<std::string, Any*>>::const_iterator beginSection() const;
    std::map<std::string, std::map<std::string, Any*>>::const_iterator endSection() const;
    /// The entries of a section, or null. Never throws.
    std::map<std::string, Any*>* findSection(const std::string& name);
    const std::map<std::string, Any*>* findSection(const std::string& name) const;
    bool sectionIsExistent(const std::string& name) const;
    /// Adds an empty section if there is none of that name. Required (Q-505): that is no modification; a section
    /// without entries alone is not worth writing a file for.
    void createSection(const std::string& name);
    /// Throws `UnknownException("Unknown section 'NAME' in config file 'FILE'")` if `section` is null; FILE is the text
    /// of the file name, which may be empty. Looks at nothing else.
    void checkSection(const std::map<std::string, Any*>* section, const std::string& name);
    void checkSection(const std::map<std::string, Any*>* section, const std::string& name) const;
    /// @}

    /// \name Entries
    /// All but `entryIsExistent` and `setEntry` throw as `checkSection` does for a section that does not exist.
    /// @{
    std::map<std::string, Any*>::iterator beginEntry(const std::string& section);
    std::map<std::string, Any*>::iterator endEntry(const std::string& section);
    std::map<std::string, Any*>::const_iterator beginEntry(const std::string& section) const;
    std::map<std::string, Any*>::const_iterator endEntry(const std::string& section) const;
    /// The value; the object keeps it. Throws `UnknownException("Unknown key 'KEY' in section 'SECTION' in config file
    /// 'FILE'")`.
    Any* getEntry(const std::string& section, const std::string& key) const;
    /// False for a missing section, too.
    bool entryIsExistent(const std::string& section, const std::string& key) const;
    /// Whether the value has a size other than 0. Required (Q-506): that is true for every scalar, and false only for
    /// a list without elements. Whoever has to tell a list from a scalar asks for the type.
    bool isListEntry(const std::string& section, const std::string& key) const;
    /// Stores `value`, which the object owns from then on; a missing section is made. If the call throws (what the
    /// `toString` of the old or the new value throws), nothing is stored and `value` stays with the caller. `value` is
    /// not null and not the one that is stored there already.
    ///
    /// Required (Q-507): the object counts as modified when the key is new or the texts of the old and the new value,
    /// with "," between elements, differ. The type does not count: true in the place of "1" is no modification.
    void setEntry(const std::string& section, const std::string& key, Any* value);
    /// Stores a `ScalarAny<std::string>`.
    void setEntry(const std::string& section, const std::string& key, const std::string& value);
    /// @}

    /// \name Copying and comparing
    /// What was done before a fault stays done.
    /// @{
    /// Replaces the section `target` by a copy of the section `source` of `from`. Required (Q-521): each copied entry
    /// is a modification, also if the target had the same one.
    /// Required (Q-508): if there is no such section, the fault of `checkSection` names the file of this object, not of
    /// `from`. Never call it with this object and one name: that empties the section.
    void copySection(const std::string& source, const ConfigFile& from, const std::string& target);
    /// Does nothing if the names are equal, whether there is such a section or not.
    void copySection(const std::string& source, const std::string& target);
    /// Replaces all sections by copies. Idents, comment sign and file name stay.
    void copy(const ConfigFile& from);
    /// `copy`, and then the idents, the comment sign and the mark of modification of `from`. Required (Q-509): with
    /// this object as `from` it leaves the object empty, as `copy` does; the assignment guards against that.
    void completeCopy(const ConfigFile& from);
    /// Whether both have the same sections and keys with values that are equal as `Any::equals` says, so of the same
    /// types: the text "1" does not equal true. Nothing else is compared.
    bool equals(const ConfigFile& other) const;
    /// @}

    /// \name Reading
    /// @{
    /// Reads the file named by the file name and merges it into the object: new keys are added, keys that exist are
    /// replaced, nothing is removed. At its end the object is not modified. Throws
    ///   - `FileNotReadableException` with the file name and the system's text if the file cannot be opened or is a
    ///     directory; the object is as it was,
    ///   - `OperationFailedException("Parsing config file \"FILE\"")` for a heading without its end and for a line that
    ///     starts with the separator. The line and its number are in the trace (`Trace::fail`, all areas). What stood
    ///     in front of the line has been merged,
    ///   - `std::out_of_range`, see Q-503, with the same effect.
    /// What can no longer be read behind a beginning that could counts as the end of the file.
    void parse();
    /// Makes `location` the file name, also if reading fails then, and calls `parse`. Throws `NotAFileException` for
    /// a location that is not local.
    void parseFile(const ResourceLocation& location);
    /// Reads the files of this name below all directories of an installation and then the user's own, and merges them
    /// in this order, so that a later one overrides single entries of the earlier ones:
    ///
    ///     D/etc/NAME for each D of System::getSystemDirs()  =>  System::getUserDir(true)/etc/NAME
    ///
    /// The file name is the user's file then, whether it exists or not, so that `sync` writes there. `name` is a bare
    /// file name; nothing is searched elsewhere, in particular not in the working directory itself. Throws
    ///   - `FileNotReadableException(name, "")`, that is `Cannot read from file "NAME"`, if no file was found,
    ///   - what `parse` throws for a syntax error. Required (Q-520): in any of the files, and later ones are not read,
    ///   - what `System::getSystemDirs` throws, and `System::getUserDir` unless it is an `IOException`,
    ///   - what a location throws for a `name` that is none.
    ///
    ///   - Required (Q-510): a file of the installation that cannot be opened is skipped without a word.
    ///   - Required (Q-511): an `IOException` on the way to the user's file (no home, a directory that cannot be made,
    ///   an unreadable file) leaves its text on standard error, if `haveCerr` is set, and the search goes on. The file
    ///   name is then the last file that was tried, if any, and a `sync` writes there.
    ///   - Required (Q-512): the directory `etc` of the user is made by every search.
    ///   - Required (Q-513): an empty user's file is not read and does not count as found, unlike an empty file of the
    ///     installation.
    void parseConfigFiles(std::string name);
    /// The next line worth looking at, with its comment cut: not empty, and without the comment sign as its first byte.
    /// Returns the number of lines read. At the end of the stream `line` may be empty.
    int getNextLine(std::istream& in, std::string& line);
    /// Writes "ConfigFile::parse(): error in line N", the line in single quotes, and "while parsing WHAT" to the trace
    /// (`Trace::fail`, all areas) and throws `OperationFailedException("Parsing config file \"FILE\"")`.
    [[noreturn]] void handleParseError(const std::string& what, const std::string& line, int lineNumber);
    /// @}

    /// \name Writing
    /// A file holds all sections with all entries, sorted; comments, order and spacing of what was read are lost.
    /// Required (Q-514): nothing is quoted, so values with list separator, comment sign, double quote or outer blanks
    /// come back changed, and a file with the empty key cannot be read again. Booleans and numbers come back as text.
    ///
    /// The file is truncated and written in place; that it could not be written to its end goes unnoticed. Processes
    /// that write the same file at the same time: each writes all it has, and the file may hold a mixture where their
    /// writing overlaps, else the content of the one that came last. A reader meanwhile may see an incomplete file.
    /// @{
    /// Sets the file name. Nothing is read or written.
    void setFileName(const std::string& name);
    /// Writes to a file, replacing it. Throws `OperationFailedException("ConfigFile: Unable to open file 'FILE'")`, and
    /// what the `toString` of a value throws; the file is as it was in both cases, because all texts are made before it
    /// is opened.
    void writeToFile(const ResourceLocation& location) const;
    void saveToDisk(const std::string& name) const;
    /// Writes to the file name if the object is modified. Required (Q-515): it stays modified, so that a second call
    /// writes again.
    ///
    /// Behind `parseConfigFiles` that writes everything that was merged into the user's file: from then on the user has
    /// a copy of every value of the installation, and later changes there have no effect for this user.
    void sync() const;
    /// @}

private:
    friend class TraceAreaMgr; // searches at each start, mostly in vain: an exception would be a good part of its time

    bool mergeConfigFiles(const std::string& name);

    std::map<std::string, std::map<std::string, Any*>> mSections; // values owned
    ResourceLocation mFileName;                                   // what `sync` writes
    std::string mSectionBeginIdent;
    std::string mSectionEndIdent;
    std::string mSeperator;
    std::string mListSeperator;
    char mCommentSign;
    bool mModified;
};

} // namespace KelvoBase
