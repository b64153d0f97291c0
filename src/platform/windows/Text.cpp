#include "platform/windows/Text.h"

#include "platform/windows/System.h"

namespace tsl::Platform
{

std::wstring ToWide(std::string_view sText)
{
    int const iSize = static_cast<int>(sText.size());
    std::wstring sWide(
        static_cast<std::size_t>(::MultiByteToWideChar(CP_UTF8, 0, sText.data(), iSize, nullptr, 0)), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, sText.data(), iSize, sWide.data(), static_cast<int>(sWide.size()));
    return sWide;
}

std::string ToUtf8(std::wstring_view sText)
{
    int const iSize = static_cast<int>(sText.size());
    std::string sBytes(static_cast<std::size_t>(::WideCharToMultiByte(
                           CP_UTF8, 0, sText.data(), iSize, nullptr, 0, nullptr, nullptr)),
        '\0');
    ::WideCharToMultiByte(
        CP_UTF8, 0, sText.data(), iSize, sBytes.data(), static_cast<int>(sBytes.size()), nullptr, nullptr);
    return sBytes;
}

} // namespace tsl::Platform
