#pragma once

#include <string>

/// What the runner asks of the operating system about the processes of its jobs.
///
/// Each job has a session of its own, whose number is that of its first process. All that a job starts is below the
/// runner in the tree of processes, since orphans come to the runner: a daemon that has left the session of its
/// job, too.
namespace Processes
{

/// To be called before the first job starts.
void AdoptOrphans();

/// Takes what is left of orphans that have ended.
void ReapOrphans();

/// Lets a process go on that was started suspended.
void Continue(int iProcess);

/// Whether a child has ended that nobody has waited for; iSignal is what ended it, or 0.
bool HasEnded(int iProcess, int & iSignal);

enum class Force
{
    eNone, ///< nothing happens to them
    eAsk,  ///< the processes may clean up first
    eKill
};

/// Ends the processes of a job. False if there are none any more.
bool EndJob(int iFirstProcess, Force eForce);

/// Ends all processes that any job has left, daemons included. False if there are none any more.
bool EndAll(Force eForce);

/// Such as "SIGSEGV".
std::string GetSignalName(int iSignal);

/// Whether the error number says that there are too many descriptors or processes, or too little memory for one more.
bool IsLackOfRoom(int iError);

/// How many more descriptors this process may open.
int GetFreeDescriptors();

/// How many more processes and threads this user may have.
int GetFreeProcesses();

} // namespace Processes
