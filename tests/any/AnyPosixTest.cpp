// The binary interface of the values. A string result of a slot is built where a hidden argument in front of the object
// says, for members and plain functions alike. A pointer to a virtual member holds the offset of its slot plus 1.

#include "support/posix/VirtualTable.h"

#include <kelvobase/Any.h>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

using namespace KelvoBase;

namespace
{

using test::slotCount;
using test::tableOf;

template <typename Result, typename... Arguments>
Result callSlot(Any& object, std::size_t slot, Arguments... arguments)
{
    return reinterpret_cast<Result (*)(Any*, Arguments...)>(tableOf(object)[slot])(&object, arguments...);
}

template <typename Member>
std::size_t slotOf(Member member)
{
    std::array<std::ptrdiff_t, 2> words{};
    static_assert(sizeof member == sizeof words);
    std::memcpy(words.data(), &member, sizeof member);
    return static_cast<std::size_t>(words[0] - 1) / sizeof(void*);
}

/// Tells which of its operations was called, and with what.
class Recorder : public Any
{
public:
    explicit Recorder(std::string& log) : mLog(log) {}
    ~Recorder() override { mLog = "destructor"; }
    void copyFrom(const Any& other) override { mLog = "copyFrom " + nameOf(other); }
    bool isCopyable(const Any& other) const override { return mLog = "isCopyable " + nameOf(other), true; }
    bool isSameType(const Any& other) const override { return mLog = "isSameType " + nameOf(other), true; }
    Any* create() const override { return mLog = "create", nullptr; }
    Any* clone() const override { return mLog = "clone", nullptr; }
    std::string getTypeString() const override { return mLog = "getTypeString"; }
    void noOperation() override { mLog = "noOperation"; }
    std::string toString(const std::string& separator) const override { return mLog = "toString " + separator; }
    void fromString(const std::string& text, const std::string& separator) override
    {
        mLog = "fromString " + text + separator;
    }
    Any& operator[](unsigned int index) override { return mLog = "[] " + std::to_string(index), *this; }
    const Any& operator[](unsigned int index) const override
    {
        return mLog = "[] const " + std::to_string(index), *this;
    }
    unsigned int size() const override { return mLog = "size", 4; }
    bool equals(const Any& other) const override { return mLog = "equals " + nameOf(other), true; }
    void setInt(int value) override { mLog = "setInt " + std::to_string(value); }
    void setFloat(float value) override { mLog = "setFloat " + std::to_string(value); }
    bool toBool() const override { return mLog = "toBool", true; }
    int toInt() const override { return mLog = "toInt", -2; }
    long toLong() const override { return mLog = "toLong", -3; }
    unsigned int toUInt() const override { return mLog = "toUInt", 4; }
    unsigned long toULong() const override { return mLog = "toULong", 5; }
    double toDouble() const override { return mLog = "toDouble", 1.5; }
    Bit64 toBit64() const override { return mLog = "toBit64", 6; }

private:
    std::string nameOf(const Any& other) const { return &other == this ? "itself" : "another"; }

    std::string& mLog;
};

} // namespace

TEST(AnyLayout, DestructorsComeFirst)
{
    std::string log;
    alignas(Recorder) unsigned char storage[sizeof(Recorder)];
    callSlot<void>(*new (storage) Recorder(log), 0);
    EXPECT_EQ("destructor", log);
    log.clear();
    callSlot<void>(*new Recorder(log), 1);
    EXPECT_EQ("destructor", log);
}

TEST(AnyLayout, ValueOperationsFollowInTheirOrder)
{
    std::string log;
    Recorder any(log);
    const Any* const self = &any;
    const std::string text = "text";
    const std::string separator = ";";
    EXPECT_EQ("copyFrom itself", (callSlot<void>(any, 2, self), log));
    EXPECT_EQ("isCopyable itself", (callSlot<bool>(any, 3, self), log));
    EXPECT_EQ("isSameType itself", (callSlot<bool>(any, 4, self), log));
    EXPECT_EQ("create", (callSlot<Any*>(any, 5), log));
    EXPECT_EQ("clone", (callSlot<Any*>(any, 6), log));
    EXPECT_EQ("getTypeString", callSlot<std::string>(any, 7));
    EXPECT_EQ("noOperation", (callSlot<void>(any, 8), log));
    EXPECT_EQ("toString ;", callSlot<std::string>(any, 9, &separator));
    EXPECT_EQ("fromString text;", (callSlot<void>(any, 10, &text, &separator), log));
    EXPECT_EQ(self, callSlot<Any*>(any, 11, 7U));
    EXPECT_EQ("[] 7", log);
    EXPECT_EQ(self, callSlot<const Any*>(any, 12, 8U));
    EXPECT_EQ("[] const 8", log);
    EXPECT_EQ(4U, callSlot<unsigned int>(any, 13));
    EXPECT_EQ("size", log);
    EXPECT_EQ("equals itself", (callSlot<bool>(any, 14, self), log));
}

