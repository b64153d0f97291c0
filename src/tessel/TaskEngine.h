#pragma once

#include <tessel/TaskProcessor.h>

#include <atomic>
#include <memory>

namespace tsl
{

/// Runs the tasks of a machine. A program never calls it. It is not a part of Task and TaskProcessor, since a
/// program's tasks inherit all names of these.
struct TaskEngine
{
    /// The three calls of a task. Each sets the context until it returns.
    static int Process(Task & oTask, TaskContext & oContext);
    static int Enter(Task & oTask, TaskContext & oContext);
    static void Exit(Task & oTask, TaskContext & oContext);

    /// Enters the task and, if the entry returns TR_REMAIN, processes it, and sets the context only once (R05).
    static int Begin(Task & oTask, TaskContext & oContext);

    /// Enter the first task of a machine, or the next one after a result of the current one. Both return the result
    /// of that task.
    static int InitTask(TaskProcessor & oMachine, TaskContext & oContext);
    static int SwitchTask(TaskProcessor & oMachine, int iTaskResult, TaskContext & oContext);

    /// The current task of a machine, null before its first step. The reference holds until the machine is copied,
    /// which the program may do in any call.
    static std::unique_ptr<Task> & GetCurrentTask(TaskProcessor const & oMachine)
    {
        return oMachine.m->pCurrentTask;
    }

    static bool IsInStep(Task const & oTask)
    {
        return oTask.m->pContext.load(std::memory_order_relaxed) != nullptr;
    }

    /// The context of the running step; an assertion failure between steps.
    static TaskContext & GetContext(Task const & oTask)
    {
        TaskContext * const pContext = oTask.m->pContext.load(std::memory_order_relaxed);
        if (!pContext) [[unlikely]]
            FailWithoutContext();
        return *pContext;
    }

    static TaskStack GetTaskStack(Task const & oTask)
    {
        TaskStack oStack;
        oTask.AcquireTaskStack(oStack);
        return oStack;
    }

    /// Whether the record of the task is destroyed with this object.
    static bool IsLastOwner(Task const & oTask) { return oTask.m.IsLastOwner(); }

    [[noreturn, gnu::cold]] static void FailInStep();

private:
    class StepScope;

    static int RunEntry(Task & oTask);
    static int RunProcess(Task & oTask);
    static void SetNewTask(TaskProcessor & oMachine, int iTaskId);
    [[noreturn, gnu::cold]] static void FailWithoutContext();
};

} // namespace tsl
