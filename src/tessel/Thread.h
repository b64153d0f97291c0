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
/// In a child that was forked off, the thread runs only if it is the one that forked.
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

    /// Kills a running thread, and waits without limit until it has ended. By then the members of a subclass
    /// are destroyed, so the destructor of a subclass that has any calls Kill itself, again as long as that
    /// fails with code 11.
    ///
    /// An object may be deleted on its own thread: that goes on, and ends when Process returns, which must
    /// not use the object any more.
    virtual ~Thread();

    /// Starts a thread that calls Process. Code 3 if the last one still runs, code 10 with the system's
    /// error as its cause if none can be started.
    [[nodiscard]] Result Run();

    /// Ends the thread by force and returns when it has ended; a success at once if none runs. Nothing of
    /// the thread is unwound, and no destructor runs.
    ///
    /// The thread ends at the first moment that does no harm to the rest of the process: it holds no lock of
    /// the library, and it runs the program's own code or waits in a function of the system that the program
    /// has called: for time, input, output, a child, a mutex, a condition variable, a semaphore, an atomic.
    /// It does not end inside a runtime library, nor in what one calls back, such as a comparison for qsort
    /// or an initialiser of a library that is being loaded.
    ///
    /// If there is no such moment within two seconds, Kill fails with code 11 and the reason, and asks the
    /// thread no more: it still runs, and a later call may succeed. Code 3 on the thread itself, which goes
    /// on.
    ///
    /// What the thread has allocated is lost, and so is the allocator's cache for it (with glibc 688 bytes and
    /// what the thread freed last, at most some 210 KB). What it has locked other than by the library stays
    /// locked: mutexes, flockfile, a static object that it initialises. A condition variable at which it
    /// waits must not be used or destroyed any more.
    ///
    /// A program with an allocator or a runtime library linked into it can only be interrupted where it waits
    /// in the library, as in OS::Sleep; and so can every program on a system where the stack cannot be
    /// examined from outside.
    ///
    /// The thread is asked by two signals that the program does not handle, the last real-time one and the
    /// first of SIGURG, SIGPWR, SIGIO and SIGVTALRM; others are chosen if the program takes them later.
    ///
    /// @param iExitCode without effect: a killed thread has no exit code
    [[nodiscard]] Result Kill(unsigned int iExitCode);

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