TEST(AnyLayout, ConversionsComeLastInTheirOrder)
{
    std::string log;
    Recorder any(log);
    EXPECT_EQ("setInt -7", (callSlot<void>(any, 15, -7), log));
    EXPECT_EQ("setFloat 0.500000", (callSlot<void>(any, 16, 0.5F), log));
    EXPECT_EQ("toBool", (callSlot<bool>(any, 17), log));
    EXPECT_EQ(-2, callSlot<int>(any, 18));
    EXPECT_EQ("toInt", log);
    EXPECT_EQ(-3, callSlot<long>(any, 19));
    EXPECT_EQ("toLong", log);
    EXPECT_EQ(4U, callSlot<unsigned int>(any, 20));
    EXPECT_EQ("toUInt", log);
    EXPECT_EQ(5U, callSlot<unsigned long>(any, 21));
    EXPECT_EQ("toULong", log);
    EXPECT_EQ(1.5, callSlot<double>(any, 22));
    EXPECT_EQ("toDouble", log);
    EXPECT_EQ(6U, callSlot<Bit64>(any, 23));
    EXPECT_EQ("toBit64", log);
}

TEST(AnyLayout, MemberPointersNameTheSameSlots)
{
    const std::vector<std::size_t> slots = {
        slotOf(&Any::copyFrom),
        slotOf(&Any::isCopyable),
        slotOf(&Any::isSameType),
        slotOf(&Any::create),
        slotOf(&Any::clone),
        slotOf(&Any::getTypeString),
        slotOf(&Any::noOperation),
        slotOf(&Any::toString),
        slotOf(&Any::fromString),
        slotOf(static_cast<Any& (Any::*)(unsigned int)>(&Any::operator[])),
        slotOf(static_cast<const Any& (Any::*)(unsigned int) const>(&Any::operator[])),
        slotOf(&Any::size),
        slotOf(&Any::equals),
        slotOf(&Any::setInt),
        slotOf(&Any::setFloat),
        slotOf(&Any::toBool),
        slotOf(&Any::toInt),
        slotOf(&Any::toLong),
        slotOf(&Any::toUInt),
        slotOf(&Any::toULong),
        slotOf(&Any::toDouble),
        slotOf(&Any::toBit64),
    };
    for (std::size_t i = 0; i < slots.size(); ++i) {
        EXPECT_EQ(i + 2, slots[i]);
    }
}

TEST(AnyLayout, ScalarsAddNoVirtualOperation)
{
    EXPECT_EQ(24U, slotCount(ScalarAny<bool>()));
    EXPECT_EQ(24U, slotCount(ScalarAny<int>()));
    EXPECT_EQ(24U, slotCount(ScalarAny<unsigned long>()));
    EXPECT_EQ(24U, slotCount(ScalarAny<double>()));
    EXPECT_EQ(24U, slotCount(ScalarAny<std::string>()));
}

TEST(AnyLayout, VectorsAddTwoVirtualOperations)
{
    EXPECT_EQ(26U, slotCount(VectorAny<ScalarAny<bool>>()));
    EXPECT_EQ(26U, slotCount(VectorAny<ScalarAny<int>>()));
    EXPECT_EQ(26U, slotCount(VectorAny<ScalarAny<std::string>>()));
}

TEST(AnyLayout, LibraryObjectsAnswerThroughTheSameSlots)
{
    ScalarAny<int> number(7);
    EXPECT_EQ("IntAny", callSlot<std::string>(number, 7));
    EXPECT_EQ(1U, callSlot<unsigned int>(number, 13));
    EXPECT_EQ(7, callSlot<long>(number, 19));
    callSlot<void>(number, 15, 8);
    EXPECT_EQ(8.0, callSlot<double>(number, 22));
    VectorAny<ScalarAny<int>> list;
    EXPECT_EQ("IntVectorAny", callSlot<std::string>(list, 7));
    EXPECT_EQ(0U, callSlot<unsigned int>(list, 13));
}

TEST(AnyLayout, AddAndToStringFollowBehindTheInterface)
{
    using List = VectorAny<ScalarAny<int>>;
    List list;
    const ScalarAny<int> element(7);
    callSlot<void>(list, 24, &element);
    callSlot<void>(list, 24, &element);
    EXPECT_EQ(2U, list.size());
    EXPECT_EQ("7,7", callSlot<std::string>(list, 25));
    EXPECT_EQ(24U, slotOf(&List::add));
    EXPECT_EQ(25U, slotOf(static_cast<std::string (List::*)() const>(&List::toString)));
    EXPECT_EQ(9U, slotOf(static_cast<std::string (List::*)(const std::string&) const>(&List::toString)));
}

TEST(AnyLayout, ValuesHoldOnePointerBehindTheTable)
{
    static_assert(sizeof(Any) == sizeof(void*));
    static_assert(sizeof(ScalarAny<bool>) == 2 * sizeof(void*));
    static_assert(sizeof(ScalarAny<std::string>) == 2 * sizeof(void*));
    static_assert(sizeof(VectorAny<ScalarAny<double>>) == 2 * sizeof(void*));
}
