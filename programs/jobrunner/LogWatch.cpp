#include "LogWatch.h"

#include "LogFile.h"

#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/Support.h>

#include <atomic>

namespace
{

LogFile g_oFile;
bool g_bLost = false;

// Messages of all threads.
std::atomic<std::int64_t> g_iBegun{0};
std::atomic<std::int64_t> g_iDone{0};

// At the last look: first the size was read, then how many had begun.
std::int64_t g_iLastSize = -1;
std::int64_t g_iLastBegun = 0;

} // namespace

void LogWatch::Begin()
{
    g_bLost = !g_oFile.Find();
}

void LogWatch::Dispatch(tsl::Message const & oMessage)
{
    ++g_iBegun;
    tsl::Support::DispatchMessage(oMessage);
    ++g_iDone;
}

bool LogWatch::IsLost()
{
    // If more are done than had begun, one has begun and ended since the last size was read.
    bool const bWritten = g_iDone > g_iLastBegun;
    std::int64_t iSize = 0;
    if (g_bLost || !g_oFile.GetSize(iSize))
        return g_bLost;
    g_bLost = bWritten && iSize == g_iLastSize;
    g_iLastSize = iSize;
    g_iLastBegun = g_iBegun;
    return g_bLost;
}
