#include "support/UserData.h"

#include <system_error>

namespace KelvoBase::test
{

UserData::~UserData()
{
    std::error_code ignored;
    std::filesystem::remove_all(mHome, ignored);
}

ScopedUserData::ScopedUserData(const std::filesystem::path& home) : mData(home)
{
    for (const auto& [name, value] : mData.environment()) {
        mEnvironment.emplace_back(name, value);
    }
}

} // namespace KelvoBase::test
