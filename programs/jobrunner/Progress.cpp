#include "Progress.h"

#include "JobMessages.h"

#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/Support.h>

#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>

namespace
{

constexpr char CLEAR_LINE[] = "\r\033[K";

// A line that wraps cannot be drawn over.
constexpr std::size_t WIDTH = 79;

} // namespace

struct Progress::Private
{
    explicit Private(std::size_t iTheJobs) : iJobs(iTheJobs) {}

    std::size_t const iJobs;
    bool bTerminal = ::isatty(STDOUT_FILENO) == 1;
    std::size_t iEnded = 0;
    std::size_t iFailed = 0;
    std::set<std::string> oRunning;

    void Count(JobStateMessage const & oMessage)
    {
        std::string const & sJob = oMessage.GetJob().s_str();
        if (oMessage.GetState() == JobState::eRunning)
            oRunning.insert(sJob);
        else
            oRunning.erase(sJob);
        if (IsEnd(oMessage.GetState()))
            ++iEnded;
        if (oMessage.GetState() == JobState::eFailed)
            ++iFailed;
    }

    void Draw() const
    {
        std::ostringstream oLine;
        oLine << '[' << iEnded << '/' << iJobs << ']';
        if (iFailed > 0)
            oLine << " failed: " << iFailed;
        for (std::string const & sJob : oRunning)
            oLine << ' ' << sJob;
        std::cout << CLEAR_LINE << oLine.str().substr(0, WIDTH) << std::flush;
    }

    static void Print(JobStateMessage const & oMessage)
    {
        if (oMessage.GetState() == JobState::eWaiting || oMessage.GetState() == JobState::eStarting)
            return;
        std::cout << oMessage.GetJob().s_str() << ": " << GetName(oMessage.GetState());
        if (!oMessage.GetReason().IsEmpty())
            std::cout << " (" << oMessage.GetReason().s_str() << ")";
        std::cout << std::endl;
    }
};

Progress::Progress(std::size_t iJobs) : m(std::make_unique<Private>(iJobs)) {}

Progress::~Progress()
{
    tsl::Support::GetAppDisp().Unregister(*this);
}

void Progress::Process(tsl::Message const & oMessage, tsl::Result &) const
{
    auto const * const pState = dynamic_cast<JobStateMessage const *>(&oMessage);
    if (!pState)
        return;
    m->Count(*pState);
    if (m->bTerminal)
        m->Draw();
    else
        m->Print(*pState);
}

void Progress::End()
{
    if (m->bTerminal)
        std::cout << CLEAR_LINE << std::flush;
}
