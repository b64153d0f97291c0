// Reports on the global bus what the arguments say, in their order; g_oCommands has them.
// What stands behind a colon is given to the command.

#include "../TestMachine.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <new>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

/// A message with a Result as its element.
class ElementMessage : public tsltest::Described<ElementMessage, tsl::Message>
{
public:
    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override
    {
        return std::make_unique<tsl::ResultMessageConstIterator>(m_oMessage);
    }

protected:
    void DoCopy(tsl::Root const &) override {}

private:
    tsl::ResultMessage m_oMessage{tsl::Result(1, "a", tsl::Result(2, "b", tsl::Result::eCategoryDefault))};
};

void Debug(tsl::String const & sText)
{
    tsl::Support::DispatchDebugMessage("Id", sText, "f.cpp", 1);
}

/// The codes are separated by colons; each has those in front of it as its history. Without one it is a
/// success.
void ReportResult(std::string const & sCodes)
{
    tsl::Result oResult;
    std::istringstream oCodes(sCodes);
    for (std::string sCode; std::getline(oCodes, sCode, ':');)
    {
        tsl::Result oNext(std::stoi(sCode), "t", tsl::Result::eCategoryDefault);
        oNext.SetSource("f.cpp", 1);
        oResult.InsertFront(oNext);
    }
    tsl::Support::DispatchMessage(oResult);
}

void ReportLines(int iCount)
{
    std::vector<std::jthread> vThreads;
    for (int iThread = 0; iThread < 4; ++iThread)
        vThreads.emplace_back(
            [&]
            {
                for (int i = 0; i < iCount; ++i)
                    Debug(tsl::String('x', static_cast<unsigned int>(1 + i % 300)) + "<end>");
            });
}

/// Prints the exception of a failed assertion.
void FailAssertion()
{
    try
    {
        tsl::XAssertionFailed("x>0", "bad", "f.cpp", 7);
    }
    catch (tsl::Exception const & oException)
    {
        tsl::Result const & oResult = oException.GetResult();
        std::cout << oResult.GetErrorCode() << ' ' << oResult.GetCategory() << ' ' << oResult.GetSourceFile()
                  << ' ' << oResult.GetSourceLine() << ' ' << oResult.GetHistorySize() << ' '
                  << oException.GetText() << std::endl;
    }
}

/// The same while a processor fails one for every message.
void FailNested()
{
    tsltest::BusListener const oProcessor(
        tsl::Message::GetBaseType(), [](auto &, auto &) { tsl::XAssertionFailed("inner", "Unknown"); });
    FailAssertion();
    std::cout << oProcessor.GetCalls() << " calls" << std::endl;
}

/// Cancels so many threads, one after the other, wherever each of them is with failing assertions.
void CancelThreads(int iCount)
{
    for (int i = 0; i < iCount; ++i)
    {
        std::atomic<bool> bReported{false};
        std::thread oThread(
            [&]
            {
                for (;;)
                {
                    try
                    {
                        tsl::XAssertionFailed("again", "Unknown");
                    }
                    catch (tsl::Exception const &)
                    {
                        bReported = true;
                    }
                }
            });
        while (!bReported)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::microseconds(i));
        ::pthread_cancel(oThread.native_handle());
        oThread.join();
    }
}

void OpenSecondLog()
{
    std::unique_ptr<tsl::MessageProcessor> const pLog(
        tsl::MessageProcessorFactory::Instance().CreateProcessor("LogFileProcessor"));
    tsl::Result const oResult = pLog->Open();
    std::cout << oResult.GetErrorCode() << ' ' << oResult.GetText().c_str() << std::endl;
}

void UnlinkProgram()
{
    std::filesystem::remove(std::filesystem::read_symlink("/proc/self/exe"));
    tsl::String sName;
    static_cast<void>(tsl::OS::GetApplicationFileName(sName));
    std::cout << sName.c_str() << std::endl;
}

/// Starts the program anew, which may use that many bytes of a resource, with the arguments behind this one.
template<class Resource>
void StartLimited(Resource eResource, std::string const & sCount, char ** pArguments)
{
    rlimit oLimit{};
    ::getrlimit(eResource, &oLimit);
    oLimit.rlim_cur = std::stoul(sCount);
    ::setrlimit(eResource, &oLimit);
    ::execv("/proc/self/exe", pArguments);
}

void PrintLevel(std::string const & sId)
{
    int iLevel = -99;
    std::cout << tsl::Support::RegisterLogPoint(&iLevel, sId.c_str(), "f.cpp", 1) << ' ' << iLevel
              << std::endl;
}

void EnterNewFolder()
{
    std::filesystem::create_directory("other");
    std::filesystem::current_path("other");
}

void PrintChapters()
{
    std::vector<tsl::String> vChapters;
    tsl::Support::GetAppIni().GetChapters(vChapters);
    std::cout << vChapters.size() << " chapters" << std::endl;
}

/// Reports once more when the bus goes away, which must neither harm nor come through.
class LateReporter : public tsltest::TestProcessor
{
public:
    void HandlerDestruction() const override
    {
        Debug("late");
        int iLevel = 1;
        tsl::Support::RegisterLogPoint(&iLevel, "Id", "f.cpp", 1);
        tsl::Result const oFailure(1, "late", tsl::Result::eCategoryDefault);
        if (tsl::Support::DispatchMessage(oFailure).IsOk())
            std::cout << "late report" << std::endl;
    }
};

