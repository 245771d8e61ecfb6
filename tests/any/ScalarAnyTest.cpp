#include "support/Text.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using namespace KelvoBase;
using KelvoBase::test::textOf;

namespace
{

constexpr const char* refused = "refused";
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

using IntVector = VectorAny<ScalarAny<int>>;

/// The result of an operation as text; `refused` if it is refused in the words that belong to `Scalar`.
template <typename Scalar, typename Operation>
std::string answer(const std::type_info& pointer, Operation&& operation)
{
    try {
        return operation();
    } catch (const WrongTypeException& e) {
        EXPECT_EQ("Wrong type: '" + WrongTypeException::demangle(pointer) + "'", e.what());
        return refused;
    }
}

/// What a value answers to all nine operations, in the order of their declaration.
template <typename T>
std::vector<std::string> answersOf(T held)
{
    using Scalar = ScalarAny<T>;
    const Scalar value(held);
    Scalar target(held);
    const auto ask = [](auto&& operation) { return answer<Scalar>(typeid(const Scalar*), operation); };
    const auto set = [](auto&& operation) { return answer<Scalar>(typeid(Scalar*), operation); };
    return {
        set([&] { return target.setInt(300), target.toString(","); }),
        set([&] { return target.setFloat(0.5F), target.toString(","); }),
        ask([&] { return std::string(value.toBool() ? "true" : "false"); }),
        ask([&] { return std::to_string(value.toInt()); }),
        ask([&] { return std::to_string(value.toLong()); }),
        ask([&] { return std::to_string(value.toUInt()); }),
        ask([&] { return std::to_string(value.toULong()); }),
        ask([&] { return std::to_string(value.toDouble()); }),
        ask([&] { return std::to_string(value.toBit64()); }),
    };
}

using Answers = std::vector<std::string>;

} // namespace

TEST(ScalarAny, BoolAnswersAllButFloatAndBits)
{
    EXPECT_EQ((Answers{"1", refused, "true", "1", "1", "1", "1", "1.000000", refused}), answersOf(true));
    EXPECT_EQ((Answers{"1", refused, "false", "0", "0", "0", "0", "0.000000", refused}), answersOf(false));
}

TEST(ScalarAny, IntAnswersAllButFloatAndBits)
{
    EXPECT_EQ((Answers{"300", refused, "true", "-7", "-7", "4294967289", std::to_string(ULONG_MAX - 6), "-7.000000",
                       refused}),
              answersOf(-7));
    EXPECT_EQ((Answers{"300", refused, "false", "0", "0", "0", "0", "0.000000", refused}), answersOf(0));
}

TEST(ScalarAny, UnsignedIntAnswersAllButFloatAndBits)
{
    const std::string asLong = sizeof(long) == 4 ? "-6" : "4294967290";
    EXPECT_EQ((Answers{"300", refused, "true", "-6", asLong, "4294967290", "4294967290", "4294967290.000000", refused}),
              answersOf(4294967290U));
}

TEST(ScalarAny, LongDoesNotAnswerSmallerTypes)
{
    // Required, Q-203
    EXPECT_EQ(
        (Answers{"300", refused, refused, refused, "-5", refused, std::to_string(ULONG_MAX - 4), "-5.000000", refused}),
        answersOf(-5L));
    EXPECT_EQ((Answers{"300", refused, refused, refused, "7", refused, "7", "7.000000", refused}), answersOf(7UL));
    EXPECT_EQ(7, ScalarAny<int>(7).toLong());
}

TEST(ScalarAny, LargeUnsignedLongIsReinterpretedAndConvertedAsUnsigned)
{
    const std::vector<std::string> answers = answersOf(ULONG_MAX);
    EXPECT_EQ("-1", answers[4]);
    EXPECT_EQ(std::to_string(ULONG_MAX), answers[6]);
    EXPECT_EQ(std::to_string(static_cast<double>(ULONG_MAX)), answers[7]);
}

