#include "LogFileProcessor.h"

#include "Platform.h"
#include "Spare.h"

#include <tessel/Assertion.h>
#include <tessel/Locks.h>
#include <tessel/MessageLayout.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>

#include <utility>

namespace tsl
{

namespace
{

constexpr unsigned int LENGTH_USUAL = 256;
constexpr unsigned int LENGTH_KEPT = 4096;

/// Short lines need no memory of their own: they use that of an earlier one.
class SpareLine
{
public:
    std::unique_ptr<String> Take()
    {
        std::unique_ptr<String> pLine = m_oSpare.Take();
        pLine->Reserve(LENGTH_USUAL);
        pLine->Clear();
        return pLine;
    }

    void GiveBack(std::unique_ptr<String> pLine)
    {
        // One long message must not hold its memory for ever.
        if (pLine->GetLength() <= LENGTH_KEPT)
            m_oSpare.GiveBack(std::move(pLine));
    }

private:
    Spare<String> m_oSpare;
};

} // namespace

ClassDescription const & LogFileProcessorConfig::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & LogFileProcessorConfig::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<LogFileProcessorConfig>(
        &MessageProcessorConfig::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * LogFileProcessorConfig::CreateNew()
{
    return new LogFileProcessorConfig;
}

void LogFileProcessorConfig::DoCopy(Root const &)
{
    XAssertionFailed("false", "Unknown");
}

struct TSL_HIDDEN LogFileProcessor::Private
{
    LogFileProcessorConfig oConfig;
    Platform::File oFile;
    bool bFailed = false;
    SpareLine oSpareLine;
    ReaderWriterMutex oLock;
};

LogFileProcessor::LogFileProcessor() : m(std::make_unique<Private>()) {}

ClassDescription const & LogFileProcessor::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & LogFileProcessor::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<LogFileProcessor>(
        &MessageProcessor::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

LogFileProcessor::~LogFileProcessor()
{
    LogFileProcessor::Close();
}

Root * LogFileProcessor::CreateNew()
{
    return new LogFileProcessor;
}

void LogFileProcessor::Process(Message const & oMessage, Result &) const
{
    std::unique_ptr<String> pLine = m->oSpareLine.Take();
    DefaultMessageLayout().FormatMessage(oMessage, *pLine);
    *pLine << '\n';

    {
        WriteLock const oScope(m->oLock);
        if (m->oFile.IsOpen() && !m->bFailed
            && Platform::Append(m->oFile, pLine->c_str(), pLine->GetLength()) != 0)
            m->bFailed = true;
    }
    m->oSpareLine.GiveBack(std::move(pLine));
}

MessageProcessorConfig const & LogFileProcessor::GetConfig() const
{
    return m->oConfig;
}

Result LogFileProcessor::SetConfig(MessageProcessorConfig const &)
{
    // Not under the lock: the report may come back here by way of the bus, whose lock goes first.
    XAssertionFailed("false", "Unknown");
}

Result LogFileProcessor::Open()
{
    WriteLock const oScope(m->oLock);
    if (m->oFile.IsOpen())
        return Result::Null();

    m->bFailed = false;
    if (Platform::OpenForAppend(m->oConfig.GetFileName().c_str(), m->oFile) != 0)
        return Result(ERR::eAccessDenied, "Error while opening file", Result::eCategoryDefault);
    return Result::Null();
}

void LogFileProcessor::Close()
{
    WriteLock const oScope(m->oLock);
    Platform::CloseFile(m->oFile);
}

void LogFileProcessor::DoCopy(Root const &)
{
    XAssertionFailed("false", "Unknown");
}

} // namespace tsl
