#include "LockOrder.h"

#include "platform/Files.h"
#include "platform/ForcedEnd.h"
#include "platform/PlainLock.h"
#include "platform/Stack.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <mutex>
#include <new>
#include <set>
#include <string>

namespace tsl
{

namespace
{

using Stack = std::array<void *, 24>;

/// The locks that the calling thread holds, in the order in which it took them. Locks beyond COUNT_MAX are
/// ignored.
struct HeldLocks
{
    static constexpr unsigned int COUNT_MAX = 16;

    LockOrder * apLocks[COUNT_MAX];
    unsigned int iCount;
};

constinit thread_local HeldLocks t_oHeld{};

/// The recorded orders: a directed graph of locks, by their numbers. An edge leads from a lock to one that
/// was taken while the first one was held.
class Graph
{
public:
    std::uint64_t MakeNumber() { return ++m_iLastNumber; }

    bool IsKnown(std::uint64_t iHeld, std::uint64_t iWanted) const
    {
        auto const oNode = m_oNodes.find(iHeld);
        return oNode != m_oNodes.end() && oNode->second.oSuccessors.contains(iWanted);
    }

    /// Adds an order. The caller fills in the returned stack of the place.
    Stack & Add(std::uint64_t iHeld, std::uint64_t iWanted)
    {
        Node & oHeld = m_oNodes[iHeld];
        m_oNodes[iWanted].oPredecessors.insert(iHeld);
        return oHeld.oSuccessors[iWanted];
    }

    /// The stack of the first edge of a path from iFrom to iTo; null if there is no path.
    Stack const * FindPath(std::uint64_t iFrom, std::uint64_t iTo, std::set<std::uint64_t> & oSeen) const
    {
        auto const oNode = m_oNodes.find(iFrom);
        if (oNode == m_oNodes.end() || !oSeen.insert(iFrom).second)
            return nullptr;
        for (auto const & [iNext, oStack] : oNode->second.oSuccessors)
            if (iNext == iTo || FindPath(iNext, iTo, oSeen))
                return &oStack;
        return nullptr;
    }

    void Forget(std::uint64_t iNumber)
    {
        auto const oNode = m_oNodes.find(iNumber);
        if (oNode == m_oNodes.end())
            return;
        for (std::uint64_t const iPredecessor : oNode->second.oPredecessors)
            m_oNodes[iPredecessor].oSuccessors.erase(iNumber);
        for (auto const & [iSuccessor, oStack] : oNode->second.oSuccessors)
            m_oNodes[iSuccessor].oPredecessors.erase(iNumber);
        m_oNodes.erase(oNode);
    }

private:
    struct Node
    {
        // The locks that were taken while this one was held, with the stack of the first time.
        std::map<std::uint64_t, Stack> oSuccessors;

        // The locks that were held when this one was taken.
        std::set<std::uint64_t> oPredecessors;
    };

    std::map<std::uint64_t, Node> m_oNodes;
    std::uint64_t m_iLastNumber = 0;
};

constinit Platform::PlainLock g_oGraphLock;
constinit Graph * g_pGraph = nullptr;

[[noreturn]] void Stop(char const * sWhat, Stack const * pEarlier)
{
    Platform::WriteToStandardError(std::string(sWhat) + ", here:\n");
    Stack oHere{};
    Platform::GetStack(oHere.data(), oHere.size());
    Platform::WriteStack(oHere.data(), oHere.size());
    if (pEarlier)
    {
        Platform::WriteToStandardError("and earlier the other way round:\n");
        Platform::WriteStack(pEarlier->data(), pEarlier->size());
    }
    std::abort();
}

/// Locks the graph. The NoKillScope keeps other threads from forking meanwhile: the graph's lock would stay
/// locked in the child.
class GraphScope
{
public:
    GraphScope()
    {
        if (!g_pGraph)
            g_pGraph = new Graph;
    }

private:
    NoKillScope m_oScope;
    std::lock_guard<Platform::PlainLock> m_oLock{g_oGraphLock};
};

void AddOrder(std::uint64_t iHeld, std::uint64_t iWanted)
{
    if (g_pGraph->IsKnown(iHeld, iWanted))
        return;

    std::set<std::uint64_t> oSeen;
    if (Stack const * const pEarlier = g_pGraph->FindPath(iWanted, iHeld, oSeen))
        Stop("Two locks are taken in both orders", pEarlier);
    Stack & oStack = g_pGraph->Add(iHeld, iWanted);
    Platform::GetStack(oStack.data(), oStack.size());
}

} // namespace

void LockOrder::CheckRequest()
{
    if (t_oHeld.iCount == 0)
        return;

    try
    {
        NoteOrder();
    }
    catch (std::bad_alloc const &)
    {
        // Locking never fails. Without memory the order is recorded the next time.
    }
}

void LockOrder::NoteOrder()
{
    GraphScope const oScope;
    if (m_iNumber == 0)
        m_iNumber = g_pGraph->MakeNumber();
    for (unsigned int i = 0; i < std::min(t_oHeld.iCount, HeldLocks::COUNT_MAX); ++i)
    {
        LockOrder & oHeld = *t_oHeld.apLocks[i];
        if (oHeld.m_iNumber == 0)
            oHeld.m_iNumber = g_pGraph->MakeNumber();
        AddOrder(oHeld.m_iNumber, m_iNumber);
    }
}

void LockOrder::Enter()
{
    if (t_oHeld.iCount < HeldLocks::COUNT_MAX)
        t_oHeld.apLocks[t_oHeld.iCount] = this;
    ++t_oHeld.iCount;
}

void LockOrder::Leave()
{
    // Locks may be released in any order.
    unsigned int const iCount = std::min(t_oHeld.iCount, HeldLocks::COUNT_MAX);
    auto * const pEnd = t_oHeld.apLocks + iCount;
    auto * const pPlace = std::find(t_oHeld.apLocks, pEnd, this);
    if (pPlace != pEnd)
        std::move(pPlace + 1, pEnd, pPlace);
    --t_oHeld.iCount;
}

void LockOrder::Forget()
{
    if (m_iNumber == 0)
        return;

    GraphScope const oScope;
    g_pGraph->Forget(m_iNumber);
}

void LockOrder::StopIfOwnLockIsHeld()
{
    for (unsigned int i = 0; i < std::min(t_oHeld.iCount, HeldLocks::COUNT_MAX); ++i)
        if (t_oHeld.apLocks[i]->m_bOwn)
            Stop("The bus is called under a lock of the library's own", nullptr);
}

void LockOrder::FreeAll()
{
    GraphScope const oScope;
    delete g_pGraph;
    g_pGraph = nullptr;
}

} // namespace tsl
