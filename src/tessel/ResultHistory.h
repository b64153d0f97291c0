#pragma once

#include <tessel/Result.h>

#include <atomic>
#include <utility>

namespace tsl
{

/// A stack of failures without history, as a linked list with reference counts. Copies share the entries,
/// which never change: a copy takes one atomic increment and a push one allocation, whatever the size. Get
/// takes O(log n).
///
/// Different threads may use stacks that share entries.
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

    /// Entry 0 was pushed last. ix must be less than the size.
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

        /// A skip list: if the two jumps below have the same length, this one skips both. So there are O(log
        /// n) steps from any link to a lower one.
        static Link const * FindJump(Link const * pNext)
        {
            Link const * const pMiddle = pNext ? pNext->pJump : nullptr;
            bool const bJoin = pMiddle
                               && ResultStack::GetSize(pNext) - ResultStack::GetSize(pMiddle)
                                      == ResultStack::GetSize(pMiddle) - ResultStack::GetSize(pMiddle->pJump);
            return bJoin ? pMiddle->pJump : pNext;
        }

        /// The number of stacks with this entry on top and of links directly above it.
        std::atomic<int> iOwners{1};

        int const iSize;          ///< the number of links from this one down
        Link * const pNext;       ///< the link below, or null; counted as an owner
        Link const * const pJump; ///< a link at least as far down, or null
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
        // A loop: recursion would be as deep as the history is long.
        while (pLink && pLink->iOwners.fetch_sub(1, std::memory_order_acq_rel) == 1)
        {
            Link * const pNext = pLink->pNext;
            delete pLink;
            pLink = pNext;
        }
    }

    Link * m_pTop = nullptr;
};

/// The history of a failure: failures without history, the most recent first. Copies share the entries.
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

    /// Adds the entries of another history after the own ones.
    void Append(ResultHistory const & oOther)
    {
        if (GetSize() == 0)
            *this = oOther;
        else
            for (int ix = 0, iCount = oOther.GetSize(); ix < iCount; ++ix)
                m_oFar.Push(Result(oOther.Get(ix)));
    }

private:
    // Two stacks, since entries are added at both ends: m_oNear has the most recent entry on top, m_oFar the
    // oldest.
    ResultStack m_oNear;
    ResultStack m_oFar;
};

} // namespace tsl
