#include "any/AnyData.h"
#include "any/NumberText.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>

#include <array>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>

namespace KelvoBase
{

namespace
{

template <typename T>
constexpr const char* typeName = nullptr;
template <>
constexpr const char* typeName<bool> = "BoolAny";
template <>
constexpr const char* typeName<int> = "IntAny";
template <>
constexpr const char* typeName<unsigned int> = "UnsignedIntAny";
template <>
constexpr const char* typeName<long> = "LongAny";
template <>
constexpr const char* typeName<unsigned long> = "UnsignedLongAny";
template <>
constexpr const char* typeName<double> = "DoubleAny";
template <>
constexpr const char* typeName<Bit64> = "Bit64Any";
template <>
constexpr const char* typeName<std::string> = "StringAny";

constexpr std::string_view hexDigits = "0123456789ABCDEF";

template <typename T>
constexpr bool isText = std::is_same_v<T, std::string>;
template <typename T>
constexpr bool isBits = std::is_same_v<T, Bit64>;

// The matrix of conversions: each row of types answers its own operations and those of the rows below it.

/// Answers `toBool`, `toInt` and `toUInt`. Required: not `long`, although the value may fit. A tool that
/// asks a `long` for an `int` relies on the fault.
template <typename T>
constexpr bool isSmall = std::is_same_v<T, bool> || std::is_same_v<T, int> || std::is_same_v<T, unsigned int>;
/// Answers `toLong` and `toULong`.
template <typename T>
constexpr bool isInteger = isSmall<T> || std::is_same_v<T, long> || std::is_same_v<T, unsigned long>;
/// Answers `toDouble` and takes `setInt`. Required: not `Bit64`, which converts to and from no number, and a
/// `double` stands in no row above, since it never narrows.
template <typename T>
constexpr bool isNumber = isInteger<T> || std::is_same_v<T, double>;

/// `pointer` is the type of `this` where the refusal stands.
[[noreturn]] void refuse(const std::type_info& pointer)
{
    throw WrongTypeException(pointer, "");
}

/// Reads `text` as a value of another type; a fault names that type.
template <typename Target>
Target parsed(const std::string& text)
{
    ScalarAny<Target> value;
    value.fromString(text, defaultSeparator);
    return ask<Target>(value);
}

bool parseBool(const std::string& text)
{
    std::string word = text;
    trim(word);
    if (word == "+" || word == "true" || word == "1") {
        return true;
    }
    if (word == "-" || word == "false" || word == "0") {
        return false;
    }
    throw WrongTypeException(typeid(bool), "Could not convert '" + text + "' to bool");
}

unsigned int hexValue(char c, const std::string& text)
{
    if (c >= '0' && c <= '9') {
        return static_cast<unsigned int>(c - '0');
    }
    if (c >= 'A' && c <= 'F') {
        return static_cast<unsigned int>(c - 'A') + 10U;
    }
    if (c >= 'a' && c <= 'f') {
        return static_cast<unsigned int>(c - 'a') + 10U;
    }
    throw WrongTypeException(typeid(Bit64),
                             "Cannot convert string \"" + text + "\" to Bit64 type: " + c + " is not a hex char");
}

Bit64 parseBits(const std::string& text)
{
    // Required: "0X" is no prefix, and neither is "0x" with nothing behind it: both fail at the letter.
    // Accepting them would turn faults that users see into the value 0.
    const bool prefixed = text.size() > 2 && text.starts_with("0x");
    Bit64 bits = 0;
    for (const char c : std::string_view(text).substr(prefixed ? 2 : 0)) {
        // Required: digits beyond the sixteenth push the first ones out. A test for the length would refuse
        // texts that are read today.
        bits = (bits << 4U) + hexValue(c, text);
    }
    return bits;
}

std::string bitsText(Bit64 bits)
{
    std::string text = "0x0000000000000000";
    for (std::size_t i = text.size(); i-- > 2; bits >>= 4U) {
        text[i] = hexDigits[bits & 0xFU];
    }
    return text;
}

template <typename Number>
std::string numberText(Number value, const std::string& separator)
{
    std::array<char, numberTextSize> range;
    std::string text(writeNumber(value, range));
    // Required: a number is escaped here and never unescaped in `fromString`, a text is neither. Making the two
    // ways symmetrical would change what vectors write around them.
    if (mayHold(text, separator)) {
        text = escape(text, separator);
    }
    return text;
}

} // namespace

template <typename T>
ScalarAny<T>::ScalarAny(const T& value) : AnyDataHolder<T>(value)
{
}

template <typename T>
ScalarAny<T>::~ScalarAny() = default;

template <typename T>
Any* ScalarAny<T>::create() const
{
    return new ScalarAny();
}

template <typename T>
Any* ScalarAny<T>::clone() const
{
    return new ScalarAny(*this);
}

template <typename T>
std::string ScalarAny<T>::getTypeString() const
{
    return typeName<T>;
}

template <typename T>
void ScalarAny<T>::noOperation()
{
}

template <typename T>
std::string ScalarAny<T>::toString(const std::string& separator) const
{
    const T& value = *this->mData;
    if constexpr (std::is_same_v<T, bool>) {
        return value ? "1" : "0";
    } else if constexpr (isBits<T>) {
        return bitsText(value);
    } else if constexpr (isText<T>) {
        return value;
    } else {
        return numberText(value, separator);
    }
}

template <typename T>
void ScalarAny<T>::fromString(const std::string& text, const std::string&)
{
    T& value = *this->mData;
    if constexpr (std::is_same_v<T, bool>) {
        value = parseBool(text);
    } else if constexpr (isBits<T>) {
        value = parseBits(text);
    } else if constexpr (isText<T>) {
        value = text;
    } else {
        // Required: nothing looks at what follows the number. A test for the text's end would refuse option
        // values with a unit behind them.
        if (!readNumber(text, value)) {
            throw WrongTypeException(typeid(T), "Could not fill a " + getTypeString() + " from string '" + text + "'");
        }
    }
}

template <typename T>
Any& ScalarAny<T>::operator[](unsigned int index)
{
    if (index != 0) {
        throwIndexTooLarge(size(), index);
    }
    return *this;
}

template <typename T>
const Any& ScalarAny<T>::operator[](unsigned int index) const
{
    if (index != 0) {
        throwIndexTooLarge(size(), index);
    }
    return *this;
}

template <typename T>
unsigned int ScalarAny<T>::size() const
{
    return 1;
}

template <typename T>
void ScalarAny<T>::setInt(int value)
{
    if constexpr (std::is_same_v<T, bool>) {
        *this->mData = value != 0;
    } else if constexpr (isNumber<T>) {
        *this->mData = static_cast<T>(value);
    } else {
        refuse(typeid(this));
    }
}

template <typename T>
void ScalarAny<T>::setFloat(float value)
{
    if constexpr (std::is_same_v<T, double>) {
        *this->mData = static_cast<double>(value);
    } else {
        refuse(typeid(this));
    }
}

template <typename T>
bool ScalarAny<T>::toBool() const
{
    if constexpr (isSmall<T>) {
        return static_cast<bool>(*this->mData);
    } else if constexpr (isText<T>) {
        return parsed<bool>(*this->mData);
    } else {
        refuse(typeid(this));
    }
}

template <typename T>
int ScalarAny<T>::toInt() const
{
    if constexpr (isSmall<T>) {
        return static_cast<int>(*this->mData);
    } else if constexpr (isText<T>) {
        return parsed<int>(*this->mData);
    } else {
        refuse(typeid(this));
    }
}

template <typename T>
long ScalarAny<T>::toLong() const
{
    if constexpr (isInteger<T>) {
        return static_cast<long>(*this->mData);
    } else if constexpr (isText<T>) {
        return parsed<long>(*this->mData);
    } else {
        refuse(typeid(this));
    }
}

// Required: a text is not read as one of the two unsigned types. Reading it here would make `copyFrom` accept
// what it refuses today.

template <typename T>
unsigned int ScalarAny<T>::toUInt() const
{
    if constexpr (isSmall<T>) {
        return static_cast<unsigned int>(*this->mData);
    } else {
        refuse(typeid(this));
    }
}

template <typename T>
unsigned long ScalarAny<T>::toULong() const
{
    if constexpr (isInteger<T>) {
        return static_cast<unsigned long>(*this->mData);
    } else {
        refuse(typeid(this));
    }
}

template <typename T>
double ScalarAny<T>::toDouble() const
{
    if constexpr (isNumber<T>) {
        return static_cast<double>(*this->mData);
    } else if constexpr (isText<T>) {
        return parsed<double>(*this->mData);
    } else {
        refuse(typeid(this));
    }
}

template <typename T>
Bit64 ScalarAny<T>::toBit64() const
{
    if constexpr (isBits<T>) {
        return *this->mData;
    } else if constexpr (isText<T>) {
        return parsed<Bit64>(*this->mData);
    } else {
        refuse(typeid(this));
    }
}

template class AnyDataHolder<bool>;
template class AnyDataHolder<int>;
template class AnyDataHolder<unsigned int>;
template class AnyDataHolder<long>;
template class AnyDataHolder<unsigned long>;
template class AnyDataHolder<double>;
template class AnyDataHolder<Bit64>;
template class AnyDataHolder<std::string>;

template class ScalarAny<bool>;
template class ScalarAny<int>;
template class ScalarAny<unsigned int>;
template class ScalarAny<long>;
template class ScalarAny<unsigned long>;
template class ScalarAny<double>;
template class ScalarAny<Bit64>;
template class ScalarAny<std::string>;

} // namespace KelvoBase
