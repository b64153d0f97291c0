#include "platform/Pipes.h"

#include "platform/ForcedEnd.h"
#include "platform/windows/Handle.h"
#include "platform/windows/Waits.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <string>

namespace tsl::Platform
{

namespace
{

constexpr DWORD BUFFER_SIZE = 64 * 1024;

/// Only a named pipe can be read without waiting in the call.
int MakeReadPipe(Handle & oOwn, Handle & oOther)
{
    static constinit std::atomic<std::uint64_t> iLast{0};
    std::wstring const sName = L"\\\\.\\pipe\\Tessel." + std::to_wstring(::GetCurrentProcessId()) + L'.'
                               + std::to_wstring(iLast.fetch_add(1));
    oOwn = Handle(::CreateNamedPipeW(sName.c_str(),
        PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
        PIPE_TYPE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1, BUFFER_SIZE, BUFFER_SIZE, 0, nullptr));
    if (!oOwn)
        return GetSystemError();
    SECURITY_ATTRIBUTES oInherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    oOther = Handle(::CreateFileW(
        sName.c_str(), GENERIC_WRITE | FILE_READ_ATTRIBUTES, 0, &oInherited, OPEN_EXISTING, 0, nullptr));
    return oOther ? 0 : GetSystemError();
}

int MakeWritePipe(Handle & oOwn, Handle & oOther)
{
    HANDLE hRead = nullptr;
    HANDLE hWrite = nullptr;
    if (!::CreatePipe(&hRead, &hWrite, nullptr, BUFFER_SIZE))
        return GetSystemError();
    oOther = Handle(hRead);
    oOwn = Handle(hWrite);
    return ::SetHandleInformation(hRead, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) ? 0 : GetSystemError();
}

/// A read that may outlast the call. The destructor cancels it: the system would write into memory that is used for
/// something else.
class PendingRead
{
public:
    explicit PendingRead(HANDLE hPipe) : m_hPipe(hPipe) {}
    ~PendingRead()
    {
        DWORD iDone = 0;
        if (m_bPending && ::CancelIoEx(m_hPipe, &m_oState))
            ::GetOverlappedResult(m_hPipe, &m_oState, &iDone, TRUE);
    }
    PendingRead(PendingRead const &) = delete;
    PendingRead & operator=(PendingRead const &) = delete;

    int Start(char * pBytes, std::size_t iCount, std::size_t & iRead)
    {
        DWORD const iSize = static_cast<DWORD>(std::min<std::size_t>(iCount, BUFFER_SIZE));
        DWORD iDone = 0;
        if (::ReadFile(m_hPipe, pBytes, iSize, &iDone, &m_oState))
        {
            iRead = iDone;
            return 0;
        }
        int const iError = GetSystemError();
        m_bPending = iError == ERROR_IO_PENDING;
        return iError;
    }

    int Finish(std::size_t & iRead)
    {
        DWORD iDone = 0;
        m_bPending = false;
        int const iError = ::GetOverlappedResult(m_hPipe, &m_oState, &iDone, TRUE) ? 0 : GetSystemError();
        iRead = iDone;
        return iError;
    }

private:
    HANDLE m_hPipe;
    OVERLAPPED m_oState{};
    bool m_bPending = false;
};

/// A read of no byte is not the end: somebody has written nothing.
int ReadOnce(
    HANDLE hPipe, HANDLE hStop, char * pBytes, std::size_t iCount, std::size_t & iRead, bool & bStopped)
{
    PendingRead oRead(hPipe);
    int const iError = oRead.Start(pBytes, iCount, iRead);
    if (iError != ERROR_IO_PENDING)
        return iError;

    // The buffer is the thread's, which must not be ended while the system may write to it.
    NoKillScope const oScope;
    DWORD const iWhich = hStop ? WaitFor({hPipe, hStop}, INFINITE) : WaitFor({hPipe}, INFINITE);
    if (iWhich == WAIT_FAILED)
        return GetSystemError();
    bStopped = iWhich == WAIT_OBJECT_0 + 1;
    return bStopped ? 0 : oRead.Finish(iRead);
}

} // namespace

int MakePipe(OwnEnd eOwn, File & oOwnEnd, File & oOtherEnd)
{
    Handle oOwn;
    Handle oOther;
    int const iError = eOwn == OwnEnd::eRead ? MakeReadPipe(oOwn, oOther) : MakeWritePipe(oOwn, oOther);
    if (iError != 0)
        return iError;
    oOwnEnd = {ToNumber(oOwn.Release())};
    oOtherEnd = {ToNumber(oOther.Release())};
    return 0;
}

int MakeStopSignal(StopSignal & oSignal)
{
    Handle oEvent(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!oEvent)
        return GetSystemError();
    oSignal.iHandle = ToNumber(oEvent.Release());
    return 0;
}

void SetStopSignal(StopSignal const & oSignal)
{
    if (oSignal.IsOpen())
        ::SetEvent(ToHandle(oSignal.iHandle));
}

void CloseStopSignal(StopSignal & oSignal)
{
    if (oSignal.IsOpen())
        ::CloseHandle(ToHandle(std::exchange(oSignal, StopSignal()).iHandle));
}

int ReadPipe(
    File const & oPipe, StopSignal const & oStop, char * pBytes, std::size_t iCount, std::size_t & iRead)
{
    HANDLE const hStop = oStop.IsOpen() ? ToHandle(oStop.iHandle) : nullptr;
    bool bStopped = false;
    for (iRead = 0; iRead == 0 && !bStopped;)
        if (int const iError = ReadOnce(ToHandle(oPipe.iHandle), hStop, pBytes, iCount, iRead, bStopped))
            return iError == ERROR_BROKEN_PIPE ? 0 : iError;
    return 0;
}

} // namespace tsl::Platform
