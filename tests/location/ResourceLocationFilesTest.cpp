#include "support/Capture.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
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

const std::string remoteText = R"("ftp://host/x" is not a (locally accessible) file or directory name.)";

class ResourceLocationFilesTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { TraceAreaMgr::startup(); }
    static void TearDownTestSuite() { TraceAreaMgr::teardown(); }

    ResourceLocation at(const std::string& name) const { return ResourceLocation(mScratch.location(name)); }
    fs::path native(const std::string& name) const { return mScratch / name; }
    void makeDirectory(const std::string& name) const { fs::create_directories(native(name)); }

    ScratchDirectory mScratch;
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

Texts pathsOf(const std::vector<ResourceLocation>& locations)
{
    Texts paths;
    for (const ResourceLocation& location : locations) {
        paths.push_back(location.getPath('\\', true));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace

TEST_F(ResourceLocationFilesTest, KindsOfPathsAreTold)
{
    mScratch.write("f", "x");
    makeDirectory("d");
    struct Row
    {
        const char* name;
        bool file, directory;
    };
    for (const Row& row : {Row{"f", true, false}, Row{"d", false, true}, Row{"d/", false, true},
                           Row{"missing", false, false}, Row{"missing/x", false, false}, Row{"f/x", false, false}}) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.file, at(row.name).isFile());
        EXPECT_EQ(row.directory, at(row.name).isDir());
        EXPECT_EQ(row.file || row.directory, at(row.name).isExistent());
    }
}

TEST_F(ResourceLocationFilesTest, LocationsWithoutComponentsAreNothing)
{
    for (const char* text : {"", "ftp://host/", "ftp:", "file:", "C:/.."}) {
        SCOPED_TRACE(text);
        const ResourceLocation location(text);
        EXPECT_FALSE(location.isFile());
        EXPECT_FALSE(location.isDir());
        EXPECT_FALSE(location.isExistent());
        EXPECT_TRUE(location.getDirList(false).empty());
        EXPECT_TRUE(location.getDirList(true).empty());
        EXPECT_NO_THROW(location.remove());
        EXPECT_EQ("", location.getPathWithoutFilename('\\'));
        EXPECT_EQ("ResourceLocation: Could not query a path that is empty.",
                  textOf<OperationFailedException>([&] { location.size(); }));
    }
}

TEST_F(ResourceLocationFilesTest, RemoteLocationsAreRefused)
{
    const ResourceLocation remote("ftp://host/x");
    const ResourceLocation place = at("y");
    mScratch.write("f", "x");
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.isFile(); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.isDir(); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.isExistent(); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.isWritable(false); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.remove(); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.createDir(); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.copy(place); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.move(place); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { at("f").copy(remote); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { at("f").move(remote); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.size(); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.getDirList(false); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { remote.getPathWithoutFilename('/'); }));
    EXPECT_EQ(remoteText, textOf<NotAFileException>([&] { getFilesRecursively(remote); }));
}

TEST_F(ResourceLocationFilesTest, RemoteLocationWithoutPathCannotBeMade)
{
    EXPECT_EQ(R"("ftp://host" is not a (locally accessible) file or directory name.)",
              textOf<NotAFileException>([] { ResourceLocation("ftp://host/").createDir(); }));
}

TEST_F(ResourceLocationFilesTest, WritableFilesAndParentsAreTold)
{
    mScratch.write("f", "x");
    EXPECT_TRUE(at("f").isWritable(false));
    EXPECT_FALSE(at("f").isWritable(true));
    EXPECT_TRUE(at("new").isWritable(true));
    EXPECT_FALSE(at("missing/new").isWritable(false));
    const ScopedWorkingDirectory here(mScratch.path());
    EXPECT_TRUE(ResourceLocation("new").isWritable(false));
    EXPECT_TRUE(ResourceLocation("f").isWritable(false));
    EXPECT_FALSE(ResourceLocation("f").isWritable(true));
}

TEST_F(ResourceLocationFilesTest, RemoveRemovesFilesAndEmptyDirectories)
{
    mScratch.write("f", "x");
    makeDirectory("d");
    at("f").remove();
    at("d").remove();
    EXPECT_TRUE(fs::is_empty(mScratch.path()));
    EXPECT_NO_THROW(at("f").remove());
}

TEST_F(ResourceLocationFilesTest, RemoveOfADirectoryThatIsNotEmptyThrows)
{
    mScratch.write("d/f", "x");
    const ResourceLocation directory = at("d");
    const std::string head = "Could not remove '" + directory.str() + "': ";
    const std::string text = textOf<IOException>([&] { directory.remove(); });
    EXPECT_EQ(head, text.substr(0, head.size()));
    EXPECT_GT(text.size(), head.size());
    EXPECT_EQ("x", contentOf(native("d/f")));
}

