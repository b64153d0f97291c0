#include <tessel/TaskContext.h>

#include "MessageElements.h"
#include "TaskEngine.h"

#include <tessel/Assertion.h>
#include <tessel/LogPoint.h>
#include <tessel/Message.h>
#include <tessel/MessageFilter.h>
#include <tessel/OS.h>
#include <tessel/TaskContextMessage.h>
#include <tessel/TaskProcessor.h>

#include <algorithm>
#include <map>
#include <utility>

namespace tsl
{

namespace
{

constexpr int POLL_INTERVAL = 100; // milliseconds

template<class Type>
using Variables = std::map<ValueString, Type>;

/// A null name is an assertion failure of every comparison. An empty map compares nothing, so compare the name with
/// itself.
void AssertNotNull(ValueString const & sName)
{
    static_cast<void>(sName.Compare(sName));
}

template<class Type>
void Set(Variables<Type> & oVariables, ValueString const & sName, Type const & oValue)
{
    AssertNotNull(sName);
    oVariables.insert_or_assign(sName, oValue);
}

template<class Type>
Type Get(Variables<Type> const & oVariables, ValueString const & sName, Type const & oDefault)
{
    AssertNotNull(sName);
    auto const oFound = oVariables.find(sName);
    return oFound == oVariables.end() ? oDefault : oFound->second;
}

} // namespace

struct TSL_HIDDEN TaskContext::Private
{
    Private(std::unique_ptr<Pipe<Message>> pTheInput, std::unique_ptr<Pipe<Message>> pTheOutput,
        std::unique_ptr<TaskProcessor> pTheProcessor)
        : pInput(std::move(pTheInput)), pOutput(std::move(pTheOutput)), pProcessor(std::move(pTheProcessor))
    {
    }

    static ValueString GetLocalName(
        TaskContext const & oContext, TaskStack const & oStack, ValueString const & sName)
    {
        ValueString sKey;
        oContext.FormatTaskIDStack(oStack, sName, sKey);
        return sKey;
    }

    // The queues are destroyed first, each with a trace of its own.
    ~Private()
    {
        pInput->Clear();
        pInput.reset();
        pOutput->Clear();
        pOutput.reset();
    }

    Variables<int> oGlobalNumbers;
    Variables<ValueString> oGlobalTexts;

    // By full name.
    Variables<int> oLocalNumbers;
    Variables<ValueString> oLocalTexts;

    std::unique_ptr<Pipe<Message>> pInput;
    std::unique_ptr<Pipe<Message>> pOutput;
    std::unique_ptr<TaskProcessor> pProcessor;

