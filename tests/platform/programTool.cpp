/// \file
/// Compares the path of the program that the port tells with the whole one. Ends with 2 if they are equal, with 3 if
/// the port tells none of a path that its buffer has no room for, else with 1.

#include "platform/Platform.h"
#include "platform/win32/Win32.h"

#include <array>

int main()
{
    constexpr DWORD room = 260;
    std::array<char, 1000> whole{};
    const DWORD length = ::GetModuleFileNameA(nullptr, whole.data(), static_cast<DWORD>(whole.size()));
    const std::optional<std::string> told = KelvoBase::platform::programPath();
    if (length > room) {
        return told ? 1 : 3;
    }
    return told == whole.data() ? 2 : 1;
}
