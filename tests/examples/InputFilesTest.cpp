#include "InputFiles.h"

#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/SHA1.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace seriesstat
{

namespace
{

using KelvoBase::FileNotFoundException;
using KelvoBase::InvalidFileNameException;
using KelvoBase::IOException;
using KelvoBase::NotAFileException;
using KelvoBase::ResourceLocation;
using KelvoBase::test::ScopedWorkingDirectory;
using KelvoBase::test::ScratchDirectory;
using KelvoBase::test::textOf;

std::vector<std::string> namesOf(const std::string& argument, const std::vector<std::string>& suffixes)
{
    std::vector<std::string> names;
    for (const ResourceLocation& file : filesOf(argument, suffixes)) {
        names.push_back(nativePath(file));
    }
    return names;
}

using Names = std::vector<std::string>;

TEST(InputFilesTest, FileStandsForItselfWhateverItsSuffix)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    scratch.write("b.dat", "1\n");
    EXPECT_EQ(Names{"b.dat"}, namesOf("b.dat", {}));
    EXPECT_EQ(Names{"b.dat"}, namesOf("b.dat", {"txt"}));
}

TEST(InputFilesTest, DirectoryStandsForTheSortedFilesBelowIt)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    for (const char* name : {"d/z.txt", "d/a/x.txt", "d/b.dat", "d/a/y/README", "d/.hidden", "d/c.txt"}) {
        scratch.write(name, "1\n");
    }
    const Names all{"d/a/x.txt", "d/a/y/README", "d/b.dat", "d/c.txt", "d/z.txt"};
    EXPECT_EQ(all, namesOf("d", {}));
    EXPECT_EQ(all, namesOf("d/", {}));
    EXPECT_EQ((Names{"./d/a/x.txt", "./d/c.txt", "./d/z.txt"}), namesOf("./d", {"txt"}));
    EXPECT_EQ((Names{"d/a/y/README", "d/b.dat"}), namesOf("d", {"dat", ""}));
}

TEST(InputFilesTest, AbsoluteNamesStayNative)
{
    const ScratchDirectory scratch;
    const std::filesystem::path file = scratch.write("d/a.txt", "1\n");
    EXPECT_EQ(file.generic_string(), nativePath(scratch.location("d/a.txt")));
    EXPECT_EQ(Names{file.generic_string()}, namesOf(file.string(), {}));
    EXPECT_EQ(Names{file.generic_string()}, namesOf((scratch / "d").string(), {}));
    EXPECT_EQ(Names{file.generic_string()}, namesOf(scratch.location("d"), {}));
}

TEST(InputFilesTest, FaultsNameTheArgument)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    std::filesystem::create_directories(scratch / "bare/below");
    EXPECT_EQ("Cannot find file \"none\".", textOf<FileNotFoundException>([] { filesOf("none", {}); }));
    EXPECT_EQ("\"bare\" holds no files.", textOf<IOException>([] { filesOf("bare", {}); }));
    EXPECT_EQ("\"bare\" holds no files with such a suffix.", textOf<IOException>([] { filesOf("bare", {"txt"}); }));
    EXPECT_EQ("\"http://host/x\" is not a (locally accessible) file or directory name.",
              textOf<NotAFileException>([] { filesOf("http://host/x", {}); }));
    EXPECT_EQ("File name is invalid: \"http://host\": there is no path behind the host",
              textOf<InvalidFileNameException>([] { filesOf("http://host", {}); }));
}

TEST(InputFilesTest, FileFoundInADirectoryIsRead)
{
    const ScratchDirectory scratch;
    scratch.write("d/a.txt", "4\n5\n");
    for (const ResourceLocation& file : filesOf(scratch.path().string(), {})) {
        const std::vector<DoubleDouble> values = readSeriesFile(file, {}).values;
        ASSERT_EQ(2U, values.size());
        EXPECT_EQ(4, values[0].high);
        EXPECT_EQ(5, values[1].high);
    }
}

TEST(InputFilesTest, DigestIsThatOfAllBytes)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    std::string longText = "1\n";
    for (int i = 0; i < 100000; ++i) {
        longText += "# " + std::to_string(i) + "\r\n";
    }
    KelvoBase::SHA1 sha1;
    sha1.input(longText.begin(), longText.end());
    const std::vector<std::pair<std::string, std::string>> rows{
        {"1\n", "e5fa44f2b31c1fb553b6021e7360d07d5d91ff5e"},
        {"1", "356a192b7913b04c54574d18c28d46e6395428ab"},
        {"\xEF\xBB\xBF"
         "1\n",
         "6325fb77195473e20378fd0655476c91d4dd7b7c"},
        {longText, sha1.getResult(false)},
    };
    for (const auto& [content, digest] : rows) {
        scratch.write("a.txt", content);
        EXPECT_EQ(digest, readSeriesFile("a.txt", {}).digest) << content.substr(0, 10);
    }
}

TEST(InputFilesTest, ReadingTellsHowManyBytesThereWere)
{
    const ScratchDirectory scratch;
    const ScopedWorkingDirectory inside(scratch.path());
    const std::size_t size = 100000;
    scratch.write("large.txt", "1" + std::string(size - 1, ' '));
    std::vector<std::uintmax_t> told;
    readSeriesFile("large.txt", {}, [&](std::uintmax_t bytes) { told.push_back(bytes); });
    EXPECT_LT(2u, told.size());
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(size, told.back());
}

TEST(InputFilesTest, PathOfAFileThatIsNotThereYetIsNative)
{
    EXPECT_EQ("d/new.xml", pathOf("d\\new.xml"));
    EXPECT_EQ("d/new.xml", pathOf("d/new.xml/"));
    EXPECT_EQ("", pathOf(""));
    EXPECT_EQ("\"http://host/x\" is not a (locally accessible) file or directory name.",
              textOf<NotAFileException>([] { pathOf("http://host/x"); }));
}

} // namespace

} // namespace seriesstat
