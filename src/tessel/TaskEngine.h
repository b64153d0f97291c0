#pragma once

#include <tessel/TaskProcessor.h>

#include <atomic>
#include <memory>

namespace tsl
{

/// What the library does with the tasks of a machine and a program never calls. It stands apart from the
/// classes, whose names a program's own tasks inherit.
struct TaskEngine
{
    /// The three steps of a task, each with the context for its length.
    static int Process(Task & oTask, TaskContext & oContext);
    static int Enter(Task & oTask, TaskContext & oContext);
    static void Exit(Task & oTask, TaskContext & oContext);

    /// The entry and, if the task remains in it, the first Process, with the context given once.
    static int Begin(Task & oTask, TaskContext & oContext);

    /// Enters the first task of a machine, or the next one after the result of the current one. Both return
    /// what that task wants next.
    static int InitTask(TaskProcessor & oMachine, TaskContext & oContext);
    static int SwitchTask(TaskProcessor & oMachine, int iTaskResult, TaskContext & oContext);

    /// The task in which a machine stands, null before its first step. The reference holds until a copy of
    /// the machine is made, which the program may do in any call.
    static std::unique_ptr<Task> & GetCurrentTask(TaskProcessor & oMachine)
    {
        return oMachine.m->pCurrentTask;
    }

    static bool IsInStep(Task const & oTask)
    {
        return oTask.m->pContext.load(std::memory_order_relaxed) != nullptr;
    }

    /// That of the step that runs now; without one an assertion failure.
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
