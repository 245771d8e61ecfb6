#include "any/GroupedLocale.h"
#include "support/Text.h"

#include <kelvobase/Exceptions.h>

#include <gtest/gtest.h>

#include <climits>
#include <exception>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace KelvoBase;
using KelvoBase::test::GroupedLocale;
using KelvoBase::test::textOf;

namespace
{

struct TextRow
{
    std::string actual;
    std::string expected;
};

void expectTexts(const std::vector<TextRow>& rows)
{
    for (const TextRow& row : rows) {
        EXPECT_EQ(row.expected, row.actual);
    }
}

template <typename Exception>
void expectTextUnchanged()
{
    const std::vector<std::string> texts = {"",      " ",          "disk full",   "  two  blanks  ", "\"quoted\"",
                                            "100 %", "a\nb\tc\\n", "\xC3\xA4 %s", "ends with line\n"};
    for (const std::string& text : texts) {
        EXPECT_EQ(text, textOf<Exception>([&] { throw Exception(text); }));
    }
}

// Reaches a private field for reading: access is not checked in an explicit instantiation.
template <typename Field, typename Field::type member>
struct Reach
{
    friend typename Field::type memberOf(Field) { return member; }
};

#define PRIVATE_FIELD(NAME, CLASS, TYPE, FIELD)                                                                        \
    struct NAME                                                                                                        \
    {                                                                                                                  \
        using type = TYPE CLASS::*;                                                                                    \
        friend type memberOf(NAME);                                                                                    \
    };                                                                                                                 \
    template struct Reach<NAME, &CLASS::FIELD>

PRIVATE_FIELD(NotFoundName, FileNotFoundException, std::string, fileName);
PRIVATE_FIELD(NotFoundPath, FileNotFoundException, std::string, searchPath);
PRIVATE_FIELD(LowerBound, OutOfBoundException, long, lowerBound);
PRIVATE_FIELD(UpperBound, OutOfBoundException, long, upperBound);
PRIVATE_FIELD(OutOfBoundValue, OutOfBoundException, long, value);
PRIVATE_FIELD(ExpectedNumber, WrongNumberException, long, expected);
PRIVATE_FIELD(ActualNumber, WrongNumberException, long, actual);
PRIVATE_FIELD(ActualType, WrongTypeException, const std::type_info*, actualType);

template <typename E>
concept HasFileName = requires(const E& e)
{
    e.fileName;
};
template <typename E>
concept HasSearchPath = requires(const E& e)
{
    e.searchPath;
};
template <typename E>
concept HasLowerBound = requires(const E& e)
{
    e.lowerBound;
};
template <typename E>
concept HasUpperBound = requires(const E& e)
{
    e.upperBound;
};
template <typename E>
concept HasValue = requires(const E& e)
{
    e.value;
};
template <typename E>
concept HasExpected = requires(const E& e)
{
    e.expected;
};
template <typename E>
concept HasActual = requires(const E& e)
{
    e.actual;
};
template <typename E>
concept HasActualType = requires(const E& e)
{
    e.actualType;
};
template <typename E>
concept HasMessage = requires(const E& e)
{
    e.message;
};

} // namespace

TEST(Exceptions, PlainClassesKeepTheirTextUnchanged)
{
    expectTextUnchanged<ExceptionBase>();
    expectTextUnchanged<RuntimeException>();
    expectTextUnchanged<FailedException>();
    expectTextUnchanged<OperationFailedException>();
    expectTextUnchanged<ObjectNotExistentException>();
    expectTextUnchanged<IOException>();
    expectTextUnchanged<NotAvailableException>();
    expectTextUnchanged<NotImplementedException>();
    expectTextUnchanged<UnknownException>();
}

TEST(Exceptions, FileNotFoundNamesTheFile)
{
    expectTexts({
        {FileNotFoundException("a.txt").what(), "Cannot find file \"a.txt\"."},
        {FileNotFoundException("").what(), "Cannot find file \"\"."},
        {FileNotFoundException("C:\\a \"b\"").what(), "Cannot find file \"C:\\a \"b\"\"."},
    });
}

TEST(Exceptions, FileNotFoundNamesTheSearchPath)
{
    expectTexts({
        {FileNotFoundException("a.txt", "C:\\x;C:\\y").what(), "Cannot find file \"a.txt\" in C:\\x;C:\\y."},
        {FileNotFoundException("a.txt", "").what(), "Cannot find file \"a.txt\" in ."},
        {FileNotFoundException("", "etc").what(), "Cannot find file \"\" in etc."},
    });
}

