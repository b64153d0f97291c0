#include "RecordSplitter.h"

#include "LogRecord.h"

#include <algorithm>
#include <cstring>

static constexpr std::size_t READ_SIZE = 262'144;

char * RecordSplitter::GetSpace(std::size_t & iSpace)
{
    std::size_t const iKept = m_iEnd - m_iBegin;
    if (m_iSize - iKept < READ_SIZE)
    {
        m_iSize = std::clamp(2 * m_iSize, 2 * READ_SIZE, HELD_MAX + 2 * READ_SIZE);
        std::unique_ptr<char[]> aLarger(new char[m_iSize]);
        if (iKept > 0)
            std::memcpy(aLarger.get(), m_aBuffer.get() + m_iBegin, iKept);
        m_aBuffer = std::move(aLarger);
    }
    else
        std::memmove(m_aBuffer.get(), m_aBuffer.get() + m_iBegin, iKept);

    m_iScanned -= m_iBegin;
    m_iBegin = 0;
    m_iEnd = iKept;
    iSpace = READ_SIZE;
    return m_aBuffer.get() + iKept;
}

bool RecordSplitter::Next(RecordPiece & oPiece, Ending eEnding)
{
    char const * const pBuffer = m_aBuffer.get();
    while (m_iScanned < m_iEnd)
    {
        auto const * const pLineEnd =
            static_cast<char const *>(std::memchr(pBuffer + m_iScanned, '\n', m_iEnd - m_iScanned));
        if (!pLineEnd)
        {
            m_iScanned = m_iEnd;
            break;
        }

        std::string_view const sLine(pLineEnd + 1, pBuffer + m_iEnd);
        m_iScanned = static_cast<std::size_t>(pLineEnd - pBuffer);
        if (sLine.size() < LENGTH_OF_HEAD && eEnding == Ending::eMayGoOn)
            break;
        if (BeginsRecord(sLine))
            return Give(m_iScanned, m_iScanned + 1, true, oPiece);
        ++m_iScanned;
    }
    return eEnding == Ending::eEnds ? GiveRest(oPiece) : GivePartOfLong(oPiece);
}

bool RecordSplitter::Give(std::size_t iEnd, std::size_t iNext, bool bLast, RecordPiece & oPiece)
{
    oPiece = {{m_aBuffer.get() + m_iBegin, iEnd - m_iBegin}, !m_bInside, bLast};
    m_iBegin = iNext;
    m_iScanned = std::max(m_iScanned, iNext);
    m_bInside = !bLast;
    return true;
}

/// Does not return a last line end, which may be that of the record.
bool RecordSplitter::GivePartOfLong(RecordPiece & oPiece)
{
    std::size_t const iReady = m_iScanned - m_iBegin;
    if (iReady == 0 || (!m_bInside && iReady < HELD_MAX))
        return false;
    return Give(m_iScanned, m_iScanned, false, oPiece);
}

bool RecordSplitter::GiveRest(RecordPiece & oPiece)
{
    if (m_iBegin == m_iEnd && !m_bInside)
        return false;
    bool const bLineEnd = m_iBegin < m_iEnd && m_aBuffer[m_iEnd - 1] == '\n';
    return Give(m_iEnd - (bLineEnd ? 1 : 0), m_iEnd, true, oPiece);
}
