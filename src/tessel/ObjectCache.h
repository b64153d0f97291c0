#pragma once

#include "platform/Identity.h"

#include <array>
#include <atomic>
#include <memory>
#include <utility>

namespace tsl
{

/// Keeps some objects for whoever needs one next, so that what they have allocated need not be asked for
/// anew.
///
/// Any thread may take and give back. A few threads at once each find their own object again, which then
/// need not move from one processor to another; more of them share, and get new objects now and then.
/// Nothing belongs to a thread: what did would keep the library in the process for as long as the thread
/// runs.
template<class T>
class ObjectCache
{
public:
    ObjectCache() = default;
    ~ObjectCache()
    {
        for (Slot & oSlot : m_aSlots)
            delete oSlot.pObject.load(std::memory_order_acquire);
    }
    ObjectCache(ObjectCache const &) = delete;
    ObjectCache & operator=(ObjectCache const &) = delete;

    /// The object that was given back, as it was left, or else a new one.
    std::unique_ptr<T> Take()
    {
        std::unique_ptr<T> pObject(GetSlot().exchange(nullptr, std::memory_order_acquire));
        return pObject ? std::move(pObject) : std::make_unique<T>();
    }

    void GiveBack(std::unique_ptr<T> pObject)
    {
        delete GetSlot().exchange(pObject.release(), std::memory_order_acq_rel);
    }

private:
    // No two of them share a cache line.
    struct alignas(64) Slot
    {
        std::atomic<T *> pObject{nullptr};
    };

    // Ids of threads that were started one after the other differ by one.
    std::atomic<T *> & GetSlot() { return m_aSlots[Platform::GetThreadId() % m_aSlots.size()].pObject; }

    std::array<Slot, 8> m_aSlots;
};

} // namespace tsl
