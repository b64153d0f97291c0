#include "growth.h"

#include <tessel/TaskContext.h>
#include <tessel/TaskFactory.h>
#include <tessel/TaskProcessor.h>
#include <tessel/TaskTransition.h>

using namespace tsl;

namespace
{

std::function<void()> AddSources(int n)
{
    return [n]
    {
        TaskTransitionList oList;
        int iNext = -1;
        for (int i = 0; i < n; ++i)
            growth::Require(oList.AddTransition(i * 100, Task::TR_PROCEED, i).IsOk());
        for (int i = 0; i < n; ++i)
            growth::Require(oList.GetNextTaskId(i * 100, Task::TR_PROCEED, iNext) && iNext == i);
    };
}

std::function<void()> AddResults(int n)
{
    return [n]
    {
        TaskTransitionList oList;
        int iNext = -1;
        for (int i = 0; i < n; ++i)
            growth::Require(oList.AddTransition(1, i, i).IsOk());
        for (int i = 0; i < n; ++i)
            growth::Require(oList.GetNextTaskId(1, i, iNext) && iNext == i);
    };
}

Task * CreateNoTask(TaskProcessor *)
{
    return nullptr;
}

std::function<void()> RegisterKeys(int n, int iStep)
{
    return [=]
    {
        TaskFactory & oFactory = TaskFactory::Instance();
        for (int i = 0; i < n; ++i)
            growth::Require(oFactory.Register(i * iStep, &CreateNoTask));
        for (int i = 0; i < n; ++i)
            growth::Require(oFactory.IsRegistered(i * iStep));
        for (int i = 0; i < n; ++i)
            oFactory.Unregister(i * iStep);
    };
}

/// A machine that never runs.
class Machine : public TaskProcessor
{
public:
    Machine() : TaskProcessor("Machine", nullptr) {}

    int GetTaskID() const override { return 0; }
    TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }

private:
    TaskTransitionList m_oTransitions;
};

class Context : public TaskContext
{
public:
    Context() : TaskContext(new Machine) {}

    using TaskContext::GetVar;
    using TaskContext::SetVar;
};

std::function<void()> SetVariables(int n)
{
    return [n]
    {
        Context oContext;
        for (int i = 0; i < n; ++i)
            oContext.SetVar(String("variable ") + i, i);
        for (int i = 0; i < n; ++i)
            growth::Require(oContext.GetVar(String("variable ") + i, -1) == i);
    };
}

} // namespace

std::vector<growth::Work> growth::GetTaskWorks()
{
    return {
        {"transitions of n tasks", Order::eLinear, 5000, &AddSources},
        {"transitions of n results of a task", Order::eLinear, 5000, &AddResults},
        {"factory with n keys", Order::eLinear, 2000, [](int n) { return RegisterKeys(n, 1); }},
        {"factory with n keys in steps of 4096", Order::eLinear, 2000,
            [](int n) { return RegisterKeys(n, 4096); }},
        {"n variables of a context", Order::eLinearLog, 500, &SetVariables},
    };
}
