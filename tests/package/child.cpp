// Starts the child of the kit where the package has it.

#include <tesselkit/ScriptedChild.h>

int main()
{
    tsl::ScriptedChild oChild("exit 42");
    if (oChild.Start().IsError() || oChild.WaitTermination() != tsl::CmdLine::eWaitTerminated)
        return 1;
    return oChild.GetExitCode() == 42 ? 0 : 2;
}
