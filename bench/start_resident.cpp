// A program that is linked with the library and does nothing but print its size in memory.

#include "ResidentSize.h"

#include <tessel/InitDllTessel.h>

int main()
{
    if (InitDllTessel() != 1)
        return 1;
    tslbench::PrintResidentSize();
}
