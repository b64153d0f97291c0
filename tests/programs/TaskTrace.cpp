// Drives a machine of one task through all that is traced, and prints the debug messages as
// "identifier: text". Which of them there are is up to the ini file.

#include <tessel/Tessel.h>

#include <iostream>

namespace
{

class Printer : public tsl::MessageProcessor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result &) const override
    {
        auto const & oDebug = dynamic_cast<tsl::DebugMessage const &>(oMessage);
        std::cout << oDebug.GetIdentifier().s_str() << ": " << oDebug.GetText().s_str() << '\n';
    }

    tsl::MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    tsl::Result SetConfig(tsl::MessageProcessorConfig const &) override { return tsl::Result(); }
    tsl::Result Open() override { return tsl::Result(); }
    void Close() override {}

protected:
    void DoCopy(tsl::Root const &) override {}

private:
    tsl::MessageDispatcherConfig m_oConfig;
};

/// A message that shows as a number.
class Note : public tsl::Message
{
public:
    explicit Note(int iNumber = 0) : m_iNumber(iNumber) {}

    static tsl::ClassDescription const & GetStaticClassDesc()
    {
        static tsl::ClassDescription const & oDescription = tsl::DescribeClass<Note>(
            &tsl::Message::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
        return oDescription;
    }
    tsl::ClassDescription const & GetClassDesc() const override { return GetStaticClassDesc(); }
    static tsl::Root * CreateNew() { return new Note; }

    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override
    {
        return tsl::Message::GetConstIterator();
    }
    tsl::String & AddAsString(tsl::String & s) const override { return s << "note " << m_iNumber; }

protected:
    void DoCopy(tsl::Root const & oSource) override { *this = static_cast<Note const &>(oSource); }

private:
    int m_iNumber;
};

class Talker : public tsl::Task
{
public:
    explicit Talker(tsl::TaskProcessor * pParent) : Task("Talker", pParent) {}

    int GetTaskID() const override { return 1; }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oNothing; }

protected:
    int DoProcess() override
    {
        delete Receive(0);
        delete ReceiveFilter(m_oNothing, 0);
        delete ReceiveFilter(m_oAll, -1);
        Receive(0);
        delete ReceiveFilter(m_oAll, 0);
        Send(Note(9));
        ClearSendBuffer();
        ClearReveiveBuffer();
        return TR_RETURN;
    }

private:
    tsl::MessageFilterNoMessage m_oNothing;
    tsl::MessageFilterAllMessages m_oAll;
};

class Machine : public tsl::TaskProcessor
{
public:
    Machine() : TaskProcessor("Machine", nullptr)
    {
        bool const bOk = m_oTransitions.AddTransition(TASK_INIT, TR_PROCEED, 1).IsOk();
        tsl::TaskFactory::Instance().Register(
            bOk ? 1 : 0, [](tsl::TaskProcessor * pParent) -> tsl::Task * { return new Talker(pParent); });
    }

    int GetTaskID() const override { return 0; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }

private:
    tsl::TaskTransitionList m_oTransitions;
};

} // namespace

int main()
{
    Printer const oPrinter;
    tsl::Result const oResult =
        tsl::Support::GetAppDisp().Register(oPrinter, {tsl::DebugMessage::GetStaticClassDesc().GetClassId()});
    {
        tsl::TaskContext oContext(new Machine);
        for (int i = 1; i <= 3; ++i)
            oContext.WriteMessage(Note(i));
        oContext.Process();
        delete oContext.ReadMessage();

        tsl::TaskContextMessage oMessage;
        oMessage.SetTaskName("Talker");
        oContext.WriteMessage(oMessage);
        oMessage.SetMode(3);
        for (bool const bEnabled : {true, false})
        {
            oMessage.SetEnabled(bEnabled);
            oContext.WriteMessage(oMessage);
        }
    }
    tsl::Support::GetAppDisp().Unregister(oPrinter);
    return oResult.GetErrorCode();
}
