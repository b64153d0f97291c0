#pragma once

#include <tessel/Result.h>

#include <atomic>
#include <utility>

namespace tsl
{

/// A stack of failures without history. Copies share their entries, which never change, so a copy costs one count
/// and a push one allocation, however many entries there are. An entry is found in O(log n).
///
/// Stacks that share entries may be used by different threads: the owners of an entry are counted atomically.
class ResultStack
{
public:
    ResultStack() = default;
    ResultStack(ResultStack const & oSource) : m_pTop(Acquire(oSource.m_pTop)) {}
    ResultStack(ResultStack && oSource) noexcept : m_pTop(std::exchange(oSource.m_pTop, nullptr)) {}
    ResultStack & operator=(ResultStack oSource) noexcept
    {
        std::swap(m_pTop, oSource.m_pTop);
        return *this;
    }
    ~ResultStack()
    {
        if (m_pTop)
            Release(m_pTop);
    }

    int GetSize() const { return GetSize(m_pTop); }

    /// Entry 0 is the one that was pushed last; there must be one of that number.
    Result const & Get(int ix) const
    {
        int const iSize = GetSize() - ix;
        Link const * pLink = m_pTop;
        while (pLink->iSize != iSize)
            pLink = GetSize(pLink->pJump) >= iSize ? pLink->pJump : pLink->pNext;
        return pLink->oEntry;
    }

    void Push(Result && oEntry) { m_pTop = new Link(std::move(oEntry), m_pTop); }

private:
    struct Link
    {
        Link(Result && oEntry_, Link * pNext_)
            : iSize(ResultStack::GetSize(pNext_) + 1),
              pNext(pNext_),
              pJump(FindJump(pNext_)),
              oEntry(std::move(oEntry_))
        {
        }

        /// Two jumps of the same length that follow each other are joined to one of twice the length. This makes
        /// a tree of the links, in which the way from any link to a lower one has O(log n) steps.
        static Link const * FindJump(Link const * pNext)
        {
            Link const * const pMiddle = pNext ? pNext->pJump : nullptr;
            bool const bJoin = pMiddle
                               && ResultStack::GetSize(pNext) - ResultStack::GetSize(pMiddle)
                                      == ResultStack::GetSize(pMiddle) - ResultStack::GetSize(pMiddle->pJump);
            return bJoin ? pMiddle->pJump : pNext;
        }

        /// Stacks with this entry on top, and links above it.
        std::atomic<int> iOwners{1};

        int const iSize;          ///< links from this one down
        Link * const pNext;       ///< the link below, or null; owned
        Link const * const pJump; ///< one further down, or null
        Result const oEntry;
    };

    static int GetSize(Link const * pLink) { return pLink ? pLink->iSize : 0; }

    static Link * Acquire(Link * pLink)
    {
        if (pLink)
            pLink->iOwners.fetch_add(1, std::memory_order_relaxed);
        return pLink;
    }

    static void Release(Link * pLink)
    {
        // In a loop, since a recursion would be as deep as the history.
        while (pLink && pLink->iOwners.fetch_sub(1, std::memory_order_acq_rel) == 1)
        {
            Link * const pNext = pLink->pNext;
            delete pLink;
            pLink = pNext;
        }
    }

    Link * m_pTop = nullptr;
};

/// The history of a failure: failures without history, the nearest first. Copies share the entries.
class ResultHistory
{
public:
    int GetSize() const { return m_oNear.GetSize() + m_oFar.GetSize(); }
    Result const & Get(int ix) const
    {
        int const iNear = m_oNear.GetSize();
        return ix < iNear ? m_oNear.Get(ix) : m_oFar.Get(GetSize() - 1 - ix);
    }

    void AddInFront(Result && oEntry) { m_oNear.Push(std::move(oEntry)); }

    /// Adds the entries of another history at the far end.
    void Append(ResultHistory const & oOther)
    {
        if (GetSize() == 0)
            *this = oOther;
        else
            for (int ix = 0, iCount = oOther.GetSize(); ix < iCount; ++ix)
                m_oFar.Push(Result(oOther.Get(ix)));
    }

private:
    // With the nearest entry on top, and with the farthest one: entries come to both ends.
    ResultStack m_oNear;
    ResultStack m_oFar;
};

} // namespace tsl