TEST_F(ResourceLocationFilesTest, RemoveTracesTwoLines)
{
    const TraceCapture trace(Trace::verbose);
    const ResourceLocation missing = at("missing");
    missing.remove();
    ResourceLocation().remove();
    EXPECT_EQ("|------ removing file:\n|------   " + missing.str() + "\n|------ removing file:\n|------   \n",
              trace.text());
}

TEST_F(ResourceLocationFilesTest, CreateDirMakesAllMissingLevels)
{
    at("a/b/c").createDir();
    EXPECT_TRUE(fs::is_directory(native("a/b/c")));
    EXPECT_NO_THROW(at("a/b/c").createDir());
    const ScopedWorkingDirectory here(native("a"));
    ResourceLocation("r/s/").createDir();
    ResourceLocation("r/../t").createDir();
    EXPECT_TRUE(fs::is_directory(native("a/r/s")));
    EXPECT_TRUE(fs::is_directory(native("a/t")));
}

TEST_F(ResourceLocationFilesTest, CreateDirOnAFileDoesNothing)
{
    mScratch.write("f", "x");
    EXPECT_NO_THROW(at("f").createDir());
    EXPECT_EQ("x", contentOf(native("f")));
}

TEST_F(ResourceLocationFilesTest, CreateDirBelowAFileThrows)
{
    mScratch.write("f", "x");
    const ResourceLocation below = at("f/d");
    const std::string head = "creating directory \"" + below.getPath('\\', true) + "\" failed : ";
    const std::string text = textOf<IOFailedException>([&] { below.createDir(); });
    EXPECT_EQ(head, text.substr(0, head.size()));
    EXPECT_GT(text.size(), head.size());
}

TEST_F(ResourceLocationFilesTest, CopyCopiesEveryByteAndReplaces)
{
    std::string content;
    for (int i = 0; i < 100000; ++i) {
        content += static_cast<char>(i);
    }
    content += "\r\n\n\x1A";
    mScratch.write("from", content);
    mScratch.write("to", std::string(200000, 'x'));
    at("from").copy(at("to"));
    at("from").copy(at("new"));
    EXPECT_EQ(content, contentOf(native("to")));
    EXPECT_EQ(content, contentOf(native("new")));
    EXPECT_EQ(content, contentOf(native("from")));
}

TEST_F(ResourceLocationFilesTest, CopyIntoADirectoryKeepsTheName)
{
    mScratch.write("a.txt", "x");
    makeDirectory("d");
    at("a.txt").copy(at("d"));
    EXPECT_EQ("x", contentOf(native("d/a.txt")));
}

TEST_F(ResourceLocationFilesTest, CopyTracesFourLines)
{
    mScratch.write("f", "x");
    makeDirectory("d");
    const TraceCapture trace(Trace::verbose);
    at("f").copy(at("d"));
    EXPECT_EQ("|------ copy from:\n|------ " + at("f").str() + "\n|------ to:\n|------ " + at("d/f").str() + "\n",
              trace.text());
}

TEST_F(ResourceLocationFilesTest, CopyOfWhatIsNoFileThrows)
{
    makeDirectory("d");
    for (const ResourceLocation& source : {at("d"), at("missing"), ResourceLocation()}) {
        EXPECT_EQ("Cannot find file \"" + source.getPath('\\', true) + "\".",
                  textOf<FileNotFoundException>([&] { source.copy(at("new")); }));
        EXPECT_EQ("Cannot find file \"" + source.getPath('\\', true) + "\".",
                  textOf<FileNotFoundException>([&] { source.move(at("new")); }));
    }
    EXPECT_FALSE(fs::exists(native("new")));
}

TEST_F(ResourceLocationFilesTest, CopyOfAnEmptyFileFailsAfterCreatingTheTarget)
{
    // Required, Q-612
    mScratch.write("empty", "");
    mScratch.write("old", "content");
    for (const char* name : {"new", "old"}) {
        EXPECT_EQ("Copying \"" + at("empty").getPath('\\', true) + "\" to \"" + at(name).getPath('\\', true) +
                      "\" failed : copy operation failed",
                  textOf<IOFailedException>([&] { at("empty").copy(at(name)); }));
        EXPECT_EQ("", contentOf(native(name)));
    }
}

TEST_F(ResourceLocationFilesTest, FailedCopyNamesTheDestinationOfTheCall)
{
    // Required, Q-615
    mScratch.write("empty", "");
    makeDirectory("d");
    EXPECT_EQ("Copying \"" + at("empty").getPath('\\', true) + "\" to \"" + at("d").getPath('\\', true) +
                  "\" failed : copy operation failed",
              textOf<IOFailedException>([&] { at("empty").copy(at("d")); }));
    EXPECT_TRUE(fs::exists(native("d/empty")));
}

