#pragma once

/// \file
/// The one place where the library meets the operating system.

#include <kelvobase/Export.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/Time.h>

#include <cstdint>
#include <map>
#include <string>
#include <typeinfo>
#include <vector>

namespace KelvoBase
{

/// Signal handler: stores `signal` for `System::signalReceived` and does nothing else. It does not install itself
/// again; whether it stays in place behind a signal is up to the system: on Linux it does, on Windows not. C linkage.
extern "C" KELVOBASE_API void handleSignal(int signal);

/// Identity of machine and user, environment, directories of an installation and of the user, error texts, and a latch
/// for signals.
///
/// A singleton, made at the first call of `instance()` and destroyed at process exit. References to its strings stay
/// valid until then. The first call of `instance()` must come from a single thread; nothing here is locked.
///
///     System& system = System::instance();
///     system.enableSignalHandling(true, System::sigterm);
///     while (system.signalReceived() == 0) {
///         workOnce();
///     }
///
/// The library itself neither enables signals nor looks at them.
class KELVOBASE_API System
{
public:
    /// \name Masks for `enableSignalHandling`
    /// They are no signal numbers: `sighup` and `sigalrm` enable nothing.
    /// @{
    static const int sigterm = 15;
    static const int sigint = 2;
    static const int sighup = 0;
    static const int sigalrm = 0;
    /// @}
    /// What `lastError` gives when there was none.
    static const int ERRORCODE_NOERROR = 0;
    /// Stands for the output of a command that nobody wants to have.
    static std::string defaultCmdOutput;

    System(const System&) = delete;
    System& operator=(const System&) = delete;

    /// The singleton. Required: a network that cannot be started ends the process with status 1, behind the
    /// line "Could not initialize Winsock 2 DLL. Network related functions will fail." in the trace (`Trace::crit`).
    /// Linux has nothing to start.
    static System& instance();

    /// Width in columns of texts for the user: 80.
    static unsigned int linelength();
    /// What stands between the entries of a path list: ';'.
    static char pathSeparator();

    /// The current time, cut to whole milliseconds.
    Time::Mtime_t now() const;

    /// The thread's last system error (`GetLastError`, `errno`). Reading clears it: a second call gives
    /// `ERRORCODE_NOERROR`. Fetch it before any other step that may touch it, a message included.
    static unsigned long lastError();
    /// The system's text for an error code, without line ends (on Windows a blank ends it). On Linux:
    ///
    ///     2                    => "No such file or directory"
    ///     0                    => "Success"
    ///     4711, any beyond int => "No system error message"
    static std::string errorMsg(unsigned long code);
    /// `errorMsg(lastError())`; so it clears the error too.
    static std::string lastErrorMessage();

    /// The readable name of a type. Never throws; a name that cannot be read gives a text in parentheses.
    static std::string demangle(const std::type_info& info);

    /// The value of an environment variable; `defaultValue` only if it does not exist, so an empty one gives "".
    static std::string getEnv(const std::string& name, const std::string& defaultValue);
    /// Sets an environment variable for this process and its children. The text is kept for ever. It ends at the first
    /// zero byte of `value`; a zero byte or "=" in `name` is up to the system. Windows: an empty value removes it.
    static void setEnv(const std::string& name, const std::string& value);

    /// The working directory in the text form of locations: `C:\lab\dir`, also on Linux.
    /// Throws `OperationFailedException("getcwd()")` if there is none (a directory that was removed), and
    /// `OperationFailedException("calloc()")` if there is no memory for it.
    std::string getCurrentWorkingDir() const;
    /// Where the running program lies; an empty location if that cannot be found out or no location can hold it.
    /// Throws what a location made from an absolute path throws while there is no working directory.
    ResourceLocation getExeImagePath() const;

