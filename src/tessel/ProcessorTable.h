#pragma once

#include "ProcessorList.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace tsl
{

/// The lists of a bus by message type. Lists are added and never removed, so that a lookup is an array index and
/// needs no lock (R04).
class ProcessorTable
{
public:
    /// The list of the type, or null.
    ProcessorList * Find(unsigned int iType) const
    {
        Entries const * const pEntries = m_pEntries.load(std::memory_order_acquire);
        if (!pEntries || iType >= pEntries->size())
            return nullptr;
        return (*pEntries)[iType].load(std::memory_order_acquire);
    }

    /// One past the largest type that there may be a list for.
    unsigned int GetSize() const
    {
        Entries const * const pEntries = m_pEntries.load(std::memory_order_acquire);
        return pEntries ? static_cast<unsigned int>(pEntries->size()) : 0;
    }

    /// The list of the type, which is created if there is none. One thread at a time may call it.
    ProcessorList & GetOrCreate(unsigned int iType)
    {
        std::unique_ptr<ProcessorList> & pList = m_oLists[iType];
        if (!pList)
        {
            if (iType >= GetSize())
                Grow(iType + std::size_t{1});
            pList = std::make_unique<ProcessorList>();
            (*m_vTables.back())[iType].store(pList.get(), std::memory_order_release);
        }
        return *pList;
    }

    template<class Call>
    void ForEach(Call fCall) const
    {
        for (unsigned int iType = 0; iType < GetSize(); ++iType)
            if (ProcessorList * const pList = Find(iType))
                fCall(iType, *pList);
    }

private:
    using Entries = std::vector<std::atomic<ProcessorList *>>;

    void Grow(std::size_t iSize)
    {
        // At least twice as long, so that all former tables together are no longer than the last one.
        auto pGrown = std::make_unique<Entries>(std::max<std::size_t>(iSize, std::size_t{2} * GetSize()));
        for (unsigned int iType = 0; iType < GetSize(); ++iType)
            (*pGrown)[iType].store(Find(iType), std::memory_order_relaxed);
        m_vTables.push_back(std::move(pGrown));
        m_pEntries.store(m_vTables.back().get(), std::memory_order_release);
    }

    std::atomic<Entries const *> m_pEntries{nullptr};

    // The last one is in use. The former ones are kept, since another thread may be reading one.
    std::vector<std::unique_ptr<Entries>> m_vTables;
    std::map<unsigned int, std::unique_ptr<ProcessorList>> m_oLists;
};

} // namespace tsl