TEST_F(ResourceLocationFilesTest, CopyToWhereNothingCanBeOpenedThrows)
{
    mScratch.write("f", "x");
    makeDirectory("d/f");
    const std::string head = "Copying \"" + at("f").getPath('\\', true) + "\"";
    for (const char* name : {"missing/new", "d", "f/x"}) {
        EXPECT_EQ(head + " to \"" + at(name).getPath('\\', true) + "\" failed : could not open destination file",
                  textOf<IOFailedException>([&] { at("f").copy(at(name)); }));
    }
    for (const char* text : {"", "ftp://host/"}) {
        EXPECT_EQ(head + "\" failed : could not open destination file",
                  textOf<IOFailedException>([&] { at("f").copy(ResourceLocation(text)); }));
    }
    EXPECT_EQ("x", contentOf(native("f")));
}

TEST_F(ResourceLocationFilesTest, CopyOntoTheSameFileFailsAndKeepsItsContent)
{
    mScratch.write("d/f", "content");
    const ScopedWorkingDirectory here(mScratch.path());
    for (const ResourceLocation& same : {at("d/f"), at("d"), ResourceLocation("d/f"), ResourceLocation("d/../d/f")}) {
        EXPECT_EQ("Copying \"" + at("d/f").getPath('\\', true) + "\" to \"" + same.getPath('\\', true) +
                      "\" failed : copy operation failed",
                  textOf<IOFailedException>([&] { at("d/f").copy(same); }));
        EXPECT_EQ("content", contentOf(native("d/f")));
    }
}

TEST_F(ResourceLocationFilesTest, MoveRenames)
{
    mScratch.write("f", "x");
    makeDirectory("d");
    const ResourceLocation destination = at("d");
    at("f").move(at("g"));
    EXPECT_FALSE(fs::exists(native("f")));
    EXPECT_EQ("x", contentOf(native("g")));
    at("g").move(destination);
    EXPECT_FALSE(fs::exists(native("g")));
    EXPECT_EQ("x", contentOf(native("d/g")));
}

TEST_F(ResourceLocationFilesTest, MoveOfAnEmptyFileWorks)
{
    mScratch.write("f", "");
    at("f").move(at("g"));
    EXPECT_EQ("", contentOf(native("g")));
}

TEST_F(ResourceLocationFilesTest, MoveTracesFourLines)
{
    mScratch.write("f", "x");
    makeDirectory("d");
    const TraceCapture trace(Trace::verbose);
    at("f").move(at("d"));
    EXPECT_EQ("|------ moving from:\n|------ " + at("f").str() + "\n|------ to:\n|------ " + at("d/f").str() + "\n",
              trace.text());
}

TEST_F(ResourceLocationFilesTest, MoveOntoAnExistingFileFailsAndTouchesNothing)
{
    mScratch.write("f", "new");
    mScratch.write("g", "old");
    mScratch.write("d/f", "older");
    const std::string head = "moving file \"" + at("f").getPath('\\', true) + "\" to \"";
    for (const auto& [destination, named] : {std::pair("g", "g"), std::pair("d", "d/f")}) {
        const std::string expected = head + at(named).getPath('\\', true) + "\" failed : ";
        const std::string text = textOf<IOFailedException>([&, &to = destination] { at("f").move(at(to)); });
        EXPECT_EQ(expected, text.substr(0, expected.size()));
        EXPECT_GT(text.size(), expected.size());
    }
    EXPECT_EQ("new", contentOf(native("f")));
    EXPECT_EQ("old", contentOf(native("g")));
    EXPECT_EQ("older", contentOf(native("d/f")));
}

TEST_F(ResourceLocationFilesTest, SizeIsGivenInBytes)
{
    mScratch.write("f", std::string(12345, '\n'));
    mScratch.write("empty", "");
    EXPECT_EQ(12345u, at("f").size());
    EXPECT_EQ(0u, at("empty").size());
    EXPECT_EQ(12345u, ResourceLocation(at("f").str()).size());
}

TEST_F(ResourceLocationFilesTest, SizeOfWhatCannotBeReadThrows)
{
    makeDirectory("d");
    for (const char* name : {"d", "missing"}) {
        const std::string head = "Cannot read from file \"" + at(name).str() + "\" : Invalid file handle! ";
        const std::string text = textOf<FileNotReadableException>([&] { at(name).size(); });
        EXPECT_EQ(head, text.substr(0, head.size()));
        EXPECT_GT(text.size(), head.size());
    }
}

TEST_F(ResourceLocationFilesTest, ListingNamesTheEntries)
{
    mScratch.write("d/f", "x");
    mScratch.write("d/g.txt", "x");
    makeDirectory("d/sub");
    EXPECT_EQ((Texts{"f", "g.txt", "sub"}), namesOf(at("d").getDirList(false)));
    for (const ResourceLocation& entry : at("d").getDirList(false)) {
        EXPECT_TRUE(entry.isAbsolute());
        EXPECT_TRUE(entry.isExistent()) << entry.str();
    }
}

