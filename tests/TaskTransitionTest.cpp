#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

/// What the table answers, or 99 where it has no answer.
static int GetNext(TaskTransitionList const & oList, int iSource, int iResult)
{
    int iNext = 99;
    oList.GetNextTaskId(iSource, iResult, iNext);
    return iNext;
}

TEST(TransitionTable, TakesOwnIdsAndWhatTheReservedOnesAreFor)
{
    constexpr int TASK_INIT = Task::TASK_INIT, TASK_FINE = Task::TASK_FINE, TR_PROCEED = Task::TR_PROCEED;
    char const * const sBadSource =
        "' is invalid. Use of predefined tasks but TASK_INIT isnot allowed as source task."
        " Use own task ids > RESERVED_TASK_ID_MAX.";
    char const * const sBadResult =
        "' is invalid. Use of predefined transition ids other but TR_PROCEED is not allowed."
        " Use own transistion ids > RESERVED_TRANSION_ID_MAX.";
    char const * const sBadDestination =
        "' is invalid. Use of predefined tasks other but TASK_FINE is not allowed as desination task."
        " Use own task ids > RESERVED_TASK_ID_MAX.";

    // The text is empty for a success; in the end comes the number of source tasks afterwards.
    Rows<int, int, int, std::string, int> vRows = {
        {TASK_INIT, TR_PROCEED, 1, "", 1},
        {0, 0, 0, "", 1},
        {3, TR_PROCEED, TASK_FINE, "", 1},
        {TASK_INIT, 5, 1,
            "Transition id '5' is invalid. With TASK_INIT as source task, TR_PROCEED is the only allowed"
            " transition.",
            0},
        {TASK_INIT, TR_PROCEED, -1, std::string("Id of destination task '-1") + sBadDestination, 1},
        {TASK_FINE, TR_PROCEED, 1, std::string("Id of source task '-2") + sBadSource, 0},
        {-3, -1, -1, std::string("Id of source task '-3") + sBadSource, 0},
        {3, -3, -3, std::string("Transition id '-3") + sBadResult, 1},
        {3, 0, -3, std::string("Id of destination task '-3") + sBadDestination, 1},
    };
    for (auto const & [iSource, iResult, iDestination, sText, iCount] : vRows)
    {
        SCOPED_TRACE(testing::Message() << iSource << ' ' << iResult << ' ' << iDestination);
        TaskTransitionList oList;
        Result const oResult = oList.AddTransition(iSource, iResult, iDestination);
        bool const bTaken = sText.empty();
        EXPECT_EQ(oResult.GetErrorCode(), bTaken ? 0 : 2);
        EXPECT_EQ(bTaken ? "" : oResult.GetText().s_str(), sText);
        EXPECT_EQ(oList.GetCount(), iCount);
        EXPECT_EQ(GetNext(oList, iSource, iResult), bTaken ? iDestination : 99);
    }
}

TEST(TransitionTable, AnswersForEachTaskAndResultWithTheLastWord)
{
    TaskTransitionList oList;
    for (auto const & [iResult, iDestination] : std::map<int, int>{{7, 5}, {8, 6}})
    {
        EXPECT_TRUE(oList.AddTransition(3, iResult, 4).IsOk());
        EXPECT_TRUE(oList.AddTransition(3, iResult, iDestination).IsOk());
    }
    EXPECT_TRUE(oList.AddTransition(4, 7, 3).IsOk());
    Rows<int, int, int> vAnswers = {
        {3, 7, 5},
        {3, 8, 6},
        {4, 7, 3},
        {4, 8, 99},
        {5, 7, 99},
    };
    EXPECT_EQ(oList.GetCount(), 2);
    for (auto const & [iSource, iResult, iAnswer] : vAnswers)
        EXPECT_EQ(GetNext(oList, iSource, iResult), iAnswer) << iSource << ' ' << iResult;

    // The same with many tasks and results.
    constexpr int COUNT = 100;
    for (int i = 0; i < COUNT; ++i)
    {
        EXPECT_TRUE(oList.AddTransition(i, 7, i + 1).IsOk());
        EXPECT_TRUE(oList.AddTransition(3, i + 10, i).IsOk());
    }
    TaskTransitionList const oCopy = oList;
    EXPECT_EQ(oCopy.GetCount(), COUNT);
    for (int i = 0; i < COUNT; ++i)
    {
        EXPECT_EQ(GetNext(oCopy, i, 7), i + 1);
        EXPECT_EQ(GetNext(oCopy, 3, i + 10), i);
    }
    EXPECT_EQ(GetNext(oCopy, COUNT, 7), 99);
    EXPECT_EQ(GetNext(oCopy, 3, 110), 99);

    // A row takes the pair of its constructor as it is.
    TaskTransition oRow(Task::TR_REMAIN, -7);
    int iNext = 0;
    EXPECT_TRUE(oRow.GetNextTaskId(Task::TR_REMAIN, iNext));
    EXPECT_EQ(iNext, -7);
}
