// Reports on the global bus what the arguments say, in their order:
//   debug:TEXT        a debug message with the identifier "Id"
//   trace:ID          passes a log point that is called ID
//   result:CODE       a Result with the text "t"; each further ":CODE" is the previous failure
//   success           a success
//   element           a message with a Result as its element
//   empty             a message without elements
//   long:COUNT        a debug message of that many bytes
//   lines:COUNT       so many debug messages of four threads each
//   assert            fails an assertion, and prints the exception
//   nested            the same while a processor fails one for every message
//   level:ID          prints the level that is registered for ID
//   late              reports when the bus goes away
//   chapters          prints the chapters of the ini file
//   ahead             reports and fails in a processor that is served before the log, and prints the code
//   load:NAME         loads a library and unloads it twice, and prints what the loading comes to
//   closed            closes its own streams
//   deaf              ignores the ends of its children
//   start:COMMAND     starts a child with redirected streams, and leaves what comes of it in the file "outcome"
//   open              prints what the opening of a second log comes to
//   unlink            removes the program's file, and prints the program's name
//   limit:COUNT       starts the program anew, which may write that many bytes to a file, for what follows
//   cd                enters a new folder, to show that the log file stays where it is

#include "../TestMessages.h"

#include <tessel/Tessel.h>

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

#include <sys/resource.h>
#include <unistd.h>

namespace
{

class ElementMessage : public tsl::Message
{
public:
    explicit ElementMessage(bool bElement) : m_bElement(bElement) {}

    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override
    {
        if (m_bElement)
            return std::make_unique<tsl::ResultMessageConstIterator>(m_oMessage);
        return tsl::Message::GetConstIterator();
    }

    tsl::ClassDescription const & GetClassDesc() const override
    {
        static tsl::ClassDescription const & oDescription = tsl::DescribeClass<ElementMessage>(
            &tsl::Message::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, nullptr);
        return oDescription;
    }

protected:
    void DoCopy(tsl::Root const &) override {}

private:
    bool m_bElement;
    tsl::ResultMessage m_oMessage{tsl::Result(1, "a", tsl::Result(2, "b", tsl::Result::eCategoryDefault))};
};

void Debug(tsl::String const & sText)
{
    tsl::Support::DispatchDebugMessage("Id", sText, "f.cpp", 1);
}

/// Each of the codes has those in front of it as its history.
void ReportResult(std::string const & sCodes)
{
    tsl::Result oResult;
    std::istringstream oCodes(sCodes);
    for (std::string sCode; std::getline(oCodes, sCode, ':');)
    {
        tsl::Result oNext(std::stoi(sCode), "t", tsl::Result::eCategoryDefault);
        oNext.SetSource("f.cpp", 1);
        oNext.SetPrevious(oResult);
        oResult.Clear();
        oResult = oNext;
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

void FailNested()
{
    tsltest::TestProcessor const oProcessor(
        [](auto &, auto &) { tsl::XAssertionFailed("inner", "Unknown"); });
    static_cast<void>(tsl::Support::GetAppDisp().Register(oProcessor, {tsl::Message::GetBaseType()}));
    FailAssertion();
    tsl::Support::GetAppDisp().Unregister(oProcessor);
    std::cout << oProcessor.GetCalls() << " calls" << std::endl;
}

void ReportHastily()
{
    // Reports something of its own for the first message before it fails.
    tsltest::TestProcessor oProcessor;
    oProcessor.SetWork(
        [&](auto &, auto &)
        {
            if (oProcessor.GetCalls() > 1)
                return;
            Debug("first");
            tsl::XAssertionFailed("inner", "Unknown");
        });
    static_cast<void>(tsl::Support::GetAppDisp().Register(
        oProcessor, {tsl::DebugMessage::GetStaticClassDesc().GetClassId()}));
    tsl::Result const oResult = tsl::Support::DispatchDebugMessage("Id", "second", "f.cpp", 1);
    tsl::Support::GetAppDisp().Unregister(oProcessor);
    std::cout << oResult.GetErrorCode() << std::endl;
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

/// Starts the program anew with the arguments behind this one.
void StartLimited(std::string const & sCount, char ** pArguments)
{
    rlimit oLimit{};
    ::getrlimit(RLIMIT_FSIZE, &oLimit);
    oLimit.rlim_cur = std::stoul(sCount);
    ::setrlimit(RLIMIT_FSIZE, &oLimit);
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

/// Outlives the bus, since nothing ever destroys it.
void RegisterLateReporter()
{
    alignas(LateReporter) static std::byte aMemory[sizeof(LateReporter)];
    auto const * const pReporter = new (aMemory) LateReporter;
    static_cast<void>(tsl::Support::GetAppDisp().Register(*pReporter, {ElementMessage(false).GetType()}));
}

void LoadLibrary(std::string const & sName)
{
    tsl::LibraryProxy oProxy{tsl::String(sName)};
    std::cout << oProxy.Load().GetErrorCode() << std::endl;
    oProxy.Unload();
    oProxy.Unload();
}

void CloseStreams()
{
    for (int iStream = 0; iStream < 3; ++iStream)
        ::close(iStream);
}

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

using Command = std::function<void(std::string const &)>;

std::map<std::string, Command> const g_oCommands = {{"debug", [](auto & sText) { Debug(sText); }},
    {"trace", [](auto & sId) { tsl::Trace(sId.c_str(), [&] { return tsl::String("traced ") + sId; }); }},
    {"result", &ReportResult}, {"success", [](auto &) { tsl::Support::DispatchMessage(tsl::Result()); }},
    {"element", [](auto &) { tsl::Support::DispatchMessage(ElementMessage(true)); }},
    {"empty", [](auto &) { tsl::Support::DispatchMessage(ElementMessage(false)); }},
    {"long", [](auto & sCount) { Debug(tsl::String('y', static_cast<unsigned int>(std::stoul(sCount)))); }},
    {"lines", [](auto & sCount) { ReportLines(std::stoi(sCount)); }},
    {"assert", [](auto &) { FailAssertion(); }}, {"nested", [](auto &) { FailNested(); }},
    {"level", &PrintLevel}, {"late", [](auto &) { RegisterLateReporter(); }},
    {"ahead", [](auto &) { ReportHastily(); }}, {"open", [](auto &) { OpenSecondLog(); }},
    {"unlink", [](auto &) { UnlinkProgram(); }}, {"chapters", [](auto &) { PrintChapters(); }},
    {"cd", [](auto &) { EnterNewFolder(); }}, {"load", &LoadLibrary},
    {"closed", [](auto &) { CloseStreams(); }}, {"deaf", [](auto &) { std::signal(SIGCHLD, SIG_IGN); }},
    {"start", &StartChild}};

} // namespace

int main(int iCount, char ** pArguments)
{
    for (int i = 1; i < iCount; ++i)
    {
        std::string const sArgument = pArguments[i];
        std::size_t const iColon = sArgument.find(':');
        if (sArgument.starts_with("limit:"))
            StartLimited(sArgument.substr(iColon + 1), pArguments + i);
        g_oCommands.at(sArgument.substr(0, iColon))(
            iColon == std::string::npos ? "" : sArgument.substr(iColon + 1));
    }
}
