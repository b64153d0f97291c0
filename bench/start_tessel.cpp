// A program that is linked with the library and does nothing.

#include <tessel/InitDllTessel.h>

int main()
{
    return InitDllTessel() == 1 ? 0 : 1;
}
