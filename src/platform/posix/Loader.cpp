#include "platform/Modules.h"
#include "platform/Platform.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>

namespace KelvoBase::platform
{

namespace
{

struct CloseLibrary
{
    void operator()(void* library) const { ::dlclose(library); }
};
using Library = std::unique_ptr<void, CloseLibrary>;

constexpr const char* notOpen = "shared object not open"; // as the loader puts it
constinit const char* ownText = nullptr;                  // instead of the loader's

bool refuse()
{
    ownText = notOpen;
    return false;
}

/// What the loader takes for a path. A name alone makes it search elsewhere, and never in the working directory.
std::string loaderPath(const std::string& path)
{
    std::string native = nativePath(path);
    if (!native.empty() && native.find('/') == std::string::npos && ::access(native.c_str(), F_OK) == 0) {
        native.insert(0, "./");
    }
    return native;
}

} // namespace

Module loadLibrary(const std::string& path)
{
    ownText = nullptr;
    const std::string native = loaderPath(path);
    if (native.empty()) { // which the loader takes for the program
        errno = ENOENT;
        return 0;
    }
    Library library(::dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL));
    return library ? modules().add(std::move(library)) : 0;
}

void* findSymbol(Module module, const std::string& symbol)
{
    ownText = nullptr;
    void* const library = modules().find(module);
    if (!library) {
        refuse();
        return nullptr;
    }
    errno = EFAULT; // of a symbol that lies at 0, of which the loader says nothing
    return ::dlsym(library, symbol.c_str());
}

bool freeLibrary(Module module)
{
    ownText = nullptr;
    void* const library = modules().find(module);
    if (!library) {
        return refuse();
    }
    modules().remove(module); // first: the library's own destructors may come back here
    return ::dlclose(library) == 0;
}

std::optional<std::string> takeLoaderText()
{
    const int code = errno;
    const char* const loaderText = ::dlerror(); // forgotten in any case; it may look for a translation
    errno = code;
    const char* const text = ownText ? std::exchange(ownText, nullptr) : loaderText;
    return text ? std::optional<std::string>(text) : std::nullopt;
}

} // namespace KelvoBase::platform
