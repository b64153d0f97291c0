#include "TestMessages.h"

#include <tessel/DebugMessage.h>
#include <tessel/Exception.h>
#include <tessel/OS.h>
#include <tessel/ResultConstIterator.h>
#include <tessel/ResultMessage.h>
#include <tessel/ValueNull.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace tsl;
using tsltest::NumberMessage;

namespace
{

String AsText(Message const & oMessage)
{
    String sText;
    return oMessage.AddAsString(sText);
}

/// Name=text of every element, as the walk meets them.
std::vector<std::string> Walk(AbstractNamedValueConstIterator<Value> & oElement)
{
    std::vector<std::string> vElements;
    for (oElement.Begin(); !oElement.IsEnd(); oElement.Next())
    {
        ValueString sText;
        vElements.push_back(oElement.GetName() + ("=" + oElement.GetValue().AddAsString(sText).s_str()));
    }
    return vElements;
}

/// The text that a Result converts to when its source place is the given one.
Result MakeFailure(int iCode, char const * sText)
{
    Result oResult(iCode, sText, Result::eCategoryDefault);
    oResult.SetSource("f", iCode);
    return oResult;
}

} // namespace

TEST(MessageIteration, StartsOverBehindTheEnd)
{
    DebugMessage const oMessage;
    DebugMessageConstIterator oElement(oMessage);
    EXPECT_TRUE(oElement.IsEnd());
    oElement.Next();
    EXPECT_STREQ(oElement.GetName(), "Pid");
    for (int i = 0; i < 6; ++i)
        oElement.Next();
    EXPECT_TRUE(oElement.IsEnd());

    DummyMessageIterator oNothing;
    oNothing.Begin();
    oNothing.Next();
    EXPECT_TRUE(oNothing.IsEnd());
    EXPECT_STREQ(oNothing.GetName(), "");
    EXPECT_EQ(&oNothing.GetValue(), &ValueNull::Null());
}

TEST(MessageIteration, FailsOutsideOfTheElements)
{
    DebugMessage const oDebugMessage;
    ResultMessage const oResultMessage;
    DebugMessageConstIterator const oDebug(oDebugMessage);
    ResultMessageConstIterator const oResult(oResultMessage);
    ResultConstIterator const oFields{Result()};
    struct Row
    {
        MessageConstIterator const & oElement;
        std::string sClass;
    };
    Row const aRows[] = {{oDebug, "DebugMessageConstIterator"}, {oResult, "ResultMessageConstIterator"},
        {oFields, "ResultConstIterator"}};
    for (Row const & oRow : aRows)
    {
        auto const GetFailure = [&](auto fAccess)
        {
            try
            {
                fAccess();
            }
            catch (Exception const & oException)
            {
                return std::string(oException.GetText());
            }
            return std::string("none");
        };
        std::string const sHead = "XAssertion. Expression \"false\" failed. \nInfo: \"" + oRow.sClass;
        EXPECT_EQ(GetFailure([&] { oRow.oElement.GetName(); }),
            sHead + "::GetName(): Zugriff auf ungültiges Element.\"");
        EXPECT_EQ(GetFailure([&] { oRow.oElement.GetValue(); }),
            sHead + "::GetValue(): Zugriff auf ungültiges Element.\"");
    }
}

TEST(MessageIteration, ShowsTheFieldsOfAResultAsTheyWere)
{
    Result oResult = MakeFailure(5, "text");
    oResult.SetCause("cause");
    auto const pElement = oResult.GetConstIterator();
    oResult.Clear();
    EXPECT_EQ(Walk(*pElement), (std::vector<std::string>{"ErrCode=5", "Text=text", "Category=0",
                                   "SourceLine=5", "SourceFile=f", "Cause=cause"}));
    EXPECT_EQ(
        Walk(*oResult.GetConstIterator()), (std::vector<std::string>{"ErrCode=0", "Text=NULL", "Category=0",
                                               "SourceLine=0", "SourceFile=", "Cause=NULL"}));
}

TEST(MessageText, ListsTheElements)
{
    DebugMessage oMessage(ValueString("it's on"));
    oMessage.SetProcessId(12);
    oMessage.SetThreadId(34);
    EXPECT_EQ(
        AsText(oMessage).s_str(), "Pid='12'; Tid='34'; Id='NULL'; Text='it's on'; File='NULL'; Line='NULL'");
    oMessage.SetIdentifier("Task");
    oMessage.SetFile("f.cpp");
    oMessage.SetLine(7);
    EXPECT_EQ(
        AsText(oMessage).s_str(), "Pid='12'; Tid='34'; Id='Task'; Text='it's on'; File='f.cpp'; Line='7'");
    EXPECT_EQ(AsText(NumberMessage()).s_str(), "");
}

TEST(MessageText, RepeatsTheHistoryOfAResultLineByLine)
{
    auto const Line = [](char const * sNumber, char const * sText)
    { return std::string("Number=") + sNumber + ",Text=" + sText + ",File=f,Line=" + sNumber; };
    std::string const s1 = Line("1", "a");
    std::string const s2 = Line("2", "b");
    std::string const s3 = Line("3", "c");
    std::string const s4 = Line("4", "d");

    Result oResult = MakeFailure(1, "a");
    EXPECT_EQ(AsText(ResultMessage(oResult)).s_str(), "\nHistory 0: " + s1);

    oResult.InsertFront(MakeFailure(2, "b"));
    oResult.InsertFront(MakeFailure(3, "c"));
    EXPECT_EQ(AsText(ResultMessage(oResult)).s_str(),
        "\nHistory 2: " + s1 + "'\nHistory 1: " + s1 + s2 + "'\nHistory 0: " + s1 + s2 + s3);

    oResult.InsertFront(MakeFailure(4, "d"));
    EXPECT_EQ(AsText(ResultMessage(oResult)).s_str(), "\nHistory 3: " + s1 + "'; \nHistory 2: " + s1 + s2
                                                          + "'\nHistory 1: " + s1 + s2 + s3
                                                          + "'\nHistory 0: " + s1 + s2 + s3 + s4);
    EXPECT_EQ(AsText(ResultMessage()).s_str(), "\nHistory 0: NULL");
}

TEST(MessageCopies, KeepWhatTheOriginHad)
{
    DebugMessage oMessage(ValueString("x"));
    EXPECT_EQ(oMessage.GetThreadId(), OS::GetThreadId());
    EXPECT_EQ(oMessage.GetProcessId(), OS::GetProcessId());
    oMessage.SetThreadId(1);
    oMessage.SetProcessId(2);
    oMessage.SetLine(3);
    std::unique_ptr<DebugMessage> const pClone(oMessage.GetClone());
    EXPECT_EQ(AsText(*pClone).s_str(), AsText(oMessage).s_str());
    EXPECT_EQ(pClone->GetType(), DebugMessage::GetStaticClassDesc().GetClassId());
    EXPECT_NE(pClone->GetType(), Message::GetBaseType());

    Result oResult = MakeFailure(1, "a");
    oResult.InsertFront(MakeFailure(2, "b"));
    std::unique_ptr<ResultMessage> const pResultClone(ResultMessage(oResult).GetClone());
    EXPECT_TRUE(pResultClone->GetResult() == oResult);
}
