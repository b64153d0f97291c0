#pragma once

#include <tessel/TaskContext.h>

#include <memory>

namespace tsl
{

/// A context whose steps run on a thread of their own, so that the caller is never held up by one. Each call
/// of Process starts one thread for one step; between steps the machine stands still.
///
/// The application's thread and the step meet in the two queues: WriteMessage and ReadMessage may be called
/// at any time, except that a TaskContextMessage must not be written while a step runs.
class TSL_EXPORT TaskContextThread : public TaskContext
{
public:
    /// Takes the topmost machine over. No thread runs yet.
    explicit TaskContextThread(TaskProcessor * pProcessor);
    TaskContextThread(TaskContextThread const &) = delete;
    TaskContextThread & operator=(TaskContextThread const &) = delete;

    /// Kills a step that runs, as Thread::Kill does, and then ends the machine. By then the members of a
    /// subclass are gone.
    ~TaskContextThread() override;

    /// Starts a step and returns. Does nothing while the last step still runs, so of several threads that call
    /// at once, one starts a step. An Exception that leaves the step is dispatched on the global bus, and the
    /// next step goes on where the machine stands. Memory that runs out in a step ends it likewise; that is
    /// dispatched with the next call.
    ///
    /// If no thread can be started, that is dispatched as a Result of code 6, and is an assertion failure.
    void Process() override;

protected:
    /// A step on the caller's thread.
    void ProcessBase();

    /// An alertable wait ends early once a signal has been handled on the thread.
    void Wait(int iDuration, bool bAlertable) override;

private:
    struct Private;
    std::unique_ptr<Private> m;
};

} // namespace tsl