TEST(Exceptions, InvalidFileNameGivesItsReasonIfThereIsOne)
{
    expectTexts({
        {InvalidFileNameException("a\\", "cannot end with escape").what(),
         "File name is invalid: \"a\\\": cannot end with escape"},
        {InvalidFileNameException("a\\", "").what(), "File name is invalid: \"a\\\""},
        {InvalidFileNameException("", " ").what(), "File name is invalid: \"\":  "},
    });
}

TEST(Exceptions, WrongNumberGluesItsWordsToTheMessage)
{
    // Required, Q-303
    expectTexts({
        {WrongNumberException(2, 3, "").what(), "expected: 2 but was: 3."},
        {WrongNumberException(2, 3, "columns").what(), "columnsexpected: 2 but was: 3."},
        {WrongNumberException(-2, 0, "columns, ").what(), "columns, expected: -2 but was: 0."},
        {WrongNumberException(LONG_MIN, LONG_MAX, "").what(),
         "expected: " + std::to_string(LONG_MIN) + " but was: " + std::to_string(LONG_MAX) + "."},
    });
}

TEST(Exceptions, LimitBeginsWithABlankBehindAnyMessage)
{
    // Required, Q-301
    expectTexts({
        {OutOfBoundException(5, 7, "Value is too large.").what(), "Value is too large. Limit is 5, but it was 7."},
        {OutOfBoundException(5, 7, "").what(), " Limit is 5, but it was 7."},
        {OutOfBoundException(-1, -1000000, "x").what(), "x Limit is -1, but it was -1000000."},
    });
}

TEST(Exceptions, IntervalKeepsItsWordsAndBrackets)
{
    // Required, Q-302
    expectTexts({
        {OutOfBoundException(1, 3, 9, "").what(), " Value must within [1,3[, but it was 9."},
        {OutOfBoundException(-10, 10, 10, "Angle.").what(), "Angle. Value must within [-10,10[, but it was 10."},
    });
}

TEST(Exceptions, WrongTypeNamesExpectedAndActualType)
{
    expectTexts({
        {WrongTypeException("IntAny", typeid(bool), "Unable to copy").what(),
         "Unable to copy, Wrong type: expected 'IntAny' but was 'bool'"},
        {WrongTypeException("IntAny", typeid(bool), "").what(), "Wrong type: expected 'IntAny' but was 'bool'"},
        {WrongTypeException("", typeid(unsigned long), "x").what(),
         "x, Wrong type: expected '' but was 'unsigned long'"},
    });
}

TEST(Exceptions, WrongTypeNamesTheActualType)
{
    expectTexts({
        {WrongTypeException(typeid(double), "").what(), "Wrong type: 'double'"},
        {WrongTypeException(typeid(double), "x").what(), "x, Wrong type: 'double'"},
        {WrongTypeException(typeid(const IOException*), " ").what(), " , Wrong type: 'KelvoBase::IOException const*'"},
    });
}

TEST(Exceptions, DemangleGivesTheQualifiedName)
{
    expectTexts({
        {WrongTypeException::demangle(typeid(int)), "int"},
        {WrongTypeException::demangle(typeid(unsigned long long)), "unsigned long long"},
        {WrongTypeException::demangle(typeid(OutOfBoundException)), "KelvoBase::OutOfBoundException"},
        {WrongTypeException::demangle(typeid(OutOfBoundException**)), "KelvoBase::OutOfBoundException**"},
    });
}

TEST(Exceptions, NumbersStayPlainInAnyLocale)
{
    const GroupedLocale grouped;
    expectTexts({
        {WrongNumberException(1234567, -1234567, "").what(), "expected: 1234567 but was: -1234567."},
        {OutOfBoundException(1234567, 7654321, "").what(), " Limit is 1234567, but it was 7654321."},
        {OutOfBoundException(1000, 2000, 3000, "").what(), " Value must within [1000,2000[, but it was 3000."},
    });
}

TEST(Exceptions, TextBehindACharacterOfCodeZeroIsKeptButNotShown)
{
    struct Open : RuntimeException
    {
        using RuntimeException::message;
        using RuntimeException::RuntimeException;
    };
    const Open e(std::string("a\0b", 3));
    EXPECT_EQ(std::string("a\0b", 3), e.message);
    EXPECT_STREQ("a", e.what());
}

TEST(Exceptions, WhatIsTheStoredTextNotANewOne)
{
    const OutOfBoundException e(5, 7, "x");
    EXPECT_EQ(static_cast<const void*>(e.what()), static_cast<const void*>(e.what()));
    static_assert(noexcept(e.what()));
}

TEST(Exceptions, DerivedConstructorMayReplaceTheText)
{
    struct ToolException : RuntimeException
    {
        ToolException() : RuntimeException("first") { message += ", second"; }
    };
    EXPECT_EQ("first, second", textOf<ToolException>([] { throw ToolException(); }));
}

