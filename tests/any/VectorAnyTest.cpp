#include "any/GroupedLocale.h"
#include "support/Text.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

using namespace KelvoBase;
using KelvoBase::test::GroupedLocale;
using KelvoBase::test::textOf;

namespace
{

using BoolVector = VectorAny<ScalarAny<bool>>;
using IntVector = VectorAny<ScalarAny<int>>;
using LongVector = VectorAny<ScalarAny<long>>;
using DoubleVector = VectorAny<ScalarAny<double>>;
using Bit64Vector = VectorAny<ScalarAny<Bit64>>;
using StringVector = VectorAny<ScalarAny<std::string>>;

/// The texts of the elements.
template <typename Vector>
std::vector<std::string> elementsOf(const Vector& vector)
{
    std::vector<std::string> texts;
    for (unsigned int i = 0; i < vector.size(); ++i) {
        texts.push_back(vector[i].toString(","));
    }
    return texts;
}

template <typename Vector>
Vector read(const std::string& text, const std::string& separator = ",")
{
    Vector vector;
    vector.fromString(text, separator);
    return vector;
}

StringVector listOf(const std::vector<std::string>& texts)
{
    StringVector list;
    for (const std::string& text : texts) {
        list.add(ScalarAny<std::string>(text));
    }
    return list;
}

using Texts = std::vector<std::string>;

bool isSameClass(const Any& a, const Any& b)
{
    return typeid(a) == typeid(b);
}

} // namespace

TEST(VectorAny, TypeStrings)
{
    EXPECT_EQ("BoolVectorAny", BoolVector().getTypeString());
    EXPECT_EQ("IntVectorAny", IntVector().getTypeString());
    EXPECT_EQ("LongVectorAny", LongVector().getTypeString());
    EXPECT_EQ("DoubleVectorAny", DoubleVector().getTypeString());
    EXPECT_EQ("Bit64VectorAny", Bit64Vector().getTypeString());
    EXPECT_EQ("StringVectorAny", StringVector().getTypeString());
}

TEST(VectorAny, StartsEmpty)
{
    EXPECT_EQ(0U, IntVector().size());
    EXPECT_EQ("", IntVector().toString());
    EXPECT_EQ("", StringVector().toString(";"));
}

TEST(VectorAny, TextIsCutAtSingleSeparators)
{
    struct Row
    {
        const char* text;
        const char* separator;
        Texts expected;
    };
    const std::vector<Row> rows = {
        {"a,b", ",", {"a", "b"}},
        {"a,,b", ",", {"a,b"}},
        {"", ",", {""}},
        {"a", ",", {"a"}},
        {"a,", ",", {"a", ""}},
        {"a,,", ",", {"a,"}},
        {"a,,,b", ",", {"a,", "b"}},
        {"a,,b,c", ",", {"a,b", "c"}},
        {"a,b", ";", {"a,b"}},
        {"a;b;;c", ";", {"a", "b;c"}},
        {" a , b ", ",", {" a ", " b "}},
        {"a\nb", "\n", {"a", "b"}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.expected, elementsOf(read<StringVector>(row.text, row.separator)))
            << "'" << row.text << "' with '" << row.separator << "'";
    }
}

TEST(VectorAny, ElementsAreReadByTheirType)
{
    EXPECT_EQ((Texts{"1", "-2", "3"}), elementsOf(read<IntVector>("1, -2 ,3x")));
    EXPECT_EQ((Texts{"1", "0", "1"}), elementsOf(read<BoolVector>("true,-, + ")));
    EXPECT_EQ((Texts{"7"}), elementsOf(read<LongVector>("7")));
    EXPECT_EQ((Texts{"1.5", "1"}), elementsOf(read<DoubleVector>("1.5;1,5", ";")));
    EXPECT_EQ((Texts{"0x00000000000000FF", "0x0000000000000000"}), elementsOf(read<Bit64Vector>("0xff,")));
}

