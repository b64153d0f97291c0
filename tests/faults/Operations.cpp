#include "Operations.h"

#include "Memory.h"

#include "../../examples/values/ValueVector.h"
#include "../TestMachine.h"

#include <patternmatcher/PatternMatcher.h>
#include <tessel/Tessel.h>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include <signal.h>
#include <unistd.h>

using namespace tsl;
using namespace tsltest;

namespace tslfaults
{

namespace
{

using LinePipe = DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>>;

// Too long for what texts keep within themselves.
char const * const LONG = "a text of more bytes than any object has room for without memory of its own";

Outcome Check(bool bRight)
{
    return bRight ? Outcome::eDone : Outcome::eWrong;
}

/// Tells a failure by its Result, and else whether the outcome is right.
Outcome Check(Result const & oResult, bool bRight = true)
{
    return oResult.IsError() ? Outcome::eFailed : Check(bRight);
}

Result MakeFailure()
{
    return {5, LONG, Result(3, LONG, Result(2, "short", Result::eCategoryIo))};
}

Outcome MakeResults()
{
    Result oFailure = MakeResult(4, LONG, MakeFailure());
    oFailure.SetCause(LONG);
    Result oCopy(oFailure);
    oCopy = oFailure;
    oCopy.InsertFront(MakeFailure());
    oCopy.SetPrevious(oFailure.GetWithoutHistory());
    return Check(oFailure.GetHistorySize() == 3 && oCopy.GetHistorySize() == 1 && oCopy != oFailure);
}

Outcome ConvertResult()
{
    ValueString sText("");
    MakeFailure().AddAsString(sText);
    return Check(sText.Find("short") > 0 || sText.GetLength() > 0);
}

Outcome WalkResult()
{
    Result const oFailure = MakeFailure();
    int iElements = 0;
    auto const pElement = oFailure.GetConstIterator();
    for (pElement->Begin(); !pElement->IsEnd(); pElement->Next())
        ++iElements;
    return Check(iElements == 6);
}

Outcome FailAssertion()
{
    try
    {
        XAssertionFailed("x>0", LONG);
    }
    catch (Exception const & oException)
    {
        return Check(oException.GetResult().GetErrorCode() == ERR::eInternal);
    }
}

template<class V>
Outcome ConvertBothWays(V const & oValue)
{
    ValueString sText("");
    oValue.AddAsString(sText);
    V oRead;
    Result const oResult = oRead.GetConverter().ConvertFromText(sText, oRead);
    return Check(oResult, oRead == oValue);
}

Outcome ConvertString()
{
    ValueString sText("");
    ValueString(LONG).AddAsString(sText);
    return Check(sText == LONG);
}
Outcome ConvertInteger()
{
    return ConvertBothWays(ValueInt32(-123456));
}
Outcome ConvertFloat()
{
    return ConvertBothWays(ValueFloat32(1.5F));
}

Outcome ConvertByLayout()
{
    ValueFloatConverterLayout oLayout("the value ${%10.3f} in a text of some length");
    oLayout.SetPrefix(LONG);
    std::unique_ptr<Root> const pCopy(oLayout.GetCopy());
    ValueFloat32 const oValue(2.25F);
    ValueString sText("");
    oValue.GetConverter().ConvertToText(oValue, sText, oLayout);
    return Check(pCopy && sText.Find("2.250 in a text") > 0);
}

Outcome ConvertNamedValue()
{
    NamedValue oNamed(LONG, ValueString(LONG));
    NamedValue oCopy(oNamed);
    oCopy.SetValue(ValueInt32(7));
    oNamed = oCopy;
    ValueString sText("");
    oNamed.AddAsString(sText);
    return Check(sText.Find(LONG) >= 0 && oNamed == oCopy);
}

Outcome ConvertCollection()
{
    ValueVector oValues;
    oValues.Add(ValueInt32(1));
    oValues.Add(ValueString(LONG));
    oValues.Add(NamedValue("name", ValueFloat32(0.5F)));
    ValueVector const oCopy(oValues);
    ValueString sText("");
    oCopy.AddAsString(sText);
    return Check(oCopy.GetCount() == 3 && sText.Find(LONG) > 0);
}

Outcome CopyCollectionLayout()
{
    ValueConverterLayoutCollection oLayout(dynamic_cast<ValueConverterLayoutCollection const &>(
        ValueVector().GetConverter().GetDefaultLayout()));
    oLayout.AddLayout(new ValueFloatConverterLayout("${%.1f}"));
    oLayout.SetSeparator(LONG);
    ValueConverterLayoutCollection const oCopy(oLayout);
    ValueVector oValues;
    oValues.Add(ValueFloat32(1));
    oValues.Add(ValueFloat32(2));
    ValueString sText("");
    oValues.GetConverter().ConvertToText(oValues, sText, oCopy);
    return Check(sText.Find("(1.0a text") == 0);
}

Outcome ChangeString()
{
    String sText(LONG);
    sText << 1 << ' ' << 2.5 << LONG;
    sText.Replace("text", LONG);
    sText.Insert(3, LONG);
    sText.Append(sText);
    sText.Upper();
    sText.Format("%s %d", LONG, 5);
    String const sSum = sText + LONG + 3 + sText.Mid(2).Left(70).Right(60);
    return Check(sSum.GetLength() > 200 && sText.GetLength() == 77);
}

Outcome FormateString()
{
    String sNormal;
    StringFormator(StringFormator::eUpper | StringFormator::eTrimLeft | StringFormator::eTrimRight)
        .Format(String("  ") + LONG + "  ", sNormal);
    return Check(sNormal.GetLength() == 75 && sNormal.GetAt(0) == 'A');
}

Outcome SplitText()
{
    std::vector<String> vParts;
    unsigned int const iParts = Support::StringSplitter(String(LONG) + ";\"b;c\"; d\\;e", vParts, ';',
        Support::eSplitTrimLeft | Support::eSplitQuotes | Support::eSplitRemoveEscape, '\\');
    return Check(iParts == 3 && vParts.size() == 3 && vParts[0] == LONG);
}

Outcome MatchPattern()
{
    PatternMatcher const oMatcher("(a+)(b|c){2,5}[^x]*?(d)", PatternMatcher::eIgnoreCase);
    std::string const sText = std::string(300, 'a') + "bcbc and so on d";
    return Check(oMatcher.Match(sText, 0) == 4 && oMatcher.substr(sText, 3) == "d");
}

Outcome ParseArguments()
{
    CmdLineParser oParser;
    Result const oResult =
        oParser.SetCmdLine("program --option value -o /s parameter \"" + String(LONG) + '"');
    std::vector<String> vParameters;
    oParser.GetParameters(vParameters);
    String sValue;
    return Check(oResult, oParser.GetOption("option", sValue, CmdLineParser::eOptionAny) && sValue == "value"
                              && vParameters.back() == LONG);
}

/// An ini file of many chapters and keys. Other processes may be reading the one that is there.
char const * GetIniName()
{
    static char const * const sName = []
    {
        std::string const sNew = "sweep.ini." + std::to_string(::getpid());
        std::FILE * const pFile = std::fopen(sNew.c_str(), "w");
        for (int iChapter = 0; iChapter < 30; ++iChapter)
        {
            std::fprintf(pFile, "[chapter%d]\n", iChapter);
            for (int iKey = 0; iKey < 30; ++iKey)
                std::fprintf(pFile, "key%d=%s\n+=%d\n", iKey, LONG, iKey);
        }
        std::fprintf(pFile, "[numbers]\nnumber=5\n");
        std::fclose(pFile);
        std::rename(sNew.c_str(), "sweep.ini");
        return "sweep.ini";
    }();
    return sName;
}

Outcome ReadIniFile()
{
    IniFile oIni;
    Result oResult = oIni.Open(GetIniName());
    if (oResult.IsError())
        return Outcome::eFailed;
    String sValue;
    int iNumber = 0;
    std::vector<String> vNames;
    bool const bFound = oIni.GetString(" chapter7 ", " key29 ", sValue, oResult)
                        && oIni.GetInt32("numbers", "number", iNumber, oResult);
    oIni.GetChapters(vNames);
    oResult = oIni.GetKeys("chapter8", vNames);
    return Check(oResult, bFound && vNames.size() == 30 && iNumber == 5);
}

/// One that is used again after a failure is as it was at first.
Outcome ReopenIniFile()
{
    IniFile oIni;
    for (int i = 0; i < 2; ++i)
        try
        {
            if (oIni.Open(GetIniName()).IsError() || !oIni.IsOpen())
                return Outcome::eWrong;
        }
        catch (std::bad_alloc const &)
        {
            if (oIni.IsOpen() || !oIni.GetFileName().IsEmpty())
                return Outcome::eWrong;
            throw;
        }
    return Check(oIni.IsOpen());
}

Outcome ExplainIniFailure()
{
    IniFile oIni;
    Result oResult = oIni.OpenEmpty();
    String sValue;
    return Check(!oIni.GetString("chapter", LONG, sValue, oResult) && oResult.GetErrorCode() == ERR::eBadData
                 && oIni.Open("no such file").GetErrorCode() == ERR::eNotFound);
}

Outcome DispatchMessages()
{
    // Before the bus, which tells it of its end if a failure leaves it registered.
    TestProcessor const oProcessor(
        [](Message const & oMessage, Result & oAnswer)
        {
            String sText;
            oAnswer.InsertFront(MakeResult(3, oMessage.AddAsString(sText)));
        });
    MessageDispatcher oBus;
    Result const oResult = oBus.Register(oProcessor, {Message::GetBaseType()});
    if (oResult.IsError())
        return Outcome::eFailed;
    Result oAnswer;
    oBus.Process(NumberMessage(5), oAnswer);
    oBus.Process(ResultMessage(MakeFailure()), oAnswer);
    oBus.Unregister(oProcessor);
    return Check(oResult, oAnswer.GetHistorySize() == 1 && oAnswer.GetErrorCode() == 3);
}

Outcome LogMessages()
{
    Result oResult = Support::DispatchDebugMessage("Fault", LONG, "f.cpp", 1);
    oResult.InsertFront(Support::DispatchMessage(MakeFailure()));
    oResult.InsertFront(Support::DispatchMessage(NumberMessage(5)));
    return Check(oResult);
}

Outcome CopyMessages()
{
    DebugMessage oDebug;
    oDebug.SetText(LONG);
    oDebug.SetIdentifier(LONG);
    TaskContextMessage oTask;
    oTask.SetTaskName(LONG);
    std::string sText;
    for (Message const * const pMessage : std::initializer_list<Message const *>{&oDebug, &oTask})
    {
        std::unique_ptr<Root> const pCopy(pMessage->GetCopy());
        String sCopy;
        sText += dynamic_cast<Message const &>(*pCopy).AddAsString(sCopy).s_str();
        DefaultMessageLayout().FormatMessage(*pMessage, sCopy);
    }
    return Check(sText.find(LONG) != std::string::npos);
}

Outcome RegisterOnTheGlobalBus()
{
    TestProcessor const oProcessor;
    std::vector<unsigned int> const vTypes = {
        NumberMessage::GetStaticClassDesc().GetClassId(), Message::GetBaseType()};
    try
    {
        Result const oResult = Support::GetAppDisp().Register(oProcessor, vTypes);
        Support::GetAppDisp().Unregister(oProcessor);
        return Check(oResult);
    }
    catch (std::bad_alloc const &)
    {
        Support::GetAppDisp().Unregister(oProcessor, vTypes); // those that came before
        throw;
    }
}

/// Takes messages of two types from the bus.
class Client : public MessageDispatcherClient
{
public:
    explicit Client(MessageDispatcher & oBus) : MessageDispatcherClient(oBus)
    {
        m_oConfig.SetMessageTypes({NumberMessage::GetStaticClassDesc().GetClassId(), Message::GetBaseType()});
    }
    ~Client() override { Client::Close(); }

