#include "location/FailingCall.h"
#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace KelvoBase
{

namespace
{

namespace fs = std::filesystem;
using test::contentOf;
using test::ScopedWorkingDirectory;
using test::ScratchDirectory;
using test::textOf;
using test::TraceCapture;
using Texts = std::vector<std::string>;

constexpr const char* noSuchFile = "No such file or directory";

class ResourceLocationFilesPosixTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { TraceAreaMgr::startup(); }
    static void TearDownTestSuite() { TraceAreaMgr::teardown(); }

    ResourceLocation at(const std::string& name) const { return ResourceLocation(mScratch.location(name)); }
    fs::path native(const std::string& name) const { return mScratch / name; }

    ScratchDirectory mScratch;
};

/// Lets this process write no file beyond a size, as if the disk were full there.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes) : mSignal(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(0, getrlimit(RLIMIT_FSIZE, &mBefore));
        const rlimit lowered{bytes, mBefore.rlim_max};
        EXPECT_EQ(0, setrlimit(RLIMIT_FSIZE, &lowered));
    }
    ~FileSizeLimit()
    {
        EXPECT_EQ(0, setrlimit(RLIMIT_FSIZE, &mBefore));
        std::signal(SIGXFSZ, mSignal);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit mBefore{};
    void (*mSignal)(int);
};

Texts namesOf(const std::vector<ResourceLocation>& locations)
{
    Texts names;
    for (const ResourceLocation& location : locations) {
        names.push_back(location.lastComponent());
    }
    std::sort(names.begin(), names.end());
    return names;
}

int openDescriptors()
{
    int count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        ++count;
    }
    return count;
}

/// A file system entry that is neither file nor directory to most programs.
void makeSocket(const fs::path& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.native().size(), sizeof address.sun_path);
    std::strcpy(address.sun_path, path.c_str());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(0, ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    ::close(socket);
}

/// Every question is answered as for a missing path.
void expectUnseen(const ResourceLocation& location)
{
    SCOPED_TRACE(location.print());
    EXPECT_FALSE(location.isExistent());
    EXPECT_FALSE(location.isFile());
    EXPECT_FALSE(location.isDir());
    EXPECT_TRUE(location.getDirList(false).empty());
    const std::string sized = textOf<FileNotReadableException>([&] { location.size(); });
    EXPECT_TRUE(sized.ends_with(noSuchFile)) << sized;
}

/// Every operation fails as for a missing path. It changes what is there if it does not, so that `location` must lie
/// in a scratch directory however it is read.
void expectNowhere(const ResourceLocation& location, const ResourceLocation& file)
{
    expectUnseen(location);
    SCOPED_TRACE(location.print());
    EXPECT_FALSE(location.isWritable(false));
    EXPECT_NO_THROW(location.remove());
    const std::string created = textOf<IOFailedException>([&] { location.createDir(); });
    EXPECT_TRUE(created.ends_with(noSuchFile)) << created;
    const std::string copied = textOf<IOFailedException>([&] { file.copy(location); });
    EXPECT_TRUE(copied.ends_with("could not open destination file")) << copied;
    const std::string moved = textOf<IOFailedException>([&] { file.move(location); });
    EXPECT_TRUE(moved.ends_with(noSuchFile)) << moved;
    EXPECT_THROW(location.copy(file), FileNotFoundException);
    EXPECT_THROW(location.move(file), FileNotFoundException);
}

} // namespace

TEST_F(ResourceLocationFilesPosixTest, SlashAndDriveAreTheRootDirectory)
{
    for (const char* text : {"/", "C:", "C:/", "file:///", "file:///C:/", "C:/tmp/.."}) {
        EXPECT_TRUE(ResourceLocation(text).isDir()) << text;
    }
    EXPECT_TRUE(ResourceLocation("/dev/null").isFile());
    EXPECT_TRUE(ResourceLocation(R"(C:\dev\null)").isFile());
    EXPECT_TRUE(std::ranges::count(namesOf(ResourceLocation("/").getDirList(false)), "dev"));
}

