#include "platform/ForcedEnd.h"

#include "platform/windows/ThreadRecord.h"
#include "platform/windows/Waits.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <vector>

#include <psapi.h>

// A thread that waits in the library ends itself. Any other one is suspended, and ended if it is in code of the
// program, or in a call of the system that only waits. Nothing is allocated while a thread is suspended: it may hold
// the lock of the heap.

namespace tsl
{

constinit thread_local ForcedEndState t_oForcedEnd;

} // namespace tsl

namespace tsl::Platform
{

namespace
{

// Milliseconds between two checks whether a thread has ended.
constexpr DWORD CHECK_INTERVAL = 1;

constexpr std::size_t FRAMES_MAX = 60;

struct Module
{
    std::uintptr_t iBegin = 0;
    std::uintptr_t iEnd = 0;
    bool bOfSystem = false; ///< of the system or the runtime library

    bool Contains(std::uintptr_t iAddress) const { return iBegin <= iAddress && iAddress < iEnd; }
};

constexpr std::wstring_view RUNTIME_FILES[] = {
    L"libstdc++", L"libgcc_s", L"libwinpthread", L"libc++", L"libunwind", L"libssp", L"libatomic"};

std::uintptr_t GetOwnAddress()
{
    return reinterpret_cast<std::uintptr_t>(&GetOwnAddress);
}

bool IsOfSystem(HMODULE hModule, std::wstring_view sSystemFolder)
{
    wchar_t aPath[MAX_PATH];
    std::wstring_view const sPath(aPath, ::GetModuleFileNameW(hModule, aPath, MAX_PATH));
    std::wstring_view const sFile = sPath.substr(sPath.rfind(L'\\') + 1);
    bool const bInFolder = sPath.size() > sSystemFolder.size()
                           && ::CompareStringOrdinal(sPath.data(), static_cast<int>(sSystemFolder.size()),
                                  sSystemFolder.data(), static_cast<int>(sSystemFolder.size()), TRUE)
                                  == CSTR_EQUAL;
    return bInFolder
           || std::any_of(std::begin(RUNTIME_FILES), std::end(RUNTIME_FILES),
               [&](std::wstring_view sBegin) { return sFile.starts_with(sBegin); });
}

/// The modules of the process. Code outside of all of them counts as the program's own.
class ModuleList
{
public:
    ModuleList()
    {
        HMODULE aModules[1024];
        DWORD iSize = 0;
        if (!::K32EnumProcessModules(::GetCurrentProcess(), aModules, sizeof aModules, &iSize))
            return;
        wchar_t aFolder[MAX_PATH];
        std::wstring_view const sFolder(aFolder, ::GetSystemDirectoryW(aFolder, MAX_PATH));
        std::size_t const iCount = std::min<std::size_t>(iSize / sizeof(HMODULE), std::size(aModules));
        for (std::size_t i = 0; i < iCount; ++i)
            Add(aModules[i], sFolder);
    }

    Module const * Find(std::uintptr_t iAddress) const
    {
        auto const pFound = std::find_if(m_vModules.begin(), m_vModules.end(),
            [=](Module const & oModule) { return oModule.Contains(iAddress); });
        return pFound == m_vModules.end() ? nullptr : &*pFound;
    }

    bool IsOfSystem(std::uintptr_t iAddress) const
    {
        Module const * const pModule = Find(iAddress);
        return pModule && pModule->bOfSystem;
    }

    bool IsOwn(std::uintptr_t iAddress) const
    {
        Module const * const pModule = Find(iAddress);
        return pModule && pModule->Contains(GetOwnAddress());
    }

private:
    void Add(HMODULE hModule, std::wstring_view sFolder)
    {
        MODULEINFO oInfo{};
        if (!::K32GetModuleInformation(::GetCurrentProcess(), hModule, &oInfo, sizeof oInfo))
            return;
        auto const iBegin = reinterpret_cast<std::uintptr_t>(oInfo.lpBaseOfDll);
        m_vModules.push_back({iBegin, iBegin + oInfo.SizeOfImage, Platform::IsOfSystem(hModule, sFolder)});
    }