    void Process(Message const &, Result &) const override { ++m_iCalls; }
    MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    Result SetConfig(MessageProcessorConfig const &) override { return Result(); }

    int GetCalls() const { return m_iCalls; }

protected:
    void DoCopy(Root const &) override {}

private:
    class Config : public MessageDispatcherClientConfig
    {
    protected:
        void DoCopy(Root const &) override {}
    };

    Config m_oConfig;
    mutable int m_iCalls = 0;
};

/// Clients that come and go, also without their last word, leave a bus that can be used.
Outcome UseClients()
{
    MessageDispatcher oBus;
    Result oResult;
    int iCalls = 0;
    try
    {
        Client oClient(oBus);
        oResult = oClient.Open();
        oBus.Process(NumberMessage(5), oResult);
        iCalls = oClient.GetCalls();
    }
    catch (std::bad_alloc const &)
    {
        oBus.Process(NumberMessage(5), oResult);
        throw;
    }
    return Check(oResult, iCalls == 2);
}

Outcome UseFactories()
{
    MessageProcessorFactory & oFactory = MessageProcessorFactory::Instance();
    std::unique_ptr<MessageProcessor> const pLog(oFactory.CreateProcessor("LogFileProcessor"));
    Result const oResult = pLog->Open();
    oFactory.Register(LONG, []() -> MessageProcessor * { return new TestProcessor; });
    std::unique_ptr<MessageProcessor> pOwn;
    try
    {
        pOwn.reset(oFactory.CreateProcessor(LONG));
    }
    catch (...)
    {
        oFactory.Unregister(LONG);
        throw;
    }
    oFactory.Unregister(LONG);
    return Check(oResult, pOwn != nullptr);
}

Outcome UseClassRepository()
{
    std::unique_ptr<Root> const pResult(
        ClassRepository::Instance().CreateNew(Result::GetStaticClassDesc().GetClassName()));
    return Check(dynamic_cast<Result *>(pResult.get()) != nullptr);
}

/// Gone at once after the end of the library alone, so it is done once in a while only.
Outcome RegisterStaticObjects()
{
    static int iRegistered = 0;
    if (++iRegistered > 5)
        return Outcome::eDone;
    return Check(*RegisterStaticObject(new std::string(LONG)) == LONG);
}

Outcome UseDebugSwitches()
{
    int iLevel = -1;
    return Check(Support::RegisterLogPoint(&iLevel, "Pipe", "f.cpp", 1) == 1 && iLevel == 1);
}

Outcome FormatMoment()
{
    ValueDateTime const oMoment(86'400LL * 365, Time::ePrecisionSecond);
    String sText;
    oMoment.Format("%Y-%m-%d %H:%M:%S and a text that is longer than any", sText, TimeZone::eGreenwich);
    ValueString sValue("");
    std::unique_ptr<Root> const pCopy(oMoment.GetCopy());
    return Check(
        sText.Find("1971-01-01 00:00:00") == 0 && pCopy && oMoment.GetYear(TimeZone::GetLocal()) > 1969);
}

Outcome SendThroughPipe()
{
    PipeDebMessage oPipe(LONG);
    oPipe.Send(ResultMessage(MakeFailure()));
    oPipe.Send(NumberMessage(5));
    std::unique_ptr<Message> const pFirst(oPipe.Receive());
    bool const bFirst = dynamic_cast<ResultMessage *>(pFirst.get()) != nullptr;
    oPipe.Clear();
    return Check(bFirst && oPipe.IsEmpty());
}

Outcome SendManyLines()
{
    LinePipe oPipe;
    for (int i = 0; i < 60; ++i)
        oPipe.Send(LONG);
    return Check(oPipe.GetSize() == 60);
}

Outcome RunMachine()
{
    bool bSwitch = false;
    OpenContext oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            oTask.SetVar(LONG, LONG);
            oTask.SetLocalVar("local", oTask.GetVar(LONG, "none"));
            std::unique_ptr<Message> const pMessage(oTask.Receive(0));
            oTask.Send(NumberMessage(7));
            bSwitch = !bSwitch;
            return bSwitch ? 0 : Task::TR_REMAIN;
        }));
    TaskContextMessage oSetting;
    oSetting.SetTaskName("task");
    oSetting.SetEnabled(true);
    oContext.WriteMessage(oSetting);
    oContext.WriteMessage(NumberMessage(5));
    for (int i = 0; i < 4; ++i)
        oContext.Process();
    std::unique_ptr<Message> const pMessage(oContext.ReadMessage());
    return Check(pMessage && oContext.GetVar(LONG, "none") == LONG);
}

