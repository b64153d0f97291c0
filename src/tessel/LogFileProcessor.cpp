#include "LogFileProcessor.h"

#include "ObjectCache.h"
#include "OwnMutex.h"
#include "platform/Errors.h"
#include "platform/Files.h"

#include <tessel/Assertion.h>
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

/// Caches the memory of a written line for a later one, so that a short line allocates nothing (R02).
class LineCache
{
public:
    std::unique_ptr<String> Take()
    {
        std::unique_ptr<String> pLine = m_oCache.Take();
        pLine->Reserve(LENGTH_USUAL);
        pLine->Clear();
        return pLine;
    }

    void GiveBack(std::unique_ptr<String> pLine)
    {
        // One long message must not hold its memory for ever.
        if (pLine->GetLength() <= LENGTH_KEPT)
            m_oCache.GiveBack(std::move(pLine));
    }

private:
    ObjectCache<String> m_oCache;
};

} // namespace

template<>
constexpr ClassSource CLASS_SOURCE<LogFileProcessorConfig>{};
template<>
ClassDescription const & Described<LogFileProcessorConfig, MessageProcessorConfig>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

void LogFileProcessorConfig::DoCopy(Root const &)
{
    XAssertionFailed("false", "Unknown");
}

struct TSL_HIDDEN LogFileProcessor::Private
{
    /// The caller holds the lock.
    void Append(String & sLine);

    LogFileProcessorConfig oConfig;
    Platform::File oFile;
    bool bFailed = false;
    bool bBegun = false; ///< a line has been appended since Open
    LineCache oLines;
    OwnMutex oLock;
};

void LogFileProcessor::Private::Append(String & sLine)
{
    if (!oFile.IsOpen() || bFailed)
        return;

    // A process that was killed, or had no space, may have left a partial line.
    if (!std::exchange(bBegun, true) && Platform::EndsInTornLine(oFile))
        sLine = String("\n") + sLine;
    bFailed = Platform::Append(oFile, sLine.c_str(), sLine.GetLength()) != 0;
}

LogFileProcessor::LogFileProcessor() : m(std::make_unique<Private>()) {}

template<>
constexpr ClassSource CLASS_SOURCE<LogFileProcessor>{};
template<>
ClassDescription const & Described<LogFileProcessor, MessageProcessor>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

LogFileProcessor::~LogFileProcessor()
{
    LogFileProcessor::Close();
}

void LogFileProcessor::Process(Message const & oMessage, Result &) const
{
    std::unique_ptr<String> pLine = m->oLines.Take();
    DefaultMessageLayout().FormatMessage(oMessage, *pLine);
    *pLine << '\n';

    {
        WriteLock const oScope(m->oLock);
        m->Append(*pLine);
    }
    m->oLines.GiveBack(std::move(pLine));
}

MessageProcessorConfig const & LogFileProcessor::GetConfig() const
{
    return m->oConfig;
}

Result LogFileProcessor::SetConfig(MessageProcessorConfig const &)
{
    // Not under the lock: the bus may pass the report back to this processor, and its lock must be taken before
    // ours.
    XAssertionFailed("false", "Unknown");
}

Result LogFileProcessor::Open()
{
    WriteLock const oScope(m->oLock);
    if (m->oFile.IsOpen())
        return Result::Null();

    m->bFailed = false;
    m->bBegun = false;
    String const sName(m->oConfig.GetFileName().s_str());
    if (int const iError = Platform::OpenForAppend(sName.c_str(), m->oFile))
        return Result(ERR::eAccessDenied, "Error while opening file",
            Result(iError, sName + ": " + Platform::GetErrorText(iError), Result::eCategoryDefault));
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
