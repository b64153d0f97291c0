#include "../Terminal.h"

#include <cstdlib>

#include <windows.h>

namespace
{

/// The part of the screen that the window shows; all 0 if there is none.
SMALL_RECT GetWindow()
{
    CONSOLE_SCREEN_BUFFER_INFO oInfo{};
    bool const bKnown = ::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &oInfo) != 0;
    return bKnown ? oInfo.srWindow : SMALL_RECT{0, 0, -1, -1};
}

} // namespace

std::size_t Terminal::GetWidth()
{
    constexpr int iUsual = 80;
    char const * const sColumns = std::getenv("COLUMNS");
    int const iColumns = sColumns ? std::atoi(sColumns) : 0;
    SMALL_RECT const oWindow = GetWindow();
    int const iWidth = iColumns > 0 ? iColumns : oWindow.Right - oWindow.Left + 1;
    return static_cast<std::size_t>(iWidth > 0 ? iWidth : iUsual);
}

std::size_t Terminal::GetHeight()
{
    constexpr int iUsual = 24;
    SMALL_RECT const oWindow = GetWindow();
    int const iHeight = oWindow.Bottom - oWindow.Top + 1;
    return static_cast<std::size_t>(iHeight > 0 ? iHeight : iUsual);
}
