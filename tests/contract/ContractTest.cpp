/// \file
/// The public surface, signature by signature. A tool that was written against it must go on compiling: whoever
/// changes a line here breaks tools.

#include <kelvobase/KelvoBase.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace KelvoBase
{

namespace
{

using std::bitset;
using std::string;
using std::vector;
using Strings = vector<string>;
using Locations = vector<ResourceLocation>;

template <typename Expected, typename Actual>
constexpr bool same(Actual)
{
    return std::is_same_v<Expected, Actual>;
}

// Free functions

static_assert(same<string (*)(const string&)>(&toUpper));
static_assert(same<string (*)(const string&)>(&toLower));
static_assert(same<bool (*)(const string&)>(&isUpper));
static_assert(same<int (*)(string&, char)>(&lTrim));
static_assert(same<int (*)(string&, char, char)>(&strip));
static_assert(same<string (*)(const string&, const string&)>(&escape));
static_assert(same<string (*)(const string&, const string&)>(&unescape));
static_assert(same<string (*)(const string&, const string&)>(&unescapeAll));
static_assert(same<unsigned int (*)(const string&, Strings&, const string&, const string&, const string&)>(&split));
static_assert(same<Strings (*)(const string&, const string&)>(&splitBySeparator));
static_assert(same<int (*)(const string&, Strings&, unsigned int)>(&splitByLength));
static_assert(same<string (*)(const Strings&, const string&)>(&join));
static_assert(same<Strings (*)(const string&, unsigned int)>(&wordwrap));
static_assert(same<bool (*)(const string&, const string&)>(&match));
static_assert(same<unsigned int (*)(const string&, const string&, unsigned int)>(&findsep));
static_assert(same<string (*)(string&, const string&, const string&)>(&betweenStr));
static_assert(same<unsigned int (*)(const string&)>(&stringhash));
static_assert(same<string (*)(unsigned int)>(&toOrdinalNumberString));
static_assert(same<string (*)(const string&, unsigned int)>(&trimLength));
static_assert(same<void (*)(std::istream&, string&)>(&getshortline));
static_assert(same<double (*)(double, unsigned int)>(&KelvoBase::round));
static_assert(same<Locations (*)(const ResourceLocation&)>(&getFilesRecursively));
static_assert(same<void (*)(int)>(&handleSignal));
[[maybe_unused]] constexpr int (*trimWhite)(string&) = &trim;
[[maybe_unused]] constexpr int (*trimOne)(string&, char) = &trim;
[[maybe_unused]] constexpr string (*quoteWhole)(const string&) = &quote;
[[maybe_unused]] constexpr int (*quoteEach)(string&, char, char) = &quote;
static_assert(std::is_same_v<decltype(haveCerr), bool>);

// Exceptions

static_assert(std::is_base_of_v<std::exception, ExceptionBase>);
static_assert(std::is_constructible_v<ExceptionBase, string>);
static_assert(std::is_constructible_v<FileNotFoundException, string, string>);
static_assert(std::is_constructible_v<InvalidFileNameException, string, string>);
static_assert(std::is_constructible_v<WrongNumberException, long, long, string>);
static_assert(std::is_constructible_v<OutOfBoundException, long, long, string>);
static_assert(std::is_constructible_v<OutOfBoundException, long, long, long, string>);
static_assert(std::is_constructible_v<WrongTypeException, string, const std::type_info&, string>);
static_assert(std::is_constructible_v<WrongTypeException, const std::type_info&, string>);
static_assert(std::is_constructible_v<FileNotReadableException, const ResourceLocation&, string>);
static_assert(std::is_constructible_v<IOFailedException, string, string, const ResourceLocation&>);
static_assert(
    std::is_constructible_v<IOFailedException, string, string, const ResourceLocation&, const ResourceLocation&>);
static_assert(std::is_constructible_v<NotAFileException, const ResourceLocation&>);
static_assert(same<string (*)(const std::type_info&)>(&WrongTypeException::demangle));
static_assert(same<const string& (FileNotReadableException::*)() const>(&FileNotReadableException::getFileName));
static_assert(same<const string& (FileNotReadableException::*)() const>(&FileNotReadableException::getSystemError));
static_assert(same<const string& (IOFailedException::*)() const>(&IOFailedException::getFileName1));
static_assert(same<const string& (IOFailedException::*)() const>(&IOFailedException::getFileName2));
static_assert(same<const string& (IOFailedException::*)() const>(&IOFailedException::getSystemError));

// Values

static_assert(std::is_same_v<Bit64, unsigned long long>);
static_assert(std::is_abstract_v<Any>);
static_assert(std::has_virtual_destructor_v<Any>);
static_assert(same<void (Any::*)(const Any&)>(&Any::copyFrom));
static_assert(same<bool (Any::*)(const Any&) const>(&Any::isCopyable));
static_assert(same<bool (Any::*)(const Any&) const>(&Any::isSameType));
static_assert(same<Any* (Any::*)() const>(&Any::create));
static_assert(same<Any* (Any::*)() const>(&Any::clone));
static_assert(same<string (Any::*)() const>(&Any::getTypeString));
static_assert(same<void (Any::*)()>(&Any::noOperation));
static_assert(same<string (Any::*)(const string&) const>(&Any::toString));
static_assert(same<void (Any::*)(const string&, const string&)>(&Any::fromString));
static_assert(same<unsigned int (Any::*)() const>(&Any::size));
static_assert(same<bool (Any::*)(const Any&) const>(&Any::equals));
static_assert(same<void (Any::*)(int)>(&Any::setInt));
static_assert(same<void (Any::*)(float)>(&Any::setFloat));
static_assert(same<bool (Any::*)() const>(&Any::toBool));
static_assert(same<int (Any::*)() const>(&Any::toInt));
static_assert(same<long (Any::*)() const>(&Any::toLong));
static_assert(same<unsigned int (Any::*)() const>(&Any::toUInt));
static_assert(same<unsigned long (Any::*)() const>(&Any::toULong));
static_assert(same<double (Any::*)() const>(&Any::toDouble));
static_assert(same<Bit64 (Any::*)() const>(&Any::toBit64));
[[maybe_unused]] constexpr Any& (Any::*elementToChange)(unsigned int) = &Any::operator[];
[[maybe_unused]] constexpr const Any& (Any::*elementToRead)(unsigned int) const = &Any::operator[];
static_assert(std::is_base_of_v<Any, AnyDataHolder<int>>);
static_assert(std::is_base_of_v<AnyDataHolder<int>, ScalarAny<int>>);
static_assert(std::is_base_of_v<AnyDataHolder<vector<ScalarAny<long>>>, VectorAny<ScalarAny<long>>>);
static_assert(std::is_convertible_v<double, ScalarAny<double>>);
static_assert(std::is_copy_constructible_v<VectorAny<ScalarAny<bool>>>);

static_assert(!std::is_default_constructible_v<AnyFactory> && !std::is_copy_constructible_v<AnyFactory>);
static_assert(!std::is_polymorphic_v<AnyFactory>);
static_assert(same<AnyFactory& (*)()>(&AnyFactory::instance));
static_assert(same<Any* (AnyFactory::*)(const string&)>(&AnyFactory::createAny));
static_assert(same<void (AnyFactory::*)(const string&, Any*)>(&AnyFactory::registerAny));
static_assert(same<void (AnyFactory::*)()>(&AnyFactory::initBuiltinAnys));

// Locations

static_assert(std::is_convertible_v<const char*, ResourceLocation>);
static_assert(std::is_convertible_v<string, ResourceLocation>);
static_assert(!std::is_polymorphic_v<ResourceLocation>);
static_assert(same<ResourceLocation& (ResourceLocation::*)(const string&)>(&ResourceLocation::append));
static_assert(same<ResourceLocation& (ResourceLocation::*)(const ResourceLocation&)>(&ResourceLocation::operator<<));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::getProtocol));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::getHostName));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::getPort));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::getUserName));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::getPassword));
static_assert(same<bool (ResourceLocation::*)() const>(&ResourceLocation::isAbsolute));
static_assert(same<bool (ResourceLocation::*)() const>(&ResourceLocation::isLocalFile));
static_assert(same<bool (ResourceLocation::*)() const>(&ResourceLocation::empty));
static_assert(same<void (ResourceLocation::*)()>(&ResourceLocation::clear));
static_assert(same<const string& (ResourceLocation::*)(char, bool) const>(&ResourceLocation::getPath));
static_assert(same<const string& (ResourceLocation::*)(char) const>(&ResourceLocation::getFilePath));
static_assert(same<const char* (ResourceLocation::*)() const>(&ResourceLocation::c_str));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::str));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::print));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::lastComponent));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::basenameWithSuffix));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::basename));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::suffix));
static_assert(same<string (ResourceLocation::*)() const>(&ResourceLocation::getPathSuffix));
static_assert(same<ResourceLocation& (ResourceLocation::*)()>(&ResourceLocation::removeSuffix));
static_assert(same<ResourceLocation& (ResourceLocation::*)()>(&ResourceLocation::removeFileName));
static_assert(same<ResourceLocation& (ResourceLocation::*)()>(&ResourceLocation::toAbsolute));
static_assert(same<char (*)()>(&ResourceLocation::getFSSeparator));
static_assert(same<string (*)(const string&)>(&ResourceLocation::toCanonizedForm));
static_assert(same<string (*)(const string&)>(&ResourceLocation::fromCanonizedForm));
static_assert(same<string (*)()>(&ResourceLocation::getRootDir));
static_assert(same<bool (ResourceLocation::*)(const ResourceLocation&) const>(&ResourceLocation::operator==));
static_assert(same<bool (ResourceLocation::*)(const ResourceLocation&) const>(&ResourceLocation::operator<));
static_assert(same<bool (ResourceLocation::*)() const>(&ResourceLocation::isFile));
static_assert(same<bool (ResourceLocation::*)() const>(&ResourceLocation::isDir));
static_assert(same<bool (ResourceLocation::*)() const>(&ResourceLocation::isExistent));
static_assert(same<bool (ResourceLocation::*)(bool) const>(&ResourceLocation::isWritable));
static_assert(same<void (ResourceLocation::*)() const>(&ResourceLocation::remove));
static_assert(same<void (ResourceLocation::*)() const>(&ResourceLocation::createDir));
static_assert(same<void (ResourceLocation::*)(const ResourceLocation&) const>(&ResourceLocation::copy));
static_assert(same<void (ResourceLocation::*)(ResourceLocation) const>(&ResourceLocation::move));
static_assert(same<unsigned long long (ResourceLocation::*)() const>(&ResourceLocation::size));
static_assert(same<Locations (ResourceLocation::*)(bool) const>(&ResourceLocation::getDirList));
static_assert(same<const string& (ResourceLocation::*)(char) const>(&ResourceLocation::getPathWithoutFilename));

