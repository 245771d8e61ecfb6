#include "config/ConfigView.h"
#include "config/FileText.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace
{

/// How many reads of the process still succeed; negative: all.
long readsLeft = -1;

} // namespace

/// Stands in the place of the system's, for this process and the libraries in it.
extern "C" ssize_t read(int file, void* buffer, size_t count)
{
    if (readsLeft == 0) {
        errno = EIO;
        return -1;
    }
    readsLeft -= readsLeft > 0 ? 1 : 0;
    return static_cast<ssize_t>(syscall(SYS_read, file, buffer, count));
}

namespace KelvoBase::test
{

namespace
{

/// Lets reading fail behind some reads that succeed.
class BrokenDisk
{
public:
    explicit BrokenDisk(long reads) { readsLeft = reads; }
    ~BrokenDisk() { readsLeft = -1; }
    BrokenDisk(const BrokenDisk&) = delete;
    BrokenDisk& operator=(const BrokenDisk&) = delete;
};

std::string failureOf(const std::string& location)
{
    ConfigFile config;
    return textOf<FileNotReadableException>([&] { config.parseFile(ResourceLocation(location)); });
}

std::string cannotRead(const std::string& location, const std::string& reason)
{
    return "Cannot read from file \"" + ResourceLocation(location).str() + "\" : " + reason;
}

} // namespace

TEST(ConfigFileTextPosixTest, FileThatCannotBeOpenedGivesTheSystemsReason)
{
    const ScratchDirectory scratch;
    scratch.write("file", "");
    const std::string missing = scratch.location("missing.ini");
    EXPECT_EQ(failureOf(missing), cannotRead(missing, "No such file or directory"));
    const std::string below = scratch.location("file/below.ini");
    EXPECT_EQ(failureOf(below), cannotRead(below, "Not a directory"));
    const std::string longName = scratch.location(std::string(300, 'x'));
    EXPECT_EQ(failureOf(longName), cannotRead(longName, "File name too long"));
    EXPECT_EQ(failureOf(""), "Cannot read from file \"\" : No such file or directory");
    EXPECT_EQ(failureOf("D:\\x.ini"), cannotRead("D:\\x.ini", "No such file or directory"));
    EXPECT_EQ(failureOf("\\\\host\\share\\x.ini"),
              "Cannot read from file \"" +
                  ResourceLocation(ResourceLocation("\\\\host\\share\\x.ini").getFilePath('\\')).str() +
                  "\" : No such file or directory");
}

TEST(ConfigFileTextPosixTest, DirectoryFailsAsOneThatCannotBeOpened)
{
    const ScratchDirectory scratch;
    EXPECT_EQ(failureOf(scratch.location()), cannotRead(scratch.location(), "Is a directory"));
    EXPECT_EQ(failureOf("C:\\"), cannotRead("C:\\", "Is a directory"));
}

TEST(ConfigFileTextPosixTest, FileWhoseFirstReadFailsGivesTheReadsReason)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", "a=1\n");
    const std::string location = scratch.location("file.ini");
    ConfigFile config;
    config.setEntry("s", "b", "2");
    {
        const BrokenDisk broken(0);
        EXPECT_EQ(textOf<FileNotReadableException>([&] { config.parseFile(ResourceLocation(location)); }),
                  cannotRead(location, "Input/output error"));
    }
    EXPECT_EQ(listing(config), "[s]\nb (StringAny) 2\n");
    EXPECT_TRUE(isModified(config));
}

TEST(ConfigFileTextPosixTest, FileThatBreaksOffEndsThere)
{
    const ScratchDirectory scratch;
    std::string content;
    while (content.size() < 4'000'000) {
        content += "k" + std::to_string(content.size()) + "=1\n";
    }
    scratch.write("file.ini", content);
    ConfigFile config;
    config.setEntry("", "a", "1");
    {
        const BrokenDisk broken(1);
        config.parseFile(ResourceLocation(scratch.location("file.ini")));
    }
    EXPECT_TRUE(config.entryIsExistent("", "k0"));
    EXPECT_GT(config.findSection("")->size(), 100U);
    EXPECT_FALSE(config.entryIsExistent("", "k3999996"));
    EXPECT_FALSE(isModified(config));
}

