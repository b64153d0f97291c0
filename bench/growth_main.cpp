// Measures how the time of a work grows with its size: prints it for n, 4n and 16n, and fails if it grows more than
// twice as much as promised. It takes the least processor time of several runs, so a busy machine hardly matters.

#include "growth.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>

namespace growth
{

void Require(bool bDone)
{
    if (!bDone)
    {
        std::fputs("A work did not do what it should have done.\n", stderr);
        std::exit(EXIT_FAILURE);
    }
}

} // namespace growth

using namespace growth;

namespace
{

constexpr std::array<int, 3> FACTORS = {1, 4, 16};
constexpr int RUNS = 5;

// Microseconds for the runs of a work. A work that seems to grow too much gets more.
constexpr double TIME_MAX = 2e6;

using Times = std::array<double, FACTORS.size()>;

/// The processor time of this thread in microseconds.
double GetProcessorTime()
{
    std::timespec oTime;
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &oTime);
    return static_cast<double>(oTime.tv_sec) * 1e6 + static_cast<double>(oTime.tv_nsec) / 1e3;
}

double Measure(std::function<void()> const & fRun)
{
    double const fBegin = GetProcessorTime();
    fRun();
    return GetProcessorTime() - fBegin;
}

double GetGrowth(Times const & aTimes)
{
    return aTimes.back() / aTimes.front();
}

/// The factor from the smallest to the largest size, by the promised order.
double GetPromise(Work const & oWork)
{
    double const fFactor = FACTORS.back();
    switch (oWork.eOrder)
    {
    case Order::eLinear:
        return fFactor;
    case Order::eLinearLog:
        return fFactor * (1 + std::log(fFactor) / std::log(oWork.iSize));
    case Order::eSquare:
        return fFactor * fFactor;
    }
    return 0;
}

bool KeepsPromise(Work const & oWork, Times const & aTimes)
{
    return GetGrowth(aTimes) <= 2 * GetPromise(oWork);
}

Times Measure(Work const & oWork)
{
    std::array<std::function<void()>, FACTORS.size()> aRuns;
    for (std::size_t i = 0; i < aRuns.size(); ++i)
        aRuns[i] = oWork.fPrepare(oWork.iSize * FACTORS[i]);

    Times aTimes;
    aTimes.fill(std::numeric_limits<double>::max());
    double fSpent = 0;
    for (int iRun = 0; iRun == 0 || (fSpent < TIME_MAX && (iRun < RUNS || !KeepsPromise(oWork, aTimes)));
         ++iRun)
        for (std::size_t i = 0; i < aRuns.size(); ++i)
        {
            double const fTime = Measure(aRuns[i]);
            aTimes[i] = std::min(aTimes[i], fTime);
            fSpent += fTime;
        }
    return aTimes;
}

bool Report(Work const & oWork)
{
    Times const aTimes = Measure(oWork);
    bool const bKept = KeepsPromise(oWork, aTimes);
    std::printf("%-50s %8d %10.0f %10.0f %10.0f %8.1f %8.1f%s\n", oWork.sName, oWork.iSize, aTimes[0],
        aTimes[1], aTimes[2], GetGrowth(aTimes), GetPromise(oWork), bKept ? "" : "  TOO MUCH");
    return bKept;
}

} // namespace

int main()
{
    std::printf("%-50s %8s %10s %10s %10s %8s %8s\n", "work of size n", "n", "n: us", "4n: us", "16n: us",
        "growth", "promise");
    bool bAllKept = true;
    for (auto const fGetWorks :
        {&GetBusWorks, &GetIniWorks, &GetJobWorks, &GetResultWorks, &GetTaskWorks, &GetValueWorks})
        for (Work const & oWork : fGetWorks())
            bAllKept = Report(oWork) && bAllKept;
    return bAllKept ? EXIT_SUCCESS : EXIT_FAILURE;
}
