#pragma once

/// \file
/// The tree of exceptions: every failure that the library reports to a caller is an object of one of these classes.
///
///     std::exception
///       ExceptionBase
///         RuntimeException
///           IOException
///             FileNotFoundException
///             FileNotReadableException
///             InvalidFileNameException
///             IOFailedException
///             NotAFileException
///           FailedException
///             OperationFailedException
///               ObjectNotExistentException
///           OutOfBoundException
///           WrongNumberException
///           WrongTypeException
///         NotAvailableException
///         NotImplementedException
///         UnknownException
///
/// The whole text is composed once, in the constructor, and reaches the user's terminal as it stands: blanks, missing
/// blanks and doubled quotation marks included. Nothing is escaped, trimmed or translated. An exception class never
/// asks the operating system for its error; who throws fetches that text first and hands it over:
///
///     const std::string reason = System::errorMsg(System::lastError());
///     throw FileNotReadableException(location, reason);
///
/// Objects are copyable, own all their strings and are immutable after construction.

#include <kelvobase/Export.h>
#include <kelvobase/ResourceLocation.h>

#include <exception>
#include <string>
#include <typeinfo>

namespace KelvoBase
{

class CLOption;

/// Root of the tree. Catch it to catch every failure of the library.
class KELVOBASE_API ExceptionBase : public std::exception
{
public:
    /// Takes the finished text.
    ExceptionBase(std::string msg);
    ExceptionBase(const ExceptionBase&) = default;
    ExceptionBase& operator=(const ExceptionBase&) = default;
    ~ExceptionBase() override;

    /// The complete text. Valid for as long as the object lives. Never fails.
    const char* what() const noexcept override;

protected:
    /// The complete text; a derived constructor may set it once its bases are built.
    std::string message;
};

/// A failure at run time. The library throws its descendants only; tools may throw it. Text: `msg`.
class KELVOBASE_API RuntimeException : public ExceptionBase
{
public:
    RuntimeException(const std::string& msg);
};

/// A failed action; catch point for `OperationFailedException`. Text: `msg`.
class KELVOBASE_API FailedException : public RuntimeException
{
public:
    FailedException(const std::string& msg);
};

/// An operation failed that has no class of its own. Text: `msg`.
class KELVOBASE_API OperationFailedException : public FailedException
{
public:
    OperationFailedException(const std::string& msg);
};

/// A registered thing was looked up that is not there. Text: `msg`.
class KELVOBASE_API ObjectNotExistentException : public OperationFailedException
{
public:
    ObjectNotExistentException(const std::string& msg);
};

/// An action on the file system failed. Text: `msg`.
class KELVOBASE_API IOException : public RuntimeException
{
public:
    IOException(const std::string& msg);
};

/// A service that exists but cannot be had now; for tools. Text: `msg`.
class KELVOBASE_API NotAvailableException : public ExceptionBase
{
public:
    NotAvailableException(const std::string& msg);
};

/// A declared operation that has no working body. Text: `msg`.
class KELVOBASE_API NotImplementedException : public ExceptionBase
{
public:
    NotImplementedException(const std::string& msg);
};

/// A name that stands in no table: an option, a value type, a configuration section or key. Text: `msg`.
class KELVOBASE_API UnknownException : public ExceptionBase
{
public:
    UnknownException(const std::string& msg);
};

/// A required file is absent.
class KELVOBASE_API FileNotFoundException : public IOException
{
public:
    /// Text: `Cannot find file "NAME".`
    FileNotFoundException(const std::string& fileName);
    /// Text: `Cannot find file "NAME" in PATH.`
    FileNotFoundException(const std::string& fileName, const std::string& searchPath);

private:
    std::string fileName;
    std::string searchPath;
};

/// A file name or location text that cannot be parsed.
class KELVOBASE_API InvalidFileNameException : public IOException
{
public:
    /// Text: `File name is invalid: "NAME"`, and `: REASON` behind it unless `reason` is empty.
    InvalidFileNameException(const std::string& fileName, const std::string& reason);
};

/// A file cannot be opened for reading.
class KELVOBASE_API FileNotReadableException : public IOException
{
public:
    /// Text: `Cannot read from file "LOCATION"`, and ` : SYSTEM ERROR` behind it unless `systemError` is empty.
    /// LOCATION is `location.str()`.
    FileNotReadableException(const ResourceLocation& location, const std::string& systemError);

