#pragma once

#include <string>
#include <string_view>

#include <windows.h>

// It is the name of a function here.
#undef ReplaceFile

namespace System
{

/// Texts are UTF-8 in the programs and UTF-16 in the system.
inline std::wstring ToWide(std::string_view sText)
{
    int const iSize = static_cast<int>(sText.size());
    std::wstring sWide(
        static_cast<std::size_t>(::MultiByteToWideChar(CP_UTF8, 0, sText.data(), iSize, nullptr, 0)), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, sText.data(), iSize, sWide.data(), static_cast<int>(sWide.size()));
    return sWide;
}

inline std::string ToUtf8(std::wstring_view sText)
{
    int const iSize = static_cast<int>(sText.size());
    std::string sBytes(static_cast<std::size_t>(::WideCharToMultiByte(
                           CP_UTF8, 0, sText.data(), iSize, nullptr, 0, nullptr, nullptr)),
        '\0');
    ::WideCharToMultiByte(
        CP_UTF8, 0, sText.data(), iSize, sBytes.data(), static_cast<int>(sBytes.size()), nullptr, nullptr);
    return sBytes;
}

/// The system's error number of the calling thread.
inline int GetSystemError()
{
    return static_cast<int>(::GetLastError());
}

} // namespace System
