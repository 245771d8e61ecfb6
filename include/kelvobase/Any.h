#pragma once

/// \file
/// Values whose type is chosen at run time: option values, configuration entries.
///
///     Any
///       AnyDataHolder<T>
///         ScalarAny<T>               T: bool, int, unsigned int, long, unsigned long, double, Bit64, std::string
///         VectorAny<ScalarAny<E>>    E: bool, int, long, double, Bit64, std::string
///
/// The two sets are closed: the templates are instantiated in the library for exactly these types.
/// Objects are handed around as `Any*`; who owns one deletes it through the virtual destructor. An object is valid
/// from construction to destruction, a copy is deep. Single-threaded, like the whole library.
///
///     ScalarAny<int> width(80);
///     width.fromString("  120 columns", ",");   // 120: what follows the number is not looked at
///     width.toLong();                           // 120
///     width.toString(",");                      // "120"
///
/// Numbers are read and written in the classic locale, whatever locale the program has made global.

#include <kelvobase/Export.h>

#include <string>
#include <vector>

namespace KelvoBase
{

/// 64 bits, read and written in hexadecimal.
using Bit64 = unsigned long long;

/// The common interface. The order of the virtual operations is binding.
///
/// An operation that a class does not answer is refused with `WrongTypeException`, text
/// `Wrong type: 'CLASS*'` (`CLASS const*` for a constant operation), CLASS being the class in which the refusing
/// function stands: `KelvoBase::ScalarAny<int>`. Required: it is `KelvoBase::Any` for every vector.
///
/// Who answers what ("value": as a plain cast converts it; "-": refused; "text": read as `fromString` of the target
/// type reads it, with its faults):
///
///     held            setInt  setFloat  toBool  toInt  toLong  toUInt  toULong  toDouble  toBit64
///     bool            != 0    -         value   value  value   value   value    value     -
///     int             value   -         != 0    value  value   value   value    value     -
///     unsigned int    value   -         != 0    value  value   value   value    value     -
///     long            value   -         -       -      value   -       value    value     -
///     unsigned long   value   -         -       -      value   -       value    value     -
///     double          value   value     -       -      -       -       -        value     -
///     Bit64           -       -         -       -      -       -       -        -         value
///     std::string     -       -         text    text   text    -       -        text      text
///     vectors         -       -         -       -      -       -       -        -         -
///
/// Required: an `int` answers `toLong`, a `long` answers neither `toInt` nor `toUInt` nor `toBool`.
/// Required: a `double` never narrows, not even to `bool`; a `Bit64` converts to and from no number.
/// Required: a text is not read as one of the unsigned types.
class KELVOBASE_API Any
{
public:
    Any() = default;
    Any(const Any&) = default;
    Any& operator=(const Any&) = default;
    virtual ~Any();

    /// Takes over the value of `other`. A scalar asks `other` for its own type (`toInt` for an `int`, `toString(",")`
    /// for a text), a vector takes a vector of the same element type only. Copying onto itself does nothing.
    /// Throws `WrongTypeException(getTypeString(), typeid(other), "Unable to copy")` and then keeps what it had.
    virtual void copyFrom(const Any& other) = 0;
    /// Whether `copyFrom(other)` would work, found out by asking `other` as `copyFrom` does. Never throws.
    virtual bool isCopyable(const Any& other) const = 0;
    /// Whether both objects have the same `getTypeString()`.
    virtual bool isSameType(const Any& other) const = 0;
    /// A new object of the same class with the default value. Caller owns it.
    virtual Any* create() const = 0;
    /// A new object of the same class with the same value. Caller owns it.
    virtual Any* clone() const = 0;
    /// The name of the type: "IntAny", "StringVectorAny". For a tool's own class, unless it says otherwise, the
    /// readable name of the class.
    virtual std::string getTypeString() const;
    /// Does nothing and is never called by the library.
    virtual void noOperation() = 0;
    /// The value as text. `separator` stands between the elements of a vector, and is doubled inside an element.
    virtual std::string toString(const std::string& separator) const = 0;
    /// Sets the value from text, see the classes. Throws `WrongTypeException` when the text does not fit.
    virtual void fromString(const std::string& text, const std::string& separator) = 0;
    /// Element access. `Any` itself refuses it; a scalar is a list of one element.
    virtual Any& operator[](unsigned int index);
    virtual const Any& operator[](unsigned int index) const;
    /// Number of elements; 1 for a scalar.
    virtual unsigned int size() const = 0;
    /// Whether `other` has the same type and value. Doubles are equal when they differ by at most
    /// 2.220446049250313e-16; a difference that is not a number is no equality.
    virtual bool equals(const Any& other) const = 0;

