#include "AssertionTest.h"
#include "ScriptedMachine.h"

#include <deque>

using namespace tsl;
using namespace tsltest;

namespace
{

/// Reads answers such as "p1 R 7, e2 P": the answers of a call in their order. Whoever has no answer (left)
/// remains.
std::function<int(char, int)> ReadAnswers(std::string const & sAnswers)
{
    std::map<std::string, int> const oNames = {{"R", Task::TR_REMAIN}, {"P", Task::TR_PROCEED},
        {"E", Task::TR_RETURN}, {"!", Script::eThrow}, {"X", Script::eThrowException},
        {"N", Script::eGiveNull}};

    std::map<std::string, std::deque<int>> oAnswers;
    std::istringstream oStream(sAnswers);
    for (std::string sPart; std::getline(oStream, sPart, ',');)
    {
        std::istringstream oPart(sPart);
        std::string sCall;
        oPart >> sCall;
        for (std::string sAnswer; oPart >> sAnswer;)
            oAnswers[sCall].push_back(oNames.contains(sAnswer) ? oNames.at(sAnswer) : std::stoi(sAnswer));
    }

    return [oAnswers](char cStep, int iId) mutable
    {
        std::deque<int> & oLeft = oAnswers[cStep + std::to_string(iId)];
        if (oLeft.empty())
            return static_cast<int>(Task::TR_REMAIN);
        int const iAnswer = oLeft.front();
        oLeft.pop_front();
        return iAnswer;
    };
}

/// The engine once more, without tasks, factories and contexts: what a machine is to do by its tables.
class Model
{
public:
    explicit Model(Script & oScript) : m_oScript(oScript), m_oTopmost{TOPMOST_ID, nullptr} {}

    std::string Step()
    {
        return TellStep(m_oScript, [this] { return Run(m_oTopmost); });
    }

private:
    struct State
    {
        int iId;
        std::unique_ptr<State> pCurrent;
    };

    int Process(State & oState)
    {
        if (oState.iId == Task::TASK_FINE)
            return Task::TR_RETURN;
        return oState.iId < FIRST_MACHINE_ID ? m_oScript.Call('p', oState.iId) : Run(oState);
    }

    int Enter(State & oState)
    {
        return oState.iId == Task::TASK_FINE ? Task::TR_REMAIN : m_oScript.Call('e', oState.iId);
    }

    void Exit(State & oState)
    {
        if (oState.iId != Task::TASK_FINE)
            m_oScript.Call('x', oState.iId);
    }

    int Run(State & oMachine)
    {
        int iResult = Task::TR_REMAIN;
        if (!oMachine.pCurrent)
        {
            Replace(oMachine, Find(oMachine, Task::TASK_INIT, Task::TR_PROCEED));
            iResult = Enter(*oMachine.pCurrent);
        }
        for (;;)
        {
            if (iResult == Task::TR_REMAIN)
                iResult = Process(*oMachine.pCurrent);
            if (iResult == Task::TR_REMAIN)
                return iResult;
            if (iResult == Task::TR_RETURN)
                break;

            int const iNext = Find(oMachine, oMachine.pCurrent->iId, iResult);
            iResult = Task::TR_REMAIN;
            if (iNext != oMachine.pCurrent->iId)
            {
                Exit(*oMachine.pCurrent);
                Replace(oMachine, iNext);
                iResult = Enter(*oMachine.pCurrent);
            }
        }
        Exit(*oMachine.pCurrent);
        return oMachine.iId == TOPMOST_ID ? Task::TR_RETURN : Task::TR_PROCEED;
    }

    int Find(State & oMachine, int iSource, int iResult)
    {
        int iNext = 0;
        if (m_oScript.oTables[oMachine.iId].GetNextTaskId(iSource, iResult, iNext))
            return iNext;
        throw std::logic_error(iSource == Task::TASK_INIT
                                   ? "TaskId for destination of -1 with transition -2 not found."
                                   : "Undefined transition from taskTask " + std::to_string(iSource)
                                         + " (Id=" + std::to_string(iSource) + ") and transition "
                                         + std::to_string(iResult) + ".");
    }

    void Replace(State & oMachine, int iId)
    {
        if (iId == 9 || (iId >= 0 && m_oScript.Call('c', iId) == Script::eGiveNull))
            throw std::logic_error("Task-Objekt " + std::to_string(iId) + " could not be found or created.");
        if (iId >= 0)
            m_oScript.Note("+" + std::to_string(iId));
        m_oScript.Note(
            "s" + (oMachine.pCurrent ? GetIdName(oMachine.pCurrent->iId) : "") + ">" + GetIdName(iId));

        std::unique_ptr<State> const pOld = std::move(oMachine.pCurrent);
        oMachine.pCurrent = std::make_unique<State>(State{iId, nullptr});
        if (pOld)
            Delete(*pOld);
    }

