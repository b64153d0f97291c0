#pragma once

#include <tessel/Export.h>

#include <memory>

namespace tsl
{

/// A recursive mutex. The owner may lock it again and unlocks it once per Lock; other threads wait without
/// limit.
///
///     CriticalSectionMutex oMutex;
///     oMutex.Lock();
///     ++g_iCounter;
///     oMutex.Unlock();
///
/// Copies share one lock, so that a class with a mutex member can be copied.
///
/// A process may fork at any time, and the child may use the library at once. The forking thread first waits
/// until no other thread holds a lock of this kind, and keeps them from taking one until it has forked. It
/// waits 2 seconds at most, and 50 ms for a thread that is waiting for a lock of the forking thread itself. A
/// lock that is still held by another thread is free in the child; the data that it guards may be half
/// changed. Locks of the forking thread stay locked in the child, with the same owner.
///
/// Only the forking thread exists in the child. Objects that another thread was using without a lock, and
/// static objects of the program that another thread was initialising, are not usable there.
class TSL_EXPORT CriticalSectionMutex
{
public:
    CriticalSectionMutex();
    ~CriticalSectionMutex();
    CriticalSectionMutex(CriticalSectionMutex const & oSource);
    CriticalSectionMutex & operator=(CriticalSectionMutex const & oSource);

    /// Takes the lock. Waits while another thread holds it.
    void Lock();
    void LockRead() { Lock(); }
    void LockWrite() { Lock(); }

    /// Undoes one Lock. The calling thread must hold the lock.
    void Unlock();
    void UnlockRead() { Unlock(); }
    void UnlockWrite() { Unlock(); }

private:
    friend struct LockTrial;
    friend class OwnMutex;
    struct Section;

    std::shared_ptr<Section> m_pSection;
};

/// The same mutex: despite its name, a reader excludes other readers. Sharing is not possible, since the
/// owner must be able to lock again.
class TSL_EXPORT ReaderWriterMutex : public CriticalSectionMutex
{
};

/// A mutex that does nothing, as a template argument where no locking is wanted.
class TSL_EXPORT DummyMutex
{
public:
    /// All do nothing.
    void LockRead() {}
    void LockWrite() {}
    void UnlockRead() {}
    void UnlockWrite() {}
};

} // namespace tsl