Outcome RunMachineOnThreads()
{
    std::atomic<int> iSteps{0};
    bool bStarted = false;
    {
        TaskContextThread oContext(new OneTaskMachine(
            [&](OpenTask & oTask)
            {
                oTask.SetVar(LONG, LONG);
                return ++iSteps % 2 == 1 ? 0 : Task::TR_REMAIN;
            }));
        oContext.Process();
        bStarted = true;
        // Without memory the step may have ended before its task.
        for (int i = 0; iSteps == 0 && (i < 20 || !MemoryFault::HasStruck()); ++i)
            OS::Sleep(1);
    }
    return iSteps > 0 ? Check(bStarted) : Outcome::eFailed;
}

class Worker : public Thread
{
public:
    ~Worker() override { static_cast<void>(Kill(0)); }
    std::atomic<bool> bDone{false};

private:
    void Process() override
    {
        bDone = true;
        try
        {
            Exception::Throw(MakeFailure());
        }
        catch (std::bad_alloc const &)
        {
            // What is no Exception has to stay within Process.
        }
    }
};

Outcome RunThread()
{
    Worker oWorker;
    Result const oResult = oWorker.Run();
    while (oWorker.IsRunning())
        OS::Sleep(1);
    return Check(oResult, oWorker.bDone);
}

