#pragma once

#include <cstddef>

/// The calls that a thread is in, for whoever looks for a fault.
namespace tsl::Platform
{

/// The calling thread's return addresses, innermost first, with null in the rest.
void GetStack(void ** pAddresses, std::size_t iCount);

/// Writes the places of return addresses, one per line, to the standard error stream.
void WriteStack(void * const * pAddresses, std::size_t iCount);

} // namespace tsl::Platform
