#include "Actions.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

namespace
{

void Write(std::FILE * pStream, std::string_view sText)
{
    if (std::fwrite(sText.data(), 1, sText.size(), pStream) != sText.size() || std::fflush(pStream) != 0)
        std::_Exit(99);
}

void WriteText(std::FILE * pStream, std::string_view sText)
{
    std::string sWritten;
    for (std::size_t i = 0; i < sText.size(); ++i)
    {
        bool const bEscaped = sText[i] == '\\' && i + 1 < sText.size();
        char const c = sText[bEscaped ? ++i : i];
        sWritten += !bEscaped ? c : c == 'n' ? '\n' : c == 'r' ? '\r' : '\t';
    }
    Write(pStream, sWritten);
}

/// Lines to both streams in turn, each with a length that only looks random.
void Flood(long long iBytes)
{
    std::string sLine(100'001, 'x');
    for (std::uint64_t iSeed = 1; iBytes > 0; iSeed = iSeed * 6364136223846793005U + 1442695040888963407U)
    {
        std::size_t const iLength = 1 + (iSeed >> 33) % 100'000;
        sLine[iLength] = '\n';
        Write(iSeed >> 63 ? stderr : stdout, std::string_view(sLine).substr(0, iLength + 1));
        sLine[iLength] = 'x';
        iBytes -= static_cast<long long>(iLength) + 1;
    }
}

void Sleep(long long iMilliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(iMilliseconds));
}

void EndIfThereIs(char const * sFile)
{
    if (std::filesystem::exists(sFile))
        std::_Exit(0);
    std::ofstream const oMade(sFile);
}

/// A number, or the name of a signal that C++ knows.
int ReadSignal(std::string_view sName)
{
    struct Row
    {
        std::string_view sName;
        int iSignal;
    };
    static constexpr Row aRows[] = {{"SIGABRT", SIGABRT}, {"SIGFPE", SIGFPE}, {"SIGILL", SIGILL},
        {"SIGINT", SIGINT}, {"SIGSEGV", SIGSEGV}, {"SIGTERM", SIGTERM}};
    auto const * const pFound = std::ranges::find(aRows, sName, &Row::sName);
    return pFound == std::end(aRows) ? std::atoi(sName.data()) : pFound->iSignal;
}

} // namespace

int DoAction(char const * sAction, char const * sArgument)
{
    std::string_view const sName(sAction);
    long long const iNumber = std::atoll(sArgument);
    while (sName == "hang")
        Sleep(1'000'000);

    if (sName == "out" || sName == "err")
        WriteText(sName == "out" ? stdout : stderr, sArgument);
    else if (sName == "line")
        Write(stdout, std::string(static_cast<std::size_t>(iNumber), '0') + '\n');
    else if (sName == "flood")
        Flood(iNumber);
    else if (sName == "wait")
        Sleep(iNumber);
    else if (sName == "once")
        EndIfThereIs(sArgument);
    else if (sName == "ignore")
        std::signal(ReadSignal(sArgument), SIG_IGN);
    else if (sName == "signal")
        std::raise(ReadSignal(sArgument));
    else if (sName == "exit")
        std::_Exit(static_cast<int>(iNumber));
    else
        return 0;
    return 2;
}
