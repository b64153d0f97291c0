// Kills threads at random moments of all kinds of work, and shows after every few kills that the process is
// in good health:
//
//   ThreadKills KILLS [WORK]    KILLS times in each kind of work, or in that one; a table on standard output
//   ThreadKills refusals        kills where none is possible at first; what Kill says, on standard output
//   ThreadKills signals         a few kills without timers, and after the program has taken the signals
//   ThreadKills trace           a few kills, ends and exceptions, for the lines that they trace

#include <patternmatcher/PatternMatcher.h>
#include <tessel/ScopedLock.h>
#include <tessel/Tessel.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <iterator>
#include <latch>
#include <map>
#include <mutex>
#include <random>
#include <regex>
#include <semaphore>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <dirent.h>
#include <dlfcn.h>
#include <link.h>
#include <locale.h>
#include <netdb.h>
#include <poll.h>
#include <pthread.h>
#include <pwd.h>
#include <semaphore.h>
#include <sys/epoll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tsl;

namespace
{

CriticalSectionMutex g_oLock;
DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>> g_oPipe;
long g_iUnderLock[2] = {};
char const * g_sWork = "";
char const INI[] = "kills.ini";
char const LIBRARY[] = "libresolv.so.2";

[[noreturn]] void Fail(char const * sWhat)
{
    std::fprintf(stderr, "%s: %s\n", g_sWork, sWhat);
    std::_Exit(1);
}

void Demand(bool bHolds, char const * sWhat)
{
    if (!bHolds)
        Fail(sWhat);
}

void Compute()
{
    static volatile unsigned int iSink = 0;
    for (unsigned int i = 0; i < 1000; ++i)
        iSink = iSink + i;
}

// What allocates and throws.

void Allocate()
{
    for (std::size_t iSize = 16; iSize < 100'000; iSize = iSize * 3 / 2)
        std::free(std::malloc(iSize));
}

void AllocateMuch()
{
    delete[] new char[1'000'000];
}

void FillContainers()
{
    std::map<std::string, std::vector<int>> oMap;
    for (int i = 0; i < 20; ++i)
        oMap["a name that needs memory " + std::to_string(i)].resize(100);
}

void Throw()
{
    try
    {
        throw std::runtime_error("thrown");
    }
    catch (std::exception const &)
    {
    }
}

void ThrowNested()
{
    try
    {
        try
        {
            throw std::runtime_error("inner");
        }
        catch (...)
        {
            std::throw_with_nested(std::logic_error("outer"));
        }
    }
    catch (std::exception const & oError)
    {
        try
        {
            std::rethrow_if_nested(oError);
        }
        catch (std::exception const &)
        {
        }
    }
}

// What reads and writes.

void Print()
{
    std::printf("%g %d %s\n", 1.5, 17, "text");
}

void PrintToStream()
{
    std::cout << "text " << 17 << ' ' << 1.5 << std::endl;
}

void FormatText()
{
    std::ostringstream() << 1.5 << ' ' << 17;
    char aText[64];
    std::snprintf(aText, sizeof aText, "%g %d", 1.5, 17);
}

void Flush()
{
    std::fflush(nullptr);
}

void ReadLine()
{
    std::string sLine;
    if (!std::getline(std::cin, sLine))
    {
        std::cin.clear();
        std::cin.seekg(0);
    }
}

void UseFile()
{
    if (std::FILE * const pFile = std::fopen(INI, "r"))
    {
        char aLine[64];
        while (std::fgets(aLine, sizeof aLine, pFile))
        {
        }
        std::fclose(pFile);
    }
}

void UseFileStream()
{
    std::ifstream oFile(INI);
    for (std::string sLine; std::getline(oFile, sLine);)
    {
    }
}

void ListFolder()
{
    for (auto const & oEntry : std::filesystem::directory_iterator("/proc/self"))
        static_cast<void>(oEntry.is_directory());
}

void Map()
{
    void * const pPages = ::mmap(nullptr, 65'536, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    std::memset(pPages, 1, 65'536);
    ::munmap(pPages, 65'536);
}

// What asks the system.

void FindAddress()
{
    addrinfo * pFound = nullptr;
    if (::getaddrinfo("localhost", "80", nullptr, &pFound) == 0)
        ::freeaddrinfo(pFound);
}

void FindUser()
{
    passwd oEntry;
    passwd * pFound = nullptr;
    char aText[1024];
    ::getpwnam_r("root", &oEntry, aText, sizeof aText, &pFound);
}

void LoadLibrary()
{
    if (void * const pLibrary = ::dlopen(LIBRARY, RTLD_NOW))
        ::dlclose(pLibrary);
}

void LookAtLibraries()
{
    ::dl_iterate_phdr(
        [](dl_phdr_info *, std::size_t, void *)
        {
            Compute();
            return 0;
        },
        nullptr);
}

void UseTime()
{
    std::time_t const iNow = std::time(nullptr);
    std::tm oTime;
    ::localtime_r(&iNow, &oTime);
    char aText[64];
    std::strftime(aText, sizeof aText, "%H:%M", &oTime);
    static_cast<void>(std::mktime(&oTime));
}

void UseLocale()
{
    ::setlocale(LC_ALL, nullptr);
    locale_t const oLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    ::freelocale(oLocale);
    std::locale const oFormer = std::locale();
    static_cast<void>(std::use_facet<std::ctype<char>>(oFormer).toupper('a'));
}

void UseEnvironment()
{
    ::setenv("KILLS", "1", 1);
    static_cast<void>(std::getenv("KILLS"));
}

void UseRandom()
{
    static_cast<void>(std::rand());
    static_cast<void>(std::random_device()());
}

void StartProgram()
{
    CmdLine oChild;
    oChild.SetCommand("true");
    int iId = 0;
    static_cast<void>(oChild.Run(iId));
    static_cast<void>(oChild.WaitTermination(1'000));
}

void StartThread()
{
    std::thread([] { std::free(std::malloc(100)); }).join();
}

// What is called back.

void SortBack()
{
    int aNumbers[200];
    for (int i = 0; i < 200; ++i)
        aNumbers[i] = i * 7919 % 200;
    std::qsort(aNumbers, 200, sizeof aNumbers[0],
        [](void const * pLeft, void const * pRight)
        { return *static_cast<int const *>(pLeft) - *static_cast<int const *>(pRight); });
}

void Sort()
{
    std::vector<std::string> vTexts;
    for (int i = 0; i < 100; ++i)
        vTexts.push_back(std::to_string(i * 7919));
    std::sort(vTexts.begin(), vTexts.end());
}

void CallOnce()
{
    std::once_flag oOnce;
    std::call_once(oOnce, &Compute);
    static std::string const sText = [] { return std::string("made before the first kill"); }();
    static_cast<void>(sText.size());
}

void Signal()
{
    std::raise(SIGUSR1);
}

/// Goes deep down.
unsigned int Recur(unsigned int iDepth)
{
    unsigned int volatile const iHere = iDepth;
    return iDepth == 0 ? 1 : Recur(iDepth - 1) + iHere;
}

void UseRegex()
{
    static_cast<void>(std::regex_match("a text of words", std::regex("(\\w+ )*\\w+")));
}

// What the library does.

void Log()
{
    Support::DispatchDebugMessage("Kill", "a line that has to be whole", "ThreadKills.cpp", 1);

    // The file is to stay small.
    for (int i = 0; i < 30; ++i)
        Compute();
}

void DispatchFailure()
{
    Support::DispatchMessage(Result(77, "a failure that is logged", Result::eCategoryDefault));
    for (int i = 0; i < 30; ++i)
        Compute();
}

void Send()
{
    g_oPipe.Send("text");
    delete g_oPipe.Receive();
}

void HoldLock()
{
    // Both counters are changed or none of them.
    WriteLock const oScope(g_oLock);
    ++g_iUnderLock[0];
    Compute();
    ++g_iUnderLock[1];
}

void Convert()
{
    ValueInt32 oValue(17);
    ValueString sText("");
    oValue.GetConverter().ConvertToText(oValue, sText, oValue.GetConverter().GetDefaultLayout());
    static_cast<void>(Result(77, "text", Result::eCategoryDefault).GetText());
}

void ReadIni()
{
    IniFile oFile;
    static_cast<void>(oFile.Open(INI));
    int iValue = 0;
    Result oResult;
    static_cast<void>(oFile.GetInt32("Chapter", "Key", iValue, oResult));
}

void UseDate()
{
    static_cast<void>(DateTime(DateTime::eNow).GetElements(TimeZone::eGreenwich).GetPrecision());
}

void MatchPattern()
{
    static_cast<void>(PatternMatcher("(\\w+ )*\\w+").Match("a text of words", 0));
}

// What waits.

int MakePipe()
{
    int aEnds[2] = {};
    Demand(::pipe(aEnds) == 0, "pipe");
    return aEnds[0];
}

/// Nothing ever comes out of it.
int GetSilence()
{
    static int const iPipe = MakePipe();
    return iPipe;
}

void Read()
{
    char cByte = 0;
    static_cast<void>(::read(GetSilence(), &cByte, 1) == 1);
}

void Poll()
{
    pollfd oPoll{GetSilence(), POLLIN, 0};
    ::poll(&oPoll, 1, -1);
}

void Select()
{
    fd_set oSet;
    FD_ZERO(&oSet);
    FD_SET(GetSilence(), &oSet);
    ::select(GetSilence() + 1, &oSet, nullptr, nullptr, nullptr);
}

void WaitInEpoll()
{
    static int const iPoll = ::epoll_create1(EPOLL_CLOEXEC);
    epoll_event oEvent;
    ::epoll_wait(iPoll, &oEvent, 1, -1);
}

void Receive()
{
    static int aEnds[2] = {};
    static bool const bOpen = ::socketpair(AF_UNIX, SOCK_STREAM, 0, aEnds) == 0;
    char cByte = 0;
    static_cast<void>(bOpen && ::recv(aEnds[0], &cByte, 1, 0) == 1);
}

void Accept()
{
    static int const iSocket = []
    {
        int const iNew = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un oName = {};
        oName.sun_family = AF_UNIX;
        Demand(::bind(iNew, reinterpret_cast<sockaddr const *>(&oName), sizeof(sa_family_t)) == 0
                   && ::listen(iNew, 1) == 0,
            "socket");
        return iNew;
    }();
    ::accept(iSocket, nullptr, nullptr);
}

pid_t g_iChild = 0;

void WaitForChild()
{
    ::waitpid(g_iChild, nullptr, 0);
}

std::mutex g_oTaken;

void WaitForMutex()
{
    g_oTaken.lock();
}

void WaitForEvent()
{
    std::mutex oMutex;
    std::condition_variable oEvent;
    std::unique_lock oScope(oMutex);
    oEvent.wait(oScope, [] { return false; });
}

void WaitForEventAndTime()
{
    std::mutex oMutex;
    std::condition_variable oEvent;
    std::unique_lock oScope(oMutex);
    oEvent.wait_for(oScope, std::chrono::microseconds(50));
}

void WaitForSemaphore()
{
    std::counting_semaphore<> oSemaphore(0);
    oSemaphore.acquire();
}

void WaitForSystemSemaphore()
{
    sem_t oSemaphore;
    ::sem_init(&oSemaphore, 0, 0);
    ::sem_wait(&oSemaphore);
}

void WaitForAtomic()
{
    std::atomic<int> iValue{0};
    iValue.wait(0);
}

void WaitForFuture()
{
    std::promise<void> oPromise;
    oPromise.get_future().wait();
}

void WaitForLock()
{
    g_oLock.Lock();
    g_oLock.Unlock();
}

struct Work
{
    char const * sName;
    void (*fDo)();
    bool bWaits = false; ///< it does not come to its end
};

constexpr Work WORKS[] = {
    {"compute", &Compute},
    {"allocate", &Allocate},
    {"allocate much", &AllocateMuch},
    {"fill containers", &FillContainers},
    {"throw", &Throw},
    {"throw nested", &ThrowNested},
    {"print", &Print},
    {"print to a stream", &PrintToStream},
    {"format", &FormatText},
    {"flush", &Flush},
    {"read a line", &ReadLine},
    {"file", &UseFile},
    {"file stream", &UseFileStream},
    {"folder", &ListFolder},
    {"map memory", &Map},
    {"find an address", &FindAddress},
    {"find a user", &FindUser},
    {"load a library", &LoadLibrary},
    {"look at the libraries", &LookAtLibraries},
    {"time", &UseTime},
    {"locale", &UseLocale},
    {"environment", &UseEnvironment},
    {"random numbers", &UseRandom},
    {"start a program", &StartProgram},
    {"start a thread", &StartThread},
    {"qsort", &SortBack},
    {"sort", &Sort},
    {"call once", &CallOnce},
    {"signal", &Signal},
    {"recur", [] { Recur(1'000); }},
    {"regular expression", &UseRegex},
    {"log", &Log},
    {"dispatch", &DispatchFailure},
    {"send", &Send},
    {"hold a lock", &HoldLock},
    {"convert", &Convert},
    {"ini file", &ReadIni},
    {"date", &UseDate},
    {"match", &MatchPattern},
    {"sleep", [] { ::sleep(1'000); }, true},
    {"sleep for", [] { std::this_thread::sleep_for(std::chrono::hours(1)); }, true},
    {"sleep in the library", [] { OS::Sleep(1'000'000); }, true},
    {"read", &Read, true},
    {"poll", &Poll, true},
    {"select", &Select, true},
    {"epoll", &WaitInEpoll, true},
    {"receive", &Receive, true},
    {"accept", &Accept, true},
    {"wait for a child", &WaitForChild, true},
    {"wait for a mutex", &WaitForMutex, true},
    {"wait for an event", &WaitForEvent, true},
    {"wait for an event and time", &WaitForEventAndTime},
    {"wait for a semaphore", &WaitForSemaphore, true},
    {"wait for a system semaphore", &WaitForSystemSemaphore, true},
    {"wait for an atomic", &WaitForAtomic, true},
    {"wait for a future", &WaitForFuture, true},
    {"wait for a lock of the library", &WaitForLock, true},
};

/// Does the work for ever, or once.
class Worker : public Thread
{
public:
    explicit Worker(std::function<void()> fWork) : m_fWork(std::move(fWork)) {}
    ~Worker() override
    {
        while (Kill(1).GetErrorCode() == ERR::eTimeout)
        {
        }
    }

    bool bForEver = true;

private:
    void Process() override
    {
        do
        {
            m_fWork();
            Compute();
        } while (bForEver);
    }

    std::function<void()> m_fWork;
};

/// Does the work twice on threads that come to their ends.
void RunToTheEnd(std::function<void()> fWork)
{
    Worker oWorker(std::move(fWork));
    oWorker.bForEver = false;
    for (int i = 0; i < 2; ++i)
    {
        Demand(oWorker.Run().IsOk(), "run in the end");
        while (oWorker.IsRunning())
            OS::Sleep(1);
    }
}

/// A library that a killed thread has loaded stays otherwise, and nobody would really load it again.
void Unload()
{
    while (void * const pLibrary = ::dlopen(LIBRARY, RTLD_NOW | RTLD_NOLOAD))
    {
        ::dlclose(pLibrary);
        ::dlclose(pLibrary);
    }
}

/// Everything of which a lock may have been lost.
void CheckHealth()
{
    {
        WriteLock const oScope(g_oLock);
        Demand(g_iUnderLock[0] == g_iUnderLock[1], "ended under the lock");
    }
    for (auto const fWork :
        {&Allocate, &AllocateMuch, &ThrowNested, &Print, &PrintToStream, &Flush, &ReadLine, &UseFile,
            &UseFileStream, &FindUser, &LoadLibrary, &LookAtLibraries, &UseTime, &UseLocale, &UseEnvironment,
            &UseRandom, &StartThread, &CallOnce, &Log, &Send, &Convert, &ReadIni, &UseDate})
        fWork();
}

struct Tally
{
    long iRefusals = 0;
    double fLongest = 0; ///< milliseconds
    std::chrono::steady_clock::time_point oBegin = std::chrono::steady_clock::now();
};

double GetMilliseconds(std::chrono::steady_clock::time_point oBegin)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - oBegin).count();
}

/// Lets the thread run for a moment and kills it.
void RunAndKill(Worker & oWorker, std::mt19937 & oRandom, Tally & oTally)
{
    // Whatever hangs ends the program.
    ::alarm(60);
    Demand(oWorker.Run().IsOk(), "run");

    // Some do not even come to their begin.
    auto const oBegin = std::chrono::steady_clock::now();
    if (oRandom() % 4 > 0)
        for (double const fDelay = static_cast<double>(oRandom() % 100) / 1'000;
             GetMilliseconds(oBegin) < fDelay;)
            std::this_thread::yield();

    auto const oKill = std::chrono::steady_clock::now();
    while (oWorker.Kill(1).IsError())
    {
        ++oTally.iRefusals;
        Demand(oWorker.IsRunning() && oWorker.GetExitCode() == 259 && oWorker.GetThreadId() != 0, "refused");
    }
    oTally.fLongest = std::max(oTally.fLongest, GetMilliseconds(oKill));
    Demand(!oWorker.IsRunning() && oWorker.GetExitCode() == -1 && oWorker.GetThreadId() == 0, "killed");
    Unload();
}

void KillIn(Work const & oWork, int iKills, int iResults)
{
    g_sWork = oWork.sName;
    if (!oWork.bWaits)
        oWork.fDo();

    constexpr int KILLS_BETWEEN_CHECKS = 20;
    std::mt19937 oRandom(7);
    Tally oTally;
    Worker oWorker(oWork.fDo);
    for (int i = 1; i <= iKills; ++i)
    {
        bool const bLocked = oWork.fDo == &WaitForLock;
        if (bLocked)
            g_oLock.Lock();
        RunAndKill(oWorker, oRandom, oTally);
        if (bLocked)
            g_oLock.Unlock();
        if (i % KILLS_BETWEEN_CHECKS == 0)
            CheckHealth();
    }
    CheckHealth();
    if (!oWork.bWaits)
        RunToTheEnd(oWork.fDo);
    ::dprintf(iResults, "%-32s %6d kills, %3ld refused, longest %7.1f ms, %7.1f s\n", oWork.sName, iKills,
        oTally.iRefusals, oTally.fLongest, GetMilliseconds(oTally.oBegin) / 1'000);
}

/// Sets up what the kinds of work use, and leaves standard output to the results.
int SetUp()
{
    std::signal(SIGUSR1, [](int) { Compute(); });
    std::signal(SIGALRM,
        [](int)
        {
            static_cast<void>(::write(STDERR_FILENO, g_sWork, std::strlen(g_sWork)));
            static_cast<void>(::write(STDERR_FILENO, ": hangs\n", 8));
            ::_exit(3);
        });

    int const iResults = ::dup(STDOUT_FILENO);
    {
        std::ofstream oFile(INI);
        oFile << "[Chapter]\nKey=17\n";
        for (int i = 0; i < 50; ++i)
            oFile << "Key" << i << "=a value\n";
    }
    Demand(std::freopen("/dev/null", "w", stdout) && std::freopen(INI, "r", stdin), "streams");
    g_oTaken.lock();
    g_iChild = ::fork();
    if (g_iChild == 0)
    {
        // It does not outlive its parent.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;)
            ::pause();
    }
    static_cast<void>(GetSilence());
    return iResults;
}

/// A thread that wants to kill itself.
void KillFromWithin()
{
    Worker * pWorker = nullptr;
    Worker oWorker([&] { Demand(pWorker->Kill(1).IsError(), "killed itself"); });
    pWorker = &oWorker;
    oWorker.bForEver = false;
    Demand(oWorker.Run().IsOk(), "run to kill itself");
    while (oWorker.IsRunning())
        OS::Sleep(1);
}

/// Keeps a thread from being ended until it is released.
struct Refusal
{
    char const * sName;
    void (*fKeep)(Refusal &);

    std::latch oKept{1};
    std::latch oReleased{1};
    std::latch oGoesOn{1};

    void Keep()
    {
        oKept.count_down();
        oReleased.wait();
    }
};

void BlockSignals(Refusal & oRefusal)
{
    sigset_t oAll;
    sigset_t oFormer;
    ::sigfillset(&oAll);
    ::pthread_sigmask(SIG_SETMASK, &oAll, &oFormer);
    oRefusal.Keep();
    ::pthread_sigmask(SIG_SETMASK, &oFormer, nullptr);
}

void HoldLibraryLock(Refusal & oRefusal)
{
    WriteLock const oScope(g_oLock);
    oRefusal.Keep();
}

void HoldLoader(Refusal & oRefusal)
{
    ::dl_iterate_phdr(
        [](dl_phdr_info *, std::size_t, void * pRefusal)
        {
            static_cast<Refusal *>(pRefusal)->Keep();
            return 1;
        },
        &oRefusal);
}

void SleepInSort(Refusal & oRefusal)
{
    static Refusal * pRefusal = nullptr;
    pRefusal = &oRefusal;
    int aNumbers[] = {2, 1};
    std::qsort(aNumbers, 2, sizeof aNumbers[0],
        [](void const *, void const *)
        {
            pRefusal->oKept.count_down();
            while (!pRefusal->oReleased.try_wait())
                OS::Sleep(1);
            return 1;
        });
}

/// Does something that waits for what another thread holds until the release.
void WaitFor(Refusal & oRefusal, std::function<void()> const & fTake, std::function<void()> const & fGive,
    std::function<void()> const & fWait)
{
    std::latch oTaken(1);
    std::thread oHolder(
        [&]
        {
            fTake();
            oTaken.count_down();
            oRefusal.oReleased.wait();
            fGive();
        });
    oTaken.wait();
    oRefusal.oKept.count_down();
    fWait();
    oHolder.join();
}

void WaitForStream(Refusal & oRefusal)
{
    WaitFor(
        oRefusal, [] { ::flockfile(stdin); }, [] { ::funlockfile(stdin); }, [] { std::clearerr(stdin); });
}

void WaitForHeir(Refusal & oRefusal)
{
    pthread_mutex_t oMutex;
    pthread_mutexattr_t oKind;
    ::pthread_mutexattr_init(&oKind);
    ::pthread_mutexattr_setprotocol(&oKind, PTHREAD_PRIO_INHERIT);
    ::pthread_mutex_init(&oMutex, &oKind);
    WaitFor(
        oRefusal, [&] { ::pthread_mutex_lock(&oMutex); }, [&] { ::pthread_mutex_unlock(&oMutex); },
        [&] { ::pthread_mutex_lock(&oMutex); });
}

void Refuse(Refusal & oRefusal, std::string & sSaid)
{
    Worker oWorker(
        [&]
        {
            oRefusal.fKeep(oRefusal);
            oRefusal.oGoesOn.count_down();
            OS::Sleep(1'000'000);
        });
    Demand(oWorker.Run().IsOk(), "run");
    oRefusal.oKept.wait();

    auto const oBegin = std::chrono::steady_clock::now();
    Result const oResult = oWorker.Kill(1);
    bool const bInTime = GetMilliseconds(oBegin) < 2'000;
    Demand(oWorker.IsRunning() && oWorker.GetExitCode() == 259 && oWorker.GetThreadId() != 0, "refused");
    sSaid = std::to_string(oResult.GetErrorCode()) + (bInTime ? " in time. " : " late. ")
            + std::regex_replace(oResult.GetText().s_str(), std::regex("[0-9]+"), "N");

    // Nothing is left of the first try.
    oRefusal.oReleased.count_down();
    oRefusal.oGoesOn.wait();
    Demand(oWorker.Kill(1).IsOk() && !oWorker.IsRunning(), "killed at the second try");
}

void TryRefusals()
{
    Refusal aRefusals[] = {{"signals", &BlockSignals}, {"lock", &HoldLibraryLock}, {"loader", &HoldLoader},
        {"called back", &SleepInSort}, {"priority", &WaitForHeir}, {"stream", &WaitForStream}};
    constexpr std::size_t iCount = std::size(aRefusals);
    std::string aSaid[iCount];
    {
        std::vector<std::jthread> vThreads;
        for (std::size_t i = 0; i < iCount; ++i)
            vThreads.emplace_back([&, i] { Refuse(aRefusals[i], aSaid[i]); });
    }
    for (std::size_t i = 0; i < iCount; ++i)
        std::printf("%s: %s\n", aRefusals[i].sName, aSaid[i].c_str());
}

void TrySignals()
{
    Worker oWorker(&Compute);
    auto const KillOnce = [&](char const * sWhat, auto const & fMeanwhile)
    {
        Demand(oWorker.Run().IsOk(), sWhat);
        fMeanwhile();
        Demand(oWorker.Kill(1).IsOk(), sWhat);
    };
    KillOnce("taken",
        []
        {
            std::signal(SIGRTMAX, [](int) { Fail("the signal of the program"); });
            std::signal(SIGURG, SIG_IGN);
        });
    KillOnce("other signals", [] {});
    rlimit const oNone{0, 0};
    Demand(::setrlimit(RLIMIT_SIGPENDING, &oNone) == 0, "limit");
    KillOnce("no timer", [] {});
    KillOnce("no timer, taken", [] { std::signal(SIGPWR, [](int) { Fail("the signal of the program"); }); });
}

void Trace()
{
    Worker oWorker(&Compute);
    Demand(oWorker.Run().IsOk() && oWorker.Run().IsError() && oWorker.Kill(1).IsOk(), "run twice");
    RunToTheEnd([] { Exception::Throw(Result(77, "thrown", Result::eCategoryDefault)); });
    RunToTheEnd(&Compute);
    KillFromWithin();
}

} // namespace

int main(int iCount, char ** ppArguments)
{
    std::string_view const sMode = iCount > 1 ? ppArguments[1] : "1";
    if (sMode == "trace")
        Trace();
    else if (sMode == "refusals")
        TryRefusals();
    else if (sMode == "signals")
        TrySignals();
    else
    {
        int const iResults = SetUp();
        for (Work const & oWork : WORKS)
            if (iCount < 3 || std::string_view(ppArguments[2]) == oWork.sName)
                KillIn(oWork, std::atoi(ppArguments[1]), iResults);
        ::kill(g_iChild, SIGKILL);
        ::dup2(iResults, STDOUT_FILENO);
    }
    std::puts("ok");
    return 0;
}
