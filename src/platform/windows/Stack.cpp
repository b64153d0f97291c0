#include "platform/Stack.h"

#include "platform/Files.h"
#include "platform/windows/System.h"
#include "platform/windows/Text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

namespace tsl::Platform
{

namespace
{

/// The module's file and the offset in it.
std::string DescribePlace(void * pAddress)
{
    HMODULE hModule = nullptr;
    ::GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        static_cast<wchar_t const *>(pAddress), &hModule);
    wchar_t aName[MAX_PATH];
    DWORD const iLength = hModule ? ::GetModuleFileNameW(hModule, aName, MAX_PATH) : 0;
    auto const iOffset =
        reinterpret_cast<std::uintptr_t>(pAddress) - reinterpret_cast<std::uintptr_t>(hModule);
    char aOffset[32];
    std::snprintf(aOffset, sizeof aOffset, "+0x%llx\n", static_cast<unsigned long long>(iOffset));
    return ToUtf8({aName, iLength}) + aOffset;
}

} // namespace

void GetStack(void ** pAddresses, std::size_t iCount)
{
    auto const iFound = ::RtlCaptureStackBackTrace(0, static_cast<ULONG>(iCount), pAddresses, nullptr);
    std::fill(pAddresses + iFound, pAddresses + iCount, nullptr);
}

void WriteStack(void * const * pAddresses, std::size_t iCount)
{
    for (std::size_t i = 0; i < iCount && pAddresses[i]; ++i)
        WriteToStandardError(DescribePlace(pAddresses[i]));
}

} // namespace tsl::Platform
