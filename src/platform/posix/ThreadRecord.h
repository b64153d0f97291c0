#pragma once

#include "platform/ThreadPresence.h"
#include "platform/Threads.h"
#include "platform/posix/DelayedSignal.h"
#include "platform/posix/EndSignals.h"

#include <atomic>

#include <pthread.h>
#include <signal.h>

namespace tsl::Platform
{

/// A thread, from StartThread to CloseThread. Others ask it to end; it ends itself.
struct Thread
{
    enum EState : int
    {
        eFree, ///< not asked to end
        eAsked,
        eEnding
    };

    Thread(void (*fTheMain)(void *), void * pTheArgument) : fMain(fTheMain), pArgument(pTheArgument) {}

    void (*fMain)(void *);
    void * pArgument;
    pthread_t hThread = {};
    std::atomic<unsigned long> iId{0}; ///< 0 until the thread runs
    bool bEnded = false;

    // Differs from the present fork count in a child that another thread has forked: the thread does not
    // exist there.
    std::atomic<unsigned int> iForkCount{Presence::GetForkCount()};

    // For killing it.
    std::atomic<EState> eState{eFree};
    std::atomic<EndObstacle> eObstacle{EndObstacle::eNoAnswer};
    std::atomic<long> iInterval{0}; ///< at least so many nanoseconds until it is asked again
    unsigned int iRequests = 0;
    EndSignals oSignals;
    DelayedSignal oTimer;
};

/// The record of the calling thread; null if StartThread did not start it.
extern constinit thread_local Thread * t_pThis;

/// The handler of the signals that ask a thread to end.
void EndIfAsked(int iSignal, siginfo_t * pInfo, void * pContext);

} // namespace tsl::Platform
