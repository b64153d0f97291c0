#include "r05_work_tessel.h"

namespace tslbench
{

static long g_iEntered = 0;
static long g_iLeft = 0;

[[gnu::noinline]] void CountEntry()
{
    ++g_iEntered;
    asm volatile("" : : "r"(&g_iEntered) : "memory");
}

[[gnu::noinline]] void CountExit()
{
    ++g_iLeft;
    asm volatile("" : : "r"(&g_iLeft) : "memory");
}

} // namespace tslbench
