#pragma once

/// \file
/// What a test wants to know of a configuration.

#include <kelvobase/Any.h>
#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>

#include <string>

namespace KelvoBase::test
{

/// All sections and entries, a line each: "[name]", "key (StringAny) text". List elements are parted by "|".
inline std::string listing(const ConfigFile& config)
{
    std::string text;
    for (auto section = config.beginSection(); section != config.endSection(); ++section) {
        text += "[" + section->first + "]\n";
        for (const auto& [key, value] : section->second) {
            text += key + " (" + value->getTypeString() + ") " + value->toString("|") + "\n";
        }
    }
    return text;
}

/// The file name as the faults show it.
inline std::string fileNameOf(const ConfigFile& config)
{
    const std::string front = "Unknown section '' in config file '";
    try {
        config.checkSection(nullptr, "");
    } catch (const UnknownException& e) {
        const std::string text = e.what();
        return text.substr(front.size(), text.size() - front.size() - 1);
    }
    return "checkSection did not throw";
}

/// Whether `sync` would write. Asked of a copy, which keeps the mark and has no file, so that writing fails.
inline bool isModified(const ConfigFile& config)
{
    try {
        ConfigFile(config).sync();
    } catch (const OperationFailedException&) {
        return true;
    }
    return false;
}

} // namespace KelvoBase::test
