#pragma once

#include <tessel/Locks.h>

#include <atomic>
#include <cstddef>

namespace tsl
{

class Message;
class MessageProcessor;
class Result;

/// The processors of one message type, which are called in the order of their addresses.
///
/// The list's lock is held for a whole walk over them, so that walks follow one after the other; the thread
/// that walks may begin another walk. The set has a lock of its own that is held for its changes alone, so
/// it can be changed while any thread walks: the walk goes on with the next processor by address.
class ProcessorList
{
public:
    ProcessorList() = default;
    ~ProcessorList();
    ProcessorList(ProcessorList const &) = delete;
    ProcessorList & operator=(ProcessorList const &) = delete;

    /// Does nothing if the processor is in the list. A null pointer throws an Exception of code -1 here and
    /// in Remove.
    void Add(MessageProcessor const * pProcessor);

    /// Takes the processor out and waits as AwaitCalls does. Needs no memory.
    void Remove(MessageProcessor const * pProcessor);

    /// If the processor was in the list lately, waits until no other thread is in a walk that may call it.
    /// Inside a walk of its own, the thread does not wait for one that in turn waits for it, directly or by
    /// way of others.
    void AwaitCalls(MessageProcessor const * pProcessor);

    bool Has(MessageProcessor const * pProcessor) const;

    /// An Exception that a processor throws ends the walk, and its Result is put in front.
    void Deliver(Message const & oMessage, Result & oResult);

    /// Tells the processors of the end of their bus; the list is then empty.
    void End();

private:
    struct Set;
    class Walk;
    class WaitMark;

    // Under the set's lock.
    void Rebuild(MessageProcessor const * pAdded);
    void TryToTidy();
    bool IsLive(MessageProcessor const * pProcessor) const;

    bool WasRemovedLately(MessageProcessor const * pProcessor) const;
    void AwaitWalks();
    bool LockInsideWalk();
    bool WaitsForThisThread() const;

    // While no other thread walks.
    void DropFormerSets();

    // The latest set; it owns the one before it, and so on. They stay for as long as a walk may read them.
    std::atomic<Set *> m_pSet{nullptr};

    // Counts the sets, so that a walk notices a new one.
    std::atomic<std::size_t> m_iVersion{0};

    // What the thread that walks this list waits for at the moment, if that is a list.
    ProcessorList const * m_pWantedByWalker = nullptr;

    CriticalSectionMutex m_oWalkLock;
    mutable CriticalSectionMutex m_oSetLock;
};

} // namespace tsl
