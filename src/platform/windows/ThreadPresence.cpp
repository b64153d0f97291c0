#include "platform/ThreadPresence.h"

#include "platform/ThreadList.h"
#include "platform/windows/Handle.h"

extern "C" NTSYSAPI BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace tsl::Presence
{

// There is no fork here, so this remains 0 and nobody waits for it.
alignas(64) std::atomic<int> g_iForking{0};

unsigned long AskThreadId()
{
    return ::GetCurrentThreadId();
}

bool ThreadExists(unsigned long iThreadId)
{
    Platform::Handle const oThread(::OpenThread(SYNCHRONIZE, FALSE, iThreadId));
    return oThread && ::WaitForSingleObject(oThread.Get(), 0) == WAIT_TIMEOUT;
}

void ShowStores()
{
    ::FlushProcessWriteBuffers();
}

void WatchForks() {}

unsigned int GetForkCount()
{
    return 0;
}

void WaitForFork(ThreadPresence &) {}

bool AreOthersGone()
{
    // The end of the process ends all other threads before the libraries are told.
    return ::RtlDllShutdownInProgress();
}

bool HasLostOwner(std::uint64_t)
{
    return AreOthersGone();
}

} // namespace tsl::Presence
