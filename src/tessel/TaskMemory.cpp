#include "TaskMemory.h"

namespace tsl
{

constinit thread_local TaskMemory * TaskMemory::t_pCurrent = nullptr;

TaskMemory::~TaskMemory()
{
    for (Block * pBlock : m_aFirst)
        while (pBlock)
        {
            Block * const pNext = pBlock->pNext;
            ::operator delete(pBlock);
            pBlock = pNext;
        }
}

} // namespace tsl
