#include "Remember.h"

#include "InputFiles.h"
#include "Shown.h"

#include <kelvobase/Any.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>
#include <kelvobase/System.h>

#include <algorithm>

namespace seriesstat
{

namespace
{

using KelvoBase::Any;
using KelvoBase::ConfigFile;
using KelvoBase::ResourceLocation;
using KelvoBase::RuntimeException;

constexpr const char* section = "report";
constexpr const char* key = "quantity";
constexpr const char* cannotRemember = "The quantity cannot be remembered: ";
constexpr const char* cannotHold = " has a character that a configuration cannot hold (#, \" or a control character).";
constexpr const char* incomplete = " could not be written to its end.";

bool canBeHeld(const std::string& text)
{
    return std::none_of(text.begin(), text.end(), [](unsigned char c) { return c == '#' || c == '"' || c < 0x20; });
}

ResourceLocation userFile(const std::string& name)
{
    ResourceLocation file = KelvoBase::System::instance().getUserDir(true).append("etc");
    file.createDir();
    return file.append(name);
}

/// A single value as it has to be stored for a file: what is written has no quotes of its own, and a comma outside
/// quotes makes a list when it is read again.
std::string storedForm(const std::string& value)
{
    return value.find(',') == std::string::npos ? value : KelvoBase::quote(value);
}

std::string storedForm(const Any& value)
{
    if (dynamic_cast<const KelvoBase::ScalarAny<bool>*>(&value)) {
        return "yes"; // a flag would come back as the text "1"
    }
    return value.size() == 1 ? storedForm(value.toString(",")) : value.toString(",");
}

/// The entries of `from` in the form that a file gives back as they are. The empty key is left out: with it a file
/// could be written, but not read.
void copyStored(ConfigFile& to, const ConfigFile& from)
{
    for (auto it = from.beginSection(); it != from.endSection(); ++it) {
        for (const auto& [name, value] : it->second) {
            if (!name.empty()) {
                to.setEntry(it->first, name, storedForm(*value));
            }
        }
    }
}

bool names(const ConfigFile& config, const std::string& quantity)
{
    return config.entryIsExistent(section, key) && config.getEntry(section, key)->toString(",") == quantity;
}

void store(const ResourceLocation& file, const std::string& quantity)
{
    ConfigFile own;
    if (file.isExistent()) {
        own.parseFile(file);
    }
    if (names(own, quantity)) {
        return;
    }
    ConfigFile changed;
    copyStored(changed, own);
    changed.setEntry(section, key, storedForm(quantity));
    changed.setFileName(file.str());
    changed.sync();
    if (!names(ConfigFile(file), quantity)) { // a full disk goes unnoticed otherwise
        throw RuntimeException(KelvoBase::quote(nativePath(file)) + incomplete);
    }
}

} // namespace

std::string rememberQuantity(const std::string& name, const std::string& quantity)
{
    if (!canBeHeld(quantity)) {
        throw RuntimeException(cannotRemember + shown(quantity) + cannotHold);
    }
    try {
        const ResourceLocation file = userFile(name);
        store(file, quantity);
        return nativePath(file);
    } catch (const KelvoBase::ExceptionBase& e) {
        throw RuntimeException(cannotRemember + std::string(e.what()));
    }
}

} // namespace seriesstat
