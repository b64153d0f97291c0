#include "JobChild.h"

#include <memory>

namespace
{

// Two streams of each job at most, so that many jobs fit into the memory as well.
constexpr unsigned int UNREAD_LIMIT = 64 * 1024;
constexpr unsigned int READ_SIZE = 16 * 1024;

// What a job leaves behind may keep its streams open. Its last words are waited for that long.
constexpr int PATIENCE = 200; // ms

// For a process that has ended or was killed.
constexpr int END_TIMEOUT = 1000; // ms

// A session of its own, so that all processes of the job can be told from others; not continued before its readers
// are there and nobody wants to stop.
constexpr int MODE = tsl::CmdLine::eModeDetached | tsl::CmdLine::eModeSuspended;
constexpr int TAKE_OUTPUT =
    tsl::CmdLine::eModeRedirect | tsl::CmdLine::eModeReaderThreads | tsl::CmdLine::eModeLineFeeds;

} // namespace

JobChild::JobChild(Job const & oJob) : m_oJob(oJob)
{
    m_oChild.SetUnreadLimit(UNREAD_LIMIT);
    m_oChild.SetBufferSize(READ_SIZE);
}

tsl::Result JobChild::Start()
{
    m_bEnded = false;
    m_iSignal = 0;
    m_oChild.SetCommand(m_oJob.sLauncher);
    m_oChild.SetMode(m_oJob.bQuiet ? MODE : MODE | TAKE_OUTPUT);
    return m_oChild.Run(m_iProcess);
}

void JobChild::Continue()
{
    Processes::Continue(m_iProcess);
}

bool JobChild::HasEnded()
{
    LookForEnd();
    return m_bEnded && (!m_oChild.IsRunning() || m_oSinceEnd.GetDuration() >= PATIENCE);
}

bool JobChild::TakeLines(TakeLine const & fTake, int iDuration)
{
    tsl::Duration oTime;
    oTime.Start();
    bool bAny = false;
    do
    {
        std::unique_ptr<tsl::String> const pOutput(m_oChild.ReceiveStdOut());
        std::unique_ptr<tsl::String> const pError(m_oChild.ReceiveStdErr());
        if (!pOutput && !pError)
            break;
        if (pOutput)
            fTake("out", *pOutput);
        if (pError)
            fTake("err", *pError);
        bAny = true;
    } while (oTime.GetDuration() < iDuration);
    return bAny;
}

bool JobChild::End(Processes::Force eForce)
{
    LookForEnd();
    bool const bLeft = Processes::EndJob(m_iProcess, eForce);
    return bLeft || !m_bEnded;
}

bool JobChild::IsLeft()
{
    return End(Processes::Force::eNone);
}

void JobChild::Close()
{
    LookForEnd();
    // Only of a process that nobody can end, which runs on.
    static_cast<void>(m_oChild.WaitTermination(END_TIMEOUT));
}

/// Before the child is waited for, since its exit code does not tell a signal from an exit code of a shell.
void JobChild::LookForEnd()
{
    if (m_bEnded || !Processes::HasEnded(m_iProcess, m_iSignal))
        return;
    m_bEnded = true;
    m_oSinceEnd.Start();
}
