#include "platform/Files.h"

#include "platform/windows/Handle.h"
#include "platform/windows/Text.h"

#include <algorithm>

namespace tsl::Platform
{

namespace
{

constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t CALL_MAX = 1 << 30;

int WriteOnce(HANDLE hFile, char const * pBytes, std::size_t iCount, std::size_t & iWritten)
{
    DWORD iDone = 0;
    BOOL const bDone =
        ::WriteFile(hFile, pBytes, static_cast<DWORD>(std::min(iCount, CALL_MAX)), &iDone, nullptr);
    iWritten = iDone;
    return bDone ? 0 : GetSystemError();
}

int WriteAll(HANDLE hFile, char const * pBytes, std::size_t iCount)
{
    while (iCount > 0)
    {
        std::size_t iWritten = 0;
        if (int const iError = WriteOnce(hFile, pBytes, iCount, iWritten))
            return iError;
        if (iWritten == 0)
            return ERROR_WRITE_FAULT;
        pBytes += iWritten;
        iCount -= iWritten;
    }
    return 0;
}

/// Calls the function with a second handle to the file and its size. A handle that appends can do nothing else.
template<class Function>
void WithSize(HANDLE hFile, DWORD iAccess, Function fUse)
{
    Handle const oAnew(::ReOpenFile(hFile, iAccess, SHARE_ALL, 0));
    LARGE_INTEGER oSize{};
    if (oAnew && ::GetFileSizeEx(oAnew.Get(), &oSize))
        fUse(oAnew.Get(), oSize.QuadPart);
}

OVERLAPPED MakePlace(std::int64_t iOffset)
{
    OVERLAPPED oPlace{};
    oPlace.Offset = static_cast<DWORD>(iOffset);
    oPlace.OffsetHigh = static_cast<DWORD>(iOffset >> 32);
    return oPlace;
}

/// Ends a line of which only a part could be appended: overwrites the last byte of the part.
void EndTornLine(HANDLE hFile)
{
    WithSize(hFile, GENERIC_WRITE,
        [](HANDLE hAnew, std::int64_t iSize)
        {
            OVERLAPPED oPlace = MakePlace(iSize - 1);
            ::WriteFile(hAnew, "\n", 1, nullptr, &oPlace);
        });
}

/// Appends to a regular file by one call: between two calls another process could append something.
int AppendLine(HANDLE hFile, char const * pBytes, std::size_t iCount)
{
    std::size_t iWritten = 0;
    if (int const iError = WriteOnce(hFile, pBytes, iCount, iWritten))
        return iError;
    if (iWritten == iCount)
        return 0;
    if (iWritten > 0)
        EndTornLine(hFile);
    return ERROR_DISK_FULL;
}

} // namespace

char const PATH_SEPARATOR = '\\';

int GetWorkingDirectory(std::string & sPath)
{
    std::wstring sBuffer(::GetCurrentDirectoryW(0, nullptr), L'\0');
    DWORD const iLength = ::GetCurrentDirectoryW(static_cast<DWORD>(sBuffer.size()), sBuffer.data());
    if (iLength == 0)
        return GetSystemError();
    sPath = ToUtf8({sBuffer.data(), std::min<std::size_t>(iLength, sBuffer.size())});
    return 0;
}

int OpenForAppend(char const * sName, File & oFile)
{
    // Without the right to write elsewhere, each write appends in one step.
    Handle oHandle(::CreateFileW(ToWide(sName).c_str(), FILE_APPEND_DATA | SYNCHRONIZE, SHARE_ALL, nullptr,
        OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!oHandle)
        return GetSystemError();
    bool const bRegular = ::GetFileType(oHandle.Get()) == FILE_TYPE_DISK;
    oFile = {ToNumber(oHandle.Release()), false, bRegular};
    return 0;
}

int Append(File const & oFile, char const * pBytes, std::size_t iCount)
{
    HANDLE const hFile = ToHandle(oFile.iHandle);
    return oFile.bRegular ? AppendLine(hFile, pBytes, iCount) : WriteAll(hFile, pBytes, iCount);
}

bool EndsInTornLine(File const & oFile)
{
    char cLast = '\n';
    if (oFile.bRegular)
        WithSize(ToHandle(oFile.iHandle), GENERIC_READ,
            [&](HANDLE hAnew, std::int64_t iSize)
            {
                OVERLAPPED oPlace = MakePlace(iSize - 1);
                if (iSize > 0)
                    ::ReadFile(hAnew, &cLast, 1, nullptr, &oPlace);
            });
    return cLast != '\n';
}

int OpenForRead(char const * sName, File & oFile)
{
    // FILE_FLAG_BACKUP_SEMANTICS opens directories as well.
    Handle oHandle(::CreateFileW(ToWide(sName).c_str(), GENERIC_READ, SHARE_ALL, nullptr, OPEN_EXISTING,
        FILE_ATTRIBUTE_NORMAL | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!oHandle)
        return GetSystemError();
    if (::GetFileType(oHandle.Get()) != FILE_TYPE_DISK)
        return ERROR_INVALID_PARAMETER;
    oFile = {ToNumber(oHandle.Release())};
    return 0;
}

int Read(File const & oFile, char * pBytes, std::size_t iCount, std::size_t & iRead)
{
    DWORD iDone = 0;
    if (!::ReadFile(
            ToHandle(oFile.iHandle), pBytes, static_cast<DWORD>(std::min(iCount, CALL_MAX)), &iDone, nullptr))
        return GetSystemError();
    iRead = iDone;
    return 0;
}

void CloseFile(File & oFile)
{
    if (oFile.IsOpen())
        ::CloseHandle(ToHandle(std::exchange(oFile, File()).iHandle));
}

void WriteToStandardError(std::string_view sText)
{
    // A failure is ignored: there is nowhere left to report it.
    static_cast<void>(WriteAll(::GetStdHandle(STD_ERROR_HANDLE), sText.data(), sText.size()));
}

} // namespace tsl::Platform
