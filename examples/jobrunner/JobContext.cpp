#include "JobContext.h"

#include "JobMachine.h"

JobContext::JobContext(Job const & oJob, int iRetryPause, Bell & oBell)
    : TaskContextThread(new JobMachine(oJob, iRetryPause)), m_oBell(oBell)
{
}

void JobContext::Send(tsl::Message const & oMessage)
{
    TaskContextThread::Send(oMessage);
    m_oBell.Ring();
}