    /// \name Conversions, as in the table above
    /// @{
    virtual void setInt(int value);
    virtual void setFloat(float value);
    virtual bool toBool() const;
    virtual int toInt() const;
    virtual long toLong() const;
    virtual unsigned int toUInt() const;
    virtual unsigned long toULong() const;
    virtual double toDouble() const;
    virtual Bit64 toBit64() const;
    /// @}
};

/// Holds the value of a scalar or a vector in an object of its own on the heap.
template <typename T>
class KELVOBASE_API AnyDataHolder : public Any
{
public:
    AnyDataHolder();
    AnyDataHolder(const T& value);
    AnyDataHolder(const AnyDataHolder& other);
    AnyDataHolder& operator=(const AnyDataHolder& other);
    ~AnyDataHolder() override;

    void copyFrom(const Any& other) override;
    bool isCopyable(const Any& other) const override;
    bool isSameType(const Any& other) const override;
    bool equals(const Any& other) const override;

protected:
    T* mData; // owned, never null
};

/// One value of type `T`.
///
/// `fromString`, by type (the separator is not used):
///   - numbers: as stream extraction reads them, in decimal, up to the first character of code 0. Leading white space
///     is skipped. Required: what follows the number is not looked at: "12abc" => 12, "0x10" => 0, "1,5" => 1
///     for a double. No number, or one out of range:
///     `WrongTypeException(typeid(T), "Could not fill a " + getTypeString() + " from string '" + text + "'")`.
///     Required: the value is then what the extraction left: the nearest limit for a number out of range, the
///     old value for nothing but white space, else 0.
///   - `bool`: white space at both ends is skipped; "+", "true", "1" are true, "-", "false", "0" are false. Anything
///     else: `WrongTypeException(typeid(bool), "Could not convert '" + text + "' to bool")`, the value stays.
///   - `Bit64`: hexadecimal digits of either case, with or without "0x" in front. Required: "0X" is no prefix,
///     nor is "0x" with nothing behind it; both fail at the letter. Required: digits beyond 16 push the first
///     ones out. An empty text is 0. Any other character c: `WrongTypeException(typeid(Bit64), "Cannot convert string
///     \"" + text + "\" to Bit64 type: " + c + " is not a hex char")`, the value stays.
///   - `std::string`: the text as it is.
///
/// `toString`, by type: decimal numbers, doubles with six significant digits, both with each `separator` doubled;
/// `bool` "1" or "0"; `Bit64` "0x" and 16 upper-case digits; a text as it is, nothing doubled. A number that cannot be
/// written: `WrongTypeException(typeid(T), "Could not convert to string from ")`, Required with nothing behind
/// the last blank.
///
/// Required: what `toString` doubles, `fromString` does not undo; only vectors do. With the separator ".":
/// 1.5 => "1..5" => 1.
///
/// `operator[]`: index 0 is the object itself, any other throws
/// `OutOfBoundException(size(), index, "Value is too large.")`.
template <typename T>
class KELVOBASE_API ScalarAny : public AnyDataHolder<T>
{
public:
    /// The type of the value.
    using value_type = T;

    ScalarAny(const T& value = T());
    ScalarAny(const ScalarAny& other) = default;
    ScalarAny& operator=(const ScalarAny& other) = default;
    ~ScalarAny() override;

    Any* create() const override;
    Any* clone() const override;
    std::string getTypeString() const override;
    void noOperation() override;
    std::string toString(const std::string& separator) const override;
    void fromString(const std::string& text, const std::string& separator) override;
    Any& operator[](unsigned int index) override;
    const Any& operator[](unsigned int index) const override;
    unsigned int size() const override;

