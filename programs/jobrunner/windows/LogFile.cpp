#include "../LogFile.h"

#include <windows.h>

namespace
{

// Only the lower 32 bits of a handle mean anything.
HANDLE ToHandle(int iHandle)
{
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(iHandle));
}

} // namespace

bool LogFile::Find()
{
    // A handle of its own: that of the library can only append.
    HANDLE const hFile = ::CreateFileW(L"Logfile.txt", GENERIC_READ,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (hFile == INVALID_HANDLE_VALUE)
        return false;
    m_iDescriptor = static_cast<int>(reinterpret_cast<std::intptr_t>(hFile));
    return true;
}

bool LogFile::GetSize(std::int64_t & iSize) const
{
    LARGE_INTEGER oSize{};
    if (::GetFileType(ToHandle(m_iDescriptor)) != FILE_TYPE_DISK
        || !::GetFileSizeEx(ToHandle(m_iDescriptor), &oSize))
        return false;
    iSize = oSize.QuadPart;
    return true;
}
