#pragma once

/// \file
/// Files of areas where the library searches for them, and what a registry holds.

#include "support/Scratch.h"
#include "support/UserData.h"

#include <kelvobase/TraceArea.h>

#include <gtest/gtest.h>

#include <bitset>
#include <cstddef>
#include <filesystem>
#include <sstream>
#include <string>

namespace KelvoBase::test
{

/// The directories of the search, set up before anything in this process asks for them; they stay the same for its
/// life.
class AreaFiles
{
public:
    static AreaFiles& instance()
    {
        static AreaFiles files;
        return files;
    }

    /// Writes "TraceAreas.ini" below a directory: "base" (searched first), "installation", "work" or "user".
    void write(const std::string& directory, const std::string& content) const
    {
        writeFile(pathOf(directory), content);
    }
    /// Native path of the file below a directory of the search.
    std::filesystem::path pathOf(const std::string& directory) const
    {
        return directoryOf(directory) / "TraceAreas.ini";
    }
    const ScratchDirectory& scratch() const { return mScratch; }
    void removeAll() const
    {
        for (const char* directory : {"base", "installation", "work", "user"}) {
            std::filesystem::remove_all(pathOf(directory));
        }
    }

private:
    AreaFiles()
        : mHere((mScratch.write("work/present", ""), mScratch / "work")), mBase("DRAVO2_BASEDIR", locationOf("base")),
          mInstallation("DRAVO2_INSTDIR", locationOf("installation")), mUser(mScratch / "config")
    {
    }
    std::string locationOf(const std::string& directory) const
    {
        mScratch.write(directory + "/present", "");
        return mScratch.location(directory);
    }
    std::filesystem::path directoryOf(const std::string& directory) const
    {
        return (directory == "user" ? mUser.folder() / "dravo2" : mScratch / directory) / "etc";
    }

    ScratchDirectory mScratch;
    ScopedWorkingDirectory mHere;
    ScopedEnvironment mBase;
    ScopedEnvironment mInstallation;
    ScopedUserData mUser;
};

/// The numbers of the bits of a set: "1+4".
inline std::string bitsOf(const std::bitset<64>& set)
{
    std::string text;
    for (unsigned int i = 0; i < set.size(); ++i) {
        if (set[i]) {
            text += (text.empty() ? "" : "+") + std::to_string(i);
        }
    }
    return text;
}

/// The areas of the registry but for `All`, sorted by name, with the bits of their masks: "Lenses=0+1 Optics=0". Their
/// own bit is asked separately. A name is cut to its first 20 characters.
inline std::string areas()
{
    std::istringstream listing(TraceAreaMgr::instance()->print());
    std::string line;
    std::getline(listing, line);
    std::getline(listing, line);
    std::string text;
    while (std::getline(listing, line) && line != "END TraceAreaMgr") {
        const std::size_t tab = line.find('\t');
        const std::size_t begin = line.find_first_not_of(' ');
        const std::string name = line.substr(begin, tab - begin);
        const std::bitset<64> id(line, tab + 1, 64);
        const std::bitset<64> mask(line, tab + 66, 64);
        if (name != "All") {
            EXPECT_EQ(id.count(), 1u) << name;
            EXPECT_EQ(id & mask, id) << name;
            text += (text.empty() ? "" : " ") + name + "=" + bitsOf(mask);
        }
    }
    return text;
}

/// The area's own bit, or -1 for an unknown area.
inline int bitOf(const std::string& name)
{
    const TraceAreaEntry* entry = TraceAreaMgr::instance()->searchId(name);
    return entry == nullptr ? -1 : std::stoi(bitsOf(entry->id));
}

} // namespace KelvoBase::test
