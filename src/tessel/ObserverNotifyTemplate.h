#pragma once

#include <tessel/Exception.h>
#include <tessel/Locks.h>
#include <tessel/ScopedLockTemplate.h>
#include <tessel/TypeName.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <type_traits>
#include <vector>

namespace tsl
{

/// Calls a set of observers, in the order of their addresses.
///
///     tsl::ObserverNotify<Observer, int, bool> oNotify(
///         [](Observer & oObserver, int const & iEvent, bool & bResult) { oObserver.Invoke(iEvent, bResult); });
///     oNotify.Attach(&oObserver);
///     oNotify.Notify(1, bResult);
///
/// Observers are not owned; each is in the set once. Any thread may call any operation: all hold the notifier's
/// lock, also while they call the observers. If the thread that holds the lock may take it again, as a
/// CriticalSectionMutex allows, an observer may attach, detach and notify from inside a notification. The loop
/// continues with the next observer by address: a detached one is not called any more, and a newly attached one is
/// called if its address is above the present one.
///
/// A copy, and a notifier that is assigned to, also calls the observers of its source. They are borrowed: they know
/// only the source, so they are not called when the copy is destroyed, and each must outlive the copy or be
/// detached from it. Attach makes a borrowed observer one of the copy's own. Every notifier has a lock of its own.
///
/// @tparam Observer has `HandlerDestruction() const`, which is called when the notifier is destroyed and must not throw
/// @tparam Args the argument of a notification
/// @tparam CallResult one object that all observers of a notification share
/// @tparam Mutex has LockRead, LockWrite, UnlockRead and UnlockWrite
template<class Observer, class Args, class CallResult, class Mutex = CriticalSectionMutex>
class ObserverNotify
{
public:
    /// Calls one observer with the arguments and the result.
    using Invoker = void (*)(Observer & oObserver, Args const & oArgs, CallResult & oResult);

    /// Has no observers.
    explicit ObserverNotify(Invoker fInvoker) : m_fInvoker(fInvoker) {}

    /// Copies the function and borrows the observers of the source.
    ObserverNotify(ObserverNotify const & oSource) : ObserverNotify(oSource.m_fInvoker)
    {
        Borrow(oSource.GetObservers());
    }

    /// Keeps its own observers, forgets the borrowed ones, and borrows those of the source.
    ObserverNotify & operator=(ObserverNotify const & oSource)
    {
        if (&oSource == this)
            return *this;

        // The two locks are never held together: two threads that assign to each other's source would deadlock.
        std::vector<Observer *> const vObservers = oSource.GetObservers();
        TesselDetails::WriteLock const oScope(m_oLock);
        m_fInvoker = oSource.m_fInvoker;
        std::erase_if(m_vEntries, [](Entry const & oEntry) { return oEntry.bBorrowed; });
        Borrow(vObservers);
        ++m_iChange;
        return *this;
    }

    ~ObserverNotify() { End(); }

    /// Does what the destructor does: calls HandlerDestruction of each observer and removes all of them.
    void End()
    {
        TesselDetails::WriteLock const oScope(m_oLock);
        Walk(
            [](Entry const & oEntry)
            {
                if (!oEntry.bBorrowed)
                    oEntry.pObserver->HandlerDestruction();
            });
        m_vEntries.clear();
        ++m_iChange;
    }

    /// Adds an observer; does nothing if it is attached already. Null throws an Exception of code -1, here and in
    /// Detatch.
    void Attach(Observer * pObserver)
    {
        ThrowIfNullObserver(pObserver);
        TesselDetails::WriteLock const oScope(m_oLock);
        auto const oPlace = FindPlace(pObserver);
        if (IsAt(oPlace, pObserver))
        {
            oPlace->bBorrowed = false;
            return;
        }
        m_vEntries.insert(oPlace, {pObserver});
        ++m_iChange;
    }

