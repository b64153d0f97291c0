#include "IniLineReader.h"

#include <cstring>

namespace tsl
{

static constexpr std::size_t BUFFER_SIZE = 65536;

IniLineReader::~IniLineReader()
{
    Platform::CloseFile(m_oFile);
}

int IniLineReader::Open(char const * sName)
{
    int const iError = Platform::OpenForRead(sName, m_oFile);
    if (iError == 0)
    {
        // Not cleared (R11): clearing touches every page, which takes longer than reading a short file, at
        // the start of every program.
        m_aBuffer.reset(new char[BUFFER_SIZE]);
        m_sRest = std::string_view(m_aBuffer.get(), 0);
    }
    return iError;
}

bool IniLineReader::Read(std::string_view & sLine)
{
    if (m_sRest.size() < LENGTH_MAX)
        Fill();

    std::string_view sPiece = m_sRest.substr(0, LENGTH_MAX);
    std::size_t const iLineEnd = sPiece.find('\n');
    if (iLineEnd != std::string_view::npos)
        sPiece = sPiece.substr(0, iLineEnd + 1);
    else if (m_bFailed && sPiece.size() < LENGTH_MAX)
        return false; // an incomplete line

    m_sRest.remove_prefix(sPiece.size());
    sLine = m_bZero ? sPiece.substr(0, sPiece.find('\0')) : sPiece;
    return !sPiece.empty();
}

/// Reads until the buffer has a whole line, or the file ends.
void IniLineReader::Fill()
{
    std::memmove(m_aBuffer.get(), m_sRest.data(), m_sRest.size());
    std::size_t iCount = m_sRest.size();
    while (iCount < LENGTH_MAX && !m_bEnd)
    {
        std::size_t iRead = 0;
        m_iError = Platform::Read(m_oFile, m_aBuffer.get() + iCount, BUFFER_SIZE - iCount, iRead);
        m_bFailed = m_iError != 0 || iRead > m_iLeft;
        if (m_bFailed)
            iRead = 0;
        m_bEnd = iRead == 0;
        m_iLeft -= iRead;
        iCount += iRead;
    }
    m_sRest = std::string_view(m_aBuffer.get(), iCount);
    m_bZero = m_sRest.find('\0') != std::string_view::npos;
}

} // namespace tsl
