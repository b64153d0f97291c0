#include "Operations.h"

#include "Memory.h"

#include "../../examples/values/ValueVector.h"
#include "../OpenThread.h"
#include "../TestChild.h"
#include "../TestClient.h"
#include "../TestMachine.h"

#include <patternmatcher/PatternMatcher.h>

#include <fstream>

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

Result MakeFailure()
{
    return {5, LONG, Result(3, LONG, Result(2, "short", Result::eCategoryIo))};
}

std::vector<unsigned int> GetTypes()
{
    return {NumberMessage::GetStaticClassDesc().GetClassId(), Message::GetBaseType()};
}

template<class V>
Outcome ConvertBothWays(V const & oValue)
{
    ValueString sText("");
    oValue.AddAsString(sText);
    V oRead;
    Result const oResult = oRead.GetConverter().ConvertFromText(sText, oRead);
    return {oResult, oRead == oValue};
}

std::string Write(Value const & oValue, ValueConverterLayout const & oLayout)
{
    ValueString sText("");
    oValue.GetConverter().ConvertToText(oValue, sText, oLayout);
    return sText.s_str();
}

/// An ini file of many chapters and keys. Other processes may be reading the one that is there.
char const * GetIniName()
{
    static char const * const sName = []
    {
        std::string const sNew = "sweep.ini." + std::to_string(::getpid());
        std::ofstream oFile(sNew);
        for (int iChapter = 0; iChapter < 30; ++iChapter)
        {
            oFile << "[chapter" << iChapter << "]\n";
            for (int iKey = 0; iKey < 30; ++iKey)
                oFile << "key" << iKey << '=' << LONG << "\n+=" << iKey << '\n';
        }
        oFile << "[numbers]\nnumber=5\n";
        oFile.close();
        std::filesystem::rename(sNew, "sweep.ini");
        return "sweep.ini";
    }();
    return sName;
}

Outcome RunThread(std::function<void()> fWork)
{
    bool bDone = false;
    OpenThread oThread(
        [&]
        {
            bDone = true;
            try
            {
                fWork();
            }
            catch (std::bad_alloc const &)
            {
                // What is no Exception has to stay within Process.
            }
        });
    Result const oResult = oThread.Run();
    while (oThread.IsRunning())
        OS::Sleep(1);
    return {oResult, bDone};
}

OneTaskMachine * MakeMachine(std::atomic<int> & iSteps)
{
    return new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            oTask.SetVar(LONG, LONG);
            oTask.SetLocalVar("local", oTask.GetVar(LONG, "none"));
            std::unique_ptr<Message> const pMessage(oTask.Receive(0));
            oTask.Send(NumberMessage(7));
            return ++iSteps % 2 == 1 ? 0 : Task::TR_REMAIN;
        });
}

/// Runs the child and has it read by the function, which returns whether all is right then.
Outcome RunChild(Child && oChild, std::function<Outcome(Child &)> const & fRead)
{
    Result const oResult = oChild.Start();
    return oResult.IsError() ? Outcome::eFailed : fRead(oChild);
}

} // namespace

