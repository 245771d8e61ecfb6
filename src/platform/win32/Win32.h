#pragma once

/// \file
/// The only way to the headers of the system, without the names that get in the way, and an owner of its handles.

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX // which some C++ run-times define for themselves
#define NOMINMAX
#endif
#include <windows.h>

#include <winsock2.h>

namespace KelvoBase::platform::win32
{

/// Keeps the reason of a failure through the steps that clean up behind it.
class KeepError
{
public:
    KeepError() : mCode(::GetLastError()) {}
    ~KeepError() { ::SetLastError(mCode); }
    KeepError(const KeepError&) = delete;
    KeepError& operator=(const KeepError&) = delete;

private:
    DWORD mCode;
};

/// A handle that `Close` takes back; none is `INVALID_HANDLE_VALUE`.
template <auto Close>
class Owned
{
public:
    explicit Owned(HANDLE handle) : mHandle(handle) {}
    ~Owned()
    {
        if (*this) {
            const KeepError keep;
            Close(mHandle);
        }
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    explicit operator bool() const { return mHandle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return mHandle; }

private:
    HANDLE mHandle;
};

} // namespace KelvoBase::platform::win32
