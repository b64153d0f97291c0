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

/// What is kept of a thread while it is open. Its forced end is asked for by others and carried out by itself.
struct Thread
{
    enum EState : int
    {
        eFree, ///< nobody wants it to end
        eAsked,
        eEnding
    };

    Thread(void (*fTheMain)(void *), void * pTheArgument) : fMain(fTheMain), pArgument(pTheArgument) {}

    void (*fMain)(void *);
    void * pArgument;
    pthread_t hThread = {};
    std::atomic<unsigned long> iId{0}; ///< 0 until the thread runs
    bool bEnded = false;

    // In a child that another thread has forked off, the thread does not exist.
    std::atomic<unsigned int> iForkCount{Presence::GetForkCount()};

    // Of its forced end.
    std::atomic<EState> eState{eFree};
    std::atomic<EndObstacle> eObstacle{EndObstacle::eNoAnswer};
    std::atomic<long> iInterval{0}; ///< nanoseconds until it is asked again
    unsigned int iRequests = 0;
    EndSignals oSignals;
    DelayedSignal oTimer;
};

/// The calling thread, if it was started here.
extern constinit thread_local Thread * t_pThis;

/// The handler of the signals that ask a thread to end.
void EndIfAsked(int iSignal, siginfo_t * pInfo, void * pContext);

} // namespace tsl::Platform
