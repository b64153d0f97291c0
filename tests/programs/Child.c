/* Does what its arguments say, in their order, and ends with 0. It is no program of the library, which would
   open a log file. Actions whose names do not tell:

   once FILE        ends if the file is there, else makes it
   out TEXT         writes a text to the standard output; "\n", "\r", "\t" are written so; err likewise
   line BYTES       writes a line of so many bytes
   flood BYTES      writes lines of 1 to 100,000 bytes to both streams in turn, so many bytes in sum
   daemon           leaves a child of its own behind, which keeps the streams until its input ends
   noise            the same, but the child writes until nobody reads any more
   arguments        writes all that follows, each as hexadecimal digits in a line of its own, and ends */

#define _POSIX_C_SOURCE 200809L

#include <dirent.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void Write(int iStream, char const * pText, size_t iLength)
{
    while (iLength > 0)
    {
        ssize_t const iWritten = write(iStream, pText, iLength);
        if (iWritten <= 0)
            _exit(99);
        pText += iWritten;
        iLength -= (size_t)iWritten;
    }
}

static void WriteText(int iStream, char const * sText)
{
    for (; *sText; ++sText)
    {
        char c = *sText;
        if (c == '\\')
        {
            ++sText;
            c = *sText == 'n' ? '\n' : *sText == 'r' ? '\r' : '\t';
        }
        Write(iStream, &c, 1);
    }
}

static void Flood(long iBytes)
{
    static char aLine[100001];
    memset(aLine, 'x', sizeof aLine);
    for (unsigned long iSeed = 1; iBytes > 0; iSeed = iSeed * 6364136223846793005UL + 1442695040888963407UL)
    {
        size_t const iLength = 1 + (iSeed >> 33) % 100000;
        aLine[iLength] = '\n';
        Write(iSeed >> 63 ? STDERR_FILENO : STDOUT_FILENO, aLine, iLength + 1);
        aLine[iLength] = 'x';
        iBytes -= (long)iLength + 1;
    }
}

static void LeaveDaemon(int bNoise)
{
    if (fork() != 0)
        return;

    char aBytes[4096];
    memset(aBytes, 'n', sizeof aBytes);
    if (bNoise)
        for (;;)
            Write(STDOUT_FILENO, aBytes, sizeof aBytes);
    while (read(STDIN_FILENO, aBytes, sizeof aBytes) > 0)
    {
    }
    _exit(0);
}

static void ListArguments(char ** ppArguments)
{
    for (; *ppArguments; ++ppArguments)
    {
        for (char const * pByte = *ppArguments; *pByte; ++pByte)
            printf("%02x", (unsigned int)(unsigned char)*pByte);
        printf(".\n");
    }
    fflush(stdout);
}

static void ListDescriptors(void)
{
    DIR * const pFolder = opendir("/proc/self/fd");
    for (struct dirent * pEntry; (pEntry = readdir(pFolder)) != NULL;)
        if (pEntry->d_name[0] != '.' && atoi(pEntry->d_name) != dirfd(pFolder))
            printf("%s ", pEntry->d_name);
    printf("\n");
    fflush(stdout);
    closedir(pFolder);
}

static void ListSignals(void)
{
    sigset_t oBlocked;
    sigprocmask(SIG_SETMASK, NULL, &oBlocked);
    for (int iSignal = 1; iSignal < 64; ++iSignal)
    {
        struct sigaction oAction;
        if (sigismember(&oBlocked, iSignal) == 1)
            printf("blocked %d ", iSignal);
        if (sigaction(iSignal, NULL, &oAction) == 0 && oAction.sa_handler == SIG_IGN)
            printf("ignored %d ", iSignal);
    }
    printf("\n");
    fflush(stdout);
}

static void EndIfThereIs(char const * sFile)
{
    if (access(sFile, F_OK) == 0)
        _exit(0);
    fclose(fopen(sFile, "w"));
}

static void CloseStreams(void)
{
    close(0);
    close(1);
    close(2);
}

/* Returns how many arguments were used. */
static int Do(char const * sAction, char const * sArgument)
{
    if (strcmp(sAction, "close") == 0)
        return CloseStreams(), 1;
    if (strcmp(sAction, "daemon") == 0 || strcmp(sAction, "noise") == 0)
        return LeaveDaemon(sAction[0] == 'n'), 1;
    if (strcmp(sAction, "descriptors") == 0)
        return ListDescriptors(), 1;
    if (strcmp(sAction, "signals") == 0)
        return ListSignals(), 1;
    if (strcmp(sAction, "session") == 0)
        return WriteText(STDOUT_FILENO, getsid(0) == getpid() ? "leader\\n" : "member\\n"), 1;
    while (strcmp(sAction, "hang") == 0)
        pause();

    if (strcmp(sAction, "exit") == 0)
        _exit(atoi(sArgument));
    if (strcmp(sAction, "once") == 0)
        EndIfThereIs(sArgument);
    if (strcmp(sAction, "signal") == 0)
        kill(getpid(), atoi(sArgument));
    if (strcmp(sAction, "ignore") == 0)
        signal(atoi(sArgument), SIG_IGN);
    if (strcmp(sAction, "out") == 0 || strcmp(sAction, "err") == 0)
        WriteText(sAction[0] == 'o' ? STDOUT_FILENO : STDERR_FILENO, sArgument);
    if (strcmp(sAction, "line") == 0)
        printf("%0*d\n", atoi(sArgument), 0);
    if (strcmp(sAction, "flood") == 0)
        Flood(atol(sArgument));
    return 2;
}

int main(int iCount, char ** ppArguments)
{
    for (int i = 1; i < iCount;)
    {
        if (strcmp(ppArguments[i], "arguments") == 0)
        {
            ListArguments(ppArguments + i + 1);
            break;
        }
        i += Do(ppArguments[i], i + 1 < iCount ? ppArguments[i + 1] : "");
    }
    return 0;
}
