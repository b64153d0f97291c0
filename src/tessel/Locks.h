#pragma once

#include <tessel/Export.h>

#include <memory>

namespace tsl
{

/// The library's exclusive lock. The thread that holds it may take it again and gives it up once per
/// entry; every other thread waits without limit. There is no time-out and no try.
///
/// Copies and assigned objects share one lock, so that classes with a mutex member can be copied.
///
/// A process may be forked at any moment, and the child may use the library at once. The forking thread first
/// waits until no other thread holds a lock of this kind, and keeps them from taking one until it has forked.
/// It waits for 2 seconds at most: for a thread that holds a lock for longer, in a processor of messages for
/// instance, and for 50 ms if that thread waits for a lock of the forking one. In the child such a lock is free,
/// and what it guards is as the thread has left it. What the forking thread holds it holds in the child as well.
///
/// Only the forking thread is there in the child; objects that another thread was using without a lock, and
/// static objects of the program that another thread was making, are lost to it.
class TSL_EXPORT CriticalSectionMutex
{
public:
    CriticalSectionMutex();
    ~CriticalSectionMutex();
    CriticalSectionMutex(CriticalSectionMutex const & oSource);
    CriticalSectionMutex & operator=(CriticalSectionMutex const & oSource);

    /// Waits until the lock is free or held by this thread, and takes it.
    void Lock();
    void LockRead() { Lock(); }
    void LockWrite() { Lock(); }

    /// Gives up one entry. The calling thread must hold the lock.
    void Unlock();
    void UnlockRead() { Unlock(); }
    void UnlockWrite() { Unlock(); }

private:
    friend struct LockTrial;
    friend class OwnMutex;
    struct Section;

    std::shared_ptr<Section> m_pSection;
};

/// The same exclusive lock under a name that states an intention: a reader excludes every other reader.
/// Readers are not shared on purpose, since re-entry by the holding thread is needed.
class TSL_EXPORT ReaderWriterMutex : public CriticalSectionMutex
{
};

/// A lock that does nothing, for a template that takes a mutex where no locking is wanted.
class TSL_EXPORT DummyMutex
{
public:
    void LockRead() {}
    void LockWrite() {}
    void UnlockRead() {}
    void UnlockWrite() {}
};

} // namespace tsl
