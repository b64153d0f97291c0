// Shows what a program of the tests was given, or hangs: the object of the tests of TestProgram itself.

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include <unistd.h>

int main(int iCount, char ** ppArguments)
{
    if (iCount > 1 && std::string(ppArguments[1]) == "hang")
    {
        for (;;)
            ::pause();
    }

    char const * const pVariable = std::getenv("TESSEL_PROBE");
    std::cout << (pVariable == nullptr ? "" : pVariable) << '\n';
    for (int i = 0; i < iCount; ++i)
        std::cout << ppArguments[i] << '\n';

    if (std::cin.get() == std::char_traits<char>::eof())
        std::cerr << "nothing on standard input\n";

    std::ofstream("output") << std::ifstream("input").rdbuf();
    return 3;
}
