#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/String.h>

#include <memory>
#include <vector>

namespace tsl
{

/// Starts a program as a child process, optionally with redirected streams, waits for its end or kills it. No shell
/// is involved. An object has at most one child at a time, and can start another one after that.
///
///     tsl::CmdLine oChild;
///     oChild.SetApplication("sort");
///     int iProcessId = 0;
///     tsl::Result const oResult = oChild.Run(iProcessId);
///     if (oResult.IsOk() && oChild.WaitTermination(5000) == tsl::CmdLine::eWaitTimeout)
///         static_cast<void>(oChild.Kill(1));
///
/// The child inherits the rights, the environment and the current directory of this process, and its three streams
/// unless they are redirected, but no other open file. It starts with default signal dispositions and an empty
/// signal mask.
///
/// With eModeReaderThreads two threads read the child's output and queue each line for ReceiveStdOut and
/// ReceiveStdErr. The queues have no limit unless SetUnreadLimit sets one, and are kept after the child's end. A line
/// ends at any control character of the process's locale, a tab included; empty lines and a last line without an end
/// are not queued. With eModeLineFeeds a line ends at a line feed only, and these lines are queued, too. A line for
/// which there is no memory is dropped, so that the child never waits; ReadStdStreamUntilEof reports the number.
///
/// When the last copy of the object is destroyed, a running child runs on, with its redirected streams closed. It
/// costs no descriptor. Once it has ended, a later Run, destructor or query of any object reaps it, without
/// waiting. Each such Run and destructor checks 64 of these children in turn, a query only if none was checked for
/// ten milliseconds. A suspended child that was never continued is ended instead.
///
/// One thread at a time uses an object; separate objects are independent. Copies share one child.
class TSL_EXPORT CmdLine
{
public:
    /// Bits of the mode.
    enum
    {
        eModeNoWindow = 1,       ///< no effect on this system
        eModeNewConsole = 2,     ///< no effect on this system
        eModeSuspended = 4,      ///< the child stops before its first instruction until it gets SIGCONT
        eModeDetached = 8,       ///< the child has a session of its own, without a terminal
        eModeRedirect = 16,      ///< the three streams go through pipes
        eModeReaderThreads = 32, ///< threads read the child's output; without eModeRedirect it is dropped
        eModeLineFeeds = 64,     ///< only line feeds end lines, and no line is left out
    };

    /// Any other value means the standard error, too.
    enum Streams
    {
        eStdOut = 0,
        eStdErr = 1
    };

    /// Results of WaitTermination.
    enum
    {
        eWaitAbandoned = 0, ///< does not occur on this system
        eWaitTerminated = 1,
        eWaitTimeout = 2,
        eWaitFailed = 3 ///< there is no child
    };

    /// A command line must be shorter than this, in bytes.
    static constexpr unsigned int COMMAND_LENGTH_END = 1024;

    /// What GetExitCode returns while the child runs.
    static constexpr int EXIT_CODE_ACTIVE = 259;

    CmdLine();
    CmdLine(CmdLine const & oSource);
    CmdLine & operator=(CmdLine const & oSource);
    virtual ~CmdLine();

    /// The command line: the program and its arguments, separated by white space, up to the first zero byte. Double
    /// quotes protect white space and are removed, so no argument can contain one. No other character is special,
    /// not even a backslash. The program is looked up in the search path unless its name has a slash.
    void SetCommand(String const & sCommand);
    String const & GetCommand() const;

    /// Sets the command line to this program without arguments.
    void SetApplication(String const & sApplication);

    /// Appends an argument, in double quotes if it has white space. Double quotes in it are not escaped, and an
    /// empty argument is lost.
    void AddArg(String const & sArgument);

    /// Stored, but without effect: the child starts in the current directory of this process.
    void SetWorkingDirectory(String const & sDirectory);

    /// A combination of the mode bits.
    void SetMode(int iMode);
    int GetMode() const;

    /// Bytes per read, 1024 by default; 0 is ignored. Used from the next Run on, or the next read without a reader
    /// thread.
    void SetBufferSize(unsigned int iSize);
    unsigned int GetBufferSize() const;

    /// Limits the bytes of unread lines that each queue holds; 0, the default, means no limit. At the limit the reader
    /// thread stops reading until lines are received, so the pipe fills up and the child waits; IsRunning is true
    /// meanwhile. Each line counts with its length plus 64 bytes, and a line longer than the limit comes in pieces of
    /// that length. One read may exceed the limit. The limit ends when WaitTermination has seen the child's end or
    /// ReadStdStreamUntilEof is called. Takes effect with the next Run.
    void SetUnreadLimit(unsigned int iBytes);
    unsigned int GetUnreadLimit() const;

    /// Starts the child. After a failure there is no new child and the process id is 0. Code 3 if a child is
    /// running, 2 if the command line is too long, 10 if a pipe, the process or a reader thread cannot be created,
    /// with the system's error as the cause. With eModeSuspended, or if the program ignores SIGCHLD, a file that
    /// cannot be executed is no failure: the child then ends with exit code 127.
    [[nodiscard]] Result Run(int & iProcessId);

    /// Whether the child runs or a reader thread still reads. Throws an Exception of code 10 if the system reports
    /// an error.
    bool IsRunning() const;

    /// The exit code that IsRunning or WaitTermination has last seen: EXIT_CODE_ACTIVE, the child's own, the code
    /// passed to Kill, or 128 plus the number of another signal that ended it. -1 if the code is lost: someone else
    /// waited for any child of this process, or the program ignores SIGCHLD on Linux before 6.15.
    int GetExitCode() const;

    /// Waits up to iTimeout milliseconds for the end of the child, without limit if negative. After the end the
    /// reader threads read what is in the pipes and end, the streams are closed, and there is no child any more.
    /// Unlike IsRunning, it does not wait for a program that the child has started and that still has its streams
    /// open. A reader thread that a processor of its traces blocks is killed after 400 ms; Run and the destructor
    /// do the same.
    int WaitTermination(int iTimeout) const;
    int WaitTermination() const;

    /// Ends the child at once; the child cannot prevent it. Code 3 if it is not running, 10 if the system refuses.
    /// Programs that the child has started run on.
    [[nodiscard]] Result Kill(unsigned int iExitCode);

    /// Returns the next queued line, which the caller deletes, or null at once if there is none.
    virtual String * ReceiveStdOut();
    virtual String * ReceiveStdErr();

    /// Queues a line, but nothing is ever written to the child: its standard input stays open and empty.
    virtual void SendStdIn(String const & sLine);

    /// Reads the stream to its end on the calling thread and queues its lines; call it before WaitTermination. If
    /// there is a reader thread, only waits for its end. Code 1 without a child, 2 without redirection, 0 if a read
    /// fails, 10 if lines were dropped for lack of memory. The failure of a reader thread is returned until the
    /// next Run, also after WaitTermination. Read both streams: a child waits while a pipe that nobody reads is
    /// full.
    [[nodiscard]] Result ReadStdStreamUntilEof(Streams eStream);

    /// The same, and appends all queued lines of the stream to vLines.
    [[nodiscard]] Result ReadStdStreamUntilEof(Streams eStream, std::vector<String> & vLines);

private:
    struct Private;
    std::shared_ptr<Private> m;
};

} // namespace tsl
