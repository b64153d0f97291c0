#pragma once

#include "Walker.h"

namespace tsl::Pattern
{

/// The engine for long texts: follows all paths at once, byte by byte, in the order of their priority. Each
/// path has its own copy of the slots. Its memory does not depend on the length of the text.
class PikeVm
{
public:
    /// Paths that have arrived at a consuming instruction or at the end of the pattern.
    struct Threads
    {
        std::vector<std::uint32_t> vPcs;

        /// The slots of all threads, one set after the other. It never shrinks.
        Slots vSlots;
    };

    struct Memory
    {
        std::vector<Path> vPending;
        Slots vSlots;
        Threads oNow;
        Threads oNext;

        /// The last step in which each state was visited. Steps are counted across all searches, whatever the
        /// program, so that nothing has to be cleared.
        std::vector<std::uint64_t> vVisited;
        std::uint64_t iStep = 0;
    };

    PikeVm(Program const & oProgram, std::string_view sText, Slots & vSlots, Memory & oMemory);

    /// Searches from iStart on and stores the positions in the slots. False if nothing matches.
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
