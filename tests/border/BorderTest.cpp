/// \file
/// Exceptions, type information, virtual operations, memory and the library's single objects across the borders between
/// the program, the library and a module of the program's own: one that it is linked to, and one that it loads.

#include "border/BorderModule.h"
#include "border/Objects.h"

#include <kelvobase/Any.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/ResourceLocation.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <vector>

namespace KelvoBase::test
{

namespace
{

const BorderModule& linkedOne()
{
    return *borderModule();
}

/// Loaded once and never released: values of its classes stay behind in the factory.
const BorderModule& loadedOne()
{
    static const BorderModule* const loaded = [] {
        const ResourceLocation library(LOADED_MODULE);
        System::instance().libraryLoad(library);
        void* const entry = System::instance().librarySymbol(library.basename(), "borderModule");
        return reinterpret_cast<const BorderModule* (*)()>(entry)();
    }();
    return *loaded;
}

struct Way
{
    const char* name;
    const BorderModule& (*module)();
};

void PrintTo(const Way& way, std::ostream* out)
{
    *out << way.name;
}

class BorderTest : public ::testing::TestWithParam<Way>
{
protected:
    const BorderModule& module = GetParam().module();
};

INSTANTIATE_TEST_SUITE_P(Modules, BorderTest, ::testing::Values(Way{"linked", &linkedOne}, Way{"loaded", &loadedOne}),
                         [](const auto& row) { return row.param.name; });

/// What the handler for one class says of an exception that the module throws.
template <typename Caught>
std::string textOfCaught(const BorderModule& module, const std::string& className)
{
    try {
        module.raise(className);
    } catch (const Caught& e) {
        return e.what();
    } catch (...) {
        return "passed by";
    }
    return "nothing came";
}

using Handler = std::string (*)(const BorderModule&, const std::string&);

struct Row
{
    const char* className;
    std::string text;
    std::vector<Handler> takers;
    std::vector<Handler> others;
};

constexpr Handler byStandard = &textOfCaught<std::exception>;
constexpr Handler byBase = &textOfCaught<ExceptionBase>;
constexpr Handler byRuntime = &textOfCaught<RuntimeException>;
constexpr Handler byFailed = &textOfCaught<FailedException>;
constexpr Handler byOperation = &textOfCaught<OperationFailedException>;
constexpr Handler byIO = &textOfCaught<IOException>;

std::vector<Row> plainRows()
{
    return {
        {"ExceptionBase", "text", {byBase, byStandard}, {byRuntime, byIO}},
        {"RuntimeException", "text", {byRuntime, byBase, byStandard}, {byFailed, byIO}},
        {"FailedException", "text", {byFailed, byRuntime, byBase, byStandard}, {byOperation, byIO}},
        {"OperationFailedException", "text", {byOperation, byFailed, byRuntime, byBase, byStandard}, {byIO}},
        {"ObjectNotExistentException",
         "text",
         {&textOfCaught<ObjectNotExistentException>, byOperation, byFailed, byRuntime, byBase},
         {byIO}},
        {"IOException", "text", {byIO, byRuntime, byBase, byStandard}, {byFailed}},
        {"NotAvailableException", "text", {&textOfCaught<NotAvailableException>, byBase}, {byRuntime}},
        {"NotImplementedException", "text", {&textOfCaught<NotImplementedException>, byBase}, {byRuntime}},
        {"UnknownException", "text", {&textOfCaught<UnknownException>, byBase}, {byRuntime}},
    };
}

std::vector<Row> rowsWithData()
{
    return {
        {"FileNotFoundException",
         "Cannot find file \"text\".",
         {&textOfCaught<FileNotFoundException>, byIO, byRuntime, byBase},
         {byFailed}},
        {"InvalidFileNameException",
         "File name is invalid: \"text\"",
         {&textOfCaught<InvalidFileNameException>, byIO, byBase},
         {&textOfCaught<FileNotFoundException>}},
        {"FileNotReadableException",
         "Cannot read from file \"file://localhost/C:\\a\" : text",
         {&textOfCaught<FileNotReadableException>, byIO, byBase},
         {&textOfCaught<FileNotFoundException>}},
        {"IOFailedException",
         "text \"C:\\a\" failed",
         {&textOfCaught<IOFailedException>, byIO, byBase},
         {byFailed, byOperation}},
        {"NotAFileException",
         "\"file://localhost/C:\\a\" is not a (locally accessible) file or directory name.",
         {&textOfCaught<NotAFileException>, byIO, byBase},
         {byFailed}},
        {"OutOfBoundException",
         "text Limit is 5, but it was 7.",
         {&textOfCaught<OutOfBoundException>, byRuntime, byBase},
         {&textOfCaught<WrongNumberException>}},
        {"WrongNumberException",
         "textexpected: 5 but was: 7.",
         {&textOfCaught<WrongNumberException>, byRuntime, byBase},
         {&textOfCaught<OutOfBoundException>}},
        {"WrongTypeException",
         "text, Wrong type: 'int'",
         {&textOfCaught<WrongTypeException>, byRuntime, byBase},
         {byFailed, byIO}},
    };
}

std::vector<Row> rowsOfModules()
{
    return {
        {"SharedFailure",
         "shared failure at 3",
         {&textOfCaught<SharedFailure>, byIO, byRuntime, byBase, byStandard},
         {byFailed, &textOfCaught<FileNotFoundException>}},
        {"HiddenFailure", "text", {byOperation, byFailed, byRuntime, byBase, byStandard}, {byIO}},
    };
}

void expectHandlers(const BorderModule& module, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        SCOPED_TRACE(row.className);
        for (const Handler taker : row.takers) {
            EXPECT_EQ(row.text, taker(module, row.className));
        }
        for (const Handler other : row.others) {
            EXPECT_EQ("passed by", other(module, row.className));
        }
    }
}

/// A class that no module knows.
class OwnFailure : public FailedException
{
public:
    OwnFailure() : FailedException("own") {}
};

using Value = std::unique_ptr<Any>;

/// The application runs a command line; what it returns.
int run(Application& tool, std::vector<std::string> words)
{
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    return tool.mainImpl(static_cast<int>(words.size()), argv.data());
}

} // namespace

