#pragma once

// What the programs have in common that check processes and threads in trouble.

#include "../TestChild.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

#include <unistd.h>

// Children of a process with threads may start threads, whatever the sanitizer thinks of that.
extern "C" [[gnu::used]] inline char const * __tsan_default_options() // NOLINT(bugprone-reserved-identifier)
{
    return "die_after_fork=0";
}

namespace tsltest
{

/// What the program is doing, for its reports, and the seconds that each of its processes has for that.
inline char const * g_sOccupation = "";
inline unsigned int g_iSeconds = 10;

[[noreturn]] inline void Fail(char const * sWhat)
{
    std::fprintf(stderr, "%s: %s\n", g_sOccupation, sWhat);
    std::_Exit(1);
}

/// Ends the program at once unless the condition holds.
inline void Require(bool bHolds, char const * sWhat)
{
    if (!bHolds)
        Fail(sWhat);
}

/// The status of the child as waitpid gives it.
inline int WaitForEnd(pid_t iProcess)
{
    int iStatus = -1;
    while (::waitpid(iProcess, &iStatus, 0) < 0 && errno == EINTR)
    {
    }
    return iStatus;
}

/// Whether the process is one thread that waits for another one.
inline bool IsStuck(pid_t iProcess)
{
    std::string const sFolder = "/proc/" + std::to_string(iProcess);
    std::string sPlace;
    std::getline(std::ifstream(sFolder + "/wchan"), sPlace);
    return sPlace.find("futex") != std::string::npos && CountEntries((sFolder + "/task").c_str()) == 1;
}

/// The same of a forked child, which is ended when it has been stuck for two seconds.
inline int WaitForFork(pid_t iProcess)
{
    int iStatus = -1;
    for (int iLook = 0, iStuck = 0; ::waitpid(iProcess, &iStatus, WNOHANG) == 0; ++iLook)
    {
        tsl::OS::Sleep(1);
        if (iLook % 50 != 0)
            continue;
        iStuck = IsStuck(iProcess) ? iStuck + 1 : 0;
        if (iStuck == 40)
            ::kill(iProcess, SIGKILL);
    }
    return iStatus;
}

/// Empties the log now and then, so that what busy threads write does not fill the disk.
inline void LimitLog(int iRound)
{
    if (iRound % 16 == 0)
        std::filesystem::resize_file("Logfile.txt", 0);
}

inline bool RunToTheEnd(Child & oChild)
{
    return oChild.Start().IsOk() && oChild.WaitTermination() == tsl::CmdLine::eWaitTerminated;
}

/// Sends a message, a line and a failure with a history through the global bus.
inline bool UseBus(tsl::Message const & oMessage)
{
    tsl::Result const oFailure(1, "r", tsl::Result(2, "s", tsl::Result::eCategoryDefault));
    return tsl::Support::DispatchMessage(oMessage).IsOk()
           && tsl::Support::DispatchDebugMessage("Busy", "a line", "f", 1).IsOk()
           && tsl::Support::DispatchMessage(oFailure).IsOk();
}

/// Converts a moment and a float to texts, and a text to a float.
inline bool ConvertValues()
{
    tsl::String sDate;
    tsl::DateTime(86400, tsl::Time::ePrecisionSecond).Format("%d.%m.%Y %Z", sDate, tsl::TimeZone::eGreenwich);
    tsl::ValueFloat32 oFloat;
    tsl::ValueString sFloat("");
    return oFloat.GetConverter().ConvertFromText(tsl::ValueString("1.5"), oFloat).IsOk()
           && oFloat.AddAsString(sFloat) == "1.500000" && sDate.Find("02.01.1970") == 0;
}

} // namespace tsltest
