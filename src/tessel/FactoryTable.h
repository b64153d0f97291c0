#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tsl::TesselDetails
{

/// The table of a factory: functions by key, found without a lock.
///
/// Machines on any number of threads ask for their next task all the time, while the table hardly ever
/// changes. So an entry, once made, stays until the table goes, and an erased one has no function; a hash
/// index that has grown too small stays as well, for whoever is reading it.
///
/// Find may be called by any thread at any time; whoever changes the table excludes others that do.
///
/// @tparam Key has a std::hash
/// @tparam Function is a pointer to a function
template<class Key, class Function>
class FactoryTable
{
public:
    FactoryTable() { AddIndex(INITIAL_SIZE); }
    FactoryTable(FactoryTable const & oSource) : FactoryTable() { InsertAll(oSource); }
    FactoryTable & operator=(FactoryTable const & oSource)
    {
        if (&oSource != this)
        {
            for (Entry & oEntry : m_oEntries)
                oEntry.fFunction = nullptr;
            InsertAll(oSource);
        }
        return *this;
    }
    ~FactoryTable() = default;

    /// The key's function, or null.
    Function Find(Key const & oKey) const
    {
        Entry const * const pEntry = FindPlace(*m_pIndex.load(std::memory_order_acquire), oKey).pEntry;
        return pEntry ? pEntry->fFunction.load(std::memory_order_acquire) : nullptr;
    }

    /// Enters a function. A key that has one keeps it; the answer then is false.
    bool Insert(Key const & oKey, Function fFunction)
    {
        Entry * const pEntry = FindPlace(*m_vIndexes.back(), oKey).pEntry;
        if (!pEntry)
        {
            AddEntry(oKey, fFunction);
            return true;
        }

        Function fNone = nullptr;
        return pEntry->fFunction.compare_exchange_strong(fNone, fFunction);
    }

    /// Removes the key's function, if there is one.
    void Erase(Key const & oKey)
    {
        if (Entry * const pEntry = FindPlace(*m_vIndexes.back(), oKey).pEntry)
            pEntry->fFunction = nullptr;
    }

private:
    struct Entry
    {
        Entry(Key const & oTheKey, Function fTheFunction) : oKey(oTheKey), fFunction(fTheFunction) {}

        Key const oKey;
        std::atomic<Function> fFunction;
    };

    using Slot = std::atomic<Entry *>;

    // A power of two of slots, half of them at most in use, so every search ends at an empty one.
    using Index = std::vector<Slot>;

    static constexpr std::size_t INITIAL_SIZE = 16;

    /// Where a key stands, or the empty slot in which it would stand, without an entry.
    struct Place
    {
        std::size_t iSlot;
        Entry * pEntry; // As the search saw it: another key may have come to the slot since.
    };

    static Place FindPlace(Index const & oIndex, Key const & oKey)
    {
        std::size_t const iMask = oIndex.size() - 1;
        for (std::size_t i = std::hash<Key>()(oKey) & iMask;; i = (i + 1) & iMask)
        {
            Entry * const pEntry = oIndex[i].load(std::memory_order_acquire);
            if (!pEntry || pEntry->oKey == oKey)
                return {i, pEntry};
        }
    }

    static void Enter(Index & oIndex, Entry & oEntry)
    {
        oIndex[FindPlace(oIndex, oEntry.oKey).iSlot].store(&oEntry, std::memory_order_release);
    }

    void AddEntry(Key const & oKey, Function fFunction)
    {
        if ((m_oEntries.size() + 1) * 2 > m_vIndexes.back()->size())
            AddIndex(m_vIndexes.back()->size() * 2);
        Enter(*m_vIndexes.back(), m_oEntries.emplace_back(oKey, fFunction));
    }

    void AddIndex(std::size_t iSize)
    {
        auto pIndex = std::make_unique<Index>(iSize);
        for (Entry & oEntry : m_oEntries)
            Enter(*pIndex, oEntry);
        m_vIndexes.push_back(std::move(pIndex));
        m_pIndex.store(m_vIndexes.back().get(), std::memory_order_release);
    }

    void InsertAll(FactoryTable const & oSource)
    {
        for (Entry const & oEntry : oSource.m_oEntries)
            if (Function const fFunction = oEntry.fFunction)
                Insert(oEntry.oKey, fFunction);
    }

    // Neither moves nor shrinks.
    std::deque<Entry> m_oEntries;

    // The newest last.
    std::vector<std::unique_ptr<Index>> m_vIndexes;
    std::atomic<Index const *> m_pIndex{nullptr};
};

} // namespace tsl::TesselDetails
