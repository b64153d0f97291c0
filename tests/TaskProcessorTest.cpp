#include "AssertionTest.h"

#include <deque>

using namespace tsl;
using namespace tsltest;

namespace
{

constexpr int FIRST_MACHINE_ID = 10;
constexpr int TOPMOST_ID = 20;

/// What drives scripted machines: their tables, the answers of their tasks, and what was called.
///
/// Ids up to 3 are tasks, 9 is unknown to the factory, 10 to 12 are nested machines and 20 is the topmost
/// one. A call is told as one word: "+1" a task is made, "s1>2" the switch is announced, "e1" its entry,
/// "p1" its process, "x1" its exit, "-1" it is deleted.
struct Script
{
    /// Answers other than numbers of results.
    enum
    {
        eThrow = 1000, ///< something that is no Exception
        eThrowException,
        eGiveNull ///< of a creation function
    };

    std::map<int, TaskTransitionList> oTables;

    /// For 'c' (the creation function), 'e', 'p' and 'x', and the id.
    std::function<int(char, int)> fAnswer;

    std::string sCalls;

    void Note(std::string const & sCall) { sCalls += (sCalls.empty() ? "" : " ") + sCall; }

    /// Notes the call and does what the answer says.
    int Call(char cStep, int iId)
    {
        if (cStep != 'c')
            Note(cStep + std::to_string(iId));
        int const iAnswer = fAnswer(cStep, iId);
        if (iAnswer == eThrow)
            throw std::runtime_error("thrown");
        if (iAnswer == eThrowException)
            throw Exception(77, "Exception", "file", 1);
        return iAnswer;
    }

    static inline Script * pCurrent = nullptr;
};

/// The name of an id in a script: "I", "F" or the number.
std::string GetIdName(int iId)
{
    return iId == Task::TASK_INIT ? "I" : iId == Task::TASK_FINE ? "F" : std::to_string(iId);
}

/// The name of a result: "R", "P", "E" for the end, or the number.
std::string GetResultName(int iResult)
{
    return iResult == Task::TR_REMAIN    ? "R"
           : iResult == Task::TR_PROCEED ? "P"
           : iResult == Task::TR_RETURN  ? "E"
                                         : std::to_string(iResult);
}

/// The calls of a step, and its result or what was thrown.
template<class Call>
std::string TellStep(Script & oScript, Call const & fStep)
{
    oScript.sCalls.clear();
    std::string sResult;
    try
    {
        sResult = GetResultName(fStep());
    }
    catch (Exception const & oException)
    {
        // Of an assertion, the part between the last two double quotes.
        std::string const sText = oException.GetText();
        auto const iBegin = sText.find("Info: \"");
        sResult = "! " + (iBegin == sText.npos ? sText : sText.substr(iBegin + 7, sText.size() - iBegin - 8));
    }
    catch (std::exception const & oException)
    {
        sResult = std::string("! ") + oException.what();
    }
    return oScript.sCalls + (oScript.sCalls.empty() ? "= " : " = ") + sResult;
}

template<class Base>
class Scripted : public Base
{
public:
    Scripted(int iId, TaskProcessor * pParent) : Base("Task " + std::to_string(iId), pParent), m_iId(iId)
    {
        NoteLife("+");
    }
    ~Scripted() override { NoteLife("-"); }

    int GetTaskID() const override { return m_iId; }

protected:
    int DoTaskEntry() override { return Script::pCurrent->Call('e', m_iId); }
    void DoTaskExit() override { Script::pCurrent->Call('x', m_iId); }

private:
    void NoteLife(char const * sSign) const
    {
        if (m_iId != TOPMOST_ID)
            Script::pCurrent->Note(sSign + std::to_string(m_iId));
    }

    int m_iId;
};

class ScriptedTask : public Scripted<Task>
{
public:
    using Scripted::Scripted;

    MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    int DoProcess() override { return Script::pCurrent->Call('p', GetTaskID()); }

private:
    MessageFilterAllMessages m_oFilter;
};

class ScriptedMachine : public Scripted<TaskProcessor>
{
public:
    using Scripted::Scripted;

    TaskTransitionList const & GetTaskTransitionList() const override
    {
        return Script::pCurrent->oTables[GetTaskID()];
    }

protected:
    void OnTaskSwitch(Task const * pOldTask, Task const & oNewTask) override
    {
        Script::pCurrent->Note(
            "s" + (pOldTask ? GetIdName(pOldTask->GetTaskID()) : "") + ">" + GetIdName(oNewTask.GetTaskID()));
    }
};

template<int iId>
Task * CreateScripted(TaskProcessor * pParent)
{
    if (Script::pCurrent->Call('c', iId) == Script::eGiveNull)
        return nullptr;
    if constexpr (iId < FIRST_MACHINE_ID)
        return new ScriptedTask(iId, pParent);
    else
        return new ScriptedMachine(iId, pParent);
}

template<int... vIds>
void RegisterScripted()
{
    (TaskFactory::Instance().Register(vIds, &CreateScripted<vIds>), ...);
}

/// A topmost machine that runs by a script, and its context.
class ScriptedRun
{
public:
    explicit ScriptedRun(Script & oScript)
    {
        Script::pCurrent = &oScript;
        RegisterScripted<0, 1, 2, 3, 10, 11, 12>();
        m_pMachine = new ScriptedMachine(TOPMOST_ID, nullptr);
        m_pContext = std::make_unique<TaskContext>(m_pMachine);
    }

    std::string Step()
    {
        return TellStep(*Script::pCurrent, [this] { return m_pMachine->Process(*m_pContext); });
    }

