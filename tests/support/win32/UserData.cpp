#include "support/UserData.h"

namespace KelvoBase::test
{

// The registry tells Windows that the folder lies in the user's home, which a variable names. The one of
// scripts/windows-wine.sh names a variable for the folder itself.
UserData::UserData(const std::filesystem::path& home)
    : mHome(home), mFolder(home / "AppData\\Roaming"), mEnvironment{{"USERPROFILE", mHome.string()},
                                                                    {"KELVOBASE_APPDATA", mFolder.string()}}
{
}

} // namespace KelvoBase::test
