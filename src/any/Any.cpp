#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>

#include <typeinfo>

namespace KelvoBase
{

namespace
{

/// `pointer` is the type of `this` where the refusal stands.
[[noreturn]] void refuse(const std::type_info& pointer)
{
    throw WrongTypeException(pointer, "");
}

} // namespace

Any::~Any() = default;

std::string Any::getTypeString() const
{
    return WrongTypeException::demangle(typeid(*this));
}

// Required: the refusals name this class, whatever the object is. `typeid(*this)` would name the vector that
// was asked, and the texts that users see would change.

Any& Any::operator[](unsigned int)
{
    refuse(typeid(this));
}

const Any& Any::operator[](unsigned int) const
{
    refuse(typeid(this));
}

void Any::setInt(int)
{
    refuse(typeid(this));
}

void Any::setFloat(float)
{
    refuse(typeid(this));
}

bool Any::toBool() const
{
    refuse(typeid(this));
}

int Any::toInt() const
{
    refuse(typeid(this));
}

long Any::toLong() const
{
    refuse(typeid(this));
}

unsigned int Any::toUInt() const
{
    refuse(typeid(this));
}

unsigned long Any::toULong() const
{
    refuse(typeid(this));
}

double Any::toDouble() const
{
    refuse(typeid(this));
}

Bit64 Any::toBit64() const
{
    refuse(typeid(this));
}

} // namespace KelvoBase
