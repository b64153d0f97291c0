/* The scripted child of the kit, with more actions that need the system. It is no program of the library, which would
   open a log file. Actions whose names do not tell:

   daemon           leaves a child of its own behind, which keeps the streams until its input ends
   noise            the same, but the child writes until nobody reads any more
   arguments        writes all that follows, each as hexadecimal digits in a line of its own, and ends */

#include "Actions.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <dirent.h>
#include <unistd.h>

namespace
{

void LeaveDaemon(bool bNoise)
{
    if (fork() != 0)
        return;

    char aBytes[4096];
    std::memset(aBytes, 'n', sizeof aBytes);
    while ((bNoise ? write(STDOUT_FILENO, aBytes, sizeof aBytes) : read(STDIN_FILENO, aBytes, sizeof aBytes))
           > 0)
    {
    }
    _exit(0);
}

void ListArguments(char ** ppArguments)
{
    for (; *ppArguments; ++ppArguments)
    {
        for (char const * pByte = *ppArguments; *pByte; ++pByte)
            std::printf("%02x", static_cast<unsigned int>(static_cast<unsigned char>(*pByte)));
        std::printf(".\n");
    }
}

void ListDescriptors()
{
    DIR * const pFolder = opendir("/proc/self/fd");
    while (dirent const * const pEntry = readdir(pFolder))
        if (pEntry->d_name[0] != '.' && std::atoi(pEntry->d_name) != dirfd(pFolder))
            std::printf("%s ", pEntry->d_name);
    std::printf("\n");
    closedir(pFolder);
}

void ListSignals()
{
    sigset_t oBlocked;
    sigprocmask(SIG_SETMASK, nullptr, &oBlocked);
    for (int iSignal = 1; iSignal < 64; ++iSignal)
    {
        struct sigaction oAction;
        if (sigismember(&oBlocked, iSignal) == 1)
            std::printf("blocked %d ", iSignal);
        if (sigaction(iSignal, nullptr, &oAction) == 0 && oAction.sa_handler == SIG_IGN)
            std::printf("ignored %d ", iSignal);
    }
    std::printf("\n");
}

void CloseStreams()
{
    for (int const iStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        close(iStream);
}

/// Returns whether the action is one of these.
bool DoOwnAction(std::string_view sAction)
{
    if (sAction == "close")
        CloseStreams();
    else if (sAction == "daemon" || sAction == "noise")
        LeaveDaemon(sAction == "noise");
    else if (sAction == "descriptors")
        ListDescriptors();
    else if (sAction == "signals")
        ListSignals();
    else if (sAction == "session")
        std::puts(getsid(0) == getpid() ? "leader" : "member");
    else
        return false;
    std::fflush(stdout);
    return true;
}

} // namespace

int main(int iCount, char ** ppArguments)
{
    for (int i = 1; i < iCount;)
    {
        if (std::string_view(ppArguments[i]) == "arguments")
            return ListArguments(ppArguments + i + 1), 0;
        int const iUsed = DoOwnAction(ppArguments[i])
                              ? 1
                              : DoAction(ppArguments[i], i + 1 < iCount ? ppArguments[i + 1] : "");
        if (iUsed == 0)
            return 2;
        i += iUsed;
    }
    return 0;
}
