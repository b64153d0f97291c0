#include "AssertionTest.h"
#include "ProcessTest.h"
#include "TestMessages.h"

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
    std::atomic<int> iTexts{0};
    RunOnThreads(4, [&](int) { Trace("Off", [&] { return String() << ++iTexts; }); });
    EXPECT_EQ(iTexts, 0);
}

TEST(LogLine, HasTheTextAsItStands)
{
    DebugMessage oMessage{ValueString("%n ${No} \0|"s)};
    oMessage.SetIdentifier("%s");
    EXPECT_TRUE(Write(oMessage).ends_with(" DEB %s %n ${No} \0|"s)) << Write(oMessage);
    EXPECT_TRUE(Write(DebugMessage()).ends_with(" DEB  ")) << "nulls leave no trace";
}
