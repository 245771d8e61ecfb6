#include "xml/XmlText.h"

#include <kelvobase/XMLParser.h>

#include <gtest/gtest.h>

#include <string>

namespace KelvoBase
{

namespace
{

TEST(XmlText, GoesThereAndBack)
{
    const XMLInitializer xml;
    for (const char* text : {"", "a", "two words <&>\n", "0123456789012345678901234567890123456789"}) {
        EXPECT_EQ(nativeText(XmlText(text).get()), text);
        EXPECT_EQ(nativeText(XmlText(std::string(text)).get()), text);
    }
    EXPECT_TRUE(xercesc::XMLString::equals(XmlText("ab").get(), u"ab"));
}

TEST(XmlText, NullReadsAsTheEmptyText)
{
    const XMLInitializer xml;
    EXPECT_EQ(nativeText(nullptr), "");
    const XmlText none(static_cast<const char*>(nullptr));
    ASSERT_NE(none.get(), nullptr);
    EXPECT_EQ(none.get()[0], u'\0');
}

TEST(XmlText, EndsAtTheFirstZeroByte)
{
    const XMLInitializer xml;
    EXPECT_EQ(nativeText(XmlText(std::string("ab\0cd", 5)).get()), "ab");
}

} // namespace

} // namespace KelvoBase
