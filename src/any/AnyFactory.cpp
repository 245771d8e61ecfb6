#include "trace/Message.h"

#include <kelvobase/Any.h>
#include <kelvobase/AnyFactory.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <memory>
#include <utility>

namespace KelvoBase
{

namespace
{

constexpr const char* unknown = "Unknown Any type: ";
constexpr const char* again = "AnyFactory::registerAny(): ";
// Required: "already" is meant. Whoever looks through the traces of older runs looks for these words.
constexpr const char* storing = " has yet been registered. Storing new one.";

/// The area of the warning. A warning must not make a registration fail, so it does without an area that is not there.
const std::bitset<64>& warningArea()
{
    try {
        return TraceArea::KelvoBase();
    } catch (const ObjectNotExistentException&) {
        return TraceArea::All();
    }
}

template <typename T>
void registerBuiltin(AnyFactory& factory, const char* name)
{
    factory.registerAny(name, new T);
}

} // namespace

AnyFactory& AnyFactory::instance()
{
    static AnyFactory factory;
    return factory;
}

AnyFactory::AnyFactory()
{
    initBuiltinAnys();
}

AnyFactory::~AnyFactory()
{
    for (const auto& [name, prototype] : mAnys) {
        delete prototype;
    }
}

void AnyFactory::initBuiltinAnys()
{
    registerBuiltin<ScalarAny<bool>>(*this, "BoolAny");
    registerBuiltin<ScalarAny<int>>(*this, "IntAny");
    registerBuiltin<ScalarAny<unsigned int>>(*this, "UnsignedIntAny");
    registerBuiltin<ScalarAny<long>>(*this, "LongAny");
    registerBuiltin<ScalarAny<unsigned long>>(*this, "UnsignedLongAny");
    registerBuiltin<ScalarAny<double>>(*this, "DoubleAny");
    registerBuiltin<ScalarAny<std::string>>(*this, "StringAny");
    registerBuiltin<ScalarAny<Bit64>>(*this, "Bit64Any");
    registerBuiltin<VectorAny<ScalarAny<bool>>>(*this, "BoolVectorAny");
    registerBuiltin<VectorAny<ScalarAny<int>>>(*this, "IntVectorAny");
    registerBuiltin<VectorAny<ScalarAny<long>>>(*this, "LongVectorAny");
    registerBuiltin<VectorAny<ScalarAny<double>>>(*this, "DoubleVectorAny");
    registerBuiltin<VectorAny<ScalarAny<std::string>>>(*this, "StringVectorAny");
    registerBuiltin<VectorAny<ScalarAny<Bit64>>>(*this, "Bit64VectorAny");
}

Any* AnyFactory::createAny(const std::string& name)
{
    const auto found = mAnys.find(name);
    if (found == mAnys.end() || !found->second) {
        throw UnknownException(unknown + name);
    }
    return found->second->create();
}

void AnyFactory::registerAny(const std::string& name, Any* prototype)
{
    const auto found = mAnys.find(name);
    if (found == mAnys.end()) {
        std::unique_ptr<Any> taken(prototype);
        // Required: a null pointer, too. Refusing it would turn a registration that nobody uses into a fault.
        Any*& place = mAnys.emplace(name, nullptr).first->second;
        place = taken.release();
        return;
    }
    const bool isSame = found->second == prototype; // is taken over already
    std::unique_ptr<Any> taken(isSame ? nullptr : prototype);
    traceMessage(Trace::warn, warningArea()) << again << name << storing << std::endl;
    if (!isSame) {
        const std::unique_ptr<Any> former(std::exchange(found->second, taken.release()));
    }
}

} // namespace KelvoBase