    /// Removes an observer; does nothing if it is not attached.
    void Detatch(Observer * pObserver)
    {
        ThrowIfNullObserver(pObserver);
        TesselDetails::WriteLock const oScope(m_oLock);
        auto const oPlace = FindPlace(pObserver);
        if (IsAt(oPlace, pObserver))
        {
            m_vEntries.erase(oPlace);
            ++m_iChange;
        }
    }

    /// Includes borrowed observers. False for null.
    bool IsAttached(Observer const * pObserver) const
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        return IsAt(FindPlace(pObserver), pObserver);
    }

    /// Calls every observer with the same result object, so that each can read what an earlier one has left in it.
    /// If an observer throws, the exception reaches the caller and no further observer is called.
    void Notify(Args const & oArgs, CallResult & oResult) const
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        Walk([&](Entry const & oEntry) { m_fInvoker(*oEntry.pObserver, oArgs, oResult); });
    }

private:
    struct Entry
    {
        Observer * pObserver;
        bool bBorrowed = false; ///< it was taken over from another notifier
    };

    static void ThrowIfNullObserver(Observer const * pObserver)
    {
        constexpr int iNullObserver = -1;
        if (!pObserver)
            throw Exception(iNullObserver, GetTypeName<std::remove_const_t<Observer>>(), __builtin_FILE(),
                __builtin_LINE());
    }

    static bool IsBefore(Entry const & oEntry, Observer const * pObserver)
    {
        return std::less<>()(static_cast<Observer const *>(oEntry.pObserver), pObserver);
    }
    static bool IsAfter(Observer const * pObserver, Entry const & oEntry)
    {
        return std::less<>()(pObserver, static_cast<Observer const *>(oEntry.pObserver));
    }

    // The position of the observer, or the position at which it would be inserted.
    auto FindPlace(Observer const * pObserver)
    {
        return std::lower_bound(m_vEntries.begin(), m_vEntries.end(), pObserver, &IsBefore);
    }
    auto FindPlace(Observer const * pObserver) const
    {
        return std::lower_bound(m_vEntries.begin(), m_vEntries.end(), pObserver, &IsBefore);
    }

    /// Whether the observer is at that position.
    template<class Place>
    bool IsAt(Place oPlace, Observer const * pObserver) const
    {
        return oPlace != m_vEntries.end() && oPlace->pObserver == pObserver;
    }

    /// A copy of the list, for use after the lock is released.
    std::vector<Observer *> GetObservers() const
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        std::vector<Observer *> vObservers;
        for (Entry const & oEntry : m_vEntries)
            vObservers.push_back(oEntry.pObserver);
        return vObservers;
    }

    /// Adds observers of another notifier that are not attached here.
    void Borrow(std::vector<Observer *> const & vObservers)
    {
        for (Observer * const pObserver : vObservers)
            if (auto const oPlace = FindPlace(pObserver); !IsAt(oPlace, pObserver))
                m_vEntries.insert(oPlace, {pObserver, true});
    }

    /// Calls fCall for each entry. After a change of the set it continues above the present entry's address.
    template<class Call>
    void Walk(Call fCall) const
    {
        std::size_t i = 0;
        while (i < m_vEntries.size())
        {
            Entry const oEntry = m_vEntries[i];
            std::size_t const iChange = m_iChange;
            fCall(oEntry);
            ++i;
            if (m_iChange != iChange) [[unlikely]]
                i = static_cast<std::size_t>(
                    std::upper_bound(m_vEntries.begin(), m_vEntries.end(), oEntry.pObserver, &IsAfter)
                    - m_vEntries.begin());
        }
    }

    // Calls one observer.
    Invoker m_fInvoker;

    // Sorted by address, each once.
    std::vector<Entry> m_vEntries;

    // Incremented with every change of the set, so that Walk notices it.
    std::size_t m_iChange = 0;

    mutable Mutex m_oLock;
};

} // namespace tsl
