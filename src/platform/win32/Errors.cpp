#include "platform/Platform.h"
#include "platform/win32/Win32.h"

#include <memory>

namespace KelvoBase::platform
{

namespace
{

constexpr DWORD messageFlags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                               FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
constexpr DWORD userLanguage = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);
static_assert(messageFlags == 5119 && userLanguage == 1024);

struct Release
{
    void operator()(char* text) const { ::LocalFree(text); }
};

} // namespace

unsigned long takeLastError() noexcept
{
    const DWORD code = ::GetLastError();
    ::SetLastError(ERROR_SUCCESS);
    return code;
}

std::optional<std::string> errorText(unsigned long code)
{
    char* delivered = nullptr;
    // With this flag the call takes the address of a pointer for that of a buffer.
    const DWORD length =
        ::FormatMessageA(messageFlags, nullptr, code, userLanguage, reinterpret_cast<char*>(&delivered), 0, nullptr);
    const std::unique_ptr<char, Release> text(delivered);
    // The blank that stands at the end in the place of a line end belongs to the text.
    return length != 0 ? std::optional<std::string>(text.get()) : std::nullopt;
}

bool isAlreadyExists(unsigned long code) noexcept
{
    static_assert(ERROR_ALREADY_EXISTS == 183);
    return code == ERROR_ALREADY_EXISTS;
}

} // namespace KelvoBase::platform
