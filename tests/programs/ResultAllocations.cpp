// Counts the memory that results ask for: none as long as nothing fails.

#include <tessel/Result.h>

#include <cstdio>
#include <cstdlib>
#include <new>

static int g_iAllocations = 0;

void * operator new(std::size_t iSize)
{
    ++g_iAllocations;
    if (void * const pMemory = std::malloc(iSize))
        return pMemory;
    throw std::bad_alloc();
}

void operator delete(void * pMemory) noexcept
{
    std::free(pMemory);
}

void operator delete(void * pMemory, std::size_t) noexcept
{
    std::free(pMemory);
}

static tsl::Result Pass(tsl::Result const & oResult)
{
    tsl::Result oCopy(oResult);
    oCopy.SetPrevious(oResult);
    oCopy.InsertFront(oResult);
    oCopy = oResult;
    oCopy = oCopy.GetWithoutHistory();
    oCopy.Clear();
    return oCopy;
}

int main()
{
    bool bOk = tsl::Result::Null().IsOk(); // made on first use
    int iBefore = g_iAllocations;
    tsl::Result const oResult = Pass(tsl::Result());
    bOk = bOk && Pass(tsl::Result::Null()).IsOk() && !oResult.IsError() && oResult.GetErrorCode() == 0
          && oResult == tsl::Result::Null() && oResult.GetHistorySize() == 0;
    std::printf("success %d\n", g_iAllocations - iBefore);

    iBefore = g_iAllocations;
    tsl::Result const oFailure = tsl::MakeResult(2, "short text");
    std::printf("failure %d\n", g_iAllocations - iBefore);
    return bOk && oFailure.IsError() ? 0 : 1;
}
