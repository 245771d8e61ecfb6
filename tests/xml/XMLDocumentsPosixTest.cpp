// Documents that mean harm or cannot be read, in a process of their own whose time and memory are limited.

#include "support/ChildProcess.h"
#include "support/Scratch.h"

#include <kelvobase/ResourceLocation.h>

#include <gtest/gtest.h>

#include <string>

namespace KelvoBase
{

namespace
{

using test::ChildResult;
using test::runChild;
using test::ScratchDirectory;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true; // reserves more address space than any limit, and makes entities twenty times slower
#else
constexpr bool isSanitized = false;
#endif

/// Reads a file in at most `megabytes` of memory (0: no limit) and two minutes of processor time.
ChildResult readLimited(const std::string& location, unsigned int megabytes)
{
    std::string limits = "ulimit -t 120; ";
    if (megabytes != 0 && !isSanitized) {
        limits += "ulimit -v " + std::to_string(megabytes * 1024) + "; ";
    }
    test::ChildOptions options;
    // Xerces-C 3.2 loses some bytes of its own behind an external document type, and behind a file that opens but
    // cannot be read.
    options.environment = {{"ASAN_OPTIONS", "detect_leaks=0"}};
    return runChild({"sh", "-c", limits + "exec \"$0\" trace read \"$1\"", XML_TOOL, location}, options);
}

std::string errorLine(const std::string& location)
{
    return "|-- There occured 1errors while parsing Parsing " + ResourceLocation(location).str() + "\n";
}

std::string repeated(const std::string& text, std::size_t times)
{
    std::string result;
    for (std::size_t i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

/// Entities of ten references to the one before, twelve levels deep: a million million texts.
std::string entityBomb()
{
    std::string content = "<!DOCTYPE a [<!ENTITY e0 'lol'>";
    for (int level = 1; level <= 12; ++level) {
        content +=
            "<!ENTITY e" + std::to_string(level) + " '" + repeated("&e" + std::to_string(level - 1) + ";", 10) + "'>";
    }
    return content + "]><a>&e12;</a>";
}

TEST(XMLDocumentsPosix, EntitiesWithinEntitiesEndInACountedError)
{
    if (isSanitized) {
        GTEST_SKIP() << "takes minutes";
    }
    const ScratchDirectory scratch;
    scratch.write("bomb.xml", entityBomb());
    const ChildResult result = readLimited(scratch.location("bomb.xml"), 2000);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("errors while parsing Parsing"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("\ndepth 1, text of "), std::string::npos) << result.out;
}

TEST(XMLDocumentsPosix, EntitiesWithinAnAttributeEndInACountedError)
{
    if (isSanitized) {
        GTEST_SKIP() << "takes minutes";
    }
    const ScratchDirectory scratch;
    std::string content = entityBomb();
    content.replace(content.find("<a>&e12;</a>"), std::string::npos, "<a b='&e12;'/>");
    scratch.write("bomb.xml", content);
    const ChildResult result = readLimited(scratch.location("bomb.xml"), 2000);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("errors while parsing Parsing"), std::string::npos) << result.out;
}

TEST(XMLDocumentsPosix, MemoryThatRunsOutIsAFailedOperation)
{
    if (isSanitized) {
        GTEST_SKIP() << "memory cannot be limited";
    }
    const ScratchDirectory scratch;
    scratch.write("long.xml",
                  "<!DOCTYPE a [<!ENTITY x '" + repeated("x", 100000) + "'>]><a>" + repeated("&x;", 20000) + "</a>");
    const std::string place = scratch.location("long.xml");
    const ChildResult result = readLimited(place, 500);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Unexpected Exception while trying to parse \"" + ResourceLocation(place).str() + "\".\n");
}

TEST(XMLDocumentsPosix, MillionLevelsAreRead)
{
    const ScratchDirectory scratch;
    scratch.write("deep.xml", repeated("<a>", 1000000) + "x" + repeated("</a>", 1000000));
    const ChildResult result = readLimited(scratch.location("deep.xml"), 0);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "depth 1000000, text of 1 bytes: x\n");
}

TEST(XMLDocumentsPosix, MillionLevelsWithoutEndsAreOneError)
{
    const ScratchDirectory scratch;
    scratch.write("deep.xml", repeated("<a>", 1000000));
    const std::string place = scratch.location("deep.xml");
    const ChildResult result = readLimited(place, 0);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, errorLine(place) + "depth 1000000, text of 0 bytes: \n");
}

TEST(XMLDocumentsPosix, NestedContentModelsAreSurvived)
{
    const ScratchDirectory scratch;
    scratch.write("model.xml",
                  "<!DOCTYPE a [<!ELEMENT a " + repeated("(", 200000) + "b" + repeated(")", 200000) + ">]><a>x</a>");
    const ChildResult result = readLimited(scratch.location("model.xml"), 2000);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_NE(result.out.find("errors while parsing Parsing"), std::string::npos) << result.out;
}

// As the header tells: what a document type asks for is done.
TEST(XMLDocumentsPosix, ExternalEntityBringsInAFileOfThisMachine)
{
    const ScratchDirectory scratch;
    scratch.write("secret.txt", "secret");
    scratch.write("a.xml", "<!DOCTYPE a [<!ELEMENT a (#PCDATA)><!ENTITY x SYSTEM 'secret.txt'>]><a>&x;</a>");
    const ChildResult result = readLimited(scratch.location("a.xml"), 0);
    EXPECT_EQ(result.out, "depth 1, text of 6 bytes: secret\n");
}

TEST(XMLDocumentsPosix, ExternalDocumentTypeIsLoadedFromBesideTheFile)
{
    const ScratchDirectory scratch;
    scratch.write("types/a.dtd", "<!ELEMENT a (#PCDATA)>");
    scratch.write("good.xml", "<!DOCTYPE a SYSTEM 'types/a.dtd'><a>1</a>");
    scratch.write("bad.xml", "<!DOCTYPE b SYSTEM 'types/a.dtd'><a>1</a>");
    EXPECT_EQ(readLimited(scratch.location("good.xml"), 0).out, "depth 1, text of 1 bytes: 1\n");
    const std::string bad = scratch.location("bad.xml");
    EXPECT_EQ(readLimited(bad, 0).out, errorLine(bad) + "depth 1, text of 1 bytes: 1\n");
}

TEST(XMLDocumentsPosix, FileThatOpensAndCannotBeReadIsACountedError)
{
    const ChildResult result = readLimited("/proc/self/mem", 0); // its first page is never there
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, errorLine("/proc/self/mem") + "depth 0, text of 0 bytes: \n");
}

TEST(XMLDocumentsPosix, EndlessDeviceIsNoDocument)
{
    const ChildResult result = readLimited("/dev/zero", 500);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, errorLine("/dev/zero") + "depth 0, text of 0 bytes: \n");
}

} // namespace

} // namespace KelvoBase
