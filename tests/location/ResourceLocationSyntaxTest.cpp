#include "support/FakePlatform.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

// The drive is C, the working directory C:\lab\dir.

namespace KelvoBase
{

namespace
{

using test::FakeSystem;
using test::textOf;

struct Fields
{
    std::string text;
    std::string protocol;
    std::string host;
    std::string port;
    std::string user;
    std::string password;
    std::vector<std::string> components;
    bool absolute;
    std::string str;
    std::string path;
};

std::string listing(const Fields& fields)
{
    std::string text = "Protocol: " + fields.protocol + "\nHostname: " + fields.host + "\nPort:     " + fields.port +
                       "\nUserName: " + fields.user + "\nPassword: " + fields.password + "\n";
    for (std::size_t i = 0; i < fields.components.size(); ++i) {
        text += "Path[" + std::to_string(i) + "]:    " + fields.components[i] + "\n";
    }
    return text + "isAbsolute:" + (fields.absolute ? "1" : "0") + "\nfullPath:  " + fields.path;
}

void expectFields(const ResourceLocation& location, const Fields& row)
{
    EXPECT_EQ(listing(row), location.print());
    EXPECT_EQ(row.protocol, location.getProtocol());
    EXPECT_EQ(row.host, location.getHostName());
    EXPECT_EQ(row.port, location.getPort());
    EXPECT_EQ(row.user, location.getUserName());
    EXPECT_EQ(row.password, location.getPassword());
    EXPECT_EQ(row.absolute, location.isAbsolute());
    EXPECT_EQ(row.components.empty(), location.empty());
    EXPECT_EQ(row.components.empty() ? "" : row.components.back(), location.lastComponent());
    EXPECT_EQ(row.str, location.str());
    EXPECT_EQ(row.path, location.getPath('\\', true));
}

void expectRows(const std::vector<Fields>& rows)
{
    for (const Fields& row : rows) {
        SCOPED_TRACE(row.text);
        expectFields(ResourceLocation(row.text), row);
        expectFields(ResourceLocation(row.text.c_str()), row);
    }
}

/// The components of a location, as `print` tells them.
std::vector<std::string> componentsOf(const ResourceLocation& location)
{
    std::vector<std::string> components;
    const std::string text = location.print();
    for (std::size_t i = 0;; ++i) {
        const std::string head = "\nPath[" + std::to_string(i) + "]:    ";
        const std::size_t begin = text.find(head);
        if (begin == std::string::npos) {
            return components;
        }
        const std::size_t from = begin + head.size();
        components.push_back(text.substr(from, text.find('\n', from) - from));
    }
}

using Components = std::vector<std::string>;

} // namespace

TEST(ResourceLocationSyntaxTest, LocalPathsAreParsed)
{
    expectRows({
        {R"(C:\dir\file.txt)",
         "",
         "",
         "",
         "",
         "",
         {"C:", "dir", "file.txt"},
         true,
         R"(file://localhost/C:\dir\file.txt)",
         R"(C:\dir\file.txt)"},
        {"C:/dir/../x/./y/", "", "", "", "", "", {"C:", "x", "y"}, true, R"(file://localhost/C:\x\y)", R"(C:\x\y)"},
        {"/dir/file",
         "",
         "",
         "",
         "",
         "",
         {"C:", "dir", "file"},
         true,
         R"(file://localhost/C:\dir\file)",
         R"(C:\dir\file)"},
        {R"(\dir\file)",
         "",
         "",
         "",
         "",
         "",
         {"C:", "dir", "file"},
         true,
         R"(file://localhost/C:\dir\file)",
         R"(C:\dir\file)"},
        {"/", "", "", "", "", "", {"C:"}, true, "file://localhost/C:", "C:"},
        {R"(\)", "", "", "", "", "", {"C:"}, true, "file://localhost/C:", "C:"},
        {"/x", "", "", "", "", "", {"C:", "x"}, true, R"(file://localhost/C:\x)", R"(C:\x)"},
        {"C:", "", "", "", "", "", {"C:"}, true, "file://localhost/C:", "C:"},
        {"foo/bar/", "", "", "", "", "", {"foo", "bar", ""}, false, R"(foo\bar\)", R"(foo\bar\)"},
        {"foo//bar", "", "", "", "", "", {"foo", "", "bar"}, false, R"(foo\\bar)", R"(foo\\bar)"},
        {"./a/../b", "", "", "", "", "", {".", "a", "..", "b"}, false, R"(.\a\..\b)", R"(.\a\..\b)"},
        {R"(.\a\..\b)", "", "", "", "", "", {".", "a", "..", "b"}, false, R"(.\a\..\b)", R"(.\a\..\b)"},
        {"name", "", "", "", "", "", {"name"}, false, "name", "name"},
        {"a:b/c", "", "", "", "", "", {"a:b", "c"}, true, R"(file://localhost/a:b\c)", R"(a:b\c)"},
        {"C:foo", "", "", "", "", "", {"C:foo"}, true, "file://localhost/C:foo", "C:foo"},
        {"a b/\xC3\xA4\n", "", "", "", "", "", {"a b", "\xC3\xA4\n"}, false, "a b\\\xC3\xA4\n", "a b\\\xC3\xA4\n"},
    });
}

TEST(ResourceLocationSyntaxTest, LocalProtocolsAreParsed)
{
    expectRows({
        {"file:///C:/dir/file",
         "file",
         "",
         "",
         "",
         "",
         {"C:", "dir", "file"},
         true,
         R"(file://localhost/C:\dir\file)",
         R"(C:\dir\file)"},
        {"file:///dir/file",
         "file",
         "",
         "",
         "",
         "",
         {"C:", "dir", "file"},
         true,
         R"(file://localhost/C:\dir\file)",
         R"(C:\dir\file)"},
        {"file://localhost/C:\\dir\\x",
         "file",
         "localhost",
         "",
         "",
         "",
         {"C:", "dir", "x"},
         true,
         R"(file://localhost/C:\dir\x)",
         R"(C:\dir\x)"},
        {"file:rel/x", "file", "", "", "", "", {"rel", "x"}, false, R"(rel\x)", R"(rel\x)"},
        {"file:/x", "file", "", "", "", "", {"C:", "x"}, true, R"(file://localhost/C:\x)", R"(C:\x)"},
        {"file:C:/x", "file", "", "", "", "", {"C:", "x"}, true, R"(file://localhost/C:\x)", R"(C:\x)"},
        {"file:", "file", "", "", "", "", {}, false, "", ""},
        {R"(\\server\share\dir)",
         "smb",
         "server",
         "",
         "",
         "",
         {"share", "dir"},
         true,
         R"(smb://server/share\dir)",
         R"(\\server\share\dir)"},
        {"//server/share/dir",
         "smb",
         "server",
         "",
         "",
         "",
         {"share", "dir"},
         true,
         R"(smb://server/share\dir)",
         R"(\\server\share\dir)"},
        {"smb://server/share/x",
         "smb",
         "server",
         "",
         "",
         "",
         {"share", "x"},
         true,
         R"(smb://server/share\x)",
         R"(\\server\share\x)"},
        {"smb://server/C:/x",
         "smb",
         "server",
         "",
         "",
         "",
         {"C:", "x"},
         true,
         R"(smb://server/C:\x)",
         R"(\\server\C:\x)"},
        {"smb:C:/x", "smb", "", "", "", "", {"C:", "x"}, true, R"(smb://localhost/C:\x)", R"(\\\C:\x)"},
        {"smb:a/b", "smb", "", "", "", "", {"a", "b"}, false, R"(\\\a\b)", R"(\\\a\b)"},
        {":x/y", "", "", "", "", "", {"x", "y"}, false, R"(x\y)", R"(x\y)"},
        {":", "", "", "", "", "", {}, false, "", ""},
        {"://host/x", "smb", "host", "", "", "", {"x"}, true, "smb://host/x", R"(\\host\x)"},
    });
}

TEST(ResourceLocationSyntaxTest, RemoteLocationsAreParsed)
{
    expectRows({
        {"ftp://user%pw@host:8080/a/b/",
         "ftp",
         "host",
         "8080",
         "user",
         "pw",
         {"a", "b"},
         true,
         "ftp://user%pw@host:8080/a/b",
         "/a/b"},
        {"ftp://user@host/a", "ftp", "host", "", "user", "", {"a"}, true, "ftp://user@host/a", "/a"},
        {"ftp://user%@host:/a", "ftp", "host", "", "user", "", {"a"}, true, "ftp://user@host/a", "/a"},
        {"ftp://%pw@host/a", "ftp", "host", "", "", "pw", {"a"}, true, "ftp://host/a", "/a"},
        {"ftp://u%p%q@h@i:1:2/a", "ftp", "h@i", "1:2", "u", "p%q", {"a"}, true, "ftp://u%p%q@h@i:1:2/a", "/a"},
        {"ftp://u:v@h:1/a", "ftp", "h", "1", "u:v", "", {"a"}, true, "ftp://u:v@h:1/a", "/a"},
        {"ftp:foo/bar", "ftp", "", "", "", "", {"foo", "bar"}, false, "foo/bar", "foo/bar"},
        {"ftp:/foo/bar", "ftp", "", "", "", "", {"foo", "bar"}, true, "ftp://localhost/foo/bar", "/foo/bar"},
        {"ftp://host/", "ftp", "host", "", "", "", {}, true, "ftp://host", ""},
        {"ftp:///a", "ftp", "", "", "", "", {"a"}, true, "ftp://localhost/a", "/a"},
        {"ftp://h/C:/x", "ftp", "h", "", "", "", {"C:", "x"}, true, "ftp://h/C:/x", "/C:/x"},
        {"http://h/a//./b/../c", "http", "h", "", "", "", {"a", "c"}, true, "http://h/a/c", "/a/c"},
        {"http://h/a/../..", "http", "h", "", "", "", {".."}, true, "http://h/..", "/.."},
        {"FILE:///C:/x", "FILE", "", "", "", "", {"C:", "x"}, true, "FILE://localhost/C:/x", "/C:/x"},
        {"SMB://h/x", "SMB", "h", "", "", "", {"x"}, true, "SMB://h/x", "/x"},
        {"ftp:\\\\host/a", "ftp", "host", "", "", "", {"a"}, true, "ftp://host/a", "/a"},
    });
}

TEST(ResourceLocationSyntaxTest, ColonMeansADriveInSecondPlaceOnly)
{
    // Required, Q-602
    expectRows({
        {"/C:/x", "/C", "", "", "", "", {"x"}, true, "/C://localhost/x", "/x"},
        {"//host:80/x", "//host", "", "", "", "", {"80", "x"}, false, "80/x", "80/x"},
        {"dir/a:b", "dir/a", "", "", "", "", {"b"}, false, "b", "b"},
        {"::x", "", "", "", "", "", {":x"}, false, ":x", ":x"},
        {"/:x", "", "", "", "", "", {"C:", ":x"}, true, R"(file://localhost/C:\:x)", R"(C:\:x)"},
    });
}

TEST(ResourceLocationSyntaxTest, ColonInThirdPlaceBehindASlashIsADriveInAnAppendedPath)
{
    ResourceLocation location;
    location.append("/D:/x");
    EXPECT_EQ((Components{"D:", "x"}), componentsOf(location));
    EXPECT_TRUE(location.isAbsolute());
}

TEST(ResourceLocationSyntaxTest, EmptyTextGivesAnEmptyLocation)
{
    EXPECT_TRUE(ResourceLocation("") == ResourceLocation());
    expectFields(ResourceLocation(""), {"", "", "", "", "", "", {}, false, "", ""});
    expectFields(ResourceLocation(), {"", "", "", "", "", "", {}, false, "", ""});
}

TEST(ResourceLocationSyntaxTest, NullPointerIsRefused)
{
    const char* const nothing = nullptr;
    EXPECT_THROW(ResourceLocation{nothing}, std::logic_error);
}

TEST(ResourceLocationSyntaxTest, AuthorityWithoutASeparatorBehindItThrows)
{
    // Required, Q-601
    for (const char* text : {"ftp://host", "//server", R"(\\server)", "ftp://", "//", R"(\\)", R"(smb:\\h)"}) {
        EXPECT_EQ("basic_string::substr", textOf<std::out_of_range>([&] { ResourceLocation{text}; })) << text;
    }
}

TEST(ResourceLocationSyntaxTest, RemoteRootRendersAsATextThatCannotBeParsed)
{
    const ResourceLocation location("ftp://host/");
    EXPECT_EQ("ftp://host", location.str());
    EXPECT_EQ("basic_string::substr", textOf<std::out_of_range>([&] { ResourceLocation{location.str()}; }));
}

TEST(ResourceLocationSyntaxTest, AuthorityEndsAtTheFirstSlashEvenBehindABackslash)
{
    // Required, Q-604
    expectRows({
        {R"(\\server\share/dir)",
         "smb",
         R"(server\share)",
         "",
         "",
         "",
         {"dir"},
         true,
         R"(smb://server\share/dir)",
         R"(\\server\share\dir)"},
        {R"(\\server\share\dir/)",
         "smb",
         R"(server\share\dir)",
         "",
         "",
         "",
         {},
         true,
         R"(smb://server\share\dir/)",
         ""},
        {R"(//server\share\dir)",
         "smb",
         "server",
         "",
         "",
         "",
         {"share", "dir"},
         true,
         R"(smb://server/share\dir)",
         R"(\\server\share\dir)"},
    });
}

TEST(ResourceLocationSyntaxTest, MixedDoubleSeparatorIsNone)
{
    expectFields(
        ResourceLocation(R"(/\server/x)"),
        {"", "", "", "", "", "", {"C:", "server", "x"}, true, R"(file://localhost/C:\server\x)", R"(C:\server\x)"});
    expectFields(
        ResourceLocation(R"(\/server/x)"),
        {"", "", "", "", "", "", {"C:", "server", "x"}, true, R"(file://localhost/C:\server\x)", R"(C:\server\x)"});
}

TEST(ResourceLocationSyntaxTest, ParentOfNothingIsTakenBackByTheNextOne)
{
    // Required, Q-605
    expectRows({
        {"C:/..", "", "", "", "", "", {}, true, "file://localhost/", ""},
        {"C:/../..", "", "", "", "", "", {".."}, true, "file://localhost/..", ".."},
        {"C:/../../..", "", "", "", "", "", {}, true, "file://localhost/", ""},
        {"C:/../../../../x", "", "", "", "", "", {"..", "x"}, true, R"(file://localhost/..\x)", R"(..\x)"},
        {"C:/a/../../b", "", "", "", "", "", {"b"}, true, "file://localhost/b", "b"},
    });
}

TEST(ResourceLocationSyntaxTest, QuotesProtectSlashes)
{
    const std::vector<std::pair<std::string, Components>> rows = {
        {R"("x/y"/z)", {"x/y", "z"}},
        {R"(x"/"y/z)", {"x/y", "z"}},
        {R"("x\y"/z)", {"x/y", "z"}},
        {R"("x/y)", {"x/y"}},
        {R"("")", {""}},
        {R"(""/"")", {"", ""}},
        {R"(a/")", {"a", ""}},
        {R"(a"b"c)", {"abc"}},
        {R"("a/b""/c"/d)", {"a/b/c", "d"}},
    };
    for (const auto& [text, components] : rows) {
        EXPECT_EQ(components, componentsOf(ResourceLocation(text))) << text;
    }
    EXPECT_EQ(R"(x/y\z)", ResourceLocation(R"("x/y"/z)").str());
    EXPECT_EQ("/x/y/z", ResourceLocation(R"(ftp:/"x/y"/z)").getPath('\\', true));
}

TEST(ResourceLocationSyntaxTest, EscapesExistInRemotePathsOnly)
{
    EXPECT_EQ("a\nb", ResourceLocation(R"(ftp:a\nb)").getPath('/', true));
    EXPECT_EQ((Components{R"(a\b/c"d)"}), componentsOf(ResourceLocation(R"(ftp:a\\b\/c\"d)")));
    EXPECT_EQ((Components{"a", R"("/)", "b"}), componentsOf(ResourceLocation(R"(ftp:a/\""/"/b)")));
    EXPECT_EQ((Components{"a", "nb"}), componentsOf(ResourceLocation(R"(file:a\nb)")));
    EXPECT_EQ((Components{"a", "", "b"}), componentsOf(ResourceLocation(R"(a\\b)")));
}

TEST(ResourceLocationSyntaxTest, BrokenEscapesAreRefusedWithThePathAsItCame)
{
    const std::vector<std::pair<std::string, std::string>> rows = {
        {R"(ftp://h/a\b)", R"(File name is invalid: "/a\b": unknown escape sequence)"},
        {R"(ftp:a\b)", R"(File name is invalid: "a\b": unknown escape sequence)"},
        {R"(ftp:a/b\)", R"(File name is invalid: "a/b\": cannot end with escape)"},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(expected, textOf<InvalidFileNameException>([&, &input = text] { ResourceLocation{input}; }));
    }
}

TEST(ResourceLocationSyntaxTest, ComponentsInFrontOfABrokenEscapeStay)
{
    ResourceLocation location("ftp:x");
    EXPECT_EQ(R"(File name is invalid: "/a/../b\c/d": unknown escape sequence)",
              textOf<InvalidFileNameException>([&] { location.append(R"(/a/../b\c/d)"); }));
    EXPECT_EQ((Components{"x", "", "a", ".."}), componentsOf(location));
    EXPECT_TRUE(location.isAbsolute());
}

TEST(ResourceLocationSyntaxTest, AppendAddsBehindThePresentComponents)
{
    ResourceLocation location("a/b");
    EXPECT_EQ(&location, &location.append("c//d/"));
    EXPECT_EQ((Components{"a", "b", "c", "", "d", ""}), componentsOf(location));
    EXPECT_FALSE(location.append("").isAbsolute());
    EXPECT_EQ(R"(a\b\c\\d\)", location.str());
}

TEST(ResourceLocationSyntaxTest, AppendToAnAbsoluteLocationNormalisesIt)
{
    ResourceLocation location("C:/a");
    location.append("../b/./c/");
    EXPECT_EQ(R"(C:\b\c)", location.getPath('\\', true));
}

TEST(ResourceLocationSyntaxTest, AppendedLeadingSeparatorMakesTheWholeAbsolute)
{
    // Required, Q-603
    ResourceLocation relative("a/./b");
    relative.append("/x");
    EXPECT_EQ((Components{"a", "b", "C:", "x"}), componentsOf(relative));
    EXPECT_TRUE(relative.isAbsolute());

    ResourceLocation drive("a");
    drive.append("D:x");
    EXPECT_EQ((Components{"a", "D:x"}), componentsOf(drive));
    EXPECT_TRUE(drive.isAbsolute());

    ResourceLocation remote("ftp:a");
    remote.append("/x");
    EXPECT_EQ((Components{"a", "x"}), componentsOf(remote));
    EXPECT_TRUE(remote.isAbsolute());
}

TEST(ResourceLocationSyntaxTest, ShiftOperatorAppendsThePathText)
{
    ResourceLocation location("a");
    EXPECT_EQ(&location, &(location << ResourceLocation("ftp://u@h:1/x") << ResourceLocation("b/c")));
    EXPECT_EQ((Components{"a", "C:", "x", "b", "c"}), componentsOf(location));
    EXPECT_EQ("", location.getProtocol());
    EXPECT_EQ("", location.getHostName());

    ResourceLocation share("C:/a");
    share << ResourceLocation(R"(\\server\x)");
    EXPECT_EQ(R"(C:\a\C:\server\x)", share.getPath('\\', true));
}

TEST(ResourceLocationSyntaxTest, LocationCanBeAppendedToItself)
{
    ResourceLocation relative("a/b");
    relative << relative;
    EXPECT_EQ(R"(a\b\a\b)", relative.str());
    relative.append(relative.getPath('/', true));
    EXPECT_EQ(R"(a\b\a\b\a\b\a\b)", relative.str());
}

TEST(ResourceLocationSyntaxTest, PathTakesTheSeparatorUnlessItIsRemote)
{
    const ResourceLocation local("C:/a/b");
    EXPECT_EQ("C:|a|b", local.getPath('|', true));
    EXPECT_EQ("C:|a|b", local.getPath('|', false));
    EXPECT_EQ("C:|a|b", local.getFilePath('|'));
    const ResourceLocation share("//server/a/b");
    EXPECT_EQ("||server|a|b", share.getPath('|', true));
    EXPECT_EQ("a|b", share.getPath('|', false));
    EXPECT_EQ("||server|a|b", share.getFilePath('|'));
    const ResourceLocation remote("ftp://h/a/b");
    EXPECT_EQ("/a/b", remote.getPath('|', true));
    EXPECT_EQ("/a/b", remote.getPath('|', false));
}

TEST(ResourceLocationSyntaxTest, ShareWithoutHostBeginsWithThreeSeparators)
{
    EXPECT_EQ("///a/b", ResourceLocation("smb:a/b").getPath('/', true));
    EXPECT_EQ("a/b", ResourceLocation("smb:a/b").getPath('/', false));
}

TEST(ResourceLocationSyntaxTest, PathReferencesPointIntoTheLocation)
{
    const ResourceLocation location("a/b");
    const std::string& path = location.getPath('/', true);
    EXPECT_EQ(&path, &location.getFilePath('\\'));
    EXPECT_EQ(R"(a\b)", path);
    EXPECT_EQ(path.c_str(), location.c_str());
    EXPECT_STREQ(R"(a\b)", location.c_str());
}

TEST(ResourceLocationSyntaxTest, FilePathOfARemoteLocationThrows)
{
    const std::string expected = R"("ftp://u%p@h/x" is not a (locally accessible) file or directory name.)";
    const ResourceLocation location("ftp://u%p@h/x");
    EXPECT_EQ(expected, textOf<NotAFileException>([&] { location.getFilePath('\\'); }));
    EXPECT_EQ(expected, textOf<NotAFileException>([&] { location.c_str(); }));
    EXPECT_EQ(R"("" is not a (locally accessible) file or directory name.)",
              textOf<NotAFileException>([] { ResourceLocation("ftp:").c_str(); }));
}

TEST(ResourceLocationSyntaxTest, RelativeLocationRendersAsItsPathAlone)
{
    // Required, Q-607
    EXPECT_EQ("a/b", ResourceLocation("ftp:a/b").str());
    EXPECT_EQ(R"(a\b)", ResourceLocation("file:a/b").str());
    EXPECT_EQ(R"(\\\a)", ResourceLocation("smb:a").str());
}

TEST(ResourceLocationSyntaxTest, LocalLocationStringHasBackslashesBehindSlashes)
{
    // Required, Q-608
    EXPECT_EQ(R"(file://localhost/C:\dir\x)", ResourceLocation(R"(C:\dir\x)").str());
    EXPECT_EQ(R"(smb://u%p@h/a\b)", ResourceLocation("smb://u%p@h/a/b").str());
}

TEST(ResourceLocationSyntaxTest, LocationStringsReadBackToThemselves)
{
    for (const char* text : {R"(C:\dir\file.txt)", "/", "/a b/c", R"(\\server\share\dir)", "ftp://u%p@h:1/a/b",
                             "smb://u%p@h:1/a/b", "a:b/c", "C:foo", "foo/bar/", "foo//bar", "./a/../b", "name"}) {
        const std::string once = ResourceLocation(text).str();
        EXPECT_EQ(once, ResourceLocation(once).str()) << text;
    }
}

TEST(ResourceLocationSyntaxTest, LocationStringIsNotTheLocationOfThePath)
{
    const ResourceLocation plain(R"(C:\dir\x)");
    const ResourceLocation again(plain.str());
    EXPECT_EQ("file", again.getProtocol());
    EXPECT_EQ("localhost", again.getHostName());
    EXPECT_FALSE(plain == again);
}

TEST(ResourceLocationSyntaxTest, PartsOfTheLastComponent)
{
    struct Row
    {
        const char* text;
        const char* last;
        const char* basename;
        const char* suffix;
        const char* removed;
    };
    const std::vector<Row> rows = {
        {"d/a.tar.gz", "a.tar.gz", "a.tar", "gz", R"(d\a.tar)"},
        {"d/README", "README", "README", "", R"(d\README)"},
        {"d.x/README", "README", "README", "", R"(d.x\README)"},
        {"d/.profile", ".profile", "", "profile", R"(d\)"},
        {"d/name.", "name.", "name", "", R"(d\name)"},
        {"d/", "", "", "", R"(d\)"},
        {"C:/d.e/", "d.e", "d", "e", R"(file://localhost/C:\d)"},
        {"C:/..", "", "", "", "file://localhost/"},
        {"..", "..", ".", "", "."},
        {"", "", "", "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        ResourceLocation location(row.text);
        EXPECT_EQ(row.last, location.lastComponent());
        EXPECT_EQ(row.last, location.basenameWithSuffix());
        EXPECT_EQ(row.basename, location.basename());
        EXPECT_EQ(row.suffix, location.suffix());
        EXPECT_EQ(&location, &location.removeSuffix());
        EXPECT_EQ(row.removed, location.str());
    }
}

TEST(ResourceLocationSyntaxTest, PathSuffixOfANameWithoutDotIsTheName)
{
    // Required, Q-609
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"README", "README"},
        {"a.b/README", "README"},
        {"a.tar.gz", "gz"},
        {".profile", "profile"},
        {"name.", ""},
        {"d/", ""},
        {"", ""},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(expected, ResourceLocation(text).getPathSuffix()) << text;
    }
    EXPECT_EQ("", ResourceLocation("README").suffix());
}

