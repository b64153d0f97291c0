#include "AssertionTest.h"

using namespace tsl;
using namespace tsltest;

namespace
{

/// What the table answers, or the given number where it has no answer.
int GetNext(TaskTransitionList const & oList, int iSource, int iResult, int iOtherwise)
{
    int iNext = iOtherwise;
    oList.GetNextTaskId(iSource, iResult, iNext);
    return iNext;
}

} // namespace

TEST(TransitionTable, TakesOwnIdsAndWhatTheReservedOnesAreFor)
{
    constexpr int TASK_INIT = Task::TASK_INIT;
    constexpr int TASK_FINE = Task::TASK_FINE;
    constexpr int TR_PROCEED = Task::TR_PROCEED;

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
    Rows<int, int, int, std::string, int> vRows = {{TASK_INIT, TR_PROCEED, 1, "", 1},
        {TASK_INIT, TR_PROCEED, TASK_FINE, "", 1}, {0, 0, 0, "", 1}, {3, TR_PROCEED, TASK_FINE, "", 1},
        {TASK_INIT, 5, 1,
            "Transition id '5' is invalid. With TASK_INIT as source task, TR_PROCEED is the only allowed"
            " transition.",
            0},
        {TASK_INIT, TR_PROCEED, -1, std::string("Id of destination task '-1") + sBadDestination, 1},
        {TASK_FINE, TR_PROCEED, 1, std::string("Id of source task '-2") + sBadSource, 0},
        {-3, -1, -1, std::string("Id of source task '-3") + sBadSource, 0},
        {3, -3, -3, std::string("Transition id '-3") + sBadResult, 1},
        {3, 0, -3, std::string("Id of destination task '-3") + sBadDestination, 1}};
    for (auto const & [iSource, iResult, iDestination, sText, iCount] : vRows)
    {
        SCOPED_TRACE(testing::Message() << iSource << ' ' << iResult << ' ' << iDestination);
        TaskTransitionList oList;
        Result const oResult = oList.AddTransition(iSource, iResult, iDestination);
        bool const bTaken = sText.empty();
        EXPECT_EQ(oResult.GetErrorCode(), bTaken ? 0 : 2);
        EXPECT_EQ(bTaken ? "" : oResult.GetText().s_str(), sText);
        EXPECT_EQ(oList.GetCount(), iCount);
        EXPECT_EQ(GetNext(oList, iSource, iResult, 99), bTaken ? iDestination : 99);
    }
}

TEST(TransitionTable, AnswersForEachTaskAndResultWithTheLastWord)
{
    TaskTransitionList oList;
    EXPECT_TRUE(oList.AddTransition(3, 7, 4).IsOk());
    EXPECT_TRUE(oList.AddTransition(4, 7, 3).IsOk());
    EXPECT_TRUE(oList.AddTransition(3, 8, 6).IsOk());
    EXPECT_TRUE(oList.AddTransition(3, 7, 5).IsOk());
    EXPECT_EQ(oList.GetCount(), 2);
    EXPECT_EQ(GetNext(oList, 3, 7, 99), 5);
    EXPECT_EQ(GetNext(oList, 3, 8, 99), 6);
    EXPECT_EQ(GetNext(oList, 4, 7, 99), 3);
    EXPECT_EQ(GetNext(oList, 4, 8, 99), 99);
    EXPECT_EQ(GetNext(oList, 5, 7, 99), 99);

    // A row takes the pair of its constructor as it is.
    TaskTransition oRow(Task::TR_REMAIN, -7);
    int iNext = 0;
    EXPECT_TRUE(oRow.GetNextTaskId(Task::TR_REMAIN, iNext) && iNext == -7);
}
