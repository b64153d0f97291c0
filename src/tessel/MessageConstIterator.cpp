#include <tessel/MessageConstIterator.h>

namespace tsl
{

void MessageConstIterator::Begin()
{
    m_iPosition = m_iSize >= 1 ? 0 : -1;
}

void MessageConstIterator::End()
{
    m_iPosition = -1;
}

void MessageConstIterator::Next()
{
    // The end is -1, so from there this moves to the first element.
    m_iPosition = m_iPosition >= m_iSize - 1 ? -1 : m_iPosition + 1;
}

bool MessageConstIterator::IsEnd() const
{
    return m_iPosition == -1;
}

} // namespace tsl
