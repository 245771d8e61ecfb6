#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Globals.h>
#include <kelvobase/System.h>

#include <iostream>

namespace KelvoBase
{

namespace
{

constexpr const char* configDirectory = "etc"; // below each base directory and the user's own

/// Merges the files of the installation into `config`. Whether there was one.
bool parseSystemFiles(ConfigFile& config, const std::string& name)
{
    bool found = false;
    for (const ResourceLocation& directory : System::instance().getSystemDirs()) {
        ResourceLocation file(directory);
        file.append(configDirectory);
        file.append(name);
        if (!file.isFile()) {
            continue;
        }
        try {
            config.parseFile(file);
            found = true;
        } catch (const FileNotReadableException&) {
            // Required: not a word. The user can do nothing about a file of the installation, and every run of
            // every tool would say it again.
            // Required: this class only. Skipping a file with a syntax error as well would run the tool with
            // half of its settings.
        }
    }
    return found;
}

} // namespace

// From the delegation on the objects are complete, so that a fault while reading deletes what was read.
ConfigFile::ConfigFile(const ResourceLocation& location) : ConfigFile()
{
    parseFile(ResourceLocation(location.getFilePath(ResourceLocation::getFSSeparator())));
}

ConfigFile::ConfigFile(const std::string& name) : ConfigFile()
{
    parseFile(ResourceLocation(name));
}

ConfigFile::ConfigFile(const char* name) : ConfigFile()
{
    parseFile(ResourceLocation(name));
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the public signature stays
void ConfigFile::parseConfigFiles(std::string name)
{
    if (!mergeConfigFiles(name)) {
        throw FileNotReadableException(ResourceLocation(name), "");
    }
}

/// The search. False if no file was found.
bool ConfigFile::mergeConfigFiles(const std::string& name)
{
    bool found = parseSystemFiles(*this, name);
    try {
        ResourceLocation user = System::instance().getUserDir(true);
        user.append(configDirectory);
        // Required: also if there is nothing to read. Who wants to write a file finds the place for it.
        user.createDir();
        user.append(name);
        // Required: reading an empty file as well would let it hide that nothing was found.
        // NOLINTNEXTLINE(readability-container-size-empty): the file's size; `empty` is about the location
        if (user.isExistent() && user.size() > 0) {
            parseFile(user);
            found = true;
        }
        mFileName = user;
    } catch (const IOException& e) {
        // Required: reported here and no reason to stop; the files of the installation still count.
        if (haveCerr) {
            std::cerr << e.what() << std::endl;
        }
    }
    return found;
}

} // namespace KelvoBase
