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

/// Tells a set of observers of what happens, in the order of their addresses.
///
/// Observers are not owned; each stands in the set once. Every operation holds the notifier's lock, also
/// while it calls the observers. With a lock that the holding thread may take again, an observer may
/// attach and detach itself and others, and notify again, from inside a notification: the walk then goes
/// on with the next observer by address, so one that was detached gets nothing more, and one that was
/// attached is served if its address lies behind the present one.
///
/// A copy calls the observers of its source as well, and so does an assigned notifier, beside those that
/// are attached to it. They are lent: they know the source alone, so the copy does not tell them of its
/// own end, and each must outlive the copy or be detached from it. Attach makes a lent observer one of the
/// copy's own. Every notifier has a lock of its own.
///
/// @tparam Observer has `HandlerDestruction() const`, which is called when the notifier goes away and must
/// not throw
/// @tparam Mutex has LockRead, LockWrite, UnlockRead and UnlockWrite
template<class Observer, class Args, class CallResult, class Mutex = CriticalSectionMutex>
class ObserverNotify
{
public:
    /// Calls one observer with the arguments and the result.
    using Invoker = void (*)(Observer & oObserver, Args const & oArgs, CallResult & oResult);

    explicit ObserverNotify(Invoker fInvoker) : m_fInvoker(fInvoker) {}
    ObserverNotify(ObserverNotify const & oSource) : ObserverNotify(oSource.m_fInvoker)
    {
        Borrow(oSource.GetObservers());
    }

    ObserverNotify & operator=(ObserverNotify const & oSource)
    {
        if (&oSource == this)
            return *this;

        // The two locks are never held together, so that two threads may assign crosswise.
        std::vector<Observer *> const vObservers = oSource.GetObservers();
        TesselDetails::WriteLock const oScope(m_oLock);
        m_fInvoker = oSource.m_fInvoker;
        std::erase_if(m_vEntries, [](Entry const & oEntry) { return oEntry.bLent; });
        Borrow(vObservers);
        ++m_iChange;
        return *this;
    }

    ~ObserverNotify() { End(); }

    /// What the destructor does: tells the observers that the notifier goes away. It has none then.
    void End()
    {
        TesselDetails::WriteLock const oScope(m_oLock);
        Walk(
            [](Entry const & oEntry)
            {
                if (!oEntry.bLent)
                    oEntry.pObserver->HandlerDestruction();
            });
        m_vEntries.clear();
        ++m_iChange;
    }

    /// A null pointer throws an Exception of code -1 here and in Detatch.
    void Attach(Observer * pObserver)
    {
        ThrowIfNullObserver(pObserver);
        TesselDetails::WriteLock const oScope(m_oLock);
        auto const oPlace = FindPlace(pObserver);
        if (IsAt(oPlace, pObserver))
        {
            oPlace->bLent = false;
            return;
        }
        m_vEntries.insert(oPlace, {pObserver});
        ++m_iChange;
    }

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

    bool IsAttached(Observer const * pObserver) const
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        return IsAt(FindPlace(pObserver), pObserver);
    }

    /// Calls every observer with the same result object, so that each can read what the one before left.
    /// What an observer throws ends the walk.
    void Notify(Args const & oArgs, CallResult & oResult) const
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        Walk([&](Entry const & oEntry) { m_fInvoker(*oEntry.pObserver, oArgs, oResult); });
    }

private:
    struct Entry
    {
        Observer * pObserver;
        bool bLent = false; ///< it was taken over from another notifier
    };

    static void ThrowIfNullObserver(Observer const * pObserver)
    {
        constexpr int iNullObserver = -1;
        if (!pObserver)
            throw Exception(iNullObserver, GetTypeName<std::remove_const_t<Observer>>(), __builtin_FILE(),
                __builtin_LINE());
    }

    // Where the observer stands, or where it would.
    auto FindPlace(Observer const * pObserver)
    {
        return std::ranges::lower_bound(m_vEntries, pObserver, std::less<>(), &Entry::pObserver);
    }
    auto FindPlace(Observer const * pObserver) const
    {
        return std::ranges::lower_bound(m_vEntries, pObserver, std::less<>(), &Entry::pObserver);
    }

    template<class Place>
    bool IsAt(Place oPlace, Observer const * pObserver) const
    {
        return oPlace != m_vEntries.end() && oPlace->pObserver == pObserver;
    }

    std::vector<Observer *> GetObservers() const
    {
        TesselDetails::ReadLock const oScope(m_oLock);
        std::vector<Observer *> vObservers;
        for (Entry const & oEntry : m_vEntries)
            vObservers.push_back(oEntry.pObserver);
        return vObservers;
    }

    void Borrow(std::vector<Observer *> const & vObservers)
    {
        for (Observer * const pObserver : vObservers)
            if (auto const oPlace = FindPlace(pObserver); !IsAt(oPlace, pObserver))
                m_vEntries.insert(oPlace, {pObserver, true});
    }

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
                    std::ranges::upper_bound(m_vEntries, oEntry.pObserver, std::less<>(), &Entry::pObserver)
                    - m_vEntries.begin());
        }
    }

    Invoker m_fInvoker;

    // In ascending order of the addresses, each once.
    std::vector<Entry> m_vEntries;

    // Counts the changes of the set, so that a walk notices one.
    std::size_t m_iChange = 0;

    mutable Mutex m_oLock;
};

} // namespace tsl