TEST_F(ResourceLocationFilesTest, ListingOfWhatIsNoDirectoryIsEmpty)
{
    mScratch.write("f", "x");
    makeDirectory("d");
    EXPECT_TRUE(at("f").getDirList(false).empty());
    EXPECT_TRUE(at("missing").getDirList(true).empty());
    EXPECT_TRUE(at("d").getDirList(true).empty());
}

TEST_F(ResourceLocationFilesTest, ListingNeverHoldsNamesWithALeadingDot)
{
    // Required, Q-617
    for (const char* name : {"d/.hidden", "d/..double", "d/...", "d/a.b"}) {
        mScratch.write(name, "x");
    }
    makeDirectory("d/.sub");
    mScratch.write("d/.sub/f", "x");
    EXPECT_EQ(Texts{"a.b"}, namesOf(at("d").getDirList(false)));
    EXPECT_EQ(Texts{"a.b"}, namesOf(at("d").getDirList(true)));
    EXPECT_EQ(Texts{"a.b"}, namesOf(getFilesRecursively(at("d"))));
}

TEST_F(ResourceLocationFilesTest, ListingOfARelativeDirectoryIsRelativeUnlessAskedOtherwise)
{
    mScratch.write("d/f", "x");
    const ScopedWorkingDirectory here(mScratch.path());
    EXPECT_EQ(Texts{R"(d\f)"}, pathsOf(ResourceLocation("d").getDirList(false)));
    EXPECT_EQ(Texts{R"(.\d\f)"}, pathsOf(ResourceLocation("./d").getDirList(false)));
    EXPECT_EQ(Texts{at("d/f").getPath('\\', true)}, pathsOf(ResourceLocation("./d").getDirList(true)));
    EXPECT_FALSE(ResourceLocation("d").getDirList(false)[0].isAbsolute());
    EXPECT_TRUE(ResourceLocation("d").getDirList(true)[0].isAbsolute());
}

TEST_F(ResourceLocationFilesTest, RecursionFindsAllFiles)
{
    for (const char* name : {"d/f", "d/a/g", "d/a/b/c/h", "d/z"}) {
        mScratch.write(name, "x");
    }
    makeDirectory("d/empty");
    const std::vector<ResourceLocation> files = getFilesRecursively(at("d"));
    EXPECT_EQ((Texts{"f", "g", "h", "z"}), namesOf(files));
    ASSERT_EQ(4u, files.size());
    EXPECT_EQ("g", files[2].lastComponent());
    EXPECT_EQ(at("d/a/b/c/h").str(), files[3].str());
    EXPECT_TRUE(getFilesRecursively(at("d/empty")).empty());
}

TEST_F(ResourceLocationFilesTest, RecursionOfARelativeDirectoryIsRelative)
{
    mScratch.write("d/a/g", "x");
    const ScopedWorkingDirectory here(mScratch.path());
    EXPECT_EQ(Texts{R"(d\a\g)"}, pathsOf(getFilesRecursively(ResourceLocation("d"))));
}

TEST_F(ResourceLocationFilesTest, RecursionBelowWhatIsNoDirectoryThrows)
{
    mScratch.write("f", "x");
    for (const ResourceLocation& location : {at("f"), at("missing"), ResourceLocation()}) {
        EXPECT_EQ("ResourceLocation \"" + location.str() + "\" does not point to a directory.",
                  textOf<IOException>([&] { getFilesRecursively(location); }));
    }
}

TEST_F(ResourceLocationFilesTest, PathWithoutFilenameIsCutForFilesOnly)
{
    mScratch.write("d/f", "x");
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"d/f", "d"}, {"d", "d"}, {"d/missing", "d/missing"}, {"f/x", "f/x"}};
    for (const auto& [name, expected] : rows) {
        EXPECT_EQ(at(expected).getPath('\\', true), at(name).getPathWithoutFilename('\\')) << name;
    }
    const ScopedWorkingDirectory here(mScratch.path() / "d");
    EXPECT_EQ("f", ResourceLocation("f").getPathWithoutFilename('\\'));
    EXPECT_EQ(R"(..\d)", ResourceLocation("../d/f").getPathWithoutFilename('\\'));
}

TEST_F(ResourceLocationFilesTest, PathWithoutFilenameFindsNoOtherSeparator)
{
    // Required, Q-618
    mScratch.write("d/f", "x");
    const ResourceLocation file = at("d/f");
    EXPECT_EQ(file.getPath('\\', true), ResourceLocation(file).getPathWithoutFilename('/'));
    const std::string& path = file.getPathWithoutFilename('|');
    EXPECT_EQ(&path, &file.getPath('\\', true)) << "the reference is the path cache";
}

} // namespace KelvoBase
