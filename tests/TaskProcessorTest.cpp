#include "TestPrelude.h"

#include <tesselkit/MachineDriver.h>

#include <deque>

using namespace tsl;
using namespace tsltest;

namespace
{

constexpr int FIRST_MACHINE_ID = 10;
constexpr int TOPMOST_ID = 20;

/// What drives scripted machines: their tables, the answers of their tasks, and what was called.
///
/// Ids up to 3 are tasks, 9 is unknown to the factory, 10 and 11 are nested machines and 20 is the topmost
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

    /// By the word of the call, "c1" for the creation function. Whoever has no answer (left) remains.
    std::map<std::string, std::deque<int>> oAnswers;

    std::string sCalls;

    void Note(std::string const & sCall) { sCalls += (sCalls.empty() ? "" : " ") + sCall; }

    /// Notes the call and does what the answer says.
    int Call(char cStep, int iId)
    {
        std::string const sCall = cStep + std::to_string(iId);
        if (cStep != 'c')
            Note(sCall);
        std::deque<int> & oLeft = oAnswers[sCall];
        if (oLeft.empty())
            return Task::TR_REMAIN;
        int const iAnswer = oLeft.front();
        oLeft.pop_front();
        if (iAnswer == eThrow)
            throw std::runtime_error("thrown");
        if (iAnswer == eThrowException)
            throw Exception(77, "Exception", "file", 1);
        return iAnswer;
    }

    static inline Script * pCurrent = nullptr;
};

/// The words of scripts for ids and results, of which "E" is the end.
std::map<std::string, int> const IDS = {{"I", Task::TASK_INIT}, {"F", Task::TASK_FINE}};
std::map<std::string, int> const RESULTS = {{"R", Task::TR_REMAIN}, {"P", Task::TR_PROCEED},
    {"E", Task::TR_RETURN}, {"!", Script::eThrow}, {"X", Script::eThrowException}, {"N", Script::eGiveNull}};

std::string GetName(std::map<std::string, int> const & oNames, int iNumber)
{
    for (auto const & [sName, iNamed] : oNames)
        if (iNamed == iNumber)
            return sName;
    return std::to_string(iNumber);
}

/// A comma or semicolon after the word does no harm.
int GetNumber(std::map<std::string, int> const & oNames, std::string const & sWord)
{
    auto const oFound = oNames.find(sWord.substr(0, 1));
    return oFound == oNames.end() ? std::stoi(sWord) : oFound->second;
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
        Script::pCurrent->Note("s" + (pOldTask ? GetName(IDS, pOldTask->GetTaskID()) : "") + ">"
                               + GetName(IDS, oNewTask.GetTaskID()));
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
        RegisterScripted<0, 1, 2, 3, 10, 11>();
        m_pDriver = std::make_unique<MachineDriver>(new ScriptedMachine(TOPMOST_ID, nullptr));
    }

    /// The calls of a step, and its result or what was thrown.
    std::string Step()
    {
        Script::pCurrent->sCalls.clear();
        std::string const sResult = Process();
        return Script::pCurrent->sCalls + (Script::pCurrent->sCalls.empty() ? "= " : " = ") + sResult;
    }

    /// The calls of the machine's end.
    std::string End()
    {
        Script::pCurrent->sCalls.clear();
        m_pDriver.reset();
        return Script::pCurrent->sCalls;
    }

private:
    std::string Process()
    {
        try
        {
            return GetName(RESULTS, m_pDriver->Step());
        }
        catch (Exception const & oException)
        {
            // Of an assertion, the part between the last two double quotes.
            std::string const sText = oException.GetText();
            auto const iBegin = sText.find("Info: \"");
            return "! "
                   + (iBegin == sText.npos ? sText : sText.substr(iBegin + 7, sText.size() - iBegin - 8));
        }
        catch (std::exception const & oException)
        {
            return std::string("! ") + oException.what();
        }
    }

    std::unique_ptr<MachineDriver> m_pDriver;
};

/// Reads tables such as "20: I P 1, 1 7 10; 10: I P F".
std::map<int, TaskTransitionList> ReadTables(std::string const & sTables)
{
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
        Result const oResult = oTables[iMachine].AddTransition(
            GetNumber(IDS, sSource), GetNumber(RESULTS, sResult), GetNumber(IDS, sDestination));
        EXPECT_TRUE(oResult.IsOk()) << sTables;
    }
    return oTables;
}

/// Reads answers such as "p1 R 7, e2 P": the answers of a call in their order.
std::map<std::string, std::deque<int>> ReadAnswers(std::string const & sAnswers)
{
    std::map<std::string, std::deque<int>> oAnswers;
    std::istringstream oWords(sAnswers);
    std::string sCall;
    for (std::string sWord; oWords >> sWord;)
        if (std::islower(sWord[0]))
            sCall = sWord;
        else
            oAnswers[sCall].push_back(GetNumber(RESULTS, sWord));
    return oAnswers;
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
        {"creation functions that throw and give null", "20: I P 1, 1 P 2", "c1 !, c2 X N, p1 P P P",
            {"= ! thrown", "+1 s>1 e1 p1 x1 = ! Exception",
                "p1 x1 = ! Task-Objekt 2 could not be found or created.", "p1 x1 +2 s1>2 -1 e2 p2 = R"},
            "-2"},
        {"steps that throw", "20: I P 1, 1 P 2, 2 P F", "e1 !, p1 X P P, x1 !, p2 P, x2 X",
            {"+1 s>1 e1 = ! thrown", "p1 = ! Exception", "p1 x1 = ! thrown",
                "p1 x1 +2 s1>2 -1 e2 p2 x2 = ! Exception", "p2 = R"},
            "-2"},
        {"a nested machine that begins again", "20: I P 1, 1 0 10, 10 P 1; 10: I P 2", "p1 0 0, p2 E",
            {"+1 s>1 e1 p1 x1 +10 s1>10 -1 e10 +2 s>2 e2 p2 x2 x10 +1 s10>1 -10 -2 e1 p1 x1 +10 s1>10 -1 e10"
             " +2 s>2 e2 p2 = R"},
            "-10 -2"},
        {"the end of a nested machine that leads nowhere", "20: I P 10, 10 0 1; 10: I P 1, 1 0 F", "p1 0",
            {"+10 s>10 e10 +1 s>1 e1 p1 x1 s1>F -1"
             " = ! Undefined transition from taskTask 10 (Id=10) and transition -2.",
                "= ! Undefined transition from taskTask 10 (Id=10) and transition -2."},
            "-10"},
        {"three levels", "20: I P 10, 10 P F; 10: I P 11, 11 P F; 11: I P 1, 1 0 2", "p1 R 0, p2 ! E",
            {"+10 s>10 e10 +11 s>11 e11 +1 s>1 e1 p1 = R", "p1 x1 +2 s1>2 -1 e2 p2 = ! thrown",
                "p2 x2 x11 s11>F -11 -2 x10 s10>F -10 = E"},
            ""},
    };
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
