#pragma once

/// \file
/// Citations of the papers that a tool's methods rest on.
///
///     const Literature paper("Fast Sums", {{"Berg", "Anna", "", ""}, {"Vale", "Ole", "Per", ""}}, "J. Num. Meth.", 7,
///                            2004, "", 1, 9);
///     paper.print();         // A. Berg, O. P. Vale, _Fast Sums_, _J. Num. Meth._ *2004*, _7_, 1-9.
///
/// For one thread at a time.

#include <kelvobase/Export.h>

#include <map>
#include <string>
#include <vector>

namespace KelvoBase
{

class TextRep;

/// One article of a journal: a record that can write itself.
///
/// Both renderings begin with the authors: initials, surname and ", " each. An initial is the given name's first
/// character, which is its first UTF-8 sequence (a valid one), else its first byte, and ". ".
///   - Required: a later given name counts only if all before it exist; "Anna", "", "Maria" gives "A. ".
///   - Required: ", " follows every author, also the last one, and there is no "and".
///   - Required: the title stands in double apostrophes in `toString` and between underscores in `print`, where
///     an underscore else means emphasis and an asterisk bold; only `print` ends its line.
///   - Required: a last page without a first one is not shown.
///   - Required: the note is shown by neither.
class KELVOBASE_API Literature
{
public:
    struct Author
    {
        std::string surname;
        std::string firstName;  ///< empty: not known
        std::string secondName; ///< empty: none
        std::string thirdName;  ///< empty: none
    };

    /// The title may be empty; volume and pages may be 0, which means none.
    Literature(std::string title, const std::vector<Author>& authors, const std::string& journal, unsigned int volume,
               unsigned int year, const std::string& note, unsigned int firstPage, unsigned int lastPage);

    /// Appends the citation: texts as text tokens, which the formatter escapes, and numbers as number tokens. Through
    /// an HTML formatter, with the blanks that closing tags bring:
    ///
    ///     A. Berg, O. P. Vale, ''Fast Sums'', <EM>J. Num. Meth.</EM>  <B>2004</B> , <EM>7</EM> , 1-9.
    void toString(TextRep& rep) const;
    /// The citation as plain text, a line end behind it. Numbers are not grouped, whatever the global locale.
    std::string print() const;

    std::string title; ///< empty: none
    std::vector<Author> authors;
    std::string journal;
    unsigned int volume; ///< 0: none
    unsigned int year;
    std::string note;
    unsigned int firstPage; ///< 0: none
    unsigned int lastPage;  ///< 0: none
};

/// The table of all citations of a process, to be filled from the file "Literature.ini". A singleton, made at the first
/// call of `instance` and destroyed at process exit.
///
/// Required: the table is always empty. The file is searched as configuration is (`ConfigFile`) and parsed, and
/// its content is dropped; how a citation would stand in it is not settled. Tools make their `Literature` in code.
/// Required: a file that is missing or broken does not stop the process. It leaves, at `Trace::fail` for all
/// areas, the lines
///
///     LiteratureMgr(): Initialization failed!
///     LiteratureMgr(): This will likely cause problems.
///
/// and a third one of a tab and the text of the exception.
class KELVOBASE_API LiteratureMgr
{
public:
    LiteratureMgr(const LiteratureMgr&) = delete;
    LiteratureMgr& operator=(const LiteratureMgr&) = delete;

    static LiteratureMgr& instance();

    /// The citation of that key, or null. Library keeps it.
    Literature* search(const std::string& key) const;
    /// Required: throws `NotImplementedException("LiteratureMgr::getLiterature()")`, whatever the key, also if
    /// the file was read.
    Literature* getLiterature(const std::string& key) const;

private:
    LiteratureMgr();
    ~LiteratureMgr();

    std::map<std::string, Literature*> mLiterature;
};

} // namespace KelvoBase
