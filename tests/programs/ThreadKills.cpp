// Kills threads at random moments of all kinds of work, and shows after every few kills that the process is
// in good health:
//
//   ThreadKills KILLS [WORK]    KILLS times in each kind of work, or in that one
//   ThreadKills refusals        kills where none is possible at first; what Kill says, on standard output
//   ThreadKills signals         a few kills without timers, and after the program has taken the signals
//   ThreadKills trace           a few kills, ends and exceptions, for the lines that they trace

#include "../OpenThread.h"
#include "ProcessChecks.h"

#include <patternmatcher/PatternMatcher.h>
#include <tessel/ScopedLock.h>

#include <condition_variable>
#include <csignal>
#include <cstring>
#include <fstream>
#include <future>
#include <iomanip>
#include <iostream>
#include <latch>
#include <list>
#include <random>
#include <regex>
#include <semaphore>

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

using namespace tsl;
using namespace tsltest;
using namespace std::chrono_literals;

namespace
{

char const INI[] = "kills.ini";
char const LIBRARY[] = "libresolv.so.2";
std::time_t const MOMENT = 1'720'000'000;

CriticalSectionMutex g_oLock;
DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>> g_oPipe;
long g_iUnderLock[2] = {};

// What never comes: input from a socket, a connection, an event, the end of a child, a unit of a semaphore, and
// a mutex that the main thread holds.
int g_iSilence = -1;
int g_iListener = -1;
int g_iEvents = -1;
pid_t g_iChild = 0;
sem_t g_oSemaphore;
std::mutex g_oTaken;

void Compute(unsigned int iRounds = 1)
{
    static volatile unsigned int iSink = 0;
    for (unsigned int i = 0; i < 1'000 * iRounds; ++i)
        iSink = iSink + i;
}

void Allocate(std::size_t iSize)
{
    void * volatile const pMemory = std::malloc(iSize);
    std::free(pMemory);
}

void Catch(void (*fThrow)())
{
    try
    {
        fThrow();
    }
    catch (std::exception const &)
    {
    }
}

void ThrowNested()
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

void ReadLine()
{
    std::string sLine;
    std::cin.clear();
    std::getline(std::cin.seekg(0), sLine);
}

void ReadFile()
{
    char aText[1024];
    std::FILE * const pFile = std::fopen(INI, "r");
    static_cast<void>(std::fread(aText, 1, sizeof aText, pFile));
    std::fclose(pFile);
}

void MapMemory()
{
    void * const pPages = ::mmap(nullptr, 65'536, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    std::memset(pPages, 1, 65'536);
    ::munmap(pPages, 65'536);
}

void FindAddress()
{
    addrinfo * pFound = nullptr;
    if (::getaddrinfo("localhost", "80", nullptr, &pFound) == 0)
        ::freeaddrinfo(pFound);
}

unsigned int Recurse(unsigned int iDepth)
{
    unsigned int volatile const iHere = iDepth;
    return iDepth == 0 ? 1 : Recurse(iDepth - 1) + iHere;
}

/// Follows each line of the log, which is to stay small.
void Pause(Result const &)
{
    Compute(30);
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

void ReadIni()
{
    IniFile oFile;
    static_cast<void>(oFile.Open(INI));
    int iValue = 0;
    oFile.GetInt32("Chapter", "Key", iValue);
}

template<class Wait>
void WaitForEvent(Wait const & fWait)
{
    std::mutex oMutex;
    std::condition_variable oEvent;
    std::unique_lock oScope(oMutex);
    fWait(oEvent, oScope);
}

enum Kind
{
    eEnds,
    eHealth, ///< it ends, and shows after kills that no lock was lost
    eWaits,  ///< it never ends
    eWaitsForLock
};

struct Work
{
    char const * sName;
    void (*fDo)();
    Kind eKind = eEnds;
};

char g_cByte;
epoll_event g_oEvent;
fd_set g_oSet;
pollfd g_oPoll;

constexpr Work WORKS[] = {
    // What allocates and throws.
    {"compute", [] { Compute(); }},
    {"allocate", [] { Allocate(static_cast<std::size_t>(std::clock() % 100'000)); }, eHealth},
    {"allocate much", [] { Allocate(1'000'000); }, eHealth},
    {"fill containers", [] { static_cast<void>(std::list(20, std::string("a name that needs memory"))); }},
    {"throw", [] { Catch([] { throw std::runtime_error("thrown"); }); }},
    {"throw nested", [] { Catch(&ThrowNested); }, eHealth},
    // What reads and writes.
    {"print", [] { std::printf("%g %d %s\n", 1.5, 17, "text"); }, eHealth},
    {"print to a stream", [] { std::cout << "text " << 17 << ' ' << 1.5 << std::endl; }, eHealth},
    {"format", [] { std::ostringstream() << std::to_string(1.5) << ' ' << 1.5; }},
    {"flush", [] { std::fflush(nullptr); }, eHealth},
    {"read a line", &ReadLine, eHealth},
    {"file", &ReadFile, eHealth},
    {"file stream", [] { std::ostringstream() << std::ifstream(INI).rdbuf(); }, eHealth},
    {"folder", [] { static_cast<void>(CountEntries("/proc/self")); }},
    {"map memory", &MapMemory},
    // What asks the system.
    {"find an address", &FindAddress},
    {"find a user", [] { static_cast<void>(::getpwnam("root")); }, eHealth},
    {"load a library", [] { ::dlclose(::dlopen(LIBRARY, RTLD_NOW)); }, eHealth},
    {"walk the libraries",
        [] { ::dl_iterate_phdr([](auto *, auto, auto *) { return Compute(), 0; }, nullptr); }, eHealth},
    {"time", [] { std::ostringstream() << std::put_time(std::localtime(&MOMENT), "%H:%M"); }, eHealth},
    {"locale", [] { ::freelocale(::newlocale(LC_ALL_MASK, ::setlocale(LC_ALL, nullptr), nullptr)); },
        eHealth},
    {"environment", [] { ::setenv("KILLS", std::getenv("PATH") ? "1" : "0", 1); }, eHealth},
    {"random numbers", [] { std::srand(std::random_device()() + unsigned(std::rand())); }, eHealth},
    {"start a program", [] { static_cast<void>(RunToTheEnd(*std::make_unique<Child>("", 0))); }},
    {"start a thread", [] { std::thread([] { Allocate(100); }).join(); }, eHealth},
    // What is called back.
    {"qsort", [] { std::qsort(std::string(200, 'x').data(), 200, 1, [](auto, auto) { return 1; }); }},
    {"sort",
        [] {
            std::list<std::string>({"third", "first", "second"}).sort();
        }},
    {"call once", [] { std::call_once(*std::make_unique<std::once_flag>(), [] { Compute(); }); }, eHealth},
    {"signal", [] { std::raise(SIGUSR1); }},
    {"recurse", [] { Recurse(1'000); }},
    {"regular expression", [] { std::regex_match("a text of words", std::regex("(\\w+ )*\\w+")); }},
    // What the library does.
    {"log", [] { Pause(Support::DispatchDebugMessage("Kill", "a whole line", "f.cpp", 1)); }, eHealth},
    {"dispatch", [] { Pause(Support::DispatchMessage(Result(77, "text", Result::eCategoryDefault))); }},
    {"send", &Send, eHealth},
    {"hold a lock", &HoldLock},
    {"convert", [] { static_cast<void>(ConvertValues()); }, eHealth},
    {"ini file", &ReadIni, eHealth},
    {"date", [] { DateTime(DateTime::eNow).GetElements(TimeZone::eGreenwich); }, eHealth},
    {"match", [] { PatternMatcher("(\\w+ )*\\w+").Match("a text of words", 0); }},
    // What waits.
    {"sleep", [] { ::sleep(1'000); }, eWaits},
    {"sleep for", [] { std::this_thread::sleep_for(std::chrono::hours(1)); }, eWaits},
    {"sleep in the library", [] { OS::Sleep(1'000'000); }, eWaits},
    {"read", [] { static_cast<void>(::read(g_iSilence, &g_cByte, 1) == 1); }, eWaits},
    {"poll", [] { ::poll(&g_oPoll, 1, -1); }, eWaits},
    {"select", [] { ::select(g_iSilence + 1, &g_oSet, nullptr, nullptr, nullptr); }, eWaits},
    {"epoll", [] { ::epoll_wait(g_iEvents, &g_oEvent, 1, -1); }, eWaits},
    {"receive", [] { ::recv(g_iSilence, &g_cByte, 1, 0); }, eWaits},
    {"accept", [] { ::accept(g_iListener, nullptr, nullptr); }, eWaits},
    {"wait for a child", [] { ::waitpid(g_iChild, nullptr, 0); }, eWaits},
    {"wait for a mutex", [] { g_oTaken.lock(); }, eWaits},
    {"wait for an event", [] { WaitForEvent([](auto & o, auto & oScope) { o.wait(oScope); }); }, eWaits},
    {"wait in slices", [] { WaitForEvent([](auto & o, auto & oScope) { o.wait_for(oScope, 50us); }); },
        eWaits},
    {"wait for a semaphore", [] { std::counting_semaphore<>(0).acquire(); }, eWaits},
    {"wait for a system semaphore", [] { ::sem_wait(&g_oSemaphore); }, eWaits},
    {"wait for an atomic", [] { std::atomic<int>(0).wait(0); }, eWaits},
    {"wait for a future", [] { std::promise<void>().get_future().wait(); }, eWaits},
    {"wait for a lock of the library", [] { WriteLock const oScope(g_oLock); }, eWaitsForLock},
};
static_assert(std::size(WORKS) == 57);

/// Does the work for ever, or once.
class Worker : public OpenThread
{
public:
    explicit Worker(std::function<void()> fWork)
        : OpenThread(
            [this, fWork = std::move(fWork)]
            {
                do
                {
                    fWork();
                    Compute();
                } while (m_bForEver);
            })
    {
    }

    ~Worker() override { End(); }

    /// Whether it runs, and says so in every way.
    bool IsAtWork() const { return IsRunning() && GetExitCode() == 259 && GetThreadId() != 0; }

    void RunToTheEnd()
    {
        m_bForEver = false;
        Require(Run().IsOk(), "run to the end");
        while (IsRunning())
            OS::Sleep(1);
    }

private:
    std::atomic<bool> m_bForEver{true};
};

/// A library that a killed thread has loaded stays otherwise, and nobody would really load it again.
void Unload()
{
    while (void * const pLibrary = ::dlopen(LIBRARY, RTLD_NOW | RTLD_NOLOAD))
    {
        ::dlclose(pLibrary);
        ::dlclose(pLibrary);
    }
}

void CheckHealth()
{
    {
        WriteLock const oScope(g_oLock);
        Require(g_iUnderLock[0] == g_iUnderLock[1], "ended under the lock");
    }
    for (Work const & oWork : WORKS)
        if (oWork.eKind == eHealth)
            oWork.fDo();
}

double GetMilliseconds(std::chrono::steady_clock::time_point oBegin)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - oBegin).count();
}

/// Lets the thread run for a moment and kills it.
void RunAndKill(Worker & oWorker, std::mt19937 & oRandom)
{
    // Whatever hangs ends the program.
    ::alarm(60);
    Require(oWorker.Run().IsOk(), "run");

    // Some are killed before they begin to work.
    auto const oBegin = std::chrono::steady_clock::now();
    double const fDelay = oRandom() % 4 == 0 ? 0 : static_cast<double>(oRandom() % 100) / 1'000;
    while (GetMilliseconds(oBegin) < fDelay)
        std::this_thread::yield();

    while (oWorker.Kill(1).IsError())
        Require(oWorker.IsAtWork(), "refused");
    Require(!oWorker.IsRunning() && oWorker.GetExitCode() == -1 && oWorker.GetThreadId() == 0, "killed");
    Unload();
}

/// One more than the highest descriptor.
unsigned int GetEndOfDescriptors()
{
    unsigned int iEnd = 0;
    for (auto const & oEntry : std::filesystem::directory_iterator("/proc/self/fd"))
        iEnd = std::max(iEnd, static_cast<unsigned int>(std::stoul(oEntry.path().filename())) + 1);
    return iEnd;
}

void KillIn(Work const & oWork, int iKills)
{
    constexpr int KILLS_BETWEEN_CHECKS = 20;
    bool const bEnds = oWork.eKind == eEnds || oWork.eKind == eHealth;
    g_sOccupation = oWork.sName;
    if (bEnds)
        oWork.fDo();
    CheckHealth();

    std::mt19937 oRandom(7);
    Worker oWorker(oWork.fDo);
    unsigned int const iFirstLost = GetEndOfDescriptors();
    for (int i = 1; i <= iKills; ++i)
    {
        if (oWork.eKind == eWaitsForLock)
            g_oLock.Lock();
        RunAndKill(oWorker, oRandom);
        if (oWork.eKind == eWaitsForLock)
            g_oLock.Unlock();
        if (i % KILLS_BETWEEN_CHECKS == 0 || i == iKills)
        {
            CheckHealth();
            // Files of killed threads belong to nobody.
            ::close_range(iFirstLost, ~0U, 0);
        }
    }
    for (int i = 0; bEnds && i < 2; ++i)
        oWorker.RunToTheEnd();
}

void OpenSockets()
{
    int aEnds[2] = {};
    sockaddr_un oName = {};
    oName.sun_family = AF_UNIX;
    g_iListener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    Require(
        ::bind(g_iListener, reinterpret_cast<sockaddr const *>(&oName), sizeof(sa_family_t)) == 0, "bind");
    Require(::listen(g_iListener, 1) == 0, "listen");
    Require(::socketpair(AF_UNIX, SOCK_STREAM, 0, aEnds) == 0, "sockets");
    g_iSilence = aEnds[0];
    g_iEvents = ::epoll_create1(EPOLL_CLOEXEC);
    g_oPoll = {g_iSilence, POLLIN, 0};
    FD_SET(g_iSilence, &g_oSet);
}

/// Sets up what the kinds of work use. Returns a descriptor for the results, as standard output is for the
/// work.
int SetUp()
{
    std::signal(SIGUSR1, [](int) { Compute(); });
    std::signal(SIGALRM,
        [](int)
        {
            static_cast<void>(::write(STDERR_FILENO, g_sOccupation, std::strlen(g_sOccupation)));
            static_cast<void>(::write(STDERR_FILENO, ": hangs\n", 8));
            ::_exit(3);
        });

    std::ofstream(INI) << "[Chapter]\nKey=17\nText=" << std::string(400, 'x') << '\n';
    int const iResults = ::dup(STDOUT_FILENO);
    Require(std::freopen("/dev/null", "w", stdout) && std::freopen(INI, "r", stdin), "streams");
    OpenSockets();
    ::sem_init(&g_oSemaphore, 0, 0);
    g_oTaken.lock();
    g_iChild = ::fork();
    if (g_iChild == 0)
    {
        // It does not outlive its parent.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;)
            ::pause();
    }
    return iResults;
}

/// Keeps a thread from being ended until it is released.
struct Refusal
{
    char const * sName;
    void (*fKeep)(Refusal &);

    std::string sSaid = {};
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

int KeepInLoader(dl_phdr_info *, std::size_t, void * pRefusal)
{
    static_cast<Refusal *>(pRefusal)->Keep();
    return 1;
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

/// Waits for what another thread takes and gives back at the release.
void WaitFor(Refusal & oRefusal, std::function<void()> const & fTake, std::function<void()> const & fGive,
    std::function<void()> const & fWait)
{
    std::latch oTaken(1);
    auto const oHolder = std::async(std::launch::async,
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
    auto const fTake = [&] { ::pthread_mutex_lock(&oMutex); };
    WaitFor(
        oRefusal, fTake, [&] { ::pthread_mutex_unlock(&oMutex); }, fTake);
}

void Refuse(Refusal & oRefusal)
{
    Worker oWorker(
        [&]
        {
            oRefusal.fKeep(oRefusal);
            oRefusal.oGoesOn.count_down();
            OS::Sleep(1'000'000);
        });
    Require(oWorker.Run().IsOk(), "run");
    oRefusal.oKept.wait();

    auto const oBegin = std::chrono::steady_clock::now();
    Result const oResult = oWorker.Kill(1);
    bool const bInTime = GetMilliseconds(oBegin) < 2'000;
    Require(oWorker.IsAtWork(), "refused");
    oRefusal.sSaid = std::to_string(oResult.GetErrorCode()) + (bInTime ? " in time. " : " late. ")
                     + std::regex_replace(oResult.GetText().s_str(), std::regex("[0-9]+"), "N");

    // Nothing is left of the first try.
    oRefusal.oReleased.count_down();
    oRefusal.oGoesOn.wait();
    Require(oWorker.Kill(1).IsOk() && !oWorker.IsRunning(), "killed at the second try");
}

void TryRefusals()
{
    Refusal aRefusals[] = {
        {"signals", &BlockSignals},
        {"lock", &HoldLibraryLock},
        {"loader", [](Refusal & oRefusal) { ::dl_iterate_phdr(&KeepInLoader, &oRefusal); }},
        {"called back", &SleepInSort},
        {"priority", &WaitForHeir},
        {"stream", &WaitForStream},
    };
    RunOnThreads(static_cast<int>(std::size(aRefusals)), [&](int i) { Refuse(aRefusals[i]); });
    for (Refusal const & oRefusal : aRefusals)
        std::printf("%s: %s\n", oRefusal.sName, oRefusal.sSaid.c_str());
}

void TrySignals()
{
    Worker oWorker([] { Compute(); });
    auto const KillOnce = [&](char const * sWhat, auto const & fMeanwhile)
    {
        Require(oWorker.Run().IsOk(), sWhat);
        fMeanwhile();
        Require(oWorker.Kill(1).IsOk(), sWhat);
    };
    auto const fTakenSignal = [](int) { Fail("the signal of the program"); };
    auto const fTake = [&](int iSignal, auto fHandler) { return [=] { std::signal(iSignal, fHandler); }; };
    KillOnce("taken", fTake(SIGRTMAX, fTakenSignal));
    KillOnce("other signals", fTake(SIGURG, SIG_IGN));
    rlimit const oNone{0, 0};
    Require(::setrlimit(RLIMIT_SIGPENDING, &oNone) == 0, "limit");
    KillOnce("no timer", [] {});
    KillOnce("no timer, taken", fTake(SIGPWR, fTakenSignal));
}

void Trace()
{
    Worker oWorker([] { Compute(); });
    Require(oWorker.Run().IsOk() && oWorker.Run().IsError() && oWorker.Kill(1).IsOk(), "run twice");
    Worker([] { Exception::Throw(Result(77, "thrown", Result::eCategoryDefault)); }).RunToTheEnd();
    oWorker.RunToTheEnd();
    oWorker.RunToTheEnd();

    Worker * pOwn = nullptr;
    Worker oOwn([&] { Require(pOwn->Kill(1).IsError(), "killed itself"); });
    pOwn = &oOwn;
    oOwn.RunToTheEnd();
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
                KillIn(oWork, std::atoi(ppArguments[1]));
        ::kill(g_iChild, SIGKILL);
        ::dup2(iResults, STDOUT_FILENO);
    }
    std::puts("ok");
    return 0;
}
