#pragma once

/// Threads, and killing them (see Thread::Kill). An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// A started thread. Apart from the thread itself, only one thread at a time may use it.
struct Thread;

/// Starts a thread that calls fMain with the argument and then ends. The caller calls CloseThread later.
[[nodiscard]] int StartThread(void (*fMain)(void *), void * pArgument, Thread *& pThread);

/// What GetThreadId returns on that thread. Valid until HasEnded has returned true.
unsigned long GetThreadId(Thread const & oThread);

bool IsThisThread(Thread const & oThread);

/// Whether the thread has ended, or does not exist in this process because another thread forked it. Once
/// true, always true.
bool HasEnded(Thread & oThread);

/// Called in a forked child: its only thread is the one that forked, and HasEnded stays false for it.
void KeepThisThreadInChild();

/// Why a thread cannot be killed at its present place.
enum class EndObstacle : int
{
    eNone,
    eNoAnswer, ///< its signal handler did not run: it has not begun, or nothing can interrupt it
    eLock,     ///< it holds a lock of the library
    eLibrary,  ///< it runs code of the library
    eRuntime,  ///< it runs code of a runtime library, or was called back by one
    eStack     ///< its stack could not be walked
};

/// Asks the thread to end where it is: nothing is unwound, and no destructor runs. It ends as soon as that
/// does no harm to the rest of the process: while it waits, or while it holds no lock of the library and runs
/// code of neither the library nor a runtime library. The caller repeats this with PauseBetweenAsking until
/// the thread has ended, or calls StopAskingToEnd.
void AskToEnd(Thread & oThread);
void PauseBetweenAsking();

/// Withdraws the request of AskToEnd and reports the last obstacle. False if the thread is already ending.
[[nodiscard]] bool StopAskingToEnd(Thread & oThread, EndObstacle & eObstacle);

/// Ends the calling thread if it has been asked to end and may end at pReturn, to which the present function
/// of the library returns.
void EndThisThreadIf(void const * pReturn);

/// Waits for the end of the thread and frees its memory. A thread that closes itself is detached; the system
/// frees its stack when it ends.
void CloseThread(Thread * pThread);

} // namespace tsl::Platform
