#include "Worker.h"

#include "Messages.h"

#include <tessel/Exception.h>
#include <tessel/ResultMessage.h>
#include <tessel/Support.h>
#include <tessel/TaskFactory.h>

#include <memory>

namespace
{

/// A refused row is an error of this program.
void ThrowIfError(tsl::Result const & oResult)
{
    if (oResult.IsError())
        throw tsl::Exception(oResult);
}

} // namespace

Work::Work(tsl::TaskProcessor * pParent, int iParts, int iPartDuration)
    : Task("Work", pParent), m_iParts(iParts), m_iPartDuration(iPartDuration)
{
}

int Work::DoProcess()
{
    int iDone = 0;
    while (iDone < m_iParts && !std::unique_ptr<tsl::Message>(Receive(0)))
    {
        Wait(m_iPartDuration, false); // the work itself
        ++iDone;
        Send(ProgressMessage(iDone, m_iParts));
    }
    return TR_PROCEED;
}

Worker::Worker(int iParts, int iPartDuration)
    : TaskProcessor("Worker", nullptr), m_iParts(iParts), m_iPartDuration(iPartDuration)
{
    tsl::TaskFactory::Instance().Register(Work::ID, &CreateWork);
    ThrowIfError(m_oTransitions.AddTransition(TASK_INIT, TR_PROCEED, Work::ID));
    ThrowIfError(m_oTransitions.AddTransition(Work::ID, TR_PROCEED, TASK_FINE));
}

int Worker::DoProcess()
{
    int iAnswer = TR_RETURN;
    tsl::Result oOutcome;
    try
    {
        iAnswer = TaskProcessor::DoProcess();
    }
    catch (tsl::Exception const & oException)
    {
        oOutcome = oException.GetResult();
        tsl::Support::DispatchMessage(oOutcome); // to the log file
    }

    // Send it also after a failure, or the main thread would wait for ever. Send it last, since that thread then
    // deletes the context.
    Send(tsl::ResultMessage(oOutcome));
    return iAnswer;
}

tsl::Task * Worker::CreateWork(tsl::TaskProcessor * pParent)
{
    auto const & oWorker = static_cast<Worker const &>(*pParent);
    return new Work(pParent, oWorker.m_iParts, oWorker.m_iPartDuration);
}
