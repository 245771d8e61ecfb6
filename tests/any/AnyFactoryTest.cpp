#include "support/Capture.h"
#include "support/Memory.h"
#include "support/Scratch.h"
#include "support/Text.h"

#include <kelvobase/Any.h>
#include <kelvobase/AnyFactory.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <bitset>
#include <memory>
#include <new>

namespace
{

using namespace KelvoBase;
using test::Memory;
using test::textOf;
using test::TraceCapture;

AnyFactory& factory()
{
    return AnyFactory::instance();
}

std::unique_ptr<Any> created(const std::string& name)
{
    return std::unique_ptr<Any>(factory().createAny(name));
}

/// A tool's own class. It counts its objects, and what it creates differs from what it is.
class Probe : public ScalarAny<int>
{
public:
    explicit Probe(int value) : ScalarAny<int>(value) { ++alive; }
    ~Probe() override { --alive; }
    Any* create() const override { return new ScalarAny<int>(*mData + 1); }
    std::string getTypeString() const override { return "Probe"; }

    static inline int alive = 0;
};

struct Builtin
{
    const char* name;
    const std::type_info& type;
    const char* text; // of the default value
};

const std::vector<Builtin>& builtins()
{
    static const std::vector<Builtin> rows = {
        {"BoolAny", typeid(ScalarAny<bool>), "0"},
        {"IntAny", typeid(ScalarAny<int>), "0"},
        {"UnsignedIntAny", typeid(ScalarAny<unsigned int>), "0"},
        {"LongAny", typeid(ScalarAny<long>), "0"},
        {"UnsignedLongAny", typeid(ScalarAny<unsigned long>), "0"},
        {"DoubleAny", typeid(ScalarAny<double>), "0"},
        {"StringAny", typeid(ScalarAny<std::string>), ""},
        {"Bit64Any", typeid(ScalarAny<Bit64>), "0x0000000000000000"},
        {"BoolVectorAny", typeid(VectorAny<ScalarAny<bool>>), ""},
        {"IntVectorAny", typeid(VectorAny<ScalarAny<int>>), ""},
        {"LongVectorAny", typeid(VectorAny<ScalarAny<long>>), ""},
        {"DoubleVectorAny", typeid(VectorAny<ScalarAny<double>>), ""},
        {"StringVectorAny", typeid(VectorAny<ScalarAny<std::string>>), ""},
        {"Bit64VectorAny", typeid(VectorAny<ScalarAny<Bit64>>), ""},
    };
    return rows;
}

TEST(AnyFactoryTest, ThereIsOne)
{
    EXPECT_EQ(&AnyFactory::instance(), &AnyFactory::instance());
}

TEST(AnyFactoryTest, BuiltinNamesGiveDefaultValuesOfTheirTypes)
{
    for (const Builtin& row : builtins()) {
        SCOPED_TRACE(row.name);
        const std::unique_ptr<Any> value = created(row.name);
        const Any& made = *value;
        EXPECT_STREQ(row.type.name(), typeid(made).name());
        EXPECT_EQ(row.name, value->getTypeString());
        EXPECT_EQ(row.text, value->toString(","));
    }
    EXPECT_EQ(0, created("IntAny")->toInt());
    EXPECT_EQ(0u, created("StringVectorAny")->size());
}

TEST(AnyFactoryTest, UnknownNamesThrow)
{
    for (const char* name :
         {"intany", "", "IntAny ", " IntAny", "UnsignedIntVectorAny", "UnsignedLongVectorAny", "Any"}) {
        EXPECT_EQ(std::string("Unknown Any type: ") + name, textOf<UnknownException>([&] { created(name); }));
    }
    EXPECT_EQ(0, created("IntAny")->toInt());
}

TEST(AnyFactoryTest, EachCallGivesANewObject)
{
    const std::unique_ptr<Any> first = created("IntAny");
    const std::unique_ptr<Any> second = created("IntAny");
    EXPECT_NE(first.get(), second.get());
    first->setInt(7);
    EXPECT_EQ(0, second->toInt());
    EXPECT_EQ(0, created("IntAny")->toInt());
}

TEST(AnyFactoryTest, PrototypesOwnValueDoesNotMatter)
{
    factory().registerAny("test.valued", new ScalarAny<int>(99));
    EXPECT_EQ(0, created("test.valued")->toInt());
}

TEST(AnyFactoryTest, ToolsOwnClassIsReachedThroughItsCreate)
{
    const TraceCapture trace(Trace::verbose);
    factory().registerAny("test.own", new Probe(41));
    EXPECT_EQ(42, created("test.own")->toInt());
    EXPECT_EQ("", trace.text());
}

TEST(AnyFactoryTest, SecondRegistrationWarnsAndWins)
{
    // Required, Q-214
    const TraceCapture trace(Trace::warn);
    factory().registerAny("test.twice", new Probe(1));
    EXPECT_EQ("", trace.text());
    factory().registerAny("test.twice", new Probe(10));
    EXPECT_EQ("|---- AnyFactory::registerAny(): test.twice has yet been registered. Storing new one.\n", trace.text());
    EXPECT_EQ(11, created("test.twice")->toInt());
}

TEST(AnyFactoryTest, WarningIsOneOfItsLevelAndArea)
{
    EXPECT_EXIT(
        {
            TraceAreaMgr::startup();
            const test::ScratchDirectory scratch;
            const std::string path = (scratch / "trace").string();
            TraceStream& stream = TraceStream::instance();
            const auto tracedWith = [&](unsigned int level, const std::bitset<64>& areas) {
                stream.traceto(level, path, areas);
                factory().initBuiltinAnys();
                stream.flush();
                return !test::contentOf(path).empty();
            };
            const std::bitset<64> own = TraceArea::KelvoBase();
            const bool success = tracedWith(Trace::warn, own) && !tracedWith(Trace::warn, ~own) &&
                                 !tracedWith(Trace::fail, TraceArea::All());
            std::_Exit(success ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(AnyFactoryTest, BuiltinNameCanBeTaken)
{
    const TraceCapture trace(Trace::warn);
    factory().registerAny("LongAny", new Probe(5));
    EXPECT_EQ("|---- AnyFactory::registerAny(): LongAny has yet been registered. Storing new one.\n", trace.text());
    EXPECT_EQ(6, created("LongAny")->toInt());
    factory().registerAny("LongAny", new ScalarAny<long>);
    EXPECT_EQ("LongAny", created("LongAny")->getTypeString());
}

TEST(AnyFactoryTest, BuiltinNamesAreRegisteredInTheirOrder)
{
    factory().registerAny("LongAny", new Probe(5));
    std::string lines;
    for (const Builtin& row : builtins()) {
        lines += std::string("|---- AnyFactory::registerAny(): ") + row.name +
                 " has yet been registered. Storing new one.\n";
    }
    const TraceCapture trace(Trace::warn);
    factory().initBuiltinAnys();
    EXPECT_EQ(lines, trace.text());
    EXPECT_EQ("LongAny", created("LongAny")->getTypeString());
}

TEST(AnyFactoryTest, EarlierPrototypeIsDeleted)
{
    const int before = Probe::alive;
    factory().registerAny("test.deleted", new Probe(1));
    factory().registerAny("test.deleted", new Probe(2));
    EXPECT_EQ(before + 1, Probe::alive);
    factory().registerAny("test.deleted", new ScalarAny<int>);
    EXPECT_EQ(before, Probe::alive);
}

TEST(AnyFactoryTest, SamePrototypeOnceMoreStays)
{
    const int before = Probe::alive;
    auto* const prototype = new Probe(1);
    factory().registerAny("test.same", prototype);
    factory().registerAny("test.same", prototype);
    EXPECT_EQ(before + 1, Probe::alive);
    EXPECT_EQ(2, created("test.same")->toInt());
}

TEST(AnyFactoryTest, NullPrototypeTakesTheNameAndIsReplaced)
{
    // Required, Q-215
    const TraceCapture trace(Trace::warn);
    factory().registerAny("test.null", nullptr);
    EXPECT_EQ("", trace.text());
    EXPECT_EQ("Unknown Any type: test.null", textOf<UnknownException>([] { created("test.null"); }));
    factory().registerAny("test.null", new Probe(3));
    EXPECT_EQ("|---- AnyFactory::registerAny(): test.null has yet been registered. Storing new one.\n", trace.text());
    EXPECT_EQ(4, created("test.null")->toInt());
}

TEST(AnyFactoryTest, NullPrototypeReplacesAnEarlierOne)
{
    const int before = Probe::alive;
    factory().registerAny("test.nulled", new Probe(3));
    factory().registerAny("test.nulled", nullptr);
    factory().registerAny("test.nulled", nullptr);
    EXPECT_EQ(before, Probe::alive);
    EXPECT_EQ("Unknown Any type: test.nulled", textOf<UnknownException>([] { created("test.nulled"); }));
}

TEST(AnyFactoryTest, PrototypeIsTakenOverEvenIfMemoryIsOut)
{
    const int before = Probe::alive;
    const std::string name = "test.memory";
    auto* const prototype = new Probe(1);
    bool isRefused = false;
    Memory::left = 0;
    try {
        factory().registerAny(name, prototype);
    } catch (const std::bad_alloc&) {
        isRefused = true;
    }
    Memory::left = Memory::unlimited;
    EXPECT_TRUE(isRefused);
    EXPECT_EQ(before, Probe::alive);
    EXPECT_EQ("Unknown Any type: test.memory", textOf<UnknownException>([&] { created(name); }));
}

TEST(AnyFactoryTest, FactoryIsSilentWithoutARegistryOfAreas)
{
    EXPECT_EXIT(
        {
            const bool without = TraceAreaMgr::instance() == nullptr;
            const TraceCapture trace(Trace::verbose);
            const std::unique_ptr<Any> value = created("IntAny");
            std::_Exit(without && trace.text().empty() && value->toInt() == 0 ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(AnyFactoryTest, WarningWithoutARegistryOfAreasIsOneForAll)
{
    // No other test of this process starts a registry up: what an area once was it stays.
    EXPECT_THROW(TraceArea::KelvoBase(), ObjectNotExistentException);
    const TraceCapture trace(Trace::warn);
    factory().registerAny("test.unregistered", new Probe(1));
    factory().registerAny("test.unregistered", new Probe(2));
    EXPECT_EQ("|---- AnyFactory::registerAny(): test.unregistered has yet been registered. Storing new one.\n",
              trace.text());
    EXPECT_EQ(3, created("test.unregistered")->toInt());
}

/// What can be created when the process ends, behind the end of the factory.
struct EndReport
{
    ~EndReport()
    {
        if (armed) {
            std::_Exit(Probe::alive == 0 ? 0 : 1);
        }
    }
    bool armed = false;
};

EndReport endReport; // made before main, so destroyed behind the factory

TEST(AnyFactoryTest, PrototypesEndWithTheFactory)
{
    EXPECT_EXIT(
        {
            endReport.armed = true;
            factory().registerAny("test.end", new Probe(1));
            std::exit(2);
        },
        ::testing::ExitedWithCode(0), "");
}

} // namespace
