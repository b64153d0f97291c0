#include <tessel/LogPoint.h>

namespace tsl
{

bool LogPoint::IsOn(char const * sIdentifier, char const * sFile, int iLine)
{
    if (m_sOn.load(std::memory_order_relaxed) == sIdentifier)
        return true;

    int iLevel = 0;
    Support::RegisterLogPoint(&iLevel, sIdentifier, sFile, iLine);
    char const * sNone = nullptr;
    (iLevel > 0 ? m_sOn : m_sOff).compare_exchange_strong(sNone, sIdentifier, std::memory_order_relaxed);
    return iLevel > 0;
}

} // namespace tsl
