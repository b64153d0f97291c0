#include "ProcessorList.h"

#include "LockTrial.h"
#include "platform/Clock.h"
#include "platform/PlainLock.h"
#include "platform/Processor.h"

#include <tessel/Exception.h>
#include <tessel/MessageProcessor.h>
#include <tessel/Result.h>
#include <tessel/ScopedLock.h>
#include <tessel/TypeName.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace tsl
{

namespace
{

// How often a waiting thread tries to take a lock before it sleeps.
constexpr int TRIALS_BEFORE_SLEEP = 100;

constexpr int PAUSE_BETWEEN_TRIALS = 1; // milliseconds

// A longer chain of waiting threads is a circle that does not include the calling thread.
constexpr int LONGEST_CHAIN = 10'000;

/// Protects m_pWantedByWalker of all lists.
constinit Platform::PlainLock g_oWanted;

bool TryForAMoment(CriticalSectionMutex & oLock)
{
    for (int i = 0; i < TRIALS_BEFORE_SLEEP; ++i)
    {
        if (LockTrial::TryToLock(oLock))
            return true;
        Platform::Relax();
    }
    return false;
}

void ThrowIfNull(MessageProcessor const * pProcessor)
{
    constexpr int iNullProcessor = -1;
    if (!pProcessor)
        throw Exception(iNullProcessor, GetTypeName<MessageProcessor>(), __builtin_FILE(), __builtin_LINE());
}

struct Entry
{
    explicit Entry(MessageProcessor const * pTheProcessor) : pProcessor(pTheProcessor), pLive(pTheProcessor)
    {
    }

    bool IsLive() const { return pLive.load(std::memory_order_relaxed) != nullptr; }

    MessageProcessor const * pProcessor;

    // Null once it is removed.
    std::atomic<MessageProcessor const *> pLive;
};

} // namespace

/// The processors at one time. After other threads can see it, it changes only by marking entries as removed.
struct ProcessorList::Set
{
    explicit Set(std::vector<MessageProcessor const *> const & vProcessors)
        : vEntries(vProcessors.begin(), vProcessors.end())
    {
    }

    /// The entry of the processor, live or not, or null.
    Entry * Find(MessageProcessor const * pProcessor)
    {
        auto const oPlace = std::lower_bound(vEntries.begin(), vEntries.end(), pProcessor,
            [](Entry const & oLeft, MessageProcessor const * pRight)
            { return std::less<>()(oLeft.pProcessor, pRight); });
        return oPlace != vEntries.end() && oPlace->pProcessor == pProcessor ? &*oPlace : nullptr;
    }

    /// The entries after the processor.
    std::span<Entry const> GetRest(MessageProcessor const * pProcessor) const
    {
        auto const oPlace = std::upper_bound(vEntries.begin(), vEntries.end(), pProcessor,
            [](MessageProcessor const * pLeft, Entry const & oRight)
            { return std::less<>()(pLeft, oRight.pProcessor); });
        return {oPlace, vEntries.end()};
    }

    // Sorted by address, each once.
    std::vector<Entry> vEntries;

    std::unique_ptr<Set> pFormer;
};

/// Locks a list while its processors are called.
class ProcessorList::Walk
{
public:
    explicit Walk(ProcessorList & oList) : m_oList(oList), m_pOuter(t_pInnermost)
    {
        Lock();
        t_pInnermost = this;
    }

    ~Walk()
    {
        t_pInnermost = m_pOuter;
        m_oList.m_oWalkLock.Unlock();
    }

    Walk(Walk const &) = delete;
    Walk & operator=(Walk const &) = delete;

    template<class Call>
    void CallEach(Call fCall)
    {
        // A local reference: the compiler would read m_oList again after each call, as others know this object
        // (R04).
        ProcessorList & oList = m_oList;
        std::size_t iVersion = oList.m_iVersion.load(std::memory_order_acquire);
        bool bChanged = false;
        std::span<Entry const> oRest;
        if (Set const * const pSet = oList.m_pSet.load(std::memory_order_acquire))
            oRest = pSet->vEntries;
        while (!oRest.empty())
        {
            MessageProcessor const * const pProcessor = oRest.front().pLive.load(std::memory_order_acquire);
            oRest = oRest.subspan(1);
            if (!pProcessor)
                continue;

            fCall(*pProcessor);
            if (oList.m_iVersion.load(std::memory_order_acquire) != iVersion) [[unlikely]]
            {
                bChanged = true;
                iVersion = oList.m_iVersion.load(std::memory_order_acquire);
                oRest = oList.m_pSet.load(std::memory_order_acquire)->GetRest(pProcessor);
            }
        }
        if (bChanged && !Has(m_pOuter, oList)) [[unlikely]]
            oList.DropFormerSets();
    }

    static bool IsOnThisThread() { return t_pInnermost != nullptr; }
    static bool IsOnThisThread(ProcessorList const & oList) { return Has(t_pInnermost, oList); }

    /// Records what this thread waits for in all lists that it walks. The caller holds g_oWanted.
    static void SetWanted(ProcessorList const * pWanted)
    {
        for (Walk const * pWalk = t_pInnermost; pWalk; pWalk = pWalk->m_pOuter)
            pWalk->m_oList.m_pWantedByWalker = pWanted;
    }

private:
    void Lock();

    /// Whether the list is walked by this walk or one around it.
    static bool Has(Walk const * pWalk, ProcessorList const & oList)
    {
        while (pWalk && &pWalk->m_oList != &oList)
            pWalk = pWalk->m_pOuter;
        return pWalk != nullptr;
    }

    static thread_local Walk * t_pInnermost;

    ProcessorList & m_oList;
    Walk * const m_pOuter;
};

constinit thread_local ProcessorList::Walk * ProcessorList::Walk::t_pInnermost = nullptr;

/// Records what the thread waits for inside its walks, until the end of the scope.
class ProcessorList::WaitMark
{
public:
    explicit WaitMark(ProcessorList const & oWanted)
    {
        std::lock_guard const oScope(g_oWanted);
        Walk::SetWanted(&oWanted);
    }
    ~WaitMark()
    {
        std::lock_guard const oScope(g_oWanted);
        Walk::SetWanted(nullptr);
    }
    WaitMark(WaitMark const &) = delete;
    WaitMark & operator=(WaitMark const &) = delete;
};

void ProcessorList::Walk::Lock()
{
    if (!m_pOuter) [[likely]]
        return m_oList.m_oWalkLock.Lock();
    if (TryForAMoment(m_oList.m_oWalkLock))
        return;

    WaitMark const oMark(m_oList);
    m_oList.m_oWalkLock.Lock();
}

ProcessorList::~ProcessorList()
{
    DropFormerSets();
    delete m_pSet.load(std::memory_order_relaxed);
}

void ProcessorList::Add(MessageProcessor const * pProcessor)
{
    ThrowIfNull(pProcessor);
    {
        WriteLock const oScope(m_oSetLock);
        if (IsLive(pProcessor))
            return;
        Rebuild(pProcessor);
    }

    // If a walk may be reading former sets, a later operation deletes them.
    if (!Walk::IsOnThisThread(*this) && LockTrial::TryToLock(m_oWalkLock))
    {
        DropFormerSets();
        m_oWalkLock.Unlock();
    }
}

void ProcessorList::Remove(MessageProcessor const * pProcessor)
{
    ThrowIfNull(pProcessor);
    {
        WriteLock const oScope(m_oSetLock);
        if (IsLive(pProcessor))
        {
            Set & oLatest = *m_pSet.load(std::memory_order_relaxed);
            oLatest.Find(pProcessor)->pLive.store(nullptr, std::memory_order_release);
            TryToTidy();
        }
    }
    AwaitCalls(pProcessor);
}

void ProcessorList::AwaitCalls(MessageProcessor const * pProcessor)
{
    if (WasRemovedLately(pProcessor))
        AwaitWalks();
}

bool ProcessorList::Has(MessageProcessor const * pProcessor) const
{
    ReadLock const oScope(m_oSetLock);
    return IsLive(pProcessor);
}

void ProcessorList::Deliver(Message const & oMessage, Result & oResult)
{
    try
    {
        Walk oWalk(*this);
        oWalk.CallEach([&](MessageProcessor const & oProcessor) { oProcessor.Process(oMessage, oResult); });
    }
    catch (Exception & oException)
    {
        oResult.InsertFront(oException.GetResult());
    }
}

void ProcessorList::End()
{
    Walk oWalk(*this);
    oWalk.CallEach([](MessageProcessor const & oProcessor) { oProcessor.HandlerDestruction(); });

    WriteLock const oScope(m_oSetLock);
    if (Set * const pLatest = m_pSet.load(std::memory_order_relaxed))
        for (Entry & oEntry : pLatest->vEntries)
            oEntry.pLive.store(nullptr, std::memory_order_release);
}

/// Replaces the latest set by one of its live entries and of pAdded, which may be null.
void ProcessorList::Rebuild(MessageProcessor const * pAdded)
{
    Set * const pLatest = m_pSet.load(std::memory_order_relaxed);
    std::vector<MessageProcessor const *> vProcessors;
    if (pLatest)
        for (Entry const & oEntry : pLatest->vEntries)
            if (oEntry.IsLive())
                vProcessors.push_back(oEntry.pProcessor);
    if (pAdded)
        vProcessors.insert(
            std::upper_bound(vProcessors.begin(), vProcessors.end(), pAdded, std::less<>()), pAdded);

    auto pSet = std::make_unique<Set>(vProcessors);
    pSet->pFormer.reset(pLatest);
    m_pSet.store(pSet.release(), std::memory_order_release);
    m_iVersion.store(m_iVersion.load(std::memory_order_relaxed) + 1, std::memory_order_release);
}

void ProcessorList::TryToTidy()
{
    try
    {
        Rebuild(nullptr);
    }
    catch (std::bad_alloc const &)
    {
        // Removed entries remain in the set and are skipped.
    }
}

bool ProcessorList::IsLive(MessageProcessor const * pProcessor) const
{
    Set * const pLatest = m_pSet.load(std::memory_order_relaxed);
    Entry const * const pEntry = pLatest ? pLatest->Find(pProcessor) : nullptr;
    return pEntry && pEntry->IsLive();
}

bool ProcessorList::WasRemovedLately(MessageProcessor const * pProcessor) const
{
    ReadLock const oScope(m_oSetLock);
    if (IsLive(pProcessor))
        return false;

    for (Set * pSet = m_pSet.load(std::memory_order_relaxed); pSet; pSet = pSet->pFormer.get())
        if (pSet->Find(pProcessor))
            return true;
    return false;
}

void ProcessorList::AwaitWalks()
{
    // The thread cannot wait for its own walk. The former sets remain until its end, so that others still wait for
    // it.
    if (Walk::IsOnThisThread(*this))
        return;

    if (!Walk::IsOnThisThread())
        m_oWalkLock.Lock();
    else if (!LockInsideWalk())
        return;
    DropFormerSets();
    m_oWalkLock.Unlock();
}

/// Returns false without the lock if the thread that holds it waits for this one.
bool ProcessorList::LockInsideWalk()
{
    if (TryForAMoment(m_oWalkLock))
        return true;

    WaitMark const oMark(*this);
    while (!TryForAMoment(m_oWalkLock))
    {
        if (WaitsForThisThread())
            return false;
        Platform::Sleep(PAUSE_BETWEEN_TRIALS);
    }
    return true;
}

bool ProcessorList::WaitsForThisThread() const
{
    std::lock_guard const oScope(g_oWanted);
    ProcessorList const * pWanted = m_pWantedByWalker;
    for (int i = 0; pWanted && i < LONGEST_CHAIN; ++i)
    {
        if (Walk::IsOnThisThread(*pWanted))
            return true;
        pWanted = pWanted->m_pWantedByWalker;
    }
    return false;
}

void ProcessorList::DropFormerSets()
{
    std::unique_ptr<Set> pFormer;
    {
        WriteLock const oScope(m_oSetLock);
        if (Set * const pLatest = m_pSet.load(std::memory_order_relaxed))
            pFormer = std::move(pLatest->pFormer);
    }

    // One by one: to destroy a long chain at once would be a deep recursion.
    while (pFormer)
        pFormer = std::move(pFormer->pFormer);
}

} // namespace tsl
