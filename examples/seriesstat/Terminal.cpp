#include "Terminal.h"

#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace seriesstat
{

namespace
{

constexpr std::size_t usualColumns = 80;

} // namespace

#ifdef _WIN32

std::size_t columnsOfStandardError()
{
    return _isatty(_fileno(stderr)) != 0 ? usualColumns : 0;
}

#else

std::size_t columnsOfStandardError()
{
    if (isatty(STDERR_FILENO) == 0) {
        return 0;
    }
    winsize size{};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : usualColumns;
}

#endif

} // namespace seriesstat
