#pragma once

/// \file
/// The place of a file, a directory or a remote resource.

#include <kelvobase/Export.h>

#include <string>
#include <vector>

namespace KelvoBase
{

/// A location, parsed once from its text: a path, a path on a network share, or a URL.
///
/// A location is *local* when its protocol is empty, "file" or "smb", to the letter. Only local locations reach the
/// file system. Backslash and slash are both separators of a local location; its texts come with backslashes, on
/// every platform, and the drive (`C:`) is simply the first component.
///
///     text                        protocol  host    components       absolute  str()
///     C:\dir\file.txt                               C: dir file.txt  yes       file://localhost/C:\dir\file.txt
///     /dir/file                                     C: dir file      yes       file://localhost/C:\dir\file
///     foo/bar                                       foo bar          no        foo\bar
///     \\server\share\dir          smb       server  share dir        yes       smb://server/share\dir
///     ftp://user%pw@host:8080/a   ftp       host    a                yes       ftp://user%pw@host:8080/a
///
/// A first colon in second place means a drive, anywhere else it ends the protocol. Required: so it is
/// whatever stands around the colon:
///
///     a:b/c         => no protocol, absolute, components "a:b", "c"
///     /C:/x         => protocol "/C", absolute, component "x"
///     //host:80/x   => protocol "//host", relative, components "80", "x"
///
/// The authority is `//[user[%password]@]host[:port]`, and a separator must follow it. Required: it ends at
/// the first slash, and at the first backslash only if there is no slash: `\\server\share/dir` has the host
/// `server\share`. In a path, double quotes protect a slash and are dropped; in a path that is not local a backslash
/// is an escape character (`\n`, `\\`, `\/`, `\"`).
///
/// An absolute location is kept normalised: no empty component, no ".", and ".." only where nothing stands before it.
/// Required: there is no floor at the drive, and ".." takes back a ".." as well:
///
///     C:/dir/../x => C:\x        C:/.. => nothing        C:/../.. => ..        C:/../../.. => nothing
///
/// A relative location keeps its components as they were written.
///
/// A plain value: copying copies. References and pointers that `getPath`, `getFilePath`, `getPathWithoutFilename` and
/// `c_str` hand out point into the object and are valid until the next such call on it (`str`, `print` and the
/// comparisons count as such). One object is for one thread.
///
/// On Linux the drive of `getRootDir()` stands for the root directory; network paths and other drives exist nowhere:
/// every test gives false for them and every operation fails with the system's text for a missing file.
class KELVOBASE_API ResourceLocation
{
public:
    /// An empty location.
    ResourceLocation();
    /// Parses `text`; an empty text gives an empty location. Throws
    ///   - `InvalidFileNameException` for a path with a broken escape: `File name is invalid: "PATH": REASON`,
    ///   - `OperationFailedException("getcwd()")` for an absolute location while there is no working directory,
    ///   - `std::out_of_range("basic_string::substr")` for an authority without a separator behind it. Required
    ///     `ftp://host` and `//server` are no locations, though `ftp://host/` is one, with the former for its
    ///     text.
    ResourceLocation(const char* text);
    ResourceLocation(const std::string& text);

    /// Adds the components of a path behind the present ones. Appending to an absolute location normalises it.
    /// Required: a leading separator, or a drive, makes the whole location absolute, the earlier components in
    /// front: "a" and "/b" give `a\C:\b`. Throws as the constructor does for a path; the components added before a
    /// fault stay, and so does the absolute flag.
    ResourceLocation& append(const std::string& path);
    /// Appends the path text of `other`; its protocol and host are not used.
    ResourceLocation& operator<<(const ResourceLocation& other);

    std::string getProtocol() const;
    std::string getHostName() const;
    std::string getPort() const;
    std::string getUserName() const;
    std::string getPassword() const;
    bool isAbsolute() const;
    bool isLocalFile() const;
    /// Whether there is no path component, whatever protocol and host say.
    bool empty() const;
    void clear();

    /// The path with `separator` between the components; a location that is not local has "/" always. `withHost`
    /// puts two separators, the host and a separator in front of an "smb" path. An absolute path that is not local
    /// begins with a separator. Valid until the next such call.
    const std::string& getPath(char separator, bool withHost) const;
    /// `getPath(separator, true)`. Throws `NotAFileException` for a location that is not local.
    const std::string& getFilePath(char separator) const;
    /// `getFilePath('\\').c_str()`.
    const char* c_str() const;
    /// The location string; `file://localhost/C:\dir\x` reads back to the same text.
    ///   - Required: a relative location gives its path alone; protocol, host and user are not in it.
    ///   - Required: an absolute one gives protocol ("file" if empty), "://", user, host ("localhost" if
    ///     empty), port, and then for a local one "/" and the path with backslashes.
    std::string str() const;
    /// A listing of all fields, a line each, for diagnosis.
    std::string print() const;

    /// \name The last component ("" when there is none)
    ///
    ///     last component   basename   suffix   getPathSuffix
    ///     a.tar.gz         a.tar      gz       gz
    ///     README           README     ""       README
    ///     .profile         ""         profile  profile
    ///     name.            name       ""       ""
    ///
    /// Required: `suffix` and `getPathSuffix` differ where there is no dot.
    /// @{
    std::string lastComponent() const;
    std::string basenameWithSuffix() const;
    std::string basename() const;
    std::string suffix() const;
    std::string getPathSuffix() const;
    /// Replaces the last component by its `basename`.
    ResourceLocation& removeSuffix();
    /// Removes the last component, whatever it is.
    ResourceLocation& removeFileName();
    /// @}

