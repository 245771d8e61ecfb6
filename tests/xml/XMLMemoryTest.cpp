// Everything that is taken from Xerces-C's memory is given back, also when an exception passes.

#include "support/Scratch.h"
#include "xml/Documents.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/Serialization.h>
#include <kelvobase/XMLCreator.h>
#include <kelvobase/XMLParser.h>

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

namespace KelvoBase
{

namespace
{

using test::ScratchDirectory;
using xercesc::DOMElement;
using xercesc::DOMNode;

/// Counts the blocks that are in use.
class CountingMemory : public xercesc::MemoryManager
{
public:
    void* allocate(XMLSize_t size) override
    {
        ++blocks;
        return ::operator new(size);
    }
    void deallocate(void* block) override
    {
        blocks -= block ? 1 : 0;
        ::operator delete(block);
    }
    xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }

    long blocks = 0;
};

/// Xerces-C on counted memory, before the library's own initialisation, which then finds it up.
class XMLMemory : public ::testing::Test
{
protected:
    XMLMemory() { xercesc::XMLPlatformUtils::Initialize("en_US", nullptr, nullptr, &mMemory); }
    ~XMLMemory() override
    {
        xercesc::XMLPlatformUtils::Terminate();
        EXPECT_EQ(mMemory.blocks, 0);
    }

    /// How many blocks a hundred calls leave behind, once Xerces-C has what it keeps.
    template <typename Action>
    long leftBy(Action&& action)
    {
        for (int i = 0; i < 20; ++i) {
            action();
        }
        const long before = mMemory.blocks;
        for (int i = 0; i < 100; ++i) {
            action();
        }
        return mMemory.blocks - before;
    }

    CountingMemory mMemory{};
};

template <typename Exception, typename Action>
void swallow(Action&& action)
{
    try {
        action();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception&) {
    }
}

TEST_F(XMLMemory, ReadingNodesLeavesNothing)
{
    const ScratchDirectory scratch;
    scratch.write("a.xml", "<r><a id='1'>text</a><b/></r>");
    XMLParser parser(scratch.location("a.xml"));
    DOMNode* root = parser.getRootElement();
    EXPECT_EQ(leftBy([&] {
                  std::string text;
                  XMLParser::getTextNodeByTagName(root, "a", text);
                  XMLParser::getTextNodeByTagName(root, "b", text);
                  XMLParser::getNodeByTagName(root, "no such tag, and a long one, so that it is not in the list");
                  XMLParser::getAttribute(root->getFirstChild(), "id");
                  XMLParser::getAttribute(root->getFirstChild(), "none");
                  XMLParser::getTagName(parser.getRootElement());
                  XMLParser::getNodeName(root);
                  Serialization::getCheckedElement("a", "", root);
              }),
              0);
}

TEST_F(XMLMemory, ParsersAndCreatorsLeaveNothing)
{
    const ScratchDirectory scratch;
    scratch.write("good.xml", "<!DOCTYPE r [<!ELEMENT r ANY>]><r a='1'>x</r>");
    scratch.write("bad.xml", "<r><a></r>");
    EXPECT_EQ(leftBy([&] { XMLParser parser(scratch.location("good.xml")); }), 0);
    EXPECT_EQ(leftBy([&] { XMLParser parser(scratch.location("bad.xml")); }), 0);
    EXPECT_EQ(
        leftBy([&] { swallow<FileNotFoundException>([&] { XMLParser parser(scratch.location("missing.xml")); }); }), 0);
    EXPECT_EQ(leftBy([&] {
                  XMLCreator creator;
                  XMLCreator::createElement(creator.getDocument(), "a");
                  creator.writeToFile(scratch.location("out.xml"));
              }),
              0);
}

TEST_F(XMLMemory, FailedWritingLeavesNothing)
{
    const ScratchDirectory scratch;
    XMLCreator creator;
    DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    EXPECT_EQ(leftBy([&] {
                  swallow<xercesc::XMLException>([&] { creator.writeToFile(scratch.location("missing/out.xml")); });
              }),
              0);
    XMLCreator::createTextNode(root, "\x01");
    EXPECT_EQ(
        leftBy([&] { swallow<xercesc::DOMException>([&] { creator.writeToFile(scratch.location("out.xml")); }); }), 0);
    EXPECT_EQ(leftBy([&] { swallow<NotAFileException>([&] { creator.writeToFile("ftp://host/x"); }); }), 0);
}

TEST_F(XMLMemory, RefusedNodesLeaveNothing)
{
    XMLCreator creator;
    DOMElement* root = XMLCreator::createElement(creator.getDocument(), "root");
    const std::string text(500, 'x');
    EXPECT_EQ(leftBy([&] {
                  swallow<xercesc::DOMException>([&] { XMLCreator::createElement(root, "a b" + text); });
                  swallow<xercesc::DOMException>([&] { XMLCreator::setAttribute(root, "1", text); });
              }),
              0);
}

// A node that its parent refuses goes back to the document, which uses it again.
TEST_F(XMLMemory, DocumentDoesNotGrowByRefusedNodes)
{
    XMLCreator creator;
    XMLCreator::createElement(creator.getDocument(), "root");
    EXPECT_EQ(leftBy([&] {
                  for (int i = 0; i < 300; ++i) {
                      swallow<xercesc::DOMException>([&] { XMLCreator::createTextNode(creator.getDocument(), "b"); });
                  }
              }),
              0);
}

TEST_F(XMLMemory, RefusedValueLeavesNothing)
{
    XMLCreator creator;
    DOMNode* root = XMLCreator::createElement(creator.getDocument(), "root");
    ScalarAny<int> number;
    EXPECT_EQ(
        leftBy([&] { swallow<WrongTypeException>([&] { Serialization::XMLReadAny(number, "missing", "", root); }); }),
        0);
}

} // namespace

} // namespace KelvoBase