// Configuration

using Entries = std::map<string, Any*>;
using Sections = std::map<string, Entries>;
static_assert(!std::is_polymorphic_v<ConfigFile>);
static_assert(std::is_default_constructible_v<ConfigFile>);
static_assert(std::is_copy_constructible_v<ConfigFile>);
static_assert(std::is_convertible_v<const ResourceLocation&, ConfigFile>);
static_assert(std::is_convertible_v<const string&, ConfigFile>);
static_assert(std::is_convertible_v<const char*, ConfigFile>);
static_assert(same<ConfigFile& (ConfigFile::*)(const ConfigFile&)>(&ConfigFile::operator=));
static_assert(same<void (ConfigFile::*)()>(&ConfigFile::init));
static_assert(same<const string& (ConfigFile::*)() const>(&ConfigFile::getSectionBeginIdent));
static_assert(same<void (ConfigFile::*)(const string&)>(&ConfigFile::setSectionBeginIdent));
static_assert(same<const string& (ConfigFile::*)() const>(&ConfigFile::getSectionEndIdent));
static_assert(same<void (ConfigFile::*)(const string&)>(&ConfigFile::setSectionEndIdent));
static_assert(same<const string& (ConfigFile::*)() const>(&ConfigFile::getSeperator));
static_assert(same<void (ConfigFile::*)(const string&)>(&ConfigFile::setSeperator));
static_assert(same<const string& (ConfigFile::*)() const>(&ConfigFile::getListSeperator));
static_assert(same<void (ConfigFile::*)(const string&)>(&ConfigFile::setListSeperator));
static_assert(same<char (ConfigFile::*)() const>(&ConfigFile::getCommentSign));
static_assert(same<void (ConfigFile::*)(char)>(&ConfigFile::setCommentSign));
static_assert(same<bool (ConfigFile::*)() const>(&ConfigFile::isEmpty));
static_assert(same<void (ConfigFile::*)()>(&ConfigFile::clear));
[[maybe_unused]] constexpr Sections::iterator (ConfigFile::*firstSection)() = &ConfigFile::beginSection;
[[maybe_unused]] constexpr Sections::iterator (ConfigFile::*pastSections)() = &ConfigFile::endSection;
[[maybe_unused]] constexpr Sections::const_iterator (ConfigFile::*firstSectionToRead)() const =
    &ConfigFile::beginSection;
