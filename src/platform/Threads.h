#pragma once

/// Threads, and their forced ends. An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// A thread that was started. All but the thread itself use it one at a time.
struct Thread;

/// Starts a thread that calls the function with the argument and ends. The caller closes it later.
[[nodiscard]] int StartThread(void (*fMain)(void *), void * pArgument, Thread *& pThread);

/// As GetThreadId on the thread itself; good until the thread is found to have ended.
unsigned long GetThreadId(Thread const & oThread);

bool IsThisThread(Thread const & oThread);

/// Whether the thread exists no more, as in a child that another thread has forked off. Once true, always true.
bool HasEnded(Thread & oThread);

/// Called in a forked child, whose only thread is the one that forked it.
void KeepThisThreadInChild();

/// Why a thread cannot be ended where it is.
enum class EndObstacle : int
{
    eNone,
    eNoAnswer, ///< it does not check: it has not begun, or nothing can interrupt it
    eLock,     ///< it holds a lock of the library
    eLibrary,  ///< it is within the library
    eRuntime,  ///< it is within a runtime library, or was called back by one
    eStack     ///< it is unknown how the program got there
};

/// Asks the thread to end where it is: nothing is unwound, and no destructor runs. It ends as soon as
/// that does no harm to the rest of the process: while it neither holds a lock of the library nor is within
/// the library or the runtime libraries, or while it waits. To be repeated, with a pause between, until the
/// thread has ended or the request is withdrawn.
void AskToEnd(Thread & oThread);
void PauseBetweenAsking();

/// Withdraws what AskToEnd has asked, and reports the last obstacle. False if the thread is ending already.
[[nodiscard]] bool StopAskingToEnd(Thread & oThread, EndObstacle & eObstacle);

/// Ends the calling thread, which has been asked, if that does no harm at the address that the present
/// function of the library will return to.
void EndThisThreadIf(void const * pReturn);

/// Waits for the end of the thread and frees its memory. The calling thread may close itself; its memory is
/// then freed when it ends.
void CloseThread(Thread * pThread);

} // namespace tsl::Platform
