#include "platform/posix/EndSignals.h"

#include "platform/posix/ThreadRecord.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

namespace tsl::Platform
{

namespace
{

bool Contains(SignalBits iSignals, int iSignal)
{
    return (iSignals >> (iSignal - 1) & 1) != 0;
}

/// Whether our handler is installed for the signal.
bool IsOurs(int iSignal)
{
    struct sigaction oPresent = {};
    return iSignal != 0 && ::sigaction(iSignal, nullptr, &oPresent) == 0 && (oPresent.sa_flags & SA_SIGINFO)
           && oPresent.sa_sigaction == &EndIfAsked;
}

/// Installs our handler for a signal that the program does not handle. SA_RESTART lets interrupted system
/// calls go on where possible, since the thread may not be able to end there.
bool InstallHandler(int iSignal)
{
    if (IsOurs(iSignal))
        return true;

    struct sigaction oPresent = {};
    if (::sigaction(iSignal, nullptr, &oPresent) != 0 || (oPresent.sa_flags & SA_SIGINFO)
        || oPresent.sa_handler != SIG_DFL)
        return false;

    struct sigaction oAction = {};
    oAction.sa_sigaction = &EndIfAsked;
    oAction.sa_flags = SA_SIGINFO | SA_RESTART;
    ::sigfillset(&oAction.sa_mask);
    return ::sigaction(iSignal, &oAction, nullptr) == 0;
}

} // namespace

void EndSignals::Choose(SignalBits iBlocked)
{
    m_iTimed = 0;
    for (int iSignal = SIGRTMAX; iSignal >= SIGRTMIN && m_iTimed == 0; --iSignal)
        if (!Contains(iBlocked, iSignal) && InstallHandler(iSignal))
            m_iTimed = iSignal;

    // The first one is ignored by default; the others are rarely used.
    m_iPlain = 0;
    for (int const iSignal : {SIGURG, SIGPWR, SIGIO, SIGVTALRM})
        if (m_iPlain == 0 && !Contains(iBlocked, iSignal) && InstallHandler(iSignal))
            m_iPlain = iSignal;
}

bool EndSignals::AreKept() const
{
    auto const IsKept = [](int iSignal) { return iSignal == 0 || IsOurs(iSignal); };
    return IsKept(m_iPlain) && IsKept(m_iTimed);
}

void EndSignals::Unblock() const
{
    sigset_t oSignals;
    ::sigemptyset(&oSignals);
    for (int const iSignal : {m_iTimed, m_iPlain})
        if (iSignal != 0)
            ::sigaddset(&oSignals, iSignal);
    ::pthread_sigmask(SIG_UNBLOCK, &oSignals, nullptr);
}

SignalBits GetBlockedSignals(unsigned long iThreadId)
{
    char aText[4096];
    std::snprintf(aText, sizeof aText, "/proc/self/task/%lu/status", iThreadId);
    int const iFile = ::open(aText, O_RDONLY | O_CLOEXEC);
    if (iFile < 0)
        return 0;
    ssize_t const iLength = ::read(iFile, aText, sizeof aText - 1);
    ::close(iFile);
    aText[std::max<ssize_t>(iLength, 0)] = '\0';
    char const sName[] = "\nSigBlk:";
    char const * const sLine = std::strstr(aText, sName);
    return sLine ? std::strtoull(sLine + sizeof sName - 1, nullptr, 16) : 0;
}

} // namespace tsl::Platform