TEST(ResourceLocationSyntaxTest, RemoveFileNameRemovesTheLastComponentAndLeavesTheFlag)
{
    ResourceLocation location("C:/a");
    EXPECT_EQ(&location, &location.removeFileName());
    EXPECT_EQ("C:", location.getPath('\\', true));
    location.removeFileName().removeFileName();
    EXPECT_TRUE(location.empty());
    EXPECT_TRUE(location.isAbsolute());
    EXPECT_EQ("file://localhost/", location.str());
}

TEST(ResourceLocationSyntaxTest, ClearEmptiesEverything)
{
    ResourceLocation location("ftp://u%p@h:1/a");
    location.clear();
    expectFields(location, {"", "", "", "", "", "", {}, false, "", ""});
    EXPECT_TRUE(location.isLocalFile());
}

TEST(ResourceLocationSyntaxTest, LocalIsDecidedToTheLetter)
{
    for (const char* text : {"", "x", "C:/x", "file:x", "file:///x", "smb:x", "//h/x", ":x"}) {
        EXPECT_TRUE(ResourceLocation(text).isLocalFile()) << text;
    }
    for (const char* text : {"FILE:x", "File:x", "SMB://h/x", "files:x", "ftp:x", " file:x", "ftp:"}) {
        EXPECT_FALSE(ResourceLocation(text).isLocalFile()) << text;
    }
}

