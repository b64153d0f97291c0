#pragma once

#include <tessel/ScopedLockTemplate.h>

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

/// The table of a factory: functions by key. Any thread may use it at any time; a table is copied and assigned
/// while no other thread uses it.
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

    /// The key's function, or null.
    Function Find(Key const & oKey) const
    {
        ReadLock const oScope(m_oLock);
        auto const oEntry = m_oFunctions.find(oKey);
        return oEntry == m_oFunctions.end() ? Function() : oEntry->second;
    }

    /// Enters a function. A key that has one keeps it; the result then is false.
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

/// The same for integers, where Find takes no lock: machines on any number of threads ask for their next task
/// all the time, while the table hardly ever changes (R05).
///
/// An index is an open hash table. An erased key keeps its slot, without a function. When half of the slots
/// are used, the keys that have a function are entered in another index of the same size, or of twice the
/// size, and a reader that has just missed that searches again. There are two indexes of each size at most. They
/// stay until the table is destroyed, for readers that are late, so the memory is that of the most keys that
/// the table had at one time.
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

            // As long as no further rebuild has begun, nobody has written another key to the slot.
            if (m_iRebuilds.load(std::memory_order_relaxed) == iRebuilds) [[likely]]
                return fFunction;
        }
    }

    bool Insert(Key iKey, Function fFunction)
    {
        WriteLock const oScope(m_oLock);
        Place const oPlace = FindPlace(GetIndex(), iKey);
        if (!oPlace.bUsed)
        {
            AddKey(iKey, fFunction);
            return true;
        }
        Function fNone = nullptr;
        return oPlace.pSlot->fFunction.compare_exchange_strong(fNone, fFunction);
    }

    void Erase(Key iKey)
    {
        WriteLock const oScope(m_oLock);
        if (Place const oPlace = FindPlace(GetIndex(), iKey); oPlace.bUsed)
            oPlace.pSlot->fFunction = nullptr;
    }

private:
    // The rest of a slot belongs to its key only if the slot is used.
    struct Slot
    {
        std::atomic<bool> bUsed{false};
        std::atomic<Key> iKey{};
        std::atomic<Function> fFunction{nullptr};
    };

    /// A power of two of slots, half of them at most in use, so that every search ends at one that is not.
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

    /// The key's slot, or an unused one in which the key would be.
    struct Place
    {
        Slot * pSlot;
        bool bUsed; // As the search saw it: another key may have come to the slot since.
    };

    static constexpr std::size_t INITIAL_SIZE = 16;

    /// The slot at which the search for a key begins: it is another one for nearly every key, also for those
    /// that follow each other in regular steps.
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

    /// Enters a key that the index does not have.
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

    // The index, for those that change it.
    Index & GetIndex() const { return *m_pIndex.load(std::memory_order_relaxed); }

    Index & AddIndex(std::size_t iSize)
    {
        m_vIndexes.push_back(std::make_unique<Index>(iSize));
        return *m_vIndexes.back();
    }

    Index & GetUnusedIndex(std::size_t iSize)
    {
        for (std::unique_ptr<Index> const & pIndex : m_vIndexes)
            if (pIndex.get() != &GetIndex() && pIndex->vSlots.size() == iSize)
                return *pIndex;
        return AddIndex(iSize);
    }

    void Rebuild()
    {
        Index const & oOld = GetIndex();
        std::size_t iFunctions = 0;
        for (Slot const & oSlot : oOld.vSlots)
            iFunctions += oSlot.fFunction != nullptr;
        bool const bGrow = iFunctions * 4 > oOld.vSlots.size();
        Index & oNew = GetUnusedIndex(oOld.vSlots.size() * (bGrow ? 2 : 1));

        // Every store to a slot releases, so that a reader of a late index that sees one sees this, too.
        m_iRebuilds.store(m_iRebuilds.load(std::memory_order_relaxed) + 1, std::memory_order_release);
        for (Slot & oSlot : oNew.vSlots)
        {
            oSlot.bUsed.store(false, std::memory_order_release);
            oSlot.fFunction.store(nullptr, std::memory_order_release);
        }
        for (Slot const & oSlot : oOld.vSlots)
            if (Function const fFunction = oSlot.fFunction)
                Enter(oNew, oSlot.iKey, fFunction);
        m_iUsed = iFunctions;
        m_pIndex.store(&oNew, std::memory_order_release);
    }

    void InsertAll(FactoryTable const & oSource)
    {
        for (Slot const & oSlot : oSource.GetIndex().vSlots)
            if (Function const fFunction = oSlot.fFunction)
                Insert(oSlot.iKey, fFunction);
    }

    std::vector<std::unique_ptr<Index>> m_vIndexes;
    std::atomic<Index *> m_pIndex;

    /// Counted when they begin.
    std::atomic<std::uint64_t> m_iRebuilds{0};

    /// Slots of the index that are used.
    std::size_t m_iUsed = 0;

    Mutex m_oLock;
};

} // namespace tsl::TesselDetails