    void Delete(State const & oState)
    {
        if (oState.iId >= 0)
            m_oScript.Note("-" + std::to_string(oState.iId));
        if (oState.pCurrent)
            Delete(*oState.pCurrent);
    }

    Script & m_oScript;
    State m_oTopmost;
};

/// Random tables in which every machine begins with a task and no nested one leads to itself by its end,
/// since that would be a step without end.
std::map<int, TaskTransitionList> MakeRandomTables(std::mt19937 & oRandom)
{
    auto const fPick = [&](std::vector<int> const & vIds) { return vIds[oRandom() % vIds.size()]; };
    std::map<int, TaskTransitionList> oTables;
    for (int const iMachine : {TOPMOST_ID, 10, 11, 12})
    {
        // A machine may hold those of higher numbers, so that the nesting ends. The topmost one does not end.
        std::vector<int> vDestinations = {1, 2, 3, 1, 2, 3, 1, 2, 3, 9};
        for (int i = iMachine == TOPMOST_ID ? FIRST_MACHINE_ID : iMachine + 1; i <= 12; ++i)
            vDestinations.insert(vDestinations.end(), 2, i);
        if (iMachine != TOPMOST_ID)
            vDestinations.push_back(Task::TASK_FINE);

        auto const fAdd = [&](int iSource, int iResult, int iDestination)
        { EXPECT_TRUE(oTables[iMachine].AddTransition(iSource, iResult, iDestination).IsOk()); };
        fAdd(Task::TASK_INIT, Task::TR_PROCEED, fPick({1, 2, 3}));
        for (int const iSource : {1, 2, 3, 10, 11, 12})
            for (int const iResult : {static_cast<int>(Task::TR_PROCEED), 0, 1})
            {
                int iDestination = fPick(vDestinations);
                while (iSource >= FIRST_MACHINE_ID && iDestination == iSource)
                    iDestination = fPick(vDestinations);

                // The end of a nested machine leads on, since nothing else would ever happen.
                if (oRandom() % 16 != 0 || iSource >= FIRST_MACHINE_ID)
                    fAdd(iSource, iResult, iDestination);
            }
    }
    return oTables;
}

/// Answers by chance. After a while all that is left is to remain, which ends the step.
std::function<int(char, int)> MakeRandomAnswers(unsigned int iSeed)
{
    return [oRandom = std::mt19937(iSeed), iCalls = 0](char cStep, int) mutable
    {
        constexpr int vAnswers[] = {Task::TR_REMAIN, Task::TR_REMAIN, Task::TR_REMAIN, Task::TR_PROCEED,
            Task::TR_PROCEED, 0, 0, 1, 1, 1, 2, Task::TR_RETURN, Script::eThrow};
        std::size_t const iPick = oRandom();
        if (cStep == 'c')
            return iPick % 32 == 0 ? static_cast<int>(Script::eGiveNull) : 0;
        if (++iCalls % 64 >= 60 && cStep == 'p')
            return static_cast<int>(Task::TR_REMAIN);
        return cStep == 'e' && iPick % 4 != 0 ? static_cast<int>(Task::TR_REMAIN)
                                              : vAnswers[iPick / 4 % std::size(vAnswers)];
    };
}

} // namespace

