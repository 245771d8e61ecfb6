#pragma once

/// \file
/// The one process-wide switch of the library.

#include <kelvobase/Export.h>

namespace KelvoBase
{

/// Whether this process has standard streams to write to. Initially true.
///
/// The library reads it and never writes it. A program without a console (a window program, a service) sets it to
/// false before it creates its `Application`. Then
///   - `Application::message` and `Application::error` write nothing (the exit status stays),
///   - warnings of the library for `std::cerr` are dropped,
///   - the trace destinations "cout" and "cerr" mean no output.
extern KELVOBASE_API bool haveCerr;

} // namespace KelvoBase
