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
class Background : public tsl::ConsoleApplication
{
public:
    Background() : ConsoleApplication(new BackgroundConfig) {}

    static tsl::Application * Create() { return new Background; }

protected:
    tsl::Result PreRun() override
    {
        std::signal(SIGTERM, &AskToStop);
        std::signal(SIGINT, &AskToStop);
        return ConsoleApplication::PreRun();
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

    /// The exit code is that of PostRun, so it returns the result of Run.
    tsl::Result PostRun() override
    {
        tsl::Result const oResult = ConsoleApplication::PostRun();
        return m_oOutcome.IsError() ? m_oOutcome : oResult;
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

    tsl::Result End(ProgressMessage const & oProgress, tsl::Result const & oWork)
    {
        std::cout << "\n"
                  << oProgress.GetDone() << " of " << oProgress.GetParts() << " parts done." << std::endl;
        m_oOutcome = oWork;
        if (oWork.IsError())
            std::cerr << "background: " << oWork.GetText().s_str() << std::endl;
        else if (oProgress.GetDone() < oProgress.GetParts())
            m_oOutcome = tsl::MakeResult(tsl::ERR::eTerminated, "The work was stopped by a signal.");
        return m_oOutcome;
    }

    tsl::Result m_oOutcome;
};

} // namespace

int main(int iCount, char ** pArguments)
{
    return tsl::ConsoleApplication::Instance(&Background::Create).Main(iCount, pArguments);
}