class Sleeper : public Thread
{
public:
    ~Sleeper() override { static_cast<void>(Kill(0)); }

private:
    void Process() override { OS::Sleep(1'000'000); }
};

Outcome KillThread()
{
    Sleeper oThread;
    Result oResult = oThread.Run();
    oResult.InsertFront(oThread.Kill(1));
    return Check(oResult, !oThread.IsRunning());
}

std::string const & GetChildCommand()
{
    static std::string const sCommand = "\"" + std::string(TESSEL_TEST_PROGRAMS) + "/Child\" ";
    return sCommand;
}

/// A child that has ended, or was never begun, whatever the memory did to its object.
class Child : public CmdLine
{
public:
    Child(char const * sActions, int iMode)
    {
        SetMode(iMode);
        SetCommand(GetChildCommand() + sActions);
    }
    ~Child() override
    {
        // What stops a test from looking is not to leave a child.
        for (bool bEnded = false; !bEnded;)
            try
            {
                static_cast<void>(Kill(0));
                bEnded = WaitTermination() != eWaitTimeout;
            }
            catch (std::bad_alloc const &)
            {
                if (iProcessId > 0)
                    ::kill(iProcessId, SIGKILL);
                bEnded = WaitTermination() != eWaitTimeout;
            }
    }

    int iProcessId = 0;
};

