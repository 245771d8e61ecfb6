#include "location/WorkingDirectory.h"
#include "platform/Platform.h"
#include "trace/Message.h"

#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <forward_list>
#include <optional>
#include <utility>
#include <vector>

namespace KelvoBase
{

namespace
{

constexpr const char* noNetwork = "Could not initialize Winsock 2 DLL. Network related functions will fail.";
// Required: it stands so on every other system too. A text of its own there would be one more to look for.
constexpr const char* noVersion = "Cannot retrieve number of Windows Version.";

constexpr const char* noErrorText = "No system error message";
constexpr const char* noUser = "anonymous";
constexpr const char* noHost = "localhost";

[[noreturn]] void endRun(const char* reason)
{
    traceMessage(Trace::crit, TraceArea::All()) << reason << std::endl;
    std::exit(1);
}

/// The address of a host; 0 if it has none.
std::uint32_t addressOf(const std::string& host)
{
    const std::vector<std::uint32_t> found = platform::addresses(host);
    // Required: the last one. The first one, which the resolver prefers, is another address on many hosts.
    return found.empty() ? 0 : found.back();
}

} // namespace

// The header has their values; here they are exported, for those who take a reference.
const int System::sigterm;
const int System::sigint;
const int System::sighup;
const int System::sigalrm;
const int System::ERRORCODE_NOERROR;
std::string System::defaultCmdOutput;

System::System()
{
    if (!platform::startNetwork()) {
        // Required: the line promises a run without network. Going on would let tools that were stopped here
        // work with an address of 0.
        endRun(noNetwork);
    }
}

System::~System()
{
    // Required: no library is released here. What tools have made from one is often destroyed later than this.
    platform::stopNetwork();
}

System& System::instance()
{
    static System system;
    return system;
}

unsigned int System::linelength()
{
    return 80;
}

char System::pathSeparator()
{
    return ';';
}

Time::Mtime_t System::now() const
{
    return platform::now();
}

unsigned long System::lastError()
{
    return platform::takeLastError();
}

std::string System::errorMsg(unsigned long code)
{
    return platform::errorText(code).value_or(noErrorText);
}

std::string System::lastErrorMessage()
{
    return errorMsg(lastError());
}

std::string System::getEnv(const std::string& name, const std::string& defaultValue)
{
    const char* value = std::getenv(name.c_str());
    return value ? std::string(value) : defaultValue;
}

void System::setEnv(const std::string& name, const std::string& value)
{
    // The environment points into these texts up to the last moment of the process, so they are never destroyed; the
    // list keeps those within reach that a later value has replaced.
    static std::forward_list<std::string>& kept = *new std::forward_list<std::string>;
    kept.push_front(name + "=" + value);
    platform::putEnvironment(kept.front().data());
}

std::string System::getCurrentWorkingDir() const
{
    return workingDirectory().path;
}

ResourceLocation System::getExeImagePath() const
{
    const std::optional<std::string> path = platform::programPath();
    return path ? ResourceLocation(*path) : ResourceLocation();
}

const std::string& System::getUserName() const
{
    if (mUserName.empty()) {
        mUserName = getEnv("USERNAME", "");
    }
    if (mUserName.empty()) {
        mUserName = platform::userName().value_or("");
    }
    if (mUserName.empty()) {
        mUserName = noUser;
    }
    return mUserName;
}

const std::string& System::getHostName() const
{
    if (mHostName.empty()) {
        mHostName = getEnv("COMPUTERNAME", "");
    }
    if (mHostName.empty()) {
        mHostName = platform::hostName().value_or(noHost);
    }
    return mHostName;
}

void System::fetchIP()
{
    mIPAddress = 0;
    mIPAddress = addressOf(getHostName());
}

unsigned long System::getIP() const
{
    if (mIPAddress == 0) {
        mIPAddress = addressOf(getHostName());
    }
    return mIPAddress;
}

std::string System::getIPString() const
{
    const auto address = static_cast<std::uint32_t>(getIP());
    std::array<unsigned char, 4> bytes{}; // network byte order is the order in memory
    std::memcpy(bytes.data(), &address, bytes.size());
    return std::to_string(bytes[0]) + "." + std::to_string(bytes[1]) + "." + std::to_string(bytes[2]) + "." +
           std::to_string(bytes[3]);
}

const std::string& System::getOS() const
{
    static std::string os;
    if (os.empty()) {
        std::optional<std::string> name = platform::osName();
        if (!name) {
            endRun(noVersion);
        }
        os = *std::move(name);
    }
    return os;
}

} // namespace KelvoBase