TEST_F(ResourceLocationFilesPosixTest, AbsoluteFormOfARelativeLocationFindsItsFile)
{
    mScratch.write("d/f", "x");
    const ScopedWorkingDirectory here(native("d"));
    ResourceLocation location("../d/./f");
    EXPECT_EQ(mScratch.location("d/f"), location.toAbsolute().getPath('\\', true));
    EXPECT_EQ(1u, location.size());
    EXPECT_EQ(1u, ResourceLocation(location.str()).size());
}

TEST_F(ResourceLocationFilesPosixTest, AbsoluteFormBelowTheRootDirectory)
{
    const ScopedWorkingDirectory here("/");
    EXPECT_EQ("C:\\", System::instance().getCurrentWorkingDir());
    EXPECT_EQ(R"(C:\dev\null)", ResourceLocation("dev/null").toAbsolute().getPath('\\', true));
}

TEST_F(ResourceLocationFilesPosixTest, NamesOfAllKindsAreListedAndReached)
{
    const Texts names = {" ",         "a b",        "line\nend", "\xFF\x80", "-rf",       "*?",
                         "long:name", "\xC3\xA4:x", ":x",        "'",        "%41",       "~",
                         "tab\t",     "a.b.",       "\x01",      "C",        "x\xC2\xA0", std::string(255, 'n')};
    for (const std::string& name : names) {
        mScratch.write("d/" + name, name);
    }
    Texts sorted = names;
    std::sort(sorted.begin(), sorted.end());
    const std::vector<ResourceLocation> entries = at("d").getDirList(false);
    EXPECT_EQ(sorted, namesOf(entries));
    for (const ResourceLocation& entry : entries) {
        EXPECT_TRUE(entry.isFile()) << entry.print();
        EXPECT_EQ(entry.lastComponent().size(), entry.size()) << entry.print();
    }
}

