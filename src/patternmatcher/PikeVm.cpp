#include "PikeVm.h"

#include <algorithm>
#include <utility>

namespace tsl::Pattern
{

PikeVm::PikeVm(Program const & oProgram, std::string_view sText, Slots & vSlots, Memory & oMemory)
    : m_oProgram(oProgram),
      m_sText(sText),
      m_vSlots(vSlots),
      m_oMemory(oMemory),
      m_oWalker(sText, oMemory.vPending, oMemory.vSlots)
{
    m_oMemory.vVisited.resize(std::max(m_oMemory.vVisited.size(), oProgram.iStates));
}

bool PikeVm::Search(std::size_t iStart)
{
    bool bFound = false;
    m_oMemory.oNow.vPcs.clear();
    ++m_oMemory.iStep;
    for (std::size_t iAt = iStart; iAt <= m_sText.size(); ++iAt)
    {
        if (m_oMemory.oNow.vPcs.empty())
        {
            iAt = bFound ? NOWHERE : m_oProgram.FindStart(m_sText, iAt);
            if (iAt == NOWHERE)
                break;
        }
        // A match that begins here has a lower priority than all that began earlier, so it is added last.
        if (!bFound && m_oProgram.CanStart(m_sText, iAt))
        {
            m_oMemory.vSlots.assign(m_oProgram.iSlots, NOWHERE);
            Follow({0, Path::NO_LOOP, iAt}, m_oMemory.oNow);
        }
        bFound |= Step(iAt);
    }
    return bFound;
}

/// Moves all threads over the byte at iAt. True if one of them is at the end of the pattern; threads with a
/// lower priority are then dropped.
bool PikeVm::Step(std::size_t iAt)
{
    Threads & oNow = m_oMemory.oNow;
    Threads & oNext = m_oMemory.oNext;
    std::size_t const iSlots = m_oProgram.iSlots;
    bool bMatch = false;

    oNext.vPcs.clear();
    ++m_oMemory.iStep;
    auto itSlots = oNow.vSlots.cbegin();
    for (std::uint32_t const iPc : oNow.vPcs)
    {
        auto const itEnd = itSlots + static_cast<std::ptrdiff_t>(iSlots);
        Instruction const & oInstruction = m_oProgram.vCode[iPc];
        if (oInstruction.eOp == Op::eMatch)
        {
            m_vSlots.assign(itSlots, itEnd);
            bMatch = true;
            break;
        }
        if (m_oProgram.Consumes(oInstruction, m_sText, iAt))
        {
            m_oMemory.vSlots.assign(itSlots, itEnd);
            Follow({iPc + 1, Path::NO_LOOP, iAt + 1}, oNext);
        }
        itSlots = itEnd;
    }
    std::swap(oNow, oNext);
    return bMatch;
}

/// Adds a thread for each instruction that the path leads to, unless one with a higher priority is there.
void PikeVm::Follow(Path oPath, Threads & oThreads)
{
    m_oWalker.Begin(oPath);
    while (m_oWalker.Next(oPath))
        WalkToThread(oPath, oThreads);
}

void PikeVm::WalkToThread(Path oPath, Threads & oThreads)
{
    for (;;)
    {
        Instruction const & oInstruction = m_oProgram.vCode[oPath.iPc];
        if (oInstruction.iState != Instruction::NO_STATE)
        {
            std::uint64_t & iStep = m_oMemory.vVisited[Walker::GetState(oInstruction, oPath)];
            if (iStep == m_oMemory.iStep)
                return;
            iStep = m_oMemory.iStep;
        }
        if (oInstruction.IsConsuming() || oInstruction.eOp == Op::eMatch)
            return Add(oPath.iPc, oThreads);
        if (!m_oWalker.Step(oInstruction, oPath))
            return;
    }
}

void PikeVm::Add(std::uint32_t iPc, Threads & oThreads)
{
    std::size_t const iSlots = m_oProgram.iSlots;
    std::size_t const iUsed = oThreads.vPcs.size() * iSlots;
    if (oThreads.vSlots.size() < iUsed + iSlots)
        oThreads.vSlots.resize(2 * iUsed + iSlots);
    std::copy(m_oMemory.vSlots.begin(), m_oMemory.vSlots.end(),
        oThreads.vSlots.begin() + static_cast<std::ptrdiff_t>(iUsed));
    oThreads.vPcs.push_back(iPc);
}

} // namespace tsl::Pattern
