#include "../Terminal.h"

#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

namespace
{

winsize GetSize()
{
    winsize oSize = {};
    static_cast<void>(::ioctl(STDOUT_FILENO, TIOCGWINSZ, &oSize)); // all 0 if it is no terminal
    return oSize;
}

} // namespace

std::size_t Terminal::GetWidth()
{
    constexpr int iUsual = 80;
    char const * const sColumns = std::getenv("COLUMNS");
    int const iColumns = sColumns ? std::atoi(sColumns) : 0;
    int const iWidth = iColumns > 0 ? iColumns : GetSize().ws_col;
    return static_cast<std::size_t>(iWidth > 0 ? iWidth : iUsual);
}

std::size_t Terminal::GetHeight()
{
    constexpr std::size_t iUsual = 24;
    std::size_t const iRows = GetSize().ws_row;
    return iRows > 0 ? iRows : iUsual;
}