TEST_P(BorderTest, HandlersTakeWhatAModuleThrowsByItsClassAndItsBases)
{
    expectHandlers(module, plainRows());
}

TEST_P(BorderTest, HandlersTakeExceptionsWithDataByTheirClassAndItsBases)
{
    expectHandlers(module, rowsWithData());
}

TEST_P(BorderTest, HandlersTakeAModulesOwnExceptionsByWhatTheProgramKnowsOfThem)
{
    expectHandlers(module, rowsOfModules());
}

TEST_P(BorderTest, ModuleHandlesWhatTheProgramThrows)
{
    EXPECT_EQ("SharedFailure 4", module.handlerOf([] { throw SharedFailure(4); }));
    EXPECT_EQ("FileNotFoundException", module.handlerOf([] { throw FileNotFoundException("x"); }));
    EXPECT_EQ("IOException", module.handlerOf([] { throw IOFailedException("x", "", "C:\\a"); }));
    EXPECT_EQ("FailedException", module.handlerOf([] { throw OwnFailure(); }));
    EXPECT_EQ("ExceptionBase", module.handlerOf([] { throw NotAvailableException("x"); }));
    EXPECT_EQ("std::exception", module.handlerOf([] { throw std::out_of_range("x"); }));
    EXPECT_EQ("...", module.handlerOf([] { throw 1; }));
}

TEST_P(BorderTest, ModuleHandlesWhatTheLibraryThrowsBelowTheProgram)
{
    EXPECT_EQ("WrongTypeException", module.handlerOf([] { ScalarAny<int>().fromString("x", ","); }));
    EXPECT_EQ("FailedException", module.handlerOf([] { System::instance().libraryLoad("no/such/library"); }));
    EXPECT_EQ("IOException", module.handlerOf([] { ResourceLocation("http://host/file").isFile(); }));
}

TEST_P(BorderTest, CastsFindTheLibrarysClassesInAModulesValues)
{
    const Value own(module.makeEvenNumber());
    const Value plain(module.makeInt(3));
    const Value texts(module.makeTexts("a,b"));
    EXPECT_NE(nullptr, dynamic_cast<ScalarAny<int>*>(own.get()));
    EXPECT_NE(nullptr, dynamic_cast<AnyDataHolder<int>*>(own.get()));
    EXPECT_EQ(nullptr, dynamic_cast<ScalarAny<long>*>(own.get()));
    EXPECT_NE(nullptr, dynamic_cast<ScalarAny<int>*>(plain.get()));
    EXPECT_NE(nullptr, dynamic_cast<VectorAny<ScalarAny<std::string>>*>(texts.get()));
    EXPECT_EQ(nullptr, dynamic_cast<ScalarAny<std::string>*>(texts.get()));
}

