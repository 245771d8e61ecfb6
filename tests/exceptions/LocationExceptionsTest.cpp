#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace KelvoBase;
using KelvoBase::test::textOf;

namespace
{

const char* const remoteText = "ftp://host/dir/a.txt";

std::string notAFile(const std::string& location)
{
    return "\"" + location + "\" is not a (locally accessible) file or directory name.";
}

// Reaches the private field for reading: access is not checked in an explicit instantiation.
struct NotAFileLocation
{
    using type = ResourceLocation NotAFileException::*;
    friend type memberOf(NotAFileLocation);
};
template <typename Field, typename Field::type member>
struct Reach
{
    friend typename Field::type memberOf(Field) { return member; }
};
template struct Reach<NotAFileLocation, &NotAFileException::location>;

template <typename E>
concept HasLocation = requires(const E& e)
{
    e.location;
};
template <typename E>
concept HasFileName = requires(const E& e)
{
    e.fileName;
};
template <typename E>
concept HasFileName1 = requires(const E& e)
{
    e.fileName1;
};
template <typename E>
concept HasSystemError = requires(const E& e)
{
    e.systemError;
};

} // namespace

TEST(LocationExceptions, FileNotReadableShowsTheLocationString)
{
    struct Row
    {
        const char* location;
        const char* systemError;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"C:\\dir\\a.txt", "Permission denied",
         "Cannot read from file \"file://localhost/C:\\dir\\a.txt\" : Permission denied"},
        {"C:\\dir\\a.txt", "", "Cannot read from file \"file://localhost/C:\\dir\\a.txt\""},
        {"dir/a.txt", "", "Cannot read from file \"dir\\a.txt\""},
        {"", "x", "Cannot read from file \"\" : x"},
        {"ftp://host/dir/a.txt", " ", "Cannot read from file \"ftp://host/dir/a.txt\" :  "},
    };
    for (const Row& row : rows) {
        const FileNotReadableException e(ResourceLocation(row.location), row.systemError);
        EXPECT_STREQ(row.expected, e.what());
        EXPECT_EQ(ResourceLocation(row.location).str(), e.getFileName());
        EXPECT_EQ(row.systemError, e.getSystemError());
    }
}

TEST(LocationExceptions, IOFailedOnOneLocationShowsItsPath)
{
    struct Row
    {
        const char* operation;
        const char* systemError;
        const char* location;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"creating directory", "File exists", "C:\\dir\\a", "creating directory \"C:\\dir\\a\" failed : File exists"},
        {"creating directory", "", "C:\\dir\\a", "creating directory \"C:\\dir\\a\" failed"},
        {"copy", "", "dir/a.txt", "copy \"dir\\a.txt\" failed"},
        {"copy", "x", "\\\\server\\share\\a", "copy \"\\\\server\\share\\a\" failed : x"},
        {"", "", "", " \"\" failed"},
    };
    for (const Row& row : rows) {
        const IOFailedException e(row.operation, row.systemError, ResourceLocation(row.location));
        EXPECT_STREQ(row.expected, e.what());
        EXPECT_EQ(ResourceLocation(row.location).str(), e.getFileName1());
        EXPECT_EQ("", e.getFileName2());
        EXPECT_EQ(row.systemError, e.getSystemError());
    }
}

TEST(LocationExceptions, IOFailedOnTwoLocationsShowsBothPaths)
{
    const ResourceLocation one("C:\\one");
    const ResourceLocation two("two/b");
    const IOFailedException with("Copying", "disk full", one, two);
    EXPECT_STREQ("Copying \"C:\\one\" to \"two\\b\" failed : disk full", with.what());
    EXPECT_EQ("file://localhost/C:\\one", with.getFileName1());
    EXPECT_EQ("two\\b", with.getFileName2());
    EXPECT_EQ("disk full", with.getSystemError());
    EXPECT_STREQ("Copying \"C:\\one\" to \"two\\b\" failed", IOFailedException("Copying", "", one, two).what());
}

TEST(LocationExceptions, IOFailedShowsPathsWhileAccessorsGiveLocationStrings)
{
    // Required, Q-304
    const IOFailedException e("op", "", ResourceLocation("C:\\a"), ResourceLocation("\\\\host\\b"));
    EXPECT_STREQ("op \"C:\\a\" to \"\\\\host\\b\" failed", e.what());
    EXPECT_EQ("file://localhost/C:\\a", e.getFileName1());
    EXPECT_EQ("smb://host/b", e.getFileName2());
}

TEST(LocationExceptions, EmptySecondLocationLeavesTwoQuotationMarks)
{
    // Required, Q-305
    const IOFailedException e("copy", "", ResourceLocation("a.txt"), ResourceLocation());
    EXPECT_STREQ("copy \"a.txt\"\" failed", e.what());
    EXPECT_EQ("a.txt", e.getFileName1());
    EXPECT_EQ(ResourceLocation().str(), e.getFileName2());
    EXPECT_STREQ("copy \"a.txt\"\" failed : x",
                 IOFailedException("copy", "x", ResourceLocation("a.txt"), ResourceLocation()).what());
}

