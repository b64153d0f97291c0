#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <new>

namespace tsl
{

/// The memory of the tasks that a machine has left, kept for those that it comes to. It is memory of the
/// heap, so a block from here may go back there, and the other way round.
///
/// One thread at a time uses it, that of the machine's step.
class TaskMemory
{
public:
    // Larger objects take longer to fill than the heap takes to find room for them.
    static constexpr std::size_t SIZE_KEPT_MAX = 512; // bytes

    // Blocks of each size. A sanitizer is to see the end of every task.
    static constexpr std::size_t COUNT_KEPT_MAX = *TESSEL_SANITIZE ? 0 : 8;

    TaskMemory() = default;
    ~TaskMemory();
    TaskMemory(TaskMemory const &) = delete;
    TaskMemory & operator=(TaskMemory const &) = delete;

    void * Take(std::size_t iSize)
    {
        std::size_t const iGrains = CountGrains(iSize);
        Block * const pBlock = MayKeep(iGrains) ? m_aFirst[iGrains] : nullptr;
        if (!pBlock)
            return ::operator new(iSize);

        m_aFirst[iGrains] = pBlock->pNext;
        return pBlock;
    }

    /// @param iSize what was asked for
    void Give(void * pBlock, std::size_t iSize)
    {
        std::size_t const iGrains = CountGrains(iSize);
        if (!MayKeep(iGrains))
            return ::operator delete(pBlock);

        Block * const pNext = m_aFirst[iGrains];
        std::size_t const iCount = pNext ? pNext->iCount + 1 : 1;
        if (iCount > COUNT_KEPT_MAX)
            return ::operator delete(pBlock);

        m_aFirst[iGrains] = new (pBlock) Block{pNext, iCount};
    }

    /// That of the machine whose step the calling thread runs, or null.
    static TaskMemory * GetCurrent() { return t_pCurrent; }

    /// Makes a memory the current one until the end of the scope.
    class Scope
    {
    public:
        explicit Scope(TaskMemory & oMemory) : m_pOuter(t_pCurrent) { t_pCurrent = &oMemory; }
        ~Scope() { t_pCurrent = m_pOuter; }
        Scope(Scope const &) = delete;
        Scope & operator=(Scope const &) = delete;

    private:
        TaskMemory * const m_pOuter;
    };

private:
    /// What lies in memory that is not in use.
    struct Block
    {
        Block * pNext;
        std::size_t iCount; ///< of the blocks from this one on
    };

    // The size of nearly every task is a multiple of it.
    static constexpr std::size_t GRAIN = sizeof(void *);
    static constexpr std::size_t GRAINS_MAX = SIZE_KEPT_MAX / GRAIN;

    /// Far too large a number for any other size.
    static std::size_t CountGrains(std::size_t iSize) { return std::rotr(iSize, std::countr_zero(GRAIN)); }

    static bool MayKeep(std::size_t iGrains)
    {
        return iGrains >= sizeof(Block) / GRAIN && iGrains <= GRAINS_MAX;
    }

    static constinit thread_local TaskMemory * t_pCurrent;

    // By the number of grains.
    std::array<Block *, GRAINS_MAX + 1> m_aFirst{};
};

} // namespace tsl
