#pragma once

#include <tessel/Locks.h>

#include <atomic>
#include <cstddef>

namespace tsl
{

class Message;
class MessageProcessor;
class Result;

/// The processors of one message type, which are called in the order of their addresses. Any thread may call any
/// operation.
///
/// A walk calls all of them. It holds the walk lock all the time, so walks follow one after the other; the walking
/// thread may begin another walk inside it. The set of processors has a lock of its own, which is held only for
/// changes. So it can change during a walk, which then continues with the next processor by address.
class ProcessorList
{
public:
    ProcessorList() = default;
    ~ProcessorList();
    ProcessorList(ProcessorList const &) = delete;
    ProcessorList & operator=(ProcessorList const &) = delete;

    /// Does nothing if the processor is in the list. A null pointer throws an Exception of code -1 here and in
    /// Remove.
    void Add(MessageProcessor const * pProcessor);

    /// Removes the processor and waits as AwaitCalls does. Does not fail for lack of memory.
    void Remove(MessageProcessor const * pProcessor);

    /// Waits until no other thread is in a walk that may still call the removed processor. Inside a walk of its
    /// own, the thread does not wait for a thread that waits for it in turn, directly or through others.
    void AwaitCalls(MessageProcessor const * pProcessor);

    bool Has(MessageProcessor const * pProcessor) const;

    /// Calls Process of each. An Exception of a processor ends the walk, and its Result is put in front of oResult.
    void Deliver(Message const & oMessage, Result & oResult);

    /// Calls HandlerDestruction of each; the list is then empty.
    void End();

private:
    struct Set;
    class Walk;
    class WaitMark;

    // The caller holds the set's lock.
    void Rebuild(MessageProcessor const * pAdded);
    void TryToTidy();
    bool IsLive(MessageProcessor const * pProcessor) const;

    bool WasRemovedLately(MessageProcessor const * pProcessor) const;
    void AwaitWalks();
    bool LockInsideWalk();
    bool WaitsForThisThread() const;

    // The caller holds the walk lock, or no thread uses the list.
    void DropFormerSets();

    // The latest set, which owns the one before it, and so on. Former sets are kept while a walk may read them.
    std::atomic<Set *> m_pSet{nullptr};

    // Incremented with every new set, so that a walk notices it.
    std::atomic<std::size_t> m_iVersion{0};

    // The list that the thread which walks this one waits for, or null. Protected by g_oWanted.
    ProcessorList const * m_pWantedByWalker = nullptr;

    CriticalSectionMutex m_oWalkLock;
    mutable CriticalSectionMutex m_oSetLock;
};

} // namespace tsl
