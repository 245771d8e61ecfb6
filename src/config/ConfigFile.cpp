#include <kelvobase/Any.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>

#include <memory>
#include <utility>

namespace KelvoBase
{

namespace
{

using Entries = std::map<std::string, Any*>;
using Sections = std::map<std::string, Entries>;

constexpr const char* textSeparator = ","; // of the texts that setEntry compares

void removeEntries(Entries& entries)
{
    for (const auto& [key, value] : entries) {
        delete value;
    }
    entries.clear();
}

/// Adds a copy of `value` behind all entries.
void appendCopy(Entries& entries, const std::string& key, const Any& value)
{
    std::unique_ptr<Any> copy(value.clone());
    entries.emplace_hint(entries.end(), key, copy.get());
    (void)copy.release(); // owned by the table now
}

bool equalEntries(const Entries& entries, const Entries& others)
{
    if (entries.size() != others.size()) {
        return false;
    }
    auto other = others.begin();
    for (const auto& [key, value] : entries) {
        if (key != other->first || !value->equals(*other->second)) {
            return false;
        }
        ++other;
    }
    return true;
}

} // namespace

ConfigFile::ConfigFile()
{
    init();
}

// From the delegation on the object is complete, so that a fault while copying deletes what was copied.
ConfigFile::ConfigFile(const ConfigFile& other) : ConfigFile()
{
    // Required: all but the file name. With it, `sync` of a copy would overwrite the original's file.
    completeCopy(other);
}

ConfigFile& ConfigFile::operator=(const ConfigFile& other)
{
    if (&other != this) {
        completeCopy(other);
    }
    return *this;
}

ConfigFile::~ConfigFile()
{
    clear();
}

void ConfigFile::init()
{
    mSectionBeginIdent = "[";
    mSectionEndIdent = "]";
    mSeperator = "=";
    mListSeperator = ",";
    mCommentSign = '#';
    mModified = false;
}

const std::string& ConfigFile::getSectionBeginIdent() const
{
    return mSectionBeginIdent;
}

void ConfigFile::setSectionBeginIdent(const std::string& ident)
{
    mSectionBeginIdent = ident;
}

const std::string& ConfigFile::getSectionEndIdent() const
{
    return mSectionEndIdent;
}

void ConfigFile::setSectionEndIdent(const std::string& ident)
{
    mSectionEndIdent = ident;
}

const std::string& ConfigFile::getSeperator() const
{
    return mSeperator;
}

void ConfigFile::setSeperator(const std::string& seperator)
{
    mSeperator = seperator;
}

const std::string& ConfigFile::getListSeperator() const
{
    return mListSeperator;
}

void ConfigFile::setListSeperator(const std::string& seperator)
{
    mListSeperator = seperator;
}

char ConfigFile::getCommentSign() const
{
    return mCommentSign;
}

void ConfigFile::setCommentSign(char sign)
{
    mCommentSign = sign;
}

bool ConfigFile::isEmpty() const
{
    return mSections.empty() && mFileName.empty();
}

void ConfigFile::clear()
{
    for (auto& [name, entries] : mSections) {
        removeEntries(entries);
    }
    mSections.clear();
    mModified = false;
}

Sections::iterator ConfigFile::beginSection()
{
    return mSections.begin();
}

Sections::iterator ConfigFile::endSection()
{
    return mSections.end();
}

Sections::const_iterator ConfigFile::beginSection() const
{
    return mSections.begin();
}

Sections::const_iterator ConfigFile::endSection() const
{
    return mSections.end();
}

Entries* ConfigFile::findSection(const std::string& name)
{
    const auto found = mSections.find(name);
    return found == mSections.end() ? nullptr : &found->second;
}

const Entries* ConfigFile::findSection(const std::string& name) const
{
    const auto found = mSections.find(name);
    return found == mSections.end() ? nullptr : &found->second;
}

bool ConfigFile::sectionIsExistent(const std::string& name) const
{
    return findSection(name) != nullptr;
}

void ConfigFile::createSection(const std::string& name)
{
    // Required: no mark. With one, a tool that only makes sure of its sections would write a file at its end.
    mSections.try_emplace(name);
}

void ConfigFile::checkSection(const Entries* section, const std::string& name)
{
    std::as_const(*this).checkSection(section, name);
}

void ConfigFile::checkSection(const Entries* section, const std::string& name) const
{
    if (section == nullptr) {
        throw UnknownException("Unknown section '" + name + "' in config file '" + mFileName.str() + "'");
    }
}

Entries::iterator ConfigFile::beginEntry(const std::string& section)
{
    Entries* const entries = findSection(section);
    checkSection(entries, section);
    return entries->begin();
}

Entries::iterator ConfigFile::endEntry(const std::string& section)
{
    Entries* const entries = findSection(section);
    checkSection(entries, section);
    return entries->end();
}

Entries::const_iterator ConfigFile::beginEntry(const std::string& section) const
{
    const Entries* const entries = findSection(section);
    checkSection(entries, section);
    return entries->begin();
}

Entries::const_iterator ConfigFile::endEntry(const std::string& section) const
{
    const Entries* const entries = findSection(section);
    checkSection(entries, section);
    return entries->end();
}

Any* ConfigFile::getEntry(const std::string& section, const std::string& key) const
{
    const Entries* const entries = findSection(section);
    checkSection(entries, section);
    const auto found = entries->find(key);
    if (found == entries->end()) {
        throw UnknownException("Unknown key '" + key + "' in section '" + section + "' in config file '" +
                               mFileName.str() + "'");
    }
    return found->second;
}

bool ConfigFile::entryIsExistent(const std::string& section, const std::string& key) const
{
    // Looks for itself: as a question a missing entry is nothing unusual, and a thrown text is dear.
    const Entries* const entries = findSection(section);
    return entries != nullptr && entries->contains(key);
}

bool ConfigFile::isListEntry(const std::string& section, const std::string& key) const
{
    // Required: not "more than one", nor a look at the type. Tools ask this to know whether there is a value.
    return getEntry(section, key)->size() != 0;
}

void ConfigFile::setEntry(const std::string& section, const std::string& key, Any* value)
{
    Entries& entries = mSections[section];
    const auto place = entries.lower_bound(key);
    if (place == entries.end() || place->first != key) {
        entries.emplace_hint(place, key, value);
        mModified = true;
        return;
    }
    Any* const before = place->second;
    // Required: the texts decide, never the types: a file shows no types, so it would be written unchanged.
    const std::string textBefore = before->toString(textSeparator);
    if (value->toString(textSeparator) != textBefore) {
        mModified = true;
    }
    delete before;
    place->second = value;
}

void ConfigFile::setEntry(const std::string& section, const std::string& key, const std::string& value)
{
    auto entry = std::make_unique<ScalarAny<std::string>>(value);
    setEntry(section, key, entry.get());
    (void)entry.release(); // owned by the table now
}

void ConfigFile::copySection(const std::string& source, const ConfigFile& from, const std::string& target)
{
    const Entries* const originals = from.findSection(source);
    // Required: asked of this object, whose file name the fault shows. `from` may have come from anywhere and
    // often has none.
    checkSection(originals, source);
    Entries& copies = mSections[target];
    removeEntries(copies);
    for (const auto& [key, value] : *originals) {
        // As setEntry does for a new key, without looking for its place: the originals come in order.
        appendCopy(copies, key, *value);
        // Required: whatever stood there before. Comparing first would leave a copy over equal entries, of
        // other types perhaps, unwritten.
        mModified = true;
    }
}

void ConfigFile::copySection(const std::string& source, const std::string& target)
{
    if (source != target) {
        copySection(source, *this, target);
    }
}

void ConfigFile::copy(const ConfigFile& from)
{
    clear();
    for (const auto& [name, entries] : from.mSections) {
        copySection(name, from, name);
    }
}

void ConfigFile::completeCopy(const ConfigFile& from)
{
    // Required: no guard against this object itself, which is left empty. Assignment has one.
    copy(from);
    mSectionBeginIdent = from.mSectionBeginIdent;
    mSectionEndIdent = from.mSectionEndIdent;
    mSeperator = from.mSeperator;
    mListSeperator = from.mListSeperator;
    mCommentSign = from.mCommentSign;
    mModified = from.mModified;
}

bool ConfigFile::equals(const ConfigFile& other) const
{
    if (mSections.size() != other.mSections.size()) {
        return false;
    }
    auto theirs = other.mSections.begin();
    for (const auto& [name, entries] : mSections) {
        if (name != theirs->first || !equalEntries(entries, theirs->second)) {
            return false;
        }
        ++theirs;
    }
    return true;
}

} // namespace KelvoBase
