#pragma once

#include "Walker.h"

namespace tsl::Pattern
{

/// Walks all paths side by side, byte by byte, ordered by priority. Each path carries its positions along.
/// The memory does not depend on the text: for long texts.
class PikeVm
{
public:
    /// Paths that wait at an instruction that consumes, or at the end of the pattern.
    struct Threads
    {
        std::vector<std::uint32_t> vPcs;

        /// The slots of all threads, one behind the other. It never shrinks.
        Slots vSlots;
    };

    struct Memory
    {
        std::vector<Path> vPending;
        Slots vSlots;
        Threads oNow;
        Threads oNext;

        /// For each state the step in which it was visited last. Steps are counted over all searches, of
        /// whatever program, so that a new step needs no clearing.
        std::vector<std::uint64_t> vVisited;
        std::uint64_t iStep = 0;
    };

    PikeVm(Program const & oProgram, std::string_view sText, Slots & vSlots, Memory & oMemory);

    /// Searches from iStart on and leaves the positions in the slots. False if nothing matches.
    bool Search(std::size_t iStart);

private:
    bool Step(std::size_t iAt);
    void Follow(Path oPath, Threads & oThreads);
    void WalkToThread(Path oPath, Threads & oThreads);
    void Add(std::uint32_t iPc, Threads & oThreads);

    Program const & m_oProgram;
    std::string_view m_sText;
    Slots & m_vSlots;
    Memory & m_oMemory;
    Walker m_oWalker;
};

} // namespace tsl::Pattern
