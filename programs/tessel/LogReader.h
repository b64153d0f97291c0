#pragma once

#include "../shared/System.h"
#include "LogFilter.h"
#include "RecordSink.h"
#include "RecordSplitter.h"

#include <string>

/// Reads one log and passes the selected records to a sink.
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

    /// Reads a piece. bEnd is set at the present end of the file. Code 1 if it cannot be read.
    [[nodiscard]] tsl::Result Read(bool & bEnd);

    /// Ends the record that was read so far, and passes it on.
    void EndRecord() { PassOn(RecordSplitter::Ending::eEnds); }

    /// Whether the bytes read so far end with a complete line.
    bool IsLineComplete() const { return m_oSplitter.IsLineComplete(); }

    enum class Change
    {
        eNone,
        eOtherFile,  ///< the name is that of another file now; the open one may have unread bytes
        eOverwritten ///< the file is shorter than what was read of it, or has another beginning
    };

    Change GetChange() const;

private:
    void PassOn(RecordSplitter::Ending eEnding);
    tsl::Result MakeFailure(char const * sText, int iError) const;

    std::string m_sName;
    LogFilter const & m_oFilter;
    RecordSink & m_oSink;
    System::InputFile m_oFile;
    RecordSplitter m_oSplitter;
    std::string m_sHead; // the first bytes of the file
    std::uint64_t m_iRead = 0;
    bool m_bSelected = false; // whether the current record is selected
};