[[maybe_unused]] constexpr Sections::const_iterator (ConfigFile::*pastSectionsToRead)() const = &ConfigFile::endSection;
[[maybe_unused]] constexpr Entries* (ConfigFile::*section)(const string&) = &ConfigFile::findSection;
[[maybe_unused]] constexpr const Entries* (ConfigFile::*sectionToRead)(const string&) const = &ConfigFile::findSection;
static_assert(same<bool (ConfigFile::*)(const string&) const>(&ConfigFile::sectionIsExistent));
static_assert(same<void (ConfigFile::*)(const string&)>(&ConfigFile::createSection));
[[maybe_unused]] constexpr void (ConfigFile::*guard)(const Entries*, const string&) = &ConfigFile::checkSection;
[[maybe_unused]] constexpr void (ConfigFile::*guardToRead)(const Entries*,
                                                           const string&) const = &ConfigFile::checkSection;
[[maybe_unused]] constexpr Entries::iterator (ConfigFile::*firstEntry)(const string&) = &ConfigFile::beginEntry;
[[maybe_unused]] constexpr Entries::iterator (ConfigFile::*pastEntries)(const string&) = &ConfigFile::endEntry;
[[maybe_unused]] constexpr Entries::const_iterator (ConfigFile::*firstEntryToRead)(const string&) const =
    &ConfigFile::beginEntry;
