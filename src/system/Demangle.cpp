#include "system/Demangle.h"

#include <kelvobase/System.h>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace KelvoBase
{

namespace
{

struct Release
{
    void operator()(char* text) const noexcept { std::free(text); } // the run-time takes it from malloc
};

} // namespace

std::string_view demangleStatusText(int status) noexcept
{
    switch (status) {
    case 0:
        return "(error code = 0: success)";
    case -1:
        return "(memory allocation failure)";
    case -2:
        return "(invalid mangled name)";
    case -3:
        return "(invalid arguments)";
    default:
        return "(unknown error)";
    }
}

std::string demangleName(const char* mangled)
{
    int status = 0;
    const std::unique_ptr<char, Release> name(abi::__cxa_demangle(mangled, nullptr, nullptr, &status));
    return name ? std::string(name.get()) : std::string(demangleStatusText(status));
}

std::string System::demangle(const std::type_info& info)
{
    return demangleName(info.name());
}

} // namespace KelvoBase