TEST(ResourceLocationSyntaxTest, StaticHelpersConvertSeparators)
{
    EXPECT_EQ('\\', ResourceLocation::getFSSeparator());
    EXPECT_EQ("C:/a/b//", ResourceLocation::toCanonizedForm(R"(C:\a/b\\)"));
    EXPECT_EQ(R"(C:\a\b\\)", ResourceLocation::fromCanonizedForm(R"(C:/a\b//)"));
    EXPECT_EQ("", ResourceLocation::toCanonizedForm(""));
    EXPECT_EQ("", ResourceLocation::fromCanonizedForm(""));
    EXPECT_EQ("C:", ResourceLocation::getRootDir());
}

TEST(ResourceLocationSyntaxTest, EqualityLeavesPasswordAndFlagOut)
{
    // Required, Q-610
    EXPECT_TRUE(ResourceLocation("ftp://u%p@h/a") == ResourceLocation("ftp://u%q@h/a"));
    ResourceLocation relative("smb:a");
    ResourceLocation absolute("smb:/a");
    EXPECT_TRUE(relative == absolute);
    EXPECT_NE(relative.isAbsolute(), absolute.isAbsolute());
}

TEST(ResourceLocationSyntaxTest, EqualityComparesTheOtherFields)
{
    const ResourceLocation location("ftp://u@h:1/a");
    EXPECT_TRUE(location == ResourceLocation("ftp://u@h:1/a/"));
    for (const char* other : {"fto://u@h:1/a", "ftp://v@h:1/a", "ftp://u@i:1/a", "ftp://u@h:2/a", "ftp://u@h:1/A",
                              "ftp://u@h/a", "ftp://h:1/a"}) {
        EXPECT_FALSE(location == ResourceLocation(other)) << other;
    }
    EXPECT_TRUE(ResourceLocation(R"("a/b")") == ResourceLocation(R"("a\b")"));
    EXPECT_FALSE(ResourceLocation("a") == ResourceLocation("file:a"));
    EXPECT_TRUE(location == location);
}

