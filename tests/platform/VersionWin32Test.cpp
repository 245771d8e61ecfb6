#include "platform/win32/Win32Version.h"

#include <gtest/gtest.h>

#include <climits>

namespace KelvoBase::platform
{

namespace
{

using win32::nameOf;
using win32::Version;

struct Row
{
    Version version;
    const char* name;
};

} // namespace

TEST(VersionWin32Test, NamesOfTheLines)
{
    const Row rows[] = {
        {{0, 3, 10, 103, ""}, "Win32s on Windows 3.1 Build #103"},
        {{0, 5, 1, 7, ""}, "Win32s on Windows 3.1 Build #7"},
        {{1, 4, 0, 67109814, ""}, "Windows 95  Build #67109814"},
        {{1, 9, 0, 1, ""}, "Windows 95  Build #1"},
        {{1, 4, 10, 67766222, ""}, "Windows 98  Build #67766222"},
        {{1, 0, 10, 1, ""}, "Windows 98  Build #1"},
        {{1, 4, 90, 73010104, ""}, "Windows ME  Build #73010104"},
        {{1, 7, 90, 1, ""}, "Windows ME  Build #1"},
        {{1, 4, 1, 1, ""}, "Windows ??? 4.1 Build #1"},
        {{1, 4, 9, 1, ""}, "Windows ??? 4.9 Build #1"},
        {{1, 4, 11, 1, ""}, "Windows ??? 4.11 Build #1"},
        {{1, 5, 91, 1, ""}, "Windows ??? 5.91 Build #1"},
        {{2, 0, 0, 1, ""}, "Windows NT 0.0 Build #1"},
        {{2, 3, 51, 1057, ""}, "Windows NT 3.51 Build #1057"},
        {{2, 4, 0, 1381, ""}, "Windows NT 4.0 Build #1381"},
        {{2, 4, 10, 1, ""}, "Windows NT 4.10 Build #1"},
        {{2, 5, 0, 2195, ""}, "Windows 2000 5.0 Build #2195"},
        {{2, 5, 1, 2600, ""}, "Windows XP 5.1 Build #2600"},
        {{2, 5, 2, 3790, ""}, "Windows ??? 5.2 Build #3790"},
        {{2, 5, 10, 1, ""}, "Windows ??? 5.10 Build #1"},
        {{2, 6, 0, 6002, ""}, "Windows ??? 6.0 Build #6002"},
        {{2, 6, 1, 7601, ""}, "Windows ??? 6.1 Build #7601"},
        {{2, 10, 0, 19045, ""}, "Windows ??? 10.0 Build #19045"},
        {{3, 5, 1, 1, ""}, "Windows ???  Build #1"},
        {{ULONG_MAX, 0, 0, ULONG_MAX, ""}, "Windows ???  Build #4294967295"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.name, nameOf(row.version));
    }
}

TEST(VersionWin32Test, ServicePackStandsBehindOneBlank)
{
    const Row rows[] = {
        {{2, 5, 1, 2600, "Service Pack 2"}, "Windows XP 5.1 Service Pack 2 Build #2600"},
        {{2, 4, 0, 1381, "Service Pack 6"}, "Windows NT 4.0 Service Pack 6 Build #1381"},
        {{2, 5, 0, 2195, " "}, "Windows 2000 5.0   Build #2195"},
        {{1, 4, 10, 1, " A "}, "Windows 98   A  Build #1"},
        {{0, 0, 0, 0, "x"}, "Win32s on Windows 3.1 x Build #0"},
        {{9, 0, 0, 0, "x"}, "Windows ???  x Build #0"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.name, nameOf(row.version));
    }
}

} // namespace KelvoBase::platform