TEST(Exceptions, FileNotFoundHoldsNameAndPath)
{
    const FileNotFoundException one("a");
    EXPECT_EQ("a", one.*memberOf(NotFoundName()));
    EXPECT_EQ("", one.*memberOf(NotFoundPath()));
    const FileNotFoundException two("a", "b");
    EXPECT_EQ("a", two.*memberOf(NotFoundName()));
    EXPECT_EQ("b", two.*memberOf(NotFoundPath()));
}

TEST(Exceptions, OutOfBoundHoldsItsNumbersAndZeroForAMissingLowerBound)
{
    const OutOfBoundException limit(5, 7, "Value is too large.");
    EXPECT_EQ(0, limit.*memberOf(LowerBound()));
    EXPECT_EQ(5, limit.*memberOf(UpperBound()));
    EXPECT_EQ(7, limit.*memberOf(OutOfBoundValue()));
    const OutOfBoundException interval(1, 3, 9, "");
    EXPECT_EQ(1, interval.*memberOf(LowerBound()));
    EXPECT_EQ(3, interval.*memberOf(UpperBound()));
    EXPECT_EQ(9, interval.*memberOf(OutOfBoundValue()));
}

TEST(Exceptions, WrongNumberHoldsBothNumbers)
{
    const WrongNumberException e(2, 3, "");
    EXPECT_EQ(2, e.*memberOf(ExpectedNumber()));
    EXPECT_EQ(3, e.*memberOf(ActualNumber()));
}

TEST(Exceptions, WrongTypeHoldsTheActualType)
{
    EXPECT_EQ(&typeid(int), WrongTypeException(typeid(int), "").*memberOf(ActualType()));
    EXPECT_EQ(&typeid(int), WrongTypeException("x", typeid(int), "y").*memberOf(ActualType()));
}

TEST(Exceptions, FieldsHaveNoPublicAccess)
{
    static_assert(!HasMessage<ExceptionBase> && !HasMessage<WrongTypeException>);
    static_assert(!HasFileName<FileNotFoundException> && !HasSearchPath<FileNotFoundException>);
    static_assert(!HasLowerBound<OutOfBoundException> && !HasUpperBound<OutOfBoundException>);
    static_assert(!HasValue<OutOfBoundException>);
    static_assert(!HasExpected<WrongNumberException> && !HasActual<WrongNumberException>);
    static_assert(!HasActualType<WrongTypeException>);
    // The concepts do see fields that are public.
    struct Open
    {
        int message, fileName, searchPath, lowerBound, upperBound, value, expected, actual, actualType;
    };
    static_assert(HasMessage<Open> && HasFileName<Open> && HasSearchPath<Open> && HasLowerBound<Open> &&
                  HasUpperBound<Open> && HasValue<Open> && HasExpected<Open> && HasActual<Open> && HasActualType<Open>);
}

namespace
{

template <typename... Classes>
struct List
{
};

using AllClasses =
    List<std::exception, ExceptionBase, RuntimeException, IOException, FileNotFoundException, FileNotReadableException,
         InvalidFileNameException, IOFailedException, NotAFileException, FailedException, OperationFailedException,
         ObjectNotExistentException, OutOfBoundException, WrongNumberException, WrongTypeException,
         NotAvailableException, NotImplementedException, UnknownException>;

template <typename Catcher, typename Thrown>
bool catches(const Thrown& thrown)
{
    try {
        throw thrown;
    } catch (const Catcher& caught) {
        EXPECT_STREQ(thrown.what(), caught.what());
        return true;
    } catch (...) {
        return false;
    }
}

/// The classes by which an exception can be caught, in the order of `AllClasses`, without their namespace.
template <typename Thrown, typename... Classes>
std::string catchersOf(const Thrown& thrown, List<Classes...>)
{
    std::string names;
    const auto add = [&]<typename Catcher>(List<Catcher>) {
        if (catches<Catcher>(thrown)) {
            const std::string name = WrongTypeException::demangle(typeid(Catcher));
            names += (names.empty() ? "" : " ") + name.substr(name.rfind(':') + 1);
        }
    };
    (add(List<Classes>()), ...);
    return names;
}

template <typename Thrown>
TextRow catchRow(const Thrown& thrown, const std::string& expected)
{
    return {catchersOf(thrown, AllClasses()), "exception ExceptionBase" + expected};
}

} // namespace

