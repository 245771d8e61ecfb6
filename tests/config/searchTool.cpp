// Searches configuration files on the real system, step by step: what `System` finds once and keeps needs a fresh
// process for each test.
//
//     search:NAME           "found", or the fault
//     list                  all entries
//     file                  the file name of the object
//     set:SECTION:KEY:TEXT  changes an entry
//     sync                  writes the user's file
//     deaf                  no standard streams from here on
//     add:DIRECTORY         one more base directory

#include "config/ConfigView.h"

#include <kelvobase/Globals.h>
#include <kelvobase/Strings.h>
#include <kelvobase/System.h>

#include <iostream>
#include <vector>

using namespace KelvoBase;

namespace
{

void carryOut(ConfigFile& config, const std::vector<std::string>& words)
{
    const std::string& verb = words.front();
    if (verb == "search") {
        config.parseConfigFiles(words.at(1));
        std::cout << "found\n";
    } else if (verb == "list") {
        std::cout << test::listing(config);
    } else if (verb == "file") {
        std::cout << test::fileNameOf(config) << "\n";
    } else if (verb == "set") {
        config.setEntry(words.at(1), words.at(2), words.at(3));
    } else if (verb == "sync") {
        config.sync();
    } else if (verb == "deaf") {
        haveCerr = false;
    } else if (verb == "add") {
        System::instance().addToSysDirPaths(words.at(1));
    } else {
        std::cerr << "unknown step " << verb << "\n";
    }
}

} // namespace

int main(int argc, char** argv)
{
    ConfigFile config;
    for (int i = 1; i < argc; ++i) {
        std::vector<std::string> words;
        split(argv[i], words, ":", "", "");
        try {
            carryOut(config, words);
        } catch (const std::exception& e) {
            std::cout << System::demangle(typeid(e)) << ": " << e.what() << "\n";
        }
    }
    return 0;
}