TEST_F(ResourceLocationFilesPosixTest, NamesThatNoLocationHoldsAreTracedAndLeftOut)
{
    for (const char* name : {"a\\b", "a\"b", "x:", "x:y", "::", "\"", "\\", ".\\hidden", "good"}) {
        mScratch.write("d/" + std::string(name), "x");
    }
    const TraceCapture trace(Trace::fail);
    EXPECT_EQ(Texts{"good"}, namesOf(at("d").getDirList(false)));
    Texts lines;
    std::istringstream text(trace.text());
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    Texts expected;
    for (const char* name : {"a\\b", "a\"b", "x:", "x:y", "::", "\"", "\\"}) {
        expected.push_back("|-- What is this: \"" + native("d").native() + "/" + name + "\" ?");
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(expected, lines);
}

TEST_F(ResourceLocationFilesPosixTest, StrangerInTheRootOfAListingIsNamedByItsNativePath)
{
    mScratch.write("a\"b", "x");
    const ScopedWorkingDirectory here(mScratch.path());
    const TraceCapture trace(Trace::fail);
    EXPECT_TRUE(ResourceLocation(".").getDirList(true).empty());
    EXPECT_TRUE(ResourceLocation("./").getDirList(false).empty());
    EXPECT_EQ("|-- What is this: \"./a\"b\" ?\n|-- What is this: \"./a\"b\" ?\n", trace.text());
}

TEST_F(ResourceLocationFilesPosixTest, NetworkPathsAndOtherDrivesAreNotSeen)
{
    for (const char* name : {"D:/x", "c:/x", "C:foo", "a:b/c", "server/share", "dev/null"}) {
        mScratch.write("here/" + std::string(name) + "/file", "x");
    }
    const ScopedWorkingDirectory here(native("here"));
    for (const char* text : {"D:/x/file",
                             "D:/x",
                             "D:",
                             "D:/",
                             "D:/dev/null",
                             "c:/x",
                             "c:",
                             "c:/dev/null",
                             "C:foo",
                             "C:foo/file",
                             "a:b/c",
                             "//server/share",
                             "//dev/null",
                             "://dev/null",
                             "smb:dev/null",
                             "smb:/dev/null",
                             "smb://dev/null",
                             "smb:dev",
                             "smb:server/share",
                             R"(\\localhost\dev\null)",
                             R"("//dev"/null)",
                             R"("/"/dev/null)"}) {
        expectUnseen(ResourceLocation(text));
    }
}

TEST_F(ResourceLocationFilesPosixTest, NetworkPathsAndOtherDrivesAreNowhere)
{
    mScratch.write("here/file", "precious");
    mScratch.write("file", "content");
    const std::string spelling = native("here").native().substr(1);
    // The same spelling once more, below the working directory.
    for (const std::string drive : {"", "D:/", "c:/", "C:"}) {
        mScratch.write("here/" + drive + spelling + "/file", "precious");
    }
    const ScopedWorkingDirectory here(native("here"));
    for (const std::string head : {"//", R"(\\)", "://", "smb://", "smb:/", "smb:", "D:/", "c:/", "C:", R"("//")"}) {
        expectNowhere(ResourceLocation(head + spelling), at("file"));
        expectNowhere(ResourceLocation(head + spelling + "/file"), at("file"));
    }
    EXPECT_EQ("content", contentOf(native("file")));
    for (const std::string drive : {"", "D:/", "c:/", "C:"}) {
        EXPECT_EQ("precious", contentOf(native("here/" + drive + spelling + "/file")));
    }
    EXPECT_EQ("precious", contentOf(native("here/file")));
}

TEST_F(ResourceLocationFilesPosixTest, PathWithAZeroByteIsNowhere)
{
    mScratch.write("f", "content");
    mScratch.write("from", "x");
    const ResourceLocation location(mScratch.location("f") + std::string("\0g", 2));
    EXPECT_FALSE(location.isExistent());
    EXPECT_FALSE(ResourceLocation(mScratch.location() + std::string("\0\\f", 3)).isDir());
    EXPECT_NO_THROW(location.remove());
    EXPECT_THROW(location.createDir(), IOFailedException);
    EXPECT_THROW(location.size(), FileNotReadableException);
    EXPECT_THROW(at("from").copy(location), IOFailedException);
    EXPECT_THROW(at("from").move(location), IOFailedException);
    EXPECT_EQ("content", contentOf(native("f")));
}

TEST_F(ResourceLocationFilesPosixTest, QuotedSlashSeparatesForTheSystem)
{
    mScratch.write("a/b", "x");
    const ScopedWorkingDirectory here(mScratch.path());
    const ResourceLocation location(R"("a/b")");
    EXPECT_EQ("a/b", location.lastComponent());
    EXPECT_TRUE(location.isFile());
}

TEST_F(ResourceLocationFilesPosixTest, FifosSocketsAndDevicesAreFiles)
{
    ASSERT_EQ(0, ::mkfifo(native("fifo").c_str(), 0600));
    makeSocket(native("socket"));
    EXPECT_TRUE(at("fifo").isFile());
    EXPECT_TRUE(at("socket").isFile());
    EXPECT_EQ((Texts{"fifo", "socket"}), namesOf(getFilesRecursively(at(""))));
    EXPECT_EQ(0u, at("fifo").size()) << "nobody writes there, and nobody waits";
    EXPECT_EQ("Cannot read from file \"" + at("socket").str() + "\" : Invalid file handle! No such device or address",
              textOf<FileNotReadableException>([&] { at("socket").size(); }));
    at("fifo").remove();
    at("socket").remove();
    EXPECT_TRUE(fs::is_empty(mScratch.path()));
}

TEST_F(ResourceLocationFilesPosixTest, LinksAreFollowed)
{
    mScratch.write("target/f", "content");
    fs::create_symlink("target", native("d"));
    fs::create_symlink("target/f", native("f"));
    EXPECT_TRUE(at("d").isDir());
    EXPECT_TRUE(at("f").isFile());
    EXPECT_EQ(7u, at("f").size());
    EXPECT_EQ(Texts{"f"}, namesOf(at("d").getDirList(false)));
    EXPECT_EQ((Texts{"f", "f", "f"}), namesOf(getFilesRecursively(at(""))));
}

TEST_F(ResourceLocationFilesPosixTest, RemoveTakesALinkAndLeavesWhatItPointsTo)
{
    mScratch.write("target/f", "content");
    fs::create_symlink("target", native("d"));
    fs::create_symlink("target/f", native("f"));
    at("d").remove();
    at("f").remove();
    EXPECT_FALSE(fs::is_symlink(native("d")));
    EXPECT_FALSE(fs::is_symlink(native("f")));
    EXPECT_EQ("content", contentOf(native("target/f")));

    fs::create_symlink("target", native("e"));
    const ScopedWorkingDirectory here(mScratch.path());
    ResourceLocation("e/").remove();
    EXPECT_FALSE(fs::is_symlink(native("e")));
    EXPECT_EQ("content", contentOf(native("target/f")));
}

TEST_F(ResourceLocationFilesPosixTest, RemoveThatFailsGivesTheSystemsText)
{
    mScratch.write("d/f", "x");
    EXPECT_EQ("Could not remove '" + at("d").str() + "': Directory not empty",
              textOf<IOException>([&] { at("d").remove(); }));
}

TEST_F(ResourceLocationFilesPosixTest, DanglingLinksAndLinksToThemselvesAreNothing)
{
    fs::create_symlink("nowhere", native("dangling"));
    fs::create_symlink("loop", native("loop"));
    mScratch.write("f", "x");
    for (const char* name : {"dangling", "loop"}) {
        EXPECT_FALSE(at(name).isExistent());
        EXPECT_NO_THROW(at(name).remove());
        EXPECT_TRUE(fs::is_symlink(native(name))) << "what does not exist is not removed";
        EXPECT_NO_THROW(at(name).createDir()) << "the name is taken";
        EXPECT_EQ("moving file \"" + at("f").getPath('\\', true) + "\" to \"" + at(name).getPath('\\', true) +
                      "\" failed : File exists",
                  textOf<IOFailedException>([&] { at("f").move(at(name)); }));
    }
    const TraceCapture trace(Trace::fail);
    EXPECT_EQ(Texts{"f"}, namesOf(getFilesRecursively(at(""))));
    const std::string text = trace.text();
    for (const char* name : {"dangling", "loop"}) {
        EXPECT_NE(std::string::npos, text.find("|-- What is this: \"" + at(name).str() + "\" ?\n")) << text;
    }
}

TEST_F(ResourceLocationFilesPosixTest, CycleOfDirectoriesEndsWhereTheSystemRefuses)
{
    mScratch.write("d/f", "x");
    fs::create_symlink(".", native("d/again"));
    const TraceCapture trace(Trace::fail);
    const std::vector<ResourceLocation> files = getFilesRecursively(at("d"));
    EXPECT_EQ(41u, files.size()) << "the system follows 40 links in a path";
    EXPECT_NE(std::string::npos, trace.text().find("again\" ?\n"));
}

TEST_F(ResourceLocationFilesPosixTest, SizeOfADirectoryThrows)
{
    EXPECT_EQ("Cannot read from file \"" + at("").str() + "\" : Invalid file handle! Is a directory",
              textOf<FileNotReadableException>([&] { at("").size(); }));
    EXPECT_EQ("Cannot read from file \"" + at("x").str() + "\" : Invalid file handle! No such file or directory",
              textOf<FileNotReadableException>([&] { at("x").size(); }));
}

TEST_F(ResourceLocationFilesPosixTest, SizeOfAHugeFileIsGivenWhole)
{
    mScratch.write("f", "");
    fs::resize_file(native("f"), 5'000'000'000);
    EXPECT_EQ(5'000'000'000u, at("f").size());
}

TEST_F(ResourceLocationFilesPosixTest, CopyThroughAnotherNameOfTheSameFileFailsAndKeepsItsContent)
{
    mScratch.write("f", "content");
    fs::create_hard_link(native("f"), native("hard"));
    fs::create_symlink("f", native("soft"));
    for (const char* name : {"hard", "soft"}) {
        EXPECT_EQ("Copying \"" + at("f").getPath('\\', true) + "\" to \"" + at(name).getPath('\\', true) +
                      "\" failed : copy operation failed",
                  textOf<IOFailedException>([&] { at("f").copy(at(name)); }));
        EXPECT_EQ("content", contentOf(native("f")));
    }
}

TEST_F(ResourceLocationFilesPosixTest, CopyToAFullDiskFails)
{
    mScratch.write("f", "small enough for every buffer");
    EXPECT_EQ("Copying \"" + at("f").getPath('\\', true) + "\" to \"C:\\dev\\full\" failed : copy operation failed",
              textOf<IOFailedException>([&] { at("f").copy(ResourceLocation("/dev/full")); }));
}

TEST_F(ResourceLocationFilesPosixTest, CopyThatRunsOutOfSpaceInTheMiddleFails)
{
    constexpr rlim_t limit = 100000;
    for (const std::size_t size : {limit + 1, limit + 8191, 3 * limit}) {
        SCOPED_TRACE(size);
        mScratch.write("f", std::string(size, 'x'));
        const FileSizeLimit limited(limit);
        EXPECT_EQ("Copying \"" + at("f").getPath('\\', true) + "\" to \"" + at("g").getPath('\\', true) +
                      "\" failed : copy operation failed",
                  textOf<IOFailedException>([&] { at("f").copy(at("g")); }));
        EXPECT_GE(limit, fs::file_size(native("g"))) << "a partly written target stays";
    }
}

TEST_F(ResourceLocationFilesPosixTest, CopyOfAFileThatCannotBeReadFails)
{
    makeSocket(native("socket"));
    EXPECT_EQ("Copying \"" + at("socket").getPath('\\', true) + "\" to \"" + at("new").getPath('\\', true) +
                  "\" failed : could not open source file",
              textOf<IOFailedException>([&] { at("socket").copy(at("new")); }));
    EXPECT_FALSE(fs::exists(native("new")));
    EXPECT_EQ("Copying \"" + at("socket").getPath('\\', true) + "\" to \"" + at("socket").getPath('\\', true) +
                  "\" failed : could not open source file",
              textOf<IOFailedException>([&] { at("socket").copy(at("socket")); }));
}

TEST_F(ResourceLocationFilesPosixTest, MoveTakesTheLinkItself)
{
    mScratch.write("f", "x");
    fs::create_symlink("f", native("link"));
    at("link").move(at("moved"));
    EXPECT_TRUE(fs::is_symlink(native("moved")));
    EXPECT_EQ("x", contentOf(native("f")));
}

TEST_F(ResourceLocationFilesPosixTest, MoveThatFailsGivesTheSystemsText)
{
    mScratch.write("f", "new");
    mScratch.write("g", "old");
    const std::string head = "moving file \"" + at("f").getPath('\\', true) + "\"";
    EXPECT_EQ(head + " to \"" + at("g").getPath('\\', true) + "\" failed : File exists",
              textOf<IOFailedException>([&] { at("f").move(at("g")); }));
    EXPECT_EQ(head + "\" failed : No such file or directory",
              textOf<IOFailedException>([&] { at("f").move(ResourceLocation()); }));
    EXPECT_EQ(head + " to \"" + at("f").getPath('\\', true) + "\" failed : File exists",
              textOf<IOFailedException>([&] { at("f").move(at("")); }));
    EXPECT_EQ("new", contentOf(native("f")));
    EXPECT_EQ("old", contentOf(native("g")));
}

TEST_F(ResourceLocationFilesPosixTest, RefusalToWriteIsTracedWithTheSystemsText)
{
    const TraceCapture trace(Trace::verbose);
    EXPECT_FALSE(at("missing/new").isWritable(false));
    EXPECT_EQ("|------ Cannot write to \"" + at("missing/new").str() + "\": No such file or directory\n", trace.text());
}

TEST_F(ResourceLocationFilesPosixTest, CreateDirGivesTheSystemsText)
{
    mScratch.write("f", "x");
    EXPECT_EQ("creating directory \"" + at("f/d").getPath('\\', true) + "\" failed : Not a directory",
              textOf<IOFailedException>([&] { at("f/d").createDir(); }));
    const std::string tooLong(256, 'n');
    EXPECT_EQ("creating directory \"" + at("a/" + tooLong + "/b").getPath('\\', true) +
                  "\" failed : File name too long",
              textOf<IOFailedException>([&] { at("a/" + tooLong + "/b").createDir(); }));
    EXPECT_TRUE(fs::is_directory(native("a")));
}

TEST_F(ResourceLocationFilesPosixTest, PathsBeyondTheLimitOfTheSystemAreMissing)
{
    std::string name = "d";
    for (int i = 0; i < 30; ++i) {
        name += "/" + std::string(200, 'n');
    }
    const ResourceLocation location = at(name);
    EXPECT_FALSE(location.isExistent());
    EXPECT_EQ("Cannot read from file \"" + location.str() + "\" : Invalid file handle! File name too long",
              textOf<FileNotReadableException>([&] { location.size(); }));
}

TEST_F(ResourceLocationFilesPosixTest, WorkingDirectoryOfAnyLengthIsTakenApart)
{
    const ScopedWorkingDirectory here(mScratch.path());
    std::string expected = mScratch.location();
    for (int i = 0; i < 30; ++i) {
        const std::string level(200, static_cast<char>('a' + i % 26));
        ASSERT_EQ(0, ::mkdir(level.c_str(), 0700));
        ASSERT_EQ(0, ::chdir(level.c_str()));
        expected += "\\" + level;
    }
    EXPECT_EQ(expected, System::instance().getCurrentWorkingDir());
    EXPECT_EQ(expected + "\\x", ResourceLocation("x").toAbsolute().getPath('\\', true));
    EXPECT_NO_THROW(ResourceLocation("/x"));
}

TEST_F(ResourceLocationFilesPosixTest, RemovedWorkingDirectoryHindersAbsoluteLocations)
{
    fs::create_directory(native("gone"));
    const ScopedWorkingDirectory here(native("gone"));
    ResourceLocation absolute = at("x");
    fs::remove(native("gone"));
    EXPECT_EQ("getcwd()", textOf<OperationFailedException>([] { ResourceLocation("x").toAbsolute(); }));
    EXPECT_EQ("getcwd()", textOf<OperationFailedException>([] { ResourceLocation("/x"); }));
    EXPECT_EQ("getcwd()", textOf<OperationFailedException>([&] { absolute.toAbsolute(); }));
    EXPECT_FALSE(ResourceLocation("x").isExistent());
    EXPECT_FALSE(absolute.isExistent());
}

TEST_F(ResourceLocationFilesPosixTest, WorkingDirectoryThatNoLocationHoldsHindersRelativeLocationsOnly)
{
    for (const char* name : {"a\\b", "a\"b", "x:y", "d/q\"/e"}) {
        SCOPED_TRACE(name);
        fs::create_directories(native(name));
        const ScopedWorkingDirectory here(native(name));
        mScratch.write("f", "x");
        EXPECT_EQ("getcwd()", textOf<OperationFailedException>([] { ResourceLocation("x").toAbsolute(); }));
        EXPECT_EQ(1u, at("f").toAbsolute().size());
        ResourceLocation("made").createDir();
        EXPECT_TRUE(fs::is_directory(native(name) / "made")) << "relative paths need no text of the directory";
        EXPECT_NE(std::string::npos, System::instance().getCurrentWorkingDir().find(mScratch.location()));
    }
}

TEST_F(ResourceLocationFilesPosixTest, DirectoryThatCannotBeReadThrowsTheSystemsTextAlone)
{
    mScratch.write("d/f", "x");
    const auto list = [&] {
        const bool able = test::letCallFail(SYS_getdents64, EIO);
        const std::string text = textOf<IOException>([&] { at("d").getDirList(false); });
        std::_Exit(!able ? 2 : text == "Input/output error" ? 0 : 1);
    };
    EXPECT_EXIT(list(), testing::ExitedWithCode(0), "");
}

TEST_F(ResourceLocationFilesPosixTest, EveryOperationClosesWhatItOpens)
{
    mScratch.write("f", "x");
    mScratch.write("d/empty", "");
    const int before = openDescriptors();
    at("f").copy(at("g"));
    textOf<IOFailedException>([&] { at("d/empty").copy(at("h")); });
    textOf<IOFailedException>([&] { at("f").copy(at("missing/h")); });
    at("g").move(at("d"));
    at("f").size();
    textOf<FileNotReadableException>([&] { at("d").size(); });
    getFilesRecursively(at(""));
    EXPECT_EQ(before, openDescriptors());
}

} // namespace KelvoBase