TEST(VectorAny, DoubledSeparatorInsideANumberIsReadAsOne)
{
    const DoubleVector numbers = read<DoubleVector>("1..5.2..25", ".");
    EXPECT_EQ((Texts{"1.5", "2.25"}), elementsOf(numbers));
    EXPECT_EQ("1..5.2..25", numbers.toString("."));
}

TEST(VectorAny, EmptyTextIsOneEmptyElement)
{
    EXPECT_EQ(1U, read<StringVector>("").size());
    EXPECT_EQ(1U, read<Bit64Vector>("").size());
    EXPECT_EQ("Could not fill a IntAny from string '', Wrong type: 'int'",
              textOf<WrongTypeException>([] { read<IntVector>(""); }));
    EXPECT_EQ("Could not convert '' to bool, Wrong type: 'bool'",
              textOf<WrongTypeException>([] { read<BoolVector>(""); }));
}

TEST(VectorAny, ReadingResizesAndKeepsNoOldElement)
{
    IntVector numbers = read<IntVector>("1,2,3");
    numbers.fromString("9", ",");
    EXPECT_EQ((Texts{"9"}), elementsOf(numbers));
    numbers.fromString("4,5,6,7", ",");
    EXPECT_EQ((Texts{"4", "5", "6", "7"}), elementsOf(numbers));
}

TEST(VectorAny, FaultInAnElementLeavesTheNewSizeAndTheEarlierElements)
{
    // Required, Q-211
    IntVector numbers = read<IntVector>("7,8");
    EXPECT_EQ("Could not fill a IntAny from string 'x', Wrong type: 'int'",
              textOf<WrongTypeException>([&] { numbers.fromString("1,x,3,4", ","); }));
    EXPECT_EQ((Texts{"1", "0", "0", "0"}), elementsOf(numbers));
    BoolVector flags = read<BoolVector>("1,1,1,1");
    EXPECT_THROW(flags.fromString("0,1,2", ","), WrongTypeException);
    EXPECT_EQ((Texts{"0", "1", "1"}), elementsOf(flags));
}

TEST(VectorAny, TextThatCannotBeSplitIsRefusedWithNothingChanged)
{
    // Required, Q-210
    struct Row
    {
        const char* text;
        const char* separator;
    };
    const std::vector<Row> rows = {{",a", ","},   {",", ","},   {",,", ","},     {",,x", ","},
                                   {",a,b", ","}, {"", ""},     {"a,b", ""},     {"a,", ",;"},
                                   {"a;", ",;"},  {",;", ",;"}, {"a,b;c", ",;"}, {"ab,", "::,"}};
    for (const Row& row : rows) {
        SCOPED_TRACE("'" + std::string(row.text) + "' with '" + row.separator + "'");
        IntVector numbers = read<IntVector>("7,8");
        EXPECT_EQ("Could not fill a IntVectorAny from string '" + std::string(row.text) + "', Wrong type: 'int'",
                  textOf<WrongTypeException>([&] { numbers.fromString(row.text, row.separator); }));
        EXPECT_EQ((Texts{"7", "8"}), elementsOf(numbers));
    }
}

TEST(VectorAny, RefusalOfATextNamesTheElementType)
{
    EXPECT_EQ("Could not fill a BoolVectorAny from string ',', Wrong type: 'bool'",
              textOf<WrongTypeException>([] { read<BoolVector>(","); }));
    EXPECT_EQ("Could not fill a LongVectorAny from string ',', Wrong type: 'long'",
              textOf<WrongTypeException>([] { read<LongVector>(","); }));
    EXPECT_EQ("Could not fill a DoubleVectorAny from string ',', Wrong type: 'double'",
              textOf<WrongTypeException>([] { read<DoubleVector>(","); }));
    EXPECT_EQ("Could not fill a Bit64VectorAny from string ',', Wrong type: 'unsigned long long'",
              textOf<WrongTypeException>([] { read<Bit64Vector>(","); }));
    EXPECT_EQ("Could not fill a StringVectorAny from string ',', Wrong type: '" +
                  WrongTypeException::demangle(typeid(std::string)) + "'",
              textOf<WrongTypeException>([] { read<StringVector>(","); }));
}