TEST(ScalarAny, DoubleNeverNarrowsAndBitsHaveNoNeighbours)
{
    // Required, Q-204
    EXPECT_EQ((Answers{"300", "0.5", refused, refused, refused, refused, refused, "2.750000", refused}),
              answersOf(2.75));
    EXPECT_EQ((Answers{refused, refused, refused, refused, refused, refused, refused, refused, "18446744073709551615"}),
              answersOf(Bit64{18446744073709551615U}));
}

TEST(ScalarAny, TextIsReadAsAllButTheUnsignedTypes)
{
    // Required, Q-209
    EXPECT_EQ((Answers{refused, refused, "true", "1", "1", refused, refused, "1.000000", "1"}),
              answersOf(std::string("1")));
}

TEST(ScalarAny, RefusalNamesTheClassAndWhetherItWasConstant)
{
    ScalarAny<int> number;
    EXPECT_EQ("Wrong type: 'KelvoBase::ScalarAny<int>*'", textOf<WrongTypeException>([&] { number.setFloat(1.0F); }));
    EXPECT_EQ("Wrong type: 'KelvoBase::ScalarAny<int> const*'", textOf<WrongTypeException>([&] { number.toBit64(); }));
    EXPECT_EQ("Wrong type: 'KelvoBase::ScalarAny<unsigned long long> const*'",
              textOf<WrongTypeException>([] { ScalarAny<Bit64>().toBool(); }));
    EXPECT_EQ("Wrong type: 'KelvoBase::ScalarAny<unsigned long long>*'",
              textOf<WrongTypeException>([] { ScalarAny<Bit64>().setInt(1); }));
}

TEST(ScalarAny, RefusalNamesTheLibrarysClassForATools)
{
    struct Width : ScalarAny<int>
    {
    };
    EXPECT_EQ("Wrong type: 'KelvoBase::ScalarAny<int> const*'", textOf<WrongTypeException>([] { Width().toBit64(); }));
}

TEST(ScalarAny, RefusedSettingKeepsTheValue)
{
    ScalarAny<std::string> text("old");
    EXPECT_THROW(text.setInt(1), WrongTypeException);
    EXPECT_THROW(text.setFloat(1.0F), WrongTypeException);
    EXPECT_EQ("old", text.toString(","));
}

TEST(ScalarAny, FaultOfATextNamesTheTargetType)
{
    const ScalarAny<std::string> text("x");
    EXPECT_EQ("Could not convert 'x' to bool, Wrong type: 'bool'", textOf<WrongTypeException>([&] { text.toBool(); }));
    EXPECT_EQ("Could not fill a IntAny from string 'x', Wrong type: 'int'",
              textOf<WrongTypeException>([&] { text.toInt(); }));
    EXPECT_EQ("Could not fill a LongAny from string 'x', Wrong type: 'long'",
              textOf<WrongTypeException>([&] { text.toLong(); }));
    EXPECT_EQ("Could not fill a DoubleAny from string 'x', Wrong type: 'double'",
              textOf<WrongTypeException>([&] { text.toDouble(); }));
    EXPECT_EQ("Cannot convert string \"x\" to Bit64 type: x is not a hex char, Wrong type: 'unsigned long long'",
              textOf<WrongTypeException>([&] { text.toBit64(); }));
    EXPECT_EQ("x", text.toString(","));
}

TEST(ScalarAny, TextIsReadAsTheTargetTypeReadsIt)
{
    EXPECT_EQ(7, ScalarAny<std::string>("7").toInt());
    EXPECT_EQ(12, ScalarAny<std::string>(" 12abc").toLong());
    EXPECT_EQ(1.5, ScalarAny<std::string>("1.5e0 m").toDouble());
    EXPECT_EQ(255U, ScalarAny<std::string>("0xff").toBit64());
    EXPECT_TRUE(ScalarAny<std::string>(" + ").toBool());
}