constexpr int WITH_READERS = CmdLine::eModeRedirect | CmdLine::eModeReaderThreads;

std::size_t CountLines(CmdLine & oChild, String * (CmdLine::*fReceive)())
{
    std::size_t iLines = 0;
    while (std::unique_ptr<String> const pLine{(oChild.*fReceive)()})
        ++iLines;
    return iLines;
}

Outcome ReadLinesOnThreads()
{
    Child oChild("out one\\ntwo\\nthree\\n err four\\n out five\\n err six\\n", WITH_READERS);
    Result oResult = oChild.Run(oChild.iProcessId);
    if (oResult.IsError())
        return Check(oResult, false);
    oResult = oChild.ReadStdStreamUntilEof(CmdLine::eStdErr);
    oResult.InsertFront(oChild.ReadStdStreamUntilEof(CmdLine::eStdOut));
    std::size_t const iLines =
        CountLines(oChild, &CmdLine::ReceiveStdOut) + CountLines(oChild, &CmdLine::ReceiveStdErr);
    static std::size_t iAll = 0;
    if (iAll == 0 && oResult.IsOk())
        iAll = iLines;
    return Check(oResult, iLines == iAll && oChild.WaitTermination() == CmdLine::eWaitTerminated);
}

Outcome ReadLinesHere()
{
    Child oChild("out one\\ntwo\\nthree\\n", CmdLine::eModeRedirect);
    Result oResult = oChild.Run(oChild.iProcessId);
    if (oResult.IsError())
        return Outcome::eFailed;
    std::vector<String> vLines;
    oResult = oChild.ReadStdStreamUntilEof(CmdLine::eStdOut, vLines);
    return Check(oResult, vLines.size() == 3 && vLines[2] == "three");
}

