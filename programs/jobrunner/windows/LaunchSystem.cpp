#include "../LaunchSystem.h"

#include "../../shared/windows/Text.h"

#include <filesystem>

#include <stdlib.h>

namespace LaunchSystem
{

namespace
{

using System::GetSystemError;
using System::ToUtf8;
using System::ToWide;

/// Files of this process that are removed at its end.
struct TemporaryFiles
{
    ~TemporaryFiles()
    {
        for (std::wstring const & sName : vNames)
            ::DeleteFileW(sName.c_str());
    }

    std::vector<std::wstring> vNames;
};

TemporaryFiles g_oFiles;

/// A word of a command line. Only the command of a shell has quotes, its own.
std::wstring Quote(std::string const & sWord)
{
    std::wstring sWide = ToWide(sWord);
    if (sWide.find(L'"') != std::wstring::npos
        || (!sWide.empty() && sWide.find_first_of(L" \t") == sWide.npos))
        return sWide;

    // Backslashes in front of a quote would have to be doubled.
    std::size_t const iEnd = sWide.find_last_not_of(L'\\') + 1;
    sWide.append(sWide.size() - iEnd, L'\\');
    return L'"' + sWide + L'"';
}

bool HasFolder(std::string const & sProgram)
{
    return sProgram.find_first_of("/\\:") != std::string::npos;
}

/// The program that a path names, whose ending may be missing.
int CheckProgram(std::wstring const & sPath)
{
    for (wchar_t const * const sEnding : {L"", L".exe"})
    {
        DWORD const iAttributes = ::GetFileAttributesW((sPath + sEnding).c_str());
        if (iAttributes != INVALID_FILE_ATTRIBUTES)
            return iAttributes & FILE_ATTRIBUTE_DIRECTORY ? ERROR_ACCESS_DENIED : 0;
    }
    return GetSystemError();
}

} // namespace

std::string GetOwnProgram()
{
    std::wstring sPath(32'768, L'\0');
    sPath.resize(::GetModuleFileNameW(nullptr, sPath.data(), static_cast<DWORD>(sPath.size())));
    return ToUtf8(sPath);
}

int WriteToMemory(std::string const & sContent, std::string & sName)
{
    // The system keeps a small file of this kind in memory, but others can only find it by a name.
    wchar_t aFolder[MAX_PATH + 1];
    wchar_t aName[MAX_PATH + 1];
    if (::GetTempPathW(MAX_PATH, aFolder) == 0 || ::GetTempFileNameW(aFolder, L"job", 0, aName) == 0)
        return GetSystemError();
    g_oFiles.vNames.emplace_back(aName);
    sName = ToUtf8(aName);

    HANDLE const hFile =
        ::CreateFileW(aName, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY, nullptr);
    if (hFile == INVALID_HANDLE_VALUE)
        return GetSystemError();
    DWORD iWritten = 0;
    DWORD const iSize = static_cast<DWORD>(sContent.size());
    int const iError = ::WriteFile(hFile, sContent.data(), iSize, &iWritten, nullptr) ? 0 : GetSystemError();
    ::CloseHandle(hFile);
    return iError == 0 && iWritten != iSize ? ERROR_DISK_FULL : iError;
}

std::string GetInputFile(std::string const & sName)
{
    if (sName.empty())
        return "NUL";
    return sName == "yes" ? "" : sName;
}

std::vector<std::string> GetShellWords(std::string const & sCommand)
{
    return {"cmd.exe", "/d", "/s", "/c", '"' + sCommand + '"'};
}

int FindProgram(std::string const & sProgram, std::string const & sFolder, std::string const & sPath)
{
    if (HasFolder(sProgram))
        return CheckProgram((std::filesystem::path(ToWide(sFolder)) / ToWide(sProgram)).wstring());
    wchar_t aFound[MAX_PATH];
    std::wstring const sWidePath = ToWide(sPath);
    return ::SearchPathW(sPath.empty() ? nullptr : sWidePath.c_str(), ToWide(sProgram).c_str(), L".exe",
               MAX_PATH, aFound, nullptr)
               ? 0
               : GetSystemError();
}

int EnterFolder(std::string const & sFolder)
{
    return sFolder.empty() || ::SetCurrentDirectoryW(ToWide(sFolder).c_str()) ? 0 : GetSystemError();
}

int UseInput(std::string const & sFile)
{
    if (sFile.empty())
        return 0;
    SECURITY_ATTRIBUTES oInherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE const hFile = ::CreateFileW(ToWide(sFile).c_str(), GENERIC_READ,
        FILE_SHARE_READ | FILE_SHARE_WRITE, &oInherited, OPEN_EXISTING, 0, nullptr);
    if (hFile == INVALID_HANDLE_VALUE)
        return GetSystemError();
    ::SetStdHandle(STD_INPUT_HANDLE, hFile);
    return 0;
}

int Become(std::vector<std::string> const & vWords, std::vector<std::string> const & vEnvironment)
{
    for (std::string const & sVariable : vEnvironment)
    {
        std::size_t const iEqual = sVariable.find('=');
        ::SetEnvironmentVariableW(
            ToWide(sVariable.substr(0, iEqual)).c_str(), ToWide(sVariable.substr(iEqual + 1)).c_str());
    }
    std::wstring sCommandLine;
    for (std::string const & sWord : vWords)
        sCommandLine += (sCommandLine.empty() ? L"" : L" ") + Quote(sWord);

    // No process can become another program here, so this one waits for it.
    STARTUPINFOW oStart{};
    oStart.cb = sizeof oStart;
    oStart.dwFlags = STARTF_USESTDHANDLES;
    oStart.hStdInput = ::GetStdHandle(STD_INPUT_HANDLE);
    oStart.hStdOutput = ::GetStdHandle(STD_OUTPUT_HANDLE);
    oStart.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION oStarted{};
    if (!::CreateProcessW(
            nullptr, sCommandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &oStart, &oStarted))
        return GetSystemError();
    DWORD iCode = 0;
    ::WaitForSingleObject(oStarted.hProcess, INFINITE);
    ::GetExitCodeProcess(oStarted.hProcess, &iCode);
    ::_exit(static_cast<int>(iCode));
}

int GetExitCode(int iError)
{
    constexpr int iNotFound = 127;
    constexpr int iNotStarted = 126;
    return iError == ERROR_FILE_NOT_FOUND || iError == ERROR_PATH_NOT_FOUND ? iNotFound : iNotStarted;
}

} // namespace LaunchSystem
