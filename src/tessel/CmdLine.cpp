#include <tessel/CmdLine.h>

#include "LineSplitter.h"
#include "platform/Files.h"
#include "platform/ForcedEnd.h"
#include "platform/Pipes.h"
#include "platform/Processes.h"

#include <tessel/Exception.h>
#include <tessel/LogPoint.h>
#include <tessel/OS.h>
#include <tessel/Thread.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <new>
#include <semaphore>
#include <utility>

namespace tsl
{

static_assert(CmdLine::EXIT_CODE_ACTIVE == Platform::EXIT_CODE_ACTIVE);

namespace
{

Result ExplainPipe(int iError)
{
    if (iError != 0)
        return MakeResult(
            ERR::eSubsystem, "child process's STDOUT pipe creation failed", OS::FormatError(iError));
    return Result();
}

Result MakeStreamPipe(Platform::OwnEnd eOwn, Platform::File & oOwnEnd, Platform::File & oChildEnd)
{
    return ExplainPipe(Platform::MakePipe(eOwn, oOwnEnd, oChildEnd));
}

/// The nearest cause is the system's reason, the next one names the command. Both have the system's error number, so
/// that a program finds it in the first cause and in the last.
Result MakeStartFailure(String const & sCommand, int iError)
{
    Result oReason = OS::FormatError(iError);
    oReason.SetPrevious(MakeResult(iError, "The command is '" + sCommand + "'."));
    return MakeResult(ERR::eSubsystem, "Error while creating process.", oReason);
}

/// One end of each of the three pipes; the destructor closes them.
class StreamEnds : public Platform::StandardStreams
{
public:
    StreamEnds() = default;
    ~StreamEnds() { Close(); }
    StreamEnds(StreamEnds const &) = delete;
    StreamEnds & operator=(StreamEnds const &) = delete;

    void Close()
    {
        Platform::CloseFile(oInput);
        Platform::CloseFile(oOutput);
        Platform::CloseFile(oErrors);
    }
};

String QuoteIfNeeded(String const & sArgument)
{
    std::string const & sText = sArgument.s_str();
    if (std::none_of(sText.begin(), sText.end(), &String::IsSpace))
        return sArgument;
    return String() << '"' << sArgument << '"';
}

/// A buffer of the wanted size, or a small one if there is no memory.
class ReadBuffer
{
public:
    explicit ReadBuffer(std::size_t iSize) : m_pMemory(new (std::nothrow) char[iSize]), m_iSize(iSize) {}

    char * Get() { return m_pMemory ? m_pMemory.get() : m_aSmall; }
    std::size_t GetSize() const { return m_pMemory ? m_iSize : sizeof m_aSmall; }

private:
    std::unique_ptr<char[]> m_pMemory;
    std::size_t m_iSize;
    char m_aSmall[256];
};

/// The result of reading a stream. Unlike a Result, it needs no memory.
struct ReadOutcome
{
    Result Explain() const;

    int iError = 0;
    unsigned int iDroppedLines = 0;
};

/// How to read a stream.
struct ReadRules
{
    unsigned int iReadSize;
    LineEnd eLineEnd;
    unsigned int iUnreadLimit; ///< 0 for none
};

Result ReadOutcome::Explain() const
{
    Result oResult;
    if (iError != 0)
        oResult = MakeResult(
            ERR::eNoError, "Unknown error while reading pipe to child's stdout.", OS::FormatError(iError));
    if (iDroppedLines == 0)
        return oResult;
    return MakeResult(ERR::eSubsystem, String("Lines dropped for want of memory: ") + iDroppedLines, oResult);
}

} // namespace

struct TSL_HIDDEN CmdLine::Private
{
    class ReadStreamThread;
    class StartScope;

    /// One output stream of the child.
    struct Output
    {
        LineQueue oLines;
        std::unique_ptr<ReadStreamThread> pReader;

        // Of the last reader thread, kept until the next start.
        ReadOutcome oOutcome;
    };

    Private();
    ~Private();

    bool HasMode(int iBit) const { return (iMode & iBit) != 0; }
    Output & GetOutput(Streams eStream) { return eStream == eStdOut ? oOutput : oErrors; }

    Result Start();
    Result MakePipes(StreamEnds & oChildEnds);
    Result StartReaders();
    Result StartReader(Streams eStream);
    void StopReaders();
    bool IsReading() const;
    Result ReadUntilEof(Streams eStream);
    ReadRules GetReadRules() const;
    ReadOutcome Read(Streams eStream, ReadRules const & oRules);
    void ReadExitCode();
    void CleanUp();