    /// The location's `str()` form.
    const std::string& getFileName() const;
    const std::string& getSystemError() const;

private:
    std::string fileName;
    std::string systemError;
};

/// A file system action on one or two locations failed.
///
/// Required: the text shows file system paths (`getFilePath('\\')`), the accessors give the `str()` forms. A
/// location that is not local makes the constructor throw `NotAFileException`, and that is what the caller sees.
/// Required: of two such locations it names the second.
class KELVOBASE_API IOFailedException : public IOException
{
public:
    /// Text: `OPERATION "PATH" failed`, and ` : SYSTEM ERROR` behind it unless `systemError` is empty.
    IOFailedException(const std::string& operation, const std::string& systemError, const ResourceLocation& location);
    /// Text: `OPERATION "PATH1" to "PATH2" failed`, and ` : SYSTEM ERROR` behind it unless `systemError` is empty.
    /// Required (Q-305): an empty second location gives `OPERATION "PATH1"" failed`, with two quotation marks.
    IOFailedException(const std::string& operation, const std::string& systemError, const ResourceLocation& location1,
                      const ResourceLocation& location2);

    /// The first location's `str()` form.
    const std::string& getFileName1() const;
    /// The second location's `str()` form; empty when the operation had one location.
    const std::string& getFileName2() const;
    const std::string& getSystemError() const;

private:
    std::string fileName1;
    std::string fileName2;
    std::string systemError;
};

/// A file operation on a location that is not a path of a local file system.
class KELVOBASE_API NotAFileException : public IOException
{
public:
    /// Text: `"LOCATION" is not a (locally accessible) file or directory name.` with `location.str()`.
    NotAFileException(const ResourceLocation& location);

private:
    ResourceLocation location;
};

/// A number beyond its limit or interval; an index out of range.
class KELVOBASE_API OutOfBoundException : public RuntimeException
{
public:
    /// Text: `MSG Limit is LIMIT, but it was VALUE.` Required: an empty `msg` leaves one blank in front.
    OutOfBoundException(long limit, long value, const std::string& msg);
    /// Text: `MSG Value must within [LOWER,UPPER[, but it was VALUE.` Required: these words, and this bracket
    /// on both sides. An empty `msg` leaves one blank in front.
    OutOfBoundException(long lowerBound, long upperBound, long value, const std::string& msg);

private:
    long lowerBound;
    long upperBound;
    long value;
};

/// A number that is not the required one; for tools.
class KELVOBASE_API WrongNumberException : public RuntimeException
{
public:
    /// Text: `MSGexpected: EXPECTED but was: ACTUAL.` Required: nothing between `msg` and the fixed words.
    WrongNumberException(long expected, long actual, const std::string& msg);

private:
    long expected;
    long actual;
};

/// A dynamic value was used as a type that it is not.
class KELVOBASE_API WrongTypeException : public RuntimeException
{
public:
    /// Text: `MSG, Wrong type: expected 'EXPECTED' but was 'ACTUAL'`; without `MSG, ` when `msg` is empty.
    WrongTypeException(const std::string& expected, const std::type_info& actual, std::string msg);
    /// Text: `MSG, Wrong type: 'ACTUAL'`; without `MSG, ` when `msg` is empty.
    WrongTypeException(const std::type_info& actual, const std::string& msg);

    /// The readable name of a type, as `System::demangle` gives it.
    static std::string demangle(const std::type_info& type);

private:
    friend class CLOption; // names the wanted type when an option's text does not fit

    const std::type_info* actualType; // raw: type information lives as long as the program
};

} // namespace KelvoBase
