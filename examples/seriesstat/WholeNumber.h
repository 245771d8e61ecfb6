#pragma once

/// \file
/// An option value of the tool's own.

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>

#include <string>
#include <typeinfo>

namespace seriesstat
{

/// An `int` that takes nothing but its own text form. `ScalarAny<int>` reads as streams do and leaves what follows the
/// number alone: with it, `--column=2,3` would quietly mean column 2.
class WholeNumber : public KelvoBase::ScalarAny<int>
{
public:
    using ScalarAny::ScalarAny;

    KelvoBase::Any* create() const override { return new WholeNumber; }
    KelvoBase::Any* clone() const override { return new WholeNumber(*this); }

    void fromString(const std::string& text, const std::string& separator) override
    {
        ScalarAny number;
        number.fromString(text, separator);
        if (number.toString(separator) != text) {
            throw KelvoBase::WrongTypeException(typeid(int), "Could not read all of '" + text + "'");
        }
        copyFrom(number);
    }
};

} // namespace seriesstat
