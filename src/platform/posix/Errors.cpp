#include "platform/Platform.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

namespace KelvoBase::platform
{

unsigned long takeLastError() noexcept
{
    const int code = errno;
    errno = 0;
    return static_cast<unsigned long>(code);
}

std::optional<std::string> errorText(unsigned long code)
{
    if (code > static_cast<unsigned long>(std::numeric_limits<int>::max())) {
        return std::nullopt;
    }
    // strerror makes up a text for any number; only the table of descriptions knows which codes have one.
    const int number = static_cast<int>(code);
    if (!::strerrordesc_np(number)) {
        return std::nullopt;
    }
    std::array<char, 256> buffer{};
    return std::string(::strerror_r(number, buffer.data(), buffer.size()));
}

bool isAlreadyExists(unsigned long code) noexcept
{
    return code == static_cast<unsigned long>(EEXIST);
}

} // namespace KelvoBase::platform
