#pragma once

#include "Job.h"

#include <tessel/Described.h>
#include <tessel/Message.h>
#include <tessel/NamedValueIterator.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueString.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

/// The base of all messages of this program. A derived class has a default constructor and GetRows, the table of
/// its fields as the log shows them.
template<class Derived>
class JobMessage : public tsl::Described<Derived, tsl::Message>
{
public:
    using Rows = std::span<tsl::NamedGetter<Derived> const>;

    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override
    {
        return std::make_unique<tsl::FieldIterator<Derived>>(
            static_cast<Derived const &>(*this), Derived::GetRows());
    }

protected:
    void DoCopy(tsl::Root const & oSource) override
    {
        static_cast<Derived &>(*this) = static_cast<Derived const &>(oSource);
    }
};

/// A line that a job has written to one of its streams, or a part of a line that is longer than a message may show.
class JobLineMessage : public JobMessage<JobLineMessage>
{
public:
    JobLineMessage() = default;

    /// The whole line.
    static std::vector<JobLineMessage> Make(
        tsl::String const & sJob, char const * sStream, std::string const & sLine);

    static Rows GetRows();

    tsl::ValueString const & GetJob() const { return m_sJob; }

    /// As the job has written it.
    std::string const & GetBytes() const { return m_sBytes; }

    /// Whether the line ends here.
    bool IsLast() const { return m_bLast; }

private:
    tsl::ValueString m_sJob;
    tsl::ValueString m_sStream;
    tsl::ValueString m_sLine; ///< the bytes with "\0" for zero bytes, at which a text would end
    std::string m_sBytes;
    bool m_bLast = true;
};

/// A job has entered a state, with the reason.
class JobStateMessage : public JobMessage<JobStateMessage>
{
public:
    JobStateMessage() = default;
    JobStateMessage(tsl::String const & sJob, JobState eState, int iAttempts, tsl::String const & sReason);

    static Rows GetRows();

    tsl::ValueString const & GetJob() const { return m_sJob; }
    JobState GetState() const { return m_eState; }
    int GetAttempts() const { return m_iAttempts.AsInt32(); }
    tsl::ValueString const & GetReason() const { return m_sReason; }

    /// ms from the first start to the end; 0 for a job that was not started.
    void SetDuration(int iDuration) { m_iDuration = iDuration; }
    int GetDuration() const { return m_iDuration; }

private:
    int m_iDuration = 0;
    JobState m_eState = JobState::eWaiting;
    tsl::ValueString m_sJob;
    tsl::ValueString m_sState;
    tsl::ValueInt32 m_iAttempts;
    tsl::ValueString m_sReason;
};

/// What the runner tells the machine of a job that runs.
class JobCommandMessage : public JobMessage<JobCommandMessage>
{
public:
    enum Command
    {
        eCancel, ///< the job is ended
        eKill    ///< at once
    };

    JobCommandMessage() = default;
    explicit JobCommandMessage(Command eCommand, tsl::String const & sReason = tsl::String());

    static Rows GetRows();

    Command GetCommand() const { return m_eCommand; }
    tsl::ValueString const & GetReason() const { return m_sReason; }

private:
    Command m_eCommand = eCancel;
    tsl::ValueString m_sCommand;
    tsl::ValueString m_sReason;
};
