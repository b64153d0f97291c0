#include "Backtracker.h"

namespace tsl::Pattern
{

bool Backtracker::Suits(Program const & oProgram, std::string_view sText, std::size_t iStart)
{
    // Both limits bound the visited bits and the pending paths: in total, and per byte, since allocating a
    // lot for each byte takes longer than the search.
    constexpr std::size_t iMaxSteps = 262'144;
    constexpr std::size_t iMaxStepsPerPosition = 8'192;
    std::size_t const iStepsPerPosition = oProgram.vCode.size() + oProgram.iStates;
    return iStepsPerPosition <= iMaxStepsPerPosition && sText.size() - iStart < iMaxSteps / iStepsPerPosition;
}

Backtracker::Backtracker(Program const & oProgram, std::string_view sText, Slots & vSlots, Memory & oMemory)
    : m_oProgram(oProgram),
      m_sText(sText),
      m_vVisited(oMemory.vVisited),
      m_vSlots(vSlots),
      m_oWalker(sText, oMemory.vPending, vSlots)
{
}

bool Backtracker::Search(std::size_t iStart)
{
    m_iStart = iStart;
    m_vVisited.assign((m_sText.size() - iStart + 1) * m_oProgram.iStates / 64 + 1, 0);
    m_vSlots.assign(m_oProgram.iSlots, NOWHERE);

    // The visited bits are kept from one start to the next: a state that has failed before will fail again.
    while ((iStart = m_oProgram.FindStart(m_sText, iStart)) != NOWHERE)
    {
        Path oPath{0, Path::NO_LOOP, iStart++};
        m_oWalker.Begin(oPath);
        while (m_oWalker.Next(oPath))
        {
            if (WalkToMatch(oPath))
                return true;
        }
    }
    return false;
}

bool Backtracker::WalkToMatch(Path oPath)
{
    for (;;)
    {
        Instruction const & oInstruction = m_oProgram.vCode[oPath.iPc];
        if (!Visit(oInstruction, oPath))
            return false;
        if (oInstruction.eOp == Op::eMatch)
            return true;
        if (oInstruction.IsConsuming())
        {
            if (!m_oProgram.Consumes(oInstruction, m_sText, oPath.iAt))
                return false;
            oPath = {oPath.iPc + 1, Path::NO_LOOP, oPath.iAt + 1};
        }
        else if (!m_oWalker.Step(oInstruction, oPath))
            return false;
    }
}

/// Marks the path's state at its position as visited. False if it was already.
bool Backtracker::Visit(Instruction const & oInstruction, Path const & oPath)
{
    if (oInstruction.iState == Instruction::NO_STATE)
        return true;
    std::size_t const iBit =
        (oPath.iAt - m_iStart) * m_oProgram.iStates + Walker::GetState(oInstruction, oPath);
    std::uint64_t & iWord = m_vVisited[iBit / 64];
    std::uint64_t const iMask = std::uint64_t{1} << (iBit % 64);
    if (iWord & iMask)
        return false;
    iWord |= iMask;
    return true;
}

} // namespace tsl::Pattern