    /// `USERNAME`, else the login name, else "anonymous"; an empty one counts as none. Found once, never refreshed.
    const std::string& getUserName() const;
    /// `COMPUTERNAME`, else the host's name, else "localhost". Found once, never refreshed.
    const std::string& getHostName() const;
    /// Looks the IPv4 address of `getHostName()` up anew. Required: with several addresses the last one counts.
    /// A failed look-up leaves 0.
    void fetchIP();
    /// The address in network byte order, looked up if it is not known; 0 if it cannot be found.
    unsigned long getIP() const;
    /// The address as "127.0.0.1"; "0.0.0.0" if it cannot be found.
    std::string getIPString() const;
    /// One line that names the operating system: "Linux 6.1.0-28-amd64 Build #1 SMP PREEMPT_DYNAMIC ...".
    /// Required (Q-805): if the system does not tell, the process ends with status 1, behind the line "Cannot retrieve
    /// number of Windows Version." in the trace (`Trace::crit`), on every platform.
    const std::string& getOS() const;

    /// \name Directories of the installation
    /// An installation has its programs in `bin`, its configuration in `etc` and its data in `share`, all below one
    /// base directory. The list of base directories is found once:
    ///
    ///     1. the environment variable DRAVO2_BASEDIR
    ///     2. the environment variable DRAVO2_INSTDIR
    ///     3. the parent of the program's directory, if the name of that begins with "bin"
    ///     4. the working directory
    ///
    /// as far as these are directories (when they are added) and differ as locations do: `C:\x\` and `C:\x` are one,
    /// the relative `x/` and `x`, or `C:\x` and `file:/x`, are two. A program or a working directory that no location
    /// can hold is left out. The constness hides a cache.
    /// @{
    /// Fills the list if it is empty. Required: a list that somebody added to before is not filled any more.
    /// Required: in step 3 "binaries" and "bin64" count as well, but `getDllDir` is always "bin". Throws
    ///   - `OperationFailedException` if none of the four is usable; the text has two lines with a line end each,
    ///     Required the first one with a blank in front of it:
    ///
    ///         System: No valid DRAVO base dir could be found.
    ///         	Hint: Please set the environment variable "DRAVO2_BASEDIR"
    ///
    ///   - what `getCurrentWorkingDir` throws, and any absolute location, while there is no working directory,
    ///   - what a location throws. Required: a variable whose text is none, such as `ftp://host`, is no missing
    ///     directory but ends the search.
    ///
    /// What the steps before a failure have found stays. So the next call tries again only if that left the list empty.
    void setSysDirPaths() const;
    /// Adds a directory behind the others. One that does not exist, is not local or stands there already is dropped
    /// without a word.
    void addToSysDirPaths(const ResourceLocation& directory) const;
    /// The list, filled if it is empty. Valid for the whole run, but adding a directory may move its elements.
    const std::vector<ResourceLocation>& getSystemDirs() const;
    /// The directory of the program if step 3 applied; else empty. Fills the list if it is empty.
    ResourceLocation getBinDir() const;
    /// "bin" below the base directory of the program if step 3 applied, whether that exists or not; else empty. Fills
    /// the list if it is empty.
    ResourceLocation getDllDir() const;
    /// The directory D/share/APPLICATION/NAME of the first D, from the last base directory to the first, where it
    /// exists: the working directory wins. `name` may have several components; an empty `application` leaves its part
    /// out. The default stands for the name of the `Application`. Fills the list if it is empty. Throws
    ///   - `FileNotFoundException(name, candidates)`: `Cannot find file "NAME" in "A"; "B".`, the candidates in the
    ///     order of the list,
    ///   - `ObjectNotExistentException` for the default while there is no `Application`: `System: There is no
    ///     application whose name could stand for "getAppName()".`
    ResourceLocation getAppDir(const std::string& name, std::string application = "getAppName()") const;
    /// The same for a file.
    ResourceLocation getAppFile(const std::string& name, std::string application = "getAppName()") const;
    /// @}

