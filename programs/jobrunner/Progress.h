#pragma once

#include "../shared/Output.h"
#include "Job.h"
#include "OutputTail.h"
#include "Style.h"
#include "TimeLeft.h"

#include <tessel/PlainProcessor.h>

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <vector>

/// Shows on the standard output how the jobs get on: a line for each job that runs, which is drawn again and again, on
/// a terminal, and a line for each change where it is none. Keeps the last lines of the jobs.
class Progress : public tsl::PlainProcessor
{
public:
    /// All must outlive the object. The output is used by it alone until End.
    Progress(JobPlan const & oPlan, TimeLeft const & oTimeLeft, Style const & oStyle, Output & oOutput);

    /// Unregisters from the global bus.
    ~Progress() override;

    /// Takes JobStateMessages and JobLineMessages.
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;

    /// Draws what has changed, if the last drawing is some time ago.
    void DrawAtTimes();

    /// Nothing is drawn any more: what follows begins on an empty line.
    void End();

    /// Whether nobody reads the output any more.
    bool IsUnread() const;

    /// The last lines of a job that has failed.
    std::string GetLastLines(std::size_t iJob) const;

private:
    using Clock = std::chrono::steady_clock;

    struct View
    {
        JobState eState = JobState::eWaiting;
        Clock::time_point oStart;
        OutputTail oTail;
    };

    void Note(std::size_t iJob, class JobStateMessage const & oMessage) const;
    void Clear();
    void Draw();
    std::string MakeJobLine(std::size_t iJob, std::size_t iWidth) const;
    std::string MakeTotal() const;
    std::string MakeTimeLeft() const;

    JobPlan const & m_oPlan;
    TimeLeft const & m_oTimeLeft;
    Style m_oStyle;
    Output & m_oOutput;
    std::map<std::string, std::size_t> m_oIndexes;

    // Lines come on the threads of the jobs.
    mutable std::mutex m_oLock;
    mutable std::vector<View> m_vViews;
    mutable std::string m_sNews; ///< lines that stay
    mutable std::size_t m_iEnded = 0;
    mutable std::size_t m_iFailed = 0;
    std::size_t m_iDrawn = 0; ///< lines that do not stay
    std::size_t m_iNameWidth = 0;
    Clock::time_point m_oLastDrawing;
};
