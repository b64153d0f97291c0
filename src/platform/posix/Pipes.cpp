#include "platform/Pipes.h"

#include "platform/posix/Descriptor.h"

#include <cerrno>
#include <cstdint>
#include <iterator>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tsl::Platform
{

namespace
{

int GetHandle(StopSignal const & oSignal)
{
    return static_cast<int>(oSignal.iHandle);
}

} // namespace

int MakePipe(OwnEnd eOwn, File & oOwnEnd, File & oOtherEnd)
{
    int aEnds[2];
    if (::pipe2(aEnds, O_CLOEXEC) != 0)
        return errno;

    int & iOwn = aEnds[eOwn == OwnEnd::eRead ? 0 : 1];
    int & iOther = aEnds[eOwn == OwnEnd::eRead ? 1 : 0];
    int const iOwnError = MoveAboveStreams(iOwn);
    int const iError = iOwnError != 0 ? iOwnError : MoveAboveStreams(iOther);
    oOwnEnd = {iOwn, true};
    oOtherEnd = {iOther, true};
    if (iError != 0)
    {
        CloseFile(oOwnEnd);
        CloseFile(oOtherEnd);
        return iError;
    }

    // ReadPipe tries to read and then waits in Poll, so that it can be stopped. The child's end keeps
    // blocking.
    if (eOwn == OwnEnd::eRead)
        ::fcntl(iOwn, F_SETFL, O_NONBLOCK);
    return 0;
}

int MakeStopSignal(StopSignal & oSignal)
{
    int iHandle = ::eventfd(0, EFD_CLOEXEC);
    int const iError = iHandle < 0 ? errno : MoveAboveStreams(iHandle);
    oSignal.iHandle = iHandle;
    return iError;
}

void SetStopSignal(StopSignal const & oSignal)
{
    // Nobody reads it, so it stays set. It fails only if it is set as often as a number of 64 bits can count.
    std::uint64_t const iOnce = 1;
    if (oSignal.IsOpen())
        static_cast<void>(::write(GetHandle(oSignal), &iOnce, sizeof iOnce) > 0);
}

void CloseStopSignal(StopSignal & oSignal)
{
    if (oSignal.IsOpen())
        ::close(GetHandle(std::exchange(oSignal, StopSignal())));
}

int ReadPipe(
    File const & oPipe, StopSignal const & oStop, char * pBytes, std::size_t iCount, std::size_t & iRead)
{
    for (iRead = 0;;)
    {
        int const iError = Read(oPipe, pBytes, iCount, iRead);
        if (iError != EAGAIN)
            return iError;

        pollfd aPolls[] = {{GetHandle(oPipe), POLLIN, 0}, {GetHandle(oStop), POLLIN, 0}};
        bool bReady = false;
        int const iPollError = Poll(aPolls, std::size(aPolls), -1, bReady);
        if (iPollError != 0 || aPolls[0].revents == 0)
            return iPollError;
    }
}

} // namespace tsl::Platform