/// The reporter outlives the bus, since nothing ever destroys it.
void RegisterLateReporter()
{
    alignas(LateReporter) static std::byte aMemory[sizeof(LateReporter)];
    auto const * const pReporter = new (aMemory) LateReporter;
    static_cast<void>(tsl::Support::GetAppDisp().Register(*pReporter, {tsltest::NumberMessage().GetType()}));
}

void LoadLibrary(std::string const & sName)
{
    tsl::LibraryProxy oProxy{tsl::String(sName)};
    std::cout << oProxy.Load().GetErrorCode() << ' ' << oProxy.Load().GetErrorCode() << std::endl;
    oProxy.Unload();
    oProxy.Unload();
}

/// Does all that tasks and contexts trace.
int Talk(tsltest::OpenTask & oTask)
{
    tsl::MessageFilterNoMessage const oNothing;
    tsl::MessageFilterAllMessages const oAll;
    delete oTask.Receive(0);
    delete oTask.ReceiveFilter(oNothing, 0);
    delete oTask.ReceiveFilter(oAll, -1);
    oTask.Send(tsltest::NumberMessage(9));
    oTask.ClearSendBuffer();
    oTask.ClearReveiveBuffer();
    return tsl::Task::TR_RETURN;
}

void RunMachine()
{
    tsl::TaskContext oContext(new tsltest::OneTaskMachine(&Talk));
    for (int i = 1; i <= 3; ++i)
        oContext.WriteMessage(tsltest::NumberMessage(i));
    oContext.Process();
    delete oContext.ReadMessage();

    tsl::TaskContextMessage oMessage;
    oMessage.SetTaskName("task");
    oMessage.SetMode(3);
    for (bool const bEnabled : {true, false})
    {
        oMessage.SetEnabled(bEnabled);
        oContext.WriteMessage(oMessage);
    }
}

void CloseStreams()
{
    for (int iStream = 0; iStream < 3; ++iStream)
        ::close(iStream);
}

/// Starts a child with redirected streams, and leaves what comes of it in the file "outcome".
void StartChild(std::string const & sCommand)
{
    tsl::CmdLine oChild;
    oChild.SetMode(tsl::CmdLine::eModeRedirect | tsl::CmdLine::eModeReaderThreads);
    oChild.SetCommand(sCommand);
    int iProcessId = 0;
    tsl::Result const oResult = oChild.Run(iProcessId);
    int const iWait = oChild.WaitTermination();

    // With the child's ends of the pipes in the place of a stream, this would not come to an end.
    std::ofstream oOutcome("outcome");
    oOutcome << oResult.GetErrorCode() << ' ' << iWait << ' ' << oChild.GetExitCode() << '\n';
    while (std::unique_ptr<tsl::String> const pLine{oChild.ReceiveStdOut()})
        oOutcome << "out " << pLine->s_str() << '\n';
    while (std::unique_ptr<tsl::String> const pLine{oChild.ReceiveStdErr()})
        oOutcome << "err " << pLine->s_str() << '\n';
}

/// The same function at three places.
void TraceShared()
{
    auto const fText = [] { return tsl::String("shared"); };
    for (int i = 0; i < 2; ++i)
    {
        tsl::Trace("Off", fText);
        tsl::Trace("Task", fText);
        tsl::Trace("Pipe", fText);
    }
}

using Command = std::function<void(std::string const &)>;

std::map<std::string, Command> const g_oCommands = {{"debug", [](auto & sText) { Debug(sText); }},
    {"trace", [](auto & sId) { tsl::Trace(sId.c_str(), [&] { return tsl::String("traced ") + sId; }); }},
    {"result", &ReportResult}, {"machine", [](auto &) { RunMachine(); }},
    {"element", [](auto &) { tsl::Support::DispatchMessage(ElementMessage()); }},
    {"empty", [](auto &) { tsl::Support::DispatchMessage(tsltest::NumberMessage()); }},
    {"long", [](auto & sCount) { Debug(tsl::String('y', static_cast<unsigned int>(std::stoul(sCount)))); }},
    {"lines", [](auto & sCount) { ReportLines(std::stoi(sCount)); }},
    {"assert", [](auto &) { FailAssertion(); }},
    {"cancel", [](auto & sCount) { CancelThreads(std::stoi(sCount)); }},
    {"nested", [](auto &) { FailNested(); }}, {"level", &PrintLevel},
    {"late", [](auto &) { RegisterLateReporter(); }}, {"open", [](auto &) { OpenSecondLog(); }},
    {"unlink", [](auto &) { UnlinkProgram(); }}, {"chapters", [](auto &) { PrintChapters(); }},
    {"cd", [](auto &) { EnterNewFolder(); }}, {"load", &LoadLibrary},
    {"shared", [](auto &) { TraceShared(); }}, {"closed", [](auto &) { CloseStreams(); }},
    {"deaf", [](auto &) { std::signal(SIGCHLD, SIG_IGN); }}, {"start", &StartChild}};

} // namespace

int main(int iCount, char ** pArguments)
{
    for (int i = 1; i < iCount; ++i)
    {
        std::string const sArgument = pArguments[i];
        std::size_t const iColon = sArgument.find(':');
        if (sArgument.starts_with("limit:"))
            StartLimited(RLIMIT_FSIZE, sArgument.substr(iColon + 1), pArguments + i);
        if (sArgument.starts_with("memory:"))
            StartLimited(RLIMIT_AS, sArgument.substr(iColon + 1), pArguments + i);
        g_oCommands.at(sArgument.substr(0, iColon))(
            iColon == std::string::npos ? "" : sArgument.substr(iColon + 1));
    }
}
