#pragma once

#include "Program.h"

#include <algorithm>

namespace tsl::Pattern
{

/// A path through the program: the next instruction, the level (see Instruction) and the position in the
/// text.
struct Path
{
    std::uint32_t iPc;
    std::uint32_t iLevel;
    std::size_t iAt;

    /// The level of a path that has just consumed a byte: no iteration began at this position.
    static constexpr std::uint32_t NO_LOOP = UINT32_MAX;
};

/// Follows paths over the instructions that consume nothing, the path with the highest priority first.
/// Pending paths are kept in a vector of the caller, not on the stack.
class Walker
{
public:
    Walker(std::string_view sText, std::vector<Path> & vPending, Slots & vSlots)
        : m_sText(sText), m_vPending(vPending), m_vSlots(vSlots)
    {
    }

    /// Starts with this path. The slots belong to the caller. When Next has returned false, they have their
    /// former values.
    void Begin(Path const & oPath)
    {
        m_vPending.clear();
        m_vPending.push_back(oPath);
    }

    /// Takes the next path and restores the slots to their values at its branch. False if no path is left.
    bool Next(Path & oPath)
    {
        while (!m_vPending.empty())
        {
            oPath = m_vPending.back();
            m_vPending.pop_back();
            if (oPath.iPc != RESTORE)
                return true;
            m_vSlots[oPath.iLevel] = oPath.iAt;
        }
        return false;
    }

    /// The number of the state in which the path arrives at an instruction, which must have states.
    static std::size_t GetState(Instruction const & oInstruction, Path const & oPath)
    {
        return oInstruction.iState + std::min<std::size_t>(oPath.iLevel, oInstruction.iDepth);
    }

    /// Executes an instruction that consumes nothing. False if the path ends there.
    bool Step(Instruction const & oInstruction, Path & oPath)
    {
        switch (oInstruction.eOp)
        {
        case Op::eJump:
            oPath.iPc = oInstruction.iArg;
            return true;
        case Op::eSplitNext:
            m_vPending.push_back({oInstruction.iArg, oPath.iLevel, oPath.iAt});
            break;
        case Op::eSplitJump:
            m_vPending.push_back({oPath.iPc + 1, oPath.iLevel, oPath.iAt});
            oPath.iPc = oInstruction.iArg;
            return true;
        case Op::eSave:
            m_vPending.push_back({RESTORE, oInstruction.iArg, m_vSlots[oInstruction.iArg]});
            m_vSlots[oInstruction.iArg] = oPath.iAt;
            break;
        case Op::eAssert:
            if (!Holds(Assertion(oInstruction.iArg), m_sText, oPath.iAt))
                return false;
            break;
        case Op::eLoopBegin:
            oPath.iLevel = std::min<std::uint32_t>(oPath.iLevel, oInstruction.iDepth);
            break;
        case Op::eLoopCheck:
            if (oPath.iLevel < oInstruction.iDepth)
            {
                oPath.iPc = oInstruction.iArg;
                return true;
            }
            break;
        case Op::eByte:
        case Op::eSet:
        case Op::eMatch:
            return false;
        }
        ++oPath.iPc;
        return true;
    }

private:
    /// In place of an instruction number: restore slot iLevel to iAt.
    static constexpr std::uint32_t RESTORE = UINT32_MAX;

    std::string_view m_sText;
    std::vector<Path> & m_vPending;
    Slots & m_vSlots;
};

} // namespace tsl::Pattern
