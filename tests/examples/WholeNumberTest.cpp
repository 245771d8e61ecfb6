#include "WholeNumber.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <memory>

namespace seriesstat
{

namespace
{

using KelvoBase::Any;
using KelvoBase::WrongTypeException;
using KelvoBase::test::textOf;

TEST(WholeNumberTest, ItsOwnTextFormIsRead)
{
    WholeNumber number(5);
    for (const int value : {0, 7, -3, 2147483647}) {
        number.fromString(std::to_string(value), ",");
        EXPECT_EQ(value, number.toInt());
    }
}

TEST(WholeNumberTest, AnythingElseIsRefusedAndTheValueStays)
{
    for (const char* text : {"12abc", "1,5", "2.0", "0x10", " 7", "7 ", "+7", "007", "-0"}) {
        WholeNumber number(5);
        EXPECT_EQ(std::string("Could not read all of '") + text + "', Wrong type: 'int'",
                  textOf<WrongTypeException>([&] { number.fromString(text, ","); }));
        EXPECT_EQ(5, number.toInt()) << text;
    }
}

TEST(WholeNumberTest, WhatIsNoNumberIsRefusedAndTheValueStays)
{
    for (const char* text : {"", "abc", "2147483648"}) {
        WholeNumber number(5);
        EXPECT_EQ(std::string("Could not fill a IntAny from string '") + text + "', Wrong type: 'int'",
                  textOf<WrongTypeException>([&] { number.fromString(text, ","); }));
        EXPECT_EQ(5, number.toInt()) << text;
    }
}

TEST(WholeNumberTest, CopiesAreAsStrict)
{
    const WholeNumber number(5);
    const std::unique_ptr<Any> clone(number.clone());
    const std::unique_ptr<Any> other(number.create());
    EXPECT_EQ(5, clone->toInt());
    EXPECT_EQ(0, other->toInt());
    EXPECT_THROW(clone->fromString("1x", ","), WrongTypeException);
    EXPECT_THROW(other->fromString("1x", ","), WrongTypeException);
}

} // namespace

} // namespace seriesstat
