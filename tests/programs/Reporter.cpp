// Reports on the global bus what the arguments say, in their order; g_oCommands has them.
// What stands behind a colon is given to the command.

#include "../OpenThread.h"
#include "../TestChild.h"
#include "../TestMachine.h"

#include <csignal>
#include <fstream>
#include <iostream>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

// Where a thread was cancelled, the address sanitizer leaves marks on its stack, and reports a call of its own there.
extern "C" [[gnu::used]] char const * __asan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "interceptor_name:sigaltstack";
}

using namespace tsl;
using namespace tsltest;

namespace
{

class ElementMessage : public tsl::Described<ElementMessage, tsl::Message>
{
public:
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override
    {
        return std::make_unique<ResultMessageConstIterator>(m_oMessage);
    }

protected:
    void DoCopy(Root const &) override {}

private:
    ResultMessage m_oMessage{Result(1, "a", Result(2, "b", Result::eCategoryDefault))};
};

void Debug(String const & sText)
{
    Support::DispatchDebugMessage("Id", sText, "f.cpp", 1);
}

/// The codes are separated by colons; each has those in front of it as its history. Without one it is a
/// success.
void ReportResult(std::string const & sCodes)
{
    Result oResult;
    std::istringstream oCodes(sCodes);
    for (std::string sCode; std::getline(oCodes, sCode, ':');)
    {
        Result oNext(std::stoi(sCode), "t", Result::eCategoryDefault);
        oNext.SetSource("f.cpp", 1);
        oResult.InsertFront(oNext);
    }
    Support::DispatchMessage(oResult);
}

void ReportLines(int iCount)
{
    RunOnThreads(4,
        [&](int)
        {
            for (int i = 0; i < iCount; ++i)
                Debug(String('x', static_cast<unsigned int>(1 + i % 300)) + "<end>");
        });
}

/// Prints the exception of a failed assertion.
void FailAssertion()
{
    try
    {
        XAssertionFailed("x>0", "bad", "f.cpp", 7);
    }
    catch (Exception const & oException)
    {
        Result const & oResult = oException.GetResult();
        std::cout << oResult.GetErrorCode() << ' ' << oResult.GetCategory() << ' ' << oResult.GetSourceFile()
                  << ' ' << oResult.GetSourceLine() << ' ' << oResult.GetHistorySize() << ' '
                  << oException.GetText() << std::endl;
    }
}

void FailNested()
{
    BusListener const oProcessor(
        Message::GetBaseType(), [](auto &, auto &) { XAssertionFailed("inner", "Unknown"); });
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
                for (;; bReported = true)
                    try
                    {
                        XAssertionFailed("again", "Unknown");
                    }
                    catch (Exception const &)
                    {
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
    std::unique_ptr<MessageProcessor> const pLog(
        MessageProcessorFactory::Instance().CreateProcessor("LogFileProcessor"));
    Result const oResult = pLog->Open();
    std::cout << oResult.GetErrorCode() << ' ' << oResult.GetTextWithCauses().c_str() << std::endl;
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
    std::cout << Support::RegisterLogPoint(&iLevel, sId.c_str(), "f.cpp", 1) << ' ' << iLevel << std::endl;
}

void PrintChapters()
{
    std::vector<String> vChapters;
    Support::GetAppIni().GetChapters(vChapters);
    std::cout << vChapters.size() << " chapters" << std::endl;
}

/// Reports once more when the bus is destroyed, which must neither harm nor come through.
class LateReporter : public TestProcessor
{
public:
    void HandlerDestruction() const override
    {
        Debug("late");
        int iLevel = 1;
        Support::RegisterLogPoint(&iLevel, "Id", "f.cpp", 1);
        if (Support::DispatchMessage(Result(1, "late", Result::eCategoryDefault)).IsOk())
            std::cout << "late report" << std::endl;
    }
};

/// The reporter outlives the bus, since nothing ever destroys it.
void RegisterLateReporter()
{
    static auto * volatile const pReporter = new LateReporter;
    static_cast<void>(Support::GetAppDisp().Register(*pReporter, {NumberMessage().GetType()}));
}

void LoadLibrary(std::string const & sName)
{
    LibraryProxy oProxy{String(sName)};
    std::cout << oProxy.Load().GetErrorCode() << ' ' << oProxy.Load().GetErrorCode() << std::endl;
    oProxy.Unload();
    oProxy.Unload();
}

/// Does all that tasks and contexts trace.
int Talk(OpenTask & oTask)
{
    MessageFilterNoMessage const oNothing;
    MessageFilterAllMessages const oAll;
    delete oTask.Receive(0);
    delete oTask.ReceiveFilter(oNothing, 0);
    delete oTask.ReceiveFilter(oAll, -1);
    oTask.Send(NumberMessage(9));
    oTask.ClearSendBuffer();
    oTask.ClearReveiveBuffer();
    return Task::TR_RETURN;
}

void RunMachine()
{
    TaskContext oContext(new OneTaskMachine(&Talk));
    for (int i = 1; i <= 3; ++i)
        oContext.WriteMessage(NumberMessage(i));
    oContext.Process();
    delete oContext.ReadMessage();

    TaskContextMessage oMessage;
    oMessage.SetTaskName("task");
    oMessage.SetMode(3);
    for (bool const bEnabled : {true, false})
    {
        oMessage.SetEnabled(bEnabled);
        oContext.WriteMessage(oMessage);
    }
}

/// Starts a child with redirected streams, and leaves what comes of it in the file "outcome".
void StartChild(std::string const & sCommand)
{
    Child oChild("", WITH_READERS);
    oChild.SetCommand(sCommand);
    Result const oResult = oChild.Start();
    int const iWait = oChild.WaitTermination();

    // With the child's ends of the pipes in the place of a stream, this would not come to an end.
    std::ofstream oOutcome("outcome");
    oOutcome << oResult.GetErrorCode() << ' ' << iWait << ' ' << oChild.GetExitCode() << '\n';
    oOutcome << "out " << oChild.TakeOutput().s_str() << "err " << oChild.TakeErrors().s_str();
}

using Command = std::function<void(std::string const &)>;

std::map<std::string, Command> const g_oCommands = {
    {"assert", [](auto &) { FailAssertion(); }},
    {"cancel", [](auto & sCount) { CancelThreads(std::stoi(sCount)); }},
    {"cd", [](auto & sFolder) { std::filesystem::current_path(sFolder); }},
    {"chapters", [](auto &) { PrintChapters(); }},
    {"closed", [](auto &) { ::close_range(0, 2, 0); }},
    {"deaf", [](auto &) { std::signal(SIGCHLD, SIG_IGN); }},
    {"debug", [](auto & sText) { Debug(sText); }},
    {"element", [](auto &) { Support::DispatchMessage(ElementMessage()); }},
    {"empty", [](auto &) { Support::DispatchMessage(NumberMessage()); }},
    {"late", [](auto &) { RegisterLateReporter(); }},
    {"level", &PrintLevel},
    {"lines", [](auto & sCount) { ReportLines(std::stoi(sCount)); }},
    {"load", &LoadLibrary},
    {"long", [](auto & sCount) { Debug(String('y', static_cast<unsigned int>(std::stoul(sCount)))); }},
    {"machine", [](auto &) { RunMachine(); }},
    {"nested", [](auto &) { FailNested(); }},
    {"open", [](auto &) { OpenSecondLog(); }},
    {"result", &ReportResult},
    {"shared",
        [](auto &)
        {
            auto const fText = [] { return String("shared"); };
            for (int i = 0; i < 2; ++i)
            {
                Trace("Off", fText);
                Trace("Task", fText);
                Trace("Pipe", fText);
            }
        }},
    {"start", &StartChild},
    {"unlink",
        [](auto &)
        {
            std::filesystem::remove(std::filesystem::read_symlink("/proc/self/exe"));
            String sName;
            static_cast<void>(OS::GetApplicationFileName(sName));
            std::cout << sName.c_str() << std::endl;
        }},
};

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