[[maybe_unused]] constexpr Entries::const_iterator (ConfigFile::*pastEntriesToRead)(const string&) const =
    &ConfigFile::endEntry;
static_assert(same<Any* (ConfigFile::*)(const string&, const string&) const>(&ConfigFile::getEntry));
static_assert(same<bool (ConfigFile::*)(const string&, const string&) const>(&ConfigFile::entryIsExistent));
static_assert(same<bool (ConfigFile::*)(const string&, const string&) const>(&ConfigFile::isListEntry));
[[maybe_unused]] constexpr void (ConfigFile::*setValue)(const string&, const string&, Any*) = &ConfigFile::setEntry;
[[maybe_unused]] constexpr void (ConfigFile::*setText)(const string&, const string&,
                                                       const string&) = &ConfigFile::setEntry;
[[maybe_unused]] constexpr void (ConfigFile::*copyFromOther)(const string&, const ConfigFile&,
                                                             const string&) = &ConfigFile::copySection;
[[maybe_unused]] constexpr void (ConfigFile::*copyWithin)(const string&, const string&) = &ConfigFile::copySection;
static_assert(same<void (ConfigFile::*)(const ConfigFile&)>(&ConfigFile::copy));
static_assert(same<void (ConfigFile::*)(const ConfigFile&)>(&ConfigFile::completeCopy));
static_assert(same<bool (ConfigFile::*)(const ConfigFile&) const>(&ConfigFile::equals));
static_assert(same<void (ConfigFile::*)()>(&ConfigFile::parse));
static_assert(same<void (ConfigFile::*)(const ResourceLocation&)>(&ConfigFile::parseFile));
static_assert(same<void (ConfigFile::*)(string)>(&ConfigFile::parseConfigFiles));
static_assert(same<int (ConfigFile::*)(std::istream&, string&)>(&ConfigFile::getNextLine));
static_assert(same<void (ConfigFile::*)(const string&, const string&, int)>(&ConfigFile::handleParseError));
static_assert(same<void (ConfigFile::*)(const string&)>(&ConfigFile::setFileName));
static_assert(same<void (ConfigFile::*)(const ResourceLocation&) const>(&ConfigFile::writeToFile));
static_assert(same<void (ConfigFile::*)(const string&) const>(&ConfigFile::saveToDisk));
static_assert(same<void (ConfigFile::*)() const>(&ConfigFile::sync));

// Time

static_assert(std::is_aggregate_v<Time::Mtime_t>);
static_assert(std::is_same_v<decltype(Time::Mtime_t::seconds), std::time_t>);
static_assert(std::is_same_v<decltype(Time::Mtime_t::milliseconds), short>);
static_assert(std::is_default_constructible_v<Time>);
static_assert(std::is_constructible_v<Time, const Time::Mtime_t&>);
static_assert(std::is_constructible_v<Time, std::time_t>);
static_assert(!std::is_convertible_v<std::time_t, Time>);
static_assert(std::is_same_v<decltype((Time::oneDay)), const Time::Mtime_t&>);
static_assert(same<const Time::Mtime_t& (Time::*)() const>(&Time::getMtime));
static_assert(same<int (Time::*)() const>(&Time::getYear));
static_assert(same<int (Time::*)() const>(&Time::getMonth));
static_assert(same<int (Time::*)() const>(&Time::getDay));
static_assert(same<int (Time::*)() const>(&Time::getHour));
static_assert(same<int (Time::*)() const>(&Time::getMinute));
static_assert(same<int (Time::*)() const>(&Time::getSecond));
static_assert(same<void (Time::*)(const string&)>(&Time::setByDateString));
static_assert(same<string (Time::*)(const string&) const>(&Time::strf));
static_assert(same<string (Time::*)() const>(&Time::getWeekDayString));
static_assert(same<string (Time::*)() const>(&Time::getMonthString));
static_assert(same<string (Time::*)() const>(&Time::getDate));
static_assert(same<string (Time::*)() const>(&Time::getTime));
static_assert(same<string (Time::*)() const>(&Time::toTimeString));

