#pragma once

#include "Walker.h"

namespace tsl::Pattern
{

/// The engine for short texts: tries one path after the other. One bit per state and position marks what has
/// been visited, so that nothing is tried twice. Fast, but its memory grows with the text.
class Backtracker
{
public:
    struct Memory
    {
        std::vector<Path> vPending;
        std::vector<std::uint64_t> vVisited;
    };

    /// Whether the text from iStart on is short enough for this engine.
    static bool Suits(Program const & oProgram, std::string_view sText, std::size_t iStart);

    Backtracker(Program const & oProgram, std::string_view sText, Slots & vSlots, Memory & oMemory);

    /// Searches from iStart on and stores the positions in the slots. False if nothing matches.
    bool Search(std::size_t iStart);

private:
    bool WalkToMatch(Path oPath);
    bool Visit(Instruction const & oInstruction, Path const & oPath);

    Program const & m_oProgram;
    std::string_view m_sText;
    std::vector<std::uint64_t> & m_vVisited;
    std::size_t m_iStart = 0;
    Slots & m_vSlots;
    Walker m_oWalker;
};

} // namespace tsl::Pattern
