#include <tessel/CmdLine.h>

#include "ForcedEnd.h"
#include "LineSplitter.h"
#include "Platform.h"

#include <tessel/Exception.h>
#include <tessel/LogPoint.h>
#include <tessel/OS.h>
#include <tessel/Thread.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <semaphore>
#include <utility>

namespace tsl
{

static_assert(CmdLine::EXIT_CODE_ACTIVE == Platform::EXIT_CODE_ACTIVE);

namespace
{

Result MakeStreamPipe(Platform::OwnEnd eOwn, Platform::File & oOwnEnd, Platform::File & oChildEnd)
{
    if (int const iError = Platform::MakePipe(eOwn, oOwnEnd, oChildEnd))
        return MakeResult(
            ERR::eSubsystem, "child process's STDOUT pipe creation failed", OS::FormatError(iError));
    return Result();
}

/// One end each of the three pipes, closed with the object.
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

} // namespace

struct TSL_HIDDEN CmdLine::Private
{
    class ReadStreamThread;

    Private();
    ~Private();

    bool HasMode(int iBit) const { return (iMode & iBit) != 0; }
    LinePipe & GetLines(Streams eStream) { return eStream == eStdOut ? oOutLines : oErrorLines; }

    Result MakePipes(StreamEnds & oChildEnds);
    Result StartReaders();
    Result StartReader(Streams eStream, std::unique_ptr<ReadStreamThread> & pReader);
    void StopReaders();
    bool IsReading() const;
    Result ReadUntilEof(Streams eStream, unsigned int iReadSize);
    void ReadExitCode();
    void CleanUp();

    int iMode = 0;
    int iExitCode = 0;
    unsigned int iBufferSize = 1024;
    String sCommand;
    String sWorkingDirectory;
    LinePipe oOutLines;
    LinePipe oErrorLines;
    LinePipe oInputLines;
    Platform::Process oProcess;
    StreamEnds oOwnEnds;

    // A pipe that carries nothing: its closing ends the readers.
    Platform::File oStop;
    Platform::File oStopTrigger;
    std::atomic<bool> bStop{false};
    std::unique_ptr<ReadStreamThread> pOutReader;
    std::unique_ptr<ReadStreamThread> pErrorReader;
};

/// Reads one stream of the child to its end.
class CmdLine::Private::ReadStreamThread : public Thread
{
public:
    ReadStreamThread(CmdLine::Private & oOwner, Streams eStream)
        : m_oOwner(oOwner), m_eStream(eStream), m_iReadSize(oOwner.iBufferSize)
    {
    }

    // By force only if the program keeps the thread from ending, for instance in a processor of its lines.
    ~ReadStreamThread() override
    {
        if (IsRunning())
            static_cast<void>(m_oEnded.try_acquire_for(PATIENCE));
        static_cast<void>(Kill(0));
    }

protected:
    void Process() override
    {
        // Nobody can be told how the reading has ended.
        static_cast<void>(m_oOwner.ReadUntilEof(m_eStream, m_iReadSize));
        m_oEnded.release();
    }

private:
    // A reader that nobody keeps ends far sooner. Two of them that are kept stay below the second in which a
    // destructor is to return.
    static constexpr std::chrono::milliseconds PATIENCE{400};

    CmdLine::Private & m_oOwner;
    Streams m_eStream;

