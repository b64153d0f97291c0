#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <memory>

namespace tsl
{

/// One thread of the operating system, which runs what a subclass has overridden: Process, once. An object
/// owns at most one thread at a time and can be run again when that has ended. The public operations may
/// be called from any thread.
///
/// Copies share the thread and its record. The end of each of them kills the thread, and so does an
/// assignment of another thread to one.
class TSL_EXPORT Thread
{
public:
    /// With which the destructor kills.
    static constexpr unsigned int EXIT_CODE_AT_DESTRUCTION = 65535;

    Thread(Thread const & oSource);
    Thread & operator=(Thread const & oSource);

    /// Kills a running thread. By then the members of a subclass are gone, so the destructor of a subclass
    /// that has any calls Kill itself.
    ///
    /// An object may be deleted on its own thread: that goes on, and ends when Process returns, which must
    /// not use the object any more.
    virtual ~Thread();

    /// Starts a thread that calls Process. Code 3 if the last one still runs, code 10 with the system's
    /// error as its cause if none can be started.
    [[nodiscard]] Result Run();

    /// Ends the thread by force and returns when it has ended; a success at once if none runs. Nothing of
    /// the thread is unwound, and no destructor runs: Process never notices, what it has allocated is lost,
    /// and what it has locked other than by the library stays locked. A condition variable at which it waits
    /// is of no use any more: a wake-up may be lost to the thread, and the destructor would wait for it.
    ///
    /// The thread ends at the first moment that does no harm to the rest of the process: when it holds no
    /// lock of the library and runs code of the program's own, neither that of the library nor that of the
    /// runtime libraries (memory, streams, exceptions, loading), or when it waits: for time, for input, for
    /// a lock. A program that calls back from within its runtime libraries (initialisers of static objects,
    /// constructors of a library that is being loaded) holds a CriticalSectionMutex meanwhile. The signal
    /// that asks a thread to end is the last real-time signal that the program does not handle; a thread
    /// must not block it.
    ///
    /// Code 3 on the thread itself, which goes on.
    ///
    /// @param iExitCode without effect: a killed thread has no exit code
    Result Kill(unsigned int iExitCode);

    bool IsRunning() const;

    /// -1 if no thread has been started or the last one was killed, 259 while it runs, 0 after its end.
    int GetExitCode() const;

    /// The system's id of the thread, also after its end; 0 if none has been started or the last one was
    /// killed.
    unsigned long GetThreadId() const;

protected:
    Thread();

    /// The thread's work, nothing by default. An Exception that leaves it is dispatched on the global bus as
    /// the cause of a Result of code 6, and ends the thread like a return. Anything else that leaves it ends
    /// the program.
    virtual void Process();

private:
    struct Private;

    std::shared_ptr<Private> m;
};

} // namespace tsl