    void setInt(int value) override;
    void setFloat(float value) override;
    bool toBool() const override;
    int toInt() const override;
    long toLong() const override;
    unsigned int toUInt() const override;
    unsigned long toULong() const override;
    double toDouble() const override;
    Bit64 toBit64() const override;
};

/// A list of values; `Scalar` is the `ScalarAny` of its elements. Starts empty.
///
/// Text form: the elements with the separator between them, each separator inside an element doubled.
///
///     "a,b"   =>  two elements, "a" and "b"
///     "a,,b"  =>  one element, "a,b"
///     ""      =>  one element, read from ""
///
/// Not every list comes back as it was. An empty list, written as "", comes back with one element. An empty element, or
/// a separator at the beginning of one, joins the neighbours ("a", "", "b" => "a,,b" => "a,b"), and as the first of
/// several it makes a text that cannot be read.
///
/// `fromString` resizes the list to the number of pieces and fills the elements in order. Required: an element
/// that does not fit throws its own fault and leaves the list at its new size, the earlier elements changed.
/// Required: a text with a separator byte at position `separator.length() - 1` (",a" for ","), or an empty
/// separator, cannot be split and throws `WrongTypeException(typeid(E), "Could not fill a " + getTypeString() +
/// " from string '" + text + "'")` with nothing changed. A separator of more than one byte may end in
/// `std::out_of_range`, see `splitBySeparator` and `unescape`.
///
/// `operator[]`: Required: the non-constant form makes the list grow to `index + 1`; the constant form throws
/// `OutOfBoundException(size(), index, "Value is too large.")` for an index at or beyond the size.
template <typename Scalar>
class KELVOBASE_API VectorAny : public AnyDataHolder<std::vector<Scalar>>
{
public:
    VectorAny();
    VectorAny(const VectorAny& other) = default;
    VectorAny& operator=(const VectorAny& other) = default;
    ~VectorAny() override;

    Any* create() const override;
    Any* clone() const override;
    std::string getTypeString() const override;
    void noOperation() override;
    std::string toString(const std::string& separator) const override;
    void fromString(const std::string& text, const std::string& separator) override;
    Any& operator[](unsigned int index) override;
    const Any& operator[](unsigned int index) const override;
    unsigned int size() const override;

    /// Appends a copy of `element`.
    virtual void add(const Scalar& element);
    /// `toString` with the separator ",".
    virtual std::string toString() const;
};

extern template class KELVOBASE_API AnyDataHolder<bool>;
extern template class KELVOBASE_API AnyDataHolder<int>;
extern template class KELVOBASE_API AnyDataHolder<unsigned int>;
extern template class KELVOBASE_API AnyDataHolder<long>;
extern template class KELVOBASE_API AnyDataHolder<unsigned long>;
extern template class KELVOBASE_API AnyDataHolder<double>;
extern template class KELVOBASE_API AnyDataHolder<Bit64>;
extern template class KELVOBASE_API AnyDataHolder<std::string>;

extern template class KELVOBASE_API ScalarAny<bool>;
extern template class KELVOBASE_API ScalarAny<int>;
extern template class KELVOBASE_API ScalarAny<unsigned int>;
extern template class KELVOBASE_API ScalarAny<long>;
extern template class KELVOBASE_API ScalarAny<unsigned long>;
extern template class KELVOBASE_API ScalarAny<double>;
extern template class KELVOBASE_API ScalarAny<Bit64>;
extern template class KELVOBASE_API ScalarAny<std::string>;

extern template class KELVOBASE_API AnyDataHolder<std::vector<ScalarAny<bool>>>;
extern template class KELVOBASE_API AnyDataHolder<std::vector<ScalarAny<int>>>;
extern template class KELVOBASE_API AnyDataHolder<std::vector<ScalarAny<long>>>;
extern template class KELVOBASE_API AnyDataHolder<std::vector<ScalarAny<double>>>;
extern template class KELVOBASE_API AnyDataHolder<std::vector<ScalarAny<Bit64>>>;
extern template class KELVOBASE_API AnyDataHolder<std::vector<ScalarAny<std::string>>>;

extern template class KELVOBASE_API VectorAny<ScalarAny<bool>>;
extern template class KELVOBASE_API VectorAny<ScalarAny<int>>;
extern template class KELVOBASE_API VectorAny<ScalarAny<long>>;
extern template class KELVOBASE_API VectorAny<ScalarAny<double>>;
extern template class KELVOBASE_API VectorAny<ScalarAny<Bit64>>;
extern template class KELVOBASE_API VectorAny<ScalarAny<std::string>>;

} // namespace KelvoBase
