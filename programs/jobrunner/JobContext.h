#pragma once

#include "Bell.h"
#include "Job.h"

#include <tessel/TaskContextThread.h>

class StartRoom;

/// Runs the machine of a job on a thread of its own and rings when it has sent something.
class JobContext : public tsl::TaskContextThread
{
public:
    /// All must outlive the context.
    JobContext(Job const & oJob, int iRetryPause, StartRoom & oRoom, Bell & oBell);

protected:
    void Send(tsl::Message const & oMessage) override;

private:
    Bell & m_oBell;
};
