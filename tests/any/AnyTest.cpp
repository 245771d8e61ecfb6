#include "support/Text.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using namespace KelvoBase;
using KelvoBase::test::textOf;

namespace ToolSpace
{

/// A tool's own value: only what `Any` leaves open.
class Colour : public Any
{
public:
    void copyFrom(const Any&) override {}
    bool isCopyable(const Any&) const override { return false; }
    bool isSameType(const Any&) const override { return false; }
    Any* create() const override { return new Colour; }
    Any* clone() const override { return new Colour(*this); }
    void noOperation() override {}
    std::string toString(const std::string&) const override { return "red"; }
    void fromString(const std::string&, const std::string&) override {}
    unsigned int size() const override { return 3; }
    bool equals(const Any&) const override { return false; }
};

} // namespace ToolSpace

namespace
{

using ToolSpace::Colour;

/// All operations that `Any` itself refuses, those for changeable objects first.
void expectAllRefused(Any& any)
{
    const Any& fixed = any;
    const std::vector<std::function<void()>> changing = {
        [&] { any[0]; },
        [&] { any.setInt(1); },
        [&] { any.setFloat(1.0F); },
    };
    const std::vector<std::function<void()>> constant = {
        [&] { fixed[0]; },       [&] { fixed.toBool(); },  [&] { fixed.toInt(); },    [&] { fixed.toLong(); },
        [&] { fixed.toUInt(); }, [&] { fixed.toULong(); }, [&] { fixed.toDouble(); }, [&] { fixed.toBit64(); },
    };
    for (std::size_t i = 0; i < changing.size(); ++i) {
        EXPECT_EQ("Wrong type: 'KelvoBase::Any*'", textOf<WrongTypeException>(changing[i])) << "operation " << i;
    }
    for (std::size_t i = 0; i < constant.size(); ++i) {
        EXPECT_EQ("Wrong type: 'KelvoBase::Any const*'", textOf<WrongTypeException>(constant[i])) << "operation " << i;
    }
}

} // namespace

TEST(Any, RefusesWhatNoClassAnswers)
{
    Colour colour;
    expectAllRefused(colour);
}

TEST(Any, TypeStringOfAToolsClassIsItsReadableName)
{
    EXPECT_EQ("ToolSpace::Colour", Colour().getTypeString());
    struct : Colour
    {
        std::string getTypeString() const override { return "ColourAny"; }
    } named;
    EXPECT_EQ("ColourAny", named.getTypeString());
}

TEST(Any, IsDeletedThroughItsVirtualDestructor)
{
    struct Counted : Colour
    {
        explicit Counted(int& count) : mCount(count) {}
        ~Counted() override { ++mCount; }
        int& mCount;
    };
    int deleted = 0;
    std::unique_ptr<Any>(new Counted(deleted)).reset();
    EXPECT_EQ(1, deleted);
    static_assert(std::has_virtual_destructor_v<Any> && std::is_abstract_v<Any>);
}

TEST(Any, TextTakesTheValueOfAToolsClass)
{
    ScalarAny<std::string> text("old");
    EXPECT_TRUE(text.isCopyable(Colour()));
    text.copyFrom(Colour());
    EXPECT_EQ("red", text.toString(","));
}

TEST(Any, NumberRefusesAToolsClassByItsName)
{
    ScalarAny<int> number(7);
    EXPECT_FALSE(number.isCopyable(Colour()));
    EXPECT_EQ("Unable to copy, Wrong type: expected 'IntAny' but was 'ToolSpace::Colour'",
              textOf<WrongTypeException>([&] { number.copyFrom(Colour()); }));
    EXPECT_EQ(7, number.toInt());
}

TEST(Any, WhateverTheSourceThrowsBecomesARefusal)
{
    struct Failing : Colour
    {
        int toInt() const override { throw 42; }
        std::string getTypeString() const override { return "FailingAny"; }
    };
    const Failing failing;
    ScalarAny<int> number(7);
    EXPECT_FALSE(number.isCopyable(failing));
    const std::string expected =
        "Unable to copy, Wrong type: expected 'IntAny' but was '" + WrongTypeException::demangle(typeid(Failing)) + "'";
    EXPECT_EQ(expected, textOf<WrongTypeException>([&] { number.copyFrom(failing); }));
    EXPECT_EQ(7, number.toInt());
}

TEST(Any, SameTypeMeansTheSameTypeString)
{
    struct Guise : Colour
    {
        std::string getTypeString() const override { return "IntAny"; }
    };
    EXPECT_TRUE(ScalarAny<int>().isSameType(Guise()));
    EXPECT_TRUE(ScalarAny<int>(1).isSameType(ScalarAny<int>(2)));
    EXPECT_FALSE(ScalarAny<int>().isSameType(ScalarAny<unsigned int>()));
    EXPECT_FALSE(ScalarAny<int>().isSameType(VectorAny<ScalarAny<int>>()));
    EXPECT_FALSE(ScalarAny<int>().isSameType(Colour()));
}

TEST(Any, EqualsAsksForTheHolderNotForTheTypeString)
{
    struct Guise : Colour
    {
        std::string getTypeString() const override { return "IntAny"; }
        int toInt() const override { return 7; }
    };
    struct Width : ScalarAny<int>
    {
        using ScalarAny<int>::ScalarAny;
        std::string getTypeString() const override { return "WidthAny"; }
    };
    EXPECT_FALSE(ScalarAny<int>(7).equals(Guise()));
    EXPECT_TRUE(ScalarAny<int>(7).equals(Width(7)));
    EXPECT_TRUE(Width(7).equals(ScalarAny<int>(7)));
    EXPECT_FALSE(ScalarAny<int>(7).equals(ScalarAny<long>(7)));
}
