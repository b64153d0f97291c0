#pragma once

#include "LogFilter.h"
#include "RecordSink.h"
#include "RecordSplitter.h"
#include "System.h"

#include <string>

/// Reads one log and hands those records on that the filter selects.
class LogReader
{
public:
    /// Filter and sink must outlive the reader. "-" is the standard input.
    LogReader(std::string sName, LogFilter const & oFilter, RecordSink & oSink);

    std::string const & GetName() const { return m_sName; }
    bool IsStandardInput() const { return m_sName == "-"; }

    /// Code 1 if it cannot be opened.
    [[nodiscard]] tsl::Result Open();
    bool IsOpen() const { return m_oFile.IsOpen(); }

    /// Reads a piece. bEnd is set at the end of what is there. Code 1 if it cannot be read.
    [[nodiscard]] tsl::Result Read(bool & bEnd);

    /// What has been read and not handed on is the end of a record.
    void EndRecord() { HandOn(RecordSplitter::Ending::eEnds); }

    /// What has been read ends with a whole line.
    bool IsLineComplete() const { return m_oSplitter.IsLineComplete(); }

    enum class Change
    {
        eNone,
        eOtherFile,  ///< the name stands for another file now; the open one may still have something to read
        eOverwritten ///< the file is shorter than what was read of it, or begins in another way
    };

    Change GetChange() const;

private:
    void HandOn(RecordSplitter::Ending eEnding);
    tsl::Result MakeFailure(char const * sText, int iError) const;

    std::string m_sName;
    LogFilter const & m_oFilter;
    RecordSink & m_oSink;
    System::InputFile m_oFile;
    RecordSplitter m_oSplitter;
    std::string m_sHead; // the first bytes of the file
    std::uint64_t m_iRead = 0;
    bool m_bSelected = false; // the record of which a piece has been handed on
};