    std::vector<Module> m_vModules;
};

/// Checks the frames from the innermost one of the program to the entry of the thread.
EndObstacle CheckCallers(ModuleList const & oModules, std::uintptr_t const * pFrames, std::size_t iCount)
{
    // The outermost frames are the system's, below the library's entry of the thread.
    while (iCount > 0 && oModules.IsOfSystem(pFrames[iCount - 1]))
        --iCount;
    bool const bCalledBack = std::any_of(
        pFrames, pFrames + iCount, [&](std::uintptr_t iFrame) { return oModules.IsOfSystem(iFrame); });
    return bCalledBack ? EndObstacle::eRuntime : EndObstacle::eNone;
}

[[noreturn]] void EndThisThread()
{
    Presence::Abandon(t_oForcedEnd.pPresence);
    // Not ExitThread, which would destroy the thread-local objects.
    for (;;)
        ::TerminateThread(::GetCurrentThread(), 0);
}

bool BeginEnd(Thread & oThread)
{
    Thread::EState eAsked = Thread::eAsked;
    return oThread.eState.compare_exchange_strong(eAsked, Thread::eEnding);
}

#ifdef __x86_64__

// The calls of the system that only wait, and the functions that a program may have called for that. A thread that
// ends there loses only what it waited for. Locks and values that change are missing: their waiting threads are in
// lists, or are counted.
constexpr char const * WAIT_STUBS[] = {"NtDelayExecution", "NtWaitForSingleObject",
    "NtWaitForMultipleObjects", "NtReadFile", "NtWriteFile", "NtFsControlFile", "NtDeviceIoControlFile",
    "NtRemoveIoCompletion"};
constexpr char const * WAITS[] = {"Sleep", "SleepEx", "WaitForSingleObject", "WaitForSingleObjectEx",
    "WaitForMultipleObjects", "WaitForMultipleObjectsEx", "ReadFile", "WriteFile", "ConnectNamedPipe",
    "GetOverlappedResult", "GetOverlappedResultEx", "GetQueuedCompletionStatus"};
constexpr char const * RUNTIME_WAITS[] = {"nanosleep", "nanosleep64", "clock_nanosleep", "clock_nanosleep64"};

constexpr std::size_t STUB_SIZE = 32;

/// Finds functions by name. Before a thread is suspended, since the loader has a lock.
class WaitList
{
public:
    WaitList()
    {
        Add(L"ntdll.dll", WAIT_STUBS, m_vStubs);
        Add(L"kernel32.dll", WAITS, m_vFunctions);
        Add(L"kernelbase.dll", WAITS, m_vFunctions);
        Add(L"libwinpthread-1.dll", RUNTIME_WAITS, m_vFunctions);
    }

    bool IsStub(std::uintptr_t iAddress) const
    {
        return std::any_of(m_vStubs.begin(), m_vStubs.end(),
            [=](std::uintptr_t iStub) { return iAddress - iStub < STUB_SIZE; });
    }

    bool IsWait(std::uintptr_t iFunction) const
    {
        return std::find(m_vFunctions.begin(), m_vFunctions.end(), iFunction) != m_vFunctions.end();
    }

private:
    template<std::size_t N>
    static void Add(
        wchar_t const * sModule, char const * const (&aNames)[N], std::vector<std::uintptr_t> & vFound)
    {
        HMODULE const hModule = ::GetModuleHandleW(sModule);
        for (char const * const sName : aNames)
            if (hModule && ::GetProcAddress(hModule, sName))
                vFound.push_back(reinterpret_cast<std::uintptr_t>(::GetProcAddress(hModule, sName)));
    }

