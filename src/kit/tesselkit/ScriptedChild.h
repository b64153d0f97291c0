#pragma once

#include <tessel/CmdLine.h>
#include <tessel/Result.h>
#include <tessel/String.h>

namespace tsl
{

/// A child process that does what a script says, to test programs that start others.
///
///     tsl::ScriptedChild oChild("out ready\\n wait 50 exit 3");
///     EXPECT_TRUE(oChild.Start().IsOk());
///     EXPECT_EQ(oChild.WaitTermination(10'000), tsl::CmdLine::eWaitTerminated);
///     EXPECT_EQ(oChild.GetExitCode(), 3);
///
/// A script is words, separated by blanks:
///
/// | Action | Does |
/// |---|---|
/// | `out TEXT`, `err TEXT` | writes the text to a stream; `\n`, `\r` and `\t` are written so |
/// | `line BYTES` | writes a line of so many bytes |
/// | `flood BYTES` | writes lines of 1 to 100,000 bytes to both streams in turn, so many bytes in all |
/// | `wait MILLISECONDS` | sleeps |
/// | `hang` | sleeps for ever |
/// | `once FILE` | ends with 0 if the file is there, else makes it |
/// | `ignore SIGNAL`, `signal SIGNAL` | ignores a signal, or raises it; a number, or a name such as SIGTERM |
/// | `exit CODE` | ends |
///
/// At the end of the script it ends with 0; an unknown action ends it with 2. It is no program of Tessel: it opens no log
/// file. One thread at a time uses an object.
class ScriptedChild : public CmdLine
{
public:
    /// The child's program, which the target Tessel::Kit names.
    static constexpr char const * PROGRAM = TESSELKIT_CHILD;

    /// The command line of a child with that script, for a program that starts it itself.
    static String MakeCommand(String const & sScript) { return MakeCommand(PROGRAM, sScript); }

    /// iMode as for CmdLine.
    explicit ScriptedChild(String const & sScript, int iMode = eModeRedirect)
        : ScriptedChild(PROGRAM, sScript, iMode)
    {
    }

    /// Ends the child if it runs.
    ~ScriptedChild() override;

    /// Starts it; fails as CmdLine::Run does.
    [[nodiscard]] Result Start();

    /// -1 before the first start, 0 after one that failed.
    int GetProcessId() const { return m_iProcessId; }

    /// The lines that it has written by now, each with a line feed; they are taken out of the queues. Only with
    /// eModeReaderThreads.
    String TakeOutput() { return TakeLines(&CmdLine::ReceiveStdOut); }
    String TakeErrors() { return TakeLines(&CmdLine::ReceiveStdErr); }

protected:
    /// The same with another program.
    static String MakeCommand(String const & sProgram, String const & sScript);
    ScriptedChild(String const & sProgram, String const & sScript, int iMode);

private:
    String TakeLines(String * (CmdLine::*fReceive)());

    int m_iProcessId = -1;
};

} // namespace tsl