    /// \name Directories of the user
    /// Each is found once and then handed out without any test.
    /// @{
    /// The user's home: the system's folder for documents (Linux: none), else `HOMEDRIVE` and `HOMEPATH` joined, else
    /// `HOME`. Throws
    ///   - `IOException("System: Unable to locate home directory")` if that is no directory or there is none. Required
    ///     only the first time, if there is one; the next call returns what was found,
    ///   - `NotAFileException` if it is not local, with the same reservation,
    ///   - what a location throws for a text that is none, each time.
    ResourceLocation getHomeDir() const;
    /// Where programs keep their data for the user: the system's folder for that, which is made if it is missing
    /// (Linux: `XDG_CONFIG_HOME` if it begins with "/", else ".config" in `HOME`, made for the user alone), else as
    /// `getHomeDir`. Throws as that does, the text being "System: Unable to locate app directory".
    ResourceLocation getAppDataDir() const;
    /// The directory "dravo2" in `getAppDataDir`, made with its parents if `create` is set. Required: a file of
    /// that name counts as made. Throws
    ///   - what `getAppDataDir` throws,
    ///   - `IOFailedException` from `createDir`,
    ///   - `OperationFailedException("System: user Dravo directory \"DIR\" is not available.")` if it is missing and
    ///     `create` is not set; DIR is its `str()`.
    ///
    /// Required: the last two only the first time; once `getAppDataDir` has answered, the next call returns the
    /// directory, missing or not.
    ResourceLocation getUserDir(bool create) const;
    /// A name for a temporary file: `prefix`, eight hexadecimal digits and `suffix`, in the directory `TMP` or, if that
    /// is none, the system's (Linux: /tmp). Required: `suffix` is the first argument. Creates nothing, and
    /// tests neither the name nor the system's directory. Required: the digits come from `rand`, seeded with
    /// the second of the clock by each call, so two calls within a second give one name. Throws `NotAFileException` if
    /// `TMP` is not local.
    ResourceLocation tempFile(const std::string& suffix, const std::string& prefix) const;
    /// @}

    /// Installs `handleSignal`: for SIGINT (2) if bit value 2 is set in `signals`, for SIGTERM (15) if `signals & 15`
    /// is not 0.
    ///   - Required: with `enable` false it does nothing, also behind a call with true: a handler cannot be
    ///     removed. Every call with true installs again.
    ///   - Required: when a handler was in place before (this one, another, or "ignore"), the line
    ///     "System(): Could not install signal handler" goes to the trace (`Trace::fail`, all areas) and the call goes
    ///     on; the new handler is installed all the same.
    ///   - Required: `sigint` (2) and `sigterm` (15) both install both; only 1, 4, 8 and their sums select
    ///     SIGTERM alone.
    void enableSignalHandling(bool enable, int signals);
    /// Forgets the stored signal.
    void signalReset();
    /// The latest signal since the last reset; 0 if none came.
    int signalReceived() const;

    /// \name Libraries loaded at run time
    /// A library is known by its key, the `basename()` of the location that it was loaded from:
    ///
    ///     C:\x\solver.so  => "solver"
    ///     C:\x\libm.so.6  => "libm.so"
    ///
    /// Required: a library that nobody releases stays loaded until the process ends, behind the end of this
    /// object too.
    /// @{
    /// Loads a library with all it needs. Linux: its symbols are bound at once and not seen by other libraries; a name
    /// without a directory that the working directory does not hold is left to the loader's own search. Throws
    ///   - `OperationFailedException("Library already loaded: " + library.str())` if the key is taken.
    ///     Required: by whatever library, also one of another directory or ending,
    ///   - `NotAFileException` for a location that is not local,
    ///   - `OperationFailedException` if it cannot be loaded; an empty location cannot. The text has two lines with a
    ///     line end each, the second one in the system's words, on Linux in the loader's:
    ///
    ///         Cannot load Library: C:\x\solver.so
    ///         /x/solver.so: cannot open shared object file: No such file or directory
    void libraryLoad(const ResourceLocation& library);
    /// The address of a function or an object of the library with that key. Valid until the library is released.
    /// Linux: the libraries that it needs are searched behind it, so a symbol of theirs is found as well.
    /// Throws `OperationFailedException`:
    ///   - "Cannot access symbol because library is not loaded: " and the key,
    ///   - two lines if there is no such symbol, as `libraryLoad` has them; the first one is
    ///     `Cannot access symbol "SYMBOL" from Library: KEY`. A symbol at the address 0 counts as none.
    void* librarySymbol(const std::string& library, const std::string& symbol);
    /// Releases the library with that key and forgets the key; nothing happens if there is none.
    /// Required: the line "Result of FreeLibrary: 1", or 0 for a failure, goes to the trace in either case
    /// (`Trace::fail`, all areas).
    void libraryFree(const std::string& library);
    /// Releases all libraries in the order of their keys. Required: the keys stay. So none of these libraries
    /// can be loaded again until `libraryFree` has forgotten its key, and a symbol of one is refused as missing (Linux:
    /// "shared object not open"), not because the library is not loaded.
    void libraryFreeAll();
    /// @}

