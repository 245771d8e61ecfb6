#pragma once

/// \file
/// Forward declarations of the library's classes, for headers that only name them.

namespace KelvoBase
{

class Any;
class AnyFactory;
class Application;
class CLOption;
class ConfigFile;
class ExceptionBase;
class HtmlTextFormatter;
class Literature;
class LiteratureMgr;
class ResourceLocation;
class SHA1;
class Serialization;
class System;
class TexTextFormatter;
class TextFormatter;
class TextRep;
class Time;
class Timer;
class TraceArea;
class TraceAreaMgr;
class TraceStream;
class WrongTypeException;
class XMLCreator;
class XMLInitializer;
class XMLParser;
struct TraceAreaEntry;

} // namespace KelvoBase
