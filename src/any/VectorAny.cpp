#include "any/AnyData.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

namespace KelvoBase
{

namespace
{

template <typename E>
constexpr const char* typeName = nullptr;
template <>
constexpr const char* typeName<bool> = "BoolVectorAny";
template <>
constexpr const char* typeName<int> = "IntVectorAny";
template <>
constexpr const char* typeName<long> = "LongVectorAny";
template <>
constexpr const char* typeName<double> = "DoubleVectorAny";
template <>
constexpr const char* typeName<Bit64> = "Bit64VectorAny";
template <>
constexpr const char* typeName<std::string> = "StringVectorAny";

/// Whether `splitBySeparator` comes back from this text. A search that finds nothing goes on at the last byte that a
/// separator at the very beginning would have; a separator byte there makes it succeed for ever.
bool canBeSplit(const std::string& text, const std::string& separator)
{
    if (separator.empty()) {
        return false;
    }
    const std::size_t position = separator.size() - 1;
    return position >= text.size() || separator.find(text[position]) == std::string::npos;
}

} // namespace

template <typename Scalar>
VectorAny<Scalar>::VectorAny() = default;

template <typename Scalar>
VectorAny<Scalar>::~VectorAny() = default;

template <typename Scalar>
Any* VectorAny<Scalar>::create() const
{
    return new VectorAny();
}

template <typename Scalar>
Any* VectorAny<Scalar>::clone() const
{
    return new VectorAny(*this);
}

template <typename Scalar>
std::string VectorAny<Scalar>::getTypeString() const
{
    return typeName<typename Scalar::value_type>;
}

template <typename Scalar>
void VectorAny<Scalar>::noOperation()
{
}

template <typename Scalar>
std::string VectorAny<Scalar>::toString(const std::string& separator) const
{
    const std::string inner = defaultSeparator;
    std::string text;
    bool first = true;
    for (const Scalar& element : *this->mData) {
        if (!first) {
            text += separator;
        }
        first = false;
        std::string piece = element.toString(inner);
        if (mayHold(piece, separator)) {
            piece = escape(piece, separator);
        }
        text += piece;
    }
    return text;
}

template <typename Scalar>
void VectorAny<Scalar>::fromString(const std::string& text, const std::string& separator)
{
    // Required: such a text is a fault of the user, not an empty first element. Letting it through would hang
    // the tool at its command line.
    if (!canBeSplit(text, separator)) {
        throw WrongTypeException(typeid(typename Scalar::value_type),
                                 "Could not fill a " + getTypeString() + " from string '" + text + "'");
    }
    std::vector<std::string> pieces = splitBySeparator(text, separator);
    // Required: the elements are filled where they stand, without a copy to fall back on. After a fault the
    // list has its new size, and the elements in front of the fault their new values.
    this->mData->resize(pieces.size());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (mayHold(pieces[i], separator)) {
            pieces[i] = unescape(pieces[i], separator);
        }
        (*this->mData)[i].fromString(pieces[i], separator);
    }
}

template <typename Scalar>
Any& VectorAny<Scalar>::operator[](unsigned int index)
{
    std::vector<Scalar>& elements = *this->mData;
    // Required: an index beyond the end is no fault here, only in the constant form: lists are filled by
    // writing at their end.
    if (index >= elements.size()) {
        if (index >= elements.max_size()) {
            throw std::length_error("vector::resize");
        }
        elements.resize(std::size_t{index} + 1);
    }
    return elements[index];
}

template <typename Scalar>
const Any& VectorAny<Scalar>::operator[](unsigned int index) const
{
    if (index >= this->mData->size()) {
        throwIndexTooLarge(size(), index);
    }
    return (*this->mData)[index];
}

template <typename Scalar>
unsigned int VectorAny<Scalar>::size() const
{
    return static_cast<unsigned int>(this->mData->size());
}

template <typename Scalar>
void VectorAny<Scalar>::add(const Scalar& element)
{
    this->mData->push_back(element);
}

template <typename Scalar>
std::string VectorAny<Scalar>::toString() const
{
    return toString(defaultSeparator);
}

template class AnyDataHolder<std::vector<ScalarAny<bool>>>;
template class AnyDataHolder<std::vector<ScalarAny<int>>>;
template class AnyDataHolder<std::vector<ScalarAny<long>>>;
template class AnyDataHolder<std::vector<ScalarAny<double>>>;
template class AnyDataHolder<std::vector<ScalarAny<Bit64>>>;
template class AnyDataHolder<std::vector<ScalarAny<std::string>>>;

template class VectorAny<ScalarAny<bool>>;
template class VectorAny<ScalarAny<int>>;
template class VectorAny<ScalarAny<long>>;
template class VectorAny<ScalarAny<double>>;
template class VectorAny<ScalarAny<Bit64>>;
template class VectorAny<ScalarAny<std::string>>;

} // namespace KelvoBase
