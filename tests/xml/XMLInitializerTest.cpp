#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/XMLCreator.h>
#include <kelvobase/XMLParser.h>

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace KelvoBase
{

namespace
{

using test::ScratchDirectory;
using test::textOf;

/// Lets the tests see the count.
struct Counter : XMLInitializer
{
    static int count() { return msCount; }
};

bool isUp()
{
    return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
}

TEST(XMLInitializer, NothingIsUpWithoutAnObject)
{
    EXPECT_EQ(Counter::count(), 0);
    EXPECT_FALSE(isUp());
}

TEST(XMLInitializer, FirstObjectInitialisesAndLastOneTerminates)
{
    {
        const XMLInitializer first;
        EXPECT_EQ(Counter::count(), 1);
        EXPECT_TRUE(isUp());
        {
            const XMLInitializer second;
            EXPECT_EQ(Counter::count(), 2);
        }
        EXPECT_EQ(Counter::count(), 1);
        EXPECT_TRUE(isUp());
    }
    EXPECT_EQ(Counter::count(), 0);
    EXPECT_FALSE(isUp());
}

TEST(XMLInitializer, LaterObjectInitialisesAnew)
{
    for (int round = 0; round < 3; ++round) {
        const XMLInitializer xml;
        EXPECT_TRUE(isUp());
        EXPECT_EQ(Counter::count(), 1);
    }
    EXPECT_FALSE(isUp());
}

TEST(XMLInitializer, FirstObjectMayGoBeforeTheSecond)
{
    auto first = std::make_unique<XMLInitializer>();
    auto second = std::make_unique<XMLInitializer>();
    first.reset();
    EXPECT_TRUE(isUp());
    second.reset();
    EXPECT_FALSE(isUp());
}

TEST(XMLInitializer, CopyCountsAsOneMore)
{
    auto first = std::make_unique<XMLInitializer>();
    auto copy = std::make_unique<XMLInitializer>(*first);
    EXPECT_EQ(Counter::count(), 2);
    auto moved = std::make_unique<XMLInitializer>(std::move(*copy));
    EXPECT_EQ(Counter::count(), 3);
    first.reset();
    copy.reset();
    EXPECT_EQ(Counter::count(), 1);
    EXPECT_TRUE(isUp());
    moved.reset();
    EXPECT_EQ(Counter::count(), 0);
    EXPECT_FALSE(isUp());
}

TEST(XMLInitializer, AssignmentChangesNothing)
{
    XMLInitializer first;
    const XMLInitializer second;
    first = second;
    first = XMLInitializer();
    EXPECT_EQ(Counter::count(), 2);
}

TEST(XMLInitializer, ParsersAndCreatorsCount)
{
    const ScratchDirectory scratch;
    scratch.write("a.xml", "<a/>");
    {
        XMLParser first(scratch.location("a.xml"));
        EXPECT_EQ(Counter::count(), 1);
        XMLParser second(scratch.location("a.xml"));
        EXPECT_EQ(Counter::count(), 2);
        XMLCreator creator;
        EXPECT_EQ(Counter::count(), 3);
    }
    EXPECT_EQ(Counter::count(), 0);
    EXPECT_FALSE(isUp());
}

TEST(XMLInitializer, DocumentOfTheSecondParserOutlivesTheFirst)
{
    const ScratchDirectory scratch;
    scratch.write("a.xml", "<a>text</a>");
    auto first = std::make_unique<XMLParser>(scratch.location("a.xml"));
    XMLParser second(scratch.location("a.xml"));
    first.reset();
    EXPECT_EQ(XMLParser::getText(second.getRootElement()), "text");
}

TEST(XMLInitializer, FailedParserDoesNotCount)
{
    EXPECT_EQ(textOf<FileNotFoundException>([] { XMLParser("no/such/file.xml"); }),
              "Cannot find file \"no\\such\\file.xml\".");
    EXPECT_EQ(Counter::count(), 0);
    EXPECT_FALSE(isUp());
    const XMLInitializer xml;
    EXPECT_EQ(textOf<FileNotFoundException>([] { XMLParser("no/such/file.xml"); }),
              "Cannot find file \"no\\such\\file.xml\".");
    EXPECT_EQ(Counter::count(), 1);
    EXPECT_TRUE(isUp());
}

// Who uses Xerces-C besides keeps it up by himself.
TEST(XMLInitializer, OtherUsersOfXercesKeepTheirs)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        const XMLInitializer xml;
    }
    EXPECT_TRUE(isUp());
    xercesc::XMLPlatformUtils::Terminate();
    EXPECT_FALSE(isUp());
}

} // namespace

} // namespace KelvoBase