TEST(VectorAny, LongSeparatorIsASetOfBytesWithItsLengthAsStep)
{
    EXPECT_EQ((Texts{"a"}), elementsOf(read<StringVector>("a", ",;")));
    EXPECT_EQ((Texts{"ab", "d"}), elementsOf(read<StringVector>("ab,cd", ",;"))) << "two bytes are taken away";
    EXPECT_EQ((Texts{""}), elementsOf(read<StringVector>("", ",;")));
}

TEST(VectorAny, LongSeparatorAtTheEndOfTheTextIsOutOfRange)
{
    StringVector list = listOf({"old"});
    EXPECT_THROW(list.fromString("abc,", ",;"), std::out_of_range);
    EXPECT_EQ((Texts{"old"}), elementsOf(list));
}

TEST(VectorAny, PrintsItsElementsWithTheSeparatorBetweenThem)
{
    const IntVector numbers = read<IntVector>("1,2,3");
    EXPECT_EQ("1,2,3", numbers.toString(","));
    EXPECT_EQ("1;2;3", numbers.toString(";"));
    EXPECT_EQ("123", numbers.toString(""));
    EXPECT_EQ("1, 2, 3", numbers.toString(", "));
    EXPECT_EQ("1,2,3", numbers.toString());
}

TEST(VectorAny, PrintsSeparatorsInsideElementsDoubled)
{
    EXPECT_EQ("a,,b", listOf({"a,b"}).toString(","));
    EXPECT_EQ("a,,b,c", listOf({"a,b", "c"}).toString());
    EXPECT_EQ("a,b;c;;d", listOf({"a,b", "c;d"}).toString(";"));
    EXPECT_EQ("", listOf({""}).toString());
    EXPECT_EQ(",", listOf({"", ""}).toString());
    EXPECT_EQ("1;0", read<BoolVector>("1,0").toString(";"));
    EXPECT_EQ("1110", read<BoolVector>("1,0").toString("1")) << "a flag is escaped by the list";
}

TEST(VectorAny, NumbersKeepTheClassicLocale)
{
    const GroupedLocale grouped;
    EXPECT_EQ("123456;12345.6", read<DoubleVector>("123456;12345.6", ";").toString(";"));
    EXPECT_EQ("1234567,-7654321", read<LongVector>("1234567,-7654321").toString());
}

TEST(VectorAny, ListsThatCannotBeToldApartComeBackDifferently)
{
    EXPECT_EQ((Texts{""}), elementsOf(read<StringVector>(StringVector().toString())));
    EXPECT_EQ((Texts{"a,b"}), elementsOf(read<StringVector>(listOf({"a", "", "b"}).toString())));
    EXPECT_EQ((Texts{"a,", "b"}), elementsOf(read<StringVector>(listOf({"a", ",b"}).toString())));
    EXPECT_THROW(read<StringVector>(listOf({",a"}).toString()), WrongTypeException);
    EXPECT_THROW(read<StringVector>(listOf({"", "a"}).toString()), WrongTypeException);
}

TEST(VectorAny, RandomListsComeBackUnchanged)
{
    std::mt19937 random(20240501);
    const std::string letters = "ab,; .\\\"";
    for (int round = 0; round < 20000; ++round) {
        const std::string separator(1, ",;."[random() % 3]);
        Texts texts(1 + random() % 6);
        for (std::string& text : texts) {
            text = "x"; // an element that is empty or begins with the separator cannot come back
            for (std::size_t length = random() % 8; length > 0; --length) {
                text += letters[random() % letters.size()];
            }
        }
        const std::string text = listOf(texts).toString(separator);
        ASSERT_EQ(texts, elementsOf(read<StringVector>(text, separator))) << text << " with " << separator;
    }
}

TEST(VectorAny, AddAppendsACopy)
{
    IntVector numbers;
    ScalarAny<int> element(1);
    numbers.add(element);
    element.setInt(2);
    numbers.add(element);
    EXPECT_EQ((Texts{"1", "2"}), elementsOf(numbers));
}