std::vector<Operation> const & GetOperations()
{
    static std::vector<Operation> const vOperations = {
        {"UseResults",
            []
            {
                Result oFailure = MakeResult(4, LONG, MakeFailure());
                oFailure.SetCause(LONG);
                Result oCopy(oFailure);
                oCopy = oFailure;
                oCopy.InsertFront(MakeFailure());
                oCopy.SetPrevious(oFailure.GetWithoutHistory());
                int iElements = 0;
                auto const pElement = oFailure.GetConstIterator();
                for (pElement->Begin(); !pElement->IsEnd(); pElement->Next())
                    ++iElements;
                return oFailure.GetHistorySize() == 3 && oCopy.GetHistorySize() == 1 && iElements == 6
                       && Write(oFailure, ResultConverterLayout()).find(LONG) > 0;
            }},
        {"FailAssertion",
            []
            {
                try
                {
                    XAssertionFailed("x>0", LONG);
                }
                catch (Exception const & oException)
                {
                    return oException.GetResult().GetErrorCode() == ERR::eInternal;
                }
            }},
        {"ConvertString", [] { return Write(ValueString(LONG), ValueStringConverterLayout()) == LONG; }},
        {"ConvertInteger", [] { return ConvertBothWays(ValueInt32(-123456)); }},
        {"ConvertFloat", [] { return ConvertBothWays(ValueFloat32(1.5F)); }},
        {"ConvertByLayout",
            []
            {
                ValueFloatConverterLayout oLayout("the value ${%10.3f} in a text of some length");
                oLayout.SetPrefix(LONG);
                std::unique_ptr<Root> const pCopy(oLayout.GetCopy());
                return Write(ValueFloat32(2.25F), oLayout).find("2.250 in a text") != std::string::npos;
            }},
        {"ConvertCollection",
            []
            {
                NamedValue oNamed(LONG, ValueString(LONG));
                oNamed.SetValue(ValueInt32(7));
                ValueVector oValues;
                oValues.Add(oNamed);
                oValues.Add(ValueString(LONG));
                ValueVector const oCopy(oValues);
                ValueString sText("");
                oCopy.AddAsString(sText);
                return oCopy.GetCount() == 2 && sText.Find(LONG) > 0;
            }},
        {"CopyCollectionLayout",
            []
            {
                ValueConverterLayoutCollection oLayout(dynamic_cast<ValueConverterLayoutCollection const &>(
                    ValueVector().GetConverter().GetDefaultLayout()));
                oLayout.AddLayout(new ValueFloatConverterLayout("${%.1f}"));
                oLayout.SetSeparator(LONG);
                ValueVector oValues;
                oValues.Add(ValueFloat32(1));
                oValues.Add(ValueFloat32(2));
                return Write(oValues, ValueConverterLayoutCollection(oLayout)).starts_with("(1.0a text");
            }},
        {"ChangeString",
            []
            {
                String sText(LONG);
                sText << 1 << ' ' << 2.5 << LONG;
                sText.Replace("text", LONG);
                sText.Insert(3, LONG);
                sText.Append(sText);
                sText.Upper();
                sText.Format("%s %d", LONG, 5);
                String const sSum = sText + LONG + 3 + sText.Mid(2).Left(70).Right(60);
                return sSum.GetLength() > 200 && sText.GetLength() == 77;
            }},
        {"FormateString",
            []
            {
                String sNormal;
                StringFormator(
                    StringFormator::eUpper | StringFormator::eTrimLeft | StringFormator::eTrimRight)
                    .Format(String("  ") + LONG + "  ", sNormal);
                return sNormal.GetLength() == 75 && sNormal.GetAt(0) == 'A';
            }},
        {"SplitText",
            []
            {
                std::vector<String> vParts;
                Support::StringSplitter(String(LONG) + ";\"b;c\"; d\\;e", vParts, ';',
                    Support::eSplitTrimLeft | Support::eSplitQuotes | Support::eSplitRemoveEscape, '\\');
                return vParts.size() == 3 && vParts[0] == LONG;
            }},
        {"MatchPattern",
            []
            {
                PatternMatcher const oMatcher("(a+)(b|c){2,5}[^x]*?(d)", PatternMatcher::eIgnoreCase);
                std::string const sText = std::string(300, 'a') + "bcbc and so on d";
                return oMatcher.Match(sText, 0) == 4 && oMatcher.substr(sText, 3) == "d";
            }},
        {"ParseArguments",
            []() -> Outcome
            {
                CmdLineParser oParser;
                Result const oResult =
                    oParser.SetCmdLine("program --option value -o /s parameter \"" + String(LONG) + '"');
                std::vector<String> vParameters;
                oParser.GetParameters(vParameters);
                String sValue;
                oParser.GetOption("option", sValue, CmdLineParser::eOptionAny);
                return {oResult, sValue == "value" && vParameters.back() == LONG};
            }},
        {"ReadIniFile",
            []() -> Outcome
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
                return {oResult, bFound && vNames.size() == 30 && iNumber == 5};
            }},
        // One that is used again after a failure is as it was at first.
        {"ReopenIniFile",
            []
            {
                IniFile oIni;
                for (int i = 0; i < 2; ++i)
                    try
                    {
                        if (oIni.Open(GetIniName()).IsError())
                            return false;
                    }
                    catch (std::bad_alloc const &)
                    {
                        if (oIni.IsOpen() || !oIni.GetFileName().IsEmpty())
                            return false;
                        throw;
                    }
                return oIni.IsOpen();
            }},
        {"ExplainIniFailure",
            []
            {
                IniFile oIni;
                Result oResult = oIni.OpenEmpty();
                String sValue;
                return !oIni.GetString("chapter", LONG, sValue, oResult)
                       && oResult.GetErrorCode() == ERR::eBadData
                       && oIni.Open("no such file").GetErrorCode() == ERR::eNotFound;
            }},
        {"DispatchMessages",
            []() -> Outcome
            {
                // Before the bus, which tells it of its end if a failure leaves it registered.
                TestProcessor const oProcessor(
                    [](Message const & oMessage, Result & oAnswer)
                    {
                        String sText;
                        oAnswer.InsertFront(MakeResult(3, oMessage.AddAsString(sText)));
                    });
                MessageDispatcher oBus;
                if (oBus.Register(oProcessor, {Message::GetBaseType()}).IsError())
                    return Outcome::eFailed;
                Result oAnswer;
                oBus.Process(NumberMessage(5), oAnswer);
                oBus.Process(ResultMessage(MakeFailure()), oAnswer);
                oBus.Unregister(oProcessor);
                return oAnswer.GetHistorySize() == 1 && oAnswer.GetErrorCode() == 3;
            }},
        {"LogMessages",
            []() -> Outcome
            {
                Result oResult = Support::DispatchDebugMessage("Fault", LONG, "f.cpp", 1);
                oResult.InsertFront(Support::DispatchMessage(MakeFailure()));
                oResult.InsertFront(Support::DispatchMessage(NumberMessage(5)));
                return oResult;
            }},
        {"CopyMessages",
            []
            {
                DebugMessage oMessage;
                oMessage.SetText(LONG);
                oMessage.SetIdentifier(LONG);
                std::unique_ptr<DebugMessage> const pCopy(oMessage.GetClone());
                String sCopy;
                pCopy->AddAsString(sCopy);
                String sLine;
                DefaultMessageLayout().FormatMessage(*pCopy, sLine);
                return sCopy.Find(LONG) > 0 && sLine.Find(LONG) > 0;
            }},
        {"RegisterOnTheGlobalBus",
            []() -> Outcome
            {
                TestProcessor const oProcessor;
                try
                {
                    Result const oResult = Support::GetAppDisp().Register(oProcessor, GetTypes());
                    Support::GetAppDisp().Unregister(oProcessor);
                    return oResult;
                }
                catch (std::bad_alloc const &)
                {
                    Support::GetAppDisp().Unregister(oProcessor); // from the types that came before
                    throw;
                }
            }},
        // Clients that come and go, also without their last word, leave a bus that can be used.
        {"UseClients",
            []() -> Outcome
            {
                MessageDispatcher oBus;
                Result oResult;
                try
                {
                    TestClient oClient(oBus, GetTypes());
                    oResult = oClient.Open();
                    oBus.Process(NumberMessage(5), oResult);
                    return {oResult, oClient.iCalls == 2};
                }
                catch (std::bad_alloc const &)
                {
                    oBus.Process(NumberMessage(5), oResult);
                    throw;
                }
            }},
        {"UseFactories",
            []() -> Outcome
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
                return {oResult, pOwn != nullptr};
            }},
        {"CreateByName",
            []
            {
                std::unique_ptr<Root> const pResult(
                    ClassRepository::Instance().CreateNew(Result::GetStaticClassDesc().GetClassName()));
                return dynamic_cast<Result *>(pResult.get()) != nullptr;
            }},
        // They stay until the library ends, so only a few are registered.
        {"RegisterStaticObjects",
            []
            {
                static int iRegistered = 0;
                return ++iRegistered > 5 || *RegisterStaticObject(new std::string(LONG)) == LONG;
            }},
        {"UseDebugSwitches",
            []
            {
                int iLevel = -1;
                return Support::RegisterLogPoint(&iLevel, "Pipe", "f.cpp", 1) == 1 && iLevel == 1;
            }},
        {"FormatMoment",
            []
            {
                ValueDateTime const oMoment(86'400LL * 365, Time::ePrecisionSecond);
                String sText;
                oMoment.Format(
                    "%Y-%m-%d %H:%M:%S and a text that is longer than any", sText, TimeZone::eGreenwich);
                std::unique_ptr<Root> const pCopy(oMoment.GetCopy());
                return sText.Find("1971-01-01 00:00:00") == 0 && oMoment.GetYear(TimeZone::GetLocal()) > 1969;
            }},
        {"SendThroughPipes",
            []
            {
                PipeDebMessage oPipe(LONG);
                oPipe.Send(ResultMessage(MakeFailure()));
                oPipe.Send(NumberMessage(5));
                std::unique_ptr<Message> const pFirst(oPipe.Receive());
                oPipe.Clear();
                LinePipe oLines;
                for (int i = 0; i < 60; ++i)
                    oLines.Send(LONG);
                return dynamic_cast<ResultMessage *>(pFirst.get()) && oPipe.IsEmpty()
                       && oLines.GetSize() == 60;
            }},
        {"RunMachine",
            []
            {
                std::atomic<int> iSteps{0};
                OpenContext oContext(MakeMachine(iSteps));
                TaskContextMessage oSetting;
                oSetting.SetTaskName("task");
                oSetting.SetEnabled(true);
                oContext.WriteMessage(oSetting);
                oContext.WriteMessage(NumberMessage(5));
                for (int i = 0; i < 4; ++i)
                    oContext.Process();
                std::unique_ptr<Message> const pMessage(oContext.ReadMessage());
                return pMessage && oContext.GetVar(LONG, "none") == LONG;
            }},
        {"RunMachineOnThreads",
            []
            {
                std::atomic<int> iSteps{0};
                {
                    TaskContextThread oContext(MakeMachine(iSteps));
                    oContext.Process();
                    // Without memory the step may have ended before its task.
                    for (int i = 0; iSteps == 0 && (i < 20 || !MemoryFault::HasStruck()); ++i)
                        OS::Sleep(1);
                }
                return iSteps > 0 ? Outcome::eDone : Outcome::eFailed;
            }},
        {"RunThread", [] { return RunThread([] { Exception::Throw(MakeFailure()); }); }},
        {"KillThread",
            []() -> Outcome
            {
                OpenThread oThread(&SleepForLong);
                Result oResult = oThread.Run();
                oResult.InsertFront(oThread.Kill(1));
                return {oResult, !oThread.IsRunning()};
            }},
        {"ReadLinesOnThreads",
            []
            {
                return RunChild(
                    Child("out one\\ntwo\\nthree\\n err four\\n out five\\n err six\\n", WITH_READERS),
                    [](Child & oChild) -> Outcome
                    {
                        Result oResult = oChild.ReadStdStreamUntilEof(CmdLine::eStdErr);
                        oResult.InsertFront(oChild.ReadStdStreamUntilEof(CmdLine::eStdOut));
                        String const sLines = oChild.TakeOutput() + oChild.TakeErrors();
                        return {oResult, sLines == "one\ntwo\nthree\nfive\nfour\nsix\n"
                                             && oChild.WaitTermination() == CmdLine::eWaitTerminated};
                    });
            }},
        {"ReadLinesHere",
            []
            {
                return RunChild(Child("out one\\ntwo\\nthree\\n"),
                    [](Child & oChild) -> Outcome
                    {
                        std::vector<String> vLines;
                        Result const oResult = oChild.ReadStdStreamUntilEof(CmdLine::eStdOut, vLines);
                        return {oResult, vLines.size() == 3 && vLines[2] == "three"};
                    });
            }},
        {"KillChild",
            []
            {
                return RunChild(Child("hang", WITH_READERS),
                    [](Child & oChild) -> Outcome
                    {
                        Result const oResult = oChild.Kill(5);
                        return {oResult, oChild.WaitTermination() == CmdLine::eWaitTerminated
                                             && oChild.GetExitCode() == 5};
                    });
            }},
        {"StartSuspendedChild",
            []() -> Outcome
            {
                CmdLine oChild; // which is ended with its object
                oChild.SetCommand(CHILD + " hang");
                oChild.SetMode(CmdLine::eModeSuspended);
                int iProcessId = 0;
                Result const oResult = oChild.Run(iProcessId);
                CmdLine oNone;
                oNone.SetCommand("/no/such/program");
                return {oResult, oNone.Run(iProcessId).GetErrorCode() == ERR::eSubsystem};
            }},
        {"LoadLibraries",
            []() -> Outcome
            {
                LibraryProxy oLibrary(TESSEL_FAULT_LIBRARY);
                Result const oResult = oLibrary.Load();
                LibraryProxy oNone("/no/such/library");
                return {oResult, oNone.Load().GetErrorCode() == ERR::eNotFound};
            }},
        {"AskSystem",
            []() -> Outcome
            {
                String sName;
                Result const oResult = OS::GetApplicationFileName(sName);
                return {
                    oResult, OS::FormatError(2).IsError() && Support::GetAppIniFileName() == sName + ".ini"};
            }},
    };
    return vOperations;
}

} // namespace tslfaults