    int iMode = 0;
    int iExitCode = 0;
    unsigned int iBufferSize = 1024;
    unsigned int iUnreadLimit = 0;
    String sCommand;
    String sWorkingDirectory;
    Output oOutput;
    Output oErrors;
    LineQueue oInputLines;
    Platform::Process oProcess;
    StreamEnds oOwnEnds;

    // Makes the readers stop.
    Platform::StopSignal oStop;
    std::atomic<bool> bStop{false};
};

/// Ends the child and closes everything if the start has failed half-way.
class CmdLine::Private::StartScope
{
public:
    explicit StartScope(Private & oOwner) : m_oOwner(oOwner) {}
    ~StartScope()
    {
        if (m_bStarted)
            return;
        if (m_oOwner.oProcess.IsOpen())
            Platform::EndProcess(m_oOwner.oProcess);
        m_oOwner.CleanUp();
    }
    StartScope(StartScope const &) = delete;
    StartScope & operator=(StartScope const &) = delete;

    void Keep() { m_bStarted = true; }

private:
    Private & m_oOwner;
    bool m_bStarted = false;
};

/// Reads one stream of the child to its end.
class CmdLine::Private::ReadStreamThread : public Thread
{
public:
    ReadStreamThread(CmdLine::Private & oOwner, Streams eStream)
        : m_oOwner(oOwner), m_eStream(eStream), m_oRules(oOwner.GetReadRules())
    {
    }

    /// Waits for the end of the stream.
    void Wait()
    {
        m_oEnded.acquire();
        m_oEnded.release();
    }

    // Kills the thread only if the program blocks it, for instance in a processor that receives its traces.
    ~ReadStreamThread() override
    {
        if (IsRunning())
            static_cast<void>(m_oEnded.try_acquire_for(PATIENCE));
        while (Kill(0).GetErrorCode() == ERR::eTimeout)
        {
        }
    }

protected:
    void Process() override
    {
        m_oOwner.GetOutput(m_eStream).oOutcome = m_oOwner.Read(m_eStream, m_oRules);
        m_oEnded.release();
    }

private:
    // A reader that is not blocked ends far sooner. Two blocked ones take less than the second that a destructor
    // may take.
    static constexpr std::chrono::milliseconds PATIENCE{400};

    CmdLine::Private & m_oOwner;
    Streams m_eStream;