    /// Runs a command and waits until it has closed its output. `output` receives what it wrote to its standard output
    /// and its standard error, in the order written, without the last line end; it may be `command` itself, and who
    /// does not want it passes `System::defaultCmdOutput`. The command has no standard input. Gives its exit code.
    ///
    ///     execute("sh -c 'echo out; echo err >&2; exit 3'", output)   // 3, output "out\nerr"
    ///
    /// Linux: the command line is split into words as a shell does it, by blanks, quotation marks and backslashes;
    /// there is no shell, and nothing is expanded. The program is a native path or a name that is found on `PATH`. It
    /// inherits environment and working directory and starts with all signals unblocked, SIGPIPE and SIGCHLD not
    /// ignored; what else this process ignores it ignores as well. A command ended by signal n gives 128 + n. `output`
    /// is binary.
    ///
    /// Required: the end of the output is all that is waited for (Linux: and up to a quarter of a second more).
    /// A command that closed it and runs on has the exit code 259; one that handed it on to a process of its own is
    /// waited for until that closes it.
    /// Required: what is cut off is one line end and nothing else, so empty lines in front of it stay; on
    /// Windows it is the last two characters, whatever they are, and a single one stays.
    ///
    /// Throws `OperationFailedException`
    ///   - "Error while creating pipe for child process",
    ///   - `Can't create process: (2):No such file or directory`: code and text of the system.
    ///     Required: there is no blank in front of the text, here and below.
    ///     Required: both ends of the pipe stay open up to the end of this process,
    ///   - `Could not get exit code from process: (10):No child processes`. Linux: if this process ignores SIGCHLD or
    ///     waits for all its children in a handler. `output` then holds all that was read.
    ///
    /// Linux: a command that ran on is waited for, without blocking, when the next one starts; the system does so for
    /// those that are left when this process ends. Who waits for such a command himself must not start processes of
    /// his own besides: one could get its number, and would be waited for in its place.
    int execute(const std::string& command, std::string& output) const;

private:
    System();
    ~System();

    std::map<std::string, std::uintptr_t> mLibraries; // modules by key; also released ones, see libraryFreeAll

    mutable std::string mHostName;                     // empty: not found yet
    mutable std::string mUserName;                     // empty: not found yet
    mutable std::uint32_t mIPAddress = 0;              // network byte order; 0: not known
    mutable std::vector<ResourceLocation> mSystemDirs; // empty: not found yet
    mutable ResourceLocation mBinDir;                  // empty: not found, or none
    mutable ResourceLocation mDllDir;                  // empty: not found, or none
    mutable ResourceLocation mHomeDir;                 // empty: not found yet
    mutable ResourceLocation mAppDataDir;              // empty: not found yet
    mutable ResourceLocation mUserDir;                 // empty: not found yet
    bool mSignalHandling = false;                      // false for ever
};

} // namespace KelvoBase
