// Loads the library that its argument names, and unloads it twice.

#include <tessel/LibraryProxy.h>
#include <tessel/String.h>

int main(int, char ** pArguments)
{
    tsl::LibraryProxy oProxy(pArguments[1]);
    int const iExitCode = oProxy.Load().GetErrorCode();
    oProxy.Unload();
    oProxy.Unload();
    return iExitCode;
}
