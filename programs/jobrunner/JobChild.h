#pragma once

#include "Job.h"
#include "Processes.h"

#include <tessel/CmdLine.h>
#include <tessel/Duration.h>

#include <functional>

/// The processes of a job, and what they write.
class JobChild
{
public:
    /// The job must outlive the object.
    explicit JobChild(Job const & oJob);

    /// Starts the job's first process, which waits for Continue. After a failure there is none.
    tsl::Result Start();
    void Continue();

    /// Whether the first process has ended and its output is read, as far as it is not kept open by others for long.
    bool HasEnded();

    /// Hands over the lines that have been written since the last call, for so many milliseconds at most; false if
    /// there are none.
    using TakeLine = std::function<void(char const * sStream, tsl::String const & sLine)>;
    bool TakeLines(TakeLine const & fTake, int iDuration);

    /// Ends all processes of the job. False if there are none any more.
    bool End(Processes::Force eForce);

    /// Whether any process of the job runs.
    bool IsLeft();

    /// Gives up what is left. After it all lines can be taken.
    void Close();

    /// What it ended with.
    int GetExitCode() const { return m_oChild.GetExitCode(); }

    /// The signal that ended it, or 0.
    int GetSignal() const { return m_iSignal; }

private:
    void LookForEnd();

    Job const & m_oJob;
    tsl::CmdLine m_oChild;
    int m_iProcess = 0;
    bool m_bEnded = false;
    int m_iSignal = 0;
    tsl::Duration m_oSinceEnd;
};
