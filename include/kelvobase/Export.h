#pragma once

/// \file
/// The marks of everything that `libkelvobase` and `libkelvobase-xml` export.
///
/// All other symbols of the libraries are hidden. `KELVOBASE_STATIC` is defined by the CMake package for a static
/// build, `KELVOBASE_BUILDING` and `KELVOBASE_XML_BUILDING` only while the library itself is compiled.

#if defined(_WIN32) && !defined(KELVOBASE_STATIC)
#if defined(KELVOBASE_BUILDING)
#define KELVOBASE_API __declspec(dllexport)
#else
#define KELVOBASE_API __declspec(dllimport)
#endif
#if defined(KELVOBASE_XML_BUILDING)
#define KELVOBASE_XML_API __declspec(dllexport)
#else
#define KELVOBASE_XML_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define KELVOBASE_API __attribute__((visibility("default")))
#define KELVOBASE_XML_API __attribute__((visibility("default")))
#else
#define KELVOBASE_API
#define KELVOBASE_XML_API
#endif
