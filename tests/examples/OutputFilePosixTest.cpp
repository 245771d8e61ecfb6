#include "OutputFile.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

namespace seriesstat
{

namespace
{

using KelvoBase::IOException;
using KelvoBase::RuntimeException;
using KelvoBase::test::contentOf;
using KelvoBase::test::ScopedWorkingDirectory;
using KelvoBase::test::ScratchDirectory;
using KelvoBase::test::textOf;
using std::filesystem::perms;

/// No file of this process grows beyond a size, for a scope.
class ScopedFileSizeLimit
{
public:
    explicit ScopedFileSizeLimit(rlim_t size) : mHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(0, getrlimit(RLIMIT_FSIZE, &mBefore));
        const rlimit limit{size, mBefore.rlim_max};
        EXPECT_EQ(0, setrlimit(RLIMIT_FSIZE, &limit));
    }
    ~ScopedFileSizeLimit()
    {
        EXPECT_EQ(0, setrlimit(RLIMIT_FSIZE, &mBefore));
        std::signal(SIGXFSZ, mHandler);
    }
    ScopedFileSizeLimit(const ScopedFileSizeLimit&) = delete;
    ScopedFileSizeLimit& operator=(const ScopedFileSizeLimit&) = delete;

private:
    rlimit mBefore{};
    void (*mHandler)(int);
};

TEST(OutputFilePosixTest, FileThatTakesNoMoreIsReportedAndTheEarlierOneStays)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    scratch.write("a.txt", "before\n");
    {
        const OutputFile file("a.txt");
        const ScopedFileSizeLimit limit(1000);
        EXPECT_EQ("Cannot write to file \"a.txt\": File too large",
                  textOf<IOException>([&] { file.write(std::string(1001, 'x')); }));
    }
    EXPECT_EQ("before\n", contentOf(scratch / "a.txt"));
    EXPECT_FALSE(std::filesystem::exists(scratch / "a.txt.part"));
}

TEST(OutputFilePosixTest, LinkGoesOnToPointToTheFile)
{
    const ScratchDirectory scratch;
    std::filesystem::create_directory(scratch / "d");
    scratch.write("d/a.txt", "before\n");
    std::filesystem::create_symlink("d/a.txt", scratch / "link");
    OutputFile file((scratch / "link").string());
    file.write("after\n");
    file.finish();
    EXPECT_TRUE(std::filesystem::is_symlink(scratch / "link"));
    EXPECT_EQ("after\n", contentOf(scratch / "d/a.txt"));
}

TEST(OutputFilePosixTest, PermissionsStay)
{
    const ScratchDirectory scratch;
    std::filesystem::permissions(scratch.write("a.txt", "before\n"), perms(0640));
    OutputFile file((scratch / "a.txt").string());
    file.write("after\n");
    file.finish();
    EXPECT_EQ(perms(0640), std::filesystem::status(scratch / "a.txt").permissions());
}

TEST(OutputFilePosixTest, LinksLeadToTheSameFile)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    scratch.write("d/a.txt", "1\n");
    std::filesystem::create_symlink("d/a.txt", "soft");
    std::filesystem::create_hard_link("d/a.txt", "hard");
    std::filesystem::create_directory_symlink("d", "e");
    EXPECT_TRUE(isSameFile("soft", "d/a.txt"));
    EXPECT_TRUE(isSameFile("hard", "soft"));
    EXPECT_TRUE(isSameFile("e/a.txt", "d/a.txt"));
    EXPECT_TRUE(isSameFile("e/new.txt", "d/new.txt"));
    EXPECT_FALSE(isSameFile("e/new.txt", "d/a.txt"));
}

TEST(OutputFilePosixTest, PipeIsNoPlaceForAFile)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    ASSERT_EQ(0, mkfifo("pipe", 0600));
    std::filesystem::create_symlink("pipe", "link");
    for (const std::string name : {"pipe", "link"}) {
        const std::string fault = "\"" + name + "\" is no ordinary file.";
        EXPECT_EQ(fault, textOf<RuntimeException>([&] { checkPlace(name); }));
        EXPECT_EQ(fault, textOf<RuntimeException>([&] { const OutputFile file(name); }));
    }
    EXPECT_TRUE(std::filesystem::is_fifo("pipe"));
}

} // namespace

} // namespace seriesstat
