#include "support/UserData.h"

namespace KelvoBase::test
{

UserData::UserData(const std::filesystem::path& home)
    : mHome(home), mFolder(home), mEnvironment{{"XDG_CONFIG_HOME", home.string()}}
{
}

} // namespace KelvoBase::test