TEST(ScalarAny, SetIntConvertsAsACastDoes)
{
    ScalarAny<bool> flag;
    flag.setInt(-1);
    EXPECT_TRUE(flag.toBool());
    flag.setInt(0);
    EXPECT_FALSE(flag.toBool());
    ScalarAny<unsigned int> number;
    number.setInt(-1);
    EXPECT_EQ(UINT_MAX, number.toUInt());
    ScalarAny<unsigned long> large;
    large.setInt(-1);
    EXPECT_EQ(ULONG_MAX, large.toULong());
    ScalarAny<long> small;
    small.setInt(INT_MIN);
    EXPECT_EQ(INT_MIN, small.toLong());
}

TEST(ScalarAny, SetFloatKeepsTheValueOfTheFloat)
{
    ScalarAny<double> number;
    number.setFloat(0.1F);
    EXPECT_EQ(static_cast<double>(0.1F), number.toDouble());
}

TEST(ScalarAny, TypeStrings)
{
    EXPECT_EQ("BoolAny", ScalarAny<bool>().getTypeString());
    EXPECT_EQ("IntAny", ScalarAny<int>().getTypeString());
    EXPECT_EQ("UnsignedIntAny", ScalarAny<unsigned int>().getTypeString());
    EXPECT_EQ("LongAny", ScalarAny<long>().getTypeString());
    EXPECT_EQ("UnsignedLongAny", ScalarAny<unsigned long>().getTypeString());
    EXPECT_EQ("DoubleAny", ScalarAny<double>().getTypeString());
    EXPECT_EQ("Bit64Any", ScalarAny<Bit64>().getTypeString());
    EXPECT_EQ("StringAny", ScalarAny<std::string>().getTypeString());
}

namespace
{

bool isSameClass(const Any& a, const Any& b)
{
    return typeid(a) == typeid(b);
}

std::string classOf(const Any& any)
{
    return WrongTypeException::demangle(typeid(any));
}

template <typename T>
void expectLifeOf(const T& held, const std::string& text, const std::string& defaultText)
{
    EXPECT_EQ(defaultText, ScalarAny<T>().toString(","));
    const ScalarAny<T> value(held);
    EXPECT_EQ(text, value.toString(","));
    const std::unique_ptr<Any> created(value.create());
    EXPECT_EQ(defaultText, created->toString(","));
    EXPECT_TRUE(isSameClass(*created, value));
    const std::unique_ptr<Any> cloned(value.clone());
    EXPECT_TRUE(isSameClass(*cloned, value));
    EXPECT_TRUE(cloned->equals(value));
    cloned->copyFrom(ScalarAny<T>());
    EXPECT_EQ(text, value.toString(",")) << "a clone shares its value";
    ScalarAny<T> assigned;
    assigned = value;
    EXPECT_EQ(text, assigned.toString(","));
    ScalarAny<T> copy(assigned);
    assigned = ScalarAny<T>();
    EXPECT_EQ(text, copy.toString(",")) << "a copy shares its value";
    copy = *&copy;
    EXPECT_EQ(text, copy.toString(","));
    copy.noOperation();
    EXPECT_EQ(text, copy.toString(","));
}

} // namespace

TEST(ScalarAny, DefaultsCopiesAndClones)
{
    expectLifeOf<bool>(true, "1", "0");
    expectLifeOf<int>(-7, "-7", "0");
    expectLifeOf<unsigned int>(7, "7", "0");
    expectLifeOf<long>(-8, "-8", "0");
    expectLifeOf<unsigned long>(8, "8", "0");
    expectLifeOf<double>(2.5, "2.5", "0");
    expectLifeOf<Bit64>(0xAB, "0x00000000000000AB", "0x0000000000000000");
    expectLifeOf<std::string>("some text that is too long for a small buffer",
                              "some text that is too long for a small buffer", "");
}

TEST(ScalarAny, IsAListOfOneElement)
{
    ScalarAny<int> number(7);
    const ScalarAny<int>& fixed = number;
    EXPECT_EQ(1U, number.size());
    EXPECT_EQ(&number, &number[0]);
    EXPECT_EQ(&number, &fixed[0]);
    EXPECT_EQ(1U, ScalarAny<std::string>("a,b").size());
}

