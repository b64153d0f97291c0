#pragma once

#include "platform/ForcedEnd.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <utility>

namespace tsl
{

/// A cache of up to eight objects, which keep the memory that they have allocated (R02, R08).
///
/// Any thread may take an object and give it back. A thread uses the slot that its number selects. A few threads
/// mostly get their own object back, which so stays in the cache of one processor; threads that share a slot
/// sometimes get a new object. There is no thread_local object, whose destructor would keep the library
/// loaded as long as the thread runs.
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

    /// An object that was given back, in the state in which it was left, or a new one.
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
    // Each slot has a cache line of its own.
    struct alignas(64) Slot
    {
        std::atomic<T *> pObject{nullptr};
    };

    // The system's ids of threads would not do: they may be multiples of a number.
    std::atomic<T *> & GetSlot()
    {
        return m_aSlots[static_cast<std::size_t>(t_oForcedEnd.iThread) % m_aSlots.size()].pObject;
    }

    std::array<Slot, 8> m_aSlots;
};

} // namespace tsl
