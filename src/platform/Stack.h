#pragma once

#include <cstddef>

/// Stack traces for diagnosis.
namespace tsl::Platform
{

/// Stores the calling thread's return addresses, innermost first. Unused places become null.
void GetStack(void ** pAddresses, std::size_t iCount);

/// Writes where the return addresses are in the code, one per line, to the standard error stream.
void WriteStack(void * const * pAddresses, std::size_t iCount);

} // namespace tsl::Platform
