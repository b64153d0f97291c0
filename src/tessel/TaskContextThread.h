#pragma once

#include <tessel/TaskContext.h>

#include <memory>

namespace tsl
{

/// A context whose steps run on threads of their own, so the caller does not wait for them. Each call of Process
/// starts one thread for one step.
///
///     tsl::TaskContextThread oContext(new Clock);
///     oContext.Process(); // returns at once
///
/// Any thread may call WriteMessage and ReadMessage at any time, except that a TaskContextMessage must not be
/// written while a step runs.
class TSL_EXPORT TaskContextThread : public TaskContext
{
public:
    /// Owns the topmost machine from now on. Starts no thread.
    explicit TaskContextThread(TaskProcessor * pProcessor);
    TaskContextThread(TaskContextThread const &) = delete;
    TaskContextThread & operator=(TaskContextThread const &) = delete;

    /// Kills a running step, as the destructor of Thread does, and then deletes the machine. The members of a
    /// derived class are destroyed before that.
    ~TaskContextThread() override;

    /// Starts a step and returns. Does nothing while the last step still runs, so of several threads that call it
    /// at once, one starts a step. An Exception of the step is reported over the global bus; the next step
    /// continues in the current task. Lack of memory also ends the step; the next call reports it.
    ///
    /// If no thread can be started, that is reported as a Result of code 6, and is an assertion failure.
    void Process() override;

protected:
    /// Runs a step on the caller's thread.
    void ProcessBase();

    /// An alertable wait ends early when a signal has been handled on the thread.
    void Wait(int iDuration, bool bAlertable) override;

private:
    struct Private;
    std::unique_ptr<Private> m;
};

} // namespace tsl
