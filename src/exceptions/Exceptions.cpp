#include <kelvobase/Exceptions.h>
#include <kelvobase/System.h>

#include <string>
#include <utility>

namespace KelvoBase
{

namespace
{

/// The prefix of a message: nothing, or `msg` and what stands between it and the fixed words.
std::string prefixed(std::string msg)
{
    if (!msg.empty()) {
        msg += ", ";
    }
    return msg;
}

std::string invalidNameText(const std::string& fileName, const std::string& reason)
{
    std::string text = "File name is invalid: \"" + fileName + "\"";
    if (!reason.empty()) {
        text += ": " + reason;
    }
    return text;
}

std::string limitText(long limit, long value, const std::string& msg)
{
    // Required: the blank stands in front of the words even where `msg` is empty. Leaving it away for an empty
    // `msg` would change texts that users and scripts compare.
    return msg + " Limit is " + std::to_string(limit) + ", but it was " + std::to_string(value) + ".";
}

std::string intervalText(long lower, long upper, long value, const std::string& msg)
{
    // Required: "must within" and the opening bracket on both sides are the words users know; "must be within"
    // or "]" would change them.
    return msg + " Value must within [" + std::to_string(lower) + "," + std::to_string(upper) + "[, but it was " +
           std::to_string(value) + ".";
}

std::string glueText(long expected, long actual, const std::string& msg)
{
    // Required: the words follow `msg` with nothing between. A blank would change the text; callers end their
    // own words as they need.
    return msg + "expected: " + std::to_string(expected) + " but was: " + std::to_string(actual) + ".";
}

} // namespace

// The fields that nothing reads are there for whoever looks at a caught exception in a debugger.

ExceptionBase::ExceptionBase(std::string msg)
{
    message = std::move(msg);
}

ExceptionBase::~ExceptionBase() = default;

const char* ExceptionBase::what() const noexcept
{
    return message.c_str();
}

RuntimeException::RuntimeException(const std::string& msg) : ExceptionBase(msg) {}

FailedException::FailedException(const std::string& msg) : RuntimeException(msg) {}

OperationFailedException::OperationFailedException(const std::string& msg) : FailedException(msg) {}

ObjectNotExistentException::ObjectNotExistentException(const std::string& msg) : OperationFailedException(msg) {}

IOException::IOException(const std::string& msg) : RuntimeException(msg) {}

NotAvailableException::NotAvailableException(const std::string& msg) : ExceptionBase(msg) {}

NotImplementedException::NotImplementedException(const std::string& msg) : ExceptionBase(msg) {}

UnknownException::UnknownException(const std::string& msg) : ExceptionBase(msg) {}

FileNotFoundException::FileNotFoundException(const std::string& name)
    : IOException("Cannot find file \"" + name + "\"."), fileName(name)
{
}

FileNotFoundException::FileNotFoundException(const std::string& name, const std::string& path)
    : IOException("Cannot find file \"" + name + "\" in " + path + "."), fileName(name), searchPath(path)
{
}

InvalidFileNameException::InvalidFileNameException(const std::string& fileName, const std::string& reason)
    : IOException(invalidNameText(fileName, reason))
{
}

OutOfBoundException::OutOfBoundException(long limit, long actual, const std::string& msg)
    : RuntimeException(limitText(limit, actual, msg))
{
    lowerBound = 0;
    upperBound = limit;
    value = actual;
}

OutOfBoundException::OutOfBoundException(long lower, long upper, long actual, const std::string& msg)
    : RuntimeException(intervalText(lower, upper, actual, msg))
{
    lowerBound = lower;
    upperBound = upper;
    value = actual;
}

WrongNumberException::WrongNumberException(long wanted, long found, const std::string& msg)
    : RuntimeException(glueText(wanted, found, msg))
{
    expected = wanted;
    actual = found;
}

WrongTypeException::WrongTypeException(const std::string& expected, const std::type_info& actual, std::string msg)
    : RuntimeException(std::string()), actualType(&actual)
{
    message = prefixed(std::move(msg)) + "Wrong type: expected '" + expected + "' but was '" + demangle(actual) + "'";
}

WrongTypeException::WrongTypeException(const std::type_info& actual, const std::string& msg)
    : RuntimeException(std::string()), actualType(&actual)
{
    message = prefixed(msg) + "Wrong type: '" + demangle(actual) + "'";
}

std::string WrongTypeException::demangle(const std::type_info& type)
{
    return System::demangle(type);
}

} // namespace KelvoBase
