#include "Probe.h"
#include "support/Text.h"

#include <kelvobase/Application.h>
#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <type_traits>

namespace KelvoBase
{

namespace
{

using test::Ended;
using test::Probe;
using test::textOf;
using Text = ScalarAny<std::string>;

/// Counts its living objects.
class CountedAny : public ScalarAny<int>
{
public:
    explicit CountedAny(int& count) : mCount(count) { ++mCount; }
    CountedAny(const CountedAny&) = delete;
    CountedAny& operator=(const CountedAny&) = delete;
    ~CountedAny() override { --mCount; }

private:
    int& mCount;
};

/// Remembers what it was asked to read, or throws.
class SpyAny : public Text
{
public:
    void fromString(const std::string& text, const std::string& separator) override
    {
        seen += "[" + text + "|" + separator + "]";
        if (text == "bound") {
            throw OutOfBoundException(1, 2, "Refused.");
        }
        if (text == "number") {
            throw 42;
        }
        if (text == "type") {
            throw WrongTypeException("expected", typeid(double), "message");
        }
    }
    std::string seen;
};

TEST(CLOption, IsPlain)
{
    EXPECT_FALSE(std::is_polymorphic_v<CLOption>);
    EXPECT_FALSE(std::is_copy_constructible_v<CLOption>);
}

TEST(CLOption, NewOneIsNotSetAndHasNoValue)
{
    const CLOption option("name", 'n', true);
    EXPECT_EQ(option.getLong(), "name");
    EXPECT_EQ(option.getShort(), 'n');
    EXPECT_FALSE(option.isSet());
    EXPECT_EQ(option.getValue(), nullptr);
}

TEST(CLOption, LetterZeroMeansNoShortForm)
{
    EXPECT_EQ(CLOption("name", 0, false).getShort(), '\0');
}

TEST(CLOption, SettersGiveTheOptionItself)
{
    CLOption option("name", 0, false);
    EXPECT_EQ(&option.setHelp("help"), &option);
    EXPECT_EQ(&option.setArg("arg", new ScalarAny<int>(1)), &option);
}

TEST(CLOption, ContentOfTheValueIsTheDefault)
{
    CLOption option("name", 0, false);
    auto* value = new ScalarAny<int>(17);
    option.setArg("n", value);
    EXPECT_EQ(option.getValue(), value);
    EXPECT_EQ(option.getValue()->toInt(), 17);
    EXPECT_FALSE(option.isSet());
}

TEST(CLOption, DestructorDeletesTheValue)
{
    int living = 0;
    {
        CLOption option("name", 0, false);
        option.setArg("n", new CountedAny(living));
        EXPECT_EQ(living, 1);
    }
    EXPECT_EQ(living, 0);
}

TEST(CLOption, EarlierValueIsReplacedAndNotDeleted)
{
    // Required, Q-101
    int living = 0;
    const auto first = std::make_unique<CountedAny>(living);
    {
        CLOption option("name", 0, false);
        option.setArg("n", first.get());
        option.setArg("m", new CountedAny(living));
        EXPECT_EQ(living, 2);
        EXPECT_NE(option.getValue(), first.get());
    }
    EXPECT_EQ(living, 1);
}

TEST(CLOption, ValueCanBeTakenAway)
{
    const auto value = std::make_unique<Text>("x");
    CLOption option("name", 0, false);
    option.setArg("n", value.get());
    option.setArg("n", nullptr);
    EXPECT_EQ(option.getValue(), nullptr);
}

TEST(CLOption, SetValueReadsWithTheComma)
{
    auto* spy = new SpyAny;
    CLOption option("name", 0, false);
    option.setArg("x", spy);
    option.setValue("a,b;c");
    EXPECT_EQ(spy->seen, "[a,b;c|,]");
}

TEST(CLOption, SetValueDoesNotMarkTheOptionAsGiven)
{
    CLOption option("name", 0, false);
    option.setArg("x", new Text);
    option.setValue("a");
    EXPECT_EQ(option.getValue()->toString(","), "a");
    EXPECT_FALSE(option.isSet());
}

struct Misfit
{
    Any* (*create)();
    const char* text;
    const char* type;
};

std::ostream& operator<<(std::ostream& out, const Misfit& row)
{
    return out << '"' << row.text << "\" as " << row.type;
}

template <typename T>
Any* make()
{
    return new T;
}

class CLOptionMisfit : public testing::TestWithParam<Misfit>
{
};

TEST_P(CLOptionMisfit, NamesTheTextAndThePlainType)
{
    const Probe probe;
    CLOption option("name", 'n', false);
    option.setArg("x", GetParam().create());
    try {
        option.setValue(GetParam().text);
        FAIL() << "went through";
    } catch (const Ended& ended) {
        EXPECT_EQ(ended.text, std::string("Could not convert \"") + GetParam().text + "\" to the needed type \"" +
                                  GetParam().type + "\"");
        EXPECT_EQ(ended.hint, "std");
    }
}

const std::string stringType = WrongTypeException::demangle(typeid(std::string));

INSTANTIATE_TEST_SUITE_P(
    , CLOptionMisfit,
    testing::Values(
        Misfit{make<ScalarAny<int>>, "abc", "int"}, Misfit{make<ScalarAny<int>>, "", "int"},
        Misfit{make<ScalarAny<int>>, "99999999999", "int"}, Misfit{make<ScalarAny<unsigned int>>, "x", "unsigned int"},
        Misfit{make<ScalarAny<long>>, "x", "long"}, Misfit{make<ScalarAny<unsigned long>>, "x", "unsigned long"},
        Misfit{make<ScalarAny<double>>, "x", "double"}, Misfit{make<ScalarAny<bool>>, "yes", "bool"},
        Misfit{make<ScalarAny<bool>>, "", "bool"}, Misfit{make<ScalarAny<Bit64>>, "0xG", "unsigned long long"},
        Misfit{make<VectorAny<ScalarAny<int>>>, "1,x", "int"}, Misfit{make<VectorAny<ScalarAny<int>>>, "", "int"},
        Misfit{make<VectorAny<ScalarAny<bool>>>, "1,,0", "bool"},
        Misfit{make<VectorAny<ScalarAny<double>>>, ",1", "double"},
        Misfit{make<VectorAny<ScalarAny<Bit64>>>, ",", "unsigned long long"}));

TEST(CLOption, TextThatCannotBeSplitNamesTheElementType)
{
    const Probe probe;
    CLOption option("list", 0, false);
    option.setArg("x", new VectorAny<Text>);
    try {
        option.setValue(",a");
        FAIL() << "went through";
    } catch (const Ended& ended) {
        EXPECT_EQ(ended.text, "Could not convert \",a\" to the needed type \"" + stringType + "\"");
    }
}

TEST(CLOption, TypeOfTheFaultIsTheActualOne)
{
    const Probe probe;
    CLOption option("name", 0, false);
    option.setArg("x", new SpyAny);
    try {
        option.setValue("type");
        FAIL() << "went through";
    } catch (const Ended& ended) {
        EXPECT_EQ(ended.text, "Could not convert \"type\" to the needed type \"double\"");
    }
}

TEST(CLOption, OtherExceptionsPassThrough)
{
    const Probe probe;
    CLOption option("name", 0, false);
    option.setArg("x", new SpyAny);
    EXPECT_EQ(textOf<OutOfBoundException>([&] { option.setValue("bound"); }), "Refused. Limit is 1, but it was 2.");
    EXPECT_THROW(option.setValue("number"), int);
}

TEST(CLOption, MisfitWithoutApplicationPassesThrough)
{
    ASSERT_TRUE(Application::isNotCreated());
    CLOption option("name", 0, false);
    option.setArg("x", new ScalarAny<int>);
    EXPECT_THROW(option.setValue("abc"), WrongTypeException);
}

} // namespace

} // namespace KelvoBase
