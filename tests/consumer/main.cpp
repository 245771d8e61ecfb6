/// \file
/// A tool as somebody outside writes it: it includes every public header and uses something of each.

#include <kelvobase/Any.h>
#include <kelvobase/Application.h>
#include <kelvobase/ConnectionStates.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Export.h>
#include <kelvobase/Forward.h>
#include <kelvobase/Globals.h>
#include <kelvobase/KelvoBase.h>
#include <kelvobase/ResourceLocation.h>
#include <kelvobase/Strings.h>
#include <kelvobase/System.h>
#include <kelvobase/Time.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace
{

#if !defined(KELVOBASE_API)
#error "Export.h does not define the export mark"
#endif

using KelvoBase::ScalarAny;
using KelvoBase::VectorAny;

// A value type of the tool's own, so that the library's virtual operations and type information are needed here.
class EvenNumber : public ScalarAny<int>
{
public:
    void fromString(const std::string& text, const std::string& separator) override
    {
        ScalarAny<int>::fromString(text, separator);
        if (toInt() % 2 != 0) {
            throw KelvoBase::WrongTypeException(typeid(EvenNumber), text + " is odd");
        }
    }
};

class Consumer : public KelvoBase::Application
{
public:
    Consumer() : Application("consumer", 1.0, "A. User", "Uses the library from outside.")
    {
        defineOption("scale", 's', true).setHelp("a number").setArg("number", new ScalarAny<double>(1.0));
        defineOption("names", 'n', false).setHelp("a list").setArg("names", new VectorAny<ScalarAny<std::string>>());
        definePositional("FILE");
    }

    void postParseInit() override
    {
        check(nPositional() == 1, "One file, please.");
        KelvoBase::TraceStream::instance().setNextTraceConditions(KelvoBase::Trace::verbose,
                                                                  KelvoBase::TraceArea::App());
        KelvoBase::TraceStream::instance() << "user " << KelvoBase::System::instance().getUserName() << std::endl;
    }

    int runMain() override
    {
        const KelvoBase::ResourceLocation file(getPositional(0));
        std::ostringstream line;
        line << "scale " << findOption("scale")->getValue()->toDouble() << ", "
             << findOption("names")->getValue()->size() << " names, suffix " << file.suffix() << ", "
             << KelvoBase::toOrdinalNumberString(1) << " of " << nPositional()
             << (works() ? ", all well" : ", but something is wrong");
        message(line.str());
        return 0;
    }

private:
    // Exceptions of the library are caught by their bases, and casts find its classes: both need one type information
    // on both sides.
    static bool works()
    {
        std::unique_ptr<KelvoBase::Any> value = std::make_unique<EvenNumber>();
        value->fromString("4", ",");
        bool caught = false;
        try {
            value->fromString("x", ",");
        } catch (const KelvoBase::RuntimeException& e) {
            caught = dynamic_cast<const KelvoBase::WrongTypeException*>(&e) != nullptr;
        }
        const KelvoBase::TraceAreaMgr* areas = KelvoBase::TraceAreaMgr::instance();
        return caught && dynamic_cast<ScalarAny<int>*>(value.get()) != nullptr && KelvoBase::haveCerr &&
               areas != nullptr && areas->searchId("App") != nullptr && KelvoBase::CS_CONNECTED == 1 &&
               KelvoBase::Time(3661).toTimeString() == "1:01:01 h";
    }
};

} // namespace

int main(int argc, char** argv)
{
    return Consumer().mainImpl(argc, argv);
}
