#pragma once

/// \file
/// A system call that fails, for tests that run in a process of their own.

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cstddef>
#include <iterator>

namespace KelvoBase::test
{

/// From now on a system call of this process fails with `code`, for good: nothing brings it back. False where the
/// system does not filter calls.
inline bool letCallFail(unsigned int call, unsigned int code)
{
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | code),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{static_cast<unsigned short>(std::size(steps)), steps};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

} // namespace KelvoBase::test
