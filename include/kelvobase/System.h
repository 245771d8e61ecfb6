#pragma once

/// \file
/// The one place where the library meets the operating system.

#include <kelvobase/Export.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/Time.h>

#include <cstdint>
#include <string>
#include <typeinfo>

namespace KelvoBase
{

/// Signal handler: stores `signal` for `System::signalReceived` and does nothing else. It does not install itself
/// again; whether it stays in place behind a signal is up to the system (on Linux it does). C linkage.
extern "C" KELVOBASE_API void handleSignal(int signal);

/// Identity of machine and user, environment, error texts, and a latch for signals.
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
    static constexpr int sigterm = 15;
    static constexpr int sigint = 2;
    static constexpr int sighup = 0;
    static constexpr int sigalrm = 0;
    /// @}
    /// What `lastError` gives when there was none.
    static constexpr int ERRORCODE_NOERROR = 0;
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
    /// The system's text for an error code, without line ends. On Linux:
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
    /// zero byte of `value`; a zero byte or "=" in `name` is for the system to judge.
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

private:
    System();
    ~System();

    mutable std::string mHostName;        // empty: not found yet
    mutable std::string mUserName;        // empty: not found yet
    mutable std::uint32_t mIPAddress = 0; // network byte order; 0: not known
    bool mSignalHandling = false;         // false for ever
};

} // namespace KelvoBase
