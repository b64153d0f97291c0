#include "ProcessTest.h"
#include "TestMessages.h"

#include <tessel/Assertion.h>
#include <tessel/DebugMessage.h>
#include <tessel/Exception.h>
#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/LogPoint.h>
#include <tessel/MessageLayout.h>
#include <tessel/MessageProcessorFactory.h>
#include <tessel/ResultMessage.h>
#include <tessel/Support.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <functional>
#include <future>
#include <iterator>
#include <latch>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

using namespace tsl;
using namespace tsltest;
using namespace std::string_literals;

namespace
{

/// A message that no layout can write.
class UnwritableMessage : public Message
{
public:
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override
    {
        XAssertionFailed("elements", "none to be had");
    }

    ClassDescription const & GetClassDesc() const override
    {
        static ClassDescription const & oDescription = DescribeClass<UnwritableMessage>(
            &Message::GetStaticClassDesc(), ClassDescription::eConcrete, nullptr);
        return oDescription;
    }

protected:
    void DoCopy(Root const &) override {}
};

/// Registers the processor with the global bus for as long as the object lives.
class Listening
{
public:
    Listening(TestProcessor const & oProcessor, ClassDescription const & oType) : m_oProcessor(oProcessor)
    {
        EXPECT_TRUE(Support::GetAppDisp().Register(oProcessor, {GetTypeOf(oType)}).IsOk());
    }
    ~Listening() { Support::GetAppDisp().Unregister(m_oProcessor); }
    Listening(Listening const &) = delete;
    Listening & operator=(Listening const &) = delete;

private:
    TestProcessor const & m_oProcessor;
};

std::string Write(DebugMessage const & oMessage)
{
    String sLine;
    DefaultMessageLayout().FormatMessage(oMessage, sLine);
    return sLine.s_str();
}

} // namespace

TEST(GlobalBus, HearsOnceOfALayoutThatFailsAnAssertion)
{
    // The processor answers the report by what fails anew, inside of the report.
    TestProcessor const oWatcher(
        [](auto &, auto &) { EXPECT_EQ(Support::DispatchMessage(UnwritableMessage()).GetErrorCode(), 6); });
    Listening const oScope(oWatcher, ResultMessage::GetStaticClassDesc());
    Result const oResult = Support::DispatchMessage(UnwritableMessage());
    EXPECT_EQ(oResult.GetErrorCode(), 6);
    EXPECT_TRUE(
        oResult.GetText() == "XAssertion. Expression \"elements\" failed. \nInfo: \"none to be had\"");
    EXPECT_EQ(oWatcher.GetCalls(), 1);
}

TEST(GlobalBus, IsFreeForOthersWhateverAProcessorThrows)
{
    std::function<void()> const aThrowers[] = {[] { throw 7; }, [] { throw std::runtime_error("foreign"); },
        [] { throw Result(5, "bare", Result::eCategoryDefault); },
        [] { Exception::Throw(Result(5, "held", Result::eCategoryDefault)); },
        [] { XAssertionFailed("false", "Unknown"); }};
    for (std::function<void()> const & fThrow : aThrowers)
    {
        TestProcessor const oThrowing([&](auto &, auto &) { fThrow(); });
        Listening const oScope(oThrowing, NumberMessage::GetStaticClassDesc());
        try
        {
            EXPECT_TRUE(Support::DispatchMessage(NumberMessage()).IsError());
        }
        catch (Exception const &)
        {
            ADD_FAILURE() << "an Exception ends in the answer";
        }
        catch (...)
        {
        }

        // Another thread could not come past a lock that was left behind.
        auto const fReport = [] { return Support::DispatchDebugMessage("Id", "free", "f.cpp", 1).IsOk(); };
        EXPECT_TRUE(std::async(std::launch::async, fReport).get());
        EXPECT_EQ(oThrowing.GetCalls(), 1);
    }
}

TEST(LogPoints, ArePassedFirstByManyThreads)
{
    constexpr int iThreads = 4;
    std::atomic<int> iTexts{0};
    std::latch oStart(iThreads);
    {
        std::vector<std::jthread> vThreads;
        for (int i = 0; i < iThreads; ++i)
            vThreads.emplace_back(
                [&]
                {
                    oStart.arrive_and_wait();
                    Trace("Off",
                        [&]
                        {
                            ++iTexts;
                            return String("passed");
                        });
                });
    }
    EXPECT_EQ(iTexts, 0);
}

TEST(LogLine, HasTheTextAsItStands)
{
    DebugMessage oMessage{ValueString("%n ${No} \0|"s)};
    oMessage.SetIdentifier("%s");
    EXPECT_TRUE(Write(oMessage).ends_with(" DEB %s %n ${No} \0|"s)) << Write(oMessage);
    EXPECT_TRUE(Write(DebugMessage()).ends_with(" DEB  ")) << "nulls leave no trace";
}

TEST(LogFile, MayBeOpenedAgain)
{
    std::unique_ptr<MessageProcessor> const pLog(
        MessageProcessorFactory::Instance().CreateProcessor("LogFileProcessor"));
    EXPECT_TRUE(pLog->Open().IsOk());
    EXPECT_TRUE(pLog->Open().IsOk());

    std::ifstream oFile("Logfile.txt", std::ios::binary | std::ios::ate);
    std::string const sMark = "opened twice by " + std::to_string(::getpid());
    Result oResult;
    pLog->Process(DebugMessage(ValueString(sMark)), oResult);
    std::string const sAdded{std::istreambuf_iterator<char>(oFile), {}};
    EXPECT_NE(sAdded.find(sMark), std::string::npos) << sAdded;
}

TEST(LogFile, HasWholeLinesFromSeveralProcesses)
{
    TestProgram const oProgram("Reporter");
    {
        std::vector<std::jthread> vRuns;
        for (int i = 0; i < 3; ++i)
            vRuns.emplace_back([&] { EXPECT_EQ(oProgram.Run({"lines:100"}).iExitCode, 0); });
    }
    std::istringstream oLog(oProgram.ReadFile("Logfile.txt"));
    int iLines = 0;
    for (std::string sLine; std::getline(oLog, sLine); ++iLines)
        EXPECT_TRUE(sLine.ends_with("x<end>") && std::count(sLine.begin(), sLine.end(), '<') == 1) << sLine;
    EXPECT_EQ(iLines, 3 * 4 * 100);
}