TEST_P(BorderTest, CastsFindTheLibrarysClassesInTheProgramsValues)
{
    EXPECT_TRUE(module.isInt(ScalarAny<int>(1)));
    EXPECT_FALSE(module.isInt(ScalarAny<long>(1)));
    EXPECT_FALSE(module.isInt(VectorAny<ScalarAny<int>>()));
}

TEST_P(BorderTest, TypesHaveOneIdentityAndOneName)
{
    const Value owner(module.makeInt(3));
    const Any& plain = *owner;
    EXPECT_TRUE(typeid(ScalarAny<int>) == typeid(plain));
    EXPECT_FALSE(typeid(ScalarAny<long>) == typeid(plain));
    EXPECT_EQ(typeid(ScalarAny<int>).hash_code(), typeid(plain).hash_code());
    EXPECT_EQ("KelvoBase::ScalarAny<int>", module.typeName(plain));
    EXPECT_EQ(module.typeName(plain), System::demangle(typeid(plain)));
    EXPECT_EQ(module.typeName(ScalarAny<double>()), System::demangle(typeid(ScalarAny<double>)));
    EXPECT_EQ("IntAny", plain.getTypeString());
}

TEST_P(BorderTest, ValuesPassBetweenModuleAndProgram)
{
    const Value own(module.makeEvenNumber());
    const Value plain(module.makeInt(3));
    ScalarAny<int> mine(12);
    EXPECT_TRUE(mine.isSameType(*plain) && plain->isSameType(mine));
    EXPECT_TRUE(plain->isCopyable(mine) && mine.isCopyable(*plain));
    plain->copyFrom(mine);
    EXPECT_EQ(12, plain->toInt());
    EXPECT_TRUE(plain->equals(mine));
    own->copyFrom(*plain);
    EXPECT_EQ("12", own->toString(","));
    const Value twin(own->clone());
    EXPECT_EQ(module.typeName(*own), module.typeName(*twin));
    EXPECT_EQ(12, twin->toInt());
}

TEST_P(BorderTest, FaultsOfAModulesValuesReachTheProgram)
{
    const Value own(module.makeEvenNumber());
    EXPECT_NO_THROW(own->fromString("4", ","));
    EXPECT_THROW(own->fromString("x", ","), WrongTypeException);
    try {
        own->fromString("5", ",");
        FAIL() << "odd";
    } catch (const WrongTypeException& e) {
        EXPECT_EQ("5 is odd, Wrong type: '" + module.typeName(*own) + "'", std::string(e.what()));
    }
}

TEST_P(BorderTest, ListsGrowOnBothSides)
{
    const Value texts(module.makeTexts("a,b"));
    dynamic_cast<VectorAny<ScalarAny<std::string>>&>(*texts).add(std::string(1000, 'c'));
    (*texts)[7].fromString("d", ",");
    EXPECT_EQ(8U, texts->size());
    EXPECT_EQ(1000U, (*texts)[2].toString(",").size());
}

TEST_P(BorderTest, FactoryMakesAModulesValues)
{
    const std::string name = std::string("EvenNumber") + GetParam().name;
    AnyFactory::instance().registerAny(name, module.makeEvenNumber());
    const Value made(AnyFactory::instance().createAny(name));
    EXPECT_TRUE(module.isInt(*made));
    EXPECT_THROW(made->fromString("7", ","), WrongTypeException);
}

TEST_P(BorderTest, ConfigurationHoldsAModulesValues)
{
    ConfigFile config;
    config.createSection("numbers");
    config.setEntry("numbers", "even", module.makeEvenNumber());
    EXPECT_EQ("0", config.getEntry("numbers", "even")->toString(","));
}

TEST_P(BorderTest, ApplicationOfAModuleRunsInTheLibraryForTheProgram)
{
    std::string log;
    const std::unique_ptr<Application> tool(module.makeTool(log));
    EXPECT_EQ(tool.get(), Application::instance());
    EXPECT_EQ(1, run(*tool, {"tool", "--number=6"}));
    EXPECT_EQ("number:6 error:run failed:std ", log);
}

TEST_P(BorderTest, ApplicationOfAModuleEndsWithItsOwnDestructor)
{
    std::string log;
    delete module.makeTool(log);
    EXPECT_EQ("gone", log);
    EXPECT_TRUE(Application::isNotCreated());
}

TEST_P(BorderTest, LibrarysSingleObjectsAreTheSameForAll)
{
    std::string log;
    const std::unique_ptr<Application> tool(module.makeTool(log));
    for (const auto& [name, object] : objects()) {
        SCOPED_TRACE(name);
        EXPECT_NE(nullptr, object());
        EXPECT_EQ(object(), module.addressOf(name));
    }
}

} // namespace KelvoBase::test
