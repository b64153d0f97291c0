#pragma once

#include <tessel/Tessel.h>

#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

namespace tsltest
{

constexpr int FIRST_MACHINE_ID = 10;
constexpr int TOPMOST_ID = 20;

/// What drives scripted machines: their tables, the answers of their tasks, and what was called.
///
/// Ids up to 8 are tasks, 9 is unknown to the factory, 10 to 14 are nested machines and 20 is the topmost
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

    std::map<int, tsl::TaskTransitionList> oTables;

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
            throw tsl::Exception(77, "Exception", "file", 1);
        return iAnswer;
    }

    static inline Script * pCurrent = nullptr;
};

/// The name of an id in a script: "I", "F" or the number.
inline std::string GetIdName(int iId)
{
    return iId == tsl::Task::TASK_INIT ? "I" : iId == tsl::Task::TASK_FINE ? "F" : std::to_string(iId);
}

/// The name of a result: "R", "P", "E" for the end, or the number.
inline std::string GetResultName(int iResult)
{
    return iResult == tsl::Task::TR_REMAIN    ? "R"
           : iResult == tsl::Task::TR_PROCEED ? "P"
           : iResult == tsl::Task::TR_RETURN  ? "E"
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
    catch (tsl::Exception const & oException)
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
    Scripted(int iId, tsl::TaskProcessor * pParent) : Base("Task " + std::to_string(iId), pParent), m_iId(iId)
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

class ScriptedTask : public Scripted<tsl::Task>
{
public:
    using Scripted::Scripted;

    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    int DoProcess() override { return Script::pCurrent->Call('p', GetTaskID()); }

private:
    tsl::MessageFilterAllMessages m_oFilter;
};

class ScriptedMachine : public Scripted<tsl::TaskProcessor>
{
public:
    using Scripted::Scripted;

    tsl::TaskTransitionList const & GetTaskTransitionList() const override
    {
        return Script::pCurrent->oTables[GetTaskID()];
    }

protected:
    void OnTaskSwitch(tsl::Task const * pOldTask, tsl::Task const & oNewTask) override
    {
        Script::pCurrent->Note(
            "s" + (pOldTask ? GetIdName(pOldTask->GetTaskID()) : "") + ">" + GetIdName(oNewTask.GetTaskID()));
    }
};

template<int iId>
tsl::Task * CreateScripted(tsl::TaskProcessor * pParent)
{
    if (Script::pCurrent->Call('c', iId) == Script::eGiveNull)
        return nullptr;
    if constexpr (iId < FIRST_MACHINE_ID)
        return new ScriptedTask(iId, pParent);
    else
        return new ScriptedMachine(iId, pParent);
}

template<int iFirst, int... vIds>
void RegisterScripted(std::integer_sequence<int, vIds...>)
{
    (tsl::TaskFactory::Instance().Register(iFirst + vIds, &CreateScripted<iFirst + vIds>), ...);
}

/// A topmost machine that runs by a script, and its context.
class ScriptedRun
{
public:
    explicit ScriptedRun(Script & oScript)
    {
        Script::pCurrent = &oScript;
        RegisterScripted<0>(std::make_integer_sequence<int, 9>());
        RegisterScripted<FIRST_MACHINE_ID>(std::make_integer_sequence<int, 5>());
        m_pMachine = new ScriptedMachine(TOPMOST_ID, nullptr);
        m_pContext = std::make_unique<tsl::TaskContext>(m_pMachine);
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
    tsl::TaskProcessor * m_pMachine = nullptr;
    std::unique_ptr<tsl::TaskContext> m_pContext;
};

/// Reads tables such as "20: I P 1, 1 7 10; 10: I P F".
inline std::map<int, tsl::TaskTransitionList> ReadTables(std::string const & sTables)
{
    auto const fGetId = [](std::string const & s) {
        return s == "I" ? tsl::Task::TASK_INIT : s == "F" ? tsl::Task::TASK_FINE : std::stoi(s);
    };

    std::map<int, tsl::TaskTransitionList> oTables;
    std::istringstream oStream(sTables);
    for (std::string sTable; std::getline(oStream, sTable, ';');)
    {
        std::istringstream oTable(sTable);
        int iMachine = 0;
        char cColon = 0;
        oTable >> iMachine >> cColon;
        for (std::string sRow; std::getline(oTable, sRow, ',');)
        {
            std::istringstream oRow(sRow);
            std::string sSource, sResult, sDestination;
            oRow >> sSource >> sResult >> sDestination;
            int const iResult = sResult == "P" ? tsl::Task::TR_PROCEED : std::stoi(sResult);
            if (oTables[iMachine].AddTransition(fGetId(sSource), iResult, fGetId(sDestination)).IsError())
                throw std::invalid_argument(sRow);
        }
    }
    return oTables;
}

} // namespace tsltest
