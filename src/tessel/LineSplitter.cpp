#include "LineSplitter.h"

#include <tessel/LogPoint.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace tsl
{

/// Fast path (R10): skips printable ASCII, which ends a line in no locale, eight characters at a time. Returns a
/// position from which on each byte must be checked.
static char const * SkipPlainText(char const * pBytes, char const * pEnd)
{
    constexpr std::uint64_t iEach = 0x0101010101010101;
    std::uint64_t iBytes = 0;
    for (; pEnd - pBytes >= std::ptrdiff_t{sizeof iBytes}; pBytes += sizeof iBytes)
    {
        // The top bit of a byte is set for any character below a blank, above a tilde or outside ASCII.
        std::memcpy(&iBytes, pBytes, sizeof iBytes);
        if (((iBytes - iEach * ' ') | (iBytes + iEach) | iBytes) & (iEach * 0x80))
            break;
    }
    return pBytes;
}

LineSplitter::LineSplitter(LineQueue & oLines, char const * sStream, LineEnd eLineEnd, std::size_t iLengthMax)
    : m_oLines(oLines), m_sStream(sStream), m_eLineEnd(eLineEnd), m_iLengthMax(iLengthMax)
{
    // A table, since a call for each byte would cost more than all the rest (R10).
    for (std::size_t i = 0; i < m_aEndsLine.size(); ++i)
        m_aEndsLine[i] = eLineEnd == LineEnd::eLineFeed ? i == '\n' : String::IsCntrl(static_cast<char>(i));
}

void LineSplitter::Take(char const * pBytes, std::size_t iCount)
{
    char const * const pEnd = pBytes + iCount;
    while (pBytes != pEnd)
    {
        char const * const pLineEnd = std::find_if(SkipPlainText(pBytes, pEnd), pEnd,
            [this](char c) { return m_aEndsLine[static_cast<unsigned char>(c)]; });
        Append(pBytes, static_cast<std::size_t>(pLineEnd - pBytes));
        if (pLineEnd == pEnd)
            break;
        EndLine();
        pBytes = pLineEnd + 1;
    }
}

void LineSplitter::Finish()
{
    if (m_eLineEnd == LineEnd::eLineFeed && !m_sLine.IsEmpty())
        Send();
}

void LineSplitter::Append(char const * pBytes, std::size_t iCount)
{
    while (m_iLengthMax != 0 && m_sLine.GetLength() + iCount > m_iLengthMax)
    {
        std::size_t const iPiece = m_iLengthMax - m_sLine.GetLength();
        AppendPiece(pBytes, iPiece);
        if (!m_sLine.IsEmpty())
            Send();
        m_bBegun = true;
        pBytes += iPiece;
        iCount -= iPiece;
    }
    AppendPiece(pBytes, iCount);
}

void LineSplitter::AppendPiece(char const * pBytes, std::size_t iCount)
{
    if (m_bDropped || iCount == 0)
        return;

    try
    {
        if (m_sLine.IsEmpty())
            m_sLine.Reserve(LENGTH_USUAL);
        // The overload for bytes stops at a zero byte. A line has one only if nothing but a line feed ends it.
        if (m_eLineEnd == LineEnd::eLineFeed)
            m_sLine.Append(String(std::string_view(pBytes, iCount)));
        else
            m_sLine.Append(pBytes, static_cast<unsigned int>(iCount));
    }
    catch (std::bad_alloc const &)
    {
        Drop();
        m_bDropped = true;
    }
}

void LineSplitter::EndLine()
{
    bool const bEmptyLine = m_eLineEnd == LineEnd::eLineFeed && !m_bBegun && !m_bDropped;
    if (!m_sLine.IsEmpty() || bEmptyLine)
        Send();
    m_bDropped = false;
    m_bBegun = false;
}

void LineSplitter::Send()
{
    try
    {
        m_oLines.Send(m_sLine);
    }
    catch (std::bad_alloc const &)
    {
        Drop();
        return;
    }
    Trace("CmdLine", [&] { return String(m_sStream) + ": " + m_sLine; });
    m_sLine.Clear();
}

/// Drops the current line and frees its memory, since the program is short of it.
void LineSplitter::Drop()
{
    String const sFreed(std::move(m_sLine));
    m_sLine.Clear();
    ++m_iDropped;
}

} // namespace tsl
