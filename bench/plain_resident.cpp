// The same as start_resident without the library.

#include "ResidentSize.h"

int main()
{
    tslbench::PrintResidentSize();
}