    /// The calls of the machine's end.
    std::string End()
    {
        Script::pCurrent->sCalls.clear();
        m_pContext.reset();
        return Script::pCurrent->sCalls;
    }

private:
    TaskProcessor * m_pMachine = nullptr;
    std::unique_ptr<TaskContext> m_pContext;
};

/// Reads tables such as "20: I P 1, 1 7 10; 10: I P F".
std::map<int, TaskTransitionList> ReadTables(std::string const & sTables)
{
    // A comma or semicolon behind a number does no harm.
    auto const fGetId = [](std::string const & s) {
        return s[0] == 'I' ? Task::TASK_INIT : s[0] == 'F' ? Task::TASK_FINE : std::stoi(s);
    };

    std::map<int, TaskTransitionList> oTables;
    std::istringstream oWords(sTables);
    int iMachine = 0;
    for (std::string sSource, sResult, sDestination; oWords >> sSource;)
    {
        if (sSource.ends_with(':'))
        {
            iMachine = std::stoi(sSource);
            oWords >> sSource;
        }
        oWords >> sResult >> sDestination;
        int const iResult = sResult == "P" ? Task::TR_PROCEED : std::stoi(sResult);
        if (oTables[iMachine].AddTransition(fGetId(sSource), iResult, fGetId(sDestination)).IsError())
            throw std::invalid_argument(sTables);
    }
    return oTables;
}

/// Reads answers such as "p1 R 7, e2 P": the answers of a call in their order. Whoever has no answer (left)
/// remains.
std::function<int(char, int)> ReadAnswers(std::string const & sAnswers)
{
    std::map<char, int> const oNames = {{'R', Task::TR_REMAIN}, {'P', Task::TR_PROCEED},
        {'E', Task::TR_RETURN}, {'!', Script::eThrow}, {'X', Script::eThrowException}};
    std::map<std::string, std::deque<int>> oAnswers;
    std::istringstream oWords(sAnswers);
    std::string sCall;
    for (std::string sWord; oWords >> sWord;)
        if (std::islower(sWord[0]))
            sCall = sWord;
        else
            oAnswers[sCall].push_back(oNames.contains(sWord[0]) ? oNames.at(sWord[0]) : std::stoi(sWord));

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

    int Call(char cStep, State & oState)
    {
        if (oState.iId == Task::TASK_FINE)
            return cStep == 'p' ? Task::TR_RETURN : Task::TR_REMAIN;
        return cStep == 'p' && oState.iId >= FIRST_MACHINE_ID ? Run(oState)
                                                              : m_oScript.Call(cStep, oState.iId);
    }

    int Run(State & oMachine)
    {
        int iResult = Task::TR_REMAIN;
        if (!oMachine.pCurrent)
        {
            Replace(oMachine, Find(oMachine, Task::TASK_INIT, Task::TR_PROCEED));
            iResult = Call('e', *oMachine.pCurrent);
        }
        for (;;)
        {
            if (iResult == Task::TR_REMAIN)
                iResult = Call('p', *oMachine.pCurrent);
            if (iResult == Task::TR_REMAIN)
                return iResult;
            if (iResult == Task::TR_RETURN)
                break;

            int const iNext = Find(oMachine, oMachine.pCurrent->iId, iResult);
            iResult = Task::TR_REMAIN;
            if (iNext != oMachine.pCurrent->iId)
            {
                Call('x', *oMachine.pCurrent);
                Replace(oMachine, iNext);
                iResult = Call('e', *oMachine.pCurrent);
            }
        }
        Call('x', *oMachine.pCurrent);
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
        {"from task to task", "20: I P 0, 0 0 2, 2 7 F", "p0 0, p2 R 7",
            {"+0 s>0 e0 p0 x0 +2 s0>2 -0 e2 p2 = R", "p2 x2 s2>F -2 = E", "= E"}, ""},
        {"no first transition", "20: 1 3 2", "",
            {"= ! TaskId for destination of -1 with transition -2 not found.",
                "= ! TaskId for destination of -1 with transition -2 not found."},
            ""},
        {"entries that proceed and return", "20: I P 1, 1 P 2, 2 5 3", "e1 P, e2 5, e3 E",
            {"+1 s>1 e1 x1 +2 s1>2 -1 e2 x2 +3 s2>3 -2 e3 x3 = E", "p3 = R"}, "-3"},
        {"to itself, and a process that returns", "20: I P 1, 1 3 1, 1 P 2", "p1 3 E P",
            {"+1 s>1 e1 p1 p1 x1 = E", "p1 x1 +2 s1>2 -1 e2 p2 = R"}, "-2"},
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
        {"a nested machine that begins again", "20: I P 1, 1 0 10, 10 P 1; 10: I P 2", "p1 0 0, p2 E",
            {"+1 s>1 e1 p1 x1 +10 s1>10 -1 e10 +2 s>2 e2 p2 x2 x10 +1 s10>1 -10 -2 e1 p1 x1 +10 s1>10 -1 e10"
             " +2 s>2 e2 p2 = R"},
            "-10 -2"},
        {"three levels", "20: I P 10, 10 P F; 10: I P 11, 11 P F; 11: I P 1, 1 0 2", "p1 R 0, p2 ! E",
            {"+10 s>10 e10 +11 s>11 e11 +1 s>1 e1 p1 = R", "p1 x1 +2 s1>2 -1 e2 p2 = ! thrown",
                "p2 x2 x11 s11>F -11 -2 x10 s10>F -10 = E"},
            ""}};
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
