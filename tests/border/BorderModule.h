#pragma once

/// \file
/// What the test and its modules know of each other.

#include <kelvobase/Application.h>
#include <kelvobase/Exceptions.h>

#include <string>

#if !defined(_WIN32)
#define BORDER_API __attribute__((visibility("default")))
#define BORDER_TYPE BORDER_API
#elif defined(BORDER_MODULE_BUILDING)
#define BORDER_API __declspec(dllexport)
#define BORDER_TYPE
#else
#define BORDER_API __declspec(dllimport)
#define BORDER_TYPE
#endif

namespace KelvoBase::test
{

/// A tool's own failure, which stands whole in a header: every module has a copy of all that it needs.
class BORDER_TYPE SharedFailure : public IOException
{
public:
    explicit SharedFailure(int place) : IOException("shared failure at " + std::to_string(place)), mPlace(place) {}
    int place() const { return mPlace; }

private:
    int mPlace;
};

/// The operations of a module. What they make belongs to the caller.
struct BorderModule
{
    /// Throws an exception of the class of that name with the text "text".
    void (*raise)(const std::string& className);
    /// Calls `thrower`, and names the class of the handler that took what it threw.
    std::string (*handlerOf)(void (*thrower)());
    /// A value of a class that only the module knows, derived from `ScalarAny<int>`: it takes even numbers.
    Any* (*makeEvenNumber)();
    Any* (*makeInt)(int value);
    Any* (*makeTexts)(const std::string& text);
    /// What a cast in the module says: whether the value is a `ScalarAny<int>`.
    bool (*isInt)(const Any& value);
    /// The readable name of the value's class, as the module sees it.
    std::string (*typeName)(const Any& value);
    /// An application of a class that only the module knows. Each of its operations adds its name to `log`.
    Application* (*makeTool)(std::string& log);
    /// Where an object of the library's, of which there must be one, lies for the module.
    const void* (*addressOf)(const std::string& object);
};

} // namespace KelvoBase::test

extern "C" BORDER_API const KelvoBase::test::BorderModule* borderModule();