static_assert(std::is_same_v<std::underlying_type_t<Timer::Mode>, int>);
static_assert(std::is_trivially_copyable_v<Timer> && std::is_default_constructible_v<Timer>);
static_assert(same<void (Timer::*)()>(&Timer::start));
static_assert(same<void (Timer::*)()>(&Timer::stop));
static_assert(same<void (Timer::*)()>(&Timer::reset));
static_assert(same<void (Timer::*)() const>(&Timer::assertIsStopped));
static_assert(same<int (Timer::*)(Timer::Mode) const>(&Timer::getTimeInSecs));
static_assert(same<int (Timer::*)(Timer::Mode) const>(&Timer::getTimeInMs));
static_assert(same<string (Timer::*)(Timer::Mode) const>(&Timer::getTime));
static_assert(same<string (Timer::*)(Timer::Mode) const>(&Timer::getTimeInMins));
static_assert(same<string (Timer::*)(Timer::Mode) const>(&Timer::getTimeInHours));

// Digests

static_assert(std::is_trivially_copyable_v<SHA1> && std::is_default_constructible_v<SHA1>);
static_assert(same<void (SHA1::*)()>(&SHA1::reset));
static_assert(same<void (SHA1::*)(const char*, const char*)>(&SHA1::input<const char*>));
static_assert(same<void (SHA1::*)()>(&SHA1::processMessageBlock));
static_assert(same<void (SHA1::*)()>(&SHA1::padMessage));
static_assert(same<string (SHA1::*)(bool)>(&SHA1::getResult));

// Trace

static_assert(std::is_same_v<decltype(Trace::undef), const unsigned int>);
static_assert(same<unsigned int (*)(const string&)>(&Trace::interpret));
static_assert(same<const bitset<64>& (*)()>(&TraceArea::App));
static_assert(same<const bitset<64>& (*)()>(&TraceArea::Undef));
static_assert(same<TraceAreaMgr* (*)()>(&TraceAreaMgr::instance));
static_assert(same<void (*)()>(&TraceAreaMgr::startup));
static_assert(same<void (*)()>(&TraceAreaMgr::teardown));
static_assert(same<const TraceAreaEntry* (TraceAreaMgr::*)(const string&) const>(&TraceAreaMgr::searchId));
static_assert(same<const bitset<64>& (TraceAreaMgr::*)(const string&) const>(&TraceAreaMgr::getTraceAreaMask));
static_assert(same<const bitset<64>& (TraceAreaMgr::*)(const string&) const>(&TraceAreaMgr::getTraceAreaId));
static_assert(same<void (TraceAreaMgr::*)(const string&, const bitset<64>&)>(&TraceAreaMgr::registerArea));
static_assert(same<void (TraceAreaMgr::*)()>(&TraceAreaMgr::initInternally));
static_assert(same<void (TraceAreaMgr::*)(const ConfigFile&)>(&TraceAreaMgr::initFromFile));
static_assert(same<string (TraceAreaMgr::*)() const>(&TraceAreaMgr::print));
static_assert(std::is_base_of_v<std::ostream, TraceStream>);
static_assert(std::is_default_constructible_v<TraceStream>);
static_assert(same<TraceStream& (*)()>(&TraceStream::instance));
static_assert(same<const bitset<64>& (TraceStream::*)() const>(&TraceStream::getMask));
static_assert(same<void (TraceStream::*)(unsigned int, const string&, const bitset<64>&)>(&TraceStream::traceto));

// System

