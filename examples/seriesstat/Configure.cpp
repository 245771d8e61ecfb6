#include "Configure.h"

#include "InputFiles.h"
#include "Shown.h"

#include <kelvobase/Any.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Strings.h>
#include <kelvobase/System.h>

#include <map>

namespace seriesstat
{

namespace
{

using KelvoBase::Any;
using KelvoBase::ConfigFile;
using KelvoBase::ResourceLocation;
using KelvoBase::RuntimeException;
using KelvoBase::System;
using Entries = std::map<std::string, Any*>;

constexpr const char* noValue = "There is no value (a sign # begins a comment wherever it stands). Expected is ";

std::string knownSections()
{
    std::vector<std::string> names;
    for (const Setting& setting : allSettings()) {
        const std::string name = shown(std::string(setting.section));
        if (names.empty() || names.back() != name) {
            names.push_back(name);
        }
    }
    return KelvoBase::join(names, ", ");
}

std::string knownKeys(const std::string& section)
{
    std::vector<std::string> names;
    for (const Setting& setting : allSettings()) {
        if (setting.section == section) {
            names.push_back(shown(std::string(setting.key)));
        }
    }
    return KelvoBase::join(names, ", ");
}

/// The values of an entry for a setting; none if it says nothing. The type tells a flag from the text "1".
std::vector<std::string> valuesFor(const Setting& setting, const Any& entry)
{
    if (dynamic_cast<const KelvoBase::ScalarAny<bool>*>(&entry)) {
        return setting.form == Form::flag ? std::vector<std::string>{"yes"} : std::vector<std::string>{};
    }
    std::vector<std::string> values = elementsOf(entry);
    if (values == std::vector<std::string>{""}) {
        values.clear();
    }
    return values;
}

void configureEntry(Settings& settings, const std::string& section, const std::string& key, const Any& entry,
                    const std::string& place)
{
    const Setting* setting = findSetting(key);
    if (!setting || setting->section != section) {
        throw RuntimeException(place + " is unknown. Known are " + knownKeys(section) + ".");
    }
    const std::vector<std::string> values = valuesFor(*setting, entry);
    if (values.empty()) {
        throw RuntimeException(place + ": " + noValue + std::string(setting->expected) + ".");
    }
    const std::string fault = take(settings, *setting, values);
    if (!fault.empty()) {
        throw RuntimeException(place + ": " + fault);
    }
}

void configureSection(Settings& settings, const std::string& section, const Entries& entries, const std::string& name)
{
    const std::string place = name + ": section " + shown(section);
    if (knownKeys(section).empty()) {
        throw RuntimeException(place + " is unknown. Known are " + knownSections() + ".");
    }
    for (const auto& [key, entry] : entries) {
        if (!key.empty()) {
            configureEntry(settings, section, key, *entry, place + ", key " + shown(key));
        }
    }
}

/// Entries in front of all headings stand in the section without a name.
void refuseEntries(const Entries& entries, const std::string& name)
{
    for (const auto& [key, entry] : entries) {
        if (!key.empty()) {
            throw RuntimeException(name + ": key " + shown(key) + " stands in no section. Known are " +
                                   knownSections() + ".");
        }
    }
}

} // namespace

void configure(Settings& settings, const ConfigFile& config, const std::string& name)
{
    for (auto section = config.beginSection(); section != config.endSection(); ++section) {
        const auto& [title, entries] = *section;
        if (title.empty()) {
            refuseEntries(entries, name);
        } else {
            configureSection(settings, title, entries, name);
        }
    }
}

std::string searchedPlaces()
{
    const System& system = System::instance();
    std::vector<ResourceLocation> directories = system.getSystemDirs();
    try {
        directories.push_back(system.getUserDir(true));
    } catch (const KelvoBase::IOException&) { // a user without a home: told when the configuration was searched
    }
    std::vector<std::string> places;
    places.reserve(directories.size());
    for (ResourceLocation& directory : directories) {
        places.push_back(KelvoBase::quote(nativePath(directory.append("etc"))));
    }
    return KelvoBase::join(places, "; ");
}

} // namespace seriesstat
