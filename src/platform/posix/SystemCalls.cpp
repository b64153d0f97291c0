#include "platform/posix/SystemCalls.h"

#include <linux/futex.h>
#include <sys/syscall.h>

namespace tsl::Platform
{

bool IsRestartedWait(long iCall, unsigned long iSecondArgument)
{
    switch (iCall)
    {
    case SYS_futex:
#ifdef SYS_futex_time64
    case SYS_futex_time64:
#endif
        // Other futex operations wake threads, which must not be lost.
        switch (static_cast<int>(iSecondArgument) & FUTEX_CMD_MASK)
        {
        case FUTEX_WAIT:
        case FUTEX_WAIT_BITSET:
            return true;
        default:
            return false;
        }
#ifdef SYS_socketcall
    case SYS_socketcall: // the functions that use it and do not wait are not in the list of waits
#endif
    case SYS_read:
    case SYS_pread64:
    case SYS_readv:
    case SYS_write:
    case SYS_pwrite64:
    case SYS_writev:
    case SYS_recvfrom:
    case SYS_recvmsg:
    case SYS_sendto:
    case SYS_sendmsg:
#ifdef SYS_accept
    case SYS_accept:
#endif
    case SYS_accept4:
    case SYS_connect:
#ifdef SYS_open
    case SYS_open:
#endif
    case SYS_openat:
    case SYS_fcntl:
#ifdef SYS_fcntl64
    case SYS_fcntl64:
#endif
    case SYS_flock:
    case SYS_wait4:
#ifdef SYS_waitpid
    case SYS_waitpid:
#endif
    case SYS_waitid:
        return true;
    default:
        return false;
    }
}

} // namespace tsl::Platform
