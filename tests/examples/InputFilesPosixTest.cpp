#include "InputFiles.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <unistd.h>

namespace seriesstat
{

namespace
{

using KelvoBase::FileNotReadableException;
using KelvoBase::IOException;
using KelvoBase::test::ScopedWorkingDirectory;
using KelvoBase::test::ScratchDirectory;
using KelvoBase::test::textOf;
using std::filesystem::perms;

/// Gives up the rights of the superuser for a scope.
class ScopedOrdinaryUser
{
public:
    ScopedOrdinaryUser() : mBefore(geteuid())
    {
        if (mBefore == 0) {
            EXPECT_EQ(0, seteuid(65534));
        }
    }
    ~ScopedOrdinaryUser() { EXPECT_EQ(0, seteuid(mBefore)); }
    ScopedOrdinaryUser(const ScopedOrdinaryUser&) = delete;
    ScopedOrdinaryUser& operator=(const ScopedOrdinaryUser&) = delete;

private:
    uid_t mBefore;
};

TEST(InputFilesPosixTest, LocationsBecomeNativePaths)
{
    EXPECT_EQ("/", nativePath("/"));
    EXPECT_EQ("/data/x", nativePath("/data/x"));
    EXPECT_EQ("/data/x", nativePath("C:\\data\\.\\x"));
    EXPECT_EQ("/data/x", nativePath("file:///C:/data/x"));
    EXPECT_EQ("data/x", nativePath("data\\x"));
    EXPECT_EQ("../data/x", nativePath("../data/x"));
    EXPECT_EQ("", nativePath(""));
    EXPECT_EQ("D:/data", nativePath("D:/data"));
    EXPECT_EQ("C:data", nativePath("C:data"));
}

TEST(InputFilesPosixTest, FileThatMayNotBeReadIsReportedWithTheReason)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    std::filesystem::permissions(scratch.path(), perms(0755));
    std::filesystem::permissions(scratch.write("locked.txt", "1\n"), perms::none);
    const ScopedOrdinaryUser user;
    EXPECT_EQ("Cannot read from file \"locked.txt\" : Permission denied",
              textOf<FileNotReadableException>([] { readSeriesFile("locked.txt", {}); }));
}

TEST(InputFilesPosixTest, DirectoryThatMayNotBeListedIsReportedByName)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    std::filesystem::permissions(scratch.path(), perms(0755));
    std::filesystem::create_directories(scratch / "d/locked");
    std::filesystem::permissions(scratch / "d/locked", perms::none);
    const ScopedOrdinaryUser user;
    EXPECT_EQ("Cannot list the files below \"d\": Permission denied", textOf<IOException>([] { filesOf("d", {}); }));
}

TEST(InputFilesPosixTest, FileThatFailsWhileItIsReadGivesNoSeries)
{
    EXPECT_EQ("Cannot read from file \"file://localhost/C:\\proc\\self\\mem\" : Input/output error",
              textOf<FileNotReadableException>([] { readSeriesFile("/proc/self/mem", {}); }));
}

} // namespace

} // namespace seriesstat