TEST(VectorAny, AddTakesAnElementOfTheListItself)
{
    StringVector list = listOf({"a text that is too long for a small buffer"});
    for (int i = 0; i < 20; ++i) {
        list.add(dynamic_cast<const ScalarAny<std::string>&>(list[0]));
    }
    EXPECT_EQ(Texts(21, "a text that is too long for a small buffer"), elementsOf(list));
}

TEST(VectorAny, ChangeableIndexGrowsAndConstantIndexThrows)
{
    // Required, Q-212
    IntVector numbers;
    numbers[5].setInt(7);
    EXPECT_EQ(6U, numbers.size());
    EXPECT_EQ((Texts{"0", "0", "0", "0", "0", "7"}), elementsOf(numbers));
    const IntVector& fixed = numbers;
    EXPECT_EQ(7, fixed[5].toInt());
    EXPECT_EQ("Value is too large. Limit is 6, but it was 6.", textOf<OutOfBoundException>([&] { fixed[6]; }));
    EXPECT_EQ(6U, numbers.size());
    EXPECT_EQ(&fixed[2], &numbers[2]);
    EXPECT_EQ(6U, numbers.size());
}

TEST(VectorAny, ConstantIndexIntoAnEmptyListThrows)
{
    const StringVector list;
    EXPECT_EQ("Value is too large. Limit is 0, but it was 0.", textOf<OutOfBoundException>([&] { list[0]; }));
    EXPECT_EQ("Value is too large. Limit is 0, but it was " + std::to_string(static_cast<long>(UINT_MAX)) + ".",
              textOf<OutOfBoundException>([&] { list[UINT_MAX]; }));
}

TEST(VectorAny, GrowthKeepsTheElements)
{
    StringVector list = listOf({"a", "b"});
    list[3].fromString("d", ",");
    EXPECT_EQ((Texts{"a", "b", "", "d"}), elementsOf(list));
}

TEST(VectorAny, CopiesAreDeep)
{
    const IntVector numbers = read<IntVector>("1,2");
    IntVector copy(numbers);
    const std::unique_ptr<Any> clone(numbers.clone());
    IntVector assigned = read<IntVector>("7,8,9");
    assigned = numbers;
    IntVector copied;
    copied.copyFrom(numbers);
    for (Any* other :
         {static_cast<Any*>(&copy), clone.get(), static_cast<Any*>(&assigned), static_cast<Any*>(&copied)}) {
        EXPECT_EQ("1,2", other->toString(","));
        (*other)[0].setInt(5);
        EXPECT_EQ("5,2", other->toString(","));
        EXPECT_EQ("1,2", numbers.toString());
    }
    EXPECT_TRUE(isSameClass(*clone, numbers));
}

TEST(VectorAny, CreateGivesAnEmptyListOfTheSameClass)
{
    const IntVector numbers = read<IntVector>("1,2");
    const std::unique_ptr<Any> created(numbers.create());
    EXPECT_EQ(0U, created->size());
    EXPECT_TRUE(isSameClass(*created, numbers));
    created->noOperation();
    EXPECT_EQ(0U, created->size());
}

TEST(VectorAny, AssignmentToItselfChangesNothing)
{
    StringVector list = listOf({"a", "b"});
    list = *&list;
    EXPECT_EQ((Texts{"a", "b"}), elementsOf(list));
    list.copyFrom(list);
    EXPECT_EQ((Texts{"a", "b"}), elementsOf(list));
}

namespace
{

template <typename Vector>
void expectTakesOnlyItsOwnKind(const Vector& source)
{
    const std::vector<std::shared_ptr<Any>> targets = {
        std::make_shared<BoolVector>(),   std::make_shared<IntVector>(),   std::make_shared<LongVector>(),
        std::make_shared<DoubleVector>(), std::make_shared<Bit64Vector>(), std::make_shared<StringVector>(),
    };
    for (const auto& target : targets) {
        SCOPED_TRACE(target->getTypeString() + " from " + source.getTypeString());
        (*target)[0].fromString("1", ",");
        const std::string before = target->toString(",");
        if (target->isSameType(source)) {
            EXPECT_TRUE(target->isCopyable(source));
            target->copyFrom(source);
            EXPECT_TRUE(target->equals(source));
        } else {
            EXPECT_FALSE(target->isCopyable(source));
            EXPECT_EQ("Unable to copy, Wrong type: expected '" + target->getTypeString() + "' but was '" +
                          WrongTypeException::demangle(typeid(source)) + "'",
                      textOf<WrongTypeException>([&] { target->copyFrom(source); }));
            EXPECT_EQ(before, target->toString(","));
        }
    }
}

} // namespace