static_assert(std::is_same_v<decltype(System::sigterm), const int>);
static_assert(same<System& (*)()>(&System::instance));
static_assert(same<unsigned int (*)()>(&System::linelength));
static_assert(same<char (*)()>(&System::pathSeparator));
static_assert(same<Time::Mtime_t (System::*)() const>(&System::now));
static_assert(same<unsigned long (*)()>(&System::lastError));
static_assert(same<string (*)(unsigned long)>(&System::errorMsg));
static_assert(same<string (*)()>(&System::lastErrorMessage));
static_assert(same<string (*)(const std::type_info&)>(&System::demangle));
static_assert(same<string (*)(const string&, const string&)>(&System::getEnv));
static_assert(same<void (*)(const string&, const string&)>(&System::setEnv));
static_assert(same<string (System::*)() const>(&System::getCurrentWorkingDir));
static_assert(same<ResourceLocation (System::*)() const>(&System::getExeImagePath));
static_assert(same<const string& (System::*)() const>(&System::getUserName));
static_assert(same<const string& (System::*)() const>(&System::getHostName));
static_assert(same<void (System::*)()>(&System::fetchIP));
static_assert(same<unsigned long (System::*)() const>(&System::getIP));
static_assert(same<string (System::*)() const>(&System::getIPString));
static_assert(same<const string& (System::*)() const>(&System::getOS));
static_assert(same<void (System::*)() const>(&System::setSysDirPaths));
static_assert(same<void (System::*)(const ResourceLocation&) const>(&System::addToSysDirPaths));
static_assert(same<const std::vector<ResourceLocation>& (System::*)() const>(&System::getSystemDirs));
static_assert(same<ResourceLocation (System::*)() const>(&System::getBinDir));
static_assert(same<ResourceLocation (System::*)() const>(&System::getDllDir));
static_assert(same<ResourceLocation (System::*)(const string&, string) const>(&System::getAppDir));
static_assert(same<ResourceLocation (System::*)(const string&, string) const>(&System::getAppFile));
static_assert(same<ResourceLocation (System::*)() const>(&System::getHomeDir));
static_assert(same<ResourceLocation (System::*)() const>(&System::getAppDataDir));
static_assert(same<ResourceLocation (System::*)(bool) const>(&System::getUserDir));
static_assert(same<ResourceLocation (System::*)(const string&, const string&) const>(&System::tempFile));
static_assert(same<void (System::*)(bool, int)>(&System::enableSignalHandling));
static_assert(same<void (System::*)()>(&System::signalReset));
static_assert(same<int (System::*)() const>(&System::signalReceived));
static_assert(same<void (System::*)(const ResourceLocation&)>(&System::libraryLoad));
static_assert(same<void* (System::*)(const string&, const string&)>(&System::librarySymbol));
static_assert(same<void (System::*)(const string&)>(&System::libraryFree));
static_assert(same<void (System::*)()>(&System::libraryFreeAll));
static_assert(same<int (System::*)(const string&, string&) const>(&System::execute));
static_assert(std::is_same_v<decltype((System::defaultCmdOutput)), string&>);

// Text documents

