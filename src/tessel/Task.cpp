#include <tessel/Task.h>

#include "MessageElements.h"
#include "TaskEngine.h"

#include <tessel/Assertion.h>
#include <tessel/LogPoint.h>
#include <tessel/Message.h>
#include <tessel/TaskContext.h>
#include <tessel/TaskProcessor.h>

namespace tsl
{

int & TaskStack::operator[](int iIndex)
{
    return const_cast<int &>(static_cast<TaskStack const &>(*this)[iIndex]);
}

int const & TaskStack::operator[](int iIndex) const
{
    auto const i = static_cast<std::size_t>(iIndex);
    if (iIndex < 0 || i >= m_vIds.size())
        XAssertionFailed("iIndex >= 0 && iIndex < GetSize()", String("TaskStack hat kein Element ") + iIndex);
    return m_vIds[i];
}

// The functions of the record are here, where the compiler puts them into the constructor and the destructor of
// Task (R05).
namespace TesselDetails
{

TaskRecord::TaskRecord(TaskProcessor * pTheParent, String const & sTheName)
    : pParent(pTheParent), sName(sTheName)
{
}

// Copies the name: GetTaskName may have returned a reference to that of the source.
TaskRecord::TaskRecord(TaskRecord && oSource)
    : pParent(oSource.pParent),
      sName(oSource.sName),
      pContext(oSource.pContext.load(std::memory_order_relaxed)),
      pCurrentTask(std::move(oSource.pCurrentTask))
{
}

TaskRecord::~TaskRecord() = default;

TaskRecordOwner::TaskRecordOwner(TaskProcessor * pParent, String const & sName)
    : m_oOwn(pParent, sName), m_pRecord(&m_oOwn)
{
}

TaskRecordOwner::TaskRecordOwner(TaskRecordOwner const & oSource)
    : m_oOwn(oSource->pParent, oSource->sName), m_pShared(oSource.Share()), m_pRecord(m_pShared.get())
{
}

TaskRecordOwner & TaskRecordOwner::operator=(TaskRecordOwner const & oSource)
{
    if (&oSource != this)
    {
        m_oOwn.pCurrentTask.reset();
        m_pShared = oSource.Share();
        m_pRecord = m_pShared.get();
    }
    return *this;
}

TaskRecordOwner::~TaskRecordOwner() = default;

std::shared_ptr<TaskRecord> const & TaskRecordOwner::Share() const
{
    if (!m_pShared)
    {
        m_pShared = std::make_shared<TaskRecord>(std::move(m_oOwn));
        m_pRecord = m_pShared.get();
    }
    return m_pShared;
}

} // namespace TesselDetails

Task::Task(String const & sName, TaskProcessor * pParent) : m(pParent, sName)
{
    if (pParent == this)
        XAssertionFailed("m->pParent != this", "Parent darf nicht this sein!");
    if (sName.IsEmpty())
        XAssertionFailed("!m->sName.IsEmpty()", "Name darf nicht leer sein");
}

Task::Task(Task const & oSource) = default;

Task & Task::operator=(Task const & oSource)
{
    if (TaskEngine::IsInStep(*this))
        TaskEngine::FailInStep();
    m = oSource.m;
    return *this;
}

Task::~Task() = default;

int Task::Process(TaskContext & oContext)
{
    return TaskEngine::Process(*this, oContext);
}

int Task::TaskEntry(TaskContext & oContext)
{
    return TaskEngine::Enter(*this, oContext);
}

void Task::TaskExit(TaskContext & oContext)
{
    TaskEngine::Exit(*this, oContext);
}

String const & Task::GetTaskName() const
{
    return m->sName;
}

char const * Task::GetTaskResultName(int iTaskResult)
{
    switch (iTaskResult)
    {
    case TR_REMAIN:
        return "TR_REMAIN";
    case TR_PROCEED:
        return "TR_PROCEED";
    case TR_RETURN:
        return "TR_RETURN";
    default:
        return "USER_DEFINED";
    }
}

int Task::DoTaskEntry()
{
    return TR_REMAIN;
}

void Task::DoTaskExit() {}

void Task::Send(Message const & oMessage)
{
    TaskContext & oContext = GetContext();
    Trace(
        "Task", [&] { return String("Task '") + m->sName + "' sends message " + GetMessageText(oMessage); });
    oContext.Send(oMessage);
}

Message * Task::Receive(int iTimeout)
{
    std::unique_ptr<Message> pMessage(GetContext().Receive(iTimeout));
    if (pMessage)
        Trace("Task",
            [&] { return String("Task '") + m->sName + "' received message " + GetMessageText(*pMessage); });
    return pMessage.release();
}

Message * Task::ReceiveFilter(MessageFilter const & oFilter, int iTimeout)
{
    return GetContext().ReceiveFilter(oFilter, iTimeout);
}

void Task::Wait(int iDuration, bool bAlertable)
{
    GetContext().Wait(iDuration, bAlertable);
}

void Task::ClearReveiveBuffer()
{
    TaskContext & oContext = GetContext();
    Trace("Task", [&] { return String("Task '") + m->sName + "' ClearReveiveBuffer"; });
    oContext.ClearReveiveBuffer();
}

void Task::ClearSendBuffer()
{
    TaskContext & oContext = GetContext();
    Trace("Task", [&] { return String("Task '") + m->sName + "' ClearSendBuffer"; });
    oContext.ClearSendBuffer();
}

void Task::SetTaskName(String const & sName)
{
    m->sName = sName;
}

TaskContext & Task::GetContext() const
{
    return TaskEngine::GetContext(*this);
}

void Task::SetVar(ValueString const & sName, int iValue)
{
    GetContext().SetVar(sName, iValue);
}

void Task::SetVar(ValueString const & sName, ValueString const & sValue)
{
    GetContext().SetVar(sName, sValue);
}

int Task::GetVar(ValueString const & sName, int iDefault) const
{
    return GetContext().GetVar(sName, iDefault);
}

ValueString Task::GetVar(ValueString const & sName, ValueString const & sDefault) const
{
    return GetContext().GetVar(sName, sDefault);
}

void Task::SetLocalVar(ValueString const & sName, int iValue)
{
    GetContext().SetLocalVar(TaskEngine::GetTaskStack(*this), sName, iValue);
}

void Task::SetLocalVar(ValueString const & sName, ValueString const & sValue)
{
    GetContext().SetLocalVar(TaskEngine::GetTaskStack(*this), sName, sValue);
}

int Task::GetLocalVar(ValueString const & sName, int iDefault) const
{
    return GetContext().GetLocalVar(TaskEngine::GetTaskStack(*this), sName, iDefault);
}

ValueString Task::GetLocalVar(ValueString const & sName, ValueString const & sDefault) const
{
    return GetContext().GetLocalVar(TaskEngine::GetTaskStack(*this), sName, sDefault);
}

bool Task::GetSimulationMode(int iMode) const
{
    return GetContext().GetSimulationMode(m->sName, iMode);
}

void Task::AcquireTaskStack(TaskStack & oStack) const
{
    for (Task const * pTask = this; pTask; pTask = pTask->m->pParent)
        oStack.Push(pTask->GetTaskID());
}

} // namespace tsl