    // Not the owner's, which may be set while the thread runs.
    unsigned int m_iReadSize;
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
        oResult.InsertFront(MakeStreamPipe(Platform::OwnEnd::eRead, oStop, oStopTrigger));
    return oResult;
}

Result CmdLine::Private::StartReaders()
{
    Result oResult = StartReader(eStdOut, pOutReader);
    oResult.InsertFront(StartReader(eStdErr, pErrorReader));
    return oResult;
}

Result CmdLine::Private::StartReader(Streams eStream, std::unique_ptr<ReadStreamThread> & pReader)
{
    auto pNew = std::make_unique<ReadStreamThread>(*this, eStream);
    Result oResult = pNew->Run();
    if (oResult.IsOk())
        pReader = std::move(pNew);
    return oResult;
}

void CmdLine::Private::StopReaders()
{
    bStop = true;
    Platform::CloseFile(oStopTrigger);
    pOutReader.reset();
    pErrorReader.reset();
    Platform::CloseFile(oStop);
    bStop = false;
}

bool CmdLine::Private::IsReading() const
{
    return (pOutReader && pOutReader->IsRunning()) || (pErrorReader && pErrorReader->IsRunning());
}

Result CmdLine::Private::ReadUntilEof(Streams eStream, unsigned int iReadSize)
{
    if (!oProcess.IsOpen())
        return MakeResult(ERR::eAccessDenied, "No Process starteded.");
    Platform::File const oEnd = eStream == eStdOut ? oOwnEnds.oOutput : oOwnEnds.oErrors;
    if (!oEnd.IsOpen())
        return MakeResult(ERR::eBadData, "No redirection aktivated");

    // A pipe holds no more than that. What it holds when the reading is to stop is still read; somebody
    // may write without end.
    constexpr unsigned int iCapacityMax = 1024 * 1024;
    std::size_t iLastBytes = iCapacityMax;
    std::vector<char> vBuffer(std::min(iReadSize, iCapacityMax));
    LineSplitter oSplitter(GetLines(eStream), eStream == eStdOut ? "STDOUT" : "STDERR");
    std::size_t iRead = 0;
    do
    {
        if (int const iError = Platform::ReadPipe(oEnd, oStop, vBuffer.data(), vBuffer.size(), iRead))
            return MakeResult(ERR::eNoError, "Unknown error while reading pipe to child's stdout.",
                OS::FormatError(iError));
        oSplitter.Take(vBuffer.data(), iRead);
        if (bStop.load(std::memory_order_relaxed))
            iLastBytes -= std::min(iLastBytes, iRead);
    } while (iRead > 0 && iLastBytes > 0);
    return Result();
}

void CmdLine::Private::ReadExitCode()
{
    if (int const iError = Platform::GetExitCode(oProcess, iExitCode))
        Exception::Throw(MakeResult(ERR::eSubsystem, "GetExitCodeProcess() faild.", OS::FormatError(iError)));
}

void CmdLine::Private::CleanUp()
{
    // A thread that is killed while it waits for the readers would leave them behind with an owner that goes.
    HoldScope const oScope;

    // First, since they use the ends, whose numbers others may get.
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

    StreamEnds oChildEnds;
    if (m->HasMode(eModeRedirect))
    {
        Result const oPipes = m->MakePipes(oChildEnds);
        if (oPipes.IsError())
        {
            m->CleanUp();
            return MakeResult(ERR::eSubsystem, "Cannot create pipe for redirection.", oPipes);
        }
    }

    Platform::ProcessStart const oStart{
        m->sCommand.c_str(), oChildEnds, m->HasMode(eModeDetached), m->HasMode(eModeSuspended)};
    if (int const iError = Platform::StartProcess(oStart, m->oProcess))
    {
        m->CleanUp();
        return MakeResult(ERR::eSubsystem, "Error while creating process.", OS::FormatError(iError));
    }
    iProcessId = m->oProcess.iProcessId;
    return m->HasMode(eModeReaderThreads) ? m->StartReaders() : Result();
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
    return m->oOutLines.Receive();
}

String * CmdLine::ReceiveStdErr()
{
    return m->oErrorLines.Receive();
}

void CmdLine::SendStdIn(String const & sLine)
{
    m->oInputLines.Send(sLine);
}

Result CmdLine::ReadStdStreamUntilEof(Streams eStream)
{
    return m->ReadUntilEof(eStream, m->iBufferSize);
}

Result CmdLine::ReadStdStreamUntilEof(Streams eStream, std::vector<String> & vLines)
{
    Result oResult = m->ReadUntilEof(eStream, m->iBufferSize);
    while (std::unique_ptr<String> const pLine{m->GetLines(eStream).Receive()})
        vLines.push_back(std::move(*pLine));
    return oResult;
}

} // namespace tsl
