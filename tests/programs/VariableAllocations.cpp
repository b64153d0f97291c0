// Counts the memory that the variables of a machine ask for once they are there: none for short texts.

#include <tessel/Tessel.h>

#include <cstdio>
#include <cstdlib>
#include <new>

static int g_iAllocations = 0;

[[gnu::noinline]] void * operator new(std::size_t iSize)
{
    ++g_iAllocations;
    if (void * const pMemory = std::malloc(iSize))
        return pMemory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void * pMemory) noexcept
{
    std::free(pMemory);
}

[[gnu::noinline]] void operator delete(void * pMemory, std::size_t) noexcept
{
    std::free(pMemory);
}

namespace
{

/// A machine that never runs.
class Machine : public tsl::TaskProcessor
{
public:
    Machine() : TaskProcessor("Machine", nullptr) {}

    int GetTaskID() const override { return 0; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }

private:
    tsl::TaskTransitionList m_oTransitions;
};

class Context : public tsl::TaskContext
{
public:
    Context() : TaskContext(new Machine) {}

    /// Sets two variables and reads them.
    bool Use(int iNumber, char const * sText)
    {
        SetVar("a number", iNumber);
        SetVar("a text", sText);
        return GetVar("a number", 0) == iNumber && GetVar("a text", "none") == sText
               && GetVar("absent", 3) == 3;
    }
};

} // namespace

int main()
{
    Context oContext;
    bool bOk = oContext.Use(1, "first");
    int const iBefore = g_iAllocations;
    bOk = oContext.Use(2, "fifteen letters") && bOk;
    std::printf("%d\n", g_iAllocations - iBefore);
    return bOk ? 0 : 1;
}