TEST(Machine, RunsByItsTable)
{
    // Name, tables, answers, steps, and what the machine's deletion calls.
    Rows<std::string, std::string, std::string, std::vector<std::string>, std::string> vRows = {
        {"from task to task", "20: I P 1, 1 P 2, 2 7 F", "p1 P, p2 R 7",
            {"+1 s>1 e1 p1 x1 +2 s1>2 -1 e2 p2 = R", "p2 x2 s2>F -2 = E", "= E"}, ""},
        {"0 is an own id and an own result", "20: I P 0, 0 0 1", "p0 0",
            {"+0 s>0 e0 p0 x0 +1 s0>1 -0 e1 p1 = R", "p1 = R"}, "-1"},
        {"no first transition", "20: 1 3 2", "",
            {"= ! TaskId for destination of -1 with transition -2 not found.",
                "= ! TaskId for destination of -1 with transition -2 not found."},
            ""},
        {"an entry that proceeds", "20: I P 1, 1 P 2, 2 5 3", "e1 P, e2 5",
            {"+1 s>1 e1 x1 +2 s1>2 -1 e2 x2 +3 s2>3 -2 e3 p3 = R"}, "-3"},
        {"an entry that returns", "20: I P 1", "e1 E", {"+1 s>1 e1 x1 = E", "p1 = R"}, "-1"},
        {"a process that returns", "20: I P 1, 1 P 2", "p1 E E P",
            {"+1 s>1 e1 p1 x1 = E", "p1 x1 = E", "p1 x1 +2 s1>2 -1 e2 p2 = R"}, "-2"},
        {"a transition to itself", "20: I P 1, 1 3 1", "p1 3 3", {"+1 s>1 e1 p1 p1 p1 = R"}, "-1"},
        {"a transition that is not there", "20: I P 1, 1 3 2", "p1 P 4 -4 3",
            {"+1 s>1 e1 p1 = ! Undefined transition from taskTask 1 (Id=1) and transition -2.",
                "p1 = ! Undefined transition from taskTask 1 (Id=1) and transition 4.",
                "p1 = ! Undefined transition from taskTask 1 (Id=1) and transition -4.",
                "p1 x1 +2 s1>2 -1 e2 p2 = R"},
            "-2"},
        {"no first task", "20: I P 9", "",
            {"= ! Task-Objekt 9 could not be found or created.",
                "= ! Task-Objekt 9 could not be found or created."},
            ""},
        {"a creation function that throws", "20: I P 1, 1 P 2", "c1 !, c2 X, p1 P P",
            {"= ! thrown", "+1 s>1 e1 p1 x1 = ! Exception", "p1 x1 +2 s1>2 -1 e2 p2 = R"}, "-2"},
        {"steps that throw", "20: I P 1, 1 P 2, 2 P F", "e1 !, p1 X P P, x1 !, p2 P, x2 X",
            {"+1 s>1 e1 = ! thrown", "p1 = ! Exception", "p1 x1 = ! thrown",
                "p1 x1 +2 s1>2 -1 e2 p2 x2 = ! Exception", "p2 = R"},
            "-2"},
        {"a nested machine", "20: I P 10, 10 P 1; 10: I P 2, 2 P 3, 3 P F", "p2 R P, p3 P",
            {"+10 s>10 e10 +2 s>2 e2 p2 = R", "p2 x2 +3 s2>3 -2 e3 p3 x3 s3>F -3 x10 +1 s10>1 -10 e1 p1 = R"},
            "-1"},
        {"a nested machine that begins again", "20: I P 1, 1 0 10, 10 P 1; 10: I P 2", "p1 0 0, p2 E",
            {"+1 s>1 e1 p1 x1 +10 s1>10 -1 e10 +2 s>2 e2 p2 x2 x10 +1 s10>1 -10 -2 e1 p1 x1 +10 s1>10 -1 e10"
             " +2 s>2 e2 p2 = R"},
            "-10 -2"},
        {"three levels", "20: I P 10, 10 P F; 10: I P 11, 11 P F; 11: I P 1, 1 0 2", "p1 R 0, p2 R E",
            {"+10 s>10 e10 +11 s>11 e11 +1 s>1 e1 p1 = R", "p1 x1 +2 s1>2 -1 e2 p2 = R",
                "p2 x2 x11 s11>F -11 -2 x10 s10>F -10 = E"},
            ""},
        {"the end of a nested machine has no transition", "20: I P 10; 10: I P 1", "p1 E",
            {"+10 s>10 e10 +1 s>1 e1 p1 x1 = ! Undefined transition from taskTask 10 (Id=10) and"
             " transition -2.",
                "p1 = R"},
            "-10 -1"},
        {"a nested step that throws", "20: I P 10; 10: I P 1, 1 P 2", "p1 ! P",
            {"+10 s>10 e10 +1 s>1 e1 p1 = ! thrown", "p1 x1 +2 s1>2 -1 e2 p2 = R"}, "-10 -2"},
        {"the entry of a nested machine decides", "20: I P 10, 10 0 1; 10: I P 2", "e10 0",
            {"+10 s>10 e10 x10 +1 s10>1 -10 e1 p1 = R"}, "-1"}};
    for (auto const & [sName, sTables, sAnswers, vSteps, sEnd] : vRows)
    {
        SCOPED_TRACE(sName);
        Script oScript{ReadTables(sTables), ReadAnswers(sAnswers), ""};
        ScriptedRun oRun(oScript);
        for (std::string const & sStep : vSteps)
            EXPECT_EQ(oRun.Step(), sStep);
        EXPECT_EQ(oRun.End(), sEnd);
    }
}

TEST(Machine, DoesWhatTheModelDoesOnAnyTable)
{
    int iSwitches = 0;
    for (unsigned int iSeed = 0; iSeed < 300; ++iSeed)
    {
        SCOPED_TRACE(testing::Message() << "seed " << iSeed);
        std::mt19937 oRandom(iSeed);
        Script oScript{MakeRandomTables(oRandom), MakeRandomAnswers(iSeed), ""};
        Script oModelScript{oScript.oTables, MakeRandomAnswers(iSeed), ""};
        ScriptedRun oRun(oScript);
        Model oModel(oModelScript);
        for (int iStep = 0; iStep < 40; ++iStep)
        {
            std::string const sExpected = oModel.Step();
            ASSERT_EQ(oRun.Step(), sExpected) << "step " << iStep;
            iSwitches += static_cast<int>(std::count(sExpected.begin(), sExpected.end(), '>'));
        }
    }
    EXPECT_GT(iSwitches, 5'000) << "a walk that does not walk";
}
