#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

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

Result MakeFailure(int iCode, char const * sText)
{
    Result oResult(iCode, sText, Result::eCategoryDefault);
    oResult.SetSource("f", iCode);
    return oResult;
}

} // namespace

TEST(MessageIteration, FailsOutsideOfTheElements)
{
    DebugMessage const oDebugMessage;
    ResultMessage const oResultMessage;
    TaskContextMessage const oContextMessage;
    DebugMessageConstIterator oDebug(oDebugMessage);
    ResultMessageConstIterator const oResult(oResultMessage);
    ResultConstIterator const oFields{Result()};
    TaskContextMessageConstIterator const oContext(oContextMessage);
    oDebug.Next();
    EXPECT_STREQ(oDebug.GetName(), "Pid") << "in front of the first, too";
    for (int i = 0; i < 6; ++i)
        oDebug.Next();
    for (auto const & [pElement, sClass] : std::map<MessageConstIterator const *, std::string>{
             {&oDebug, "DebugMessageConstIterator"}, {&oResult, "ResultMessageConstIterator"},
             {&oFields, "ResultConstIterator"}, {&oContext, "TaskContextMessageConstIterator"}})
    {
        EXPECT_TRUE(Asserts("false", sClass + "::GetName(): Zugriff auf ungültiges Element.",
            [&, p = pElement] { p->GetName(); }));
        EXPECT_TRUE(Asserts("false", sClass + "::GetValue(): Zugriff auf ungültiges Element.",
            [&, p = pElement] { p->GetValue(); }));
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
}

TEST(MessageText, ListsTheElements)
{
    DebugMessage oMessage(ValueString("it's on"));
    std::string const sIds =
        "Pid='" + std::to_string(OS::GetProcessId()) + "'; Tid='" + std::to_string(OS::GetThreadId()) + "'; ";
    EXPECT_EQ(AsText(oMessage).s_str(), sIds + "Id='NULL'; Text='it's on'; File='NULL'; Line='NULL'");
    oMessage.SetProcessId(12);
    oMessage.SetThreadId(34);
    oMessage.SetIdentifier("Task");
    oMessage.SetFile("f.cpp");
    oMessage.SetLine(7);
    std::unique_ptr<DebugMessage> const pClone(oMessage.GetClone());
    EXPECT_EQ(
        AsText(*pClone).s_str(), "Pid='12'; Tid='34'; Id='Task'; Text='it's on'; File='f.cpp'; Line='7'");
}

TEST(MessageText, RepeatsTheHistoryOfAResultLineByLine)
{
    std::string const s1 = "Number=1,Text=a,File=f,Line=1";
    std::string const s2 = s1 + "Number=2,Text=b,File=f,Line=2";
    std::string const s3 = s2 + "Number=3,Text=c,File=f,Line=3";
    std::string const s4 = s3 + "Number=4,Text=d,File=f,Line=4";
    Result oResult = MakeFailure(1, "a");
    oResult.InsertFront(MakeFailure(2, "b"));
    oResult.InsertFront(MakeFailure(3, "c"));
    EXPECT_EQ(AsText(ResultMessage(oResult)).s_str(),
        "\nHistory 2: " + s1 + "'\nHistory 1: " + s2 + "'\nHistory 0: " + s3);
    oResult.InsertFront(MakeFailure(4, "d"));
    std::unique_ptr<ResultMessage> const pClone(ResultMessage(oResult).GetClone());
    EXPECT_EQ(AsText(*pClone).s_str(),
        "\nHistory 3: " + s1 + "'; \nHistory 2: " + s2 + "'\nHistory 1: " + s3 + "'\nHistory 0: " + s4);
    EXPECT_EQ(AsText(ResultMessage()).s_str(), "\nHistory 0: NULL");
}