TEST(ResourceLocationSyntaxTest, OrderComparesThePathsAlone)
{
    // Required, Q-611
    const ResourceLocation one("ftp://one/a");
    const ResourceLocation two("http://two/a");
    EXPECT_FALSE(one < two);
    EXPECT_FALSE(two < one);
    EXPECT_FALSE(one == two);
    EXPECT_FALSE(one < one);
    EXPECT_TRUE(ResourceLocation("smb://a/x") < ResourceLocation("smb://b/x")) << "the host of a share is in its path";
    EXPECT_TRUE(ResourceLocation("a") < ResourceLocation("a/b"));
    EXPECT_TRUE(ResourceLocation("z") < ResourceLocation("\xC3\xA4")) << "bytes are unsigned";
    EXPECT_FALSE(ResourceLocation("b") < ResourceLocation("a"));
}

TEST(ResourceLocationSyntaxTest, ToAbsolutePutsTheWorkingDirectoryInFront)
{
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"x", R"(C:\lab\dir\x)"},
        {"../x/", R"(C:\lab\x)"},
        {"./a//b/..", R"(C:\lab\dir\a)"},
        {"..", R"(C:\lab)"},
        {"../../../x", "x"},
        {"C:/a", R"(C:\a)"},
        {"file:a", R"(C:\lab\dir\a)"},
        {"smb:a", R"(\\\C:\lab\dir\a)"},
        {"ftp:a/../b", "/C:/lab/dir/b"},
        {"ftp://h/a", "/a"},
    };
    for (const auto& [text, expected] : rows) {
        ResourceLocation location(text);
        EXPECT_EQ(&location, &location.toAbsolute());
        EXPECT_EQ(expected, location.getPath('\\', true)) << text;
        EXPECT_TRUE(location.isAbsolute()) << text;
    }
}

