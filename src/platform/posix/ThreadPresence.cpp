#include "platform/ThreadPresence.h"

#include "platform/ForcedEnd.h"
#include "platform/ThreadList.h"
#include "platform/Threads.h"

#include <cerrno>

#include <linux/membarrier.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace tsl::Presence
{

// Alone on its cache line, since every lock reads it (R02).
alignas(64) std::atomic<int> g_iForking{0};

namespace
{

constexpr long STORE_DELAY_MAX = 10'000'000; ///< nanoseconds until a store is visible to all processors

alignas(64) std::atomic<unsigned int> g_iForks{0};

// The iThread of the thread that forks; 0 if none does.
std::atomic<std::uint64_t> g_iForker{0};

// Threads up to g_iLastParentThread belong to parent processes and do not exist here, except for g_iForkedBy,
// which forked.
std::uint64_t g_iLastParentThread = 0;
std::uint64_t g_iForkedBy = 0;

bool PassBarrier()
{
    return ::syscall(SYS_membarrier, MEMBARRIER_CMD_PRIVATE_EXPEDITED, 0) == 0;
}

/// Waits until no other thread forks. Others need not wait for this thread meanwhile, whatever locks it
/// holds: it changes nothing.
void WaitForTurn()
{
    AllowForkScope const oScope;
    for (int iOther = 0; !g_iForking.compare_exchange_strong(iOther, 1); iOther = 0)
        g_iForking.wait(1);
    g_iForker.store(t_oForcedEnd.iThread, std::memory_order_relaxed);
}

void PrepareFork()
{
    if (!t_oForcedEnd.pPresence)
        Register(t_oForcedEnd);
    WaitForTurn();
    LockList();
    WaitUntilOthersHoldNoLock();
}

void EndFork()
{
    UnlockList();
    g_iForker.store(0, std::memory_order_relaxed);
    g_iForking.store(0, std::memory_order_release);
    g_iForking.notify_all();
}

/// Runs in the child, where the calling thread is the only one.
void BeginChild()
{
    g_iForks.fetch_add(1, std::memory_order_relaxed);
    g_iLastParentThread = GetLastThread();
    g_iForkedBy = t_oForcedEnd.iThread;
    KeepThisThread();
    Platform::KeepThisThreadInChild();
    EndFork();
}

} // namespace

unsigned long AskThreadId()
{
    return static_cast<unsigned long>(::syscall(SYS_gettid));
}

bool ThreadExists(unsigned long iThreadId)
{
    return ::syscall(SYS_tgkill, ::getpid(), iThreadId, 0) == 0 || errno != ESRCH;
}

void ShowStores()
{
    // Each of these system calls is a full barrier for the calling thread as well.
    if (PassBarrier())
        return;
    ::syscall(SYS_membarrier, MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED, 0);
    if (PassBarrier() || ::syscall(SYS_membarrier, MEMBARRIER_CMD_GLOBAL, 0) == 0)
        return;
    timespec oRest{0, STORE_DELAY_MAX};
    while (::nanosleep(&oRest, &oRest) == -1 && errno == EINTR)
    {
    }
}

void WatchForks()
{
    ::syscall(SYS_membarrier, MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED, 0);
    // It fails only without memory, and before main there is nowhere to report it.
    static_cast<void>(::pthread_atfork(&PrepareFork, &EndFork, &BeginChild));
}

unsigned int GetForkCount()
{
    return g_iForks.load(std::memory_order_relaxed);
}

void WaitForFork(ThreadPresence & oPresence)
{
    std::uint64_t const iThis = t_oForcedEnd.iThread;
    while (
        g_iForking.load(std::memory_order_seq_cst) != 0 && g_iForker.load(std::memory_order_relaxed) != iThis)
    {
        oPresence.bLocking.store(false, std::memory_order_release);
        g_iForking.wait(1);
        oPresence.bLocking.store(true, std::memory_order_seq_cst);
    }
}

bool HasLostOwner(std::uint64_t iOwner)
{
    return iOwner <= g_iLastParentThread && iOwner != g_iForkedBy;
}

bool AreOthersGone()
{
    // exit leaves them running.
    return false;
}

} // namespace tsl::Presence
