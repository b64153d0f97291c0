#include <tessel/Locks.h>

#include "LockOrder.h"
#include "LockTrial.h"
#include "OwnMutex.h"
#include "platform/ForcedEnd.h"
#include "platform/Processor.h"
#include "platform/Waiting.h"

#include <atomic>
#include <cstdint>

namespace tsl
{

/// A recursive mutex that takes one atomic operation to lock and one to unlock while no other thread waits.
/// That is much faster than std::recursive_mutex (R02, R06).
struct TSL_HIDDEN CriticalSectionMutex::Section
{
    enum State : int
    {
        eFree,
        eHeld,
        eWanted ///< held, and other threads may be waiting
    };

    // About two microseconds, the time that a line of the log takes (R02).
    static constexpr int SPINS_BEFORE_SLEEP = 100;

    // No owner. Not 0, which a thread has before its first lock.
    static constexpr std::uint64_t NOBODY = UINT64_MAX;

    std::atomic<int> eState{eFree};
    std::atomic<std::uint64_t> iOwner{NOBODY};

    /// How often the owner has locked it again.
    unsigned int iMoreEntries = 0;

    LockOrder oOrder;

    bool TryToTake()
    {
        int eExpected = eFree;
        return eState.load(std::memory_order_relaxed) == eFree
               && eState.compare_exchange_strong(eExpected, eHeld, std::memory_order_acquire);
    }

    void WaitAndTake(ForcedEndState const & oSelf)
    {
        // Most locks are held for less time than a thread takes to sleep and wake up.
        for (int i = 0; i < SPINS_BEFORE_SLEEP; ++i)
        {
            if (TryToTake())
                return;
            Platform::Relax();
        }

        while (eState.exchange(eWanted, std::memory_order_acquire) != eFree)
        {
            if (TakeFromLostOwner(oSelf))
                return;
            LockWaitScope const oWait;
            WaitScope const oScope(ForcedEndState::eForLock);
            Platform::WaitWhile(eState, eWanted);
        }
    }

    bool TakeFromLostOwner(ForcedEndState const & oSelf)
    {
        std::uint64_t iFormer = iOwner.load(std::memory_order_relaxed);
        if (!Presence::HasLostOwner(iFormer)
            || !iOwner.compare_exchange_strong(iFormer, oSelf.iThread, std::memory_order_relaxed))
            return false;

        iMoreEntries = 0;
        return true;
    }
};

CriticalSectionMutex::CriticalSectionMutex() : m_pSection(std::make_shared<Section>()) {}
CriticalSectionMutex::~CriticalSectionMutex() = default;
CriticalSectionMutex::CriticalSectionMutex(CriticalSectionMutex const & oSource) = default;
CriticalSectionMutex & CriticalSectionMutex::operator=(CriticalSectionMutex const & oSource) = default;

OwnMutex::OwnMutex()
{
    m_pSection->oOrder.SetOwn();
}

void CriticalSectionMutex::Lock()
{
    Section & oSection = *m_pSection;

    // Relaxed is enough: only this thread stores its own number as the owner.
    ForcedEndState & oSelf = t_oForcedEnd;
    if (oSection.iOwner.load(std::memory_order_relaxed) == oSelf.iThread)
    {
        ++oSection.iMoreEntries;
        return;
    }

    oSelf.AddLock();
    oSection.oOrder.NoteRequest();
    if (!oSection.TryToTake())
        oSection.WaitAndTake(oSelf);
    oSection.oOrder.NoteEntry();
    oSection.iOwner.store(oSelf.iThread, std::memory_order_relaxed);
}

void CriticalSectionMutex::Unlock()
{
    Section & oSection = *m_pSection;
    if (oSection.iMoreEntries > 0)
    {
        --oSection.iMoreEntries;
        return;
    }

    oSection.oOrder.NoteExit();
    oSection.iOwner.store(Section::NOBODY, std::memory_order_relaxed);
    if (oSection.eState.exchange(Section::eFree, std::memory_order_release) == Section::eWanted)
        Platform::WakeOne(oSection.eState);
    t_oForcedEnd.RemoveLock();
    EndHereIfWanted(__builtin_return_address(0));
}

bool LockTrial::TryToLock(CriticalSectionMutex & oLock)
{
    CriticalSectionMutex::Section & oSection = *oLock.m_pSection;
    ForcedEndState & oSelf = t_oForcedEnd;
    if (oSection.iOwner.load(std::memory_order_relaxed) == oSelf.iThread)
    {
        ++oSection.iMoreEntries;
        return true;
    }

    oSelf.AddLock();
    if (!oSection.TryToTake() && !oSection.TakeFromLostOwner(oSelf))
    {
        oSelf.RemoveLock();
        return false;
    }
    oSection.oOrder.NoteEntry();
    oSection.iOwner.store(oSelf.iThread, std::memory_order_relaxed);
    return true;
}

} // namespace tsl
