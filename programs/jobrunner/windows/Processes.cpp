#include "../Processes.h"

#include <map>
#include <memory>
#include <mutex>

#include <windows.h>

#include <tlhelp32.h>

// What a job starts belongs to its job object, which no process can leave.

namespace Processes
{

namespace
{

struct CloseHandle
{
    void operator()(HANDLE hHandle) const { ::CloseHandle(hHandle); }
};
using Handle = std::unique_ptr<void, CloseHandle>;

struct Entry
{
    Handle pProcess;
    Handle pJob;
};

std::mutex g_oLock;
std::map<int, Entry> g_oEntries;

/// The entry of a job, made at the first call. The caller holds the lock.
Entry & GetEntry(int iProcess)
{
    Entry & oEntry = g_oEntries[iProcess];
    if (!oEntry.pProcess)
        oEntry.pProcess.reset(
            ::OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE | PROCESS_SET_QUOTA | PROCESS_QUERY_INFORMATION,
                FALSE, static_cast<DWORD>(iProcess)));
    return oEntry;
}

bool Runs(Entry const & oEntry)
{
    return oEntry.pProcess && ::WaitForSingleObject(oEntry.pProcess.get(), 0) == WAIT_TIMEOUT;
}

bool HasProcesses(Entry const & oEntry)
{
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION oInfo{};
    if (oEntry.pJob
        && ::QueryInformationJobObject(
            oEntry.pJob.get(), JobObjectBasicAccountingInformation, &oInfo, sizeof oInfo, nullptr))
        return oInfo.ActiveProcesses > 0;
    return Runs(oEntry);
}

/// There is no way to ask a process without a window to end, so eAsk does nothing.
bool End(Entry const & oEntry, Force eForce)
{
    if (eForce == Force::eKill && oEntry.pJob)
        ::TerminateJobObject(oEntry.pJob.get(), 1);
    if (eForce == Force::eKill && Runs(oEntry))
        ::TerminateProcess(oEntry.pProcess.get(), 1);
    return HasProcesses(oEntry);
}

void ResumeThreads(DWORD iProcess)
{
    Handle const pList(::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 oThread{};
    oThread.dwSize = sizeof oThread;
    for (BOOL bFound = ::Thread32First(pList.get(), &oThread); bFound;
         bFound = ::Thread32Next(pList.get(), &oThread))
        if (oThread.th32OwnerProcessID == iProcess)
            if (Handle const pThread{::OpenThread(THREAD_SUSPEND_RESUME, FALSE, oThread.th32ThreadID)})
                ::ResumeThread(pThread.get());
}

constexpr int MANY = 1'000'000;

} // namespace

void AdoptOrphans() {}

void ReapOrphans() {}

void Continue(int iProcess)
{
    std::lock_guard const oScope(g_oLock);
    // The process of an earlier job may have had the same number.
    g_oEntries.erase(iProcess);
    Entry & oEntry = GetEntry(iProcess);
    oEntry.pJob.reset(::CreateJobObjectW(nullptr, nullptr));
    if (oEntry.pJob && !::AssignProcessToJobObject(oEntry.pJob.get(), oEntry.pProcess.get()))
        oEntry.pJob.reset();
    ResumeThreads(static_cast<DWORD>(iProcess));
}

bool HasEnded(int iProcess, int & iSignal)
{
    std::lock_guard const oScope(g_oLock);
    iSignal = 0;
    return !Runs(GetEntry(iProcess));
}

bool EndJob(int iFirstProcess, Force eForce)
{
    std::lock_guard const oScope(g_oLock);
    return End(GetEntry(iFirstProcess), eForce);
}

bool EndAll(Force eForce)
{
    std::lock_guard const oScope(g_oLock);
    bool bAny = false;
    for (auto const & [iProcess, oEntry] : g_oEntries)
        bAny = End(oEntry, eForce) || bAny;
    return bAny;
}

std::string GetSignalName(int iSignal)
{
    return "signal " + std::to_string(iSignal);
}

bool IsLackOfRoom(int iError)
{
    return iError == ERROR_NOT_ENOUGH_MEMORY || iError == ERROR_OUTOFMEMORY
           || iError == ERROR_NO_SYSTEM_RESOURCES || iError == ERROR_COMMITMENT_LIMIT
           || iError == ERROR_TOO_MANY_OPEN_FILES;
}

int GetFreeDescriptors()
{
    return MANY;
}

int GetFreeProcesses()
{
    return MANY;
}

} // namespace Processes
