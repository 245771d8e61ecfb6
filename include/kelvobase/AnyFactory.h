#pragma once

/// \file
/// Values by the names of their types.

#include <kelvobase/Export.h>

#include <map>
#include <string>

namespace KelvoBase
{

class Any;

/// Makes values from type names that were read as text, from one prototype a name. A singleton, made at the first call
/// of `instance()` and destroyed at process exit. Single-threaded, like the whole library.
///
///     const std::unique_ptr<Any> value(AnyFactory::instance().createAny("IntAny"));   // a ScalarAny<int> of 0
///
/// It knows from the beginning what `getTypeString()` gives for the scalars and vectors of the library:
///
///     BoolAny        IntAny        UnsignedIntAny  LongAny        UnsignedLongAny  DoubleAny        StringAny
///     Bit64Any       BoolVectorAny IntVectorAny    LongVectorAny  DoubleVectorAny  StringVectorAny  Bit64VectorAny
///
/// A tool registers its own classes.
class KELVOBASE_API AnyFactory
{
public:
    AnyFactory(const AnyFactory&) = delete;
    AnyFactory& operator=(const AnyFactory&) = delete;

    static AnyFactory& instance();

    /// A new value of the type of that name, with the default value whatever that of the prototype is. Caller owns it.
    /// Names are case-sensitive. Throws `UnknownException("Unknown Any type: " + name)`, also for a name with a null
    /// prototype, and what `create` of the prototype throws.
    Any* createAny(const std::string& name);

    /// Takes over `prototype`, whatever becomes of the call, and makes values of that name from it. Its class must be
    /// there up to the end of the process, or until the name is registered anew. The last registration wins, for the
    /// names above as well: it writes a line (`Trace::warn`, `TraceArea::KelvoBase()`), deletes the earlier prototype
    /// and takes its place.
    ///
    ///     AnyFactory::registerAny(): IntAny has yet been registered. Storing new one.
    ///
    /// Required: "has yet been". Where that area is not registered, as in a program without an `Application`,
    /// the line is one for all areas. Required: a null pointer is stored like any prototype and takes the name.
    ///
    /// REQUIRES: `prototype` is registered under no other name.
    void registerAny(const std::string& name, Any* prototype);

    /// Registers the names above; the constructor has done so, and each further call writes its line and begins anew.
    void initBuiltinAnys();

private:
    AnyFactory();
    ~AnyFactory();

    std::map<std::string, Any*> mAnys; // owned; perhaps null
};

} // namespace KelvoBase