static_assert(std::is_abstract_v<TextFormatter>);
static_assert(std::has_virtual_destructor_v<TextFormatter>);
static_assert(std::is_base_of_v<TextFormatter, HtmlTextFormatter>);
static_assert(std::is_base_of_v<TextFormatter, TexTextFormatter>);
static_assert(std::is_default_constructible_v<HtmlTextFormatter>);
static_assert(std::is_default_constructible_v<TexTextFormatter>);
static_assert(!std::is_copy_constructible_v<HtmlTextFormatter>);
static_assert(!std::is_copy_constructible_v<TexTextFormatter>);
static_assert(same<void (TextFormatter::*)(const string&)>(&TextFormatter::beginDocument));
static_assert(same<void (TextFormatter::*)()>(&TextFormatter::endDocument));
static_assert(same<void (TextFormatter::*)()>(&TextFormatter::em));
static_assert(same<void (TextFormatter::*)()>(&TextFormatter::b));
static_assert(same<void (TextFormatter::*)()>(&TextFormatter::u));
static_assert(same<void (TextFormatter::*)()>(&TextFormatter::br));
static_assert(same<void (TextFormatter::*)(int)>(&TextFormatter::header));
static_assert(same<void (TextFormatter::*)()>(&TextFormatter::ulist));
static_assert(same<void (TextFormatter::*)()>(&TextFormatter::olist));
static_assert(same<void (TextFormatter::*)()>(&TextFormatter::listitem));
static_assert(same<void (TextFormatter::*)(const string&)>(&TextFormatter::label));
static_assert(same<void (TextFormatter::*)(const string&)>(&TextFormatter::ref));
static_assert(same<void (TextFormatter::*)(const string&)>(&TextFormatter::link));
static_assert(same<void (TextFormatter::*)(const string&)>(&TextFormatter::print));
static_assert(same<string (TextFormatter::*)() const>(&TextFormatter::str));
static_assert(same<void (TextFormatter::*)()>(&TextFormatter::end));
static_assert(same<void (TextFormatter::*)(const string&)>(&TextFormatter::writeRaw));
[[maybe_unused]] constexpr void (TexTextFormatter::*printText)(const string&) = &TexTextFormatter::print;
[[maybe_unused]] constexpr void (TexTextFormatter::*printCharacters)(const char*) = &TexTextFormatter::print;
static_assert(std::is_default_constructible_v<TextRep>);
static_assert(!std::is_copy_constructible_v<TextRep>);
static_assert(std::has_virtual_destructor_v<TextRep>);
static_assert(std::has_virtual_destructor_v<TextRep::TextToken>);
static_assert(same<void (TextRep::*)(TextFormatter*) const>(&TextRep::flush));
static_assert(same<void (TextRep::TextToken::*)(TextFormatter*) const>(&TextRep::TextToken::flush));
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::PlainTextToken<string>>);
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::PlainTextToken<unsigned int>>);
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::TextTagToken<TextTag::b>>);
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::TextTagToken<TextTag::em>>);
static_assert(std::is_base_of_v<TextRep::TextToken, TextRep::TextTagToken<TextTag::end>>);
[[maybe_unused]] constexpr TextRep& (TextRep::*appendCharacters)(const char*) = &TextRep::operator<<;
[[maybe_unused]] constexpr TextRep& (TextRep::*appendText)(const string&) = &TextRep::operator<<;
[[maybe_unused]] constexpr TextRep& (TextRep::*appendNumber)(const unsigned int&) = &TextRep::operator<<;
static_assert(std::is_same_v<decltype(Literature::Author::surname), string>);
static_assert(std::is_same_v<decltype(Literature::Author::firstName), string>);
static_assert(std::is_same_v<decltype(Literature::Author::secondName), string>);
static_assert(std::is_same_v<decltype(Literature::Author::thirdName), string>);
static_assert(std::is_constructible_v<Literature, string, const vector<Literature::Author>&, const string&, unsigned,
                                      unsigned, const string&, unsigned, unsigned>);
static_assert(same<void (Literature::*)(TextRep&) const>(&Literature::toString));
static_assert(same<string (Literature::*)() const>(&Literature::print));
static_assert(same<string Literature::*>(&Literature::title));
static_assert(same<std::vector<Literature::Author> Literature::*>(&Literature::authors));
static_assert(same<string Literature::*>(&Literature::journal));
static_assert(same<unsigned int Literature::*>(&Literature::volume));
static_assert(same<unsigned int Literature::*>(&Literature::year));
static_assert(same<string Literature::*>(&Literature::note));
static_assert(same<unsigned int Literature::*>(&Literature::firstPage));
static_assert(same<unsigned int Literature::*>(&Literature::lastPage));
static_assert(!std::is_default_constructible_v<LiteratureMgr>);
static_assert(!std::is_copy_constructible_v<LiteratureMgr>);
static_assert(same<LiteratureMgr& (*)()>(&LiteratureMgr::instance));
static_assert(same<Literature* (LiteratureMgr::*)(const string&) const>(&LiteratureMgr::search));
static_assert(same<Literature* (LiteratureMgr::*)(const string&) const>(&LiteratureMgr::getLiterature));

// Application