TEST(ResourceLocationSyntaxTest, ToAbsoluteOfAnEmptyLocationDoesNothing)
{
    FakeSystem system;
    system->workingDirectory = [] { return std::optional<platform::WorkingDirectory>(); };
    ResourceLocation location;
    EXPECT_FALSE(location.toAbsolute().isAbsolute());
    EXPECT_TRUE(location.empty());
}

TEST(ResourceLocationSyntaxTest, WorkingDirectoryInAnyFormIsTakenApart)
{
    FakeSystem system;
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"C:\\", R"(C:\x)"},
        {"D:/a\\b", R"(D:\a\b\x)"},
        {R"(\\server\share)", R"(server\share\x)"},
        {"", "x"},
    };
    for (const auto& [directory, expected] : rows) {
        system->workingDirectory = [&text = directory] { return platform::WorkingDirectory{text, true}; };
        ResourceLocation location("x");
        EXPECT_EQ(expected, location.toAbsolute().getPath('\\', true)) << directory;
        EXPECT_TRUE(location.isAbsolute());
    }
}

TEST(ResourceLocationSyntaxTest, AbsoluteLocationNeedsAWorkingDirectory)
{
    // Required, Q-606
    FakeSystem system;
    ResourceLocation before("C:/a");
    system->workingDirectory = [] { return std::optional<platform::WorkingDirectory>(); };
    for (const char* text : {"C:/x", "/x", "//h/x", "ftp://h/x", "ftp://h/", "a:b"}) {
        EXPECT_EQ("getcwd()", textOf<OperationFailedException>([&] { ResourceLocation{text}; })) << text;
    }
    EXPECT_EQ("getcwd()", textOf<OperationFailedException>([&] { before.append("../b"); }));
    EXPECT_EQ((Components{"C:", "a", "..", "b"}), componentsOf(before)) << "what was added stays";
    for (const char* text : {"x", "../x", "ftp:x", "file:", ""}) {
        EXPECT_NO_THROW(ResourceLocation{text}) << text;
    }
}

