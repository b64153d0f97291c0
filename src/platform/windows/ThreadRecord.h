#pragma once

#include "platform/ForcedEnd.h"
#include "platform/Threads.h"
#include "platform/windows/Handle.h"

#include <atomic>

namespace tsl::Platform
{

/// A thread, from StartThread to CloseThread.
struct Thread
{
    enum EState : int
    {
        eFree, ///< not asked to end
        eAsked,
        eEnding
    };

    void (*fMain)(void *) = nullptr;
    void * pArgument = nullptr;
    Handle oThread;
    unsigned long iId = 0;
    std::atomic<int> iOwners{2}; ///< the thread itself and who started it; the last one deletes the record

    // For killing it.
    std::atomic<EState> eState{eFree};
    EndObstacle eObstacle = EndObstacle::eNoAnswer;
    Handle oAsked; ///< an event, set while the thread is asked to end

    // Published by the thread for whoever ends it. Read while the thread is suspended.
    ForcedEndState * pState = nullptr;
    std::atomic<std::atomic<int> *> pAwaited{nullptr}; ///< the value that it sleeps for in WaitWhile
};

/// The record of the calling thread; null if StartThread did not start it.
extern constinit thread_local Thread * t_pThis;

/// Ends the calling thread if it was asked to end, holds no lock, and no function of a runtime library has called it
/// back. Returns otherwise.
void EndThisThreadInWait();

} // namespace tsl::Platform
