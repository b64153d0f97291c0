// The program of ScriptedChild: does what its arguments say. It does not use the library, which would open a log file.

#include "Actions.h"

#include <cstdio>

int main(int iCount, char ** ppWords)
{
    for (int i = 1; i < iCount;)
    {
        int const iUsed = DoAction(ppWords[i], i + 1 < iCount ? ppWords[i + 1] : "");
        if (iUsed == 0)
        {
            std::fprintf(stderr, "scripted-child: There is no action '%s'.\n", ppWords[i]);
            return 2;
        }
        i += iUsed;
    }
    return 0;
}
