// Ends processes, as many as the first argument says, while eight threads of theirs are busy with all that the
// library shares between threads, and prints "ok". Each has ten seconds' time for its end. The second argument
// tells how it ends: "return" (from main), "thread" (exit from another thread), "callback" (exit from a processor
// of the bus), "destructor" (exit from the destructor of a static object), "log" (with a thread that never leaves
// the log file) or "stuck" (with one that never leaves a processor). A third one is the time for each end, in seconds,
// for a machine that is busy otherwise.

#include "../TestMachine.h"
#include "ProcessChecks.h"

#include <new>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

using namespace tsl;
using namespace tsltest;

namespace
{

constexpr int EXIT_CODE = 7;

/// What happens at the end of a process, a character each, where its parent can read it.
struct Trail
{
    char aEvents[16];
    std::atomic<unsigned int> iEvents;

    void Add(char c) { aEvents[iEvents++ % sizeof aEvents] = c; }
};

Trail & g_oTrail =
    *new (::mmap(nullptr, sizeof(Trail), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Trail{};

class Mortal
{
public:
    Mortal(char c, bool bExits) : m_c(c), m_bExits(bExits) {}
    ~Mortal()
    {
        g_oTrail.Add(m_c);
        if (m_bExits)
            std::exit(EXIT_CODE);
    }

private:
    char m_c;
    bool m_bExits;
};

/// It is never destroyed, as the threads that it may be called by never end.
class Listener : public TestProcessor
{
public:
    explicit Listener(Work fWork) : TestProcessor(std::move(fWork))
    {
        if (Support::GetAppDisp().Register(*this, {NumberMessage().GetType()}).IsError())
            std::abort();
    }

    void HandlerDestruction() const override { g_oTrail.Add('h'); }
};

class Watcher : public TaskFactoryCallBack
{
public:
    void Invoke(TaskFactory::Args const & oArgs, bool &) override
    {
        if (oArgs.GetKey() == Task::TASK_FINE && oArgs.GetAction() == FactoryBase::eAfterUnregister)
            g_oTrail.Add('u');
    }
    void HandlerDestruction() const override
    {
        g_oTrail.Add('f');
        TaskFactoryCallBack::HandlerDestruction();
    }
};

void BeBusy(TaskContext & oContext)
{
    for (;;)
    {
        static_cast<void>(UseBus(NumberMessage(7)));
        static_cast<void>(ConvertValues());
        ValueString sNull("");
        ValueInt32::Null().AddAsString(sNull);
        oContext.WriteMessage(NumberMessage(8));
        oContext.Process();
        delete oContext.ReadMessage();
        int iLevel = 0;
        Support::RegisterLogPoint(&iLevel, "Exit", "f", 1);
        static_cast<void>(Support::GetAppIni().GetInt32("a", "b", iLevel));
    }
}

int Talk(OpenTask & oTask)
{
    delete oTask.Receive(0);
    oTask.Send(NumberMessage(9));
    return Task::TR_REMAIN;
}

void StartThreads()
{
    for (int i = 0; i < 8; ++i)
        std::thread([] { BeBusy(*new TaskContext(new OneTaskMachine(&Talk))); }).detach();
}

[[noreturn]] void SleepForEver()
{
    for (;;)
        ::pause();
}

/// A log file that nobody reads: who writes to it waits.
void BlockLog()
{
    ::mkfifo("pipe", 0600);
    static_cast<void>(::open("pipe", O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    int const iWriter = ::open("pipe", O_WRONLY | O_CLOEXEC);
    for (auto const & oEntry : std::filesystem::directory_iterator("/proc/self/fd"))
    {
        std::error_code oGone; // the folder's own descriptor is listed as well
        if (std::filesystem::read_symlink(oEntry.path(), oGone).filename() == "Logfile.txt")
            ::dup2(iWriter, std::stoi(oEntry.path().filename()));
    }
}

void ExitFromProcessor(Message const &, Result &)
{
    static std::atomic<int> iCalls{0};
    if (++iCalls == 100)
        std::exit(EXIT_CODE);
}

// Once they have been told of the end, nobody else knows them, and they would count as leaks. Volatile, since
// nobody reads them.
Watcher * volatile g_pWatcher = nullptr;
Listener * volatile g_pListener = nullptr;

/// How the process ends, apart from the busy threads.
[[noreturn]] void End(std::string const & sWay, int iRun)
{
    ::alarm(g_iSeconds);
    RegisterStaticObject(new Mortal('a', false));
    RegisterStaticObject(new Mortal('b', sWay == "destructor"));

    g_pWatcher = new Watcher;
    g_pListener = new Listener(sWay == "callback" ? TestProcessor::Work(&ExitFromProcessor)
                               : sWay == "stuck"  ? [](auto &, auto &) { SleepForEver(); }
                                                  : TestProcessor::Work());
    if (sWay == "log")
        BlockLog();
    StartThreads();
    if (sWay == "callback")
        SleepForEver();

    OS::Sleep(sWay == "log" || sWay == "stuck" ? 100 : iRun % 4);
    if (sWay != "thread")
        std::exit(EXIT_CODE);
    std::thread([] { std::exit(EXIT_CODE); }).detach();
    SleepForEver();
}

/// What has to happen, in this order: the task factory loses its entry, the program's objects go, the observers of
/// the task factory and of the bus are told, unless a thread never leaves the bus.
std::string GetExpectedTrail(std::string const & sWay)
{
    std::string const sObjects = sWay == "destructor" ? "ub" : "uba";
    return sObjects + (sWay == "log" || sWay == "stuck" ? "f" : "fh");
}

void CheckEnd(pid_t iProcess, std::string const & sWay)
{
    int const iStatus = WaitForEnd(iProcess);
    std::string const sTrail(g_oTrail.aEvents, g_oTrail.iEvents % sizeof g_oTrail.aEvents);
    Require(WIFEXITED(iStatus) && WEXITSTATUS(iStatus) == EXIT_CODE,
        ("ended with status " + std::to_string(iStatus)).c_str());
    Require(sTrail == GetExpectedTrail(sWay), sTrail.c_str());
}

} // namespace

int main(int iCount, char ** pArguments)
{
    if (iCount < 3)
        return 2;

    if (iCount > 3)
        g_iSeconds = static_cast<unsigned int>(std::atoi(pArguments[3]));
    g_sOccupation = pArguments[2];
    for (int i = 0; i < std::atoi(pArguments[1]); ++i)
    {
        LimitLog(i);
        g_oTrail.iEvents = 0;
        pid_t const iProcess = ::fork();
        if (iProcess == 0)
            End(pArguments[2], i);
        CheckEnd(iProcess, pArguments[2]);
    }
    std::puts("ok");
    return 0;
}
