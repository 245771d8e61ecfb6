#include "location/WorkingDirectory.h"
#include "platform/Platform.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>

#include <boost/token_functions.hpp>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

// The plan: a text is cut into protocol, authority and path by `parseRLoc`, a path into components by `parsePath`.
// Within a local path every backslash has become a slash by then, so escapes exist only in the paths of other
// protocols. Whatever sets the absolute flag ends in `toAbsolute`, which keeps absolute locations normalised.

namespace KelvoBase
{

namespace
{

constexpr std::string_view fileProtocol = "file";
constexpr std::string_view networkProtocol = "smb";
constexpr std::string_view defaultHost = "localhost";
constexpr std::size_t none = std::string::npos;

[[noreturn]] void throwNoPath()
{
    throw std::out_of_range("basic_string::substr");
}

bool hasDoubleSeparator(const std::string& text, std::size_t at)
{
    return text.compare(at, 2, "//") == 0 || text.compare(at, 2, "\\\\") == 0;
}

bool hasColon(const std::string& path, std::size_t at)
{
    return path.size() > at && path[at] == ':';
}

/// Where the path behind an authority begins; `none` if nothing follows it.
std::size_t endOfAuthority(const std::string& text, std::size_t begin)
{
    // Required: the first slash counts, even behind a backslash. Taking whichever comes first would read
    // `\\server\share/dir` with the host "server" where tools know the host `server\share`.
    const std::size_t slash = text.find('/', begin);
    return slash != none ? slash : text.find('\\', begin);
}

/// Adds the component of `path` that begins at `begin`. Gives the place of the slash that ends it.
std::size_t addComponent(const std::string& path, std::size_t begin, std::vector<std::string>& components)
{
    std::string& component = components.emplace_back();
    bool quoted = false;
    for (std::size_t end = begin;; begin = ++end) {
        while (end < path.size() && path[end] != '"' && (quoted || path[end] != '/')) {
            ++end;
        }
        component.append(path, begin, end - begin);
        if (end == path.size()) {
            return none;
        }
        if (path[end] == '/') {
            return end;
        }
        quoted = !quoted;
    }
}

void addEscaped(const std::string& path, std::vector<std::string>& components)
{
    boost::escaped_list_separator<char> separator('\\', '/', '"');
    std::string component;
    for (auto next = path.begin(); separator(next, path.end(), component);) {
        components.push_back(component);
    }
}

/// Adds all components of a path, the empty ones too. Those in front of a wrong escape stay.
void addComponents(const std::string& path, std::vector<std::string>& components)
{
    if (path.find('\\') != none) {
        addEscaped(path, components);
    } else if (!path.empty()) {
        if (components.empty()) {
            components.reserve(static_cast<std::size_t>(std::count(path.begin(), path.end(), '/')) + 1);
        }
        for (std::size_t begin = 0, end = 0; end != none; begin = end + 1) {
            end = addComponent(path, begin, components);
        }
    }
}

/// Drops "." and empty components, and lets ".." take back the one before it.
void normalise(std::vector<std::string>& components)
{
    auto end = components.begin();
    for (std::string& component : components) {
        if (component.empty() || component == ".") {
            continue;
        }
        // Required: ".." takes back whatever stands before it, the drive as well as a ".." that was kept. A
        // floor at the drive, or a row of "..", would change where `C:/../../..` leads.
        if (component == ".." && end != components.begin()) {
            --end;
            continue;
        }
        if (&*end != &component) {
            *end = std::move(component);
        }
        ++end;
    }
    components.erase(end, components.end());
}

/// The components of the working directory.
std::vector<std::string> workingComponents()
{
    const platform::WorkingDirectory directory = workingDirectory();
    if (!directory.holdable) {
        throwNoWorkingDirectory();
    }
    std::vector<std::string> components;
    addComponents(ResourceLocation::toCanonizedForm(directory.path), components);
    return components;
}

} // namespace

ResourceLocation::ResourceLocation() = default;

ResourceLocation::ResourceLocation(const char* text) : ResourceLocation(std::string(text)) {}

ResourceLocation::ResourceLocation(const std::string& text)
{
    parseRLoc(text);
}

void ResourceLocation::parseRLoc(const std::string& text)
{
    if (text.empty()) {
        return;
    }
    const std::size_t colon = text.find(':');
    const bool isPath = colon == none && !hasDoubleSeparator(text, 0);
    // Required: only the second place makes a colon a drive's. Testing what stands before it would give
    // "/C:/x" the drive C, where it has the protocol "/C".
    if (isPath || colon == 1) {
        parsePath(text);
        return;
    }
    std::size_t rest = 0;
    if (colon != none) {
        mProtocol = text.substr(0, colon);
        rest = colon + 1;
    }
    if (hasDoubleSeparator(text, rest)) {
        if (mProtocol.empty()) {
            mProtocol = networkProtocol;
        }
        const std::size_t begin = rest + 2;
        rest = endOfAuthority(text, begin);
        parseHost(text.substr(begin, rest == none ? none : rest - begin));
    }
    if (rest == none) {
        // Required: taking this for an empty path would let "ftp://host" and "//server" pass as locations.
        throwNoPath();
    }
    parsePath(text.substr(rest));
}

void ResourceLocation::parseHost(const std::string& authority)
{
    std::size_t begin = 0;
    if (const std::size_t at = authority.find('@'); at != none) {
        parseUser(authority.substr(0, at));
        begin = at + 1;
    }
    const std::size_t colon = authority.find(':', begin);
    if (colon != none) {
        mPort = authority.substr(colon + 1);
    }
    mHostName = authority.substr(begin, colon == none ? none : colon - begin);
}

void ResourceLocation::parseUser(const std::string& user)
{
    const std::size_t percent = user.find('%');
    if (percent != none) {
        mPassword = user.substr(percent + 1);
    }
    mUserName = user.substr(0, percent);
}

void ResourceLocation::parsePath(const std::string& text)
{
    const bool local = isLocalFile();
    std::string path = local ? toCanonizedForm(text) : text;
    if (path.starts_with('/')) {
        // Required: the flag is the whole location's, so that components which stand here already come in
        // front of the drive. Beginning anew would lose them.
        mAbsolute = true;
        if (local && mProtocol != networkProtocol) {
            if (hasColon(path, 2)) {
                path.erase(0, 1);
            } else {
                path.insert(0, getRootDir());
            }
        }
    }
    if (local && hasColon(path, 1)) {
        mAbsolute = true;
    }
    try {
        addComponents(path, mComponents);
    } catch (const std::exception& e) {
        throw InvalidFileNameException(text, e.what());
    }
    if (mAbsolute) {
        toAbsolute();
    }
}

ResourceLocation& ResourceLocation::append(const std::string& path)
{
    parsePath(path);
    return *this;
}

ResourceLocation& ResourceLocation::operator<<(const ResourceLocation& other)
{
    parsePath(other.getPath('\\', true));
    return *this;
}

ResourceLocation& ResourceLocation::toAbsolute()
{
    if (mComponents.empty()) {
        return *this;
    }
    if (!mAbsolute) {
        std::vector<std::string> components = workingComponents();
        components.insert(components.end(), std::make_move_iterator(mComponents.begin()),
                          std::make_move_iterator(mComponents.end()));
        mComponents = std::move(components);
    } else if (!platform::hasWorkingDirectory()) {
        // Required: nothing of it is used here; leaving the question out would let tools run on in a directory
        // that was removed.
        throwNoWorkingDirectory();
    }
    normalise(mComponents);
    mAbsolute = true;
    return *this;
}

std::string ResourceLocation::getProtocol() const
{
    return mProtocol;
}

std::string ResourceLocation::getHostName() const
{
    return mHostName;
}

std::string ResourceLocation::getPort() const
{
    return mPort;
}

std::string ResourceLocation::getUserName() const
{
    return mUserName;
}

std::string ResourceLocation::getPassword() const
{
    return mPassword;
}

bool ResourceLocation::isAbsolute() const
{
    return mAbsolute;
}

bool ResourceLocation::isLocalFile() const
{
    return mProtocol.empty() || mProtocol == fileProtocol || mProtocol == networkProtocol;
}

bool ResourceLocation::empty() const
{
    return mComponents.empty();
}

void ResourceLocation::clear()
{
    for (std::string* text : {&mProtocol, &mHostName, &mPort, &mUserName, &mPassword, &mPathCache}) {
        text->clear();
    }
    mComponents.clear();
    mAbsolute = false;
}

const std::string& ResourceLocation::getPath(char separator, bool withHost) const
{
    const bool local = isLocalFile();
    const char sep = local ? separator : '/';
    mPathCache.clear();
    if (mComponents.empty()) {
        return mPathCache;
    }
    std::size_t size = mHostName.size() + 3;
    for (const std::string& component : mComponents) {
        size += component.size() + 1;
    }
    mPathCache.reserve(size);
    const bool hostInFront = withHost && mProtocol == networkProtocol;
    if (hostInFront) {
        mPathCache.append(2, separator).append(mHostName);
    }
    if (hostInFront || (mAbsolute && !local)) {
        mPathCache += sep;
    }
    mPathCache += mComponents.front();
    for (auto component = mComponents.begin() + 1; component != mComponents.end(); ++component) {
        mPathCache += sep;
        mPathCache += *component;
    }
    return mPathCache;
}

const std::string& ResourceLocation::getFilePath(char separator) const
{
    if (!isLocalFile()) {
        throw NotAFileException(*this);
    }
    return getPath(separator, true);
}

const char* ResourceLocation::c_str() const
{
    return getFilePath('\\').c_str();
}

std::string ResourceLocation::str() const
{
    if (!mAbsolute) {
        // Required: the path alone. With protocol and host in front, the text of a relative location would
        // read back as an absolute one.
        return getPath('\\', true);
    }
    std::string text = mProtocol.empty() ? std::string(fileProtocol) : mProtocol;
    text += "://";
    if (!mUserName.empty()) {
        text += mUserName;
        if (!mPassword.empty()) {
            text += "%" + mPassword;
        }
        text += '@';
    }
    text += mHostName.empty() ? defaultHost : std::string_view(mHostName);
    if (!mPort.empty()) {
        text += ":" + mPort;
    }
    if (isLocalFile()) {
        text += '/';
    }
    // Required: backslashes behind slashes. Slashes alone would be a URL, and no text of ours any more.
    return text += getPath('\\', false);
}

std::string ResourceLocation::print() const
{
    std::string text = "Protocol: " + mProtocol + "\nHostname: " + mHostName + "\nPort:     " + mPort +
                       "\nUserName: " + mUserName + "\nPassword: " + mPassword + "\n";
    for (std::size_t i = 0; i < mComponents.size(); ++i) {
        text += "Path[" + std::to_string(i) + "]:    " + mComponents[i] + "\n";
    }
    text += mAbsolute ? "isAbsolute:1\n" : "isAbsolute:0\n";
    return text += "fullPath:  " + getPath('\\', true);
}

std::string ResourceLocation::lastComponent() const
{
    return mComponents.empty() ? std::string() : mComponents.back();
}

std::string ResourceLocation::basenameWithSuffix() const
{
    return lastComponent();
}

std::string ResourceLocation::basename() const
{
    const std::string name = lastComponent();
    return name.substr(0, name.rfind('.'));
}

std::string ResourceLocation::suffix() const
{
    const std::string name = lastComponent();
    const std::size_t dot = name.rfind('.');
    return dot == none ? std::string() : name.substr(dot + 1);
}

std::string ResourceLocation::getPathSuffix() const
{
    const std::string name = lastComponent();
    // Required: without a dot there is nothing to add 1 to, and the whole name is the answer. "" is what
    // `suffix` is for.
    const std::size_t dot = name.rfind('.');
    return dot == none ? name : name.substr(dot + 1);
}

ResourceLocation& ResourceLocation::removeSuffix()
{
    if (!mComponents.empty()) {
        mComponents.back() = basename();
    }
    return *this;
}

ResourceLocation& ResourceLocation::removeFileName()
{
    if (!mComponents.empty()) {
        mComponents.pop_back();
    }
    return *this;
}

char ResourceLocation::getFSSeparator()
{
    return '\\';
}

std::string ResourceLocation::toCanonizedForm(const std::string& path)
{
    std::string canonized = path;
    std::replace(canonized.begin(), canonized.end(), '\\', '/');
    return canonized;
}

std::string ResourceLocation::fromCanonizedForm(const std::string& path)
{
    std::string native = path;
    std::replace(native.begin(), native.end(), '/', '\\');
    return native;
}

std::string ResourceLocation::getRootDir()
{
    static std::string drive;
    if (drive.empty()) {
        drive = "C:";
        drive[0] = static_cast<char>(platform::currentDrive() + '@');
    }
    return drive;
}

bool ResourceLocation::operator==(const ResourceLocation& other) const
{
    // Required: password and absolute flag play no part; comparing them would tell places apart that are one.
    return mProtocol == other.mProtocol && mHostName == other.mHostName && mUserName == other.mUserName &&
           mPort == other.mPort && getPath('\\', true) == other.getPath('\\', true);
}

bool ResourceLocation::operator<(const ResourceLocation& other) const
{
    // Required: the paths alone. Adding the host would reorder what tools have sorted.
    return getPath('\\', true) < other.getPath('\\', true);
}

} // namespace KelvoBase
