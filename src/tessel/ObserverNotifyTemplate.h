#pragma once

#include <tessel/Exception.h>
#include <tessel/Locks.h>
#include <tessel/ScopedLock.h>
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
    ObserverNotify(ObserverNotify const &) = default;
    ObserverNotify & operator=(ObserverNotify const &) = default;

    ~ObserverNotify()
    {
        WriteLock const oScope(m_oLock);
        Walk([](Observer & oObserver) { oObserver.HandlerDestruction(); });
    }

    /// A null pointer throws an Exception of code -1 here and in Detatch.
    void Attach(Observer * pObserver)
    {
        DemandObserver(pObserver);
        WriteLock const oScope(m_oLock);
        auto const oPlace = FindPlace(pObserver);
        if (oPlace == m_vObservers.end() || *oPlace != pObserver)
        {
            m_vObservers.insert(oPlace, pObserver);
            ++m_iChange;
        }
    }

    void Detatch(Observer * pObserver)
    {
        DemandObserver(pObserver);
        WriteLock const oScope(m_oLock);
        auto const oPlace = FindPlace(pObserver);
        if (oPlace != m_vObservers.end() && *oPlace == pObserver)
        {
            m_vObservers.erase(oPlace);
            ++m_iChange;
        }
    }

    bool IsAttached(Observer const * pObserver) const
    {
        ReadLock const oScope(m_oLock);
        return std::binary_search(m_vObservers.begin(), m_vObservers.end(), pObserver, std::less<>());
    }

    /// Calls every observer with the same result object, so that each can read what the one before left.
    /// What an observer throws ends the walk.
    void Notify(Args const & oArgs, CallResult & oResult) const
    {
        ReadLock const oScope(m_oLock);
        Walk([&](Observer & oObserver) { m_fInvoker(oObserver, oArgs, oResult); });
    }

private:
    static void DemandObserver(Observer const * pObserver)
    {
        constexpr int iNullObserver = -1;
        if (!pObserver)
            throw Exception(iNullObserver, GetTypeName<std::remove_const_t<Observer>>(), __builtin_FILE(),
                __builtin_LINE());
    }

    auto FindPlace(Observer const * pObserver)
    {
        return std::lower_bound(m_vObservers.begin(), m_vObservers.end(), pObserver, std::less<>());
    }

    template<class Call>
    void Walk(Call fCall) const
    {
        std::size_t i = 0;
        while (i < m_vObservers.size())
        {
            Observer * const pObserver = m_vObservers[i];
            std::size_t const iChange = m_iChange;
            fCall(*pObserver);
            ++i;
            if (m_iChange != iChange) [[unlikely]]
                i = static_cast<std::size_t>(
                    std::upper_bound(m_vObservers.begin(), m_vObservers.end(), pObserver, std::less<>())
                    - m_vObservers.begin());
        }
    }

    Invoker m_fInvoker;

    // In ascending order of the addresses, each once.
    std::vector<Observer *> m_vObservers;

    // Counts the changes of the set, so that a walk notices one.
    std::size_t m_iChange = 0;

    mutable Mutex m_oLock;
};

} // namespace tsl
