#pragma once

/// \file
/// A value of the tool's own, for files.

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>

#include <charconv>
#include <cmath>
#include <string>
#include <typeinfo>

namespace seriesstat
{

/// A number that comes back from its text as it was. `ScalarAny<double>` writes six digits, and reads "1.5 or so" as
/// 1.5; this one writes as many digits as it takes, and reads nothing but finite numbers from end to end.
template <typename T>
class ExactNumber : public KelvoBase::ScalarAny<T>
{
public:
    using KelvoBase::ScalarAny<T>::ScalarAny;

    KelvoBase::Any* create() const override { return new ExactNumber; }
    KelvoBase::Any* clone() const override { return new ExactNumber(*this); }

    std::string toString(const std::string& /*separator*/) const override
    {
        char text[32]; // a double takes 24 at most, an integer 20
        return {text, std::to_chars(text, text + sizeof text, *this->mData).ptr};
    }

    void fromString(const std::string& text, const std::string& /*separator*/) override
    {
        T number{};
        const char* end = text.data() + text.size();
        const auto [behind, fault] = std::from_chars(text.data(), end, number);
        if (fault != std::errc() || behind != end || !std::isfinite(static_cast<double>(number))) {
            throw KelvoBase::WrongTypeException(typeid(T), "Could not read all of '" + text + "'");
        }
        *this->mData = number;
    }
};

} // namespace seriesstat
