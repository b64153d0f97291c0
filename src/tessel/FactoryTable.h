#pragma once

#include <tessel/Export.h>
#include <tessel/ScopedLockTemplate.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace tsl::TesselDetails
{

/// Gives the memory of whole pages back to the system, as far as it takes them. Each byte keeps its value or becomes 0.
TSL_EXPORT void DiscardContent(void * pMemory, std::size_t iSize);

/// The table of a factory: functions by key. Any thread may call any operation at any time, except that no other
/// thread may use a table while it is copied or assigned.
///
/// @tparam Key has an operator<
/// @tparam Function is a pointer to a function or behaves like one
/// @tparam Mutex has LockRead, LockWrite, UnlockRead and UnlockWrite
template<class Key, class Function, class Mutex>
class FactoryTable
{
public:
    FactoryTable() = default;
    FactoryTable(FactoryTable const & oSource) : m_oFunctions(oSource.m_oFunctions) {}
    FactoryTable & operator=(FactoryTable const & oSource)
    {
        m_oFunctions = oSource.m_oFunctions;
        return *this;
    }
    ~FactoryTable() = default;

    /// Returns the key's function, or null.
    Function Find(Key const & oKey) const
    {
        ReadLock const oScope(m_oLock);
        auto const oEntry = m_oFunctions.find(oKey);
        return oEntry == m_oFunctions.end() ? Function() : oEntry->second;
    }

    /// Adds a function and returns true. A key that has a function keeps it; the result is then false.
    bool Insert(Key const & oKey, Function const & fFunction)
    {
        WriteLock const oScope(m_oLock);
        return m_oFunctions.emplace(oKey, fFunction).second;
    }

    /// Removes the key's function, if there is one.
    void Erase(Key const & oKey)
    {
        WriteLock const oScope(m_oLock);
        m_oFunctions.erase(oKey);
    }

private:
    std::map<Key, Function> m_oFunctions;
    mutable Mutex m_oLock;
};

/// The same for integers, where Find takes no lock: machines on any number of threads look up their next task all
/// the time, while the table hardly ever changes (R05).
///
/// An index is a hash table with open addressing. An erased key keeps its slot, without a function. When half of
/// the slots are used, or few have a function, the keys that have one are copied to another index of a fitting size.
/// A reader that used the old index meanwhile searches again. There are at most two indexes of each size. They stay
/// until the table is destroyed, since a slow reader may still be in one, but those that are not in use need only
/// addresses and no memory. To a reader there, a slot without memory is an unused one.
template<std::integral Key, class Function, class Mutex>
requires std::is_pointer_v<Function>
class FactoryTable<Key, Function, Mutex>
{
public:
    FactoryTable() : m_pIndex(&AddIndex(INITIAL_SIZE)) {}
    FactoryTable(FactoryTable const & oSource) : FactoryTable() { InsertAll(oSource); }
    FactoryTable & operator=(FactoryTable const & oSource)
    {
        if (&oSource != this)
        {
            for (Slot & oSlot : GetIndex().vSlots)
                oSlot.fFunction = nullptr;
            m_iFunctions = 0;
            InsertAll(oSource);
        }
        return *this;
    }
    ~FactoryTable() = default;

    Function Find(Key iKey) const
    {
        for (;;)
        {
            std::uint64_t const iRebuilds = m_iRebuilds.load(std::memory_order_acquire);
            Place const oPlace = FindPlace(*m_pIndex.load(std::memory_order_acquire), iKey);
            Function const fFunction =
                oPlace.bUsed ? oPlace.pSlot->fFunction.load(std::memory_order_acquire) : nullptr;

            // If the count is the same, no other key was written to the slot, and its memory was not taken.
            if (m_iRebuilds.load(std::memory_order_relaxed) == iRebuilds) [[likely]]
                return fFunction;
        }
    }

    bool Insert(Key iKey, Function fFunction)
    {
        WriteLock const oScope(m_oLock);
        Place const oPlace = FindPlace(GetIndex(), iKey);
        if (oPlace.bUsed && oPlace.pSlot->fFunction)
            return false;
        if (oPlace.bUsed)
            oPlace.pSlot->fFunction = fFunction;
        else
            AddKey(iKey, fFunction);
        ++m_iFunctions;
        return true;
    }

    void Erase(Key iKey)
    {
        WriteLock const oScope(m_oLock);
        Place const oPlace = FindPlace(GetIndex(), iKey);
        if (!oPlace.bUsed || !oPlace.pSlot->fFunction)
            return;
        oPlace.pSlot->fFunction = nullptr;
        --m_iFunctions;
        if (GetIndex().vSlots.size() > std::max(INITIAL_SIZE, m_iFunctions * 16))
            Rebuild();
    }

private:
    // Key and function are valid only if bUsed is set.
    struct Slot
    {
        std::atomic<bool> bUsed{false};
        std::atomic<Key> iKey{};
        std::atomic<Function> fFunction{nullptr};
    };

    /// The number of slots is a power of two. At most half of them are used, so every search ends at an unused one.
    struct Index
    {
        explicit Index(std::size_t iSize)
            : vSlots(iSize),
              pSlots(vSlots.data()),
              iMask(iSize - 1),
              iShift(std::countl_zero(std::uint64_t{iSize - 1}))
        {
        }

        std::vector<Slot> vSlots;
        Slot * pSlots;
        std::size_t iMask;
        int iShift;
    };

    /// The slot of a key, or the unused slot at which the search for it ended.
    struct Place
    {
        Slot * pSlot;
        bool bUsed; // As the search saw it; another key may have taken the slot since.
    };

    static constexpr std::size_t INITIAL_SIZE = 16;

    /// The slot at which the search for a key begins. Nearly every key has a slot of its own, also keys in regular
    /// steps, such as the multiples of 1024.
    static std::size_t GetFirstSlot(Index const & oIndex, Key iKey)
    {
        std::uint64_t i = static_cast<std::uint64_t>(iKey) * 0x9E3779B97F4A7C15;
        i ^= i >> 32;
        return static_cast<std::size_t>((i * 0xD6E8FEB86659FD93) >> oIndex.iShift);
    }

    static Place FindPlace(Index & oIndex, Key iKey)
    {
        for (std::size_t i = GetFirstSlot(oIndex, iKey);; i = (i + 1) & oIndex.iMask)
        {
            Slot & oSlot = oIndex.pSlots[i];
            if (!oSlot.bUsed.load(std::memory_order_acquire))
                return {&oSlot, false};
            if (oSlot.iKey.load(std::memory_order_acquire) == iKey)
                return {&oSlot, true};
        }
    }

    /// Adds a key that is not in the index.
    static void Enter(Index & oIndex, Key iKey, Function fFunction)
    {
        Slot & oSlot = *FindPlace(oIndex, iKey).pSlot;
        oSlot.iKey.store(iKey, std::memory_order_release);
        oSlot.fFunction.store(fFunction, std::memory_order_release);
        oSlot.bUsed.store(true, std::memory_order_release);
    }

    void AddKey(Key iKey, Function fFunction)
    {
        if ((m_iUsed + 1) * 2 > GetIndex().vSlots.size())
            Rebuild();
        Enter(GetIndex(), iKey, fFunction);
        ++m_iUsed;
    }

    // For the holder of the write lock.
    Index & GetIndex() const { return *m_pIndex.load(std::memory_order_relaxed); }

    Index & AddIndex(std::size_t iSize)
    {
        m_vIndexes.push_back(std::make_unique<Index>(iSize));
        return *m_vIndexes.back();
    }

    /// An index of that size which is not in use. Its slots still have old keys.
    Index & GetUnusedIndex(std::size_t iSize)
    {
        for (std::unique_ptr<Index> const & pIndex : m_vIndexes)
            if (pIndex.get() != &GetIndex() && pIndex->vSlots.size() == iSize)
                return *pIndex;
        return AddIndex(iSize);
    }

    void ChangeCount()
    {
        m_iRebuilds.store(m_iRebuilds.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    }

    void Rebuild()
    {
        Index & oOld = GetIndex();
        Index & oNew = GetUnusedIndex(std::bit_ceil(std::max(INITIAL_SIZE, m_iFunctions * 4)));

        // All stores to slots are releases: a slow reader that still uses this index and sees one of them also sees
        // the new count, and searches again.
        ChangeCount();
        for (Slot & oSlot : oNew.vSlots)
        {
            oSlot.bUsed.store(false, std::memory_order_release);
            oSlot.fFunction.store(nullptr, std::memory_order_release);
        }
        for (Slot const & oSlot : oOld.vSlots)
            if (Function const fFunction = oSlot.fFunction)
                Enter(oNew, oSlot.iKey, fFunction);
        m_iUsed = m_iFunctions;
        m_pIndex.store(&oNew, std::memory_order_release);

        // A reader that has begun since the first change may still be in the old index, and searches again as well.
        ChangeCount();
        DiscardContent(oOld.vSlots.data(), oOld.vSlots.size() * sizeof(Slot));
    }

    void InsertAll(FactoryTable const & oSource)
    {
        for (Slot const & oSlot : oSource.GetIndex().vSlots)
            if (Function const fFunction = oSlot.fFunction)
                Insert(oSlot.iKey, fFunction);
    }

    std::vector<std::unique_ptr<Index>> m_vIndexes;
    std::atomic<Index *> m_pIndex;

    // Incremented when a rebuild begins, and before it gives memory back.
    std::atomic<std::uint64_t> m_iRebuilds{0};

    // Number of used slots in the current index, and of those that have a function.
    std::size_t m_iUsed = 0;
    std::size_t m_iFunctions = 0;

    Mutex m_oLock;
};

} // namespace tsl::TesselDetails
