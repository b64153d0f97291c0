#pragma once

#include <cstddef>

/// The terminal that the standard output may be.
namespace Terminal
{

/// Characters in a line: what COLUMNS says, else what the terminal says, else 80.
std::size_t GetWidth();

/// Lines; 24 if the terminal does not say.
std::size_t GetHeight();

} // namespace Terminal
