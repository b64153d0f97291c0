#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <memory>

namespace tsl
{

/// A thread of the operating system that runs Process of a derived class once. An object has at most one thread at
/// a time, and can be run again after that has ended. Any thread may call the public operations.
///
///     class Worker : public tsl::Thread
///     {
///     public:
///         ~Worker() override // Process must not run while the members are destroyed
///         {
///             while (Kill(0).GetErrorCode() == tsl::ERR::eTimeout)
///                 ;
///         }
///     protected:
///         void Process() override; // the work
///     };
///
/// Copies share the thread. The destructor of each copy kills it, and so does the assignment of another thread. In
/// the child of a fork, the thread runs only if it is the one that forked.
class TSL_EXPORT Thread
{
public:
    /// The exit code that the destructor passes to Kill.
    static constexpr unsigned int EXIT_CODE_AT_DESTRUCTION = 65535;

    Thread(Thread const & oSource);
    Thread & operator=(Thread const & oSource);

    /// Kills a running thread and waits without limit for its end. The members of a derived class are destroyed
    /// before that. So if it has any, its own destructor calls Kill, again as long as that fails with code 11.
    ///
    /// An object may be deleted on its own thread: the thread runs on until Process returns, which must not use the
    /// object any more.
    virtual ~Thread();

    /// Starts a thread that calls Process. Code 3 if the last one still runs, code 10 with the system's error as
    /// its cause if none can be started.
    [[nodiscard]] Result Run();

    /// Ends the thread by force and returns after its end; returns success at once if none runs. The stack is not
    /// unwound and no destructor is called.
    ///
    /// The thread ends as soon as that does not harm the rest of the process: it holds no lock of the library, and
    /// it runs the program's own code or waits in a function of the system that the program has called (for time,
    /// input, output, a child, a mutex, a condition variable, a semaphore, an atomic). It does not end inside a
    /// runtime library, nor in a function that one calls back, such as a comparison for qsort or an initialiser of
    /// a library that is being loaded.
    ///
    /// If that is not possible within two seconds, Kill fails with code 11 and the reason. The thread then runs on,
    /// and a later call may succeed. Code 3 if a thread tries to kill itself.
    ///
    /// Memory that the thread has allocated leaks, and so does the allocator's cache for it (glibc: 688 bytes, plus
    /// what the thread freed last, at most some 210 KB). Its locks other than the library's stay locked: mutexes,
    /// flockfile, a static object that it initialises. A condition variable at which it waits must not be used or
    /// destroyed any more.
    ///
    /// If an allocator or a runtime library is linked into the program, or the system cannot examine the
    /// stack from outside, the thread can end only where it waits in the library, as in OS::Sleep.
    ///
    /// Two signals are used that the program does not handle: the last real-time one and the first of SIGURG,
    /// SIGPWR, SIGIO and SIGVTALRM; others are chosen if the program handles them later.
    ///
    /// @param iExitCode without effect: a killed thread has no exit code
    [[nodiscard]] Result Kill(unsigned int iExitCode);

    /// Whether a thread was started and has not ended.
    bool IsRunning() const;

    /// -1 if no thread was started or the last one was killed, 259 while it runs, 0 after its end.
    int GetExitCode() const;

    /// The system's id of the thread, also after its end; 0 if none was started or the last one was killed.
    unsigned long GetThreadId() const;

protected:
    Thread();

    /// The thread's work; does nothing by default. An Exception that it throws is reported over the global bus, as
    /// the cause of a Result of code 6, and ends the thread like a return. Any other exception ends the program.
    virtual void Process();

private:
    struct Private;

    std::shared_ptr<Private> m;
};

} // namespace tsl