static_assert(std::is_abstract_v<Application>);
static_assert(!std::is_copy_constructible_v<Application>);
static_assert(!std::is_copy_constructible_v<CLOption>);
static_assert(same<void (Application::*)(const string&) const>(&Application::message));
static_assert(same<void (Application::*)(const string&, const string&) const>(&Application::error));
static_assert(same<void (Application::*)(int, char**)>(&Application::startup));
static_assert(same<void (Application::*)(int, char**)>(&Application::preRunInit));
static_assert(same<void (Application::*)()>(&Application::executeOptions));
static_assert(same<void (Application::*)(int&, char**)>(&Application::preParse));
static_assert(same<void (Application::*)()>(&Application::postParseInit));
static_assert(same<int (Application::*)()>(&Application::runMain));
static_assert(same<Application* (*)()>(&Application::instance));
static_assert(same<bool (*)()>(&Application::isNotCreated));
static_assert(same<int (Application::*)(int, char**)>(&Application::mainImpl));
static_assert(same<CLOption& (Application::*)(const string&, char, bool)>(&Application::defineOption));
static_assert(same<void (Application::*)(const string&)>(&Application::definePositional));
static_assert(same<void (Application::*)(const CLOption&, const CLOption&)>(&Application::defineExclusion));
static_assert(same<const string& (Application::*)(unsigned int) const>(&Application::getPositional));
static_assert(same<CLOption* (Application::*)(const string&) const>(&Application::findOption));
static_assert(same<ConfigFile* (Application::*)()>(&Application::getConfigFile));
static_assert(same<void (Application::*)(bool, const string&) const>(&Application::check));
static_assert(same<string (Application::*)() const>(&Application::printCMDline));
static_assert(same<const ResourceLocation& (Application::*)() const>(&Application::getProgramLocation));
static_assert(same<void (Application::*)() const>(&Application::usage));
static_assert(same<void (Application::*)()>(&Application::executeKelvoOptions));
static_assert(same<const string& (Application::*)() const>(&Application::getAppName));
static_assert(same<const string& (Application::*)() const>(&Application::getProgramName));
static_assert(same<const string& (Application::*)() const>(&Application::getRevision));
static_assert(same<const string& (Application::*)() const>(&Application::getYear));
static_assert(same<const string& (Application::*)() const>(&Application::getAuthors));
static_assert(same<double (Application::*)() const>(&Application::getVersion));
static_assert(same<void (Application::*)(double)>(&Application::setVersion));
static_assert(same<void (Application::*)(const string&)>(&Application::setRevision));
static_assert(same<void (Application::*)(const string&)>(&Application::setAdditionalHelpText));
static_assert(same<void (Application::*)(const string&)>(&Application::setYear));
static_assert(same<CLOption& (CLOption::*)(const string&)>(&CLOption::setHelp));
static_assert(same<CLOption& (CLOption::*)(const string&, Any*)>(&CLOption::setArg));
static_assert(same<void (CLOption::*)(const string&)>(&CLOption::setValue));
static_assert(same<bool (CLOption::*)() const>(&CLOption::isSet));
static_assert(same<char (CLOption::*)() const>(&CLOption::getShort));
static_assert(same<const string& (CLOption::*)() const>(&CLOption::getLong));
static_assert(same<Any* (CLOption::*)() const>(&CLOption::getValue));

template <typename E>
concept HasSystemError = requires(const E& e)
{
    e.systemError;
};
template <typename E>
concept HasLocation = requires(const E& e)
{
    e.location;
};
template <typename T>
concept HasParsePath = requires(T& t)
{
    t.parsePath(string());
};
static_assert(!HasSystemError<IOFailedException>);
static_assert(!HasLocation<NotAFileException>);
static_assert(!HasParsePath<ResourceLocation>);

TEST(Contract, ConnectionAndCursorStatesHaveTheirNumbers)
{
    const int connections[] = {CS_CONNECTED,  CS_UNCONNECTED, CS_ERROR, CS_INITIALIZATION_ERROR,
                               CS_OPEN_ERROR, CS_CLOSE_ERROR};
    const int expectedConnections[] = {1, -1, -2, -3, -4, -5};
    for (std::size_t i = 0; i < std::size(connections); ++i) {
        EXPECT_EQ(connections[i], expectedConnections[i]) << i;
    }
    const int cursors[] = {
        CURS_OPENED, CURS_CLOSED, CURS_UNUSED, CURS_ERROR, CURS_OPEN_ERROR, CURS_CLOSE_ERROR, CURS_INVALID_CONN_HANDLE};
    const int expectedCursors[] = {1, 0, -1, -2, -3, -4, -5};
    for (std::size_t i = 0; i < std::size(cursors); ++i) {
        EXPECT_EQ(cursors[i], expectedCursors[i]) << i;
    }
}

TEST(Contract, TraceLevelsHaveTheirNumbers)
{
    EXPECT_EQ(Trace::crit, 0u);
    EXPECT_EQ(Trace::fail, 1u);
    EXPECT_EQ(Trace::warn, 2u);
    EXPECT_EQ(Trace::verbose, 3u);
    EXPECT_EQ(Trace::undef, 99u);
}

TEST(Contract, StringLiteralsAreNotAmbiguous)
{
    const ResourceLocation location("a/b");
    EXPECT_EQ(location, "a/b");
    EXPECT_EQ(getFilesRecursively(".").empty(), getFilesRecursively(std::string(".")).empty());
    ScalarAny<std::string> text("literal");
    EXPECT_EQ(text.toString(","), "literal");
    EXPECT_STREQ(UnknownException("text").what(), "text");
    EXPECT_STREQ(FileNotFoundException("a", "b").what(), "Cannot find file \"a\" in b.");
}

} // namespace

} // namespace KelvoBase
