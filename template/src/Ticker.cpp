#include "Ticker.h"

#include "TickMessage.h"

#include <tessel/Exception.h>
#include <tessel/ResultMessage.h>
#include <tessel/TaskFactory.h>

namespace
{

/// A refused row is an error of this program.
void ThrowIfError(tsl::Result const & oResult)
{
    if (oResult.IsError())
        throw tsl::Exception(oResult);
}

} // namespace

Tick::Tick(tsl::TaskProcessor * pParent, int iCount) : Task("Tick", pParent), m_iCount(iCount) {}

int Tick::DoProcess()
{
    if (m_iTicks == m_iCount)
        return TR_PROCEED;

    Send(TickMessage(++m_iTicks));
    return TR_REMAIN;
}

Ticker::Ticker(int iCount) : TaskProcessor("Ticker", nullptr), m_iCount(iCount)
{
    tsl::TaskFactory::Instance().Register(Tick::ID, &CreateTick);
    ThrowIfError(m_oTransitions.AddTransition(TASK_INIT, TR_PROCEED, Tick::ID));
    ThrowIfError(m_oTransitions.AddTransition(Tick::ID, TR_PROCEED, TASK_FINE));
}

int Ticker::DoProcess()
{
    int iAnswer = TR_RETURN;
    tsl::Result oOutcome;
    try
    {
        iAnswer = TaskProcessor::DoProcess();
    }
    catch (tsl::Exception const & oException)
    {
        // Report a failure of the step.
        oOutcome = oException.GetResult();
    }

    if (iAnswer != TR_REMAIN)
        Send(tsl::ResultMessage(oOutcome));
    return iAnswer;
}

tsl::Task * Ticker::CreateTick(tsl::TaskProcessor * pParent)
{
    return new Tick(pParent, static_cast<Ticker const &>(*pParent).m_iCount);
}
