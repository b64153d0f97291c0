#pragma once

#include <cstddef>

namespace tsl::Platform
{

/// Gives the memory of the whole pages in a block back to the system, as far as it takes them. The addresses stay
/// valid; each byte keeps its value or becomes 0, also while other threads read it.
void DiscardContent(void * pMemory, std::size_t iSize);

} // namespace tsl::Platform
