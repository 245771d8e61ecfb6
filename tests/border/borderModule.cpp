#include "border/BorderModule.h"

#include "border/Objects.h"

#include <kelvobase/Any.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/System.h>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>

namespace
{

using namespace KelvoBase;

/// Classes that nobody outside knows.
class HiddenFailure : public OperationFailedException
{
public:
    using OperationFailedException::OperationFailedException;
};

class EvenNumber : public ScalarAny<int>
{
public:
    Any* create() const override { return new EvenNumber; }
    Any* clone() const override { return new EvenNumber(*this); }
    void fromString(const std::string& text, const std::string& separator) override
    {
        ScalarAny<int>::fromString(text, separator);
        if (toInt() % 2 != 0) {
            throw WrongTypeException(typeid(EvenNumber), text + " is odd");
        }
    }
};

class Tool : public Application
{
public:
    explicit Tool(std::string& log) : Application("Tool", 1.0, "A. Author", "Logs."), mLog(log)
    {
        defineOption("number", 'n', false).setArg("even", new EvenNumber);
    }
    ~Tool() override { mLog += "gone"; }
    void error(const std::string& text, const std::string& hint) const override
    {
        mLog += "error:" + text + ":" + hint + " ";
    }
    void postParseInit() override { mLog += "number:" + findOption("number")->getValue()->toString(",") + " "; }
    int runMain() override { throw HiddenFailure("run failed"); }

private:
    std::string& mLog;
};

const std::map<std::string, std::function<void()>>& throwers()
{
    static const ResourceLocation file("C:\\a");
    static const std::map<std::string, std::function<void()>> all = {
        {"ExceptionBase", [] { throw ExceptionBase("text"); }},
        {"RuntimeException", [] { throw RuntimeException("text"); }},
        {"FailedException", [] { throw FailedException("text"); }},
        {"OperationFailedException", [] { throw OperationFailedException("text"); }},
        {"ObjectNotExistentException", [] { throw ObjectNotExistentException("text"); }},
        {"IOException", [] { throw IOException("text"); }},
        {"NotAvailableException", [] { throw NotAvailableException("text"); }},
        {"NotImplementedException", [] { throw NotImplementedException("text"); }},
        {"UnknownException", [] { throw UnknownException("text"); }},
        {"FileNotFoundException", [] { throw FileNotFoundException("text"); }},
        {"InvalidFileNameException", [] { throw InvalidFileNameException("text", ""); }},
        {"FileNotReadableException", [] { throw FileNotReadableException(file, "text"); }},
        {"IOFailedException", [] { throw IOFailedException("text", "", file); }},
        {"NotAFileException", [] { throw NotAFileException(file); }},
        {"OutOfBoundException", [] { throw OutOfBoundException(5, 7, "text"); }},
        {"WrongNumberException", [] { throw WrongNumberException(5, 7, "text"); }},
        {"WrongTypeException", [] { throw WrongTypeException(typeid(int), "text"); }},
        {"SharedFailure", [] { throw test::SharedFailure(3); }},
        {"HiddenFailure", [] { throw HiddenFailure("text"); }},
    };
    return all;
}

void raise(const std::string& className)
{
    throwers().at(className)();
}

std::string handlerOf(void (*thrower)())
{
    try {
        thrower();
    } catch (const test::SharedFailure& e) {
        return "SharedFailure " + std::to_string(e.place());
    } catch (const FileNotFoundException&) {
        return "FileNotFoundException";
    } catch (const IOException&) {
        return "IOException";
    } catch (const WrongTypeException&) {
        return "WrongTypeException";
    } catch (const FailedException&) {
        return "FailedException";
    } catch (const ExceptionBase&) {
        return "ExceptionBase";
    } catch (const std::exception&) {
        return "std::exception";
    } catch (...) {
        return "...";
    }
    return "";
}

Any* makeEvenNumber()
{
    return new EvenNumber;
}

Any* makeInt(int value)
{
    return new ScalarAny<int>(value);
}

Any* makeTexts(const std::string& text)
{
    auto texts = std::make_unique<VectorAny<ScalarAny<std::string>>>();
    texts->fromString(text, ",");
    return texts.release();
}

bool isInt(const Any& value)
{
    return dynamic_cast<const ScalarAny<int>*>(&value) != nullptr;
}

std::string typeName(const Any& value)
{
    return System::demangle(typeid(value));
}

Application* makeTool(std::string& log)
{
    return new Tool(log);
}

const void* addressOf(const std::string& object)
{
    return test::objects().at(object)();
}

} // namespace

const KelvoBase::test::BorderModule* borderModule()
{
    static const KelvoBase::test::BorderModule operations = {
        raise, handlerOf, makeEvenNumber, makeInt, makeTexts, isInt, typeName, makeTool, addressOf,
    };
    return &operations;
}