    std::vector<std::uintptr_t> m_vStubs;
    std::vector<std::uintptr_t> m_vFunctions;
};

/// The return addresses of a suspended thread, innermost first.
std::size_t WalkStack(CONTEXT oContext, std::uintptr_t * pFrames, std::size_t iMax)
{
    std::size_t iCount = 0;
    while (iCount < iMax && oContext.Rip != 0)
    {
        pFrames[iCount++] = oContext.Rip;
        DWORD64 iBase = 0;
        PRUNTIME_FUNCTION const pFunction = ::RtlLookupFunctionEntry(oContext.Rip, &iBase, nullptr);
        if (!pFunction)
        {
            // A function without an entry calls no other one: its return address is on top of the stack.
            oContext.Rip = *reinterpret_cast<DWORD64 const *>(oContext.Rsp);
            oContext.Rsp += sizeof(DWORD64);
            continue;
        }
        void * pHandlerData = nullptr;
        DWORD64 iFrame = 0;
        ::RtlVirtualUnwind(
            UNW_FLAG_NHANDLER, iBase, oContext.Rip, pFunction, &oContext, &pHandlerData, &iFrame, nullptr);
    }
    return iCount;
}

std::uintptr_t FindFunction(std::uintptr_t iAddress)
{
    DWORD64 iBase = 0;
    PRUNTIME_FUNCTION const pFunction = ::RtlLookupFunctionEntry(iAddress, &iBase, nullptr);
    return pFunction ? static_cast<std::uintptr_t>(iBase + pFunction->BeginAddress) : 0;
}

/// What is needed while a thread is suspended.
struct Knowledge
{
    ModuleList oModules;
    WaitList oWaits;
};

EndObstacle CheckFrames(Knowledge const & oKnown, std::uintptr_t const * pFrames, std::size_t iCount)
{
    // The frames of the system inside of the first one of the program.
    std::size_t iInner = 0;
    while (iInner < iCount && oKnown.oModules.IsOfSystem(pFrames[iInner]))
        ++iInner;
    if (iInner == iCount)
        return EndObstacle::eRuntime;
    if (oKnown.oModules.IsOwn(pFrames[iInner]))
        return EndObstacle::eLibrary;
    if (iInner > 0
        && (!oKnown.oWaits.IsStub(pFrames[0]) || !oKnown.oWaits.IsWait(FindFunction(pFrames[iInner - 1]))))
        return EndObstacle::eRuntime;
    return CheckCallers(oKnown.oModules, pFrames + iInner, iCount - iInner);
}

EndObstacle FindObstacle(Thread const & oThread, Knowledge const & oKnown)
{
    CONTEXT oContext{};
    oContext.ContextFlags = CONTEXT_FULL;
    if (!::GetThreadContext(oThread.oThread.Get(), &oContext) || !oThread.pState)
        return EndObstacle::eNoAnswer;
    if (oThread.pState->iLocks.load() > 0)
        return EndObstacle::eLock;

    std::uintptr_t aFrames[FRAMES_MAX];
    std::size_t const iCount = WalkStack(oContext, aFrames, FRAMES_MAX);
    return iCount == FRAMES_MAX ? EndObstacle::eStack : CheckFrames(oKnown, aFrames, iCount);
}

#else

/// The stack of a suspended thread cannot be walked here, so a thread ends only where the library waits.
struct Knowledge
{
};

EndObstacle FindObstacle(Thread const &, Knowledge const &)
{
    return EndObstacle::eStack;
}

#endif

/// Ends the thread if there is no obstacle.
void EndSuspended(Thread & oThread, Knowledge const & oKnown)
{
    HANDLE const hThread = oThread.oThread.Get();
    if (::SuspendThread(hThread) == static_cast<DWORD>(-1))
        return;
    EndObstacle const eObstacle = FindObstacle(oThread, oKnown);
    bool const bEnd = eObstacle == EndObstacle::eNone && BeginEnd(oThread);
    if (bEnd)
    {
        Presence::Abandon(oThread.pState->pPresence);
        ::TerminateThread(hThread, 0);
    }
    else if (eObstacle != EndObstacle::eNone)
        oThread.eObstacle = eObstacle;
    ::ResumeThread(hThread);
}

} // namespace

void EndThisThreadInWait()
{
    Thread * const pThis = t_pThis;
    // The lock that it waits for counts as well.
    unsigned int const iLocks = t_oForcedEnd.eWait.load() == ForcedEndState::eForLock ? 1 : 0;
    if (!pThis || pThis->eState.load() != Thread::eAsked || t_oForcedEnd.iLocks.load() > iLocks)
        return;

    void * aFrames[FRAMES_MAX];
    std::size_t const iCount = ::RtlCaptureStackBackTrace(0, FRAMES_MAX, aFrames, nullptr);
    std::uintptr_t aPlaces[FRAMES_MAX];
    std::transform(
        aFrames, aFrames + iCount, aPlaces, [](void * p) { return reinterpret_cast<std::uintptr_t>(p); });
    EndObstacle const eObstacle = CheckCallers(ModuleList(), aPlaces, iCount);
    if (eObstacle != EndObstacle::eNone || !BeginEnd(*pThis))
        return;

    // This thread may have taken the one wake-up that was for another.
    if (std::atomic<int> * const pAwaited = pThis->pAwaited.load())
        ::WakeByAddressSingle(pAwaited);
    EndThisThread();
}

void AskToEnd(Thread & oThread)
{
    if (oThread.eState.load() == Thread::eFree)
    {
        oThread.eObstacle = EndObstacle::eNoAnswer;
        oThread.eState.store(Thread::eAsked);
        ::SetEvent(oThread.oAsked.Get());
    }
    if (oThread.pState)
        oThread.pState->bWanted.store(true, std::memory_order_relaxed);
    if (std::atomic<int> * const pAwaited = oThread.pAwaited.load())
        ::WakeByAddressAll(pAwaited);
    if (oThread.eState.load() == Thread::eAsked)
        EndSuspended(oThread, Knowledge());
}

void PauseBetweenAsking()
{
    static_cast<void>(WaitFor({}, CHECK_INTERVAL));
}

bool StopAskingToEnd(Thread & oThread, EndObstacle & eObstacle)
{
    Thread::EState eAsked = Thread::eAsked;
    if (!oThread.eState.compare_exchange_strong(eAsked, Thread::eFree) && eAsked == Thread::eEnding)
        return false;
    ::ResetEvent(oThread.oAsked.Get());
    eObstacle = oThread.eObstacle;
    return true;
}

void EndThisThreadIf(void const *)
{
    if (!t_pThis || t_pThis->eState.load() != Thread::eAsked)
        t_oForcedEnd.bWanted.store(false, std::memory_order_relaxed);
    else
        EndThisThreadInWait();
}

} // namespace tsl::Platform
