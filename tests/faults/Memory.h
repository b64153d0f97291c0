#pragma once

namespace tslfaults
{

/// Which allocations of the process fail.
enum class Failing
{
    eOne,    ///< the n-th
    eAllFrom ///< the n-th and all later ones
};

/// Lets memory run out for all threads, from the construction to Stop or the end of the scope. Counting begins
/// at 1.
class MemoryFault
{
public:
    MemoryFault(Failing eFailing, long n);
    ~MemoryFault() { Stop(); }
    MemoryFault(MemoryFault const &) = delete;
    MemoryFault & operator=(MemoryFault const &) = delete;

    void Stop();

    static bool HasStruck();
};

/// How often memory was asked for since the last MemoryFault, and how many blocks are allocated now.
long CountAllocations();
long CountBlocks();

} // namespace tslfaults