    /// The backslash.
    static char getFSSeparator();
    /// Every backslash replaced by a slash.
    static std::string toCanonizedForm(const std::string& path);
    /// Every slash replaced by a backslash.
    static std::string fromCanonizedForm(const std::string& path);
    /// The current drive as found at the first call: "C:". Always "C:" on Linux.
    static std::string getRootDir();

    /// Compares protocol, host, user, port and path. Required: neither the password nor whether it is absolute
    /// counts; but `C:\x` and `file://localhost/C:\x` are not equal.
    bool operator==(const ResourceLocation& other) const;
    /// Compares the paths, `getPath('\\', true)`, byte-wise. Required: nothing else counts, so that of two
    /// locations on different hosts none may be less, though they are not equal.
    bool operator<(const ResourceLocation& other) const;

    /// Puts the working directory in front of a relative location, and normalises. An empty location stays as it is.
    /// Throws `OperationFailedException("getcwd()")` when there is no working directory, or, for a relative location,
    /// when no location can hold it. Required: the former for an absolute location, too.
    ResourceLocation& toAbsolute();

    /// \name The file system
    /// All throw `NotAFileException` for a location that is not local and has components, `getFilePath` being what they
    /// reach the file system with. A link stands for what it points to, and a dangling one for nothing.
    ///
    /// `isWritable` (when it refuses), `remove`, `copy` and `move` write to the trace for `TraceArea::KelvoBase()`,
    /// which an `Application` or `TraceAreaMgr::startup` has to have made known.
    /// @{

    /// Whether the path exists and is not a directory.
    bool isFile() const;
    bool isDir() const;
    bool isExistent() const;
    /// Whether a file may be written. Required: for a directory, as for a missing name, it is whether its
    /// parent may be, or "." when there is none. False for an existing file when `rejectFile` is set. A refusal by the
    /// system leaves a line with the reason in the trace.
    bool isWritable(bool rejectFile) const;
    /// Removes a file, a link, or an empty directory; one that does not exist is no error.
    /// Throws `IOException("Could not remove '" + str() + "': " + system text)`.
    void remove() const;
    /// Creates the directory and its missing parents; nothing happens if the path exists, also as a file.
    /// Required: a name that turns out to be taken counts as made, whatever it is (a dangling link, a file).
    /// Throws `IOFailedException` ("creating directory"); levels made before stay.
    void createDir() const;
    /// Copies a file, over an existing one too, into `destination` if that is a directory. Required: a file of
    /// size 0 cannot be copied; the call throws once it has created the target. Throws
    ///   - `FileNotFoundException(path)` if this is not a file,
    ///   - `IOFailedException` ("Copying") with "could not open source file", "could not open destination file" or
    ///     "copy operation failed". A partly written target stays. Copying a file onto itself fails with the last
    ///     text and leaves the file as it is. Required: it names `destination` as it was passed, where `move`
    ///     names the place in that directory.
    void copy(const ResourceLocation& destination) const;
    /// Renames a file, into `destination` if that is a directory. Never overwrites.
    /// Throws `FileNotFoundException(path)` if this is not a file, `IOFailedException` ("moving file").
    void move(ResourceLocation destination) const;
    /// Size of the file in bytes. Throws
    ///   - `OperationFailedException("ResourceLocation: Could not query a path that is empty.")`,
    ///   - `FileNotReadableException` with "Invalid file handle! " and the system's text. Required: it names a
    ///     location made anew from `getFilePath('\\')`, without the protocol and host of this one.
    unsigned long long size() const;
    /// The entries of a directory in the system's order; empty if this is not a directory. `makeAbsolute` makes the
    /// entries of a relative directory absolute. Required: no name that begins with a dot is among them. Names
    /// that no location can hold (with a backslash or a double quote, or a colon in second place) are left out, with a
    /// line "What is this: "PATH" ?" in the trace, PATH being the system's own.
    /// Throws `IOException` with the system's text alone when the directory cannot be read.
    std::vector<ResourceLocation> getDirList(bool makeAbsolute) const;
    /// The path up to the last `separator`, if this is a file; the whole path otherwise. Required: the path is
    /// built with backslashes, so another separator finds nothing in a local location. Valid until the next such call.
    ///
    ///     '\\', an existing file C:\dir\x => C:\dir        '/' => C:\dir\x
    const std::string& getPathWithoutFilename(char separator) const;
    /// @}

private:
    friend class DirectoryReader; // lists a directory together with what it says about its entries

    void parseRLoc(const std::string& text);
    void parsePath(const std::string& path);
    void parseHost(const std::string& authority);
    void parseUser(const std::string& user);

    std::string mProtocol;
    std::string mHostName;
    std::string mPort;
    std::string mUserName;
    std::string mPassword;
    std::vector<std::string> mComponents;
    bool mAbsolute = false;
    mutable std::string mPathCache; // never part of the value
};

/// All files below a directory, those of a level in front of those of the levels below it, hidden ones apart. Links are
/// followed without protection against a cycle. An entry that is nothing, such as a dangling link, leaves the line
/// "What is this: "LOCATION" ?" in the trace.
/// Throws `IOException("ResourceLocation \"" + directory.str() + "\" does not point to a directory.")`.
KELVOBASE_API std::vector<ResourceLocation> getFilesRecursively(const ResourceLocation& directory);

} // namespace KelvoBase
