#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/String.h>

#include <memory>
#include <vector>

namespace tsl
{

/// Starts a program as a child process, with its standard streams redirected if wanted, waits for its end
/// or ends it. No shell is involved. One object has at most one child at a time and can start another one
/// after that.
///
/// The child gets the environment and the current directory of this process, its own three streams or
/// those of this process, and no other open file; it starts with default signal dispositions and an empty
/// signal mask. It is started with the rights of this process.
///
/// With eModeReaderThreads two threads read the child's output and put each line into a queue, from which
/// ReceiveStdOut and ReceiveStdErr take. The queues have no limit, and survive the child. A line ends at
/// any control character of the process's locale, a tab included; empty lines are not queued, nor is a last
/// line without an end. A line for which there is not enough memory is dropped, and the thread reads on, so
/// that the child never waits; ReadStdStreamUntilEof tells how many those were.
///
/// A child that still runs when the last copy of its object is destroyed runs on, with its redirected streams
/// closed. It costs no descriptor, and no query of another object takes longer for it. After its end it is
/// reaped without a wait, by a later Run, destruction or query of any object: each Run and each destruction
/// looks after 64 such children in turn, and so does a query if nobody has for ten milliseconds. A child that
/// was started suspended and has never been continued does not run on; it is ended.
///
/// An object is used by one thread at a time; separate objects are independent of each other. Copies
/// share one child.
class TSL_EXPORT CmdLine
{
public:
    /// Bits of the mode.
    enum
    {
        eModeNoWindow = 1,       ///< no effect on this system
        eModeNewConsole = 2,     ///< no effect on this system
        eModeSuspended = 4,      ///< the child stands before its first instruction until it gets SIGCONT
        eModeDetached = 8,       ///< the child has a session of its own, without a terminal
        eModeRedirect = 16,      ///< the three streams go through pipes
        eModeReaderThreads = 32, ///< threads read the child's output; without eModeRedirect it is dropped
    };

    /// Any other value stands for the standard error as well.
    enum Streams
    {
        eStdOut = 0,
        eStdErr = 1
    };

    /// Answers of WaitTermination.
    enum
    {
        eWaitAbandoned = 0, ///< does not occur on this system
        eWaitTerminated = 1,
        eWaitTimeout = 2,
        eWaitFailed = 3 ///< there is no child
    };

    /// A command line must be shorter than this, in bytes.
    static constexpr unsigned int COMMAND_LENGTH_END = 1024;

    /// What GetExitCode answers while the child runs.
    static constexpr int EXIT_CODE_ACTIVE = 259;

    CmdLine();
    CmdLine(CmdLine const & oSource);
    CmdLine & operator=(CmdLine const & oSource);
    virtual ~CmdLine();

    /// The whole command line: the program and its arguments, separated by white space. Double quotes
    /// protect white space and are dropped; no other character means anything, a backslash included, and
    /// there is no way to hand over a double quote. The line ends at a zero byte. The program is looked
    /// for in the search path unless its name has a slash.
    void SetCommand(String const & sCommand);
    String const & GetCommand() const;

    /// The command line becomes this program without arguments.
    void SetApplication(String const & sApplication);

    /// Appends an argument, in double quotes if it has white space. Double quotes inside of it are not
    /// escaped, and an empty argument is lost.
    void AddArg(String const & sArgument);

    /// Kept, but the child starts in the current directory of this process all the same.
    void SetWorkingDirectory(String const & sDirectory);

    void SetMode(int iMode);
    int GetMode() const;

    /// How many bytes are read at once, 1024 at first; 0 is ignored. It takes effect with the next Run,
    /// or the next reading outside of the reader threads.
    void SetBufferSize(unsigned int iSize);
    unsigned int GetBufferSize() const;

    /// Starts the child. The process id is 0 if that fails: with code 3 if a child is running, 2 if the
    /// command line is too long, 10 if a pipe or the process cannot be made, with the system's error as
    /// the cause, or if a reader thread cannot be started; the child is ended then. After any failure there is
    /// no child.
    ///
    /// With eModeSuspended, or in a program that ignores SIGCHLD, a file that cannot be executed after all
    /// is not noticed before the child goes on: its exit code is 127 then.
    [[nodiscard]] Result Run(int & iProcessId);

    /// Whether the child runs, or its output is still being read by the reader threads. An Exception of
    /// code 10 if the system does not tell.
    bool IsRunning() const;

    /// What IsRunning and WaitTermination have last seen: EXIT_CODE_ACTIVE, what the child ended with,
    /// the code that was given to Kill, or 128 and the number of another signal that ended it. -1 if it has
    /// ended, but its exit code was lost to somebody else who waits for any child of this process, or to
    /// the system, which before Linux 6.15 keeps none if the program ignores SIGCHLD.
    int GetExitCode() const;

    /// Waits so many milliseconds for the end of the child, without limit for a negative number. Once it
    /// has ended, the reader threads take what stands in the pipes and end, the streams are closed, and
    /// the child is forgotten. A program that the child has started and that holds its streams is not
    /// waited for, as IsRunning does.
    ///
    /// A reader that a processor of its lines keeps from ending is killed after 400 ms; Run and the
    /// destructor do the same.
    int WaitTermination(int iTimeout) const;
    int WaitTermination() const;

    /// Ends the child at once; it cannot refuse. Code 3 if it is not running, 10 if the system refuses.
    /// Programs that the child has started are not ended.
    [[nodiscard]] Result Kill(unsigned int iExitCode);

    /// The next line that the child has written, which the caller deletes, or null if there is none now.
    virtual String * ReceiveStdOut();
    virtual String * ReceiveStdErr();

    /// Queues a line. Nothing is ever written to the child: its standard input stays open and silent.
    virtual void SendStdIn(String const & sLine);

    /// Reads the stream to its end, on the calling thread, and queues its lines, before WaitTermination. Waits
    /// for the reader thread instead if there is one. Code 1 without a child, 2 without redirection, 0 if the
    /// reading fails, 10 if lines were dropped for want of memory. What a reader thread has failed in is
    /// returned until the next Run, also after WaitTermination. The pipe to a child that writes more than
    /// nobody reads fills up, and the child waits.
    [[nodiscard]] Result ReadStdStreamUntilEof(Streams eStream);

    /// The same, and moves all queued lines of the stream to the end of vLines.
    [[nodiscard]] Result ReadStdStreamUntilEof(Streams eStream, std::vector<String> & vLines);

private:
    struct Private;
    std::shared_ptr<Private> m;
};

} // namespace tsl
