#pragma once

/// \file
/// Forward declarations of the library's classes, for headers that only name them.

namespace KelvoBase
{

class Any;
class Application;
class CLOption;
class ConfigFile;
class ExceptionBase;
class ResourceLocation;
class System;
class Time;
class TraceArea;
class TraceAreaMgr;
class TraceStream;
class WrongTypeException;
struct TraceAreaEntry;

} // namespace KelvoBase