    // A copy, since the owner's may be set while the thread runs.
    ReadRules m_oRules;
    std::binary_semaphore m_oEnded{0};
};

CmdLine::Private::Private() = default;

CmdLine::Private::~Private()
{
    CleanUp();
}

Result CmdLine::Private::MakePipes(StreamEnds & oChildEnds)
{
    Result oResult = MakeStreamPipe(Platform::OwnEnd::eRead, oOwnEnds.oOutput, oChildEnds.oOutput);
    oResult.InsertFront(MakeStreamPipe(Platform::OwnEnd::eRead, oOwnEnds.oErrors, oChildEnds.oErrors));
    oResult.InsertFront(MakeStreamPipe(Platform::OwnEnd::eWrite, oOwnEnds.oInput, oChildEnds.oInput));
    if (HasMode(eModeReaderThreads))
        oResult.InsertFront(ExplainPipe(Platform::MakeStopSignal(oStop)));
    return oResult;
}

Result CmdLine::Private::Start()
{
    StreamEnds oChildEnds;
    if (HasMode(eModeRedirect))
        if (Result const oPipes = MakePipes(oChildEnds); oPipes.IsError())
            return MakeResult(ERR::eSubsystem, "Cannot create pipe for redirection.", oPipes);

    Platform::ProcessStart const oStart{.sCommandLine = sCommand.c_str(),
        .oStreams = oChildEnds,
        .bNoWindow = HasMode(eModeNoWindow),
        .bNewConsole = HasMode(eModeNewConsole),
        .bDetached = HasMode(eModeDetached),
        .bSuspended = HasMode(eModeSuspended)};
    if (int const iError = Platform::StartProcess(oStart, oProcess))
        return MakeStartFailure(sCommand, iError);
    return HasMode(eModeReaderThreads) ? StartReaders() : Result();
}

Result CmdLine::Private::StartReaders()
{
    oOutput.oLines.SetLimit(iUnreadLimit);
    oErrors.oLines.SetLimit(iUnreadLimit);
    Result oResult = StartReader(eStdOut);
    oResult.InsertFront(StartReader(eStdErr));
    return oResult;
}

Result CmdLine::Private::StartReader(Streams eStream)
{
    auto pNew = std::make_unique<ReadStreamThread>(*this, eStream);
    Result oResult = pNew->Run();
    if (oResult.IsOk())
        GetOutput(eStream).pReader = std::move(pNew);
    return oResult;
}

void CmdLine::Private::StopReaders()
{
    bStop = true;
    oOutput.oLines.LiftLimit();
    oErrors.oLines.LiftLimit();
    Platform::SetStopSignal(oStop);
    oOutput.pReader.reset();
    oErrors.pReader.reset();
    Platform::CloseStopSignal(oStop);
    bStop = false;
}

bool CmdLine::Private::IsReading() const
{
    return (oOutput.pReader && oOutput.pReader->IsRunning())
           || (oErrors.pReader && oErrors.pReader->IsRunning());
}

Result CmdLine::Private::ReadUntilEof(Streams eStream)
{
    Output & oStream = GetOutput(eStream);
    if (oStream.pReader)
    {
        // Nobody takes lines of either stream while this call waits, so a limit would hold the child back for ever.
        oOutput.oLines.LiftLimit();
        oErrors.oLines.LiftLimit();
        oStream.pReader->Wait();
        return oStream.oOutcome.Explain();
    }

    // The reader thread of a child that has ended may have failed.
    if (Result oFailure = oStream.oOutcome.Explain(); oFailure.IsError())
        return oFailure;
    if (!oProcess.IsOpen())
        return MakeResult(ERR::eAccessDenied, "No Process starteded.");
    if (!oOwnEnds.oOutput.IsOpen())
        return MakeResult(ERR::eBadData, "No redirection aktivated");
    // As above: a limit would be waited for without end.
    ReadRules oRules = GetReadRules();
    oRules.iUnreadLimit = 0;
    return Read(eStream, oRules).Explain();
}

ReadRules CmdLine::Private::GetReadRules() const
{
    return {
        iBufferSize, HasMode(eModeLineFeeds) ? LineEnd::eLineFeed : LineEnd::eControlCharacter, iUnreadLimit};
}

ReadOutcome CmdLine::Private::Read(Streams eStream, ReadRules const & oRules)
{
    // No pipe holds more. What is in the pipe when the reader must stop is still read, but no more: a program that
    // the child has started may write without end.
    constexpr unsigned int iCapacityMax = 1024 * 1024;
    std::size_t iLastBytes = iCapacityMax;
    Platform::File const oEnd = eStream == eStdOut ? oOwnEnds.oOutput : oOwnEnds.oErrors;
    ReadBuffer oBuffer(std::min(oRules.iReadSize, iCapacityMax));
    LineQueue & oLines = GetOutput(eStream).oLines;
    LineSplitter oSplitter(
        oLines, eStream == eStdOut ? "STDOUT" : "STDERR", oRules.eLineEnd, oRules.iUnreadLimit);
    std::size_t iRead = 0;
    int iError = 0;
    do
    {
        if (oRules.iUnreadLimit != 0)
            oLines.WaitForRoom();
        iError = Platform::ReadPipe(oEnd, oStop, oBuffer.Get(), oBuffer.GetSize(), iRead);
        if (iError != 0)
            break;
        oSplitter.Take(oBuffer.Get(), iRead);
        if (bStop.load(std::memory_order_relaxed))
            iLastBytes -= std::min(iLastBytes, iRead);
    } while (iRead > 0 && iLastBytes > 0);
    oSplitter.Finish();
    return {iError, oSplitter.GetDroppedLines()};
}

void CmdLine::Private::ReadExitCode()
{
    if (int const iError = Platform::GetExitCode(oProcess, iExitCode))
        Exception::Throw(MakeResult(ERR::eSubsystem, "GetExitCodeProcess() faild.", OS::FormatError(iError)));
}

void CmdLine::Private::CleanUp()
{
    // If this thread were killed while it waits for the readers, they would use an owner that is destroyed.
    NoKillScope const oScope;

    // First: the readers use the descriptors, whose numbers may be given to others once they are closed.
    StopReaders();
    Platform::CloseProcess(oProcess);
    oOwnEnds.Close();
}

CmdLine::CmdLine() : m(std::make_shared<Private>()) {}
CmdLine::CmdLine(CmdLine const & oSource) = default;
CmdLine & CmdLine::operator=(CmdLine const & oSource) = default;
CmdLine::~CmdLine() = default;

void CmdLine::SetCommand(String const & sCommand)
{
    m->sCommand = sCommand;
}

String const & CmdLine::GetCommand() const
{
    return m->sCommand;
}

void CmdLine::SetApplication(String const & sApplication)
{
    m->sCommand = QuoteIfNeeded(sApplication);
}

void CmdLine::AddArg(String const & sArgument)
{
    String sCommand = m->sCommand;
    if (!sCommand.IsEmpty())
        sCommand << ' ';
    sCommand << QuoteIfNeeded(sArgument);
    m->sCommand = std::move(sCommand);
}

void CmdLine::SetWorkingDirectory(String const & sDirectory)
{
    m->sWorkingDirectory = sDirectory;
}

void CmdLine::SetMode(int iMode)
{
    m->iMode = iMode;
}

int CmdLine::GetMode() const
{
    return m->iMode;
}

void CmdLine::SetBufferSize(unsigned int iSize)
{
    if (iSize > 0)
        m->iBufferSize = iSize;
}

unsigned int CmdLine::GetBufferSize() const
{
    return m->iBufferSize;
}

void CmdLine::SetUnreadLimit(unsigned int iBytes)
{
    m->iUnreadLimit = iBytes;
}

unsigned int CmdLine::GetUnreadLimit() const
{
    return m->iUnreadLimit;
}

Result CmdLine::Run(int & iProcessId)
{
    iProcessId = 0;
    if (IsRunning())
        return MakeResult(ERR::eNotAllowed, "Process already started.");
    if (m->sCommand.GetLength() >= COMMAND_LENGTH_END)
        return MakeResult(
            ERR::eBadData, "Invalid CommandLine. CommandLine exceeds maximal length of 1024 chars.");
    if (!m->HasMode(eModeRedirect))
        m->iMode &= ~eModeReaderThreads;
    m->CleanUp();
    m->oOutput.oOutcome = {};
    m->oErrors.oOutcome = {};

    Private::StartScope oScope(*m);
    Result oResult = m->Start();
    if (oResult.IsOk())
    {
        oScope.Keep();
        iProcessId = m->oProcess.iProcessId;
    }
    return oResult;
}

bool CmdLine::IsRunning() const
{
    if (!m->oProcess.IsOpen())
        return false;

    m->ReadExitCode();
    return m->iExitCode == EXIT_CODE_ACTIVE || m->IsReading();
}

int CmdLine::GetExitCode() const
{
    return m->iExitCode;
}

int CmdLine::WaitTermination(int iTimeout) const
{
    bool bEnded = false;
    if (!m->oProcess.IsOpen() || Platform::WaitForProcess(m->oProcess, iTimeout, bEnded) != 0)
        return eWaitFailed;
    if (!bEnded)
        return eWaitTimeout;

    m->ReadExitCode();
    m->CleanUp();
    return eWaitTerminated;
}

int CmdLine::WaitTermination() const
{
    return WaitTermination(-1);
}

Result CmdLine::Kill(unsigned int iExitCode)
{
    if (!IsRunning())
        return MakeResult(ERR::eNotAllowed, "Process not started or already terminated.");
    if (int const iError = Platform::KillProcess(m->oProcess, static_cast<int>(iExitCode)))
        return MakeResult(
            ERR::eSubsystem, "CmdLine::Terminate : TerminateProcess() faild.", OS::FormatError(iError));
    return Result();
}

String * CmdLine::ReceiveStdOut()
{
    return m->oOutput.oLines.Receive();
}

String * CmdLine::ReceiveStdErr()
{
    return m->oErrors.oLines.Receive();
}

void CmdLine::SendStdIn(String const & sLine)
{
    m->oInputLines.Send(sLine);
}

Result CmdLine::ReadStdStreamUntilEof(Streams eStream)
{
    return m->ReadUntilEof(eStream);
}

Result CmdLine::ReadStdStreamUntilEof(Streams eStream, std::vector<String> & vLines)
{
    Result oResult = m->ReadUntilEof(eStream);
    for (LineQueue & oLines = m->GetOutput(eStream).oLines; !oLines.IsEmpty();)
    {
        // Allocate first, so that no line is lost if there is no memory for it.
        vLines.emplace_back();
        vLines.back() = std::move(*std::unique_ptr<String>(oLines.Receive()));
    }
    return oResult;
}

} // namespace tsl