TEST(VectorAny, CopyFromTakesOnlyListsOfTheSameElements)
{
    expectTakesOnlyItsOwnKind(read<BoolVector>("1,0"));
    expectTakesOnlyItsOwnKind(read<IntVector>("1,0"));
    expectTakesOnlyItsOwnKind(read<LongVector>("1,0"));
    expectTakesOnlyItsOwnKind(read<DoubleVector>("1,0"));
    expectTakesOnlyItsOwnKind(read<Bit64Vector>("1,0"));
    expectTakesOnlyItsOwnKind(read<StringVector>("1,0"));
}

TEST(VectorAny, CopyFromRefusesAScalar)
{
    IntVector numbers = read<IntVector>("7");
    EXPECT_FALSE(numbers.isCopyable(ScalarAny<int>(1)));
    EXPECT_EQ("Unable to copy, Wrong type: expected 'IntVectorAny' but was 'KelvoBase::ScalarAny<int>'",
              textOf<WrongTypeException>([&] { numbers.copyFrom(ScalarAny<int>(1)); }));
    EXPECT_EQ("7", numbers.toString());
}

TEST(VectorAny, EqualsComparesElementByElement)
{
    EXPECT_TRUE(IntVector().equals(IntVector()));
    EXPECT_TRUE(read<IntVector>("1,2").equals(read<IntVector>("1,2")));
    EXPECT_FALSE(read<IntVector>("1,2").equals(read<IntVector>("1,3")));
    EXPECT_FALSE(read<IntVector>("1,2").equals(read<IntVector>("1")));
    EXPECT_FALSE(read<IntVector>("1").equals(read<IntVector>("1,2")));
    EXPECT_FALSE(read<IntVector>("1").equals(read<LongVector>("1")));
    EXPECT_FALSE(read<IntVector>("1").equals(ScalarAny<int>(1)));
    EXPECT_FALSE(IntVector().equals(StringVector()));
}

TEST(VectorAny, EqualsIsTolerantInsideAListOfDoubles)
{
    DoubleVector a;
    a.add(1.0);
    DoubleVector b;
    b.add(1.0 + 2.220446049250313e-16);
    EXPECT_TRUE(a.equals(b));
    b[0].copyFrom(ScalarAny<double>(1.0 + 1e-15));
    EXPECT_FALSE(a.equals(b));
    DoubleVector n;
    n.add(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(n.equals(n));
}

TEST(VectorAny, ConversionsAreRefusedInTheNameOfTheInterface)
{
    // Required, Q-202
    IntVector numbers = read<IntVector>("1");
    const IntVector& fixed = numbers;
    const std::vector<std::function<void()>> changing = {[&] { numbers.setInt(1); }, [&] { numbers.setFloat(1.0F); }};
    const std::vector<std::function<void()>> constant = {
        [&] { fixed.toBool(); },  [&] { fixed.toInt(); },    [&] { fixed.toLong(); },  [&] { fixed.toUInt(); },
        [&] { fixed.toULong(); }, [&] { fixed.toDouble(); }, [&] { fixed.toBit64(); },
    };
    for (const auto& operation : changing) {
        EXPECT_EQ("Wrong type: 'KelvoBase::Any*'", textOf<WrongTypeException>(operation));
    }
    for (const auto& operation : constant) {
        EXPECT_EQ("Wrong type: 'KelvoBase::Any const*'", textOf<WrongTypeException>(operation));
    }
    EXPECT_EQ("1", numbers.toString());
}
