#include "platform/Platform.h"
#include "trace/Message.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <optional>

namespace KelvoBase
{

namespace
{

constexpr const char* alreadyLoaded = "Library already loaded: ";
constexpr const char* notLoadable = "Cannot load Library: ";
constexpr const char* notLoaded = "Cannot access symbol because library is not loaded: ";
constexpr const char* noSymbol = "Cannot access symbol \"";
constexpr const char* ofLibrary = "\" from Library: ";
constexpr const char* released = "Result of FreeLibrary: ";

/// Why the loader failed just now.
std::string loaderMessage()
{
    const unsigned long code = System::lastError();
    std::optional<std::string> text = platform::takeLoaderText();
    return text ? *std::move(text) : System::errorMsg(code);
}

[[noreturn]] void throwLoaderFailure(const std::string& what, const std::string& reason)
{
    throw OperationFailedException(what + "\n" + reason + "\n");
}

/// A module that is released again unless somebody keeps it.
class LoadedModule
{
public:
    explicit LoadedModule(const std::string& path) : mModule(platform::loadLibrary(path)) {}
    ~LoadedModule()
    {
        if (mModule != 0) {
            platform::freeLibrary(mModule);
        }
    }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    explicit operator bool() const { return mModule != 0; }
    platform::Module get() const { return mModule; }
    void keep() { mModule = 0; }

private:
    platform::Module mModule;
};

} // namespace

void System::libraryLoad(const ResourceLocation& library)
{
    const std::string key = library.basename();
    // Required: the key alone decides. Comparing paths would load a second library under a key that symbols of
    // the first one are asked by.
    if (mLibraries.contains(key)) {
        throw OperationFailedException(alreadyLoaded + library.str());
    }
    LoadedModule module(library.c_str());
    if (!module) {
        const std::string reason = loaderMessage();
        throwLoaderFailure(std::string(notLoadable) + library.c_str(), reason);
    }
    mLibraries[key] = module.get();
    module.keep();
}

void* System::librarySymbol(const std::string& library, const std::string& symbol)
{
    const auto found = mLibraries.find(library);
    if (found == mLibraries.end()) {
        throw OperationFailedException(notLoaded + library);
    }
    void* const address = platform::findSymbol(found->second, symbol);
    if (!address) {
        const std::string reason = loaderMessage();
        throwLoaderFailure(noSymbol + symbol + ofLibrary + library, reason);
    }
    return address;
}

void System::libraryFree(const std::string& library)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the text may be one of the library itself
    const std::string key = library;
    const auto found = mLibraries.find(key);
    if (found == mLibraries.end()) {
        return;
    }
    const bool success = platform::freeLibrary(found->second);
    // Required: a failure's level for success as well. Users watch libraries come and go by this line, at the
    // level that every tool shows.
    traceMessage(Trace::fail, TraceArea::All()) << released << (success ? 1 : 0) << std::endl;
    mLibraries.erase(key);
}

void System::libraryFreeAll()
{
    // Required: the table stays as it is. Without its keys, a released library would count as never loaded, and
    // its name could be loaded anew.
    for (auto entry = mLibraries.begin(); entry != mLibraries.end();) {
        const std::string key = entry->first;
        platform::freeLibrary(entry->second); // which runs code of the library, and that may change the table
        entry = mLibraries.upper_bound(key);
    }
}

} // namespace KelvoBase
