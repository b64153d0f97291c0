#include "Memory.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace
{

constexpr long NEVER = std::numeric_limits<long>::max();

// Of the allocations to come, those before the first do not fail, and those from the last on.
std::atomic<long> g_iCount{0};
std::atomic<long> g_iFirst{NEVER};
std::atomic<long> g_iLast{NEVER};
std::atomic<bool> g_bStruck{false};
std::atomic<long> g_iBlocks{0};

bool IsToFail()
{
    long const i = g_iCount.fetch_add(1, std::memory_order_relaxed) + 1;
    if (i < g_iFirst.load(std::memory_order_relaxed) || i > g_iLast.load(std::memory_order_relaxed))
        return false;
    g_bStruck.store(true, std::memory_order_relaxed);
    return true;
}

void * Allocate(std::size_t iSize, std::size_t iAlignment) noexcept
{
    if (IsToFail())
        return nullptr;
    void * const pMemory = iAlignment == 0 ? std::malloc(iSize) : std::aligned_alloc(iAlignment, iSize);
    if (pMemory)
        g_iBlocks.fetch_add(1, std::memory_order_relaxed);
    return pMemory;
}

void * OrThrow(void * pMemory)
{
    if (!pMemory)
        throw std::bad_alloc();
    return pMemory;
}

void Free(void * pMemory) noexcept
{
    if (pMemory)
        g_iBlocks.fetch_sub(1, std::memory_order_relaxed);
    std::free(pMemory);
}

} // namespace

[[gnu::noinline]] void * operator new(std::size_t iSize)
{
    return OrThrow(Allocate(iSize, 0));
}
[[gnu::noinline]] void * operator new(std::size_t iSize, std::nothrow_t const &) noexcept
{
    return Allocate(iSize, 0);
}
[[gnu::noinline]] void * operator new(std::size_t iSize, std::align_val_t eAlignment)
{
    return OrThrow(Allocate(iSize, static_cast<std::size_t>(eAlignment)));
}
[[gnu::noinline]] void operator delete(void * pMemory) noexcept
{
    Free(pMemory);
}
[[gnu::noinline]] void operator delete(void * pMemory, std::size_t) noexcept
{
    Free(pMemory);
}
[[gnu::noinline]] void operator delete(void * pMemory, std::nothrow_t const &) noexcept
{
    Free(pMemory);
}
[[gnu::noinline]] void operator delete(void * pMemory, std::align_val_t) noexcept
{
    Free(pMemory);
}
[[gnu::noinline]] void operator delete(void * pMemory, std::size_t, std::align_val_t) noexcept
{
    Free(pMemory);
}

namespace tslfaults
{

MemoryFault::MemoryFault(Failing eFailing, long n)
{
    g_bStruck = false;
    g_iCount = 0;
    g_iLast = eFailing == Failing::eOne ? n : NEVER;
    g_iFirst = n;
}

void MemoryFault::Stop()
{
    g_iFirst = NEVER;
}

bool MemoryFault::HasStruck()
{
    return g_bStruck;
}

long CountAllocations()
{
    return g_iCount;
}

long CountBlocks()
{
    return g_iBlocks;
}

} // namespace tslfaults