TEST(ConfigFileTextPosixTest, PipeCanBeParsed)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::string content = "a=1\n[s]\nb=2";
    ASSERT_EQ(write(ends[1], content.data(), content.size()), static_cast<ssize_t>(content.size()));
    close(ends[1]);
    ConfigFile config;
    config.parseFile(ResourceLocation("/dev/fd/" + std::to_string(ends[0])));
    close(ends[0]);
    EXPECT_EQ(listing(config), "[]\na (StringAny) 1\n[s]\nb (StringAny) 2\n");
}

TEST(ConfigFileTextPosixTest, FileIsClosedWhenParsingFails)
{
    const ScratchDirectory scratch;
    scratch.write("file.ini", "=1\n");
    const auto openFiles = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                             std::filesystem::directory_iterator());
    };
    ConfigFile config;
    textOf<OperationFailedException>([&] { config.handleParseError("", "", 1); }); // the trace is there from now on
    const auto before = openFiles();
    textOf<OperationFailedException>([&] { config.parseFile(ResourceLocation(scratch.location("file.ini"))); });
    EXPECT_EQ(openFiles(), before);
}

TEST(ConfigFileTextPosixTest, EmptyLineOfAWindowsFileStoresTheEmptyKey)
{
    // Required, Q-502
    const ScratchDirectory scratch;
    scratch.write("file.ini", "[s]\r\na = 1\r\n\r\n# note\r\nb = 2, 3\r\n");
    EXPECT_EQ(listing(ConfigFile(scratch.location("file.ini"))),
              "[s]\n (BoolAny) 1\na (StringAny) 1\nb (StringVectorAny) 2|3\n");
}

TEST(ConfigFileTextPosixTest, WrittenLinesEndInALineFeedAlone)
{
    const ScratchDirectory scratch;
    ConfigFile config;
    config.setEntry("s", "a", "1");
    config.saveToDisk(scratch.location("file.ini"));
    EXPECT_EQ(contentOf(scratch / "file.ini"), "[s]\na=1\n\n");
}

TEST(ConfigFileTextPosixTest, DirectoryCannotBeWritten)
{
    const ScratchDirectory scratch;
    EXPECT_EQ(textOf<OperationFailedException>([&] { ConfigFile().saveToDisk(scratch.location()); }),
              "ConfigFile: Unable to open file '" + ResourceLocation(scratch.location()).str() + "'");
}

TEST(ConfigFileTextPosixTest, WritingKeepsTheFileItself)
{
    // Written in place: links to a file, its owner and its mode stay.
    const ScratchDirectory scratch;
    std::filesystem::create_hard_link(scratch.write("file.ini", "a=1\n"), scratch / "other.ini");
    std::filesystem::create_symlink(scratch / "file.ini", scratch / "link.ini");
    std::filesystem::permissions(scratch / "file.ini", std::filesystem::perms::owner_all);
    ConfigFile config;
    config.setEntry("s", "a", "1");
    config.saveToDisk(scratch.location("link.ini"));
    EXPECT_EQ(contentOf(scratch / "other.ini"), "[s]\na=1\n\n");
    EXPECT_TRUE(std::filesystem::is_symlink(scratch / "link.ini"));
    EXPECT_EQ(std::filesystem::status(scratch / "file.ini").permissions(), std::filesystem::perms::owner_all);
}

TEST(ConfigFileTextPosixTest, DiskThatIsFullGoesUnnoticed)
{
    ConfigFile config;
    config.setEntry("s", "a", std::string(100'000, 'x'));
    EXPECT_NO_THROW(config.saveToDisk("/dev/full"));
}

} // namespace KelvoBase::test
