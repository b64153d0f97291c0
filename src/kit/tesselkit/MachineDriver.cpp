#include <tesselkit/MachineDriver.h>

#include <tessel/ErrorCodes.h>
#include <tessel/Exception.h>
#include <tessel/Task.h>

namespace tsl
{

MachineDriver::MachineDriver(TaskProcessor * pMachine) : TaskContext(pMachine) {}

void MachineDriver::Advance(int iDuration)
{
    m_iTime += iDuration;
    while (!m_oScript.empty() && m_oScript.begin()->first <= m_iTime)
        WriteMessage(*m_oScript.extract(m_oScript.begin()).mapped());
}

void MachineDriver::Schedule(std::int64_t iTime, Message const & oMessage)
{
    m_oScript.emplace(iTime, static_cast<Message const *>(oMessage.GetCopy()));
    Advance(0);
}

bool MachineDriver::Run(int iSteps, int iPause)
{
    for (int i = 0; i < iSteps; ++i)
    {
        if (Step() != Task::TR_REMAIN)
            return true;
        Advance(iPause);
    }
    return false;
}

MessageList MachineDriver::TakeMessages()
{
    MessageList oMessages;
    while (std::unique_ptr<Message> pMessage{ReadMessage()})
        oMessages.Add(std::move(pMessage));
    return oMessages;
}

String MachineDriver::GetPath() const
{
    TaskProcessor const * pMachine = &GetTaskProcessor();
    String sPath = pMachine->GetTaskName();
    while (Task const * const pTask = pMachine ? pMachine->GetCurrentTask() : nullptr)
    {
        sPath << '/' << pTask->GetTaskName();
        pMachine = dynamic_cast<TaskProcessor const *>(pTask);
    }
    return sPath;
}

void MachineDriver::Wait(int iDuration, bool)
{
    m_vWaits.push_back(iDuration);
    Advance(iDuration);
    if (m_iTime > m_iTimeLimit)
        Exception::Throw(
            MakeResult(ERR::eTimeout, String("'") + GetPath() + "' still waits when the clock shows "
                                          + static_cast<int>(m_iTime / 1000) + " s."));
}

} // namespace tsl
