#include "OutputTail.h"

void OutputTail::Add(std::string const & sBytes, bool bEndsLine)
{
    if (m_bLineEnded)
        m_vLines.emplace_back();
    m_bLineEnded = bEndsLine;
    m_vLines.back() += sBytes;
    m_iBytes += sBytes.size();
    while (m_vLines.size() > LINES || (m_iBytes > BYTES_MAX && m_vLines.size() > 1))
    {
        m_iBytes -= m_vLines.front().size();
        m_vLines.pop_front();
    }
    if (m_iBytes > BYTES_MAX)
    {
        m_vLines.back().erase(0, m_iBytes - BYTES_MAX);
        m_iBytes = BYTES_MAX;
    }
}

std::string OutputTail::GetText() const
{
    std::string sText;
    for (std::string const & sLine : m_vLines)
        sText += sLine + '\n';
    return sText;
}

std::string const & OutputTail::GetLastLine() const
{
    static std::string const sNone;
    return m_vLines.empty() ? sNone : m_vLines.back();
}
