#pragma once

/// \file
/// Files that a user wants to have.

#include <string>

namespace seriesstat
{

/// Whether two paths lead to the same file, links followed; of files that do not exist, whether they would.
bool isSameFile(const std::string& a, const std::string& b);

/// Throws a `RuntimeException` if no file can come to stand at `path`: there is no directory around it, or what stands
/// there is no ordinary file.
void checkPlace(const std::string& path);

/// Throws an `IOException`: `Cannot write to file "x.html": No space left on device`.
[[noreturn]] void throwUnwritable(const std::string& path, const std::string& reason);

/// A file that appears as a whole or not at all.
///
/// What is written goes to a file beside it, which takes its place in the end: until then an earlier file of that name
/// stays as it is, and a full disk spoils nothing. A link goes on to point where it points, and permissions stay.
///
///     OutputFile file("report.html");
///     file.write(text);
///     file.finish();
class OutputFile
{
public:
    /// Throws what `checkPlace` throws: nothing but an ordinary file is ever replaced.
    explicit OutputFile(const std::string& path);
    /// Removes what was not finished.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// As the user named it, for messages.
    const std::string& name() const { return mName; }
    /// Where to write, for those who write by themselves.
    const std::string& place() const { return mPlace; }
    /// Writes the whole text, or throws as `throwUnwritable` does.
    void write(const std::string& text) const;
    /// Puts the file into its place, or throws as `throwUnwritable` does.
    void finish();

private:
    std::string mName;
    std::string mPath;  ///< behind all links
    std::string mPlace; ///< beside it; empty once the file is finished
};

} // namespace seriesstat
