#include "../ReportingProgram.h"
#include "Messages.h"
#include "Worker.h"

#include <tessel/Tessel.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

namespace
{

constexpr int POLL_INTERVAL = 20; // milliseconds
constexpr int BAR_WIDTH = 20;

/// Set by the signal handler, which may run on any thread and must not take a lock; hence an atomic.
std::atomic<bool> g_bStopAsked{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void AskToStop(int)
{
    g_bStopAsked = true;
}

class BackgroundConfig : public tsl::ConsoleApplicationConfig
{
};

/// Shows the progress of the work in the background until it is done or a signal ends it.
class Background : public ReportingProgram
{
public:
    Background() : ReportingProgram("background", new BackgroundConfig) {}

    static tsl::Application * Create() { return new Background; }

protected:
    tsl::Result PreRun() override
    {
        std::signal(SIGTERM, &AskToStop);
        std::signal(SIGINT, &AskToStop);
        return ReportingProgram::PreRun();
    }

    tsl::Result Run() override
    {
        ProgressMessage oProgress(0, GetNumber("Parts", 20));
        tsl::TaskContextThread oContext(new Worker(oProgress.GetParts(), GetNumber("PartDuration", 100)));
        oContext.Process();

        bool bStopping = false;
        for (;;)
        {
            if (g_bStopAsked && !std::exchange(bStopping, true))
                oContext.WriteMessage(StopMessage());

            std::unique_ptr<tsl::Message> const pMessage(oContext.ReadMessage());
            if (auto const * const pProgress = dynamic_cast<ProgressMessage const *>(pMessage.get()))
                Draw(oProgress = *pProgress);
            else if (auto const * const pEnd = dynamic_cast<tsl::ResultMessage const *>(pMessage.get()))
                return End(oProgress, pEnd->GetResult());
            else
                tsl::OS::Sleep(POLL_INTERVAL);
        }
    }

private:
    /// Reads a number from the ini file; it must not be negative.
    static int GetNumber(char const * sKey, int iDefault)
    {
        static_cast<void>(tsl::Support::GetAppIni().GetInt32("Background", sKey, iDefault));
        return std::max(0, iDefault);
    }

    static void Draw(ProgressMessage const & oProgress)
    {
        auto const iPercent = 100LL * oProgress.GetDone() / oProgress.GetParts();
        auto const iFilled = static_cast<std::size_t>(BAR_WIDTH * iPercent / 100);
        std::cout << "\r[" << std::string(iFilled, '#') << std::string(BAR_WIDTH - iFilled, ' ') << "] "
                  << iPercent << " %" << std::flush;
    }

    static tsl::Result End(ProgressMessage const & oProgress, tsl::Result const & oWork)
    {
        std::cout << "\n"
                  << oProgress.GetDone() << " of " << oProgress.GetParts() << " parts done." << std::endl;
        if (oWork.IsOk() && oProgress.GetDone() < oProgress.GetParts())
            return tsl::MakeResult(tsl::ERR::eTerminated, "The work was stopped by a signal.");
        return oWork;
    }
};

} // namespace

int main(int iCount, char ** pArguments)
{
    return Background::Start("background", &Background::Create, iCount, pArguments);
}
