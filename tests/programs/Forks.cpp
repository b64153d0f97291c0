// Forks children, as many as the first argument says, while eight threads are busy with all that the library
// shares between threads, and prints "ok". Each child does everything itself, with ten seconds' time for it. The
// second argument tells where the forks come from: "main", "threads" (two of them at once), "callback" (a
// processor of the bus), or "fresh" (a process whose threads use everything for the first time).

#include "../TestMessages.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

using namespace tsl;

// Children of a process with threads may start threads, whatever the sanitizer thinks of that.
extern "C" char const * __tsan_default_options();
extern "C" char const * __tsan_default_options() // NOLINT(bugprone-reserved-identifier)
{
    return "die_after_fork=0";
}

namespace
{

constexpr int BUSY_THREADS = 8;

unsigned int g_iSeconds = 10;
std::atomic<bool> g_bStop{false};

void Demand(bool bHolds, char const * sWhat)
{
    if (bHolds)
        return;
    std::fprintf(stderr, "%s\n", sWhat);
    std::_Exit(1);
}

void Dispatch()
{
    tsltest::NumberMessage oMessage(7);
    Demand(Support::DispatchMessage(oMessage).IsOk(), "message");
    Demand(Support::DispatchDebugMessage("Fork", "a line", "f", 1).IsOk(), "line");
    Demand(
        Support::DispatchMessage(Result(1, "r", Result(2, "s", Result::eCategoryDefault))).IsOk(), "result");
}

void Convert()
{
    String sText;
    DateTime(86400, Time::ePrecisionSecond).Format("%d.%m.%Y %Z", sText, TimeZone::eGreenwich);
    Demand(std::strncmp(sText.c_str(), "02.01.1970", 10) == 0, "date");
    DateTimeElements oElements(2024, 1, 29, TimeZone::GetLocal());
    DateTime(oElements).GetElements(oElements);
    Demand(oElements.m_iDay == 29, "elements");

    ValueFloat32 oFloat;
    Demand(oFloat.GetConverter().ConvertFromText(ValueString("1.5"), oFloat).IsOk(), "float");
    ValueString sFloat;
    oFloat.AddAsString(sFloat);
    Demand(std::strncmp(sFloat.c_str(), "1.5", 3) == 0, "float's text");
    Demand(OS::FormatError(ENOENT).IsError(), "error");
}

void StartChild()
{
    CmdLine oChild;
    oChild.SetMode(CmdLine::eModeRedirect | CmdLine::eModeReaderThreads);
    oChild.SetApplication(std::filesystem::read_symlink("/proc/self/exe").replace_filename("Child").string());
    oChild.AddArg("out");
    oChild.AddArg("x\\n");
    int iProcessId = 0;
    Demand(oChild.Run(iProcessId).IsOk(), "start");
    Demand(oChild.WaitTermination() == CmdLine::eWaitTerminated, "wait");
    std::unique_ptr<String> const pLine(oChild.ReceiveStdOut());
    Demand(pLine && *pLine == "x", "child's line");
}

/// A thread of the parent is none of the child, and its object knows that.
class Sleeper : public Thread
{
public:
    void Process() override { OS::Sleep(1'000'000); }
};

void DoEverything()
{
    Dispatch();
    Convert();
    tsltest::TestProcessor const oProcessor;
    MessageDispatcher oDispatcher;
    Demand(oDispatcher.Register(oProcessor, {Message::GetBaseType()}).IsOk(), "register");
    TaskFactory::Instance().Register(4711, [](TaskProcessor *) -> Task * { return nullptr; });
    TaskFactory::Instance().Unregister(4711);
}

void Live(Thread & oThreadOfParent)
{
    ::alarm(g_iSeconds);
    DoEverything();
    StartChild();
    Demand(!oThreadOfParent.IsRunning(), "thread of the parent");
    Demand(oThreadOfParent.Run().IsOk(), "new thread");
    Demand(oThreadOfParent.Kill(0).IsOk(), "kill");
    std::_Exit(0);
}

void Fork(Thread & oThreadOfParent)
{
    pid_t const iChild = ::fork();
    if (iChild == 0)
        Live(oThreadOfParent);

    int iStatus = 0;
    while (::waitpid(iChild, &iStatus, 0) < 0 && errno == EINTR)
    {
    }
    if (iChild < 0 || iStatus != 0)
    {
        std::fprintf(stderr, "child %d: status %x\n", iChild, static_cast<unsigned int>(iStatus));
        std::_Exit(1);
    }
}

void BeBusy()
{
    while (!g_bStop)
        DoEverything();
}

std::vector<std::thread> StartThreads(void (*fWork)())
{
    std::vector<std::thread> vThreads;
    for (int i = 0; i < BUSY_THREADS; ++i)
        vThreads.emplace_back(fWork);
    return vThreads;
}

void Join(std::vector<std::thread> & vThreads)
{
    g_bStop = true;
    for (std::thread & oThread : vThreads)
        oThread.join();
}

/// Sometimes, so that the log of all that the busy threads do does not fill the disk.
void CutLog(int i)
{
    if (i % 16 == 0)
        std::filesystem::resize_file("Logfile.txt", 0);
}

void ForkFromHere(int iCount)
{
    Sleeper oSleeper;
    Demand(oSleeper.Run().IsOk(), "sleeper");
    for (int i = 0; i < iCount; ++i)
    {
        CutLog(i);
        Fork(oSleeper);
    }
}

void ForkFromThreads(int iCount)
{
    std::thread oFirst(ForkFromHere, iCount / 2);
    std::thread oSecond(ForkFromHere, iCount / 2);
    oFirst.join();
    oSecond.join();
}

void ForkFromCallBack(int iCount)
{
    Sleeper oSleeper;
    Demand(oSleeper.Run().IsOk(), "sleeper");
    std::thread::id const oThis = std::this_thread::get_id();
    tsltest::BusListener const oListener(Message::GetBaseType(),
        [&](Message const & oMessage, Result &)
        {
            auto const * const pNumber = dynamic_cast<tsltest::NumberMessage const *>(&oMessage);
            if (pNumber && pNumber->iNumber == 1 && oThis == std::this_thread::get_id())
                Fork(oSleeper);
        });
    for (int i = 0; i < iCount; ++i)
    {
        CutLog(i);
        Support::DispatchMessage(tsltest::NumberMessage(1));
    }
}

/// A process of its own each time, in which nothing has been used yet.
void ForkFresh(int iCount)
{
    for (int i = 0; i < iCount; ++i)
    {
        CutLog(i);
        pid_t const iFresh = ::fork();
        if (iFresh == 0)
        {
            ::alarm(3 * g_iSeconds);
            std::vector<std::thread> vThreads = StartThreads([] { DoEverything(); });
            pid_t aChildren[4];
            for (pid_t & iChild : aChildren)
            {
                iChild = ::fork();
                if (iChild == 0)
                {
                    ::alarm(g_iSeconds);
                    DoEverything();
                    std::_Exit(0);
                }
            }
            int iFailures = 0;
            for (pid_t const iChild : aChildren)
            {
                int iStatus = 0;
                ::waitpid(iChild, &iStatus, 0);
                iFailures += iStatus != 0;
            }
            Join(vThreads);
            std::_Exit(iFailures);
        }
        int iStatus = 0;
        ::waitpid(iFresh, &iStatus, 0);
        Demand(iStatus == 0, "fresh process");
    }
}

} // namespace

int main(int iCount, char ** pArguments)
{
    if (iCount < 3)
        return 2;

    // The program's own classes; those of the library may be used for the first time at any moment.
    static_cast<void>(tsltest::NumberMessage::GetStaticClassDesc());

    if (iCount > 3)
        g_iSeconds = static_cast<unsigned int>(std::atoi(pArguments[3]));
    int const iForks = std::atoi(pArguments[1]);
    std::string const sPlace = pArguments[2];
    if (sPlace == "fresh")
        ForkFresh(iForks);
    else
    {
        std::vector<std::thread> vThreads = StartThreads(&BeBusy);
        if (sPlace == "main")
            ForkFromHere(iForks);
        else if (sPlace == "threads")
            ForkFromThreads(iForks);
        else
            ForkFromCallBack(iForks);
        Join(vThreads);
    }
    std::puts("ok");
    return 0;
}
