#include "platform/posix/Descriptor.h"

#include "platform/ForcedEnd.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

namespace tsl::Platform
{

int MoveAboveStreams(int & iDescriptor)
{
    if (iDescriptor >= FIRST_OWN_DESCRIPTOR)
        return 0;

    int const iMoved = ::fcntl(iDescriptor, F_DUPFD_CLOEXEC, FIRST_OWN_DESCRIPTOR);
    int const iError = iMoved < 0 ? errno : 0;
    ::close(std::exchange(iDescriptor, iMoved));
    return iError;
}

int Poll(pollfd * pDescriptors, nfds_t iCount, int iTimeout, bool & bReady)
{
    WaitScope const oScope(ForcedEndState::eForTime);
    auto const oEnd = std::chrono::steady_clock::now() + std::chrono::milliseconds(iTimeout);
    for (std::chrono::nanoseconds oLeft = std::chrono::milliseconds(iTimeout);;)
    {
        auto const oSeconds = std::chrono::floor<std::chrono::seconds>(oLeft);
        timespec const oRest{oSeconds.count(), static_cast<long>((oLeft - oSeconds).count())};
        int const iResult = ::ppoll(pDescriptors, iCount, iTimeout < 0 ? nullptr : &oRest, nullptr);
        bReady = iResult > 0;
        if (iResult >= 0 || errno != EINTR)
            return iResult >= 0 ? 0 : errno;

        oLeft = std::max<std::chrono::nanoseconds>(oEnd - std::chrono::steady_clock::now(), {});
    }
}

} // namespace tsl::Platform
