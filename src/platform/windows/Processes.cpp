#include "platform/Processes.h"

#include "platform/windows/Handle.h"
#include "platform/windows/Text.h"
#include "platform/windows/Waits.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace tsl::Platform
{

/// The first thread of a process that was started suspended.
struct ProcessRecord
{
    Handle oThread;
};

namespace
{

/// The three streams of a child, as handles that it inherits.
class ChildStreams
{
public:
    explicit ChildStreams(StandardStreams const & oStreams)
        : m_oInput(Duplicate(oStreams.oInput, STD_INPUT_HANDLE)),
          m_oOutput(Duplicate(oStreams.oOutput, STD_OUTPUT_HANDLE)),
          m_oErrors(Duplicate(oStreams.oErrors, STD_ERROR_HANDLE))
    {
        for (HANDLE const h : {m_oInput.Get(), m_oOutput.Get(), m_oErrors.Get()})
            if (h)
                m_aList[m_iCount++] = h;
    }

    void Set(STARTUPINFOW & oInfo) const
    {
        oInfo.dwFlags |= STARTF_USESTDHANDLES;
        oInfo.hStdInput = m_oInput.Get();
        oInfo.hStdOutput = m_oOutput.Get();
        oInfo.hStdError = m_oErrors.Get();
    }

    HANDLE * GetList() { return m_aList; }
    std::size_t GetCount() const { return m_iCount; }

private:
    /// The child's end of a pipe, or the stream of this process. Null if there is none.
    static Handle Duplicate(File const & oFile, DWORD iStream)
    {
        HANDLE const hSource = oFile.IsOpen() ? ToHandle(oFile.iHandle) : ::GetStdHandle(iStream);
        HANDLE hCopy = nullptr;
        ::DuplicateHandle(
            ::GetCurrentProcess(), hSource, ::GetCurrentProcess(), &hCopy, 0, TRUE, DUPLICATE_SAME_ACCESS);
        return Handle(hCopy);
    }

    Handle m_oInput;
    Handle m_oOutput;
    Handle m_oErrors;
    HANDLE m_aList[3] = {};
    std::size_t m_iCount = 0;
};

/// The list of the only handles that a child inherits.
class HandleList
{
public:
    explicit HandleList(ChildStreams & oStreams)
    {
        SIZE_T iSize = 0;
        ::InitializeProcThreadAttributeList(nullptr, 1, 0, &iSize);
        m_pMemory = std::make_unique<char[]>(iSize);
        m_bMade = ::InitializeProcThreadAttributeList(Get(), 1, 0, &iSize)
                  && ::UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                      oStreams.GetList(), oStreams.GetCount() * sizeof(HANDLE), nullptr, nullptr);
    }
    ~HandleList()
    {
        if (m_bMade)
            ::DeleteProcThreadAttributeList(Get());
    }
    HandleList(HandleList const &) = delete;
    HandleList & operator=(HandleList const &) = delete;

    bool IsMade() const { return m_bMade; }
    LPPROC_THREAD_ATTRIBUTE_LIST Get() const
    {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_pMemory.get());
    }

private:
    std::unique_ptr<char[]> m_pMemory;
    bool m_bMade = false;
};

DWORD GetFlags(ProcessStart const & oStart)
{
    // A process without a console has no window, and the system refuses both flags together with a new console.
    DWORD iFlags = 0;
    if (oStart.bDetached)
        iFlags = DETACHED_PROCESS;
    else if (oStart.bNewConsole)
        iFlags = CREATE_NEW_CONSOLE;
    else if (oStart.bNoWindow)
        iFlags = CREATE_NO_WINDOW;
    return iFlags | (oStart.bSuspended ? CREATE_SUSPENDED : 0U);
}

HANDLE GetHandle(Process const & oProcess)
{
    return ToHandle(oProcess.iHandle);
}

bool HasEnded(Process const & oProcess)
{
    return ::WaitForSingleObject(GetHandle(oProcess), 0) == WAIT_OBJECT_0;
}

/// Whether the process was started suspended and has never been continued.
bool IsHeldAtStart(ProcessRecord const & oRecord)
{
    if (!oRecord.oThread)
        return false;
    DWORD const iFormer = ::SuspendThread(oRecord.oThread.Get());
    ::ResumeThread(oRecord.oThread.Get());
    return iFormer != 0 && iFormer != static_cast<DWORD>(-1);
}

} // namespace

int StartProcess(ProcessStart const & oStart, Process & oProcess)
{
    ChildStreams oStreams(oStart.oStreams);
    HandleList const oInherited(oStreams);
    auto pRecord = std::make_unique<ProcessRecord>();
    STARTUPINFOEXW oInfo{};
    oInfo.StartupInfo.cb = sizeof oInfo;
    oStreams.Set(oInfo.StartupInfo);
    bool const bInherit = oInherited.IsMade() && oStreams.GetCount() > 0;
    oInfo.lpAttributeList = bInherit ? oInherited.Get() : nullptr;

    std::wstring sCommandLine = ToWide(oStart.sCommandLine);
    PROCESS_INFORMATION oStarted{};
    if (!::CreateProcessW(nullptr, sCommandLine.data(), nullptr, nullptr, bInherit,
            GetFlags(oStart) | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr, &oInfo.StartupInfo, &oStarted))
        return GetSystemError();

    Handle oThread(oStarted.hThread);
    if (oStart.bSuspended)
        pRecord->oThread = std::move(oThread);
    oProcess = {.iProcessId = static_cast<int>(oStarted.dwProcessId),
        .iHandle = ToNumber(oStarted.hProcess),
        .pRecord = pRecord.release()};
    return 0;
}

void CloseProcess(Process & oProcess)
{
    if (!oProcess.IsOpen())
        return;

    Process oLast = std::exchange(oProcess, Process());
    std::unique_ptr<ProcessRecord> const pRecord(oLast.pRecord);
    if (!HasEnded(oLast) && IsHeldAtStart(*pRecord))
        EndProcess(oLast);
    ::CloseHandle(GetHandle(oLast));
}

void EndProcess(Process & oProcess)
{
    constexpr int iTimeout = 1000;
    bool bEnded = false;
    if (KillProcess(oProcess, 0) == 0)
        static_cast<void>(WaitForProcess(oProcess, iTimeout, bEnded));
}

int GetExitCode(Process & oProcess, int & iExitCode)
{
    DWORD iCode = 0;
    oProcess.bEnded = oProcess.bEnded || HasEnded(oProcess);
    if (!::GetExitCodeProcess(GetHandle(oProcess), &iCode))
        return GetSystemError();
    oProcess.iExitCode = static_cast<int>(iCode);
    iExitCode = oProcess.bEnded ? oProcess.iExitCode : EXIT_CODE_ACTIVE;
    return 0;
}

int KillProcess(Process & oProcess, int iExitCode)
{
    return ::TerminateProcess(GetHandle(oProcess), static_cast<UINT>(iExitCode)) ? 0 : GetSystemError();
}

int WaitForProcess(Process const & oProcess, int iTimeout, bool & bEnded)
{
    DWORD const iResult =
        WaitFor({GetHandle(oProcess)}, iTimeout < 0 ? INFINITE : static_cast<DWORD>(iTimeout));
    bEnded = iResult == WAIT_OBJECT_0;
    return iResult == WAIT_FAILED ? GetSystemError() : 0;
}

} // namespace tsl::Platform
