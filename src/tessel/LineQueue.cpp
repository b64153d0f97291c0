#include "LineQueue.h"

#include <memory>

namespace tsl
{

void LineQueue::SetLimit(std::size_t iLimit)
{
    m_iLimit = iLimit;
    m_bLifted = false;
    // Lines of an earlier run that were not counted are not: less than 0 is queued once they are taken.
    if (IsEmpty())
        m_iQueued = 0;
}

void LineQueue::Send(String const & sLine)
{
    m_oLines.Send(sLine);
    if (m_iLimit != 0)
        m_iQueued += static_cast<std::ptrdiff_t>(GetSize(sLine));
}

String * LineQueue::Receive()
{
    std::unique_ptr<String> pLine(m_oLines.Receive());
    if (pLine && m_iLimit != 0)
    {
        m_iQueued -= static_cast<std::ptrdiff_t>(GetSize(*pLine));
        ++m_iChanges;
        m_iChanges.notify_one();
    }
    return pLine.release();
}

void LineQueue::WaitForRoom()
{
    for (;;)
    {
        unsigned int const iChanges = m_iChanges;
        if (m_iLimit == 0 || m_bLifted || m_iQueued < static_cast<std::ptrdiff_t>(m_iLimit))
            return;
        m_iChanges.wait(iChanges);
    }
}

void LineQueue::LiftLimit()
{
    m_bLifted = true;
    ++m_iChanges;
    m_iChanges.notify_one();
}

std::size_t LineQueue::GetSize(String const & sLine)
{
    constexpr std::size_t iPlace = 64;
    return sLine.GetLength() + iPlace;
}

} // namespace tsl