TEST(ResourceLocationSyntaxTest, RelativeLocationNeedsAWorkingDirectoryToBecomeAbsolute)
{
    FakeSystem system;
    ResourceLocation location("a/..");
    system->workingDirectory = [] { return std::optional<platform::WorkingDirectory>(); };
    EXPECT_EQ("getcwd()", textOf<OperationFailedException>([&] { location.toAbsolute(); }));
    EXPECT_EQ((Components{"a", ".."}), componentsOf(location));
    EXPECT_FALSE(location.isAbsolute());
}

TEST(ResourceLocationSyntaxTest, WorkingDirectoryThatNoLocationHoldsHindersRelativeLocationsOnly)
{
    FakeSystem system;
    system->workingDirectory = [] { return platform::WorkingDirectory{R"(C:\a"b)", false}; };
    ResourceLocation location("x");
    EXPECT_EQ("getcwd()", textOf<OperationFailedException>([&] { location.toAbsolute(); }));
    EXPECT_EQ((Components{"x"}), componentsOf(location));
    EXPECT_EQ(R"(C:\x)", ResourceLocation("C:/x").getPath('\\', true));
}

TEST(ResourceLocationSyntaxTest, WorkingDirectoryWithoutMemoryThrows)
{
    FakeSystem system;
    system->workingDirectory = []() -> std::optional<platform::WorkingDirectory> { throw std::bad_alloc(); };
    ResourceLocation location("x");
    EXPECT_EQ("calloc()", textOf<OperationFailedException>([&] { location.toAbsolute(); }));
}

TEST(ResourceLocationSyntaxTest, CopiesAreIndependent)
{
    ResourceLocation location("a/b");
    const std::string& path = location.getPath('\\', true);
    ResourceLocation copy(location);
    copy.append("c");
    EXPECT_EQ(R"(a\b\c)", copy.getPath('\\', true));
    EXPECT_EQ(R"(a\b)", path);
    copy = location;
    EXPECT_TRUE(copy == location);
}

} // namespace KelvoBase
