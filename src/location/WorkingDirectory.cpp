#include "location/WorkingDirectory.h"

#include <kelvobase/Exceptions.h>

#include <new>
#include <optional>
#include <utility>

namespace KelvoBase
{

platform::WorkingDirectory workingDirectory()
{
    std::optional<platform::WorkingDirectory> directory;
    try {
        directory = platform::workingDirectory();
    } catch (const std::bad_alloc&) {
        throw OperationFailedException("calloc()");
    }
    if (!directory) {
        throwNoWorkingDirectory();
    }
    return *std::move(directory);
}

void throwNoWorkingDirectory()
{
    throw OperationFailedException("getcwd()");
}

} // namespace KelvoBase