TEST(Exceptions, EachClassIsCaughtByItsAncestorsAndNoOther)
{
    const ResourceLocation file("C:\\a");
    expectTexts({
        catchRow(ExceptionBase("x"), ""),
        catchRow(RuntimeException("x"), " RuntimeException"),
        catchRow(IOException("x"), " RuntimeException IOException"),
        catchRow(FileNotFoundException("x"), " RuntimeException IOException FileNotFoundException"),
        catchRow(FileNotReadableException(file, "x"), " RuntimeException IOException FileNotReadableException"),
        catchRow(InvalidFileNameException("x", "y"), " RuntimeException IOException InvalidFileNameException"),
        catchRow(IOFailedException("x", "y", file), " RuntimeException IOException IOFailedException"),
        catchRow(NotAFileException(file), " RuntimeException IOException NotAFileException"),
        catchRow(FailedException("x"), " RuntimeException FailedException"),
        catchRow(OperationFailedException("x"), " RuntimeException FailedException OperationFailedException"),
        catchRow(ObjectNotExistentException("x"),
                 " RuntimeException FailedException OperationFailedException ObjectNotExistentException"),
        catchRow(OutOfBoundException(1, 2, "x"), " RuntimeException OutOfBoundException"),
        catchRow(WrongNumberException(1, 2, "x"), " RuntimeException WrongNumberException"),
        catchRow(WrongTypeException(typeid(int), "x"), " RuntimeException WrongTypeException"),
        catchRow(NotAvailableException("x"), " NotAvailableException"),
        catchRow(NotImplementedException("x"), " NotImplementedException"),
        catchRow(UnknownException("x"), " UnknownException"),
    });
}

namespace
{

template <typename Exception>
void expectCopiesCarryTheText(const Exception& original)
{
    static_assert(std::is_copy_constructible_v<Exception> && std::is_copy_assignable_v<Exception>);
    const std::string text = original.what();
    auto first = std::make_unique<Exception>(original);
    const Exception second(*first);
    Exception assigned(second);
    assigned = *first;
    first.reset();
    EXPECT_EQ(text, second.what());
    EXPECT_EQ(text, assigned.what());
    EXPECT_NE(static_cast<const void*>(second.what()), static_cast<const void*>(assigned.what()));
    EXPECT_EQ(text, textOf<Exception>([&] { throw second; }));
}

} // namespace

TEST(Exceptions, CopiesOutliveTheOriginalAndCarryItsText)
{
    expectCopiesCarryTheText(ExceptionBase("a text that is too long for a small buffer"));
    expectCopiesCarryTheText(RuntimeException("a"));
    expectCopiesCarryTheText(FailedException("a"));
    expectCopiesCarryTheText(OperationFailedException("a"));
    expectCopiesCarryTheText(ObjectNotExistentException("a"));
    expectCopiesCarryTheText(IOException("a"));
    expectCopiesCarryTheText(NotAvailableException("a"));
    expectCopiesCarryTheText(NotImplementedException("a"));
    expectCopiesCarryTheText(UnknownException("a"));
    expectCopiesCarryTheText(FileNotFoundException("a", "b"));
    expectCopiesCarryTheText(InvalidFileNameException("a", "b"));
    expectCopiesCarryTheText(OutOfBoundException(1, 2, 3, "a"));
    expectCopiesCarryTheText(WrongNumberException(1, 2, "a"));
    expectCopiesCarryTheText(WrongTypeException("a", typeid(int), "b"));
}

TEST(Exceptions, CopyKeepsTheFields)
{
    const OutOfBoundException bound(1, 3, 9, "");
    const OutOfBoundException copy(bound);
    EXPECT_EQ(1, copy.*memberOf(LowerBound()));
    EXPECT_EQ(3, copy.*memberOf(UpperBound()));
    EXPECT_EQ(9, copy.*memberOf(OutOfBoundValue()));
    const WrongTypeException type(typeid(int), "");
    EXPECT_EQ(&typeid(int), WrongTypeException(type).*memberOf(ActualType()));
}

TEST(Exceptions, RethrownExceptionKeepsItsClass)
{
    EXPECT_EQ("x", textOf<ObjectNotExistentException>([] {
                  try {
                      throw ObjectNotExistentException("x");
                  } catch (const ExceptionBase&) {
                      throw;
                  }
              }));
}

TEST(Exceptions, ClassesWithoutFieldsAddNoData)
{
    static_assert(sizeof(ExceptionBase) == sizeof(void*) + sizeof(std::string));
    static_assert(sizeof(RuntimeException) == sizeof(ExceptionBase));
    static_assert(sizeof(FailedException) == sizeof(ExceptionBase));
    static_assert(sizeof(OperationFailedException) == sizeof(ExceptionBase));
    static_assert(sizeof(ObjectNotExistentException) == sizeof(ExceptionBase));
    static_assert(sizeof(IOException) == sizeof(ExceptionBase));
    static_assert(sizeof(InvalidFileNameException) == sizeof(ExceptionBase));
    static_assert(sizeof(NotAvailableException) == sizeof(ExceptionBase));
    static_assert(sizeof(NotImplementedException) == sizeof(ExceptionBase));
    static_assert(sizeof(UnknownException) == sizeof(ExceptionBase));
}
