#include "JobContext.h"

#include "JobMachine.h"

JobContext::JobContext(Job const & oJob, int iRetryPause, StartRoom & oRoom, Bell & oBell)
    : TaskContextThread(new JobMachine(oJob, iRetryPause, oRoom)), m_oBell(oBell)
{
}

void JobContext::Send(tsl::Message const & oMessage)
{
    // Once a job's last message is in the queue, the runner may delete the context at any moment.
    Bell & oBell = m_oBell;
    TaskContextThread::Send(oMessage);
    oBell.Ring();
}
