// Prepares itself as the arguments say, starts the child that the last one names with redirected streams, and
// leaves what came of it in the file "outcome": the exit code and the lines of both streams.
//   closed     closes its own streams
//   deaf       ignores the ends of its children

#include <tessel/CmdLine.h>
#include <tessel/OS.h>

#include <csignal>
#include <fstream>
#include <memory>
#include <string>

#include <unistd.h>

namespace
{

void Prepare(std::string const & sWhat)
{
    if (sWhat == "closed")
        for (int iStream = 0; iStream < 3; ++iStream)
            ::close(iStream);
    else if (sWhat == "deaf")
        std::signal(SIGCHLD, SIG_IGN);
}

} // namespace

int main(int iCount, char ** pArguments)
{
    for (int i = 1; i < iCount - 1; ++i)
        Prepare(pArguments[i]);

    tsl::CmdLine oChild;
    oChild.SetMode(tsl::CmdLine::eModeRedirect | tsl::CmdLine::eModeReaderThreads);
    oChild.SetCommand(pArguments[iCount - 1]);
    int iProcessId = 0;
    tsl::Result const oResult = oChild.Run(iProcessId);
    int const iWait = oChild.WaitTermination();

    // With the child's ends of the pipes in the place of a stream, this would not come to an end.
    std::ofstream oOutcome("outcome");
    oOutcome << oResult.GetErrorCode() << ' ' << iWait << ' ' << oChild.GetExitCode() << '\n';
    while (std::unique_ptr<tsl::String> const pLine{oChild.ReceiveStdOut()})
        oOutcome << "out " << pLine->s_str() << '\n';
    while (std::unique_ptr<tsl::String> const pLine{oChild.ReceiveStdErr()})
        oOutcome << "err " << pLine->s_str() << '\n';
}
