#include <tessel/LogPoint.h>

#include <algorithm>

namespace tsl
{

bool LogPoint::IsOn(char const * sIdentifier, char const * sFile, int iLine)
{
    int iLevel = m_iLevel.load(std::memory_order_relaxed);
    if (iLevel == LEVEL_UNKNOWN)
    {
        Support::RegisterLogPoint(&iLevel, sIdentifier, sFile, iLine);
        m_iLevel.store(std::min(iLevel, LEVEL_UNKNOWN - 1), std::memory_order_relaxed);
    }
    return iLevel > 0;
}

} // namespace tsl
