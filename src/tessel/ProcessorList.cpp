#include "ProcessorList.h"

#include "LockTrial.h"
#include "platform/Clock.h"
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

// As many looks at a lock as a waiting thread takes before it sleeps.
constexpr int LOOKS_BEFORE_SLEEP = 100;

constexpr int PAUSE_BETWEEN_LOOKS = 1; // milliseconds

// Further than this, threads wait for each other in a circle that the calling one is not in.
constexpr int LONGEST_CHAIN = 10'000;

/// For what walkers wait for.
constinit std::mutex g_oWanted;

bool TryForAMoment(CriticalSectionMutex & oLock)
{
    for (int i = 0; i < LOOKS_BEFORE_SLEEP; ++i)
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

/// What was in the list at one time. Once it can be seen by others, only entries are marked as removed.
struct ProcessorList::Set
{
    explicit Set(std::vector<MessageProcessor const *> const & vProcessors)
        : vEntries(vProcessors.begin(), vProcessors.end())
    {
    }

    /// The entry of the processor, live or not, or null.
    Entry * Find(MessageProcessor const * pProcessor)
    {
        auto const oPlace = std::ranges::lower_bound(vEntries, pProcessor, std::less<>(), &Entry::pProcessor);
        return oPlace != vEntries.end() && oPlace->pProcessor == pProcessor ? &*oPlace : nullptr;
    }

    /// The entries behind the processor.
    std::span<Entry const> GetRest(MessageProcessor const * pProcessor) const
    {
        auto const oPlace = std::ranges::upper_bound(vEntries, pProcessor, std::less<>(), &Entry::pProcessor);
        return {oPlace, vEntries.end()};
    }

    // In ascending order of the addresses, each once.
    std::vector<Entry> vEntries;

    std::unique_ptr<Set> pFormer;
};

/// Holds a list while its processors are called.
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
        // The walk itself is known to others, so a compiler reads its fields anew after each call (R04).
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

    /// Under g_oWanted: what this thread waits for, entered in all lists that it walks.
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

/// Tells what the thread waits for inside its walks, until the end of the scope.
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

    // Sets that a walk may be reading are left to the next occasion.
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

/// Puts a set of the live entries, and of one more processor, in the place of the latest.
void ProcessorList::Rebuild(MessageProcessor const * pAdded)
{
    Set * const pLatest = m_pSet.load(std::memory_order_relaxed);
    std::vector<MessageProcessor const *> vProcessors;
    if (pLatest)
        for (Entry const & oEntry : pLatest->vEntries)
            if (oEntry.IsLive())
                vProcessors.push_back(oEntry.pProcessor);
    if (pAdded)
        vProcessors.insert(std::ranges::upper_bound(vProcessors, pAdded, std::less<>()), pAdded);

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
        // The entries that are marked as removed are skipped for as long as they stay.
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
    // The thread's own walk goes on; until its end, the list remembers whom it may be calling.
    if (Walk::IsOnThisThread(*this))
        return;

    if (!Walk::IsOnThisThread())
        m_oWalkLock.Lock();
    else if (!LockInsideWalk())
        return;
    DropFormerSets();
    m_oWalkLock.Unlock();
}

/// False if the thread that holds the list waits for this one.
bool ProcessorList::LockInsideWalk()
{
    if (TryForAMoment(m_oWalkLock))
        return true;

    WaitMark const oMark(*this);
    while (!TryForAMoment(m_oWalkLock))
    {
        if (WaitsForThisThread())
            return false;
        Platform::Sleep(PAUSE_BETWEEN_LOOKS);
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

    // One by one: the end of a long chain as a whole would be a deep recursion.
    while (pFormer)
        pFormer = std::move(pFormer->pFormer);
}

} // namespace tsl
