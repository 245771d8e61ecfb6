#pragma once

/// \file
/// The mark of everything that `libkelvobase` exports.
///
/// All other symbols of the library are hidden. `KELVOBASE_STATIC` is defined by the CMake package for a static
/// build, `KELVOBASE_BUILDING` only while the library itself is compiled.

#if defined(_WIN32) && !defined(KELVOBASE_STATIC)
#if defined(KELVOBASE_BUILDING)
#define KELVOBASE_API __declspec(dllexport)
#else
#define KELVOBASE_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define KELVOBASE_API __attribute__((visibility("default")))
#else
#define KELVOBASE_API
#endif
