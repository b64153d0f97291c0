#include "r04_work_tessel.h"

namespace tslbench
{

static long g_iTotal = 0;

[[gnu::noinline]] void Receive(long iValue)
{
    g_iTotal += iValue;
    asm volatile("" : : "r"(&g_iTotal) : "memory");
}

} // namespace tslbench
