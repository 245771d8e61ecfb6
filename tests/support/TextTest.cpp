#include "support/Text.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace KelvoBase::test
{

namespace
{

std::string lastText;

TEST(TextOf, GivesTextOfExpectedException)
{
    EXPECT_EQ(textOf<std::runtime_error>([] { throw std::runtime_error("a text"); }), "a text");
}

TEST(TextOf, OfNothingThrownFails)
{
    EXPECT_NONFATAL_FAILURE(lastText = textOf<std::runtime_error>([] {}), "nothing was thrown");
    EXPECT_EQ(lastText, "");
}

TEST(TextOf, OfDescendantThrownFailsAndShowsItsText)
{
    EXPECT_NONFATAL_FAILURE(lastText =
                                textOf<std::runtime_error>([] { throw std::overflow_error("from a descendant"); }),
                            "text: from a descendant");
    EXPECT_EQ(lastText, "from a descendant");
}

TEST(TextOf, OfAncestorThrownFails)
{
    EXPECT_NONFATAL_FAILURE(lastText = textOf<std::overflow_error>([] { throw std::runtime_error("from above"); }),
                            "text: from above");
}

TEST(TextOf, OfUnrelatedExceptionThrownFails)
{
    EXPECT_NONFATAL_FAILURE(lastText = textOf<std::runtime_error>([] { throw std::logic_error("from beside"); }),
                            "text: from beside");
}

TEST(TextOf, OfNoExceptionClassFails)
{
    EXPECT_NONFATAL_FAILURE(lastText = textOf<std::runtime_error>([] { throw 7; }), "no std::exception");
    EXPECT_EQ(lastText, "");
}

} // namespace

} // namespace KelvoBase::test
