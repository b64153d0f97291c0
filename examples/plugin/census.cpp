// A plug-in: a processor that counts the messages it receives and a task that sends the count. A program that loads
// it finds both in the library's factories, under the name "Census" and the id 1000, and needs to know nothing else
// of it.

#include <tessel/DebugMessage.h>
#include <tessel/MessageProcessorFactory.h>
#include <tessel/PlainProcessor.h>
#include <tessel/TaskFactory.h>

#include <atomic>

namespace
{

constexpr char const * PROCESSOR_NAME = "Census";
constexpr int TASK_ID = 1000;

std::atomic<int> g_iCount{0};

/// Counts messages. It has no class description of its own: that would stay in the class repository for ever, and
/// point into an unloaded plug-in.
class Census : public tsl::PlainProcessor
{
public:
    static tsl::MessageProcessor * Create() { return new Census; }

    void Process(tsl::Message const &, tsl::Result &) const override { ++g_iCount; }
};

/// Sends the count to the application, in a message of a library class, which may outlive the plug-in.
class CensusTask : public tsl::Task
{
public:
    static tsl::Task * Create(tsl::TaskProcessor * pParent) { return new CensusTask(pParent); }

    explicit CensusTask(tsl::TaskProcessor * pParent) : Task("CensusTask", pParent) {}

    int GetTaskID() const override { return TASK_ID; }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    int DoProcess() override
    {
        Send(tsl::DebugMessage(tsl::String() + g_iCount.load()));
        return TR_PROCEED;
    }

private:
    tsl::MessageFilterAllMessages m_oFilter;
};

/// Registers both while the plug-in is being loaded, and unregisters them while it is being unloaded.
class Registration
{
public:
    Registration()
    {
        tsl::MessageProcessorFactory::Instance().Register(PROCESSOR_NAME, &Census::Create);
        tsl::TaskFactory::Instance().Register(TASK_ID, &CensusTask::Create);
    }

    ~Registration()
    {
        tsl::TaskFactory::Instance().Unregister(TASK_ID);
        tsl::MessageProcessorFactory::Instance().Unregister(PROCESSOR_NAME);
    }

    Registration(Registration const &) = delete;
    Registration & operator=(Registration const &) = delete;
};

Registration const g_oRegistration;

} // namespace
