#pragma once

#include "Job.h"

#include <tessel/PlainProcessor.h>
#include <tessel/Result.h>

#include <chrono>
#include <map>
#include <mutex>
#include <string>

/// How it went with the jobs of a file the last time, in a file beside it. Takes JobStateMessages.
class RunHistory : public tsl::PlainProcessor
{
public:
    struct Past
    {
        bool bDone = false;
        int iDuration = 0; ///< ms of the last success; 0 if there is none
    };

    /// Reads what is known of the jobs of an ini file. No file, or one that cannot be read, is like an empty one.
    explicit RunHistory(tsl::String const & sIniFile);

    /// Leaves the global bus.
    ~RunHistory() override;

    Past Get(tsl::String const & sJob) const;

    /// The jobs of the plan count as not run, until they have.
    void Begin(JobPlan const & oPlan);

    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;

    /// Writes the file if something has changed and the last writing is some time ago.
    void SaveAtTimes();
    tsl::Result Save();

private:
    std::string m_sFile; // as an absolute path
    mutable std::mutex m_oLock;
    mutable std::map<std::string, Past> m_oJobs;
    mutable bool m_bChanged = false;
    std::chrono::steady_clock::time_point m_oLastSaving;
};