TEST(LocationExceptions, EmptySecondLocationIsNotAskedForItsPathThoughRemote)
{
    const ResourceLocation emptyRemote("ftp://host/");
    ASSERT_TRUE(emptyRemote.empty());
    ASSERT_FALSE(emptyRemote.isLocalFile());
    const IOFailedException e("copy", "", ResourceLocation("a.txt"), emptyRemote);
    EXPECT_STREQ("copy \"a.txt\"\" failed", e.what());
    EXPECT_EQ(emptyRemote.str(), e.getFileName2());
}

TEST(LocationExceptions, OneObjectMayBeBothLocations)
{
    const ResourceLocation location("C:\\a");
    EXPECT_STREQ("move \"C:\\a\" to \"C:\\a\" failed", IOFailedException("move", "", location, location).what());
}

TEST(LocationExceptions, IOFailedOnARemoteLocationThrowsNotAFile)
{
    const ResourceLocation local("C:\\a");
    const ResourceLocation remote(remoteText);
    EXPECT_EQ(notAFile(remoteText), textOf<NotAFileException>([&] { throw IOFailedException("op", "x", remote); }));
    EXPECT_EQ(notAFile(remoteText),
              textOf<NotAFileException>([&] { throw IOFailedException("op", "x", remote, local); }));
    EXPECT_EQ(notAFile(remoteText),
              textOf<NotAFileException>([&] { throw IOFailedException("op", "x", local, remote); }));
    EXPECT_EQ(notAFile(remoteText),
              textOf<NotAFileException>([&] { throw IOFailedException("op", "x", remote, ResourceLocation()); }));
}

TEST(LocationExceptions, OfTwoRemoteLocationsTheSecondIsReported)
{
    // Required, Q-306
    const ResourceLocation first("ftp://one/a");
    const ResourceLocation second("ftp://two/b");
    EXPECT_EQ(notAFile("ftp://two/b"),
              textOf<NotAFileException>([&] { throw IOFailedException("op", "", first, second); }));
}

TEST(LocationExceptions, NotAFileShowsTheLocationString)
{
    for (const char* text : {"ftp://host/dir/a.txt", "http://user@host:80/x", "dir\\a"}) {
        EXPECT_EQ(notAFile(text), textOf<NotAFileException>([&] { throw NotAFileException(ResourceLocation(text)); }));
    }
}

TEST(LocationExceptions, NotAFileHoldsACopyOfTheLocation)
{
    auto location = std::make_unique<ResourceLocation>("ftp://user%secret@host:21/dir/a.txt");
    const NotAFileException original(*location);
    location.reset();
    const NotAFileException copy(original);
    const ResourceLocation& held = copy.*memberOf(NotAFileLocation());
    EXPECT_EQ("ftp", held.getProtocol());
    EXPECT_EQ("secret", held.getPassword());
    EXPECT_EQ("a.txt", held.lastComponent());
}

TEST(LocationExceptions, CopiesCarryTextAndFields)
{
    auto original = std::make_unique<IOFailedException>("Copying", "disk full", ResourceLocation("C:\\one"),
                                                        ResourceLocation("C:\\two"));
    const IOFailedException copy(*original);
    original.reset();
    EXPECT_STREQ("Copying \"C:\\one\" to \"C:\\two\" failed : disk full", copy.what());
    EXPECT_EQ("file://localhost/C:\\one", copy.getFileName1());
    EXPECT_EQ("file://localhost/C:\\two", copy.getFileName2());
    EXPECT_EQ("disk full", copy.getSystemError());
    FileNotReadableException assigned(ResourceLocation("b"), "");
    assigned = FileNotReadableException(ResourceLocation("a"), "x");
    EXPECT_STREQ("Cannot read from file \"a\" : x", assigned.what());
    EXPECT_EQ("a", assigned.getFileName());
    EXPECT_EQ("x", assigned.getSystemError());
}

TEST(LocationExceptions, AccessorsReturnReferencesToTheFields)
{
    static_assert(std::is_same_v<const std::string&, decltype(std::declval<FileNotReadableException>().getFileName())>);
    static_assert(std::is_same_v<const std::string&, decltype(std::declval<IOFailedException>().getFileName2())>);
    const IOFailedException e("op", "x", ResourceLocation("a"));
    EXPECT_EQ(&e.getFileName1(), &e.getFileName1());
    EXPECT_EQ(&e.getSystemError(), &e.getSystemError());
    EXPECT_NE(&e.getFileName1(), &e.getFileName2());
}

TEST(LocationExceptions, FieldsHaveNoPublicAccess)
{
    static_assert(!HasLocation<NotAFileException>);
    static_assert(!HasFileName<FileNotReadableException> && !HasSystemError<FileNotReadableException>);
    static_assert(!HasFileName1<IOFailedException> && !HasSystemError<IOFailedException>);
}
