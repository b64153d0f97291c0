#include <tessel/Duration.h>

#include "platform/Clock.h"

namespace tsl
{

Duration::~Duration() = default;

void Duration::Start()
{
    m_iStart = Platform::GetSteadyTime();
    m_iStop = -1;
}

void Duration::Stop()
{
    m_iStop = Platform::GetSteadyTime();
}

long Duration::GetDuration() const
{
    if (m_iStart == -1)
        return 0;

    std::int64_t const iEnd = m_iStop != -1 ? m_iStop : Platform::GetSteadyTime();
    return static_cast<long>(iEnd - m_iStart);
}

} // namespace tsl