TEST(ScalarAny, OtherIndicesAreTooLarge)
{
    ScalarAny<int> number(7);
    const ScalarAny<int>& fixed = number;
    EXPECT_EQ("Value is too large. Limit is 1, but it was 1.", textOf<OutOfBoundException>([&] { number[1]; }));
    EXPECT_EQ("Value is too large. Limit is 1, but it was 1.", textOf<OutOfBoundException>([&] { fixed[1]; }));
    EXPECT_EQ("Value is too large. Limit is 1, but it was 70.",
              textOf<OutOfBoundException>([] { ScalarAny<std::string>()[70]; }));
    const std::string largest = std::to_string(static_cast<long>(UINT_MAX));
    EXPECT_EQ("Value is too large. Limit is 1, but it was " + largest + ".",
              textOf<OutOfBoundException>([&] { fixed[UINT_MAX]; }));
}

namespace
{

/// One value of each class; all but the last two hold something like 1.
std::vector<std::unique_ptr<Any>> sources()
{
    std::vector<std::unique_ptr<Any>> all;
    all.emplace_back(new ScalarAny<bool>(true));
    all.emplace_back(new ScalarAny<int>(1));
    all.emplace_back(new ScalarAny<unsigned int>(1));
    all.emplace_back(new ScalarAny<long>(1));
    all.emplace_back(new ScalarAny<unsigned long>(1));
    all.emplace_back(new ScalarAny<double>(1));
    all.emplace_back(new ScalarAny<Bit64>(1));
    all.emplace_back(new ScalarAny<std::string>("1"));
    all.emplace_back(new ScalarAny<std::string>("neither number nor flag"));
    all.emplace_back(new IntVector);
    return all;
}

struct CopyRow
{
    std::shared_ptr<Any> target;
    const char* takes; // by source: x taken, - refused
};

} // namespace

TEST(ScalarAny, CopyFromTakesWhatAnswersForItsType)
{
    const std::vector<CopyRow> rows = {
        {std::make_shared<ScalarAny<bool>>(false), "xxx----x--"},
        {std::make_shared<ScalarAny<int>>(5), "xxx----x--"},
        {std::make_shared<ScalarAny<unsigned int>>(5U), "xxx-------"},
        {std::make_shared<ScalarAny<long>>(5), "xxxxx--x--"},
        {std::make_shared<ScalarAny<unsigned long>>(5U), "xxxxx-----"},
        {std::make_shared<ScalarAny<double>>(5), "xxxxxx-x--"},
        {std::make_shared<ScalarAny<Bit64>>(5U), "------xx--"},
        {std::make_shared<ScalarAny<std::string>>("5"), "xxxxxxxxxx"},
    };
    for (const CopyRow& row : rows) {
        std::string taken;
        for (const auto& source : sources()) {
            const std::unique_ptr<Any> target(row.target->clone());
            SCOPED_TRACE(target->getTypeString() + " from " + source->getTypeString());
            taken += target->isCopyable(*source) ? 'x' : '-';
            EXPECT_TRUE(target->equals(*row.target)) << "changed by isCopyable";
            if (taken.back() == 'x') {
                target->copyFrom(*source);
                EXPECT_FALSE(target->equals(*row.target));
            } else {
                const std::string expected = "Unable to copy, Wrong type: expected '" + target->getTypeString() +
                                             "' but was '" + classOf(*source) + "'";
                EXPECT_EQ(expected, textOf<WrongTypeException>([&] { target->copyFrom(*source); }));
                EXPECT_TRUE(target->equals(*row.target)) << "changed by a refused copyFrom";
            }
        }
        EXPECT_EQ(row.takes, taken) << row.target->getTypeString();
    }
}

TEST(ScalarAny, CopyFromRefusalInItsOwnWords)
{
    ScalarAny<int> number(7);
    EXPECT_EQ("Unable to copy, Wrong type: expected 'IntAny' but was 'KelvoBase::ScalarAny<double>'",
              textOf<WrongTypeException>([&] { number.copyFrom(ScalarAny<double>(1)); }));
}

