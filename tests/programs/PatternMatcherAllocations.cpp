// Counts the memory that searches ask for: none once the object for the result has grown.

#include <patternmatcher/PatternMatcher.h>

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

int main()
{
    // Each of the three searches is executed in a way of its own.
    tsl::PatternMatcher const oNumber(R"(^(\d+)\.(\d+))", 0);
    tsl::PatternMatcher const oWords(R"((\w+)-(\w+))", 0);
    std::string const sShort = "1.25 ab-cd";
    std::string const sLong = std::string(200'000, ' ') + "ab-cd";

    tsl::PatternMatcher::Matches oMatches;
    for (int i = 0; i < 2; ++i)
    {
        int const iBefore = g_iAllocations;
        bool const bOk = oNumber.Match(sShort, 0, oMatches) == 3 && oWords.Match(sShort, 0, oMatches) == 3
                         && oWords.Match(sLong, 0, oMatches) == 3;
        bool const bAllocated = g_iAllocations > iBefore;
        std::printf("%s %s\n", bOk ? "found" : "not found", bAllocated ? "with memory" : "without memory");
    }
    return 0;
}