Outcome KillChild()
{
    Child oChild("hang", WITH_READERS);
    Result oResult = oChild.Run(oChild.iProcessId);
    if (oResult.IsError())
        return Outcome::eFailed;
    oResult = oChild.Kill(5);
    return Check(oResult, oChild.WaitTermination() == CmdLine::eWaitTerminated && oChild.GetExitCode() == 5);
}

Outcome StartSuspendedChild()
{
    CmdLine oChild;
    oChild.SetCommand(GetChildCommand() + "hang");
    oChild.SetMode(CmdLine::eModeSuspended);
    int iProcessId = 0;
    Result const oResult = oChild.Run(iProcessId);
    return Check(oResult, iProcessId > 0);
}

Outcome FailToStartChild()
{
    CmdLine oChild;
    oChild.SetCommand("/no/such/program");
    int iProcessId = 0;
    return Check(oChild.Run(iProcessId).GetErrorCode() == ERR::eSubsystem);
}

Outcome LoadLibraries()
{
    LibraryProxy oLibrary(TESSEL_FAULT_LIBRARY);
    Result const oResult = oLibrary.Load();
    LibraryProxy oNone("/no/such/library");
    return Check(oResult, oNone.Load().GetErrorCode() == ERR::eNotFound);
}

Outcome AskSystem()
{
    String sName;
    Result oResult = OS::GetApplicationFileName(sName);
    oResult.InsertFront(OS::FormatError(2).IsOk() ? MakeFailure() : Result());
    return Check(oResult, Support::GetAppIniFileName() == sName + ".ini");
}

} // namespace

std::vector<Operation> const & GetOperations()
{
    static std::vector<Operation> const vOperations = {
        {"MakeResults", &MakeResults},
        {"ConvertResult", &ConvertResult},
        {"WalkResult", &WalkResult},
        {"FailAssertion", &FailAssertion},
        {"ConvertString", &ConvertString},
        {"ConvertInteger", &ConvertInteger},
        {"ConvertFloat", &ConvertFloat},
        {"ConvertByLayout", &ConvertByLayout},
        {"ConvertNamedValue", &ConvertNamedValue},
        {"ConvertCollection", &ConvertCollection},
        {"CopyCollectionLayout", &CopyCollectionLayout},
        {"ChangeString", &ChangeString},
        {"FormateString", &FormateString},
        {"SplitText", &SplitText},
        {"MatchPattern", &MatchPattern},
        {"ParseArguments", &ParseArguments},
        {"ReadIniFile", &ReadIniFile},
        {"ReopenIniFile", &ReopenIniFile},
        {"ExplainIniFailure", &ExplainIniFailure},
        {"DispatchMessages", &DispatchMessages},
        {"LogMessages", &LogMessages},
        {"CopyMessages", &CopyMessages},
        {"RegisterOnTheGlobalBus", &RegisterOnTheGlobalBus},
        {"UseClients", &UseClients},
        {"UseFactories", &UseFactories},
        {"UseClassRepository", &UseClassRepository},
        {"RegisterStaticObjects", &RegisterStaticObjects},
        {"UseDebugSwitches", &UseDebugSwitches},
        {"FormatMoment", &FormatMoment},
        {"SendThroughPipe", &SendThroughPipe},
        {"SendManyLines", &SendManyLines},
        {"RunMachine", &RunMachine},
        {"RunMachineOnThreads", &RunMachineOnThreads},
        {"RunThread", &RunThread},
        {"KillThread", &KillThread},
        {"ReadLinesOnThreads", &ReadLinesOnThreads},
        {"ReadLinesHere", &ReadLinesHere},
        {"KillChild", &KillChild},
        {"StartSuspendedChild", &StartSuspendedChild},
        {"FailToStartChild", &FailToStartChild},
        {"LoadLibraries", &LoadLibraries},
        {"AskSystem", &AskSystem},
    };
    return vOperations;
}

} // namespace tslfaults
