#include "../System.h"

#include "Text.h"

#include <algorithm>
#include <random>
#include <string>

#include <fcntl.h>
#include <io.h>
#include <stdlib.h>

namespace System
{

namespace
{

constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr int STANDARD_INPUT = 0;

int WriteAll(HANDLE hFile, std::string_view sText)
{
    while (!sText.empty())
    {
        DWORD iWritten = 0;
        DWORD const iCount = static_cast<DWORD>(std::min<std::size_t>(sText.size(), 1 << 30));
        if (!::WriteFile(hFile, sText.data(), iCount, &iWritten, nullptr))
            return GetSystemError();
        if (iWritten == 0)
            return ERROR_WRITE_FAULT;
        sText.remove_prefix(iWritten);
    }
    return 0;
}

HANDLE GetHandle(int iFile)
{
    return reinterpret_cast<HANDLE>(::_get_osfhandle(iFile));
}

/// Whether the handle is a file, and what identifies it.
bool Identify(HANDLE hFile, BY_HANDLE_FILE_INFORMATION & oInfo)
{
    return ::GetFileInformationByHandle(hFile, &oInfo) != 0;
}

} // namespace

void IgnoreWriteSignals() {}

int WriteOutput(std::string_view sText)
{
    return WriteAll(::GetStdHandle(STD_OUTPUT_HANDLE), sText);
}

bool IsBrokenPipe(int iError)
{
    return iError == ERROR_BROKEN_PIPE || iError == ERROR_NO_DATA;
}

bool IsOutputTerminal()
{
    DWORD iMode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_OUTPUT_HANDLE), &iMode) != 0;
}

bool WaitWithOutput(std::chrono::milliseconds iDuration)
{
    // That nobody reads is noticed at the next write.
    ::Sleep(static_cast<DWORD>(iDuration.count()));
    return true;
}

int ReplaceFile(std::filesystem::path const & oOld, std::filesystem::path const & oNew)
{
    return ::ReplaceFileW(
               oOld.c_str(), oNew.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)
               ? 0
               : GetSystemError();
}

int WriteBeside(
    std::filesystem::path const & oFile, std::string_view sContent, std::filesystem::path & oBeside)
{
    // Who may not write the file must not replace it either, even if the folder allows it.
    HANDLE const hOld =
        ::CreateFileW(oFile.c_str(), GENERIC_WRITE, SHARE_ALL, nullptr, OPEN_EXISTING, 0, nullptr);
    if (hOld == INVALID_HANDLE_VALUE)
        return GetSystemError();
    ::CloseHandle(hOld);

    oBeside = oFile;
    oBeside += L"." + std::to_wstring(std::random_device()());
    HANDLE const hNew =
        ::CreateFileW(oBeside.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (hNew == INVALID_HANDLE_VALUE)
        return GetSystemError();
    int iError = WriteAll(hNew, sContent);
    if (iError == 0 && !::FlushFileBuffers(hNew))
        iError = GetSystemError();
    ::CloseHandle(hNew);
    if (iError != 0)
        ::DeleteFileW(oBeside.c_str());
    return iError;
}

int InputFile::Open(char const * sName)
{
    Close();
    // Others may rename and remove the file meanwhile.
    HANDLE const hFile = ::CreateFileW(ToWide(sName).c_str(), GENERIC_READ, SHARE_ALL, nullptr, OPEN_EXISTING,
        FILE_ATTRIBUTE_NORMAL, nullptr);
    if (hFile == INVALID_HANDLE_VALUE)
        return GetSystemError();
    m_iHandle = ::_open_osfhandle(reinterpret_cast<std::intptr_t>(hFile), _O_RDONLY | _O_BINARY);
    if (m_iHandle >= 0)
        return 0;
    ::CloseHandle(hFile);
    return ERROR_TOO_MANY_OPEN_FILES;
}

void InputFile::UseStandardInput()
{
    Close();
    m_iHandle = STANDARD_INPUT;
}

void InputFile::Close()
{
    if (m_iHandle > STANDARD_INPUT)
        ::_close(m_iHandle);
    m_iHandle = -1;
}

int InputFile::Read(char * pBuffer, std::size_t iSize, std::size_t & iRead)
{
    DWORD iCount = 0;
    BOOL const bRead = ::ReadFile(GetHandle(m_iHandle), pBuffer,
        static_cast<DWORD>(std::min<std::size_t>(iSize, 1 << 30)), &iCount, nullptr);
    iRead = iCount;
    return bRead || ::GetLastError() == ERROR_BROKEN_PIPE ? 0 : GetSystemError();
}

std::size_t InputFile::ReadHead(char * pBuffer, std::size_t iSize) const
{
    // A read at a place moves the position.
    std::int64_t const iPosition = ::_lseeki64(m_iHandle, 0, SEEK_CUR);
    OVERLAPPED oPlace{};
    DWORD iCount = 0;
    ::ReadFile(GetHandle(m_iHandle), pBuffer, static_cast<DWORD>(std::min<std::size_t>(iSize, 1 << 30)),
        &iCount, &oPlace);
    static_cast<void>(::_lseeki64(m_iHandle, iPosition, SEEK_SET));
    return iCount;
}

std::uint64_t InputFile::GetSize() const
{
    LARGE_INTEGER oSize{};
    return ::GetFileSizeEx(GetHandle(m_iHandle), &oSize) ? static_cast<std::uint64_t>(oSize.QuadPart) : 0;
}

bool InputFile::IsReplaced(char const * sName) const
{
    HANDLE const hNamed = ::CreateFileW(
        ToWide(sName).c_str(), 0, SHARE_ALL, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (hNamed == INVALID_HANDLE_VALUE)
        return false;
    BY_HANDLE_FILE_INFORMATION oOwn{};
    BY_HANDLE_FILE_INFORMATION oNamed{};
    bool const bOther =
        Identify(GetHandle(m_iHandle), oOwn) && Identify(hNamed, oNamed)
        && (oOwn.dwVolumeSerialNumber != oNamed.dwVolumeSerialNumber
            || oOwn.nFileIndexHigh != oNamed.nFileIndexHigh || oOwn.nFileIndexLow != oNamed.nFileIndexLow);
    ::CloseHandle(hNamed);
    return bOther;
}

void InputFile::Rewind()
{
    static_cast<void>(::_lseeki64(m_iHandle, 0, SEEK_SET));
}

} // namespace System
