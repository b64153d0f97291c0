// A child with a task of its own, for the tests that start children:
//
//     Job exit CODE             ends with the code
//     Job exitonce CODE FILE    ends with the code if the file is not there, and makes it; else with 0
//     Job say STREAM WORD...    prints each word as a line to descriptor 1 or 2
//     Job sleep                 sleeps until it is ended
//     Job tellandsleep FILE     writes its parent's id into the file, and sleeps
//     Job flood                 prints lines until it is ended

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{

[[noreturn]] void SleepForEver()
{
    for (;;)
        ::pause();
}

int ExitOnce(int iCode, std::string const & sFile)
{
    if (std::ifstream(sFile).good())
        return 0;
    std::ofstream(sFile).put('x');
    return iCode;
}

void Say(std::ostream & oStream, std::vector<std::string> const & vWords)
{
    for (std::string const & sWord : vWords)
        oStream << sWord << std::endl;
}

} // namespace

int main(int iCount, char ** pArguments)
{
    std::vector<std::string> const vArguments(pArguments + 1, pArguments + iCount);
    std::string const & sTask = vArguments.at(0);
    if (sTask == "exit")
        return std::stoi(vArguments.at(1));
    if (sTask == "exitonce")
        return ExitOnce(std::stoi(vArguments.at(1)), vArguments.at(2));
    if (sTask == "say")
        Say(vArguments.at(1) == "1" ? std::cout : std::cerr, {vArguments.begin() + 2, vArguments.end()});
    if (sTask == "tellandsleep")
        std::ofstream(vArguments.at(1)) << ::getppid() << std::endl;
    if (sTask == "flood")
        for (;;)
            std::cout << "a line of a child that writes as fast as it can\n";
    if (sTask == "sleep" || sTask == "tellandsleep")
        SleepForEver();
    return 0;
}
