#include "LogReader.h"

#include <tessel/OS.h>
#include <tessel/String.h>

#include <algorithm>
#include <utility>

static constexpr std::size_t HEAD_SIZE = 256;

LogReader::LogReader(std::string sName, LogFilter const & oFilter, RecordSink & oSink)
    : m_sName(std::move(sName)), m_oFilter(oFilter), m_oSink(oSink)
{
}

tsl::Result LogReader::Open()
{
    m_sHead.clear();
    m_iRead = 0;
    if (IsStandardInput())
        m_oFile.UseStandardInput();
    else if (int const iError = m_oFile.Open(m_sName.c_str()))
        return MakeFailure("cannot be opened", iError);
    return tsl::Result();
}

tsl::Result LogReader::Read(bool & bEnd)
{
    std::size_t iSpace = 0;
    char * const pSpace = m_oSplitter.GetSpace(iSpace);
    std::size_t iRead = 0;
    if (int const iError = m_oFile.Read(pSpace, iSpace, iRead))
        return MakeFailure("cannot be read", iError);

    if (m_sHead.size() < HEAD_SIZE)
        m_sHead.append(pSpace, std::min(iRead, HEAD_SIZE - m_sHead.size()));
    m_iRead += iRead;
    m_oSplitter.Add(iRead);
    bEnd = iRead == 0;
    PassOn(RecordSplitter::Ending::eMayGoOn);
    return tsl::Result();
}

LogReader::Change LogReader::GetChange() const
{
    if (IsStandardInput())
        return Change::eNone;
    if (m_oFile.IsReplaced(m_sName.c_str()))
        return Change::eOtherFile;
    char aHead[HEAD_SIZE];
    std::string_view const sHead(aHead, m_oFile.ReadHead(aHead, m_sHead.size()));
    return m_oFile.GetSize() < m_iRead || sHead != m_sHead ? Change::eOverwritten : Change::eNone;
}

void LogReader::PassOn(RecordSplitter::Ending eEnding)
{
    for (RecordPiece oPiece; m_oSplitter.Next(oPiece, eEnding);)
    {
        if (oPiece.bFirst)
        {
            LogRecord const oRecord(oPiece.sText);
            m_bSelected = m_oFilter.Selects(oRecord);
            if (m_bSelected)
                m_oSink.Begin(
                    oRecord, oPiece.bLast ? RecordSink::Extent::eWhole : RecordSink::Extent::eFirstPiece);
        }
        else if (m_bSelected)
            m_oSink.Continue(oPiece.sText);
        if (oPiece.bLast && m_bSelected)
            m_oSink.End();
    }
}

tsl::Result LogReader::MakeFailure(char const * sText, int iError) const
{
    return tsl::MakeResult(tsl::ERR::eAccessDenied, tsl::String("The file '") + m_sName + "' " + sText,
        tsl::OS::FormatError(iError));
}