TEST(ScalarAny, CopyFromConvertsTheValue)
{
    ScalarAny<int> number;
    number.copyFrom(ScalarAny<bool>(true));
    EXPECT_EQ(1, number.toInt());
    number.copyFrom(ScalarAny<std::string>("12"));
    EXPECT_EQ(12, number.toInt());
    ScalarAny<std::string> text;
    text.copyFrom(ScalarAny<double>(0.5));
    EXPECT_EQ("0.5", text.toString(","));
    IntVector list;
    list.fromString("1,2", ",");
    text.copyFrom(list);
    EXPECT_EQ("1,2", text.toString(","));
}

TEST(ScalarAny, CopyFromItselfAsksNothing)
{
    struct Silent : ScalarAny<int>
    {
        using ScalarAny<int>::ScalarAny;
        int toInt() const override { throw 42; }
    };
    Silent silent(7);
    silent.copyFrom(silent);
    EXPECT_EQ(7, silent.toLong());
}

TEST(ScalarAny, CopyFromAsksEvenAHolderOfItsOwnType)
{
    struct Doubling : ScalarAny<int>
    {
        using ScalarAny<int>::ScalarAny;
        int toInt() const override { return 2 * ScalarAny<int>::toInt(); }
    };
    ScalarAny<int> number;
    number.copyFrom(Doubling(21));
    EXPECT_EQ(42, number.toInt());
}

TEST(ScalarAny, RefusedCopyFromAHolderOfItsOwnTypeKeepsTheOldValue)
{
    struct Failing : ScalarAny<int>
    {
        using ScalarAny<int>::ScalarAny;
        int toInt() const override { throw std::bad_alloc(); }
    };
    ScalarAny<int> number(7);
    EXPECT_FALSE(number.isCopyable(Failing(8)));
    EXPECT_THROW(number.copyFrom(Failing(8)), WrongTypeException);
    EXPECT_EQ(7, number.toInt());
}

TEST(ScalarAny, EqualsComparesValuesOfTheSameTypeOnly)
{
    EXPECT_TRUE(ScalarAny<bool>(true).equals(ScalarAny<bool>(true)));
    EXPECT_FALSE(ScalarAny<bool>(true).equals(ScalarAny<bool>(false)));
    EXPECT_FALSE(ScalarAny<bool>(true).equals(ScalarAny<int>(1)));
    EXPECT_TRUE(ScalarAny<unsigned long>(5).equals(ScalarAny<unsigned long>(5)));
    EXPECT_FALSE(ScalarAny<unsigned long>(5).equals(ScalarAny<Bit64>(5)));
    EXPECT_TRUE(ScalarAny<std::string>("a").equals(ScalarAny<std::string>("a")));
    EXPECT_FALSE(ScalarAny<std::string>("a").equals(ScalarAny<std::string>("A")));
    EXPECT_FALSE(ScalarAny<std::string>("1").equals(ScalarAny<int>(1)));
    EXPECT_FALSE(ScalarAny<int>(0).equals(IntVector()));
}

TEST(ScalarAny, DoublesAreEqualWithinEpsilon)
{
    struct Row
    {
        double a;
        double b;
        bool equal;
    };
    constexpr double epsilon = 2.220446049250313e-16;
    const std::vector<Row> rows = {
        {1.0, 1.0 + 1e-17, true},
        {1.0, 1.0 + 1e-15, false},
        {1.0, 1.0 + epsilon, true},
        {1.0, 1.0 + 2 * epsilon, false},
        {0.0, epsilon, true},
        {0.0, -epsilon, true},
        {0.0, 2.3e-16, false},
        {0.0, 1e-300, true},
        {0.0, -0.0, true},
        {1e300, 1e300, true},
        {infinity, infinity, false},
        {infinity, -infinity, false},
        {notANumber, notANumber, false},
        {notANumber, 1.0, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.equal, ScalarAny<double>(row.a).equals(ScalarAny<double>(row.b))) << row.a << ' ' << row.b;
        EXPECT_EQ(row.equal, ScalarAny<double>(row.b).equals(ScalarAny<double>(row.a))) << row.b << ' ' << row.a;
    }
    static_assert(epsilon == std::numeric_limits<double>::epsilon());
}
