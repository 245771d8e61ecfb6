#include "platform/Modules.h"
#include "platform/Platform.h"
#include "platform/win32/Win32.h"

#include <utility>

namespace KelvoBase::platform
{

namespace
{

struct FreeModule
{
    void operator()(void* library) const { ::FreeLibrary(static_cast<HMODULE>(library)); }
};
using Library = std::unique_ptr<void, FreeModule>;

/// The handle of a library; null, with the reason, if it was released.
HMODULE open(Module module)
{
    void* const library = modules().find(module);
    if (!library) {
        ::SetLastError(ERROR_MOD_NOT_FOUND); // what the system says of a handle that is none
    }
    return static_cast<HMODULE>(library);
}

} // namespace

Module loadLibrary(const std::string& path)
{
    Library library(::LoadLibraryA(nativePath(path).c_str()));
    return library ? modules().add(std::move(library)) : 0;
}

void* findSymbol(Module module, const std::string& symbol)
{
    const HMODULE library = open(module);
    return library ? reinterpret_cast<void*>(::GetProcAddress(library, symbol.c_str())) : nullptr;
}

bool freeLibrary(Module module)
{
    const HMODULE library = open(module);
    if (!library) {
        return false;
    }
    modules().remove(module); // first: the library's own destructors may come back here
    return ::FreeLibrary(library) != 0;
}

std::optional<std::string> takeLoaderText()
{
    return std::nullopt; // the reason is the last error's
}

} // namespace KelvoBase::platform
