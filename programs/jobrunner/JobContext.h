#pragma once

#include "Bell.h"
#include "Job.h"

#include <tessel/TaskContextThread.h>

/// Runs the machine of a job on a thread of its own and rings the bell when the machine has sent something.
class JobContext : public tsl::TaskContextThread
{
public:
    /// The job and the bell must outlive the context.
    JobContext(Job const & oJob, int iRetryPause, Bell & oBell);

protected:
    void Send(tsl::Message const & oMessage) override;

private:
    Bell & m_oBell;
};
