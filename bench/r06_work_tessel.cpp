#include "r06_work_tessel.h"

namespace tslbench
{

static long g_iConsumed = 0;

[[gnu::noinline]] void Consume(long iId)
{
    g_iConsumed += iId;
    asm volatile("" : : "r"(&g_iConsumed) : "memory");
}

} // namespace tslbench
