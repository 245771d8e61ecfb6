#pragma once

/// \file
/// What scalars and vectors have in common: the holder of the value, defined here for the two sources that
/// instantiate it.

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace KelvoBase
{

inline constexpr const char* defaultSeparator = ",";
inline constexpr double epsilon = 2.220446049250313e-16;

[[noreturn]] inline void throwNotCopyable(const Any& target, const Any& source)
{
    throw WrongTypeException(target.getTypeString(), typeid(source), "Unable to copy");
}

[[noreturn]] inline void throwIndexTooLarge(unsigned int size, unsigned int index)
{
    throw OutOfBoundException(static_cast<long>(size), static_cast<long>(index), "Value is too large.");
}

/// False if `escape` and `unescape` with `separator` give `text` as it is: the usual case, in which their copy would be
/// most of the work.
inline bool mayHold(const std::string& text, const std::string& separator)
{
    return separator.size() != 1 || std::find(text.begin(), text.end(), separator.front()) != text.end();
}

/// Asks any value for a `T`, by the operation that belongs to `T`.
template <typename T>
T ask(const Any& any)
{
    if constexpr (std::is_same_v<T, bool>) {
        return any.toBool();
    } else if constexpr (std::is_same_v<T, int>) {
        return any.toInt();
    } else if constexpr (std::is_same_v<T, unsigned int>) {
        return any.toUInt();
    } else if constexpr (std::is_same_v<T, long>) {
        return any.toLong();
    } else if constexpr (std::is_same_v<T, unsigned long>) {
        return any.toULong();
    } else if constexpr (std::is_same_v<T, double>) {
        return any.toDouble();
    } else if constexpr (std::is_same_v<T, Bit64>) {
        return any.toBit64();
    } else {
        static_assert(std::is_same_v<T, std::string>);
        return any.toString(defaultSeparator);
    }
}

template <typename T>
bool isSameValue(const T& a, const T& b)
{
    return a == b;
}

inline bool isSameValue(double a, double b)
{
    return std::abs(a - b) <= epsilon;
}

template <typename E>
bool isSameValue(const std::vector<ScalarAny<E>>& a, const std::vector<ScalarAny<E>>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ScalarAny<E>& left, const ScalarAny<E>& right) { return left.equals(right); });
}

template <typename T>
inline constexpr bool isVector = false;
template <typename E>
inline constexpr bool isVector<std::vector<ScalarAny<E>>> = true;

template <typename T>
AnyDataHolder<T>::AnyDataHolder() : mData(new T())
{
}

template <typename T>
AnyDataHolder<T>::AnyDataHolder(const T& value) : mData(new T(value))
{
}

template <typename T>
AnyDataHolder<T>::AnyDataHolder(const AnyDataHolder& other) : Any(other), mData(new T(*other.mData))
{
}

template <typename T>
AnyDataHolder<T>& AnyDataHolder<T>::operator=(const AnyDataHolder& other)
{
    *mData = *other.mData;
    return *this;
}

template <typename T>
AnyDataHolder<T>::~AnyDataHolder()
{
    delete mData;
}

template <typename T>
void AnyDataHolder<T>::copyFrom(const Any& other)
{
    if (this == &other) {
        return;
    }
    if constexpr (isVector<T>) {
        const auto* same = dynamic_cast<const AnyDataHolder*>(&other);
        if (same == nullptr) {
            throwNotCopyable(*this, other);
        }
        *mData = T(*same->mData); // a copy first: an element that cannot be copied must not leave half a list
    } else {
        try {
            *mData = ask<T>(other);
        } catch (...) {
            throwNotCopyable(*this, other);
        }
    }
}

template <typename T>
bool AnyDataHolder<T>::isCopyable(const Any& other) const
{
    if constexpr (isVector<T>) {
        return dynamic_cast<const AnyDataHolder*>(&other) != nullptr;
    } else {
        try {
            ask<T>(other);
            return true;
        } catch (...) {
            return false;
        }
    }
}

template <typename T>
bool AnyDataHolder<T>::isSameType(const Any& other) const
{
    return getTypeString() == other.getTypeString();
}

template <typename T>
bool AnyDataHolder<T>::equals(const Any& other) const
{
    const auto* same = dynamic_cast<const AnyDataHolder*>(&other);
    return same != nullptr && isSameValue(*mData, *same->mData);
}

} // namespace KelvoBase
