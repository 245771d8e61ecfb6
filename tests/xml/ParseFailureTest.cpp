#include "xml/ParseFailure.h"

#include "support/Text.h"

#include <kelvobase/XMLParser.h>

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMLSException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace KelvoBase
{

namespace
{

using test::textOf;
using xercesc::XMLPlatformUtils;

template <typename Action>
std::string translated(Action&& action)
{
    const XMLInitializer xml;
    const ResourceLocation location("C:/data/run.xml");
    return textOf<OperationFailedException>([&] { withTranslatedFailures(location, action); });
}

/// An exception of Xerces-C's without a text.
class Silent : public xercesc::XMLException
{
public:
    Silent() : XMLException("file", 1, XMLPlatformUtils::fgMemoryManager) {}
    const XMLCh* getType() const override { return u"Silent"; }
};

const std::string unexpected = "Unexpected Exception while trying to parse \"file://localhost/C:\\data\\run.xml\".";

TEST(ParseFailure, NothingThrownIsNothingDone)
{
    int calls = 0;
    withTranslatedFailures(ResourceLocation("a"), [&] { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST(ParseFailure, ExceptionOfXercesGivesItsMessage)
{
    EXPECT_EQ(translated([] {
                  throw xercesc::XMLPlatformUtilsException("file", 1, xercesc::XMLExcepts::File_CouldNotReadFromFile,
                                                           XMLPlatformUtils::fgMemoryManager);
              }),
              "unable to read data from file");
    EXPECT_EQ(translated([] { throw Silent(); }), "");
}

TEST(ParseFailure, ExceptionOfTheDomGivesItsMessage)
{
    EXPECT_EQ(translated([] {
                  throw xercesc::DOMException(xercesc::DOMException::NOT_FOUND_ERR, 0,
                                              XMLPlatformUtils::fgMemoryManager);
              }),
              "attempt is made to reference a node in a context where it does not exist");
    EXPECT_EQ(translated([] { throw xercesc::DOMException(); }), "");
}

TEST(ParseFailure, AnythingElseGivesAFixedText)
{
    EXPECT_EQ(translated([] { throw 42; }), unexpected);
    EXPECT_EQ(translated([] { throw std::runtime_error("text"); }), unexpected);
    EXPECT_EQ(translated([] { throw std::bad_alloc(); }), unexpected);
    EXPECT_EQ(translated([] { throw xercesc::OutOfMemoryException(); }), unexpected);
    EXPECT_EQ(translated([] { throw xercesc::SAXException(u"text", XMLPlatformUtils::fgMemoryManager); }), unexpected);
    EXPECT_EQ(translated([] { throw FileNotFoundException("x"); }), unexpected);
}

} // namespace

} // namespace KelvoBase