    // The mode by task name.
    std::map<String, int> oSimulations;
};

TaskContext::TaskContext(TaskProcessor * pProcessor)
{
    if (!pProcessor)
        XAssertionFailed("pProcessor", "TaskProcessor darf nicht NULL sein");

    std::unique_ptr<TaskProcessor> pOwner(pProcessor);
    std::unique_ptr<Pipe<Message>> pInput(TaskContext::CreateInputQueue());
    std::unique_ptr<Pipe<Message>> pOutput(TaskContext::CreateOutputQueue());
    m = std::make_shared<Private>(std::move(pInput), std::move(pOutput), std::move(pOwner));
}

TaskContext::TaskContext(TaskContext const & oSource) = default;

TaskContext & TaskContext::operator=(TaskContext const & oSource)
{
    if (TaskEngine::IsInStep(*m->pProcessor))
        XAssertionFailed("!m->pProcessor->IsInStep()", "The machine of this context is running.");
    m = oSource.m;
    return *this;
}

TaskContext::~TaskContext() = default;

void TaskContext::Process()
{
    // The application learns about the machine's state from messages.
    static_cast<void>(TaskEngine::Process(*m->pProcessor, *this));
}

void TaskContext::WriteMessage(Message const & oMessage)
{
    if (auto const * const pContextMessage = dynamic_cast<TaskContextMessage const *>(&oMessage))
        ProcessContextMessage(*pContextMessage);
    else
        m->pInput->Send(oMessage);
}

Message * TaskContext::ReadMessage()
{
    return m->pOutput->Receive();
}

Pipe<Message> * TaskContext::CreateInputQueue() const
{
    return new PipeDebMessage("GUI->TASK");
}

Pipe<Message> * TaskContext::CreateOutputQueue() const
{
    return new PipeDebMessage("TASK->GUI");
}

void TaskContext::Send(Message const & oMessage)
{
    m->pOutput->Send(oMessage);
}

Message * TaskContext::Receive(int & iTimeout)
{
    Trace("TaskContext", [] { return String("Receive"); });

    bool const bForEver = iTimeout < 0;
    while ((bForEver || iTimeout > 0) && m->pInput->IsEmpty())
    {
        int const iSlice = bForEver ? POLL_INTERVAL : std::min(POLL_INTERVAL, iTimeout);
        Wait(iSlice, false);
        if (!bForEver)
            iTimeout -= iSlice;
    }
    return m->pInput->Receive();
}

Message * TaskContext::Receive()
{
    return m->pInput->Receive();
}

void TaskContext::ClearReveiveBuffer()
{
    m->pInput->Clear();
}

void TaskContext::ClearSendBuffer()
{
    m->pOutput->Clear();
}

void TaskContext::Wait(int iDuration, bool)
{
    OS::Sleep(iDuration);
}

Message * TaskContext::ReceiveFilter(MessageFilter const & oFilter, int iTimeout)
{
    Trace("TaskContext",
        [&]
        {
            return String("ReceiveFilter. Wait ") + iTimeout + (iTimeout == -1 ? "(INFINITE)" : " ms")
                   + " for specified message.";
        });

    std::unique_ptr<Message> pMessage;
    do
    {
        pMessage.reset(Receive(iTimeout));
        if (pMessage && !oFilter.Match(*pMessage))
        {
            Trace("TaskContext",
                [&] { return String("ReceiveFilter. Discard message ") + GetMessageText(*pMessage); });
            pMessage.reset();
        }
    } while (!pMessage && iTimeout != 0);

    if (pMessage)
        Trace("TaskContext",
            [&] { return String("ReceiveFilter. Received message ") + GetMessageText(*pMessage); });
    else
        Trace("TaskContext", [] { return String("ReceiveFilter. Timeout."); });
    return pMessage.release();
}

TaskProcessor & TaskContext::GetTaskProcessor() const
{
    return *m->pProcessor;
}

void TaskContext::SetVar(ValueString const & sName, int iValue)
{
    Set(m->oGlobalNumbers, sName, iValue);
}

void TaskContext::SetVar(ValueString const & sName, ValueString const & sValue)
{
    Set(m->oGlobalTexts, sName, sValue);
}

int TaskContext::GetVar(ValueString const & sName, int iDefault) const
{
    return Get(m->oGlobalNumbers, sName, iDefault);
}

ValueString TaskContext::GetVar(ValueString const & sName, ValueString const & sDefault) const
{
    return Get(m->oGlobalTexts, sName, sDefault);
}

void TaskContext::SetLocalVar(TaskStack const & oStack, ValueString const & sName, int iValue)
{
    Set(m->oLocalNumbers, Private::GetLocalName(*this, oStack, sName), iValue);
}

void TaskContext::SetLocalVar(TaskStack const & oStack, ValueString const & sName, ValueString const & sValue)
{
    Set(m->oLocalTexts, Private::GetLocalName(*this, oStack, sName), sValue);
}

int TaskContext::GetLocalVar(TaskStack const & oStack, ValueString const & sName, int iDefault) const
{
    return Get(m->oLocalNumbers, Private::GetLocalName(*this, oStack, sName), iDefault);
}

ValueString TaskContext::GetLocalVar(
    TaskStack const & oStack, ValueString const & sName, ValueString const & sDefault) const
{
    return Get(m->oLocalTexts, Private::GetLocalName(*this, oStack, sName), sDefault);
}

void TaskContext::FormatTaskIDStack(
    TaskStack const & oStack, ValueString const & sName, ValueString & sKey) const
{
    sKey.Clear();
    for (int i = static_cast<int>(oStack.GetSize()); i-- > 0;)
        sKey << oStack[i] << '.';
    sKey << sName;
}

void TaskContext::ProcessContextMessage(TaskContextMessage const & oMessage)
{
    switch (oMessage.GetActionId())
    {
    case TaskContextMessage::eActionSet:
        SetSimulation(oMessage.GetTaskName(), oMessage.GetEnabled(), oMessage.GetMode());
        break;
    case TaskContextMessage::eActionQuery:
    {
        int iMode = 0;
        TaskContextMessage oReply;
        oReply.SetActionId(TaskContextMessage::eActionQuery);
        oReply.SetTaskName(oMessage.GetTaskName());
        oReply.SetEnabled(GetSimulationMode(oMessage.GetTaskName(), iMode));
        oReply.SetMode(iMode);
        Send(oReply);
        break;
    }
    default:
        break;
    }
}

void TaskContext::SetSimulation(String const & sTaskName, bool bEnable, int iMode)
{
    if (!bEnable)
    {
        if (m->oSimulations.erase(sTaskName) > 0)
            Trace("TaskContext", [&] { return String("Simulation disabled for task ") + sTaskName; });
        return;
    }

    m->oSimulations.insert_or_assign(sTaskName, iMode);
    Trace("TaskContext",
        [&] { return String("Simulation enabled for task ") + sTaskName + " to mode " + iMode; });
}

bool TaskContext::GetSimulationMode(String const & sTaskName, int & iMode) const
{
    auto const oFound = m->oSimulations.find(sTaskName);
    if (oFound == m->oSimulations.end())
        return false;
    iMode = oFound->second;
    return true;
}

} // namespace tsl
